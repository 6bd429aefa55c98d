#include "support/FullDisk.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/TestEntry.h"
#include "xml/CBasedQtXmlParser.h"
#include "xml/XmlTestSupport.h"

#include <QTextCodec>
#include <QtTest>

#include <cerrno>
#include <string>

namespace {

/// Shows what the subclasses see.
class Parser : public CBasedQtXmlParser
{
public:
    using CBasedQtXmlParser::m_qoCurElement;
    using CBasedQtXmlParser::m_qoRootElement;
    using CBasedQtXmlParser::m_qoXmlDoc;
    using CBasedQtXmlParser::m_qstrXML;

    /// Puts the instruction of the customisation document before the document.
    void addInstruction()
    {
        const QDomNode instruction = m_qoXmlDoc.createProcessingInstruction(
            QStringLiteral("xml"), QStringLiteral("version=\"1.0\" encoding=\"utf-8\""));
        m_qoXmlDoc.insertBefore(instruction, m_qoXmlDoc.firstChild());
    }

    /// What the current element holds, without line feeds.
    QString children()
    {
        QString text;
        QTextStream stream(&text);
        stream.setCodec("UTF-8");
        for (QDomNode node = m_qoCurElement.firstChild(); !node.isNull(); node = node.nextSibling())
            node.save(stream, -1);
        return text;
    }
};

int openDescriptors(const QString& path)
{
    int count = 0;
    for (const QFileInfo& link : QDir(QStringLiteral("/proc/self/fd")).entryInfoList(QDir::Files | QDir::System)) {
        if (link.symLinkTarget() == path)
            ++count;
    }
    return count;
}

QString blanks(int count)
{
    return QString(count, QLatin1Char(' '));
}

} // namespace

Q_DECLARE_METATYPE(std::string)

class TstBasedQtXmlParser : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void textLoadsWithItsRootAsTheCurrentElement();
    void textThatDoesNotParseIsLoggedAndRefused_data();
    void textThatDoesNotParseIsLoggedAndRefused();
    void longTextThatDoesNotParseLeavesALineWithoutText();
    void failedLoadKeepsTheCurrentElement();
    void fileLoadsWithItsRootAsTheCurrentElement();
    void fileIsReadInTheEncodingThatItStates_data();
    void fileIsReadInTheEncodingThatItStates();
    void onlyAFileIsReadWithNamespaces();
    void fileThatDoesNotOpenIsLoggedAndRefused_data();
    void fileThatDoesNotOpenIsLoggedAndRefused();
    void fileThatDoesNotParseIsLoggedAndRefused_data();
    void fileThatDoesNotParseIsLoggedAndRefused();
    void fileIsClosedAfterTheLoad();

    void textOfTheDocumentIsIndentedByFour();
    void compactTextLosesTheFirstLineFeedAndNoOther();
    void compactTextWithoutAProcessingInstructionLosesItsLineFeedToo();
    void nullDocumentHasNoText();
    void documentWithNothingInItHasNoText();
    void clearedParserHoldsNothing();
    void savedFileIsUtf8WithIndentation4_data();
    void savedFileIsUtf8WithIndentation4();
    void savingReplacesALongerFile();
    void savingWhereNoFileOpensIsLoggedAndRefused();
    void savingANullDocumentLeavesTheFileTruncated();
    void savingADocumentWithNothingInItLeavesTheFileTruncated();
    void fileThatCannotBeWrittenWholeIsRemoved_data();
    void fileThatCannotBeWrittenWholeIsRemoved();
    void fileThatFailsWhenItIsClosedIsRemoved();
    void deviceThatTakesNothingStays();

    void addedTextStandsAsItIs_data();
    void addedTextStandsAsItIs();
    void addedBytesAreDecodedWithTheLocalCodec();
    void addedNullBytesGiveAnElementWithoutText();
    void addedFlagIsAWord();
    void addedNumberIsSigned_data();
    void addedNumberIsSigned();
    void addedWideNumberIsTheLow32BitsAlignedRightAndCut_data();
    void addedWideNumberIsTheLow32BitsAlignedRightAndCut();
    void addedUtf8TextPassesThroughTheLocalCodec_data();
    void addedUtf8TextPassesThroughTheLocalCodec();
    void addedUtf8TextEndsAtItsFirstNul();
    void secondTextOfOneNameGoesToTheFirstElement();
    void secondBytesOfOneNameStayInTheirElement();
    void namesAreDecodedWithTheLocalCodec();
    void nullNameAddsNothing();
    void nullCurrentElementTakesNothing();
    void removedItemIsTheFirstOfItsName();
    void missingItemIsNotRemoved();

    void modifiedValueReplacesTheText();
    void modifiedValueFillsAnElementWithoutChildren();
    void equalValueChangesNothing();
    void valueThatDiffersInCaseIsModified();
    void elementWithAnotherFirstChildIsNotModified_data();
    void elementWithAnotherFirstChildIsNotModified();
    void missingElementIsAddedUnderTheCurrentElement();

    void readTextIsThatOfTheFirstElement_data();
    void readTextIsThatOfTheFirstElement();
    void readTextIsCutToItsLimit_data();
    void readTextIsCutToItsLimit();
    void readBytesWithinTheLimitAreLeftOut_data();
    void readBytesWithinTheLimitAreLeftOut();
    void readBytesAreInTheLocalEncoding();
    void readNumberIsDecimalOrZero_data();
    void readNumberIsDecimalOrZero();
    void readFlagKeepsItsValueForOtherWords_data();
    void readFlagKeepsItsValueForOtherWords();
    void readUtf8TextEndsAtItsFirstNul();
    void readUtf8TextDoesNotUndoTheLocalCodec();
    void nullNameClearsTheOutputButNotAFlag();
    void nullCurrentElementClearsTheOutputButNotAFlag();
    void writtenMinusOneReadsAsZero();

    void textOfAGivenElementIsRead();
    void nullElementPointerLeavesTheTextAlone();
    void attributeIsRead();
    void missingAttributeReadsAsEmpty();
    void attributeBytesAreCopiedWithoutATerminator_data();
    void attributeBytesAreCopiedWithoutATerminator();
    void attributeBytesAreNotTouchedWithoutAValue();
    void attributeNumberIsUnsignedIn32BitsAndSignedIn64_data();
    void attributeNumberIsUnsignedIn32BitsAndSignedIn64();
    void attributeFlagIsFalseForOtherWords_data();
    void attributeFlagIsFalseForOtherWords();
    void attributesAreSet();
    void nullTextSetsNoAttribute();
};

void TstBasedQtXmlParser::init()
{
    installation::clearLog();
    QFile::remove(documentPath());
}

void TstBasedQtXmlParser::textLoadsWithItsRootAsTheCurrentElement()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<root><child>text</child></root>")));
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("root"));
    QVERIFY(parser.m_qoCurElement == parser.m_qoRootElement);
    QVERIFY(parser.m_qoRootElement == parser.m_qoXmlDoc.documentElement());
    QString text;
    parser.GetNodeValue("child", text);
    QCOMPARE(text, QStringLiteral("text"));
    QCOMPARE(installation::log(), QByteArray());
}

