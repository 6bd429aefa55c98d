#include "advanced/CustomAdvProperty.h"
#include "advanced/UninstallPasswd.h"
#include "mainwindow/CommitPlay.h"
#include "mainwindow/PlayedProgram.h"
#include "pack/WorkThread.h"
#include "soak/Soak.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "vpn/QVPNAdvProperty.h"
#include "xml/CustomInfoLoad.h"

#include <QComboBox>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

// A whole program in which three secrets are typed into the windows and go through a Finish with three packages. They
// belong into the document, enciphered, and nowhere else.

namespace {

const char s_uninstall[] = "uninst-4711";
const char s_shared[] = "shared-key-0815";
const char s_tunnel[] = "tunnel-5225";
const char* const s_secrets[] = {s_uninstall, s_shared, s_tunnel};

using windowplay::click;

int noteSystem(interposed::System::Real real, const char* command)
{
    printf("command: %s\n", command);
    fflush(stdout);
    return real(command);
}

void typeSecret(const QWidget& window, const char* edit, const char* secret)
{
    windowplay::type(window, edit, QString::fromLatin1(secret));
}

QStringList typeSecrets(const OrvexManager& window)
{
    ModalScript script;
    script.expect<CustomAdvProperty>([](CustomAdvProperty& dialog) {
        click(dialog, "checkBox_passwd");
        click(dialog, "checkBox_EnableIpSec");
        typeSecret(dialog, "lineEdit_preshareKey", s_shared);
        click(dialog, "pushButton_Adv");
        pressOk(dialog, "buttonBox_adv");
    });
    script.expect<UninstallPasswd>([](UninstallPasswd& dialog) {
        typeSecret(dialog, "input", s_uninstall);
        typeSecret(dialog, "confirm", s_uninstall);
        pressOk(dialog);
    });
    script.expect<QVPNAdvProperty>([](QVPNAdvProperty& dialog) {
        click(dialog, "checkBox_TunnelAuthOn");
        typeSecret(dialog, "lineEdit_TunnelPwd", s_tunnel);
        pressOk(dialog);
    });
    click(window, "toolButton_adv");
    return script.complaints();
}

void play(const OrvexManager& window)
{
    // One with a server for the tunnel, so that OK has nothing to complain of.
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QStringList amiss = typeSecrets(window);
    frozenTime = commitMoment;
    amiss += commit(window, QStringLiteral("remark"), PackageSetup | PackageUpdate | PackageCusUpd);
    printf("amiss: %s.\n", qPrintable(amiss.join(QLatin1Char('|'))));
}

/// The command lines of all processes that can be seen, in one text.
QByteArray commandLines()
{
    QByteArray all;
    for (const QString& name : QDir(QStringLiteral("/proc")).entryList({QStringLiteral("[0-9]*")}, QDir::Dirs))
        all += installation::readFile(QStringLiteral("/proc/%1/cmdline").arg(name)) + '\n';
    return all;
}

bool holdsSecret(const QByteArray& text)
{
    return std::any_of(std::begin(s_secrets), std::end(s_secrets),
                       [&](const char* secret) { return text.contains(secret); });
}

/// The files below the directory that hold one of the texts.
QStringList filesWith(const QString& directory, const std::function<bool(const QByteArray&)>& found)
{
    QStringList files;
    QDirIterator entries(directory, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString path = entries.next();
        // The executable has them as literals.
        if (!path.endsWith(QLatin1String("/OrvexManager")) && found(installation::readFile(path)))
            files.append(path.mid(directory.size()));
    }
    files.sort();
    return files;
}

} // namespace

class TstSecrets : public QObject
{
    Q_OBJECT

private slots:
    void typedSecretsAreInTheDocumentAlone_data();
    void typedSecretsAreInTheDocumentAlone();
};

void TstSecrets::typedSecretsAreInTheDocumentAlone_data()
{
    QTest::addColumn<int>("run");
    for (int run = 1; run <= soak::amount("ORVEX_SOAK_SECRETS", 1); ++run)
        QTest::addRow("%d", run) << run;
}

