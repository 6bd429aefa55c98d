#include "app/language/CLanguageParser.h"
#include "app/language/LangText.h"
#include "inspect/Html.h"
#include "inspect/InspectSupport.h"
#include "inspect/Markdown.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/Catalogue.h"

#include <QCryptographicHash>
#include <QDomDocument>
#include <QTextBlock>
#include <QTextDocument>
#include <QTextFragment>
#include <QTextTable>
#include <QtTest>

namespace {

const QByteArray png = QByteArray::fromHex("89504e470d0a1a0a0001020304");
const ReportStyle style = {QStringLiteral("Orvex PC 7.2 (E0408)"), QStringLiteral("en"), false};

/// What a page or a Markdown text must not obey.
QString hostile()
{
    return QStringLiteral("<script>alert('1')</script> \"q\" & |a| `b` *c* _d_ [e](http://x.y/) <b>f</b> www.g.h i@j.k "
                          "\\ # ![l](m) ") +
           QChar(0x1B) + QStringLiteral("[31m") + QChar(0x202E) + QChar(0x07) + QChar(0x85) + QChar(0xD800) +
           QChar(0xFFFE) + QStringLiteral(" 客户端");
}

QString hostileAsShown()
{
    return QStringLiteral("<script>alert('1')</script> \"q\" & |a| `b` *c* _d_ [e](http://x.y/) <b>f</b> www.g.h i@j.k "
                          "\\ # ![l](m) \\u001b[31m\\u202e\\u0007\\u0085\\ud800");
}

PackageIcon iconOfBytes(const QByteArray& bytes)
{
    return {FileBytes::Read, QCryptographicHash::hash(bytes, QCryptographicHash::Sha256), bytes};
}

Source sourceOf(const CustomInfo& record)
{
    Source source;
    source.text = QStringLiteral("latest");
    source.record = record;
    source.icons = {iconOfBytes(png), iconOfBytes("icns bytes"), iconOfBytes(QByteArray("\0\0\1\0ico", 7))};
    return source;
}

QDomDocument parsed(const QByteArray& page)
{
    QDomDocument document;
    QString error;
    int line = 0;
    if (!document.setContent(page, false, &error, &line))
        qWarning("line %d: %s", line, qPrintable(error));
    return document;
}

QStringList textsOf(const QDomDocument& document, const char* element)
{
    QStringList texts;
    const QDomNodeList found = document.elementsByTagName(QLatin1String(element));
    for (int i = 0; i < found.size(); ++i)
        texts.append(found.at(i).toElement().text());
    return texts;
}

/// All elements and attributes must be among those that show something.
QStringList foreignMarkup(const QDomElement& element)
{
    static const QStringList elements =
        QStringLiteral("html head meta title style body h1 h2 p table thead tbody tr th td span img")
            .split(QLatin1Char(' '));
    static const QStringList attributes =
        QStringLiteral("lang charset http-equiv content name class alt src").split(QLatin1Char(' '));
    QStringList found;
    if (!elements.contains(element.tagName()))
        found.append(element.tagName());
    const QDomNamedNodeMap map = element.attributes();
    for (int i = 0; i < map.size(); ++i) {
        const QDomAttr attribute = map.item(i).toAttr();
        if (!attributes.contains(attribute.name()))
            found.append(attribute.name());
        if (attribute.name() == QLatin1String("src") && !attribute.value().startsWith(QLatin1String("data:image/")))
            found.append(attribute.value());
    }
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        found += foreignMarkup(child);
    return found;
}

/// Bytes that no text file should hold.
bool hasControls(const QByteArray& text)
{
    return std::any_of(text.begin(), text.end(), [](char byte) { return uchar(byte) < 0x20 && byte != '\n'; }) ||
           QString::fromUtf8(text).contains(QChar(0x202E)) || QString::fromUtf8(text).contains(QChar(0x85));
}

/// A record whose every text is hostile.
CustomInfo hostileRecord()
{
    CustomInfo record = distinctRecord();
    for (const Field& field : catalogue::fields()) {
        for (int row = 0; field.type == Field::Text && row < (field.list ? field.list->size(record) : 1); ++row)
            field.setValue(record, row, hostile());
    }
    return record;
}

} // namespace

