#include "common/CustomInfoVerify.h"
#include "store/CommitSteps.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/FullDisk.h"
#include "support/Installation.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QDir>
#include <QtTest>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

using installation::path;
using installation::texts;
using installation::withoutRoot;

// Each step of a commit by itself, without any window.
class TstCommitSteps : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        installation::clear();
        for (const char* trace : {"run-by-name", "run-by-place"})
            QFile::remove(path(QLatin1String(trace)));
        QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
        qputenv("TZ", "Asia/Shanghai");
    }

    void aBareStoreGetsTheHistoryBeforeTheWorkingDirectory();
    void theWorkingDirectoryIsEmptiedOfNamesWithADot();
    void aWorkingDirectoryBehindALinkLosesItsDocument();
    void theStampHasThreeForms();
    void aStampBelowOneHasNoTimeString_data();
    void aStampBelowOneHasNoTimeString();
    void theDocumentIsTheRecordAsItStands();
    void iconsAreCopiedBeforeTheDocumentIsSaved();
    void onlyChosenIconsAreCopied();
    void aMissingIconIsNotNoticed();
    void aPipeOrDeviceIsNoIcon_data();
    void aPipeOrDeviceIsNoIcon();
    void theNameOfAnIconRunsNothing_data();
    void theNameOfAnIconRunsNothing();
    void aMissingIconOfAnOddNameIsNotNoticed();
    void anOddIconThatCannotBeCopiedIsLogged();
    void anOddTemporaryPlaceIsNotReadByTheShell();
    void theModeOfAnIconIsChangedWithoutTheShell_data();
    void theModeOfAnIconIsChangedWithoutTheShell();
    void aPlaceOutsideTheLocalEncodingGetsItsDocument();
    void iconsArePlainlyReadableWhateverTheInstallationIsCalled_data();
    void iconsArePlainlyReadableWhateverTheInstallationIsCalled();
    void aNeighbourOfTheInstallationKeepsItsMode();
    void theVerificationFitsTheDocument();
    void withoutADocumentThereIsNoVerification();
    void aCutDocumentThatStaysHasNoVerification();
    void theCopyHoldsAllButHiddenNames();
    void theDirectoryOfTheCopyIsNamedBySigned32Bits_data();
    void theDirectoryOfTheCopyIsNamedBySigned32Bits();
    void aSecondCopyOfTheSameSecondOverwritesTheFirst();
    void aCopyThatIsNotWholeIsLogged_data();
    void aCopyThatIsNotWholeIsLogged();
};

namespace {

QByteArray root()
{
    return installation::root().chopped(1).toLocal8Bit();
}

store::CommitDirectories directories()
{
    return {root() + "/custom/", root() + "/UpdateCustom/"};
}

} // namespace

void TstCommitSteps::aBareStoreGetsTheHistoryBeforeTheWorkingDirectory()
{
    QTest::ignoreMessage(QtDebugMsg, ('"' + root() + "/custom\"").constData());
    const CommandRecorder recorder;
    const store::CommitDirectories made = store::prepareDirectories(root());
    QCOMPARE(made.working, root() + "/custom/");
    QCOMPARE(made.history, root() + "/UpdateCustom/");
    QCOMPARE(withoutRoot(recorder.commands()),
             texts({R"(find "{root}custom" -name "*.*" -exec rm -rf {} \;)", R"(mkdir -p "{root}UpdateCustom")",
                    R"(mkdir -p "{root}custom")"}));
    QVERIFY(QDir(path(QStringLiteral("custom"))).exists());
    QVERIFY(QDir(path(QStringLiteral("UpdateCustom"))).exists());
}

