#include "advanced/CustomAdvProperty.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/WarningBox.h"
#include "vpn/QVPNAdvProperty.h"

#include <QRegExp>
#include <QRegExpValidator>

using namespace formrows;
using Widgets = Ui_CustomAdvProperty;

namespace {

using Base = IPSECVPNBASECFG;
constexpr FieldRef authMethodField = field<&IKECFG::IKEAuthMethod>;

/// The field's limit, in characters.
bool isTooLong(const QString& text, const FieldRef& field)
{
    return text.size() > field.traits().longest;
}

// clang-format off
const Caption<Widgets> captions[] = {
    {&Widgets::label_LNSIp,             field<&Base::LNSIP>},
    {&Widgets::label_Bak_LNSIp,         field<&Base::LNSIPSecond>},
    {&Widgets::checkBox_EnableIpSec,    field<&Base::useIPSEC>},
    {&Widgets::label_AuthMethod,        authMethodField},
    {&Widgets::label_Authenticator,     field<&Base::preSharedKey>},
    {&Widgets::label_IpSecSever,        field<&Base::LNSAsIPSECServer>},
    {&Widgets::radioButton_useLNS,      words::ipsecServers.at(0).key},
    {&Widgets::radioButton_useOtherLNS, words::ipsecServers.at(1).key},
    {&Widgets::label_IPSECServerIP,     field<&Base::otherIPSECServer>},
    {&Widgets::pushButton_Adv,          "VUI_BASEHeigth"},
};
const Flag<Widgets> flagRows[] = {
    {&Widgets::checkBox_upVer,  field<&Base::upVersion>},
    {&Widgets::checkBox_reConn, field<&Base::resumConn>},
};
// clang-format on

} // namespace

void CustomAdvProperty::setL2tpTexts()
{
    setTexts(ui, captions);
    setTexts(ui, flagRows);
    ui.comboBox_authMethod->clear();
    addWords(ui.comboBox_authMethod, authMethodField);
}

void CustomAdvProperty::initL2tpIpsecPage(CustomInfo* info)
{
    const IPSECVPNBASECFG& base = info->vpn.basecfg;
    ui.lineEdit_preshareKey->setValidator(new QRegExpValidator(QRegExp(QStringLiteral(R"([\x20-\x7e]+)")), this));
    limit(ui.lineEdit_preshareKey, field<&Base::preSharedKey>);
    limit(ui.lineEdit_LNSIp, field<&Base::LNSIP>);
    limit(ui.lineEdit_LNSIpSecond, field<&Base::LNSIPSecond>);
    limit(ui.lineEdit_IPSECServerIP, field<&Base::otherIPSECServer>);

    ui.lineEdit_LNSIp->setText(base.LNSIP);
    if (base.LNSIP.compare(base.LNSIPSecond, Qt::CaseInsensitive) != 0)
        ui.lineEdit_LNSIpSecond->setText(base.LNSIPSecond);

    const bool useIpsec = base.useIPSEC != 0;
    ui.checkBox_EnableIpSec->setChecked(useIpsec);
    enableServerChoice(useIpsec);
    enableAuthMethod(useIpsec);
    if (useIpsec) {
        ui.lineEdit_preshareKey->setText(base.preSharedKey);
        const bool useCertificate = info->vpn.ikecfg.IKEAuthMethod.compare(
                                        stored(words::authMethods, words::Certificate), Qt::CaseInsensitive) == 0;
        ui.comboBox_authMethod->setCurrentIndex(useCertificate ? words::Certificate : words::PreSharedKey);
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
    load(ui, flagRows, *info);
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
    if (method == words::PreSharedKey || method == words::Certificate)
        enableKey(method == words::PreSharedKey);
}

void CustomAdvProperty::OnIpsecEnable()
{
    const bool useIpsec = ui.checkBox_EnableIpSec->isChecked();
    if (useIpsec) {
        if (ui.comboBox_authMethod->currentIndex() != words::Certificate)
            ui.comboBox_authMethod->setCurrentIndex(words::PreSharedKey);
        enableKey(ui.comboBox_authMethod->currentIndex() == words::PreSharedKey);
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
    if (isTooLong(address, field<&Base::LNSIP>)) {
        box.refuse("VUI_InputTooLongLNSIP", ui.lineEdit_LNSIp);
        return;
    }
    vpn.basecfg.LNSIP = address;
    const QString secondAddress = ui.lineEdit_LNSIpSecond->text();
    if (isTooLong(secondAddress, field<&Base::LNSIPSecond>)) {
        box.refuse("VUI_InputTooLongSecondLNSIP", ui.lineEdit_LNSIpSecond);
        return;
    }
    // Contract: an empty field keeps the old value, for a second address equal to the first is not shown.
    if (!secondAddress.isEmpty())
        vpn.basecfg.LNSIPSecond = secondAddress;
    store(ui, flagRows, *record);
    if (!storeIpsec(box))
        return;
    // Contract: the peer names are asked for with IPsec off and without the tab, too.
    if (vpn.ipseccfg.IPSECUseNatTranversal != 0 &&
        (vpn.ikecfg.IKELocalName.isEmpty() || vpn.ikecfg.IKERemoteName.isEmpty())) {
        box.say("VUI_InputLocalPeerName");
        return;
    }
    if (vpn.basecfg.LNSAsIPSECServer == 0)
        vpn.ipseccfg.IPSECEncapsulationMode = stored(words::encapsulations, words::Tunnel);
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
    if (ui.comboBox_authMethod->currentIndex() == words::PreSharedKey) {
        const QString key = ui.lineEdit_preshareKey->text();
        if (key.isEmpty())
            return box.refuse("VUI_InvalidPreSharedKey", ui.lineEdit_preshareKey);
        authMethod = stored(words::authMethods, words::PreSharedKey);
        base.preSharedKey = key;
    } else if (ui.comboBox_authMethod->currentIndex() == words::Certificate) {
        authMethod = stored(words::authMethods, words::Certificate);
    }
    if (!ui.radioButton_useOtherLNS->isChecked()) {
        base.LNSAsIPSECServer = 1;
        return true;
    }
    const QString server = ui.lineEdit_IPSECServerIP->text();
    // Contract: here the focus moves before the message comes.
    if (isTooLong(server, field<&Base::otherIPSECServer>))
        return box.refuseAt(ui.lineEdit_IPSECServerIP, "VUI_InputTooLongIPSECSever");
    // Contract: an empty field keeps the old address.
    if (!server.isEmpty())
        base.otherIPSECServer = server;
    base.LNSAsIPSECServer = 0;
    return true;
}
