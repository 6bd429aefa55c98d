#include "advanced/CustomAdvProperty.h"
#include "advanced/CustomAdvPropertyRows.h"
#include "app/widgets/WarningBox.h"
#include "vpn/QVPNAdvProperty.h"

#include <QRegExp>
#include <QRegExpValidator>

using namespace advanced;

namespace {

constexpr int s_longestAddress = 255; // characters
constexpr int s_longestKey = 128;

/// Positions in the list of authentication methods.
enum AuthMethod
{
    PreSharedKey,
    Certificate
};

// clang-format off
const CaptionRow captions[] = {
    {&Widgets::label_LNSIp,             "VUI_BASELNSIP"},
    {&Widgets::label_Bak_LNSIp,         "VUI_SECONDLNSIP"},
    {&Widgets::checkBox_EnableIpSec,    "VUI_BASEUseIPSEC"},
    {&Widgets::label_AuthMethod,        "VUI_IKEAuthMethod"},
    {&Widgets::label_Authenticator,     "VUI_BASEPreSharedKey"},
    {&Widgets::label_IpSecSever,        "VUI_BASEIPSECSERVERIPCombox"},
    {&Widgets::radioButton_useLNS,      "VUI_BASELNSASIPSECServer"},
    {&Widgets::radioButton_useOtherLNS, "VUI_BASEUseOtherIPSECServer"},
    {&Widgets::label_IPSECServerIP,     "VUI_BASEIPSECSERVERIP"},
    {&Widgets::pushButton_Adv,          "VUI_BASEHeigth"},
};
const FlagRow<IPSECVPNBASECFG> flagRows[] = {
    {&Widgets::checkBox_upVer,  "VUI_UpVersion", &IPSECVPNBASECFG::upVersion},
    {&Widgets::checkBox_reConn, "VUI_ResumeCon", &IPSECVPNBASECFG::resumConn},
};
// clang-format on

} // namespace

void CustomAdvProperty::setL2tpTexts()
{
    setTexts(ui, captions);
    setTexts(ui, flagRows);
    ui.comboBox_authMethod->clear();
    ui.comboBox_authMethod->addItems({langText("VUI_BASEComboMethod1"), langText("VUI_BASEComboMethod2")});
}

void CustomAdvProperty::initL2tpIpsecPage(CustomInfo* info)
{
    const IPSECVPNBASECFG& base = info->vpn.basecfg;
    ui.lineEdit_preshareKey->setValidator(new QRegExpValidator(QRegExp(QStringLiteral(R"([\x20-\x7e]+)")), this));
    ui.lineEdit_preshareKey->setMaxLength(s_longestKey);
    for (QLineEdit* edit : {ui.lineEdit_LNSIp, ui.lineEdit_LNSIpSecond, ui.lineEdit_IPSECServerIP})
        edit->setMaxLength(s_longestAddress);

    ui.lineEdit_LNSIp->setText(base.LNSIP);
    if (base.LNSIP.compare(base.LNSIPSecond, Qt::CaseInsensitive) != 0)
        ui.lineEdit_LNSIpSecond->setText(base.LNSIPSecond);

    const bool useIpsec = base.useIPSEC != 0;
    ui.checkBox_EnableIpSec->setChecked(useIpsec);
    enableServerChoice(useIpsec);
    enableAuthMethod(useIpsec);
    if (useIpsec) {
        ui.lineEdit_preshareKey->setText(base.preSharedKey);
        const bool useCertificate =
            info->vpn.ikecfg.IKEAuthMethod.compare(QLatin1String("CA-Windows"), Qt::CaseInsensitive) == 0;
        ui.comboBox_authMethod->setCurrentIndex(useCertificate ? Certificate : PreSharedKey);
        enableKey(!useCertificate);
    } else {
        enableKey(false);
    }

    const bool useLns = base.LNSAsIPSECServer != 0;
    (useLns ? ui.radioButton_useLNS : ui.radioButton_useOtherLNS)->setChecked(true);
    if (!useLns)
        ui.lineEdit_IPSECServerIP->setText(base.otherIPSECServer);
    // Contract: the other server follows LNSAsIPSECServer alone. With IPsec off its label and edit may stand enabled
    // while the rest is grey.
    enableOtherServer(!useLns);
    load(ui, flagRows, base);
}

void CustomAdvProperty::enableKey(bool enable)
{
    ui.label_Authenticator->setEnabled(enable);
    ui.lineEdit_preshareKey->setEnabled(enable);
}

void CustomAdvProperty::enableAuthMethod(bool enable)
{
    ui.label_AuthMethod->setEnabled(enable);
    ui.comboBox_authMethod->setEnabled(enable);
}

void CustomAdvProperty::enableServerChoice(bool enable)
{
    ui.radioButton_useLNS->setEnabled(enable);
    ui.radioButton_useOtherLNS->setEnabled(enable);
}

void CustomAdvProperty::enableOtherServer(bool enable)
{
    ui.label_IPSECServerIP->setEnabled(enable);
    ui.lineEdit_IPSECServerIP->setEnabled(enable);
}

