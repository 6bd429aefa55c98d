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
#include "view/AboutInfoDlg.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "vpn/IpInfo.h"
#include "vpn/QVPNAdvProperty.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QCheckBox>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

#include <cstdio>

namespace {

QString s_directory;
QStringList s_complaints;

QString shownText(const QWidget* widget)
{
    if (const QLabel* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (const QAbstractButton* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    if (const QGroupBox* box = qobject_cast<const QGroupBox*>(widget))
        return box->title();
    return QString();
}

bool isClipped(const QWidget* widget)
{
    if (const QLabel* label = qobject_cast<const QLabel*>(widget)) {
        if (label->text().isEmpty())
            return false;
        if (label->wordWrap())
            return label->height() < label->heightForWidth(label->width());
    } else if (!qobject_cast<const QCheckBox*>(widget) && !qobject_cast<const QRadioButton*>(widget) &&
               !qobject_cast<const QAbstractButton*>(widget)) {
        return false;
    }
    // A tool button asks for room around its text that it does not need.
    const int slack = qobject_cast<const QToolButton*>(widget) ? 6 : 0;
    return !shownText(widget).isEmpty() && widget->width() + slack < widget->sizeHint().width();
}

void complain(const QString& page, const QWidget* widget, const char* what)
{
    s_complaints.append(
        QStringLiteral("%1: %2 \"%3\" %4").arg(page, widget->objectName(), shownText(widget), QLatin1String(what)));
}

void inspect(const QString& page, const QWidget* window)
{
    if (window->windowTitle() == QLatin1String("NULL"))
        complain(page, window, "has no title");
    // What is scrolled away and would fit on the screen beside the window.
    const int room = window->screen()->availableSize().width() - window->width() -
                     window->style()->pixelMetric(QStyle::PM_TitleBarHeight);
    for (const QScrollArea* area : window->findChildren<QScrollArea*>()) {
        const int hidden = area->horizontalScrollBar()->maximum();
        if (area->isVisibleTo(window) && hidden > 0 && hidden <= room)
            complain(page, area, "scrolls sideways");
    }
    const QList<QWidget*> widgets = window->findChildren<QWidget*>();
    for (const QWidget* widget : widgets) {
        // Parts of a widget, such as the buttons of a tab bar or a header, carry no name of the form.
        if (!widget->isVisibleTo(window) || widget->objectName().isEmpty() ||
            widget->objectName().startsWith(QLatin1String("qt_")) || widget->parentWidget()->inherits("QTabBar"))
            continue;
        if (shownText(widget).contains(QLatin1String("NULL")))
            complain(page, widget, "has no text");
        if (isClipped(widget))
            complain(page, widget, "is clipped");
        const QList<QWidget*> siblings =
            widget->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
        for (const QWidget* sibling : siblings) {
            if (sibling > widget && sibling->isVisibleTo(window) && !sibling->isWindow() && !widget->isWindow() &&
                !sibling->objectName().isEmpty() && !sibling->objectName().startsWith(QLatin1String("qt_")) &&
                sibling->geometry().intersects(widget->geometry()))
                complain(page, widget, qPrintable(QLatin1String("overlaps ") + sibling->objectName()));
        }
    }
}

void shoot(const QString& name, QWidget* window)
{
    window->show();
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
    inspect(name, window);
    const QString path = s_directory + QLatin1Char('/') + name + QLatin1String(".png");
    QDir().mkpath(QFileInfo(path).path());
    if (!window->grab().save(path))
        s_complaints.append(QLatin1String("not written: ") + path);
}

/// Every page of the window's tab widget, by its object name.
void shootTabs(const QString& name, QWidget* window)
{
    QTabWidget* tabs = window->findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    window->show();
    for (int i = 0; i < tabs->count(); ++i) {
        tabs->setCurrentIndex(i);
        if (tabs->tabText(i) == QLatin1String("NULL"))
            complain(name, tabs->widget(i), "has no tab title");
        shoot(name + QLatin1Char('-') + tabs->widget(i)->objectName(), window);
    }
}

CustomInfo sampleRecord()
{
    CustomInfo record;
    record.common.cusTimeStamp = 1700000000;
    record.common.cusTimeString = QStringLiteral("2023-11-15 06:13:20");
    record.common.cusAddInfo = QStringLiteral("北京分部 Orvex Vr1.0");
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
        {0, QStringLiteral("Headquarters"), QStringLiteral("203.0.113.10"), QStringLiteral("443")},
        {0, QStringLiteral("北京分部"), QStringLiteral("vpn.branch.example"), QStringLiteral("8443")}};
    record.sslvpn.defaultAddress = 1;
    record.domain.domaindetail = {{QStringLiteral("staff.example"), QStringLiteral("Staff")},
                                  {QStringLiteral("guest.example"), QStringLiteral("访客")}};
    record.domain.domainDefault = 1;
    record.gui.subTitle = QStringLiteral("示例客户端");
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

void shootMainWindow(const QString& language)
{
    OrvexManager window(nullptr);
    const CUSINFOPOLICY rows[] = {
        {1700000000, QStringLiteral("2023-11-15 06:13:20"), QStringLiteral("北京分部"), 3, 1}};
    for (const CUSINFOPOLICY& row : rows) {
        window.findChild<QTreeWidget*>()->addTopLevelItem(new QTreeWidgetItem(
            {row.cusTimeString, window.GetCusCompStr(int(row.procomVal), int(row.funcomVal)), row.cusAddInfo}));
    }
    shoot(language + QLatin1String("/main-client"), &window);
    window.showCusHis();
    shoot(language + QLatin1String("/main-history"), &window);
}

void shootPackWindows(const QString& language)
{
    CustomInfo record = sampleRecord();
    FinishDlg finish(nullptr);
    finish.initalDialog(&record);
    shoot(language + QLatin1String("/finish"), &finish);
    PackingWait wait(0, 0, nullptr);
    wait.setStepInfo(langText("gensetupBegin"));
    shoot(language + QLatin1String("/packing"), &wait);
    for (int mask : {0, 1, 7}) {
        CustomCompleteDlg complete(nullptr);
        complete.initalDialog(mask, true);
        shoot(language + QStringLiteral("/complete-%1").arg(mask), &complete);
    }
    CustomCompleteDlg place(nullptr);
    place.initalDialog(2, false);
    shoot(language + QLatin1String("/place-of-updates"), &place);
}

void shootAdvanced(const QString& language)
{
    CustomInfo record = sampleRecord();
    CustomAdvProperty advanced(nullptr);
    advanced.initalDialog(&record);
    shootTabs(language + QLatin1String("/advanced"), &advanced);
    QVPNAdvProperty vpn(&advanced);
    vpn.setInital();
    shootTabs(language + QLatin1String("/vpn"), &vpn);

    const auto shootOne = [&language](const char* name, QWidget&& dialog) {
        shoot(language + QLatin1String("/small-") + QLatin1String(name), &dialog);
    };
    shootOne("wan-control", WancontrolDlg(nullptr));
    shootOne("dynamic-password", CDynamicPwdDlg(nullptr));
    shootOne("message-authentication", CMsgAuthDlg(nullptr));
    shootOne("wan-escape", CWanEscapeDlg(nullptr));
    shootOne("uninstall-password", UninstallPasswd(nullptr));
    shootOne("kef", KEFCusOpt(nullptr));
    shootOne("route", IpInfo(nullptr));
    SUIDomainInfo domains = record.domain;
    shootOne("domain", CInput1XDomainDlg(domains, 0, QStringLiteral("staff.example"), QStringLiteral("Staff"), true,
                                         false, nullptr));
    SSLVPNRemoteInfo gateway = record.sslvpn.remote.first();
    shootOne("gateway", CSslVpnIp(gateway, 1, nullptr));
    WarningBox box("manager_title");
    box.setText(langText("SelProtocolPls"));
    shootOne("warning", std::move(static_cast<QWidget&>(box)));
}

/// The pages of the advanced dialog in the fonts that desktops set.
void shootAdvancedInOtherFonts(const QString& language)
{
    const QFont font = QApplication::font();
    CustomInfo record = sampleRecord();
    for (int points : {9, 10, 11, 12}) {
        QFont other = font;
        other.setPointSize(points);
        QApplication::setFont(other);
        CustomAdvProperty advanced(nullptr);
        advanced.initalDialog(&record);
        shootTabs(language + QStringLiteral("/advanced-%1pt").arg(points), &advanced);
    }
    QApplication::setFont(font);
}

void shootViews(const QString& language)
{
    CustomInfo record = sampleRecord();
    ShowDetailDlg detail(nullptr);
    detail.onInitDialog(record);
    shootTabs(language + QLatin1String("/detail"), &detail);
    QShowVpnAdv vpn(&detail);
    vpn.setInital();
    shootTabs(language + QLatin1String("/detail-vpn"), &vpn);
    for (int brand : {0, 1}) {
        g_ucAreaCode = static_cast<unsigned char>(brand);
        AboutInfoDlg about(nullptr);
        shoot(language + (brand == 0 ? QLatin1String("/about-tqm") : QLatin1String("/about-wy")), &about);
    }
    g_ucAreaCode = 0;
}

} // namespace

int main(int argc, char** argv)
{
    installation::clear();
    installation::installLanguageFiles();
    // The local server has the name of the application: one for each process.
    QCoreApplication::setApplicationName(
        QStringLiteral("orvex_screenshots-%1").arg(QCoreApplication::applicationPid()));
    CMyApplication application(argc, argv);
    if (application.m_bAlreadyRunning || argc < 2) {
        fprintf(stderr, "usage: orvex_screenshots DIRECTORY, one of the same build at a time\n");
        return 2;
    }
    s_directory = QString::fromLocal8Bit(argv[1]);
    const struct
    {
        const char* name;
        const char* code;
    } languages[] = {{"en", "1033"}, {"zh", "2052"}};
    for (const auto& language : languages) {
        installation::writeFile(installation::path(QStringLiteral("config.ini")),
                                QByteArray("[config]\nArea=tqm\nLangCode=") + language.code + "\n");
        const QString name = QLatin1String(language.name);
        shootMainWindow(name);
        shootPackWindows(name);
        shootAdvanced(name);
        shootAdvancedInOtherFonts(name);
        shootViews(name);
    }
    for (const QString& complaint : qAsConst(s_complaints))
        fprintf(stderr, "%s\n", complaint.toUtf8().constData());
    printf("%s: %d complaints\n", argv[1], int(s_complaints.size()));
    return s_complaints.isEmpty() ? 0 : 1;
}