void TstBasedQtXmlParser::textThatDoesNotParseIsLoggedAndRefused_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("no element") << QStringLiteral("text");
    QTest::newRow("open element") << QStringLiteral("<msg>");
    QTest::newRow("wrong end") << QStringLiteral("<消息></msg>");
}

void TstBasedQtXmlParser::textThatDoesNotParseIsLoggedAndRefused()
{
    QFETCH(QString, text);
    Parser parser;
    QCOMPARE(parser.LoadXml(text), false);
    const QStringList expected(QStringLiteral("CBasedQtXmlParser::LoadXml: Load XML str[%1].").arg(text));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), expected);
    QCOMPARE(installation::log().count('\n'), 1);
}

void TstBasedQtXmlParser::longTextThatDoesNotParseLeavesALineWithoutText()
{
    Parser parser;
    QCOMPARE(parser.LoadXml(QString(3000, QLatin1Char('x'))), false);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList(QString()));
}

void TstBasedQtXmlParser::failedLoadKeepsTheCurrentElement()
{
    installation::writeFile(documentPath(), "<msg>");
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<former/>")));
    const QDomElement former = parser.m_qoCurElement;
    QCOMPARE(parser.LoadXml(QStringLiteral("<msg>")), false);
    QVERIFY(parser.m_qoCurElement == former);
    QCOMPARE(parser.LoadXmlFile(documentPath()), false);
    QVERIFY(parser.m_qoCurElement == former);
    QVERIFY(parser.m_qoRootElement == former);
    QCOMPARE(former.tagName(), QStringLiteral("former"));
}

void TstBasedQtXmlParser::fileLoadsWithItsRootAsTheCurrentElement()
{
    installation::writeFile(documentPath(),
                            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<root>\n  <child>文</child>\n</root>\n");
    Parser parser;
    QVERIFY(parser.LoadXmlFile(documentPath()));
    QCOMPARE(parser.m_qoRootElement.tagName(), QStringLiteral("root"));
    QVERIFY(parser.m_qoCurElement == parser.m_qoRootElement);
    QString text;
    parser.GetNodeValue("child", text);
    QCOMPARE(text, QStringLiteral("文"));
    QCOMPARE(installation::log(), QByteArray());
}

void TstBasedQtXmlParser::fileIsReadInTheEncodingThatItStates_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing stated") << QByteArray("<r><a>\xC3\xA9\xE6\x96\x87</a></r>");
    QTest::newRow("byte order mark") << QByteArray("\xEF\xBB\xBF<r><a>\xC3\xA9\xE6\x96\x87</a></r>");
    QTest::newRow("utf-8") << QByteArray("<?xml version='1.0' encoding='utf-8'?><r><a>\xC3\xA9\xE6\x96\x87</a></r>");
    QTest::newRow("GB18030") << QByteArray("<?xml version='1.0' encoding='GB18030'?><r><a>\xA8\xA6\xCE\xC4</a></r>");
    QTest::newRow("utf-16") << QTextCodec::codecForName("UTF-16")->fromUnicode(
        QStringLiteral("<?xml version='1.0' encoding='utf-16'?><r><a>é文</a></r>"));
    QTest::newRow("references") << QByteArray("<r><a>&#xe9;&#25991;</a></r>");
}

void TstBasedQtXmlParser::fileIsReadInTheEncodingThatItStates()
{
    QFETCH(QByteArray, bytes);
    installation::writeFile(documentPath(), bytes);
    const LocaleCodec codec(s_latin1);
    Parser parser;
    QVERIFY(parser.LoadXmlFile(documentPath()));
    QString text;
    parser.GetNodeValue("a", text);
    QCOMPARE(text, QStringLiteral("é文"));
}

void TstBasedQtXmlParser::onlyAFileIsReadWithNamespaces()
{
    const QString text = QStringLiteral("<p:root xmlns:p=\"urn:x\"><p:a>text</p:a></p:root>");
    installation::writeFile(documentPath(), text.toUtf8());
    Parser fromFile;
    QVERIFY(fromFile.LoadXmlFile(documentPath()));
    QCOMPARE(fromFile.m_qoRootElement.namespaceURI(), QStringLiteral("urn:x"));
    QCOMPARE(fromFile.m_qoRootElement.localName(), QStringLiteral("root"));
    QString child;
    fromFile.GetNodeValue("a", child);
    QCOMPARE(child, QStringLiteral("text"));
    Parser fromText;
    QVERIFY(fromText.LoadXml(text));
    QCOMPARE(fromText.m_qoRootElement.namespaceURI(), QString());
    QCOMPARE(fromText.m_qoRootElement.tagName(), QStringLiteral("p:root"));
    fromText.GetNodeValue("a", child);
    QCOMPARE(child, QString());
    fromText.GetNodeValue("p:a", child);
    QCOMPARE(child, QStringLiteral("text"));
}

void TstBasedQtXmlParser::fileThatDoesNotOpenIsLoggedAndRefused_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("missing") << installation::path(QStringLiteral("没有/document.xml"));
    QTest::newRow("directory") << installation::root();
}

void TstBasedQtXmlParser::fileThatDoesNotOpenIsLoggedAndRefused()
{
    QFETCH(QString, path);
    Parser parser;
    QCOMPARE(parser.LoadXmlFile(path), false);
    const QStringList expected(QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Open XML File[%1].").arg(path));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), expected);
    QCOMPARE(installation::log().count('\n'), 1);
    QVERIFY(parser.m_qoRootElement.isNull());
    QVERIFY(parser.m_qoCurElement.isNull());
}

void TstBasedQtXmlParser::fileThatDoesNotParseIsLoggedAndRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("open element") << QByteArray("<msg>");
    QTest::newRow("two roots") << QByteArray("<msg/><msg/>");
    QTest::newRow("zero bytes") << QByteArray(100, '\0');
    QTest::newRow("reference without an end") << QByteArray("<msg>&unknown</msg>");
}

void TstBasedQtXmlParser::fileThatDoesNotParseIsLoggedAndRefused()
{
    QFETCH(QByteArray, bytes);
    installation::writeFile(documentPath(), bytes);
    Parser parser;
    QCOMPARE(parser.LoadXmlFile(documentPath()), false);
    const QStringList expected(QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Load XML File[%1].").arg(documentPath()));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), expected);
    QCOMPARE(installation::log().count('\n'), 1);
}

void TstBasedQtXmlParser::fileIsClosedAfterTheLoad()
{
    installation::writeFile(documentPath(), "<msg/>");
    Parser parser;
    QVERIFY(parser.LoadXmlFile(documentPath()));
    QCOMPARE(openDescriptors(documentPath()), 0);
    QVERIFY(parser.SaveXmlFile(documentPath()));
    QCOMPARE(openDescriptors(documentPath()), 0);
    installation::writeFile(documentPath(), "<msg>");
    QCOMPARE(parser.LoadXmlFile(documentPath()), false);
    QCOMPARE(openDescriptors(documentPath()), 0);
}

void TstBasedQtXmlParser::textOfTheDocumentIsIndentedByFour()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a><b>1</b></a><c/></r>")));
    parser.addInstruction();
    QVERIFY(parser.GetValue(false));
    QCOMPARE(parser.m_qstrXML, QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
                                              "<r>\n"
                                              "    <a>\n"
                                              "        <b>1</b>\n"
                                              "    </a>\n"
                                              "    <c/>\n"
                                              "</r>\n"));
    QVERIFY(parser.GetValue(false));
    QCOMPARE(parser.m_qstrXML.count(QStringLiteral("<r>")), 1);
}

