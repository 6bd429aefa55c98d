#include "screenshots/Visit.h"

#include "app/language/LangText.h"
#include "pack/PackingWait.h"
#include "support/EveryWindow.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/WindowPlay.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGuiApplication>
#include <QListWidget>
#include <QResizeEvent>
#include <QTabWidget>
#include <QTest>
#include <QTextEdit>
#include <QTreeWidget>

using windowplay::child;

namespace {

/// A fresh installation, in that language.
void prepare(const QString& language)
{
    installation::clear();
    installation::installLanguageFiles();
    chooseLanguage(language);
}

/// A window that is shown and visited. The display answers each size that the window gives itself, and an answer that
/// comes late takes it back to an earlier size for a moment.
class Shown : public QObject
{
public:
    explicit Shown(QWidget& window) : m_window(window)
    {
        // Visitors draw the window themselves. That the display shows it too would take as long.
        window.setUpdatesEnabled(false);
        window.installEventFilter(this);
        window.show();
        m_size = window.size();
    }

    /// Visits the window as it is laid out now.
    void visit(const Visit& visit, const QString& page)
    {
        const bool isAnswered = QTest::qWaitFor([this] {
            QCoreApplication::processEvents();
            QGuiApplication::sync();
            const QSize off = m_window.size() - m_size;
            return qAbs(off.width()) <= 1 && qAbs(off.height()) <= 1; // what scales round off
        });
        if (!isAnswered)
            qWarning("%s has not the size that it took", qPrintable(page));
        m_window.setUpdatesEnabled(true);
        visit(page, m_window);
        m_window.setUpdatesEnabled(false);
    }

    /// The same with the tab of that name in front.
    void visitTab(const Visit& look, const QString& page, const char* name)
    {
        child<QTabWidget>(m_window, "tabWidget")->setCurrentWidget(child<QWidget>(m_window, name));
        visit(look, page);
    }

private:
    bool eventFilter(QObject* /*window*/, QEvent* event) override
    {
        if (event->type() == QEvent::Resize && !event->spontaneous())
            m_size = static_cast<QResizeEvent*>(event)->size();
        return false;
    }

    QWidget& m_window;
    QSize m_size; // which the window gave itself last
};

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

/// That record, and two more customisations in the history.
Contents sampleContents(const QString& language)
{
    const bool isChinese = language == QLatin1String("zh");
    Contents contents;
    contents.record = sampleRecord(language);
    contents.history = {
        contents.record,
        storedRecord(1710000000, QStringLiteral("2024-03-10 00:00:00"),
                     isChinese ? QStringLiteral("总部") : QStringLiteral("Headquarters"), 3, 1),
        storedRecord(1720000000, QStringLiteral("2024-07-03 17:46:40"),
                     isChinese ? QStringLiteral("合作伙伴的远程访问") : QStringLiteral("Remote access of partners"), 16,
                     0)};
    return contents;
}

void showEveryWindow(const Visit& visit, Contents& contents)
{
    for (const ProgramWindow& each : everyWindow()) {
        const QString name = QString::fromLatin1(each.name);
        const std::shared_ptr<QWidget> window = each.open(contents);
        Shown whole(*window);
        onEveryPage(*window, [&](const QString& page, QWidget& part) {
            const QString picture = page.isEmpty() ? name : name + QLatin1Char('-') + page;
            if (&part == window.get())
                whole.visit(visit, picture);
            else
                Shown(part).visit(visit, picture);
        });
    }
}

} // namespace

void visitEveryWindow(const QString& language, const Visit& visit)
{
    prepare(language);
    Contents contents = sampleContents(language);
    showEveryWindow(visit, contents);
}

void visitEveryWindowWithLongTexts(const QString& language, const Visit& visit)
{
    prepare(language);
    Contents contents;
    contents.record = sampleRecord(language);
    CustomInfo& record = contents.record;
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
    contents.history = {record};
    showEveryWindow(visit, contents);
}

void visitDocumentedWindows(const QString& language, const Visit& visit)
{
    prepare(language);
    Contents contents = sampleContents(language);
    const std::shared_ptr<QWidget> window = openWindow(QStringLiteral("main-with-history"), contents);
    Shown main(*window);
    main.visit(visit, QStringLiteral("main"));
    auto* start = child<QComboBox>(*window, "comboBox_defaultCus");
    start->setCurrentIndex(start->findText(contents.record.common.cusTimeString, Qt::MatchStartsWith));
    main.visit(visit, QStringLiteral("client"));
    child<QListWidget>(*window, "listWidget")->setCurrentRow(1);
    auto* tree = child<QTreeWidget>(*window, "treeWidget_cusHis");
    tree->setCurrentItem(tree->topLevelItem(0));
    emit tree->itemClicked(tree->topLevelItem(0), 0);
    main.visit(visit, QStringLiteral("history"));

    const std::shared_ptr<QWidget> advanced = openWindow(QStringLiteral("advanced"), contents);
    Shown editor(*advanced);
    editor.visitTab(visit, QStringLiteral("advanced-8021x"), "tab_8021x");
    editor.visitTab(visit, QStringLiteral("advanced-sslvpn"), "tab_sslvpn");
    editor.visitTab(visit, QStringLiteral("advanced-vpn"), "tab_l2tp");

    const std::shared_ptr<QWidget> finish = openWindow(QStringLiteral("finish"), contents);
    for (QCheckBox* box : finish->findChildren<QCheckBox*>())
        box->setChecked(true);
    Shown(*finish).visit(visit, QStringLiteral("finish"));
    const std::shared_ptr<QWidget> progress = openWindow(QStringLiteral("progress"), contents);
    for (const char* key : {"gensetupSucc", "genupdateBegin"})
        static_cast<PackingWait&>(*progress).setStepInfo(langText(key));
    Shown(*progress).visit(visit, QStringLiteral("progress"));
    const std::shared_ptr<QWidget> report = openWindow(QStringLiteral("report-7"), contents);
    for (QTextEdit* place : report->findChildren<QTextEdit*>())
        place->setPlainText(place->toPlainText().replace(installation::root(),
                                                         QLatin1String("/opt/apps/com.manager.orvex.amd/files/")));
    Shown(*report).visit(visit, QStringLiteral("completion"));

    const std::shared_ptr<QWidget> details = openWindow(QStringLiteral("details"), contents);
    Shown(*details).visitTab(visit, QStringLiteral("view"), "tab_Sslvpn");
}
