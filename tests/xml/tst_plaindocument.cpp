#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/Catalogue.h"
#include "xml/CustomXmlParser.h"
#include "xml/PlainCharacters.h"
#include "xml/PlainDocument.h"

#include <QDomDocument>
#include <QRandomGenerator>
#include <QtTest>

#include <algorithm>
#include <iterator>

namespace {

const QString s_directory = QStringLiteral("/store/1700000000/");

/// What the parser makes of a document, without the reader of plain ones; false when it refuses it.
bool byParser(const QByteArray& document, CustomInfo& info)
{
    CustomXmlParser parser;
    if (!parser.loadDocument(document))
        return false;
    for (const Section& section : catalogue::sections())
        section.get(parser, s_directory, info);
    return true;
}

CustomInfo readByParser(const QByteArray& document)
{
    CustomInfo info;
    byParser(document, info);
    return info;
}

CustomInfo recordWithComponents()
{
    CustomInfo record = distinctRecord();
    record.common.cusAddInfo = QStringLiteral("\u603b\u90e8 \"first\"");
    record.common.procomVal = 63;
    record.common.funcomVal = funcom::zoa | funcom::kef;
    record.gui.linuxDeskIconPath = QStringLiteral("/pictures/one.png");
    record.gui.macosDeskIconPath.clear();
    return record;
}

CustomInfo sparseRecord()
{
    CustomInfo record;
    record.common.cusTimeStamp = 1700000000;
    record.common.cusAddInfo = QStringLiteral("  \u7814\u53d1\u90e8\u95e8\uff0c \u00e9t\u00e9  a]]b \"c' \u3000 ");
    record.vpn.basecfg.preSharedKey = QStringLiteral("geheim");
    return record;
}

/// A document with one place changed, of which there must be one.
QByteArray changed(const QByteArray& from, const QByteArray& to)
{
    const QByteArray document = documentOf(recordWithComponents());
    return document.count(from) == 1 ? QByteArray(document).replace(from, to) : QByteArray();
}

} // namespace

class TstPlainDocument : public QObject
{
    Q_OBJECT

private slots:
    void plainCharactersAreThoseThatTheParserTakesAsTheyStand();
    void whatTheWriterMakesIsRead_data();
    void whatTheWriterMakesIsRead();
    void fieldBehindAClosedGateStaysAsItIs();
    void emptyTextsAndZeroGetTheirFallBacks();
    void anotherFormIsLeftToTheParser_data();
    void anotherFormIsLeftToTheParser();
    void damagedDocumentIsReadAsTheParserReadsIt();
};

void TstPlainDocument::plainCharactersAreThoseThatTheParserTakesAsTheyStand()
{
    const auto isIn = [](ushort first, ushort last, ushort character) {
        return first <= character && character <= last;
    };
    QString taken = QStringLiteral("x");
    for (ushort code = 1; code < 0xFFFF; ++code) {
        const QString character{QChar(code)};
        if (character.at(0).isSurrogate())
            continue;
        const QByteArray utf8 = character.toUtf8();
        bool isBlank = true;
        const bool isTaken = plainCharactersEnd(utf8.constData(), isBlank) == utf8.constData() + utf8.size();
        if (isTaken)
            taken += character;
        // What shown texts and remarks are made of must not go to the parser.
        const bool isCommon = (isIn(0x20, 0x7E, code) && !QLatin1String("<&>").contains(character)) ||
                              isIn(0xA0, 0x7FF, code) || isIn(0x3000, 0x30FF, code) || isIn(0x4E00, 0x9FFF, code) ||
                              isIn(0xFF01, 0xFF5E, code);
        QVERIFY2(isTaken || !isCommon, utf8.constData());
        QVERIFY2(isBlank || !character.at(0).isSpace(), utf8.constData());
    }
    QDomDocument document;
    QVERIFY(document.setContent("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<a>" + taken.toUtf8() + "</a>"));
    QCOMPARE(document.documentElement().text(), taken);
}

void TstPlainDocument::whatTheWriterMakesIsRead_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::newRow("all components") << documentOf(recordWithComponents());
    QTest::newRow("defaults") << documentOf(CustomInfo());
    QTest::newRow("few fields") << documentOf(sparseRecord());
    CustomInfo without = recordWithComponents();
    without.common.funcomVal = 0;
    QTest::newRow("without a component's section") << documentOf(without);
}

void TstPlainDocument::whatTheWriterMakesIsRead()
{
    QFETCH(QByteArray, document);
    CustomInfo read;
    QVERIFY(readPlainDocument(document, s_directory, read));
    const CustomInfo parsed = readByParser(document);
    QCOMPARE(differences(read, parsed), QStringList());
    CommonInfo common;
    QVERIFY(readPlainCommon(document, common));
    QCOMPARE(common.cusTimeStamp, parsed.common.cusTimeStamp);
    QCOMPARE(common.cusTimeString, parsed.common.cusTimeString);
    QCOMPARE(common.cusAddInfo, parsed.common.cusAddInfo);
    QCOMPARE(common.procomVal, parsed.common.procomVal);
    QCOMPARE(common.funcomVal, parsed.common.funcomVal);
    QCOMPARE(common.areaKey, parsed.common.areaKey);
}

