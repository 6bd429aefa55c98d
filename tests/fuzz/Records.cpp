#include "fuzz/Records.h"

#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"

bool fuzz::byParser(const QByteArray& document, const QString& directory, CustomInfo& info)
{
    CustomXmlParser parser;
    if (!parser.loadDocument(document))
        return false;
    for (const Section& section : catalogue::sections())
        section.get(parser, directory, info);
    return true;
}

QByteArray fuzz::difference(const CustomInfo& one, const CustomInfo& other)
{
    for (const IconFile& icon : iconFiles()) {
        if (one.gui.*icon.path != other.gui.*icon.path)
            return QByteArray(icon.element) + ": " + (one.gui.*icon.path).toUtf8() + " for " +
                   (other.gui.*icon.path).toUtf8();
    }
    for (const Field& field : catalogue::fields()) {
        if (field.list && field.list->size(one) != field.list->size(other))
            return field.path().toUtf8() + ": other number of rows";
        const int rows = field.list ? field.list->size(one) : 1;
        for (int row = 0; row < rows; ++row) {
            const QString here = field.value(one, row);
            const QString there = field.value(other, row);
            if (here != there)
                return field.path(row).toUtf8() + ": " + here.toUtf8().toPercentEncoding() + " for " +
                       there.toUtf8().toPercentEncoding();
        }
    }
    return QByteArray();
}
