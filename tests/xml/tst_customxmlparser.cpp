#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "xml/XmlTestSupport.h"

#include <QtTest>

namespace {

using Operation = std::function<void(CustomXmlParser&, CustomInfo&)>;

// In the order of the sections in the document.
struct Format
{
    const char* section;
    Operation format;
};
const Format formats[] = {
    {"common", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLCommonInfo(record.common); }},
    {"functions", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLFunctionInfo(record.function); }},
    {"x1", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXML8021XInfo(record.x1); }},
    {"domain", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLDomainInfo(record.domain); }},
    {"portal", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLPortalInfo(record.portal); }},
    {"sslvpn", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLSslVpnInfo(record.sslvpn); }},
    {"guiOptions", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLGUIInfo(record.gui); }},
    {"ZOA", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLZOAInfo(record.zoa); }},
    {"vpn", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatIpseVpnInfo(record.vpn); }},
    {"vpnroute",
     [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLIPSECVPNRouteInfo(record.vpnRoutes); }},
    {"kef", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLKefInfo(record.kef); }},
};

struct Get
{
    const char* section;
    std::function<int(CustomXmlParser&, const QString& path, CustomInfo&)> get;
};
const Get gets[] = {
    {"common", [](CustomXmlParser& parser, const QString& path,
                  CustomInfo& record) { return parser.GetXMLCommonInfo(path, record.common); }},
    {"functions", [](CustomXmlParser& parser, const QString& path,
                     CustomInfo& record) { return parser.GetXMLFunctionInfo(path, record.function); }},
    {"x1", [](CustomXmlParser& parser, const QString& path,
              CustomInfo& record) { return parser.GetXML8021XInfo(path, record.x1); }},
    {"domain", [](CustomXmlParser& parser, const QString& path,
                  CustomInfo& record) { return parser.GetXMLDomainInfo(path, record.domain); }},
    {"portal", [](CustomXmlParser& parser, const QString& path,
                  CustomInfo& record) { return parser.GetXMLPortalInfo(path, record.portal); }},
    {"sslvpn", [](CustomXmlParser& parser, const QString& path,
                  CustomInfo& record) { return parser.GetXMLSslVpnInfo(path, record.sslvpn); }},
    {"guiOptions", [](CustomXmlParser& parser, const QString& path,
                      CustomInfo& record) { return parser.GetXMLGUIInfo(path, record.gui); }},
    {"ZOA", [](CustomXmlParser& parser, const QString& path,
               CustomInfo& record) { return parser.GetXMLZOAInfo(path, record.zoa); }},
    {"vpn", [](CustomXmlParser& parser, const QString& path,
               CustomInfo& record) { return parser.GetXMLIpseVpnInfo(path, record.vpn); }},
    {"vpnroute", [](CustomXmlParser& parser, const QString& path,
                    CustomInfo& record) { return parser.GetXMLIPSECVPNRouteInfo(path, record.vpnRoutes); }},
    {"kef", [](CustomXmlParser& parser, const QString& path,
               CustomInfo& record) { return parser.GetXMLKefInfo(path, record.kef); }},
};

/// Names of the elements below `content`, in their order.
QStringList sectionsIn(const QByteArray& document)
{
    QDomDocument dom;
    dom.setContent(document);
    QStringList names;
    for (QDomElement element = dom.documentElement().firstChildElement().firstChildElement(); !element.isNull();
         element = element.nextSiblingElement())
        names.append(element.tagName());
    return names;
}

QStringList errors()
{
    return installation::logMessages(QStringLiteral("[ERR]"));
}

void addRowForEachSection()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Get& get : gets)
        QTest::newRow(get.section) << number++;
}

} // namespace