void TstBasedQtXmlParser::compactTextLosesTheFirstLineFeedAndNoOther()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>one\ntwo\n</a><b/></r>")));
    parser.addInstruction();
    QVERIFY(parser.GetValue(true));
    QCOMPARE(parser.m_qstrXML,
             QStringLiteral("<?xml version=\"1.0\" encoding=\"utf-8\"?><r><a>one\ntwo\n</a><b/></r>"));
}

void TstBasedQtXmlParser::compactTextWithoutAProcessingInstructionLosesItsLineFeedToo()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>one\ntwo</a></r>")));
    QVERIFY(parser.GetValue(true));
    QCOMPARE(parser.m_qstrXML, QStringLiteral("<r><a>onetwo</a></r>"));
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    QVERIFY(parser.GetValue(true));
    QCOMPARE(parser.m_qstrXML, QStringLiteral("<r/>"));
}

void TstBasedQtXmlParser::nullDocumentHasNoText()
{
    Parser parser;
    parser.m_qstrXML = QStringLiteral("former");
    QCOMPARE(parser.GetValue(false), false);
    QCOMPARE(parser.m_qstrXML, QString());
    QCOMPARE(parser.GetValue(true), false);
    const QString line = QStringLiteral("GetValue:m_qoXmlDoc is NULL");
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList({line, line}));
}

void TstBasedQtXmlParser::documentWithNothingInItHasNoText()
{
    Parser parser;
    parser.m_qoXmlDoc.createElement(QStringLiteral("unused"));
    QVERIFY(!parser.m_qoXmlDoc.isNull());
    QCOMPARE(parser.GetValue(false), false);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("GetValue:stream is NULL")));
}

void TstBasedQtXmlParser::clearedParserHoldsNothing()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    QVERIFY(parser.GetValue(false));
    parser.ClearPraserData();
    QVERIFY(parser.m_qoXmlDoc.isNull());
    QVERIFY(parser.m_qoRootElement.isNull());
    QVERIFY(parser.m_qoCurElement.isNull());
    QVERIFY(parser.m_qstrXML.isEmpty());
    QVERIFY(!parser.m_qstrXML.isNull());
}

void TstBasedQtXmlParser::savedFileIsUtf8WithIndentation4_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::newRow("locale with UTF-8") << QByteArray("UTF-8");
    QTest::newRow("locale with Latin-1") << QByteArray(s_latin1);
}

void TstBasedQtXmlParser::savedFileIsUtf8WithIndentation4()
{
    QFETCH(QByteArray, codec);
    const LocaleCodec locale(codec.constData());
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>é文😀 &lt;&amp;\"'</a></r>")));
    QVERIFY(parser.SaveXmlFile(documentPath()));
    QCOMPARE(installation::readFile(documentPath()),
             QByteArray("<r>\n    <a>\xC3\xA9\xE6\x96\x87\xF0\x9F\x98\x80 &lt;&amp;\"'</a>\n</r>\n"));
    QCOMPARE(parser.m_qstrXML, QStringLiteral("<r>\n    <a>é文😀 &lt;&amp;\"'</a>\n</r>\n"));
}

void TstBasedQtXmlParser::savingReplacesALongerFile()
{
    installation::writeFile(documentPath(), QByteArray(10000, 'x'));
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    QVERIFY(parser.SaveXmlFile(documentPath()));
    QCOMPARE(installation::readFile(documentPath()), QByteArray("<r/>\n"));
}

void TstBasedQtXmlParser::savingWhereNoFileOpensIsLoggedAndRefused()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    QCOMPARE(parser.SaveXmlFile(installation::path(QStringLiteral("missing/document.xml"))), false);
    QCOMPARE(parser.SaveXmlFile(installation::root()), false);
    const QString line = QStringLiteral("SaveXmlFile: can not open file!");
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList({line, line}));
}

void TstBasedQtXmlParser::savingANullDocumentLeavesTheFileTruncated()
{
    installation::writeFile(documentPath(), "former");
    Parser parser;
    QCOMPARE(parser.SaveXmlFile(documentPath()), false);
    QVERIFY(QFile::exists(documentPath()));
    QCOMPARE(QFileInfo(documentPath()).size(), qint64(0));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("GetValue:m_qoXmlDoc is NULL")));
}

void TstBasedQtXmlParser::savingADocumentWithNothingInItLeavesTheFileTruncated()
{
    installation::writeFile(documentPath(), "former");
    Parser parser;
    parser.m_qoXmlDoc.createElement(QStringLiteral("unused"));
    QCOMPARE(parser.SaveXmlFile(documentPath()), false);
    QCOMPARE(QFileInfo(documentPath()).size(), qint64(0));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("GetValue:stream is NULL")));
}

void TstBasedQtXmlParser::fileThatCannotBeWrittenWholeIsRemoved_data()
{
    QTest::addColumn<int>("length"); // of the text in the document
    QTest::addColumn<int>("room");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("small, no room") << 10 << 0 << false;
    QTest::newRow("small, one byte short") << 10 << 17 << false;
    QTest::newRow("small, exactly") << 10 << 18 << true;
    QTest::newRow("beyond one buffer, cut in the first") << 40000 << 1000 << false;
    QTest::newRow("beyond one buffer, cut in the second") << 40000 << 20000 << false;
    QTest::newRow("beyond one buffer, one byte short") << 40000 << 40007 << false;
    QTest::newRow("beyond one buffer, exactly") << 40000 << 40008 << true;
}

void TstBasedQtXmlParser::fileThatCannotBeWrittenWholeIsRemoved()
{
    QFETCH(const int, length);
    QFETCH(const int, room);
    QFETCH(const bool, isSaved);
    installation::writeFile(documentPath(), "former");
    const QString text = QString(length, QLatin1Char('x'));
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r>%1</r>").arg(text)));
    bool result = false;
    {
        const FullDisk disk{rlim_t(room)};
        result = parser.SaveXmlFile(documentPath());
    }
    QCOMPARE(result, isSaved);
    QCOMPARE(installation::readFile(documentPath()), isSaved ? "<r>" + text.toLatin1() + "</r>\n" : QByteArray());
    QCOMPARE(QFile::exists(documentPath()), isSaved);
    // The log has no more room than the document.
    if (room >= 1000)
        QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
                 isSaved ? QStringList() : QStringList(QStringLiteral("SaveXmlFile: can not write file!")));
}

void TstBasedQtXmlParser::fileThatFailsWhenItIsClosedIsRemoved()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    // As a file system that keeps accounts elsewhere does.
    interposed::onClose = [](interposed::Close::Real real, int descriptor) {
        const QString file = QFile::symLinkTarget(QStringLiteral("/proc/self/fd/%1").arg(descriptor));
        const int result = real(descriptor);
        if (file != documentPath())
            return result;
        errno = EDQUOT;
        return -1;
    };
    const bool isSaved = parser.SaveXmlFile(documentPath());
    interposed::onClose = nullptr;
    QVERIFY(!isSaved);
    QVERIFY(!QFile::exists(documentPath()));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("SaveXmlFile: can not write file!")));
}