void TstPlainDocument::fieldBehindAClosedGateStaysAsItIs()
{
    CustomInfo read;
    read.function.uninstallPassword = QStringLiteral("kept");
    QVERIFY(readPlainDocument(documentOf(CustomInfo()), s_directory, read));
    QCOMPARE(read.function.uninstallPassword, QStringLiteral("kept"));
}

void TstPlainDocument::emptyTextsAndZeroGetTheirFallBacks()
{
    CustomInfo record;
    record.sslvpn.authType.clear();
    record.sslvpn.getSmsVryCountdownValue = 0;
    CustomInfo read;
    QVERIFY(readPlainDocument(documentOf(record), s_directory, read));
    QCOMPARE(read.sslvpn.authType, QStringLiteral("Local;AD;LDAP;RADIUS"));
    QCOMPARE(read.sslvpn.getSmsVryCountdownValue, quint64(60));
}

void TstPlainDocument::anotherFormIsLeftToTheParser_data()
{
    QTest::addColumn<QByteArray>("document");
    const QByteArray whole = documentOf(recordWithComponents());
    const QByteArray name = "<L2TPTunnelName>";
    const auto inName = [&](const QByteArray& text) { return changed(name, name + text); };
    const QByteArray port = "<useZOA>";
    const auto inNumber = [&](const QByteArray& digits) { return changed(port, port + digits); };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("cut off") << whole.left(whole.size() - 2);
    QTest::newRow("something behind the root") << whole + " ";
    QTest::newRow("another encoding") << changed("utf-8", "utf-16");
    QTest::newRow("line ends of two characters") << QByteArray(whole).replace("\n", "\r\n");
    QTest::newRow("another indentation") << QByteArray(whole).replace("    <content>", "  <content>");
    QTest::newRow("element that is missing") << changed("        <kef>\n", "");
    QTest::newRow("unknown element") << changed("        <kef>\n", "        <fek>\n");
    QTest::newRow("attribute") << changed(name, "<L2TPTunnelName a=\"1\">");
    QTest::newRow("entity") << inName("&lt;");
    QTest::newRow("entity in digits") << inName("&#65;");
    QTest::newRow("element in a text") << inName("<b/>");
    QTest::newRow("comment") << inName("<!-- -->");
    QTest::newRow("end of a section of characters") << inName("]]>");
    QTest::newRow("tab") << inName("\t");
    QTest::newRow("line feed") << inName("\n");
    QTest::newRow("carriage return") << inName("\r");
    QTest::newRow("control character") << inName("\x01");
    QTest::newRow("zero byte") << inName(QByteArray(1, '\0'));
    QTest::newRow("byte that begins nothing") << inName("\xFF");
    QTest::newRow("character too long") << inName("\xC0\xAF");
    QTest::newRow("character cut off") << inName("\xE5\x8C");
    QTest::newRow("surrogate") << inName("\xED\xA0\x80");
    QTest::newRow("byte order mark") << inName("\xEF\xBB\xBF");
    QTest::newRow("replacement character") << inName("\xEF\xBF\xBD");
    QTest::newRow("last of the plane") << inName("\xEF\xBF\xBE");
    QTest::newRow("letter in a number") << inNumber("a");
    QTest::newRow("sign of a number") << inNumber("-");
    QTest::newRow("leading zero") << inNumber("0");
    QTest::newRow("number beyond 32 bits") << inNumber("4294967296");
    QTest::newRow("truth in digits") << changed("<hideCopyRight>true", "<hideCopyRight>1");
    QTest::newRow("truth of an icon in capitals") << changed("<linuxDeskIcon>true", "<linuxDeskIcon>TRUE");
    QTest::newRow("text of blanks") << changed("<macosDeskIcon>false", "<macosDeskIcon> ");
    for (const QByteArray& space :
         {QByteArray("  "), QByteArray("\xC2\x85"), QByteArray("\xC2\xA0"), QByteArray("\xE1\x9A\x80"),
          QByteArray("\xE2\x80\xA8"), QByteArray("\xE3\x80\x80")}) {
        QByteArray blanks = documentOf(CustomInfo());
        blanks.replace("<subTitle></subTitle>", "<subTitle>" + space + "</subTitle>");
        QTest::newRow("nothing but spaces " + space.toHex()) << blanks;
    }
    QByteArray noFields = documentOf(CustomInfo());
    const int begin = noFields.indexOf("<portal>");
    const QByteArray end = "</portal>";
    noFields.replace(begin, noFields.indexOf(end) + end.size() - begin, "<portal/>");
    QTest::newRow("section without its fields") << noFields;
    QByteArray empty = documentOf(CustomInfo());
    empty.replace("<useZOA>1</useZOA>", "<useZOA></useZOA>");
    QTest::newRow("empty number") << empty;
}

