#include "package/ProductBuild.h"
#include "package/ScratchMachine.h"
#include "support/Installation.h"
#include "support/TestEntry.h"

#include <QCoreApplication>
#include <QDir>
#include <QtTest>

#include <memory>

using product::Outcome;

// The life of one installation, told in the order of the tests: each goes on where the one before it ended.

static const QString place = QStringLiteral("/opt/apps/com.manager.orvex.amd/files");
static const QString store =
    QStringLiteral("custom UpdateCustom template OrvexSetup OrvexUpdate OrvexCusUpd Log settings");

/// Paths and sums of all files and links there, modes and owners of those and of the directories.
static const QString stateScript = QStringLiteral("cd %1 && find %2 -printf '%p %M %u:%g %l\\n' | sort && "
                                                  "find %2 -type f -exec sha256sum {} + | sort -k 2")
                                       .arg(place, store);

/// All names where a package may put something, and the groups.
static const QString traceScript = QStringLiteral(
    "{ find /usr /opt /etc /home /srv /tmp /var/lib /var/spool -xdev "
    "! -path '/var/lib/dpkg/*' ! -path '/usr/share/icons/hicolor/icon-theme.cache' "
    "! -path '/etc/*-' ! -path '/tmp/kit/*' -printf '%p\\n' | sort -T /run; cat /etc/group /etc/passwd; }");

/// The commands of one of the handbook's recipes, a script for each block of them.
static QStringList recipe(const QString& title)
{
    const QString handbook = product::textOf(QStringLiteral(ORVEX_SOURCE_DIR "/docs/administrator.md"));
    const QString text = handbook.section(QLatin1String("### ") + title, 1).section(QLatin1String("\n##"), 0, 0);
    QStringList blocks;
    bool wasCommand = false;
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const bool isCommand = line.startsWith(QLatin1String("       "));
        if (isCommand && !wasCommand)
            blocks.append(QStringLiteral("set -e; cd %1\n").arg(place));
        if (isCommand)
            blocks.last() += line.trimmed() + QLatin1Char('\n');
        wasCommand = isCommand;
    }
    return blocks;
}

class TstInstalledPackage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void aMemberMakesACustomisationWithThreePackages();
    void whatTheManagerWroteIsTheGroupsAlone();
    void thePackagesHaveTheModesOfTheTemplate();
    void anOutsiderReadsNothingOfTheStore();
    void anOutsiderIsToldHowToBecomeAMember();
    void theDesktopShowsTheRefusalToo();
    void aMemberOfAnEarlierLoginIsToldToLogInAgain();
    void membersCannotReplaceThePrograms();
    void noMemberPutsAPluginWhereQtLooksForOne();
    void noMemberPutsAScriptThatTheManagerRuns();
    void theManagerRefusesWhatAMemberMightHaveItRun_data();
    void theManagerRefusesWhatAMemberMightHaveItRun();
    void rootDoesNotStartTheManager();
    void aSecondMemberDeletesAndFinishesWhatTheFirstMade();
    void eachMemberChangesTheLanguage();
    void whatAKilledManagerLeftIsNotPackedByAnother();
    void theInspectorFindsTheStoreFromEverywhere();
    void theHandbooksNewTemplateTakesThePlaceOfAnothersForAll();
    void theHandbooksWayToANewMachineKeepsAll();
    void noMemberWritesInThePlaceWhileItIsConfigured();
    void theConfigurationFollowsNoLinkOfAMember();
    void whatTheAdministratorOverridesHoldsAfterConfiguring();
    void anUpgradeChangesNothingOfTheStore();
    void aRemovalKeepsTheStoreAndTheNextInstallationFindsIt();
    void aPurgeLeavesWhatOthersPutThere();
    void aPurgeLeavesNoTrace();
    void anInstallationByHandIsTakenOverWithItsSettings();
    void settingsInThePlaceOfTheLinkHoldAndTheOthersAreKept();
    void aPurgeAfterABrokenConfigurationLeavesNoTrace();
    void aPurgeKeepsAGroupThatThePackageFound();
    void theArchiveRunsInADirectoryOfItsUser();
    void theArchiveBelowADirectoryOfAGroupIsItsUsersAlone();
    void theArchiveSaysWhereItMayNotWrite();

private:
    /// The lines that the player tells; the test fails when the program does not come to its end.
    QStringList play(const QString& user, const QString& script,
                     const QString& command = QStringLiteral("orvex-manager"));
    QStringList rows(const QString& user);
    QString state();
    QString trace();
    void install(const QString& package);
    /// Runs the script by which dpkg configures the package.
    Outcome configure(const QString& before = QString());
    QString modeOfPlace();

    std::unique_ptr<ScratchMachine> m_machine;
    product::Packages m_packages;
    QString m_untouched; // the traces before the first installation
};

#define SUCCEEDS(call)                                                                                                 \
    do {                                                                                                               \
        const Outcome outcome_ = (call);                                                                               \
        QVERIFY2(outcome_.status == 0, qPrintable(outcome_.output + outcome_.errors));                                 \
    } while (false)

