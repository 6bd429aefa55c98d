#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"
#include "xml/PlainReader.h"

// The sections of the document, and what fields each holds.

namespace {

template <class S> Field::Type typeOf(const Row<S>& row)
{
    if (row.form == Form::BoolText || row.form == Form::Icon)
        return Field::TrueFalse;
    if (std::holds_alternative<bool S::*>(row.field))
        return Field::Flag;
    const bool isText = std::holds_alternative<QString S::*>(row.field) || std::holds_alternative<ByHand<S>>(row.field);
    return isText ? Field::Text : Field::Number;
}

QString trueFalse(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

template <class S> QString valueIn(const Row<S>& row, const S& part)
{
    return std::visit(
        [&](auto member) -> QString {
            using Member = decltype(member);
            if constexpr (std::is_same_v<Member, ByHand<S>>)
                return part.*member.text;
            else if constexpr (std::is_same_v<Member, QString S::*>)
                return row.form == Form::Icon ? trueFalse(!(part.*member).isEmpty()) : part.*member;
            else if constexpr (std::is_same_v<Member, bool S::*>)
                return row.form == Form::BoolText ? trueFalse(part.*member) : QString::number(part.*member);
            else
                return QString::number(part.*member);
        },
        row.field);
}

template <class S> void setValueIn(const Row<S>& row, S& part, const QString& value)
{
    std::visit(
        [&](auto member) {
            using Member = decltype(member);
            if constexpr (std::is_same_v<Member, ByHand<S>>)
                part.*member.text = value;
            else if constexpr (std::is_same_v<Member, bool S::*>)
                part.*member = value == QLatin1String("true") || value.toULongLong() != 0;
            else
                catalogue::assign(part.*member, value);
        },
        row.field);
}

} // namespace

/// Makes the flat list of fields, section by section.
class FieldCollector
{
public:
    explicit FieldCollector(std::vector<Field>& fields) : m_fields(fields) {}

    void enter(int section) { m_section = section; }

    /// The fields of a part that stands once.
    template <class S> void part(const char* group = nullptr)
    {
        for (const Row<S>& row : rowsOf<S>()) {
            Field* field = add(row, group);
            if (!field)
                continue;
            field->defaultValue = valueIn(row, S());
            field->value = [&row](const CustomInfo& info, int) { return valueIn(row, partOf<S>(info)); };
            field->setValue = [&row](CustomInfo& info, int, const QString& value) {
                setValueIn(row, partOf<S>(info), value);
            };
        }
    }

    /// The fields of the rows of a list; `at` gives the list within the record.
    template <class At> void list(const ListElements& elements, const RecordList& list, At at)
    {
        using S = typename std::decay_t<decltype(at(std::declval<CustomInfo&>()))>::value_type;
        for (const Row<S>& row : rowsOf<S>()) {
            Field* field = add(row, elements.list);
            field->list = &list;
            field->defaultValue = valueIn(row, S());
            field->value = [&row, at](const CustomInfo& info, int n) { return valueIn(row, at(info).at(n)); };
            field->setValue = [&row, at](CustomInfo& info, int n, const QString& value) {
                setValueIn(row, at(info)[n], value);
            };
        }
    }

private:
    /// Null for an element that stands for no field.
    template <class S> Field* add(const Row<S>& row, const char* group)
    {
        if (const auto* own = std::get_if<ByHand<S>>(&row.field)) {
            if (!own->text)
                return nullptr;
        }
        m_fields.push_back(
            {m_section, group, row.element, row.label, row.traits, typeOf(row), nullptr, {}, {}, {}, &row});
        return &m_fields.back();
    }

