#include "advanced/KEFCusOpt.h"
#include "app/LangText.h"
#include "common/CustomInfoLoad.h"
#include "common/CustomInfoVerify.h"
#include "mainwindow/MainWindowFixture.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "view/ShowDetailDlg.h"

#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

namespace {

constexpr time_t s_moment = 1700000000;
const char s_momentText[] = "2023-11-15 06:13:20"; // in the zone of the tests, Asia/Shanghai

QString custom(const char* relative)
{
    return installation::path(QLatin1String("custom/") + QLatin1String(relative));
}

QString storedHere(const char* relative = "")
{
    return installation::path(QLatin1String("UpdateCustom/1700000000/") + QLatin1String(relative));
}

/// Plays the Finish dialog: the remark, no package, Ok.
void expectFinish(ModalScript& script, const QString& remark)
{
    script.expect<FinishDlg>([remark](FinishDlg& dialog) {
        child<QLineEdit>(dialog, "lineEdit_addinfo")->setText(remark);
        pressOk(dialog);
    });
}

void expectReport(ModalScript& script, QString* line = nullptr)
{
    script.expect<CustomCompleteDlg>([line](CustomCompleteDlg& dialog) {
        if (line)
            *line = child<QLabel>(dialog, "label_customSuccHint")->text();
        press(dialog, "pushButton_exit");
    });
}

/// One whole commit without packages. The progress window closes by itself, often before it can be seen.
QStringList commit(const OrvexManager& window, const QString& remark = QStringLiteral("remark"))
{
    ModalScript script;
    expectFinish(script, remark);
    expectReport(script);
    script.tolerate<PackingWait>();
    press(window, "toolButton_finish");
    return script.complaints();
}

} // namespace

class TstOrvexManagerCommit : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        prepareInstallation();
        frozenTime = s_moment;
    }
    void cleanup() { frozenTime = 0; }

    void withoutPackagesDocumentHistoryAndReportFollow();
    void theCommandsComeInOrderLetterForLetter();
    void theDocumentIsTheRecordAsItStands();
    void cancelChangesNothing();
    void withoutAccessComponentsTheCommitStopsButTheRemarkStays();
    void functionComponentsMayBeNone();
    void theKefSectionDependsOnTheBoxAlone();
    void iconsAreCopiedUnderTheirNamesAndDoNotSurvive();
    void aMissingIconIsNotNoticed();
    void namesWithoutADotStayInTheWorkingDirectory();
    void twoCommitsInOneSecondShareTheirDirectory();
    void theRecordIsResetAfterwards();
    void anUnwritableWorkingDirectoryIsTold();
    void anOversizedDocumentIsToldAndNothingIsStored();
    void afterARefusalTheNextFinishWorks();
    void theBrandByteGoesIntoTheDocument();
    void aStampPast2038ReadsAsZero();
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
    press(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(line, langText("CusCfgOnlySuccHint"));

    QCOMPARE(installation::namesIn(custom("")), (QStringList{QStringLiteral("OrvexCustom.xml"),
                                                             QStringLiteral("OrvexCustomXml.vrf")}));
    QCOMPARE(installation::describeTree(storedHere()), installation::describeTree(custom("")));
    QVERIFY(utl_CusXmlVerify(custom("").chopped(1).toLocal8Bit().constData()));
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusTimeStamp, quint64(s_moment));
    QCOMPARE(window.history().first().cusTimeString, QString::fromLatin1(s_momentText));
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
    frozenTime = s_moment + 1;
    QCOMPARE(commit(window), QStringList());
    const QByteArray root = installation::root().toLocal8Bit();
    const QByteArrayList expected = {
        "find \"" + root + "custom\" -name \"*.*\" -exec rm -rf {} \\;",
        "mkdir -p \"" + root + "UpdateCustom/1700000001\"",
        "cp  -Rf \"" + root + "custom/\"* \"" + root + "UpdateCustom/1700000001/\"",
    };
    QCOMPARE(recorder.commands(), expected);
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

    expected.common.cusTimeStamp = s_moment;
    expected.common.cusTimeString = QString::fromLatin1(s_momentText);
    expected.common.cusAddInfo = QStringLiteral("another");
    expected.common.areaKey = 0;
    const QByteArray written = installation::readFile(storedHere("OrvexCustom.xml"));
    QCOMPARE(written, documentOf(expected));
    CustomInfo read;
    utl_LoadCustomInfo(storedHere("OrvexCustom.xml").toLocal8Bit().constData(), read);
    QCOMPARE(differences(read, expected), QStringList());
}

