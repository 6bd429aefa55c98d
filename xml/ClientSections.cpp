#include "common/FieldCipher.h"
#include "common/StorePaths.h"
#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"
#include "xml/SectionTable.h"

// The sections that concern the client as a whole.

namespace {

constexpr unsigned int s_passwordCapacity = 32; // bytes of enciphered text, terminator included

// Contract: a password of 16 bytes or more does not fit and stands in the document in clear, where the reader, which
// deciphers whatever it finds, does not get it back.
void writePassword(CBasedQtXmlParser& parser, const char* element, const BasicFunctionInfo& info)
{
    const QByteArray plain = info.uninstallPassword.toUtf8();
    unsigned char enciphered[s_passwordCapacity] = {};
    const unsigned int failure =
        utl_encrpt(enciphered, s_passwordCapacity, reinterpret_cast<const unsigned char*>(plain.constData()),
                   static_cast<unsigned int>(plain.size()));
    if (failure == 0)
        parser.AddItem(element, reinterpret_cast<const char*>(enciphered));
    else
        parser.AddItem(element, info.uninstallPassword);
}

void takePassword(const QString& text, BasicFunctionInfo& info)
{
    unsigned char plain[s_passwordCapacity] = {};
    unsigned int length = s_passwordCapacity;
    utl_decrpt(plain, &length, reinterpret_cast<const unsigned char*>(text.toUtf8().constData()));
    const char* bytes = reinterpret_cast<const char*>(plain);
    info.uninstallPassword = QString::fromUtf8(bytes, int(qstrnlen(bytes, s_passwordCapacity)));
}

void readPassword(CBasedQtXmlParser& parser, const char* element, BasicFunctionInfo& info)
{
    QString text;
    parser.GetNodeValue(element, text);
    takePassword(text, info);
}

// Contract: the document carries a number of retries that no field of the record holds and the reader skips.
void writeRetryTimes(CBasedQtXmlParser& parser, const char* element, const ZOAOptionsInfo&)
{
    parser.AddItem(element, 4U);
}
void skip(CBasedQtXmlParser&, const char*, ZOAOptionsInfo&)
{
}

// clang-format off
const Row<CommonInfo> commonRows[] = {
    {"procomVal",     Form::Number, &CommonInfo::procomVal,     "AccessComComBox", offers(words::accessComponents)},
    {"funcomVal",     Form::Number, &CommonInfo::funcomVal,     "FuncComComBox",   offers(words::functionComponents)},
    {"cusTimeStamp",  Form::Number, &CommonInfo::cusTimeStamp},
    {"cusTimeString", Form::Text,   &CommonInfo::cusTimeString, "CusTime"},
    {"cusAddInfo",    Form::Text,   &CommonInfo::cusAddInfo,    "CusAddInfo",      upTo(120)},
    {"areaKey",       Form::Number, &CommonInfo::areaKey},
};

using Function = BasicFunctionInfo;
const Row<Function> functionRows[] = {
    {"acl",                         Form::Number, &Function::acl,                "AclOpt"},
    {"wanControl",                  Form::Number, &Function::wanControl,         "WanControlOpt", shows(words::wanControls)},
    {"drvErr",                      Form::Number, &Function::drvErr,             "DrvErrOpt"},
    {"dynamicPwdVerify",            Form::Number, &Function::dynamicPwdVerify,   "DynamicpwdVerify"},
    {"dynamicVifInfo",              Form::Number, &Function::dynamicVifInfo,     "CUS_DynpwdVifTitle",
     shows(words::passwordOffers)},
    {"msgAuthOpt",                  Form::Number, &Function::msgAuthOpt,         "MsgAuth"},
    {"msgAuthInfo",                 Form::Number, &Function::msgAuthInfo,        "CUS_MsgAuthTitle",
     shows(words::passwordOffers), &Function::msgAuthOpt},
    {"msgAuthServIP",               Form::Text,   &Function::msgAuthServIP,      "CUS_MsgAuthServIP", {},
     &Function::msgAuthOpt},
    {"msgAuthServPort",             Form::Number, &Function::msgAuthServPort,    "CUS_MsgAuthServPort", {},
     &Function::msgAuthOpt},
    {"passwordProtection",          Form::Number, &Function::passwordProtection, "CUS_Uinstall_Password_Enable"},
    {"uninstallPassword",           Form::Own,
     ByHand<Function>{writePassword, readPassword, &Function::uninstallPassword, takePassword},
     "CUS_Uinstall_Password", secret(32), &Function::passwordProtection},
    {"uninstallPasswordExtend",     Form::Number, &Function::uninstallPasswordExtend, "CUS_Uinstall_Password_Extend",
     shows(words::passwordExtensions), &Function::passwordProtection},
    {"wanControlEscape",            Form::Number, &Function::wanControlEscape,   "CUS_FuncDesc.WanControlOpt3"},
    {"wanControlEscapePyxIp",       Form::Text,   &Function::wanControlEscapePyxIp, "CUS_Wancotrol_Escape_Pyx", {},
     &Function::wanControlEscape},
    {"wanControlEscapePyxPort",     Form::Text,   &Function::wanControlEscapePyxPort, "CUS_Wancotrol_Escape_Pyx_Port", {},
     &Function::wanControlEscape},
    {"wanControlEscapeDns",         Form::Text,   &Function::wanControlEscapeDns, "CUS_Wancotrol_Escape_Dns", {},
     &Function::wanControlEscape},
    {"wanControlEscapePyxIpBackup", Form::Text,   &Function::wanControlEscapePyxIpBackup, "CUS_Wancotrol_Escape_Pyx_bak",
     {}, &Function::wanControlEscape},
};

const Row<X1OptionsInfo> x1Rows[] = {
    {"upVer",             Form::Number, &X1OptionsInfo::upVer,             "chk_upver"},
    {"upIp",              Form::Number, &X1OptionsInfo::upIp,              "chk_upip"},
    {"unicastType",       Form::Number, &X1OptionsInfo::unicastType,       "grp_pkttype", shows(words::packetTypes)},
    {"refreshIPAftCut",   Form::Number, &X1OptionsInfo::refreshIPAftCut,   "chk_renewIpaftercut"},
    {"broadLogOff",       Form::Number, &X1OptionsInfo::broadLogOff,       "chk_broadlogoff"},
    {"x1ResumeConn",      Form::Number, &X1OptionsInfo::x1ResumeConn,      "chk_1Xresumeconn"},
    {"reauthTimes",       Form::Number, &X1OptionsInfo::reauthTimes,       "label_retrytimes",
     shows(words::retryTimes, words::viewedRetryTimes)},
    {"reauthInterval",    Form::Number, &X1OptionsInfo::reauthInterval,    "label_retryInte", shows(words::retryIntervals)},
    {"keepConnPasswd",    Form::Number, &X1OptionsInfo::keepConnPasswd,    "chk_saveuser"},
    {"autoAuth",          Form::Number, &X1OptionsInfo::autoAuth,          "chk_auto"},
    {"advancedAuth",      Form::Number, &X1OptionsInfo::advancedAuth,      "chk_HighAuth"},
    {"advancedAuthType",  Form::Number, &X1OptionsInfo::advancedAuthType,  "chk_HighAuth",
     shows(words::advancedAuthTypes), &X1OptionsInfo::advancedAuth},
    {"defaultConnection", Form::Number, &X1OptionsInfo::defaultConnection, "chk_create_default_conn"},
};

const Row<DomainDetail> domainItemRows[] = {
    {"domainName", Form::Utf8Text, &DomainDetail::domainName, "CUS_1xDomain",  upTo(30)},
    {"domainDesp", Form::Utf8Text, &DomainDetail::domainDesp, "CUS_DomainDes", upTo(30)},
};
const Row<SUIDomainInfo> domainRows[] = {
    {"domainDefault", Form::NumberReadWide, &SUIDomainInfo::domainDefault, "CUS_DomainDefault"},
    {"domainForce",   Form::NumberReadWide, &SUIDomainInfo::domainForce,   "CUS_DomainForce"},
};

const Row<PortalOptionsInfo> portalRows[] = {
    {"resumeConn",       Form::Number, &PortalOptionsInfo::resumeConn,       "chk_ResumeConn"},
    {"upVer",            Form::Number, &PortalOptionsInfo::upVer,            "chk_upver"},
    {"autoAuth",         Form::Number, &PortalOptionsInfo::autoAuth,         "chk_auto"},
    {"keepConnPasswd",   Form::Number, &PortalOptionsInfo::keepConnPasswd,   "chk_saveuser"},
    {"advancedAuth",     Form::Number, &PortalOptionsInfo::advancedAuth,     "chk_HighAuth"},
    {"advancedAuthType", Form::Number, &PortalOptionsInfo::advancedAuthType, "chk_HighAuth",
     shows(words::advancedAuthTypes), &PortalOptionsInfo::advancedAuth},
};

const Row<GUIOptionsInfo> guiRows[] = {
    {"linuxDeskIcon",     Form::Icon,     &GUIOptionsInfo::linuxDeskIconPath, "Cus_DeskIconDesL"},
    {"macosDeskIcon",     Form::Icon,     &GUIOptionsInfo::macosDeskIconPath, "Cus_DeskIconDesM"},
    {"mainIcon",          Form::Icon,     &GUIOptionsInfo::mainIconPath,      "Cus_MainIconDes"},
    {"subTitle",          Form::Text,     &GUIOptionsInfo::subTitle,          "CUS_CusTitleDes"},
    {"linuxDeskIconName", Form::Text,     &GUIOptionsInfo::linuxDeskIconName},
    {"macosDeskName",     Form::Text,     &GUIOptionsInfo::macosDeskName},
    {"mainIconName",      Form::Text,     &GUIOptionsInfo::mainIconName},
    {"hideCopyRight",     Form::BoolText, &GUIOptionsInfo::hideCopyRight,     "CUS_CusHideAgreement"},
};

const Row<ZOAOptionsInfo> zoaRows[] = {
    {"useZOA",              Form::Number,   &ZOAOptionsInfo::useZOA,         "VUI_SECONDUseZOA"},
    {"switchZOARetryTimes", Form::Own,      ByHand<ZOAOptionsInfo>{writeRetryTimes, skip}},
    {"ZOAIP",               Form::Utf8Text, &ZOAOptionsInfo::ZOAIP,          "VUI_SECONDZOAIP",    upTo(255)},
    {"ZOAPORT",             Form::Utf8Text, &ZOAOptionsInfo::ZOAPORT,        "VUI_SECONDZOAPORT",  upTo(255)},
    {"standbyZOAIP",        Form::Utf8Text, &ZOAOptionsInfo::standbyZOAIP,   "VUI_STANDBYZOAIP",   upTo(255)},
    {"standbyZOAPORT",      Form::Utf8Text, &ZOAOptionsInfo::standbyZOAPORT, "VUI_STANDBYZOAPORT", upTo(255)},
};

const Row<KEFOptionsInfo> kefRows[] = {
    {"kefIP",     Form::Text,   &KEFOptionsInfo::kefIP,     "KEF_ProxyIp"},
    {"kefPort",   Form::Text,   &KEFOptionsInfo::kefPort,   "KEF_ProxyPort"},
    {"customize", Form::Number, &KEFOptionsInfo::customize, "KEF_StartUSBMonitorBeforeRegister"},
};

const IconFile icons[] = {
    {&GUIOptionsInfo::linuxDeskIconPath, "linuxDeskIcon", store::linuxDeskIcon},
    {&GUIOptionsInfo::macosDeskIconPath, "macosDeskIcon", store::macosDeskIcon},
    {&GUIOptionsInfo::mainIconPath,      "mainIcon",      store::mainIcon},
};
// clang-format on

} // namespace

