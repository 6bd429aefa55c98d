#include "common/Log.h"
#include "inspect/InspectRun.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageWorkshop.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QtTest>

using inspecting::compareComplaint;
using inspecting::inspect;
using inspecting::inspectArray;
using inspecting::inspectObject;
using installation::path;
using workshop::CusUpdate;
using workshop::Kind;
using workshop::Setup;
using workshop::Update;

namespace {

const QString verify = QStringLiteral("verify");
const QString which = QStringLiteral("which");
const char* const kinds[] = {"setup", "update", "customised-update"};

QJsonValue valueOf(const QJsonObject& object, const char* key)
{
    return object.value(QLatin1String(key));
}

void shell(const QString& directory, const char* command)
{
    installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), QString::fromUtf8(command)}, directory);
}

QString withoutIcon()
{
    return workshop::remade(
        Setup, [](const QString& client, const QString&) { shell(client, "rm OrvexClient/custom/MainIcon.ico"); });
}

/// While it lives, the entries are elsewhere.
class WithoutEntries
{
public:
    WithoutEntries() { QVERIFY(QDir().rename(m_store, m_away)); }
    ~WithoutEntries() { QDir().rename(m_away, m_store); }

private:
    const QString m_store = path(QStringLiteral("UpdateCustom"));
    const QString m_away = path(QStringLiteral("work/away"));
};

} // namespace

class TstVerifyCommand : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void wholeStoreHolds();
    void eachReasonOfAnEntryIsTold_data();
    void eachReasonOfAnEntryIsTold();
    void brokenPackageIsAFinding();
    void eachProblemIsExplained();
    void packageThatCannotBeReadIsAFinding();
    void pathThatIsNotThereIsWrongUsage();
    void storeWithoutAnythingHolds();
    void packageTellsItsEntry();
    void entryThatIsGoneIsToldByThePackage();
    void otherIconsLeaveTheEntry();
    void whatHoldsNothingIsUnreadableInput();
};

void TstVerifyCommand::initTestCase()
{
    workshop::makeInstallation();
    installation::clearLog();
    setLogging(false);
}

void TstVerifyCommand::cleanupTestCase()
{
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstVerifyCommand::wholeStoreHolds()
{
    const QJsonObject answer = inspectObject({verify}, 0);
    QCOMPARE(answer.keys(), QStringList({QStringLiteral("entries"), QStringLiteral("packages")}));
    const QJsonArray entries = valueOf(answer, "entries").toArray();
    QCOMPARE(entries.size(), 1);
    QCOMPARE(entries.first().toObject(), (QJsonObject{{QStringLiteral("entry"), QStringLiteral("1789000000")},
                                                      {QStringLiteral("ok"), true},
                                                      {QStringLiteral("reason"), QJsonValue()}}));
    const QJsonArray packages = valueOf(answer, "packages").toArray();
    QCOMPARE(packages.size(), 3);
    // By their paths: OrvexCusUpd/, OrvexSetup/, OrvexUpdate/.
    const Kind order[] = {CusUpdate, Setup, Update};
    for (int i = 0; i < 3; ++i) {
        QCOMPARE(packages.at(i).toObject(), (QJsonObject{{QStringLiteral("package"), workshop::package(order[i])},
                                                         {QStringLiteral("kind"), QString::fromLatin1(kinds[order[i]])},
                                                         {QStringLiteral("ok"), true},
                                                         {QStringLiteral("entry"), QStringLiteral("1789000000")},
                                                         {QStringLiteral("problems"), QJsonArray()}}));
    }
    const QMap<QString, QString> fine = {{QStringLiteral("en"), QStringLiteral("  ok\n")},
                                         {QStringLiteral("zh"), QStringLiteral("  正常\n")}};
    for (auto word = fine.begin(); word != fine.end(); ++word) {
        const program::Outcome text = inspect({QStringLiteral("--lang"), word.key(), verify});
        QCOMPARE(text.status, 0);
        const QString shown = QString::fromUtf8(text.output);
        QCOMPARE(shown.count(word.value()), 4);
        QVERIFY(shown.contains(QLatin1String("2026-09-10 08:26:40")));
    }
}

void TstVerifyCommand::eachReasonOfAnEntryIsTold_data()
{
    QTest::addColumn<QByteArray>("fault");
    // clang-format off
    QTest::newRow("no-document")       << QByteArray("rm OrvexCustom.xml");
    QTest::newRow("no-verification")   << QByteArray("rm OrvexCustomXml.vrf");
    QTest::newRow("not-regular")       << QByteArray("rm OrvexCustom.xml; mkfifo OrvexCustom.xml");
    QTest::newRow("verification-size") << QByteArray("printf x >> OrvexCustomXml.vrf");
    QTest::newRow("document-size")     << QByteArray("head -c 40589 /dev/zero > OrvexCustom.xml");
    QTest::newRow("digest")            << QByteArray("printf ' ' >> OrvexCustom.xml");
    QTest::newRow("not-parsed")        << QByteArray();
    // clang-format on
}

void TstVerifyCommand::eachReasonOfAnEntryIsTold()
{
    QFETCH(QByteArray, fault);
    const QString code = QString::fromLatin1(QTest::currentDataTag());
    const QString name = QStringLiteral("1500000000");
    inspecting::store(installation::root(), name,
                      fault.isEmpty() ? QByteArray("<msg>") : inspecting::documentWithStamp(1500000000));
    shell(path(QLatin1String("UpdateCustom/") + name), fault.isEmpty() ? "true" : fault.constData());
    const QJsonArray entries = valueOf(inspectObject({verify}, 1), "entries").toArray();
    const program::Outcome text = inspect({verify});
    QVERIFY(QDir(path(QLatin1String("UpdateCustom/") + name)).removeRecursively());
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries.last().toObject(),
             (QJsonObject{
                 {QStringLiteral("entry"), name}, {QStringLiteral("ok"), false}, {QStringLiteral("reason"), code}}));
    QCOMPARE(text.status, 1);
    QVERIFY2(QString::fromUtf8(text.output).contains(code + QLatin1String(": ")), text.output.constData());
}

