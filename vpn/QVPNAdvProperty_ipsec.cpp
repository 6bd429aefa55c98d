#include "vpn/QVPNAdvProperty.h"

#include "app/widgets/OptionLists.h"
#include "app/widgets/WarningBox.h"
#include "vpn/ComboItems.h"
#include "vpn/PageRows.h"
#include "xml/CustomInfo.h"

#include <iterator>

using namespace rows;

namespace {

// clang-format off
const LabelRow labelRows[] = {
    {&Widgets::label_EncapMode,   "VUI_IPSECEncapMode"},
    {&Widgets::label_SaLifeTime,  "VUI_IPSECSALifetime"},
    {&Widgets::label_SA_Seconds,  "VUI_IKESecond"},
    {&Widgets::label_IpsecProto,  "VUI_IPSECAdopSecuriProto"},
    {&Widgets::label_ESP_Auth,    "VUI_IPSECESPAuth"},
    {&Widgets::label_ESP_Encrypt, "VUI_IPSECESPEncypt"},
    {&Widgets::label_AH_Auth,     "VUI_IPSECAHAuth"},
    {&Widgets::label_PFS,         "VUI_UsePFS"},
};

const CheckRow checkRows[] = {
    {&Widgets::checkBox_UsePFS, "VUI_UsePFS"},
    {&Widgets::checkBox_UseNAT, "VUI_IPSECUseNat"},
};

const EditRow<IPSECCFG> editRows[] = {
    {&Widgets::lineEdit_SaLifeTime, 6, &IPSECCFG::IPSECSALifetime},
};

// The protocol stands before the algorithms: choosing it sets them back to the first items of its rule.
const ComboRow<IPSECCFG> comboRows[] = {
    {&Widgets::comboBox_EncapMode,   items::encapsulations,    &IPSECCFG::IPSECEncapsulationMode},
    {&Widgets::comboBox_IpsecProto,  items::securityProtos,    &IPSECCFG::IPSECSecurityProto},
    {&Widgets::comboBox_ESP_Auth,    items::espAuthAlgorithms, &IPSECCFG::IPSECESPAuthAlgorithm},
    {&Widgets::comboBox_ESP_Encrypt, items::espEncryptions,    &IPSECCFG::IPSECESPEncryption},
    {&Widgets::comboBox_AH_Auth,     items::ahAuthAlgorithms,  &IPSECCFG::IPSECAHAuthAlgorithm},
};
// clang-format on

} // namespace

void QVPNAdvProperty::setIPsecText()
{
    showLabels(ui, labelRows);
    showCheckBoxes(ui, checkRows);
}

void QVPNAdvProperty::setIPsecInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IPSECCFG& ipsec = info->vpn.ipseccfg;

    fillCombos(ui, comboRows);
    for (const options::PfsGroup& group : options::pfsGroups)
        ui.comboBox_PFS->addItem(QLatin1String(group.text));

    loadEdits(ui, editRows, ipsec);
    selectCombos(ui, comboRows, ipsec);
    if (info->vpn.basecfg.LNSAsIPSECServer != 1) {
        ui.comboBox_EncapMode->setCurrentIndex(items::tunnel);
        ui.comboBox_EncapMode->setEnabled(false);
    }

    // Contract: this page takes NAT traversal as on at the value 1 only; the IKE page at any value but 0.
    if (ipsec.IPSECUseNatTranversal == 1) {
        ui.checkBox_UseNAT->setChecked(true);
        forceEspInTunnel();
    }

    enablePfs(false);
    for (int index = 0; index < static_cast<int>(std::size(options::pfsGroups)); ++index) {
        if (ipsec.IPSECPFS == options::pfsGroups[index].value) {
            ui.checkBox_UsePFS->setChecked(true);
            enablePfs(true);
            ui.comboBox_PFS->setCurrentIndex(index);
        }
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
        ui.lineEdit_SaLifeTime->setFocus();
        box.say("VUI_InputValidPLS");
        return;
    }
    ipsec.IPSECSALifetime = lifetimeText;

    storeCombos(ui, comboRows, ipsec);
    ipsec.IPSECUseNatTranversal = ui.checkBox_UseNAT->isChecked() ? 1 : 0;
    ipsec.IPSECPFS = 0;
    if (ui.checkBox_UsePFS->isChecked())
        ipsec.IPSECPFS = options::pfsGroups[ui.comboBox_PFS->currentIndex()].value;
}

void QVPNAdvProperty::OnIpsecProtoChg(int index)
{
    if (index < items::esp || index > items::ahAndEsp)
        return;
    const bool hasEsp = index != items::ah;
    const bool hasAh = index != items::esp;
    ui.comboBox_ESP_Auth->setEnabled(hasEsp);
    ui.comboBox_ESP_Encrypt->setEnabled(hasEsp);
    ui.comboBox_AH_Auth->setEnabled(hasAh);
    if (hasEsp) {
        // Contract: the two protocols together start from SHA256, ESP alone from the first item.
        ui.comboBox_ESP_Auth->setCurrentIndex(hasAh ? items::espAuthSha256 : 0);
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
    ui.comboBox_EncapMode->setCurrentIndex(items::tunnel);
    if (const CustomInfo* info = record())
        ui.comboBox_EncapMode->setEnabled(info->vpn.basecfg.LNSAsIPSECServer == 1);
}

/// NAT traversal goes with ESP in tunnel mode only: locks protocol and encapsulation there.
void QVPNAdvProperty::forceEspInTunnel()
{
    ui.comboBox_IpsecProto->setEnabled(false);
    ui.comboBox_IpsecProto->setCurrentIndex(items::esp);
    ui.comboBox_ESP_Auth->setEnabled(true);
    ui.comboBox_ESP_Encrypt->setEnabled(true);
    ui.comboBox_AH_Auth->setEnabled(false);
    ui.comboBox_EncapMode->setCurrentIndex(items::tunnel);
    ui.comboBox_EncapMode->setEnabled(false);
}

void QVPNAdvProperty::enablePfs(bool enabled)
{
    ui.label_PFS->setEnabled(enabled);
    ui.comboBox_PFS->setEnabled(enabled);
}