void TstCommitSteps::theWorkingDirectoryIsEmptiedOfNamesWithADot()
{
    installation::writeFile(path(QStringLiteral("custom/OrvexCustom.xml")), "earlier");
    installation::writeFile(path(QStringLiteral("custom/a.directory/plain")), "earlier");
    installation::writeFile(path(QStringLiteral("custom/plain")), "stays");
    installation::writeFile(path(QStringLiteral("UpdateCustom/1/OrvexCustom.xml")), "history");
    const installation::QuietOutput quiet;
    store::prepareDirectories(root());
    QCOMPARE(installation::namesIn(path(QStringLiteral("custom"))), texts({"plain"}));
    QCOMPARE(installation::readFile(path(QStringLiteral("UpdateCustom/1/OrvexCustom.xml"))), QByteArray("history"));
}

void TstCommitSteps::aWorkingDirectoryBehindALinkLosesItsDocument()
{
    installation::writeFile(path(QStringLiteral("template/elsewhere/OrvexCustom.xml")), "earlier");
    installation::writeFile(path(QStringLiteral("template/elsewhere/MainIcon.ico")), "stays");
    QVERIFY(QFile::link(QStringLiteral("template/elsewhere"), path(QStringLiteral("custom"))));
    store::prepareDirectories(root());
    QCOMPARE(installation::namesIn(path(QStringLiteral("template/elsewhere"))), texts({"MainIcon.ico"}));
    QVERIFY(QFile::remove(path(QStringLiteral("custom"))));
}

void TstCommitSteps::theStampHasThreeForms()
{
    CommonInfo common;
    common.cusAddInfo = QStringLiteral("remark");
    store::stamp(common, 1700000000, 1);
    QCOMPARE(common.cusTimeStamp, quint64(1700000000));
    QCOMPARE(common.cusTimeString, QStringLiteral("2023-11-15 06:13:20"));
    QCOMPARE(common.areaKey, 1U);
    QCOMPARE(common.cusAddInfo, QStringLiteral("remark"));
    store::stamp(common, 1700000000, 255);
    QCOMPARE(common.areaKey, 255U);
}

void TstCommitSteps::aStampBelowOneHasNoTimeString_data()
{
    QTest::addColumn<qint64>("now");
    QTest::addColumn<QString>("text");
    QTest::newRow("one") << qint64(1) << QStringLiteral("1970-01-01 08:00:01");
    QTest::newRow("zero") << qint64(0) << QString();
    QTest::newRow("below") << qint64(-1) << QString();
}

void TstCommitSteps::aStampBelowOneHasNoTimeString()
{
    QFETCH(qint64, now);
    CommonInfo common;
    common.cusTimeString = QStringLiteral("earlier");
    store::stamp(common, now, 0);
    QCOMPARE(common.cusTimeStamp, quint64(now));
    QTEST(common.cusTimeString, "text");
}

void TstCommitSteps::theDocumentIsTheRecordAsItStands()
{
    CustomInfo record = distinctRecord();
    record.gui.linuxDeskIconPath.clear();
    record.gui.macosDeskIconPath.clear();
    record.gui.mainIconPath.clear();
    record.common.funcomVal = funcom::zoa | funcom::kef;
    const CustomInfo before = record;
    const QByteArray expected = documentOf(record);
    QVERIFY(expected.contains("<kef>"));
    installation::clear();
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));

    const CommandRecorder recorder;
    QCOMPARE(store::writeDocument(record, directories().working), root() + "/custom/OrvexCustom.xml");
    QCOMPARE(installation::readFile(path(QStringLiteral("custom/OrvexCustom.xml"))), expected);
    QCOMPARE(differences(record, before), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList());

    record.common.funcomVal = funcom::zoa;
    store::writeDocument(record, directories().working);
    QVERIFY(!installation::readFile(path(QStringLiteral("custom/OrvexCustom.xml"))).contains("<kef>"));
}

