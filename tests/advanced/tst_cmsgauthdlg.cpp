#include "advanced/CMsgAuthDlg.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace dialogplay;

namespace {

void typeServer(const QDialog& dialog, const QString& address, const QString& port)
{
    type(dialog, "lineEdit_MsgAuthSrv_IP", address);
    type(dialog, "lineEdit_MsgAuthSrv_Port", port);
}

} // namespace

class TstCMsgAuthDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opensWithOnlyTheChangeAllowed();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void labelsAreBuddiesOfTheirFields();
    void hasNoHelpButton();
    void okStoresAllResults_data();
    void okStoresAllResults();
    void malformedAddressIsRefusedAndNotStored_data();
    void malformedAddressIsRefusedAndNotStored();
    void anyDottedAddressIsAccepted_data();
    void anyDottedAddressIsAccepted();
    void portOutsideTheRangeIsRefusedAfterTheAddressIsStored_data();
    void portOutsideTheRangeIsRefusedAfterTheAddressIsStored();
    void portWithinTheRangeIsAccepted_data();
    void portWithinTheRangeIsAccepted();
    void addressIsCheckedBeforeThePort();
    void boxesTickedDuringARefusedOkCount();
    void boxesUntickedBeforeTheFirstOkDoNotCount();
    void everyAddressPassesCheckIpAddr_data();
    void everyAddressPassesCheckIpAddr();
    void addressFormIsTheNarrowRule();
    void cancelStoresNothing();
};

void TstCMsgAuthDlg::initTestCase()
{
    showKeysAsTexts();
}

void TstCMsgAuthDlg::opensWithOnlyTheChangeAllowed()
{
    const CMsgAuthDlg dialog;
    QVERIFY(!child<QCheckBox>(dialog, "checkBox_default")->isChecked());
    QVERIFY(child<QCheckBox>(dialog, "checkBox_editable")->isChecked());
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_MsgAuthSrv_IP")->text(), QString());
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_MsgAuthSrv_Port")->text(), QString());
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 0);
    QCOMPARE(dialog.address, QString());
    QCOMPARE(dialog.port, 0UL);
}

void TstCMsgAuthDlg::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("checkBox_default") << QStringLiteral("checkBox_default") << QStringLiteral("CUS_DefaultChecked");
    QTest::newRow("checkBox_editable") << QStringLiteral("checkBox_editable") << QStringLiteral("CUS_ChangeEnable");
    QTest::newRow("label_MsgAuthSrv_IP") << QStringLiteral("label_MsgAuthSrv_IP")
                                         << QStringLiteral("CUS_MsgAuthServIP");
    QTest::newRow("label_MsgAuthSrv_Port")
        << QStringLiteral("label_MsgAuthSrv_Port") << QStringLiteral("CUS_MsgAuthServPort");
}

void TstCMsgAuthDlg::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    const CMsgAuthDlg dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("CUS_MsgAuthTitle"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstCMsgAuthDlg::labelsAreBuddiesOfTheirFields()
{
    const CMsgAuthDlg dialog;
    QCOMPARE(child<QLabel>(dialog, "label_MsgAuthSrv_IP")->buddy(), child<QWidget>(dialog, "lineEdit_MsgAuthSrv_IP"));
    QCOMPARE(child<QLabel>(dialog, "label_MsgAuthSrv_Port")->buddy(),
             child<QWidget>(dialog, "lineEdit_MsgAuthSrv_Port"));
}

void TstCMsgAuthDlg::hasNoHelpButton()
{
    const CMsgAuthDlg dialog;
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstCMsgAuthDlg::okStoresAllResults_data()
{
    QTest::addColumn<bool>("isDefault");
    QTest::addColumn<bool>("isEditable");
    QTest::newRow("neither") << false << false;
    QTest::newRow("changeable") << false << true;
    QTest::newRow("selected by default") << true << false;
    QTest::newRow("both") << true << true;
}

void TstCMsgAuthDlg::okStoresAllResults()
{
    QFETCH(bool, isDefault);
    QFETCH(bool, isEditable);
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        tick(dialog, "checkBox_default", isDefault);
        tick(dialog, "checkBox_editable", isEditable);
        typeServer(dialog, QStringLiteral("192.168.1.10"), QStringLiteral("8443"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(int(dialog.defaultChecked), isDefault ? 1 : 0);
    QCOMPARE(int(dialog.changeEnable), isEditable ? 1 : 0);
    QCOMPARE(dialog.address, QStringLiteral("192.168.1.10"));
    QCOMPARE(dialog.port, 8443UL);
}

void TstCMsgAuthDlg::malformedAddressIsRefusedAndNotStored_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("empty") << QString();
    QTest::newRow("a name") << QStringLiteral("server");
    QTest::newRow("three numbers") << QStringLiteral("1.2.3");
    QTest::newRow("five numbers") << QStringLiteral("1.2.3.4.5");
    QTest::newRow("256") << QStringLiteral("192.168.1.256");
    QTest::newRow("leading zero") << QStringLiteral("192.168.01.1");
    QTest::newRow("blank in front") << QStringLiteral(" 192.168.1.1");
    QTest::newRow("blank behind") << QStringLiteral("192.168.1.1 ");
    QTest::newRow("two dots behind") << QStringLiteral("192.168.1.1..");
}

void TstCMsgAuthDlg::malformedAddressIsRefusedAndNotStored()
{
    QFETCH(QString, address);
    QStringList told;
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        typeServer(dialog, address, QStringLiteral("8443"));
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_MsgAuthIPErr", "lineEdit_MsgAuthSrv_IP"));
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 1);
    QCOMPARE(dialog.address, QString());
    QCOMPARE(dialog.port, 0UL);
}

void TstCMsgAuthDlg::anyDottedAddressIsAccepted_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("all zero") << QStringLiteral("0.0.0.0");
    QTest::newRow("loopback") << QStringLiteral("127.0.0.1");
    QTest::newRow("all 255") << QStringLiteral("255.255.255.255");
    QTest::newRow("dot behind") << QStringLiteral("192.168.1.1.");
}

void TstCMsgAuthDlg::anyDottedAddressIsAccepted()
{
    QFETCH(QString, address);
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        typeServer(dialog, address, QStringLiteral("8443"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.address, address);
}

void TstCMsgAuthDlg::portOutsideTheRangeIsRefusedAfterTheAddressIsStored_data()
{
    QTest::addColumn<QString>("port");
    QTest::newRow("empty") << QString();
    QTest::newRow("0") << QStringLiteral("0");
    QTest::newRow("65536") << QStringLiteral("65536");
    QTest::newRow("negative") << QStringLiteral("-1");
    QTest::newRow("no number") << QStringLiteral("http");
    QTest::newRow("number and text") << QStringLiteral("80a");
    QTest::newRow("hexadecimal") << QStringLiteral("0x50");
    QTest::newRow("past 64 bits") << QStringLiteral("18446744073709551617");
}

void TstCMsgAuthDlg::portOutsideTheRangeIsRefusedAfterTheAddressIsStored()
{
    QFETCH(QString, port);
    QStringList told;
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        typeServer(dialog, QStringLiteral("192.168.1.10"), port);
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_MsgAuthPortErr", "lineEdit_MsgAuthSrv_Port"));
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 1);
    QCOMPARE(dialog.address, QStringLiteral("192.168.1.10"));
    QCOMPARE(dialog.port, 0UL);
}

void TstCMsgAuthDlg::portWithinTheRangeIsAccepted_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<qulonglong>("port");
    QTest::newRow("1") << QStringLiteral("1") << 1ULL;
    QTest::newRow("65535") << QStringLiteral("65535") << 65535ULL;
    QTest::newRow("leading zero is decimal") << QStringLiteral("010") << 10ULL;
}