class TstCustomXmlParser : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void documentInMemoryIsReadWithoutItsFile();
    void documentInMemoryIsRefused_data();
    void documentInMemoryIsRefused();

    void documentWithoutSectionsIsTheFrameAlone();
    void newFrameDropsTheFormerSections();
    void newFrameDropsTheFormerText();
    void frameLeavesContentAsTheCurrentElement();
    void sectionsStandInTheOrderOfTheCalls();
    void documentWithoutKefEndsWithVpnroute();
    void everySectionIsWrittenWhateverTheComponents();
    void sectionWithoutAFrameIsDropped_data();
    void sectionWithoutAFrameIsDropped();
    void sectionLeavesContentAsTheCurrentElement_data();
    void sectionLeavesContentAsTheCurrentElement();
    void sectionIsSerialisedAtOnceAndOnlyDomainCompactly_data();
    void sectionIsSerialisedAtOnceAndOnlyDomainCompactly();
    void sectionFormattedTwiceStandsTwice();
    void writtenRecordsStayAsTheyAre();

    void savingAlwaysAnswersOne();

    void loadOfAnEmptyPathAnswersZero();
    void loadedPathIsNotLoadedAgain();
    void pathThatFailedIsNotLoadedAgain();
    void clearedParserStillKnowsItsPath();
    void otherPathIsLoaded();

    void readerAnswersZeroForAFileThatDoesNotLoad_data();
    void readerAnswersZeroForAFileThatDoesNotLoad();
    void missingSectionLeavesTheRecordAlone_data();
    void missingSectionLeavesTheRecordAlone();
    void readerTouchesNoOtherSection_data();
    void readerTouchesNoOtherSection();
    void readerLoadsTheFileAnew_data();
    void readerLoadsTheFileAnew();
    void readerLogsOneLineForEachFailedLoad();
    void freshFrameDoesNotHinderTheReader();
    void firstSectionOfANameCounts();
    void nameOfTheRootDoesNotCount();
};

void TstCustomXmlParser::init()
{
    installation::clearLog();
    QFile::remove(documentPath());
}

void TstCustomXmlParser::documentWithoutSectionsIsTheFrameAlone()
{
    CustomXmlParser parser;
    QCOMPARE(parser.FormatXMLInit(), 1);
    QCOMPARE(parser.SaveFile(documentPath()), 1);
    QCOMPARE(installation::readFile(documentPath()), QByteArray("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                                                "<msg>\n"
                                                                "    <content/>\n"
                                                                "</msg>\n"));
}

void TstCustomXmlParser::newFrameDropsTheFormerSections()
{
    CustomXmlParser parser;
    parser.FormatXMLInit();
    parser.FormatXMLCommonInfo(CommonInfo());
    parser.FormatFoundXML();
    parser.FormatXMLKefInfo(KEFOptionsInfo());
    parser.SaveFile(documentPath());
    const QByteArray document = installation::readFile(documentPath());
    QCOMPARE(sectionsIn(document), QStringList(QStringLiteral("kef")));
    QCOMPARE(document.count("<?xml"), 1);
}

void TstCustomXmlParser::newFrameDropsTheFormerText()
{
    OpenXmlParser parser;
    parser.FormatXMLInit();
    parser.FormatXMLCommonInfo(CommonInfo());
    QVERIFY(!parser.m_qstrXML.isEmpty());
    parser.FormatFoundXML();
    QVERIFY(parser.m_qstrXML.isEmpty());
}

void TstCustomXmlParser::frameLeavesContentAsTheCurrentElement()
{
    OpenXmlParser parser;
    parser.FormatXMLInit();
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("msg"));
    QCOMPARE(parser.m_qoCurElement.tagName(), QStringLiteral("content"));
    QVERIFY(parser.m_qoCurElement.parentNode() == parser.m_qoRootElement);
    QVERIFY(parser.m_qoXmlDoc.firstChild().isProcessingInstruction());
}

void TstCustomXmlParser::sectionsStandInTheOrderOfTheCalls()
{
    CustomInfo record = distinctRecord();
    const QByteArray document = written([&](CustomXmlParser& parser) {
        for (const Format& format : formats)
            format.format(parser, record);
    });
    const QStringList expected = {QStringLiteral("common"),     QStringLiteral("functions"), QStringLiteral("x1"),
                                  QStringLiteral("domain"),     QStringLiteral("portal"),    QStringLiteral("sslvpn"),
                                  QStringLiteral("guiOptions"), QStringLiteral("ZOA"),       QStringLiteral("vpn"),
                                  QStringLiteral("vpnroute"),   QStringLiteral("kef")};
    QCOMPARE(sectionsIn(document), expected);
    QVERIFY(
        document.startsWith("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<msg>\n    <content>\n        <common>\n"));
    QVERIFY(document.endsWith("        </kef>\n    </content>\n</msg>\n"));

    QXmlStreamReader reader(document);
    int elements = 0;
    while (reader.readNext() != QXmlStreamReader::EndDocument && !reader.hasError()) {
        if (!reader.isStartElement())
            continue;
        ++elements;
        QVERIFY2(reader.attributes().isEmpty(), qPrintable(reader.name().toString()));
    }
    QVERIFY(!reader.hasError());
    QVERIFY(elements > 100);
}

