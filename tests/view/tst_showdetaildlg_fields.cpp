#include "support/Installation.h"
#include "support/TestEntry.h"
#include "view/OpenViews.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QTextDocument>
#include <QTreeWidget>

using namespace viewplay;

using Setter = void (*)(CustomInfo&);
Q_DECLARE_METATYPE(Setter)

/// What the tabs of the detail view show of the record.
class TstShowDetailDlgFields : public QObject
{
    Q_OBJECT

private slots:
    void fieldShowsItsText_data();
    void fieldShowsItsText();
    void fieldIsShownFromItsStart();
    void boxShowsItsFlag_data();
    void boxShowsItsFlag();
    void flagOfAnyValueButZeroIsSet_data();
    void flagOfAnyValueButZeroIsSet();
    void comboShowsTheAuthenticationType_data();
    void comboShowsTheAuthenticationType();
    void comboListsBothAuthenticationTypes();
    void comboIsNamedAfterItsBox();

    void reauthTimesTenShowsTheTwoCharacters();
    void gatewaysStandInTheirOrderWithTheDefaultMarked();
    void noGatewayIsMarkedWithoutDefault();
    void filledAnewTheGatewaysDoNotDouble();
    void markOfTheDefaultSurvivesANarrowColumn();
    void wholeTextOfAGatewayIsItsToolTip();

    void secondLnsIsLeftOutWhenItEqualsTheFirst();
    void secondLnsThatDiffersInCaseIsShown();
    void ipsecChoosesWhatIsEnabled_data();
    void ipsecChoosesWhatIsEnabled();
    void withoutIpsecTheKeyStaysEmpty();
    void nameOfTheMethodCountsWithItsCase();
    void otherServerIsShownOnlyWhenItIsUsed();
    void serverChoiceDoesNotDependOnIpsec();

    void zoaTabWithoutZoaIsEmptyAndDisabled();
    void zoaTabWithZoaIsEnabled();
    void iconsAreScaledIntoTheirLabels();
    void iconThatCannotBeLoadedLeavesItsLabelEmpty();
    void macOsIconIsNeverVisible();
    void componentThatIsNotChosenIsNotFilled();
};

namespace {

bool isEnabled(const OpenDetailView& view, const char* name)
{
    return child<QWidget>(view.dialog, name)->isEnabled();
}

CustomInfo with(Setter set)
{
    CustomInfo info = fullRecord();
    set(info);
    return info;
}

QString picture(const char* name, const QSize& size)
{
    const QString path = installation::path(QLatin1String(name));
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::red);
    return image.save(path) ? path : QString();
}

/// The size of the picture in the label; empty when it shows none.
QSize shownSize(const ShowDetailDlg& dialog, const char* label)
{
    return child<QLabel>(dialog, label)->pixmap(Qt::ReturnByValue).size();
}

} // namespace