void CustomAdvProperty::OnUseLNS()
{
    enableOtherServer(false);
}

void CustomAdvProperty::OnUseOtherLNS()
{
    enableOtherServer(true);
}

void CustomAdvProperty::onAuthModeSel(int)
{
    // Contract: the current entry of the list counts, not the argument. Without an entry nothing changes.
    const int method = ui.comboBox_authMethod->currentIndex();
    if (method == PreSharedKey || method == Certificate)
        enableKey(method == PreSharedKey);
}

void CustomAdvProperty::OnIpsecEnable()
{
    const bool useIpsec = ui.checkBox_EnableIpSec->isChecked();
    if (useIpsec) {
        if (ui.comboBox_authMethod->currentIndex() != Certificate)
            ui.comboBox_authMethod->setCurrentIndex(PreSharedKey);
        enableKey(ui.comboBox_authMethod->currentIndex() == PreSharedKey);
        const bool useLns = ui.radioButton_useLNS->isChecked();
        if (!useLns)
            ui.radioButton_useOtherLNS->setChecked(true);
        enableOtherServer(!useLns);
    } else {
        enableKey(false);
        enableOtherServer(false);
    }
    enableAuthMethod(useIpsec);
    enableServerChoice(useIpsec);
}

void CustomAdvProperty::OnAdvProperty()
{
    if (!record)
        return;
    // Contract: the opposite sense of the value that OK stores for the same controls. The VPN dialog works with this
    // one, and after Cancel it remains in the record.
    const bool isZero = ui.checkBox_EnableIpSec->isChecked() && !ui.radioButton_useOtherLNS->isChecked();
    record->vpn.basecfg.LNSAsIPSECServer = isZero ? 0 : 1;
    QVPNAdvProperty dialog(this);
    dialog.setInital();
    dialog.exec();
}

void CustomAdvProperty::saveL2tpIpsecCfg()
{
    if (!record)
        return;
    L2TP_IPSEC_VPN_OptionInfo& vpn = record->vpn;
    WarningBox box("VUI_AdvancedSettings", this);
    const QString address = ui.lineEdit_LNSIp->text();
    if (address.size() > s_longestAddress) {
        box.refuse("VUI_InputTooLongLNSIP", ui.lineEdit_LNSIp);
        return;
    }
    vpn.basecfg.LNSIP = address;
    const QString secondAddress = ui.lineEdit_LNSIpSecond->text();
    if (secondAddress.size() > s_longestAddress) {
        box.refuse("VUI_InputTooLongSecondLNSIP", ui.lineEdit_LNSIpSecond);
        return;
    }
    // Contract: an empty field keeps the old value, for a second address equal to the first is not shown.
    if (!secondAddress.isEmpty())
        vpn.basecfg.LNSIPSecond = secondAddress;
    store(ui, flagRows, vpn.basecfg);
    if (!storeIpsec(box))
        return;
    // Contract: the peer names are asked for with IPsec off and without the tab, too.
    if (vpn.ipseccfg.IPSECUseNatTranversal != 0 &&
        (vpn.ikecfg.IKELocalName.isEmpty() || vpn.ikecfg.IKERemoteName.isEmpty())) {
        box.say("VUI_InputLocalPeerName");
        return;
    }
    if (vpn.basecfg.LNSAsIPSECServer == 0)
        vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Tunnel");
}

bool CustomAdvProperty::storeIpsec(WarningBox& box)
{
    IPSECVPNBASECFG& base = record->vpn.basecfg;
    QString& authMethod = record->vpn.ikecfg.IKEAuthMethod;
    if (!ui.checkBox_EnableIpSec->isChecked()) {
        base.useIPSEC = 0;
        base.LNSAsIPSECServer = 1;
        authMethod.clear();
        base.preSharedKey.clear();
        base.otherIPSECServer.clear();
        return true;
    }
    base.useIPSEC = 1;
    if (ui.comboBox_authMethod->currentIndex() == PreSharedKey) {
        const QString key = ui.lineEdit_preshareKey->text();
        if (key.isEmpty())
            return box.refuse("VUI_InvalidPreSharedKey", ui.lineEdit_preshareKey);
        authMethod = QStringLiteral("PRE-SHARE");
        base.preSharedKey = key;
    } else if (ui.comboBox_authMethod->currentIndex() == Certificate) {
        authMethod = QStringLiteral("CA-Windows");
    }
    if (!ui.radioButton_useOtherLNS->isChecked()) {
        base.LNSAsIPSECServer = 1;
        return true;
    }
    const QString server = ui.lineEdit_IPSECServerIP->text();
    if (server.size() > s_longestAddress) {
        // Contract: here the focus moves before the message comes.
        ui.lineEdit_IPSECServerIP->setFocus();
        return box.refuse("VUI_InputTooLongIPSECSever");
    }
    // Contract: an empty field keeps the old address.
    if (!server.isEmpty())
        base.otherIPSECServer = server;
    base.LNSAsIPSECServer = 0;
    return true;
}
