#pragma once

#include "support/WindowPlay.h"
#include "xml/CustomInfo.h"

#include <QAbstractButton>
#include <QDialog>
#include <QtTest>

/// Plays the read-only views through their widgets. What is collected as one text is joined by "; ", and empty when
/// there is nothing to complain of.
namespace viewplay {

using windowplay::bringToFront;
using windowplay::child;
using windowplay::click;
using windowplay::RecordHolder;
using windowplay::useLanguage;
using windowplay::words;

/// Makes "[key]" the text of every key, so that a test sees which key a window uses.
void useKeysAsTexts();
/// A record with all components, and ticks and texts everywhere.
CustomInfo fullRecord();
/// A record with all components and no flag set.
CustomInfo bareRecord();

/// "name=value" for each check box and radio button, sorted.
QStringList ticks(const QDialog& dialog);
/// Clicks on every check box and radio button that is enabled, with the mouse and with the space bar, and collects what
/// that changed. `clicked` counts the clicks that arrived.
QString changesByClicks(QDialog& dialog, int& clicked);

/// The names of the line edits that can be written in, the combo boxes that can be opened, the tree cells that can be
/// edited and the check boxes that are disabled.
QString writableControls(const QDialog& dialog);
/// The names of the fields, combo boxes, lists and trees that have no name for the accessibility interface.
QString namelessControls(const QDialog& dialog);
/// The line edits in which copying reaches the clipboard, or the accessibility interface reads the text.
QString readableSecrets(const QDialog& dialog, const QString& secret);
/// The steps of the tab order that lead upwards within one tab, as "from > to".
QString backwardSteps(const QDialog& dialog);
/// Shows the dialog and collects the texts that do not fit, "NULL" texts included, on all its tabs.
QString clippedTexts(QDialog& dialog);

/// The files below the root of the store, the log aside.
QStringList storedFiles();

/// The test within the application object with the keys as texts.
template <class Test> int runTest(int argc, char** argv)
{
    return windowplay::runTest<Test, useKeysAsTexts>(argc, argv);
}

} // namespace viewplay
