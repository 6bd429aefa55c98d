#pragma once

#include "app/mainwindow/orvexmanager.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/ModalScript.h"
#include "support/StoredCustomisation.h"
#include "support/WindowPlay.h"

#include <QMessageBox>
#include <QTest>
#include <QTreeWidget>

/// A fresh store and settings below the test executable, in English, and the brand `tqm`.
void prepareInstallation();
void writeSettings(const QByteArray& lines);

using windowplay::ApplicationFont;
using windowplay::child;
using windowplay::isEnabled;
using windowplay::ShownBox;
using windowplay::tick;

void pressOk(QWidget& dialog, const char* boxName = "buttonBox");
void pressCancel(QWidget& dialog, const char* boxName = "buttonBox");
/// The names of the ticked components, hidden ones too, in the order of the page.
QStringList tickedBoxes(const QWidget& window);

/// Notes what the message box shows and presses the button.
std::function<void(QMessageBox&)> answer(ShownBox& shown, QMessageBox::StandardButton button = QMessageBox::Ok);
/// Whether it is the main window's warning with this text: a child of the window, one Ok button, also the default.
bool isWarning(const ShownBox& shown, const OrvexManager& window, const char* textKey);
/// Presses the button; whether that warning, and nothing else, came. It is answered by Ok.
bool pressWarns(const OrvexManager& window, const char* buttonName, const char* textKey);

/// A path below the directory of the history.
QString inHistory(const QString& relative = QString());
/// Stores a customisation with the default components, under its time stamp or the given name.
void storeRow(quint64 timeStamp, const char* timeString, const char* remark, const QString& name = QString());
QTreeWidget* historyTree(const OrvexManager& window);
/// Column 0 of the tree.
QStringList shownTimes(const OrvexManager& window);
int rowOf(const OrvexManager& window, const char* timeString);
/// Turns to the history page and clicks the row.
void clickRow(const OrvexManager& window, int row);
/// The text that a tooltip shows.
QString readToolTip(const QString& toolTip);
/// Presses the button for details and closes what it shows. Empty when anything but a detail view came.
QString titleOfDetails(const OrvexManager& window);

/// The test within a fresh installation and the application object.
template <class Test> int playTest(int argc, char** argv)
{
    prepareInstallation();
    return windowplay::runTest<Test>(argc, argv);
}
