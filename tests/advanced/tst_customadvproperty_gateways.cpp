#include "advanced/CustomAdvPlayer.h"

#include "advanced/CSslVpnIp.h"
#include "support/TestEntry.h"

#include <QLineEdit>

using namespace advplay;

namespace {

const char table[] = "treeWidget_SSLIP";
const char addButton[] = "pushButton_Add";
const char editButton[] = "pushButton_Edit";
const char deleteButton[] = "pushButton_Delete";

QStringList buttons()
{
    return words("pushButton_Add pushButton_Edit pushButton_Delete");
}

/// Gateways "g1" at "h1" and so on.
CustomInfo startWith(int count = 0, quint64 defaultAddress = 0)
{
    CustomInfo info = recordFor(procom::sslVpn);
    info.vpn.ikecfg.IKEAuthMethod.clear(); // as OK stores it without the L2TP tab
    for (int number = 1; number <= count; ++number) {
        SSLVPNRemoteInfo gateway;
        gateway.iPDes = QStringLiteral("g%1").arg(number);
        gateway.ip = QStringLiteral("h%1").arg(number);
        info.sslvpn.remote.append(gateway);
    }
    info.sslvpn.defaultAddress = defaultAddress;
    return info;
}

/// Gateways at these addresses, by "name|address".
CustomInfo startWithGateways(const char* gateways)
{
    const QStringList entries = words(gateways);
    CustomInfo info = startWith(entries.size());
    for (int position = 0; position < entries.size(); ++position) {
        info.sslvpn.remote[position].iPDes = entries.at(position).section(QLatin1Char('|'), 0, 0);
        info.sslvpn.remote[position].ip = entries.at(position).section(QLatin1Char('|'), 1);
    }
    return info;
}

QString withDefault(const char* name)
{
    return QLatin1String(name) + langText("SSL_DEFAULTNAME");
}

QString sslBox(const char* key)
{
    return warning("SCE_SceneTipsTitle", key);
}

QAbstractButton* defaultBox(const QWidget& dialog)
{
    return child<QAbstractButton>(dialog, "checkBox_vnsSvr_default");
}

void fillAndAccept(CSslVpnIp& dialog, const QString& name, const QString& address, bool isDefault)
{
    type(dialog, "lineEdit_vnsSvr_disname", name);
    const bool isIp = CSslVpnIp::IsIPFormat(address);
    click(dialog, isIp ? "radioButton_vnsSvr_IP" : "radioButton_vnsSvr_DNS");
    type(dialog, isIp ? "lineEdit_vnsSvr_IP" : "lineEdit_vnsSvr_DNS", address);
    if (defaultBox(dialog)->isChecked() != isDefault)
        click(dialog, "checkBox_vnsSvr_default");
    press(dialog, QDialogButtonBox::Ok);
}

void addGateway(OpenDialog& open, const QString& name, const QString& address, bool isDefault = false)
{
    open.expect<CSslVpnIp>([=](CSslVpnIp& dialog) { fillAndAccept(dialog, name, address, isDefault); });
    open.clickOn(addButton);
}

void editGateway(OpenDialog& open, int row, const QString& name, const QString& address, bool isDefault)
{
    open.selectRow(table, row);
    open.expect<CSslVpnIp>([=](CSslVpnIp& dialog) { fillAndAccept(dialog, name, address, isDefault); });
    open.clickOn(editButton);
}

void deleteGateway(OpenDialog& open, int row)
{
    open.selectRow(table, row);
    open.clickOn(deleteButton);
}

QStringList listOf(const QVector<SSLVPNRemoteInfo>& gateways)
{
    QStringList entries;
    for (const SSLVPNRemoteInfo& gateway : gateways)
        entries.append(gateway.iPDes + QLatin1Char('|') + gateway.ip + QLatin1Char('|') + gateway.port);
    return entries;
}

} // namespace

