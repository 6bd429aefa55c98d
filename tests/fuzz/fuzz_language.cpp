#include "app/language/CLanguageParser.h"
#include "app/language/PlainTexts.h"
#include "fuzz/FuzzTarget.h"

#include <QDomDocument>
#include <QMap>
#include <QString>
#include <QXmlStreamReader>

#include <algorithm>

namespace {

/// The second parser takes names that are none.
bool isName(const QStringRef& name)
{
    return std::all_of(name.begin(), name.end(), [](QChar character) {
        return character.unicode() > 0x7F || character.isLetterOrNumber() || QLatin1String("_.-:").contains(character);
    });
}

/// The texts of a language file by another parser; false for what is no plain file of that kind, where the two may
/// differ: not well-formed, of another encoding than UTF-8, with a document type, or with something else than elements
/// and texts.
bool textsOf(const QByteArray& file, QMap<QString, QString>& texts)
{
    if (QString::fromUtf8(file).toUtf8() != file)
        return false;
    QXmlStreamReader reader(file);
    int depth = 0;
    bool isBegun = false;
    QString key;
    QString text;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement:
            if (++depth == 2) {
                isBegun = isBegun || reader.qualifiedName() == QLatin1String("control");
                key = reader.attributes().value(QLatin1String("key")).toString();
                text.clear();
            }
            if (!isName(reader.qualifiedName()) || !reader.prefix().isEmpty() ||
                !reader.namespaceDeclarations().isEmpty())
                return false;
            for (const QXmlStreamAttribute& attribute : reader.attributes()) {
                if (!attribute.prefix().isEmpty() || !isName(attribute.qualifiedName()))
                    return false;
            }
            break;
        case QXmlStreamReader::Characters:
            // The one drops a piece of nothing but spaces, and the pieces of the other are others.
            if (reader.isCDATA() || (depth > 1 && reader.isWhitespace()))
                return false;
            text += reader.text();
            break;
        case QXmlStreamReader::EndElement:
            if (depth-- == 2 && isBegun && !key.isEmpty() && !text.isEmpty())
                texts.insert(key, text);
            break;
        case QXmlStreamReader::StartDocument: {
            const QStringRef encoding = reader.documentEncoding();
            if (!encoding.isEmpty() && encoding.compare(QLatin1String("utf-8"), Qt::CaseInsensitive) != 0)
                return false;
            break;
        }
        case QXmlStreamReader::EndDocument:
            break;
        default:
            return false;
        }
    }
    return !reader.hasError();
}

} // namespace

// A second parser finds the same texts; what the file does not name keeps its text. Of a file that is read without a
// tree, the tree gives the same texts.
FUZZ_TARGET("language")
{
    static const QByteArray known = fuzz::written(
        "known.xml",
        "<control_list><control key=\"only here\">kept</control><control key=\"a\">former</control></control_list>");
    const QString path = QString::fromUtf8(fuzz::written("Language_en.xml", bytes));
    CLanguageParser parser;
    HOLDS(parser.LoadLanguage(QString::fromUtf8(known)) == 1);
    HOLDS(parser.LoadLanguage(path) == 1);
    HOLDS(!parser.GetKey("a").isEmpty() && !parser.GetKey("only here").isEmpty());
    HOLDS(parser.GetKey(nullptr) == QLatin1String("NULL"));

    LanguageTexts plain;
    if (readPlainTexts(bytes, plain)) {
        QDomDocument tree;
        HOLDS(tree.setContent(bytes, true));
        LanguageTexts whole;
        for (QDomElement element = tree.documentElement().firstChildElement(); !element.isNull();
             element = element.nextSiblingElement())
            whole.append({element.attribute(QStringLiteral("key")), element.text()});
        HOLDS(plain == whole);
    } else {
        HOLDS(plain.isEmpty());
    }

    QMap<QString, QString> texts;
    // In an attribute the one keeps a tab, and the other makes a blank of it.
    if (bytes.contains("&") || bytes.contains('\t') || bytes.contains('\r') || bytes.contains('\0') ||
        !textsOf(bytes, texts))
        return;
    if (!texts.contains(QStringLiteral("only here")))
        HOLDS(parser.GetKey("only here") == QLatin1String("kept"));
    for (auto text = texts.constBegin(); text != texts.constEnd(); ++text)
        HOLDS_TOLD(parser.GetKey(text.key().toUtf8().constData()) == text.value(),
                   text.key().toUtf8() + ": " + parser.GetKey(text.key().toUtf8().constData()).toUtf8() + " for " +
                       text.value().toUtf8());
}
