#include "advanced/UninstallPasswd.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "xml/RecordRows.h"

#include <QPushButton>

UninstallPasswd::UninstallPasswd(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &UninstallPasswd::onOkBtnClicked);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &UninstallPasswd::reject);
}

void UninstallPasswd::setWindowText()
{
    setWindowTitle(langText("CUS_Uinstall_Password_Caption"));
    ui.input_passwd->setText(labelText(field<&BasicFunctionInfo::uninstallPassword>));
    ui.confirm_passwd->setText(langText("CUS_Uinstall_Password_Confirm"));
    ui.checkBox_extend->setText(labelText(field<&BasicFunctionInfo::uninstallPasswordExtend>));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

void UninstallPasswd::onOkBtnClicked()
{
    // Contract: with the extended password the two fields are not read, and the password stays empty.
    if (ui.checkBox_extend->isChecked()) {
        extendPassword = 1;
        accept();
        return;
    }

    WarningBox box("SCE_SceneTipsTitle", this);
    // Contract: blanks at the ends belong to the password; blanks alone are a password.
    const QString typed = ui.input->text();
    if (typed.isEmpty()) {
        box.refuse("SMT_InputPwdMsgBox", ui.input);
        return;
    }
    if (typed != ui.confirm->text()) {
        box.say("SMT_PwdDismatchMsgBox");
        ui.input->clear();
        ui.confirm->clear();
        ui.input->setFocus();
        announceRefusal(ui.input, "SMT_PwdDismatchMsgBox");
        return;
    }
    password = typed;
    accept();
}