class TstCustomAdvPropertyGateways : public QObject
{
    Q_OBJECT

private slots:
    void columnsHaveTheirWidths();
    void gatewaysAreLoaded();
    void buttonsFollowTheNumberOfGateways_data();
    void buttonsFollowTheNumberOfGateways();
    void defaultBeyondTheListMarksNoRow();
    void gatewayIsAdded();
    void defaultGatewayIsAdded();
    void cancelledAddChangesNothing();
    void twentyGatewaysDisableAdd();
    void storedTwentyOneGatewaysKeepAddDisabledUntilNineteenRemain();
    void emptyTableRefusesEdit();
    void deleteWithoutASelectionIsRefused();
    void editOffersTheDefault_data();
    void editOffersTheDefault();
    void editedGatewayIsShownByItsKindOfAddress_data();
    void editedGatewayIsShownByItsKindOfAddress();
    void gatewayIsEdited();
    void defaultIsGivenUpByEdit();
    void defaultIsChosenByEdit();
    void editAcceptsUnchangedValues();
    void gatewayRefusesAddresses_data();
    void gatewayRefusesAddresses();
    void gatewayRefusesDuplicates();
    void gatewayAboveTheDefaultIsDeleted();
    void defaultGatewayIsDeleted();
    void gatewayBelowTheDefaultIsDeleted();
    void editFindsTheFirstGatewayShownSo();
    void deleteFindsTheFirstGatewayShownSo();
    void gatewayThatIsNotFoundLeavesTheListAndTheDefault();
    void lastGatewayDeletedDisablesEditAndDelete();
    void smallDialogBelongsToTheDialog();
    void gatewaysAreStored();
    void missingDefaultGatewayBecomesTheFirst();
    void noGatewaysStoreNoDefault();
};

void TstCustomAdvPropertyGateways::columnsHaveTheirWidths()
{
    OpenDialog open(startWith(2));
    const auto* tree = open.widget<QTreeWidget>(table);
    QCOMPARE(tree->columnCount(), 4);
    const int widths[] = {40, 100, 140, 50};
    for (int column = 0; column < 4; ++column)
        QCOMPARE(tree->columnWidth(column), widths[column]);
}

void TstCustomAdvPropertyGateways::gatewaysAreLoaded()
{
    CustomInfo before = startWith(3, 2);
    before.sslvpn.remote[1].port = QStringLiteral("8443");
    OpenDialog open(before);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g1|h1|443"), QStringLiteral("2|%1|h2|8443").arg(withDefault("g2")),
                          QStringLiteral("3|g3|h3|443")}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g2|h2|8443 g3|h3|443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
}

void TstCustomAdvPropertyGateways::buttonsFollowTheNumberOfGateways_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("none") << 0 << "pushButton_Add pushButton_Edit";
    QTest::newRow("one") << 1 << "pushButton_Add pushButton_Edit pushButton_Delete";
    QTest::newRow("19") << 19 << "pushButton_Add pushButton_Edit pushButton_Delete";
    QTest::newRow("20") << 20 << "pushButton_Edit pushButton_Delete";
    QTest::newRow("21") << 21 << "pushButton_Edit pushButton_Delete";
}

void TstCustomAdvPropertyGateways::buttonsFollowTheNumberOfGateways()
{
    QFETCH(int, count);
    QFETCH(QString, enabled);
    OpenDialog open(startWith(count));
    QCOMPARE(open.enabledOf(buttons()), words(enabled.toLatin1().constData()));
}

void TstCustomAdvPropertyGateways::defaultBeyondTheListMarksNoRow()
{
    // The second value is beyond the index, too.
    for (quint64 defaultAddress : {quint64(9), quint64(0x100000001)}) {
        OpenDialog open(startWith(2, defaultAddress));
        QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|g2|h2|443"));
        open.selectRow(table, 0);
        open.expect<CSslVpnIp>(
            [](CSslVpnIp& dialog) { fillAndAccept(dialog, QStringLiteral("x"), QStringLiteral("y"), false); });
        open.clickOn(editButton);
        deleteGateway(open, 0);
        open.pressOk();
        QVERIFY(!open.isOpen());
    }
}

