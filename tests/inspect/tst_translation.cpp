#include "inspect/Command.h"
#include "inspect/Report.h"
#include "inspect/Translation.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/// The words of orvex-inspect in Chinese.
class TstTranslation : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void textsAreEnglishAtFirst();
    void everyTextOfTheSourcesIsTranslated();
    void everyTranslationIsOfATextOfTheSources();
    void translationsKeepPlaceholdersAndLineEnds();
    void eachTextStandsOnce();
    void textsAreChineseWhenAsked();

private:
    QString m_sources; // without Translation.cpp, adjacent literals joined
};

namespace {

QStringList capturedIn(const QString& text, const char* expression)
{
    QStringList all;
    QRegularExpressionMatchIterator matches =
        QRegularExpression(QLatin1String(expression), QRegularExpression::MultilineOption).globalMatch(text);
    while (matches.hasNext())
        all.append(matches.next().captured(1));
    return all;
}

QString unescaped(QString literal)
{
    return literal.replace(QLatin1String("\\n"), QLatin1String("\n"))
        .replace(QLatin1String("\\\""), QLatin1String("\""));
}

QStringList placeholders(const char* text)
{
    QStringList all = capturedIn(QString::fromUtf8(text), "(%[0-9])");
    all.sort();
    return all;
}

} // namespace

void TstTranslation::initTestCase()
{
    const QDir directory(QStringLiteral(ORVEX_SOURCE_DIR "/inspect"));
    const QStringList names = directory.entryList({QStringLiteral("*.cpp")});
    QVERIFY(names.size() > 20);
    for (const QString& name : names) {
        if (name != QLatin1String("Translation.cpp"))
            m_sources += QString::fromUtf8(installation::readFile(directory.filePath(name)));
    }
    m_sources.remove(QRegularExpression(QStringLiteral("\"\\s*\\n\\s*\"")));
}

void TstTranslation::textsAreEnglishAtFirst()
{
    QCOMPARE(translated("Entry"), QStringLiteral("Entry"));
    QCOMPARE(translated("no text of the program"), QStringLiteral("no text of the program"));
}

void TstTranslation::everyTextOfTheSourcesIsTranslated()
{
    QSet<QString> known;
    for (const Translation& one : translations())
        known.insert(QString::fromUtf8(one.english));
    QStringList asked = capturedIn(m_sources, R"re((?:translated|spoken)\(\s*"((?:[^"\\]|\\.)*)")re");
    const int direct = asked.size();
    // Those that stand in tables.
    for (const Command& command : commands())
        asked.append(QString::fromUtf8(command.purpose));
    asked += capturedIn(m_sources, R"re(add(?:Flag|Value)\(parser, [^;]*, "((?:[^"\\]|\\.)*)"\);)re");
    asked += capturedIn(m_sources, R"re(^const char \w+\[\] = "((?:[^"\\*]|\\.)*)";)re"); // of reports
    asked += capturedIn(m_sources, R"re(^    \{"[a-z-]+", +"([a-z][^"]* [^"]*)"\},)re");  // of codes
    asked +=
        capturedIn(m_sources, R"re(^(?:    \{|const Known \w+ = \{)"[^"]*",[^"]*"[a-z-]+",\s*"([A-Z%][^"]*)"\})re");
    asked += capturedIn(m_sources, R"re(return (?:fail|[\w. :=|]+ fail)\("([^"]*)"\))re"); // of archives
    asked += capturedIn(m_sources, R"re(complainOf\([\w.()]+, "([^"]*)"\))re");            // of permissions
    QVERIFY2(direct > 120, qPrintable(QString::number(direct)));
    QVERIFY2(asked.size() > direct + 60, qPrintable(QString::number(asked.size())));
    QStringList missing;
    for (const QString& text : qAsConst(asked)) {
        if (!known.contains(unescaped(text)))
            missing.append(text);
    }
    QCOMPARE(missing.join(QLatin1Char('\n')), QString());
}

void TstTranslation::everyTranslationIsOfATextOfTheSources()
{
    QStringList unused;
    for (const Translation& one : translations()) {
        QString literal = QString::fromUtf8(one.english);
        literal.replace(QLatin1Char('\n'), QLatin1String("\\n")).replace(QLatin1Char('"'), QLatin1String("\\\""));
        if (!m_sources.contains(QLatin1Char('"') + literal + QLatin1Char('"')))
            unused.append(literal);
    }
    QCOMPARE(unused.join(QLatin1Char('\n')), QString());
}

void TstTranslation::translationsKeepPlaceholdersAndLineEnds()
{
    static const QRegularExpression chinese(QStringLiteral("\\p{Han}"));
    for (const Translation& one : translations()) {
        QVERIFY2(placeholders(one.english) == placeholders(one.chinese), one.english);
        QVERIFY2(QByteArray(one.english).count('\n') == QByteArray(one.chinese).count('\n'), one.english);
        QVERIFY2(QString::fromUtf8(one.chinese).contains(chinese), one.english);
    }
}

void TstTranslation::eachTextStandsOnce()
{
    QSet<QByteArray> seen;
    for (const Translation& one : translations()) {
        QVERIFY2(!seen.contains(one.english), one.english);
        seen.insert(one.english);
    }
}

void TstTranslation::textsAreChineseWhenAsked()
{
    translateToChinese();
    QCOMPARE(translated("Entry"), QStringLiteral("条目"));
    QCOMPARE(translated(reportwords::verified), QStringLiteral("校验通过"));
    QCOMPARE(translated("no text of the program"), QStringLiteral("no text of the program"));
}

TEST_ENTRY(translation, runApplessTest<TstTranslation>)

#include "tst_translation.moc"
