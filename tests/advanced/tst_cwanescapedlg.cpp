#include "advanced/CWanEscapeDlg.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QDialogButtonBox>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace dialogplay;

namespace {

void typeServers(const QDialog& dialog, const QString& address, const QString& port, const QString& dns,
                 const QString& backup)
{
    type(dialog, "lineEdit_pyxIp", address);
    type(dialog, "lineEdit_pyxPort", port);
    type(dialog, "lineEdit_dnsIp", dns);
    type(dialog, "lineEdit_pyxIp_bak", backup);
}

QStringList results(const CWanEscapeDlg& dialog)
{
    return {dialog.address, dialog.port, dialog.dnsAddress, dialog.backupAddress};
}

} // namespace

class TstCWanEscapeDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opensEmpty();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void labelsAreBuddiesOfTheirFields();
    void hasNoHelpButton();
    void okStoresTheFourTextsAsTheyStand_data();
    void okStoresTheFourTextsAsTheyStand();
    void firstFailedCheckIsShownAndNothingIsStored_data();
    void firstFailedCheckIsShownAndNothingIsStored();
    void malformedDnsAddressMovesTheFocusToTheBackupField();
    void portValidatorRunsFrom0To65535();
    void portFieldRefusesOtherKeys_data();
    void portFieldRefusesOtherKeys();
    void textThatIsNoNumberCountsAsPortZero();
    void negativePortIsRefused();
    void correctedEntriesAreAcceptedAfterARefusal();
    void cancelClosesTheWindowAndStoresNothing();
};

void TstCWanEscapeDlg::initTestCase()
{
    showKeysAsTexts();
}

void TstCWanEscapeDlg::opensEmpty()
{
    const CWanEscapeDlg dialog;
    for (const char* name : {"lineEdit_pyxIp", "lineEdit_pyxPort", "lineEdit_dnsIp", "lineEdit_pyxIp_bak"})
        QCOMPARE(child<QLineEdit>(dialog, name)->text(), QString());
    QCOMPARE(results(dialog), QStringList({QString(), QString(), QString(), QString()}));
}

void TstCWanEscapeDlg::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("label_pyxIp") << QStringLiteral("label_pyxIp") << QStringLiteral("CUS_Wancotrol_Escape_Pyx");
    QTest::newRow("label_pyxPort") << QStringLiteral("label_pyxPort")
                                   << QStringLiteral("CUS_Wancotrol_Escape_Pyx_Port");
    QTest::newRow("label_dnsIp") << QStringLiteral("label_dnsIp") << QStringLiteral("CUS_Wancotrol_Escape_Dns");
    QTest::newRow("label_pyxIp_bak") << QStringLiteral("label_pyxIp_bak")
                                     << QStringLiteral("CUS_Wancotrol_Escape_Pyx_bak");
}

void TstCWanEscapeDlg::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    const CWanEscapeDlg dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("CUS_Wancotrol_Escape"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstCWanEscapeDlg::labelsAreBuddiesOfTheirFields()
{
    const CWanEscapeDlg dialog;
    QCOMPARE(child<QLabel>(dialog, "label_pyxIp")->buddy(), child<QWidget>(dialog, "lineEdit_pyxIp"));
    QCOMPARE(child<QLabel>(dialog, "label_pyxPort")->buddy(), child<QWidget>(dialog, "lineEdit_pyxPort"));
    QCOMPARE(child<QLabel>(dialog, "label_dnsIp")->buddy(), child<QWidget>(dialog, "lineEdit_dnsIp"));
    QCOMPARE(child<QLabel>(dialog, "label_pyxIp_bak")->buddy(), child<QWidget>(dialog, "lineEdit_pyxIp_bak"));
}

void TstCWanEscapeDlg::hasNoHelpButton()
{
    const CWanEscapeDlg dialog;
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstCWanEscapeDlg::okStoresTheFourTextsAsTheyStand_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("dns");
    QTest::addColumn<QString>("backup");
    const QString good = QStringLiteral("192.168.1.10");
    const QString port = QStringLiteral("9019");
    const QString dns = QStringLiteral("192.168.1.53");
    const QString backup = QStringLiteral("192.168.1.11");
    QTest::newRow("all filled") << good << port << dns << backup;
    QTest::newRow("empty backup") << good << port << dns << QString();
    QTest::newRow("loopback backup") << good << port << dns << QStringLiteral("127.0.0.1");
    QTest::newRow("port 0") << good << QStringLiteral("0") << dns << backup;
    QTest::newRow("port 65535") << good << QStringLiteral("65535") << dns << backup;
    QTest::newRow("port with leading zeros") << good << QStringLiteral("00080") << dns << backup;
    QTest::newRow("address all zero") << QStringLiteral("0.0.0.0") << port << dns << backup;
    QTest::newRow("loopback with a dot behind") << QStringLiteral("127.0.0.1.") << port << dns << backup;
    QTest::newRow("neighbour of loopback")
        << QStringLiteral("127.0.0.2") << port << QStringLiteral("127.0.0.0") << backup;
    QTest::newRow("dots behind all") << QStringLiteral("1.2.3.4.") << port << QStringLiteral("5.6.7.8.")
                                     << QStringLiteral("9.9.9.9.");
}

void TstCWanEscapeDlg::okStoresTheFourTextsAsTheyStand()
{
    QFETCH(QString, address);
    QFETCH(QString, port);
    QFETCH(QString, dns);
    QFETCH(QString, backup);
    ModalScript script;
    script.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        typeServers(dialog, address, port, dns, backup);
        press(dialog, QDialogButtonBox::Ok);
    });
    CWanEscapeDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(results(dialog), QStringList({address, port, dns, backup}));
}