void TstCustomAdvPropertyGateways::gatewayIsAdded()
{
    OpenDialog open(startWith(1));
    QString port;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        port = child<QLineEdit>(dialog, "lineEdit_vnsSvr_port")->text();
        type(dialog, "lineEdit_vnsSvr_port", QStringLiteral("8443"));
        fillAndAccept(dialog, QStringLiteral("new"), QStringLiteral("10.0.0.1"), false);
    });
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(port, QStringLiteral("443"));
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|new|10.0.0.1|8443"));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 new|10.0.0.1|8443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
    const auto* tree = open.widget<QTreeWidget>(table);
    QCOMPARE(tree->indexOfTopLevelItem(tree->currentItem()), 1);
    QCOMPARE(changes(startWith(1), open.info), QStringList());
}

void TstCustomAdvPropertyGateways::defaultGatewayIsAdded()
{
    OpenDialog open(startWith(1));
    addGateway(open, QStringLiteral("new"), QStringLiteral("host"), true);
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g1|h1|443"), QStringLiteral("2|%1|host|443").arg(withDefault("new"))}));
    bool isFree = true;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        isFree = defaultBox(dialog)->isEnabled();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(addButton);
    QVERIFY(!isFree);
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyGateways::cancelledAddChangesNothing()
{
    OpenDialog open(startWith(1));
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        type(dialog, "lineEdit_vnsSvr_disname", QStringLiteral("new"));
        click(dialog, "checkBox_vnsSvr_default");
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443"));
    QCOMPARE(open.dialog.gatewayList.size(), 1);
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
}

void TstCustomAdvPropertyGateways::twentyGatewaysDisableAdd()
{
    OpenDialog open(startWith(18));
    addGateway(open, QStringLiteral("g19"), QStringLiteral("h19"));
    QCOMPARE(open.enabledOf(buttons()), buttons());
    addGateway(open, QStringLiteral("g20"), QStringLiteral("h20"));
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Edit pushButton_Delete"));
    deleteGateway(open, 19);
    QCOMPARE(open.enabledOf(buttons()), buttons());
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.gatewayList.size(), 19);
}

void TstCustomAdvPropertyGateways::storedTwentyOneGatewaysKeepAddDisabledUntilNineteenRemain()
{
    OpenDialog open(startWith(21));
    deleteGateway(open, 20);
    QCOMPARE(open.rowsOf(table).size(), 20);
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Edit pushButton_Delete"));
    deleteGateway(open, 19);
    QCOMPARE(open.rowsOf(table).size(), 19);
    QCOMPARE(open.enabledOf(buttons()), buttons());
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyGateways::emptyTableRefusesEdit()
{
    OpenDialog open(startWith());
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Add pushButton_Edit"));
    open.expectBox();
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList(sslBox("SSL_AddrSelectWarning")));
}

void TstCustomAdvPropertyGateways::deleteWithoutASelectionIsRefused()
{
    OpenDialog open(startWith(1));
    open.expectBox();
    open.clickOn(deleteButton);
    open.expectBox();
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList({sslBox("SSL_AddrSelectWarning"), sslBox("SSL_AddrSelectWarning")}));
    QCOMPARE(open.rowsOf(table).size(), 1);
}

void TstCustomAdvPropertyGateways::editOffersTheDefault_data()
{
    QTest::addColumn<int>("defaultAddress");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isEnabled");
    QTest::addColumn<bool>("isTicked");
    QTest::newRow("no default") << 0 << 0 << true << false;
    QTest::newRow("the default") << 2 << 1 << true << true;
    QTest::newRow("another than the default") << 2 << 0 << false << false;
}