void TstPlainDocument::anotherFormIsLeftToTheParser()
{
    QFETCH(QByteArray, document);
    QVERIFY(document.isEmpty() == (qstrcmp(QTest::currentDataTag(), "empty") == 0));
    CustomInfo read;
    read.zoa.ZOAIP = QStringLiteral("kept");
    CustomInfo before = read;
    QVERIFY(!readPlainDocument(document, s_directory, read));
    QCOMPARE(differences(read, before), QStringList());
    CommonInfo common;
    QVERIFY(!readPlainCommon(document, common));
    QCOMPARE(common.cusTimeStamp, quint64(0));
}

void TstPlainDocument::damagedDocumentIsReadAsTheParserReadsIt()
{
    const QByteArray documents[] = {documentOf(recordWithComponents()), documentOf(CustomInfo()),
                                    documentOf(sparseRecord())};
    const QByteArray pieces[] = {"<",
                                 ">",
                                 "/",
                                 "&",
                                 "&lt;",
                                 " ",
                                 "  ",
                                 "\n",
                                 "\t",
                                 "\r",
                                 "a",
                                 "0",
                                 "1",
                                 "9",
                                 "-",
                                 "]]>",
                                 "]",
                                 "true",
                                 "false",
                                 "\xE5",
                                 "\xBC",
                                 "]]",
                                 "\xC2",
                                 "\x7F",
                                 "<remote/>",
                                 "\xEF\xBC\x8C",
                                 "\xC2\xA0",
                                 "\xE3\x80\x80",
                                 "\xC3",
                                 "\"",
                                 "<!--",
                                 "-->",
                                 "\xE2\x80\xA8",
                                 "<vpnroute>",
                                 "<domainName>",
                                 "\x01",
                                 "'",
                                 "</ZOA>",
                                 "é",
                                 "\xEF\xBF\xBD",
                                 "\xC2\x85",
                                 QByteArray(1, '\0')};
    const quint32 seed = qEnvironmentVariableIsSet("ORVEX_TEST_SEED") ? qEnvironmentVariable("ORVEX_TEST_SEED").toUInt()
                                                                      : QRandomGenerator::system()->generate();
    qInfo("random seed %u", seed);
    QRandomGenerator random(seed);
    int taken = 0;
    for (int n = 0; n < 20000; ++n) {
        QByteArray damaged = documents[random.bounded(int(std::size(documents)))];
        for (int i = random.bounded(1, 3); i > 0; --i) {
            const int place = random.bounded(damaged.size());
            switch (random.bounded(4)) {
            case 0: { // a line once more, or not at all
                QList<QByteArray> lines = damaged.split('\n');
                const int line = random.bounded(lines.size());
                if (random.bounded(2) == 0)
                    lines.insert(random.bounded(lines.size()), lines.at(line));
                else
                    lines.removeAt(line);
                damaged = lines.join('\n');
                break;
            }
            case 1:
                damaged[place] = char(random.bounded(256));
                break;
            case 2: { // a piece at the begin of some text
                const int text = damaged.indexOf('>', place) + 1;
                damaged.insert(text, pieces[random.bounded(int(std::size(pieces)))]);
                break;
            }
            default:
                damaged.replace(place, random.bounded(4), pieces[random.bounded(int(std::size(pieces)))]);
            }
        }
        CustomInfo read;
        CommonInfo common;
        const bool isTaken = readPlainDocument(damaged, s_directory, read);
        // What only looks at the numbers of other sections takes no more than what the parser takes.
        const bool isCommonTaken = readPlainCommon(damaged, common);
        QCOMPARE(isCommonTaken, isTaken);
        if (!isTaken)
            continue;
        ++taken;
        CustomInfo parsed;
        QVERIFY2(byParser(damaged, parsed), damaged.constData());
        const QStringList different = differences(read, parsed);
        QByteArray told;
        for (const QString& path : different)
            told += path.toUtf8() + ": " + fieldValue(read, path).toUtf8().toPercentEncoding() + " for " +
                    fieldValue(parsed, path).toUtf8().toPercentEncoding() + "\n";
        QVERIFY2(different.isEmpty(), told.constData());
        QCOMPARE(common.cusTimeStamp, parsed.common.cusTimeStamp);
        QCOMPARE(common.cusAddInfo, parsed.common.cusAddInfo);
    }
    QVERIFY(taken > 300);
}

TEST_ENTRY(plaindocument, runGuilessTest<TstPlainDocument>)
#include "tst_plaindocument.moc"
