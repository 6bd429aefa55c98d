#pragma once

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QRegion>
#include <QString>
#include <QVector>

class QWidget;

/// A run of text as a widget painted it. Places are in the logical pixels of the window.
struct DrawnText
{
    const QWidget* widget = nullptr; // that painted it
    QString text;                    // as painted, so with the dots of a text that was cut off
    QColor colour;                   // opacity included
    QRectF place;                    // of the ink of its glyphs
    QRegion visible;                 // what of the place was not clipped away
};

/// What a window paints, its texts apart from everything else.
struct Drawing
{
    QVector<DrawnText> texts;
    QImage ground; // the window without its texts, a pixel each
};

/// Paints the window, hidden or not, once more.
Drawing drawingOf(QWidget& window);
