#include "app/language/CLanguageParser.h"
#include "app/language/LangText.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QFile>
#include <QTextCodec>
#include <QtTest>

#include <atomic>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

using installation::path;
using installation::texts;

using Table = QVector<QPair<QByteArray, QString>>;
Q_DECLARE_METATYPE(Table)

static_assert(std::is_base_of<CBasedQtXmlParser, CLanguageParser>::value, "the table reads by the document layer");
static_assert(std::has_virtual_destructor<CLanguageParser>::value, "the table is destroyed by its base as well");
// A second thread reads while windows do, so a look-up must not change the table.
static_assert(std::is_same<decltype(std::declval<const CLanguageParser&>().GetKey("key")), QString>::value,
              "a look-up answers by value and changes nothing");

class TstLanguageParser : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void newTableIsEmpty();
    void entriesAreReadByTheLayout_data();
    void entriesAreReadByTheLayout();
    void encodingOfTheFileIsRecognised_data();
    void encodingOfTheFileIsRecognised();
    void keysAreOpaqueAndComparedWithCase_data();
    void keysAreOpaqueAndComparedWithCase();
    void nullKeyReadsAsNull();
    void answerIsACopy();
    void missingKeyIsNeitherLoggedNorAdded();
    void secondFileOverwritesItsKeysAndKeepsTheOthers();
    void emptyTextInASecondFileKeepsTheEarlierText();
    void unreadableFileLeavesTheTable_data();
    void unreadableFileLeavesTheTable();
    void fileIsLoadedAfterAFailure();
    void noFileGivesItsTextsASecondTime();
    void resultIsAlwaysOne();
    void everyLoadIsLogged();
    void pathMayHoldCharactersBeyondAscii();
    void secondThreadReadsTheSameTexts();
    void secondThreadReadsWhileFilesAreLoaded();
    void tableMayGoWhileASecondThreadSpeaks();
};

namespace {

const char s_missing[] = "NULL";

QString file(const char* name)
{
    return path(QLatin1String("files/") + QLatin1String(name));
}

QString write(const char* name, const QByteArray& content)
{
    installation::writeFile(file(name), content);
    return file(name);
}

QString document(const QByteArray& content)
{
    return write("language.xml", "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + content);
}

Table table(std::initializer_list<QPair<const char*, const char*>> rows)
{
    Table all;
    for (const auto& row : rows)
        all.append({QByteArray(row.first), QString::fromUtf8(row.second)});
    return all;
}

void compareTexts(const CLanguageParser& parser, const Table& expected)
{
    for (const auto& row : expected)
        QVERIFY2(parser.GetKey(row.first.constData()) == row.second,
                 row.first + ": \"" + parser.GetKey(row.first.constData()).toUtf8() + '"');
}

} // namespace

void TstLanguageParser::init()
{
    installation::clear();
}

void TstLanguageParser::cleanup()
{
    installation::clear();
    QDir(path(QStringLiteral("files"))).removeRecursively();
}

void TstLanguageParser::newTableIsEmpty()
{
    const CLanguageParser parser;
    for (const char* key : {"manager_title", "NULL", "key", ""})
        QCOMPARE(parser.GetKey(key), QLatin1String(s_missing));
}

void TstLanguageParser::entriesAreReadByTheLayout_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<Table>("expected");