QStringList TstInstalledPackage::play(const QString& user, const QString& script, const QString& command)
{
    const Outcome outcome = m_machine->as(
        user, command,
        {QStringLiteral("DISPLAY=:7"), QLatin1String("XDG_RUNTIME_DIR=/run/") + user, QStringLiteral("LANG=C.UTF-8"),
         QStringLiteral("LC_ALL=C.UTF-8"), QStringLiteral("QT_PLUGIN_PATH=/tmp/kit/player"),
         QStringLiteral("QT_QPA_GENERIC_PLUGINS=orvexplayer:") + script,
         QStringLiteral("ORVEX_PLAY_ICONS=/tmp/kit/icons"), QStringLiteral("ORVEX_PLAY_REMARK=北京分部 客户端 1.0")});
    if (outcome.status != 0)
        QTest::qFail(qPrintable(QStringLiteral("%1 as %2: status %3\n%4%5")
                                    .arg(script, user)
                                    .arg(outcome.status)
                                    .arg(outcome.output.right(4000), outcome.errors.right(4000))),
                     __FILE__, __LINE__);
    return outcome.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QStringList TstInstalledPackage::rows(const QString& user)
{
    return play(user, QStringLiteral("history")).filter(QStringLiteral("  history: "));
}

QString TstInstalledPackage::state()
{
    const Outcome outcome = m_machine->asRoot(stateScript);
    return outcome.status == 0 ? outcome.output : outcome.errors;
}

QString TstInstalledPackage::trace()
{
    return m_machine->asRoot(traceScript).output;
}

void TstInstalledPackage::install(const QString& package)
{
    const QString target = QStringLiteral("/tmp/kit/package.deb");
    QVERIFY(m_machine->put(package, target));
    const Outcome outcome = m_machine->asRoot(QLatin1String("DEBIAN_FRONTEND=noninteractive dpkg -i ") + target +
                                              QLatin1String(" </dev/null"));
    QVERIFY2(outcome.status == 0, qPrintable(outcome.output + outcome.errors));
}

Outcome TstInstalledPackage::configure(const QString& before)
{
    return m_machine->asRoot(before + QStringLiteral(" /var/lib/dpkg/info/orvex-manager.postinst configure 1.0.0"));
}

QString TstInstalledPackage::modeOfPlace()
{
    return m_machine->asRoot(QStringLiteral("stat -c '%a %U:%G' %1").arg(place)).output.trimmed();
}

void TstInstalledPackage::initTestCase()
{
    const QString directory = QCoreApplication::applicationDirPath() + QLatin1String("/machine");
    QVERIFY(QDir().mkpath(directory));
    m_machine = std::make_unique<ScratchMachine>(directory);
    QVERIFY2(m_machine->complaint().isEmpty(), qPrintable(m_machine->complaint()));
    m_packages = product::makePackages();
    QVERIFY(!m_packages.debian.isEmpty());

    installation::clear();
    installation::makeSmallTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    installation::makeSmallTemplate(QStringLiteral("OrvexClient_MacOS"), QStringLiteral("OrvexClient.pkg"));
    const QString source = QStringLiteral(ORVEX_SOURCE_DIR "/");
    const std::pair<QString, const char*> kit[] = {
        {QStringLiteral(ORVEX_PLAYER), "player/generic/liborvexplayer.so"},
        {installation::path(QStringLiteral("template/OrvexClient_Linux64.tar.gz")),
         "template/OrvexClient_Linux64.tar.gz"},
        {installation::path(QStringLiteral("template/OrvexClient_MacOS.tar.gz")), "template/OrvexClient_MacOS.tar.gz"},
        {source + QLatin1String("Resources/tqmlogo.png"), "icons/client.png"},
        {source + QLatin1String("Resources/icon4.ico"), "icons/client.ico"},
        {source + QLatin1String("scripts/check-packages.sh"), "check-packages.sh"},
    };
    for (const auto& [from, to] : kit)
        QVERIFY2(m_machine->put(from, QLatin1String("/tmp/kit/") + QLatin1String(to)), to);
    SUCCEEDS(m_machine->asRoot(QStringLiteral(
        "for name in first second outsider; do useradd -m $name; install -d -m 0700 -o $name /run/$name; done")));
    QVERIFY(m_machine->startDisplay());
    m_untouched = trace();
    QVERIFY(m_untouched.contains(QLatin1String("/home/outsider")));
}

void TstInstalledPackage::aMemberMakesACustomisationWithThreePackages()
{
    install(m_packages.debian);
    SUCCEEDS(m_machine->asRoot(QStringLiteral("usermod -aG orvex-manager first; usermod -aG orvex-manager second; "
                                              "cp /tmp/kit/template/* %1/template/")
                                   .arg(place)));
    const QStringList told = play(QStringLiteral("first"), QStringLiteral("road"));
    QCOMPARE(told.filter(QStringLiteral("  history: ")).size(), 1);
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("bash /tmp/kit/check-packages.sh ") + place));
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("orvex-inspect verify")));
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("cmp %1/qt_zh_CN.qm "
                                                                   "/usr/share/qt5/translations/qtbase_zh_CN.qm")
                                                        .arg(place)));
}

void TstInstalledPackage::whatTheManagerWroteIsTheGroupsAlone()
{
    SUCCEEDS(
        m_machine->asRoot(QStringLiteral("test \"$(stat -c '%a %U:%G' %1)\" = '3770 root:orvex-manager'").arg(place)));
    const Outcome kinds = m_machine->asRoot(
        QStringLiteral("cd %1 && stat -c '%a %U:%G %n' UpdateCustom OrvexSetup OrvexUpdate OrvexCusUpd Log settings | "
                       "sed 's/ [^ ]*$//' | sort | uniq -c")
            .arg(place));
    QCOMPARE(kinds.output.simplified(), QStringLiteral("6 2770 root:orvex-manager"));
    // Whatever a member has written, another may read and delete.
    const Outcome odd =
        m_machine->asRoot(QStringLiteral("cd %1 && find UpdateCustom Orvex{Setup,Update,CusUpd} Log settings "
                                         "\\( ! -group orvex-manager -o -type d ! -perm -2770 -o "
                                         "-type f ! -perm -g=r \\) -ls")
                              .arg(place));
    QCOMPARE(odd.status, 0);
    QCOMPARE(odd.output, QString());
}

