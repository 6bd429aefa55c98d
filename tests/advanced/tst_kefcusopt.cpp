#include "advanced/KEFCusOpt.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>

using namespace dialogplay;

class TstKEFCusOpt : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opensWithItsDefaultsAndTheFocusOnTheAddress();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void labelsAreBuddiesOfTheirFields();
    void hasNoHelpButton();
    void textsSetAnewBringBackThePortAndTheFocus();
    void okStoresAllResults_data();
    void okStoresAllResults();
    void wrongAddressIsRefusedBeforePortAndFlagAreStored_data();
    void wrongAddressIsRefusedBeforePortAndFlagAreStored();
    void eachRefusalHasABoxOfItsOwn();
    void cancelStoresNothing();
};

void TstKEFCusOpt::initTestCase()
{
    showKeysAsTexts();
}

void TstKEFCusOpt::opensWithItsDefaultsAndTheFocusOnTheAddress()
{
    QString focus;
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        focus = focusOf(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    KEFCusOpt dialog;
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_kefIp")->text(), QString());
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_kefPort")->text(), QStringLiteral("9029"));
    QVERIFY(!child<QCheckBox>(dialog, "checkBox_disable")->isChecked());
    dialog.exec();
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(focus, QStringLiteral("lineEdit_kefIp"));
}

void TstKEFCusOpt::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("label_kefIp") << QStringLiteral("label_kefIp") << QStringLiteral("KEF_ProxyIp");
    QTest::newRow("label_kefPort") << QStringLiteral("label_kefPort") << QStringLiteral("KEF_ProxyPort");
    QTest::newRow("label_usbdefaultPolicy")
        << QStringLiteral("label_usbdefaultPolicy") << QStringLiteral("KEF_USBMonitorPolicy");
    QTest::newRow("checkBox_disable") << QStringLiteral("checkBox_disable")
                                      << QStringLiteral("KEF_StartUSBMonitorBeforeRegister");
}

void TstKEFCusOpt::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    const KEFCusOpt dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("KEF_SetupCustom"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstKEFCusOpt::labelsAreBuddiesOfTheirFields()
{
    const KEFCusOpt dialog;
    QCOMPARE(child<QLabel>(dialog, "label_kefIp")->buddy(), child<QWidget>(dialog, "lineEdit_kefIp"));
    QCOMPARE(child<QLabel>(dialog, "label_kefPort")->buddy(), child<QWidget>(dialog, "lineEdit_kefPort"));
    QCOMPARE(child<QLabel>(dialog, "label_usbdefaultPolicy")->buddy(), child<QWidget>(dialog, "checkBox_disable"));
}

void TstKEFCusOpt::hasNoHelpButton()
{
    const KEFCusOpt dialog;
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstKEFCusOpt::textsSetAnewBringBackThePortAndTheFocus()
{
    KEFCusOpt dialog;
    type(dialog, "lineEdit_kefPort", QStringLiteral("80"));
    child<QLineEdit>(dialog, "lineEdit_kefPort")->setFocus();
    dialog.setWindowText();
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_kefPort")->text(), QStringLiteral("9029"));
    QCOMPARE(dialog.focusWidget(), child<QWidget>(dialog, "lineEdit_kefIp"));
}

void TstKEFCusOpt::okStoresAllResults_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("port");
    QTest::addColumn<bool>("customize");
    const QString good = QStringLiteral("192.168.1.10");
    QTest::newRow("plain") << good << QStringLiteral("8443") << false;
    QTest::newRow("USB monitoring") << good << QStringLiteral("9029") << true;
    QTest::newRow("empty port") << good << QString() << false;
    QTest::newRow("port that is no number") << good << QStringLiteral("kef port") << false;
    QTest::newRow("port 65536") << good << QStringLiteral("65536") << false;
    QTest::newRow("address with a dot behind") << QStringLiteral("192.168.1.10.") << QStringLiteral("80") << false;
    QTest::newRow("loopback with a dot behind") << QStringLiteral("127.0.0.1.") << QStringLiteral("80") << false;
    QTest::newRow("neighbour of loopback") << QStringLiteral("127.0.0.2") << QStringLiteral("80") << false;
    QTest::newRow("all 255") << QStringLiteral("255.255.255.255") << QStringLiteral("80") << false;
}

void TstKEFCusOpt::okStoresAllResults()
{
    QFETCH(QString, address);
    QFETCH(QString, port);
    QFETCH(bool, customize);
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        type(dialog, "lineEdit_kefIp", address);
        type(dialog, "lineEdit_kefPort", port);
        if (customize)
            child<QCheckBox>(dialog, "checkBox_disable")->click();
        press(dialog, QDialogButtonBox::Ok);
    });
    KEFCusOpt dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.address, address);
    QCOMPARE(dialog.port, port);
    QCOMPARE(dialog.customize, customize);
}

