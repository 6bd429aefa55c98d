#include "advanced/CustomAdvPlayer.h"

#include "advanced/CMsgAuthDlg.h"
#include "advanced/WancontrolDlg.h"
#include "support/DialogPlay.h"
#include "support/TestEntry.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include <memory>

using namespace advplay;

namespace {

struct Text
{
    const char* widget;
    const char* key;
};

// clang-format off
const Text texts[] = {
    {"checkBox_AclOpt", "AclOpt"}, {"checkBox_Wancontrol", "WanControlOpt"}, {"checkBox_DrvErr", "DrvErrOpt"},
    {"checkBox_DynPwdVry", "DynamicpwdVerify"}, {"checkBox_MsgAuth", "MsgAuth"},
    {"checkBox_passwd", "CUS_Uinstall_Password_Enable"}, {"checkBox_aclEscape", "CUS_FuncDesc.WanControlOpt3"},
    {"checkBox_1xSaveUser", "chk_saveuser"}, {"checkBox_1xUpVer", "chk_upver"}, {"checkBox_1xUpIp", "chk_upip"},
    {"checkBox_1xUseBroadLogoff", "chk_broadlogoff"}, {"checkBox_1xAutoConn", "chk_auto"},
    {"checkBox_1xRenewIPAfterCut", "chk_renewIpaftercut"}, {"checkBox_1xResumeConn", "chk_1Xresumeconn"},
    {"checkBox_DefaultConn", "chk_create_default_conn"}, {"checkBox_1xAdvancedAuth", "chk_HighAuth"},
    {"label_RetryTimes", "label_retrytimes"}, {"label_RetryInterval", "label_retryInte"},
    {"groupBox_PacketType", "grp_pkttype"}, {"radioButton_uniPkt", "rad_uiPkt"},
    {"radioButton_multiPkt", "rad_multiPkt"},
    {"checkBox_PortalSaveUser", "chk_saveuser"}, {"checkBox_PortalUpVer", "chk_upver"},
    {"checkBox_PortalAutoConn", "chk_auto"}, {"checkBox_PortalReConnAftNetErr", "chk_ResumeConn"},
    {"checkBox_PortalAdvancedAuth", "chk_HighAuth"},
    {"label_DomainInfoHint", "CUS_DomainInfoHint"}, {"checkBox_DomainForce", "CUS_DomainForce"},
    {"pushButton_Add_2", "SSL_ADD_VPNIP"}, {"pushButton_Edit_2", "SSL_EDIT_VPNIP"},
    {"pushButton_Delete_2", "SSL_DEL_VPNIP"},
    {"pushButton_Add", "SSL_ADD_VPNIP"}, {"pushButton_Edit", "SSL_EDIT_VPNIP"},
    {"pushButton_Delete", "SSL_DEL_VPNIP"},
    {"label_AuthType", "SSL_AUTH_TYPE"}, {"checkBox_Local", "SSL_LocalType"}, {"checkBox_AD", "SSL_ADAuthType"},
    {"checkBox_LDAP", "SSL_LDAPType"}, {"checkBox_RADIUS", "SSL_RadiusType"},
    {"label_defaultType", "SSL_DEFAULTTYPE"}, {"label_AuthMode", "SSL_AUTH_MODE"},
    {"checkBox_Password", "SSL_CodeAuth"}, {"checkBox_PwdCert", "SSL_CodeCertAuth"},
    {"checkBox_Cert", "SSL_CertAuth"}, {"label_defaultMode", "SSL_DEFAULTMODE"}, {"checkBox_edcode", "SSL_EdCode"},
    {"checkBox_gatewayType", "SSL_GatewayType"}, {"label_reconnInterval", "SSL_RECONN_GRAP"},
    {"label_reconnTimes", "SSL_RECONN_TIME"}, {"label_getSysVryInterval", "SSL_GetSmsVryCountDownValue"},
    {"label_TLSVersion", "SSL_TLSVersion"},
    {"label_LNSIp", "VUI_BASELNSIP"}, {"label_Bak_LNSIp", "VUI_SECONDLNSIP"}, {"checkBox_upVer", "VUI_UpVersion"},
    {"checkBox_reConn", "VUI_ResumeCon"}, {"checkBox_EnableIpSec", "VUI_BASEUseIPSEC"},
    {"label_AuthMethod", "VUI_IKEAuthMethod"}, {"label_Authenticator", "VUI_BASEPreSharedKey"},
    {"label_IpSecSever", "VUI_BASEIPSECSERVERIPCombox"}, {"radioButton_useLNS", "VUI_BASELNSASIPSECServer"},
    {"radioButton_useOtherLNS", "VUI_BASEUseOtherIPSECServer"}, {"label_IPSECServerIP", "VUI_BASEIPSECSERVERIP"},
    {"pushButton_Adv", "VUI_BASEHeigth"},
    {"checkBox_UseZoa", "VUI_SECONDUseZOA"}, {"label_ZOAIp", "VUI_SECONDZOAIP"},
    {"label_ZOAport", "VUI_SECONDZOAPORT"}, {"label_standby_ZOAIp", "VUI_STANDBYZOAIP"},
    {"label_standby_ZOAport", "VUI_STANDBYZOAPORT"}, {"label_UseHint", "VUI_STANDBYZOAUSEHINT"},
    {"groupBox_cusIcon", "CUS_CusIconComBox"}, {"label_cusmainIcon", "Cus_MainIconDes"},
    {"label_cusdeskIconL", "Cus_DeskIconDesL"}, {"label_cusdeskIconM", "Cus_DeskIconDesM"},
    {"pushButton_mainIcon_locate", "Cus_Browse"}, {"pushButton_deskIconL_locate", "Cus_Browse"},
    {"pushButton_deskIconM_locate", "Cus_Browse"}, {"groupBox_cusTitle", "CUS_CusTitleComBox"},
    {"label_cusTile", "CUS_CusTitleDes"}, {"checkBox_HideCopyRight", "CUS_CusHideAgreement"},
};
const Text tabTitles[] = {
    {"tab_func", "func_title"}, {"tab_8021x", "8021x_title"}, {"tab_portal", "portal_title"},
    {"tab_sslvpn", "SslVpn_title"}, {"tab_l2tp", "IpsecVpn_title"}, {"tab_Zoa", "Zoa_title"},
    {"tab_Gui", "Gui_title"}, {"tab_domain", "CUS_DomainTitle"},
};
// clang-format on

QString textOf(const QWidget* widget)
{
    if (const auto* group = qobject_cast<const QGroupBox*>(widget))
        return group->title();
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    const auto* button = qobject_cast<const QAbstractButton*>(widget);
    return button ? button->text() : QString();
}

QStringList headerOf(const QTreeWidget* tree)
{
    QStringList headers;
    for (int column = 0; column < tree->columnCount(); ++column)
        headers.append(tree->headerItem()->text(column));
    return headers;
}

/// The widgets that the Tab key reaches below the widget, in its order.
QList<QWidget*> focusOrder(const QDialog& dialog, const QWidget* below)
{
    QList<QWidget*> order;
    QWidget* start = dialog.nextInFocusChain();
    QWidget* widget = start;
    do {
        if ((widget->focusPolicy() & Qt::TabFocus) && below->isAncestorOf(widget) && !widget->isHidden() &&
            !widget->focusProxy())
            order.append(widget);
        widget = widget->nextInFocusChain();
    } while (widget != start);
    return order;
}

/// A font in which every page is narrower than the form, until the end of the test.
class SmallFont
{
public:
    SmallFont()
    {
        QFont small = m_font;
        small.setPixelSize(10);
        QApplication::setFont(small);
    }
    ~SmallFont() { QApplication::setFont(m_font); }

private:
    const QFont m_font = QApplication::font();
};

/// The dialog of ZOA direct, open on the page of this widget, which is at least that wide.
struct Page
{
    std::unique_ptr<CustomInfo> info;
    std::unique_ptr<CustomAdvProperty> dialog;
    QScrollArea* area = nullptr;
};

Page showPage(const QString& widget, int minimumWidth)
{
    Page page;
    page.info = std::make_unique<CustomInfo>(recordFor(procom::zoaDirect));
    page.dialog = std::make_unique<CustomAdvProperty>(nullptr);
    auto* wide = child<QWidget>(*page.dialog, widget.toLatin1().constData());
    wide->setMinimumWidth(minimumWidth);
    page.dialog->initalDialog(page.info.get());
    page.dialog->show();
    bringToFront(wide);
    QCoreApplication::processEvents();
    page.area = child<QTabWidget>(*page.dialog, "tabWidget")->currentWidget()->findChild<QScrollArea*>();
    return page;
}

/// Every tab stores something on OK.
void editEveryTab(OpenDialog& open)
{
    open.typeInto("lineEdit_ZOAIp", QStringLiteral("10.1.1.1"));
    open.tick("checkBox_DrvErr", false);
    open.tick("checkBox_1xUpIp", false);
    open.tick("checkBox_DomainForce", false);
    open.tick("checkBox_PortalUpVer", false);
    open.tick("checkBox_edcode", false);
    open.typeInto("lineEdit_cusTitle", QStringLiteral("title"));
    open.typeInto("lineEdit_LNSIp", QStringLiteral("lns"));
}

} // namespace