    QTest::newRow("two entries") << QByteArray("<language><control key=\"a\">first</control>"
                                               "<control key=\"b\">second</control></language>")
                                 << table({{"a", "first"}, {"b", "second"}, {"c", s_missing}});
    QTest::newRow("document element of any name")
        << QByteArray("<anything><control key=\"a\">first</control></anything>") << table({{"a", "first"}});
    QTest::newRow("document element named control")
        << QByteArray("<control key=\"root\">outer<control key=\"a\">first</control></control>")
        << table({{"a", "first"}, {"root", s_missing}});
    QTest::newRow("no entry at all") << QByteArray("<language/>") << table({{"a", s_missing}});
    QTest::newRow("no element of the name control")
        << QByteArray("<language><entry key=\"a\">first</entry><Control key=\"b\">second</Control></language>")
        << table({{"a", s_missing}, {"b", s_missing}});
    QTest::newRow("comment in front") << QByteArray(
                                             "<language><!-- shared --><control key=\"a\">first</control></language>")
                                      << table({{"a", "first"}});
    QTest::newRow("comments, instructions and text between the entries")
        << QByteArray("<language>\n  text<control key=\"a\">first</control>\n<!-- <control key=\"x\">no</control> -->"
                      "<?page break?>loose text<![CDATA[<control key=\"y\">no</control>]]>"
                      "<control key=\"b\">second</control>tail</language>")
        << table({{"a", "first"}, {"b", "second"}, {"x", s_missing}, {"y", s_missing}});
    QTest::newRow("another element in front is lost")
        << QByteArray("<language><entry key=\"lost\">zero</entry><control key=\"a\">first</control></language>")
        << table({{"a", "first"}, {"lost", s_missing}});
    QTest::newRow("behind the first control every element counts")
        << QByteArray("<language><control key=\"a\">first</control><entry key=\"b\">second</entry>"
                      "<x key=\"c\">third</x></language>")
        << table({{"a", "first"}, {"b", "second"}, {"c", "third"}});
    QTest::newRow("elements below an entry are no entries")
        << QByteArray("<language><group><control key=\"deep\">no</control></group>"
                      "<control key=\"a\">first</control>"
                      "<group><control key=\"deeper\">no</control></group></language>")
        << table({{"a", "first"}, {"deep", s_missing}, {"deeper", s_missing}});
    QTest::newRow("the first control without a key starts the reading")
        << QByteArray("<language><control>zero</control><entry key=\"a\">first</entry></language>")
        << table({{"a", "first"}});
    QTest::newRow("empty key") << QByteArray("<language><control key=\"\">zero</control>"
                                             "<control key=\"a\">first</control></language>")
                               << table({{"", s_missing}, {"a", "first"}});
    QTest::newRow("no key") << QByteArray("<language><control name=\"a\">zero</control>"
                                          "<control Key=\"b\">zero</control></language>")
                            << table({{"", s_missing}, {"a", s_missing}, {"b", s_missing}});
    QTest::newRow("empty text") << QByteArray("<language><control key=\"a\"></control>"
                                              "<control key=\"b\"/></language>")
                                << table({{"a", s_missing}, {"b", s_missing}});
    QTest::newRow("empty text behind a full one")
        << QByteArray("<language><control key=\"a\">first</control><control key=\"a\"/></language>")
        << table({{"a", "first"}});
    QTest::newRow("the later of two wins") << QByteArray("<language><control key=\"a\">first</control>"
                                                         "<control key=\"b\">other</control>"
                                                         "<control key=\"a\">second</control></language>")
                                           << table({{"a", "second"}, {"b", "other"}});
    QTest::newRow("text of all descendants")
        << QByteArray(
               "<language><control key=\"a\">one <b>two</b><!-- no -->, <![CDATA[<three>]]></control></language>")
        << table({{"a", "one two, <three>"}});
    QTest::newRow("blanks and line feeds of a text stay")
        << QByteArray("<language><control key=\"a\">  two  blanks \n line </control></language>")
        << table({{"a", "  two  blanks \n line "}});
    QTest::newRow("entities") << QByteArray("<language><control key=\"a\">&amp;File &lt;%d&gt; &#x5b9a;</control>"
                                            "</language>")
                              << table({{"a", "&File <%d> 定"}});
    QTest::newRow("the text NULL is a text")
        << QByteArray("<language><control key=\"a\">NULL</control></language>") << table({{"a", "NULL"}});
    QTest::newRow("other attributes") << QByteArray("<language><control id=\"7\" key=\"a\" lang=\"en\">first</control>"
                                                    "</language>")
                                      << table({{"a", "first"}, {"7", s_missing}});
}

void TstLanguageParser::entriesAreReadByTheLayout()
{
    QFETCH(const QByteArray, content);
    QFETCH(const Table, expected);
    CLanguageParser parser;
    QCOMPARE(parser.LoadLanguage(document(content)), 1);
    compareTexts(parser, expected);
}

void TstLanguageParser::encodingOfTheFileIsRecognised_data()
{
    QTest::addColumn<QByteArray>("codec");
    QTest::newRow("UTF-8") << QByteArray("UTF-8");
    QTest::newRow("UTF-16") << QByteArray("UTF-16");
    QTest::newRow("GB18030") << QByteArray("GB18030");
}

void TstLanguageParser::encodingOfTheFileIsRecognised()
{
    QFETCH(const QByteArray, codec);
    const QString text = QStringLiteral("定制管理平台");
    const QString content = QStringLiteral("<?xml version=\"1.0\" encoding=\"%1\"?>\n"
                                           "<language><control key=\"a\">%2</control></language>\n")
                                .arg(QString::fromLatin1(codec), text);
    CLanguageParser parser;
    parser.LoadLanguage(write("encoded.xml", QTextCodec::codecForName(codec)->fromUnicode(content)));
    QCOMPARE(parser.GetKey("a"), text);
}

