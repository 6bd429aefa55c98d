#include "advanced/CSslVpnIp.h"

#include "advanced/GatewayListHolder.h"
#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "common/AddressRules.h"
#include "common/PortRules.h"
#include "xml/RecordRows.h"

#include <QPushButton>

#include <algorithm>

CSslVpnIp::CSslVpnIp(SSLVPNRemoteInfo& info, int mode, QWidget* parent)
    : QDialog(parent), gateway(info), dialogMode(mode)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowText();
    showGateway();
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &CSslVpnIp::OnBnClickedOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &CSslVpnIp::reject);
    connect(ui.buttonGroup, qOverload<QAbstractButton*>(&QButtonGroup::buttonClicked), this, &CSslVpnIp::vpnSrvClicked);
}

void CSslVpnIp::setWindowText()
{
    setWindowTitle(langText("SSL_SERV_ADDR_TITLE"));
    ui.label_vnsSvr_disname->setText(labelText(field<&SSLVPNRemoteInfo::iPDes>));
    ui.radioButton_vnsSvr_IP->setText(langText("SSL_VPNSERV_IP"));
    ui.lineEdit_vnsSvr_IP->setAccessibleName(langText("SSL_VPNSERV_IP"));
    ui.radioButton_vnsSvr_DNS->setText(langText("SSL_VPNSERV_DOMAIN"));
    ui.lineEdit_vnsSvr_DNS->setAccessibleName(langText("SSL_VPNSERV_DOMAIN"));
    ui.label_vnsSvr_port->setText(langText("SSL_VPNSERV_PORT"));
    ui.checkBox_vnsSvr_default->setText(labelText(field<&SSLVPNOptionsInfo::defaultAddress>));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
}

void CSslVpnIp::showGateway()
{
    ui.lineEdit_vnsSvr_disname->setText(gateway.iPDes);
    ui.lineEdit_vnsSvr_port->setText(gateway.port);
    ui.checkBox_vnsSvr_default->setChecked(dialogMode == DefaultTicked);
    ui.checkBox_vnsSvr_default->setEnabled(dialogMode != DefaultTaken);

    const bool showsIp = gateway.ip.isEmpty() || IsIPFormat(gateway.ip);
    QRadioButton* const kind = showsIp ? ui.radioButton_vnsSvr_IP : ui.radioButton_vnsSvr_DNS;
    QLineEdit* const edit = showsIp ? ui.lineEdit_vnsSvr_IP : ui.lineEdit_vnsSvr_DNS;
    ui.lineEdit_vnsSvr_IP->setEnabled(false);
    ui.lineEdit_vnsSvr_DNS->setEnabled(false);
    kind->setChecked(true);
    edit->setText(gateway.ip);
    edit->setEnabled(true);
    ui.lineEdit_vnsSvr_disname->setFocus();
}

bool CSslVpnIp::IsIPFormat(const QString& address)
{
    return isDottedAddress(address);
}

// Contract: exactly these four texts are refused; their neighbours, such as "169.254.0.1", pass.
bool CSslVpnIp::CheckIpAddr(QString& address)
{
    static const QLatin1String refused[] = {QLatin1String("0.0.0.0"), QLatin1String("127.0.0.1"),
                                            QLatin1String("127.0.0.0"), QLatin1String("169.254.0.0")};
    return std::find(std::begin(refused), std::end(refused), address) == std::end(refused);
}

void CSslVpnIp::vpnSrvClicked(QAbstractButton* button)
{
    const bool isIp = button->objectName() == QLatin1String("radioButton_vnsSvr_IP");
    ui.lineEdit_vnsSvr_IP->setEnabled(isIp);
    ui.lineEdit_vnsSvr_DNS->setEnabled(!isIp);
    (isIp ? ui.lineEdit_vnsSvr_IP : ui.lineEdit_vnsSvr_DNS)->setFocus();
}

void CSslVpnIp::OnBnClickedOk()
{
    const QString port = ui.lineEdit_vnsSvr_port->text().trimmed();
    const QString name = ui.lineEdit_vnsSvr_disname->text().trimmed();
    const bool isIp = ui.radioButton_vnsSvr_IP->isChecked();
    QLineEdit* const addressEdit = isIp ? ui.lineEdit_vnsSvr_IP : ui.lineEdit_vnsSvr_DNS;
    QString address = addressEdit->text().trimmed();

    WarningBox box("SCE_SceneTipsTitle", this);
    if (name.isEmpty()) {
        box.refuse("SSL_DISPNAME_EMPTY", ui.lineEdit_vnsSvr_disname);
        return;
    }
    if (isIp ? !IsIPFormat(address) || !CheckIpAddr(address) : address.isEmpty()) {
        box.refuse("SSL_Ipv4Err", addressEdit);
        return;
    }
    if (!isUnsignedPortFromOne(port)) {
        box.refuse("SSL_PortErr", ui.lineEdit_vnsSvr_port);
        return;
    }

    // The texts that the dialog opened with are no duplicates: they stand for the gateway being edited. The name and
    // the address of one gateway are compared before the next gateway.
    if (const auto* const holder = qobject_cast<GatewayListHolder*>(parent())) {
        for (const SSLVPNRemoteInfo& other : holder->gateways()) {
            if (other.iPDes == name && name != gateway.iPDes) {
                box.refuse("SSL_DISPNAME_Exist", ui.lineEdit_vnsSvr_disname);
                return;
            }
            if (other.ip == address && address != gateway.ip) {
                box.refuse("SSL_SERVADDRESS_Exist", addressEdit);
                return;
            }
        }
    }

    gateway.ip = address;
    gateway.port = port;
    gateway.iPDes = name;
    gateway.remoteSlot = 0;
    dialogMode = ui.checkBox_vnsSvr_default->isChecked() ? 1 : 0;
    accept();
}