void TstKEFCusOpt::wrongAddressIsRefusedBeforePortAndFlagAreStored_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("empty") << QString() << QByteArray("KEF_IpErr");
    QTest::newRow("loopback") << QStringLiteral("127.0.0.1") << QByteArray("KEF_IpErr");
    QTest::newRow("three numbers") << QStringLiteral("192.168.1") << QByteArray("KEF_IpErr2");
    QTest::newRow("256") << QStringLiteral("192.168.1.256") << QByteArray("KEF_IpErr2");
    QTest::newRow("leading zero") << QStringLiteral("192.168.1.010") << QByteArray("KEF_IpErr2");
    QTest::newRow("a name") << QStringLiteral("proxy") << QByteArray("KEF_IpErr2");
    QTest::newRow("blank in front") << QStringLiteral(" 192.168.1.10") << QByteArray("KEF_IpErr2");
    QTest::newRow("blank behind loopback") << QStringLiteral("127.0.0.1 ") << QByteArray("KEF_IpErr2");
}

void TstKEFCusOpt::wrongAddressIsRefusedBeforePortAndFlagAreStored()
{
    QFETCH(QString, address);
    QFETCH(QByteArray, key);
    QStringList told;
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        type(dialog, "lineEdit_kefIp", address);
        child<QCheckBox>(dialog, "checkBox_disable")->click();
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    KEFCusOpt dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("KEF_CreateKEFPacket", key.constData(), "lineEdit_kefIp"));
    QCOMPARE(dialog.address, address);
    QCOMPARE(dialog.port, QString());
    QVERIFY(!dialog.customize);
}

void TstKEFCusOpt::eachRefusalHasABoxOfItsOwn()
{
    QPointer<QMessageBox> first;
    bool firstIsGone = false;
    QStringList told;
    ModalScript script;
    script.expect<KEFCusOpt>([&](KEFCusOpt& dialog) {
        script.expect<QMessageBox>([&](QMessageBox& box) {
            first = &box;
            box.button(QMessageBox::Ok)->click();
        });
        press(dialog, QDialogButtonBox::Ok);
        firstIsGone = first.isNull();
        type(dialog, "lineEdit_kefIp", QStringLiteral("proxy"));
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    KEFCusOpt dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(firstIsGone);
    QCOMPARE(told, refusal("KEF_CreateKEFPacket", "KEF_IpErr2", "lineEdit_kefIp"));
}

void TstKEFCusOpt::cancelStoresNothing()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<KEFCusOpt>([](KEFCusOpt& dialog) {
        type(dialog, "lineEdit_kefIp", QStringLiteral("192.168.1.10"));
        child<QCheckBox>(dialog, "checkBox_disable")->click();
        press(dialog, QDialogButtonBox::Cancel);
    });
    KEFCusOpt dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(dialog.address, QString());
    QCOMPARE(dialog.port, QString());
    QVERIFY(!dialog.customize);
}

TEST_ENTRY(kefcusopt, runTest<TstKEFCusOpt>)

#include "tst_kefcusopt.moc"