void TstBasedQtXmlParser::deviceThatTakesNothingStays()
{
    const QString link = installation::path(QStringLiteral("full"));
    QFile::remove(link);
    QVERIFY(QFile::link(QStringLiteral("/dev/full"), link));
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    QVERIFY(!parser.SaveXmlFile(link));
    QVERIFY(QFileInfo(link).isSymLink());
    QVERIFY(QFile::exists(QStringLiteral("/dev/full")));
    QVERIFY(QFile::remove(link));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList(QStringLiteral("SaveXmlFile: can not write file!")));
}

void TstBasedQtXmlParser::addedTextStandsAsItIs_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<QString>("element");
    QTest::newRow("plain") << QStringLiteral("text") << QStringLiteral("<a>text</a>");
    QTest::newRow("Chinese") << QStringLiteral("文é😀") << QStringLiteral("<a>文é😀</a>");
    QTest::newRow("markup") << QStringLiteral("<&>\"'") << QStringLiteral("<a>&lt;&amp;>\"'</a>");
    QTest::newRow("blanks") << QStringLiteral("  x  ") << QStringLiteral("<a>  x  </a>");
    QTest::newRow("empty") << QStringLiteral("") << QStringLiteral("<a></a>");
    QTest::newRow("null") << QString() << QStringLiteral("<a></a>");
}

void TstBasedQtXmlParser::addedTextStandsAsItIs()
{
    QFETCH(QString, value);
    QFETCH(QString, element);
    // Text never meets the local codec.
    const LocaleCodec codec(s_latin1);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", value);
    QCOMPARE(parser.children(), element);
    QString text;
    parser.GetNodeValue("a", text);
    QCOMPARE(text, value);
}

void TstBasedQtXmlParser::addedBytesAreDecodedWithTheLocalCodec()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", "\xC3\xA9");
    QCOMPARE(parser.children(), QStringLiteral("<a>é</a>"));
    parser.RemoveItem("a");
    const LocaleCodec codec(s_latin1);
    parser.AddItem("a", "\xC3\xA9");
    QCOMPARE(parser.children(), QStringLiteral("<a>Ã©</a>"));
}

void TstBasedQtXmlParser::addedNullBytesGiveAnElementWithoutText()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", static_cast<const char*>(nullptr));
    QCOMPARE(parser.children(), QStringLiteral("<a/>"));
    QVERIFY(!parser.m_qoCurElement.firstChildElement().hasChildNodes());
}

void TstBasedQtXmlParser::addedFlagIsAWord()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", true);
    parser.AddItem("b", false);
    QCOMPARE(parser.children(), QStringLiteral("<a>true</a><b>false</b>"));
}

void TstBasedQtXmlParser::addedNumberIsSigned_data()
{
    QTest::addColumn<uint>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0U << QStringLiteral("0");
    QTest::newRow("1500") << 1500U << QStringLiteral("1500");
    QTest::newRow("largest positive") << 2147483647U << QStringLiteral("2147483647");
    QTest::newRow("smallest negative") << 2147483648U << QStringLiteral("-2147483648");
    QTest::newRow("largest") << 4294967295U << QStringLiteral("-1");
}

void TstBasedQtXmlParser::addedNumberIsSigned()
{
    QFETCH(uint, value);
    QFETCH(QString, text);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", value);
    QCOMPARE(parser.children(), QStringLiteral("<a>%1</a>").arg(text));
}

void TstBasedQtXmlParser::addedWideNumberIsTheLow32BitsAlignedRightAndCut_data()
{
    QTest::addColumn<qulonglong>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("one digit falls away") << 5ULL << blanks(63);
    QTest::newRow("two digits") << 12ULL << blanks(62) + QStringLiteral("1");
    QTest::newRow("ten digits") << 2147483647ULL << blanks(54) + QStringLiteral("214748364");
    QTest::newRow("negative in 32 bits") << 2147483648ULL << blanks(53) + QStringLiteral("-214748364");
    QTest::newRow("all 32 bits") << 4294967295ULL << blanks(62) + QStringLiteral("-");
    QTest::newRow("beyond 32 bits") << 4294967296ULL + 12345 << blanks(59) + QStringLiteral("1234");
    QTest::newRow("all bits") << 18446744073709551615ULL << blanks(62) + QStringLiteral("-");
}

void TstBasedQtXmlParser::addedWideNumberIsTheLow32BitsAlignedRightAndCut()
{
    QFETCH(qulonglong, value);
    QFETCH(QString, text);
    QCOMPARE(text.size(), 63);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r b=\"former\"/>")));
    parser.AddItem("a", value);
    QCOMPARE(parser.children(), QStringLiteral("<a>%1</a>").arg(text));
    parser.SetAttributeValue(parser.m_qoCurElement, "b", value);
    QCOMPARE(parser.m_qoCurElement.attribute(QStringLiteral("b")), text);
}

void TstBasedQtXmlParser::addedUtf8TextPassesThroughTheLocalCodec_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::addColumn<QString>("element");
    QTest::newRow("UTF-8") << QByteArray("UTF-8") << QStringLiteral("<a>é&amp;</a>");
    QTest::newRow("Latin-1") << QByteArray(s_latin1) << QStringLiteral("<a>Ã©&amp;</a>");
}

void TstBasedQtXmlParser::addedUtf8TextPassesThroughTheLocalCodec()
{
    QFETCH(QByteArray, codec);
    QFETCH(QString, element);
    const LocaleCodec locale(codec.constData());
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddUtf8Item("a", QStringLiteral("é&"));
    QCOMPARE(parser.children(), element);
    parser.RemoveItem("a");
    parser.AddUtf8Item("a", QString());
    QCOMPARE(parser.children(), QStringLiteral("<a></a>"));
}

void TstBasedQtXmlParser::addedUtf8TextEndsAtItsFirstNul()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddUtf8Item("a", QStringLiteral("one") + QChar(0) + QStringLiteral("two"));
    QCOMPARE(parser.children(), QStringLiteral("<a>one</a>"));
}

void TstBasedQtXmlParser::secondTextOfOneNameGoesToTheFirstElement()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", QStringLiteral("one"));
    parser.AddItem("b", QStringLiteral("between"));
    parser.AddItem("a", QStringLiteral("two"));
    QCOMPARE(parser.children(), QStringLiteral("<a>onetwo</a><b>between</b><a/>"));
    QCOMPARE(parser.m_qoCurElement.firstChildElement().childNodes().size(), 2);
    QString text;
    parser.GetNodeValue("a", text);
    QCOMPARE(text, QStringLiteral("onetwo"));
}

