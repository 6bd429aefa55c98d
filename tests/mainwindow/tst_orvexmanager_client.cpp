#include "advanced/CustomAdvProperty.h"
#include "advanced/KEFCusOpt.h"
#include "app/language/LangText.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QToolButton>

using windowplay::click;

namespace {

const QStringList defaultBoxes = {QStringLiteral("8021xPro"), QStringLiteral("portalPro"), QStringLiteral("zoafunc")};

void untickAccess(const OrvexManager& window)
{
    for (const char* box : {"checkBox_8021xPro", "checkBox_portalPro", "checkBox_sslvpnPro", "checkBox_wlanPro",
                            "checkBox_ipsecvpnPro", "checkBox_zoaPro"})
        tick(window, box, false);
}

/// Stores a customisation with all three fields of KEF, whatever the mask says of that component.
void storeKef(int funcomVal)
{
    CustomInfo stored = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 1, 4);
    stored.kef.kefIP = QStringLiteral("192.0.2.6");
    stored.kef.kefPort = QStringLiteral("9030");
    stored.kef.customize = true;
    const QByteArray mask = "<funcomVal>" + QByteArray::number(funcomVal) + "</funcomVal>";
    const QByteArray document = documentOf(stored).replace("<funcomVal>4</funcomVal>", mask);
    QVERIFY(document.contains(mask));
    storeDocument(installation::root(), document, QStringLiteral("1700000000"));
}

bool holdsStoredKef(const OrvexManager& window)
{
    const auto& kef = window.record().kef;
    return kef.kefIP == QLatin1String("192.0.2.6") && kef.kefPort == QLatin1String("9030") && kef.customize;
}

} // namespace

class TstOrvexManagerClient : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void anEmptyHistoryGivesOneEmptyEntryAndTheDefaults();
    void theIpsecBoxStaysHidden();
    void summaryWordsComeInTheirOwnOrder_data();
    void summaryWordsComeInTheirOwnOrder();
    void withoutAccessComponentsAdvancedIsRefused();
    void aStoredIpsecComponentCountsThoughItsBoxIsHidden();
    void advancedTakesTheMasksFromTheBoxes();
    void advancedWritesIntoTheRecordInHand();
    void tickingKefAsksAndTakesTheAnswers();
    void cancellingTheKefDialogUnticksTheBox();
    void cancellingTheKefDialogKeepsTheStoredFields_data();
    void cancellingTheKefDialogKeepsTheStoredFields();
    void acceptingTheKefDialogReplacesAllThreeStoredFields();
    void kefDialogOpensWithItsDefaultsOverAStoredRecord();
    void untickingKefAsksNothingAndKeepsTheFields();
};

void TstOrvexManagerClient::anEmptyHistoryGivesOneEmptyEntryAndTheDefaults()
{
    OrvexManager window(nullptr);
    const QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    QCOMPARE(combo->count(), 1);
    QCOMPARE(combo->itemText(0), QString());
    QVERIFY(!combo->itemData(0).isValid());
    QVERIFY(!combo->hasFrame());
    QVERIFY(!child<QToolButton>(window, "toolButton_deleteall")->isEnabled());
    QVERIFY(!child<QToolButton>(window, "toolButton_delete")->isEnabled());
    QVERIFY(!child<QToolButton>(window, "toolButton_detail")->isEnabled());
    QCOMPARE(tickedBoxes(window), defaultBoxes);
    QCOMPARE(differences(window.record(), CustomInfo()), QStringList());
}

void TstOrvexManagerClient::theIpsecBoxStaysHidden()
{
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(!child<QCheckBox>(window, "checkBox_ipsecvpnPro")->isVisible());
    for (const char* name : {"checkBox_8021xPro", "checkBox_portalPro", "checkBox_sslvpnPro", "checkBox_wlanPro",
                             "checkBox_zoaPro", "checkBox_zoafunc", "checkBox_keffunc"})
        QVERIFY2(child<QCheckBox>(window, name)->isVisible(), name);
}

