#include "vpn/QVPNAdvProperty.h"

#include "app/widgets/FormRows.h"
#include "app/widgets/WarningBox.h"
#include "xml/CustomInfo.h"

using namespace formrows;
using Widgets = Ui_QVPNAdvProperty;

namespace {

// clang-format off
const Text<Widgets> textRows[] = {
    {&Widgets::lineEdit_SaLifeTime, &Widgets::label_SaLifeTime, field<&IPSECCFG::IPSECSALifetime>},
};
// The protocol stands before the algorithms: choosing it sets them back to the first words of its rule.
const Choice<Widgets> choices[] = {
    {&Widgets::comboBox_EncapMode,   &Widgets::label_EncapMode,   field<&IPSECCFG::IPSECEncapsulationMode>},
    {&Widgets::comboBox_IpsecProto,  &Widgets::label_IpsecProto,  field<&IPSECCFG::IPSECSecurityProto>},
    {&Widgets::comboBox_ESP_Auth,    &Widgets::label_ESP_Auth,    field<&IPSECCFG::IPSECESPAuthAlgorithm>},
    {&Widgets::comboBox_ESP_Encrypt, &Widgets::label_ESP_Encrypt, field<&IPSECCFG::IPSECESPEncryption>},
    {&Widgets::comboBox_AH_Auth,     &Widgets::label_AH_Auth,     field<&IPSECCFG::IPSECAHAuthAlgorithm>},
};
const Caption<Widgets> captions[] = {
    {&Widgets::label_SA_Seconds, "VUI_IKESecond"},
    {&Widgets::label_PFS,        field<&IPSECCFG::IPSECPFS>},
    {&Widgets::checkBox_UsePFS,  field<&IPSECCFG::IPSECPFS>},
    {&Widgets::checkBox_UseNAT,  field<&IPSECCFG::IPSECUseNatTranversal>},
};
// clang-format on

constexpr FieldRef pfsField = field<&IPSECCFG::IPSECPFS>;

} // namespace

void QVPNAdvProperty::setIPsecText()
{
    setTexts(ui, textRows);
    setTexts(ui, choices);
    setTexts(ui, captions);
}

void QVPNAdvProperty::setIPsecInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IPSECCFG& ipsec = info->vpn.ipseccfg;

    addWords(ui, choices);
    addWords(ui.comboBox_PFS, pfsField);

    load(ui, textRows, *info);
    load(ui, choices, *info);
    if (info->vpn.basecfg.LNSAsIPSECServer != 1) {
        ui.comboBox_EncapMode->setCurrentIndex(words::Tunnel);
        ui.comboBox_EncapMode->setEnabled(false);
    }

    // Contract: this page takes NAT traversal as on at the value 1 only; the IKE page at any value but 0.
    if (ipsec.IPSECUseNatTranversal == 1) {
        ui.checkBox_UseNAT->setChecked(true);
        forceEspInTunnel();
    }

    enablePfs(false);
    if (selectWord(ui.comboBox_PFS, pfsField, *info)) {
        ui.checkBox_UsePFS->setChecked(true);
        enablePfs(true);
    }
}

// Contract: on this page the focus comes before the message.
void QVPNAdvProperty::saveIpsecCfg()
{
    CustomInfo* info = record();
    if (!info)
        return;
    IPSECCFG& ipsec = info->vpn.ipseccfg;
    WarningBox box("VUI_AdvancedSettings");

    const QString lifetimeText = ui.lineEdit_SaLifeTime->text();
    const unsigned long lifetime = lifetimeText.toULong(nullptr, 10);
    if (lifetime < 30 || lifetime > 604800) {
        box.refuseAt(ui.lineEdit_SaLifeTime, "VUI_InputValidPLS");
        return;
    }
    ipsec.IPSECSALifetime = lifetimeText;

    store(ui, choices, *info);
    ipsec.IPSECUseNatTranversal = ui.checkBox_UseNAT->isChecked() ? 1 : 0;
    ipsec.IPSECPFS = 0;
    if (ui.checkBox_UsePFS->isChecked())
        storeWord(ui.comboBox_PFS, pfsField, *info);
}

void QVPNAdvProperty::OnIpsecProtoChg(int index)
{
    if (index < words::Esp || index > words::AhAndEsp)
        return;
    const bool hasEsp = index != words::Ah;
    const bool hasAh = index != words::Esp;
    ui.comboBox_ESP_Auth->setEnabled(hasEsp);
    ui.comboBox_ESP_Encrypt->setEnabled(hasEsp);
    ui.comboBox_AH_Auth->setEnabled(hasAh);
    if (hasEsp) {
        // Contract: the two protocols together start from SHA256, ESP alone from the first item.
        ui.comboBox_ESP_Auth->setCurrentIndex(hasAh ? words::Sha256 : 0);
        ui.comboBox_ESP_Encrypt->setCurrentIndex(0);
    }
    if (hasAh)
        ui.comboBox_AH_Auth->setCurrentIndex(0);
}

void QVPNAdvProperty::OnUsePFSChk()
{
    const bool isOn = ui.checkBox_UsePFS->isChecked();
    enablePfs(isOn);
    if (isOn)
        ui.comboBox_PFS->setCurrentIndex(0);
}

// Contract: the IKE page does not follow this check box; it reads it when the dialog opens and when it is stored.
void QVPNAdvProperty::OnUseNATChk()
{
    if (ui.checkBox_UseNAT->isChecked()) {
        forceEspInTunnel();
        return;
    }
    ui.comboBox_IpsecProto->setEnabled(true);
    ui.comboBox_ESP_Auth->setEnabled(true);
    ui.comboBox_ESP_Encrypt->setEnabled(true);
    ui.comboBox_EncapMode->setCurrentIndex(words::Tunnel);
    if (const CustomInfo* info = record())
        ui.comboBox_EncapMode->setEnabled(info->vpn.basecfg.LNSAsIPSECServer == 1);
}

/// NAT traversal goes with ESP in tunnel mode only: locks protocol and encapsulation there.
void QVPNAdvProperty::forceEspInTunnel()
{
    ui.comboBox_IpsecProto->setEnabled(false);
    ui.comboBox_IpsecProto->setCurrentIndex(words::Esp);
    ui.comboBox_ESP_Auth->setEnabled(true);
    ui.comboBox_ESP_Encrypt->setEnabled(true);
    ui.comboBox_AH_Auth->setEnabled(false);
    ui.comboBox_EncapMode->setCurrentIndex(words::Tunnel);
    ui.comboBox_EncapMode->setEnabled(false);
}

void QVPNAdvProperty::enablePfs(bool enabled)
{
    ui.label_PFS->setEnabled(enabled);
    ui.comboBox_PFS->setEnabled(enabled);
}
