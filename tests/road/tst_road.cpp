#include "inspect/InspectSupport.h"
#include "inspect/ProgramRun.h"
#include "road/RunningProgram.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"
#include "xml/CustomXmlParser.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QObject>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

using installation::readFile;

QString remark()
{
    return QStringLiteral("北京分部 客户端 1.0");
}

QString newestStored(const QString& root)
{
    QStringList names = QDir(root + QLatin1String("UpdateCustom")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    names.sort();
    return names.isEmpty() ? QString() : root + QLatin1String("UpdateCustom/") + names.last();
}

/// A fault put into a package by the shell, in the directory of the members of the client archive ("client") or of the
/// ZIP ("zip").
struct PackageFault
{
    const char* problem;
    const char* package;
    const char* directory;
    const char* change;
};

const char setupPackage[] = "OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz";
const char updatePackage[] = "OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip";
const char cusUpdatePackage[] = "OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip";

// clang-format off
const PackageFault packageFaults[] = {
    {"",                   setupPackage,     "client", "true"},
    {"",                   updatePackage,    "zip",    "true"},
    {"",                   cusUpdatePackage, "client", "true"},
    {"no-customisation",   setupPackage,     "client", "rm -r OrvexClient/custom"},
    {"two-customisations", setupPackage,     "client", "cp -a OrvexClient/custom ."},
    {"no-verification",    updatePackage,    "client", "rm OrvexClient/custom/OrvexCustomXml.vrf"},
    {"verification-size",  cusUpdatePackage, "client", "printf x >> custom/OrvexCustomXml.vrf"},
    {"document-size",      setupPackage,     "client", "head -c 40589 /dev/zero > OrvexClient/custom/OrvexCustom.xml"},
    {"not-regular",        setupPackage,     "client", "cd OrvexClient/custom; mv OrvexCustom.xml a; ln -s a OrvexCustom.xml"},
    {"digest",             setupPackage,     "client", "sed -i 's/192.0.2.10/192.0.2.11/' OrvexClient/custom/OrvexCustom.xml"},
    {"digest",             cusUpdatePackage, "client", "sed -i 's/192.0.2.10/192.0.2.11/' custom/OrvexCustom.xml"},
    {"icon-differs",       updatePackage,    "client", "rm OrvexClient/custom/MainIcon.ico"},
    {"manifest-missing",   updatePackage,    "zip",    "rm comment.txt"},
    {"manifest-version",   updatePackage,    "zip",    "sed -i 's/^@ver: 7/@ver: 8/' comment.txt"},
    {"manifest-time",      cusUpdatePackage, "zip",    "sed -i 's/^@time: 1/@time: 2/' comment.txt"},
    {"manifest-name",      cusUpdatePackage, "zip",    "sed -i 's/^Setup=\"/Setup=\"x/' comment.txt"},
    {"member-missing",     setupPackage,     "client", "rm \"$(find . -type f -not -path '*/custom/*' | sort | head -n 1)\""},
    {"member-differs",     updatePackage,    "client", "printf x >> \"$(find . -type f -not -path '*/custom/*' | sort | head -n 1)\""},
};
// clang-format on

/// Unpacks a package, changes it and packs it again below `work`, by the real archivers.
QString faultyPackage(const QString& root, const PackageFault& fault, const QString& work)
{
    const QString package = root + QLatin1String(fault.package);
    const QString result = work + QLatin1Char('/') + QFileInfo(package).fileName();
    const char* const script = "mkdir client zip\n"
                               "archive=$1\n"
                               "case $1 in *.zip) \"$3\" x -ozip \"$1\"; archive=$(echo zip/Dot1X_*);; esac\n"
                               "tar -xpzf \"$archive\" -C client\n"
                               "(cd \"$4\"; eval \"$5\")\n"
                               "packed=$2\n"
                               "case $1 in *.zip) packed=$PWD/$archive;; esac\n"
                               "(cd client; tar -cf - * | gzip -1 > \"$packed\")\n"
                               "case $1 in *.zip) cd zip; \"$3\" a -mx=1 \"$2\" *;; esac\n";
    QDir(work).removeRecursively();
    QDir().mkpath(work);
    installation::run(QStringLiteral("sh"),
                      {QStringLiteral("-ec"), QString::fromLatin1(script), QStringLiteral("sh"), package, result,
                       root + QLatin1String("7za"), QString::fromLatin1(fault.directory),
                       QString::fromLatin1(fault.change)},
                      work);
    return result;
}

/// The problems that orvex-inspect tells of a package; its status tells whether there are any.
QStringList problemsOf(const QString& root, const QString& package)
{
    const program::Outcome outcome =
        program::run({QStringLiteral("--store"), root, QStringLiteral("verify"), package, QStringLiteral("--json")});
    const QJsonArray packages =
        QJsonDocument::fromJson(outcome.output).object().value(QLatin1String("packages")).toArray();
    QStringList problems;
    for (const QJsonValue& problem : packages.first().toObject().value(QLatin1String("problems")).toArray())
        problems.append(problem.toString());
    if (packages.size() != 1 || outcome.status != (problems.isEmpty() ? 0 : 1))
        problems.append(QStringLiteral("status %1").arg(outcome.status));
    return problems;
}

/// A client template of so many files and about so many MiB.
void makeTemplate(const QString& directory, int files, int mib)
{
    installation::run(QStringLiteral("env"),
                      {QStringLiteral("ORVEX_TEMPLATE_FILES=%1").arg(files),
                       QStringLiteral("ORVEX_TEMPLATE_MIB=%1").arg(mib),
                       QStringLiteral(ORVEX_SOURCE_DIR "/scripts/make-sample-template.sh"), directory});
}

/// Names, kinds, modes, owners, times of change and bytes below the directory.
QByteArray stateOf(const QString& directory)
{
    return installation::run(
        QStringLiteral("sh"),
        {QStringLiteral("-ec"), QStringLiteral("find . -printf '%p %y %m %U %G %i %s %T@ %C@ %l\\n' | sort\n"
                                               "find . -type f -exec sha1sum {} + | sort")},
        directory);
}

} // namespace

class TstRoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void threePackagesContainTheStoredCustomisation();
    void aPathWithBlanksAndChineseCharactersIsARoadToo();
    void thePackagesThatWereMadeAreKnownAndBrokenCopiesAreNot();
    void aLookBesideTheRunningProgramLeavesNoTrace();
    void startedElsewhereOnlyTheCustomisedUpdateLacksTheCustomisation();
    void aStoredCustomisationIsTheStartingPointOfTheNext();
    void theLanguageSwitchesAtOnceAndStays();
    void aSecondStartIsWarnedAndBringsTheMinimisedFirstBackAfterOk();
    void afterACrashTheNextStartListensAgain();
    void aFullHistoryIsListedAndCommittedToWithALowDescriptorLimit();
    void leavingWhileTheWorkerStillRunsEndsQuietly();
    void withoutLanguageFilesTheProgramWorksOn();
    void theExecutableIsHardened();

private:
    QString makeInstallation(const QString& name, bool manyFiles = false);
    RunningProgram::Options options() const;
    void checkPackages(const QString& root);

    std::unique_ptr<VirtualDisplay> m_display;
    std::unique_ptr<QTemporaryDir> m_work;
    QString m_smallTemplate;
};

void TstRoad::initTestCase()
{
    m_display = std::make_unique<VirtualDisplay>();
    QVERIFY2(!m_display->name().isEmpty(), "no virtual display");
    m_smallTemplate = installation::path(QStringLiteral("small-template"));
    makeTemplate(m_smallTemplate, 40, 1);
}

void TstRoad::init()
{
    m_work = std::make_unique<QTemporaryDir>();
    QVERIFY(m_work->isValid());
    installation::clear();
}

/// A copy of the built installation, with a trailing slash.
QString TstRoad::makeInstallation(const QString& name, bool manyFiles)
{
    const QString root = m_work->filePath(name) + QLatin1Char('/');
    QDir().mkpath(root);
    const QString built = QStringLiteral(ORVEX_INSTALLATION "/");
    installation::run(QStringLiteral("cp"), {QStringLiteral("-r"), built + QLatin1String("OrvexManager"),
                                             built + QLatin1String("7za"), built + QLatin1String("Resources"), root});
    installation::writeFile(root + QLatin1String("config.ini"), "[config]\nArea=tqm\nLangCode=1033\n");
    if (manyFiles)
        makeTemplate(root + QLatin1String("template"), 400, 4);
    else
        installation::run(QStringLiteral("cp"),
                          {QStringLiteral("-r"), m_smallTemplate, root + QLatin1String("template")});
    return root;
}

