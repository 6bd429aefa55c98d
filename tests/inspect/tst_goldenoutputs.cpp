#include "common/Log.h"
#include "inspect/InspectSupport.h"
#include "inspect/PackageWorkshop.h"
#include "inspect/ProgramRun.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QRegularExpression>
#include <QtTest>

using installation::path;

/// The whole output of every command over one store, byte for byte, in the files of golden/. They are written anew by
/// scripts/write-golden.sh.
class TstGoldenOutputs : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void outputIsAsKept_data();
    void outputIsAsKept();
    void eachKeptOutputIsCompared();

private:
    QString m_store;
};

namespace {

// Columns are as wide as the paths in them, so the store stands at a path of one length on every machine.
const QString storeTemplate = QStringLiteral("/tmp/orvex-golden-XXXXXX");
const QString storeMarker = QStringLiteral("/tmp/orvex-golden-{root}");

enum Forms
{
    Text = 1, // name.<language>.txt
    Json = 2,
    Html = 4,
    Markdown = 8
};

struct Call
{
    const char* name;
    const char* words;
    int status;
    int forms;
};

// clang-format off
const Call calls[] = {
    {"list",             "list",                                             0, Text | Json},
    {"list-all",         "list --all",                                       0, Text | Json},
    {"list-chosen",      "list --since 2025-11-20 --component sslvpn",       0, Text},
    {"show",             "show 1763610061",                                  0, Text | Json},
    {"show-section",     "show 1763610061 --section vpnroute",               0, Text | Json},
    {"show-package",     "show good.tar.gz --section ZOA",       0, Text | Json},
    {"show-refused",     "show broken",                                      2, Text | Json},
    {"diff",             "diff 1763600000 1763610061",                       1, Text | Json | Html},
    {"diff-all",         "diff 1763600000 1763610061 --all",                 1, Text | Json},
    {"diff-same",        "diff latest latest",                               0, Text | Json},
    {"report",           "report 1763600000",                                0, Html | Markdown},
    {"verify",           "verify",                                           1, Text | Json},
    {"verify-packages",  "verify good.zip old.tar.gz cut.tar.gz", 1, Text | Json},
    {"which",            "which good.tar.gz good.zip old.tar.gz gone.tar.gz", 1, Text | Json},
    {"which-refused",    "which cut.tar.gz",                                 2, Text},
    {"search",           "search 192.0.2.",                                  0, Text | Json},
    {"search-nothing",   "search nothing-of-this",                           1, Text | Json},
    {"lint",             "lint --all",                                       1, Text | Json},
    {"doctor",           "doctor",                                           0, Text | Json},
    {"errors",           "errors",                                           1, Text | Json},
    {"errors-day",       "errors --day 20260130",                            0, Text | Json},
    {"export-refused",   "export latest -o old.tar.gz",                      2, Text},
    {"fields-refused",   "fields none",                                      2, Text},
    {"unknown",          "tell",                                             2, Text},
};
// clang-format on

const struct
{
    Forms form;
    const char* suffix;
    const char* option;
} forms[] = {{Text, "txt", ""}, {Json, "json", "--json"}, {Html, "html", "--html"}, {Markdown, "md", "--markdown"}};

const char* const languages[] = {"en", "zh"};

QString goldenFile(const QString& name)
{
    return QStringLiteral(ORVEX_SOURCE_DIR "/tests/inspect/golden/") + name;
}

/// A customisation of a branch office.
CustomInfo office()
{
    CustomInfo record;
    record.common.cusTimeStamp = 1763600000;
    record.common.cusTimeString = QStringLiteral("2025-11-20 08:53:20");
    record.common.cusAddInfo = QStringLiteral("北京分部 <客户端> 1.0");
    record.common.procomVal = procom::x1 | procom::l2tpIpsec | procom::sslVpn;
    record.x1.reauthTimes = 7;
    record.function.passwordProtection = 1;
    record.function.uninstallPassword = QStringLiteral("卸载 pass-1");
    for (const char* name : {"北京", "Shanghai"}) {
        SSLVPNRemoteInfo gateway;
        gateway.iPDes = QString::fromUtf8(name);
        gateway.ip = QStringLiteral("192.0.2.%1").arg(10 + record.sslvpn.remote.size());
        gateway.port = QStringLiteral("443");
        record.sslvpn.remote.append(gateway);
    }
    record.domain.domaindetail = {{QStringLiteral("研发域"), QStringLiteral("研发部门的域")},
                                  {QStringLiteral("sales"), QStringLiteral("tab\there")}};
    record.gui.subTitle = QStringLiteral("示例客户端");
    record.gui.linuxDeskIconPath = QStringLiteral("client.png");
    record.vpn.basecfg.LNSIP = QStringLiteral("192.0.2.50");
    record.vpn.basecfg.useIPSEC = 1;
    record.vpn.basecfg.preSharedKey = QStringLiteral("secret");
    record.vpnRoutes = {{QStringLiteral("10.7.0.0"), QStringLiteral("255.255.0.0")},
                        {QStringLiteral("10.7.1.0"), QStringLiteral("255.255.255.0")}};
    record.zoa.ZOAIP = QStringLiteral("127.0.0.1");
    return record;
}

/// What became of it.
CustomInfo laterOffice()
{
    CustomInfo record = office();
    record.common.cusTimeStamp = 1763610061;
    record.common.cusTimeString = QStringLiteral("2025-11-20 11:41:01");
    record.common.cusAddInfo = QStringLiteral("北京分部 客户端 1.1");
    record.function.uninstallPassword = QStringLiteral("another one that is stored in clear");
    std::swap(record.sslvpn.remote[0], record.sslvpn.remote[1]);
    record.domain.domaindetail[1].domainName = QStringLiteral("service");
    record.gui.hideCopyRight = true;
    record.vpn.basecfg.preSharedKey = QStringLiteral("longer secret");
    record.vpn.ikecfg.IKEPort = 1501;
    record.vpnRoutes.removeLast();
    record.zoa.ZOAIP = QStringLiteral("192.0.2.90");
    return record;
}

void keep(const CustomInfo& record, const QByteArray& icon)
{
    const QString name = QString::number(record.common.cusTimeStamp);
    inspecting::store(installation::root(), name, documentOf(record));
    installation::writeFile(path(QStringLiteral("UpdateCustom/%1/DeskIconLinux.png").arg(name)), icon);
}

/// A setup package without the programs of the client and with another customisation.
QString setupPackage(const QString& customisation)
{
    return workshop::remade(workshop::Setup, [&](const QString& client, const QString&) {
        const QString custom = workshop::customIn(workshop::Setup, client);
        QVERIFY(QDir(custom).removeRecursively());
        QVERIFY(QDir(client + QStringLiteral("/OrvexClient/bin")).removeRecursively());
        installation::run(QStringLiteral("cp"), {QStringLiteral("-r"), customisation, custom});
    });
}

// A Finish that made an update package: the log speaks of a failure all the same.
const QByteArray logOfAGoodDay =
    "2026-01-30 10:00:00 [DBG]utl_DeleteFiles remove strcmd: find \"/p/custom\" -name \"*.*\" -exec rm -rf {} \\;\n"
    "2026-01-30 10:00:00 [DBG]utl_GetFileSize file: /p/custom/OrvexCustom.xml, sizeLow 9000\n"
    "2026-01-30 10:00:00 [DBG]utl_ForceDirCreate: /p/OrvexUpdate\n"
    "2026-01-30 10:00:00 [DBG]utl_GenUpdate begin.\n"
    "2026-01-30 10:00:01 [ERR]utl_GenLinuxUpdate:ZipUpdFiles 64 failed.\n";
const QByteArray logOfABadDay =
    "2026-01-31 10:00:00 [DBG]utl_DeleteFiles remove strcmd: find \"/p/custom\" -name \"*.*\" -exec rm -rf {} \\;\n"
    "2026-01-31 10:00:00 [ERR]SaveXmlFile: can not open file!\n";

/// What is not the same on every machine.
QByteArray withMarkers(const QByteArray& output, const QString& store)
{
    QString text = QString::fromUtf8(output);
    text.replace(store, storeMarker);
    // What the doctor finds outside of the store.
    const std::pair<const char*, const char*> outside[] = {
        {"\\d+ MB are free", "{number} MB are free"},
        {"\\w+ are allowed", "{number} are allowed"},
        {"剩余\\d+ MB", "剩余{number} MB"},
        {"允许\\w+个", "允许{number}个"},
        {"/\\S*/tar可以", "{path}/tar可以"},
        {"/\\S*/tar runs", "{path}/tar runs"},
        {"\nscripts  .*(\n  .*)*", "\nscripts           {scripts}"},
        {"\"scripts\",\\s*\"detail\": .*(\\s*)\"level\": \"note\",\\s*\"ok\": \\w+",
         "\"scripts\",\\1\"detail\": \"{scripts}\""},
    };
    for (const auto& [found, marker] : outside)
        text.replace(QRegularExpression(QString::fromUtf8(found)), QString::fromUtf8(marker));
    return text.toUtf8();
}

/// The first line that differs, for the message of a failure.
QByteArray difference(const QByteArray& one, const QByteArray& other)
{
    const QByteArrayList lines = one.split('\n');
    const QByteArrayList others = other.split('\n');
    int line = 0;
    while (line < lines.size() && line < others.size() && lines[line] == others[line])
        ++line;
    return "line " + QByteArray::number(line + 1) + " is\n" + lines.value(line) + "\nand not\n" + others.value(line);
}

} // namespace