void TstShowDetailDlgFields::fieldShowsItsText_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("text");
    const auto row = [](const char* name, const char* field, Setter set, const char* text) {
        QTest::newRow(name) << set << QByteArray(field) << QString::fromUtf8(text);
    };

    const char* times = "lineEdit_RetryTimes";
    row(
        "reauthTimes 0", times, [](CustomInfo& info) { info.x1.reauthTimes = 0; }, "3");
    row(
        "reauthTimes 1", times, [](CustomInfo& info) { info.x1.reauthTimes = 1; }, "5");
    row(
        "reauthTimes 2", times, [](CustomInfo& info) { info.x1.reauthTimes = 2; }, "10");
    row(
        "reauthTimes 3", times, [](CustomInfo& info) { info.x1.reauthTimes = 3; }, "15");
    row(
        "reauthTimes 4", times, [](CustomInfo& info) { info.x1.reauthTimes = 4; }, "20");
    row(
        "reauthTimes 5", times, [](CustomInfo& info) { info.x1.reauthTimes = 5; }, "25");
    row(
        "reauthTimes 6", times, [](CustomInfo& info) { info.x1.reauthTimes = 6; }, "30");
    row(
        "reauthTimes 7", times, [](CustomInfo& info) { info.x1.reauthTimes = 7; }, "45");
    row(
        "reauthTimes 8", times, [](CustomInfo& info) { info.x1.reauthTimes = 8; }, "60");
    row(
        "reauthTimes 9", times, [](CustomInfo& info) { info.x1.reauthTimes = 9; }, "80");
    row(
        "reauthTimes 10", times, [](CustomInfo& info) { info.x1.reauthTimes = 10; }, "%n");
    row(
        "reauthTimes 11", times, [](CustomInfo& info) { info.x1.reauthTimes = 11; }, "[CUS_NoLimite]");
    row(
        "reauthTimes 12", times, [](CustomInfo& info) { info.x1.reauthTimes = 12; }, "3");
    row(
        "reauthTimes of 32 bits", times, [](CustomInfo& info) { info.x1.reauthTimes = 4294967295U; }, "3");

    const char* interval = "lineEdit_RetryInterval";
    row(
        "reauthInterval 0", interval, [](CustomInfo& info) { info.x1.reauthInterval = 0; }, "[CMN_5Minutes]");
    row(
        "reauthInterval 1", interval, [](CustomInfo& info) { info.x1.reauthInterval = 1; }, "[CMN_10Minutes]");
    row(
        "reauthInterval 2", interval, [](CustomInfo& info) { info.x1.reauthInterval = 2; }, "[CMN_15Minutes]");
    row(
        "reauthInterval 3", interval, [](CustomInfo& info) { info.x1.reauthInterval = 3; }, "[CMN_20Minutes]");
    row(
        "reauthInterval 4", interval, [](CustomInfo& info) { info.x1.reauthInterval = 4; }, "[CMN_25Minutes]");
    row(
        "reauthInterval 5", interval, [](CustomInfo& info) { info.x1.reauthInterval = 5; }, "[CMN_30Minutes]");
    row(
        "reauthInterval 6", interval, [](CustomInfo& info) { info.x1.reauthInterval = 6; }, "[CMN_45Minutes]");
    row(
        "reauthInterval 7", interval, [](CustomInfo& info) { info.x1.reauthInterval = 7; }, "[CMN_1hour]");
    row(
        "reauthInterval 8", interval, [](CustomInfo& info) { info.x1.reauthInterval = 8; }, "[CMN_2hours]");
    row(
        "reauthInterval 9", interval, [](CustomInfo& info) { info.x1.reauthInterval = 9; }, "[CMN_3hours]");
    row(
        "reauthInterval 10", interval, [](CustomInfo& info) { info.x1.reauthInterval = 10; }, "[CMN_4hours]");
    row(
        "reauthInterval 11", interval, [](CustomInfo& info) { info.x1.reauthInterval = 11; }, "[CMN_5hours]");
    row(
        "reauthInterval 12", interval, [](CustomInfo& info) { info.x1.reauthInterval = 12; }, "[CMN_5Minutes]");

    const char* packets = "lineEdit_PktType";
    row(
        "unicastType 0", packets, [](CustomInfo& info) { info.x1.unicastType = 0; }, "[rad_multiPkt]");
    row(
        "unicastType 1", packets, [](CustomInfo& info) { info.x1.unicastType = 1; }, "[rad_uiPkt]");
    row(
        "unicastType 2", packets, [](CustomInfo& info) { info.x1.unicastType = 2; }, "[rad_uiPkt]");

    row(
        "authDefaultType, not authType", "lineEdit_authType",
        [](CustomInfo& info) {
            info.sslvpn.authDefaultType = QStringLiteral("LDAP");
            info.sslvpn.authType = QStringLiteral("Local;LDAP");
        },
        "LDAP");
    const char* mode = "lineEdit_authMode";
    row(
        "authDefaultMode 0", mode, [](CustomInfo& info) { info.sslvpn.authDefaultMode = 0; }, "[SSL_CodeAuth]");
    row(
        "authDefaultMode 1", mode, [](CustomInfo& info) { info.sslvpn.authDefaultMode = 1; }, "[SSL_CodeCertAuth]");
    row(
        "authDefaultMode 2", mode, [](CustomInfo& info) { info.sslvpn.authDefaultMode = 2; }, "[SSL_CertAuth]");
    row(
        "authDefaultMode 3", mode, [](CustomInfo& info) { info.sslvpn.authDefaultMode = 3; }, "[SSL_CertAuth]");
    row(
        "retries", "lineEdit_reconnTimes", [](CustomInfo& info) { info.sslvpn.retries = 18446744073709551615ULL; },
        "18446744073709551615");
    row(
        "retryInterval", "lineEdit_reconnInterval", [](CustomInfo& info) { info.sslvpn.retryInterval = 1234; }, "1234");
    row(
        "getSmsVryCountdownValue", "lineEdit_getSysVryInterval",
        [](CustomInfo& info) { info.sslvpn.getSmsVryCountdownValue = 179; }, "179");
    const char* tls = "lineEdit_TLS_version_value";
    row(
        "TLSVersion 0", tls, [](CustomInfo& info) { info.sslvpn.TLSVersion = 0; }, "TLS1.2");
    row(
        "TLSVersion 1", tls, [](CustomInfo& info) { info.sslvpn.TLSVersion = 1; }, "TLS1.0");
    row(
        "TLSVersion 2", tls, [](CustomInfo& info) { info.sslvpn.TLSVersion = 2; }, "TLS1.2");

    row(
        "LNSIP", "lineEdit_LNSIp_S", [](CustomInfo& info) { info.vpn.basecfg.LNSIP = QStringLiteral("主.example"); },
        "主.example");
    row(
        "LNSIPSecond", "lineEdit_LNSIpSecond_S",
        [](CustomInfo& info) { info.vpn.basecfg.LNSIPSecond = QStringLiteral("second.example"); }, "second.example");
    row(
        "preSharedKey", "lineEdit_preshareKey_S",
        [](CustomInfo& info) { info.vpn.basecfg.preSharedKey = QStringLiteral("a secret"); }, "a secret");
    row(
        "otherIPSECServer", "lineEdit_IPSECServerIP_S",
        [](CustomInfo& info) { info.vpn.basecfg.otherIPSECServer = QStringLiteral("ipsec.example"); }, "ipsec.example");
    const char* method = "lineEdit_authMethod_S";
    row(
        "IKEAuthMethod by certificate", method,
        [](CustomInfo& info) { info.vpn.ikecfg.IKEAuthMethod = QStringLiteral("CA-Windows"); },
        "[VUI_BASEComboMethod2]");
    row(
        "IKEAuthMethod by key", method,
        [](CustomInfo& info) { info.vpn.ikecfg.IKEAuthMethod = QStringLiteral("PRE-SHARE"); },
        "[VUI_BASEComboMethod1]");
    row(
        "IKEAuthMethod empty", method, [](CustomInfo& info) { info.vpn.ikecfg.IKEAuthMethod.clear(); },
        "[VUI_BASEComboMethod1]");

    row(
        "ZOAIP", "lineEdit_ZOAIp_S", [](CustomInfo& info) { info.zoa.ZOAIP = QStringLiteral("1.1.1.1"); }, "1.1.1.1");
    row(
        "ZOAPORT", "lineEdit_ZOAport_S", [](CustomInfo& info) { info.zoa.ZOAPORT = QStringLiteral("11"); }, "11");
    row(
        "standbyZOAIP", "lineEdit_standby_ZOAIp_S",
        [](CustomInfo& info) { info.zoa.standbyZOAIP = QStringLiteral("2.2.2.2"); }, "2.2.2.2");
    row(
        "standbyZOAPORT", "lineEdit_standby_ZOAport_S",
        [](CustomInfo& info) { info.zoa.standbyZOAPORT = QStringLiteral("22"); }, "22");
    row(
        "kefIP", "lineEdit_kefIp", [](CustomInfo& info) { info.kef.kefIP = QStringLiteral("3.3.3.3"); }, "3.3.3.3");
    row(
        "kefPort", "lineEdit_kefPort", [](CustomInfo& info) { info.kef.kefPort = QStringLiteral("33"); }, "33");
    row(
        "subTitle", "lineEdit_Title", [](CustomInfo& info) { info.gui.subTitle = QStringLiteral("副标题 & more"); },
        "副标题 & more");
}

