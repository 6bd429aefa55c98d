#include "advanced/CWanEscapeDlg.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "common/AddressRules.h"
#include "common/PortRules.h"
#include "xml/RecordRows.h"

#include <QIntValidator>
#include <QPushButton>

#include <algorithm>

namespace {

bool isEmptyOrLoopback(const QString& address)
{
    return address.isEmpty() || address.compare(QLatin1String("127.0.0.1"), Qt::CaseInsensitive) == 0;
}

/// Takes digits only: signs, and the separators that a language writes between thousands, would be stored with the
/// text.
class PortValidator : public QIntValidator
{
public:
    explicit PortValidator(QObject* parent) : QIntValidator(0, highestPort, parent) {}

    State validate(QString& input, int& position) const override
    {
        const bool isDigits = std::all_of(input.cbegin(), input.cend(), [](QChar sign) {
            return sign >= QLatin1Char('0') && sign <= QLatin1Char('9');
        });
        return isDigits ? QIntValidator::validate(input, position) : Invalid;
    }
};

} // namespace

CWanEscapeDlg::CWanEscapeDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    ui.lineEdit_pyxPort->setValidator(new PortValidator(this));
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &CWanEscapeDlg::onOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &CWanEscapeDlg::close);
}

void CWanEscapeDlg::setWindowText()
{
    setWindowTitle(langText("CUS_Wancotrol_Escape"));
    ui.label_pyxIp->setText(labelText(field<&BasicFunctionInfo::wanControlEscapePyxIp>));
    ui.label_pyxPort->setText(labelText(field<&BasicFunctionInfo::wanControlEscapePyxPort>));
    ui.label_dnsIp->setText(labelText(field<&BasicFunctionInfo::wanControlEscapeDns>));
    ui.label_pyxIp_bak->setText(labelText(field<&BasicFunctionInfo::wanControlEscapePyxIpBackup>));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

void CWanEscapeDlg::onOk()
{
    const QString typedAddress = ui.lineEdit_pyxIp->text();
    const QString typedPort = ui.lineEdit_pyxPort->text();
    const QString typedDns = ui.lineEdit_dnsIp->text();
    const QString typedBackup = ui.lineEdit_pyxIp_bak->text();

    WarningBox box("SCE_SceneTipsTitle", this);
    if (isEmptyOrLoopback(typedAddress)) {
        box.refuse("CUS_Wancotrol_Escape_PyxIPIput", ui.lineEdit_pyxIp);
        return;
    }
    // Contract: port 0 passes.
    if (typedPort.isEmpty() || !isSignedPortFromZero(typedPort)) {
        box.refuse("CUS_Wancotrol_Escape_PyxPort_Err", ui.lineEdit_pyxPort);
        return;
    }
    if (isEmptyOrLoopback(typedDns)) {
        box.refuse("CUS_Wancotrol_Escape_DNSIPInput", ui.lineEdit_dnsIp);
        return;
    }
    if (!isDottedAddress(typedAddress)) {
        box.refuse("CUS_Wancotrol_Escape_PyxIpErr", ui.lineEdit_pyxIp);
        return;
    }
    // Contract: a malformed DNS address moves the focus to the backup field. The refusal is announced where it belongs.
    if (!isDottedAddress(typedDns)) {
        box.refuse("CUS_Wancotrol_Escape_DnsIpErr", ui.lineEdit_dnsIp);
        ui.lineEdit_pyxIp_bak->setFocus();
        return;
    }
    // Contract: the backup address may be empty, and it alone may be "127.0.0.1".
    if (!typedBackup.isEmpty() && !isDottedAddress(typedBackup)) {
        box.refuse("CUS_Wancotrol_Escape_PyxIpErr", ui.lineEdit_pyxIp_bak);
        return;
    }

    address = typedAddress;
    port = typedPort;
    dnsAddress = typedDns;
    backupAddress = typedBackup;
    accept();
}
