#include "view/QShowVpnAdv.h"

#include "app/language/LangText.h"
#include "app/widgets/OptionLists.h"
#include "app/widgets/Tables.h"
#include "view/ViewRows.h"
#include "xml/CustomInfoHolder.h"

#include <initializer_list>

namespace {

using namespace viewrows;
using Widgets = Ui_QShowVpnAdv;
using View = QShowVpnAdv;

constexpr auto vpn = &CustomInfo::vpn;
constexpr auto l2tp = &L2TP_IPSEC_VPN_OptionInfo::l2tpcfg;
constexpr auto ipsec = &L2TP_IPSEC_VPN_OptionInfo::ipseccfg;
constexpr auto ike = &L2TP_IPSEC_VPN_OptionInfo::ikecfg;

// Contract: a click sets a box back to its field counted as 0 or not 0, also where the filling of the page asks for a
// certain value (AVP hiding and NAT traversal for 1, PFS for a group of the list).
// clang-format off
const BoxRow<View, Widgets> boxRows[] = {
    {&Widgets::tab, &Widgets::checkBox_TunnelAuthOn, "VUI_L2TPUseTunnelPwd",
     flag<vpn, l2tp, &L2TPCFG::L2TPUseTunnelPwd>, &View::OnTunnelAuthChk},
    {&Widgets::tab, &Widgets::checkBox_AVPHidden, "VUI_L2TPAVPHidden",
     flag<vpn, l2tp, &L2TPCFG::L2TPAVPHidden>, &View::OnAVPHidChk},
    {&Widgets::tab_2, &Widgets::checkBox_UsePFS, "VUI_UsePFS",
     flag<vpn, ipsec, &IPSECCFG::IPSECPFS>, &View::OnUsePFSChk},
    {&Widgets::tab_2, &Widgets::checkBox_UseNAT, "VUI_IPSECUseNat",
     flag<vpn, ipsec, &IPSECCFG::IPSECUseNatTranversal>, &View::OnUseNATChk},
    {&Widgets::tab_3, &Widgets::checkBox_KeepAliveOn, "VUI_IKESendKeepAlive",
     flag<vpn, ike, &IKECFG::IKESendKeepAlive>, &View::OnKeepAliveOnChk},
    {&Widgets::tab_3, &Widgets::checkBox_KeepAliveTimeout, "VUI_IKERecvKeepAlive",
     flag<vpn, ike, &IKECFG::IKERecvKeepAlivePacket>, &View::OnKeepAliveTimeoutChk},
};

const FieldRow<Widgets> fieldRows[] = {
    {&Widgets::tab, &Widgets::label_TunnelName, "VUI_L2TPTunnelName",
     &Widgets::lineEdit_TunnelName, text<vpn, l2tp, &L2TPCFG::L2TPTunnelName>},
    {&Widgets::tab, &Widgets::label_AuthMode, "VUI_L2TPAuthMode",
     &Widgets::lineEdit_AutnMode, text<vpn, l2tp, &L2TPCFG::L2TPAuthMode>},
    {&Widgets::tab, &Widgets::label_HelloInterval, "VUI_L2TPHelloInterval",
     &Widgets::lineEdit_HelloInterval, text<vpn, l2tp, &L2TPCFG::L2TPHelloInterval>},
    {&Widgets::tab, &Widgets::label_L2tpPort, "VUT_L2TPPORT",
     &Widgets::lineEdit_L2tpPort, text<vpn, l2tp, &L2TPCFG::L2TPPort>},
    {&Widgets::tab, &Widgets::label_TunnelPwd, "VUI_L2TPTunnelPwd",
     &Widgets::lineEdit_TunnelPwd, nullptr},

    {&Widgets::tab_2, &Widgets::label_EncapMode, "VUI_IPSECEncapMode",
     &Widgets::lineEdit_EncapMode, text<vpn, ipsec, &IPSECCFG::IPSECEncapsulationMode>},
    {&Widgets::tab_2, &Widgets::label_SaLifeTime, "VUI_IPSECSALifetime",
     &Widgets::lineEdit_SaLifeTime, text<vpn, ipsec, &IPSECCFG::IPSECSALifetime>},
    {&Widgets::tab_2, &Widgets::label_IpsecProto, "VUI_IPSECAdopSecuriProto",
     &Widgets::lineEdit_IpsecProto, text<vpn, ipsec, &IPSECCFG::IPSECSecurityProto>},
    {&Widgets::tab_2, &Widgets::label_ESP_Auth, "VUI_IPSECESPAuth",
     &Widgets::lineEdit_ESP_Auth, text<vpn, ipsec, &IPSECCFG::IPSECESPAuthAlgorithm>},
    {&Widgets::tab_2, &Widgets::label_ESP_Encrypt, "VUI_IPSECESPEncypt",
     &Widgets::lineEdit_ESP_Encrypt, text<vpn, ipsec, &IPSECCFG::IPSECESPEncryption>},
    {&Widgets::tab_2, &Widgets::label_AH_Auth, "VUI_IPSECAHAuth",
     &Widgets::lineEdit_AH_Auth, text<vpn, ipsec, &IPSECCFG::IPSECAHAuthAlgorithm>},
    {&Widgets::tab_2, &Widgets::label_PFS, "VUI_UsePFS",
     &Widgets::lineEdit_PFS, nullptr},

    {&Widgets::tab_3, &Widgets::label_IkeNeg, "VUI_IKENegMode",
     &Widgets::lineEdit_IkeNeg, text<vpn, ike, &IKECFG::IKENegotiationMode>},
    {&Widgets::tab_3, &Widgets::label_IDType, "VUI_IKEIDType",
     &Widgets::lineEdit_IDType, text<vpn, ike, &IKECFG::IKEIDType>},
    {&Widgets::tab_3, &Widgets::label_IkeAuth, "VUI_IKEAuth",
     &Widgets::lineEdit_IkeAuth, text<vpn, ike, &IKECFG::IKEAuthAlgorithm>},
    {&Widgets::tab_3, &Widgets::label_IkeEncrypt, "VUI_IKEEncrypt",
     &Widgets::lineEdit_IkeEncrypt, text<vpn, ike, &IKECFG::IKEncryption>},
    {&Widgets::tab_3, &Widgets::label_DH, "VUI_IKEDHGroup",
     &Widgets::lineEdit_DH, text<vpn, ike, &IKECFG::IKEDiffeHellman>},
    {&Widgets::tab_3, &Widgets::label_IkePort, "VUI_IKEPort",
     &Widgets::lineEdit_IkePort, text<vpn, ike, &IKECFG::IKEPort>},
    {&Widgets::tab_3, &Widgets::label_ISAKMPSA, "VUI_IKEISAKMPSA",
     &Widgets::lineEdit_ISAKMPSA, text<vpn, ike, &IKECFG::IKEISAKMPLifetime>},
    {&Widgets::tab_3, &Widgets::label_LocalName, "VUI_IKELocalName",
     &Widgets::lineEdit_LocalName, text<vpn, ike, &IKECFG::IKELocalName>},
    {&Widgets::tab_3, &Widgets::label_PeerName, "VUI_IKERemoteName",
     &Widgets::lineEdit_PeerName, text<vpn, ike, &IKECFG::IKERemoteName>},
    {&Widgets::tab_3, &Widgets::label_TimeInterval, "VUI_IKETimeInterval",
     &Widgets::lineEdit_TimeInterval, nullptr},
    {&Widgets::tab_3, &Widgets::label_TimeOut, "VUI_IKETimeout",
     &Widgets::lineEdit_TimeOut, nullptr},
};

const LabelRow<Widgets> labelRows[] = {
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
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    connect(ui.pushButton, &QPushButton::clicked, this, &QShowVpnAdv::close);
    connectClicks(this, ui, boxRows);
}

QShowVpnAdv::~QShowVpnAdv() = default;

const CustomInfo* QShowVpnAdv::record() const
{
    auto* holder = qobject_cast<CustomInfoHolder*>(parent());
    return holder ? holder->customInfo() : nullptr;
}

void QShowVpnAdv::undoClick(QCheckBox* box)
{
    if (const CustomInfo* info = record())
        viewrows::undoClick(ui, boxRows, box, *info);
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
    setBoxTexts(ui, boxRows);
    setLabelTexts(ui, fieldRows);
    setLabelTexts(ui, labelRows);
    setColumns(ui.treeWidget_RouteList, {langText("VUI_IP"), langText("VUI_Mask")}, {170, 170});
    ui.treeWidget_RouteList->setAccessibleName(langText("VUI_RouteSetting"));
}

void QShowVpnAdv::setL2tpInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const L2TPCFG& config = info->vpn.l2tpcfg;
    fillFields(ui, fieldRows, ui.tab, *info);

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
    fillFields(ui, fieldRows, ui.tab_2, *info);