class TstCustomAdvPropertyFrame : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void constructionLeavesTheCountersAtZero();
    void formHasItsSizeAndSettings();
    void textsFollowTheLanguage_data();
    void textsFollowTheLanguage();
    void tabsFollowTheComponents_data();
    void tabsFollowTheComponents();
    void tabsFollowEveryMask();
    void portalAloneShowsThreeTabs();
    void zoaFunctionWith8021xShowsFiveTabsInOrder();
    void loadingGoesToTheFirstTab();
    void defaultGatewayIsTakenAlsoWithoutItsTab();
    void okWithoutEditsChangesNothing();
    void okWithoutEditsAndWithoutTabsTouchesOnlyTheL2tpFields();
    void absentSslVpnTabAndDomainTabAreUntouched();
    void okStoresEveryTab();
    void refusalKeepsWhatWasStoredBefore_data();
    void refusalKeepsWhatWasStoredBefore();
    void badZoaPortKeepsTheAddressAndNotTheFunctions();
    void boxHasNoTitleBeforeTheSslVpnStep();
    void correctedRefusalPasses();
    void refusalNeverChangesTheTab();
    void emptyPreSharedKeyIsReportedAndTheDialogCloses();
    void everythingElseIsStoredBeforeTheL2tpMessage();
    void okWithoutARecordDoesNothing_data();
    void okWithoutARecordDoesNothing();
    void cancelClosesTheWindow();
    void cancelDropsWhatLivesInTheControls();
    void cancelKeepsWhatTheSmallDialogsWrote();
    void dialogRunsModally_data();
    void dialogRunsModally();
    void ticksOfTheProgramRunNoSlot();
    void childrenReachRecordAndGateways();
    void dialogStaysWithinTheScreen();
    void dialogIsAsWideAsItsTabs();
    void dialogIsAsWideAsItsPages_data();
    void dialogIsAsWideAsItsPages();
    void removedPageDoesNotWidenTheDialog();
    void wheelLeavesAListWithoutFocusAlone();
    void wheelTurnsAListWithFocus();
    void focusRunsFromTopToBottom();
    void labelsAreBuddiesOfTheirFields();
};

