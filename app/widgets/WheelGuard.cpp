#include "app/widgets/WheelGuard.h"

#include <QComboBox>
#include <QFocusEvent>

namespace {

class WheelGuard : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn)
            noteFocus(watched, static_cast<QFocusEvent*>(event)->reason());
        const bool isKeptAway = event->type() == QEvent::Wheel && !hasUsersFocus(watched);
        if (isKeptAway)
            event->ignore();
        return isKeptAway || QObject::eventFilter(watched, event);
    }

private:
    void noteFocus(const QObject* combo, Qt::FocusReason reason)
    {
        // The focus that comes back with the window, or from the open list, is the same as before.
        if (reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason)
            m_given = reason == Qt::OtherFocusReason ? nullptr : combo;
    }

    bool hasUsersFocus(const QObject* combo) const
    {
        return m_given == combo && static_cast<const QComboBox*>(combo)->hasFocus();
    }

    const QObject* m_given = nullptr; // the last list that a key or a click gave the focus
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
