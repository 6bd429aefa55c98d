#include "advanced/CSslVpnIp.h"
#include "advanced/GatewayListHolder.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QTest>

using namespace dialogplay;

namespace {

void typeGateway(const QDialog& dialog, const QString& name, bool isIp, const QString& address, const QString& port)
{
    type(dialog, "lineEdit_vnsSvr_disname", name);
    child<QRadioButton>(dialog, isIp ? "radioButton_vnsSvr_IP" : "radioButton_vnsSvr_DNS")->click();
    type(dialog, isIp ? "lineEdit_vnsSvr_IP" : "lineEdit_vnsSvr_DNS", address);
    type(dialog, "lineEdit_vnsSvr_port", port);
}

SSLVPNRemoteInfo gateway(const char* name, const char* address, const char* port = "443")
{
    SSLVPNRemoteInfo info;
    info.iPDes = QLatin1String(name);
    info.ip = QLatin1String(address);
    info.port = QLatin1String(port);
    return info;
}

QStringList texts(const SSLVPNRemoteInfo& info)
{
    return {info.iPDes, info.ip, info.port};
}

class Holder : public QDialog, public GatewayListHolder
{
    Q_OBJECT
    Q_INTERFACES(GatewayListHolder)

public:
    QVector<SSLVPNRemoteInfo> list = {gateway("Head office", "10.0.0.1"), gateway("Backup", "backup.example", "8443")};

    const QVector<SSLVPNRemoteInfo>& gateways() const override { return list; }
};

} // namespace

class TstCSslVpnIp : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void addressFieldsBearTheNamesOfTheirRadioButtons();
    void labelsAreBuddiesOfTheirFields();
    void hasNoHelpButton();
    void opensWithTheKindOfTheAddress_data();
    void opensWithTheKindOfTheAddress();
    void opensWithNameAndPortOfTheGateway();
    void opensWithTheFocusOnTheName();
    void dialogModeRulesTheDefaultBox_data();
    void dialogModeRulesTheDefaultBox();
    void buttonGroupHoldsTheTwoRadioButtons();
    void maximumLengthsActOnTypedAndOnLoadedTexts_data();
    void maximumLengthsActOnTypedAndOnLoadedTexts();
    void clickedKindEnablesAndFocusesItsField();
    void okStoresTheTrimmedResults_data();
    void okStoresTheTrimmedResults();
    void wrongEntryIsRefusedAndNothingIsStored_data();
    void wrongEntryIsRefusedAndNothingIsStored();
    void portBoundsAreAccepted_data();
    void portBoundsAreAccepted();
    void duplicateOfAnotherGatewayIsRefused_data();
    void duplicateOfAnotherGatewayIsRefused();
    void textsOfNoOtherGatewayPass_data();
    void textsOfNoOtherGatewayPass();
    void unchangedGatewayPassesAgainstItsOwnEntry_data();
    void unchangedGatewayPassesAgainstItsOwnEntry();
    void onlyTheAddressOfTheSelectedKindIsCompared();
    void parentWithoutAListHasNoDuplicates_data();
    void parentWithoutAListHasNoDuplicates();
    void fourAddressesAreNoGateways_data();
    void fourAddressesAreNoGateways();
    void addressFormIsTheNarrowRule();
    void cancelStoresNothing();
};

void TstCSslVpnIp::initTestCase()
{
    showKeysAsTexts();
}

void TstCSslVpnIp::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("label_vnsSvr_disname")
        << QStringLiteral("label_vnsSvr_disname") << QStringLiteral("SSL_VPNSERV_DISNAME");
    QTest::newRow("radioButton_vnsSvr_IP")
        << QStringLiteral("radioButton_vnsSvr_IP") << QStringLiteral("SSL_VPNSERV_IP");
    QTest::newRow("radioButton_vnsSvr_DNS")
        << QStringLiteral("radioButton_vnsSvr_DNS") << QStringLiteral("SSL_VPNSERV_DOMAIN");
    QTest::newRow("label_vnsSvr_port") << QStringLiteral("label_vnsSvr_port") << QStringLiteral("SSL_VPNSERV_PORT");
    QTest::newRow("checkBox_vnsSvr_default")
        << QStringLiteral("checkBox_vnsSvr_default") << QStringLiteral("SSL_VPNSERV_DEFAULT");
}

