#include "app/language/PlainTexts.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDomDocument>
#include <QRandomGenerator>
#include <QtTest>

#include <cstring>

namespace {

const QByteArray s_head("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n");

/// What a tree of the file holds; false when it does not parse.
bool byTree(const QByteArray& file, LanguageTexts& texts)
{
    QDomDocument document;
    if (!document.setContent(file, true))
        return false;
    for (QDomElement element = document.documentElement().firstChildElement(QStringLiteral("control"));
         !element.isNull(); element = element.nextSiblingElement())
        texts.append({element.attribute(QStringLiteral("key")), element.text()});
    return true;
}

QByteArray shipped(const char* language)
{
    return installation::readFile(
        QStringLiteral(ORVEX_SOURCE_DIR "/Resources/Language_%1.xml").arg(QString::fromUtf8(language)));
}

} // namespace

class TstPlainTexts : public QObject
{
    Q_OBJECT

private slots:
    void shippedFilesAreTakenAndReadAsByATree_data();
    void shippedFilesAreTakenAndReadAsByATree();
    void filesOfThatFormAreReadAsByATree_data();
    void filesOfThatFormAreReadAsByATree();
    void otherFilesAreLeftToTheParser_data();
    void otherFilesAreLeftToTheParser();
    void changedFilesAreReadAsByATreeOrNotAtAll();
};

void TstPlainTexts::shippedFilesAreTakenAndReadAsByATree_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("English") << shipped("en");
    QTest::newRow("Chinese") << shipped("zh");
}

void TstPlainTexts::shippedFilesAreTakenAndReadAsByATree()
{
    QFETCH(const QByteArray, file);
    LanguageTexts texts;
    QVERIFY(readPlainTexts(file, texts));
    LanguageTexts expected;
    QVERIFY(byTree(file, expected));
    QVERIFY(expected.size() > 300);
    QCOMPARE(texts, expected);
}

void TstPlainTexts::filesOfThatFormAreReadAsByATree_data()
{
    QTest::addColumn<QByteArray>("entries");
    QTest::newRow("no entry") << QByteArray();
    QTest::newRow("one entry") << QByteArray("<control key=\"a\">first</control>");
    QTest::newRow("beside one another") << QByteArray(
        "<control key=\"a\">first</control><control key=\"b\">x</control>");
    QTest::newRow("empty lines") << QByteArray("\n\n  <control key=\"a\">first</control>\n \n");
    QTest::newRow("one key twice") << QByteArray("<control key=\"a\">1</control><control key=\"a\">2</control>");
    QTest::newRow("key with points and digits") << QByteArray("<control key=\"8021x_a.B\">first</control>");
    QTest::newRow("blanks around a text") << QByteArray("<control key=\"a\">  first  </control>");
    QTest::newRow("quotation marks") << QByteArray("<control key=\"a\">\"it's\"</control>");
    QTest::newRow("Chinese") << QByteArray("<control key=\"a\">\u5b9a\u5236\uff0c\u7ba1\u7406</control>");
    QTest::newRow("Chinese blank in front") << QByteArray("<control key=\"a\">\u3000\u5b9a</control>");
    QTest::newRow("entities") << QByteArray("<control key=\"a\">&amp;File &lt;%d&gt;</control>");
    QTest::newRow("nothing but an entity") << QByteArray("<control key=\"a\">&amp;</control>");
    QTest::newRow("blanks between entities") << QByteArray("<control key=\"a\"> &amp; &amp;  &lt; </control>");
    QTest::newRow("entity that tells of another") << QByteArray("<control key=\"a\">&amp;lt;</control>");
    QTest::newRow("comments") << QByteArray("<!-- one --><control key=\"a\">x</control>\n<!--\u4e2d-->\n<!---->");
    QTest::newRow("quotation marks within a comment") << QByteArray("<!-- control key='a' \"b\" -->");
}

void TstPlainTexts::filesOfThatFormAreReadAsByATree()
{
    QFETCH(const QByteArray, entries);
    const QByteArray file = s_head + "<language>" + entries + "</language>\n";
    LanguageTexts texts = {{QStringLiteral("a"), QStringLiteral("former")}};
    QVERIFY(readPlainTexts(file, texts));
    LanguageTexts expected;
    QVERIFY(byTree(file, expected));
    QCOMPARE(texts, expected);
}

