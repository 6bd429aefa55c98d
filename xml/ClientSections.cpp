#include "common/FieldCipher.h"
#include "common/StorePaths.h"
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

void readPassword(CBasedQtXmlParser& parser, const char* element, BasicFunctionInfo& info)
{
    QString text;
    parser.GetNodeValue(element, text);
    unsigned char plain[s_passwordCapacity] = {};
    unsigned int length = s_passwordCapacity;
    utl_decrpt(plain, &length, reinterpret_cast<const unsigned char*>(text.toUtf8().constData()));
    const char* bytes = reinterpret_cast<const char*>(plain);
    info.uninstallPassword = QString::fromUtf8(bytes, int(qstrnlen(bytes, s_passwordCapacity)));
}

// The document only says whether an icon exists; its file lies beside the document. The reader is GetXMLGUIInfo.
struct Icon
{
    const char* element;
    QString GUIOptionsInfo::*path;
    const char* file;
};
const Icon icons[] = {
    {"linuxDeskIcon", &GUIOptionsInfo::linuxDeskIconPath, store::linuxDeskIcon},
    {"macosDeskIcon", &GUIOptionsInfo::macosDeskIconPath, store::macosDeskIcon},
    {"mainIcon", &GUIOptionsInfo::mainIconPath, store::mainIcon},
};

// clang-format off
const Row<CommonInfo> commonRows[] = {
    {"procomVal",     Form::Number, &CommonInfo::procomVal},
    {"funcomVal",     Form::Number, &CommonInfo::funcomVal},
    {"cusTimeStamp",  Form::Number, &CommonInfo::cusTimeStamp},
    {"cusTimeString", Form::Text,   &CommonInfo::cusTimeString},
    {"cusAddInfo",    Form::Text,   &CommonInfo::cusAddInfo},
    {"areaKey",       Form::Number, &CommonInfo::areaKey},
};

using Function = BasicFunctionInfo;
const Row<Function> functionRows[] = {
    {"acl",                         Form::Number, &Function::acl},
    {"wanControl",                  Form::Number, &Function::wanControl},
    {"drvErr",                      Form::Number, &Function::drvErr},
    {"dynamicPwdVerify",            Form::Number, &Function::dynamicPwdVerify},
    {"dynamicVifInfo",              Form::Number, &Function::dynamicVifInfo},
    {"msgAuthOpt",                  Form::Number, &Function::msgAuthOpt},
    {"msgAuthInfo",                 Form::Number, &Function::msgAuthInfo,                 &Function::msgAuthOpt},
    {"msgAuthServIP",               Form::Text,   &Function::msgAuthServIP,               &Function::msgAuthOpt},
    {"msgAuthServPort",             Form::Number, &Function::msgAuthServPort,             &Function::msgAuthOpt},
    {"passwordProtection",          Form::Number, &Function::passwordProtection},
    {"uninstallPassword",           Form::Own,    ByHand<Function>{writePassword, readPassword},
                                                                                          &Function::passwordProtection},
    {"uninstallPasswordExtend",     Form::Number, &Function::uninstallPasswordExtend,     &Function::passwordProtection},
    {"wanControlEscape",            Form::Number, &Function::wanControlEscape},
    {"wanControlEscapePyxIp",       Form::Text,   &Function::wanControlEscapePyxIp,       &Function::wanControlEscape},
    {"wanControlEscapePyxPort",     Form::Text,   &Function::wanControlEscapePyxPort,     &Function::wanControlEscape},
    {"wanControlEscapeDns",         Form::Text,   &Function::wanControlEscapeDns,         &Function::wanControlEscape},
    {"wanControlEscapePyxIpBackup", Form::Text,   &Function::wanControlEscapePyxIpBackup, &Function::wanControlEscape},
};