void TstCSslVpnIp::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    SSLVPNRemoteInfo info;
    const CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("SSL_SERV_ADDR_TITLE"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstCSslVpnIp::addressFieldsBearTheNamesOfTheirRadioButtons()
{
    SSLVPNRemoteInfo info;
    const CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_vnsSvr_IP")->accessibleName(), QStringLiteral("SSL_VPNSERV_IP"));
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_vnsSvr_DNS")->accessibleName(), QStringLiteral("SSL_VPNSERV_DOMAIN"));
}

void TstCSslVpnIp::labelsAreBuddiesOfTheirFields()
{
    SSLVPNRemoteInfo info;
    const CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(child<QLabel>(dialog, "label_vnsSvr_disname")->buddy(), child<QWidget>(dialog, "lineEdit_vnsSvr_disname"));
    QCOMPARE(child<QLabel>(dialog, "label_vnsSvr_port")->buddy(), child<QWidget>(dialog, "lineEdit_vnsSvr_port"));
}

void TstCSslVpnIp::hasNoHelpButton()
{
    SSLVPNRemoteInfo info;
    const CSslVpnIp dialog(info, 0, nullptr);
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstCSslVpnIp::opensWithTheKindOfTheAddress_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<bool>("isIp");
    QTest::newRow("no address") << QString() << true;
    QTest::newRow("IP address") << QStringLiteral("192.168.1.10") << true;
    QTest::newRow("IP address with a dot behind") << QStringLiteral("192.168.100.100.") << true;
    QTest::newRow("domain name") << QStringLiteral("vpn.example") << false;
    QTest::newRow("number past 255") << QStringLiteral("192.168.1.256") << false;
}

void TstCSslVpnIp::opensWithTheKindOfTheAddress()
{
    QFETCH(QString, ip);
    QFETCH(bool, isIp);
    SSLVPNRemoteInfo info;
    info.ip = ip;
    const CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(child<QRadioButton>(dialog, "radioButton_vnsSvr_IP")->isChecked(), isIp);
    QCOMPARE(child<QRadioButton>(dialog, "radioButton_vnsSvr_DNS")->isChecked(), !isIp);
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_vnsSvr_IP")->isEnabled(), isIp);
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_vnsSvr_DNS")->isEnabled(), !isIp);
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_vnsSvr_IP")->text(), isIp ? ip : QString());
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_vnsSvr_DNS")->text(), isIp ? QString() : ip);
}

void TstCSslVpnIp::opensWithNameAndPortOfTheGateway()
{
    SSLVPNRemoteInfo info;
    const CSslVpnIp fresh(info, 0, nullptr);
    QCOMPARE(child<QLineEdit>(fresh, "lineEdit_vnsSvr_disname")->text(), QString());
    QCOMPARE(child<QLineEdit>(fresh, "lineEdit_vnsSvr_port")->text(), QStringLiteral("443"));
    info.iPDes = QStringLiteral("Head office");
    info.port = QStringLiteral("8443");
    const CSslVpnIp stored(info, 0, nullptr);
    QCOMPARE(child<QLineEdit>(stored, "lineEdit_vnsSvr_disname")->text(), QStringLiteral("Head office"));
    QCOMPARE(child<QLineEdit>(stored, "lineEdit_vnsSvr_port")->text(), QStringLiteral("8443"));
}

void TstCSslVpnIp::opensWithTheFocusOnTheName()
{
    QString focus;
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        focus = focusOf(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    SSLVPNRemoteInfo info;
    info.ip = QStringLiteral("vpn.example");
    CSslVpnIp dialog(info, 0, nullptr);
    // Before exec(), which gives the focus to the first field when none has it.
    QCOMPARE(focusOf(dialog), QStringLiteral("lineEdit_vnsSvr_disname"));
    dialog.exec();
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(focus, QStringLiteral("lineEdit_vnsSvr_disname"));
}

void TstCSslVpnIp::dialogModeRulesTheDefaultBox_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("isTicked");
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("resultAfterClick");
    QTest::newRow("0 leaves it free") << 0 << false << true << 0 << 1;
    QTest::newRow("1 ticks it") << 1 << true << true << 1 << 0;
    QTest::newRow("2 disables it") << 2 << false << false << 0 << 0;
}

void TstCSslVpnIp::dialogModeRulesTheDefaultBox()
{
    QFETCH(int, mode);
    QFETCH(int, result);
    QFETCH(int, resultAfterClick);
    for (const bool clicked : {false, true}) {
        ModalScript script;
        script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
            if (clicked)
                child<QCheckBox>(dialog, "checkBox_vnsSvr_default")->click();
            press(dialog, QDialogButtonBox::Ok);
        });
        SSLVPNRemoteInfo info = gateway("Office", "192.168.1.10");
        CSslVpnIp dialog(info, mode, nullptr);
        QCOMPARE(dialog.dialogMode, mode);
        QTEST(child<QCheckBox>(dialog, "checkBox_vnsSvr_default")->isChecked(), "isTicked");
        QTEST(child<QCheckBox>(dialog, "checkBox_vnsSvr_default")->isEnabled(), "isEnabled");
        QCOMPARE(dialog.exec(), int(QDialog::Accepted));
        QCOMPARE(script.complaints(), QStringList());
        QCOMPARE(dialog.dialogMode, clicked ? resultAfterClick : result);
    }
}