void TstVerifyCommand::brokenPackageIsAFinding()
{
    const QString package = withoutIcon();
    const QJsonObject answer = inspectObject({verify, package, workshop::package(Update)}, 1);
    QCOMPARE(valueOf(answer, "entries").toArray(), QJsonArray());
    const QJsonArray packages = valueOf(answer, "packages").toArray();
    QCOMPARE(packages.size(), 2);
    QCOMPARE(packages.first().toObject(),
             (QJsonObject{{QStringLiteral("package"), package},
                          {QStringLiteral("kind"), QStringLiteral("setup")},
                          {QStringLiteral("ok"), false},
                          {QStringLiteral("entry"), QStringLiteral("1789000000")},
                          {QStringLiteral("problems"), QJsonArray{QStringLiteral("icon-differs")}}}));
    QCOMPARE(valueOf(packages.last().toObject(), "ok").toBool(), true);
}

void TstVerifyCommand::eachProblemIsExplained()
{
    inspecting::store(installation::root(), QStringLiteral("1789000001"), inspecting::documentWithStamp(1789000001));
    const QString package = withoutIcon();
    const program::Outcome outcome = inspect({verify, package});
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom/1789000001"))).removeRecursively());
    QCOMPARE(outcome.status, 1);
    const QString text = QString::fromUtf8(outcome.output);
    QVERIFY2(text.contains(QLatin1String("icon-differs: ")), outcome.output.constData());
    QVERIFY2(text.contains(QLatin1String("stale: ")), outcome.output.constData());
    QVERIFY(!text.contains(QLatin1String("ok\n")));
}

void TstVerifyCommand::packageThatCannotBeReadIsAFinding()
{
    const QString broken = workshop::written(QStringLiteral("broken.tar.gz"), "no archive");
    const QString directory = path(QStringLiteral("work/directory.zip"));
    QVERIFY(QDir().mkpath(directory));
    const QString nowhere = path(QStringLiteral("work/nowhere.zip"));
    QVERIFY(QFile::link(QStringLiteral("none"), nowhere));
    for (const QString& package : {broken, directory, nowhere}) {
        const QJsonObject row = valueOf(inspectObject({verify, package}, 1), "packages").toArray().first().toObject();
        QCOMPARE(valueOf(row, "problems").toArray(), QJsonArray{QStringLiteral("unreadable")});
        QCOMPARE(valueOf(row, "entry"), QJsonValue());
    }
    const program::Outcome wide = program::run({QStringLiteral("--store"), installation::root(), verify, broken},
                                               {QStringLiteral("COLUMNS=400")});
    QVERIFY2(wide.output.contains("neither a gzip nor a ZIP"), wide.output.constData());
}

