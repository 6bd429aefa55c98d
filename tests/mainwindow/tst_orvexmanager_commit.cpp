#include "app/language/LangText.h"
#include "common/CustomInfoVerify.h"
#include "mainwindow/CommitPlay.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfoLoad.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QDomDocument>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QTreeWidget>

#include <cstdlib>
#include <cstring>
#include <sys/stat.h>
#include <unistd.h>

using windowplay::click;

class TstOrvexManagerCommit : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        prepareInstallation();
        frozenTime = commitMoment;
    }
    void cleanup() { frozenTime = 0; }

    void withoutPackagesDocumentHistoryAndReportFollow();
    void theCommandsComeInOrderLetterForLetter();
    void aBareStoreGetsTheHistoryBeforeTheWorkingDirectory();
    void aPlaceOutsideTheLocalEncodingGetsTheCustomisation();
    void theWorkingDirectoryMayBeALink();
    void directoriesAndCopyAreToldOnTheDebugOutput();
    void theWindowsBelongToTheMainWindow();
    void theProgressWindowComesBetweenVerificationAndHistory();
    void theSectionsComeInTheirOrder();
    void theDocumentIsTheRecordAsItStands();
    void functionComponentsMayBeNone();
    void theKefSectionDependsOnTheBoxAlone();
    void iconsAreCopiedUnderTheirNamesAndDoNotSurvive();
    void iconsAreCopiedInTheirOrder();
    void aMissingIconIsNotNoticed();
    void namesWithoutADotStayInTheWorkingDirectory();
    void theRecordIsResetAfterwards();
    void aCommitEnablesDeleteAllAlone();
    void valuesThatNoBoxStandsForAreNotCommitted();
    void theBrandByteGoesIntoTheDocument();
    void theReportTellsWhatWasAskedFor_data();
    void theReportTellsWhatWasAskedFor();
    void theDetailIndexIsNotMovedByACommit();
    void theStoredHistoryIsNotTouchedByACommit();
};

void TstOrvexManagerCommit::withoutPackagesDocumentHistoryAndReportFollow()
{
    OrvexManager window(nullptr);
    window.show();
    QString line;
    ModalScript script;
    expectFinish(script, QStringLiteral("北京分部"));
    expectReport(script, &line);
    script.tolerate<PackingWait>();
    click(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(line, langText("CusCfgOnlySuccHint"));

    QCOMPARE(installation::namesIn(inWorking()), documentFiles());
    QCOMPARE(installation::describeTree(inStored()), installation::describeTree(inWorking()));
    QVERIFY(utl_CusXmlVerify(inWorking().chopped(1).toLocal8Bit().constData()));
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusTimeStamp, quint64(commitMoment));
    QCOMPARE(window.history().first().cusTimeString, QString::fromLatin1(commitMomentText));
    QCOMPARE(window.history().first().cusAddInfo, QStringLiteral("北京分部"));
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->itemText(1),
             QStringLiteral("2023-11-15 06:13:20    802.1X  Portal  ZOA      北京分部"));
    QCOMPARE(child<QTreeWidget>(window, "treeWidget_cusHis")->topLevelItemCount(), 1);
    QVERIFY(!QDir(installation::path(QStringLiteral("OrvexSetup"))).exists());

    const OrvexManager nextStart(nullptr);
    QCOMPARE(nextStart.history().size(), 1);
    QCOMPARE(nextStart.history().first().cusAddInfo, QStringLiteral("北京分部"));
}

void TstOrvexManagerCommit::theCommandsComeInOrderLetterForLetter()
{
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    const CommandRecorder recorder;
    frozenTime = commitMoment + 1;
    QCOMPARE(commit(window), QStringList());
    const QByteArray root = installation::root().toLocal8Bit();
    const QByteArrayList expected = {
        "find \"" + root + "custom\" -name \"*.*\" -exec rm -rf {} \\;",
        "mkdir -p \"" + root + "UpdateCustom/1700000001\"",
        "cp  -Rf \"" + root + "custom/\"* \"" + root + "UpdateCustom/1700000001/\"",
    };
    QCOMPARE(recorder.commands(), expected);
}

