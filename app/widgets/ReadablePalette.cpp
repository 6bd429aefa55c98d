#include "app/widgets/ReadablePalette.h"

#include <QApplication>
#include <QColor>
#include <QEvent>

#include <algorithm>
#include <cmath>

namespace {

double luminance(const QColor& colour)
{
    const auto linear = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

} // namespace

double contrast(const QColor& one, const QColor& other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QPalette withReadableSelection(QPalette palette)
{
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor text = palette.color(group, QPalette::HighlightedText);
        const QColor ground = palette.color(group, QPalette::Highlight);
        // One of the two has a contrast of at least 4.58 with any colour.
        const QColor readable = contrast(Qt::black, ground) > contrast(Qt::white, ground) ? Qt::black : Qt::white;
        if (contrast(text, ground) < leastContrast)
            palette.setColor(group, QPalette::HighlightedText, readable);
    }
    return palette;
}

ReadablePaletteFilter::ReadablePaletteFilter(QObject* parent) : QObject(parent)
{
    mend();
}

bool ReadablePaletteFilter::eventFilter(QObject* watched, QEvent* event)
{
    // Windows learn of a palette only after the application object, so they learn of the readable one alone.
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        mend();
    return QObject::eventFilter(watched, event);
}

void ReadablePaletteFilter::mend()
{
    const QPalette palette = QApplication::palette();
    const QPalette readable = withReadableSelection(palette);
    if (readable != palette)
        QApplication::setPalette(readable);
}
