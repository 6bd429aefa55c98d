#pragma once

#include "xml/CustomInfo.h"

#include <QString>
#include <QVector>
#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

/// What the windows show.
struct Contents
{
    CustomInfo record;
    QVector<CustomInfo> history; // in no particular order
};

/// A record that opens every page and every gate, without two values alike, and a history with and without a remark.
Contents distinctContents();

/// A window of the program in one of its states, as its opener makes it, not yet shown, with its texts in the language
/// in force. The contents must outlive it. A main window loads the language of the settings and replaces the history on
/// disk.
struct ProgramWindow
{
    const char* name; // no blanks, fit for a file
    std::shared_ptr<QWidget> (*open)(Contents& contents);
};

/// All of them, the warning included, without those that Qt brings along.
const std::vector<ProgramWindow>& everyWindow();

/// One of them; the test ends at once when none has that name.
std::shared_ptr<QWidget> openWindow(const QString& name, Contents& contents);

/// The language of the windows to be opened, "en" or "zh": in the settings, whose other values are lost, and in force.
void chooseLanguage(const QString& language);

/// Data of a test: each window in both languages.
void addEveryWindow();
/// The window of the test's row, shown but never painted, with distinct contents.
std::shared_ptr<QWidget> windowOfRow();

/// Calls with each page of the shown window in front: those of its tabs, the two of the main window; with no pages,
/// once. Then with each menu of its menu bar, opened.
///
/// @param look  gets the name of the page, empty when there are no pages, and the window or the menu
void onEveryPage(QWidget& window, const std::function<void(const QString& page, QWidget& shown)>& look);