void TstCustomAdvPropertyGateways::editOffersTheDefault()
{
    QFETCH(int, defaultAddress);
    QFETCH(int, row);
    QFETCH(bool, isEnabled);
    QFETCH(bool, isTicked);
    OpenDialog open(startWith(2, quint64(defaultAddress)));
    bool wasEnabled = !isEnabled;
    bool wasTicked = !isTicked;
    QString name;
    open.selectRow(table, row);
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        wasEnabled = defaultBox(dialog)->isEnabled();
        wasTicked = defaultBox(dialog)->isChecked();
        name = child<QLineEdit>(dialog, "lineEdit_vnsSvr_disname")->text();
        press(dialog, QDialogButtonBox::Ok);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(wasEnabled, isEnabled);
    QCOMPARE(wasTicked, isTicked);
    QCOMPARE(name, QStringLiteral("g%1").arg(row + 1));
    QCOMPARE(open.dialog.defaultGatewayIndex, defaultAddress);
}

void TstCustomAdvPropertyGateways::editedGatewayIsShownByItsKindOfAddress_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("radio");
    QTest::addColumn<QString>("edit");
    QTest::newRow("domain name") << "vpn.example.org"
                                 << "radioButton_vnsSvr_DNS"
                                 << "lineEdit_vnsSvr_DNS";
    QTest::newRow("address") << "10.0.0.1"
                             << "radioButton_vnsSvr_IP"
                             << "lineEdit_vnsSvr_IP";
}

void TstCustomAdvPropertyGateways::editedGatewayIsShownByItsKindOfAddress()
{
    QFETCH(QString, address);
    QFETCH(QString, radio);
    QFETCH(QString, edit);
    OpenDialog open(startWith());
    addGateway(open, QStringLiteral("new"), address);
    bool isOn = false;
    QString text;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        isOn = child<QAbstractButton>(dialog, radio.toLatin1().constData())->isChecked();
        text = child<QLineEdit>(dialog, edit.toLatin1().constData())->text();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(isOn);
    QCOMPARE(text, address);
}

void TstCustomAdvPropertyGateways::gatewayIsEdited()
{
    OpenDialog open(startWith(3, 1));
    open.selectRow(table, 1);
    open.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        type(dialog, "lineEdit_vnsSvr_port", QStringLiteral("1"));
        fillAndAccept(dialog, QStringLiteral("E"), QStringLiteral("10.9.9.9"), false);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|%1|h1|443").arg(withDefault("g1")),
                                              QStringLiteral("2|E|10.9.9.9|1"), QStringLiteral("3|g3|h3|443")}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 E|10.9.9.9|1 g3|h3|443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 1);
}

void TstCustomAdvPropertyGateways::defaultIsGivenUpByEdit()
{
    OpenDialog open(startWith(2, 2));
    editGateway(open, 1, QStringLiteral("E"), QStringLiteral("host"), false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|E|host|443"));
}

void TstCustomAdvPropertyGateways::defaultIsChosenByEdit()
{
    OpenDialog open(startWith(2));
    editGateway(open, 1, QStringLiteral("E"), QStringLiteral("host"), true);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g1|h1|443"), QStringLiteral("2|%1|host|443").arg(withDefault("E"))}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 E|host|443"));
}

void TstCustomAdvPropertyGateways::editAcceptsUnchangedValues()
{
    OpenDialog open(startWith(3, 2));
    const QStringList rows = open.rowsOf(table);
    for (int row = 0; row < 3; ++row) {
        open.selectRow(table, row);
        open.expect<CSslVpnIp>([](CSslVpnIp& dialog) { press(dialog, QDialogButtonBox::Ok); });
        open.clickOn(editButton);
    }
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g2|h2|443 g3|h3|443"));
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
}

void TstCustomAdvPropertyGateways::gatewayRefusesAddresses_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("passes");
    QTest::newRow("169.254.0.0") << "169.254.0.0" << false;
    QTest::newRow("one higher") << "169.254.0.1" << true;
    QTest::newRow("127.0.0.1") << "127.0.0.1" << false;
    QTest::newRow("127.0.0.2") << "127.0.0.2" << true;
}

