#pragma once

#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

struct CustomInfo;

/// The record that opens every page and every gate.
CustomInfo& recordOfEveryPage();

/// A window of the program as its opener makes it, not yet shown, with its texts in the language in force. The main
/// window loads the language of the settings, shows the history on disk, and belongs to a fresh installation.
struct ProgramWindow
{
    const char* name;
    std::shared_ptr<QWidget> (*open)();
};

/// All of them, the warning included, without those that Qt brings along.
const std::vector<ProgramWindow>& everyWindow();

/// Data of a test: each window in both languages.
void addEveryWindow();
/// The window of the test's row, shown. The history and the record have what fills every list.
std::shared_ptr<QWidget> windowOfRow();

/// Calls with each page of the shown window in front: those of its tabs, the two of the main window; with no pages,
/// once.
///
/// @param look  gets the object name of the page, empty when there are no pages
void onEveryPage(QWidget& window, const std::function<void(const QString& page)>& look);
