#pragma once

#include <QString>

#include <functional>

class QWidget;

/// Called for each picture, with the window open and laid out.
using Visit = std::function<void(const QString& page, QWidget& window)>;

/// Opens every window, page, tab, dialog and menu of the program, in both brands, with a full record and some history.
/// The store below the executable is made anew.
void visitEveryWindow(const QString& language, const Visit& visit);

/// The same with a record and a history in which the texts are as long as they may be.
void visitEveryWindowWithLongTexts(const QString& language, const Visit& visit);

/// The windows of which the documents have pictures, by the names of these.
void visitDocumentedWindows(const QString& language, const Visit& visit);
