#include "common/Log.h"
#include "common/PackageGenerators.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageVerifier.h"
#include "inspect/PackageWorkshop.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QtTest>

using installation::path;
using workshop::CusUpdate;
using workshop::Kind;
using workshop::Setup;
using workshop::Update;

namespace {

/// A fault put into one package.
struct Fault
{
    const char* code;
    Kind kind;
    std::function<void(const QString& client, const QString& zip)> edit;
};

PackageAnswer verified(const QString& package)
{
    StoreReader store(QFile::encodeName(installation::root()));
    store.scan();
    PackageVerifier verifier(QFile::encodeName(installation::root()), store);
    return verifier.verify(QFile::encodeName(package));
}

QByteArrayList problems(const QString& package)
{
    return verified(package).problems;
}

QString entry(const char* file)
{
    return path(QStringLiteral("UpdateCustom/1789000000/")) + QString::fromLatin1(file);
}

using Edit = std::function<void(const QString&)>;

auto inClient(const Edit& edit)
{
    return [edit](const QString& client, const QString&) {
        if (!client.isEmpty())
            edit(client);
    };
}

auto inZip(const Edit& edit)
{
    return [edit](const QString&, const QString& zip) {
        if (!zip.isEmpty())
            edit(zip);
    };
}

void replaceIn(const QString& file, const char* before, const char* after)
{
    QByteArray bytes = installation::readFile(file);
    QVERIFY2(bytes.contains(before), bytes.constData());
    installation::writeFile(file, bytes.replace(before, after));
}

auto inManifest(const char* before, const char* after)
{
    return inZip(
        [before, after](const QString& zip) { replaceIn(zip + QLatin1String("/comment.txt"), before, after); });
}

const char xml[] = "/OrvexClient/custom/OrvexCustom.xml";
const char vrf[] = "/OrvexClient/custom/OrvexCustomXml.vrf";

QString at(const QString& client, const char* name)
{
    return client + QString::fromUtf8(name);
}

void shell(const QString& directory, const char* command)
{
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromUtf8(command)}, directory);
}

auto byShell(const char* command)
{
    return inClient([command](const QString& client) { shell(client, command); });
}