void TstInstalledPackage::thePackagesHaveTheModesOfTheTemplate()
{
    // Name and mode of each member; the customisation is readable for everyone who runs the client.
    const auto members = [this](const QString& command) {
        return m_machine->as(QStringLiteral("first"), command + QStringLiteral(" | awk '{print $6, $1}' | sort"))
            .output;
    };
    const QString client = members(QStringLiteral("tar -tvzf %1/template/OrvexClient_Linux64.tar.gz").arg(place));
    QVERIFY(client.contains(QLatin1String("OrvexClient/ drwxr-xr-x\n")));
    QCOMPARE(members(QStringLiteral("tar -tvzf %1/OrvexSetup/*.tar.gz | grep -v OrvexClient/custom/").arg(place)),
             client);
    for (const char* tail : {"OrvexSetup/*.tar.gz", "OrvexCusUpd/*.zip"}) {
        const QString read = QString::fromLatin1(tail).endsWith(QLatin1String("zip"))
                                 ? QStringLiteral("cd $(mktemp -d -p ~) && 7za x %1/%2 >/dev/null && tar -tvzf Dot1X*")
                                 : QStringLiteral("tar -tvzf %1/%2");
        const QString custom = members(read.arg(place, QLatin1String(tail)) + QStringLiteral(" | grep custom/"));
        QVERIFY2(custom.contains(QLatin1String("custom/ drwxrwxr-x\n")), qPrintable(custom));
        QVERIFY2(custom.contains(QLatin1String("custom/OrvexCustom.xml -rw-rw-r--\n")), qPrintable(custom));
        QCOMPARE(custom.split(QLatin1Char('\n'), Qt::SkipEmptyParts)
                     .filter(QRegularExpression(QStringLiteral("r-[x-]$|r--$")))
                     .size(),
                 custom.count(QLatin1Char('\n')));
    }
}

void TstInstalledPackage::anOutsiderReadsNothingOfTheStore()
{
    const QString files =
        m_machine
            ->asRoot(QStringLiteral("cd / && find %1/{custom,UpdateCustom,OrvexSetup,OrvexUpdate,OrvexCusUpd,"
                                    "template,Log,settings} -type f")
                         .arg(place))
            .output;
    // Document and verification twice, icons, three packages, two templates, log, settings.
    const QStringList paths = files.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QVERIFY2(paths.size() >= 13, qPrintable(files));
    for (const QString& path : paths) {
        const QString script = QStringLiteral("cat '%1' >/dev/null").arg(path);
        QVERIFY2(m_machine->as(QStringLiteral("first"), script).status == 0, qPrintable(path));
        QVERIFY2(m_machine->as(QStringLiteral("outsider"), script).status != 0, qPrintable(path));
    }
    const Outcome list = m_machine->as(QStringLiteral("outsider"), QStringLiteral("orvex-inspect list"));
    QCOMPARE(list.status, 2);
    QCOMPARE(list.output, QString());
    QVERIFY2(list.errors.contains(QLatin1String("only members of the group orvex-manager may")),
             qPrintable(list.errors));
}

void TstInstalledPackage::anOutsiderIsToldHowToBecomeAMember()
{
    const Outcome english = m_machine->as(QStringLiteral("outsider"), QStringLiteral("orvex-manager"));
    QCOMPARE(english.status, 1);
    QCOMPARE(english.output, QString());
    QVERIFY(english.errors.startsWith(QLatin1String("orvex-manager: outsider is not in the group orvex-manager")));
    QVERIFY(english.errors.contains(QLatin1String("adduser outsider orvex-manager")));
    QCOMPARE(english.errors.count(QLatin1Char('\n')), 1);
    const Outcome chinese = m_machine->as(QStringLiteral("outsider"), QStringLiteral("orvex-manager"),
                                          {QStringLiteral("LANG=zh_CN.UTF-8")});
    QVERIFY(chinese.errors.contains(QStringLiteral("outsider 不在组 orvex-manager 中")));
}

void TstInstalledPackage::theDesktopShowsTheRefusalToo()
{
    // Whatever shows messages on this machine, in its place one that writes them down.
    const QString script = QStringLiteral(
        "mkdir -p bin; for tool in zenity kdialog xmessage notify-send; do "
        "printf '#!/bin/sh\\n{ printf \"%%s|\" \"$@\"; cat; } >shown\\n' >bin/$tool; chmod +x bin/$tool; done; "
        "PATH=$PWD/bin:$PATH DISPLAY=:7 orvex-manager </dev/null; echo \"status $?\"; cat shown");
    const Outcome outcome = m_machine->as(QStringLiteral("outsider"), script);
    QVERIFY(outcome.output.startsWith(QLatin1String("status 1\n")));
    QVERIFY(outcome.output.contains(QLatin1String("Orvex Customisation Manager")));
    QVERIFY(outcome.output.contains(QLatin1String("outsider is not in the group orvex-manager")));
    QVERIFY(outcome.errors.contains(QLatin1String("outsider is not in the group orvex-manager")));
}

void TstInstalledPackage::aMemberOfAnEarlierLoginIsToldToLogInAgain()
{
    const Outcome outcome = m_machine->asRoot(
        QStringLiteral("setpriv --reuid=first --regid=first --clear-groups env -i PATH=/usr/bin:/bin orvex-manager"));
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.contains(QLatin1String("log out and in again")), qPrintable(outcome.errors));
    QVERIFY(!outcome.errors.contains(QLatin1String("adduser")));
}

void TstInstalledPackage::membersCannotReplaceThePrograms()
{
    const QString before = m_machine->asRoot(QStringLiteral("cd %1 && ls -lA").arg(place)).output;
    for (const char* name :
         {"OrvexManager", "orvex-inspect", "7za", "qt.conf", "Resources", "config.ini", "UpdateCustom"}) {
        const QString script = QStringLiteral("cd %1 && mv -T %2 taken || rm %2").arg(place, QLatin1String(name));
        QVERIFY2(m_machine->as(QStringLiteral("first"), script).status != 0, name);
    }
    QCOMPARE(m_machine->asRoot(QStringLiteral("cd %1 && ls -lA").arg(place)).output, before);
}