void TstShowDetailDlgFields::fieldShowsItsText()
{
    QFETCH(Setter, set);
    QFETCH(QByteArray, field);
    QTEST(OpenDetailView(with(set)).field(field.constData()), "text");
}

void TstShowDetailDlgFields::fieldIsShownFromItsStart()
{
    const OpenDetailView view(with([](CustomInfo& info) { info.gui.subTitle = QString(500, QLatin1Char('x')); }));
    QCOMPARE(child<QLineEdit>(view.dialog, "lineEdit_Title")->cursorPosition(), 0);
}

void TstShowDetailDlgFields::boxShowsItsFlag_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QByteArray>("box");
    const auto row = [](const char* name, const char* box, Setter set) {
        QTest::newRow(name) << set << QByteArray(box);
    };

    row("x1.keepConnPasswd", "checkBox_1xSaveUser", [](CustomInfo& info) { info.x1.keepConnPasswd = 1; });
    row("x1.upVer", "checkBox_1xUpVer", [](CustomInfo& info) { info.x1.upVer = 1; });
    row("x1.upIp", "checkBox_1xUpIp", [](CustomInfo& info) { info.x1.upIp = 1; });
    row("x1.broadLogOff", "checkBox_1xUseBroadLogoff", [](CustomInfo& info) { info.x1.broadLogOff = 1; });
    row("x1.autoAuth", "checkBox_1xAutoConn", [](CustomInfo& info) { info.x1.autoAuth = 1; });
    row("x1.refreshIPAftCut", "checkBox_1xRenewIPAfterCut", [](CustomInfo& info) { info.x1.refreshIPAftCut = 1; });
    row("x1.x1ResumeConn", "checkBox_1xResumeConn", [](CustomInfo& info) { info.x1.x1ResumeConn = 1; });
    row("x1.advancedAuth", "checkBox_1xAdvancedAuth", [](CustomInfo& info) { info.x1.advancedAuth = 1; });
    row("x1.defaultConnection", "", [](CustomInfo& info) { info.x1.defaultConnection = true; });
    row("portal.keepConnPasswd", "checkBox_PortalSaveUser", [](CustomInfo& info) { info.portal.keepConnPasswd = 1; });
    row("portal.upVer", "checkBox_PortalUpVer", [](CustomInfo& info) { info.portal.upVer = 1; });
    row("portal.autoAuth", "checkBox_PortalAutoConn", [](CustomInfo& info) { info.portal.autoAuth = 1; });
    row("portal.resumeConn", "checkBox_PortalReConnAftNetErr", [](CustomInfo& info) { info.portal.resumeConn = 1; });
    row("portal.advancedAuth", "checkBox_PortalAdvancedAuth", [](CustomInfo& info) { info.portal.advancedAuth = 1; });
    row("sslvpn.gatewayAuth", "checkBox_gatewayType", [](CustomInfo& info) { info.sslvpn.gatewayAuth = true; });
    row("sslvpn.edcode", "checkBox_edcode", [](CustomInfo& info) { info.sslvpn.edcode = true; });
    row("basecfg.upVersion", "checkBox_upVer_S", [](CustomInfo& info) { info.vpn.basecfg.upVersion = 1; });
    row("basecfg.resumConn", "checkBox_reConn_S", [](CustomInfo& info) { info.vpn.basecfg.resumConn = 1; });
    row("basecfg.useIPSEC", "checkBox_EnableIpSec_S", [](CustomInfo& info) { info.vpn.basecfg.useIPSEC = 1; });
    row("zoa.useZOA", "checkBox_UseZoa_S", [](CustomInfo& info) { info.zoa.useZOA = 1; });
    row("kef.customize", "checkBox_disable", [](CustomInfo& info) { info.kef.customize = true; });
    row("gui.hideCopyRight", "checkBox_HideCopyRight", [](CustomInfo& info) { info.gui.hideCopyRight = true; });
}