void TstCSslVpnIp::buttonGroupHoldsTheTwoRadioButtons()
{
    SSLVPNRemoteInfo info;
    const CSslVpnIp dialog(info, 0, nullptr);
    const QButtonGroup* const group = dialog.findChild<QButtonGroup*>(QStringLiteral("buttonGroup"));
    QVERIFY(group);
    QCOMPARE(group->buttons().size(), 2);
    QCOMPARE(child<QRadioButton>(dialog, "radioButton_vnsSvr_IP")->group(), group);
    QCOMPARE(child<QRadioButton>(dialog, "radioButton_vnsSvr_DNS")->group(), group);
}

void TstCSslVpnIp::maximumLengthsActOnTypedAndOnLoadedTexts_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<int>("length");
    QTest::newRow("name") << QByteArray("lineEdit_vnsSvr_disname") << 32;
    QTest::newRow("IP address") << QByteArray("lineEdit_vnsSvr_IP") << 16;
    QTest::newRow("domain name") << QByteArray("lineEdit_vnsSvr_DNS") << 32;
    QTest::newRow("port") << QByteArray("lineEdit_vnsSvr_port") << 5;
}

void TstCSslVpnIp::maximumLengthsActOnTypedAndOnLoadedTexts()
{
    QFETCH(QByteArray, edit);
    QFETCH(int, length);
    const QString longText(40, QLatin1Char('1'));
    SSLVPNRemoteInfo info;
    info.iPDes = longText;
    info.ip = longText;
    info.port = longText;
    const CSslVpnIp dialog(info, 0, nullptr);
    QLineEdit* const field = child<QLineEdit>(dialog, edit.constData());
    const bool isLoaded = edit != "lineEdit_vnsSvr_IP"; // no text is both an IP address and too long for its field
    QCOMPARE(field->text(), isLoaded ? longText.left(length) : QString());
    field->setEnabled(true);
    type(dialog, edit.constData(), longText);
    QCOMPARE(field->text(), longText.left(length));
}

