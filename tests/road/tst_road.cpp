#include "road/RunningProgram.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"
#include "xml/CustomXmlParser.h"

#include <QDir>
#include <QFile>
#include <QImage>
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

} // namespace

class TstRoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();

    void threePackagesContainTheStoredCustomisation();
    void aPathWithBlanksAndChineseCharactersIsARoadToo();
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
    QString makeInstallation(const QString& name, bool bigTemplate = false);
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
    qputenv("ORVEX_TEMPLATE_FILES", "40");
    qputenv("ORVEX_TEMPLATE_MIB", "2");
    m_smallTemplate = installation::path(QStringLiteral("small-template"));
    installation::run(QStringLiteral(ORVEX_SOURCE_DIR "/scripts/make-sample-template.sh"), {m_smallTemplate});
    qunsetenv("ORVEX_TEMPLATE_FILES");
    qunsetenv("ORVEX_TEMPLATE_MIB");
}

void TstRoad::init()
{
    m_work = std::make_unique<QTemporaryDir>();
    QVERIFY(m_work->isValid());
    installation::clear();
}

/// A copy of the built installation, with a trailing slash.
QString TstRoad::makeInstallation(const QString& name, bool bigTemplate)
{
    const QString root = m_work->filePath(name) + QLatin1Char('/');
    QDir().mkpath(root);
    const QString built = QStringLiteral(ORVEX_INSTALLATION "/");
    installation::run(QStringLiteral("cp"), {QStringLiteral("-r"), built + QLatin1String("OrvexManager"),
                                             built + QLatin1String("7za"), built + QLatin1String("Resources"), root});
    installation::writeFile(root + QLatin1String("config.ini"), "[config]\nArea=tqm\nLangCode=1033\n");
    if (bigTemplate)
        installation::run(QStringLiteral(ORVEX_SOURCE_DIR "/scripts/make-sample-template.sh"),
                          {root + QLatin1String("template")});
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
    const QString shots = m_work->filePath(QStringLiteral("shots"));
    QDir().mkpath(shots);
    RunningProgram::Options played;
    played.remark = remark();
    played.icons = icons;
    played.shots = shots;
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
    const RunningProgram::Options played = options();
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
    for (int i = 0; i < 300; ++i) {
        CustomInfo record;
        record.common.cusTimeStamp = quint64(1700000000 + i);
        record.common.cusTimeString = QStringLiteral("2023-11-15 %1:%2:00")
                                          .arg(i / 60, 2, 10, QLatin1Char('0'))
                                          .arg(i % 60, 2, 10, QLatin1Char('0'));
        storeCustomisation(root, record);
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
    const QString root = makeInstallation(QStringLiteral("orvex"), true);
    RunningProgram program(*m_display, root, QStringLiteral("impatient"), options());
    QCOMPARE(program.waitForEnd(), 0);
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