RunningProgram::Options TstRoad::options() const
{
    const QString icons = m_work->filePath(QStringLiteral("icons of the client"));
    if (QDir().mkpath(icons)) {
        QFile::copy(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/tqmlogo.png"), icons + QLatin1String("/client.png"));
        QFile::copy(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/icon4.ico"), icons + QLatin1String("/client.ico"));
    }
    RunningProgram::Options played;
    played.remark = remark();
    played.icons = icons;
    return played;
}

void TstRoad::checkPackages(const QString& root)
{
    installation::run(QStringLiteral(ORVEX_SOURCE_DIR "/scripts/check-packages.sh"), {root.chopped(1)});
}

void TstRoad::threePackagesContainTheStoredCustomisation()
{
    const QString root = makeInstallation(QStringLiteral("orvex"), true);
    const RunningProgram::Options played = options();
    RunningProgram program(*m_display, root, QStringLiteral("road"), played);
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());
    checkPackages(root);

    const QString stored = newestStored(root);
    const QByteArray stamp = QFileInfo(stored).fileName().toLatin1();
    QStringList names = QDir(stored).entryList(QDir::Files);
    names.sort();
    QCOMPARE(names, (QStringList{QStringLiteral("DeskIconLinux.png"), QStringLiteral("MainIcon.ico"),
                                 QStringLiteral("OrvexCustom.xml"), QStringLiteral("OrvexCustomXml.vrf")}));
    QCOMPARE(readFile(stored + QLatin1String("/DeskIconLinux.png")),
             readFile(played.icons + QLatin1String("/client.png")));
    QCOMPARE(readFile(stored + QLatin1String("/MainIcon.ico")), readFile(played.icons + QLatin1String("/client.ico")));
    for (const QString& name : names)
        QCOMPARE(readFile(root + QLatin1String("custom/") + name), readFile(stored + QLatin1Char('/') + name));

    const QString document = QString::fromUtf8(readFile(stored + QLatin1String("/OrvexCustom.xml")));
    const QStringList expected = {QStringLiteral("<cusAddInfo>%1</cusAddInfo>").arg(remark()),
                                  QStringLiteral("<procomVal>19</procomVal>"),
                                  QStringLiteral("<funcomVal>1</funcomVal>"),
                                  QStringLiteral("<ZOAIP>192.0.2.10</ZOAIP>"),
                                  QStringLiteral("<subTitle>示例客户端</subTitle>"),
                                  QStringLiteral("<linuxDeskIcon>true</linuxDeskIcon>"),
                                  QStringLiteral("<macosDeskIcon>false</macosDeskIcon>"),
                                  QStringLiteral("<mainIcon>true</mainIcon>")};
    for (const QString& element : expected)
        QVERIFY2(document.contains(element), qPrintable(element));

    const QByteArray head = ";The comment below contains SFX script commands\r\n\r\n";
    const QByteArray middle = "Silent=2\r\nOverwrite=1\r\nostype=Linux64\r\n@ver: 7.2-R0408\r\n"
                              "@new_ver: Orvex PC 7.2 (E0408)\r\n";
    const QByteArray time = document.section(QStringLiteral("<cusTimeString>"), 1)
                                .section(QStringLiteral("</cusTimeString>"), 0, 0)
                                .toLatin1();
    const auto comment = [&](const char* zip) {
        return installation::run(
            root + QLatin1String("7za"),
            {QStringLiteral("e"), QStringLiteral("-so"), root + QLatin1String(zip), QStringLiteral("comment.txt")});
    };
    QCOMPARE(comment("OrvexUpdate/OrvexUpdate7.2 (E0408)_64.zip"),
             head + "Setup=\"Dot1X_OrvexClient_Linux64.tar.gz\"\r\n" + middle + "cusTimeStamp:" + stamp + "\r\n");
    QCOMPARE(comment("OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip"), head + "Setup=\"Dot1X_OrvexCusUpd.tar.gz\"\r\n" +
                                                                       middle + "@time: " + stamp +
                                                                       "\r\n@timeFmt: " + time + "\r\n");

    // The setup package is the template with custom/ in it, and nothing else has changed.
    const QString before = m_work->filePath(QStringLiteral("before"));
    const QString after = m_work->filePath(QStringLiteral("after"));
    QDir().mkpath(before);
    QDir().mkpath(after);
    installation::run(QStringLiteral("tar"),
                      {QStringLiteral("-xzf"), root + QLatin1String("template/OrvexClient_Linux64.tar.gz"),
                       QStringLiteral("-C"), before});
    installation::run(QStringLiteral("tar"), {QStringLiteral("-xzf"),
                                              root + QLatin1String("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz"),
                                              QStringLiteral("-C"), after});
    installation::run(QStringLiteral("diff"), {QStringLiteral("-r"), QStringLiteral("--no-dereference"),
                                               QStringLiteral("--exclude=custom"), before, after});
    QCOMPARE(program.lines().filter(QStringLiteral("history:")).size(), 1);
    QVERIFY(program.lines()
                .filter(QStringLiteral("history:"))
                .first()
                .endsWith(QStringLiteral("| 802.1X  Portal  SSLVPN  ZOA | ") + remark()));
}

void TstRoad::aPathWithBlanksAndChineseCharactersIsARoadToo()
{
    const QString root = makeInstallation(QStringLiteral("orvex 定制 manager (1)"));
    RunningProgram program(*m_display, root, QStringLiteral("road"), options());
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());
    checkPackages(root);
}

