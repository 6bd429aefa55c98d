#pragma once

#include <QSize>

class QWidget;

/// The largest size that the inside of a window may have, in pixels: that of its screen without panels and title bar,
/// and for a window that is open already, what lies to the right of its place and below it.
QSize roomFor(const QWidget& window);

/// Makes a window with a layout as high as its wrapped texts need at its width, where its form is too low for them.
void fitToTexts(QWidget& window);

/// Makes the layouts around the widget, up to the window's, ask anew for the sizes of what they hold, at once and in a
/// hidden window too.
void forgetSizes(QWidget* widget);