void TstBasedQtXmlParser::secondBytesOfOneNameStayInTheirElement()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", "one");
    parser.AddItem("a", "two");
    parser.AddItem("a", 3U);
    parser.AddItem("a", true);
    parser.AddUtf8Item("a", QStringLiteral("five"));
    QCOMPARE(parser.children(), QStringLiteral("<a>one</a><a>two</a><a>3</a><a>true</a><a>five</a>"));
    parser.AddItem("a", QStringLiteral("six"));
    QCOMPARE(parser.children(), QStringLiteral("<a>onesix</a><a>two</a><a>3</a><a>true</a><a>five</a><a/>"));
}

void TstBasedQtXmlParser::namesAreDecodedWithTheLocalCodec()
{
    const LocaleCodec codec(s_latin1);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("\xE9", "text");
    QCOMPARE(parser.children(), QStringLiteral("<é>text</é>"));
    QString text;
    parser.GetNodeValue("\xE9", text);
    QCOMPARE(text, QStringLiteral("text"));
    parser.SetAttributeValue(parser.m_qoCurElement, "\xE9", "\xE8");
    QCOMPARE(parser.m_qoCurElement.attribute(QStringLiteral("é")), QStringLiteral("è"));
    parser.GetAttributeValue(&parser.m_qoCurElement, "\xE9", text);
    QCOMPARE(text, QStringLiteral("è"));
    parser.RemoveItem("\xE9");
    QCOMPARE(parser.children(), QString());
}

void TstBasedQtXmlParser::nullNameAddsNothing()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a/></r>")));
    parser.AddItem(nullptr, QStringLiteral("text"));
    parser.AddItem(nullptr, "text");
    parser.AddItem(nullptr, true);
    parser.AddItem(nullptr, 1U);
    parser.AddItem(nullptr, 1ULL);
    parser.AddUtf8Item(nullptr, QStringLiteral("text"));
    parser.RemoveItem(nullptr);
    QCOMPARE(parser.children(), QStringLiteral("<a/>"));
}

void TstBasedQtXmlParser::nullCurrentElementTakesNothing()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a/></r>")));
    parser.m_qoCurElement.clear();
    parser.AddItem("a", QStringLiteral("text"));
    parser.AddItem("a", "text");
    parser.AddItem("a", true);
    parser.AddItem("a", 1U);
    parser.AddItem("a", 1ULL);
    parser.AddUtf8Item("a", QStringLiteral("text"));
    parser.RemoveItem("a");
    QVERIFY(parser.m_qoCurElement.isNull());
    parser.m_qoCurElement = parser.m_qoRootElement;
    QCOMPARE(parser.children(), QStringLiteral("<a/>"));
}

void TstBasedQtXmlParser::removedItemIsTheFirstOfItsName()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><b/><a>1</a><a>2</a></r>")));
    parser.RemoveItem("a");
    QCOMPARE(parser.children(), QStringLiteral("<b/><a>2</a>"));
    parser.RemoveItem("a");
    QCOMPARE(parser.children(), QStringLiteral("<b/>"));
}

void TstBasedQtXmlParser::missingItemIsNotRemoved()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><b><a/></b></r>")));
    parser.RemoveItem("a");
    QCOMPARE(parser.children(), QStringLiteral("<b><a/></b>"));
}

void TstBasedQtXmlParser::modifiedValueReplacesTheText()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><g><a>former</a><a>second</a></g></r>")));
    QDomNode group = parser.m_qoRootElement.firstChild();
    QCOMPARE(parser.ModifyXMLValue(group, QStringLiteral("a"), QStringLiteral("new & 新")), true);
    QCOMPARE(parser.children(), QStringLiteral("<g><a>new &amp; 新</a><a>second</a></g>"));
}

void TstBasedQtXmlParser::modifiedValueFillsAnElementWithoutChildren()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><g><a/></g></r>")));
    QDomNode group = parser.m_qoRootElement.firstChild();
    QCOMPARE(parser.ModifyXMLValue(group, QStringLiteral("a"), QStringLiteral("new")), true);
    QCOMPARE(parser.children(), QStringLiteral("<g><a>new</a></g>"));
}

void TstBasedQtXmlParser::equalValueChangesNothing()
{
    // The first text node alone differs from the value, the whole text does not.
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>on<!-- comment -->e</a><b/></r>")));
    QDomNode root = parser.m_qoRootElement;
    QCOMPARE(parser.ModifyXMLValue(root, QStringLiteral("a"), QStringLiteral("one")), true);
    QCOMPARE(parser.ModifyXMLValue(root, QStringLiteral("b"), QString()), true);
    QCOMPARE(parser.children(), QStringLiteral("<a>on<!-- comment -->e</a><b/>"));
}

void TstBasedQtXmlParser::valueThatDiffersInCaseIsModified()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>Value</a></r>")));
    QDomNode root = parser.m_qoRootElement;
    QCOMPARE(parser.ModifyXMLValue(root, QStringLiteral("a"), QStringLiteral("value")), true);
    QCOMPARE(parser.children(), QStringLiteral("<a>value</a>"));
}

void TstBasedQtXmlParser::elementWithAnotherFirstChildIsNotModified_data()
{
    QTest::addColumn<QString>("element");
    QTest::newRow("element") << QStringLiteral("<a><b>text</b></a>");
    QTest::newRow("element before text") << QStringLiteral("<a><b/>text</a>");
    QTest::newRow("comment before text") << QStringLiteral("<a><!-- comment -->text</a>");
}

void TstBasedQtXmlParser::elementWithAnotherFirstChildIsNotModified()
{
    QFETCH(QString, element);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r>%1</r>").arg(element)));
    QDomNode root = parser.m_qoRootElement;
    QCOMPARE(parser.ModifyXMLValue(root, QStringLiteral("a"), QStringLiteral("new")), true);
    QCOMPARE(parser.children(), element);
}

void TstBasedQtXmlParser::missingElementIsAddedUnderTheCurrentElement()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><g/><b>former</b></r>")));
    QDomNode group = parser.m_qoRootElement.firstChild();
    QCOMPARE(parser.ModifyXMLValue(group, QStringLiteral("a"), QStringLiteral("新")), true);
    QCOMPARE(parser.children(), QStringLiteral("<g/><b>former</b><a>新</a>"));
    // As by AddItem with a text: the first element of the name gets it.
    QCOMPARE(parser.ModifyXMLValue(group, QStringLiteral("b"), QStringLiteral("新")), true);
    QCOMPARE(parser.children(), QStringLiteral("<g/><b>former新</b><a>新</a><b/>"));
    const LocaleCodec codec(s_latin1);
    QCOMPARE(parser.ModifyXMLValue(group, QStringLiteral("c"), QStringLiteral("新")), true);
    QCOMPARE(parser.children(), QStringLiteral("<g/><b>former新</b><a>新</a><b/><c>新</c>"));
}

