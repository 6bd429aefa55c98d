#include "vpn/QVPNAdvProperty.h"

#include "app/widgets/WarningBox.h"
#include "vpn/ComboItems.h"
#include "vpn/NameValidator.h"
#include "vpn/PageRows.h"
#include "xml/CustomInfo.h"

using namespace rows;

namespace {

// clang-format off
const LabelRow labelRows[] = {
    {&Widgets::label_IkeNeg,               "VUI_IKENegMode"},
    {&Widgets::label_IDType,               "VUI_IKEIDType"},
    {&Widgets::label_IkeAuth,              "VUI_IKEAuth"},
    {&Widgets::label_IkeEncrypt,           "VUI_IKEEncrypt"},
    {&Widgets::label_DH,                   "VUI_IKEDHGroup"},
    {&Widgets::label_IkePort,              "VUI_IKEPort"},
    {&Widgets::label_ISAKMPSA,             "VUI_IKEISAKMPSA"},
    {&Widgets::label_ISAKMPSA_Seconds,     "VUI_IKESecond"},
    {&Widgets::label_LocalName,            "VUI_IKELocalName"},
    {&Widgets::label_PeerName,             "VUI_IKERemoteName"},
    {&Widgets::label_TimeInterval,         "VUI_IKETimeInterval"},
    {&Widgets::label_TimeInterval_Seconds, "VUI_IKESecond"},
    {&Widgets::label_TimeOut,              "VUI_IKETimeout"},
    {&Widgets::label_TimeOutSeconds,       "VUI_IKESecond"},
};

const CheckRow checkRows[] = {
    {&Widgets::checkBox_KeepAliveOn,      "VUI_IKESendKeepAlive"},
    {&Widgets::checkBox_KeepAliveTimeout, "VUI_IKERecvKeepAlive"},
};

const EditRow<IKECFG> editRows[] = {
    {&Widgets::lineEdit_ISAKMPSA,  6,         &IKECFG::IKEISAKMPLifetime},
    {&Widgets::lineEdit_LocalName, anyLength, &IKECFG::IKELocalName},
    {&Widgets::lineEdit_PeerName,  anyLength, &IKECFG::IKERemoteName},
};

const ComboRow<IKECFG> comboRows[] = {
    {&Widgets::comboBox_IkeNeg,     items::negotiationModes,    &IKECFG::IKENegotiationMode},
    {&Widgets::comboBox_IDType,     items::idTypes,             &IKECFG::IKEIDType},
    {&Widgets::comboBox_IkeEncrypt, items::ikeEncryptions,      &IKECFG::IKEncryption},
    {&Widgets::comboBox_DH,         items::diffieHellmanGroups, &IKECFG::IKEDiffeHellman},
};

// Shown, but not stored from here: see saveIkeCfg.
const ComboRow<IKECFG> shownAuthRow =
    {&Widgets::comboBox_IkeAuth, items::ikeAuthAlgorithms, &IKECFG::IKEAuthAlgorithm};

/// A check box that switches a time in seconds.
struct KeepAliveRow
{
    QCheckBox* Widgets::*box;
    QLabel* Widgets::*label;
    QLineEdit* Widgets::*edit;
    QLabel* Widgets::*unit;
    quint64 IKECFG::*flag;
    QString IKECFG::*field;
    const char* errorKey;
};
const KeepAliveRow sendRow = {
    &Widgets::checkBox_KeepAliveOn, &Widgets::label_TimeInterval, &Widgets::lineEdit_TimeInterval,
    &Widgets::label_TimeInterval_Seconds, &IKECFG::IKESendKeepAlive, &IKECFG::IKESendInterval,
    "VUI_SendKeepAliveTimerErr"};
const KeepAliveRow receiveRow = {
    &Widgets::checkBox_KeepAliveTimeout, &Widgets::label_TimeOut, &Widgets::lineEdit_TimeOut,
    &Widgets::label_TimeOutSeconds, &IKECFG::IKERecvKeepAlivePacket, &IKECFG::IKERecvPacketTimeOut,
    "VUI_RecvKeepAliveTimerErr"};
// clang-format on

constexpr int maxTimeLength = 5;

void followKeepAlive(Widgets& ui, const KeepAliveRow& row)
{
    const bool isOn = (ui.*row.box)->isChecked();
    (ui.*row.label)->setEnabled(isOn);
    (ui.*row.edit)->setEnabled(isOn);
    (ui.*row.unit)->setEnabled(isOn);
}

void loadKeepAlive(Widgets& ui, const KeepAliveRow& row, const IKECFG& ike)
{
    (ui.*row.edit)->setMaxLength(maxTimeLength);
    if (ike.*row.flag != 0) {
        (ui.*row.box)->setChecked(true);
        (ui.*row.edit)->setText(ike.*row.field);
    }
    followKeepAlive(ui, row);
}

bool storeKeepAlive(const Widgets& ui, const KeepAliveRow& row, IKECFG& ike, WarningBox& box)
{
    if (!(ui.*row.box)->isChecked()) {
        ike.*row.flag = 0;
        return true;
    }
    const QString text = (ui.*row.edit)->text();
    const unsigned long seconds = text.toULong(nullptr, 10);
    if (seconds < 20 || seconds > 28800) {
        (ui.*row.edit)->setFocus();
        box.say(row.errorKey);
        return false;
    }
    ike.*row.field = text;
    ike.*row.flag = 1;
    return true;
}

} // namespace