// From a record without any flag, one flag ticks its own box and no other.
void TstShowDetailDlgFields::boxShowsItsFlag()
{
    QFETCH(Setter, set);
    QFETCH(QByteArray, box);
    CustomInfo info = bareRecord();
    set(info);
    const OpenDetailView view(info);
    QStringList ticked;
    for (const QCheckBox* each : view.dialog.findChildren<QCheckBox*>()) {
        if (each->isChecked())
            ticked.append(each->objectName());
    }
    QCOMPARE(ticked.join(QLatin1Char(' ')), QString::fromLatin1(box));
}

void TstShowDetailDlgFields::flagOfAnyValueButZeroIsSet_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QByteArray>("box");
    QTest::newRow("32 bits") << Setter([](CustomInfo& info) { info.x1.upIp = 2; }) << QByteArray("checkBox_1xUpIp");
    QTest::newRow("64 bits, the low ones clear")
        << Setter([](CustomInfo& info) { info.vpn.basecfg.upVersion = 1ULL << 32; }) << QByteArray("checkBox_upVer_S");
}

void TstShowDetailDlgFields::flagOfAnyValueButZeroIsSet()
{
    QFETCH(Setter, set);
    QFETCH(QByteArray, box);
    QVERIFY(OpenDetailView(with(set)).isOn(box.constData()));
}