void TstOrvexManagerCommit::cancelChangesNothing()
{
    OrvexManager window(nullptr);
    window.show();
    const CustomInfo before = window.record();
    const CommandRecorder recorder;
    ModalScript script;
    script.expect<FinishDlg>([](FinishDlg& dialog) {
        child<QLineEdit>(dialog, "lineEdit_addinfo")->setText(QStringLiteral("typed"));
        pressCancel(dialog);
    });
    press(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(differences(window.record(), before), QStringList());
    QVERIFY(!QDir(custom("")).exists());
}

void TstOrvexManagerCommit::withoutAccessComponentsTheCommitStopsButTheRemarkStays()
{
    OrvexManager window(nullptr);
    window.show();
    installation::writeFile(custom("old.xml"), "earlier");
    setTicked(window, "checkBox_8021xPro", false);
    setTicked(window, "checkBox_portalPro", false);
    ShownBox shown;
    ModalScript script;
    expectFinish(script, QStringLiteral("kept"));
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "SelProtocolPls"));
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("kept"));
    QCOMPARE(window.record().common.procomVal, quint64(0));
    QCOMPARE(window.record().common.funcomVal, quint64(1));
    QCOMPARE(installation::namesIn(custom("")), QStringList{QStringLiteral("old.xml")});
    QVERIFY(window.history().isEmpty());
}

void TstOrvexManagerCommit::functionComponentsMayBeNone()
{
    OrvexManager window(nullptr);
    window.show();
    setTicked(window, "checkBox_zoafunc", false);
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
    QVERIFY(installation::readFile(storedHere("OrvexCustom.xml")).contains("<kefIP>192.0.2.6</kefIP>"));

    frozenTime = s_moment + 1;
    combo->setCurrentIndex(combo->findText(QStringLiteral("2020-09-13"), Qt::MatchStartsWith));
    setTicked(window, "checkBox_keffunc", false);
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.6"));
    QCOMPARE(commit(window), QStringList());
    const QByteArray without = installation::readFile(custom("OrvexCustom.xml"));
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
    QCOMPARE(installation::readFile(storedHere("DeskIconLinux.png")), QByteArray("linux icon"));
    QCOMPARE(installation::readFile(storedHere("DeskIconMacos.icns")), QByteArray("macOS icon"));
    QCOMPARE(installation::readFile(storedHere("MainIcon.ico")), QByteArray("main icon"));
    QVERIFY(QFile::permissions(custom("MainIcon.ico")).testFlag(QFile::ReadOther));

    frozenTime = s_moment + 1;
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(installation::namesIn(custom("")), (QStringList{QStringLiteral("OrvexCustom.xml"),
                                                             QStringLiteral("OrvexCustomXml.vrf")}));
    QVERIFY(QFile::exists(storedHere("MainIcon.ico")));
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
    QVERIFY(installation::readFile(storedHere("OrvexCustom.xml")).contains("<mainIcon>true</mainIcon>"));
    QVERIFY(!QFile::exists(storedHere("MainIcon.ico")));
}

void TstOrvexManagerCommit::namesWithoutADotStayInTheWorkingDirectory()
{
    installation::writeFile(custom("README"), "no dot");
    installation::writeFile(custom("notes.txt"), "a dot");
    installation::writeFile(custom("sub.d/file"), "below a dot");
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(installation::namesIn(custom("")), (QStringList{QStringLiteral("OrvexCustom.xml"),
                                                             QStringLiteral("OrvexCustomXml.vrf"),
                                                             QStringLiteral("README")}));
    QVERIFY(QFile::exists(storedHere("README")));
}

void TstOrvexManagerCommit::twoCommitsInOneSecondShareTheirDirectory()
{
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window, QStringLiteral("first")), QStringList());
    const QByteArray random = installation::readFile(storedHere("OrvexCustomXml.vrf")).left(240);
    QCOMPARE(commit(window, QStringLiteral("second")), QStringList());
    QCOMPARE(window.history().size(), 2);
    QCOMPARE(window.history().at(0).cusTimeStamp, window.history().at(1).cusTimeStamp);
    QVERIFY(installation::readFile(storedHere("OrvexCustom.xml")).contains("<cusAddInfo>second</cusAddInfo>"));
    QCOMPARE(installation::readFile(storedHere("OrvexCustomXml.vrf")).left(240), random);
    QVERIFY(utl_CusXmlVerify(storedHere().chopped(1).toLocal8Bit().constData()));
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
    QCOMPARE(tickedBoxes(window), (QStringList{QStringLiteral("8021xPro"), QStringLiteral("portalPro"),
                                               QStringLiteral("zoafunc")}));
}