void TstBasedQtXmlParser::readTextIsThatOfTheFirstElement_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QStringLiteral("<a>文 text</a>") << QStringLiteral("文 text");
    QTest::newRow("blanks around") << QStringLiteral("<a> x </a>") << QStringLiteral(" x ");
    QTest::newRow("line feeds") << QStringLiteral("<a>1\n2\n</a>") << QStringLiteral("1\n2\n");
    QTest::newRow("references") << QStringLiteral("<a>&lt;&amp;&#x6587;</a>") << QStringLiteral("<&文");
    QTest::newRow("unparsed characters") << QStringLiteral("<a><![CDATA[<b>]]></a>") << QStringLiteral("<b>");
    QTest::newRow("comment inside") << QStringLiteral("<a>1<!-- 2 -->3</a>") << QStringLiteral("13");
    QTest::newRow("element inside") << QStringLiteral("<a>1<b>2</b>3</a>") << QStringLiteral("123");
    QTest::newRow("first of two") << QStringLiteral("<b>0</b><a>1</a><a>2</a>") << QStringLiteral("1");
    QTest::newRow("first of two is empty") << QStringLiteral("<a/><a>2</a>") << QString();
    QTest::newRow("blanks alone") << QStringLiteral("<a>  \n </a>") << QString();
    QTest::newRow("empty") << QStringLiteral("<a></a>") << QString();
    QTest::newRow("missing") << QStringLiteral("<b>1</b>") << QString();
    QTest::newRow("deeper") << QStringLiteral("<b><a>1</a></b>") << QString();
    QTest::newRow("other case") << QStringLiteral("<A>1</A>") << QString();
}

void TstBasedQtXmlParser::readTextIsThatOfTheFirstElement()
{
    QFETCH(QString, children);
    QFETCH(QString, text);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r>%1</r>").arg(children)));
    QString out = QStringLiteral("former");
    parser.GetNodeValue("a", out);
    QCOMPARE(out, text);
    QVERIFY(!out.isNull());
    out = QStringLiteral("former");
    parser.GetUtf8NodeValue("a", out);
    QCOMPARE(out, text);
    QVERIFY(!out.isNull());
    std::string bytes = "former";
    parser.GetNodeValue("a", bytes, 0);
    QCOMPARE(bytes, text.toStdString());
}

void TstBasedQtXmlParser::readTextIsCutToItsLimit_data()
{
    QTest::addColumn<ushort>("maxLen");
    QTest::addColumn<QString>("text");
    QTest::newRow("no limit") << ushort(0) << QStringLiteral("一2三4");
    QTest::newRow("longer") << ushort(5) << QStringLiteral("一2三4");
    QTest::newRow("as long") << ushort(4) << QStringLiteral("一2三4");
    QTest::newRow("shorter by one") << ushort(3) << QStringLiteral("一2三");
    QTest::newRow("one") << ushort(1) << QStringLiteral("一");
}

void TstBasedQtXmlParser::readTextIsCutToItsLimit()
{
    QFETCH(ushort, maxLen);
    QFETCH(QString, text);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>一2三4</a></r>")));
    QString out = QStringLiteral("former");
    parser.GetNodeValue("a", out, maxLen);
    QCOMPARE(out, text);
    QStringList lines;
    if (text.size() < 4)
        lines.append(QStringLiteral("CBasedQtXmlParser::GetNodeValue: Node:a len too long!"));
    QCOMPARE(installation::logMessages(QStringLiteral("[HNT]")), lines);
    QCOMPARE(installation::log().count('\n'), lines.size());
}

void TstBasedQtXmlParser::readBytesWithinTheLimitAreLeftOut_data()
{
    QTest::addColumn<ushort>("maxLen");
    QTest::addColumn<std::string>("bytes");
    QTest::addColumn<bool>("logged");
    QTest::newRow("no limit") << ushort(0) << std::string("abcd") << false;
    QTest::newRow("longer") << ushort(5) << std::string() << false;
    QTest::newRow("as long") << ushort(4) << std::string() << false;
    QTest::newRow("shorter by one") << ushort(3) << std::string("abc") << true;
    QTest::newRow("one") << ushort(1) << std::string("a") << true;
}

void TstBasedQtXmlParser::readBytesWithinTheLimitAreLeftOut()
{
    QFETCH(ushort, maxLen);
    QFETCH(std::string, bytes);
    QFETCH(bool, logged);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>abcd</a></r>")));
    std::string out = "former";
    parser.GetNodeValue("a", out, maxLen);
    QCOMPARE(out, bytes);
    QStringList lines;
    if (logged)
        lines.append(QStringLiteral("CBasedQtXmlParser::GetNodeValue1:Node:a len too long!"));
    QCOMPARE(installation::logMessages(QStringLiteral("[HNT]")), lines);
    QCOMPARE(installation::log().count('\n'), lines.size());
}

void TstBasedQtXmlParser::readBytesAreInTheLocalEncoding()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"é\"><a>é</a></r>")));
    const LocaleCodec codec(s_latin1);
    std::string out;
    parser.GetNodeValue("a", out, 0);
    QCOMPARE(out, std::string("\xE9"));
    QDomElement element = parser.m_qoRootElement.firstChildElement();
    parser.GetNodeValue(&element, out);
    QCOMPARE(out, std::string("\xE9"));
    out.clear();
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", out);
    QCOMPARE(out, std::string("\xE9"));
}

void TstBasedQtXmlParser::readNumberIsDecimalOrZero_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<uint>("number");
    QTest::addColumn<ushort>("shortNumber");
    QTest::addColumn<qulonglong>("wideNumber");
    const auto row = [](const char* name, const char* text, uint number, ushort shortNumber, qulonglong wideNumber) {
        QTest::newRow(name) << QStringLiteral("<a>%1</a>").arg(QLatin1String(text)) << number << shortNumber
                            << wideNumber;
    };
    row("0", "0", 0, 0, 0);
    row("decimal", "1701", 1701, 1701, 1701);
    row("leading zeros are decimal", "0017", 17, 17, 17);
    row("blanks around", " 17 ", 17, 17, 17);
    row("plus sign", "+17", 17, 17, 17);
    row("minus sign", "-5", 0, 0, 0);
    row("minus one", "-1", 0, 0, 0);
    row("no number", "abc", 0, 0, 0);
    row("number and text", "5 s", 0, 0, 0);
    row("fraction", "1.5", 0, 0, 0);
    row("hexadecimal", "0x10", 0, 0, 0);
    row("largest of 16 bits", "65535", 65535, 65535, 65535);
    row("beyond 16 bits", "65536", 65536, 0, 65536);
    row("largest of 32 bits", "4294967295", 4294967295U, 0, 4294967295ULL);
    row("beyond 32 bits", "4294967296", 0, 0, 4294967296ULL);
    row("largest of 64 bits", "18446744073709551615", 0, 0, 18446744073709551615ULL);
    row("beyond 64 bits", "18446744073709551616", 0, 0, 0);
    row("word", "true", 0, 0, 0);
    QTest::newRow("empty") << QStringLiteral("<a/>") << 0U << ushort(0) << 0ULL;
    QTest::newRow("missing") << QStringLiteral("<b>5</b>") << 0U << ushort(0) << 0ULL;
    QTest::newRow("first of two") << QStringLiteral("<a>5</a><a>6</a>") << 5U << ushort(5) << 5ULL;
}

