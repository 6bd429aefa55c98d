#include "mainwindow/EveryWindow.h"

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
#include "mainwindow/MainWindowFixture.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"
#include "support/DistinctRecord.h"
#include "view/AboutInfoDlg.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "vpn/IpInfo.h"
#include "vpn/QVPNAdvProperty.h"

#include <QListWidget>
#include <QStackedWidget>
#include <QTabWidget>

namespace {

using Opened = std::shared_ptr<QWidget>;

/// Opener of the VPN dialogs.
QWidget* holder()
{
    static windowplay::RecordHolder lender;
    lender.info = recordOfEveryPage();
    return &lender;
}

template <class Window> Opened opened()
{
    return std::make_shared<Window>(nullptr);
}

template <class Window> Opened withRecord()
{
    const auto window = std::make_shared<Window>(nullptr);
    window->initalDialog(&recordOfEveryPage());
    return window;
}

template <class Window> Opened withHolder()
{
    const auto window = std::make_shared<Window>(holder());
    window->setInital();
    return window;
}

Opened details()
{
    const auto window = std::make_shared<ShowDetailDlg>(nullptr);
    window->onInitDialog(recordOfEveryPage());
    return window;
}

Opened progress()
{
    const auto window = std::make_shared<PackingWait>(0, 0, nullptr);
    // It would close at once.
    QObject::disconnect(window->worker(), nullptr, window.get(), nullptr);
    return window;
}

Opened report()
{
    const auto window = std::make_shared<CustomCompleteDlg>(nullptr);
    window->initalDialog(PackageSetup + PackageUpdate + PackageCusUpd, true);
    return window;
}

Opened domain()
{
    return std::make_shared<CInput1XDomainDlg>(recordOfEveryPage().domain, 0, QStringLiteral("staff.example"),
                                               QStringLiteral("Staff"), true, false, nullptr);
}

Opened gateway()
{
    return std::make_shared<CSslVpnIp>(recordOfEveryPage().sslvpn.remote.first(), CSslVpnIp::DefaultTicked, nullptr);
}

Opened warning()
{
    const auto box = std::make_shared<WarningBox>("manager_title");
    box->setText(langText("SelProtocolPls"));
    return box;
}

} // namespace

CustomInfo& recordOfEveryPage()
{
    static CustomInfo record = [] {
        CustomInfo full = distinctRecord();
        full.common.procomVal = 63;
        full.common.funcomVal = 5;
        return full;
    }();
    return record;
}

const std::vector<ProgramWindow>& everyWindow()
{
    static const std::vector<ProgramWindow> windows = {
        {"main window", opened<OrvexManager>},
        {"advanced", withRecord<CustomAdvProperty>},
        {"VPN", withHolder<QVPNAdvProperty>},
        {"route", opened<IpInfo>},
        {"WAN control", opened<WancontrolDlg>},
        {"dynamic password", opened<CDynamicPwdDlg>},
        {"message authentication", opened<CMsgAuthDlg>},
        {"WAN escape", opened<CWanEscapeDlg>},
        {"uninstall password", opened<UninstallPasswd>},
        {"KEF", opened<KEFCusOpt>},
        {"domain", domain},
        {"gateway", gateway},
        {"finish", withRecord<FinishDlg>},
        {"progress", progress},
        {"report", report},
        {"details", details},
        {"VPN details", withHolder<QShowVpnAdv>},
        {"about", opened<AboutInfoDlg>},
        {"warning", warning},
    };
    return windows;
}

void addEveryWindow()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("window");
    for (const char* language : {"en", "zh"}) {
        for (std::size_t index = 0; index < everyWindow().size(); ++index)
            QTest::addRow("%s, %s", everyWindow()[index].name, language) << QString::fromLatin1(language) << int(index);
    }
}

Opened windowOfRow()
{
    QFETCH(QString, language);
    QFETCH(int, window);
    const ProgramWindow& chosen = everyWindow().at(std::size_t(window));
    if (chosen.open == static_cast<Opened (*)()>(opened<OrvexManager>)) {
        prepareInstallation();
        writeSettings(language == QLatin1String("zh") ? "Area=tqm\nLangCode=2052\n" : "Area=tqm\nLangCode=1033\n");
        storeRow(1700000001, "2023-11-15 06:13:21", "one");
        storeRow(1700000002, "2023-11-15 06:13:22", "");
    }
    windowplay::useLanguage(language);
    const Opened shown = chosen.open();
    shown->show();
    shown->activateWindow();
    QCoreApplication::processEvents();
    return shown;
}

void onEveryPage(QWidget& window, const std::function<void(const QString& page)>& look)
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