void TstCustomXmlParser::documentWithoutKefEndsWithVpnroute()
{
    CustomInfo record;
    const QByteArray document = written([&](CustomXmlParser& parser) {
        for (const Format& format : formats) {
            if (qstrcmp(format.section, "kef") != 0)
                format.format(parser, record);
        }
    });
    QVERIFY(document.endsWith("        <vpnroute/>\n    </content>\n</msg>\n"));
    QVERIFY(!document.contains("kef"));
}

void TstCustomXmlParser::everySectionIsWrittenWhateverTheComponents()
{
    CustomInfo record;
    record.common.procomVal = 0;
    record.common.funcomVal = 0;
    const QByteArray document = written([&](CustomXmlParser& parser) {
        for (const Format& format : formats)
            format.format(parser, record);
    });
    QCOMPARE(sectionsIn(document).size(), 11);
}

void TstCustomXmlParser::sectionWithoutAFrameIsDropped_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::sectionWithoutAFrameIsDropped()
{
    QFETCH(int, number);
    CustomInfo record = distinctRecord();
    OpenXmlParser nothing;
    formats[number].format(nothing, record);
    QVERIFY(nothing.m_qoCurElement.isNull());
    QVERIFY(nothing.m_qoXmlDoc.isNull());
    QCOMPARE(errors(), QStringList(QStringLiteral("GetValue:m_qoXmlDoc is NULL")));

    OpenXmlParser noContent;
    QVERIFY(noContent.LoadXml(QStringLiteral("<msg><other/></msg>")));
    formats[number].format(noContent, record);
    QVERIFY(noContent.m_qoCurElement.isNull());
    QCOMPARE(noContent.m_qoXmlDoc.toString(-1).simplified(), QStringLiteral("<msg><other/></msg>"));
    QCOMPARE(errors().size(), 1);
}

void TstCustomXmlParser::sectionLeavesContentAsTheCurrentElement_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::sectionLeavesContentAsTheCurrentElement()
{
    QFETCH(int, number);
    CustomInfo record = distinctRecord();
    OpenXmlParser parser;
    parser.FormatXMLInit();
    formats[number].format(parser, record);
    QCOMPARE(parser.m_qoCurElement.tagName(), QStringLiteral("content"));
    QCOMPARE(parser.m_qoCurElement.childNodes().size(), 1);
    QCOMPARE(parser.m_qoCurElement.firstChild().nodeName(), QLatin1String(formats[number].section));
}

