#pragma once

class QWidget;

/// Makes a window with a layout as high as its wrapped texts need at its width, where its form is too low for them.
void fitToTexts(QWidget& window);