void TstGoldenOutputs::initTestCase()
{
    workshop::makeInstallation();
    setLogging(false);
    keep(office(), QByteArray::fromHex("89504e470d0a1a0a0001020304"));
    keep(laterOffice(), QByteArray::fromHex("89504e470d0a1a0a0001020305"));
    inspecting::store(installation::root(), QStringLiteral("broken"), inspecting::documentWithStamp(7));
    QVERIFY(QFile::remove(path(QStringLiteral("UpdateCustom/broken/OrvexCustomXml.vrf"))));
    QVERIFY(QDir().mkpath(path(QStringLiteral("UpdateCustom/empty"))));
    inspecting::store(installation::root(), QStringLiteral("1763500000"),
                      inspecting::documentWithStamp(1763500000, QStringLiteral("deleted")));
    installation::clearLog();

    QTemporaryDir place(storeTemplate);
    QVERIFY(place.isValid());
    place.setAutoRemove(false);
    m_store = place.path();
    const auto put = [&](const QString& package, const char* name) {
        QVERIFY(QFile::copy(package, m_store + QLatin1Char('/') + QLatin1String(name)));
    };
    put(workshop::package(workshop::Setup), "good.tar.gz");
    put(workshop::package(workshop::CusUpdate), "good.zip");
    put(setupPackage(path(QStringLiteral("UpdateCustom/1763600000"))), "old.tar.gz");
    QVERIFY(QDir().rename(path(QStringLiteral("UpdateCustom/1763500000")), path(QStringLiteral("work/gone"))));
    put(setupPackage(path(QStringLiteral("work/gone"))), "gone.tar.gz");
    const QByteArray whole = installation::readFile(workshop::package(workshop::Setup));
    installation::writeFile(m_store + QStringLiteral("/cut.tar.gz"), whole.left(whole.size() / 2));
    for (const char* name :
         {"UpdateCustom", "OrvexSetup", "OrvexUpdate", "OrvexCusUpd", "Resources", "template", "7za"})
        installation::run(QStringLiteral("cp"), {QStringLiteral("-a"), path(QString::fromLatin1(name)), m_store});
    installation::writeFile(m_store + QStringLiteral("/Log/MainUI20260130.log"), logOfAGoodDay);
    installation::writeFile(m_store + QStringLiteral("/Log/MainUI20260131.log"), logOfABadDay);
    QVERIFY(QDir::setCurrent(m_store));
}

