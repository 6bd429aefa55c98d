#pragma once

#include "xml/RecordRows.h"

#include <functional>
#include <vector>

class CustomXmlParser;

// The catalogue of the record as a whole: its sections, and all its fields with their paths. Whatever shows, compares,
// searches or documents fields walks it.

/// A list in the document: the element that holds it and that of one row. The routes have no element but their section.
struct ListElements
{
    const char* list;
    const char* item;
};
constexpr ListElements domainList = {"domaindetail", "domaindetailItem"};
constexpr ListElements gatewayList = {"remote", "remoteItem"};
constexpr ListElements routeList = {nullptr, "vpnrouteItem"};

/// Calls `visit(element, member)` for each group of the section "vpn", in the order of the file.
template <class Visit> void forEachVpnGroup(Visit visit)
{
    visit("basecfg", &L2TP_IPSEC_VPN_OptionInfo::basecfg);
    visit("l2tpcfg", &L2TP_IPSEC_VPN_OptionInfo::l2tpcfg);
    visit("ipseccfg", &L2TP_IPSEC_VPN_OptionInfo::ipseccfg);
    visit("ikecfg", &L2TP_IPSEC_VPN_OptionInfo::ikecfg);
}

/// An icon: the document only says whether it exists, its file lies beside the document.
struct IconFile
{
    QString GUIOptionsInfo::*path;
    const char* element;
    const char* name; // of the file
};
const IconFile (&iconFiles())[3];

/// Where an icon lies in a directory, which is given with its trailing "/".
QString pathOfIcon(const QString& directory, QString GUIOptionsInfo::*path);

/// A list of the record whose rows have fields.
struct RecordList
{
    const char* nameElement; // the field by which rows of two records are matched
    int (*size)(const CustomInfo&);
    void (*resize)(CustomInfo&, int);
};

/// One field of the record. `row` counts the rows of the field's list from 0 and means nothing without a list.
struct Field
{
    enum Type
    {
        Number,
        Flag, // "0" or "1"
        TrueFalse,
        Text
    };

    int section;       // position in catalogue::sections()
    const char* group; // element between section and field, or the list's; may be null
    const char* element;
    const char* label; // language key; null when no window shows the field
    Traits traits;
    Type type;
    const RecordList* list;                                        // null for a field that stands once
    QString defaultValue;                                          // of a new record, or of a new row of the list
    std::function<QString(const CustomInfo& info, int row)> value; // as the document has it, secrets plain
    std::function<void(CustomInfo& info, int row, const QString& value)> setValue;
    const void* tableRow = nullptr; // its row in the table of its part

    /// Section, group, row and element, such as "sslvpn/remote/0/ip"; a row below 0 gives "*" in its place.
    QString path(int row = -1) const;
};

struct Section
{
    const char* element;
    const char* titleKey;       // of its tab, or of its page
    quint64 accessComponents;   // it has effect when one of these or of the next is chosen;
    quint64 functionComponents; // with none given, always
    bool isWrittenAlways;       // or only while its component is chosen
    int loadPosition;           // Contract: the reader goes by this order, not by that of the file
    void (*format)(CustomXmlParser& parser, CustomInfo& info);
    int (*get)(CustomXmlParser& parser, const QString& path, CustomInfo& info);
    void (*describe)(class FieldCollector& fields);
    void (*readPlain)(class PlainReader& reader);

    bool isChosen(const CommonInfo& common) const
    {
        return (accessComponents == 0 && functionComponents == 0) || (common.procomVal & accessComponents) != 0 ||
               (common.funcomVal & functionComponents) != 0;
    }
};

namespace catalogue {

constexpr int sectionCount = 11;

/// In the order of the file.
const Section (&sections())[sectionCount];

/// The section of this element.
const Section& section(const char* element);

/// All fields in the order of the file, those of a list once.
const std::vector<Field>& fields();

/// The field of a row of the tables.
const Field& fieldOfRow(const void* tableRow);

/// The field of a member.
template <auto member> const Field& fieldOf()
{
    static const Field& found = fieldOfRow(&Access<member>::row());
    return found;
}

/// Calls `visit(field, row)` for each field that the record holds, in the order of the file, lists row by row.
void walk(const CustomInfo& info, const std::function<void(const Field& field, int row)>& visit);

} // namespace catalogue
