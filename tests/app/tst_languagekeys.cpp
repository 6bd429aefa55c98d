#include "app/language/CLanguageParser.h"
#include "common/Version.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QDomDocument>
#include <QSet>
#include <QtTest>

/// The vocabulary of the program stands in three places: the list of its keys, the language files and the literals of
/// the sources. All three must tell the same.
class TstLanguageKeys : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void scannerTellsLiteralsFromTheRest();
    void scannerFindsTheKeysOfCalls_data();
    void scannerFindsTheKeysOfCalls();
    void keysOfCallsAreListed();
    void literalsThatLookLikeKeysAreListed();
    void scannerFindsTheLiteralsThatAreShown_data();
    void scannerFindsTheLiteralsThatAreShown();
    void callsThatShowTextGetNoLiterals();
    void listedKeysAreUsed();

    void listHasEveryKeyOnce();
    void filesHoldExactlyTheListedKeys_data();
    void filesHoldExactlyTheListedKeys();
    void filesAreTablesOfControlsOnly_data();
    void filesAreTablesOfControlsOnly();
    void textsAreThere_data();
    void textsAreThere();
    void textsHaveTheSamePlaceholdersInBothLanguages();
    void entriesOfOneListDiffer_data();
    void entriesOfOneListDiffer();
    void versionHasTheFormOfAProductVersion();
};

namespace {

struct Token
{
    enum Kind
    {
        Name,
        Text,
        Mark
    };
    Kind kind;
    QString text;
};

bool isNameCharacter(QChar character)
{
    return character.isLetterOrNumber() || character == QLatin1Char('_');
}

/// Names, string literals and marks of a C++ source without its comments. Numbers and character literals count as
/// marks; adjacent string literals are joined.
class Scanner
{
public:
    explicit Scanner(const QString& source) : m_source(source) {}

    QVector<Token> tokens()
    {
        while (m_at < m_source.size())
            step();
        return m_tokens;
    }

private:
    bool startsWith(const char* text) const { return m_source.midRef(m_at).startsWith(QLatin1String(text)); }

    void step()
    {
        const QChar next = m_source.at(m_at);
        if (startsWith("//"))
            skipTo(QStringLiteral("\n"));
        else if (startsWith("/*"))
            skipTo(QStringLiteral("*/"));
        else if (startsWith("R\""))
            takeRaw();
        else if (next == QLatin1Char('"'))
            addText(quoted(next));
        else if (next == QLatin1Char('\''))
            takeCharacter();
        else if (isNameCharacter(next))
            takeName();
        else {
            if (!next.isSpace())
                m_tokens.append({Token::Mark, next});
            ++m_at;
        }
    }

    void skipTo(const QString& end)
    {
        const int place = m_source.indexOf(end, m_at);
        m_at = place < 0 ? m_source.size() : place + end.size();
    }

    void takeCharacter()
    {
        quoted(QLatin1Char('\''));
        m_tokens.append({Token::Mark, QStringLiteral("'")});
    }

    void addText(const QString& text)
    {
        if (!m_tokens.isEmpty() && m_tokens.last().kind == Token::Text)
            m_tokens.last().text += text;
        else
            m_tokens.append({Token::Text, text});
    }

    QString quoted(QChar quote)
    {
        QString text;
        for (++m_at; m_at < m_source.size() && m_source.at(m_at) != quote; ++m_at) {
            if (m_source.at(m_at) == QLatin1Char('\\'))
                ++m_at;
            text += m_source.mid(m_at, 1);
        }
        ++m_at;
        return text;
    }

    void takeRaw()
    {
        const int open = m_source.indexOf(QLatin1Char('('), m_at);
        const QString end = QLatin1Char(')') + m_source.mid(m_at + 2, open - m_at - 2) + QLatin1Char('"');
        const int close = m_source.indexOf(end, open);
        addText(m_source.mid(open + 1, close - open - 1));
        m_at = close + end.size();
    }

    void takeName()
    {
        const int begin = m_at;
        // A quote inside a number separates its digits.
        const bool isNumber = m_source.at(begin).isDigit();
        while (m_at < m_source.size() &&
               (isNameCharacter(m_source.at(m_at)) || (isNumber && m_source.at(m_at) == QLatin1Char('\''))))
            ++m_at;
        m_tokens.append({isNumber ? Token::Mark : Token::Name, m_source.mid(begin, m_at - begin)});
    }