void TstCustomAdvPropertyFrame::cleanup()
{
    windowplay::useLanguage(QStringLiteral("en"));
}

void TstCustomAdvPropertyFrame::constructionLeavesTheCountersAtZero()
{
    CustomAdvProperty dialog(nullptr);
    QCOMPARE(dialog.defaultGatewayIndex, 0);
    QCOMPARE(dialog.authModeCount, 0);
    QCOMPARE(dialog.authTypeCount, 0);
    QVERIFY(dialog.gatewayList.isEmpty());
    QVERIFY(dialog.domainInfo.domaindetail.isEmpty());
    QVERIFY(!dialog.record);
}

void TstCustomAdvPropertyFrame::formHasItsSizeAndSettings()
{
    CustomAdvProperty dialog(nullptr);
    QCOMPARE(dialog.size(), QSize(726, 991));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
    const auto* buttons = child<QDialogButtonBox>(dialog, "buttonBox_adv");
    QCOMPARE(buttons->standardButtons(), QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QCOMPARE(child<QTreeWidget>(dialog, "treeWidget_SSLIP")->indentation(), 0);
    QCOMPARE(child<QTreeWidget>(dialog, "treeWidget_Domain")->indentation(), 0);
    // A mark behind a long name stays in sight.
    QCOMPARE(child<QTreeWidget>(dialog, "treeWidget_SSLIP")->textElideMode(), Qt::ElideMiddle);
    QCOMPARE(child<QTreeWidget>(dialog, "treeWidget_Domain")->textElideMode(), Qt::ElideMiddle);
    QVERIFY(child<QWidget>(dialog, "checkBox_UseZoa")->isHidden());
    QVERIFY(!child<QWidget>(dialog, "checkBox_aclEscape")->isHidden());
    QVERIFY(!child<QWidget>(dialog, "checkBox_passwd")->isHidden());
    QCOMPARE(child<QTabWidget>(dialog, "tabWidget")->currentIndex(), 0);
    QCOMPARE(child<QTabWidget>(dialog, "tabWidget")->count(), 8);
}

void TstCustomAdvPropertyFrame::textsFollowTheLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("English") << QStringLiteral("en");
    QTest::newRow("Chinese") << QStringLiteral("zh");
    // Several keys have the same text in both files.
    QTest::newRow("every key its own text") << QString();
}

void TstCustomAdvPropertyFrame::textsFollowTheLanguage()
{
    QFETCH(QString, language);
    if (language.isEmpty())
        windowplay::showKeysAsTexts();
    else
        windowplay::useLanguage(language);
    OpenDialog open(recordFor(63, 5));
    QCOMPARE(open.dialog.windowTitle(), langText("adv_title"));
    const auto* buttons = open.widget<QDialogButtonBox>("buttonBox_adv");
    QCOMPARE(buttons->button(QDialogButtonBox::Ok)->text(), langText("ok_button"));
    QCOMPARE(buttons->button(QDialogButtonBox::Cancel)->text(), langText("cancel_button"));
    const auto* tabWidget = open.widget<QTabWidget>("tabWidget");
    int index = 0;
    for (const Text& title : tabTitles) {
        QCOMPARE(tabWidget->widget(index)->objectName(), QLatin1String(title.widget));
        QCOMPARE(tabWidget->tabText(index), langText(title.key));
        ++index;
    }
    for (const Text& text : texts) {
        QVERIFY2(langText(text.key) != QLatin1String("NULL"), text.key);
        QCOMPARE(textOf(open.widget<QWidget>(text.widget)), langText(text.key));
    }
    QCOMPARE(headerOf(open.widget<QTreeWidget>("treeWidget_SSLIP")),
             QStringList({langText("SCE_DevOrder"), langText("SSL_VPNSERV_DISNAME"), langText("SSL_ADDRESS"),
                          langText("SSL_PORT")}));
    QCOMPARE(headerOf(open.widget<QTreeWidget>("treeWidget_Domain")),
             QStringList({langText("SCE_DevOrder"), langText("CUS_1xDomain"), langText("CUS_DomainDes")}));
    for (const QWidget* widget : open.dialog.findChildren<QWidget*>())
        QVERIFY2(textOf(widget) != QLatin1String("NULL"), qPrintable(widget->objectName()));
}

