#include "app/widgets/WarningBox.h"

#include "app/language/LangText.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QLineEdit>

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
    field->setAccessibleDescription(langText(textKey));
    if (auto* edit = qobject_cast<QLineEdit*>(field)) {
        auto* const refusal = new QObject(edit);
        QObject::connect(edit, &QLineEdit::textEdited, refusal, [edit, refusal] {
            edit->setAccessibleDescription(QString());
            refusal->deleteLater();
        });
    }
    QAccessibleEvent alert(field, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