    const QString m_source;
    int m_at = 0;
    QVector<Token> m_tokens;
};

bool isMark(const QVector<Token>& tokens, int at, const char* marks)
{
    return at < tokens.size() && tokens.at(at).kind == Token::Mark && QLatin1String(marks).contains(tokens.at(at).text);
}

/// The literals that stand directly among the arguments of the call or construction whose opening bracket is at `open`,
/// not those inside a further call there.
QStringList directTexts(const QVector<Token>& tokens, int open)
{
    QStringList all;
    QVector<bool> isDirect = {true};
    for (int at = open + 1; at < tokens.size() && !isDirect.isEmpty(); ++at) {
        if (isMark(tokens, at, "({["))
            isDirect.append(isDirect.last() && tokens.at(at - 1).kind != Token::Name);
        else if (isMark(tokens, at, ")}]"))
            isDirect.removeLast();
        else if (isDirect.last() && tokens.at(at).kind == Token::Text)
            all.append(tokens.at(at).text);
    }
    return all;
}

/// Calls whose literals are keys.
const QSet<QString>& keyCallees()
{
    static const QSet<QString> callees = {QStringLiteral("langText"),  QStringLiteral("GetKey"),
                                          QStringLiteral("say"),       QStringLiteral("refuse"),
                                          QStringLiteral("tell"),      QStringLiteral("setTitleKey"),
                                          QStringLiteral("refuseAt"),  QStringLiteral("announceRefusal"),
                                          QStringLiteral("WarningBox")};
    return callees;
}

/// The literals with a letter that a call which shows text gets, also by a further call, but for keys.
QStringList shownLiterals(const QVector<Token>& tokens)
{
    static const QRegularExpression shows(
        QStringLiteral("^(set(Text|PlainText|Html|Title|WindowTitle|ToolTip|StatusTip|WhatsThis|PlaceholderText|"
                       "InformativeText|DetailedText|TabText|ItemText|HeaderLabels|HeaderItem|AccessibleName|"
                       "AccessibleDescription|LabelText|ButtonText|Suffix|Prefix|SpecialValueText)|"
                       "addItem|addItems|insertItem|insertItems|addTab|insertTab|addAction|addMenu|addToolBar|"
                       "warning|information|question|critical|about|showMessage)$"));
    static const QRegularExpression letter(QStringLiteral("\\p{L}"));
    QStringList all;
    for (int at = 0; at + 1 < tokens.size(); ++at) {
        if (tokens.at(at).kind != Token::Name || !shows.match(tokens.at(at).text).hasMatch() ||
            !isMark(tokens, at + 1, "("))
            continue;
        QVector<bool> isKey = {false};
        for (int inner = at + 2; inner < tokens.size() && !isKey.isEmpty(); ++inner) {
            if (isMark(tokens, inner, "({["))
                isKey.append(isKey.last() || keyCallees().contains(tokens.at(inner - 1).text));
            else if (isMark(tokens, inner, ")}]"))
                isKey.removeLast();
            else if (tokens.at(inner).kind == Token::Text && !isKey.last() && tokens.at(inner).text.contains(letter))
                all.append(tokens.at(inner).text);
        }
    }
    return all;
}

/// The literals that reach the language table by a call.
QStringList keysOfCalls(const QVector<Token>& tokens)
{
    const QSet<QString>& callees = keyCallees();
    QStringList all;
    for (int at = 0; at < tokens.size(); ++at) {
        if (tokens.at(at).kind != Token::Name || !callees.contains(tokens.at(at).text))
            continue;
        // The name of a variable may stand between its class and the bracket.
        const int open = at + 1 < tokens.size() && tokens.at(at + 1).kind == Token::Name ? at + 2 : at + 1;
        if (isMark(tokens, open, "({"))
            all += directTexts(tokens, open);
    }
    return all;
}

struct Source
{
    QString name;
    QVector<Token> tokens;
};

QVector<Source> s_sources;
QStringList s_listed;

QSet<QString> setOf(const QStringList& list)
{
    return QSet<QString>(list.begin(), list.end());
}

QString languageFile(const QString& language)
{
    return QStringLiteral(ORVEX_SOURCE_DIR "/Resources/Language_%1.xml").arg(language);
}

void addLanguages()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << "en";
    QTest::newRow("Chinese") << "zh";
}