void TstCustomXmlParser::sectionIsSerialisedAtOnceAndOnlyDomainCompactly_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::sectionIsSerialisedAtOnceAndOnlyDomainCompactly()
{
    QFETCH(int, number);
    CustomInfo record = distinctRecord();
    OpenXmlParser parser;
    parser.FormatXMLInit();
    formats[number].format(parser, record);
    const QLatin1String section(formats[number].section);
    if (section == QLatin1String("domain")) {
        QVERIFY(parser.m_qstrXML.startsWith(
            QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?><msg><content><domain><domaindetail>")));
    } else {
        QVERIFY(parser.m_qstrXML.startsWith(QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<msg>\n"
                                                           "    <content>\n"
                                                           "        <%1>\n"
                                                           "            <")
                                                .arg(section)));
    }
    QCOMPARE(installation::log(), QByteArray());
}

void TstCustomXmlParser::sectionFormattedTwiceStandsTwice()
{
    const QByteArray document = written([](CustomXmlParser& parser) {
        KEFOptionsInfo kef;
        kef.kefIP = QStringLiteral("one");
        parser.FormatXMLKefInfo(kef);
        kef.kefIP = QStringLiteral("two");
        parser.FormatXMLKefInfo(kef);
    });
    QCOMPARE(sectionsIn(document), QStringList({QStringLiteral("kef"), QStringLiteral("kef")}));
    QVERIFY(document.indexOf("<kefIP>one</kefIP>") < document.indexOf("<kefIP>two</kefIP>"));
}

void TstCustomXmlParser::writtenRecordsStayAsTheyAre()
{
    CustomInfo record = distinctRecord();
    written([&](CustomXmlParser& parser) {
        for (const Format& format : formats)
            format.format(parser, record);
    });
    QCOMPARE(differences(record, distinctRecord()), QStringList());
}

void TstCustomXmlParser::savingAlwaysAnswersOne()
{
    CustomXmlParser parser;
    parser.FormatXMLInit();
    QCOMPARE(parser.SaveFile(installation::path(QStringLiteral("missing/document.xml"))), 1);
    QCOMPARE(errors(), QStringList(QStringLiteral("SaveXmlFile: can not open file!")));
    CustomXmlParser nothing;
    QCOMPARE(nothing.SaveFile(documentPath()), 1);
    QCOMPARE(QFileInfo(documentPath()).size(), qint64(0));
}

void TstCustomXmlParser::loadOfAnEmptyPathAnswersZero()
{
    OpenXmlParser parser;
    parser.FormatXMLInit();
    QCOMPARE(parser.LoadFile(QString()), 0);
    QCOMPARE(parser.LoadFile(QStringLiteral("")), 0);
    QVERIFY(!parser.m_qoXmlDoc.isNull());
    QCOMPARE(installation::log(), QByteArray());
}

void TstCustomXmlParser::loadedPathIsNotLoadedAgain()
{
    const QString path = documentOf("<msg/>");
    OpenXmlParser parser;
    QCOMPARE(parser.LoadFile(path), 1);
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("msg"));
    documentOf("<other/>");
    QCOMPARE(parser.LoadFile(path), 1);
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("msg"));
    // Contract: the case of the path does not count, though the file system tells the two apart.
    QCOMPARE(parser.LoadFile(path.toUpper()), 1);
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("msg"));
    QCOMPARE(installation::log(), QByteArray());
}

void TstCustomXmlParser::pathThatFailedIsNotLoadedAgain()
{
    OpenXmlParser parser;
    QCOMPARE(parser.LoadFile(documentPath()), 0);
    documentOf("<msg/>");
    QCOMPARE(parser.LoadFile(documentPath()), 1);
    QVERIFY(parser.m_qoXmlDoc.isNull());
    QCOMPARE(errors().size(), 1);
}

void TstCustomXmlParser::clearedParserStillKnowsItsPath()
{
    const QString path = documentOf("<msg/>");
    OpenXmlParser parser;
    QCOMPARE(parser.LoadFile(path), 1);
    parser.Clear();
    QVERIFY(parser.m_qoXmlDoc.isNull());
    QVERIFY(parser.m_qoRootElement.isNull());
    QVERIFY(parser.m_qoCurElement.isNull());
    QVERIFY(parser.m_qstrXML.isEmpty());
    QCOMPARE(parser.LoadFile(path), 1);
    QVERIFY(parser.m_qoXmlDoc.isNull());
}

void TstCustomXmlParser::otherPathIsLoaded()
{
    const QString other = installation::path(QStringLiteral("other.xml"));
    installation::writeFile(other, "<other/>");
    OpenXmlParser parser;
    QCOMPARE(parser.LoadFile(documentOf("<msg/>")), 1);
    parser.GetValue(false);
    QCOMPARE(parser.LoadFile(other), 1);
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("other"));
    QVERIFY(parser.m_qstrXML.isEmpty());
    QCOMPARE(parser.LoadFile(documentOf("<again/>")), 1);
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("again"));

    // A failed load leaves nothing of the former document.
    QCOMPARE(parser.LoadFile(installation::path(QStringLiteral("missing.xml"))), 0);
    QVERIFY(parser.m_qoXmlDoc.isNull());
    QVERIFY(parser.m_qoRootElement.isNull());
}