const std::vector<std::pair<const char*, Fault>>& faults()
{
    static const std::vector<std::pair<const char*, Fault>> rows = {
        {"setup as it is", {"", Setup, byShell("true")}},
        {"update as it is", {"", Update, byShell("true")}},
        {"customised update as it is", {"", CusUpdate, byShell("true")}},
        {"a further member", {"", Setup, byShell("echo more > OrvexClient/more")}},
        {"no custom", {"no-customisation", Setup, byShell("rm -r OrvexClient/custom")}},
        {"no document", {"no-customisation", Update, byShell("rm OrvexClient/custom/OrvexCustom.xml")}},
        {"no archive", {"no-customisation", Update, inZip([](const QString& zip) { shell(zip, "rm Dot1X_*"); })}},
        {"another place", {"no-customisation", Setup, byShell("mv OrvexClient/custom .")}},
        {"place of another kind", {"no-customisation", CusUpdate, byShell("mkdir OrvexClient; mv custom OrvexClient")}},
        {"way diverted",
         {"no-customisation", Setup, byShell("mv OrvexClient/custom OrvexClient/c; ln -s c OrvexClient/custom")}},
        {"two places", {"two-customisations", Setup, byShell("cp -a OrvexClient/custom .")}},
        {"both systems",
         {"two-customisations", Update,
          byShell("mkdir -p OrvexClient.pkg/Contents; cp -a OrvexClient/custom OrvexClient.pkg/Contents")}},
        {"two archives", {"two-customisations", Update, inZip([](const QString& zip) {
                              shell(zip, "cp Dot1X_OrvexClient_Linux64.tar.gz Dot1X_Other.tar.gz");
                          })}},
        {"no verification", {"no-verification", Setup, byShell("rm OrvexClient/custom/OrvexCustomXml.vrf")}},
        {"document a link",
         {"not-regular", Setup, byShell("cd OrvexClient/custom; mv OrvexCustom.xml real; ln -s real OrvexCustom.xml")}},
        {"verification a directory",
         {"not-regular", Setup, byShell("cd OrvexClient/custom; rm OrvexCustomXml.vrf; mkdir OrvexCustomXml.vrf")}},
        {"verification cut", {"verification-size", Setup, inClient([](const QString& client) {
                                  installation::writeFile(at(client, vrf), QByteArray(255, 'x'));
                              })}},
        {"verification longer", {"verification-size", Update, inClient([](const QString& client) {
                                     installation::writeFile(at(client, vrf), QByteArray(100000, 'x'));
                                 })}},
        {"document too long", {"document-size", Setup, inClient([](const QString& client) {
                                   installation::writeFile(at(client, xml), QByteArray(40589, 'x'));
                               })}},
        {"document huge", {"document-size", Update, inClient([](const QString& client) {
                               installation::writeFile(at(client, xml), QByteArray(9000000, 'x'));
                           })}},
        {"document changed", {"digest", Setup, inClient([](const QString& client) {
                                  replaceIn(at(client, xml), "<funcomVal>1", "<funcomVal>5");
                              })}},
        {"document no XML", {"not-parsed", Setup, inClient([](const QString& client) {
                                 installation::writeFile(at(client, xml), "<msg>");
                                 installation::writeFile(at(client, vrf), inspecting::verificationOf("<msg>"));
                             })}},
        {"another seed", {"not-in-store", Setup, inClient([](const QString& client) {
                              installation::writeFile(at(client, vrf), inspecting::verificationOf(
                                                                           installation::readFile(at(client, xml)), 1));
                          })}},
        {"another remark", {"not-in-store", Update, inClient([](const QString& client) {
                                const QByteArray other =
                                    inspecting::documentWithStamp(workshop::stamp, QStringLiteral("other"));
                                installation::writeFile(at(client, xml), other);
                                installation::writeFile(at(client, vrf), inspecting::verificationOf(other));
                            })}},
        {"icon missing", {"icon-differs", Setup, byShell("rm OrvexClient/custom/MainIcon.ico")}},
        {"icon changed", {"icon-differs", Update, byShell("printf x >> OrvexClient/custom/DeskIconLinux.png")}},
        {"icon a link",
         {"icon-differs", CusUpdate, byShell("cd custom; mv MainIcon.ico real; ln -s real MainIcon.ico")}},
        {"no manifest", {"manifest-missing", Update, inZip([](const QString& zip) { shell(zip, "rm comment.txt"); })}},
        {"manifest a directory", {"manifest-missing", CusUpdate, inZip([](const QString& zip) {
                                      shell(zip, "rm comment.txt; mkdir comment.txt");
                                  })}},
        {"version", {"manifest-version", Update, inManifest("@ver: 7.2-R0408", "@ver: 7.2-R0409")}},
        {"display version", {"manifest-version", CusUpdate, inManifest("(E0408)", "(E0409)")}},
        {"stamp of an update", {"manifest-time", Update, inManifest("cusTimeStamp:1789", "cusTimeStamp:1788")}},
        {"stamp of a customised update", {"manifest-time", CusUpdate, inManifest("@time: 17", "@time: 18")}},
        {"time of a customised update", {"manifest-time", CusUpdate, inManifest("08:26:40", "08:26:41")}},
        {"name of the archive", {"manifest-name", Update, inManifest("Linux64.tar.gz", "Linux.tar.gz")}},
        {"renamed archive", {"manifest-name", Update, inZip([](const QString& zip) {
                                 shell(zip, "mv Dot1X_OrvexClient_Linux64.tar.gz Dot1X_O.tar.gz");
                             })}},
        {"file missing", {"member-missing", Setup, byShell("rm OrvexClient/empty.dat")}},
        {"link missing", {"member-missing", Update, byShell("rm OrvexClient/var/last")}},
        {"directory missing", {"member-missing", Update, byShell("rm -r OrvexClient/var/log")}},
        {"renamed file", {"member-missing", Setup, byShell("mv OrvexClient/empty.dat OrvexClient/Empty.dat")}},
        {"file changed", {"member-differs", Setup, byShell("printf x > OrvexClient/empty.dat")}},
        {"mode changed", {"member-differs", Update, byShell("chmod 0600 OrvexClient/bin/helper")}},
        {"mode of a directory changed", {"member-differs", Setup, byShell("chmod 0700 OrvexClient/var")}},
        {"link changed", {"member-differs", Setup, byShell("ln -sfn helper OrvexClient/bin/orvex")}},
        {"link made a file",
         {"member-differs", Setup, byShell("cd OrvexClient/bin; cp client c; rm orvex; mv c orvex")}},
        {"file made a link", {"member-differs", Setup, byShell("cd OrvexClient; mv empty.dat e; ln -s e empty.dat")}},
        {"content swapped by a hard link",
         {"member-differs", Setup, byShell("cd OrvexClient; rm empty.dat; ln bin/client empty.dat")}},
    };
    return rows;
}

} // namespace