QVector<QDomElement> elementsOf(const QString& language)
{
    QDomDocument document;
    if (!document.setContent(installation::readFile(languageFile(language)), true))
        return {};
    QVector<QDomElement> all;
    for (QDomElement element = document.documentElement().firstChildElement(); !element.isNull();
         element = element.nextSiblingElement())
        all.append(element);
    return all;
}

QString text(const CLanguageParser& table, const QString& key)
{
    return table.GetKey(key.toUtf8().constData());
}

QStringList placeholders(const QString& text)
{
    QStringList all;
    QRegularExpressionMatchIterator matches =
        QRegularExpression(QStringLiteral("%(L?[0-9]+|[sdun])")).globalMatch(text);
    while (matches.hasNext())
        all.append(matches.next().captured());
    all.sort();
    return all;
}

} // namespace

void TstLanguageKeys::initTestCase()
{
    s_listed =
        QString::fromUtf8(installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/tests/data/language_keys.txt")))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    const QStringList rooms = QStringLiteral(ORVEX_ROOMS).split(QLatin1Char(':'));
    QVERIFY(rooms.contains(QStringLiteral("app/mainwindow")));
    for (const QString& room : rooms) {
        const QDir directory(QStringLiteral(ORVEX_SOURCE_DIR "/") + room);
        const QStringList names =
            directory.entryList({QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files, QDir::Name);
        QVERIFY2(!names.isEmpty(), qPrintable(room));
        for (const QString& name : names) {
            const QString content = QString::fromUtf8(installation::readFile(directory.filePath(name)));
            s_sources.append({room + QLatin1Char('/') + name, Scanner(content).tokens()});
        }
    }
}

void TstLanguageKeys::scannerTellsLiteralsFromTheRest()
{
    const QString source =
        QStringLiteral("// \"no\"\n/* \"no\n */ \"a\\\"b\" '\"' \"one\" \"two\" 1'000'000 R\"x(c\"d)x\""
                       " name(\"e\") /* \"no\" */");
    QStringList found;
    for (const Token& token : Scanner(source).tokens()) {
        if (token.kind == Token::Text)
            found.append(token.text);
    }
    QCOMPARE(found, installation::texts({"a\"b", "onetwo", "c\"d", "e"}));
}

void TstLanguageKeys::scannerFindsTheKeysOfCalls_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("keys");
    using installation::texts;
    QTest::newRow("call") << "x = langText(\"a\");" << texts({"a"});
    QTest::newRow("choice") << "tell(result ? \"a\" : (other ? \"b\" : \"c\"));" << texts({"a", "b", "c"});
    QTest::newRow("method") << "table.GetKey(\"a\").arg(\"no\")" << texts({"a"});
    QTest::newRow("variable") << "WarningBox box(\"a\", this); box.say(\"b\");" << texts({"a", "b"});
    QTest::newRow("braces") << "WarningBox box{\"a\"};" << texts({"a"});
    QTest::newRow("temporary") << "return WarningBox(\"a\").refuse(\"b\", child(\"no\"));" << texts({"a", "b"});
    QTest::newRow("bracket in quotes") << "langText(x == '(' ? \"a\" : \"b)\"); y(\"no\");" << texts({"a", "b)"});
    QTest::newRow("title") << "box.setTitleKey(\"a\");" << texts({"a"});
    QTest::newRow("no literal") << "langText(row.key); x(\"no\");" << QStringList();
    QTest::newRow("another name") << "longText(\"no\");" << QStringList();
}

void TstLanguageKeys::scannerFindsTheKeysOfCalls()
{
    QFETCH(const QString, source);
    QFETCH(const QStringList, keys);
    QCOMPARE(keysOfCalls(Scanner(source).tokens()), keys);
}

void TstLanguageKeys::keysOfCallsAreListed()
{
    const QSet<QString> listed = setOf(s_listed);
    int found = 0;
    QStringList unknown;
    for (const Source& source : s_sources) {
        for (const QString& key : keysOfCalls(source.tokens)) {
            ++found;
            if (!listed.contains(key))
                unknown.append(source.name + QLatin1String(": ") + key);
        }
    }
    QCOMPARE(unknown.join(QLatin1Char(' ')), QString());
    QVERIFY2(found > 100, "the scanner no longer sees how the sources ask for their texts");
}

// Most keys stand in tables, where no call names them; nearly all of those bear one of these prefixes.
void TstLanguageKeys::literalsThatLookLikeKeysAreListed()
{
    const QSet<QString> listed = setOf(s_listed);
    const QRegularExpression prefixed(
        QStringLiteral("^(CUS|Cus|SSL|VUI|VUT|CMN|KEF|SMT|SCE|GUI|menu|chk|grp|rad|label)_[A-Za-z0-9_.]+$"));
    QStringList unknown;
    for (const Source& source : s_sources) {
        for (const Token& token : source.tokens) {
            if (token.kind == Token::Text && prefixed.match(token.text).hasMatch() && !listed.contains(token.text))
                unknown.append(source.name + QLatin1String(": ") + token.text);
        }
    }
    QCOMPARE(unknown.join(QLatin1Char(' ')), QString());
}

void TstLanguageKeys::scannerFindsTheLiteralsThatAreShown_data()
{
    QTest::addColumn<QString>("source");
    QTest::addColumn<QStringList>("literals");
    using installation::texts;
    QTest::newRow("direct") << "label->setText(\"a\");" << texts({"a"});
    QTest::newRow("by a further call") << "box.setText(QStringLiteral(\"a %1\").arg(name));" << texts({"a %1"});
    QTest::newRow("beside a key") << "edit->setText(langText(\"no\") + QLatin1String(\"a\"));" << texts({"a"});
    QTest::newRow("message box") << "QMessageBox::warning(this, \"a\", tr(\"b\"));" << texts({"a", "b"});
    QTest::newRow("no letter") << "label->setText(QStringLiteral(\"%1: \"));" << QStringList();
    QTest::newRow("key alone") << "label->setText(langText(x ? \"no\" : \"no\"));" << QStringList();
    QTest::newRow("another call") << "QFile file(\"no\"); setPath(\"no\");" << QStringList();
}

void TstLanguageKeys::scannerFindsTheLiteralsThatAreShown()
{
    QFETCH(const QString, source);
    QFETCH(const QStringList, literals);
    QCOMPARE(shownLiterals(Scanner(source).tokens()), literals);
}

// Message boxes too, which only come where something is wrong.
void TstLanguageKeys::callsThatShowTextGetNoLiterals()
{
    QStringList shown;
    for (const Source& source : s_sources) {
        for (const QString& text : shownLiterals(source.tokens))
            shown.append(source.name + QLatin1String(": ") + text);
    }
    QCOMPARE(shown.join(QLatin1Char('\n')), QString());
}

void TstLanguageKeys::listedKeysAreUsed()
{
    QSet<QString> unused = setOf(s_listed);
    for (const Source& source : s_sources) {
        for (const Token& token : source.tokens) {
            if (token.kind == Token::Text)
                unused.remove(token.text);
        }
    }
    QStringList names = unused.values();
    names.sort();
    QCOMPARE(names.join(QLatin1Char(' ')), QString());
}

void TstLanguageKeys::listHasEveryKeyOnce()
{
    QCOMPARE(s_listed.size(), 364);
    QCOMPARE(setOf(s_listed).size(), 364);
}

void TstLanguageKeys::filesHoldExactlyTheListedKeys_data()
{
    addLanguages();
}

void TstLanguageKeys::filesHoldExactlyTheListedKeys()
{
    QFETCH(const QString, language);
    QStringList keys;
    for (const QDomElement& element : elementsOf(language))
        keys.append(element.attribute(QStringLiteral("key")));
    QStringList twice = keys;
    for (const QString& key : setOf(keys))
        twice.removeOne(key);
    QCOMPARE(twice.join(QLatin1Char(' ')), QString());
    QStringList missing = (setOf(s_listed) - setOf(keys)).values();
    missing.sort();
    QCOMPARE(missing.join(QLatin1Char(' ')), QString());
    QStringList unknown = (setOf(keys) - setOf(s_listed)).values();
    unknown.sort();
    QCOMPARE(unknown.join(QLatin1Char(' ')), QString());
}

void TstLanguageKeys::filesAreTablesOfControlsOnly_data()
{
    addLanguages();
}

void TstLanguageKeys::filesAreTablesOfControlsOnly()
{
    QFETCH(const QString, language);
    for (const QDomElement& element : elementsOf(language)) {
        QCOMPARE(element.tagName(), QStringLiteral("control"));
        QVERIFY2(element.firstChildElement().isNull(), qPrintable(element.attribute(QStringLiteral("key"))));
    }
}

void TstLanguageKeys::textsAreThere_data()
{
    addLanguages();
}

void TstLanguageKeys::textsAreThere()
{
    QFETCH(const QString, language);
    CLanguageParser table;
    table.LoadLanguage(languageFile(language));
    QStringList missing;
    for (const QString& key : s_listed) {
        const QString shown = text(table, key);
        if (shown.trimmed().isEmpty() || shown == QLatin1String("NULL"))
            missing.append(key);
    }
    QCOMPARE(missing.join(QLatin1Char(' ')), QString());
}

void TstLanguageKeys::textsHaveTheSamePlaceholdersInBothLanguages()
{
    CLanguageParser english;
    CLanguageParser chinese;
    english.LoadLanguage(languageFile(QStringLiteral("en")));
    chinese.LoadLanguage(languageFile(QStringLiteral("zh")));
    for (const QString& key : s_listed)
        QVERIFY2(placeholders(text(english, key)) == placeholders(text(chinese, key)), qPrintable(key));
}

void TstLanguageKeys::entriesOfOneListDiffer_data()
{
    addLanguages();
}

// Windows find the chosen entry of a list by its shown text, and tell the default one by a text behind its name.
void TstLanguageKeys::entriesOfOneListDiffer()
{
    QFETCH(const QString, language);
    CLanguageParser table;
    table.LoadLanguage(languageFile(language));
    for (const auto& keys : {installation::texts({"SSL_CodeAuth", "SSL_CodeCertAuth", "SSL_CertAuth"}),
                             installation::texts({"SSL_LocalType", "SSL_ADAuthType", "SSL_RadiusType", "SSL_LDAPType"}),
                             installation::texts({"VUI_BASEComboMethod1", "VUI_BASEComboMethod2"})}) {
        QSet<QString> different;
        for (const QString& key : keys)
            different.insert(text(table, key));
        QVERIFY2(different.size() == keys.size(), qPrintable(keys.join(QLatin1Char(' '))));
    }
    QVERIFY(!table.GetKey("SSL_DEFAULTNAME").isEmpty());
    QVERIFY(table.GetKey("SSL_DEFAULTNAME") != QLatin1String("NULL"));
    QVERIFY(!table.GetKey("CUS_Default").isEmpty());
    QVERIFY(table.GetKey("CUS_Default") != QLatin1String("NULL"));
}

// Positions 1 to 3 hold the release, 6 to 9 the build, the last one the class; the program takes 11 and 15 bytes.
void TstLanguageKeys::versionHasTheFormOfAProductVersion()
{
    CLanguageParser english;
    english.LoadLanguage(languageFile(QStringLiteral("en")));
    const QString version = english.GetKey("version");
    const QString internal = english.GetKey("internalVersion");
    const QRegularExpression form(QStringLiteral("^.[0-9]\\.[0-9]..[0-9]{4}[A-Z]$"));
    QVERIFY2(form.match(version).hasMatch(), qPrintable(version));

    utl_SetVersionStrings(version.toLocal8Bit(), internal.toLocal8Bit());
    QCOMPARE(QString::fromLocal8Bit(utl_GetVersion()), version);
    QCOMPARE(QString::fromLocal8Bit(utl_OrvexInterVerDisplay()), internal);
    const QString display =
        QStringLiteral("Orvex PC %1 (%2%3)").arg(version.mid(1, 3), version.right(1), version.mid(6, 4));
    QCOMPARE(QString::fromLocal8Bit(utl_OrvexVerDisplay()), display);
}

TEST_ENTRY(languagekeys, runApplessTest<TstLanguageKeys>)

#include "tst_languagekeys.moc"
