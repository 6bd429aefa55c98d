#include "app/widgets/WarningBox.h"

#include "app/language/LangText.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QDialogButtonBox>
#include <QLineEdit>

namespace {

const QLatin1String s_refusal("refusal"); // name of the child that a refused field keeps

void takeBackRefusals(const QWidget& window)
{
    for (const QObject* refusal : window.findChildren<QObject*>(s_refusal))
        static_cast<QWidget*>(refusal->parent())->setAccessibleDescription(QString());
}

// A button box tells its click before it tells what the click means, so that the next check finds nothing announced.
void watch(QWidget& field, const QWidget& window)
{
    auto* const refusal = new QObject(&field);
    refusal->setObjectName(s_refusal);
    if (auto* edit = qobject_cast<QLineEdit*>(&field))
        QObject::connect(edit, &QLineEdit::textEdited, refusal, [edit] { edit->setAccessibleDescription(QString()); });
    for (const auto* buttons : window.findChildren<QDialogButtonBox*>(QString(), Qt::FindDirectChildrenOnly))
        QObject::connect(buttons, &QDialogButtonBox::clicked, refusal, [&window] { takeBackRefusals(window); });
}

} // namespace

WarningBox::WarningBox(const char* titleKey, QWidget* parent) : QMessageBox(parent)
{
    setStandardButtons(QMessageBox::Ok);
    setDefaultButton(QMessageBox::Ok);
    setIcon(QMessageBox::Warning);
    button(QMessageBox::Ok)->setText(langText("ok_button"));
    if (titleKey)
        setTitleKey(titleKey);
}

void WarningBox::setTitleKey(const char* titleKey)
{
    setWindowTitle(langText(titleKey));
}

void WarningBox::say(const char* textKey)
{
    setText(langText(textKey));
    exec();
}

bool WarningBox::refuse(const char* textKey, QWidget* focus)
{
    say(textKey);
    if (focus) {
        announceRefusal(focus, textKey);
        focus->setFocus();
    }
    return false;
}

bool WarningBox::refuseAt(QWidget* focus, const char* textKey)
{
    focus->setFocus();
    say(textKey);
    announceRefusal(focus, textKey);
    return false;
}

void announceRefusal(QWidget* field, const char* textKey)
{
    QWidget* const window = field->window();
    takeBackRefusals(*window);
    if (!field->findChild<QObject*>(s_refusal, Qt::FindDirectChildrenOnly))
        watch(*field, *window);
    field->setAccessibleDescription(langText(textKey));
    QAccessibleEvent alert(field, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