void TstCommitSteps::iconsAreCopiedBeforeTheDocumentIsSaved()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    CustomInfo record;
    record.gui.mainIconPath = QStringLiteral("/nowhere/main.ico");
    bool isSaved = false;
    const CommandRecorder recorder(CommandRecorder::RecordOnly, [&](const QByteArray&) {
        isSaved = isSaved || QFile::exists(path(QStringLiteral("custom/OrvexCustom.xml")));
    });
    store::writeDocument(record, directories().working);
    QCOMPARE(recorder.commands().size(), 2);
    QVERIFY(!isSaved);
    QVERIFY(QFile::exists(path(QStringLiteral("custom/OrvexCustom.xml"))));
}

void TstCommitSteps::onlyChosenIconsAreCopied()
{
    GUIOptionsInfo gui;
    {
        const CommandRecorder recorder(CommandRecorder::RecordOnly);
        store::copyIcons(gui, directories().working);
        QCOMPARE(recorder.commands(), QByteArrayList());
    }
    gui.mainIconPath = QString::fromUtf8("/图标/main.ico");
    gui.macosDeskIconPath = QStringLiteral("/tmp/desk.icns");
    gui.linuxDeskIconPath = QStringLiteral("/tmp/a desk.png");
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    store::copyIcons(gui, directories().working);
    QCOMPARE(withoutRoot(recorder.commands()), texts({R"(cp -f "/tmp/a desk.png" "{root}custom/DeskIconLinux.png")",
                                                      R"(chmod a+r {root}custom/DeskIconLinux.png)",
                                                      R"(cp -f "/tmp/desk.icns" "{root}custom/DeskIconMacos.icns")",
                                                      R"(chmod a+r {root}custom/DeskIconMacos.icns)",
                                                      R"(cp -f "/图标/main.ico" "{root}custom/MainIcon.ico")",
                                                      R"(chmod a+r {root}custom/MainIcon.ico)"}));
}

void TstCommitSteps::aMissingIconIsNotNoticed()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    CustomInfo record;
    record.gui.linuxDeskIconPath = QStringLiteral("/nowhere/at/all.png");
    const QByteArray document = store::writeDocument(record, directories().working);
    QVERIFY(installation::readFile(QString::fromLocal8Bit(document)).contains("<linuxDeskIcon>true<"));
    QVERIFY(!QFile::exists(path(QStringLiteral("custom/DeskIconLinux.png"))));
    QVERIFY(store::writeVerification(document));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstCommitSteps::aPipeOrDeviceIsNoIcon_data()
{
    QTest::addColumn<QString>("icon");
    QTest::newRow("pipe") << path(QStringLiteral("template/pipe.png"));
    QTest::newRow("pipe of an odd name") << path(QStringLiteral("template/$pipe.png"));
    QTest::newRow("device") << QStringLiteral("/dev/zero");
}

void TstCommitSteps::aPipeOrDeviceIsNoIcon()
{
    QFETCH(const QString, icon);
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    const QByteArray file = icon.toLocal8Bit();
    QVERIFY(file.startsWith("/dev/") || mkfifo(file.constData(), 0600) == 0);
    GUIOptionsInfo gui;
    gui.linuxDeskIconPath = icon;
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    store::copyIcons(gui, directories().working);
    for (const QByteArray& command : recorder.commands())
        QVERIFY2(!command.startsWith("cp "), command.constData());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList{QStringLiteral("copyIcons: %1 is no file, so it is not copied.").arg(icon)});
}

void TstCommitSteps::theNameOfAnIconRunsNothing_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("substitution") << "a$(touch run-by-name).png";
    QTest::newRow("backticks") << "a`touch run-by-name`.png";
    QTest::newRow("closed quotes") << "a\";touch run-by-name;\".png";
    QTest::newRow("variable") << "a$HOME.png";
    QTest::newRow("backslash") << "a\\\\b.png";
    QTest::newRow("backslash at the end") << "a\\";
    QTest::newRow("line feed") << "a\ntouch run-by-name\n.png";
    QTest::newRow("all of them") << QString::fromUtf8("图\"标`touch run-by-name`$(touch run-by-name)\\\n.png");
}

