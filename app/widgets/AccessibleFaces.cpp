#include "app/widgets/AccessibleFaces.h"

#include <QAbstractButton>
#include <QAccessibleWidget>
#include <QCheckBox>
#include <QRadioButton>

namespace {

const char s_readOnly[] = "isReadOnlyView"; // property of a window

class ReadOnlyBox : public QAccessibleWidget
{
public:
    ReadOnlyBox(QAbstractButton* button, QAccessible::Role role) : QAccessibleWidget(button, role), m_button(button) {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = m_button->isChecked();
        state.readOnly = true;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_button->text() : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override { return {setFocusAction()}; }

private:
    const QAbstractButton* m_button; // lives as long as this
};

QAccessibleInterface* faceOf(const QString& className, QObject* object)
{
    auto* const widget = qobject_cast<QWidget*>(object);
    if (!widget)
        return nullptr;
    if (className == QLatin1String("QToolBar"))
        return new QAccessibleWidget(widget, QAccessible::ToolBar);
    if (!widget->window()->property(s_readOnly).toBool())
        return nullptr;
    if (className == QLatin1String("QCheckBox"))
        return new ReadOnlyBox(static_cast<QAbstractButton*>(widget), QAccessible::CheckBox);
    if (className == QLatin1String("QRadioButton"))
        return new ReadOnlyBox(static_cast<QAbstractButton*>(widget), QAccessible::RadioButton);
    return nullptr;
}

void installFaces()
{
    // Qt takes a factory that it has already for another.
    static const bool isInstalled = [] {
        QAccessible::installFactory(faceOf);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace

void nameToolBarsAccessibly()
{
    installFaces();
}

void tellReadOnly(QWidget& view)
{
    installFaces();
    view.setProperty(s_readOnly, true);
}