void TstOrvexManagerCommit::aBareStoreGetsTheHistoryBeforeTheWorkingDirectory()
{
    OrvexManager window(nullptr);
    window.show();
    const CommandRecorder recorder;
    QCOMPARE(commit(window), QStringList());
    const QByteArray root = installation::root().toLocal8Bit();
    const QByteArrayList expected = {
        "find \"" + root + "custom\" -name \"*.*\" -exec rm -rf {} \\;",
        "mkdir -p \"" + root + "UpdateCustom\"",
        "mkdir -p \"" + root + "custom\"",
        "mkdir -p \"" + root + "UpdateCustom/1700000000\"",
        "cp  -Rf \"" + root + "custom/\"* \"" + root + "UpdateCustom/1700000000/\"",
    };
    QCOMPARE(recorder.commands(), expected);
}

namespace {

/// A directory below that of the test whose name is no UTF-8, with a trailing slash.
QByteArray oddPlace()
{
    return installation::root().toLocal8Bit() + "\xb1\xb1\xbe\xa9/";
}

/// The executable lies there.
ssize_t readOddPlace(interposed::Readlink::Real real, const char* link, char* buffer, size_t size)
{
    if (!QByteArray(link).endsWith("/exe"))
        return real(link, buffer, size);
    const QByteArray place = oddPlace() + "program";
    const size_t length = qMin(size, size_t(place.size()));
    memcpy(buffer, place.constData(), length);
    return ssize_t(length);
}

} // namespace

void TstOrvexManagerCommit::aPlaceOutsideTheLocalEncodingGetsTheCustomisation()
{
    OrvexManager window(nullptr);
    window.show();
    const QByteArray place = oddPlace();
    QCOMPARE(mkdir(place.constData(), 0755), 0);
    QCOMPARE(mkdir((place + "Log").constData(), 0755), 0);
    const QStringList before = installation::namesIn(installation::root());
    const CommandRecorder recorder;
    interposed::onReadlink = readOddPlace;
    const QStringList complaints = commit(window);
    interposed::onReadlink = nullptr;
    const QStringList after = installation::namesIn(installation::root());
    QByteArrayList missing;
    for (const char* file : {"custom/OrvexCustom.xml", "custom/OrvexCustomXml.vrf",
                             "UpdateCustom/1700000000/OrvexCustom.xml", "UpdateCustom/1700000000/OrvexCustomXml.vrf"}) {
        if (access((place + file).constData(), F_OK) != 0)
            missing.append(file);
    }
    const int removed = system(("rm -r \"" + place + '"').constData());
    QCOMPARE(removed, 0);
    QCOMPARE(complaints, QStringList());
    QCOMPARE(missing, QByteArrayList());
    QCOMPARE(after, before);
    QVERIFY(
        recorder.commands().contains("cp  -Rf \"" + place + "custom/\"* \"" + place + "UpdateCustom/1700000000/\""));
}

void TstOrvexManagerCommit::theWorkingDirectoryMayBeALink()
{
    // find does not follow the link, so the earlier document and its verification go by their names.
    installation::writeFile(installation::path(QStringLiteral("elsewhere/OrvexCustom.xml")), "earlier");
    installation::writeFile(installation::path(QStringLiteral("elsewhere/OrvexCustomXml.vrf")), "earlier");
    installation::writeFile(installation::path(QStringLiteral("elsewhere/MainIcon.ico")), "earlier");
    QVERIFY(QFile::link(QStringLiteral("elsewhere"), installation::path(QStringLiteral("custom"))));
    {
        OrvexManager window(nullptr);
        window.show();
        const CommandRecorder recorder;
        QCOMPARE(commit(window), QStringList());
        const QByteArray root = installation::root().toLocal8Bit();
        QCOMPARE(recorder.commands().at(2), QByteArray("rm -f \"" + root + "custom/OrvexCustom.xml\""));
        QCOMPARE(recorder.commands().at(3), QByteArray("rm -f \"" + root + "custom/OrvexCustomXml.vrf\""));
        QVERIFY(utl_CusXmlVerify(inStored().chopped(1).toLocal8Bit().constData()));
        QCOMPARE(installation::readFile(inStored(QStringLiteral("MainIcon.ico"))), QByteArray("earlier"));
    }
    QVERIFY(QFile::remove(installation::path(QStringLiteral("custom"))));
    QVERIFY(QDir(installation::path(QStringLiteral("elsewhere"))).removeRecursively());
}

