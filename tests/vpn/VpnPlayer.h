#pragma once

#include "support/WindowPlay.h"
#include "vpn/QVPNAdvProperty.h"
#include "xml/CustomInfo.h"

#include <QDialog>
#include <QMessageBox>
#include <QStringList>
#include <QVector>
#include <QtTest>

#include <functional>

/// Plays the VPN dialogs through their widgets.
namespace vpnplay {

using windowplay::bringToFront;
using windowplay::child;
using windowplay::click;
using windowplay::enabledOf;
using windowplay::indexOf;
using windowplay::isOn;
using windowplay::itemsOf;
using windowplay::RecordHolder;
using windowplay::shown;
using windowplay::ShownBox;
using windowplay::textOf;
using windowplay::type;
using windowplay::typeText;
using windowplay::useLanguage;
using windowplay::words;

/// A record whose VPN fields all differ from the defaults and, where the field allows it, from each other. Stored
/// unchanged, it stays the same.
CustomInfo tellingRecord();

/// "field: old -> new" for every field that differs, in the order of the record.
QStringList changes(const CustomInfo& before, const CustomInfo& after);

/// Fails the test unless the box is the plain warning with these texts.
void compareWarning(const ShownBox& box, const char* titleKey, const char* textKey);

/// One run of QVPNAdvProperty, from opening to closing.
struct Session
{
    CustomInfo info; // as the dialog left it
    QVector<ShownBox> boxes;
    QStringList complaints; // of the script
    int result = -1;
    QString focus; // the last focus of the dialog
};

using Edit = std::function<void(QVPNAdvProperty&)>;

/// Opens the dialog over a copy of the record, edits, presses Ok and answers the stated number of boxes by Ok.
Session pressOkAfter(const CustomInfo& info, const Edit& edit, int boxes = 0);
Session pressCancelAfter(const CustomInfo& info, const Edit& edit);
/// Opens the dialog over a copy of the record, looks at it and cancels it; `look` may compare.
void inspect(const CustomInfo& info, const Edit& look);

/// Chooses an item of an enabled combo box.
void choose(QVPNAdvProperty& dialog, const char* combo, int index);

/// The test within the application object with the English texts.
template <class Test> int runTest(int argc, char** argv)
{
    return windowplay::runTest<Test, windowplay::useEnglish>(argc, argv);
}

} // namespace vpnplay