void TstPlainTexts::otherFilesAreLeftToTheParser_data()
{
    QTest::addColumn<QByteArray>("file");
    const auto within = [](const char* entries) { return s_head + "<language>" + entries + "</language>"; };
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no declaration") << QByteArray("<language><control key=\"a\">x</control></language>");
    QTest::newRow("another encoding") << within("<control key=\"a\">x</control>").replace("UTF-8", "GB18030");
    QTest::newRow("byte order mark") << "\xEF\xBB\xBF" + within("<control key=\"a\">x</control>");
    QTest::newRow("carriage returns") << within("<control key=\"a\">x</control>\n").replace("\n", "\r\n");
    QTest::newRow("document type") << s_head + "<!DOCTYPE language><language></language>";
    QTest::newRow("processing instruction") << within("<control key=\"a\">x</control>") + "<?a b?>";
    QTest::newRow("document element with an attribute") << s_head + "<language a=\"b\"></language>";
    QTest::newRow("document element of a namespace") << s_head + "<a:language></a:language>";
    QTest::newRow("document element without content") << s_head + "<language/>";
    QTest::newRow("document element that ends by another name") << s_head + "<language></languages>";
    QTest::newRow("document element that does not end") << s_head + "<language>\n";
    QTest::newRow("document element that ends by no name") << s_head + "<language></>";
    QTest::newRow("document element whose end is cut off") << s_head + "<language></language";
    QTest::newRow("document element without a name") << s_head + "<></>";
    QTest::newRow("second document element") << within("") + "<language></language>";
    QTest::newRow("text behind the document element") << within("") + "text";
    QTest::newRow("zero byte at the end") << within("") + QByteArray(1, '\0');
    QTest::newRow("zero byte within") << within("<control key=\"a\">x</control>").replace("x", QByteArray("a\0b", 3));
    QTest::newRow("text between entries") << within("text<control key=\"a\">x</control>");
    QTest::newRow("another element") << within("<entry key=\"a\">x</entry>");
    QTest::newRow("another attribute in front") << within("<control id=\"7\" key=\"a\">x</control>");
    QTest::newRow("another attribute behind") << within("<control key=\"a\" id=\"7\">x</control>");
    QTest::newRow("single quotation marks") << within("<control key='a'>x</control>");
    QTest::newRow("no key") << within("<control>x</control>");
    QTest::newRow("empty key") << within("<control key=\"\">x</control>");
    QTest::newRow("key with a blank") << within("<control key=\"a b\">x</control>");
    QTest::newRow("key beyond ASCII") << within("<control key=\"\u6807\u9898\">x</control>");
    QTest::newRow("no text") << within("<control key=\"a\"/>");
    QTest::newRow("empty text") << within("<control key=\"a\"></control>");
    QTest::newRow("text of blanks, which the parser drops") << within("<control key=\"a\">  </control>");
    QTest::newRow("text of a Chinese blank") << within("<control key=\"a\">\u3000</control>");
    QTest::newRow("text of two lines") << within("<control key=\"a\">x\ny</control>");
    QTest::newRow("text with a tab") << within("<control key=\"a\">x\ty</control>");
    QTest::newRow("entity by number") << within("<control key=\"a\">&#38;</control>");
    QTest::newRow("unknown entity") << within("<control key=\"a\">&copy;</control>");
    QTest::newRow("bare ampersand") << within("<control key=\"a\">a & b</control>");
    QTest::newRow("section of characters") << within("<control key=\"a\"><![CDATA[x]]></control>");
    QTest::newRow("end of one in a text") << within("<control key=\"a\">x]]></control>");
    QTest::newRow("element within a text") << within("<control key=\"a\">x<b>y</b></control>");
    QTest::newRow("comment within a text") << within("<control key=\"a\">x<!-- y --></control>");
    QTest::newRow("bytes that are no UTF-8") << within("<control key=\"a\">\xC3\x28</control>");
    QTest::newRow("character cut off") << within("<control key=\"a\">\xE5\xAE</control>");
    QTest::newRow("character with a foreign byte") << within("<control key=\"a\">\xE5<\x80</control>");
    QTest::newRow("comment with two hyphens") << within("<!-- a -- b -->");
    QTest::newRow("comment that ends by three hyphens") << within("<!-- a --->");
    QTest::newRow("comment of one hyphen") << within("<!--->");
    QTest::newRow("comment that does not end") << within("<!-- a ");
    QTest::newRow("comment that ends by two hyphens alone") << within("<!-- a --\n");
    QTest::newRow("entry within a comment") << within("<!-- <control key=\"a\">x</control> -->");
    QTest::newRow("comment of two lines") << within("<!-- a\n b -->");
}

void TstPlainTexts::otherFilesAreLeftToTheParser()
{
    QFETCH(const QByteArray, file);
    const LanguageTexts former = {{QStringLiteral("a"), QStringLiteral("former")}};
    LanguageTexts texts = former;
    QVERIFY(!readPlainTexts(file, texts));
    QCOMPARE(texts, former);
}

// Pieces of such files, and of others, in any order: whatever is taken is read as by a tree.
void TstPlainTexts::changedFilesAreReadAsByATreeOrNotAtAll()
{
    const QByteArrayList pieces = {"<control key=\"",
                                   "b",
                                   "\">",
                                   "</control>",
                                   "&amp;",
                                   "&lt;",
                                   "&gt;",
                                   "&",
                                   " ",
                                   "\n",
                                   "<!--",
                                   "-->",
                                   "-",
                                   "--",
                                   "\u5b9a",
                                   "\u3000",
                                   "\xC2\x85",
                                   "\xEF\xBF\xBE",
                                   "]]>",
                                   "<control>",
                                   "<control/>",
                                   "x",
                                   "\t",
                                   "<b>",
                                   "\xE5"};
    const QByteArray whole = "<!-- a --><control key=\"a\">x</control><control key=\"b\">y &amp; z</control>";
    QRandomGenerator random(7);
    int taken = 0;
    for (int round = 0; round < 60000; ++round) {
        QByteArray entries = whole;
        for (int changes = random.bounded(1, 4); changes > 0; --changes) {
            const int place = random.bounded(entries.size() + 1);
            entries.replace(place, random.bounded(2) * random.bounded(12), pieces.at(random.bounded(pieces.size())));
        }
        const QByteArray file = s_head + "<language>" + entries + "</language>";
        LanguageTexts texts;
        if (!readPlainTexts(file, texts))
            continue;
        ++taken;
        LanguageTexts expected;
        QVERIFY2(byTree(file, expected), file.constData());
        QVERIFY2(texts == expected, file.constData());
    }
    QVERIFY2(taken > 500, qPrintable(QString::number(taken)));
}

TEST_ENTRY(plaintexts, runApplessTest<TstPlainTexts>)

#include "tst_plaintexts.moc"