void TstCMsgAuthDlg::portWithinTheRangeIsAccepted()
{
    QFETCH(QString, text);
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        typeServer(dialog, QStringLiteral("192.168.1.10"), text);
        press(dialog, QDialogButtonBox::Ok);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QTEST(qulonglong(dialog.port), "port");
}

void TstCMsgAuthDlg::addressIsCheckedBeforeThePort()
{
    QStringList told;
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        typeServer(dialog, QStringLiteral("1.2.3"), QStringLiteral("0"));
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_MsgAuthIPErr", "lineEdit_MsgAuthSrv_IP"));
}

void TstCMsgAuthDlg::boxesTickedDuringARefusedOkCount()
{
    QStringList told;
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        tick(dialog, "checkBox_default", true);
        tick(dialog, "checkBox_editable", true);
        told = clickRefusedOk(script, dialog);
        tick(dialog, "checkBox_default", false);
        tick(dialog, "checkBox_editable", false);
        typeServer(dialog, QStringLiteral("192.168.1.10"), QStringLiteral("80"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_MsgAuthIPErr", "lineEdit_MsgAuthSrv_IP"));
    QCOMPARE(int(dialog.defaultChecked), 1);
    QCOMPARE(int(dialog.changeEnable), 1);
}

void TstCMsgAuthDlg::boxesUntickedBeforeTheFirstOkDoNotCount()
{
    ModalScript script;
    script.expect<CMsgAuthDlg>([&](CMsgAuthDlg& dialog) {
        tick(dialog, "checkBox_default", true);
        tick(dialog, "checkBox_default", false);
        tick(dialog, "checkBox_editable", false);
        typeServer(dialog, QStringLiteral("192.168.1.10"), QStringLiteral("80"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CMsgAuthDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 0);
}

void TstCMsgAuthDlg::everyAddressPassesCheckIpAddr_data()
{
    QTest::addColumn<QString>("address");
    QTest::newRow("all zero") << QStringLiteral("0.0.0.0");
    QTest::newRow("loopback") << QStringLiteral("127.0.0.1");
    QTest::newRow("link local") << QStringLiteral("169.254.0.0");
    QTest::newRow("malformed") << QStringLiteral("1.2.3");
    QTest::newRow("empty") << QString();
}

void TstCMsgAuthDlg::everyAddressPassesCheckIpAddr()
{
    QFETCH(QString, address);
    const QString before = address;
    QVERIFY(CMsgAuthDlg::CheckIpAddr(address));
    QCOMPARE(address, before);
}

void TstCMsgAuthDlg::addressFormIsTheNarrowRule()
{
    QVERIFY(CMsgAuthDlg::IsIPFormat(QStringLiteral("192.168.1.1")));
    QVERIFY(CMsgAuthDlg::IsIPFormat(QStringLiteral("192.168.1.1.")));
    QVERIFY(!CMsgAuthDlg::IsIPFormat(QStringLiteral("192.168.1.01")));
    QVERIFY(!CMsgAuthDlg::IsIPFormat(QStringLiteral("192.168.1.256")));
}

void TstCMsgAuthDlg::cancelStoresNothing()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<CMsgAuthDlg>([](CMsgAuthDlg& dialog) {
        tick(dialog, "checkBox_default", true);
        typeServer(dialog, QStringLiteral("192.168.1.10"), QStringLiteral("80"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    CMsgAuthDlg dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 0);
    QCOMPARE(dialog.address, QString());
    QCOMPARE(dialog.port, 0UL);
}

TEST_ENTRY(cmsgauthdlg, runTest<TstCMsgAuthDlg>)

#include "tst_cmsgauthdlg.moc"