void TstCSslVpnIp::clickedKindEnablesAndFocusesItsField()
{
    QStringList seen;
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        for (const char* name : {"radioButton_vnsSvr_DNS", "radioButton_vnsSvr_IP"}) {
            child<QRadioButton>(dialog, name)->click();
            seen << QString::number(child<QLineEdit>(dialog, "lineEdit_vnsSvr_IP")->isEnabled())
                 << QString::number(child<QLineEdit>(dialog, "lineEdit_vnsSvr_DNS")->isEnabled()) << focusOf(dialog);
        }
        press(dialog, QDialogButtonBox::Cancel);
    });
    SSLVPNRemoteInfo info;
    CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    const QString no = QStringLiteral("0");
    const QString yes = QStringLiteral("1");
    QCOMPARE(seen, QStringList({no, yes, QStringLiteral("lineEdit_vnsSvr_DNS"), yes, no,
                                QStringLiteral("lineEdit_vnsSvr_IP")}));
}

void TstCSslVpnIp::okStoresTheTrimmedResults_data()
{
    QTest::addColumn<bool>("isIp");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("ip");
    QTest::newRow("IP address") << true << QStringLiteral(" 192.168.1.10 ") << QStringLiteral("192.168.1.10");
    QTest::newRow("IP address with a dot behind") << true << QStringLiteral("10.1.1.1.") << QStringLiteral("10.1.1.1.");
    QTest::newRow("neighbour of a refused one")
        << true << QStringLiteral("169.254.0.1") << QStringLiteral("169.254.0.1");
    QTest::newRow("domain name") << false << QStringLiteral(" vpn.example ") << QStringLiteral("vpn.example");
    QTest::newRow("IP address as a domain name") << false << QStringLiteral("127.0.0.1") << QStringLiteral("127.0.0.1");
}

void TstCSslVpnIp::okStoresTheTrimmedResults()
{
    QFETCH(bool, isIp);
    QFETCH(QString, typed);
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        typeGateway(dialog, QStringLiteral("  Head office "), isIp, typed, QStringLiteral(" 80 "));
        press(dialog, QDialogButtonBox::Ok);
    });
    SSLVPNRemoteInfo info;
    info.remoteSlot = 7;
    CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.gateway.iPDes, QStringLiteral("Head office"));
    QTEST(dialog.gateway.ip, "ip");
    QCOMPARE(dialog.gateway.port, QStringLiteral("80"));
    QCOMPARE(dialog.gateway.remoteSlot, quint64(0));
    QCOMPARE(info.remoteSlot, quint64(7));
    QCOMPARE(info.iPDes, QString());
}