void TstOrvexManagerClient::summaryWordsComeInTheirOwnOrder_data()
{
    QTest::addColumn<int>("procomVal");
    QTest::addColumn<int>("funcomVal");
    QTest::addColumn<QString>("summary");
    QTest::newRow("nothing") << 0 << 0 << QString();
    QTest::newRow("802.1X") << 1 << 0 << QStringLiteral("802.1X  ");
    QTest::newRow("WLAN and SSL VPN") << 24 << 0 << QStringLiteral("SSLVPN  WLAN  ");
    QTest::newRow("all") << 63 << 5
                         << QStringLiteral("802.1X  Portal  L2TP IPsec VPN  SSLVPN  WLAN  ZOADirect  ZOA  KEF  ");
    QTest::newRow("the value 2 is no function") << 0 << 2 << QString();
    QTest::newRow("functions") << 0 << 5 << QStringLiteral("ZOA  KEF  ");
}

void TstOrvexManagerClient::summaryWordsComeInTheirOwnOrder()
{
    QFETCH(int, procomVal);
    QFETCH(int, funcomVal);
    OrvexManager window(nullptr);
    QTEST(window.GetCusCompStr(procomVal, funcomVal), "summary");
}

void TstOrvexManagerClient::withoutAccessComponentsAdvancedIsRefused()
{
    OrvexManager window(nullptr);
    window.show();
    untickAccess(window);
    QCOMPARE(tickedBoxes(window), QStringList{QStringLiteral("zoafunc")});
    const auto refuse = [&window] {
        ShownBox shown;
        ModalScript script;
        script.expect<QMessageBox>(answer(shown));
        click(window, "toolButton_adv");
        return script.complaints().isEmpty() && isWarning(shown, window, "SelProtocolPls");
    };
    QVERIFY(refuse());
    QCOMPARE(window.record().common.procomVal, quint64(0));
    // The mask of the functions is not counted then.
    tick(window, "checkBox_zoafunc", false);
    QVERIFY(refuse());
    QCOMPARE(window.record().common.funcomVal, quint64(1));
}

void TstOrvexManagerClient::aStoredIpsecComponentCountsThoughItsBoxIsHidden()
{
    storeCustomisation(installation::root(),
                       storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 4, 0));
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QCOMPARE(tickedBoxes(window), QStringList{QStringLiteral("ipsecvpnPro")});
    ModalScript script;
    script.expect<CustomAdvProperty>([](CustomAdvProperty& dialog) { pressCancel(dialog, "buttonBox_adv"); });
    click(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().common.procomVal, quint64(4));
}

void TstOrvexManagerClient::advancedTakesTheMasksFromTheBoxes()
{
    OrvexManager window(nullptr);
    window.show();
    untickAccess(window);
    tick(window, "checkBox_sslvpnPro", true);
    tick(window, "checkBox_wlanPro", true);
    tick(window, "checkBox_zoaPro", true);
    tick(window, "checkBox_zoafunc", false);
    ModalScript script;
    script.expect<CustomAdvProperty>([](CustomAdvProperty& dialog) { pressCancel(dialog, "buttonBox_adv"); });
    click(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().common.procomVal, quint64(56));
    QCOMPARE(window.record().common.funcomVal, quint64(0));
}

void TstOrvexManagerClient::advancedWritesIntoTheRecordInHand()
{
    OrvexManager window(nullptr);
    window.show();
    bool isChild = false;
    ModalScript script;
    script.expect<CustomAdvProperty>([&](CustomAdvProperty& dialog) {
        isChild = dialog.parent() == &window;
        child<QLineEdit>(dialog, "lineEdit_cusTitle")->setText(QStringLiteral("客户端"));
        child<QLineEdit>(dialog, "lineEdit_ZOAIp")->setText(QStringLiteral("192.0.2.10"));
        pressOk(dialog, "buttonBox_adv");
    });
    click(window, "toolButton_adv");
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isChild);
    QCOMPARE(window.record().gui.subTitle, QStringLiteral("客户端"));
    QCOMPARE(window.record().zoa.ZOAIP, QStringLiteral("192.0.2.10"));
}

void TstOrvexManagerClient::tickingKefAsksAndTakesTheAnswers()
{
    OrvexManager window(nullptr);
    window.show();
    bool isChild = false;
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        isChild = dialog.parent() == &window;
        QTest::keyClicks(child<QLineEdit>(dialog, "lineEdit_kefIp"), QStringLiteral("192.0.2.5"));
        tick(dialog, "checkBox_disable", true);
        pressOk(dialog);
    });
    tick(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isChild);
    QVERIFY(child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.5"));
    QCOMPARE(window.record().kef.kefPort, QStringLiteral("9029"));
    QVERIFY(window.record().kef.customize);
}