void TstInstalledPackage::noMemberPutsAPluginWhereQtLooksForOne()
{
    // Qt tells where it looks, whether there is such a directory or not.
    const Outcome looked = m_machine->as(QStringLiteral("second"), QStringLiteral("orvex-manager"),
                                         {QStringLiteral("DISPLAY=:7"), QStringLiteral("XDG_RUNTIME_DIR=/run/second"),
                                          QStringLiteral("LC_ALL=C.UTF-8"), QStringLiteral("QT_DEBUG_PLUGINS=1"),
                                          QStringLiteral("QT_PLUGIN_PATH=/tmp/kit/player"),
                                          QStringLiteral("QT_QPA_GENERIC_PLUGINS=orvexplayer:leave")});
    QCOMPARE(looked.status, 0);
    QRegularExpressionMatchIterator kinds =
        QRegularExpression(QStringLiteral("directory path \"%1/([^\"]+)\"").arg(place)).globalMatch(looked.errors);
    QStringList names;
    while (kinds.hasNext())
        names.append(kinds.next().captured(1));
    for (const char* kind : {"generic", "imageformats", "platforms", "styles"})
        QVERIFY2(names.contains(QLatin1String(kind)), kind);
    for (const QString& name : qAsConst(names)) {
        QCOMPARE(m_machine->asRoot(QStringLiteral("stat -c '%a %U:%G %F' %1/%2; ls -A %1/%2").arg(place, name)).output,
                 QStringLiteral("755 root:root directory\n"));
        const QString script =
            QStringLiteral("cd %1; cp /tmp/kit/player/generic/*.so %2/ || mv -T %2 taken || rm -r %2").arg(place, name);
        QVERIFY2(m_machine->as(QStringLiteral("first"), script).status != 0, qPrintable(name));
    }
}

void TstInstalledPackage::noMemberPutsAScriptThatTheManagerRuns()
{
    // Tried while another's manager is open, past its checks, too: so the names themselves are taken.
    for (const char* name : {"makeDeb.sh", "makeUpgradeDeb.sh", "makeCusPack.sh"}) {
        const QString script =
            QStringLiteral("cd %1; printf '#!/bin/sh\\ntouch /tmp/ran\\n' >~/mine; chmod +x ~/mine; "
                           "cp --remove-destination ~/mine %2 || cp ~/mine %2 || mv -f -T ~/mine %2 || "
                           "ln -sf ~/mine %2 || ln -f ~/mine %2")
                .arg(place, QLatin1String(name));
        QVERIFY2(m_machine->as(QStringLiteral("first"), script).status != 0, name);
        // To the manager and the inspector none is there.
        QVERIFY(m_machine->asRoot(QStringLiteral("test -e %1/%2").arg(place, QLatin1String(name))).status != 0);
    }
    // What the client's own build puts there takes the place of the link, and runs.
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; printf '#!/bin/sh\\n' >/run/own; install /run/own makeDeb.sh; "
                                              "test ! -L makeDeb.sh")
                                   .arg(place)));
    play(QStringLiteral("second"), QStringLiteral("leave"));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; rm makeDeb.sh").arg(place)));
    SUCCEEDS(configure());
    SUCCEEDS(m_machine->asRoot(QStringLiteral("test -L %1/makeDeb.sh").arg(place)));
}

void TstInstalledPackage::theManagerRefusesWhatAMemberMightHaveItRun_data()
{
    QTest::addColumn<QString>("freed"); // as root, as it may stand before the package held these names
    QTest::addColumn<QString>("planted");
    QTest::addColumn<QString>("told");
    const auto row = [](const char* name, const char* freed, const char* planted, const char* told) {
        QTest::newRow(name) << QString::fromLatin1(freed) << QString::fromLatin1(planted) << QString::fromLatin1(told);
    };
    row("script", "rm makeDeb.sh", "cp /bin/true makeDeb.sh", "makeDeb.sh");
    row("script of root's that members write",
        "rm makeCusPack.sh; install -m 0775 -g orvex-manager /bin/true makeCusPack.sh", "true", "makeCusPack.sh");
    row("link of root's to a member's script", "ln -sfT /home/first/script makeDeb.sh", "cp /bin/true ~/script",
        "makeDeb.sh");
    row("plugins", "rmdir generic", "mkdir generic; cp /tmp/kit/player/generic/*.so generic", "generic");
    row("link to plugins", "rmdir styles", "ln -s /tmp/kit/player/generic styles", "styles");
    row("library beside the program", "true", "cp /tmp/kit/player/generic/*.so .", "liborvexplayer.so");
    row("library of any kind of plugins", "true", "mkdir -p org/kde; cp /bin/true org/kde/one.so.5",
        "org/kde/one.so.5");
    row("link", "true", "ln -s /home/first elsewhere", "elsewhere");
    row("directory that shows nothing", "true", "mkdir -m 0711 closed", "closed");
}

void TstInstalledPackage::theManagerRefusesWhatAMemberMightHaveItRun()
{
    QFETCH(QString, freed);
    QFETCH(QString, planted);
    QFETCH(QString, told);
    const QString names = QStringLiteral("cd %1; ls -lA | grep -v '^total'").arg(place);
    const QString before = m_machine->asRoot(names).output;
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; %2").arg(place, freed)));
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("cd %1; umask 0022; %2").arg(place, planted)));
    const Outcome refused = m_machine->as(QStringLiteral("second"), QStringLiteral("orvex-manager"));
    const Outcome chinese =
        m_machine->as(QStringLiteral("second"), QStringLiteral("orvex-manager"), {QStringLiteral("LANG=zh_CN.UTF-8")});
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; rm -rf %2 org; dpkg -i /tmp/kit/package.deb").arg(place, told)));
    QCOMPARE(m_machine->asRoot(names).output.count(QLatin1Char('\n')), before.count(QLatin1Char('\n')));
    QCOMPARE(refused.status, 1);
    QVERIFY2(refused.errors.contains(
                 QStringLiteral("orvex-manager: %1/%2 can be written by others than root").arg(place, told)),
             qPrintable(refused.errors));
    QVERIFY(chinese.errors.contains(QStringLiteral("可由 root 以外的用户写入")));
    play(QStringLiteral("second"), QStringLiteral("leave"));
}

void TstInstalledPackage::rootDoesNotStartTheManager()
{
    const Outcome english = m_machine->asRoot(QStringLiteral("orvex-manager"));
    QCOMPARE(english.status, 1);
    QVERIFY2(english.errors.contains(QLatin1String("orvex-manager: root does not use the manager")),
             qPrintable(english.errors));
    const Outcome chinese = m_machine->asRoot(QStringLiteral("LC_ALL= LANG=zh_CN.UTF-8 orvex-manager"));
    QVERIFY(chinese.errors.contains(QStringLiteral("root 不能使用本程序")));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("orvex-manager --version")));
}