// clang-format off
template <> Rows<CommonInfo> rowsOf() { return commonRows; }
template <> Rows<BasicFunctionInfo> rowsOf() { return functionRows; }
template <> Rows<X1OptionsInfo> rowsOf() { return x1Rows; }
template <> Rows<DomainDetail> rowsOf() { return domainItemRows; }
template <> Rows<SUIDomainInfo> rowsOf() { return domainRows; }
template <> Rows<PortalOptionsInfo> rowsOf() { return portalRows; }
template <> Rows<GUIOptionsInfo> rowsOf() { return guiRows; }
template <> Rows<ZOAOptionsInfo> rowsOf() { return zoaRows; }
template <> Rows<KEFOptionsInfo> rowsOf() { return kefRows; }
// clang-format on

const IconFile (&iconFiles())[3]
{
    return icons;
}

QString pathOfIcon(const QString& directory, QString GUIOptionsInfo::*path)
{
    for (const IconFile& icon : icons) {
        if (icon.path == path)
            return directory + QLatin1String(icon.name);
    }
    return QString();
}

void CustomXmlParser::FormatXMLCommonInfo(CommonInfo info)
{
    formatSection("common", [&] { writeRows(*this, info); });
}

void CustomXmlParser::FormatXMLFunctionInfo(BasicFunctionInfo info)
{
    formatSection("functions", [&] { writeRows(*this, info); });
}