void TstShowDetailDlgFields::comboShowsTheAuthenticationType_data()
{
    QTest::addColumn<quint32>("type");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << 0U << QStringLiteral("[chk_MacAuth]");
    QTest::newRow("1") << 1U << QStringLiteral("[CMN_CertificateRdShort]");
    QTest::newRow("beyond the list") << 2U << QString();
}

void TstShowDetailDlgFields::comboShowsTheAuthenticationType()
{
    QFETCH(quint32, type);
    QFETCH(QString, text);
    CustomInfo info = fullRecord();
    info.x1.advancedAuthType = type;
    info.portal.advancedAuthType = 1 - type;
    const OpenDetailView x1(info);
    QCOMPARE(child<QComboBox>(x1.dialog, "comboBox_1xAdvancedAuth")->currentText(), text);
    info.x1.advancedAuthType = 1 - type;
    info.portal.advancedAuthType = type;
    const OpenDetailView portal(info);
    QCOMPARE(child<QComboBox>(portal.dialog, "comboBox_PortalAdvancedAuth")->currentText(), text);
}

void TstShowDetailDlgFields::comboListsBothAuthenticationTypes()
{
    const OpenDetailView view(fullRecord());
    for (const char* name : {"comboBox_1xAdvancedAuth", "comboBox_PortalAdvancedAuth"}) {
        const auto* combo = child<QComboBox>(view.dialog, name);
        QCOMPARE(combo->count(), 2);
        QCOMPARE(combo->itemText(0), QStringLiteral("[chk_MacAuth]"));
        QCOMPARE(combo->itemText(1), QStringLiteral("[CMN_CertificateRdShort]"));
    }
}

void TstShowDetailDlgFields::comboIsNamedAfterItsBox()
{
    const OpenDetailView view(fullRecord());
    for (const char* name : {"comboBox_1xAdvancedAuth", "comboBox_PortalAdvancedAuth"})
        QCOMPARE(child<QComboBox>(view.dialog, name)->accessibleName(), QStringLiteral("[chk_HighAuth]"));
}

void TstShowDetailDlgFields::reauthTimesTenShowsTheTwoCharacters()
{
    const OpenDetailView view(with([](CustomInfo& info) { info.x1.reauthTimes = 10; }));
    QCOMPARE(view.field("lineEdit_RetryTimes"), QStringLiteral("%n"));
}

