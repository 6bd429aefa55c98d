#include "advanced/CDynamicPwdDlg.h"

#include "app/language/LangText.h"

#include <QPushButton>

CDynamicPwdDlg::CDynamicPwdDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &CDynamicPwdDlg::OnBnClickedOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &CDynamicPwdDlg::reject);
}

void CDynamicPwdDlg::setWindowText()
{
    setWindowTitle(langText("CUS_DynpwdVifTitle"));
    ui.checkBox_default->setText(langText("CUS_DefaultChecked"));
    ui.checkBox_editable->setText(langText("CUS_ChangeEnable"));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

void CDynamicPwdDlg::OnBnClickedOk()
{
    defaultChecked = ui.checkBox_default->isChecked() ? 1 : 0;
    changeEnable = ui.checkBox_editable->isChecked() ? 1 : 0;
    accept();
}
