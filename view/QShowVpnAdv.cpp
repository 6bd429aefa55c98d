#include "view/QShowVpnAdv.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/AccessibleFaces.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/ReturnKey.h"
#include "app/widgets/Tables.h"
#include "xml/CustomInfoHolder.h"

#include <initializer_list>

namespace {

using namespace formrows;
using Widgets = Ui_QShowVpnAdv;
using View = QShowVpnAdv;

// Contract: a click sets a box back to its field counted as 0 or not 0, also where the filling of the page asks for a
// certain value (AVP hiding and NAT traversal for 1, PFS for a group of the list).
// clang-format off
const ReadOnlyFlag<View, Widgets> flagRows[] = {
    {&Widgets::tab, &Widgets::checkBox_TunnelAuthOn, field<&L2TPCFG::L2TPUseTunnelPwd>, &View::OnTunnelAuthChk},
    {&Widgets::tab, &Widgets::checkBox_AVPHidden, field<&L2TPCFG::L2TPAVPHidden>, &View::OnAVPHidChk},
    {&Widgets::tab_2, &Widgets::checkBox_UsePFS, field<&IPSECCFG::IPSECPFS>, &View::OnUsePFSChk},
    {&Widgets::tab_2, &Widgets::checkBox_UseNAT, field<&IPSECCFG::IPSECUseNatTranversal>, &View::OnUseNATChk},
    {&Widgets::tab_3, &Widgets::checkBox_KeepAliveOn, field<&IKECFG::IKESendKeepAlive>, &View::OnKeepAliveOnChk},
    {&Widgets::tab_3, &Widgets::checkBox_KeepAliveTimeout, field<&IKECFG::IKERecvKeepAlivePacket>, &View::OnKeepAliveTimeoutChk},
};

const ReadOnlyText<Widgets> textRows[] = {
    {&Widgets::tab, &Widgets::label_TunnelName, &Widgets::lineEdit_TunnelName,
     field<&L2TPCFG::L2TPTunnelName>},
    {&Widgets::tab, &Widgets::label_AuthMode, &Widgets::lineEdit_AutnMode,
     field<&L2TPCFG::L2TPAuthMode>},
    {&Widgets::tab, &Widgets::label_HelloInterval, &Widgets::lineEdit_HelloInterval,
     field<&L2TPCFG::L2TPHelloInterval>},
    {&Widgets::tab, &Widgets::label_L2tpPort, &Widgets::lineEdit_L2tpPort,
     field<&L2TPCFG::L2TPPort>},
    {&Widgets::tab, &Widgets::label_TunnelPwd, &Widgets::lineEdit_TunnelPwd,
     field<&L2TPCFG::L2TPTunnelPwd>, ByView},

    {&Widgets::tab_2, &Widgets::label_EncapMode, &Widgets::lineEdit_EncapMode,
     field<&IPSECCFG::IPSECEncapsulationMode>},
    {&Widgets::tab_2, &Widgets::label_SaLifeTime, &Widgets::lineEdit_SaLifeTime,
     field<&IPSECCFG::IPSECSALifetime>},
    {&Widgets::tab_2, &Widgets::label_IpsecProto, &Widgets::lineEdit_IpsecProto,
     field<&IPSECCFG::IPSECSecurityProto>},
    {&Widgets::tab_2, &Widgets::label_ESP_Auth, &Widgets::lineEdit_ESP_Auth,
     field<&IPSECCFG::IPSECESPAuthAlgorithm>},
    {&Widgets::tab_2, &Widgets::label_ESP_Encrypt, &Widgets::lineEdit_ESP_Encrypt,
     field<&IPSECCFG::IPSECESPEncryption>},
    {&Widgets::tab_2, &Widgets::label_AH_Auth, &Widgets::lineEdit_AH_Auth,
     field<&IPSECCFG::IPSECAHAuthAlgorithm>},
    {&Widgets::tab_2, &Widgets::label_PFS, &Widgets::lineEdit_PFS,
     field<&IPSECCFG::IPSECPFS>, ByView},

    {&Widgets::tab_3, &Widgets::label_IkeNeg, &Widgets::lineEdit_IkeNeg,
     field<&IKECFG::IKENegotiationMode>},
    {&Widgets::tab_3, &Widgets::label_IDType, &Widgets::lineEdit_IDType,
     field<&IKECFG::IKEIDType>},
    {&Widgets::tab_3, &Widgets::label_IkeAuth, &Widgets::lineEdit_IkeAuth,
     field<&IKECFG::IKEAuthAlgorithm>},
    {&Widgets::tab_3, &Widgets::label_IkeEncrypt, &Widgets::lineEdit_IkeEncrypt,
     field<&IKECFG::IKEncryption>},
    {&Widgets::tab_3, &Widgets::label_DH, &Widgets::lineEdit_DH,
     field<&IKECFG::IKEDiffeHellman>},
    {&Widgets::tab_3, &Widgets::label_IkePort, &Widgets::lineEdit_IkePort,
     field<&IKECFG::IKEPort>},
    {&Widgets::tab_3, &Widgets::label_ISAKMPSA, &Widgets::lineEdit_ISAKMPSA,
     field<&IKECFG::IKEISAKMPLifetime>},
    {&Widgets::tab_3, &Widgets::label_LocalName, &Widgets::lineEdit_LocalName,
     field<&IKECFG::IKELocalName>},
    {&Widgets::tab_3, &Widgets::label_PeerName, &Widgets::lineEdit_PeerName,
     field<&IKECFG::IKERemoteName>},
    {&Widgets::tab_3, &Widgets::label_TimeInterval, &Widgets::lineEdit_TimeInterval,
     field<&IKECFG::IKESendInterval>, ByView},
    {&Widgets::tab_3, &Widgets::label_TimeOut, &Widgets::lineEdit_TimeOut,
     field<&IKECFG::IKERecvPacketTimeOut>, ByView},
};

const Caption<Widgets> captions[] = {
    {&Widgets::label_Seconds,              "VUI_StaticSeconds"},
    {&Widgets::label_SA_Seconds,           "VUI_IKESecond"},
    {&Widgets::label_ISAKMPSA_Seconds,     "VUI_IKESecond"},
    {&Widgets::label_TimeInterval_Seconds, "VUI_IKESecond"},
    {&Widgets::label_TimeOutSeconds,       "VUI_IKESecond"},
    {&Widgets::label_RouteDes,             "VUI_AddRoutePrincple"},
};
// clang-format on

void enable(std::initializer_list<QWidget*> widgets, bool on)
{
    for (QWidget* widget : widgets)
        widget->setEnabled(on);
}

/// A keep-alive group: its box, its time with label and unit. The time is shown only while the flag is set.
void showKeepAlive(QCheckBox* box, QLabel* label, QLineEdit* field, QLabel* unit, quint64 flag, const QString& time)
{
    box->setChecked(flag != 0);
    enable({label, field, unit}, flag != 0);
    if (flag != 0)
        showText(field, time);
}

} // namespace

