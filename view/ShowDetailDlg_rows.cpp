#include "app/widgets/FormRows.h"
#include "view/ShowDetailDlg.h"

namespace {

using namespace formrows;
using Widgets = Ui_ShowDetailDlg;
using View = ShowDetailDlg;

// clang-format off
const ReadOnlyFlag<View, Widgets> flagRows[] = {
    {&Widgets::tab_8021x, &Widgets::checkBox_1xSaveUser,
     field<&X1OptionsInfo::keepConnPasswd>, &View::onClick1xSaveUser},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xUpVer,
     field<&X1OptionsInfo::upVer>, &View::onClick1xUpVer},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xUpIp,
     field<&X1OptionsInfo::upIp>, &View::onClick1xUpIp},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xUseBroadLogoff,
     field<&X1OptionsInfo::broadLogOff>, &View::onClick1xUseBroadLogoff},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xAutoConn,
     field<&X1OptionsInfo::autoAuth>, &View::onClick1xAutoConn},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xRenewIPAfterCut,
     field<&X1OptionsInfo::refreshIPAftCut>, &View::onClick1xRenewIPAfterCut},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xResumeConn,
     field<&X1OptionsInfo::x1ResumeConn>, &View::onClick1xResumeConn},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xAdvancedAuth,
     field<&X1OptionsInfo::advancedAuth>, &View::OnClick1xMacAuth},

    {&Widgets::tab_portal, &Widgets::checkBox_PortalSaveUser,
     field<&PortalOptionsInfo::keepConnPasswd>, &View::onClickPortalSaveUser},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalUpVer,
     field<&PortalOptionsInfo::upVer>, &View::onClickPortalUpVer},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalAutoConn,
     field<&PortalOptionsInfo::autoAuth>, &View::onClickPortalAutoConn},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalReConnAftNetErr,
     field<&PortalOptionsInfo::resumeConn>, &View::onClickPortalReConnAftNetErr},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalAdvancedAuth,
     field<&PortalOptionsInfo::advancedAuth>, &View::OnClickPortalMacAuth},

    {&Widgets::tab_Sslvpn, &Widgets::checkBox_gatewayType,
     field<&SSLVPNOptionsInfo::gatewayAuth>, &View::onClickGatewayType},
    {&Widgets::tab_Sslvpn, &Widgets::checkBox_edcode,
     field<&SSLVPNOptionsInfo::edcode>, &View::onClickEdcode},

    {&Widgets::tab_l2tp, &Widgets::checkBox_upVer_S,
     field<&IPSECVPNBASECFG::upVersion>, &View::OnUpVerChk},
    {&Widgets::tab_l2tp, &Widgets::checkBox_reConn_S,
     field<&IPSECVPNBASECFG::resumConn>, &View::OnReconnChk},
    {&Widgets::tab_l2tp, &Widgets::checkBox_EnableIpSec_S,
     field<&IPSECVPNBASECFG::useIPSEC>, &View::OnIpsecEnable},

    {&Widgets::tab_Zoa, &Widgets::checkBox_UseZoa_S,
     field<&ZOAOptionsInfo::useZOA>, &View::OnUseZoa},
    {&Widgets::tab_kef, &Widgets::checkBox_disable,
     field<&KEFOptionsInfo::customize>, &View::OnDisable},
    {&Widgets::tab_gui, &Widgets::checkBox_HideCopyRight,
     field<&GUIOptionsInfo::hideCopyRight>, &View::onClickHideCopyRight},
};

