#include "common/PackageGenerators.h"
#include "common/Version.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QtTest>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include <sys/resource.h>

using installation::path;

namespace {

constexpr int s_leastRounds = 5;
constexpr int s_mostRounds = 8;
constexpr double s_targetRatio = 1.05; // of the time on the clock
constexpr double s_limitRatio = 1.5;   // the same, beside whatever else the machine is doing
constexpr double s_limitWork = 1.15;   // of the time on the processors
constexpr qint64 s_enoughMs = 35000;   // no further round beyond the least number is begun after this time

const char s_time[] = "2026-09-10 08:26:40";
const char s_stamp[] = "1789000000";

/// Processor time that this process and its ended children have taken so far, in nanoseconds.
qint64 workSoFar()
{
    qint64 sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage{};
        getrusage(who, &usage);
        for (const timeval& time : {usage.ru_utime, usage.ru_stime})
            sum += (qint64(time.tv_sec) * 1000000 + time.tv_usec) * 1000;
    }
    return sum;
}

/// Runs one command line, in which "{root}" stands for the root of the store.
bool type(const char* command)
{
    QByteArray text(command);
    text.replace("{root}", QFile::encodeName(installation::root()));
    return system(text.constData()) == 0;
}

bool generatePackages()
{
    const installation::QuietOutput quiet;
    return utl_GenLinuxSetup() && utl_GenLinuxUpdate(s_time, s_stamp) && utl_GenLinuxCusUpd(s_time, s_stamp);
}

bool writeManifest(const QString& name, const QByteArray& lastLines)
{
    QFile file(path(name));
    return file.open(QIODevice::WriteOnly) &&
           file.write(";The comment below contains SFX script commands\r\n\r\nSilent=2\r\n" + lastLines) > 0;
}

/// The three packages by the same commands, without the generators.
bool makePackagesByHand()
{
    const installation::QuietOutput quiet;
    const auto setup = [] {
        return type("mkdir -p \"{root}template/Temp\"") &&
               type("tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"") &&
               type("cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"") &&
               type("mkdir -p \"{root}OrvexSetup\"") &&
               type("cd \"{root}template/Temp\";"
                    "tar zcvf \"{root}OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz\" *") &&
               type("rm -rf \"{root}template/Temp\"");
    };
    const auto update = [] {
        return type("mkdir -p \"{root}OrvexUpdate\"") &&
               writeManifest(QStringLiteral("OrvexUpdate/comment.txt"), "cusTimeStamp:1789000000\r\n") &&
               type("mkdir -p \"{root}template/Temp\"") &&
               type("tar -zxvf \"{root}template/OrvexClient_Linux64.tar.gz\" -C \"{root}template/Temp\"") &&
               type("cp -r \"{root}custom/\" \"{root}template/Temp/OrvexClient/\"") &&
               type("cd \"{root}template/Temp\";"
                    "tar zcvf \"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\" *") &&
               type("cd \"{root}OrvexUpdate\";\"{root}7za\" a \"{root}OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip\" "
                    "comment.txt Dot1X_OrvexClient_Linux64.tar.gz") &&
               type("rm -f \"{root}OrvexUpdate/Dot1X_OrvexClient_Linux64.tar.gz\"") &&
               type("rm -rf \"{root}template/Temp\"") && type("rm -f \"{root}OrvexUpdate/comment.txt\"");
    };
    const auto cusUpdate = [] {
        return type("mkdir -p \"{root}OrvexCusUpd\"") &&
               writeManifest(QStringLiteral("OrvexCusUpd/comment.txt"), "@time: 1789000000\r\n") &&
               type("tar zcvf \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\" \"custom\"") &&
               type("cd \"{root}OrvexCusUpd\";\"{root}7za\" a \"{root}OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip\" "
                    "comment.txt Dot1X_OrvexCusUpd.tar.gz") &&
               type("rm -f \"{root}OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz\"") &&
               type("rm -f \"{root}OrvexCusUpd/comment.txt\"");
    };
    return setup() && update() && cusUpdate();
}

void removePackages()
{
    for (const char* directory : {"OrvexSetup", "OrvexUpdate", "OrvexCusUpd"})
        QDir(path(QLatin1String(directory))).removeRecursively();
}

/// What the two ways made, without the time of the work: the members of each package.
QStringList describePackages()
{
    QStringList lines =
        installation::tarMembers(path(QStringLiteral("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")));
    lines += installation::zipMembers(path(QStringLiteral("OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip")));
    lines += installation::zipMembers(path(QStringLiteral("OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip")));
    for (const char* directory : {"OrvexSetup", "OrvexUpdate", "OrvexCusUpd", "template", "custom"})
        lines += installation::namesIn(path(QLatin1String(directory)));
    return lines;
}

} // namespace

class TstGeneratorSpeed : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void generatorsAreAsFastAsTheirCommands();
};

void TstGeneratorSpeed::initTestCase()
{
    installation::clear();
    QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    QVERIFY(QDir::setCurrent(installation::root()));
    utl_SetVersionStrings("V7.2-R0408E", "7.2.0408.115");
    installation::makeCustomisation("speed");
    installation::makeSampleTemplates();
    installation::installArchiver();
}

void TstGeneratorSpeed::cleanupTestCase()
{
    installation::clear();
}

void TstGeneratorSpeed::generatorsAreAsFastAsTheirCommands()
{
    struct Way
    {
        bool (*run)();
        qint64 best; // ns on the clock
        qint64 work; // ns on the processors
        QStringList made;
    };
    constexpr qint64 longest = std::numeric_limits<qint64>::max();
    Way ways[] = {{generatePackages, longest, longest, {}}, {makePackagesByHand, longest, longest, {}}};
    const auto ratio = [&ways] { return double(ways[0].best) / double(ways[1].best); };
    const auto workRatio = [&ways] { return double(ways[0].work) / double(ways[1].work); };

    QElapsedTimer whole;
    whole.start();
    int round = 0;
    while (round < s_leastRounds || (round < s_mostRounds && ratio() > s_targetRatio && whole.elapsed() < s_enoughMs)) {
        // The first way changes from round to round, so that a drift of the machine does not favour one of them.
        for (int place = 0; place < 2; ++place) {
            Way& way = ways[(round + place) % 2];
            removePackages();
            const qint64 workBefore = workSoFar();
            QElapsedTimer timer;
            timer.start();
            const bool done = way.run();
            way.best = std::min(way.best, timer.nsecsElapsed());
            way.work = std::min(way.work, workSoFar() - workBefore);
            QVERIFY(done);
            if (way.made.isEmpty())
                way.made = describePackages();
        }
        ++round;
    }
    QVERIFY(ways[0].made.size() > 400);
    QCOMPARE(ways[0].made, ways[1].made);

    printf("generators %.2f s, by hand %.2f s, ratio %.3f (target %.2f, limit %.2f, %d rounds)\n",
           double(ways[0].best) / 1e9, double(ways[1].best) / 1e9, ratio(), s_targetRatio, s_limitRatio, round);
    printf("processor time: generators %.2f s, by hand %.2f s, ratio %.3f (limit %.2f)\n", double(ways[0].work) / 1e9,
           double(ways[1].work) / 1e9, workRatio(), s_limitWork);
    fflush(stdout);
    QVERIFY(workRatio() <= s_limitWork);
    QVERIFY(ratio() <= s_limitRatio);
}

TEST_ENTRY(generatorspeed, runGuilessTest<TstGeneratorSpeed>)
#include "tst_generatorspeed.moc"
