#include "screenshots/EveryWindow.h"

#include "advanced/CDynamicPwdDlg.h"
#include "advanced/CInput1XDomainDlg.h"
#include "advanced/CMsgAuthDlg.h"
#include "advanced/CSslVpnIp.h"
#include "advanced/CWanEscapeDlg.h"
#include "advanced/CustomAdvProperty.h"
#include "advanced/KEFCusOpt.h"
#include "advanced/UninstallPasswd.h"
#include "advanced/WancontrolDlg.h"
#include "app/language/LangText.h"
#include "app/mainwindow/orvexmanager.h"
#include "app/widgets/WarningBox.h"
#include "common/Version.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "view/AboutInfoDlg.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "vpn/IpInfo.h"
#include "vpn/QVPNAdvProperty.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QStyle>
#include <QTabWidget>
#include <QTextEdit>
#include <QTreeWidget>

namespace {

void show(const Visit& visit, const QString& page, QWidget& window)
{
    window.show();
    // The display answers a new size with one more, which may be laid out once more.
    for (int i = 0; i < 2; ++i)
        QGuiApplication::sync();
    visit(page, window);
}

/// Every page of the window's tab widget, by its object name.
void showTabs(const Visit& visit, const QString& page, QWidget& window)
{
    QTabWidget* tabs = window.findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    window.show();
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        show(visit, page + QLatin1Char('-') + tabs->widget(i)->objectName(), window);
    }
}

void showTab(const Visit& visit, const QString& page, QWidget& window, const char* name)
{
    QTabWidget* tabs = window.findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    window.show();
    tabs->setCurrentWidget(window.findChild<QWidget*>(QLatin1String(name)));
    show(visit, page, window);
}

/// A record with something in every list and behind every option, its free texts in the language.
CustomInfo sampleRecord(const QString& language)
{
    const bool isChinese = language == QLatin1String("zh");
    const auto inLanguage = [isChinese](const char* english, const char* chinese) {
        return QString::fromUtf8(isChinese ? chinese : english);
    };
    CustomInfo record;
    record.common.cusTimeStamp = 1700000000;
    record.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    record.common.cusAddInfo = inLanguage("Branch office Orvex Vr1.0", "北京分部 Orvex Vr1.0");
    record.common.procomVal = 63;
    record.common.funcomVal = 5;
    record.function.acl = 1;
    record.function.wanControl = 2;
    record.function.drvErr = 1;
    record.function.msgAuthOpt = 1;
    record.function.msgAuthInfo = 3;
    record.function.msgAuthServIP = QStringLiteral("192.0.2.20");
    record.function.msgAuthServPort = 8443;
    record.function.passwordProtection = 1;
    record.function.uninstallPasswordExtend = 2;
    record.function.wanControlEscape = 1;
    record.function.wanControlEscapePyxIp = QStringLiteral("192.0.2.30");
    record.function.wanControlEscapePyxPort = QStringLiteral("9020");
    record.function.wanControlEscapeDns = QStringLiteral("192.0.2.53");
    record.function.wanControlEscapePyxIpBackup = QStringLiteral("192.0.2.31");
    record.sslvpn.remote = {
        {0, inLanguage("Headquarters", "总部"), QStringLiteral("203.0.113.10"), QStringLiteral("443")},
        {0, inLanguage("Branch office", "北京分部"), QStringLiteral("vpn.branch.example"), QStringLiteral("8443")}};
    record.sslvpn.defaultAddress = 1;
    record.domain.domaindetail = {{QStringLiteral("staff.example"), inLanguage("Staff", "员工")},
                                  {QStringLiteral("guest.example"), inLanguage("Guests", "访客")}};
    record.domain.domainDefault = 1;
    record.gui.subTitle = inLanguage("Sample client", "示例客户端");
    record.gui.linuxDeskIconPath = QStringLiteral(ORVEX_SOURCE_DIR "/Resources/tqmlogo.png");
    record.gui.mainIconPath = QStringLiteral(ORVEX_SOURCE_DIR "/Resources/icon4.ico");
    record.vpn.basecfg.LNSIP = QStringLiteral("203.0.113.20");
    record.vpn.basecfg.LNSIPSecond = QStringLiteral("203.0.113.21");
    record.vpn.basecfg.useIPSEC = 1;
    record.vpn.basecfg.preSharedKey = QStringLiteral("a pre-shared key");
    record.vpn.l2tpcfg.L2TPUseTunnelPwd = 1;
    record.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("tunnel");
    record.vpn.ipseccfg.IPSECPFS = 1024;
    record.vpn.ikecfg.IKESendKeepAlive = 1;
    record.vpn.ikecfg.IKESendInterval = QStringLiteral("300");
    record.vpnRoutes = {{QStringLiteral("10.0.0.0"), QStringLiteral("255.0.0.0")},
                        {QStringLiteral("172.16.0.0"), QStringLiteral("255.240.0.0")}};
    record.zoa.ZOAIP = QStringLiteral("192.0.2.40");
    record.zoa.standbyZOAIP = QStringLiteral("192.0.2.41");
    record.kef.kefIP = QStringLiteral("192.0.2.50");
    record.kef.kefPort = QStringLiteral("9029");
    return record;
}

