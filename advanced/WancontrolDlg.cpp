#include "advanced/WancontrolDlg.h"

#include "app/language/LangText.h"

#include <QPushButton>

WancontrolDlg::WancontrolDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &WancontrolDlg::onOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &WancontrolDlg::close);
}

void WancontrolDlg::setWindowText()
{
    setWindowTitle(langText("wancontrol_title"));
    ui.label_Des->setText(langText("Wancontrol_Opt_Stc"));
    ui.radioButton_Pass->setText(langText("Pass_Rad"));
    ui.radioButton_Deny->setText(langText("Deny_Rad"));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

// Contract: only OK reads the choice. After Cancel passAction is still 1, whatever was selected.
void WancontrolDlg::onOk()
{
    passAction = ui.radioButton_Pass->isChecked() ? 1 : 0;
    accept();
}
