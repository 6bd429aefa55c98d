#include "advanced/CustomAdvProperty.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/CommandRecorder.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfoLoad.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>

using windowplay::click;

namespace {

const QStringList defaultBoxes = {QStringLiteral("8021xPro"), QStringLiteral("portalPro"), QStringLiteral("zoafunc")};

/// What a failing load of the document logs, a line for each section.
QStringList unopenedLines(int count)
{
    QStringList lines;
    while (lines.size() < count)
        lines.append(QStringLiteral("CBasedQtXmlParser::LoadXmlFile:Open XML File[/OrvexCustom.xml]."));
    return lines;
}

} // namespace

// How a stored customisation becomes the starting point of a new one.
class TstOrvexManagerChoice : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void anEntryTellsTimeComponentsAndRemark();
    void anEmptyRemarkLeavesTheBlanksOfBothGaps();
    void tooltipsTellWhatTheClosedBoxCutsOff();
    void aWheelInPassingKeepsTheChoiceAndTheRecord();
    void eachComponentHasItsBox_data();
    void eachComponentHasItsBox();
    void choosingAnEntryLoadsTheWholeRecord();
    void choosingOneEntryAfterAnotherDoesNotMixThem();
    void choosingReadsTheStoreOnly();
    void sectionsThatADocumentLacksStayAtTheDefaults();
    void twoEntriesOfOneTimeLoadTheFirst();
    void timesThatDifferOnlyInCaseAreOneTime();
    void anEntryWithoutATimeFindsNoRow();
    void theEmptyEntryGoesBackToTheDefaults();
    void eachChoiceOfTheEmptyEntryLogsALineForEachSection();
    void clearingAndFillingBothLogALineForEachSection();
    void aDocumentThatIsGonePutsTheComboBack();
    void anAlteredDocumentPutsTheComboBack();
};

void TstOrvexManagerChoice::anEntryTellsTimeComponentsAndRemark()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QStringLiteral("北京"), 25, 5));
    const OrvexManager window(nullptr);
    const QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    QCOMPARE(combo->count(), 2);
    QCOMPARE(combo->itemText(1), QStringLiteral("2023-11-15 06:13:20    802.1X  SSLVPN  WLAN  ZOA  KEF      北京"));
    QVERIFY(!combo->itemData(1).isValid());
    for (int entry = 0; entry < 2; ++entry)
        QVERIFY(combo->itemIcon(entry).isNull());
    QCOMPARE(combo->currentIndex(), 0);
}

void TstOrvexManagerChoice::anEmptyRemarkLeavesTheBlanksOfBothGaps()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 0, 0));
    const OrvexManager window(nullptr);
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->itemText(1),
             QStringLiteral("2023-11-15 06:13:20        "));
}

void TstOrvexManagerChoice::tooltipsTellWhatTheClosedBoxCutsOff()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "<b>Beijing</b> A & B");
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    const QString text = QStringLiteral("2023-11-15 06:13:21    802.1X  Portal  ZOA      <b>Beijing</b> A & B");
    QCOMPARE(combo->itemText(1), text);
    QCOMPARE(combo->view()->textElideMode(), Qt::ElideRight);
    QCOMPARE(readToolTip(combo->itemData(1, Qt::ToolTipRole).toString()), text);
    QVERIFY(!combo->itemData(1).isValid());
    QVERIFY(!combo->itemData(0, Qt::ToolTipRole).isValid());
    QCOMPARE(combo->toolTip(), QString());
    combo->setCurrentIndex(1);
    QCOMPARE(readToolTip(combo->toolTip()), text);
    QCOMPARE(QAccessible::queryAccessibleInterface(combo)->text(QAccessible::Description), text);
    combo->setCurrentIndex(0);
    QCOMPARE(combo->toolTip(), QString());
}

void TstOrvexManagerChoice::aWheelInPassingKeepsTheChoiceAndTheRecord()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "Beijing");
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    QVERIFY(!combo->hasFocus());
    windowplay::turnWheel(combo, -120);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(window.record().common.cusAddInfo, QString());
    combo->setFocus(Qt::TabFocusReason);
    windowplay::turnWheel(combo, -120);
    QCOMPARE(combo->currentIndex(), 1);
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("Beijing"));
}