class TstReport : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pageIsWellFormedAndComplete();
    void pageShowsOnlySectionsWithEffect();
    void pageShowsIconsThatBrowsersShow();
    void missingIconIsTold();
    void unverifiedSourceIsTold();
    void secretsAreMasked();
    void languageIsNamedAndUsed();
    void pageAdaptsToDarknessAndPaper();
    void hostileTextsStayTexts();
    void sameInputGivesSameBytes();
    void comparisonHasBothSides();
    void comparisonOfEqualsSaysSo();
    void hostileComparisonStaysText();
    void markdownHasTheTablesOfThePage();
    void hostileTextsAreNoMarkdown();

private:
    CLanguageParser m_table;
};

void TstReport::init()
{
    m_table.LoadLanguage(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/Language_en.xml"));
    setLanguageTable(&m_table);
}

void TstReport::cleanup()
{
    setLanguageTable(nullptr);
}

void TstReport::pageIsWellFormedAndComplete()
{
    const CustomInfo record = distinctRecord();
    const QByteArray bytes = reportPage(sourceOf(record), style);
    QVERIFY(bytes.startsWith("<!DOCTYPE html>\n<html "));
    const QDomDocument page = parsed(bytes);
    QCOMPARE(page.documentElement().tagName(), QStringLiteral("html"));
    QCOMPARE(foreignMarkup(page.documentElement()), QStringList());

    const QStringList cells = textsOf(page, "td");
    QCOMPARE(cells.mid(0, 6), QStringList({record.common.cusTimeString,
                                           QStringLiteral("802.1X, Portal, L2TP IPsec VPN, SSLVPN, WLAN, "
                                                          "ZOADirect, ZOA, KEF"),
                                           record.common.cusAddInfo, style.clientVersion, QStringLiteral("latest"),
                                           QStringLiteral("verified")}));
    // Each field once, by its path, and each row of a list.
    QStringList paths;
    const QDomNodeList spans = page.elementsByTagName(QStringLiteral("span"));
    for (int i = 0; i < spans.size(); ++i) {
        if (spans.at(i).toElement().attribute(QStringLiteral("class")) == QLatin1String("path"))
            paths.append(spans.at(i).toElement().text());
    }
    QStringList expected;
    for (const Field& field : catalogue::fields()) {
        if (!field.list)
            expected.append(field.path());
        for (int row = 0; field.list && row < field.list->size(record); ++row)
            QVERIFY2(cells.contains(field.value(record, row)), qPrintable(field.path(row)));
    }
    QCOMPARE(paths, expected);
    QVERIFY(cells.contains(record.vpn.ikecfg.IKELocalName));
    QVERIFY(cells.contains(QString::number(record.vpn.ikecfg.IKEPort)));
}

void TstReport::pageShowsOnlySectionsWithEffect()
{
    CustomInfo record = distinctRecord();
    record.common.procomVal = 2;
    record.common.funcomVal = 0;
    const QDomDocument page = parsed(reportPage(sourceOf(record), style));
    QCOMPARE(textsOf(page, "h2"), QStringList({langText("CusClient"), langText("func_title"), langText("portal_title"),
                                               langText("Gui_title")}));
}

void TstReport::pageShowsIconsThatBrowsersShow()
{
    const Source source = sourceOf(distinctRecord());
    const QDomDocument page = parsed(reportPage(source, style));
    QStringList sources;
    const QDomNodeList images = page.elementsByTagName(QStringLiteral("img"));
    for (int i = 0; i < images.size(); ++i)
        sources.append(images.at(i).toElement().attribute(QStringLiteral("src")));
    QCOMPARE(sources, QStringList({QLatin1String("data:image/png;base64,") + QString::fromLatin1(png.toBase64()),
                                   QStringLiteral("data:image/x-icon;base64,AAABAGljbw==")}));
    const QString sum = QString::fromLatin1(QCryptographicHash::hash("icns bytes", QCryptographicHash::Sha256).toHex());
    QVERIFY(textsOf(page, "span").contains(QLatin1String("DeskIconMacos.icns, 10 bytes, SHA-256 ") + sum));
}

void TstReport::missingIconIsTold()
{
    Source source = sourceOf(distinctRecord());
    source.icons[0] = PackageIcon();
    const QDomDocument page = parsed(reportPage(source, style));
    QCOMPARE(page.elementsByTagName(QStringLiteral("img")).size(), 1);
    QVERIFY(textsOf(page, "span").contains(QStringLiteral("DeskIconLinux.png: missing")));
}

void TstReport::unverifiedSourceIsTold()
{
    Source source = sourceOf(distinctRecord());
    source.reason = Reason::Digest;
    QCOMPARE(textsOf(parsed(reportPage(source, style)), "td").at(5), QStringLiteral("NOT VERIFIED: digest"));
    QVERIFY(reportMarkdown(source, style).contains("| NOT VERIFIED: digest |"));
}

void TstReport::secretsAreMasked()
{
    const CustomInfo record = distinctRecord();
    const QStringList secrets = {record.function.uninstallPassword, record.vpn.basecfg.preSharedKey,
                                 record.vpn.l2tpcfg.L2TPTunnelPwd};
    ReportStyle open = style;
    open.withSecrets = true;
    const QStringList hidden = textsOf(parsed(reportPage(sourceOf(record), style)), "td");
    const QStringList shown = textsOf(parsed(reportPage(sourceOf(record), open)), "td");
    for (const QString& secret : secrets) {
        QVERIFY(!secret.isEmpty());
        QVERIFY(!hidden.contains(secret));
        QVERIFY(shown.contains(secret));
    }
    QCOMPARE(hidden.count(QStringLiteral("******")), 3);
}

void TstReport::languageIsNamedAndUsed()
{
    const auto languageOf = [](const QByteArray& page) {
        return parsed(page).documentElement().attribute(QStringLiteral("lang"));
    };
    QCOMPARE(languageOf(reportPage(sourceOf(CustomInfo()), style)), QStringLiteral("en"));
    CLanguageParser chinese;
    chinese.LoadLanguage(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/Language_zh.xml"));
    setLanguageTable(&chinese);
    const QByteArray page = reportPage(sourceOf(CustomInfo()), {QString(), QStringLiteral("zh"), false});
    QCOMPARE(languageOf(page), QStringLiteral("zh-CN"));
    const QString title = chinese.GetKey("portal_title");
    QVERIFY(textsOf(parsed(page), "h2").contains(title));
    QVERIFY(textsOf(parsed(page), "th").contains(chinese.GetKey("CusTime")));
    const Source source = sourceOf(CustomInfo());
    QCOMPARE(languageOf(comparisonPage(source, source, {}, {QString(), QStringLiteral("zh"), false})),
             QStringLiteral("zh-CN"));
}

void TstReport::pageAdaptsToDarknessAndPaper()
{
    const QString css = textsOf(parsed(reportPage(sourceOf(CustomInfo()), style)), "style").join(QString());
    QVERIFY(css.contains(QLatin1String("@media (prefers-color-scheme: dark)")));
    QVERIFY(css.contains(QLatin1String("@media print")));
    QVERIFY(!css.contains(QLatin1String("url(")));
    QVERIFY(!css.contains(QLatin1String("@import")));
    // An HTML reader does not know entities here.
    for (const char* character : {"<", ">", "&", "\"", "'"})
        QVERIFY2(!css.contains(QLatin1String(character)), character);
}

void TstReport::hostileTextsStayTexts()
{
    Source source = sourceOf(hostileRecord());
    source.text = hostile();
    ReportStyle open = style;
    open.clientVersion = hostile();
    open.withSecrets = true;
    const QByteArray bytes = reportPage(source, open);
    QVERIFY(!hasControls(bytes));
    QVERIFY(!bytes.contains("<script"));
    const QDomDocument page = parsed(bytes);
    QCOMPARE(foreignMarkup(page.documentElement()), QStringList());
    const QStringList cells = textsOf(page, "td");
    const int found = int(std::count_if(cells.begin(), cells.end(), [](const QString& cell) {
        return cell == hostileAsShown() + QStringLiteral("\\ufffe 客户端");
    }));
    QVERIFY2(found > 40, qPrintable(QString::number(found)));
}

void TstReport::sameInputGivesSameBytes()
{
    const Source source = sourceOf(distinctRecord());
    QCOMPARE(reportPage(source, style), reportPage(source, style));
    QCOMPARE(reportMarkdown(source, style), reportMarkdown(source, style));
}

void TstReport::comparisonHasBothSides()
{
    const CustomInfo record = distinctRecord();
    CustomInfo other = record;
    other.x1.reauthTimes = 2;
    other.vpn.ikecfg.IKEPort = 4500;
    other.vpnRoutes.removeLast();
    other.vpn.basecfg.preSharedKey = QStringLiteral("another key");
    const Source a = sourceOf(record);
    Source b = sourceOf(other);
    b.text = QStringLiteral("b.tar.gz");
    b.reason = Reason::Digest;
    b.icons[0] = iconOfBytes("other png");
    const QVector<Difference> differences = compare(a, b, false, false);
    const QByteArray bytes = comparisonPage(a, b, differences, style);
    const QDomDocument page = parsed(bytes);
    QCOMPARE(foreignMarkup(page.documentElement()), QStringList());
    QCOMPARE(textsOf(page, "h2"), QStringList({langText("8021x_title"), langText("Gui_title"),
                                               langText("IpsecVpn_title"), langText("VUI_RouteSetting")}));
    const QStringList cells = textsOf(page, "td");
    QCOMPARE(cells.mid(8, 4), QStringList({QStringLiteral("latest"), QStringLiteral("b.tar.gz"),
                                           QStringLiteral("verified"), QStringLiteral("NOT VERIFIED: digest")}));
    QCOMPARE(cells.size(), 12 + 2 * differences.size());
    QVERIFY(cells.contains(QStringLiteral("4500")));
    QVERIFY(cells.contains(QStringLiteral("none")));
    QVERIFY(!bytes.contains("another key"));
    QCOMPARE(page.elementsByTagName(QStringLiteral("img")).size(), 2);
}

void TstReport::comparisonOfEqualsSaysSo()
{
    const Source source = sourceOf(distinctRecord());
    const QDomDocument page = parsed(comparisonPage(source, source, {}, style));
    QCOMPARE(textsOf(page, "p"), QStringList(QStringLiteral("There is no difference.")));
}

void TstReport::hostileComparisonStaysText()
{
    const Source a = sourceOf(distinctRecord());
    const Source b = sourceOf(hostileRecord());
    const QByteArray bytes = comparisonPage(a, b, compare(a, b, true, true), style);
    QVERIFY(!hasControls(bytes));
    QCOMPARE(foreignMarkup(parsed(bytes).documentElement()), QStringList());
    const QByteArray markdown = reportMarkdown(b, style);
    QVERIFY(!hasControls(markdown));
}

void TstReport::markdownHasTheTablesOfThePage()
{
    const CustomInfo record = distinctRecord();
    const QByteArray text = reportMarkdown(sourceOf(record), style);
    QTextDocument document;
    document.setMarkdown(QString::fromUtf8(text), QTextDocument::MarkdownDialectGitHub);
    QStringList headings;
    int tables = 0;
    for (QTextFrame* frame : document.rootFrame()->childFrames())
        tables += qobject_cast<QTextTable*>(frame) ? 1 : 0;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        if (block.blockFormat().headingLevel() == 2)
            headings.append(block.text());
    }
    const QDomDocument page = parsed(reportPage(sourceOf(record), style));
    QCOMPARE(headings, textsOf(page, "h2"));
    QCOMPARE(tables, page.elementsByTagName(QStringLiteral("table")).size());
    QVERIFY(document.toPlainText().contains(record.vpn.ikecfg.IKELocalName));
}

void TstReport::hostileTextsAreNoMarkdown()
{
    CustomInfo record = distinctRecord();
    record.common.cusAddInfo = hostile().remove(QChar(0xFFFE));
    record.sslvpn.remote[0].iPDes = hostile().remove(QChar(0xFFFE));
    const QByteArray text = reportMarkdown(sourceOf(record), style);
    QTextDocument document;
    document.setMarkdown(QString::fromUtf8(text), QTextDocument::MarkdownDialectGitHub);
    const QString plain = document.toPlainText();
    QCOMPARE(plain.count(hostileAsShown() + QStringLiteral(" 客户端")), 3); // head, section "common", gateway
    QStringList formatted;
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (QTextBlock::iterator at = block.begin(); !at.atEnd(); ++at) {
            const QTextCharFormat format = at.fragment().charFormat();
            if (format.isAnchor() || format.isImageFormat() || format.fontItalic() || format.fontFixedPitch() ||
                format.fontStrikeOut())
                formatted.append(at.fragment().text());
        }
    }
    QCOMPARE(formatted, QStringList());
}

TEST_ENTRY(report, runWindowTest<TstReport>)
#include "tst_report.moc"