void useLanguage(const QString& language)
{
    installation::clear();
    installation::installLanguageFiles();
    const QByteArray code = language == QLatin1String("zh") ? "2052" : "1033";
    installation::writeFile(installation::path(QStringLiteral("config.ini")),
                            "[config]\nArea=tqm\nLangCode=" + code + "\n");
}

/// Three rows; the order in the history is that of the file system.
void storeHistory(const QString& language)
{
    CustomInfo record = sampleRecord(language);
    storeCustomisation(installation::root(), record);
    record.common.cusTimeStamp = 1710000000;
    record.common.cusTimeString = QStringLiteral("2024-03-10 00:00:00");
    record.common.procomVal = 3;
    record.common.funcomVal = 1;
    record.common.cusAddInfo =
        language == QLatin1String("zh") ? QStringLiteral("总部") : QStringLiteral("Headquarters");
    storeCustomisation(installation::root(), record);
    record.common.cusTimeStamp = 1720000000;
    record.common.cusTimeString = QStringLiteral("2024-07-03 17:46:40");
    record.common.procomVal = 16;
    record.common.funcomVal = 0;
    record.common.cusAddInfo = language == QLatin1String("zh") ? QStringLiteral("合作伙伴的远程访问")
                                                               : QStringLiteral("Remote access of partners");
    storeCustomisation(installation::root(), record);
}

void selectFirstRow(OrvexManager& window)
{
    QTreeWidget* tree = window.findChild<QTreeWidget*>();
    tree->setCurrentItem(tree->topLevelItem(0));
    window.onItemClicked(tree->topLevelItem(0));
}

void tickAll(OrvexManager& window)
{
    for (QCheckBox* box : window.findChildren<QCheckBox*>())
        box->setChecked(true);
}

void showMainWindow(const QString& language, const Visit& visit)
{
    {
        OrvexManager window(nullptr);
        show(visit, QStringLiteral("main-client"), window);
        window.showCusHis();
        show(visit, QStringLiteral("main-history-empty"), window);
    }
    storeHistory(language);
    OrvexManager window(nullptr);
    tickAll(window);
    window.findChild<QComboBox*>(QStringLiteral("comboBox_defaultCus"))->setCurrentIndex(1);
    show(visit, QStringLiteral("main-client-from-history"), window);
    window.showCusHis();
    selectFirstRow(window);
    show(visit, QStringLiteral("main-history"), window);
    for (QAction* action : window.menuBar()->actions()) {
        const int number = window.menuBar()->actions().indexOf(action) + 1;
        action->menu()->popup(window.mapToGlobal(QPoint()));
        show(visit, QStringLiteral("menu-%1").arg(number), *action->menu());
        action->menu()->hide();
    }
}

void showPackWindows(const QString& language, const Visit& visit)
{
    CustomInfo record = sampleRecord(language);
    FinishDlg finish(nullptr);
    finish.initalDialog(&record);
    show(visit, QStringLiteral("finish"), finish);
    PackingWait wait(0, 0, nullptr);
    wait.setStepInfo(langText("gensetupBegin"));
    show(visit, QStringLiteral("packing"), wait);
    for (int mask = 0; mask < 8; ++mask) {
        CustomCompleteDlg complete(nullptr);
        complete.initalDialog(mask, true);
        show(visit, QStringLiteral("complete-%1").arg(mask), complete);
    }
    CustomCompleteDlg place(nullptr);
    place.initalDialog(2, false);
    show(visit, QStringLiteral("place-of-updates"), place);
}