void CustomXmlParser::FormatXML8021XInfo(X1OptionsInfo info)
{
    formatSection("x1", [&] { writeRows(*this, info); });
}

void CustomXmlParser::FormatXMLDomainInfo(SUIDomainInfo& info)
{
    const auto addItem = [this](const DomainDetail& detail) {
        addGroup(domainList.item, [&] { writeRows(*this, detail); });
    };
    const auto addChildren = [&] {
        addGroup(domainList.list, [&] {
            for (const DomainDetail& detail : qAsConst(info.domaindetail))
                addItem(detail);
        });
        writeRows(*this, info);
    };
    formatSection("domain", addChildren, true);
}

void CustomXmlParser::FormatXMLPortalInfo(PortalOptionsInfo info)
{
    formatSection("portal", [&] { writeRows(*this, info); });
}

void CustomXmlParser::FormatXMLGUIInfo(GUIOptionsInfo info)
{
    formatSection("guiOptions", [&] { writeRows(*this, info); });
}

void CustomXmlParser::FormatXMLZOAInfo(ZOAOptionsInfo info)
{
    formatSection("ZOA", [&] { writeRows(*this, info); });
}

void CustomXmlParser::FormatXMLKefInfo(KEFOptionsInfo info)
{
    formatSection("kef", [&] { writeRows(*this, info); });
}

