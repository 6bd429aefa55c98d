#include "mainwindow/tst_sweep_rows.h"

#include "advanced/CDynamicPwdDlg.h"
#include "advanced/CInput1XDomainDlg.h"
#include "advanced/CMsgAuthDlg.h"
#include "advanced/CSslVpnIp.h"
#include "advanced/CWanEscapeDlg.h"
#include "advanced/KEFCusOpt.h"
#include "advanced/UninstallPasswd.h"
#include "advanced/WancontrolDlg.h"
#include "app/language/LangText.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/DistinctRecord.h"
#include "vpn/IpInfo.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLineEdit>
#include <QScrollArea>
#include <QTabWidget>
#include <QTreeWidget>

namespace sweep {

namespace {

QString textOf(const char* literal)
{
    return QString::fromUtf8(literal);
}
QString textOf(const QString& text)
{
    return text;
}
QString textOf(qint64 number)
{
    return QString::number(number);
}

/// @param value  a number for a number or flag, a literal or QString for a text
template <class Value> Change assign(const char* field, Value value)
{
    const QString path = QString::fromLatin1(field);
    const QString text = textOf(value);
    return [path, text](CustomInfo& record) { setField(record, path, text); };
}

/// Fills in a row of the table.
class Entry
{
public:
    explicit Entry(Row& row) : m_row(row) {}

    /// Tells the rows of one field apart.
    Entry& by(const char* way)
    {
        m_row.by = QString::fromLatin1(way);
        return *this;
    }
    Entry& from(const Change& base)
    {
        m_row.base.append(base);
        return *this;
    }
    template <class Value> Entry& from(const char* field, Value value) { return from(assign(field, value)); }
    template <class Value> Entry& along(const char* field, Value value)
    {
        m_row.along.append(QString::fromLatin1(field));
        m_row.outcome.append(assign(field, value));
        return *this;
    }
    Entry& seenIn(const Control& control)
    {
        m_row.shown = control;
        return *this;
    }
    /// The small dialog behind this box starts from its own defaults: only the tick can be seen, before and after.
    Entry& hiddenBehind(const char* box)
    {
        m_row.isShownAlone = false;
        return seenIn(button(box));
    }

private:
    Row& m_row;
};

/// The rows of one window.
class Table
{
public:
    Table(QVector<Row>& rows, Place place) : m_rows(rows), m_place(place) {}

