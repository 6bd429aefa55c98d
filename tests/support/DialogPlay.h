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
using windowplay::focusOf;
using windowplay::runTest;
using windowplay::showKeysAsTexts;

/// A mouse click on the button of the button box.
void click(const QDialog& dialog, QDialogButtonBox::StandardButton button);
/// Replaces the text of the line edit by key strokes; ASCII only.
void type(const QDialog& dialog, const char* edit, const QString& text);
/// Clicks the check box unless it has this state already.
void tick(const QDialog& dialog, const char* box, bool ticked);

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