void TstCSslVpnIp::wrongEntryIsRefusedAndNothingIsStored_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isIp");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("port");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("focus");
    const QString name = QStringLiteral("Branch");
    const QString ip = QStringLiteral("192.168.1.11");
    const QString host = QStringLiteral("branch.example");
    const QString port = QStringLiteral("443");
    const QString bad = QStringLiteral("192.168.1");
    const QByteArray nameEdit = "lineEdit_vnsSvr_disname";
    const QByteArray ipEdit = "lineEdit_vnsSvr_IP";
    const QByteArray hostEdit = "lineEdit_vnsSvr_DNS";
    const QByteArray portEdit = "lineEdit_vnsSvr_port";
    const QByteArray nameEmpty = "SSL_DISPNAME_EMPTY";
    const QByteArray addressWrong = "SSL_Ipv4Err";
    const QByteArray portWrong = "SSL_PortErr";

    QTest::newRow("1: name empty") << QString() << true << ip << port << nameEmpty << nameEdit;
    QTest::newRow("1: name of blanks") << QStringLiteral("  ") << false << host << port << nameEmpty << nameEdit;
    QTest::newRow("1: everything wrong") << QString() << true << bad << QString() << nameEmpty << nameEdit;
    QTest::newRow("2: IP address empty") << name << true << QString() << port << addressWrong << ipEdit;
    QTest::newRow("2: IP address malformed") << name << true << bad << port << addressWrong << ipEdit;
    QTest::newRow("2: 256") << name << true << QStringLiteral("192.168.1.256") << port << addressWrong << ipEdit;
    QTest::newRow("2: domain name as IP address") << name << true << host << port << addressWrong << ipEdit;
    QTest::newRow("2: all zero") << name << true << QStringLiteral("0.0.0.0") << port << addressWrong << ipEdit;
    QTest::newRow("2: loopback") << name << true << QStringLiteral("127.0.0.1") << port << addressWrong << ipEdit;
    QTest::newRow("2: loopback network") << name << true << QStringLiteral("127.0.0.0") << port << addressWrong
                                         << ipEdit;
    QTest::newRow("2: link local, trimmed")
        << name << true << QStringLiteral(" 169.254.0.0 ") << port << addressWrong << ipEdit;
    QTest::newRow("2: domain name empty") << name << false << QString() << port << addressWrong << hostEdit;
    QTest::newRow("2: domain name of blanks")
        << name << false << QStringLiteral(" ") << port << addressWrong << hostEdit;
    QTest::newRow("2: before the port") << name << true << bad << QStringLiteral("0") << addressWrong << ipEdit;
    QTest::newRow("3: port empty") << name << true << ip << QString() << portWrong << portEdit;
    QTest::newRow("3: port 0") << name << true << ip << QStringLiteral("0") << portWrong << portEdit;
    QTest::newRow("3: port 65536") << name << false << host << QStringLiteral("65536") << portWrong << portEdit;
    QTest::newRow("3: port negative") << name << true << ip << QStringLiteral("-1") << portWrong << portEdit;
    QTest::newRow("3: port in hexadecimal") << name << true << ip << QStringLiteral("0x50") << portWrong << portEdit;
    QTest::newRow("3: port no number") << name << true << ip << QStringLiteral("https") << portWrong << portEdit;
    QTest::newRow("3: before the duplicates")
        << QStringLiteral("Head office") << true << QStringLiteral("10.0.0.1") << QString() << portWrong << portEdit;
}

void TstCSslVpnIp::wrongEntryIsRefusedAndNothingIsStored()
{
    QFETCH(QString, name);
    QFETCH(bool, isIp);
    QFETCH(QString, address);
    QFETCH(QString, port);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, focus);
    QStringList told;
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        typeGateway(dialog, name, isIp, address, port);
        child<QCheckBox>(dialog, "checkBox_vnsSvr_default")->click();
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    Holder holder;
    SSLVPNRemoteInfo info = gateway("Old", "172.16.0.1", "444");
    info.remoteSlot = 7;
    CSslVpnIp dialog(info, 0, &holder);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", key.constData(), focus.constData()));
    QCOMPARE(texts(dialog.gateway), texts(info));
    QCOMPARE(dialog.gateway.remoteSlot, quint64(7));
    QCOMPARE(dialog.dialogMode, 0);
}

void TstCSslVpnIp::portBoundsAreAccepted_data()
{
    QTest::addColumn<QString>("port");
    QTest::newRow("1") << QStringLiteral("1");
    QTest::newRow("65535") << QStringLiteral("65535");
    QTest::newRow("leading zeros") << QStringLiteral("00443");
}

void TstCSslVpnIp::portBoundsAreAccepted()
{
    QFETCH(QString, port);
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        type(dialog, "lineEdit_vnsSvr_port", port);
        press(dialog, QDialogButtonBox::Ok);
    });
    SSLVPNRemoteInfo info = gateway("Office", "192.168.1.10");
    CSslVpnIp dialog(info, 0, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.gateway.port, port);
}

