#include "support/EveryWindow.h"

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
#include "pack/WorkThread.h"
#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/WindowPlay.h"
#include "view/AboutInfoDlg.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "vpn/IpInfo.h"
#include "vpn/QVPNAdvProperty.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QStackedWidget>
#include <QTabWidget>
#include <QTreeWidget>

namespace {

using Opened = std::shared_ptr<QWidget>;

/// Opener of the VPN dialogs.
QWidget* holder(const Contents& contents)
{
    static windowplay::RecordHolder lender;
    lender.info = contents.record;
    return &lender;
}

template <class Window> Opened opened(Contents& /*contents*/)
{
    return std::make_shared<Window>(nullptr);
}

template <class Window> Opened withRecord(Contents& contents)
{
    const auto window = std::make_shared<Window>(nullptr);
    window->initalDialog(&contents.record);
    return window;
}

template <class Window> Opened withHolder(Contents& contents)
{
    const auto window = std::make_shared<Window>(holder(contents));
    window->setInital();
    return window;
}

std::shared_ptr<OrvexManager> mainWindow(const QVector<CustomInfo>& history)
{
    QDir(installation::path(QStringLiteral("UpdateCustom"))).removeRecursively();
    for (const CustomInfo& record : history)
        storeCustomisation(installation::root(), record);
    return std::make_shared<OrvexManager>(nullptr);
}

Opened mainAtFirst(Contents& /*contents*/)
{
    return mainWindow({});
}

Opened mainWithHistory(Contents& contents)
{
    return mainWindow(contents.history);
}

/// Made of the first customisation, which is selected in the history, with all components ticked.
Opened mainFromHistory(Contents& contents)
{
    const auto window = mainWindow(contents.history);
    for (QCheckBox* box : window->findChildren<QCheckBox*>())
        box->setChecked(true);
    windowplay::child<QComboBox>(*window, "comboBox_defaultCus")->setCurrentIndex(1);
    auto* tree = windowplay::child<QTreeWidget>(*window, "treeWidget_cusHis");
    tree->setCurrentItem(tree->topLevelItem(0));
    window->onItemClicked(tree->topLevelItem(0));
    return window;
}

Opened advancedAtFirst(Contents& /*contents*/)
{
    static Contents defaults;
    defaults = Contents();
    return withRecord<CustomAdvProperty>(defaults);
}

Opened details(Contents& contents)
{
    const auto window = std::make_shared<ShowDetailDlg>(nullptr);
    window->onInitDialog(contents.record);
    return window;
}

Opened progress(Contents& /*contents*/)
{
    const auto window = std::make_shared<PackingWait>(0, 0, nullptr);
    // It would close at once.
    QObject::disconnect(window->worker(), nullptr, window.get(), nullptr);
    window->setStepInfo(langText("gensetupBegin"));
    return window;
}

Opened reportOf(int packages, bool isFinish)
{
    const auto window = std::make_shared<CustomCompleteDlg>(nullptr);
    window->initalDialog(packages, isFinish);
    return window;
}

template <int packages> Opened report(Contents& /*contents*/)
{
    return reportOf(packages, true);
}

Opened placeOfUpdates(Contents& /*contents*/)
{
    return reportOf(PackageUpdate, false);
}

Opened domain(Contents& contents)
{
    return std::make_shared<CInput1XDomainDlg>(contents.record.domain, 0, QStringLiteral("staff.example"),
                                               QStringLiteral("Staff"), true, false, nullptr);
}

Opened gateway(Contents& contents)
{
    return std::make_shared<CSslVpnIp>(contents.record.sslvpn.remote.first(), CSslVpnIp::DefaultTicked, nullptr);
}

/// The brand is in force until the window is closed.
template <int brand> Opened about(Contents& /*contents*/)
{
    g_ucAreaCode = brand;
    return Opened(new AboutInfoDlg(nullptr), [](QWidget* window) {
        delete window;
        g_ucAreaCode = 0;
    });
}

Opened warning(Contents& /*contents*/)
{
    const auto box = std::make_shared<WarningBox>("manager_title");
    box->setText(langText("SelProtocolPls"));
    return box;
}

} // namespace

Contents distinctContents()
{
    Contents contents;
    contents.record = distinctRecord();
    contents.record.common.procomVal = 63;
    contents.record.common.funcomVal = 5;
    contents.history = {storedRecord(1700000001, QStringLiteral("2023-11-15 06:13:21"), QStringLiteral("1")),
                        storedRecord(1700000002, QStringLiteral("2023-11-15 06:13:22"), QString())};
    return contents;
}