void TstInstalledPackage::aSecondMemberDeletesAndFinishesWhatTheFirstMade()
{
    const QStringList afterwards = play(QStringLiteral("second"), QStringLiteral("delete"));
    QCOMPARE(afterwards.filter(QStringLiteral("  history: ")), QStringList());
    QCOMPARE(m_machine->asRoot(QStringLiteral("ls -A %1/UpdateCustom").arg(place)).output, QString());

    // Each finishes over the packages and the working directory that the other has left.
    QCOMPARE(play(QStringLiteral("second"), QStringLiteral("reuse")).filter(QStringLiteral("  history: ")).size(), 1);
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("bash /tmp/kit/check-packages.sh ") + place));
    // Two customisations of one second would be one entry.
    QTest::qSleep(1100);
    QCOMPARE(play(QStringLiteral("first"), QStringLiteral("road")).filter(QStringLiteral("  history: ")).size(), 2);
    SUCCEEDS(m_machine->as(QStringLiteral("second"), QStringLiteral("bash /tmp/kit/check-packages.sh ") + place));
    SUCCEEDS(m_machine->as(QStringLiteral("second"), QStringLiteral("orvex-inspect verify")));
    whatTheManagerWroteIsTheGroupsAlone();
    thePackagesHaveTheModesOfTheTemplate();
}

void TstInstalledPackage::eachMemberChangesTheLanguage()
{
    for (const char* user : {"first", "second", "first"}) {
        play(QLatin1String(user), QStringLiteral("languages"));
        const Outcome settings =
            m_machine->asRoot(QStringLiteral("cd %1; cat config.ini; stat -c '%a %G' settings/config.ini; "
                                             "sed -i s/2052/1033/ settings/config.ini")
                                  .arg(place));
        QVERIFY2(settings.output.contains(QLatin1String("LangCode=2052\n")), qPrintable(settings.output));
        QVERIFY(settings.output.contains(QLatin1String("Area=tqm\n")));
        QVERIFY2(settings.output.endsWith(QLatin1String("660 orvex-manager\n")), qPrintable(settings.output));
    }
    QCOMPARE(m_machine->asRoot(QStringLiteral("readlink %1/config.ini").arg(place)).output,
             QStringLiteral("settings/config.ini\n"));
}

void TstInstalledPackage::whatAKilledManagerLeftIsNotPackedByAnother()
{
    SUCCEEDS(m_machine->as(QStringLiteral("first"),
                           QStringLiteral("umask 0007; mkdir -p %1/template/Temp/OrvexClient/custom; "
                                          "chmod 750 %1/template/Temp/OrvexClient")
                               .arg(place)));
    const Outcome refused = m_machine->as(QStringLiteral("second"), QStringLiteral("orvex-manager"));
    QCOMPARE(refused.status, 1);
    QVERIFY2(refused.errors.contains(QLatin1String("a manager of first was ended")), qPrintable(refused.errors));
    play(QStringLiteral("first"), QStringLiteral("leave"));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("test ! -e %1/template/Temp").arg(place)));
    play(QStringLiteral("second"), QStringLiteral("leave"));
}

void TstInstalledPackage::theInspectorFindsTheStoreFromEverywhere()
{
    const QString entries = m_machine->asRoot(QStringLiteral("ls %1/UpdateCustom").arg(place)).output;
    QCOMPARE(entries.count(QLatin1Char('\n')), 2);
    for (const char* directory : {"/", "/home/second", "/usr/share"}) {
        const Outcome list = m_machine->as(
            QStringLiteral("second"), QStringLiteral("cd %1; orvex-inspect list --json").arg(QLatin1String(directory)));
        QCOMPARE(list.status, 0);
        for (const QString& entry : entries.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            QVERIFY(list.output.contains(QStringLiteral("\"entry\": \"%1\"").arg(entry)));
    }
    const Outcome doctor = m_machine->as(QStringLiteral("second"), QStringLiteral("orvex-inspect doctor"));
    QVERIFY2(doctor.status == 0, qPrintable(doctor.output));
}

void TstInstalledPackage::theHandbooksNewTemplateTakesThePlaceOfAnothersForAll()
{
    const QStringList blocks = recipe(QStringLiteral("Rolling out a new client version to all customisations"));
    const QString script = blocks.filter(QStringLiteral("/media/usb/")).join(QString());
    QVERIFY(!script.isEmpty());
    SUCCEEDS(m_machine->asRoot(QStringLiteral("mkdir -p /media/usb; cp /tmp/kit/template/* /media/usb; "
                                              "echo older >%1/template/OrvexClient_Linux64.tar.gz")
                                   .arg(place)));
    SUCCEEDS(m_machine->as(QStringLiteral("second"), QLatin1String("umask 0077; ") + script));
    SUCCEEDS(m_machine->as(
        QStringLiteral("first"),
        QStringLiteral("cmp %1/template/OrvexClient_Linux64.tar.gz /media/usb/OrvexClient_Linux64.tar.gz").arg(place)));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("rm -r /media/usb")));
}

