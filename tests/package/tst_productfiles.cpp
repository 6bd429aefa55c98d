#include "package/ProductBuild.h"
#include "support/TestEntry.h"

#include <QtTest>

using product::found;
using product::madeFile;
using product::Outcome;
using product::textOf;
using product::version;

static const QString sourceDir = QStringLiteral(ORVEX_SOURCE_DIR "/");
static const QString desktopEntry = sourceDir + QStringLiteral("packaging/com.manager.orvex.amd.desktop");

class TstProductFiles : public QObject
{
    Q_OBJECT

private slots:
    void theDesktopEntryIsValid();
    void theDesktopEntryBearsTheTitleOfTheWindow();
    void theMetadataAreValid();
    void theManualPagesAreSound_data();
    void theManualPagesAreSound();
    void theVersionIsTheSameEverywhere_data();
    void theVersionIsTheSameEverywhere();
    void theChangelogsHaveTheSameReleases();
    void theScriptsAreThoseOfAPlainShell_data();
    void theScriptsAreThoseOfAPlainShell();
};

void TstProductFiles::theDesktopEntryIsValid()
{
    const Outcome outcome = product::run(QStringLiteral("desktop-file-validate"), {desktopEntry});
    QCOMPARE(outcome.output + outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
}

void TstProductFiles::theDesktopEntryBearsTheTitleOfTheWindow()
{
    const QString entry = textOf(desktopEntry);
    const auto title = [](const char* file) {
        return found(textOf(sourceDir + QLatin1String("Resources/") + QLatin1String(file)),
                     QStringLiteral("key=\"manager_title\">([^<]*)<"));
    };
    QVERIFY(!title("Language_en.xml").isEmpty());
    QCOMPARE(found(entry, QStringLiteral("^Name=(.*)$")), title("Language_en.xml"));
    QCOMPARE(found(entry, QStringLiteral("^Name\\[zh_CN\\]=(.*)$")), title("Language_zh.xml"));
}

void TstProductFiles::theMetadataAreValid()
{
    const Outcome outcome =
        product::run(QStringLiteral("appstreamcli"), {QStringLiteral("validate"), QStringLiteral("--no-net"),
                                                      madeFile(QStringLiteral("com.manager.orvex.amd.metainfo.xml"))});
    QVERIFY2(outcome.status == 0, qPrintable(outcome.output + outcome.errors));
}

void TstProductFiles::theManualPagesAreSound_data()
{
    QTest::addColumn<QString>("page");
    QTest::newRow("orvex-inspect") << QStringLiteral("orvex-inspect");
    QTest::newRow("orvex-manager") << QStringLiteral("orvex-manager");
}

void TstProductFiles::theManualPagesAreSound()
{
    QFETCH(QString, page);
    const QString file = madeFile(page + QLatin1String(".1"));
    const Outcome outcome = product::run(QStringLiteral("man"),
                                         {QStringLiteral("--warnings"), QStringLiteral("-E"), QStringLiteral("UTF-8"),
                                          QStringLiteral("-l"), QStringLiteral("-Tutf8"), file});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.output.contains(page));
    QVERIFY2(!textOf(file).contains(QLatin1Char('@')), "a word of the build was not filled in");
}

void TstProductFiles::theVersionIsTheSameEverywhere_data()
{
    QTest::addColumn<QString>("told");
    QTest::addColumn<QString>("pattern");
    const auto row = [](const char* name, const QString& text, const char* pattern) {
        QTest::newRow(name) << text << QString::fromLatin1(pattern);
    };
    row("changelog", textOf(sourceDir + QStringLiteral("CHANGELOG.md")), "^## \\[([0-9.]+)\\] - ");
    row("changelog in Chinese", textOf(sourceDir + QStringLiteral("CHANGELOG.zh.md")), "^## \\[([0-9.]+)\\] - ");
    row("changelog of the package", textOf(madeFile(QStringLiteral("debian/changelog"))), "^orvex-manager \\((.*)\\) ");
    row("metadata", textOf(madeFile(QStringLiteral("com.manager.orvex.amd.metainfo.xml"))),
        "<release version=\"(.*?)\"");
    row("manual page of orvex-inspect", textOf(madeFile(QStringLiteral("orvex-inspect.1"))),
        "^\\.TH .* \"orvex-inspect ([^\"]*)\"");
    row("manual page of orvex-manager", textOf(madeFile(QStringLiteral("orvex-manager.1"))),
        "^\\.TH .* \"orvex-manager ([^\"]*)\"");
    for (const char* name :
         {"README.md", "README.zh.md", "docs/release-notes-1.0.md", "docs/release-notes-1.0.zh.md"}) {
        row(name, textOf(sourceDir + QLatin1String(name)), "orvex-manager_([0-9.]+)_amd64\\.deb");
        QTest::newRow((QByteArray(name) + ", archive").constData())
            << textOf(sourceDir + QLatin1String(name)) << QStringLiteral("orvex-manager-([0-9.]+)-x86_64\\.tar\\.gz");
    }
    row("orvex-inspect", product::run(QStringLiteral(ORVEX_INSPECT), {QStringLiteral("--version")}).output,
        "^orvex-inspect (.*)$");
    row("orvex-manager", product::run(madeFile(QStringLiteral("orvex-manager")), {QStringLiteral("--version")}).output,
        "^orvex-manager (.*)$");
}

void TstProductFiles::theVersionIsTheSameEverywhere()
{
    QFETCH(QString, told);
    QFETCH(QString, pattern);
    QVERIFY(!version().isEmpty());
    QCOMPARE(found(told, pattern), version());
}

void TstProductFiles::theChangelogsHaveTheSameReleases()
{
    const auto releases = [](const char* file) {
        return textOf(sourceDir + QLatin1String(file))
            .split(QLatin1Char('\n'))
            .filter(QRegularExpression(QStringLiteral("^## ")));
    };
    const QStringList english = releases("CHANGELOG.md");
    QVERIFY(!english.isEmpty());
    QCOMPARE(releases("CHANGELOG.zh.md"), english);
    QCOMPARE(found(textOf(madeFile(QStringLiteral("com.manager.orvex.amd.metainfo.xml"))),
                   QStringLiteral("<release [^>]*date=\"(.*?)\"")),
             english.first().section(QLatin1String(" - "), 1));
}

void TstProductFiles::theScriptsAreThoseOfAPlainShell_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"orvex-manager", "debian/orvex-inspect", "debian/orvex-manager", "debian/postinst",
                             "debian/postrm", "debian/prerm"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TstProductFiles::theScriptsAreThoseOfAPlainShell()
{
    QFETCH(QString, name);
    const QString script = madeFile(name);
    QVERIFY(textOf(script).startsWith(QLatin1String("#!/bin/sh\n")));
    QVERIFY2(!QRegularExpression(QStringLiteral("@[A-Z_]+@")).match(textOf(script)).hasMatch(),
             "a word of the build was not filled in");
    const Outcome outcome = product::run(QStringLiteral("dash"), {QStringLiteral("-n"), script});
    QCOMPARE(outcome.errors, QString());
    QCOMPARE(outcome.status, 0);
}

TEST_ENTRY(productfiles, runGuilessTest<TstProductFiles>)
#include "tst_productfiles.moc"
