#include "advanced/CMsgAuthDlg.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "common/AddressRules.h"
#include "common/PortRules.h"
#include "xml/RecordRows.h"

#include <QPushButton>

CMsgAuthDlg::CMsgAuthDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &CMsgAuthDlg::OnBnClickedOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &CMsgAuthDlg::reject);
}

void CMsgAuthDlg::setWindowText()
{
    setWindowTitle(langText("CUS_MsgAuthTitle"));
    ui.checkBox_default->setText(langText("CUS_DefaultChecked"));
    ui.checkBox_editable->setText(langText("CUS_ChangeEnable"));
    ui.label_MsgAuthSrv_IP->setText(labelText(field<&BasicFunctionInfo::msgAuthServIP>));
    ui.label_MsgAuthSrv_Port->setText(labelText(field<&BasicFunctionInfo::msgAuthServPort>));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

bool CMsgAuthDlg::IsIPFormat(const QString& address)
{
    return isDottedAddress(address);
}

// Contract: every address passes, and no check asks: the server is checked for its form only, so that "0.0.0.0" and
// "127.0.0.1" are accepted.
bool CMsgAuthDlg::CheckIpAddr(QString&)
{
    return true;
}

void CMsgAuthDlg::OnBnClickedOk()
{
    // Contract: the flags are set and never cleared. A box ticked during a refused OK counts, even if it is unticked
    // before the next one.
    if (ui.checkBox_default->isChecked())
        defaultChecked = 1;
    if (ui.checkBox_editable->isChecked())
        changeEnable = 1;

    WarningBox box("SCE_SceneTipsTitle", this);
    const QString typedAddress = ui.lineEdit_MsgAuthSrv_IP->text();
    if (!IsIPFormat(typedAddress)) {
        box.refuse("CUS_MsgAuthIPErr", ui.lineEdit_MsgAuthSrv_IP);
        return;
    }
    address = typedAddress;

    const std::optional<quint32> typedPort = unsignedPortNumberFromOne(ui.lineEdit_MsgAuthSrv_Port->text());
    if (!typedPort) {
        box.refuse("CUS_MsgAuthPortErr", ui.lineEdit_MsgAuthSrv_Port);
        return;
    }
    port = *typedPort;
    accept();
}