void TstShowDetailDlgFields::gatewaysStandInTheirOrderWithTheDefaultMarked()
{
    CustomInfo info = fullRecord();
    info.sslvpn.remote = {{0, QStringLiteral("zulu"), QStringLiteral("10.0.0.9"), QStringLiteral("443")},
                          {0, QStringLiteral("alfa"), QStringLiteral("vpn.example.com"), QStringLiteral("8443")},
                          {0, QString(), QStringLiteral("10.0.0.1"), QString()}};
    info.sslvpn.defaultAddress = 2;
    const OpenDetailView view(info);
    const auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_SSLIP");
    QStringList rows;
    for (int row = 0; row < tree->topLevelItemCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < tree->columnCount(); ++column)
            cells.append(tree->topLevelItem(row)->text(column));
        rows.append(cells.join(QLatin1Char('|')));
    }
    QCOMPARE(rows, QStringList({QStringLiteral("1|zulu|10.0.0.9|443"),
                                QStringLiteral("2|alfa[SSL_DEFAULTNAME]|vpn.example.com|8443"),
                                QStringLiteral("3||10.0.0.1|")}));
}

void TstShowDetailDlgFields::noGatewayIsMarkedWithoutDefault()
{
    const OpenDetailView view(with([](CustomInfo& info) { info.sslvpn.defaultAddress = 0; }));
    const auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_SSLIP");
    QCOMPARE(tree->topLevelItemCount(), 3);
    QVERIFY(tree->findItems(QStringLiteral("DEFAULTNAME"), Qt::MatchContains, 1).isEmpty());
}

void TstShowDetailDlgFields::filledAnewTheGatewaysDoNotDouble()
{
    OpenDetailView view(fullRecord());
    const auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_SSLIP");
    const int count = tree->topLevelItemCount();
    QVERIFY(count > 0);
    view.dialog.initSslVpnPage(CMyApplication::current()->m_LanguageParser);
    QCOMPARE(tree->topLevelItemCount(), count);
}

void TstShowDetailDlgFields::markOfTheDefaultSurvivesANarrowColumn()
{
    const OpenDetailView view(fullRecord());
    QCOMPARE(child<QTreeWidget>(view.dialog, "treeWidget_SSLIP")->textElideMode(), Qt::ElideMiddle);
}

void TstShowDetailDlgFields::wholeTextOfAGatewayIsItsToolTip()
{
    CustomInfo info = fullRecord();
    info.sslvpn.remote[0].iPDes = QStringLiteral("<b>R&D</b>");
    info.sslvpn.remote[0].port.clear();
    const OpenDetailView view(info);
    const QTreeWidgetItem* row = child<QTreeWidget>(view.dialog, "treeWidget_SSLIP")->topLevelItem(0);
    const QString toolTip = row->toolTip(1);
    QCOMPARE(row->toolTip(3), QString());
    QTextDocument document;
    document.setHtml(toolTip);
    QVERIFY(Qt::mightBeRichText(toolTip));
    QCOMPARE(document.toPlainText(), QStringLiteral("<b>R&D</b>"));
}

void TstShowDetailDlgFields::secondLnsIsLeftOutWhenItEqualsTheFirst()
{
    const OpenDetailView view(with([](CustomInfo& info) {
        info.vpn.basecfg.LNSIP = QStringLiteral("lns.example");
        info.vpn.basecfg.LNSIPSecond = QStringLiteral("lns.example");
    }));
    QCOMPARE(view.field("lineEdit_LNSIp_S"), QStringLiteral("lns.example"));
    QCOMPARE(view.field("lineEdit_LNSIpSecond_S"), QString());
}

void TstShowDetailDlgFields::secondLnsThatDiffersInCaseIsShown()
{
    const OpenDetailView view(with([](CustomInfo& info) {
        info.vpn.basecfg.LNSIP = QStringLiteral("lns.example");
        info.vpn.basecfg.LNSIPSecond = QStringLiteral("LNS.example");
    }));
    QCOMPARE(view.field("lineEdit_LNSIpSecond_S"), QStringLiteral("LNS.example"));
}

void TstShowDetailDlgFields::ipsecChoosesWhatIsEnabled_data()
{
    QTest::addColumn<quint64>("useIPSEC");
    QTest::addColumn<QString>("method");
    QTest::addColumn<bool>("choice");
    QTest::addColumn<bool>("key");
    QTest::newRow("off") << quint64(0) << QStringLiteral("PRE-SHARE") << false << false;
    QTest::newRow("on, with a key") << quint64(1) << QStringLiteral("PRE-SHARE") << true << true;
    QTest::newRow("on, by another value than 1") << quint64(3) << QString() << true << true;
    QTest::newRow("on, with certificates") << quint64(1) << QStringLiteral("CA-Windows") << true << false;
}