void QVPNAdvProperty::setIkeText()
{
    showLabels(ui, labelRows);
    showCheckBoxes(ui, checkRows);
}

void QVPNAdvProperty::setIkeInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IKECFG& ike = info->vpn.ikecfg;

    ui.lineEdit_LocalName->setValidator(new NameValidator(this));
    ui.lineEdit_PeerName->setValidator(new NameValidator(this));
    fillCombos(ui, comboRows);
    fillCombo(ui, shownAuthRow);
    selectCombos(ui, comboRows, ike);
    selectCombo(ui, shownAuthRow, ike);
    // Contract: a stored ID type "name" opens its combo box and both names in the mode "Main" as well.
    if (ike.IKEIDType == QLatin1String("name")) {
        ui.comboBox_IDType->setEnabled(true);
        enableNames(true);
    }

    loadEdits(ui, editRows, ike);
    loadKeepAlive(ui, sendRow, ike);
    loadKeepAlive(ui, receiveRow, ike);

    if (info->vpn.ipseccfg.IPSECUseNatTranversal != 0) {
        ui.comboBox_IkeNeg->setCurrentIndex(items::aggressiveMode);
        ui.comboBox_IDType->setCurrentIndex(items::idName);
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
        ui.lineEdit_ISAKMPSA->setFocus();
        box.say("VUI_InputValidISAKMPSA");
        return;
    }
    ike.IKEISAKMPLifetime = lifetimeText;

    const QString localName = ui.lineEdit_LocalName->text();
    const QString peerName = ui.lineEdit_PeerName->text();
    if (ui.comboBox_IDType->currentIndex() == items::idName) {
        if (localName.isEmpty()) {
            ui.lineEdit_LocalName->setFocus();
            box.say("VUI_LocalGateName");
            return;
        }
        if (peerName.isEmpty()) {
            ui.lineEdit_PeerName->setFocus();
            box.say("VUI_PeerGateName");
            return;
        }
        ike.IKELocalName = localName;
        ike.IKERemoteName = peerName;
    }

    if (!storeKeepAlive(ui, sendRow, ike, box) || !storeKeepAlive(ui, receiveRow, ike, box))
        return;

    storeCombos(ui, comboRows, ike);
    // Contract: the AH algorithm of the IPsec page decides the IKE algorithm; comboBox_IkeAuth has no effect.
    const bool isFirst = ui.comboBox_AH_Auth->currentIndex() == 0;
    ike.IKEAuthAlgorithm = isFirst ? QStringLiteral("MD5") : QStringLiteral("SHA");

    // Contract: a negative port is no number here, counts as 0 and passes, unlike the port of the L2TP page.
    const unsigned long port = ui.lineEdit_IkePort->text().toULong(nullptr, 10);
    if (port > 65535) {
        ui.lineEdit_IkePort->setFocus();
        box.say("VUI_InputValidIKEPort");
        return;
    }
    ike.IKEPort = port;

    // Contract: this reminder comes last and takes back nothing.
    if (ui.checkBox_UseNAT->isChecked() && (localName.isEmpty() || peerName.isEmpty()))
        box.say("VUI_InputLocalPeerName");
}

void QVPNAdvProperty::OnNegModeChg(int index)
{
    if (index == items::mainMode) {
        ui.comboBox_IDType->setCurrentIndex(items::idIp);
        ui.comboBox_IDType->setEnabled(false);
        enableNames(false);
    } else if (index == items::aggressiveMode) {
        ui.comboBox_IDType->setEnabled(true);
    }
}

void QVPNAdvProperty::OnIDTypeChg(int index)
{
    if (index == items::idIp || index == items::idName)
        enableNames(index == items::idName);
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
