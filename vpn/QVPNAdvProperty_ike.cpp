#include "vpn/QVPNAdvProperty.h"

#include "app/widgets/FormRows.h"
#include "app/widgets/WarningBox.h"
#include "common/PortRules.h"
#include "vpn/NameValidator.h"
#include "xml/CustomInfo.h"

using namespace formrows;
using Widgets = Ui_QVPNAdvProperty;

namespace {

// clang-format off
const Text<Widgets> textRows[] = {
    {&Widgets::lineEdit_ISAKMPSA,  &Widgets::label_ISAKMPSA,  field<&IKECFG::IKEISAKMPLifetime>},
    {&Widgets::lineEdit_LocalName, &Widgets::label_LocalName, field<&IKECFG::IKELocalName>},
    {&Widgets::lineEdit_PeerName,  &Widgets::label_PeerName,  field<&IKECFG::IKERemoteName>},
};
const Choice<Widgets> choices[] = {
    {&Widgets::comboBox_IkeNeg,     &Widgets::label_IkeNeg,     field<&IKECFG::IKENegotiationMode>},
    {&Widgets::comboBox_IDType,     &Widgets::label_IDType,     field<&IKECFG::IKEIDType>},
    {&Widgets::comboBox_IkeEncrypt, &Widgets::label_IkeEncrypt, field<&IKECFG::IKEncryption>},
    {&Widgets::comboBox_DH,         &Widgets::label_DH,         field<&IKECFG::IKEDiffeHellman>},
};
// Shown, but not stored from here: see saveIkeCfg.
const Choice<Widgets> shownChoices[] = {
    {&Widgets::comboBox_IkeAuth, &Widgets::label_IkeAuth, field<&IKECFG::IKEAuthAlgorithm>},
};
const Caption<Widgets> captions[] = {
    {&Widgets::label_IkePort,              field<&IKECFG::IKEPort>},
    {&Widgets::label_ISAKMPSA_Seconds,     "VUI_IKESecond"},
    {&Widgets::label_TimeInterval_Seconds, "VUI_IKESecond"},
    {&Widgets::label_TimeOutSeconds,       "VUI_IKESecond"},
};

/// A check box that switches a time in seconds.
struct KeepAliveRow
{
    Flag<Widgets> flag;
    Text<Widgets> seconds;
    QLabel* Widgets::*unit;
    const char* errorKey;
};
const KeepAliveRow sendRow = {
    {&Widgets::checkBox_KeepAliveOn, field<&IKECFG::IKESendKeepAlive>},
    {&Widgets::lineEdit_TimeInterval, &Widgets::label_TimeInterval, field<&IKECFG::IKESendInterval>},
    &Widgets::label_TimeInterval_Seconds, "VUI_SendKeepAliveTimerErr"};
const KeepAliveRow receiveRow = {
    {&Widgets::checkBox_KeepAliveTimeout, field<&IKECFG::IKERecvKeepAlivePacket>},
    {&Widgets::lineEdit_TimeOut, &Widgets::label_TimeOut, field<&IKECFG::IKERecvPacketTimeOut>},
    &Widgets::label_TimeOutSeconds, "VUI_RecvKeepAliveTimerErr"};
// clang-format on

void showKeepAliveTexts(Widgets& ui, const KeepAliveRow& row)
{
    (ui.*row.flag.box)->setText(labelOf(row.flag));
    (ui.*row.seconds.label)->setText(labelOf(row.seconds));
}

void followKeepAlive(Widgets& ui, const KeepAliveRow& row)
{
    const bool isOn = (ui.*row.flag.box)->isChecked();
    (ui.*row.seconds.label)->setEnabled(isOn);
    (ui.*row.seconds.edit)->setEnabled(isOn);
    (ui.*row.unit)->setEnabled(isOn);
}

void loadKeepAlive(Widgets& ui, const KeepAliveRow& row, const CustomInfo& info)
{
    limit(ui.*row.seconds.edit, row.seconds.field);
    if (row.flag.field.number(info) != 0) {
        (ui.*row.flag.box)->setChecked(true);
        (ui.*row.seconds.edit)->setText(row.seconds.field.text(info));
    }
    followKeepAlive(ui, row);
}

bool storeKeepAlive(const Widgets& ui, const KeepAliveRow& row, CustomInfo& info, WarningBox& box)
{
    if (!(ui.*row.flag.box)->isChecked()) {
        row.flag.field.setNumber(info, 0);
        return true;
    }
    const QString text = (ui.*row.seconds.edit)->text();
    const unsigned long seconds = text.toULong(nullptr, 10);
    if (seconds < 20 || seconds > 28800)
        return box.refuseAt(ui.*row.seconds.edit, row.errorKey);
    row.seconds.field.setText(info, text);
    row.flag.field.setNumber(info, 1);
    return true;
}

} // namespace