void TstOrvexManagerCommit::directoriesAndCopyAreToldOnTheDebugOutput()
{
    OrvexManager window(nullptr);
    window.show();
    const QString root = QRegularExpression::escape(installation::root());
    QTest::ignoreMessage(QtDebugMsg, QRegularExpression(QLatin1Char('^') + QStringLiteral("\"?") + root +
                                                        QStringLiteral("custom\"?\\s*$")));
    QTest::ignoreMessage(QtDebugMsg,
                         QRegularExpression(QStringLiteral("^\"?cp  -Rf .*custom/.*\\*.*UpdateCustom/1700000000/")));
    // Each message that does not come fails the test.
    QCOMPARE(commit(window), QStringList());
}

void TstOrvexManagerCommit::theWindowsBelongToTheMainWindow()
{
    OrvexManager window(nullptr);
    window.show();
    QList<QObject*> parents;
    ModalScript script;
    script.expect<FinishDlg>([&](FinishDlg& dialog) {
        parents.append(dialog.parent());
        pressOk(dialog);
    });
    script.expect<CustomCompleteDlg>([&](CustomCompleteDlg& dialog) {
        parents.append(dialog.parent());
        click(dialog, "pushButton_exit");
    });
    script.tolerate<PackingWait>();
    click(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(parents, (QList<QObject*>{&window, &window}));
    QVERIFY(window.findChildren<QDialog*>().isEmpty());
}

void TstOrvexManagerCommit::theProgressWindowComesBetweenVerificationAndHistory()
{
    class Watcher : public QObject
    {
    public:
        explicit Watcher(const OrvexManager& window) : m_window(window) {}
        int shows = 0;
        bool isChild = false;
        QStringList working;
        int rows = -1;
        bool isStored = true;
        bool eventFilter(QObject* object, QEvent* event) override
        {
            const PackingWait* wait = qobject_cast<PackingWait*>(object);
            if (wait && event->type() == QEvent::Show) {
                ++shows;
                isChild = wait->parent() == &m_window;
                working = installation::namesIn(inWorking());
                rows = m_window.history().size();
                isStored = QDir(inStored()).exists();
            }
            return false;
        }

    private:
        const OrvexManager& m_window;
    };
    OrvexManager window(nullptr);
    window.show();
    Watcher watcher(window);
    qApp->installEventFilter(&watcher);
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(watcher.shows, 1);
    QVERIFY(watcher.isChild);
    QCOMPARE(watcher.working, documentFiles());
    QCOMPARE(watcher.rows, 0);
    QVERIFY(!watcher.isStored);
}

void TstOrvexManagerCommit::theSectionsComeInTheirOrder()
{
    OrvexManager window(nullptr);
    window.show();
    child<QCheckBox>(window, "checkBox_keffunc")->setChecked(true);
    QCOMPARE(commit(window), QStringList());
    QDomDocument document;
    QVERIFY(document.setContent(installation::readFile(inStored(QStringLiteral("OrvexCustom.xml")))));
    QStringList sections;
    const QDomElement content = document.documentElement().firstChildElement(QStringLiteral("content"));
    for (QDomElement section = content.firstChildElement(); !section.isNull(); section = section.nextSiblingElement())
        sections.append(section.tagName());
    QCOMPARE(sections.join(QLatin1Char(' ')),
             QStringLiteral("common functions x1 domain portal sslvpn guiOptions ZOA vpn vpnroute kef"));
}

void TstOrvexManagerCommit::theDocumentIsTheRecordAsItStands()
{
    CustomInfo stored = distinctRecord();
    stored.common.cusTimeString = QString::fromLatin1("2023-01-01 00:00:00");
    stored.common.procomVal = 63;
    stored.common.funcomVal = 5;
    stored.gui.linuxDeskIconPath.clear();
    stored.gui.macosDeskIconPath.clear();
    stored.gui.mainIconPath.clear();
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    CustomInfo expected = window.record();
    QCOMPARE(commit(window, QStringLiteral("another")), QStringList());

    expected.common.cusTimeStamp = commitMoment;
    expected.common.cusTimeString = QString::fromLatin1(commitMomentText);
    expected.common.cusAddInfo = QStringLiteral("another");
    expected.common.areaKey = 0;
    const QByteArray written = installation::readFile(inStored(QStringLiteral("OrvexCustom.xml")));
    QCOMPARE(written, documentOf(expected));
    CustomInfo read;
    utl_LoadCustomInfo(inStored(QStringLiteral("OrvexCustom.xml")).toLocal8Bit().constData(), read);
    QCOMPARE(differences(read, expected), QStringList());
}

void TstOrvexManagerCommit::functionComponentsMayBeNone()
{
    OrvexManager window(nullptr);
    window.show();
    tick(window, "checkBox_zoafunc", false);
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(window.history().first().funcomVal, 0U);
    QCOMPARE(window.history().first().procomVal, 3U);
}

void TstOrvexManagerCommit::theKefSectionDependsOnTheBoxAlone()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString(), 1, 4);
    stored.kef.kefIP = QStringLiteral("192.0.2.6");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(commit(window), QStringList());
    QVERIFY(installation::readFile(inStored(QStringLiteral("OrvexCustom.xml"))).contains("<kefIP>192.0.2.6</kefIP>"));

    frozenTime = commitMoment + 1;
    combo->setCurrentIndex(combo->findText(QStringLiteral("2020-09-13"), Qt::MatchStartsWith));
    tick(window, "checkBox_keffunc", false);
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.6"));
    QCOMPARE(commit(window), QStringList());
    const QByteArray without = installation::readFile(inWorking(QStringLiteral("OrvexCustom.xml")));
    QVERIFY(without.contains("<funcomVal>0</funcomVal>"));
    QVERIFY(!without.contains("<kef>"));
}

