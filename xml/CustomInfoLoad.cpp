#include "xml/CustomInfoLoad.h"

#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"
#include "xml/PlainDocument.h"

#include <QString>

#include <array>

void formatCustomInfo(CustomXmlParser& parser, CustomInfo& info)
{
    parser.FormatXMLInit();
    for (const Section& section : catalogue::sections()) {
        if (section.isWrittenAlways || section.isChosen(info.common))
            section.format(parser, info);
    }
}

namespace {

void readSections(CustomXmlParser& parser, const QString& path, CustomInfo& info)
{
    std::array<const Section*, catalogue::sectionCount> inLoadOrder{};
    for (const Section& section : catalogue::sections())
        inLoadOrder.at(static_cast<std::size_t>(section.loadPosition)) = &section;
    for (const Section* section : inLoadOrder)
        section->get(parser, path, info);
}

} // namespace

bool utl_LoadCustomInfo(const char* xmlPath, CustomInfo& info)
{
    CustomXmlParser parser;
    readSections(parser, QString::fromUtf8(xmlPath), info);
    return true;
}

bool loadCustomInfo(const QByteArray& document, const QString& directory, CustomInfo& info)
{
    if (readPlainDocument(document, directory.left(directory.lastIndexOf(QLatin1Char('/')) + 1), info))
        return true;
    CustomXmlParser parser;
    if (!parser.loadDocument(document))
        return false;
    readSections(parser, directory, info);
    return true;
}
