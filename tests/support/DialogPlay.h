#pragma once

#include "support/WindowPlay.h"

#include <QDialogButtonBox>
#include <QObject>
#include <QStringList>

class ModalScript;
class QDialog;

/// Plays small dialogs through their widgets. The button box of a dialog is called "buttonBox".
namespace dialogplay {

using windowplay::child;
using windowplay::click;
using windowplay::focusOf;
using windowplay::press;
using windowplay::runTest;
using windowplay::showKeysAsTexts;
using windowplay::tick;
using windowplay::type;

QString okText(const QDialog& dialog);
QString cancelText(const QDialog& dialog);
/// Clicks OK, answers the one message box that follows by Ok, and tells what the box showed and how the dialog stands
/// behind it; compare this with refusal(). Call it from a step of the same script.
QStringList clickRefusedOk(ModalScript& script, const QDialog& dialog);
/// What clickRefusedOk() tells when a plain warning with the texts of these keys, as showKeysAsTexts() has set them,
/// has come and gone, and the dialog is still open with the focus on the named widget.
QStringList refusal(const char* titleKey, const char* textKey, const char* focus);

/// Counts the close events of the windows that it is installed on as an event filter.
class CloseEvents : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace dialogplay
