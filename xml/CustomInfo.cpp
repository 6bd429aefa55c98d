#include "xml/CustomInfo.h"

CustomInfo::CustomInfo()
{
    reset();
}

void CustomInfo::reset()
{
    common = CommonInfo();
    portal = PortalOptionsInfo();
    x1 = X1OptionsInfo();
    function = BasicFunctionInfo();
    sslvpn = SSLVPNOptionsInfo();
    gui = GUIOptionsInfo();
    vpn = L2TP_IPSEC_VPN_OptionInfo();
    vpnRoutes.clear();
    // Contract: the standby address outlives a reset; only a load or the ZOA tab changes it.
    const QString standbyAddress = zoa.standbyZOAIP;
    zoa = ZOAOptionsInfo();
    zoa.standbyZOAIP = standbyAddress;
    kef = KEFOptionsInfo();
    domain = SUIDomainInfo();
}