void TstCustomAdvPropertyFrame::tabsFollowTheComponents_data()
{
    QTest::addColumn<int>("procomVal");
    QTest::addColumn<int>("funcomVal");
    QTest::addColumn<QString>("tabs");
    QTest::newRow("none") << 0 << 0 << "func Gui";
    QTest::newRow("802.1X") << 1 << 0 << "func 8021x Gui domain";
    QTest::newRow("Portal") << 2 << 0 << "func portal Gui";
    QTest::newRow("802.1X and Portal") << 3 << 0 << "func 8021x portal Gui domain";
    QTest::newRow("defaults") << 3 << 1 << "func 8021x portal Zoa Gui domain";
    QTest::newRow("L2TP IPsec VPN") << 4 << 0 << "func l2tp Gui";
    QTest::newRow("WLAN has no tab") << 8 << 0 << "func Gui";
    QTest::newRow("KEF has no tab") << 8 << 4 << "func Gui";
    QTest::newRow("SSL VPN") << 16 << 0 << "func sslvpn Gui";
    QTest::newRow("both VPN") << 20 << 0 << "func sslvpn l2tp Gui";
    QTest::newRow("ZOA direct") << 32 << 0 << "func Zoa Gui";
    QTest::newRow("ZOA function") << 8 << 1 << "func Zoa Gui";
    QTest::newRow("value 2 is no component") << 8 << 2 << "func Gui";
    QTest::newRow("ZOA twice") << 32 << 1 << "func Zoa Gui";
    QTest::newRow("all") << 63 << 5 << "func 8021x portal sslvpn l2tp Zoa Gui domain";
}

void TstCustomAdvPropertyFrame::tabsFollowTheComponents()
{
    QFETCH(int, procomVal);
    QFETCH(int, funcomVal);
    QFETCH(QString, tabs);
    OpenDialog open(recordFor(quint64(procomVal), quint64(funcomVal)));
    QCOMPARE(open.tabs().join(QLatin1Char(' ')).remove(QStringLiteral("tab_")), tabs);
    QCOMPARE(open.widget<QTabWidget>("tabWidget")->currentIndex(), 0);
}

void TstCustomAdvPropertyFrame::tabsFollowEveryMask()
{
    for (quint64 procomVal = 0; procomVal < 64; ++procomVal) {
        for (quint64 funcomVal : {0u, 1u, 4u, 5u}) {
            QStringList expected = {QStringLiteral("tab_func")};
            const auto add = [&](bool isKept, const char* tab) {
                if (isKept)
                    expected.append(QLatin1String(tab));
            };
            add(procomVal & 1, "tab_8021x");
            add(procomVal & 2, "tab_portal");
            add(procomVal & 16, "tab_sslvpn");
            add(procomVal & 4, "tab_l2tp");
            add((procomVal & 32) || (funcomVal & 1), "tab_Zoa");
            add(true, "tab_Gui");
            add(procomVal & 1, "tab_domain");
            CustomInfo info = recordFor(procomVal, funcomVal);
            CustomAdvProperty dialog(nullptr);
            dialog.initalDialog(&info);
            const auto* tabWidget = child<QTabWidget>(dialog, "tabWidget");
            QStringList tabs;
            for (int index = 0; index < tabWidget->count(); ++index)
                tabs.append(tabWidget->widget(index)->objectName());
            QCOMPARE(tabs, expected);
        }
    }
}

void TstCustomAdvPropertyFrame::portalAloneShowsThreeTabs()
{
    OpenDialog open(recordFor(procom::portal));
    QCOMPARE(open.tabs(), words("tab_func tab_portal tab_Gui"));
}

void TstCustomAdvPropertyFrame::zoaFunctionWith8021xShowsFiveTabsInOrder()
{
    OpenDialog open(recordFor(procom::x1, funcom::zoa));
    QCOMPARE(open.tabs(), words("tab_func tab_8021x tab_Zoa tab_Gui tab_domain"));
}

void TstCustomAdvPropertyFrame::loadingGoesToTheFirstTab()
{
    CustomInfo info = recordFor(63, 5);
    CustomAdvProperty dialog(nullptr);
    child<QTabWidget>(dialog, "tabWidget")->setCurrentIndex(6);
    dialog.initalDialog(&info);
    QCOMPARE(child<QTabWidget>(dialog, "tabWidget")->currentIndex(), 0);
}

void TstCustomAdvPropertyFrame::defaultGatewayIsTakenAlsoWithoutItsTab()
{
    CustomInfo info = recordFor(procom::portal);
    info.sslvpn.defaultAddress = 2;
    CustomAdvProperty dialog(nullptr);
    dialog.initalDialog(&info);
    QCOMPARE(dialog.defaultGatewayIndex, 2);
}

void TstCustomAdvPropertyFrame::okWithoutEditsChangesNothing()
{
    OpenDialog open(settledRecord());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.dialog.result(), int(QDialog::Accepted));
    QCOMPARE(changes(settledRecord(), open.info), QStringList());
}

void TstCustomAdvPropertyFrame::okWithoutEditsAndWithoutTabsTouchesOnlyTheL2tpFields()
{
    CustomInfo start = settledRecord();
    start.common.procomVal = procom::wlan;
    start.common.funcomVal = funcom::kef;
    OpenDialog open(start);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(start, open.info),
             words("vpn/basecfg/LNSIP vpn/basecfg/useIPSEC vpn/basecfg/upVersion vpn/basecfg/resumConn "
                   "vpn/basecfg/preSharedKey vpn/basecfg/LNSAsIPSECServer vpn/basecfg/otherIPSECServer "
                   "vpn/ikecfg/IKEAuthMethod"));
}