void TstCommitSteps::theNameOfAnIconRunsNothing()
{
    QFETCH(const QString, name);
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    const QString source = path(QLatin1String("template/icons/") + name);
    installation::writeFile(source, "icon");
    QVERIFY(QDir::setCurrent(installation::root()));
    GUIOptionsInfo gui;
    gui.linuxDeskIconPath = source;
    const QStringList before = installation::namesIn(installation::root());
    const CommandRecorder recorder;
    store::copyIcons(gui, directories().working);
    QCOMPARE(installation::readFile(path(QStringLiteral("custom/DeskIconLinux.png"))), QByteArray("icon"));
    QCOMPARE(installation::namesIn(installation::root()), before);
    QCOMPARE(installation::namesIn(path(QStringLiteral("custom"))), texts({"DeskIconLinux.png"}));
    const QStringList commands = withoutRoot(recorder.commands());
    QCOMPARE(commands.size(), 2);
    // Beside its target, under a name with a dot, the copy goes at the latest with the next customisation.
    QVERIFY2(QRegularExpression(
                 QStringLiteral(R"(^cp -f "\{root\}custom/orvex-icon\.\w+/icon" "\{root\}custom/DeskIconLinux.png"$)"))
                 .match(commands.first())
                 .hasMatch(),
             qPrintable(commands.first()));
    QCOMPARE(commands.last(), QStringLiteral("chmod a+r {root}custom/DeskIconLinux.png"));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstCommitSteps::aMissingIconOfAnOddNameIsNotNoticed()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    GUIOptionsInfo gui;
    gui.mainIconPath = path(QStringLiteral("template/$(touch run-by-name).ico"));
    store::copyIcons(gui, directories().working);
    QCOMPARE(installation::namesIn(path(QStringLiteral("custom"))), QStringList());
    QVERIFY(!QFile::exists(path(QStringLiteral("run-by-name"))));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstCommitSteps::anOddIconThatCannotBeCopiedIsLogged()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    const QString icon = path(QStringLiteral("template/$icon.ico"));
    installation::writeFile(icon, QByteArray(100000, 'i'));
    GUIOptionsInfo gui;
    gui.mainIconPath = icon;
    {
        const FullDisk disk(4096);
        store::copyIcons(gui, directories().working);
    }
    QCOMPARE(installation::namesIn(path(QStringLiteral("custom"))), QStringList());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             QStringList{QStringLiteral("copyIcons: %1 could not be copied.").arg(icon)});
}

void TstCommitSteps::anOddTemporaryPlaceIsNotReadByTheShell()
{
    const QString place = path(QStringLiteral("template/$(touch run-by-place)"));
    const QString working = place + QLatin1String("/custom/");
    QVERIFY(QDir().mkpath(working));
    installation::writeFile(path(QStringLiteral("template/$icon.ico")), "icon");
    GUIOptionsInfo gui;
    gui.mainIconPath = path(QStringLiteral("template/$icon.ico"));
    const QByteArray usual = qgetenv("TMPDIR");
    qputenv("TMPDIR", place.toLocal8Bit());
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    store::copyIcons(gui, working.toLocal8Bit());
    if (usual.isNull())
        qunsetenv("TMPDIR");
    else
        qputenv("TMPDIR", usual);
    QVERIFY2(recorder.commands().value(0).startsWith("cp -f \"/tmp/orvex-icon."), recorder.commands().value(0));
}

void TstCommitSteps::theModeOfAnIconIsChangedWithoutTheShell_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"$(touch run-by-place)", "`touch run-by-place`", "a\"b", "a\\b", "a\nb", "$HOME"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TstCommitSteps::theModeOfAnIconIsChangedWithoutTheShell()
{
    QFETCH(const QString, name);
    const QString working = path(QLatin1String("template/") + name + QLatin1String("/custom/"));
    const QString target = working + QLatin1String("MainIcon.ico");
    installation::writeFile(target, "icon");
    QVERIFY(QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner));
    GUIOptionsInfo gui;
    gui.mainIconPath = QStringLiteral("/tmp/icon.ico");
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    store::copyIcons(gui, working.toLocal8Bit());
    // Contract: the copying names the target as it is.
    QCOMPARE(recorder.commands(), QByteArrayList{"cp -f \"/tmp/icon.ico\" \"" + target.toLocal8Bit() + '"'});
    struct stat status = {};
    QCOMPARE(stat(target.toLocal8Bit().constData(), &status), 0);
    QCOMPARE(int(status.st_mode & 07777), 0644);
}

