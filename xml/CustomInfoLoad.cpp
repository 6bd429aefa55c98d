#include "xml/CustomInfoLoad.h"

#include "xml/CustomXmlParser.h"

void formatCustomInfo(CustomXmlParser& parser, CustomInfo& info)
{
    parser.FormatXMLInit();
    parser.FormatXMLCommonInfo(info.common);
    parser.FormatXMLFunctionInfo(info.function);
    parser.FormatXML8021XInfo(info.x1);
    parser.FormatXMLDomainInfo(info.domain);
    parser.FormatXMLPortalInfo(info.portal);
    parser.FormatXMLSslVpnInfo(info.sslvpn);
    parser.FormatXMLGUIInfo(info.gui);
    parser.FormatXMLZOAInfo(info.zoa);
    parser.FormatIpseVpnInfo(info.vpn);
    parser.FormatXMLIPSECVPNRouteInfo(info.vpnRoutes);
    if (info.common.funcomVal & funcom::kef)
        parser.FormatXMLKefInfo(info.kef);
}

bool utl_LoadCustomInfo(const char* xmlPath, CustomInfo& info)
{
    const QString path = QString::fromUtf8(xmlPath);
    CustomXmlParser parser;
    parser.GetXML8021XInfo(path, info.x1);
    parser.GetXMLPortalInfo(path, info.portal);
    parser.GetXMLFunctionInfo(path, info.function);
    parser.GetXMLCommonInfo(path, info.common);
    parser.GetXMLSslVpnInfo(path, info.sslvpn);
    parser.GetXMLGUIInfo(path, info.gui);
    parser.GetXMLIpseVpnInfo(path, info.vpn);
    parser.GetXMLIPSECVPNRouteInfo(path, info.vpnRoutes);
    parser.GetXMLZOAInfo(path, info.zoa);
    parser.GetXMLKefInfo(path, info.kef);
    parser.GetXMLDomainInfo(path, info.domain);
    return true;
}