void TstOrvexManagerChoice::eachComponentHasItsBox_data()
{
    QTest::addColumn<int>("procomVal");
    QTest::addColumn<int>("funcomVal");
    QTest::addColumn<QString>("box");
    QTest::newRow("802.1X") << 1 << 0 << QStringLiteral("8021xPro");
    QTest::newRow("Portal") << 2 << 0 << QStringLiteral("portalPro");
    QTest::newRow("L2TP IPsec VPN") << 4 << 0 << QStringLiteral("ipsecvpnPro");
    QTest::newRow("WLAN") << 8 << 0 << QStringLiteral("wlanPro");
    QTest::newRow("SSL VPN") << 16 << 0 << QStringLiteral("sslvpnPro");
    QTest::newRow("ZOA direct") << 32 << 0 << QStringLiteral("zoaPro");
    QTest::newRow("ZOA") << 64 << 1 << QStringLiteral("zoafunc");
    QTest::newRow("no component") << 64 << 2 << QString();
    QTest::newRow("KEF") << 64 << 4 << QStringLiteral("keffunc");
}

void TstOrvexManagerChoice::eachComponentHasItsBox()
{
    QFETCH(int, procomVal);
    QFETCH(int, funcomVal);
    QFETCH(QString, box);
    storeCustomisation(installation::root(), storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(),
                                                          quint64(procomVal), quint64(funcomVal)));
    OrvexManager window(nullptr);
    // No dialog comes of a tick that the program sets.
    ModalScript script;
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(tickedBoxes(window), box.isEmpty() ? QStringList() : QStringList{box});

    // The masks are counted from the boxes anew, so values that no box stands for go.
    const int access = procomVal & 63;
    if (access == 0)
        child<QCheckBox>(window, "checkBox_wlanPro")->setChecked(true);
    script.expect<CustomAdvProperty>([](CustomAdvProperty& dialog) { pressCancel(dialog, "buttonBox_adv"); });
    click(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().common.procomVal, quint64(access == 0 ? 8 : access));
    QCOMPARE(window.record().common.funcomVal, quint64(funcomVal & 5));
}

void TstOrvexManagerChoice::choosingAnEntryLoadsTheWholeRecord()
{
    CustomInfo stored = distinctRecord();
    stored.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    stored.common.procomVal = 63;
    stored.common.funcomVal = 5;
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);

    CustomInfo loaded;
    const QString document = inHistory(QStringLiteral("%1/OrvexCustom.xml").arg(stored.common.cusTimeStamp));
    utl_LoadCustomInfo(document.toLocal8Bit().constData(), loaded);
    QVERIFY(loaded.x1.defaultConnection);
    QCOMPARE(differences(window.record(), loaded), QStringList());
    QCOMPARE(window.record().common.cusTimeStamp, stored.common.cusTimeStamp);
    QCOMPARE(tickedBoxes(window).size(), 8);
}

void TstOrvexManagerChoice::choosingOneEntryAfterAnotherDoesNotMixThem()
{
    CustomInfo stored = distinctRecord();
    stored.common.cusTimeStamp = 1700000000;
    stored.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    storeCustomisation(installation::root(), stored);
    stored.common.cusTimeStamp = 1700000001;
    stored.common.cusTimeString = QStringLiteral("2023-11-15 06:13:21");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    CustomInfo first = window.record();
    QVERIFY(!first.vpnRoutes.isEmpty());
    combo->setCurrentIndex(2);
    CustomInfo second = window.record();
    QVERIFY(first.common.cusTimeString != second.common.cusTimeString);
    // Both hold the same but for their times and the directory that their icons lie in.
    second.common = first.common;
    second.gui = first.gui;
    QCOMPARE(differences(second, first), QStringList());
}

void TstOrvexManagerChoice::choosingReadsTheStoreOnly()
{
    CustomInfo stored = distinctRecord();
    stored.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    const QStringList before = installation::describeTree(inHistory());
    const CommandRecorder recorder;
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(installation::describeTree(inHistory()), before);
    QCOMPARE(recorder.commands(), QByteArrayList());
}