const ReadOnlyText<Widgets> textRows[] = {
    {&Widgets::tab_8021x, &Widgets::label_RetryTimes, &Widgets::lineEdit_RetryTimes,
     field<&X1OptionsInfo::reauthTimes>},
    {&Widgets::tab_8021x, &Widgets::label_RetryInterval, &Widgets::lineEdit_RetryInterval,
     field<&X1OptionsInfo::reauthInterval>},
    {&Widgets::tab_8021x, &Widgets::label_PktType, &Widgets::lineEdit_PktType,
     field<&X1OptionsInfo::unicastType>},

    {&Widgets::tab_Sslvpn, &Widgets::label_authType, &Widgets::lineEdit_authType,
     field<&SSLVPNOptionsInfo::authDefaultType>, FromRecord, "SSL_AUTH_TYPE"},
    {&Widgets::tab_Sslvpn, &Widgets::label_authMode, &Widgets::lineEdit_authMode,
     field<&SSLVPNOptionsInfo::authDefaultMode>, FromRecord, "SSL_AUTH_MODE"},
    {&Widgets::tab_Sslvpn, &Widgets::label_reconnTimes, &Widgets::lineEdit_reconnTimes,
     field<&SSLVPNOptionsInfo::retries>},
    {&Widgets::tab_Sslvpn, &Widgets::label_reconnInterval, &Widgets::lineEdit_reconnInterval,
     field<&SSLVPNOptionsInfo::retryInterval>},
    {&Widgets::tab_Sslvpn, &Widgets::label_getSysVryInterval, &Widgets::lineEdit_getSysVryInterval,
     field<&SSLVPNOptionsInfo::getSmsVryCountdownValue>},
    {&Widgets::tab_Sslvpn, &Widgets::label_TLSVersion, &Widgets::lineEdit_TLS_version_value,
     field<&SSLVPNOptionsInfo::TLSVersion>},

    {&Widgets::tab_l2tp, &Widgets::label_LNSIp_S, &Widgets::lineEdit_LNSIp_S,
     field<&IPSECVPNBASECFG::LNSIP>},
    {&Widgets::tab_l2tp, &Widgets::label_Bak_LNSIp_S, &Widgets::lineEdit_LNSIpSecond_S,
     field<&IPSECVPNBASECFG::LNSIPSecond>},
    {&Widgets::tab_l2tp, &Widgets::label_AuthMethod_S, &Widgets::lineEdit_authMethod_S,
     field<&IKECFG::IKEAuthMethod>},
    {&Widgets::tab_l2tp, &Widgets::label_Authenticator_S, &Widgets::lineEdit_preshareKey_S,
     field<&IPSECVPNBASECFG::preSharedKey>, ByView},
    {&Widgets::tab_l2tp, &Widgets::label_IPSECServerIP_S, &Widgets::lineEdit_IPSECServerIP_S,
     field<&IPSECVPNBASECFG::otherIPSECServer>, ByView},

    {&Widgets::tab_Zoa, &Widgets::label_ZOAIp_S, &Widgets::lineEdit_ZOAIp_S,
     field<&ZOAOptionsInfo::ZOAIP>},
    {&Widgets::tab_Zoa, &Widgets::label_ZOAport_S, &Widgets::lineEdit_ZOAport_S,
     field<&ZOAOptionsInfo::ZOAPORT>},
    {&Widgets::tab_Zoa, &Widgets::label_standby_ZOAIp_S, &Widgets::lineEdit_standby_ZOAIp_S,
     field<&ZOAOptionsInfo::standbyZOAIP>},
    {&Widgets::tab_Zoa, &Widgets::label_standby_ZOAport_S, &Widgets::lineEdit_standby_ZOAport_S,
     field<&ZOAOptionsInfo::standbyZOAPORT>},

    {&Widgets::tab_kef, &Widgets::label_kefIp, &Widgets::lineEdit_kefIp,
     field<&KEFOptionsInfo::kefIP>},
    {&Widgets::tab_kef, &Widgets::label_kefPort, &Widgets::lineEdit_kefPort,
     field<&KEFOptionsInfo::kefPort>},
    {&Widgets::tab_gui, &Widgets::label_Title, &Widgets::lineEdit_Title,
     field<&GUIOptionsInfo::subTitle>},
};

const Caption<Widgets> captions[] = {
    {&Widgets::label_funcdes,         "ShowBaseFunInfoHint"},
    {&Widgets::label_IpSecSever_S,    field<&IPSECVPNBASECFG::LNSAsIPSECServer>},
    {&Widgets::label_UseHint_S,       "VUI_STANDBYZOAUSEHINT"},
    {&Widgets::label_usbdefaultPolicy, "KEF_USBMonitorPolicy"},
    {&Widgets::label_deckIcon_LP,     "Cus_ShowDeskIconDesL"},
    {&Widgets::label_deckIcon_MP,     "Cus_ShowDeskIconDesM"},
    {&Widgets::label_MainIcon_P,      "Cus_ShowMainIconDes"},
};
// clang-format on

} // namespace

void ShowDetailDlg::setRowTexts()
{
    setTexts(ui, flagRows);
    setTexts(ui, textRows);
    setTexts(ui, captions);
}

void ShowDetailDlg::connectRows()
{
    connectClicks(this, ui, flagRows);
}

void ShowDetailDlg::fillRows(const QWidget* page)
{
    fill(ui, flagRows, page, m_customInfo);
    fill(ui, textRows, page, m_customInfo);
}

void ShowDetailDlg::undoClick(QCheckBox* box)
{
    formrows::undoClick(ui, flagRows, box, m_customInfo);
}
