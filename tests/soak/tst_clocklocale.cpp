#include "common/CustomInfoVerify.h"
#include "mainwindow/CommitPlay.h"
#include "mainwindow/PlayedProgram.h"
#include "pack/WorkThread.h"
#include "soak/Soak.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfoLoad.h"

#include <QComboBox>
#include <QDir>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <ctime>
#include <memory>
#include <random>

// Commits at odd moments, in zones that change, and whole programs in other locales than that of the tests.

class TstClockLocale : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void noStampHarmsAnEarlierCustomisation();
    void theHourThatComesTwiceKeepsBothCustomisations();
    void aChangeOfZoneDuringTheRunShowsInTheNextTimeAlone();
    void everyLocaleCommitsAndFindsAgain_data();
    void everyLocaleCommitsAndFindsAgain();
};

namespace {

using windowplay::click;

QString remark()
{
    return QStringLiteral("北京分部 é");
}

void useZone(const char* zone)
{
    qputenv("TZ", zone);
    tzset();
}

std::unique_ptr<OrvexManager> startAnew()
{
    auto window = std::make_unique<OrvexManager>(nullptr);
    window->show();
    return window;
}

bool isVerified(const QString& directory)
{
    return customInfoDigestHolds(installation::readFile(directory + QLatin1String("/OrvexCustom.xml")),
                                 installation::readFile(directory + QLatin1String("/OrvexCustomXml.vrf")));
}

/// Generates zh_CN.<charset> below the directory, but for its collation, which would take most of the time.
void makeLocale(const QString& directory, const QString& charset)
{
    QByteArray source = "comment_char %\nescape_char /\n";
    for (const char* category :
         {"LC_CTYPE", "LC_COLLATE", "LC_MONETARY", "LC_NUMERIC", "LC_TIME", "LC_MESSAGES", "LC_PAPER", "LC_NAME",
          "LC_ADDRESS", "LC_TELEPHONE", "LC_MEASUREMENT", "LC_IDENTIFICATION"}) {
        const QByteArray name = category;
        source += name + "\ncopy \"" + (name == "LC_COLLATE" ? "POSIX" : "zh_CN") + "\"\nEND " + name + '\n';
    }
    const QString definition = directory + QLatin1String("/definition");
    installation::writeFile(definition, source);
    installation::run(QStringLiteral("localedef"), {QStringLiteral("-i"), definition, QStringLiteral("-f"), charset,
                                                    directory + QLatin1String("/zh_CN.") + charset});
}

/// The whole program, as a process of its own, adds a customisation with three packages.
void play(const OrvexManager& window)
{
    printf("found: %s\n", shownTimes(window).join(QLatin1Char(',')).toUtf8().constData());
    for (int row = 0; row < historyTree(window)->topLevelItemCount(); ++row)
        printf("remark: %s\n", historyTree(window)->topLevelItem(row)->text(2).toUtf8().constData());
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(0);
    frozenTime = commitMoment;
    const QStringList amiss = commit(window, remark(), PackageSetup | PackageUpdate | PackageCusUpd);
    printf("amiss: %s.\n", amiss.join(QLatin1Char('|')).toUtf8().constData());
}

} // namespace

void TstClockLocale::cleanup()
{
    frozenTime = 0;
    useZone("Asia/Shanghai");
}

void TstClockLocale::noStampHarmsAnEarlierCustomisation()
{
    prepareInstallation();
    std::vector<qint64> stamps = {-2147483700, -2147483648, -1,         1,          2147483646,
                                  2147483647,  2147483650,  4294967290, 4294967300, 253402271999};
    std::mt19937_64 random(unsigned(soak::amount("ORVEX_SOAK_SEED", 1)));
    for (int i = 0; i < soak::amount("ORVEX_SOAK_STAMPS", 0); ++i)
        stamps.push_back(qint64(random()) >> (random() % 50 + 8));
    storeRow(1600000000, "2020-09-13 20:26:40", "earlier");
    const QStringList earlier = installation::describeTree(inHistory(QStringLiteral("1600000000")));
    const auto window = startAnew();
    int done = 0;
    for (const qint64 stamp : stamps) {
        // As the name has it, so that none writes over another.
        const QString name = QString::number(int(stamp));
        if (stamp == 0 || QFileInfo::exists(inHistory(name)))
            continue;
        frozenTime = time_t(stamp);
        QCOMPARE(commit(*window), QStringList());
        ++done;
        QVERIFY2(isVerified(inHistory(name)), qPrintable(QString::number(stamp)));
        QCOMPARE(installation::describeTree(inHistory(QStringLiteral("1600000000"))), earlier);
        QCOMPARE(installation::namesIn(inHistory()).size(), done + 1);
    }
    frozenTime = 0;
    QCOMPARE(shownTimes(*startAnew()).size(), qMin(300, done + 1));
    soak::tell("clock", QStringLiteral("stamps from before 1970 to beyond 2038"), done,
               QStringLiteral("each committed, listed at the next start, and no earlier one changed"));
}

