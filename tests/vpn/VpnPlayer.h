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

using windowplay::child;
using windowplay::RecordHolder;
using windowplay::useLanguage;
using windowplay::words;

/// A record whose VPN fields all differ from the defaults and, where the field allows it, from each other. Stored
/// unchanged, it stays the same.
CustomInfo tellingRecord();

/// "field: old -> new" for every field that differs, in the order of the record.
QStringList changes(const CustomInfo& before, const CustomInfo& after);

struct ShownBox
{
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons = QMessageBox::NoButton;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    bool hasParent = false;
    QString focus; // the focus of the dialog behind, while the box is open
};

/// Reads a box that is on screen.
ShownBox shown(const QMessageBox& box, const QDialog& behind);

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

/// Brings the tab of the widget to the front.
void bringToFront(QVPNAdvProperty& dialog, const QWidget* widget);
/// Replaces the text by key strokes.
void typeInto(QVPNAdvProperty& dialog, const char* edit, const QString& text);
void typeText(QLineEdit* edit, const QString& text);
void clickOn(QVPNAdvProperty& dialog, const char* button);
/// Chooses an item of an enabled combo box.
void choose(QVPNAdvProperty& dialog, const char* combo, int index);

QString textOf(const QVPNAdvProperty& dialog, const char* edit);
int indexOf(const QVPNAdvProperty& dialog, const char* combo);
bool isOn(const QVPNAdvProperty& dialog, const char* box);
/// The names among these whose widgets are enabled, in the given order.
QStringList enabledOf(const QVPNAdvProperty& dialog, const QStringList& names);
QStringList itemsOf(const QVPNAdvProperty& dialog, const char* combo);

/// The test within the application object with the English texts.
template <class Test> int runTest(int argc, char** argv)
{
    return windowplay::runTest<Test, windowplay::useEnglish>(argc, argv);
}

} // namespace vpnplay
