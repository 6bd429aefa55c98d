#pragma once

#include <QObject>
#include <QPalette>

class QColor;

/// The contrast of two opaque colours, 1 to 21 (WCAG 2.1, "contrast ratio").
double contrast(const QColor& one, const QColor& other);

/// The least contrast of a text with its ground (WCAG 2.1, success criterion 1.4.3, level AA).
constexpr double leastContrast = 4.5;

/// The palette, with selected texts in black or white where they have less than the least contrast with the colour of
/// the selection, as in the light palette of Qt's own style. That colour stays, because styles draw frames with it too.
QPalette withReadableSelection(QPalette palette);

/// Keeps selected texts readable in the palette of the application, whatever the desktop sets. Works as an event filter
/// of the application object.
class ReadablePaletteFilter : public QObject
{
public:
    explicit ReadablePaletteFilter(QObject* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static void mend();
};
