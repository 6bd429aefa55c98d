#include "app/widgets/ReturnKey.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>

bool takesReturn(const QWidget& window, const QKeyEvent& event)
{
    const bool isReturn = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    // As of a dialog's own: Return alone, or on the keypad.
    if (!isReturn || (event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    QWidget* focus = window.focusWidget();
    if (qobject_cast<QPushButton*>(focus) || qobject_cast<QToolButton*>(focus))
        static_cast<QAbstractButton*>(focus)->click();
    return true;
}