class TstPackageVerifier : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void packagesOfTheGeneratorsAreGood();
    void faultIsTold_data();
    void faultIsTold();
    void independentFaultsAreAllTold();
    void olderThanTheNewestIsStale();
    void entryWithoutVerificationMakesNothingStale();
    void entryThatIsGoneIsNotInTheStore();
    void entryOfAnotherNameIsFound();
    void changedEntryIsNotInTheStore();
    void iconOnlyInTheStoreDiffers();
    void damagedPackageIsUnreadable();
    void missingPackageIsNotThere();
    void macosPackagesAreGood();
    void namesInTheTemplateMayBeginWithADot();
    void hardLinksOfTheTemplateAreFound();
    void missingTemplateLeavesMembersUnproven();
    void installationPackagesAreListed();
    void identificationTellsTheEntry();
    void nothingIsTouched();
};

void TstPackageVerifier::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    setLogging(false);
}

void TstPackageVerifier::cleanup()
{
    QVERIFY(!installation::namesIn(installation::root()).contains(QStringLiteral("Log")));
}

void TstPackageVerifier::cleanupTestCase()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstPackageVerifier::packagesOfTheGeneratorsAreGood()
{
    const char* const kinds[] = {"setup", "update", "customised-update"};
    StoreReader store(QFile::encodeName(installation::root()));
    QVERIFY(store.scan());
    PackageVerifier verifier(QFile::encodeName(installation::root()), store);
    for (const Kind kind : {Setup, Update, CusUpdate, Setup}) {
        const PackageAnswer answer = verifier.verify(QFile::encodeName(workshop::package(kind)));
        QCOMPARE(answer.problems, QByteArrayList());
        QVERIFY(answer.isOk() && answer.isThere);
        QCOMPARE(packageKindName(answer.kind), kinds[kind]);
        QCOMPARE(answer.entry, QByteArray("1789000000"));
        QCOMPARE(answer.common.cusTimeStamp, quint64(1789000000));
    }
}

void TstPackageVerifier::faultIsTold_data()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const auto& row : faults())
        QTest::newRow(row.first) << number++;
}

void TstPackageVerifier::faultIsTold()
{
    QFETCH(int, number);
    const Fault& fault = faults().at(size_t(number)).second;
    const QByteArrayList expected = *fault.code ? QByteArrayList{fault.code} : QByteArrayList();
    QCOMPARE(problems(workshop::remade(fault.kind, fault.edit)), expected);
}

void TstPackageVerifier::independentFaultsAreAllTold()
{
    inspecting::store(installation::root(), QStringLiteral("1789000001"), inspecting::documentWithStamp(1789000001));
    const QString package = workshop::remade(Update, [](const QString& client, const QString& zip) {
        if (client.isEmpty()) {
            replaceIn(zip + QLatin1String("/comment.txt"), "@ver: 7", "@ver: 8");
            replaceIn(zip + QLatin1String("/comment.txt"), "cusTimeStamp:1", "cusTimeStamp:2");
            replaceIn(zip + QLatin1String("/comment.txt"), "Setup=\"", "Setup=\"x");
        } else {
            shell(client, "rm OrvexClient/empty.dat; chmod 0777 OrvexClient/bin; rm OrvexClient/custom/MainIcon.ico");
        }
    });
    QCOMPARE(problems(package), QByteArrayList({"icon-differs", "manifest-version", "manifest-time", "manifest-name",
                                                "member-missing", "member-differs", "stale"}));
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/1789000001"))).removeRecursively());
}

