#include "xml/CustomInfoLoad.h"

#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"

#include <array>

void formatCustomInfo(CustomXmlParser& parser, CustomInfo& info)
{
    parser.FormatXMLInit();
    for (const Section& section : catalogue::sections()) {
        if (section.isWrittenAlways || section.isChosen(info.common))
            section.format(parser, info);
    }
}

bool utl_LoadCustomInfo(const char* xmlPath, CustomInfo& info)
{
    std::array<const Section*, catalogue::sectionCount> inLoadOrder{};
    for (const Section& section : catalogue::sections())
        inLoadOrder.at(static_cast<std::size_t>(section.loadPosition)) = &section;

    const QString path = QString::fromUtf8(xmlPath);
    CustomXmlParser parser;
    for (const Section* section : inLoadOrder)
        section->get(parser, path, info);
    return true;
}