void TstOrvexManagerClient::cancellingTheKefDialogUnticksTheBox()
{
    OrvexManager window(nullptr);
    window.show();
    ModalScript script;
    script.expect<KEFCusOpt>([](KEFCusOpt& dialog) {
        QTest::keyClicks(child<QLineEdit>(dialog, "lineEdit_kefIp"), QStringLiteral("192.0.2.5"));
        pressCancel(dialog);
    });
    tick(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(!child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    QCOMPARE(window.record().kef.kefIP, QString());
    QCOMPARE(window.record().kef.kefPort, QString());
}

void TstOrvexManagerClient::cancellingTheKefDialogKeepsTheStoredFields_data()
{
    QTest::addColumn<int>("funcomVal");
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isRefused");
    QTest::newRow("with the component") << 4 << QStringLiteral("192.0.2.5") << false;
    QTest::newRow("without the component") << 0 << QStringLiteral("192.0.2.5") << false;
    QTest::newRow("after a refused address") << 4 << QStringLiteral("127.0.0.1") << true;
}

void TstOrvexManagerClient::cancellingTheKefDialogKeepsTheStoredFields()
{
    QFETCH(int, funcomVal);
    QFETCH(QString, address);
    QFETCH(bool, isRefused);
    storeKef(funcomVal);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(holdsStoredKef(window));
    QCOMPARE(child<QCheckBox>(window, "checkBox_keffunc")->isChecked(), funcomVal == 4);
    tick(window, "checkBox_keffunc", false);
    ShownBox shown;
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        QTest::keyClicks(child<QLineEdit>(dialog, "lineEdit_kefIp"), address);
        child<QLineEdit>(dialog, "lineEdit_kefPort")->setText(QStringLiteral("9031"));
        if (isRefused) {
            script.expect<QMessageBox>(answer(shown));
            pressOk(dialog);
        }
        pressCancel(dialog);
    });
    tick(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(shown.text, isRefused ? langText("KEF_IpErr") : QString());
    QVERIFY(!child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    QVERIFY(holdsStoredKef(window));
}

void TstOrvexManagerClient::acceptingTheKefDialogReplacesAllThreeStoredFields()
{
    storeKef(4);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(holdsStoredKef(window));
    tick(window, "checkBox_keffunc", false);
    ModalScript script;
    script.expect<KEFCusOpt>([](KEFCusOpt& dialog) {
        QTest::keyClicks(child<QLineEdit>(dialog, "lineEdit_kefIp"), QStringLiteral("192.0.2.5"));
        pressOk(dialog);
    });
    tick(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.5"));
    QCOMPARE(window.record().kef.kefPort, QStringLiteral("9029"));
    QVERIFY(!window.record().kef.customize);
}

void TstOrvexManagerClient::kefDialogOpensWithItsDefaultsOverAStoredRecord()
{
    storeKef(4);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(holdsStoredKef(window));
    tick(window, "checkBox_keffunc", false);
    QString address = QStringLiteral("not read");
    QString port;
    bool isTicked = true;
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        address = child<QLineEdit>(dialog, "lineEdit_kefIp")->text();
        port = child<QLineEdit>(dialog, "lineEdit_kefPort")->text();
        isTicked = child<QCheckBox>(dialog, "checkBox_disable")->isChecked();
        pressCancel(dialog);
    });
    tick(window, "checkBox_keffunc", true);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(address, QString());
    QCOMPARE(port, QStringLiteral("9029"));
    QVERIFY(!isTicked);
}

void TstOrvexManagerClient::untickingKefAsksNothingAndKeepsTheFields()
{
    CustomInfo stored = storedRecord(1700000000, QStringLiteral("2023-11-15 06:13:20"), QString(), 1, 4);
    stored.kef.kefIP = QStringLiteral("192.0.2.6");
    storeCustomisation(installation::root(), stored);
    OrvexManager window(nullptr);
    window.show();
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QVERIFY(child<QCheckBox>(window, "checkBox_keffunc")->isChecked());
    ModalScript script;
    tick(window, "checkBox_keffunc", false);
    QTest::qWait(100);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.record().kef.kefIP, QStringLiteral("192.0.2.6"));
}

TEST_ENTRY(orvexmanager_client, playTest<TstOrvexManagerClient>)

#include "tst_orvexmanager_client.moc"
