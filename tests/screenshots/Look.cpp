#include "screenshots/Look.h"

#include <QApplication>
#include <QStyle>

QString Look::name() const
{
    return QStringLiteral("%1-%2-%3")
        .arg(language, isDark ? QStringLiteral("dark") : QStringLiteral("light"),
             pointSize > 0 ? QStringLiteral("%1pt").arg(pointSize) : QStringLiteral("default"));
}

QPalette lightPalette()
{
    return QApplication::style()->standardPalette();
}

QPalette darkPalette()
{
    const QColor window(53, 53, 53);
    const QColor base(35, 35, 35);
    const QColor disabled(127, 127, 127);
    QPalette palette(Qt::white, window, window.lighter(150), window.darker(150), window.darker(120), Qt::white, Qt::red,
                     base, window);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::Link, QColor(100, 170, 240));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(255, 255, 255, 128));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

LookOfTheDesktop::LookOfTheDesktop(const Look& look) : m_palette(QApplication::palette()), m_font(QApplication::font())
{
    QApplication::setPalette(look.isDark ? darkPalette() : lightPalette());
    QFont font = m_font;
    if (look.pointSize > 0)
        font.setPointSize(look.pointSize);
    QApplication::setFont(font);
}

LookOfTheDesktop::~LookOfTheDesktop()
{
    QApplication::setPalette(m_palette);
    QApplication::setFont(m_font);
}
