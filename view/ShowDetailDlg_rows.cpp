#include "app/language/LangText.h"
#include "app/widgets/OptionLists.h"
#include "view/ShowDetailDlg.h"
#include "view/ViewRows.h"

#include <iterator>

namespace {

using namespace viewrows;
using Widgets = Ui_ShowDetailDlg;
using View = ShowDetailDlg;

constexpr auto x1 = &CustomInfo::x1;
constexpr auto portal = &CustomInfo::portal;
constexpr auto ssl = &CustomInfo::sslvpn;
constexpr auto vpn = &CustomInfo::vpn;
constexpr auto base = &L2TP_IPSEC_VPN_OptionInfo::basecfg;
constexpr auto zoa = &CustomInfo::zoa;
constexpr auto kef = &CustomInfo::kef;
constexpr auto gui = &CustomInfo::gui;

/// The entry of a list of keys or texts; the entry `otherwise` for a position beyond the list.
template <size_t size> const char* entry(const char* const (&list)[size], quint64 position, size_t otherwise)
{
    return list[position < size ? position : otherwise];
}

QString retryTimes(const CustomInfo& info)
{
    const quint32 position = info.x1.reauthTimes;
    // Contract: entry 10 shows the two characters "%n", not 100.
    if (position == 10)
        return QStringLiteral("%n");
    if (position == 11)
        return langText("CUS_NoLimite");
    return QString::number(options::retryTimes[position < std::size(options::retryTimes) ? position : 0]);
}

QString retryInterval(const CustomInfo& info)
{
    return langText(entry(options::retryIntervalKeys, info.x1.reauthInterval, 0));
}

QString packetType(const CustomInfo& info)
{
    return info.x1.unicastType != 0 ? langText("rad_uiPkt") : langText("rad_multiPkt");
}

QString sslMode(const CustomInfo& info)
{
    return langText(entry(options::sslModeKeys, info.sslvpn.authDefaultMode, 2));
}

QString tlsVersion(const CustomInfo& info)
{
    return QLatin1String(entry(options::tlsVersions, info.sslvpn.TLSVersion, 0));
}

// Contract: the second address is left out when it equals the first, letter case included.
QString secondLns(const CustomInfo& info)
{
    const IPSECVPNBASECFG& config = info.vpn.basecfg;
    return config.LNSIPSecond != config.LNSIP ? config.LNSIPSecond : QString();
}

// Contract: the name of the method counts with its letter case.
QString ipsecMethod(const CustomInfo& info)
{
    return info.vpn.ikecfg.IKEAuthMethod == QLatin1String("CA-Windows") ? langText("VUI_BASEComboMethod2")
                                                                        : langText("VUI_BASEComboMethod1");
}

// clang-format off
const BoxRow<View, Widgets> boxRows[] = {
    {&Widgets::tab_8021x, &Widgets::checkBox_1xSaveUser, "chk_saveuser",
     flag<x1, &X1OptionsInfo::keepConnPasswd>, &View::onClick1xSaveUser},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xUpVer, "chk_upver",
     flag<x1, &X1OptionsInfo::upVer>, &View::onClick1xUpVer},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xUpIp, "chk_upip",
     flag<x1, &X1OptionsInfo::upIp>, &View::onClick1xUpIp},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xUseBroadLogoff, "chk_broadlogoff",
     flag<x1, &X1OptionsInfo::broadLogOff>, &View::onClick1xUseBroadLogoff},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xAutoConn, "chk_auto",
     flag<x1, &X1OptionsInfo::autoAuth>, &View::onClick1xAutoConn},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xRenewIPAfterCut, "chk_renewIpaftercut",
     flag<x1, &X1OptionsInfo::refreshIPAftCut>, &View::onClick1xRenewIPAfterCut},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xResumeConn, "chk_1Xresumeconn",
     flag<x1, &X1OptionsInfo::x1ResumeConn>, &View::onClick1xResumeConn},
    {&Widgets::tab_8021x, &Widgets::checkBox_1xAdvancedAuth, "chk_HighAuth",
     flag<x1, &X1OptionsInfo::advancedAuth>, &View::OnClick1xMacAuth},

    {&Widgets::tab_portal, &Widgets::checkBox_PortalSaveUser, "chk_saveuser",
     flag<portal, &PortalOptionsInfo::keepConnPasswd>, &View::onClickPortalSaveUser},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalUpVer, "chk_upver",
     flag<portal, &PortalOptionsInfo::upVer>, &View::onClickPortalUpVer},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalAutoConn, "chk_auto",
     flag<portal, &PortalOptionsInfo::autoAuth>, &View::onClickPortalAutoConn},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalReConnAftNetErr, "chk_ResumeConn",
     flag<portal, &PortalOptionsInfo::resumeConn>, &View::onClickPortalReConnAftNetErr},
    {&Widgets::tab_portal, &Widgets::checkBox_PortalAdvancedAuth, "chk_HighAuth",
     flag<portal, &PortalOptionsInfo::advancedAuth>, &View::OnClickPortalMacAuth},

    {&Widgets::tab_Sslvpn, &Widgets::checkBox_gatewayType, "SSL_GatewayType",
     flag<ssl, &SSLVPNOptionsInfo::gatewayAuth>, &View::onClickGatewayType},
    {&Widgets::tab_Sslvpn, &Widgets::checkBox_edcode, "SSL_EdCode",
     flag<ssl, &SSLVPNOptionsInfo::edcode>, &View::onClickEdcode},

    {&Widgets::tab_l2tp, &Widgets::checkBox_upVer_S, "VUI_UpVersion",
     flag<vpn, base, &IPSECVPNBASECFG::upVersion>, &View::OnUpVerChk},
    {&Widgets::tab_l2tp, &Widgets::checkBox_reConn_S, "VUI_ResumeCon",
     flag<vpn, base, &IPSECVPNBASECFG::resumConn>, &View::OnReconnChk},
    {&Widgets::tab_l2tp, &Widgets::checkBox_EnableIpSec_S, "VUI_BASEUseIPSEC",
     flag<vpn, base, &IPSECVPNBASECFG::useIPSEC>, &View::OnIpsecEnable},

    {&Widgets::tab_Zoa, &Widgets::checkBox_UseZoa_S, "VUI_SECONDUseZOA",
     flag<zoa, &ZOAOptionsInfo::useZOA>, &View::OnUseZoa},
    {&Widgets::tab_kef, &Widgets::checkBox_disable, "KEF_StartUSBMonitorBeforeRegister",
     flag<kef, &KEFOptionsInfo::customize>, &View::OnDisable},
    {&Widgets::tab_gui, &Widgets::checkBox_HideCopyRight, "CUS_CusHideAgreement",
     flag<gui, &GUIOptionsInfo::hideCopyRight>, &View::onClickHideCopyRight},
};