void TstRoad::thePackagesThatWereMadeAreKnownAndBrokenCopiesAreNot()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    RunningProgram program(*m_display, root, QStringLiteral("road"), options());
    QCOMPARE(program.waitForEnd(), 0);
    const QStringList store = {QStringLiteral("--store"), root};
    const QString entry = QFileInfo(newestStored(root)).fileName();

    const program::Outcome whole = program::run(store + QStringList{QStringLiteral("verify")});
    QVERIFY2(whole.status == 0, whole.output + whole.errors);
    const QJsonObject verified =
        program::object(store + QStringList{QStringLiteral("verify"), QStringLiteral("--json")});
    QCOMPARE(verified.value(QLatin1String("entries")).toArray().size(), 1);
    QCOMPARE(verified.value(QLatin1String("packages")).toArray().size(), 3);
    for (const char* package : {setupPackage, updatePackage, cusUpdatePackage}) {
        const QStringList which = store + QStringList{QStringLiteral("which"), root + QLatin1String(package)};
        QCOMPARE(program::run(which).status, 0);
        const QJsonObject row = program::array(which + QStringList{QStringLiteral("--json")}).first().toObject();
        QCOMPARE(row.value(QLatin1String("entry")).toString(), entry);
        QCOMPARE(row.value(QLatin1String("remark")).toString(), remark());
        QVERIFY(row.value(QLatin1String("inStore")).toBool());
    }

    const QString work = m_work->filePath(QStringLiteral("broken"));
    for (const PackageFault& fault : packageFaults) {
        const QStringList expected = QString::fromLatin1(fault.problem).split(QLatin1Char(' '), Qt::SkipEmptyParts);
        const QStringList told = problemsOf(root, faultyPackage(root, fault, work));
        QVERIFY2(told == expected,
                 qPrintable(QLatin1String(fault.change) + QLatin1String(": ") + told.join(QLatin1Char(' '))));
    }
    for (const char* package : {setupPackage, updatePackage, cusUpdatePackage}) {
        const QByteArray bytes = readFile(root + QLatin1String(package));
        const QString cut = work + QLatin1Char('/') + QFileInfo(QLatin1String(package)).fileName();
        installation::writeFile(cut, bytes.left(bytes.size() * 9 / 10));
        QCOMPARE(problemsOf(root, cut), QStringList{QStringLiteral("unreadable")});
    }

    // A document without a record, with its verification; then a newer customisation; then none at all.
    const QString misread = m_work->filePath(QStringLiteral("misread"));
    installation::writeFile(misread + QLatin1String("/OrvexCustom.xml"), "<msg>");
    installation::writeFile(misread + QLatin1String("/OrvexCustomXml.vrf"), inspecting::verificationOf("<msg>"));
    const QByteArray change = "cp '" + QFile::encodeName(misread) + "'/* OrvexClient/custom";
    QCOMPARE(problemsOf(root, faultyPackage(root, {"", setupPackage, "client", change.constData()}, work)),
             QStringList{QStringLiteral("not-parsed")});

    CustomInfo newer;
    newer.common.cusTimeStamp = entry.toULongLong() + 60;
    storeCustomisation(root, newer);
    for (const char* package : {setupPackage, updatePackage, cusUpdatePackage})
        QCOMPARE(problemsOf(root, root + QLatin1String(package)), QStringList{QStringLiteral("stale")});
    QCOMPARE(program::run(store + QStringList{QStringLiteral("verify")}).status, 1);

    QVERIFY(QDir(root + QLatin1String("UpdateCustom")).removeRecursively());
    QCOMPARE(problemsOf(root, root + QLatin1String(setupPackage)), QStringList{QStringLiteral("not-in-store")});
    const QStringList gone = store + QStringList{QStringLiteral("which"), root + QLatin1String(setupPackage)};
    QCOMPARE(program::run(gone).status, 1);
    const QJsonObject row = program::array(gone + QStringList{QStringLiteral("--json")}).first().toObject();
    QCOMPARE(row.value(QLatin1String("timeStamp")).toDouble(), entry.toDouble());
    QCOMPARE(row.value(QLatin1String("remark")).toString(), remark());
}