void TstCWanEscapeDlg::firstFailedCheckIsShownAndNothingIsStored_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QString>("dns");
    QTest::addColumn<QString>("backup");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("focus");
    const QString good = QStringLiteral("192.168.1.10");
    const QString bad = QStringLiteral("192.168.1");
    const QString loopback = QStringLiteral("127.0.0.1");
    const QString port = QStringLiteral("9019");
    const QString high = QStringLiteral("65536");
    const QString none;
    const QByteArray addressMissing = "CUS_Wancotrol_Escape_PyxIPIput";
    const QByteArray portWrong = "CUS_Wancotrol_Escape_PyxPort_Err";
    const QByteArray dnsMissing = "CUS_Wancotrol_Escape_DNSIPInput";
    const QByteArray addressMalformed = "CUS_Wancotrol_Escape_PyxIpErr";
    const QByteArray dnsMalformed = "CUS_Wancotrol_Escape_DnsIpErr";

    QTest::newRow("1: address empty") << none << port << good << none << addressMissing << QByteArray("lineEdit_pyxIp");
    QTest::newRow("1: address loopback") << loopback << port << good << none << addressMissing
                                         << QByteArray("lineEdit_pyxIp");
    QTest::newRow("1: everything wrong") << none << high << none << bad << addressMissing
                                         << QByteArray("lineEdit_pyxIp");
    QTest::newRow("2: port empty") << good << none << good << none << portWrong << QByteArray("lineEdit_pyxPort");
    QTest::newRow("2: port 65536") << good << high << good << none << portWrong << QByteArray("lineEdit_pyxPort");
    QTest::newRow("2: port 99999") << good << QStringLiteral("99999") << good << none << portWrong
                                   << QByteArray("lineEdit_pyxPort");
    QTest::newRow("2: before the form of the address")
        << bad << high << none << bad << portWrong << QByteArray("lineEdit_pyxPort");
    QTest::newRow("3: DNS empty") << good << port << none << none << dnsMissing << QByteArray("lineEdit_dnsIp");
    QTest::newRow("3: DNS loopback") << good << port << loopback << none << dnsMissing << QByteArray("lineEdit_dnsIp");
    QTest::newRow("3: before the form of the address")
        << bad << port << none << bad << dnsMissing << QByteArray("lineEdit_dnsIp");
    QTest::newRow("4: address malformed")
        << bad << port << good << none << addressMalformed << QByteArray("lineEdit_pyxIp");
    QTest::newRow("4: blank in front of the address")
        << QStringLiteral(" 192.168.1.10") << port << good << none << addressMalformed << QByteArray("lineEdit_pyxIp");
    QTest::newRow("4: blank behind loopback")
        << QStringLiteral("127.0.0.1 ") << port << good << none << addressMalformed << QByteArray("lineEdit_pyxIp");
    QTest::newRow("4: before the form of the DNS address")
        << bad << port << bad << bad << addressMalformed << QByteArray("lineEdit_pyxIp");
    QTest::newRow("5: DNS malformed") << good << port << bad << none << dnsMalformed
                                      << QByteArray("lineEdit_pyxIp_bak");
    QTest::newRow("5: DNS 256") << good << port << QStringLiteral("192.168.1.256") << none << dnsMalformed
                                << QByteArray("lineEdit_pyxIp_bak");
    QTest::newRow("5: before the form of the backup")
        << good << port << bad << bad << dnsMalformed << QByteArray("lineEdit_pyxIp_bak");
    QTest::newRow("6: backup malformed") << good << port << good << bad << addressMalformed
                                         << QByteArray("lineEdit_pyxIp_bak");
    QTest::newRow("6: backup a blank") << good << port << good << QStringLiteral(" ") << addressMalformed
                                       << QByteArray("lineEdit_pyxIp_bak");
}

void TstCWanEscapeDlg::firstFailedCheckIsShownAndNothingIsStored()
{
    QFETCH(QString, address);
    QFETCH(QString, port);
    QFETCH(QString, dns);
    QFETCH(QString, backup);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, focus);
    QStringList told;
    ModalScript script;
    script.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        typeServers(dialog, address, port, dns, backup);
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CWanEscapeDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", key.constData(), focus.constData()));
    QCOMPARE(results(dialog), QStringList({QString(), QString(), QString(), QString()}));
}