void TstCommitSteps::aPlaceOutsideTheLocalEncodingGetsItsDocument()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("template"))));
    const QByteArray place = root() + "/template/\xb1\xb1\xbe\xa9";
    QCOMPARE(mkdir(place.constData(), 0755), 0);
    QCOMPARE(mkdir((place + "/custom").constData(), 0755), 0);
    CustomInfo record;
    const QByteArray document = store::writeDocument(record, place + "/custom/");
    const int found = access((place + "/custom/OrvexCustom.xml").constData(), F_OK);
    const int removed = system(("rm -r \"" + place + '"').constData());
    QCOMPARE(removed, 0);
    QCOMPARE(document, place + "/custom/OrvexCustom.xml");
    QCOMPARE(found, 0);
    QCOMPARE(installation::namesIn(path(QStringLiteral("template"))), QStringList());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstCommitSteps::iconsArePlainlyReadableWhateverTheInstallationIsCalled_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isByCommand");
    QTest::newRow("plain") << "Orvex-1.0_~#!@%+=,:^" << true;
    QTest::newRow("Chinese") << QString::fromUtf8("安装目录") << true;
    for (const char* name :
         {"My Tools", "a\tb", "a'b", "a&b", "a|b", "a;b", "a<b", "a>b", "a(b", "a)b", "a*b", "a?b", "[ab]", "{a,b}"})
        QTest::newRow(name) << QString::fromLatin1(name) << false;
}

void TstCommitSteps::iconsArePlainlyReadableWhateverTheInstallationIsCalled()
{
    QFETCH(const QString, name);
    QFETCH(const bool, isByCommand);
    const QString working = path(QLatin1String("template/") + name + QLatin1String("/custom/"));
    QVERIFY(QDir().mkpath(working));
    const QString icon = path(QStringLiteral("template/icon.ico"));
    installation::writeFile(icon, "icon");
    QVERIFY(QFile::setPermissions(icon, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    GUIOptionsInfo gui;
    gui.mainIconPath = icon;
    const CommandRecorder recorder;
    store::copyIcons(gui, working.toLocal8Bit());
    QCOMPARE(recorder.commands().size(), isByCommand ? 2 : 1);
    QCOMPARE(installation::readFile(working + QLatin1String("MainIcon.ico")), QByteArray("icon"));
    QCOMPARE(installation::describeTree(working.chopped(1)).first().section(QLatin1Char(' '), 0, 2),
             QStringLiteral("MainIcon.ico file 0744"));
}

void TstCommitSteps::aNeighbourOfTheInstallationKeepsItsMode()
{
    installation::writeFile(path(QStringLiteral("template/My")), "a key");
    QVERIFY(QFile::setPermissions(path(QStringLiteral("template/My")), QFile::ReadOwner));
    const QString working = path(QStringLiteral("template/My Tools/custom/"));
    QVERIFY(QDir().mkpath(working));
    installation::writeFile(path(QStringLiteral("template/icon.png")), "icon");
    GUIOptionsInfo gui;
    gui.linuxDeskIconPath = path(QStringLiteral("template/icon.png"));
    store::copyIcons(gui, working.toLocal8Bit());
    QVERIFY(installation::describeTree(path(QStringLiteral("template")))
                .filter(QRegularExpression(QStringLiteral("^My file 0400 ")))
                .size() == 1);
}

void TstCommitSteps::theVerificationFitsTheDocument()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    CustomInfo record;
    QVERIFY(store::writeVerification(store::writeDocument(record, directories().working)));
    QVERIFY(utl_CusXmlVerify((root() + "/custom").constData()));
    installation::writeFile(path(QStringLiteral("custom/OrvexCustom.xml")), "<other/>");
    QVERIFY(!utl_CusXmlVerify((root() + "/custom").constData()));
}

void TstCommitSteps::withoutADocumentThereIsNoVerification()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    QVERIFY(!store::writeVerification(root() + "/custom/OrvexCustom.xml"));
    QCOMPARE(installation::namesIn(path(QStringLiteral("custom"))), QStringList());
}

