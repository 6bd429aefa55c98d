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
    {&Widgets::lineEdit_TunnelName,    &Widgets::label_TunnelName,    field<&L2TPCFG::L2TPTunnelName>},
    {&Widgets::lineEdit_HelloInterval, &Widgets::label_HelloInterval, field<&L2TPCFG::L2TPHelloInterval>},
};
const Choice<Widgets> choices[] = {
    {&Widgets::comboBox_AuthMode, &Widgets::label_AuthMode, field<&L2TPCFG::L2TPAuthMode>},
};
const Caption<Widgets> captions[] = {
    {&Widgets::label_Seconds,         "VUI_StaticSeconds"},
    {&Widgets::label_L2tpPort,        field<&L2TPCFG::L2TPPort>},
    {&Widgets::label_TunnelPwd,       field<&L2TPCFG::L2TPTunnelPwd>},
    {&Widgets::checkBox_TunnelAuthOn, field<&L2TPCFG::L2TPUseTunnelPwd>},
    {&Widgets::checkBox_AVPHidden,    field<&L2TPCFG::L2TPAVPHidden>},
};
// clang-format on

} // namespace

void QVPNAdvProperty::setL2tpText()
{
    setTexts(ui, textRows);
    setTexts(ui, choices);
    setTexts(ui, captions);
}

void QVPNAdvProperty::setL2tpInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const L2TPCFG& l2tp = info->vpn.l2tpcfg;

    ui.lineEdit_TunnelName->setValidator(new NameValidator(this));
    ui.lineEdit_TunnelPwd->setValidator(
        new QRegExpValidator(QRegExp(QStringLiteral(R"([\x20-\x7e]+)"), Qt::CaseSensitive), this));
    limit(ui.lineEdit_TunnelPwd, field<&L2TPCFG::L2TPTunnelPwd>);
    addWords(ui, choices);
    load(ui, choices, *info);
    load(ui, textRows, *info);

    if (l2tp.L2TPUseTunnelPwd != 0) {
        ui.checkBox_TunnelAuthOn->setChecked(true);
        ui.lineEdit_TunnelPwd->setText(l2tp.L2TPTunnelPwd);
        enableTunnelPwd(true);
        // Contract: only the value 1 hides the AVP data; the flag counts as off at any other value.
        ui.checkBox_AVPHidden->setChecked(l2tp.L2TPAVPHidden == 1);
    } else {
        enableTunnelPwd(false);
        ui.checkBox_AVPHidden->setChecked(false);
    }
    ui.lineEdit_L2tpPort->setText(QString::number(l2tp.L2TPPort));
}

// Contract: on this page the message comes before the focus.
void QVPNAdvProperty::saveL2tpCfg()
{
    CustomInfo* info = record();
    if (!info)
        return;
    L2TPCFG& l2tp = info->vpn.l2tpcfg;
    WarningBox box("VUI_AdvancedSettings");

    const QString name = ui.lineEdit_TunnelName->text();
    if (name.isEmpty()) {
        box.refuse("VUI_InvalidTunnelName", ui.lineEdit_TunnelName);
        return;
    }
    l2tp.L2TPTunnelName = name;

    const QString helloText = ui.lineEdit_HelloInterval->text();
    const long hello = helloText.toLong(nullptr, 10);
    if (hello < 60 || hello > 1000) {
        box.refuse("VUI_InputValid1000PLS", ui.lineEdit_HelloInterval);
        return;
    }
    l2tp.L2TPHelloInterval = helloText;

    if (ui.checkBox_TunnelAuthOn->isChecked()) {
        const QString password = ui.lineEdit_TunnelPwd->text();
        if (password.isEmpty()) {
            box.refuse("VUI_InvalidTunnelPwd", ui.lineEdit_TunnelPwd);
            return;
        }
        l2tp.L2TPTunnelPwd = password;
        l2tp.L2TPUseTunnelPwd = 1;
    } else {
        // Contract: the stored password outlives the switch.
        l2tp.L2TPUseTunnelPwd = 0;
    }

    store(ui, choices, *info);
    l2tp.L2TPAVPHidden = ui.checkBox_AVPHidden->isChecked() ? 1 : 0;

    const std::optional<quint32> port = signedPortNumberFromZero(ui.lineEdit_L2tpPort->text());
    if (!port) {
        box.refuse("VUI_InvalidL2TPPort", ui.lineEdit_L2tpPort);
        return;
    }
    l2tp.L2TPPort = *port;
}

void QVPNAdvProperty::OnTunnelAuthChk()
{
    enableTunnelPwd(ui.checkBox_TunnelAuthOn->isChecked());
}

void QVPNAdvProperty::enableTunnelPwd(bool enabled)
{
    ui.label_TunnelPwd->setEnabled(enabled);
    ui.lineEdit_TunnelPwd->setEnabled(enabled);
    ui.checkBox_AVPHidden->setEnabled(enabled);
}