void TstCustomAdvPropertyFrame::absentSslVpnTabAndDomainTabAreUntouched()
{
    CustomInfo start = settledRecord();
    start.common.procomVal = procom::portal | procom::l2tpIpsec;
    start.sslvpn.defaultAddress = 0; // a present tab would set 1
    start.sslvpn.retryInterval = 0;  // a present tab would refuse this
    start.x1.upIp = 7;               // a present tab would store 1
    start.domain.domainForce = 7;
    OpenDialog open(start);
    open.tick("checkBox_PortalUpVer", false);
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(start, open.info), words("portal/upVer"));
}

void TstCustomAdvPropertyFrame::okStoresEveryTab()
{
    OpenDialog open(settledRecord());
    editEveryTab(open);
    QCOMPARE(changes(settledRecord(), open.info), QStringList());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(settledRecord(), open.info),
             words("functions/drvErr x1/upIp domain/domainForce portal/upVer sslvpn/edcode guiOptions/subTitle "
                   "ZOA/ZOAIP vpn/basecfg/LNSIP"));
}

void TstCustomAdvPropertyFrame::refusalKeepsWhatWasStoredBefore_data()
{
    QTest::addColumn<QString>("edit");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("focus");
    QTest::addColumn<QString>("stored");
    QTest::newRow("ZOA address") << "lineEdit_ZOAIp"
                                 << "1.2.3"
                                 << ""
                                 << "VUI_IllegalZOAIP"
                                 << "lineEdit_ZOAIp"
                                 << "";
    QTest::newRow("ZOA port") << "lineEdit_ZOAport"
                              << "0"
                              << ""
                              << "VUI_IllegalZOAPort"
                              << "lineEdit_ZOAport"
                              << "ZOA/ZOAIP";
    QTest::newRow("standby address") << "lineEdit_standby_ZOAIp"
                                     << "x"
                                     << ""
                                     << "VUI_IllegalStandbyZOAIP"
                                     << "lineEdit_standby_ZOAIp"
                                     << "ZOA/ZOAIP";
    QTest::newRow("standby port") << "lineEdit_standby_ZOAport"
                                  << "65536"
                                  << ""
                                  << "VUI_IllegalStandbyZOAPort"
                                  << "lineEdit_standby_ZOAport"
                                  << "ZOA/ZOAIP";
    QTest::newRow("reconnect interval") << "lineEdit_reconnInterval"
                                        << "0"
                                        << "SCE_SceneTipsTitle"
                                        << "SSL_RECONNGRAP_ERROR"
                                        << "lineEdit_reconnInterval"
                                        << "functions/drvErr x1/upIp domain/domainForce portal/upVer ZOA/ZOAIP";
    QTest::newRow("countdown") << "lineEdit_getSysVryInterval"
                               << "4"
                               << "SCE_SceneTipsTitle"
                               << "SSL_GetSmsVryCountDownValu_ERROR"
                               << "lineEdit_getSysVryInterval"
                               << "functions/drvErr x1/upIp domain/domainForce portal/upVer ZOA/ZOAIP";
}

// Where no focus is set, the focus stays in the edit that was typed in.
void TstCustomAdvPropertyFrame::refusalKeepsWhatWasStoredBefore()
{
    QFETCH(QString, edit);
    QFETCH(QString, text);
    QFETCH(QString, title);
    QFETCH(QString, key);
    QFETCH(QString, focus);
    QFETCH(QString, stored);
    OpenDialog open(settledRecord());
    editEveryTab(open);
    open.typeInto(edit.toLatin1().constData(), text);
    if (edit.contains(QLatin1String("ZOA")))
        open.widget<QWidget>("lineEdit_cusTitle")->setFocus();
    open.expectBox();
    open.pressOk();
    const QByteArray titleKey = title.toLatin1();
    QCOMPARE(open.shown(),
             QStringList(warning(titleKey.isEmpty() ? nullptr : titleKey.constData(), key.toLatin1().constData())));
    QVERIFY(open.isOpen());
    QCOMPARE(changes(settledRecord(), open.info), words(stored.toLatin1().constData()));
    if (focus.contains(QLatin1String("ZOA")))
        QCOMPARE(focusOf(open.dialog), focus);
    else
        QVERIFY(focusOf(open.dialog) == focus || !focusOf(open.dialog).startsWith(QLatin1String("lineEdit")));
}

void TstCustomAdvPropertyFrame::badZoaPortKeepsTheAddressAndNotTheFunctions()
{
    OpenDialog open(recordFor(procom::portal, funcom::zoa));
    open.typeInto("lineEdit_ZOAIp", QStringLiteral("10.20.30.40"));
    open.typeInto("lineEdit_ZOAport", QStringLiteral("65536"));
    open.tick("checkBox_DrvErr");
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(warning(nullptr, "VUI_IllegalZOAPort")));
    QCOMPARE(open.info.zoa.ZOAIP, QStringLiteral("10.20.30.40"));
    QCOMPARE(open.info.zoa.ZOAPORT, QStringLiteral("9019"));
    QCOMPARE(open.info.function.drvErr, 0u);
    QVERIFY(open.isOpen());
}