void TstOrvexManagerCommit::iconsAreCopiedUnderTheirNamesAndDoNotSurvive()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString());
    stored.gui.linuxDeskIconPath = QStringLiteral("a");
    stored.gui.macosDeskIconPath = QStringLiteral("b");
    stored.gui.mainIconPath = QStringLiteral("c");
    storeCustomisation(installation::root(), stored);
    const QString origin = installation::path(QStringLiteral("UpdateCustom/1600000000/"));
    installation::writeFile(origin + QLatin1String("DeskIconLinux.png"), "linux icon");
    installation::writeFile(origin + QLatin1String("DeskIconMacos.icns"), "macOS icon");
    installation::writeFile(origin + QLatin1String("MainIcon.ico"), "main icon");
    QFile::setPermissions(origin + QLatin1String("MainIcon.ico"), QFile::ReadOwner | QFile::WriteOwner);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    {
        const CommandRecorder recorder;
        QCOMPARE(commit(window), QStringList());
        const QByteArray root = installation::root().toLocal8Bit();
        QVERIFY(recorder.commands().contains("cp -f \"" + root + "UpdateCustom/1600000000/MainIcon.ico\" \"" + root +
                                             "custom/MainIcon.ico\""));
        QVERIFY(recorder.commands().contains("chmod a+r " + root + "custom/MainIcon.ico"));
    }
    QCOMPARE(installation::readFile(inStored(QStringLiteral("DeskIconLinux.png"))), QByteArray("linux icon"));
    QCOMPARE(installation::readFile(inStored(QStringLiteral("DeskIconMacos.icns"))), QByteArray("macOS icon"));
    QCOMPARE(installation::readFile(inStored(QStringLiteral("MainIcon.ico"))), QByteArray("main icon"));
    QVERIFY(QFile::permissions(inWorking(QStringLiteral("MainIcon.ico"))).testFlag(QFile::ReadOther));

    frozenTime = commitMoment + 1;
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(installation::namesIn(inWorking()), documentFiles());
    QVERIFY(QFile::exists(inStored(QStringLiteral("MainIcon.ico"))));
}