void TstCWanEscapeDlg::malformedDnsAddressMovesTheFocusToTheBackupField()
{
    QStringList told;
    QStringList reasons;
    ModalScript script;
    script.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        typeServers(dialog, QStringLiteral("192.168.1.10"), QStringLiteral("80"), QStringLiteral("dns"), QString());
        child<QLineEdit>(dialog, "lineEdit_dnsIp")->setFocus();
        told = clickRefusedOk(script, dialog);
        for (const char* name : {"lineEdit_dnsIp", "lineEdit_pyxIp_bak"})
            reasons.append(child<QLineEdit>(dialog, name)->accessibleDescription());
        press(dialog, QDialogButtonBox::Cancel);
    });
    CWanEscapeDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_Wancotrol_Escape_DnsIpErr", "lineEdit_pyxIp_bak"));
    QCOMPARE(reasons, QStringList({QStringLiteral("CUS_Wancotrol_Escape_DnsIpErr"), QString()}));
}

void TstCWanEscapeDlg::portValidatorRunsFrom0To65535()
{
    const CWanEscapeDlg dialog;
    const auto* validator =
        qobject_cast<const QIntValidator*>(child<QLineEdit>(dialog, "lineEdit_pyxPort")->validator());
    QVERIFY(validator);
    QCOMPARE(validator->bottom(), 0);
    QCOMPARE(validator->top(), 65535);
}

void TstCWanEscapeDlg::portFieldRefusesOtherKeys_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("text");
    QTest::newRow("digits") << QStringLiteral("65535") << QStringLiteral("65535");
    QTest::newRow("letters") << QStringLiteral("8a0b") << QStringLiteral("80");
    QTest::newRow("comma") << QStringLiteral("8,080") << QStringLiteral("8080");
    QTest::newRow("minus") << QStringLiteral("-80") << QStringLiteral("80");
    QTest::newRow("plus") << QStringLiteral("+80") << QStringLiteral("80");
    QTest::newRow("blank") << QStringLiteral(" 8 0") << QStringLiteral("80");
    QTest::newRow("six digits") << QStringLiteral("655360") << QStringLiteral("65536");
}

void TstCWanEscapeDlg::portFieldRefusesOtherKeys()
{
    QFETCH(QString, keys);
    const CWanEscapeDlg dialog;
    type(dialog, "lineEdit_pyxPort", keys);
    QTEST(child<QLineEdit>(dialog, "lineEdit_pyxPort")->text(), "text");
}

void TstCWanEscapeDlg::textThatIsNoNumberCountsAsPortZero()
{
    ModalScript script;
    script.expect<CWanEscapeDlg>([](CWanEscapeDlg& dialog) {
        typeServers(dialog, QStringLiteral("1.2.3.4"), QString(), QStringLiteral("1.2.3.5"), QString());
        child<QLineEdit>(dialog, "lineEdit_pyxPort")->setText(QStringLiteral("http"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CWanEscapeDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.port, QStringLiteral("http"));
}

void TstCWanEscapeDlg::negativePortIsRefused()
{
    QStringList told;
    ModalScript script;
    script.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        typeServers(dialog, QStringLiteral("1.2.3.4"), QString(), QStringLiteral("1.2.3.5"), QString());
        child<QLineEdit>(dialog, "lineEdit_pyxPort")->setText(QStringLiteral("-1"));
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CWanEscapeDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_Wancotrol_Escape_PyxPort_Err", "lineEdit_pyxPort"));
}

void TstCWanEscapeDlg::correctedEntriesAreAcceptedAfterARefusal()
{
    QStringList told;
    ModalScript script;
    script.expect<CWanEscapeDlg>([&](CWanEscapeDlg& dialog) {
        typeServers(dialog, QStringLiteral("1.2.3.4"), QStringLiteral("80"), QString(), QString());
        told = clickRefusedOk(script, dialog);
        type(dialog, "lineEdit_dnsIp", QStringLiteral("1.2.3.5"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CWanEscapeDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "CUS_Wancotrol_Escape_DNSIPInput", "lineEdit_dnsIp"));
    QCOMPARE(results(dialog),
             QStringList({QStringLiteral("1.2.3.4"), QStringLiteral("80"), QStringLiteral("1.2.3.5"), QString()}));
}

void TstCWanEscapeDlg::cancelClosesTheWindowAndStoresNothing()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<CWanEscapeDlg>([](CWanEscapeDlg& dialog) {
        typeServers(dialog, QStringLiteral("1.2.3.4"), QStringLiteral("80"), QStringLiteral("1.2.3.5"), QString());
        press(dialog, QDialogButtonBox::Cancel);
    });
    CWanEscapeDlg dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 1);
    QCOMPARE(results(dialog), QStringList({QString(), QString(), QString(), QString()}));
}

TEST_ENTRY(cwanescapedlg, runTest<TstCWanEscapeDlg>)

#include "tst_cwanescapedlg.moc"