void TstPackageVerifier::olderThanTheNewestIsStale()
{
    inspecting::store(installation::root(), QStringLiteral("1789000001"), inspecting::documentWithStamp(1789000001));
    inspecting::store(installation::root(), QStringLiteral("1788999999"), inspecting::documentWithStamp(1788999999));
    for (const Kind kind : {Setup, Update, CusUpdate}) {
        const PackageAnswer answer = verified(workshop::package(kind));
        QCOMPARE(answer.problems, QByteArrayList{"stale"});
        QCOMPARE(answer.entry, QByteArray("1789000000"));
    }
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/1789000001"))).removeRecursively());
    QCOMPARE(problems(workshop::package(Setup)), QByteArrayList());
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/1788999999"))).removeRecursively());
}

void TstPackageVerifier::entryWithoutVerificationMakesNothingStale()
{
    const QString newer = path(QStringLiteral("UpdateCustom/1789000001"));
    installation::writeFile(newer + QLatin1String("/OrvexCustom.xml"), inspecting::documentWithStamp(1789000001));
    QCOMPARE(problems(workshop::package(Setup)), QByteArrayList());
    QVERIFY(QDir(newer).removeRecursively());
}

void TstPackageVerifier::entryThatIsGoneIsNotInTheStore()
{
    const QString store = path(QStringLiteral("UpdateCustom"));
    const QString away = path(QStringLiteral("work/away"));
    QVERIFY(QDir().rename(store, away));
    const PackageAnswer answer = verified(workshop::package(CusUpdate));
    QVERIFY(QDir().rename(away, store));
    QCOMPARE(answer.problems, QByteArrayList{"not-in-store"});
    QCOMPARE(answer.entry, QByteArray());
    QCOMPARE(answer.common.cusTimeString, QStringLiteral("2026-09-10 08:26:40"));
}

void TstPackageVerifier::entryOfAnotherNameIsFound()
{
    const QString before = path(QStringLiteral("UpdateCustom/1789000000"));
    const QString after = path(QStringLiteral("UpdateCustom/kept"));
    QVERIFY(QDir().rename(before, after));
    const PackageAnswer answer = verified(workshop::package(Setup));
    QVERIFY(QDir().rename(after, before));
    QCOMPARE(answer.problems, QByteArrayList());
    QCOMPARE(answer.entry, QByteArray("kept"));

    // Of a second copy without icons the entry with the same icons is told.
    const QByteArray document = installation::readFile(entry("OrvexCustom.xml"));
    inspecting::store(installation::root(), QStringLiteral("zzz"), document);
    QCOMPARE(verified(workshop::package(Setup)).entry, QByteArray("1789000000"));
    QCOMPARE(problems(workshop::package(Setup)), QByteArrayList());
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/zzz"))).removeRecursively());
}

void TstPackageVerifier::changedEntryIsNotInTheStore()
{
    const QByteArray document = installation::readFile(entry("OrvexCustom.xml"));
    installation::writeFile(entry("OrvexCustom.xml"), document + "\n");
    const QByteArrayList found = problems(workshop::package(Setup));
    installation::writeFile(entry("OrvexCustom.xml"), document);
    QCOMPARE(found, QByteArrayList{"not-in-store"});
}

void TstPackageVerifier::iconOnlyInTheStoreDiffers()
{
    const QString package = workshop::remade(Setup, byShell("rm OrvexClient/custom/*.png OrvexClient/custom/*.ic*"));
    QCOMPARE(problems(package), QByteArrayList{"icon-differs"});
    const QByteArray icon = installation::readFile(entry("MainIcon.ico"));
    QVERIFY(QFile::remove(entry("MainIcon.ico")));
    const QByteArrayList found = problems(workshop::package(Setup));
    installation::writeFile(entry("MainIcon.ico"), icon);
    QCOMPARE(found, QByteArrayList{"icon-differs"});
}

