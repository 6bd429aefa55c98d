#include "app/widgets/FitToTexts.h"

#include <QLayout>
#include <QScreen>
#include <QStyle>
#include <QWidget>

QSize roomFor(const QWidget& window)
{
    const QRect screen = window.screen()->availableGeometry();
    if (window.isVisible())
        return QRect(window.geometry().topLeft(), screen.bottomRight()).size();
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    return screen.size() - QSize(0, titleBar);
}

void fitToTexts(QWidget& window)
{
    QLayout* layout = window.layout();
    layout->activate();
    const int needed = layout->hasHeightForWidth() ? layout->totalHeightForWidth(window.width()) : 0;
    if (needed > window.height())
        window.resize(window.width(), needed);
}

void forgetSizes(QWidget* widget)
{
    for (; !widget->isWindow(); widget = widget->parentWidget()) {
        widget->updateGeometry();
        QLayout* around = widget->parentWidget()->layout();
        around->invalidate();
        if (!widget->parentWidget()->isWindow())
            around->activate();
    }
}