void TstRoad::aLookBesideTheRunningProgramLeavesNoTrace()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    for (const quint64 stamp : {1700000000ull, 1700000600ull}) {
        CustomInfo record;
        record.common.cusTimeStamp = stamp;
        storeCustomisation(root, record);
    }
    installation::run(QStringLiteral("mkdir"), {root + QLatin1String("OrvexSetup")});
    const PackageFault none = {"", "template/OrvexClient_Linux64.tar.gz", "client",
                               "mkdir -p OrvexClient/custom; cp \"$OLDPWD\"/../orvex/UpdateCustom/1700000600/* "
                               "OrvexClient/custom"};
    const QString package = root + QLatin1String(setupPackage);
    QVERIFY(QFile::copy(faultyPackage(root, none, m_work->filePath(QStringLiteral("made"))), package));

    RunningProgram running(*m_display, root, QStringLiteral("first"), options());
    QVERIFY(running.waitForLine(QStringLiteral("minimised")));
    const QByteArray before = stateOf(root);
    QVERIFY(before.contains("./Log/MainUI"));
    const QString elsewhere = m_work->filePath(QStringLiteral("elsewhere.tar.gz"));
    const std::pair<QStringList, int> calls[] = {
        {{QStringLiteral("list"), QStringLiteral("--all")}, 0},
        {{QStringLiteral("show"), QStringLiteral("latest")}, 0},
        {{QStringLiteral("show"), package}, 0},
        {{QStringLiteral("diff"), QStringLiteral("latest"), QStringLiteral("latest~1")}, 0},
        {{QStringLiteral("report"), QStringLiteral("latest")}, 0},
        {{QStringLiteral("verify")}, 0},
        {{QStringLiteral("which"), package}, 0},
        {{QStringLiteral("search"), QStringLiteral("802.1X")}, 0},
        {{QStringLiteral("lint"), QStringLiteral("--all")}, 1},
        {{QStringLiteral("doctor")}, 0},
        {{QStringLiteral("errors")}, 0},
        {{QStringLiteral("fields")}, 0},
        {{QStringLiteral("export"), QStringLiteral("latest"), QStringLiteral("-o"), elsewhere}, 0},
    };
    for (const auto& [arguments, status] : calls) {
        const program::Outcome outcome = program::run(QStringList{QStringLiteral("--store"), root} + arguments);
        QVERIFY2(outcome.status == status,
                 arguments.join(QLatin1Char(' ')).toUtf8() + '\n' + outcome.output.left(2000) + outcome.errors);
    }
    QCOMPARE(stateOf(root), before);

    // The program has noticed nothing of it either.
    RunningProgram second(*m_display, root, QStringLiteral("second"), options());
    QCOMPARE(second.waitForEnd(), 0);
    QCOMPARE(running.waitForEnd(), 0);
    QCOMPARE(running.warnings(), QStringList());
}

void TstRoad::startedElsewhereOnlyTheCustomisedUpdateLacksTheCustomisation()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    RunningProgram::Options played = options();
    played.workingDirectory = m_work->path();
    RunningProgram program(*m_display, root, QStringLiteral("road"), played);
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());

    const QByteArray setup = installation::run(
        QStringLiteral("tar"),
        {QStringLiteral("-tzf"), root + QLatin1String("OrvexSetup/OrvexClient_Linux64_7.2 (E0408).tar.gz")});
    QVERIFY(setup.contains("OrvexClient/custom/OrvexCustom.xml\n"));
    const QString unpacked = m_work->filePath(QStringLiteral("unpacked"));
    installation::run(root + QLatin1String("7za"), {QStringLiteral("x"), QLatin1String("-o") + unpacked,
                                                    root + QLatin1String("OrvexCusUpd/OrvexCusUpd7.2 (E0408)_64.zip")});
    const QString archive = unpacked + QLatin1String("/Dot1X_OrvexCusUpd.tar.gz");
    QVERIFY(QFile::exists(archive));
    QCOMPARE(installation::run(QStringLiteral("tar"), {QStringLiteral("-tzf"), archive}), QByteArray());
    QVERIFY(QFile::exists(newestStored(root) + QLatin1String("/OrvexCustomXml.vrf")));
}