void TstCustomAdvPropertyGateways::gatewayRefusesAddresses()
{
    QFETCH(QString, address);
    QFETCH(bool, passes);
    OpenDialog open(startWith());
    QString focus;
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        fillAndAccept(dialog, QStringLiteral("new"), address, false);
        focus = focusOf(dialog);
        if (dialog.isVisible())
            press(dialog, QDialogButtonBox::Cancel);
    });
    if (!passes)
        open.expectBox();
    open.clickOn(addButton);
    if (passes) {
        QCOMPARE(open.shown(), QStringList());
        QCOMPARE(open.dialog.gatewayList.size(), 1);
    } else {
        QCOMPARE(open.shown(), QStringList(sslBox("SSL_Ipv4Err")));
        QCOMPARE(focus, QStringLiteral("lineEdit_vnsSvr_IP"));
        QCOMPARE(open.dialog.gatewayList.size(), 0);
    }
}

// The small dialog compares with the list as it stands in the dialog, not with the record.
void TstCustomAdvPropertyGateways::gatewayRefusesDuplicates()
{
    OpenDialog open(startWith(1));
    addGateway(open, QStringLiteral("new"), QStringLiteral("10.0.0.1"));
    open.expect<CSslVpnIp>([](CSslVpnIp& dialog) {
        fillAndAccept(dialog, QStringLiteral("new"), QStringLiteral("10.0.0.2"), false);
        fillAndAccept(dialog, QStringLiteral("other"), QStringLiteral("10.0.0.1"), false);
        fillAndAccept(dialog, QStringLiteral("other"), QStringLiteral("h1"), false);
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expectBox();
    open.expectBox();
    open.expectBox();
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList({sslBox("SSL_DISPNAME_Exist"), sslBox("SSL_SERVADDRESS_Exist"),
                                        sslBox("SSL_SERVADDRESS_Exist")}));
    QCOMPARE(open.dialog.gatewayList.size(), 2);
}

void TstCustomAdvPropertyGateways::gatewayAboveTheDefaultIsDeleted()
{
    OpenDialog open(startWith(3, 3));
    deleteGateway(open, 0);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 2);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|g2|h2|443"), QStringLiteral("2|%1|h3|443").arg(withDefault("g3"))}));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g2|h2|443 g3|h3|443"));
    open.pressOk();
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(2));
}

void TstCustomAdvPropertyGateways::defaultGatewayIsDeleted()
{
    OpenDialog open(startWith(3, 2));
    deleteGateway(open, 1);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.defaultGatewayIndex, 0);
    QCOMPARE(open.rowsOf(table), words("1|g1|h1|443 2|g3|h3|443"));
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g3|h3|443"));
}

void TstCustomAdvPropertyGateways::gatewayBelowTheDefaultIsDeleted()
{
    OpenDialog open(startWith(3, 1));
    deleteGateway(open, 1);
    QCOMPARE(open.dialog.defaultGatewayIndex, 1);
    QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g3|h3|443"));
}

void TstCustomAdvPropertyGateways::editFindsTheFirstGatewayShownSo()
{
    OpenDialog open(startWithGateways("g|h1 g|h2"));
    QString address;
    open.selectRow(table, 1);
    open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
        address = child<QLineEdit>(dialog, "lineEdit_vnsSvr_DNS")->text();
        type(dialog, "lineEdit_vnsSvr_disname", QStringLiteral("E"));
        press(dialog, QDialogButtonBox::Ok);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(address, QStringLiteral("h1"));
    QCOMPARE(open.rowsOf(table), words("1|g|h1|443 2|E|h1|443"));
    QCOMPARE(listOf(open.dialog.gatewayList), words("E|h1|443 g|h2|443"));
}

