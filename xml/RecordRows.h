#pragma once

#include "xml/CustomInfo.h"
#include "xml/RecordWords.h"

#include <QString>

#include <type_traits>
#include <variant>

class CBasedQtXmlParser;

// The catalogue of the record, part by part: for each field its element in the document, its form there, its member,
// and what the windows tell of it. The order of the rows is the order of the elements in the file. The default of a
// field is its member initialiser in CustomInfo.h.

/// How a field stands in the document.
enum class Form
{
    Number,         // decimal digits, cut to 32 bits and signed; a bool is 0 or 1, and any value but 0 reads as true
    NumberReadWide, // the same on writing; on reading all 64 bits are taken
    BoolText,       // "true" or "false"; other text keeps the record's value on reading
    Text,
    Utf8Text,       // by way of the UTF-8 bytes
    Utf8TextToText, // the same on writing; read as Text
    Icon, // "true" or "false" for a path that is set; the file lies beside the document, whose reader sets the path
    Own   // as the row's functions have it
};

/// A field that needs code of its own, such as enciphered text.
template <class S> struct ByHand
{
    void (*write)(CBasedQtXmlParser& parser, const char* element, const S& section);
    void (*read)(CBasedQtXmlParser& parser, const char* element, S& section);
    QString S::*text = nullptr; // null: the element stands for no field of the record
    /// What `read` makes of the element's text; null when it makes nothing.
    void (*take)(const QString& text, S& section) = nullptr;
};

/// What the windows tell of a field, but for its label.
struct Traits
{
    const words::List* offered = nullptr;             // what the editing dialogs offer
    const words::List* viewed = nullptr;              // how the read-only views show the value; null: as it stands
    int longest = 0;                                  // characters that an editor takes; 0: no limit of its own
    bool isSecret = false;                            // plain in the record, never shown but to its editor and viewer
    QString (*viewedBy)(const CustomInfo&) = nullptr; // where the views look at more than the field
};

/// The views show the stored value, which is the shown word or is not shown at all.
constexpr Traits offers(const words::List& list)
{
    return {&list};
}
constexpr Traits shows(const words::List& list)
{
    return {&list, &list};
}
constexpr Traits shows(const words::List& offered, const words::List& viewed)
{
    return {&offered, &viewed};
}
constexpr Traits upTo(int characters)
{
    return {nullptr, nullptr, characters};
}
constexpr Traits secret(int characters)
{
    return {nullptr, nullptr, characters, true};
}

template <class S> struct Row
{
    const char* element;
    Form form;
    std::variant<quint32 S::*, quint64 S::*, bool S::*, QString S::*, ByHand<S>> field;
    const char* label = nullptr; // language key of the text beside it; null: no window shows the field
    Traits traits = {};
    quint32 S::*gate = nullptr; // written and read only while this flag, a row before, is not 0

    /// True for the row of this member.
    template <class Value> bool isOf(Value S::*member) const
    {
        if (const auto* own = std::get_if<ByHand<S>>(&field)) {
            if constexpr (std::is_same_v<Value, QString>)
                return own->text == member;
            return false;
        }
        const auto* plain = std::get_if<Value S::*>(&field);
        return plain && *plain == member;
    }
};

/// The rows of one part of the record.
template <class S> class Rows
{
public:
    template <std::size_t count> Rows(const Row<S> (&rows)[count]) : m_begin(rows), m_end(rows + count) {}
    const Row<S>* begin() const { return m_begin; }
    const Row<S>* end() const { return m_end; }

private:
    const Row<S>* m_begin;
    const Row<S>* m_end;
};

template <class S> Rows<S> rowsOf();
template <> Rows<CommonInfo> rowsOf();
template <> Rows<BasicFunctionInfo> rowsOf();
template <> Rows<X1OptionsInfo> rowsOf();
template <> Rows<DomainDetail> rowsOf();
template <> Rows<SUIDomainInfo> rowsOf();
template <> Rows<PortalOptionsInfo> rowsOf();
template <> Rows<SSLVPNRemoteInfo> rowsOf();
template <> Rows<SSLVPNOptionsInfo> rowsOf();
template <> Rows<GUIOptionsInfo> rowsOf();
template <> Rows<ZOAOptionsInfo> rowsOf();
template <> Rows<L2TP_IPSEC_VPN_OptionInfo> rowsOf();
template <> Rows<IPSECVPNBASECFG> rowsOf();
template <> Rows<L2TPCFG> rowsOf();
template <> Rows<IPSECCFG> rowsOf();
template <> Rows<IKECFG> rowsOf();
template <> Rows<VPN_RouteInfo> rowsOf();
template <> Rows<KEFOptionsInfo> rowsOf();