const std::vector<ProgramWindow>& everyWindow()
{
    static const std::vector<ProgramWindow> windows = {
        {"main", mainAtFirst},
        {"main-with-history", mainWithHistory},
        {"main-from-history", mainFromHistory},
        {"finish", withRecord<FinishDlg>},
        {"progress", progress},
        {"report-0", report<0>},
        {"report-1", report<1>},
        {"report-2", report<2>},
        {"report-3", report<3>},
        {"report-4", report<4>},
        {"report-5", report<5>},
        {"report-6", report<6>},
        {"report-7", report<7>},
        {"place-of-updates", placeOfUpdates},
        {"advanced", withRecord<CustomAdvProperty>},
        {"advanced-at-first", advancedAtFirst},
        {"vpn", withHolder<QVPNAdvProperty>},
        {"route", opened<IpInfo>},
        {"wan-control", opened<WancontrolDlg>},
        {"dynamic-password", opened<CDynamicPwdDlg>},
        {"message-authentication", opened<CMsgAuthDlg>},
        {"wan-escape", opened<CWanEscapeDlg>},
        {"uninstall-password", opened<UninstallPasswd>},
        {"kef", opened<KEFCusOpt>},
        {"domain", domain},
        {"gateway", gateway},
        {"details", details},
        {"vpn-details", withHolder<QShowVpnAdv>},
        {"about-tqm", about<0>},
        {"about-wy", about<1>},
        {"warning", warning},
    };
    return windows;
}

std::shared_ptr<QWidget> openWindow(const QString& name, Contents& contents)
{
    for (const ProgramWindow& each : everyWindow()) {
        if (name == QLatin1String(each.name))
            return each.open(contents);
    }
    qFatal("no window %s", qPrintable(name));
}

void chooseLanguage(const QString& language)
{
    const QByteArray code = language == QLatin1String("zh") ? "2052" : "1033";
    installation::writeFile(installation::path(QStringLiteral("config.ini")),
                            "[config]\nArea=tqm\nLangCode=" + code + "\n");
    windowplay::useLanguage(language);
}

void addEveryWindow()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("window");
    for (const char* language : {"en", "zh"}) {
        for (const ProgramWindow& each : everyWindow())
            QTest::addRow("%s, %s", each.name, language)
                << QString::fromLatin1(language) << QString::fromLatin1(each.name);
    }
}

std::shared_ptr<QWidget> windowOfRow()
{
    QFETCH(QString, language);
    QFETCH(QString, window);
    static Contents contents;
    contents = distinctContents();
    chooseLanguage(language);
    const Opened shown = openWindow(window, contents);
    shown->setUpdatesEnabled(false); // nothing is looked at, and painting takes as long as the rest
    shown->show();
    shown->activateWindow();
    QCoreApplication::processEvents();
    return shown;
}

namespace {

/// Turns the pages of the window one after the other.
void turnPages(const QWidget& window, const std::function<void(const QString& page)>& look)
{
    const auto turn = [&look](int count, const std::function<QWidget*(int)>& toPage) {
        for (int index = 0; index < count; ++index) {
            const QWidget* page = toPage(index);
            QCoreApplication::processEvents();
            look(page->objectName());
        }
    };
    if (auto* tabs = window.findChild<QTabWidget*>()) {
        turn(tabs->count(), [tabs](int index) {
            tabs->setCurrentIndex(index);
            return tabs->currentWidget();
        });
    } else if (auto* pages = window.findChild<QStackedWidget*>(QStringLiteral("stackedWidget"))) {
        auto* choice = window.findChild<QListWidget*>(QStringLiteral("listWidget"));
        turn(pages->count(), [choice, pages](int index) {
            choice->setCurrentRow(index);
            return pages->currentWidget();
        });
    } else {
        look(QString());
    }
}

} // namespace

void onEveryPage(QWidget& window, const std::function<void(const QString& page, QWidget& shown)>& look)
{
    turnPages(window, [&](const QString& page) { look(page, window); });
    const auto* bar = window.findChild<QMenuBar*>();
    if (!bar)
        return;
    int number = 0;
    for (const QAction* title : bar->actions()) {
        title->menu()->popup(window.mapToGlobal(QPoint()));
        QCoreApplication::processEvents();
        look(QStringLiteral("menu-%1").arg(++number), *title->menu());
        title->menu()->hide();
    }
}