void TstCommitSteps::aCutDocumentThatStaysHasNoVerification()
{
    QVERIFY(QDir().mkpath(path(QStringLiteral("custom"))));
    CustomInfo record;
    interposed::onUnlink = [](interposed::Unlink::Real, const char*) {
        errno = EACCES;
        return -1;
    };
    QByteArray document;
    {
        const FullDisk disk(4096);
        document = store::writeDocument(record, directories().working);
    }
    const bool isVerified = store::writeVerification(document);
    interposed::onUnlink = nullptr;
    QCOMPARE(QFileInfo(path(QStringLiteral("custom/OrvexCustom.xml"))).size(), 4096);
    QVERIFY(!isVerified);
    QCOMPARE(installation::namesIn(path(QStringLiteral("custom"))), texts({"OrvexCustom.xml"}));
}

void TstCommitSteps::theCopyHoldsAllButHiddenNames()
{
    installation::makeCustomisation("one");
    installation::writeFile(path(QStringLiteral("custom/.hidden")), "stays");
    const QString expected =
        QStringLiteral(R"(cp  -Rf "%1custom/"* "%1UpdateCustom/1700000000/")").arg(installation::root());
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QRegularExpression::escape(
                                         QString(expected).replace(QLatin1Char('"'), QLatin1String("\\\"")))));
    const CommandRecorder recorder;
    store::keepCopy(directories(), 1700000000);
    QCOMPARE(withoutRoot(recorder.commands()),
             texts({R"(mkdir -p "{root}UpdateCustom")", R"(mkdir -p "{root}UpdateCustom/1700000000")",
                    R"(cp  -Rf "{root}custom/"* "{root}UpdateCustom/1700000000/")"}));
    QStringList kept = installation::namesIn(path(QStringLiteral("custom")));
    kept.removeAll(QStringLiteral(".hidden"));
    QVERIFY(kept.size() > 4);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
    QCOMPARE(installation::namesIn(path(QStringLiteral("UpdateCustom/1700000000"))), kept);
}

void TstCommitSteps::theDirectoryOfTheCopyIsNamedBySigned32Bits_data()
{
    QTest::addColumn<quint64>("timeStamp");
    QTest::addColumn<QString>("name");
    QTest::newRow("last positive") << quint64(2147483647) << QStringLiteral("2147483647");
    QTest::newRow("first negative") << quint64(2147483648) << QStringLiteral("-2147483648");
    QTest::newRow("beyond 32 bits") << quint64(4294967297) << QStringLiteral("1");
}

void TstCommitSteps::theDirectoryOfTheCopyIsNamedBySigned32Bits()
{
    QFETCH(quint64, timeStamp);
    installation::makeCustomisation("one");
    store::keepCopy(directories(), timeStamp);
    QFETCH(QString, name);
    QCOMPARE(installation::namesIn(path(QStringLiteral("UpdateCustom"))), QStringList{name});
}

void TstCommitSteps::aSecondCopyOfTheSameSecondOverwritesTheFirst()
{
    installation::makeCustomisation("first");
    store::keepCopy(directories(), 1700000000);
    installation::makeCustomisation("second");
    store::keepCopy(directories(), 1700000000);
    QVERIFY(installation::readFile(path(QStringLiteral("UpdateCustom/1700000000/OrvexCustom.xml"))).contains("second"));
}