void TstBasedQtXmlParser::readNumberIsDecimalOrZero()
{
    QFETCH(QString, children);
    QFETCH(uint, number);
    QFETCH(ushort, shortNumber);
    QFETCH(qulonglong, wideNumber);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r>%1</r>").arg(children)));
    unsigned int out = 99;
    parser.GetNodeValue("a", out);
    QCOMPARE(out, number);
    unsigned short shortOut = 99;
    parser.GetNodeValue("a", shortOut);
    QCOMPARE(shortOut, shortNumber);
    unsigned long long wideOut = 99;
    parser.GetNodeValue("a", wideOut);
    QCOMPARE(wideOut, wideNumber);
}

void TstBasedQtXmlParser::readFlagKeepsItsValueForOtherWords_data()
{
    QTest::addColumn<QString>("children");
    QTest::addColumn<bool>("fromFalse");
    QTest::addColumn<bool>("fromTrue");
    const auto row = [](const char* name, const char* children, bool fromFalse, bool fromTrue) {
        QTest::newRow(name) << QString::fromLatin1(children) << fromFalse << fromTrue;
    };
    row("true", "<a>true</a>", true, true);
    row("TRUE", "<a>TRUE</a>", true, true);
    row("TrUe", "<a>TrUe</a>", true, true);
    row("1", "<a>1</a>", true, true);
    row("false", "<a>false</a>", false, false);
    row("False", "<a>False</a>", false, false);
    row("0", "<a>0</a>", false, false);
    row("yes", "<a>yes</a>", false, true);
    row("2", "<a>2</a>", false, true);
    row("01", "<a>01</a>", false, true);
    row("blank before", "<a> true</a>", false, true);
    row("blank behind", "<a>false </a>", false, true);
    row("empty", "<a></a>", false, true);
    row("missing", "<b>true</b>", false, true);
}

void TstBasedQtXmlParser::readFlagKeepsItsValueForOtherWords()
{
    QFETCH(QString, children);
    QFETCH(bool, fromFalse);
    QFETCH(bool, fromTrue);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r>%1</r>").arg(children)));
    bool out = false;
    parser.GetNodeValue("a", out);
    QCOMPARE(out, fromFalse);
    out = true;
    parser.GetNodeValue("a", out);
    QCOMPARE(out, fromTrue);
}

void TstBasedQtXmlParser::readUtf8TextEndsAtItsFirstNul()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    const QString text = QStringLiteral("一") + QChar(0) + QStringLiteral("二");
    parser.AddItem("a", text);
    QString out;
    parser.GetUtf8NodeValue("a", out);
    QCOMPARE(out, QStringLiteral("一"));
    parser.GetNodeValue("a", out);
    QCOMPARE(out, text);
    std::string bytes;
    parser.GetNodeValue("a", bytes, 0);
    QCOMPARE(bytes, std::string("\xE4\xB8\x80\0\xE4\xBA\x8C", 7));
    QDomElement element = parser.m_qoCurElement.firstChildElement();
    parser.GetNodeValue(&element, bytes);
    QCOMPARE(bytes, std::string("\xE4\xB8\x80"));
}

void TstBasedQtXmlParser::readUtf8TextDoesNotUndoTheLocalCodec()
{
    const LocaleCodec codec(s_latin1);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddUtf8Item("a", QStringLiteral("é"));
    QString out;
    parser.GetUtf8NodeValue("a", out);
    QCOMPARE(out, QStringLiteral("Ã©"));
}

void TstBasedQtXmlParser::nullNameClearsTheOutputButNotAFlag()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>5</a></r>")));
    QString text = QStringLiteral("former");
    parser.GetNodeValue(static_cast<const char*>(nullptr), text);
    QCOMPARE(text, QString());
    text = QStringLiteral("former");
    parser.GetUtf8NodeValue(nullptr, text);
    QCOMPARE(text, QString());
    std::string bytes = "former";
    parser.GetNodeValue(nullptr, bytes, 3);
    QCOMPARE(bytes, std::string());
    unsigned int number = 9;
    parser.GetNodeValue(nullptr, number);
    QCOMPARE(number, 0U);
    unsigned short shortNumber = 9;
    parser.GetNodeValue(nullptr, shortNumber);
    QCOMPARE(shortNumber, ushort(0));
    unsigned long long wideNumber = 9;
    parser.GetNodeValue(nullptr, wideNumber);
    QCOMPARE(wideNumber, 0ULL);
    bool flag = true;
    parser.GetNodeValue(nullptr, flag);
    QCOMPARE(flag, true);
    QCOMPARE(installation::log(), QByteArray());
}

void TstBasedQtXmlParser::nullCurrentElementClearsTheOutputButNotAFlag()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>5</a></r>")));
    parser.m_qoCurElement.clear();
    QString text = QStringLiteral("former");
    parser.GetNodeValue("a", text, 2);
    QCOMPARE(text, QString());
    text = QStringLiteral("former");
    parser.GetUtf8NodeValue("a", text);
    QCOMPARE(text, QString());
    std::string bytes = "former";
    parser.GetNodeValue("a", bytes, 0);
    QCOMPARE(bytes, std::string());
    unsigned int number = 9;
    parser.GetNodeValue("a", number);
    QCOMPARE(number, 0U);
    unsigned short shortNumber = 9;
    parser.GetNodeValue("a", shortNumber);
    QCOMPARE(shortNumber, ushort(0));
    unsigned long long wideNumber = 9;
    parser.GetNodeValue("a", wideNumber);
    QCOMPARE(wideNumber, 0ULL);
    bool flag = true;
    parser.GetNodeValue("a", flag);
    QCOMPARE(flag, true);
}

void TstBasedQtXmlParser::writtenMinusOneReadsAsZero()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r/>")));
    parser.AddItem("a", 4294967295U);
    QString text;
    parser.GetNodeValue("a", text);
    QCOMPARE(text, QStringLiteral("-1"));
    unsigned int number = 9;
    parser.GetNodeValue("a", number);
    QCOMPARE(number, 0U);
}

void TstBasedQtXmlParser::textOfAGivenElementIsRead()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r><a>文</a><b/></r>")));
    QDomElement a = parser.m_qoRootElement.firstChildElement(QStringLiteral("a"));
    QDomElement b = parser.m_qoRootElement.firstChildElement(QStringLiteral("b"));
    QDomElement none;
    QString text;
    parser.GetNodeValue(&a, text);
    QCOMPARE(text, QStringLiteral("文"));
    parser.GetNodeValue(&b, text);
    QCOMPARE(text, QString());
    text = QStringLiteral("former");
    parser.GetNodeValue(&none, text);
    QCOMPARE(text, QString());
    std::string bytes;
    parser.GetNodeValue(&a, bytes);
    QCOMPARE(bytes, std::string("\xE6\x96\x87"));
    parser.GetNodeValue(&b, bytes);
    QCOMPARE(bytes, std::string());
    bytes = "former";
    parser.GetNodeValue(&none, bytes);
    QCOMPARE(bytes, std::string());
}

void TstBasedQtXmlParser::nullElementPointerLeavesTheTextAlone()
{
    Parser parser;
    QString text = QStringLiteral("former");
    parser.GetNodeValue(static_cast<QDomElement*>(nullptr), text);
    QCOMPARE(text, QStringLiteral("former"));
    std::string bytes = "former";
    parser.GetNodeValue(static_cast<QDomElement*>(nullptr), bytes);
    QCOMPARE(bytes, std::string("former"));
}