void TstInstalledPackage::theHandbooksWayToANewMachineKeepsAll()
{
    // On the old machine, for an archive, for the package, to compare.
    const QStringList blocks = recipe(QStringLiteral("Moving to a new machine"));
    QCOMPARE(blocks.size(), 4);

    SUCCEEDS(m_machine->asRoot(QStringLiteral("echo LangCode=1033 >>%1/config.ini").arg(place)));
    const QString settings = m_machine->asRoot(QStringLiteral("cat %1/config.ini").arg(place)).output;
    SUCCEEDS(m_machine->asRoot(blocks.at(0)));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; mv orvex-data.tar.gz history.txt /run; dpkg -P orvex-manager; "
                                              "rm -r /opt/apps; groupdel orvex-manager 2>/dev/null; true")
                                   .arg(place)));
    install(m_packages.debian);
    SUCCEEDS(m_machine->asRoot(QStringLiteral("usermod -aG orvex-manager first; usermod -aG orvex-manager second; "
                                              "mv /run/orvex-data.tar.gz /run/history.txt %1")
                                   .arg(place)));
    SUCCEEDS(m_machine->asRoot(blocks.at(2)));
    // Members can write the templates too, whose directory takes no bit into the packages.
    QCOMPARE(m_machine
                 ->asRoot(QStringLiteral("cd %1; find template ! -group orvex-manager -o ! -perm -0060 -o -perm /2000")
                              .arg(place))
                 .output,
             QString());
    SUCCEEDS(m_machine->as(QStringLiteral("second"), blocks.at(3)));
    SUCCEEDS(
        m_machine->asRoot(QStringLiteral("cd %1; rm orvex-data.tar.gz history.txt; test -L config.ini").arg(place)));
    QCOMPARE(m_machine->asRoot(QStringLiteral("cat %1/config.ini").arg(place)).output, settings);

    // As before: another member deletes the newest and makes one instead.
    QCOMPARE(play(QStringLiteral("second"), QStringLiteral("delete")).filter(QStringLiteral("  history: ")).size(), 1);
    QCOMPARE(play(QStringLiteral("first"), QStringLiteral("road")).filter(QStringLiteral("  history: ")).size(), 2);
    play(QStringLiteral("first"), QStringLiteral("languages"));
    whatTheManagerWroteIsTheGroupsAlone();
}

void TstInstalledPackage::noMemberWritesInThePlaceWhileItIsConfigured()
{
    // Before each directory is given to the group, a member tries to put a name beside and below.
    SUCCEEDS(m_machine->asRoot(
        QStringLiteral(
            "mkdir /tmp/kit/race; cat >/tmp/kit/race/dpkg-statoverride <<'EOF'\n#!/bin/sh\n"
            "cd %1\n"
            "for name in planted template/planted; do\n"
            "    [ $name = planted ] || [ \"$2\" = %1/settings ] || continue\n"
            "    setpriv --reuid=first --regid=first --init-groups ln -s /etc $name && echo $name >>/run/raced\n"
            "    echo $name >>/run/tried\ndone\n"
            "exec /usr/bin/dpkg-statoverride \"$@\"\nEOF\nchmod +x /tmp/kit/race/*")
            .arg(place)));
    const QString before = state();
    SUCCEEDS(configure(QStringLiteral("PATH=/tmp/kit/race:$PATH")));
    const Outcome tried = m_machine->asRoot(QStringLiteral("grep -c '^planted' /run/tried; cat /run/raced; "
                                                           "rm -f %1/planted %1/template/planted")
                                                .arg(place));
    // Eight directories, settings once more, and the place itself. The template directory stays the members' own.
    QVERIFY2(tried.output.startsWith(QLatin1String("10\n")), qPrintable(tried.output));
    QVERIFY2(!tried.output.contains(QLatin1String("\nplanted")), qPrintable(tried.output));
    QVERIFY2(tried.output.contains(QLatin1String("\ntemplate/planted")), "the member could not have raced");
    QCOMPARE(state(), before);
    QCOMPARE(modeOfPlace(), QStringLiteral("3770 root:orvex-manager"));
}

void TstInstalledPackage::theConfigurationFollowsNoLinkOfAMember()
{
    SUCCEEDS(m_machine->asRoot(QStringLiteral("mkdir -m 0755 /srv/victim; cd %1; mv settings /run; "
                                              "rm config.ini; printf '[config]\\n' >config.ini")
                                   .arg(place)));
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("ln -s /srv/victim %1/settings").arg(place)));
    const Outcome outcome = configure();
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.contains(QStringLiteral("%1/settings is a link that root has not made").arg(place)),
             qPrintable(outcome.errors));
    QCOMPARE(m_machine->asRoot(QStringLiteral("stat -c '%a %U:%G' /srv/victim; ls -A /srv/victim")).output,
             QStringLiteral("755 root:root\n"));
    SUCCEEDS(m_machine->asRoot(
        QStringLiteral("rmdir /srv/victim; cd %1; rm settings config.ini; mv /run/settings .").arg(place)));
    SUCCEEDS(configure());
}

void TstInstalledPackage::whatTheAdministratorOverridesHoldsAfterConfiguring()
{
    SUCCEEDS(
        m_machine->asRoot(QStringLiteral("dpkg-statoverride --update --add root orvex-manager 3771 %1").arg(place)));
    SUCCEEDS(configure());
    QCOMPARE(modeOfPlace(), QStringLiteral("3771 root:orvex-manager"));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg-statoverride --remove %1").arg(place)));
    SUCCEEDS(configure());
    QCOMPARE(modeOfPlace(), QStringLiteral("3770 root:orvex-manager"));
}

void TstInstalledPackage::anUpgradeChangesNothingOfTheStore()
{
    const QString before = state();
    QVERIFY(before.contains(QLatin1String("OrvexCustom.xml")));
    const QStringList history = rows(QStringLiteral("first"));
    QCOMPARE(history.size(), 2);
    const QString list = m_machine->as(QStringLiteral("first"), QStringLiteral("orvex-inspect list")).output;
    const QString logs = QStringLiteral("Log/");
    const auto withoutLog = [&](const QString& text) {
        QStringList lines = text.split(QLatin1Char('\n'));
        lines.erase(
            std::remove_if(lines.begin(), lines.end(), [&](const QString& line) { return line.contains(logs); }),
            lines.end());
        return lines.join(QLatin1Char('\n'));
    };

    const QString newer = product::repacked(m_packages.debian, QStringLiteral("1.0.1"));
    QVERIFY(!newer.isEmpty());
    const QString atRest = state();
    install(newer);
    QCOMPARE(state(), atRest);
    QCOMPARE(withoutLog(atRest), withoutLog(before));
    QCOMPARE(m_machine->asRoot(QStringLiteral("dpkg-query -W -f '${Version}' orvex-manager")).output,
             QStringLiteral("1.0.1"));
    QCOMPARE(rows(QStringLiteral("second")), history);
    QCOMPARE(m_machine->as(QStringLiteral("first"), QStringLiteral("orvex-inspect list")).output, list);
}