int CustomXmlParser::GetXMLCommonInfo(const QString& path, CommonInfo& info)
{
    return getSection(path, "common", [&] { readRows(*this, info); });
}

int CustomXmlParser::GetXMLFunctionInfo(const QString& path, BasicFunctionInfo& info)
{
    return getSection(path, "functions", [&] { readRows(*this, info); });
}

int CustomXmlParser::GetXML8021XInfo(const QString& path, X1OptionsInfo& info)
{
    return getSection(path, "x1", [&] { readRows(*this, info); });
}

int CustomXmlParser::GetXMLDomainInfo(const QString& path, SUIDomainInfo& info)
{
    return getSection(path, "domain", [&] {
        readRows(*this, info);
        const QDomElement list = m_qoCurElement.firstChildElement(QLatin1String(domainList.list));
        forEachItem(list, domainList.item, [&] {
            DomainDetail detail;
            readRows(*this, detail);
            info.domaindetail.append(detail);
        });
    });
}

int CustomXmlParser::GetXMLPortalInfo(const QString& path, PortalOptionsInfo& info)
{
    return getSection(path, "portal", [&] { readRows(*this, info); });
}

int CustomXmlParser::GetXMLGUIInfo(const QString& path, GUIOptionsInfo& info)
{
    const QString directory = path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
    return getSection(path, "guiOptions", [&] {
        for (const IconFile& icon : icons) {
            bool exists = false;
            GetNodeValue(icon.element, exists);
            if (exists)
                info.*icon.path = pathOfIcon(directory, icon.path);
        }
        readRows(*this, info);
    });
}

int CustomXmlParser::GetXMLZOAInfo(const QString& path, ZOAOptionsInfo& info)
{
    return getSection(path, "ZOA", [&] { readRows(*this, info); });
}

int CustomXmlParser::GetXMLKefInfo(const QString& path, KEFOptionsInfo& info)
{
    return getSection(path, "kef", [&] { readRows(*this, info); });
}
