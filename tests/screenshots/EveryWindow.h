#pragma once

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QString>

#include <functional>

class QWidget;

/// How a desktop makes the program look.
struct Look
{
    QString language; // "en" or "zh"
    bool isDark = false;
    int pointSize = 0; // of the font; 0: as the application has it

    /// Such as "zh-dark-12pt".
    QString name() const;
};

/// The palettes of a light and of a dark desktop.
QPalette lightPalette();
QPalette darkPalette();

/// While it lives, the application looks so.
class LookOfTheDesktop
{
public:
    explicit LookOfTheDesktop(const Look& look);
    ~LookOfTheDesktop();
    LookOfTheDesktop(const LookOfTheDesktop&) = delete;
    LookOfTheDesktop& operator=(const LookOfTheDesktop&) = delete;

private:
    QPalette m_palette;
    QFont m_font;
};

/// Called for each picture, with the window open and laid out.
using Visit = std::function<void(const QString& page, QWidget& window)>;

/// Opens every window, page, tab, dialog and menu of the program, in both brands, with a full record and some history.
/// The store below the executable is made anew.
void visitEveryWindow(const QString& language, const Visit& visit);

/// Opens the windows that show stored texts, with a record and a history in which these are as long as they may be.
void visitWindowsWithLongTexts(const QString& language, const Visit& visit);

/// The windows of which the documents have pictures, by the names of these.
void visitDocumentedWindows(const QString& language, const Visit& visit);