void TstOrvexManagerChoice::sectionsThatADocumentLacksStayAtTheDefaults()
{
    storeDocument(installation::root(),
                  "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<msg><content><common>"
                  "<cusTimeStamp>1700000000</cusTimeStamp><cusTimeString>2023-11-15 06:13:20</cusTimeString>"
                  "<cusAddInfo>bare</cusAddInfo><procomVal>32</procomVal><funcomVal>4</funcomVal><areaKey>1</areaKey>"
                  "</common></content></msg>\n",
                  QStringLiteral("1700000000"));
    OrvexManager window(nullptr);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    CustomInfo expected =
        storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QStringLiteral("bare"), 32, 4);
    expected.common.areaKey = 1;
    QCOMPARE(differences(window.record(), expected), QStringList());
    QCOMPARE(tickedBoxes(window), (QStringList{QStringLiteral("zoaPro"), QStringLiteral("keffunc")}));
}

void TstOrvexManagerChoice::twoEntriesOfOneTimeLoadTheFirst()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:21", "two");
    OrvexManager window(nullptr);
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(2);
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->currentIndex(), 2);
    QCOMPARE(window.record().common.cusTimeStamp, window.history().first().cusTimeStamp);
}

void TstOrvexManagerChoice::timesThatDifferOnlyInCaseAreOneTime()
{
    storeRow(1700000001, "ON THE FIRST MORNING", "one");
    storeRow(1700000002, "on the first morning", "two");
    OrvexManager window(nullptr);
    // Only the first 19 characters count, and a longer text never equals them.
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(2);
    QCOMPARE(window.record().common.cusTimeStamp, quint64(0));

    storeRow(1700000001, "ON A SUNNY MORNING,", "one");
    storeRow(1700000002, "on a sunny morning,", "two");
    OrvexManager fitting(nullptr);
    child<QComboBox>(fitting, "comboBox_defaultCus")->setCurrentIndex(2);
    QCOMPARE(fitting.record().common.cusTimeStamp, fitting.history().first().cusTimeStamp);
}

void TstOrvexManagerChoice::anEntryWithoutATimeFindsNoRow()
{
    storeCustomisation(installation::root(), storedRecord(1700000000, QString(), QStringLiteral("a"), 32, 4));
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    QCOMPARE(combo->itemText(1), QStringLiteral("    ZOADirect  KEF      a"));
    combo->setCurrentIndex(1);
    QCOMPARE(combo->currentIndex(), 1);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
}

void TstOrvexManagerChoice::theEmptyEntryGoesBackToTheDefaults()
{
    CustomInfo stored = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QStringLiteral("a"), 32, 0);
    stored.zoa.standbyZOAIP = QStringLiteral("192.0.2.9");
    stored.gui.subTitle = QStringLiteral("title");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(tickedBoxes(window), QStringList{QStringLiteral("zoaPro")});
    combo->setCurrentIndex(0);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    // The standby address outlives a reset.
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList{QStringLiteral("ZOA/standbyZOAIP")});
}

void TstOrvexManagerChoice::eachChoiceOfTheEmptyEntryLogsALineForEachSection()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString()));
    OrvexManager window(nullptr);
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    installation::clearLog();
    combo->setCurrentIndex(0);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), unopenedLines(11));
}

void TstOrvexManagerChoice::clearingAndFillingBothLogALineForEachSection()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    installation::clearLog();
    OrvexManager window(nullptr);
    window.show();
    // The box is empty when it is first cleared.
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), unopenedLines(11));
    clickRow(window, 0);
    installation::clearLog();
    click(window, "toolButton_delete");
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), unopenedLines(22));
}

void TstOrvexManagerChoice::aDocumentThatIsGonePutsTheComboBack()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 16, 0));
    OrvexManager window(nullptr);
    QVERIFY(QFile::remove(inHistory(QStringLiteral("1700000000/OrvexCustom.xml"))));
    installation::clearLog();
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(combo->count(), 2);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("GetSelCusDir::utl_FileExists failed.")));
}

void TstOrvexManagerChoice::anAlteredDocumentPutsTheComboBack()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 16, 0));
    OrvexManager window(nullptr);
    const QString document = inHistory(QStringLiteral("1700000000/OrvexCustom.xml"));
    installation::writeFile(document, installation::readFile(document) + "\n");
    installation::clearLog();
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(combo->currentIndex(), 0);
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("GetSelCusDir::utl_CusXmlVerify failed.")));
}

TEST_ENTRY(orvexmanager_choice, playTest<TstOrvexManagerChoice>)

#include "tst_orvexmanager_choice.moc"