void TstRoad::aStoredCustomisationIsTheStartingPointOfTheNext()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    CustomInfo first;
    first.common.cusTimeStamp = 1700000000;
    first.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    first.common.cusAddInfo = QStringLiteral("first");
    first.common.procomVal = procom::x1 | procom::l2tpIpsec;
    first.common.funcomVal = funcom::zoa | funcom::kef;
    first.kef.kefIP = QStringLiteral("192.0.2.77");
    first.kef.kefPort = QStringLiteral("9029");
    first.vpn.basecfg.LNSIP = QStringLiteral("lns.example");
    first.vpnRoutes.append({QStringLiteral("10.0.0.0"), QStringLiteral("255.0.0.0")});
    storeCustomisation(root, first);

    RunningProgram program(*m_display, root, QStringLiteral("reuse"), options());
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());
    QCOMPARE(QDir(root + QLatin1String("UpdateCustom")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 2);
    const QString document = newestStored(root) + QLatin1String("/OrvexCustom.xml");

    CustomXmlParser parser;
    CustomInfo second;
    parser.GetXMLCommonInfo(document, second.common);
    parser.GetXMLKefInfo(document, second.kef);
    parser.GetXMLIpseVpnInfo(document, second.vpn);
    parser.GetXMLIPSECVPNRouteInfo(document, second.vpnRoutes);
    QCOMPARE(second.common.procomVal, first.common.procomVal);
    QCOMPARE(second.common.funcomVal, first.common.funcomVal);
    QCOMPARE(second.common.cusAddInfo, remark());
    QVERIFY(second.common.cusTimeStamp > first.common.cusTimeStamp);
    QCOMPARE(second.kef.kefIP, first.kef.kefIP);
    QCOMPARE(second.vpn.basecfg.LNSIP, first.vpn.basecfg.LNSIP);
    QCOMPARE(second.vpnRoutes.size(), 1);
    checkPackages(root);
}

void TstRoad::theLanguageSwitchesAtOnceAndStays()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    RunningProgram::Options played = options();
    played.shots = m_work->filePath(QStringLiteral("shots"));
    QVERIFY(QDir().mkpath(played.shots));
    RunningProgram program(*m_display, root, QStringLiteral("languages"), played);
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());
    QCOMPARE(program.lines().filter(QStringLiteral("title:")),
             (QStringList{QStringLiteral("  title: Orvex Customisation Manager"),
                          QStringLiteral("  title: Orvex定制管理程序")}));
    QVERIFY(readFile(root + QLatin1String("config.ini")).contains("LangCode=2052"));
    QVERIFY(readFile(root + QLatin1String("config.ini")).contains("Area=tqm"));
    for (const QString& page : {QStringLiteral("client-page"), QStringLiteral("history-page")}) {
        const QImage english(played.shots + QLatin1Char('/') + page + QLatin1String("-en.png"));
        const QImage chinese(played.shots + QLatin1Char('/') + page + QLatin1String("-zh.png"));
        QCOMPARE(english.size(), QSize(1280, 1024));
        QVERIFY(english != chinese);
    }
}

void TstRoad::aSecondStartIsWarnedAndBringsTheMinimisedFirstBackAfterOk()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    RunningProgram first(*m_display, root, QStringLiteral("first"), options());
    QVERIFY(first.waitForLine(QStringLiteral("minimised")));
    RunningProgram second(*m_display, root, QStringLiteral("second"), options());
    QVERIFY(second.waitForLine(QStringLiteral("warning:")));
    QCOMPARE(second.waitForEnd(), 0);
    QCOMPARE(second.warnings(), QStringList());
    QVERIFY(second.lines()
                .filter(QStringLiteral("warning:"))
                .first()
                .startsWith(QStringLiteral("  warning: Orvex Customisation Manager | ")));
    QCOMPARE(first.waitForEnd(), 0);
    QVERIFY(first.lines().contains(QStringLiteral("- the window is back")));
    QVERIFY(readFile(root + QLatin1String("Log/") + QDir(root + QLatin1String("Log")).entryList(QDir::Files).last())
                .contains(" [WRN]main:----OrvexManager has already started----\n"));
}