void TstPackageVerifier::damagedPackageIsUnreadable()
{
    for (const Kind kind : {Setup, Update, CusUpdate}) {
        const QByteArray bytes = installation::readFile(workshop::package(kind));
        const QString name = QFileInfo(workshop::package(kind)).fileName();
        const PackageAnswer answer = verified(workshop::written(name, bytes.chopped(1)));
        QCOMPARE(answer.problems, QByteArrayList{"unreadable"});
        QVERIFY(answer.isThere && !answer.damage.isEmpty());
        QCOMPARE(problems(workshop::written(name, bytes)), QByteArrayList());
    }
}

void TstPackageVerifier::missingPackageIsNotThere()
{
    const PackageAnswer answer = verified(path(QStringLiteral("work/none.zip")));
    QVERIFY(!answer.isThere);
    QCOMPARE(answer.problems, QByteArrayList{"unreadable"});
    QVERIFY(verified(path(QStringLiteral("work"))).isThere);
}

void TstPackageVerifier::macosPackagesAreGood()
{
    shell(installation::root(), "rm -r custom; cp -a UpdateCustom/1789000000 custom");
    setLogging(true);
    {
        const installation::QuietOutput quiet;
        QVERIFY(utl_GenMacosSetup());
        QVERIFY(utl_GenMacosUpdate("2026-09-10 08:26:40", "1789000000"));
        utl_GenMacosCusUpd("2026-09-10 08:26:40", "1789000000");
    }
    setLogging(false);
    installation::clearLog();
    const char* const names[] = {"OrvexSetup/OrvexClient_MacOS_7.2 (E0408).tar.gz",
                                 "OrvexUpdate/OrvexUpdate7.2 (E0408)_MacOS.zip", "OrvexCusUpd/OrvexCusUpd.zip"};
    const char* const kinds[] = {"setup", "update", "customised-update"};
    for (int i = 0; i < 3; ++i) {
        const PackageAnswer answer = verified(path(QString::fromLatin1(names[i])));
        QVERIFY2(answer.isOk(), names[i] + (": " + answer.problems.join(' ')));
        QCOMPARE(packageKindName(answer.kind), kinds[i]);
    }
    const QString archive = path(QStringLiteral("template/OrvexClient_MacOS.tar.gz"));
    const QByteArray before = installation::readFile(archive);
    installation::makeSmallTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
    const QByteArrayList found = problems(path(QString::fromLatin1(names[2])));
    installation::writeFile(archive, before);
    for (const char* name : names)
        QVERIFY(QFile::remove(path(QString::fromLatin1(name))));
    QCOMPARE(found, QByteArrayList({"member-missing", "member-differs"}));
}

void TstPackageVerifier::namesInTheTemplateMayBeginWithADot()
{
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    const QByteArray before = installation::readFile(archive);
    installation::unpackTar(archive, path(QStringLiteral("work/template")));
    // What is hidden at the top is not packed; a customisation in the template is written over.
    shell(path(QStringLiteral("work/template")),
          "echo x > .hidden; mkdir OrvexClient/custom; echo x > OrvexClient/custom/OrvexCustom.xml");
    installation::run(QStringLiteral("tar"), {QStringLiteral("-czf"), archive, QStringLiteral("-C"),
                                              path(QStringLiteral("work/template")), QStringLiteral(".")});
    QVERIFY(installation::tarMembers(archive).contains(QStringLiteral("./OrvexClient/empty.dat")));
    const QByteArrayList good = problems(workshop::package(Setup));
    const QByteArrayList bad = problems(workshop::remade(Setup, byShell("rm OrvexClient/empty.dat")));
    installation::writeFile(archive, before);
    QCOMPARE(good, QByteArrayList());
    QCOMPARE(bad, QByteArrayList{"member-missing"});
}