void TstSecrets::typedSecretsAreInTheDocumentAlone()
{
    prepareInstallation();
    installation::installArchiver();
    installation::makeMixedTemplate(QStringLiteral("OrvexClient_Linux64"), QStringLiteral("OrvexClient"));
    const QTemporaryDir work(installation::path(QStringLiteral("work-XXXXXX")));
    QVERIFY(work.isValid());
    const QString root = work.filePath(QStringLiteral("orvex/"));
    const QString temporary = work.filePath(QStringLiteral("temporary"));
    QVERIFY(QDir().mkpath(temporary));
    playedprogram::install(root);
    CustomInfo record =
        storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString(), procom::x1 | procom::l2tpIpsec);
    record.vpn.basecfg.LNSIP = QStringLiteral("lns.example");
    record.zoa.ZOAIP = QStringLiteral("192.0.2.1");
    storeCustomisation(root, record);

    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), temporary);
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), work.path()); // Qt makes one among the temporary files
    program.setProcessEnvironment(environment);
    program.setWorkingDirectory(root);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(root + QLatin1String("OrvexManager"), {QStringLiteral("play")});
    QVERIFY(program.waitForStarted());
    int looks = 0;
    while (!program.waitForFinished(1) && program.state() != QProcess::NotRunning) {
        QVERIFY(!holdsSecret(commandLines()));
        ++looks;
    }
    const QByteArray told = program.readAll();
    QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0 && told.contains("\namiss: .\n"),
             told.constData());
    QVERIFY(told.contains("command: tar "));
    QVERIFY(!holdsSecret(told));
    QVERIFY(looks > 0);

    // They have arrived, and cannot be read in the document.
    const QString stored = root + QLatin1String("UpdateCustom/1700000000/OrvexCustom.xml");
    CustomInfo arrived;
    utl_LoadCustomInfo(stored.toLocal8Bit().constData(), arrived);
    QCOMPARE(arrived.function.uninstallPassword, QString::fromLatin1(s_uninstall));
    QCOMPARE(arrived.vpn.basecfg.preSharedKey, QString::fromLatin1(s_shared));
    QCOMPARE(arrived.vpn.l2tpcfg.L2TPTunnelPwd, QString::fromLatin1(s_tunnel));
    for (const char* package : {"OrvexSetup", "OrvexUpdate", "OrvexCusUpd"})
        QCOMPARE(installation::namesIn(root + QLatin1String(package)).size(), 1);
    QCOMPARE(filesWith(work.path(), holdsSecret), QStringList());
    QCOMPARE(installation::namesIn(temporary).join(QLatin1Char(' ')), QString());

    // Enciphered they stand in nothing but the document.
    const QByteArray document = installation::readFile(stored);
    QByteArrayList enciphered;
    for (const char* element : {"uninstallPassword", "preSharedKey", "L2TPTunnelPwd"}) {
        const QByteArray begin = QByteArray("<") + element + '>';
        const int from = document.indexOf(begin) + begin.size();
        enciphered.append(document.mid(from, document.indexOf('<', from) - from));
        QVERIFY2(enciphered.last().size() > 10, document.constData());
    }
    const auto holdsEnciphered = [&](const QByteArray& text) {
        return std::any_of(enciphered.begin(), enciphered.end(),
                           [&](const QByteArray& secret) { return text.contains(secret); });
    };
    QVERIFY(!holdsEnciphered(told));
    QCOMPARE(filesWith(root, holdsEnciphered), (QStringList{QStringLiteral("UpdateCustom/1700000000/OrvexCustom.xml"),
                                                            QStringLiteral("custom/OrvexCustom.xml")}));
    soak::tell("secrets", QStringLiteral("looks at all command lines while three secrets went into three packages"),
               looks, QStringLiteral("in no command line, log, output or temporary file; enciphered in the document"));
}

static int run(int argc, char** argv)
{
    if (argc == 2 && qstrcmp(argv[1], "play") == 0) {
        interposed::onSystem = noteSystem;
        return playedprogram::run(argc, argv, play);
    }
    QCoreApplication application(argc, argv);
    TstSecrets test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(secrets, run)

#include "tst_secrets.moc"