void TstCustomXmlParser::readerAnswersZeroForAFileThatDoesNotLoad_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::readerAnswersZeroForAFileThatDoesNotLoad()
{
    QFETCH(int, number);
    CustomXmlParser parser;
    CustomInfo record = distinctRecord();
    QCOMPARE(gets[number].get(parser, documentPath(), record), 0);
    QCOMPARE(gets[number].get(parser, documentOf("<msg><content>"), record), 0);
    QCOMPARE(gets[number].get(parser, documentOf(QByteArray()), record), 0);
    QCOMPARE(differences(record, distinctRecord()), QStringList());
    QCOMPARE(errors(),
             QStringList({QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Open XML File[%1].").arg(documentPath()),
                          QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Load XML File[%1].").arg(documentPath()),
                          QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Load XML File[%1].").arg(documentPath())}));
}

void TstCustomXmlParser::missingSectionLeavesTheRecordAlone_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::missingSectionLeavesTheRecordAlone()
{
    QFETCH(int, number);
    const QByteArray section = gets[number].section;
    const QByteArrayList documents = {
        frame("        <other/>\n"),
        "<msg><content/></msg>",
        "<msg/>",
        "<msg><" + section + "/></msg>",                                   // beside `content`
        "<msg><content><other><" + section + "/></other></content></msg>", // too deep
        "<" + section + "/>",                                              // as the root
        "<msg><content/><content><" + section + "/></content></msg>",      // the first `content` counts
        "<msg><content><!--<" + section + "/>--></content></msg>",
        "<msg><content><" + section.toUpper() + "x/></content></msg>",
    };
    CustomXmlParser parser;
    for (const QByteArray& document : documents) {
        CustomInfo record = distinctRecord();
        QCOMPARE(gets[number].get(parser, documentOf(document), record), 1);
        QCOMPARE(differences(record, distinctRecord()), QStringList());
    }
    QCOMPARE(installation::log(), QByteArray());
}

void TstCustomXmlParser::readerTouchesNoOtherSection_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::readerTouchesNoOtherSection()
{
    QFETCH(int, number);
    CustomInfo source = distinctRecord();
    written([&](CustomXmlParser& parser) {
        for (const Format& format : formats)
            format.format(parser, source);
    });
    CustomInfo record;
    CustomXmlParser parser;
    QCOMPARE(gets[number].get(parser, documentPath(), record), 1);
    const QStringList changed = differences(record, CustomInfo());
    QVERIFY(!changed.isEmpty());
    const QRegularExpression inside(QLatin1Char('^') + QLatin1String(gets[number].section) + QLatin1String("[/.]"));
    for (const QString& field : changed)
        QVERIFY2(inside.match(field).hasMatch(), qPrintable(field));
}

void TstCustomXmlParser::readerLoadsTheFileAnew_data()
{
    addRowForEachSection();
}

void TstCustomXmlParser::readerLoadsTheFileAnew()
{
    QFETCH(int, number);
    CustomInfo source = distinctRecord();
    written([&](CustomXmlParser& parser) { formats[number].format(parser, source); });
    CustomXmlParser parser;
    CustomInfo record;
    QCOMPARE(gets[number].get(parser, documentPath(), record), 1);
    QVERIFY(!differences(record, CustomInfo()).isEmpty());

    documentWith("        <other/>\n");
    record.reset();
    record.zoa.standbyZOAIP.clear();
    QCOMPARE(gets[number].get(parser, documentPath(), record), 1);
    QCOMPARE(differences(record, CustomInfo()), QStringList());
    QFile::remove(documentPath());
    QCOMPARE(gets[number].get(parser, documentPath(), record), 0);
}

void TstCustomXmlParser::readerLogsOneLineForEachFailedLoad()
{
    CustomXmlParser parser;
    CustomInfo record;
    for (const Get& get : gets)
        QCOMPARE(get.get(parser, documentPath(), record), 0);
    QCOMPARE(errors().size(), 11);
    QCOMPARE(installation::log().count('\n'), 11);
}

void TstCustomXmlParser::freshFrameDoesNotHinderTheReader()
{
    CustomInfo source = distinctRecord();
    written([&](CustomXmlParser& parser) { parser.FormatXMLCommonInfo(source.common); });
    CustomXmlParser parser;
    parser.FormatXMLInit();
    CustomInfo record;
    QCOMPARE(parser.GetXMLCommonInfo(documentPath(), record.common), 1);
    QCOMPARE(record.common.cusTimeString, source.common.cusTimeString);
    record.common = source.common;
    QCOMPARE(parser.GetXMLCommonInfo(installation::path(QStringLiteral("missing.xml")), record.common), 0);
    QCOMPARE(record.common.cusTimeString, source.common.cusTimeString);
}

void TstCustomXmlParser::firstSectionOfANameCounts()
{
    CustomXmlParser parser;
    KEFOptionsInfo kef;
    const QString path = documentWith("<kef><kefIP>one</kefIP></kef><kef><kefIP>two</kefIP><kefPort>2</kefPort></kef>");
    QCOMPARE(parser.GetXMLKefInfo(path, kef), 1);
    QCOMPARE(kef.kefIP, QStringLiteral("one"));
    QCOMPARE(kef.kefPort, QString());
}

void TstCustomXmlParser::nameOfTheRootDoesNotCount()
{
    CustomXmlParser parser;
    KEFOptionsInfo kef;
    const QString path =
        documentOf("<other a='1'><x/><content b='2'><kef c='3'><kefIP d='4'>one</kefIP></kef></content>"
                   "</other>");
    QCOMPARE(parser.GetXMLKefInfo(path, kef), 1);
    QCOMPARE(kef.kefIP, QStringLiteral("one"));
}

void TstCustomXmlParser::documentInMemoryIsReadWithoutItsFile()
{
    CustomInfo source = distinctRecord();
    written([&](CustomXmlParser& parser) {
        for (const Format& format : formats)
            format.format(parser, source);
    });
    const QByteArray bytes = installation::readFile(documentPath());
    CustomInfo fromFile;
    CustomXmlParser fileParser;
    for (const Get& get : gets)
        QCOMPARE(get.get(fileParser, documentPath(), fromFile), 1);
    QVERIFY(QFile::remove(documentPath()));
    installation::clearLog();
    CustomXmlParser parser;
    QVERIFY(parser.loadDocument(bytes));
    CustomInfo record;
    for (const Get& get : gets)
        QCOMPARE(get.get(parser, documentPath(), record), 1);
    QCOMPARE(differences(record, fromFile), QStringList());
    QVERIFY(differences(record, CustomInfo()).size() > 100);
    QCOMPARE(installation::log(), QByteArray());

    // Begun anew, it reads files again.
    parser.FormatXMLInit();
    QCOMPARE(parser.GetXMLCommonInfo(documentPath(), record.common), 0);
}

void TstCustomXmlParser::documentInMemoryIsRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("taken");
    QByteArray deep;
    for (int i = 0; i < 1001; ++i)
        deep += "<a>";
    for (int i = 0; i < 1001; ++i)
        deep += "</a>";
    QTest::newRow("frame") << QByteArray("<msg><content/></msg>") << true;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("no XML") << QByteArray("msg content") << false;
    QTest::newRow("not closed") << QByteArray("<msg><content>") << false;
    QTest::newRow("another root") << QByteArray("<other><content/></other>") << true;
    QTest::newRow("no content") << QByteArray("<msg><contents/></msg>") << false;
    QTest::newRow("content too deep") << QByteArray("<msg><a><content/></a></msg>") << false;
    QTest::newRow("entity") << QByteArray("<!DOCTYPE msg [<!ENTITY e 'text'>]><msg><content>&e;</content></msg>")
                            << false;
    QTest::newRow("nested too deep") << QByteArray("<msg><content>" + deep + "</content></msg>") << false;
}

void TstCustomXmlParser::documentInMemoryIsRefused()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, taken);
    CustomXmlParser parser;
    QCOMPARE(parser.loadDocument(bytes), taken);
    CommonInfo info;
    QCOMPARE(parser.GetXMLCommonInfo(installation::path(QStringLiteral("missing.xml")), info), taken ? 1 : 0);
}

TEST_ENTRY(customxmlparser, runGuilessTest<TstCustomXmlParser>)
#include "tst_customxmlparser.moc"