const FieldRow<Widgets> fieldRows[] = {
    {&Widgets::tab_8021x, &Widgets::label_RetryTimes, "label_retrytimes",
     &Widgets::lineEdit_RetryTimes, retryTimes},
    {&Widgets::tab_8021x, &Widgets::label_RetryInterval, "label_retryInte",
     &Widgets::lineEdit_RetryInterval, retryInterval},
    {&Widgets::tab_8021x, &Widgets::label_PktType, "grp_pkttype",
     &Widgets::lineEdit_PktType, packetType},

    {&Widgets::tab_Sslvpn, &Widgets::label_authType, "SSL_AUTH_TYPE",
     &Widgets::lineEdit_authType, text<ssl, &SSLVPNOptionsInfo::authDefaultType>},
    {&Widgets::tab_Sslvpn, &Widgets::label_authMode, "SSL_AUTH_MODE",
     &Widgets::lineEdit_authMode, sslMode},
    {&Widgets::tab_Sslvpn, &Widgets::label_reconnTimes, "SSL_RECONN_TIME",
     &Widgets::lineEdit_reconnTimes, text<ssl, &SSLVPNOptionsInfo::retries>},
    {&Widgets::tab_Sslvpn, &Widgets::label_reconnInterval, "SSL_RECONN_GRAP",
     &Widgets::lineEdit_reconnInterval, text<ssl, &SSLVPNOptionsInfo::retryInterval>},
    {&Widgets::tab_Sslvpn, &Widgets::label_getSysVryInterval, "SSL_GetSmsVryCountDownValue",
     &Widgets::lineEdit_getSysVryInterval, text<ssl, &SSLVPNOptionsInfo::getSmsVryCountdownValue>},
    {&Widgets::tab_Sslvpn, &Widgets::label_TLSVersion, "SSL_TLSVersion",
     &Widgets::lineEdit_TLS_version_value, tlsVersion},

    {&Widgets::tab_l2tp, &Widgets::label_LNSIp_S, "VUI_BASELNSIP",
     &Widgets::lineEdit_LNSIp_S, text<vpn, base, &IPSECVPNBASECFG::LNSIP>},
    {&Widgets::tab_l2tp, &Widgets::label_Bak_LNSIp_S, "VUI_SECONDLNSIP",
     &Widgets::lineEdit_LNSIpSecond_S, secondLns},
    {&Widgets::tab_l2tp, &Widgets::label_AuthMethod_S, "VUI_IKEAuthMethod",
     &Widgets::lineEdit_authMethod_S, ipsecMethod},
    {&Widgets::tab_l2tp, &Widgets::label_Authenticator_S, "VUI_BASEPreSharedKey",
     &Widgets::lineEdit_preshareKey_S, nullptr},
    {&Widgets::tab_l2tp, &Widgets::label_IPSECServerIP_S, "VUI_BASEIPSECSERVERIP",
     &Widgets::lineEdit_IPSECServerIP_S, nullptr},

    {&Widgets::tab_Zoa, &Widgets::label_ZOAIp_S, "VUI_SECONDZOAIP",
     &Widgets::lineEdit_ZOAIp_S, text<zoa, &ZOAOptionsInfo::ZOAIP>},
    {&Widgets::tab_Zoa, &Widgets::label_ZOAport_S, "VUI_SECONDZOAPORT",
     &Widgets::lineEdit_ZOAport_S, text<zoa, &ZOAOptionsInfo::ZOAPORT>},
    {&Widgets::tab_Zoa, &Widgets::label_standby_ZOAIp_S, "VUI_STANDBYZOAIP",
     &Widgets::lineEdit_standby_ZOAIp_S, text<zoa, &ZOAOptionsInfo::standbyZOAIP>},
    {&Widgets::tab_Zoa, &Widgets::label_standby_ZOAport_S, "VUI_STANDBYZOAPORT",
     &Widgets::lineEdit_standby_ZOAport_S, text<zoa, &ZOAOptionsInfo::standbyZOAPORT>},

    {&Widgets::tab_kef, &Widgets::label_kefIp, "KEF_ProxyIp",
     &Widgets::lineEdit_kefIp, text<kef, &KEFOptionsInfo::kefIP>},
    {&Widgets::tab_kef, &Widgets::label_kefPort, "KEF_ProxyPort",
     &Widgets::lineEdit_kefPort, text<kef, &KEFOptionsInfo::kefPort>},
    {&Widgets::tab_gui, &Widgets::label_Title, "CUS_CusTitleDes",
     &Widgets::lineEdit_Title, text<gui, &GUIOptionsInfo::subTitle>},
};

const LabelRow<Widgets> labelRows[] = {
    {&Widgets::label_funcdes,         "ShowBaseFunInfoHint"},
    {&Widgets::label_IpSecSever_S,    "VUI_BASEIPSECSERVERIPCombox"},
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
    setBoxTexts(ui, boxRows);
    setLabelTexts(ui, fieldRows);
    setLabelTexts(ui, labelRows);
}

void ShowDetailDlg::connectRows()
{
    connectClicks(this, ui, boxRows);
}

void ShowDetailDlg::fillRows(const QWidget* page)
{
    fillBoxes(ui, boxRows, page, m_customInfo);
    fillFields(ui, fieldRows, page, m_customInfo);
}

void ShowDetailDlg::undoClick(QCheckBox* box)
{
    viewrows::undoClick(ui, boxRows, box, m_customInfo);
}