void TstLanguageParser::keysAreOpaqueAndComparedWithCase_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("text");
    QTest::newRow("with a point") << QByteArray("CUS_FuncName.MsgAuth") << "pointed";
    QTest::newRow("part before the point") << QByteArray("CUS_FuncName") << s_missing;
    QTest::newRow("with a digit in front") << QByteArray("8021x_title") << "digit";
    QTest::newRow("small letters") << QByteArray("ok_button") << "small";
    QTest::newRow("capitals") << QByteArray("OK_BUTTON") << "capitals";
    QTest::newRow("mixed") << QByteArray("Ok_Button") << s_missing;
    QTest::newRow("blank behind") << QByteArray("ok_button ") << "blank";
    QTest::newRow("blank in front") << QByteArray(" ok_button") << s_missing;
    QTest::newRow("UTF-8 bytes") << QByteArray("标题") << "beyond ASCII";
    QTest::newRow("empty") << QByteArray("") << s_missing;
}

void TstLanguageParser::keysAreOpaqueAndComparedWithCase()
{
    QFETCH(const QByteArray, key);
    QFETCH(const QString, text);
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"CUS_FuncName.MsgAuth\">pointed</control>"
                                 "<control key=\"8021x_title\">digit</control>"
                                 "<control key=\"ok_button\">small</control>"
                                 "<control key=\"OK_BUTTON\">capitals</control>"
                                 "<control key=\"ok_button \">blank</control>"
                                 "<control key=\"标题\">beyond ASCII</control></language>"));
    QCOMPARE(parser.GetKey(key.constData()), text);
}

void TstLanguageParser::nullKeyReadsAsNull()
{
    CLanguageParser parser;
    QCOMPARE(parser.GetKey(nullptr), QLatin1String(s_missing));
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    QCOMPARE(parser.GetKey(nullptr), QLatin1String(s_missing));
}

void TstLanguageParser::answerIsACopy()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    QString text = parser.GetKey("a");
    text.append(QLatin1Char('!'));
    QCOMPARE(parser.GetKey("a"), QStringLiteral("first"));
}

void TstLanguageParser::missingKeyIsNeitherLoggedNorAdded()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    installation::clearLog();
    QCOMPARE(parser.GetKey("b"), QLatin1String(s_missing));
    QCOMPARE(installation::log(), QByteArray());
    parser.LoadLanguage(document("<language><control key=\"b\">second</control></language>"));
    QCOMPARE(parser.GetKey("b"), QStringLiteral("second"));
}

void TstLanguageParser::secondFileOverwritesItsKeysAndKeepsTheOthers()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"both\">English</control>"
                                 "<control key=\"first\">only here</control></language>"));
    parser.LoadLanguage(document("<language><control key=\"both\">中文</control>"
                                 "<control key=\"second\">只在这里</control></language>"));
    compareTexts(parser, table({{"both", "中文"}, {"first", "only here"}, {"second", "只在这里"}}));
}

void TstLanguageParser::emptyTextInASecondFileKeepsTheEarlierText()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    parser.LoadLanguage(document("<language><control key=\"a\"></control><control key=\"b\">x</control></language>"));
    compareTexts(parser, table({{"a", "first"}, {"b", "x"}}));
}

void TstLanguageParser::unreadableFileLeavesTheTable_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("problem");
    const QString unopened = QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Open XML File[%1].");
    const QString unparsed = QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Load XML File[%1].");
    QTest::newRow("no such file") << QByteArray() << unopened;
    QTest::newRow("empty file") << QByteArray("") << unparsed;
    QTest::newRow("not well-formed") << QByteArray("<language><control key=\"a\">other</control>") << unparsed;
    QTest::newRow("well-formed only up to an entry")
        << QByteArray("<language><control key=\"a\">other</control><control key=\"b\">x</wrong></language>")
        << unparsed;
    QTest::newRow("no XML") << QByteArray("a=other\nb=x\n") << unparsed;
}

void TstLanguageParser::unreadableFileLeavesTheTable()
{
    QFETCH(const QByteArray, content);
    QFETCH(const QString, problem);
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    if (!content.isNull())
        write("broken.xml", content);
    installation::clearLog();
    QCOMPARE(parser.LoadLanguage(file("broken.xml")), 1);
    compareTexts(parser, table({{"a", "first"}, {"b", s_missing}}));
    QCOMPARE(installation::logLines(),
             QStringList({QStringLiteral("[DBG]LoadLanguage file path: {root}files/broken.xml"),
                          QStringLiteral("[ERR]") + problem.arg(QStringLiteral("{root}files/broken.xml"))}));
}