void TstCSslVpnIp::duplicateOfAnotherGatewayIsRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isIp");
    QTest::addColumn<QString>("address");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("focus");
    const QString newName = QStringLiteral("Branch");
    const QString firstName = QStringLiteral("Head office");
    const QString secondName = QStringLiteral("Backup");
    const QString newIp = QStringLiteral("192.168.1.11");
    const QString firstIp = QStringLiteral("10.0.0.1");
    const QString secondHost = QStringLiteral("backup.example");
    const QByteArray nameExists = "SSL_DISPNAME_Exist";
    const QByteArray addressExists = "SSL_SERVADDRESS_Exist";
    const QByteArray nameEdit = "lineEdit_vnsSvr_disname";
    const QByteArray ipEdit = "lineEdit_vnsSvr_IP";
    const QByteArray hostEdit = "lineEdit_vnsSvr_DNS";
    QTest::newRow("name of the first") << firstName << true << newIp << nameExists << nameEdit;
    QTest::newRow("name of the last") << secondName << true << newIp << nameExists << nameEdit;
    QTest::newRow("name, trimmed") << QStringLiteral(" Backup ") << true << newIp << nameExists << nameEdit;
    QTest::newRow("IP address") << newName << true << firstIp << addressExists << ipEdit;
    QTest::newRow("IP address, trimmed") << newName << true << QStringLiteral(" 10.0.0.1 ") << addressExists << ipEdit;
    QTest::newRow("domain name") << newName << false << secondHost << addressExists << hostEdit;
    QTest::newRow("IP address typed as a domain name") << newName << false << firstIp << addressExists << hostEdit;
    QTest::newRow("both of one: the name comes first") << firstName << true << firstIp << nameExists << nameEdit;
    QTest::newRow("address of an earlier one comes before a later name")
        << secondName << true << firstIp << addressExists << ipEdit;
    QTest::newRow("name of an earlier one comes before a later address")
        << firstName << false << secondHost << nameExists << nameEdit;
}

void TstCSslVpnIp::duplicateOfAnotherGatewayIsRefused()
{
    QFETCH(QString, name);
    QFETCH(bool, isIp);
    QFETCH(QString, address);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, focus);
    QStringList told;
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        typeGateway(dialog, name, isIp, address, QStringLiteral("443"));
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    Holder holder;
    SSLVPNRemoteInfo info = gateway("Old", "172.16.0.1", "444");
    CSslVpnIp dialog(info, 2, &holder);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", key.constData(), focus.constData()));
    QCOMPARE(texts(dialog.gateway), texts(info));
    QCOMPARE(dialog.dialogMode, 2);
}

void TstCSslVpnIp::textsOfNoOtherGatewayPass_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isIp");
    QTest::addColumn<QString>("address");
    QTest::newRow("new") << QStringLiteral("Branch") << true << QStringLiteral("192.168.1.11");
    QTest::newRow("name in another case") << QStringLiteral("BACKUP") << true << QStringLiteral("192.168.1.11");
    QTest::newRow("domain name in another case")
        << QStringLiteral("Branch") << false << QStringLiteral("Backup.example");
    QTest::newRow("address as a name") << QStringLiteral("10.0.0.1") << false << QStringLiteral("Backup");
    QTest::newRow("IP address with a dot behind") << QStringLiteral("Branch") << true << QStringLiteral("10.0.0.1.");
}

void TstCSslVpnIp::textsOfNoOtherGatewayPass()
{
    QFETCH(QString, name);
    QFETCH(bool, isIp);
    QFETCH(QString, address);
    ModalScript script;
    script.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        typeGateway(dialog, name, isIp, address, QStringLiteral("443"));
        press(dialog, QDialogButtonBox::Ok);
    });
    Holder holder;
    SSLVPNRemoteInfo info;
    CSslVpnIp dialog(info, 0, &holder);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(texts(dialog.gateway), QStringList({name, address, QStringLiteral("443")}));
}

void TstCSslVpnIp::unchangedGatewayPassesAgainstItsOwnEntry_data()
{
    QTest::addColumn<int>("row");
    QTest::newRow("IP address") << 0;
    QTest::newRow("domain name") << 1;
}

void TstCSslVpnIp::unchangedGatewayPassesAgainstItsOwnEntry()
{
    QFETCH(int, row);
    ModalScript script;
    script.expect<CSslVpnIp>([](CSslVpnIp& dialog) { press(dialog, QDialogButtonBox::Ok); });
    Holder holder;
    SSLVPNRemoteInfo info = holder.list.at(row);
    CSslVpnIp dialog(info, 0, &holder);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(texts(dialog.gateway), texts(holder.list.at(row)));
}