/// The one part of this type in the record, which may be const.
template <class S, class Record> auto& partOf(Record& info)
{
    // clang-format off
    if constexpr (std::is_same_v<S, CommonInfo>) return info.common;
    else if constexpr (std::is_same_v<S, BasicFunctionInfo>) return info.function;
    else if constexpr (std::is_same_v<S, X1OptionsInfo>) return info.x1;
    else if constexpr (std::is_same_v<S, SUIDomainInfo>) return info.domain;
    else if constexpr (std::is_same_v<S, PortalOptionsInfo>) return info.portal;
    else if constexpr (std::is_same_v<S, SSLVPNOptionsInfo>) return info.sslvpn;
    else if constexpr (std::is_same_v<S, GUIOptionsInfo>) return info.gui;
    else if constexpr (std::is_same_v<S, ZOAOptionsInfo>) return info.zoa;
    else if constexpr (std::is_same_v<S, L2TP_IPSEC_VPN_OptionInfo>) return info.vpn;
    else if constexpr (std::is_same_v<S, IPSECVPNBASECFG>) return info.vpn.basecfg;
    else if constexpr (std::is_same_v<S, L2TPCFG>) return info.vpn.l2tpcfg;
    else if constexpr (std::is_same_v<S, IPSECCFG>) return info.vpn.ipseccfg;
    else if constexpr (std::is_same_v<S, IKECFG>) return info.vpn.ikecfg;
    else if constexpr (std::is_same_v<S, KEFOptionsInfo>) return info.kef;
    // clang-format on
}

/// A field by its member, for the rows of the windows: its place in the catalogue and the access to its value.
struct FieldRef
{
    const char* (*label)(); // language key
    const Traits& (*traits)();
    quint64 (*number)(const CustomInfo&); // of a text that is no number: 0
    QString (*text)(const CustomInfo&);   // a number in decimal digits
    void (*setNumber)(CustomInfo&, quint64);
    void (*setText)(CustomInfo&, const QString&); // digits for a number
};

/// What the record stores for the word at a position.
inline QString stored(const words::List& list, int position)
{
    return QString::fromLatin1(list.at(static_cast<std::size_t>(position)).stored);
}

namespace catalogue {

template <class S, class Value> const Row<S>& rowOf(Value S::*member)
{
    for (const Row<S>& row : rowsOf<S>()) {
        if (row.isOf(member))
            return row;
    }
    qFatal("a member without a row");
    Q_UNREACHABLE();
}

template <class Value> QString toText(const Value& value)
{
    if constexpr (std::is_same_v<Value, QString>)
        return value;
    else
        return QString::number(value);
}

template <class Value> void assign(Value& value, const QString& text)
{
    if constexpr (std::is_same_v<Value, QString>)
        value = text;
    else
        value = static_cast<Value>(text.toULongLong());
}

template <auto member> struct Access;
template <class S, class Value, Value S::*member> struct Access<member>
{
    using Part = S;

    static const Row<S>& row() { return rowOf(member); }
    static const char* label() { return row().label; }
    static const Traits& traits() { return row().traits; }
    static quint64 number(const CustomInfo& info)
    {
        if constexpr (std::is_same_v<Value, QString>)
            return (partOf<S>(info).*member).toULongLong();
        else
            return partOf<S>(info).*member;
    }
    static QString text(const CustomInfo& info) { return toText(partOf<S>(info).*member); }
    static void setNumber(CustomInfo& info, quint64 number)
    {
        if constexpr (std::is_same_v<Value, QString>)
            partOf<S>(info).*member = QString::number(number);
        else
            partOf<S>(info).*member = static_cast<Value>(number);
    }
    static void setText(CustomInfo& info, const QString& text) { assign(partOf<S>(info).*member, text); }
};

template <class S>
constexpr bool isListRow =
    std::is_same_v<S, DomainDetail> || std::is_same_v<S, SSLVPNRemoteInfo> || std::is_same_v<S, VPN_RouteInfo>;

template <auto member> constexpr FieldRef refTo()
{
    using At = Access<member>;
    if constexpr (isListRow<typename At::Part>)
        return {&At::label, &At::traits, nullptr, nullptr, nullptr, nullptr};
    else
        return {&At::label, &At::traits, &At::number, &At::text, &At::setNumber, &At::setText};
}

} // namespace catalogue

/// The field of a member. The row of a list has no one place in the record, so that its fields have label and traits
/// only, and null for the access.
template <auto member> constexpr FieldRef field = catalogue::refTo<member>();