    Entry playFor(const char* field, const Change& outcome, const Step& set)
    {
        Row row;
        row.field = QString::fromLatin1(field);
        row.place = m_place;
        row.set = set;
        row.outcome = {outcome};
        m_rows.append(row);
        return Entry(m_rows.last());
    }
    template <class Value> Entry play(const char* field, Value value, const Step& set)
    {
        return playFor(field, assign(field, value), set);
    }
    template <class Value> Entry set(const char* field, Value value, const Control& control)
    {
        Entry entry = play(field, value, [control](QWidget& window, ModalScript&) { operate(window, control); });
        return entry.seenIn(control);
    }
    Entry tick(const char* field, const char* box, int value) { return set(field, value, button(box, value != 0)); }
    Entry type(const char* field, const char* name, const char* text)
    {
        return set(field, text, edit(name, QString::fromUtf8(text)));
    }
    Entry typeNumber(const char* field, const char* name, int number)
    {
        return set(field, number, edit(name, QString::number(number)));
    }
    template <class Value> Entry choose(const char* field, const char* name, int index, Value value)
    {
        return set(field, value, combo(name, index));
    }

private:
    QVector<Row>& m_rows;
    Place m_place;
};

// Widgets.

void bringToFront(QWidget* widget)
{
    for (QWidget* page = widget; page->parentWidget(); page = page->parentWidget()) {
        QWidget* stack = page->parentWidget();
        QTabWidget* tabs = qobject_cast<QTabWidget*>(stack->parentWidget());
        if (tabs && tabs->indexOf(page) >= 0 && tabs->currentWidget() != page) {
            tabs->setCurrentWidget(page);
            QCoreApplication::processEvents();
        }
    }
    for (QWidget* area = widget->parentWidget(); area; area = area->parentWidget()) {
        if (QScrollArea* scroll = qobject_cast<QScrollArea*>(area))
            scroll->ensureWidgetVisible(widget);
    }
}

template <class Widget> Widget* reach(const QWidget& window, const char* name)
{
    Widget* widget = child<Widget>(window, name);
    bringToFront(widget);
    if (!widget->isVisible() || !widget->isEnabled())
        QTest::qFail(QByteArray("out of reach: ") + name, __FILE__, __LINE__);
    return widget;
}

void click(const QWidget& window, const char* name)
{
    QAbstractButton* found = reach<QAbstractButton>(window, name);
    QTest::mouseClick(found, Qt::LeftButton, Qt::NoModifier, QPoint(8, found->height() / 2));
}

void type(const QWidget& window, const char* name, const QString& text)
{
    QLineEdit* found = reach<QLineEdit>(window, name);
    found->setFocus();
    QTest::keyClick(found, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(found, Qt::Key_Delete);
    for (const QChar& character : text)
        QTest::sendKeyEvent(QTest::Click, found, Qt::Key_unknown, QString(character), Qt::NoModifier);
}

// By single steps from where it stands, as each item on the way may change other widgets.
void choose(const QWidget& window, const char* name, int index)
{
    QComboBox* found = reach<QComboBox>(window, name);
    found->setFocus();
    const int steps = index - found->currentIndex();
    for (int step = 0; step < qAbs(steps); ++step)
        QTest::keyClick(found, steps < 0 ? Qt::Key_Up : Qt::Key_Down);
}

void selectRow(const QWidget& window, const char* name, int row)
{
    QTreeWidget* tree = reach<QTreeWidget>(window, name);
    QTreeWidgetItem* item = tree->topLevelItem(row);
    tree->scrollToItem(item);
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, tree->visualItemRect(item).center());
}

// Small dialogs.

/// The next window is the small dialog: it gets these values and its Ok.
template <class Dialog> void expect(ModalScript& script, const QVector<Control>& values)
{
    script.expect<Dialog>([values](Dialog& dialog) {
        for (const Control& value : values)
            operate(dialog, value);
        pressOk(dialog);
    });
}

/// Ticks the box; it is unticked first when it is on, as a small dialog comes only with a new tick.
void tickAnew(QWidget& window, const char* box)
{
    operate(window, button(box, false));
    operate(window, button(box, true));
}

Step tickWancontrol(const char* action)
{
    return [action](QWidget& window, ModalScript& script) {
        expect<WancontrolDlg>(script, {button(action)});
        tickAnew(window, "checkBox_Wancontrol");
    };
}

Step tickDynPwd(bool isDefault, bool isEditable)
{
    return [=](QWidget& window, ModalScript& script) {
        expect<CDynamicPwdDlg>(script,
                               {button("checkBox_default", isDefault), button("checkBox_editable", isEditable)});
        tickAnew(window, "checkBox_DynPwdVry");
    };
}

Step tickMsgAuth(const char* address, int port, bool isDefault = false)
{
    return [=](QWidget& window, ModalScript& script) {
        expect<CMsgAuthDlg>(script, {button("checkBox_default", isDefault),
                                     edit("lineEdit_MsgAuthSrv_IP", QString::fromLatin1(address)),
                                     edit("lineEdit_MsgAuthSrv_Port", QString::number(port))});
        tickAnew(window, "checkBox_MsgAuth");
    };
}

void withMsgAuth(CustomInfo& record)
{
    record.function.msgAuthOpt = 1;
    record.function.msgAuthServIP = QStringLiteral("10.3.0.1");
    record.function.msgAuthServPort = 3001;
}

Step tickPassword(const char* password)
{
    return [password](QWidget& window, ModalScript& script) {
        const QString text = QString::fromLatin1(password);
        expect<UninstallPasswd>(script, {edit("input", text), edit("confirm", text)});
        tickAnew(window, "checkBox_passwd");
    };
}

void withPassword(CustomInfo& record)
{
    record.function.passwordProtection = 1;
    record.function.uninstallPassword = QStringLiteral("base");
}

Step tickEscape(const char* address, const char* dns, const char* port, const char* backup, bool withControl = false)
{
    return [=](QWidget& window, ModalScript& script) {
        const auto text = [](const char* name, const char* value) { return edit(name, QString::fromLatin1(value)); };
        expect<CWanEscapeDlg>(script, {text("lineEdit_pyxIp", address), text("lineEdit_dnsIp", dns),
                                       text("lineEdit_pyxPort", port), text("lineEdit_pyxIp_bak", backup)});
        if (withControl)
            expect<WancontrolDlg>(script, {});
        tickAnew(window, "checkBox_aclEscape");
    };
}

void withEscape(CustomInfo& record)
{
    BasicFunctionInfo& function = record.function;
    function.acl = 1;
    function.wanControl = 2;
    function.wanControlEscape = 1;
    function.wanControlEscapePyxIp = QStringLiteral("10.3.0.2");
    function.wanControlEscapeDns = QStringLiteral("10.3.0.3");
    function.wanControlEscapePyxPort = QStringLiteral("3100");
    function.wanControlEscapePyxIpBackup = QStringLiteral("10.3.0.4");
}

Step editGateway(int row, const QVector<Control>& values)
{
    return [=](QWidget& window, ModalScript& script) {
        expect<CSslVpnIp>(script, values);
        selectRow(window, "treeWidget_SSLIP", row);
        click(window, "pushButton_Edit");
    };
}

Step editDomain(int row, const Control& value)
{
    return [=](QWidget& window, ModalScript& script) {
        expect<CInput1XDomainDlg>(script, {value});
        selectRow(window, "treeWidget_Domain", row);
        click(window, "pushButton_Edit_2");
    };
}

void addRoute(QWidget& window, ModalScript& script, const char* ip, const char* mask)
{
    expect<IpInfo>(script,
                   {edit("lineEdit_Ip", QString::fromLatin1(ip)), edit("lineEdit_mask", QString::fromLatin1(mask))});
    click(window, "pushButton_Add");
}

/// A route cannot be edited: it goes and another comes.
Step replaceLastRoute(const char* ip, const char* mask)
{
    return [=](QWidget& window, ModalScript& script) {
        script.expect<QMessageBox>(
            [](QMessageBox& box) { QTest::mouseClick(box.button(QMessageBox::Yes), Qt::LeftButton); });
        selectRow(window, "treeWidget_RouteList", 1);
        click(window, "pushButton_Delete");
        addRoute(window, script, ip, mask);
    };
}

Step tickKef(const char* ip, const char* port, bool customize)
{
    return [=](QWidget& window, ModalScript& script) {
        expect<KEFCusOpt>(script,
                          {edit("lineEdit_kefIp", QString::fromLatin1(ip)),
                           edit("lineEdit_kefPort", QString::fromLatin1(port)), button("checkBox_disable", customize)});
        tickAnew(window, "checkBox_keffunc");
    };
}

void withIpsec(CustomInfo& record)
{
    record.vpn.basecfg.useIPSEC = 1;
    record.vpn.basecfg.preSharedKey = QStringLiteral("base key");
    record.vpn.ikecfg.IKEAuthMethod = QStringLiteral("PRE-SHARE");
}

void withOtherServer(CustomInfo& record)
{
    withIpsec(record);
    record.vpn.basecfg.LNSAsIPSECServer = 0;
    record.vpn.basecfg.otherIPSECServer = QStringLiteral("ipsec.base");
}

void withTunnelPassword(CustomInfo& record)
{
    record.vpn.l2tpcfg.L2TPUseTunnelPwd = 1;
    record.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("base secret");
}

void withNames(CustomInfo& record)
{
    record.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Aggressive");
    record.vpn.ikecfg.IKEIDType = QStringLiteral("name");
}

/// The copy of an icon that a reloaded record names.
QString storedIcon(const char* name, qint64 stamp = newStamp)
{
    return installation::path(QStringLiteral("UpdateCustom/%1/%2").arg(stamp).arg(QLatin1String(name)));
}

// The rows, in the order of the record.
// clang-format off

void addCommon(QVector<Row>& rows)
{
    Table finish(rows, Place::Finish);
    finish.type("common/cusAddInfo", "lineEdit_addinfo", "备注 <new>");

    // The box of the L2TP IPsec VPN is hidden: its bit comes with a stored customisation only.
    Table page(rows, Place::Page);
    const auto untick = [&](const char* box, int mask) {
        page.set("common/procomVal", mask, button(box, false)).by(box);
    };
    untick("checkBox_8021xPro", 62);
    untick("checkBox_portalPro", 61);
    untick("checkBox_wlanPro", 55);
    untick("checkBox_sslvpnPro", 47);
    untick("checkBox_zoaPro", 31);
    page.set("common/funcomVal", 4, button("checkBox_zoafunc", false)).by("checkBox_zoafunc");
    page.play("common/funcomVal", 5, tickKef("10.9.0.2", "9902", true))
        .by("checkBox_keffunc")
        .from("common/funcomVal", 1)
        .along("kef/kefIP", "10.9.0.2")
        .along("kef/kefPort", "9902")
        .along("kef/customize", 1)
        .seenIn(button("checkBox_keffunc"));
}

void addPortal(Table& table)
{
    table.tick("portal/keepConnPasswd", "checkBox_PortalSaveUser", 0);
    table.tick("portal/autoAuth", "checkBox_PortalAutoConn", 1);
    table.tick("portal/upVer", "checkBox_PortalUpVer", 0);
    table.tick("portal/resumeConn", "checkBox_PortalReConnAftNetErr", 0);
    table.tick("portal/advancedAuth", "checkBox_PortalAdvancedAuth", 1);
    table.choose("portal/advancedAuthType", "comboBox_PortalAdvancedAuth", 1, 1)
        .from("portal/advancedAuth", 1);
}

void addX1(Table& table)
{
    table.tick("x1/keepConnPasswd", "checkBox_1xSaveUser", 0);
    table.tick("x1/autoAuth", "checkBox_1xAutoConn", 1);
    table.tick("x1/upVer", "checkBox_1xUpVer", 0);
    table.tick("x1/upIp", "checkBox_1xUpIp", 0);
    table.set("x1/unicastType", 0, button("radioButton_multiPkt"));
    table.tick("x1/broadLogOff", "checkBox_1xUseBroadLogoff", 0);
    table.tick("x1/x1ResumeConn", "checkBox_1xResumeConn", 0);
    table.tick("x1/refreshIPAftCut", "checkBox_1xRenewIPAfterCut", 1);
    table.choose("x1/reauthTimes", "comboBox_RetryTimes", 7, 7);
    table.choose("x1/reauthInterval", "comboBox_RetryInterval", 9, 9);
    table.tick("x1/defaultConnection", "checkBox_DefaultConn", 1);
    table.tick("x1/advancedAuth", "checkBox_1xAdvancedAuth", 1);
    table.choose("x1/advancedAuthType", "comboBox_1xAdvancedAuth", 1, 1).from("x1/advancedAuth", 1);
}

void addFunction(Table& table)
{
    const auto control = [&](const char* action, int value) {
        table.play("functions/wanControl", value, tickWancontrol(action))
            .by(action)
            .along("functions/acl", 1)
            .seenIn(button("checkBox_Wancontrol"));
    };
    control("radioButton_Deny", 1);
    control("radioButton_Pass", 2);
    table.tick("functions/acl", "checkBox_AclOpt", 1);
    table.tick("functions/drvErr", "checkBox_DrvErr", 1);

    table.play("functions/dynamicPwdVerify", 1, tickDynPwd(false, true)).seenIn(button("checkBox_DynPwdVry"));
    table.play("functions/dynamicVifInfo", 2, tickDynPwd(true, false))
        .from("functions/dynamicPwdVerify", 1)
        .hiddenBehind("checkBox_DynPwdVry");

    table.play("functions/msgAuthOpt", 1, tickMsgAuth("10.3.0.9", 3009))
        .along("functions/msgAuthServIP", "10.3.0.9")
        .along("functions/msgAuthServPort", 3009)
        .seenIn(button("checkBox_MsgAuth"));
    table.play("functions/msgAuthInfo", 3, tickMsgAuth("10.3.0.1", 3001, true))
        .from(withMsgAuth)
        .hiddenBehind("checkBox_MsgAuth");
    table.play("functions/msgAuthServIP", "10.3.0.9", tickMsgAuth("10.3.0.9", 3001))
        .from(withMsgAuth)
        .hiddenBehind("checkBox_MsgAuth");
    table.play("functions/msgAuthServPort", 3009, tickMsgAuth("10.3.0.1", 3009))
        .from(withMsgAuth)
        .hiddenBehind("checkBox_MsgAuth");

    table.play("functions/passwordProtection", 1, tickPassword("first"))
        .along("functions/uninstallPassword", "first")
        .seenIn(button("checkBox_passwd"));
    table.play("functions/uninstallPassword", " Go 9 ", tickPassword(" Go 9 "))
        .from(withPassword)
        .hiddenBehind("checkBox_passwd");
    // The extended password takes the place of a typed one.
    const Step tickExtended = [](QWidget& window, ModalScript& script) {
        expect<UninstallPasswd>(script, {button("checkBox_extend")});
        tickAnew(window, "checkBox_passwd");
    };
    table.play("functions/uninstallPasswordExtend", 2, tickExtended)
        .from(withPassword)
        .along("functions/uninstallPassword", "")
        .hiddenBehind("checkBox_passwd");
}

void addEscape(Table& table)
{
    table.play("functions/wanControlEscape", 1, tickEscape("10.3.0.7", "10.3.0.8", "3107", "10.3.0.9", true))
        .along("functions/wanControlEscapePyxIp", "10.3.0.7")
        .along("functions/wanControlEscapeDns", "10.3.0.8")
        .along("functions/wanControlEscapePyxPort", "3107")
        .along("functions/wanControlEscapePyxIpBackup", "10.3.0.9")
        .along("functions/wanControl", 2)
        .along("functions/acl", 1)
        .seenIn(button("checkBox_aclEscape"));
    const auto escape = [&](auto... fieldAndSet) {
        table.play(fieldAndSet...).from(withEscape).hiddenBehind("checkBox_aclEscape");
    };
    escape("functions/wanControlEscapePyxIp", "10.3.0.7",
           tickEscape("10.3.0.7", "10.3.0.3", "3100", "10.3.0.4"));
    escape("functions/wanControlEscapeDns", "10.3.0.8", tickEscape("10.3.0.2", "10.3.0.8", "3100", "10.3.0.4"));
    escape("functions/wanControlEscapePyxPort", "3107", tickEscape("10.3.0.2", "10.3.0.3", "3107", "10.3.0.4"));
    escape("functions/wanControlEscapePyxIpBackup", "10.3.0.9",
           tickEscape("10.3.0.2", "10.3.0.3", "3100", "10.3.0.9"));
}

void addSslVpn(Table& table)
{
    const auto addGateway = [](QWidget& window, ModalScript& script) {
        expect<CSslVpnIp>(script, {edit("lineEdit_vnsSvr_disname", QStringLiteral("third")),
                                   edit("lineEdit_vnsSvr_IP", QStringLiteral("10.4.0.9")),
                                   edit("lineEdit_vnsSvr_port", QStringLiteral("4439"))});
        click(window, "pushButton_Add");
    };
    const Change third = [](CustomInfo& record) {
        SSLVPNRemoteInfo gateway;
        gateway.iPDes = QStringLiteral("third");
        gateway.ip = QStringLiteral("10.4.0.9");
        gateway.port = QStringLiteral("4439");
        record.sslvpn.remote.append(gateway);
    };
    const char* const tree = "treeWidget_SSLIP";
    table.playFor("sslvpn/remote.size", third, addGateway).seenIn(cell(tree, 2, 2, QStringLiteral("10.4.0.9")));
    const QString name = QStringLiteral("renamed");
    table.play("sslvpn/remote/0/iPDes", name, editGateway(0, {edit("lineEdit_vnsSvr_disname", name)}))
        .seenIn(cell(tree, 0, 1, name));
    const QString address = QStringLiteral("10.4.0.7");
    table.play("sslvpn/remote/0/ip", address, editGateway(0, {edit("lineEdit_vnsSvr_IP", address)}))
        .by("lineEdit_vnsSvr_IP")
        .seenIn(cell(tree, 0, 2, address));
    const QString domain = QStringLiteral("gate.example.com");
    table.play("sslvpn/remote/0/ip", domain,
               editGateway(0, {button("radioButton_vnsSvr_DNS"), edit("lineEdit_vnsSvr_DNS", domain)}))
        .by("lineEdit_vnsSvr_DNS")
        .seenIn(cell(tree, 0, 2, domain));
    const QString port = QStringLiteral("4437");
    table.play("sslvpn/remote/0/port", port, editGateway(0, {edit("lineEdit_vnsSvr_port", port)}))
        .seenIn(cell(tree, 0, 3, port));
    const auto moveDefault = [](QWidget& window, ModalScript& script) {
        editGateway(1, {button("checkBox_vnsSvr_default", false)})(window, script);
        editGateway(0, {button("checkBox_vnsSvr_default")})(window, script);
    };
    table.play("sslvpn/defaultAddress", 1, moveDefault)
        .seenIn(cell(tree, 0, 1, QStringLiteral("first") + langText("SSL_DEFAULTNAME")));

    table.typeNumber("sslvpn/retries", "lineEdit_reconnTimes", 8);
    table.typeNumber("sslvpn/retryInterval", "lineEdit_reconnInterval", 12);
    table.set("sslvpn/authMode", 6, button("checkBox_Password", false)).from("sslvpn/authDefaultMode", 1);
    table.set("sslvpn/authMode", 5, button("checkBox_PwdCert", false)).by("checkBox_PwdCert");
    table.set("sslvpn/authMode", 3, button("checkBox_Cert", false)).by("checkBox_Cert");
    table.choose("sslvpn/authDefaultMode", "comboBox_defaultMode", 1, 1);
    const auto type = [&](const char* box, int mask, const char* names) {
        table.set("sslvpn/ulAuthType", mask, button(box, false)).by(box).along("sslvpn/authType", names);
    };
    type("checkBox_Local", 14, "AD;LDAP;RADIUS");
    type("checkBox_LDAP", 11, "Local;AD;RADIUS");
    type("checkBox_RADIUS", 7, "Local;AD;LDAP");
    table.set("sslvpn/authType", "Local;LDAP;RADIUS", button("checkBox_AD", false))
        .from("sslvpn/authDefaultType", "Local")
        .along("sslvpn/ulAuthType", 13);
    table.choose("sslvpn/authDefaultType", "comboBox_defaultType", 2, "LDAP");
    table.tick("sslvpn/gatewayAuth", "checkBox_gatewayType", 1);
    table.typeNumber("sslvpn/getSmsVryCountdownValue", "lineEdit_getSysVryInterval", 90);
    table.choose("sslvpn/TLSVersion", "comboBox_TLS_version_list", 1, 1);
    table.tick("sslvpn/edcode", "checkBox_edcode", 1);
}

void addDomain(Table& table)
{
    const char* const tree = "treeWidget_Domain";
    const QString name = QStringLiteral("研发域");
    const QString description = QStringLiteral("域的说明");
    const auto addDomain = [=](QWidget& window, ModalScript& script) {
        expect<CInput1XDomainDlg>(script, {edit("lineEdit_domain", name), edit("lineEdit_des_domain", description)});
        click(window, "pushButton_Add_2");
    };
    const Change third = [=](CustomInfo& record) { record.domain.domaindetail.append({name, description}); };
    table.playFor("domain/domaindetail.size", third, addDomain).seenIn(cell(tree, 2, 2, description));
    table.play("domain/domaindetail/1/domainName", name, editDomain(1, edit("lineEdit_domain", name)))
        .seenIn(cell(tree, 1, 1, name));
    table.play("domain/domaindetail/1/domainDesp", description,
               editDomain(1, edit("lineEdit_des_domain", description)))
        .seenIn(cell(tree, 1, 2, description));
    table.tick("domain/domainForce", "checkBox_DomainForce", 1);
    table.play("domain/domainDefault", 1, editDomain(0, button("checkBox_dftDomain")))
        .seenIn(cell(tree, 0, 1, QStringLiteral("sales") + langText("CUS_Default")));
}

void addGui(Table& table)
{
    const auto icon = [&](const char* field, const char* name, const char* source, const char* copy) {
        // Cleared with the templates.
        const QString path = installation::path(QLatin1String("template/icons/") + QLatin1String(source));
        const auto typePath = [=](QWidget& window, ModalScript&) {
            installation::writeFile(path, "an icon");
            operate(window, edit(name, path));
        };
        table.play(field, storedIcon(copy), typePath).seenIn(edit(name, storedIcon(copy)));
    };
    icon("guiOptions/linuxDeskIcon", "lineEdit_deskIcon_dir_Linux", "desk.png", "DeskIconLinux.png");
    icon("guiOptions/mainIcon", "lineEdit_mainIcon_dir", "main.ico", "MainIcon.ico");
    table.type("guiOptions/subTitle", "lineEdit_cusTitle", "网络接入 <2>");
    table.tick("guiOptions/hideCopyRight", "checkBox_HideCopyRight", 1);
}

void addVpnBase(Table& table)
{
    table.type("vpn/basecfg/LNSIP", "lineEdit_LNSIp", "lns.example.com");
    table.type("vpn/basecfg/LNSIPSecond", "lineEdit_LNSIpSecond", "10.6.0.2");
    const auto enable = [](QWidget& window, ModalScript&) {
        operate(window, button("checkBox_EnableIpSec"));
        operate(window, edit("lineEdit_preshareKey", QStringLiteral("new key")));
    };
    table.play("vpn/basecfg/useIPSEC", 1, enable)
        .along("vpn/basecfg/preSharedKey", "new key")
        .along("vpn/ikecfg/IKEAuthMethod", "PRE-SHARE")
        .seenIn(button("checkBox_EnableIpSec"));
    table.set("vpn/basecfg/LNSAsIPSECServer", 0, button("radioButton_useOtherLNS")).from(withIpsec);
    table.type("vpn/basecfg/preSharedKey", "lineEdit_preshareKey", " ~new key!").from(withIpsec);
    table.type("vpn/basecfg/otherIPSECServer", "lineEdit_IPSECServerIP", "10.6.0.3").from(withOtherServer);
    table.tick("vpn/basecfg/upVersion", "checkBox_upVer", 1);
    table.tick("vpn/basecfg/resumConn", "checkBox_reConn", 1);
    table.choose("vpn/ikecfg/IKEAuthMethod", "comboBox_authMethod", 1, "CA-Windows").from(withIpsec);
}

void addL2tp(Table& table)
{
    table.type("vpn/l2tpcfg/L2TPTunnelName", "lineEdit_TunnelName", "tunnel-7");
    table.choose("vpn/l2tpcfg/L2TPAuthMode", "comboBox_AuthMode", 1, "CHAP");
    table.type("vpn/l2tpcfg/L2TPHelloInterval", "lineEdit_HelloInterval", "777");
    const auto authenticate = [](QWidget& window, ModalScript&) {
        operate(window, button("checkBox_TunnelAuthOn"));
        operate(window, edit("lineEdit_TunnelPwd", QStringLiteral("first")));
    };
    table.play("vpn/l2tpcfg/L2TPUseTunnelPwd", 1, authenticate)
        .along("vpn/l2tpcfg/L2TPTunnelPwd", "first")
        .seenIn(button("checkBox_TunnelAuthOn"));
    table.tick("vpn/l2tpcfg/L2TPAVPHidden", "checkBox_AVPHidden", 1).from(withTunnelPassword);
    table.type("vpn/l2tpcfg/L2TPTunnelPwd", "lineEdit_TunnelPwd", " ~secret 7").from(withTunnelPassword);
    table.typeNumber("vpn/l2tpcfg/L2TPPort", "lineEdit_L2tpPort", 4321);
}

void addIpsec(Table& table)
{
    // Each protocol starts from algorithms of its own, and the AH algorithm decides the one of IKE.
    table.choose("vpn/ipseccfg/IPSECEncapsulationMode", "comboBox_EncapMode", 1, "Transport");
    table.type("vpn/ipseccfg/IPSECSALifetime", "lineEdit_SaLifeTime", "4567");
    table.choose("vpn/ipseccfg/IPSECSecurityProto", "comboBox_IpsecProto", 1, "AH")
        .along("vpn/ipseccfg/IPSECAHAuthAlgorithm", "MD5")
        .along("vpn/ikecfg/IKEAuthAlgorithm", "MD5");
    table.choose("vpn/ipseccfg/IPSECESPAuthAlgorithm", "comboBox_ESP_Auth", 3, "NULL");
    table.choose("vpn/ipseccfg/IPSECESPEncryption", "comboBox_ESP_Encrypt", 1, "3DES");
    table.choose("vpn/ipseccfg/IPSECAHAuthAlgorithm", "comboBox_AH_Auth", 1, "SHA");
    table.tick("vpn/ipseccfg/IPSECUseNatTranversal", "checkBox_UseNAT", 1)
        .along("vpn/ipseccfg/IPSECSecurityProto", "ESP")
        .along("vpn/ipseccfg/IPSECESPAuthAlgorithm", "MD5");
    const auto choosePfs = [](QWidget& window, ModalScript&) {
        operate(window, button("checkBox_UsePFS"));
        operate(window, combo("comboBox_PFS", 1));
    };
    table.play("vpn/ipseccfg/IPSECPFS", 1024, choosePfs).seenIn(combo("comboBox_PFS", 1));
    table.set("vpn/ipseccfg/IPSECPFS", 768, button("checkBox_UsePFS")).by("checkBox_UsePFS");
}

void addIke(Table& table)
{
    table.choose("vpn/ikecfg/IKENegotiationMode", "comboBox_IkeNeg", 1, "Aggressive");
    table.choose("vpn/ikecfg/IKEIDType", "comboBox_IDType", 1, "name")
        .from("vpn/ikecfg/IKENegotiationMode", "Aggressive");
    table.choose("vpn/ikecfg/IKEncryption", "comboBox_IkeEncrypt", 1, "3DES-CBC");
    // Not set by the list that shows it, but by the AH algorithm.
    table.set("vpn/ikecfg/IKEAuthAlgorithm", "MD5", combo("comboBox_AH_Auth", 0))
        .along("vpn/ipseccfg/IPSECAHAuthAlgorithm", "MD5")
        .seenIn(combo("comboBox_IkeAuth", 0));
    table.choose("vpn/ikecfg/IKEDiffeHellman", "comboBox_DH", 1, "Group2");
    table.type("vpn/ikecfg/IKEISAKMPLifetime", "lineEdit_ISAKMPSA", "7654");
    table.type("vpn/ikecfg/IKELocalName", "lineEdit_LocalName", "local-a").from(withNames);
    table.type("vpn/ikecfg/IKERemoteName", "lineEdit_PeerName", "peer-b").from(withNames);
    const auto keepAlive = [](const char* box, const char* name, const char* seconds) {
        return [=](QWidget& window, ModalScript&) {
            operate(window, button(box));
            operate(window, edit(name, QString::fromLatin1(seconds)));
        };
    };
    table.play("vpn/ikecfg/IKESendKeepAlive", 1, keepAlive("checkBox_KeepAliveOn", "lineEdit_TimeInterval", "33"))
        .along("vpn/ikecfg/IKESendInterval", "33")
        .seenIn(button("checkBox_KeepAliveOn"));
    table.type("vpn/ikecfg/IKESendInterval", "lineEdit_TimeInterval", "44")
        .from("vpn/ikecfg/IKESendKeepAlive", 1)
        .from("vpn/ikecfg/IKESendInterval", "21");
    table.play("vpn/ikecfg/IKERecvKeepAlivePacket", 1,
               keepAlive("checkBox_KeepAliveTimeout", "lineEdit_TimeOut", "55"))
        .along("vpn/ikecfg/IKERecvPacketTimeOut", "55")
        .seenIn(button("checkBox_KeepAliveTimeout"));
    table.type("vpn/ikecfg/IKERecvPacketTimeOut", "lineEdit_TimeOut", "66")
        .from("vpn/ikecfg/IKERecvKeepAlivePacket", 1)
        .from("vpn/ikecfg/IKERecvPacketTimeOut", "22");
    table.typeNumber("vpn/ikecfg/IKEPort", "lineEdit_IkePort", 4500);
}

void addRoutes(Table& table)
{
    const char* const tree = "treeWidget_RouteList";
    const QString third = QStringLiteral("10.7.9.0");
    const QString mask = QStringLiteral("255.255.128.0");
    const Change another = [=](CustomInfo& record) { record.vpnRoutes.append({third, mask}); };
    const auto add = [](QWidget& window, ModalScript& script) {
        addRoute(window, script, "10.7.9.0", "255.255.128.0");
    };
    table.playFor("vpnroute.size", another, add).seenIn(cell(tree, 2, 0, third));
    table.play("vpnroute/1/ip", third, replaceLastRoute("10.7.9.0", "255.255.0.0"))
        .seenIn(cell(tree, 1, 0, third));
    table.play("vpnroute/1/mask", mask, replaceLastRoute("10.7.0.0", "255.255.128.0"))
        .seenIn(cell(tree, 1, 1, mask));
}

void addZoa(Table& table)
{
    table.type("ZOA/ZOAIP", "lineEdit_ZOAIp", "10.8.0.7");
    table.type("ZOA/ZOAPORT", "lineEdit_ZOAport", "9807");
    table.type("ZOA/standbyZOAIP", "lineEdit_standby_ZOAIp", "10.8.0.8");
    table.type("ZOA/standbyZOAPORT", "lineEdit_standby_ZOAport", "9808");
}

void addKef(Table& table)
{
    table.play("kef/kefIP", "10.9.0.2", tickKef("10.9.0.2", "9901", false)).hiddenBehind("checkBox_keffunc");
    table.play("kef/kefPort", "9902", tickKef("10.9.0.1", "9902", false)).hiddenBehind("checkBox_keffunc");
    table.play("kef/customize", 1, tickKef("10.9.0.1", "9901", true)).hiddenBehind("checkBox_keffunc");
}
// clang-format on

/// The value of the base survives.
template <class Value> FixedField survivor(const char* field, Value base, const char* why)
{
    return {QString::fromLatin1(field), why, {assign(field, base)}, {}, true};
}

/// @param result  what becomes of the value of the base
template <class Value> FixedField overwritten(const char* field, Value base, Value result, const char* why)
{
    return {QString::fromLatin1(field), why, {assign(field, base)}, {assign(field, result)}, true};
}

/// The value of the base is gone as soon as it is stored.
template <class Value> FixedField unstored(const char* field, Value base)
{
    return {QString::fromLatin1(field), "not in the document", {assign(field, base)}, {}, false};
}

} // namespace

Control button(const char* name, bool on)
{
    return {Control::Button, name, on ? QStringLiteral("on") : QStringLiteral("off"), 0, 0};
}

Control edit(const char* name, const QString& text)
{
    return {Control::Edit, name, text, 0, 0};
}

Control combo(const char* name, int index)
{
    return {Control::Combo, name, QString::number(index), 0, 0};
}

Control cell(const char* tree, int row, int column, const QString& text)
{
    return {Control::Cell, tree, text, row, column};
}

void operate(QWidget& window, const Control& control)
{
    switch (control.kind) {
    case Control::Button:
        if (shownBy(window, control) != control.value)
            click(window, control.name);
        break;
    case Control::Edit:
        type(window, control.name, control.value);
        break;
    case Control::Combo:
        choose(window, control.name, control.value.toInt());
        break;
    case Control::Cell:
        QTest::qFail("cells are only shown", __FILE__, __LINE__);
    }
}

QString shownBy(const QWidget& window, const Control& control)
{
    switch (control.kind) {
    case Control::Button:
        return button(control.name, child<QAbstractButton>(window, control.name)->isChecked()).value;
    case Control::Edit:
        return child<QLineEdit>(window, control.name)->text();
    case Control::Combo:
        return QString::number(child<QComboBox>(window, control.name)->currentIndex());
    case Control::Cell:
        break;
    }
    const QTreeWidgetItem* item = child<QTreeWidget>(window, control.name)->topLevelItem(control.row);
    return item ? item->text(control.column) : QString();
}

void pressIn(QWidget& window, const char* name)
{
    click(window, name);
}

CustomInfo baseRecord()
{
    CustomInfo record = storedRecord(baseStamp, QString::fromLatin1(baseTime), QStringLiteral("base remark"), 63, 5);
    record.x1.reauthTimes = 2;
    record.x1.reauthInterval = 3;

    SSLVPNRemoteInfo gateway;
    gateway.iPDes = QStringLiteral("first");
    gateway.ip = QStringLiteral("10.4.0.1");
    gateway.port = QStringLiteral("4431");
    record.sslvpn.remote.append(gateway);
    gateway.iPDes = QStringLiteral("second");
    gateway.ip = QStringLiteral("second.example.com");
    gateway.port = QStringLiteral("4432");
    record.sslvpn.remote.append(gateway);
    record.sslvpn.defaultAddress = 2;
    record.sslvpn.retries = 4;
    record.sslvpn.retryInterval = 6;
    record.sslvpn.authDefaultType = QStringLiteral("AD");
    record.sslvpn.getSmsVryCountdownValue = 70;

    record.domain.domaindetail = {{QStringLiteral("sales"), QStringLiteral("sales team")},
                                  {QStringLiteral("works"), QStringLiteral("works team")}};
    record.gui.subTitle = QStringLiteral("base title");

    record.vpn.basecfg.LNSIP = QStringLiteral("lns.base");
    record.vpn.basecfg.LNSIPSecond = QStringLiteral("lns2.base");
    record.vpn.l2tpcfg.L2TPTunnelName = QStringLiteral("base-tunnel");
    record.vpn.l2tpcfg.L2TPHelloInterval = QStringLiteral("61");
    record.vpn.l2tpcfg.L2TPPort = 1702;
    record.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("3601");
    record.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("AH-ESP");
    record.vpn.ipseccfg.IPSECESPAuthAlgorithm = QStringLiteral("SHA256");
    record.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA256");
    record.vpn.ikecfg.IKEAuthMethod.clear(); // as OK stores it without IPsec
    record.vpn.ikecfg.IKEISAKMPLifetime = QStringLiteral("86401");
    record.vpn.ikecfg.IKELocalName = QStringLiteral("base-local");
    record.vpn.ikecfg.IKERemoteName = QStringLiteral("base-peer");
    record.vpn.ikecfg.IKEPort = 501;
    record.vpnRoutes = {{QStringLiteral("10.7.1.0"), QStringLiteral("255.255.255.0")},
                        {QStringLiteral("10.7.0.0"), QStringLiteral("255.255.0.0")}};

    record.zoa.ZOAIP = QStringLiteral("10.8.0.1");
    record.zoa.ZOAPORT = QStringLiteral("9801");
    record.zoa.standbyZOAIP = QStringLiteral("10.8.0.2");
    record.zoa.standbyZOAPORT = QStringLiteral("9802");
    record.kef.kefIP = QStringLiteral("10.9.0.1");
    record.kef.kefPort = QStringLiteral("9901");
    return record;
}

QVector<Row> rows()
{
    QVector<Row> all;
    addCommon(all);
    Table advanced(all, Place::Advanced);
    addPortal(advanced);
    addX1(advanced);
    addFunction(advanced);
    addEscape(advanced);
    addSslVpn(advanced);
    addDomain(advanced);
    addGui(advanced);
    addVpnBase(advanced);
    Table vpn(all, Place::Vpn);
    addL2tp(vpn);
    addIpsec(vpn);
    addIke(vpn);
    addRoutes(vpn);
    addZoa(advanced);
    Table page(all, Place::Page);
    addKef(page);
    return all;
}

QVector<FixedField> fixedFields()
{
    return {
        overwritten("common/cusTimeStamp", baseStamp, newStamp, "the clock of the commit"),
        overwritten("common/cusTimeString", baseTime, newTime, "the clock of the commit"),
        overwritten("common/areaKey", 1, 0, "the brand byte of the program"),
        unstored("sslvpn/remote/1/remoteSlot", 401),
        unstored("domain/domainSlot", 501),
        overwritten("guiOptions/macosDeskIcon", storedIcon("DeskIconMacos.icns", baseStamp),
                    storedIcon("DeskIconMacos.icns"), "its row is hidden; the path is that of the copy"),
        survivor("guiOptions/linuxDeskIconName", "接入客户端", "no widget"),
        survivor("guiOptions/macosDeskName", "Access on the Mac", "no widget"),
        survivor("guiOptions/mainIconName", "main icon", "no widget"),
        survivor("vpn/autoAuth", 601, "no widget"),
        survivor("vpn/basecfg/useRSA", 604, "no widget; the method stands in IKEAuthMethod"),
        survivor("vpn/basecfg/modifyAdvanced", 606, "no widget"),
        survivor("vpn/basecfg/forbidVirNIC", 607, "no widget"),
        overwritten("ZOA/useZOA", 801, 1, "the tab stores 1 whatever its hidden box shows"),
    };
}

} // namespace sweep