void showEditors(CustomInfo& record, const Visit& visit)
{
    CustomAdvProperty advanced(nullptr);
    advanced.initalDialog(&record);
    showTabs(visit, QStringLiteral("advanced"), advanced);
    QVPNAdvProperty vpn(&advanced);
    vpn.setInital();
    showTabs(visit, QStringLiteral("vpn"), vpn);
}

void showDetails(CustomInfo& record, const Visit& visit)
{
    ShowDetailDlg detail(nullptr);
    detail.onInitDialog(record);
    showTabs(visit, QStringLiteral("detail"), detail);
    QShowVpnAdv vpn(&detail);
    vpn.setInital();
    showTabs(visit, QStringLiteral("detail-vpn"), vpn);
}

void showAdvanced(const QString& language, const Visit& visit)
{
    CustomInfo record = sampleRecord(language);
    showEditors(record, visit);

    CustomInfo fresh;
    CustomAdvProperty freshAdvanced(nullptr);
    freshAdvanced.initalDialog(&fresh);
    showTabs(visit, QStringLiteral("advanced-fresh"), freshAdvanced);
}

void showSmallDialogs(const QString& language, const Visit& visit)
{
    const CustomInfo record = sampleRecord(language);
    const auto showOne = [&visit](const char* name, QWidget&& dialog) {
        show(visit, QLatin1String("small-") + QLatin1String(name), dialog);
    };
    showOne("wan-control", WancontrolDlg(nullptr));
    showOne("dynamic-password", CDynamicPwdDlg(nullptr));
    showOne("message-authentication", CMsgAuthDlg(nullptr));
    showOne("wan-escape", CWanEscapeDlg(nullptr));
    showOne("uninstall-password", UninstallPasswd(nullptr));
    showOne("kef", KEFCusOpt(nullptr));
    showOne("route", IpInfo(nullptr));
    SUIDomainInfo domains = record.domain;
    showOne("domain", CInput1XDomainDlg(domains, 0, QStringLiteral("staff.example"), QStringLiteral("Staff"), true,
                                        false, nullptr));
    SSLVPNRemoteInfo gateway = record.sslvpn.remote.first();
    showOne("gateway", CSslVpnIp(gateway, 1, nullptr));
    WarningBox warning("manager_title");
    warning.setText(langText("SelProtocolPls"));
    show(visit, QStringLiteral("small-warning"), warning);
}

void showViews(const QString& language, const Visit& visit)
{
    CustomInfo record = sampleRecord(language);
    showDetails(record, visit);
    for (int brand : {0, 1}) {
        g_ucAreaCode = static_cast<unsigned char>(brand);
        AboutInfoDlg about(nullptr);
        show(visit, brand == 0 ? QStringLiteral("about-tqm") : QStringLiteral("about-wy"), about);
    }
    g_ucAreaCode = 0;
}

} // namespace

QString Look::name() const
{
    return QStringLiteral("%1-%2-%3")
        .arg(language, isDark ? QStringLiteral("dark") : QStringLiteral("light"),
             pointSize > 0 ? QStringLiteral("%1pt").arg(pointSize) : QStringLiteral("default"));
}

QPalette lightPalette()
{
    return QApplication::style()->standardPalette();
}

QPalette darkPalette()
{
    const QColor window(53, 53, 53);
    const QColor base(35, 35, 35);
    const QColor disabled(127, 127, 127);
    QPalette palette(Qt::white, window, window.lighter(150), window.darker(150), window.darker(120), Qt::white, Qt::red,
                     base, window);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::ToolTipBase, window);
    palette.setColor(QPalette::ToolTipText, Qt::white);
    palette.setColor(QPalette::Link, QColor(100, 170, 240));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(255, 255, 255, 128));
    for (QPalette::ColorRole role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, disabled);
    return palette;
}

LookOfTheDesktop::LookOfTheDesktop(const Look& look) : m_palette(QApplication::palette()), m_font(QApplication::font())
{
    QApplication::setPalette(look.isDark ? darkPalette() : lightPalette());
    QFont font = m_font;
    if (look.pointSize > 0)
        font.setPointSize(look.pointSize);
    QApplication::setFont(font);
}

LookOfTheDesktop::~LookOfTheDesktop()
{
    QApplication::setPalette(m_palette);
    QApplication::setFont(m_font);
}