void TstOrvexManagerCommit::iconsAreCopiedInTheirOrder()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString());
    stored.gui.linuxDeskIconPath = QStringLiteral("a");
    stored.gui.macosDeskIconPath = QStringLiteral("b");
    stored.gui.mainIconPath = QStringLiteral("c");
    storeCustomisation(installation::root(), stored);
    const QString origin = inHistory(QStringLiteral("1600000000/"));
    for (const char* icon : {"DeskIconLinux.png", "DeskIconMacos.icns", "MainIcon.ico"})
        installation::writeFile(origin + QLatin1String(icon), icon);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    const CommandRecorder recorder;
    QCOMPARE(commit(window), QStringList());
    const QByteArray root = installation::root().toLocal8Bit();
    const auto copy = [&root](const QByteArray& name) {
        return "cp -f \"" + root + "UpdateCustom/1600000000/" + name + "\" \"" + root + "custom/" + name + "\"";
    };
    const auto change = [&root](const QByteArray& name) { return "chmod a+r " + root + "custom/" + name; };
    const QByteArrayList expected = {
        copy("DeskIconLinux.png"),    change("DeskIconLinux.png"), copy("DeskIconMacos.icns"),
        change("DeskIconMacos.icns"), copy("MainIcon.ico"),        change("MainIcon.ico"),
    };
    QCOMPARE(recorder.commands().mid(1, 6), expected);
}

void TstOrvexManagerCommit::aMissingIconIsNotNoticed()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString());
    stored.gui.mainIconPath = QStringLiteral("gone");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(commit(window), QStringList());
    QVERIFY(installation::readFile(inStored(QStringLiteral("OrvexCustom.xml"))).contains("<mainIcon>true</mainIcon>"));
    QVERIFY(!QFile::exists(inStored(QStringLiteral("MainIcon.ico"))));
}

void TstOrvexManagerCommit::namesWithoutADotStayInTheWorkingDirectory()
{
    installation::writeFile(inWorking(QStringLiteral("README")), "no dot");
    installation::writeFile(inWorking(QStringLiteral("notes.txt")), "a dot");
    installation::writeFile(inWorking(QStringLiteral("sub.d/file")), "below a dot");
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(installation::namesIn(inWorking()),
             (QStringList{QStringLiteral("OrvexCustom.xml"), QStringLiteral("OrvexCustomXml.vrf"),
                          QStringLiteral("README")}));
    QVERIFY(QFile::exists(inStored(QStringLiteral("README"))));
}

void TstOrvexManagerCommit::theRecordIsResetAfterwards()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QStringLiteral("a"), 48, 0);
    stored.gui.subTitle = QStringLiteral("title");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
    QCOMPARE(tickedBoxes(window),
             (QStringList{QStringLiteral("8021xPro"), QStringLiteral("portalPro"), QStringLiteral("zoafunc")}));
}

void TstOrvexManagerCommit::aCommitEnablesDeleteAllAlone()
{
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(!isEnabled(window, "toolButton_deleteall"));
    QCOMPARE(commit(window), QStringList());
    QVERIFY(isEnabled(window, "toolButton_deleteall"));
    QVERIFY(!isEnabled(window, "toolButton_detail"));
    QVERIFY(!isEnabled(window, "toolButton_delete"));
}