void TstPackageVerifier::hardLinksOfTheTemplateAreFound()
{
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    const QByteArray before = installation::readFile(archive);
    installation::unpackTar(archive, path(QStringLiteral("work/template")));
    shell(path(QStringLiteral("work/template")), "ln OrvexClient/bin/client OrvexClient/bin/again");
    const auto pack = [&](const char* first, const char* second) {
        installation::run(QStringLiteral("tar"),
                          {QStringLiteral("-czf"), archive, QStringLiteral("-C"), path(QStringLiteral("work/template")),
                           QStringLiteral("--no-recursion"), QString::fromLatin1(first), QString::fromLatin1(second)});
    };
    const auto edit = byShell("ln OrvexClient/bin/client OrvexClient/bin/again");
    const QString package = workshop::remade(Setup, edit);
    pack("OrvexClient/bin/client", "OrvexClient/bin/again");
    const QByteArrayList one = problems(package);
    pack("OrvexClient/bin/again", "OrvexClient/bin/client");
    const QByteArrayList other = problems(package);
    const QByteArrayList apart = problems(workshop::remade(Setup, byShell("cp -p OrvexClient/bin/client "
                                                                          "OrvexClient/bin/again")));
    const QByteArrayList wrong =
        problems(workshop::remade(Setup, byShell("ln OrvexClient/bin/helper OrvexClient/bin/again")));
    installation::writeFile(archive, before);
    QCOMPARE(one, QByteArrayList());
    QCOMPARE(other, QByteArrayList());
    QCOMPARE(apart, QByteArrayList());
    QCOMPARE(wrong, QByteArrayList{"member-differs"});
}

void TstPackageVerifier::missingTemplateLeavesMembersUnproven()
{
    const QString archive = path(QStringLiteral("template/OrvexClient_Linux64.tar.gz"));
    const QByteArray before = installation::readFile(archive);
    QVERIFY(QFile::remove(archive));
    const QByteArrayList setup = problems(workshop::package(Setup));
    const QByteArrayList customised = problems(workshop::package(CusUpdate));
    installation::writeFile(archive, before.chopped(10));
    const QByteArrayList damaged = problems(workshop::package(Update));
    installation::writeFile(archive, before);
    QCOMPARE(setup, QByteArrayList{"member-missing"});
    QCOMPARE(damaged, QByteArrayList{"member-missing"});
    QCOMPARE(customised, QByteArrayList());
}

void TstPackageVerifier::installationPackagesAreListed()
{
    installation::writeFile(path(QStringLiteral("OrvexSetup/notes.txt")), "no package");
    installation::writeFile(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz")), "left over");
    const QByteArray root = QFile::encodeName(installation::root());
    StoreReader store(root);
    const QByteArrayList found = PackageVerifier(root.chopped(1), store).packages();
    QVERIFY(QFile::remove(path(QStringLiteral("OrvexSetup/notes.txt"))));
    QVERIFY(QFile::remove(path(QStringLiteral("OrvexCusUpd/Dot1X_OrvexCusUpd.tar.gz"))));
    QCOMPARE(found, QByteArrayList({QFile::encodeName(workshop::package(CusUpdate)),
                                    QFile::encodeName(workshop::package(Setup)),
                                    QFile::encodeName(workshop::package(Update))}));
}

void TstPackageVerifier::identificationTellsTheEntry()
{
    StoreReader store(QFile::encodeName(installation::root()));
    QVERIFY(store.scan());
    const PackageVerifier verifier(QFile::encodeName(installation::root()), store);
    const QString package = workshop::remade(Update, byShell("rm -r OrvexClient/bin"));
    const PackageAnswer answer = verifier.identify(QFile::encodeName(package));
    QCOMPARE(answer.problems, QByteArrayList());
    QCOMPARE(answer.entry, QByteArray("1789000000"));
    QCOMPARE(packageKindName(answer.kind), "update");
}

void TstPackageVerifier::nothingIsTouched()
{
    // Read once, so that looking at a file does not itself change the time of its last access.
    inspecting::snapshot(installation::root());
    const QByteArray before = inspecting::snapshot(installation::root());
    for (const Kind kind : {Setup, Update, CusUpdate})
        QVERIFY(verified(workshop::package(kind)).isOk());
    QCOMPARE(inspecting::snapshot(installation::root()), before);
}

TEST_ENTRY(packageverifier, runGuilessTest<TstPackageVerifier>)
#include "tst_packageverifier.moc"
