#include "app/widgets/WarningBox.h"

#include "app/language/LangText.h"

#include <QAbstractButton>

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
    if (focus)
        focus->setFocus();
    return false;
}