void TstRoad::afterACrashTheNextStartListensAgain()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    {
        RunningProgram crashed(*m_display, root, QStringLiteral("first"), options());
        QVERIFY(crashed.waitForLine(QStringLiteral("minimised")));
        crashed.kill();
    }
    RunningProgram first(*m_display, root, QStringLiteral("first"), options());
    QVERIFY(first.waitForLine(QStringLiteral("minimised")));
    RunningProgram second(*m_display, root, QStringLiteral("second"), options());
    QCOMPARE(second.waitForEnd(), 0);
    QCOMPARE(first.waitForEnd(), 0);
    QVERIFY(first.lines().contains(QStringLiteral("- the window is back")));
}

void TstRoad::aFullHistoryIsListedAndCommittedToWithALowDescriptorLimit()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    const QByteArray first = inspecting::documentWithStamp(1700000000);
    for (int i = 0; i < 300; ++i) {
        const QString stamp = QString::number(1700000000 + i);
        const QString time = QTime(0, 0).addSecs(60 * i).toString(QStringLiteral("HH:mm:ss"));
        inspecting::store(
            root, stamp,
            QByteArray(first).replace("1700000000", stamp.toLatin1()).replace("06:13:20", time.toLatin1()));
    }
    RunningProgram::Options played = options();
    played.lowDescriptorLimit = true;
    RunningProgram program(*m_display, root, QStringLiteral("reuse"), played);
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());
    QCOMPARE(program.lines().filter(QStringLiteral("history:")).size(), 301);
    QCOMPARE(QDir(root + QLatin1String("UpdateCustom")).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 301);
    checkPackages(root);
}

void TstRoad::leavingWhileTheWorkerStillRunsEndsQuietly()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    // An archiver that takes its time.
    QVERIFY(QFile::remove(root + QLatin1String("7za")));
    installation::writeFile(root + QLatin1String("7za"), "#!/bin/sh\nsleep 5\n>\"${0%7za}ended\"\n");
    QVERIFY(QFile::setPermissions(root + QLatin1String("7za"), QFile::ReadOwner | QFile::ExeOwner));
    RunningProgram program(*m_display, root, QStringLiteral("impatient"), options());
    QCOMPARE(program.waitForEnd(), 0);
    QVERIFY(!QFile::exists(root + QLatin1String("ended")));
    QCOMPARE(program.warnings(), QStringList());
    QVERIFY(QFile::exists(newestStored(root) + QLatin1String("/OrvexCustomXml.vrf")));
}

void TstRoad::withoutLanguageFilesTheProgramWorksOn()
{
    const QString root = makeInstallation(QStringLiteral("orvex"));
    QVERIFY(QDir(root + QLatin1String("Resources")).removeRecursively());
    RunningProgram program(*m_display, root, QStringLiteral("reuse"), options());
    QCOMPARE(program.waitForEnd(), 0);
    QCOMPARE(program.warnings(), QStringList());
    QVERIFY(QFile::exists(root + QLatin1String("OrvexSetup/OrvexClient_Linux64_ULL (L).tar.gz")));
}

void TstRoad::theExecutableIsHardened()
{
    const QString executable = QStringLiteral(ORVEX_INSTALLATION "/OrvexManager");
    const QByteArray header = installation::run(QStringLiteral("readelf"), {QStringLiteral("-hW"), executable});
    QVERIFY(header.contains("DYN (Position-Independent Executable file)"));
#ifndef ORVEX_SANITIZE
    const QByteArray dynamic = installation::run(QStringLiteral("readelf"), {QStringLiteral("-dlW"), executable});
    QVERIFY(dynamic.contains("BIND_NOW") || dynamic.contains("NOW PIE"));
    QVERIFY(dynamic.contains("GNU_RELRO"));
    const QByteArray symbols = installation::run(QStringLiteral("readelf"), {QStringLiteral("-sW"), executable});
    QVERIFY(symbols.contains("__stack_chk_fail"));
    QVERIFY(symbols.contains("_chk@"));
#endif
}

TEST_ENTRY(road, runGuilessTest<TstRoad>)
#include "tst_road.moc"