void TstGoldenOutputs::cleanupTestCase()
{
    QVERIFY(QDir::setCurrent(installation::root()));
    QDir(m_store).removeRecursively();
    installation::clear();
    QDir(path(QStringLiteral("work"))).removeRecursively();
}

void TstGoldenOutputs::outputIsAsKept_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("status");
    for (const Call& call : calls) {
        for (const char* language : languages) {
            for (const auto& form : forms) {
                if (!(call.forms & form.form))
                    continue;
                QStringList arguments = {QStringLiteral("--store"), m_store, QStringLiteral("--lang"),
                                         QString::fromLatin1(language)};
                arguments += QString::fromLatin1(call.words).split(QLatin1Char(' '));
                arguments += QString::fromLatin1(form.option).split(QLatin1Char(' '), Qt::SkipEmptyParts);
                QTest::addRow("%s.%s.%s", call.name, language, form.suffix) << arguments << call.status;
            }
        }
    }
}

void TstGoldenOutputs::outputIsAsKept()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, status);
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    const program::Outcome outcome = program::run(arguments);
    QVERIFY2(outcome.status == status, QByteArray::number(outcome.status) + ": " + outcome.errors);
    QCOMPARE(outcome.errors.isEmpty(), status != 2);
    QVERIFY(status != 2 || outcome.output.isEmpty());
    const QByteArray golden = installation::readFile(goldenFile(name));
    const QByteArray output = withMarkers(outcome.output + outcome.errors, m_store);
    if (const QString directory = qEnvironmentVariable("ORVEX_WRITE_GOLDEN"); !directory.isEmpty())
        installation::writeFile(directory + QLatin1Char('/') + name, output);
    QVERIFY2(output == golden, name.toUtf8() + ": " + difference(output, golden));
}

void TstGoldenOutputs::eachKeptOutputIsCompared()
{
    QStringList names;
    for (const Call& call : calls) {
        for (const char* language : languages) {
            for (const auto& form : forms) {
                if (call.forms & form.form)
                    names.append(
                        QStringLiteral("%1.%2.%3")
                            .arg(QLatin1String(call.name), QLatin1String(language), QLatin1String(form.suffix)));
            }
        }
    }
    names.sort();
    QCOMPARE(installation::namesIn(goldenFile(QString())), names);
}

TEST_ENTRY(goldenoutputs, runGuilessTest<TstGoldenOutputs>)
#include "tst_goldenoutputs.moc"