void TstInstalledPackage::aRemovalKeepsTheStoreAndTheNextInstallationFindsIt()
{
    const QStringList history = rows(QStringLiteral("first"));
    QCOMPARE(history.size(), 2);
    const QString list = m_machine->as(QStringLiteral("first"), QStringLiteral("orvex-inspect list")).output;
    const QString before = state();
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg -r orvex-manager")));
    // Nobody prepares the next installation.
    QCOMPARE(modeOfPlace(), QStringLiteral("3750 root:orvex-manager"));
    for (const char* gone :
         {"/usr/bin/orvex-manager", "/usr/bin/orvex-inspect", "/opt/apps/com.manager.orvex.amd/files/OrvexManager",
          "/usr/share/applications/com.manager.orvex.amd.desktop"})
        QVERIFY2(m_machine->asRoot(QStringLiteral("test ! -e %1").arg(QLatin1String(gone))).status == 0, gone);
    QCOMPARE(state(), before);
    QVERIFY(m_machine->as(QStringLiteral("outsider"), QStringLiteral("cat %1/custom/*").arg(place)).status != 0);

    install(m_packages.debian);
    QCOMPARE(modeOfPlace(), QStringLiteral("3770 root:orvex-manager"));
    QCOMPARE(state(), before);
    QCOMPARE(rows(QStringLiteral("second")), history);
    QCOMPARE(m_machine->as(QStringLiteral("first"), QStringLiteral("orvex-inspect list")).output, list);
    SUCCEEDS(m_machine->as(QStringLiteral("first"), QStringLiteral("orvex-inspect verify")));
}

void TstInstalledPackage::aPurgeLeavesWhatOthersPutThere()
{
    // One file beside those of the package in each kind of place, and the client's templates.
    SUCCEEDS(m_machine->asRoot(
        QStringLiteral("cd %1 && rm makeDeb.sh && touch makeDeb.sh custom/note Log/own.log OrvexSetup/mine.tar.gz "
                       "settings/other.ini && touch UpdateCustom/$(ls UpdateCustom | head -n 1)/note && "
                       "mkdir UpdateCustom/own && touch UpdateCustom/own/OrvexCustom.xml")
            .arg(place)));
    const QString entry =
        m_machine->asRoot(QStringLiteral("ls %1/UpdateCustom | head -n 1").arg(place)).output.trimmed();
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg -P orvex-manager")));
    const Outcome left = m_machine->asRoot(QStringLiteral("cd %1 && find . ! -type d | sort").arg(place));
    QStringList expected{QStringLiteral("./Log/own.log"),
                         QStringLiteral("./OrvexSetup/mine.tar.gz"),
                         QStringLiteral("./UpdateCustom/%1/note").arg(entry),
                         QStringLiteral("./UpdateCustom/own/OrvexCustom.xml"),
                         QStringLiteral("./custom/note"),
                         QStringLiteral("./makeDeb.sh"),
                         QStringLiteral("./settings/other.ini"),
                         QStringLiteral("./template/OrvexClient_Linux64.tar.gz"),
                         QStringLiteral("./template/OrvexClient_MacOS.tar.gz")};
    QCOMPARE(left.output.split(QLatin1Char('\n'), Qt::SkipEmptyParts), expected);
    // No directory is left empty, and none is left to a group that may be given away again.
    QCOMPARE(m_machine->asRoot(QStringLiteral("cd %1 && find . -type d -empty").arg(place)).output, QString());
    QCOMPARE(m_machine->asRoot(QStringLiteral("find / -xdev -nogroup -path '/opt/*'")).output, QString());
    QVERIFY(m_machine->as(QStringLiteral("outsider"), QStringLiteral("cat %1/custom/note").arg(place)).status != 0);
}

void TstInstalledPackage::aPurgeLeavesNoTrace()
{
    SUCCEEDS(m_machine->asRoot(QStringLiteral("rm -r /opt/apps; groupdel orvex-manager 2>/dev/null || true")));
    install(m_packages.debian);
    SUCCEEDS(m_machine->asRoot(
        QStringLiteral("usermod -aG orvex-manager first; cp /tmp/kit/template/* %1/template/").arg(place)));
    play(QStringLiteral("first"), QStringLiteral("road"));
    play(QStringLiteral("first"), QStringLiteral("languages"));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("rm %1/template/OrvexClient_*; test -e /tmp/OrvexMng_lock").arg(place)));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg -r orvex-manager; dpkg -P orvex-manager")));
    const QStringList lines = m_untouched.split(QLatin1Char('\n'));
    const QSet<QString> before(lines.begin(), lines.end());
    QStringList added;
    for (const QString& line : trace().split(QLatin1Char('\n'))) {
        if (!before.contains(line))
            added.append(line);
    }
    // What Qt and the fonts keep in a user's home is the user's.
    QCOMPARE(added.filter(QRegularExpression(QStringLiteral("^(?!/home/)"))).join(QLatin1Char('\n')), QString());
    SUCCEEDS(m_machine->asRoot(QStringLiteral("test ! -e /opt/apps")));
}

void TstInstalledPackage::anInstallationByHandIsTakenOverWithItsSettings()
{
    SUCCEEDS(m_machine->asRoot(
        QStringLiteral("mkdir -p %1/UpdateCustom && printf '[config]\\nArea=wy\\n' >%1/config.ini").arg(place)));
    install(m_packages.debian);
    const Outcome outcome = m_machine->asRoot(
        QStringLiteral("cd %1; cat config.ini; stat -c '%a %U:%G' settings/config.ini UpdateCustom").arg(place));
    QCOMPARE(outcome.output, QStringLiteral("[config]\nArea=wy\n660 root:orvex-manager\n2770 root:orvex-manager\n"));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg -P orvex-manager")));
}