QShowVpnAdv::QShowVpnAdv(QWidget* parent) : QDialog(parent)
{
    tellReadOnly(*this);
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    connect(ui.pushButton, &QPushButton::clicked, this, &QShowVpnAdv::close);
    connectClicks(this, ui, flagRows);
}

QShowVpnAdv::~QShowVpnAdv() = default;

void QShowVpnAdv::keyPressEvent(QKeyEvent* event)
{
    if (!takesReturn(*this, *event))
        QDialog::keyPressEvent(event);
}

const CustomInfo* QShowVpnAdv::record() const
{
    auto* holder = qobject_cast<CustomInfoHolder*>(parent());
    return holder ? holder->customInfo() : nullptr;
}

void QShowVpnAdv::undoClick(QCheckBox* box)
{
    if (const CustomInfo* info = record())
        formrows::undoClick(ui, flagRows, box, *info);
}

void QShowVpnAdv::setInital()
{
    ui.tabWidget->setCurrentIndex(0);
    setWindowText();
    setL2tpInit();
    setIPsecInit();
    setIkeInit();
    setRouteInit();
}

void QShowVpnAdv::setWindowText()
{
    setWindowTitle(langText("VUI_AdvancedSettings"));
    ui.tabWidget->setTabText(ui.tabWidget->indexOf(ui.tab), langText("VUI_L2TPPAGETITLE"));
    ui.tabWidget->setTabText(ui.tabWidget->indexOf(ui.tab_2), langText("VUI_IPSECPAGETITLE"));
    ui.tabWidget->setTabText(ui.tabWidget->indexOf(ui.tab_3), langText("VUI_IKEPAGETITLE"));
    ui.tabWidget->setTabText(ui.tabWidget->indexOf(ui.tab_4), langText("VUI_RouteSetting"));
    ui.pushButton->setText(langText("close_button"));
    setTexts(ui, flagRows);
    setTexts(ui, textRows);
    setTexts(ui, captions);
    setColumns(ui.treeWidget_RouteList, {labelText(field<&VPN_RouteInfo::ip>), labelText(field<&VPN_RouteInfo::mask>)},
               {170, 170});
    ui.treeWidget_RouteList->setAccessibleName(langText("VUI_RouteSetting"));
}