void TstCustomAdvPropertyFrame::boxHasNoTitleBeforeTheSslVpnStep()
{
    OpenDialog open(settledRecord());
    QString title = QStringLiteral("not seen");
    bool hasParent = true;
    open.typeInto("lineEdit_ZOAport", QStringLiteral("0"));
    open.expect<QMessageBox>([&](QMessageBox& box) {
        title = box.windowTitle();
        hasParent = box.parent() != nullptr;
        box.button(QMessageBox::Ok)->click();
    });
    open.pressOk();
    QCOMPARE(title, QString());
    QVERIFY(!hasParent);
    open.typeInto("lineEdit_ZOAport", QStringLiteral("1"));
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("0"));
    open.expect<QMessageBox>([&](QMessageBox& box) {
        title = box.windowTitle();
        box.button(QMessageBox::Ok)->click();
    });
    open.pressOk();
    QCOMPARE(title, langText("SCE_SceneTipsTitle"));
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyFrame::correctedRefusalPasses()
{
    OpenDialog open(settledRecord());
    open.typeInto("lineEdit_ZOAIp", QStringLiteral("1.2.3.4."));
    open.expectBox();
    open.pressOk();
    open.typeInto("lineEdit_ZOAIp", QStringLiteral("1.2.3.4"));
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("0"));
    open.expectBox();
    open.pressOk();
    open.typeInto("lineEdit_reconnInterval", QStringLiteral("12"));
    open.pressOk();
    QCOMPARE(open.shown(), QStringList({warning(nullptr, "VUI_IllegalZOAIP"),
                                        warning("SCE_SceneTipsTitle", "SSL_RECONNGRAP_ERROR")}));
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(settledRecord(), open.info), words("ZOA/ZOAIP"));
}

void TstCustomAdvPropertyFrame::refusalNeverChangesTheTab()
{
    OpenDialog open(settledRecord());
    open.typeInto("lineEdit_standby_ZOAport", QStringLiteral("0"));
    open.clickOn("checkBox_DomainForce");
    auto* tabWidget = open.widget<QTabWidget>("tabWidget");
    QSignalSpy tabChanges(tabWidget, &QTabWidget::currentChanged);
    QCOMPARE(tabWidget->currentWidget()->objectName(), QStringLiteral("tab_domain"));
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(warning(nullptr, "VUI_IllegalStandbyZOAPort")));
    QCOMPARE(tabChanges.count(), 0);
    QCOMPARE(tabWidget->currentWidget()->objectName(), QStringLiteral("tab_domain"));
    QCOMPARE(focusOf(open.dialog), QStringLiteral("lineEdit_standby_ZOAport"));
}

void TstCustomAdvPropertyFrame::emptyPreSharedKeyIsReportedAndTheDialogCloses()
{
    OpenDialog open(recordFor(procom::l2tpIpsec));
    open.tick("checkBox_EnableIpSec");
    open.expectBox();
    open.pressOk();
    QCOMPARE(open.shown(), QStringList(warning("VUI_AdvancedSettings", "VUI_InvalidPreSharedKey")));
    QVERIFY(!open.isOpen());
    QCOMPARE(open.dialog.result(), int(QDialog::Accepted));
}

void TstCustomAdvPropertyFrame::everythingElseIsStoredBeforeTheL2tpMessage()
{
    OpenDialog open(settledRecord());
    editEveryTab(open);
    open.typeInto("lineEdit_preshareKey", QString());
    QStringList stored;
    open.expect<QMessageBox>([&](QMessageBox& box) {
        stored = changes(settledRecord(), open.info);
        box.button(QMessageBox::Ok)->click();
    });
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(stored, words("functions/drvErr x1/upIp domain/domainForce portal/upVer sslvpn/edcode guiOptions/subTitle "
                           "ZOA/ZOAIP vpn/basecfg/LNSIP"));
}

void TstCustomAdvPropertyFrame::okWithoutARecordDoesNothing_data()
{
    QTest::addColumn<bool>("isLoaded");
    QTest::newRow("not loaded") << false;
    QTest::newRow("loaded from none") << true;
}

void TstCustomAdvPropertyFrame::okWithoutARecordDoesNothing()
{
    QFETCH(bool, isLoaded);
    ModalScript script;
    CustomAdvProperty dialog(nullptr);
    if (isLoaded)
        dialog.initalDialog(nullptr);
    dialog.show();
    press(dialog, QDialogButtonBox::Ok);
    for (const char* box :
         {"checkBox_Wancontrol", "checkBox_DynPwdVry", "checkBox_MsgAuth", "checkBox_aclEscape", "checkBox_passwd"})
        click(dialog, box);
    child<QPushButton>(dialog, "pushButton_Adv")->click();
    dialog.saveL2tpIpsecCfg();
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(dialog.isVisible());
    press(dialog, QDialogButtonBox::Cancel);
    QVERIFY(!dialog.isVisible());
}

void TstCustomAdvPropertyFrame::cancelClosesTheWindow()
{
    OpenDialog open(recordFor(procom::portal));
    dialogplay::CloseEvents closeEvents;
    open.dialog.installEventFilter(&closeEvents);
    open.pressCancel();
    QCOMPARE(closeEvents.count, 1);
    QVERIFY(!open.isOpen());
}