    std::vector<Field>& m_fields;
    int m_section = 0;
};

namespace {

constexpr auto domainsOf = [](auto& info) -> auto&
{
    return info.domain.domaindetail;
};
constexpr auto gatewaysOf = [](auto& info) -> auto&
{
    return info.sslvpn.remote;
};
constexpr auto routesOf = [](auto& info) -> auto&
{
    return info.vpnRoutes;
};

// QList cannot be resized.
template <class List> void resizeList(List& list, int size)
{
    while (list.size() > size)
        list.removeLast();
    while (list.size() < size)
        list.append(typename List::value_type());
}

const RecordList domains = {"domainName", [](const CustomInfo& info) { return domainsOf(info).size(); },
                            [](CustomInfo& info, int size) { resizeList(domainsOf(info), size); }};
const RecordList gateways = {"iPDes", [](const CustomInfo& info) { return gatewaysOf(info).size(); },
                             [](CustomInfo& info, int size) { resizeList(gatewaysOf(info), size); }};
const RecordList routes = {"ip", [](const CustomInfo& info) { return routesOf(info).size(); },
                           [](CustomInfo& info, int size) { resizeList(routesOf(info), size); }};

constexpr bool whenChosen = false;

using Parser = CustomXmlParser;

/// A section by its part of the record, the parser's two operations for it, and what it consists of.
template <auto part, auto format, auto get, class Layout>
constexpr Section section(const char* element, const char* titleKey, quint64 access, quint64 functions,
                          int loadPosition, Layout layout, bool isWrittenAlways = true)
{
    return {element,
            titleKey,
            access,
            functions,
            isWrittenAlways,
            loadPosition,
            [](Parser& parser, CustomInfo& info) { (parser.*format)(info.*part); },
            [](Parser& parser, const QString& path, CustomInfo& info) { return (parser.*get)(path, info.*part); },
            layout,
            layout};
}

// clang-format off
const Section allSections[] = {
    section<&CustomInfo::common, &Parser::FormatXMLCommonInfo, &Parser::GetXMLCommonInfo>(
        "common", "CusClient", 0, 0, 3, [](auto& fields) { fields.template part<CommonInfo>(); }),
    section<&CustomInfo::function, &Parser::FormatXMLFunctionInfo, &Parser::GetXMLFunctionInfo>(
        "functions", "func_title", 0, 0, 2, [](auto& fields) { fields.template part<BasicFunctionInfo>(); }),
    section<&CustomInfo::x1, &Parser::FormatXML8021XInfo, &Parser::GetXML8021XInfo>(
        "x1", "8021x_title", procom::x1, 0, 0, [](auto& fields) { fields.template part<X1OptionsInfo>(); }),
    section<&CustomInfo::domain, &Parser::FormatXMLDomainInfo, &Parser::GetXMLDomainInfo>(
        "domain", "CUS_DomainTitle", procom::x1, 0, 10, [](auto& fields) {
            fields.list(domainList, domains, domainsOf);
            fields.template part<SUIDomainInfo>();
        }),
    section<&CustomInfo::portal, &Parser::FormatXMLPortalInfo, &Parser::GetXMLPortalInfo>(
        "portal", "portal_title", procom::portal, 0, 1, [](auto& fields) { fields.template part<PortalOptionsInfo>(); }),
    section<&CustomInfo::sslvpn, &Parser::FormatXMLSslVpnInfo, &Parser::GetXMLSslVpnInfo>(
        "sslvpn", "SslVpn_title", procom::sslVpn, 0, 4, [](auto& fields) {
            fields.list(gatewayList, gateways, gatewaysOf);
            fields.template part<SSLVPNOptionsInfo>();
        }),
    section<&CustomInfo::gui, &Parser::FormatXMLGUIInfo, &Parser::GetXMLGUIInfo>(
        "guiOptions", "Gui_title", 0, 0, 5, [](auto& fields) { fields.template part<GUIOptionsInfo>(); }),
    section<&CustomInfo::zoa, &Parser::FormatXMLZOAInfo, &Parser::GetXMLZOAInfo>(
        "ZOA", "Zoa_title", procom::zoaDirect, funcom::zoa, 8, [](auto& fields) { fields.template part<ZOAOptionsInfo>(); }),
    section<&CustomInfo::vpn, &Parser::FormatIpseVpnInfo, &Parser::GetXMLIpseVpnInfo>(
        "vpn", "IpsecVpn_title", procom::l2tpIpsec, 0, 6, [](auto& fields) {
            fields.template part<L2TP_IPSEC_VPN_OptionInfo>();
            forEachVpnGroup([&](const char* name, auto member) {
                using Group = std::decay_t<decltype(std::declval<L2TP_IPSEC_VPN_OptionInfo>().*member)>;
                fields.template part<Group>(name);
            });
        }),
    section<&CustomInfo::vpnRoutes, &Parser::FormatXMLIPSECVPNRouteInfo, &Parser::GetXMLIPSECVPNRouteInfo>(
        "vpnroute", "VUI_RouteSetting", procom::l2tpIpsec, 0, 7,
        [](auto& fields) { fields.list(routeList, routes, routesOf); }),
    section<&CustomInfo::kef, &Parser::FormatXMLKefInfo, &Parser::GetXMLKefInfo>(
        "kef", "Kef_title", 0, funcom::kef, 9, [](auto& fields) { fields.template part<KEFOptionsInfo>(); }, whenChosen),
};
// clang-format on

} // namespace

const Section (&catalogue::sections())[catalogue::sectionCount]
{
    return allSections;
}

const std::vector<Field>& catalogue::fields()
{
    static const std::vector<Field> all = [] {
        std::vector<Field> fields;
        FieldCollector collector(fields);
        for (int position = 0; position < sectionCount; ++position) {
            collector.enter(position);
            allSections[position].describe(collector);
        }
        return fields;
    }();
    return all;
}