void TstClockLocale::theHourThatComesTwiceKeepsBothCustomisations()
{
    prepareInstallation();
    useZone("Europe/Berlin");
    const auto window = startAnew();
    frozenTime = 1698539400; // 2023-10-29 00:30:00 UTC, in summer time
    QCOMPARE(commit(*window, QStringLiteral("summer")), QStringList());
    frozenTime = 1698543000; // an hour later, in winter time
    QCOMPARE(commit(*window, QStringLiteral("winter")), QStringList());
    const QString time = QStringLiteral("2023-10-29 02:30:00");
    QCOMPARE(shownTimes(*window), (QStringList{time, time}));
    QCOMPARE(installation::namesIn(inHistory()),
             (QStringList{QStringLiteral("1698539400"), QStringLiteral("1698543000")}));
    QVERIFY(isVerified(inHistory(QStringLiteral("1698539400"))) && isVerified(inHistory(QStringLiteral("1698543000"))));
    // Contract: a row is looked up by its local time, and the first of that time is found.
    clickRow(*window, 1);
    click(*window, "toolButton_delete");
    QCOMPARE(installation::namesIn(inHistory()), QStringList{QStringLiteral("1698539400")});
    QVERIFY(isVerified(inHistory(QStringLiteral("1698539400"))));
}

void TstClockLocale::aChangeOfZoneDuringTheRunShowsInTheNextTimeAlone()
{
    prepareInstallation();
    const auto window = startAnew();
    const struct
    {
        const char* zone;
        const char* time;
    } zones[] = {{"Asia/Shanghai", "2023-11-15 06:13:20"},
                 {"America/New_York", "2023-11-14 17:13:21"},
                 {"Pacific/Kiritimati", "2023-11-15 12:13:22"},
                 {"Nowhere/Invalid", "2023-11-14 22:13:23"}};
    QStringList times;
    for (const auto& zone : zones) {
        useZone(zone.zone);
        frozenTime = commitMoment + times.size();
        times.prepend(QString::fromLatin1(zone.time));
        QCOMPARE(commit(*window), QStringList());
        QCOMPARE(shownTimes(*window), times);
        QVERIFY(installation::log().contains(QByteArray(zone.time) + " [DBG]"));
    }
    QCOMPARE(installation::namesIn(inHistory()).size(), times.size());
    QStringList listed = shownTimes(*startAnew());
    listed.sort();
    times.sort();
    QCOMPARE(listed, times);
}

void TstClockLocale::everyLocaleCommitsAndFindsAgain_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("charset"); // of a locale that is generated for the test
    QTest::newRow("unset") << QString() << QString();
    QTest::newRow("C") << QStringLiteral("C") << QString();
    QTest::newRow("not installed") << QStringLiteral("xx_YY.UTF-8") << QString();
    QTest::newRow("UTF-8") << QStringLiteral("zh_CN.UTF-8") << QStringLiteral("UTF-8");
    QTest::newRow("GBK") << QStringLiteral("zh_CN.GBK") << QStringLiteral("GBK");
}

void TstClockLocale::everyLocaleCommitsAndFindsAgain()
{
    QFETCH(const QString, language);
    QFETCH(const QString, charset);
    prepareInstallation();
    installation::installArchiver();
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    const QTemporaryDir work(installation::path(QStringLiteral("work-XXXXXX")));
    QVERIFY(work.isValid());
    const QString locales = work.filePath(QStringLiteral("locales"));
    QVERIFY(QDir().mkpath(locales));
    if (!charset.isEmpty())
        makeLocale(locales, charset);
    const QString root = work.filePath(QStringLiteral("orvex/"));
    playedprogram::install(root);
    const auto inRoot = [&root](const char* relative) { return root + QLatin1String(relative); };
    storeCustomisation(root, storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), remark()));

    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* variable : {"LC_ALL", "LANG", "LANGUAGE", "LC_CTYPE"})
        environment.remove(QLatin1String(variable));
    if (!language.isEmpty())
        environment.insert(QStringLiteral("LANG"), language);
    environment.insert(QStringLiteral("LOCPATH"), locales);
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(root);
    if (!charset.isEmpty()) {
        program.start(QStringLiteral("locale"), {QStringLiteral("charmap")});
        QVERIFY(program.waitForFinished());
        QCOMPARE(QString::fromLatin1(program.readAllStandardOutput()).trimmed(), charset);
    }
    for (const int stored : {1, 2}) {
        program.start(inRoot("OrvexManager"), {QStringLiteral("play")});
        QVERIFY(program.waitForFinished(60000));
        const QByteArray told = program.readAllStandardOutput();
        QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0 && told.contains("amiss: .\n"),
                 told.constData());
        QCOMPARE(told.count("remark: " + remark().toUtf8() + '\n'), stored);
        QVERIFY(isVerified(inRoot("UpdateCustom/1600000000")) && isVerified(inRoot("UpdateCustom/1700000000")));
    }
    QVERIFY(installation::readFile(inRoot("UpdateCustom/1700000000/OrvexCustom.xml"))
                .contains("<cusAddInfo>" + remark().toUtf8() + "</cusAddInfo>"));
    const QString unpacked = work.filePath(QStringLiteral("unpacked"));
    installation::unpackTar(inRoot("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"), unpacked);
    QCOMPARE(installation::describeTree(unpacked + QLatin1String("/OrvexClient/custom")),
             installation::describeTree(inRoot("UpdateCustom/1700000000")));
    soak::tell("locale", QLatin1String("starts and Finishes with locale: ") + QLatin1String(QTest::currentDataTag()), 2,
               QStringLiteral("remark in Chinese stored and listed, package whole"));
}

static int run(int argc, char** argv)
{
    return argc == 2 && qstrcmp(argv[1], "play") == 0 ? playedprogram::run(argc, argv, play)
                                                      : playTest<TstClockLocale>(argc, argv);
}

TEST_ENTRY(clocklocale, run)

#include "tst_clocklocale.moc"