void TstCustomAdvPropertyFrame::cancelDropsWhatLivesInTheControls()
{
    OpenDialog open(settledRecord());
    editEveryTab(open);
    open.selectRow("treeWidget_SSLIP", 0);
    open.clickOn("pushButton_Delete");
    open.selectRow("treeWidget_Domain", 0);
    open.clickOn("pushButton_Delete_2");
    QCOMPARE(open.dialog.gatewayList.size(), 2);
    QCOMPARE(open.dialog.domainInfo.domaindetail.size(), 1);
    open.pressCancel();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(open.dialog.result(), int(QDialog::Rejected));
    QCOMPARE(changes(settledRecord(), open.info), QStringList());
}

void TstCustomAdvPropertyFrame::cancelKeepsWhatTheSmallDialogsWrote()
{
    const CustomInfo start = recordFor(procom::portal);
    OpenDialog open(start);
    open.expect<CMsgAuthDlg>([](CMsgAuthDlg& dialog) {
        type(dialog, "lineEdit_MsgAuthSrv_IP", QStringLiteral("10.0.0.1"));
        type(dialog, "lineEdit_MsgAuthSrv_Port", QStringLiteral("80"));
        press(dialog, QDialogButtonBox::Ok);
    });
    open.tick("checkBox_MsgAuth");
    open.tick("checkBox_DrvErr");
    open.pressCancel();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(changes(start, open.info),
             words("functions/msgAuthOpt functions/msgAuthServIP functions/msgAuthServPort"));
    QCOMPARE(open.info.function.msgAuthOpt, 1u);
}

void TstCustomAdvPropertyFrame::dialogRunsModally_data()
{
    QTest::addColumn<int>("end");
    QTest::addColumn<int>("result");
    QTest::newRow("OK") << int(QDialogButtonBox::Ok) << int(QDialog::Accepted);
    QTest::newRow("Cancel") << int(QDialogButtonBox::Cancel) << int(QDialog::Rejected);
    QTest::newRow("Escape") << 0 << int(QDialog::Rejected);
}

void TstCustomAdvPropertyFrame::dialogRunsModally()
{
    QFETCH(int, end);
    QFETCH(int, result);
    CustomInfo info = recordFor(procom::portal);
    QWidget window;
    CustomAdvProperty dialog(&window);
    dialog.initalDialog(&info);
    ModalScript script;
    script.expect<CustomAdvProperty>([end](CustomAdvProperty& opened) {
        click(opened, "checkBox_DrvErr");
        if (end == 0)
            QTest::keyClick(&opened, Qt::Key_Escape);
        else
            press(opened, QDialogButtonBox::StandardButton(end));
    });
    QCOMPARE(dialog.exec(), result);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(info.function.drvErr, result == QDialog::Accepted ? 1u : 0u);
}

void TstCustomAdvPropertyFrame::ticksOfTheProgramRunNoSlot()
{
    const CustomInfo start = recordFor(63, 5);
    OpenDialog open(start);
    for (QCheckBox* box : open.dialog.findChildren<QCheckBox*>()) {
        const bool isTicked = box->isChecked();
        box->setChecked(!isTicked);
        QCoreApplication::processEvents();
        box->setChecked(isTicked);
    }
    QTest::qWait(50);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(start, open.info), QStringList());
    QCOMPARE(open.dialog.authTypeCount, 4);
    QCOMPARE(open.dialog.authModeCount, 3);
}

void TstCustomAdvPropertyFrame::childrenReachRecordAndGateways()
{
    OpenDialog open(settledRecord());
    QObject* object = &open.dialog;
    auto* recordHolder = qobject_cast<CustomInfoHolder*>(object);
    QVERIFY(recordHolder);
    QCOMPARE(recordHolder->customInfo(), &open.info);
    auto* gatewayHolder = qobject_cast<GatewayListHolder*>(object);
    QVERIFY(gatewayHolder);
    QCOMPARE(&gatewayHolder->gateways(), &open.dialog.gatewayList);
    QCOMPARE(open.dialog.record, &open.info);
}

void TstCustomAdvPropertyFrame::dialogStaysWithinTheScreen()
{
    const SmallFont font;
    OpenDialog open(recordFor(2, 0));
    const QRect screen = open.dialog.screen()->availableGeometry();
    QVERIFY(screen.contains(open.dialog.frameGeometry()));
    const int frame = open.dialog.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &open.dialog);
    QCOMPARE(open.dialog.size(), QSize(726, 991).boundedTo(screen.size() - QSize(frame, 2 * frame)));
    for (const QAbstractButton* button : open.widget<QDialogButtonBox>("buttonBox_adv")->buttons())
        QVERIFY(screen.contains(QRect(button->mapToGlobal(QPoint()), button->size())));
    // The dialog shrinks further than any screen of today.
    QVERIFY(open.dialog.minimumSizeHint().height() < 500);
    QVERIFY(open.dialog.minimumSizeHint().width() < 700);
}

void TstCustomAdvPropertyFrame::dialogIsAsWideAsItsTabs()
{
    OpenDialog open(recordFor(63, 5));
    QVERIFY(open.dialog.screen()->availableGeometry().contains(open.dialog.frameGeometry()));
    const QTabBar* tabs = open.widget<QTabWidget>("tabWidget")->tabBar();
    QCOMPARE(tabs->count(), 8);
    QVERIFY(open.dialog.width() >= 726);
    QVERIFY(tabs->tabRect(7).right() < tabs->width());
}

void TstCustomAdvPropertyFrame::dialogIsAsWideAsItsPages_data()
{
    QTest::addColumn<QString>("widget");
    QTest::newRow("the page on view") << "checkBox_AclOpt";
    QTest::newRow("a page that was never on view") << "lineEdit_ZOAIp";
}

