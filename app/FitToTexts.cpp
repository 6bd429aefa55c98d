#include "app/FitToTexts.h"

#include <QLayout>
#include <QWidget>

void fitToTexts(QWidget& window)
{
    QLayout* layout = window.layout();
    layout->activate();
    const int needed = layout->hasHeightForWidth() ? layout->totalHeightForWidth(window.width()) : 0;
    if (needed > window.height())
        window.resize(window.width(), needed);
}