    if (config.IPSECSecurityProto == QLatin1String("ESP")) {
        ui.lineEdit_AH_Auth->setEnabled(false);
    } else if (config.IPSECSecurityProto == QLatin1String("AH")) {
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
    for (const options::PfsGroup& group : options::pfsGroups) {
        if (config.IPSECPFS != group.value)
            continue;
        ui.checkBox_UsePFS->setChecked(true);
        enable({ui.label_PFS, ui.lineEdit_PFS}, true);
        showText(ui.lineEdit_PFS, QLatin1String(group.text));
    }
}

void QShowVpnAdv::setIkeInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    const IKECFG& config = info->vpn.ikecfg;
    fillFields(ui, fieldRows, ui.tab_3, *info);

    if (config.IKEIDType == QLatin1String("name"))
        enable({ui.lineEdit_IDType, ui.label_LocalName, ui.lineEdit_LocalName, ui.label_PeerName, ui.lineEdit_PeerName},
               true);
    showKeepAlive(ui.checkBox_KeepAliveOn, ui.label_TimeInterval, ui.lineEdit_TimeInterval,
                  ui.label_TimeInterval_Seconds, config.IKESendKeepAlive, config.IKESendInterval);
    showKeepAlive(ui.checkBox_KeepAliveTimeout, ui.label_TimeOut, ui.lineEdit_TimeOut, ui.label_TimeOutSeconds,
                  config.IKERecvKeepAlivePacket, config.IKERecvPacketTimeOut);
    if (info->vpn.ipseccfg.IPSECUseNatTranversal != 0) {
        // Contract: NAT traversal shows these two whatever the record holds.
        showText(ui.lineEdit_IkeNeg, QStringLiteral("Aggressive"));
        showText(ui.lineEdit_IDType, QStringLiteral("name"));
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