void TstOrvexManagerCommit::valuesThatNoBoxStandsForAreNotCommitted()
{
    storeCustomisation(installation::root(),
                       storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString(), 64 + 1, 2 + 1));
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(window.record().common.procomVal, quint64(65));
    QCOMPARE(window.record().common.funcomVal, quint64(3));
    QCOMPARE(commit(window), QStringList());
    const QByteArray document = installation::readFile(inStored(QStringLiteral("OrvexCustom.xml")));
    QVERIFY(document.contains("<procomVal>1</procomVal>"));
    QVERIFY(document.contains("<funcomVal>1</funcomVal>"));
    QCOMPARE(window.history().first().procomVal, 1U);
    QCOMPARE(window.history().first().funcomVal, 1U);
}

void TstOrvexManagerCommit::theBrandByteGoesIntoTheDocument()
{
    writeSettings("Area=wy\n");
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    QVERIFY(installation::readFile(inStored(QStringLiteral("OrvexCustom.xml"))).contains("<areaKey>1</areaKey>"));
}

void TstOrvexManagerCommit::theReportTellsWhatWasAskedFor_data()
{
    QTest::addColumn<int>("packages");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QStringList>("rows");
    QTest::newRow("setup") << 1 << QStringLiteral("CusSuccHint") << QStringList{QStringLiteral("widget_setup")};
    QTest::newRow("update") << 2 << QStringLiteral("GenUpdateSuccHint") << QStringList{QStringLiteral("widget_update")};
    QTest::newRow("setup and customised update")
        << 5 << QStringLiteral("GenSetupAndCusUpdSuccHint")
        << QStringList{QStringLiteral("widget_setup"), QStringLiteral("widget_cusupd")};
}

void TstOrvexManagerCommit::theReportTellsWhatWasAskedFor()
{
    QFETCH(int, packages);
    QFETCH(QString, key);
    OrvexManager window(nullptr);
    window.show();
    QStringList rows;
    QString line;
    ModalScript script;
    expectFinish(script, QStringLiteral("remark"), packages);
    script.expect<CustomCompleteDlg>([&](CustomCompleteDlg& dialog) {
        for (const char* name : {"widget_setup", "widget_update", "widget_cusupd"}) {
            if (child<QWidget>(dialog, name)->isVisible())
                rows.append(QLatin1String(name));
        }
        if (child<QLabel>(dialog, "label_customSuccHint")->isVisible())
            line = child<QLabel>(dialog, "label_customSuccHint")->text();
        click(dialog, "pushButton_exit");
    });
    script.tolerate<PackingWait>();
    // Nothing is run, so nothing is made; the report tells it all the same.
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    QDir().mkpath(inWorking());
    click(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QTEST(rows, "rows");
    QCOMPARE(line, langText(key.toLatin1().constData()));
}

void TstOrvexManagerCommit::theDetailIndexIsNotMovedByACommit()
{
    storeRow(1600000000, "2020-09-13 20:26:40", "old");
    OrvexManager window(nullptr);
    window.show();
    clickRow(window, 0);
    child<QListWidget>(window, "listWidget")->setCurrentRow(0);
    QCOMPARE(commit(window), QStringList());
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    QVERIFY(titleOfDetails(window).contains(QLatin1String(commitMomentText)));
}

void TstOrvexManagerCommit::theStoredHistoryIsNotTouchedByACommit()
{
    storeCustomisation(installation::root(),
                       storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QStringLiteral("old")));
    const QString old = installation::path(QStringLiteral("UpdateCustom/1600000000"));
    const QStringList before = installation::describeTree(old);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(installation::describeTree(old), before);
    QCOMPARE(window.history().size(), 2);
}

TEST_ENTRY(orvexmanager_commit, playTest<TstOrvexManagerCommit>)

#include "tst_orvexmanager_commit.moc"