void QVPNAdvProperty::setIkeText()
{
    setTexts(ui, textRows);
    setTexts(ui, choices);
    setTexts(ui, shownChoices);
    setTexts(ui, captions);
    showKeepAliveTexts(ui, sendRow);
    showKeepAliveTexts(ui, receiveRow);
}

void QVPNAdvProperty::setIkeInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IKECFG& ike = info->vpn.ikecfg;

    ui.lineEdit_LocalName->setValidator(new NameValidator(this));
    ui.lineEdit_PeerName->setValidator(new NameValidator(this));
    addWords(ui, choices);
    addWords(ui, shownChoices);
    load(ui, choices, *info);
    load(ui, shownChoices, *info);
    // Contract: a stored ID type "name" opens its combo box and both names in the mode "Main" as well.
    if (ike.IKEIDType == stored(words::idTypes, words::IdName)) {
        ui.comboBox_IDType->setEnabled(true);
        enableNames(true);
    }

    load(ui, textRows, *info);
    loadKeepAlive(ui, sendRow, *info);
    loadKeepAlive(ui, receiveRow, *info);

    if (info->vpn.ipseccfg.IPSECUseNatTranversal != 0) {
        ui.comboBox_IkeNeg->setCurrentIndex(words::AggressiveMode);
        ui.comboBox_IDType->setCurrentIndex(words::IdName);
        ui.comboBox_IkeNeg->setEnabled(false);
        ui.comboBox_IDType->setEnabled(false);
        enableNames(false);
    }
    ui.lineEdit_IkePort->setText(QString::number(ike.IKEPort));
}

// Contract: on this page the focus comes before the message.
void QVPNAdvProperty::saveIkeCfg()
{
    CustomInfo* info = record();
    if (!info)
        return;
    IKECFG& ike = info->vpn.ikecfg;
    WarningBox box("VUI_AdvancedSettings");

    const QString lifetimeText = ui.lineEdit_ISAKMPSA->text();
    const unsigned long lifetime = lifetimeText.toULong(nullptr, 10);
    if (lifetime < 60 || lifetime > 604800) {
        box.refuseAt(ui.lineEdit_ISAKMPSA, "VUI_InputValidISAKMPSA");
        return;
    }
    ike.IKEISAKMPLifetime = lifetimeText;

    const QString localName = ui.lineEdit_LocalName->text();
    const QString peerName = ui.lineEdit_PeerName->text();
    if (ui.comboBox_IDType->currentIndex() == words::IdName) {
        if (localName.isEmpty()) {
            box.refuseAt(ui.lineEdit_LocalName, "VUI_LocalGateName");
            return;
        }
        if (peerName.isEmpty()) {
            box.refuseAt(ui.lineEdit_PeerName, "VUI_PeerGateName");
            return;
        }
        ike.IKELocalName = localName;
        ike.IKERemoteName = peerName;
    }

    if (!storeKeepAlive(ui, sendRow, *info, box) || !storeKeepAlive(ui, receiveRow, *info, box))
        return;

    store(ui, choices, *info);
    // Contract: the AH algorithm of the IPsec page decides the IKE algorithm; comboBox_IkeAuth has no effect.
    const bool isFirst = ui.comboBox_AH_Auth->currentIndex() == 0;
    ike.IKEAuthAlgorithm = stored(words::ikeAuthAlgorithms, isFirst ? words::Md5 : words::Sha);

    const std::optional<quint32> port = unsignedPortNumberFromZero(ui.lineEdit_IkePort->text());
    if (!port) {
        box.refuseAt(ui.lineEdit_IkePort, "VUI_InputValidIKEPort");
        return;
    }
    ike.IKEPort = *port;

    // Contract: this reminder comes last and takes back nothing.
    if (ui.checkBox_UseNAT->isChecked() && (localName.isEmpty() || peerName.isEmpty()))
        box.say("VUI_InputLocalPeerName");
}

void QVPNAdvProperty::OnNegModeChg(int index)
{
    if (index == words::MainMode) {
        ui.comboBox_IDType->setCurrentIndex(words::IdIp);
        ui.comboBox_IDType->setEnabled(false);
        enableNames(false);
    } else if (index == words::AggressiveMode) {
        ui.comboBox_IDType->setEnabled(true);
    }
}

void QVPNAdvProperty::OnIDTypeChg(int index)
{
    if (index == words::IdIp || index == words::IdName)
        enableNames(index == words::IdName);
}

void QVPNAdvProperty::OnKeepAliveOnChk()
{
    followKeepAlive(ui, sendRow);
}

void QVPNAdvProperty::OnKeepAliveTimeoutChk()
{
    followKeepAlive(ui, receiveRow);
}

void QVPNAdvProperty::enableNames(bool enabled)
{
    ui.label_LocalName->setEnabled(enabled);
    ui.lineEdit_LocalName->setEnabled(enabled);
    ui.label_PeerName->setEnabled(enabled);
    ui.lineEdit_PeerName->setEnabled(enabled);
}