void TstCommitSteps::aCopyThatIsNotWholeIsLogged_data()
{
    QTest::addColumn<QString>("before"); // commands that prepare custom/ and UpdateCustom/1700000000/
    QTest::addColumn<QString>("copied"); // what is run in the place of the copying; empty: the copying itself
    QTest::addColumn<bool>("isWhole");
    const QString copy = QStringLiteral("cp -Rf custom/* UpdateCustom/1700000000/; ");
    QTest::newRow("all") << "true"
                         << "" << true;
    QTest::newRow("nothing to copy") << "rm -r custom/*"
                                     << "" << true;
    QTest::newRow("tree, links, a hidden name and a pipe")
        << "mkdir -p custom/a/b; echo 1 > custom/a/b/c; echo 2 > custom/a/.d; echo 3 > custom/.e; "
           "ln -s OrvexCustom.xml custom/link; ln -s nowhere custom/dangling; mkfifo custom/pipe"
        << "" << true;
    QTest::newRow("more than asked for") << "mkdir -p UpdateCustom/1700000000; touch UpdateCustom/1700000000/icon"
                                         << "" << true;
    QTest::newRow("nothing copied") << "true"
                                    << "true" << false;
    QTest::newRow("plain file in the place of the copy") << "mkdir UpdateCustom; touch UpdateCustom/1700000000"
                                                         << "" << false;
    QTest::newRow("document cut short") << "true"
                                        << copy +
                                               QLatin1String("truncate -s -1 UpdateCustom/1700000000/OrvexCustom.xml")
                                        << false;
    QTest::newRow("one byte differs, last file")
        << "true"
        << copy +
               QLatin1String(
                   "printf x | dd conv=notrunc bs=1 seek=9 of=UpdateCustom/1700000000/OrvexCustomXml.vrf 2>/dev/null")
        << false;
    QTest::newRow("icon missing") << "true" << copy + QLatin1String("rm UpdateCustom/1700000000/MainIcon.ico") << false;
    QTest::newRow("below a directory") << "mkdir -p custom/a/b; echo 1 > custom/a/b/.c"
                                       << copy + QLatin1String("rm UpdateCustom/1700000000/a/b/.c") << false;
    QTest::newRow("directory in the place of a file")
        << "true" << copy + QLatin1String("cd UpdateCustom/1700000000; rm MainIcon.ico; mkdir MainIcon.ico") << false;
    QTest::newRow("link to elsewhere") << "ln -s OrvexCustom.xml custom/link"
                                       << copy + QLatin1String("ln -sfn MainIcon.ico UpdateCustom/1700000000/link")
                                       << false;
}

void TstCommitSteps::aCopyThatIsNotWholeIsLogged()
{
    QFETCH(const QString, before);
    QFETCH(const QString, copied);
    QFETCH(const bool, isWhole);
    const auto run = [](const QString& commands) {
        installation::run(QStringLiteral("sh"), {QStringLiteral("-c"), commands}, installation::root());
    };
    installation::makeCustomisation("one");
    run(before);
    {
        const CommandRecorder recorder(copied.isEmpty() ? CommandRecorder::Run : CommandRecorder::MakeDirectories,
                                       [&](const QByteArray& command) {
                                           if (!copied.isEmpty() && command.startsWith("cp "))
                                               run(copied);
                                       });
        store::keepCopy(directories(), 1700000000);
    }
    const QString line = QStringLiteral("keepCopy: {root}UpdateCustom/1700000000 is no whole copy of {root}custom/");
    QCOMPARE(withoutRoot(installation::logMessages(QStringLiteral("[ERR]")).join(QLatin1Char('\n')).toLocal8Bit()),
             isWhole ? QString() : line);
}

TEST_ENTRY(commitsteps, runGuilessTest<TstCommitSteps>)
#include "tst_commitsteps.moc"
