#include "advanced/CInput1XDomainDlg.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "xml/CustomInfo.h"
#include "xml/RecordRows.h"

#include <QPushButton>

#include "ui_CInput1XDomainDlg.h"

namespace {

// Contract: this limit stands beside the edits' own maximum of 30.
constexpr int maxLength = 32;

} // namespace

CInput1XDomainDlg::CInput1XDomainDlg(SUIDomainInfo& info, unsigned long hasDefault, const QString& shownDomain,
                                     const QString& shownDescription, bool startChecked, bool checkDuplicates,
                                     QWidget* parent)
    : QDialog(parent), defaultExists(hasDefault), domain(shownDomain), description(shownDescription), m_info(info),
      m_bCheckDuplicates(checkDuplicates), ui(std::make_unique<Ui_inputDomain>())
{
    ui->setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    ui->lineEdit_domain->setText(domain);
    ui->lineEdit_des_domain->setText(description);
    ui->checkBox_dftDomain->setChecked(startChecked);
    ui->checkBox_dftDomain->setEnabled(defaultExists == 0);
    connect(ui->buttonBox, &QDialogButtonBox::accepted, this, &CInput1XDomainDlg::OnBnClickedOk);
    connect(ui->buttonBox, &QDialogButtonBox::rejected, this, &CInput1XDomainDlg::reject);
}

CInput1XDomainDlg::~CInput1XDomainDlg() = default;

void CInput1XDomainDlg::setWindowText()
{
    setWindowTitle(langText("CUS_DomainTitle"));
    ui->checkBox_dftDomain->setText(labelText(field<&SUIDomainInfo::domainDefault>));
    ui->label_domain->setText(langText("CUS_InputDomainStatic"));
    ui->label_des_domain->setText(langText("CUS_InputDomainTitle"));
    ui->buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui->buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

void CInput1XDomainDlg::OnBnClickedOk()
{
    // Contract: the results are stored before any check and stay stored after a refusal.
    domain = ui->lineEdit_domain->text();
    description = ui->lineEdit_des_domain->text();
    defaultExists = ui->checkBox_dftDomain->isChecked() ? 1 : 0;

    WarningBox box("CUS_InputDomainTitle", this);
    if (m_bCheckDuplicates) {
        // The name and the description of one entry are compared before the next entry.
        for (const DomainDetail& entry : qAsConst(m_info.domaindetail)) {
            if (entry.domainName == domain) {
                box.refuse("CUS_DomainExistWarning", ui->lineEdit_domain);
                return;
            }
            if (entry.domainDesp == description) {
                box.refuse("CUS_DomainDesExistWarning", ui->lineEdit_des_domain);
                return;
            }
        }
    }
    // Contract: an empty domain passes; only the description is required.
    if (domain.size() > maxLength) {
        box.refuse("CUS_InputDomainLenErr", ui->lineEdit_domain);
        return;
    }
    if (description.isEmpty()) {
        box.refuse("CUS_InputDomainErr", ui->lineEdit_des_domain);
        return;
    }
    if (description.size() > maxLength) {
        box.refuse("CUS_InputDomainLenErr", ui->lineEdit_des_domain);
        return;
    }
    accept();
}
