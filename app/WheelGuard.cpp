#include "app/WheelGuard.h"

#include <QComboBox>
#include <QEvent>

namespace {

class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::Wheel || static_cast<QComboBox*>(watched)->hasFocus())
            return QObject::eventFilter(watched, event);
        event->ignore();
        return true;
    }
};

} // namespace

void keepWheelFromLists(QWidget& window)
{
    auto* const guard = new WheelGuard(&window);
    for (QComboBox* combo : window.findChildren<QComboBox*>()) {
        combo->setFocusPolicy(Qt::StrongFocus);
        combo->installEventFilter(guard);
    }
}