void QShowVpnAdv::setL2tpInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const L2TPCFG& config = info->vpn.l2tpcfg;
    fill(ui, textRows, ui.tab, *info);

    const bool usesPassword = config.L2TPUseTunnelPwd != 0;
    ui.checkBox_TunnelAuthOn->setChecked(usesPassword);
    enable({ui.label_TunnelPwd, ui.lineEdit_TunnelPwd, ui.checkBox_AVPHidden}, usesPassword);
    ui.checkBox_AVPHidden->setChecked(usesPassword && config.L2TPAVPHidden == 1);
    if (usesPassword)
        showText(ui.lineEdit_TunnelPwd, config.L2TPTunnelPwd);
}

void QShowVpnAdv::setIPsecInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IPSECCFG& config = info->vpn.ipseccfg;
    fill(ui, textRows, ui.tab_2, *info);

    if (config.IPSECSecurityProto == stored(words::securityProtocols, words::Esp)) {
        ui.lineEdit_AH_Auth->setEnabled(false);
    } else if (config.IPSECSecurityProto == stored(words::securityProtocols, words::Ah)) {
        enable({ui.lineEdit_ESP_Auth, ui.lineEdit_ESP_Encrypt}, false);
        ui.lineEdit_AH_Auth->setEnabled(true);
    }
    if (config.IPSECUseNatTranversal == 1) {
        ui.checkBox_UseNAT->setChecked(true);
        enable({ui.lineEdit_IpsecProto, ui.lineEdit_AH_Auth}, false);
        enable({ui.lineEdit_ESP_Auth, ui.lineEdit_ESP_Encrypt}, true);
    }
    // Contract: a value that is neither 0 nor in the list leaves the three controls as the form has them.
    if (config.IPSECPFS == 0) {
        ui.checkBox_UsePFS->setChecked(false);
        enable({ui.label_PFS, ui.lineEdit_PFS}, false);
    }
    for (const words::Word& group : words::pfsGroups) {
        if (config.IPSECPFS != words::number(group))
            continue;
        ui.checkBox_UsePFS->setChecked(true);
        enable({ui.label_PFS, ui.lineEdit_PFS}, true);
        showField(ui.lineEdit_PFS, field<&IPSECCFG::IPSECPFS>, *info);
    }
}

void QShowVpnAdv::setIkeInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IKECFG& config = info->vpn.ikecfg;
    fill(ui, textRows, ui.tab_3, *info);

    if (config.IKEIDType == stored(words::idTypes, words::IdName))
        enable({ui.lineEdit_IDType, ui.label_LocalName, ui.lineEdit_LocalName, ui.label_PeerName, ui.lineEdit_PeerName},
               true);
    showKeepAlive(ui.checkBox_KeepAliveOn, ui.label_TimeInterval, ui.lineEdit_TimeInterval,
                  ui.label_TimeInterval_Seconds, config.IKESendKeepAlive, config.IKESendInterval);
    showKeepAlive(ui.checkBox_KeepAliveTimeout, ui.label_TimeOut, ui.lineEdit_TimeOut, ui.label_TimeOutSeconds,
                  config.IKERecvKeepAlivePacket, config.IKERecvPacketTimeOut);
    if (info->vpn.ipseccfg.IPSECUseNatTranversal != 0) {
        enable({ui.lineEdit_IkeNeg, ui.lineEdit_IDType, ui.label_LocalName, ui.lineEdit_LocalName, ui.label_PeerName,
                ui.lineEdit_PeerName},
               false);
    }
}

void QShowVpnAdv::setRouteInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    ui.treeWidget_RouteList->clear();
    for (const VPN_RouteInfo& route : info->vpnRoutes)
        addRow(ui.treeWidget_RouteList, {route.ip, route.mask});
}
