#pragma once

#include <QFont>
#include <QPalette>
#include <QString>

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
