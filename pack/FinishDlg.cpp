#include "pack/FinishDlg.h"

#include "app/language/LangText.h"
#include "app/widgets/FitToTexts.h"
#include "pack/WorkThread.h"
#include "xml/CustomInfo.h"

#include <QPushButton>

FinishDlg::FinishDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);

    setWindowTitle(langText("finish_title"));
    ui.groupBox_addinfo->setTitle(langText("CusAboutInfoComBox"));
    ui.label_addinfo->setText(langText("SetAddInfoHint"));
    ui.lineEdit_addinfo->setAccessibleName(langText("CusAboutInfoComBox"));
    ui.checkBox_cusSetup->setText(langText("GenSetupChk"));
    ui.label_cusSetup->setText(langText("IfGenSetupDes"));
    ui.checkBox_cusUpdate->setText(langText("GenUpdateChk"));
    ui.label_cusUpdate->setText(langText("GenUpdateHint"));
    ui.checkBox_cusCusUpd->setText(langText("GenCusUpdChk"));
    ui.label_cusCusUpd->setText(langText("GenCusUpdHint"));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));

    fitToTexts(*this);

    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &FinishDlg::showCompleteDlg);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &FinishDlg::reject);
}

void FinishDlg::initalDialog(CustomInfo* info)
{
    m_pCustomInfo = info;
    if (info)
        ui.lineEdit_addinfo->setText(info->common.cusAddInfo);
}

void FinishDlg::showCompleteDlg()
{
    // Contract: the mask is added to, not assigned; the dialog is shown once a construction.
    if (ui.checkBox_cusSetup->isChecked())
        m_iPackMask += PackageSetup;
    if (ui.checkBox_cusUpdate->isChecked())
        m_iPackMask += PackageUpdate;
    if (ui.checkBox_cusCusUpd->isChecked())
        m_iPackMask += PackageCusUpd;
    if (m_pCustomInfo)
        m_pCustomInfo->common.cusAddInfo = ui.lineEdit_addinfo->text();
    accept();
}