void TstCSslVpnIp::onlyTheAddressOfTheSelectedKindIsCompared()
{
    ModalScript script;
    script.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        typeGateway(dialog, QStringLiteral("Branch"), false, QStringLiteral("backup.example"), QStringLiteral("443"));
        typeGateway(dialog, QStringLiteral("Branch"), true, QStringLiteral("192.168.1.11"), QStringLiteral("443"));
        press(dialog, QDialogButtonBox::Ok);
    });
    Holder holder;
    SSLVPNRemoteInfo info;
    CSslVpnIp dialog(info, 0, &holder);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.gateway.ip, QStringLiteral("192.168.1.11"));
}

void TstCSslVpnIp::parentWithoutAListHasNoDuplicates_data()
{
    QTest::addColumn<bool>("hasParent");
    QTest::newRow("no parent") << false;
    QTest::newRow("plain parent") << true;
}

void TstCSslVpnIp::parentWithoutAListHasNoDuplicates()
{
    QFETCH(bool, hasParent);
    ModalScript script;
    script.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        typeGateway(dialog, QStringLiteral("Head office"), true, QStringLiteral("10.0.0.1"), QStringLiteral("443"));
        press(dialog, QDialogButtonBox::Ok);
    });
    QDialog parent;
    SSLVPNRemoteInfo info;
    CSslVpnIp dialog(info, 0, hasParent ? &parent : nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.gateway.iPDes, QStringLiteral("Head office"));
}

void TstCSslVpnIp::fourAddressesAreNoGateways_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("passes");
    QTest::newRow("0.0.0.0") << QStringLiteral("0.0.0.0") << false;
    QTest::newRow("0.0.0.1") << QStringLiteral("0.0.0.1") << true;
    QTest::newRow("127.0.0.0") << QStringLiteral("127.0.0.0") << false;
    QTest::newRow("127.0.0.1") << QStringLiteral("127.0.0.1") << false;
    QTest::newRow("127.0.0.2") << QStringLiteral("127.0.0.2") << true;
    QTest::newRow("169.254.0.0") << QStringLiteral("169.254.0.0") << false;
    QTest::newRow("169.254.0.1") << QStringLiteral("169.254.0.1") << true;
    QTest::newRow("dot behind") << QStringLiteral("127.0.0.1.") << true;
    QTest::newRow("blank behind") << QStringLiteral("127.0.0.1 ") << true;
    QTest::newRow("empty") << QString() << true;
}

void TstCSslVpnIp::fourAddressesAreNoGateways()
{
    QFETCH(QString, address);
    QTEST(CSslVpnIp::CheckIpAddr(address), "passes");
}

void TstCSslVpnIp::addressFormIsTheNarrowRule()
{
    QVERIFY(CSslVpnIp::IsIPFormat(QStringLiteral("192.168.1.1")));
    QVERIFY(CSslVpnIp::IsIPFormat(QStringLiteral("192.168.1.1.")));
    QVERIFY(!CSslVpnIp::IsIPFormat(QStringLiteral("192.168.1.01")));
    QVERIFY(!CSslVpnIp::IsIPFormat(QStringLiteral("192.168.1.256")));
}

void TstCSslVpnIp::cancelStoresNothing()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        typeGateway(dialog, QStringLiteral("Branch"), true, QStringLiteral("192.168.1.11"), QStringLiteral("80"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    SSLVPNRemoteInfo info = gateway("Office", "vpn.example", "444");
    CSslVpnIp dialog(info, 1, nullptr);
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(texts(dialog.gateway), texts(info));
    QCOMPARE(dialog.dialogMode, 1);
}

TEST_ENTRY(csslvpnip, runTest<TstCSslVpnIp>)

#include "tst_csslvpnip.moc"