void visitEveryWindow(const QString& language, const Visit& visit)
{
    useLanguage(language);
    showMainWindow(language, visit);
    showPackWindows(language, visit);
    showAdvanced(language, visit);
    showSmallDialogs(language, visit);
    showViews(language, visit);
}

void visitWindowsWithLongTexts(const QString& language, const Visit& visit)
{
    useLanguage(language);
    CustomInfo record = sampleRecord(language);
    const auto lengthened = [](const QString& text, int length) { return text.repeated(length).left(length); };
    record.common.cusAddInfo = lengthened(record.common.cusAddInfo + QLatin1Char(' '), 200);
    for (SSLVPNRemoteInfo& gateway : record.sslvpn.remote) {
        gateway.iPDes = lengthened(gateway.iPDes + QLatin1Char(' '), 60);
        gateway.ip = lengthened(QStringLiteral("gateway."), 60) + QLatin1String("example");
    }
    for (DomainDetail& domain : record.domain.domaindetail) {
        domain.domainName = lengthened(QStringLiteral("department."), 60) + QLatin1String("example");
        domain.domainDesp = lengthened(domain.domainDesp + QLatin1Char(' '), 60);
    }
    record.gui.subTitle = lengthened(record.gui.subTitle + QLatin1Char(' '), 100);
    record.gui.linuxDeskIconPath = lengthened(QStringLiteral("/pictures of the branch offices"), 200);
    record.gui.mainIconPath = record.gui.linuxDeskIconPath;
    record.vpn.basecfg.LNSIP = lengthened(QStringLiteral("lns."), 100) + QLatin1String("example");
    record.vpn.ikecfg.IKELocalName = lengthened(QStringLiteral("local gateway "), 100);
    storeCustomisation(installation::root(), record);

    OrvexManager window(nullptr);
    window.findChild<QComboBox*>(QStringLiteral("comboBox_defaultCus"))->setCurrentIndex(1);
    show(visit, QStringLiteral("main-client"), window);
    window.showCusHis();
    show(visit, QStringLiteral("main-history"), window);
    FinishDlg finish(nullptr);
    finish.initalDialog(&record);
    show(visit, QStringLiteral("finish"), finish);
    showEditors(record, visit);
    showDetails(record, visit);
}

void visitDocumentedWindows(const QString& language, const Visit& visit)
{
    useLanguage(language);
    storeHistory(language);
    CustomInfo record = sampleRecord(language);
    OrvexManager window(nullptr);
    show(visit, QStringLiteral("main"), window);
    QComboBox* start = window.findChild<QComboBox*>(QStringLiteral("comboBox_defaultCus"));
    start->setCurrentIndex(start->findText(record.common.cusTimeString, Qt::MatchStartsWith));
    show(visit, QStringLiteral("client"), window);
    window.showCusHis();
    selectFirstRow(window);
    show(visit, QStringLiteral("history"), window);

    CustomAdvProperty advanced(&window);
    advanced.initalDialog(&record);
    showTab(visit, QStringLiteral("advanced-8021x"), advanced, "tab_8021x");
    showTab(visit, QStringLiteral("advanced-sslvpn"), advanced, "tab_sslvpn");
    showTab(visit, QStringLiteral("advanced-vpn"), advanced, "tab_l2tp");

    FinishDlg finish(&window);
    finish.initalDialog(&record);
    for (QCheckBox* box : finish.findChildren<QCheckBox*>())
        box->setChecked(true);
    show(visit, QStringLiteral("finish"), finish);
    PackingWait progress(0, 0, &window);
    for (const char* key : {"gensetupBegin", "gensetupSucc", "genupdateBegin"})
        progress.setStepInfo(langText(key));
    show(visit, QStringLiteral("progress"), progress);
    CustomCompleteDlg completion(&window);
    completion.initalDialog(7, true);
    for (QTextEdit* place : completion.findChildren<QTextEdit*>())
        place->setPlainText(place->toPlainText().replace(installation::root(),
                                                         QLatin1String("/opt/apps/com.manager.orvex.amd/files/")));
    show(visit, QStringLiteral("completion"), completion);

    ShowDetailDlg view(&window);
    view.onInitDialog(record);
    showTab(visit, QStringLiteral("view"), view, "tab_Sslvpn");
}