const Row<X1OptionsInfo> x1Rows[] = {
    {"upVer",             Form::Number, &X1OptionsInfo::upVer},
    {"upIp",              Form::Number, &X1OptionsInfo::upIp},
    {"unicastType",       Form::Number, &X1OptionsInfo::unicastType},
    {"refreshIPAftCut",   Form::Number, &X1OptionsInfo::refreshIPAftCut},
    {"broadLogOff",       Form::Number, &X1OptionsInfo::broadLogOff},
    {"x1ResumeConn",      Form::Number, &X1OptionsInfo::x1ResumeConn},
    {"reauthTimes",       Form::Number, &X1OptionsInfo::reauthTimes},
    {"reauthInterval",    Form::Number, &X1OptionsInfo::reauthInterval},
    {"keepConnPasswd",    Form::Number, &X1OptionsInfo::keepConnPasswd},
    {"autoAuth",          Form::Number, &X1OptionsInfo::autoAuth},
    {"advancedAuth",      Form::Number, &X1OptionsInfo::advancedAuth},
    {"advancedAuthType",  Form::Number, &X1OptionsInfo::advancedAuthType, &X1OptionsInfo::advancedAuth},
    {"defaultConnection", Form::Number, &X1OptionsInfo::defaultConnection},
};

const Row<DomainDetail> domainItemRows[] = {
    {"domainName", Form::Utf8Text, &DomainDetail::domainName},
    {"domainDesp", Form::Utf8Text, &DomainDetail::domainDesp},
};
const Row<SUIDomainInfo> domainRows[] = {
    {"domainDefault", Form::NumberReadWide, &SUIDomainInfo::domainDefault},
    {"domainForce",   Form::NumberReadWide, &SUIDomainInfo::domainForce},
};

const Row<PortalOptionsInfo> portalRows[] = {
    {"resumeConn",       Form::Number, &PortalOptionsInfo::resumeConn},
    {"upVer",            Form::Number, &PortalOptionsInfo::upVer},
    {"autoAuth",         Form::Number, &PortalOptionsInfo::autoAuth},
    {"keepConnPasswd",   Form::Number, &PortalOptionsInfo::keepConnPasswd},
    {"advancedAuth",     Form::Number, &PortalOptionsInfo::advancedAuth},
    {"advancedAuthType", Form::Number, &PortalOptionsInfo::advancedAuthType, &PortalOptionsInfo::advancedAuth},
};

const Row<GUIOptionsInfo> guiRows[] = {
    {"subTitle",          Form::Text,     &GUIOptionsInfo::subTitle},
    {"linuxDeskIconName", Form::Text,     &GUIOptionsInfo::linuxDeskIconName},
    {"macosDeskName",     Form::Text,     &GUIOptionsInfo::macosDeskName},
    {"mainIconName",      Form::Text,     &GUIOptionsInfo::mainIconName},
    {"hideCopyRight",     Form::BoolText, &GUIOptionsInfo::hideCopyRight},
};

// Contract: the document carries a number of retries that no field of the record holds and the reader skips.
void writeRetryTimes(CBasedQtXmlParser& parser, const char* element, const ZOAOptionsInfo&)
{
    parser.AddItem(element, 4U);
}
void skip(CBasedQtXmlParser&, const char*, ZOAOptionsInfo&) {}

const Row<ZOAOptionsInfo> zoaRows[] = {
    {"useZOA",             Form::Number,   &ZOAOptionsInfo::useZOA},
    {"switchZOARetryTimes", Form::Own,     ByHand<ZOAOptionsInfo>{writeRetryTimes, skip}},
    {"ZOAIP",              Form::Utf8Text, &ZOAOptionsInfo::ZOAIP},
    {"ZOAPORT",            Form::Utf8Text, &ZOAOptionsInfo::ZOAPORT},
    {"standbyZOAIP",       Form::Utf8Text, &ZOAOptionsInfo::standbyZOAIP},
    {"standbyZOAPORT",     Form::Utf8Text, &ZOAOptionsInfo::standbyZOAPORT},
};

const Row<KEFOptionsInfo> kefRows[] = {
    {"kefIP",     Form::Text,   &KEFOptionsInfo::kefIP},
    {"kefPort",   Form::Text,   &KEFOptionsInfo::kefPort},
    {"customize", Form::Number, &KEFOptionsInfo::customize},
};
// clang-format on

} // namespace