void TstLanguageParser::fileIsLoadedAfterAFailure()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    parser.LoadLanguage(write("broken.xml", "<language>"));
    parser.LoadLanguage(document("<language><control key=\"b\">second</control></language>"));
    compareTexts(parser, table({{"a", "first"}, {"b", "second"}}));
}

void TstLanguageParser::noFileGivesItsTextsASecondTime()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\" id=\"0\">by the parser</control></language>"));
    parser.LoadLanguage(document("<language><control key=\"a\">plain</control></language>"));
    parser.LoadLanguage(write("broken.xml", "<language>"));
    compareTexts(parser, table({{"a", "plain"}}));
}

void TstLanguageParser::resultIsAlwaysOne()
{
    CLanguageParser parser;
    QCOMPARE(parser.LoadLanguage(file("none.xml")), 1);
    QCOMPARE(parser.LoadLanguage(QString()), 1);
    QCOMPARE(parser.LoadLanguage(path(QString())), 1);
    QCOMPARE(parser.LoadLanguage(document("<language/>")), 1);
}

void TstLanguageParser::everyLoadIsLogged()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    parser.LoadLanguage(file("language.xml"));
    QCOMPARE(installation::logLines(), texts({"[DBG]LoadLanguage file path: {root}files/language.xml",
                                              "[DBG]LoadLanguage file path: {root}files/language.xml"}));
}

void TstLanguageParser::pathMayHoldCharactersBeyondAscii()
{
    const QString place = path(QStringLiteral("files/语言 (一).xml"));
    installation::writeFile(place, "<language><control key=\"a\">first</control></language>");
    CLanguageParser parser;
    parser.LoadLanguage(place);
    QCOMPARE(parser.GetKey("a"), QStringLiteral("first"));
    QCOMPARE(installation::logLines(), texts({"[DBG]LoadLanguage file path: {root}files/语言 (一).xml"}));
}

void TstLanguageParser::secondThreadReadsTheSameTexts()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    const auto wrongAnswers = [&parser] {
        int wrong = 0;
        for (int round = 0; round < 20000; ++round) {
            const QByteArray absent = "absent" + QByteArray::number(round);
            if (parser.GetKey("a") != QLatin1String("first") ||
                parser.GetKey(absent.constData()) != QLatin1String(s_missing))
                ++wrong;
        }
        return wrong;
    };
    int other = -1;
    std::thread thread([&] { other = wrongAnswers(); });
    const int own = wrongAnswers();
    thread.join();
    QCOMPARE(own, 0);
    QCOMPARE(other, 0);
}

void TstLanguageParser::secondThreadReadsWhileFilesAreLoaded()
{
    CLanguageParser parser;
    parser.LoadLanguage(document("<language><control key=\"a\">first</control></language>"));
    std::atomic<bool> isLoaded{false};
    int wrong = 0;
    std::thread thread([&] {
        while (!isLoaded)
            wrong += parser.GetKey("a") == QLatin1String("first") ? 0 : 1;
    });
    for (int file = 0; file < 20; ++file) {
        QByteArray controls;
        for (int key = 0; key < 500; ++key)
            controls += "<control key=\"" + QByteArray::number(key * 7919 % 500 + 500 * file) + "\">text</control>";
        parser.LoadLanguage(document("<language><control/>" + controls + "</language>"));
    }
    isLoaded = true;
    thread.join();
    QCOMPARE(wrong, 0);
    QCOMPARE(parser.GetKey("9999"), QStringLiteral("text"));
}

void TstLanguageParser::tableMayGoWhileASecondThreadSpeaks()
{
    const QString language = document("<language><control key=\"a\">first</control></language>");
    std::atomic<bool> isOver{false};
    int spoken = 0;
    int wrong = 0;
    std::thread thread([&] {
        while (!isOver) {
            const QString text = langText("a");
            spoken += text == QLatin1String("first") ? 1 : 0;
            wrong += text == QLatin1String("first") || text == QLatin1String(s_missing) ? 0 : 1;
        }
    });
    for (int round = 0; round < 50; ++round) {
        const auto parser = std::make_unique<CLanguageParser>();
        parser->LoadLanguage(language);
        setLanguageTable(parser.get());
        QTest::qSleep(1);
        setLanguageTable(nullptr);
    }
    isOver = true;
    thread.join();
    QCOMPARE(wrong, 0);
    QVERIFY(spoken > 0);
    QCOMPARE(langText("a"), QLatin1String(s_missing));
}

TEST_ENTRY(languageparser, runApplessTest<TstLanguageParser>)

#include "tst_languageparser.moc"