void TstCustomAdvPropertyFrame::dialogIsAsWideAsItsPages()
{
    QFETCH(QString, widget);
    const SmallFont font;
    const int narrow = 500;
    const int wide = 710;
    const Page first = showPage(widget, narrow);
    QCOMPARE(first.dialog->width(), 726);
    const int around = first.area->widget()->minimumSizeHint().width() - narrow;
    const Page second = showPage(widget, wide - around);
    QCOMPARE(second.area->widget()->minimumSizeHint().width(), wide);
    QVERIFY(second.dialog->width() > 726);
    QVERIFY(second.dialog->screen()->availableGeometry().contains(second.dialog->frameGeometry()));
    QCOMPARE(second.area->horizontalScrollBar()->maximum(), 0);
    // There is room for the other scroll bar, too.
    second.dialog->resize(second.dialog->width(), 1);
    QCoreApplication::processEvents();
    QVERIFY(second.area->verticalScrollBar()->maximum() > 0);
    QCOMPARE(second.area->horizontalScrollBar()->maximum(), 0);
}

void TstCustomAdvPropertyFrame::removedPageDoesNotWidenTheDialog()
{
    const SmallFont font;
    CustomInfo info = recordFor(procom::portal);
    CustomAdvProperty dialog(nullptr);
    child<QWidget>(dialog, "lineEdit_ZOAIp")->setMinimumWidth(710);
    dialog.initalDialog(&info);
    dialog.show();
    QCOMPARE(dialog.width(), 726);
}

void TstCustomAdvPropertyFrame::wheelLeavesAListWithoutFocusAlone()
{
    OpenDialog open(settledRecord());
    QVERIFY(QTest::qWaitForWindowActive(&open.dialog));
    const QList<QComboBox*> combos = open.dialog.findChildren<QComboBox*>();
    QCOMPARE(combos.size(), 8);
    for (QComboBox* combo : combos) {
        bringToFront(combo);
        const int index = combo->currentIndex();
        windowplay::turnWheel(combo, -120);
        windowplay::turnWheel(combo, 120);
        windowplay::turnWheel(combo, 120);
        QVERIFY2(combo->currentIndex() == index, qPrintable(combo->objectName()));
        QVERIFY2(!combo->hasFocus(), qPrintable(combo->objectName()));
    }
    // The page takes the wheel.
    open.dialog.resize(726, 300);
    auto* combo = open.widget<QComboBox>("comboBox_defaultType");
    bringToFront(combo);
    const QScrollBar* bar = open.widget<QScrollArea>("scrollArea_sslvpn")->verticalScrollBar();
    const int before = bar->value();
    QVERIFY(before > 0);
    windowplay::turnWheel(combo, 120);
    QVERIFY(bar->value() < before);
}

void TstCustomAdvPropertyFrame::wheelTurnsAListWithFocus()
{
    OpenDialog open(settledRecord());
    QVERIFY(QTest::qWaitForWindowActive(&open.dialog));
    auto* combo = open.widget<QComboBox>("comboBox_RetryTimes");
    bringToFront(combo);
    combo->setCurrentIndex(0);
    combo->setFocus(Qt::MouseFocusReason);
    windowplay::turnWheel(combo, -120);
    QCOMPARE(combo->currentIndex(), 1);
}

void TstCustomAdvPropertyFrame::focusRunsFromTopToBottom()
{
    OpenDialog open(recordFor(63, 5));
    auto* tabWidget = open.widget<QTabWidget>("tabWidget");
    for (int index = 0; index < tabWidget->count(); ++index) {
        tabWidget->setCurrentIndex(index);
        QCoreApplication::processEvents();
        const QWidget* page = tabWidget->currentWidget();
        const QList<QWidget*> order = focusOrder(open.dialog, page);
        QVERIFY2(order.size() >= 4, qPrintable(page->objectName()));
        for (int at = 1; at < order.size(); ++at) {
            const QRect before(order[at - 1]->mapTo(page, QPoint()), order[at - 1]->size());
            const QRect after(order[at]->mapTo(page, QPoint()), order[at]->size());
            const bool isBelow = after.center().y() > before.center().y() + before.height() / 2;
            const bool isRight =
                qAbs(after.center().y() - before.center().y()) <= before.height() / 2 && after.left() > before.left();
            QVERIFY2(isBelow || isRight,
                     qPrintable(order[at - 1]->objectName() + QLatin1String(", then ") + order[at]->objectName()));
        }
    }
}

void TstCustomAdvPropertyFrame::labelsAreBuddiesOfTheirFields()
{
    OpenDialog open(recordFor(63, 5));
    for (const QLabel* label : open.dialog.findChildren<QLabel*>(QRegularExpression(QStringLiteral("^label_")))) {
        if (label->objectName() != QLatin1String("label_UseHint"))
            QVERIFY2(label->buddy(), qPrintable(label->objectName()));
    }
    for (const char* field : {"comboBox_1xAdvancedAuth", "comboBox_PortalAdvancedAuth", "treeWidget_SSLIP"})
        QVERIFY2(!open.widget<QWidget>(field)->accessibleName().isEmpty(), field);
}

TEST_ENTRY(customadvproperty_frame, runTest<TstCustomAdvPropertyFrame>)

#include "tst_customadvproperty_frame.moc"