void TstInstalledPackage::settingsInThePlaceOfTheLinkHoldAndTheOthersAreKept()
{
    install(m_packages.debian);
    const QString settings = QStringLiteral("cd %1 && head -n 2 config.ini settings/config.ini.dpkg-old; "
                                            "stat -c '%a %U:%G %F' config.ini settings/config.ini")
                                 .arg(place);
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; printf '[config]\\nArea=tqm\\n' >settings/config.ini; "
                                              "rm config.ini; printf '[config]\\nArea=wy\\n' >config.ini")
                                   .arg(place)));
    const QString told = QStringLiteral("==> config.ini <==\n[config]\nArea=wy\n\n"
                                        "==> settings/config.ini.dpkg-old <==\n[config]\nArea=tqm\n"
                                        "777 root:orvex-manager symbolic link\n660 root:orvex-manager regular file\n");
    SUCCEEDS(configure());
    QCOMPARE(m_machine->asRoot(settings).output, told);
    // Broken off before the link was made again, and once more when all is well.
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; cp --remove-destination settings/config.ini config.ini.dpkg-new; "
                                              "mv -T config.ini.dpkg-new config.ini")
                                   .arg(place)));
    SUCCEEDS(configure());
    SUCCEEDS(configure());
    QCOMPARE(m_machine->asRoot(settings).output, told);
}

void TstInstalledPackage::aPurgeAfterABrokenConfigurationLeavesNoTrace()
{
    // Full, as it were, when the settings are to be written.
    SUCCEEDS(m_machine->asRoot(QStringLiteral("cd %1; rm config.ini settings/*; mkdir -p /tmp/kit/full; "
                                              "printf '#!/bin/sh\\nexit 1\\n' >/tmp/kit/full/cat; "
                                              "chmod +x /tmp/kit/full/cat; touch config.ini.lock")
                                   .arg(place)));
    const Outcome outcome = configure(QStringLiteral("PATH=/tmp/kit/full:$PATH"));
    QCOMPARE(outcome.status, 1);
    SUCCEEDS(m_machine->asRoot(QStringLiteral("test -e %1/config.ini.dpkg-new").arg(place)));
    QCOMPARE(modeOfPlace(), QStringLiteral("3750 root:orvex-manager"));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg -P orvex-manager")));
    SUCCEEDS(m_machine->asRoot(QStringLiteral("test ! -e /opt/apps && ! getent group orvex-manager")));
}

void TstInstalledPackage::aPurgeKeepsAGroupThatThePackageFound()
{
    SUCCEEDS(m_machine->asRoot(QStringLiteral("groupadd orvex-manager; usermod -aG orvex-manager first")));
    const QString found = m_machine->asRoot(QStringLiteral("getent group orvex-manager")).output;
    QVERIFY(found.endsWith(QLatin1String(":first\n")));
    install(m_packages.debian);
    SUCCEEDS(m_machine->asRoot(QStringLiteral("dpkg -P orvex-manager; test ! -e /opt/apps")));
    QCOMPARE(m_machine->asRoot(QStringLiteral("getent group orvex-manager")).output, found);
    SUCCEEDS(m_machine->asRoot(QStringLiteral("groupdel orvex-manager")));
}

void TstInstalledPackage::theArchiveRunsInADirectoryOfItsUser()
{
    QVERIFY(m_machine->put(m_packages.archive, QStringLiteral("/tmp/kit/archive.tar.gz")));
    const QString user = QStringLiteral("outsider");
    SUCCEEDS(m_machine->as(user, QStringLiteral("mkdir 'my 管理'; tar -xzf /tmp/kit/archive.tar.gz -C 'my 管理' "
                                                "--strip-components=1; cp /tmp/kit/template/* 'my 管理/template'")));
    const QStringList told = play(user, QStringLiteral("road"), QStringLiteral("'./my 管理/orvex-manager'"));
    QCOMPARE(told.filter(QStringLiteral("  history: ")).size(), 1);
    SUCCEEDS(m_machine->as(user, QStringLiteral("bash /tmp/kit/check-packages.sh \"$HOME/my 管理\"")));
    SUCCEEDS(m_machine->as(user, QStringLiteral("cd /; ~/my*/orvex-inspect verify")));
}

void TstInstalledPackage::theArchiveBelowADirectoryOfAGroupIsItsUsersAlone()
{
    // What is made in such a directory has its bit and its group; modes of documents stay those of the user all the
    // same.
    const QString user = QStringLiteral("outsider");
    SUCCEEDS(m_machine->as(
        user, QStringLiteral("mkdir team; chmod 2775 team; cd team; umask 0022; "
                             "tar -xzf /tmp/kit/archive.tar.gz --strip-components=1 --no-same-permissions; "
                             "chmod g+s . ; cp /tmp/kit/template/* template/")));
    play(user, QStringLiteral("road"), QStringLiteral("umask 0022; team/orvex-manager"));
    QCOMPARE(m_machine->as(user, QStringLiteral("stat -c %a team team/custom/OrvexCustom.xml")).output,
             QStringLiteral("2775\n644\n"));
    SUCCEEDS(m_machine->as(user, QStringLiteral("chmod u-w team/Log")));
    const Outcome outcome = m_machine->as(user, QStringLiteral("team/orvex-manager"));
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.contains(QLatin1String("unpack the archive into a directory of your own")),
             qPrintable(outcome.errors));
}

void TstInstalledPackage::theArchiveSaysWhereItMayNotWrite()
{
    SUCCEEDS(m_machine->asRoot(QStringLiteral("mkdir /opt/manager; tar -xzf /tmp/kit/archive.tar.gz -C /opt/manager "
                                              "--strip-components=1")));
    const Outcome outcome = m_machine->as(QStringLiteral("outsider"), QStringLiteral("/opt/manager/orvex-manager"));
    QCOMPARE(outcome.status, 1);
    QVERIFY2(outcome.errors.contains(QLatin1String("outsider may not write in /opt/manager;")),
             qPrintable(outcome.errors));
}

TEST_ENTRY(installedpackage, runGuilessTest<TstInstalledPackage>)
#include "tst_installedpackage.moc"