void TstBasedQtXmlParser::attributeIsRead()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"文\"/>")));
    QString text;
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", text);
    QCOMPARE(text, QStringLiteral("文"));
    std::string bytes;
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", bytes);
    QCOMPARE(bytes, std::string("\xE6\x96\x87"));
}

void TstBasedQtXmlParser::missingAttributeReadsAsEmpty()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"1\"/>")));
    for (QDomElement* element : {&parser.m_qoRootElement, static_cast<QDomElement*>(nullptr)}) {
        QString text = QStringLiteral("former");
        parser.GetAttributeValue(element, "y", text);
        QCOMPARE(text, QString());
        QVERIFY(!text.isNull());
        std::string bytes = "former";
        parser.GetAttributeValue(element, "y", bytes);
        QCOMPARE(bytes, std::string());
        unsigned int number = 9;
        parser.GetAttributeValue(element, "y", number);
        QCOMPARE(number, 0U);
        unsigned long long wideNumber = 9;
        parser.GetAttributeValue(element, "y", wideNumber);
        QCOMPARE(wideNumber, 0ULL);
        bool flag = true;
        parser.GetAttributeValue(element, "y", flag);
        QCOMPARE(flag, false);
    }
}

void TstBasedQtXmlParser::attributeBytesAreCopiedWithoutATerminator_data()
{
    QTest::addColumn<uint>("maxLen");
    QTest::addColumn<QByteArray>("room");
    QTest::newRow("no limit") << 0U
                              << QByteArray("a\xE9"
                                            "c#####");
    QTest::newRow("shorter") << 2U << QByteArray("a\xE9######");
    QTest::newRow("as long") << 3U
                             << QByteArray("a\xE9"
                                           "c#####");
    QTest::newRow("longer by one") << 4U
                                   << QByteArray("a\xE9"
                                                 "c\0####",
                                                 8);
    QTest::newRow("longer") << 6U
                            << QByteArray("a\xE9"
                                          "c\0\0\0##",
                                          8);
}

void TstBasedQtXmlParser::attributeBytesAreCopiedWithoutATerminator()
{
    QFETCH(uint, maxLen);
    QFETCH(QByteArray, room);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"aéc\"/>")));
    const LocaleCodec codec(s_latin1);
    QByteArray out(8, '#');
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", out.data(), maxLen);
    QCOMPARE(out, room);
}

void TstBasedQtXmlParser::attributeBytesAreNotTouchedWithoutAValue()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"1\" empty=\"\"/>")));
    QByteArray out(4, '#');
    parser.GetAttributeValue(static_cast<QDomElement*>(nullptr), "x", out.data(), 4U);
    parser.GetAttributeValue(&parser.m_qoRootElement, "missing", out.data(), 4U);
    parser.GetAttributeValue(&parser.m_qoRootElement, "empty", out.data(), 4U);
    parser.GetAttributeValue(&parser.m_qoRootElement, "empty", out.data(), 0U);
    QCOMPARE(out, QByteArray("####"));
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", static_cast<char*>(nullptr), 4U);
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", out.data(), 4U);
    QCOMPARE(out, QByteArray("1\0\0\0", 4));
}

void TstBasedQtXmlParser::attributeNumberIsUnsignedIn32BitsAndSignedIn64_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<uint>("number");
    QTest::addColumn<qulonglong>("wideNumber");
    const auto row = [](const char* value, uint number, qulonglong wideNumber) {
        QTest::newRow(value) << QString::fromLatin1(value) << number << wideNumber;
    };
    row("1701", 1701, 1701);
    row("4294967295", 4294967295U, 4294967295ULL);
    row("4294967296", 0, 4294967296ULL);
    row("-5", 0, 18446744073709551611ULL);
    row("9223372036854775807", 0, 9223372036854775807ULL);
    row("9223372036854775808", 0, 0);
    row("abc", 0, 0);
}

void TstBasedQtXmlParser::attributeNumberIsUnsignedIn32BitsAndSignedIn64()
{
    QFETCH(QString, value);
    QFETCH(uint, number);
    QFETCH(qulonglong, wideNumber);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"%1\"/>").arg(value)));
    unsigned int out = 9;
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", out);
    QCOMPARE(out, number);
    unsigned long long wideOut = 9;
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", wideOut);
    QCOMPARE(wideOut, wideNumber);
}

void TstBasedQtXmlParser::attributeFlagIsFalseForOtherWords_data()
{
    QTest::addColumn<QString>("value");
    QTest::addColumn<bool>("flag");
    QTest::newRow("true") << QStringLiteral("true") << true;
    QTest::newRow("True") << QStringLiteral("True") << true;
    QTest::newRow("1") << QStringLiteral("1") << true;
    QTest::newRow("false") << QStringLiteral("false") << false;
    QTest::newRow("0") << QStringLiteral("0") << false;
    QTest::newRow("yes") << QStringLiteral("yes") << false;
    QTest::newRow("empty") << QString() << false;
}

void TstBasedQtXmlParser::attributeFlagIsFalseForOtherWords()
{
    QFETCH(QString, value);
    QFETCH(bool, flag);
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"%1\"/>").arg(value)));
    bool out = !flag;
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", out);
    QCOMPARE(out, flag);
    out = true;
    parser.GetAttributeValue(&parser.m_qoRootElement, "x", out);
    QCOMPARE(out, flag);
}

void TstBasedQtXmlParser::attributesAreSet()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"former\"/>")));
    const auto value = [&] { return parser.m_qoRootElement.attribute(QStringLiteral("x")); };
    parser.SetAttributeValue(parser.m_qoRootElement, "x", true);
    QCOMPARE(value(), QStringLiteral("1"));
    parser.SetAttributeValue(parser.m_qoRootElement, "x", false);
    QCOMPARE(value(), QStringLiteral("0"));
    parser.SetAttributeValue(parser.m_qoRootElement, "x", 4294967295U);
    QCOMPARE(value(), QStringLiteral("4294967295"));
    parser.SetAttributeValue(parser.m_qoRootElement, "x", "文 <&>");
    QCOMPARE(value(), QStringLiteral("文 <&>"));
    parser.SetAttributeValue(parser.m_qoRootElement, "x", "");
    QCOMPARE(value(), QString());
    QVERIFY(parser.m_qoRootElement.hasAttribute(QStringLiteral("x")));
}

void TstBasedQtXmlParser::nullTextSetsNoAttribute()
{
    Parser parser;
    QVERIFY(parser.LoadXml(QStringLiteral("<r x=\"former\"/>")));
    parser.SetAttributeValue(parser.m_qoRootElement, "x", static_cast<const char*>(nullptr));
    parser.SetAttributeValue(parser.m_qoRootElement, "y", static_cast<const char*>(nullptr));
    QCOMPARE(parser.m_qoRootElement.attribute(QStringLiteral("x")), QStringLiteral("former"));
    QVERIFY(!parser.m_qoRootElement.hasAttribute(QStringLiteral("y")));
}

TEST_ENTRY(basedqtxmlparser, runGuilessTest<TstBasedQtXmlParser>)
#include "tst_basedqtxmlparser.moc"