void TstShowDetailDlgFields::ipsecChoosesWhatIsEnabled()
{
    QFETCH(quint64, useIPSEC);
    QFETCH(QString, method);
    CustomInfo info = fullRecord();
    info.vpn.basecfg.useIPSEC = useIPSEC;
    info.vpn.ikecfg.IKEAuthMethod = method;
    const OpenDetailView view(info);
    QCOMPARE(view.isOn("checkBox_EnableIpSec_S"), useIPSEC != 0);
    for (const char* name :
         {"radioButton_useLNS_S", "radioButton_useOtherLNS_S", "label_AuthMethod_S", "lineEdit_authMethod_S"})
        QTEST(isEnabled(view, name), "choice");
    for (const char* name : {"label_Authenticator_S", "lineEdit_preshareKey_S"})
        QTEST(isEnabled(view, name), "key");
}

void TstShowDetailDlgFields::withoutIpsecTheKeyStaysEmpty()
{
    const OpenDetailView view(with([](CustomInfo& info) { info.vpn.basecfg.useIPSEC = 0; }));
    QCOMPARE(view.field("lineEdit_preshareKey_S"), QString());
}

void TstShowDetailDlgFields::nameOfTheMethodCountsWithItsCase()
{
    const OpenDetailView view(
        with([](CustomInfo& info) { info.vpn.ikecfg.IKEAuthMethod = QStringLiteral("ca-windows"); }));
    QCOMPARE(view.field("lineEdit_authMethod_S"), QStringLiteral("[VUI_BASEComboMethod1]"));
    QVERIFY(isEnabled(view, "lineEdit_preshareKey_S"));
}

void TstShowDetailDlgFields::otherServerIsShownOnlyWhenItIsUsed()
{
    const OpenDetailView lns(with([](CustomInfo& info) { info.vpn.basecfg.LNSAsIPSECServer = 1; }));
    QVERIFY(lns.isOn("radioButton_useLNS_S"));
    QCOMPARE(lns.field("lineEdit_IPSECServerIP_S"), QString());
    QVERIFY(!isEnabled(lns, "lineEdit_IPSECServerIP_S"));
    QVERIFY(!isEnabled(lns, "label_IPSECServerIP_S"));

    const OpenDetailView other(with([](CustomInfo& info) { info.vpn.basecfg.LNSAsIPSECServer = 0; }));
    QVERIFY(other.isOn("radioButton_useOtherLNS_S"));
    QCOMPARE(other.field("lineEdit_IPSECServerIP_S"), fullRecord().vpn.basecfg.otherIPSECServer);
    QVERIFY(isEnabled(other, "lineEdit_IPSECServerIP_S"));
    QVERIFY(isEnabled(other, "label_IPSECServerIP_S"));
}

void TstShowDetailDlgFields::serverChoiceDoesNotDependOnIpsec()
{
    const OpenDetailView view(with([](CustomInfo& info) {
        info.vpn.basecfg.useIPSEC = 0;
        info.vpn.basecfg.LNSAsIPSECServer = 0;
    }));
    QVERIFY(view.isOn("radioButton_useOtherLNS_S"));
    QVERIFY(isEnabled(view, "lineEdit_IPSECServerIP_S"));
    QCOMPARE(view.field("lineEdit_IPSECServerIP_S"), fullRecord().vpn.basecfg.otherIPSECServer);
}

void TstShowDetailDlgFields::zoaTabWithoutZoaIsEmptyAndDisabled()
{
    const OpenDetailView view(with([](CustomInfo& info) { info.zoa.useZOA = 0; }));
    QVERIFY(!view.isOn("checkBox_UseZoa_S"));
    for (const char* name :
         {"lineEdit_ZOAIp_S", "lineEdit_ZOAport_S", "lineEdit_standby_ZOAIp_S", "lineEdit_standby_ZOAport_S"}) {
        QCOMPARE(view.field(name), QString());
        QVERIFY(!isEnabled(view, name));
    }
}