void CustomXmlParser::FormatXMLCommonInfo(CommonInfo info)
{
    formatSection("common", [&] { writeRows(*this, commonRows, info); });
}

void CustomXmlParser::FormatXMLFunctionInfo(BasicFunctionInfo info)
{
    formatSection("functions", [&] { writeRows(*this, functionRows, info); });
}

void CustomXmlParser::FormatXML8021XInfo(X1OptionsInfo info)
{
    formatSection("x1", [&] { writeRows(*this, x1Rows, info); });
}

void CustomXmlParser::FormatXMLDomainInfo(SUIDomainInfo& info)
{
    const auto addItem = [this](const DomainDetail& detail) {
        addGroup("domaindetailItem", [&] { writeRows(*this, domainItemRows, detail); });
    };
    const auto addChildren = [&] {
        addGroup("domaindetail", [&] {
            for (const DomainDetail& detail : qAsConst(info.domaindetail))
                addItem(detail);
        });
        writeRows(*this, domainRows, info);
    };
    formatSection("domain", addChildren, true);
}

void CustomXmlParser::FormatXMLPortalInfo(PortalOptionsInfo info)
{
    formatSection("portal", [&] { writeRows(*this, portalRows, info); });
}

void CustomXmlParser::FormatXMLGUIInfo(GUIOptionsInfo info)
{
    formatSection("guiOptions", [&] {
        for (const Icon& icon : icons)
            AddItem(icon.element, !(info.*icon.path).isEmpty());
        writeRows(*this, guiRows, info);
    });
}

void CustomXmlParser::FormatXMLZOAInfo(ZOAOptionsInfo info)
{
    formatSection("ZOA", [&] { writeRows(*this, zoaRows, info); });
}

void CustomXmlParser::FormatXMLKefInfo(KEFOptionsInfo info)
{
    formatSection("kef", [&] { writeRows(*this, kefRows, info); });
}

int CustomXmlParser::GetXMLCommonInfo(const QString& path, CommonInfo& info)
{
    return getSection(path, "common", [&] { readRows(*this, commonRows, info); });
}

int CustomXmlParser::GetXMLFunctionInfo(const QString& path, BasicFunctionInfo& info)
{
    return getSection(path, "functions", [&] { readRows(*this, functionRows, info); });
}

int CustomXmlParser::GetXML8021XInfo(const QString& path, X1OptionsInfo& info)
{
    return getSection(path, "x1", [&] { readRows(*this, x1Rows, info); });
}

int CustomXmlParser::GetXMLDomainInfo(const QString& path, SUIDomainInfo& info)
{
    return getSection(path, "domain", [&] {
        readRows(*this, domainRows, info);
        const QDomElement list = m_qoCurElement.firstChildElement(QStringLiteral("domaindetail"));
        forEachItem(list, "domaindetailItem", [&] {
            DomainDetail detail;
            readRows(*this, domainItemRows, detail);
            info.domaindetail.append(detail);
        });
    });
}

int CustomXmlParser::GetXMLPortalInfo(const QString& path, PortalOptionsInfo& info)
{
    return getSection(path, "portal", [&] { readRows(*this, portalRows, info); });
}

int CustomXmlParser::GetXMLGUIInfo(const QString& path, GUIOptionsInfo& info)
{
    const QString directory = path.left(path.lastIndexOf(QLatin1Char('/')) + 1);
    return getSection(path, "guiOptions", [&] {
        for (const Icon& icon : icons) {
            bool exists = false;
            GetNodeValue(icon.element, exists);
            if (exists)
                info.*icon.path = directory + QLatin1String(icon.file);
        }
        readRows(*this, guiRows, info);
    });
}

int CustomXmlParser::GetXMLZOAInfo(const QString& path, ZOAOptionsInfo& info)
{
    return getSection(path, "ZOA", [&] { readRows(*this, zoaRows, info); });
}

int CustomXmlParser::GetXMLKefInfo(const QString& path, KEFOptionsInfo& info)
{
    return getSection(path, "kef", [&] { readRows(*this, kefRows, info); });
}