void TstVerifyCommand::pathThatIsNotThereIsWrongUsage()
{
    const QString none = path(QStringLiteral("work/none.zip"));
    compareComplaint(inspect({verify, workshop::package(Setup), none}), none);
    compareComplaint(inspect({verify, QString()}), QStringLiteral("no such package"));
}

void TstVerifyCommand::storeWithoutAnythingHolds()
{
    const QTemporaryDir empty;
    const program::Outcome outcome =
        inspect({QStringLiteral("--json"), QStringLiteral("--store"), empty.path(), verify});
    // The first store is that of the test.
    compareComplaint(outcome, QStringLiteral("one --store"));
    const QJsonObject answer = program::object({QStringLiteral("--store"), empty.path(), verify});
    QCOMPARE(answer,
             (QJsonObject{{QStringLiteral("entries"), QJsonArray()}, {QStringLiteral("packages"), QJsonArray()}}));
}

void TstVerifyCommand::packageTellsItsEntry()
{
    const QJsonArray rows =
        inspectArray({which, workshop::package(Setup), workshop::package(Update), workshop::package(CusUpdate)}, 0);
    QCOMPARE(rows.size(), 3);
    for (const Kind kind : {Setup, Update, CusUpdate}) {
        QCOMPARE(rows.at(kind).toObject(), (QJsonObject{{QStringLiteral("package"), workshop::package(kind)},
                                                        {QStringLiteral("kind"), QString::fromLatin1(kinds[kind])},
                                                        {QStringLiteral("entry"), QStringLiteral("1789000000")},
                                                        {QStringLiteral("time"), QStringLiteral("2026-09-10 08:26:40")},
                                                        {QStringLiteral("timeStamp"), 1789000000.0},
                                                        {QStringLiteral("remark"), QString()},
                                                        {QStringLiteral("inStore"), true}}));
    }
    const program::Outcome text = inspect({which, workshop::package(Setup)});
    QCOMPARE(text.status, 0);
    QVERIFY(QString::fromUtf8(text.output).contains(QLatin1String("1789000000")));
}

void TstVerifyCommand::entryThatIsGoneIsToldByThePackage()
{
    const WithoutEntries without;
    const QJsonObject row = inspectArray({which, workshop::package(Update)}, 1).first().toObject();
    QCOMPARE(row, (QJsonObject{{QStringLiteral("package"), workshop::package(Update)},
                               {QStringLiteral("kind"), QStringLiteral("update")},
                               {QStringLiteral("entry"), QJsonValue()},
                               {QStringLiteral("time"), QStringLiteral("2026-09-10 08:26:40")},
                               {QStringLiteral("timeStamp"), 1789000000.0},
                               {QStringLiteral("remark"), QString()},
                               {QStringLiteral("inStore"), false}}));
    const program::Outcome text = inspect({which, workshop::package(Update)});
    QCOMPARE(text.status, 1);
    QVERIFY(QString::fromUtf8(text.output).contains(QLatin1String("(gone)")));
}

void TstVerifyCommand::otherIconsLeaveTheEntry()
{
    const QString package = withoutIcon();
    const QJsonObject row = inspectArray({which, package}, 0).first().toObject();
    QCOMPARE(valueOf(row, "entry").toString(), QStringLiteral("1789000000"));
}

void TstVerifyCommand::whatHoldsNothingIsUnreadableInput()
{
    const QString empty = workshop::remade(
        Setup, [](const QString& client, const QString&) { shell(client, "rm -r OrvexClient/custom"); });
    compareComplaint(inspect({which, empty}), QStringLiteral("no-customisation"));
    compareComplaint(inspect({which, workshop::written(QStringLiteral("b.zip"), "none")}),
                     QStringLiteral("unreadable"));
    compareComplaint(inspect({which, path(QStringLiteral("work/none"))}), QStringLiteral("no such package"));
    compareComplaint(inspect({which}), QStringLiteral("which takes"));
}

TEST_ENTRY(verifycommand, runGuilessTest<TstVerifyCommand>)
#include "tst_verifycommand.moc"