void TstOrvexManagerCommit::anUnwritableWorkingDirectoryIsTold()
{
    OrvexManager window(nullptr);
    window.show();
    // A plain file where the directory should stand keeps the document from being written, for root as well.
    installation::writeFile(installation::path(QStringLiteral("custom")), "in the way");
    ShownBox shown;
    ModalScript script;
    expectFinish(script, QStringLiteral("kept"));
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "GenVrfFailed"));
    QVERIFY(window.history().isEmpty());
    QVERIFY(!QDir(storedHere()).exists());
    QCOMPARE(window.record().common.cusTimeStamp, quint64(s_moment));
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("kept"));
}

void TstOrvexManagerCommit::anOversizedDocumentIsToldAndNothingIsStored()
{
    CustomInfo stored = storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QString());
    // Fits as it is; the remark typed at Finish makes it too long.
    stored.gui.subTitle = QString(34600, QLatin1Char('x'));
    while (documentOf(stored).size() < int(uiCustomInfoLen) - 60)
        stored.gui.subTitle += QLatin1Char('x');
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(window.history().size(), 1);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    const QStringList before = installation::describeTree(installation::path(QStringLiteral("UpdateCustom")));
    ShownBox shown;
    ModalScript script;
    expectFinish(script, QString(120, QLatin1Char('y')));
    script.expect<QMessageBox>(answer(shown));
    press(window, "toolButton_finish");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, "GenVrfFailed"));
    QCOMPARE(installation::describeTree(installation::path(QStringLiteral("UpdateCustom"))), before);
    QCOMPARE(window.history().size(), 1);
    QVERIFY(installation::readFile(custom("OrvexCustom.xml")).size() > int(uiCustomInfoLen));
    QCOMPARE(window.record().gui.subTitle, stored.gui.subTitle);
}

void TstOrvexManagerCommit::afterARefusalTheNextFinishWorks()
{
    OrvexManager window(nullptr);
    window.show();
    installation::writeFile(installation::path(QStringLiteral("custom")), "in the way");
    {
        ShownBox shown;
        ModalScript script;
        expectFinish(script, QStringLiteral("kept"));
        script.expect<QMessageBox>(answer(shown));
        press(window, "toolButton_finish");
        QCOMPARE(script.complaints(), QStringList());
    }
    QVERIFY(QFile::remove(installation::path(QStringLiteral("custom"))));
    frozenTime = s_moment + 5;
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusTimeStamp, quint64(s_moment + 5));
}

void TstOrvexManagerCommit::theBrandByteGoesIntoTheDocument()
{
    writeSettings("Area=wy\n");
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    QVERIFY(installation::readFile(storedHere("OrvexCustom.xml")).contains("<areaKey>1</areaKey>"));
}

void TstOrvexManagerCommit::aStampPast2038ReadsAsZero()
{
    frozenTime = 2147483648;
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    const QString directory = installation::path(QStringLiteral("UpdateCustom/-2147483648/"));
    QVERIFY(installation::readFile(directory + QLatin1String("OrvexCustom.xml"))
                .contains("<cusTimeStamp>-2147483648</cusTimeStamp>"));
    QCOMPARE(window.history().first().cusTimeStamp, quint64(2147483648));
    const OrvexManager nextStart(nullptr);
    QCOMPARE(nextStart.history().first().cusTimeStamp, quint64(0));
}

void TstOrvexManagerCommit::theDetailIndexIsNotMovedByACommit()
{
    storeCustomisation(installation::root(),
                       storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QStringLiteral("old")));
    OrvexManager window(nullptr);
    window.show();
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    QTreeWidget* tree = child<QTreeWidget>(window, "treeWidget_cusHis");
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree->visualItemRect(tree->topLevelItem(0)).center());
    child<QListWidget>(window, "listWidget")->setCurrentRow(0);
    QCOMPARE(commit(window), QStringList());
    child<QListWidget>(window, "listWidget")->setCurrentRow(1);
    QString title;
    ModalScript script;
    script.expect<ShowDetailDlg>([&](ShowDetailDlg& dialog) {
        title = dialog.windowTitle();
        press(dialog, "toolButton");
    });
    press(window, "toolButton_detail");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(title.contains(QLatin1String(s_momentText)));
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

int main(int argc, char** argv)
{
    return playTest<TstOrvexManagerCommit>(argc, argv);
}

#include "tst_orvexmanager_commit.moc"