void TstShowDetailDlgFields::zoaTabWithZoaIsEnabled()
{
    // Filled once for the function component, twice for ZOA direct.
    for (const quint64 procomVal : {3, 35}) {
        CustomInfo info = fullRecord();
        info.common.procomVal = procomVal;
        info.zoa.useZOA = 2;
        const OpenDetailView view(info);
        QVERIFY(view.isOn("checkBox_UseZoa_S"));
        for (const char* name :
             {"lineEdit_ZOAIp_S", "lineEdit_ZOAport_S", "lineEdit_standby_ZOAIp_S", "lineEdit_standby_ZOAport_S"}) {
            QVERIFY(!view.field(name).isEmpty());
            QVERIFY(isEnabled(view, name));
        }
    }
}

void TstShowDetailDlgFields::iconsAreScaledIntoTheirLabels()
{
    CustomInfo info = fullRecord();
    info.gui.linuxDeskIconPath = picture("square.png", QSize(256, 256));
    info.gui.macosDeskIconPath = picture("wide.png", QSize(400, 100));
    info.gui.mainIconPath = picture("small.png", QSize(4, 16));
    const OpenDetailView view(info);
    QCOMPARE(shownSize(view.dialog, "label_deskIcon_Linux"), QSize(32, 32));
    QCOMPARE(shownSize(view.dialog, "label_deskIcon_MacOs"), QSize(40, 10));
    QCOMPARE(shownSize(view.dialog, "label_MainIcon"), QSize(8, 32));
    for (const char* name : {"label_deskIcon_Linux", "label_MainIcon"}) {
        auto* label = child<QLabel>(view.dialog, name);
        bringToFront(label);
        QVERIFY(label->isVisible());
        QVERIFY(label->width() >= 32 && label->width() <= 40);
        QCOMPARE(label->height(), 32);
    }
}

void TstShowDetailDlgFields::iconThatCannotBeLoadedLeavesItsLabelEmpty()
{
    CustomInfo info = fullRecord();
    info.gui.linuxDeskIconPath = installation::path(QStringLiteral("missing.png"));
    installation::writeFile(installation::path(QStringLiteral("broken.png")), "no picture");
    info.gui.macosDeskIconPath = installation::path(QStringLiteral("broken.png"));
    info.gui.mainIconPath.clear();
    const OpenDetailView view(info);
    for (const char* name : {"label_deskIcon_Linux", "label_deskIcon_MacOs", "label_MainIcon"}) {
        QVERIFY(shownSize(view.dialog, name).isEmpty());
        QCOMPARE(child<QLabel>(view.dialog, name)->text(), QString());
    }
}

void TstShowDetailDlgFields::macOsIconIsNeverVisible()
{
    CustomInfo info = fullRecord();
    info.gui.macosDeskIconPath = picture("mac.png", QSize(32, 32));
    const OpenDetailView view(info);
    bringToFront(child<QLabel>(view.dialog, "label_MainIcon"));
    QVERIFY(child<QLabel>(view.dialog, "label_MainIcon_P")->isVisible());
    QVERIFY(child<QLabel>(view.dialog, "label_deckIcon_LP")->isVisible());
    QVERIFY(!child<QLabel>(view.dialog, "label_deckIcon_MP")->isVisible());
    QVERIFY(!child<QLabel>(view.dialog, "label_deskIcon_MacOs")->isVisible());
}

void TstShowDetailDlgFields::componentThatIsNotChosenIsNotFilled()
{
    CustomInfo info = fullRecord();
    info.common.procomVal = 0;
    info.common.funcomVal = 0;
    const OpenDetailView view(info);
    for (const QLineEdit* field : view.dialog.findChildren<QLineEdit*>()) {
        if (field->objectName() != QLatin1String("lineEdit_Title"))
            QCOMPARE(field->objectName() + field->text(), field->objectName());
    }
    QCOMPARE(view.field("lineEdit_Title"), fullRecord().gui.subTitle);
}

TEST_ENTRY(showdetaildlg_fields, runTest<TstShowDetailDlgFields>)

#include "tst_showdetaildlg_fields.moc"