void TstCustomAdvPropertyGateways::deleteFindsTheFirstGatewayShownSo()
{
    OpenDialog open(startWithGateways("g|h1 x|hx g|h2"));
    deleteGateway(open, 2);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), words("1|g|h1|443 2|x|hx|443"));
    QCOMPARE(listOf(open.dialog.gatewayList), words("x|hx|443 g|h2|443"));
}

void TstCustomAdvPropertyGateways::gatewayThatIsNotFoundLeavesTheListAndTheDefault()
{
    {
        // The index of the default is 1, but no row shows its mark.
        OpenDialog open(startWith(2, quint64(0x100000001)));
        QStringList texts;
        open.selectRow(table, 0);
        open.expect<CSslVpnIp>([&](CSslVpnIp& dialog) {
            for (const char* edit : {"lineEdit_vnsSvr_disname", "lineEdit_vnsSvr_IP", "lineEdit_vnsSvr_port"})
                texts.append(child<QLineEdit>(dialog, edit)->text());
            fillAndAccept(dialog, QStringLiteral("E"), QStringLiteral("host"), false);
        });
        open.clickOn(editButton);
        QCOMPARE(open.shown(), QStringList());
        QCOMPARE(texts, QStringList({QString(), QString(), QStringLiteral("443")}));
        QCOMPARE(open.rowsOf(table), words("1|E|host|443 2|g2|h2|443"));
        QCOMPARE(listOf(open.dialog.gatewayList), words("g1|h1|443 g2|h2|443"));
    }
    OpenDialog open(startWith(3, 3));
    open.dialog.gatewayList.clear();
    deleteGateway(open, 0);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table).size(), 2);
    QCOMPARE(open.dialog.defaultGatewayIndex, 3);
}

void TstCustomAdvPropertyGateways::lastGatewayDeletedDisablesEditAndDelete()
{
    OpenDialog open(startWith(1, 1));
    deleteGateway(open, 0);
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Add"));
    addGateway(open, QStringLiteral("new"), QStringLiteral("host"));
    QCOMPARE(open.enabledOf(buttons()), buttons());
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyGateways::smallDialogBelongsToTheDialog()
{
    OpenDialog open(startWith(1));
    QList<QObject*> parents;
    const auto note = [&](CSslVpnIp& dialog) {
        parents.append(dialog.parent());
        press(dialog, QDialogButtonBox::Cancel);
    };
    open.expect<CSslVpnIp>(note);
    open.clickOn(addButton);
    open.selectRow(table, 0);
    open.expect<CSslVpnIp>(note);
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(parents, QList<QObject*>({&open.dialog, &open.dialog}));
}

void TstCustomAdvPropertyGateways::gatewaysAreStored()
{
    OpenDialog open(startWith(2, 1));
    addGateway(open, QStringLiteral("new"), QStringLiteral("10.0.0.1"));
    deleteGateway(open, 0);
    editGateway(open, 1, QStringLiteral("E"), QStringLiteral("10.0.0.2"), true);
    QCOMPARE(changes(startWith(2, 1), open.info), QStringList());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(listOf(open.info.sslvpn.remote), words("g2|h2|443 E|10.0.0.2|443"));
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(2));
    QVERIFY(open.dialog.gatewayList.isEmpty());
}

void TstCustomAdvPropertyGateways::missingDefaultGatewayBecomesTheFirst()
{
    OpenDialog open(startWith(2));
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(sslBox("SSL_Set_DefaultGateway")));
    QVERIFY(!open.isOpen());
    QCOMPARE(open.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(changes(startWith(2), open.info), words("sslvpn/defaultAddress"));
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(1));
}

void TstCustomAdvPropertyGateways::noGatewaysStoreNoDefault()
{
    OpenDialog open(startWith(1, 1));
    deleteGateway(open, 0);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.info.sslvpn.defaultAddress, quint64(0));
    QVERIFY(open.info.sslvpn.remote.isEmpty());
}

TEST_ENTRY(customadvproperty_gateways, runTest<TstCustomAdvPropertyGateways>)

#include "tst_customadvproperty_gateways.moc"
