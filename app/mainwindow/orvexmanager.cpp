#include "app/mainwindow/orvexmanager.h"

#include "app/language/LangText.h"
#include "app/widgets/AccessibleFaces.h"
#include "app/widgets/FitToTexts.h"
#include "app/widgets/WarningBox.h"
#include "app/widgets/WheelGuard.h"
#include "common/ProcessPath.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"
#include "common/Version.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"
#include "view/AboutInfoDlg.h"

#include <QActionGroup>
#include <QFileInfo>
#include <QScopedPointer>
#include <QScrollBar>
#include <QSettings>
#include <QToolBar>

namespace {

// Positions in the menus; null is a separator. refresh() addresses the entries by these positions.
const char* const fileKeys[] = {"menu_cusclient", "menu_cushistory", nullptr, "menu_exit"};
const char* const viewKeys[] = {"menu_toolbar", nullptr, "menu_viewClientLoc", "menu_viewUpdLoc", "menu_viewCusUpdLoc"};
const char* const languageKeys[] = {"menu_English", "menu_Chinese"};
const char* const helpKeys[] = {"menu_about"};

template <size_t count> void retranslate(QMenu* menu, const char* titleKey, const char* const (&keys)[count])
{
    menu->setTitle(langText(titleKey));
    const QList<QAction*> entries = menu->actions();
    for (int i = 0; i < entries.size() && i < int(count); ++i) {
        if (keys[i])
            entries.at(i)->setText(langText(keys[i]));
    }
}

QIcon icon(const char* file)
{
    return QIcon(QLatin1String(":/OrvexManager/Resources/") + QLatin1String(file));
}

} // namespace

OrvexManager::OrvexManager(QWidget* parent) : QMainWindow(parent)
{
    ui.setupUi(this);
    m_ulLanguageCode = 0;
    CMyApplication::current()->GetCurrentLanguageCode(m_ulLanguageCode);
    m_strAppDir = QString::fromLocal8Bit(processDirectory(false));
    setWindowIcon(QApplication::windowIcon());
    setObjectName(QStringLiteral("MainWindow"));

    createActions();
    setupMenuBar();
    createToolBar();
    createIcons();
    GetCurAllCustoms();

    ui.listWidget->setCurrentRow(0);
    ui.listWidget->setViewMode(QListView::IconMode);
    ui.listWidget->setIconSize(QSize(96, 84));
    ui.listWidget->setMovement(QListView::Static);
    // Contract: the form's minimum width of 170 stands beside this maximum.
    ui.listWidget->setMaximumWidth(128);
    ui.listWidget->setSpacing(12);
    ui.stackedWidget->setCurrentIndex(0);
    // The style sheets of the areas are not meant for their scroll bars.
    for (const QScrollArea* area : {ui.scrollArea_proComp, ui.scrollArea_funcComp}) {
        for (QScrollBar* bar : {area->verticalScrollBar(), area->horizontalScrollBar()})
            bar->setStyleSheet(QStringLiteral("background: none;"));
    }

    // Before the combo box is first filled, so that the first fill loads the defaults.
    connectPages();
    addHistoryCommands();
    const bool isChinese = m_ulLanguageCode == LANGUAGE_CHINESE && g_ucAreaCode == 0;
    m_pLanguageMenu->actions().at(isChinese ? 1 : 0)->setChecked(true);
    refresh();
    OnRepaintCustomCombo();

    ui.checkBox_ipsecvpnPro->hide();
    ui.checkBox_allSelect->hide();
    ui.toolButton_detail->setEnabled(false);
    ui.toolButton_delete->setEnabled(false);
    offerHistoryCommands();
    ui.checkBox_wlanPro->show();
    ui.checkBox_keffunc->show();
    keepWheelFromLists(*this);
    m_iSelIndex = -1;
    GetVersion();
    growForComponents(roomFor(*this));
}

OrvexManager::~OrvexManager() = default;

void OrvexManager::createActions()
{
    const auto create = [this](const char* file, const char* key) {
        QAction* action = new QAction(icon(file), langText(key), this);
        // On the window too: the shortcuts work while the toolbar is hidden.
        addAction(action);
        return action;
    };
    m_pCusClientAction = create("icon4.ico", "cusclient_tooltip");
    connect(m_pCusClientAction, &QAction::triggered, this, &OrvexManager::showCusClient);

    m_pCusHisAction = create("63.ico", "cusHis_tooltip");
    m_pCusHisAction->setShortcut(QKeySequence::Open);
    connect(m_pCusHisAction, &QAction::triggered, this, &OrvexManager::showCusHis);

    m_pAboutAction = create("Toolbarabout.ico", "about_tooltip");
    m_pAboutAction->setShortcut(QKeySequence::Save);
    connect(m_pAboutAction, &QAction::triggered, this, &OrvexManager::showAboutInfo);
}

void OrvexManager::setupMenuBar()
{
    m_pFileMenu = ui.menuBar->addMenu(langText("menu_file"));
    m_pFileMenu->addAction(langText("menu_cusclient"), this, &OrvexManager::showCusClient);
    m_pFileMenu->addAction(langText("menu_cushistory"), this, &OrvexManager::showCusHis);
    m_pFileMenu->addSeparator();
    m_pFileMenu->addAction(langText("menu_exit"), this, &OrvexManager::close);

    m_pViewMenu = ui.menuBar->addMenu(langText("menu_view"));
    QAction* toolBar = m_pViewMenu->addAction(langText("menu_toolbar"));
    toolBar->setCheckable(true);
    toolBar->setChecked(dockOptions().testFlag(QMainWindow::AnimatedDocks));
    connect(toolBar, &QAction::toggled, this, &OrvexManager::showToolBar);
    m_pViewMenu->addSeparator();
    m_pViewMenu->addAction(langText("menu_viewClientLoc"), this, &OrvexManager::onViewSetup);
    m_pViewMenu->addAction(langText("menu_viewUpdLoc"), this, &OrvexManager::onViewUpdate);
    m_pViewMenu->addAction(langText("menu_viewCusUpdLoc"), this, &OrvexManager::onViewCusUpd);

    m_pLanguageMenu = ui.menuBar->addMenu(langText("menu_Language"));
    QActionGroup* languages = new QActionGroup(this);
    languages->setExclusive(true);
    const auto addLanguage = [&](const char* key, void (OrvexManager::*change)()) {
        QAction* action = m_pLanguageMenu->addAction(langText(key), this, change);
        action->setCheckable(true);
        languages->addAction(action);
    };
    addLanguage("menu_English", &OrvexManager::changEnLanguage);
    if (g_ucAreaCode == 0)
        addLanguage("menu_Chinese", &OrvexManager::changZhLanguage);

    m_pHelpMenu = ui.menuBar->addMenu(langText("menu_help"));
    m_pHelpMenu->addAction(langText("menu_about"), this, &OrvexManager::showAboutInfo);
}

void OrvexManager::createToolBar()
{
    // Contract: the title is taken before a language is loaded, and stays; so it is kept out of sight.
    nameToolBarsAccessibly();
    m_pToolBar = addToolBar(langText("toolbar"));
    m_pToolBar->setFloatable(false);
    m_pToolBar->toggleViewAction()->setVisible(false);
    m_pToolBar->addAction(m_pCusClientAction);
    m_pToolBar->addSeparator();
    m_pToolBar->addAction(m_pCusHisAction);
    m_pToolBar->addSeparator();
    m_pToolBar->addAction(m_pAboutAction);
}

void OrvexManager::createIcons()
{
    const QAction* const actions[] = {m_pCusClientAction, m_pCusHisAction};
    for (int row = 0; row < 2; ++row) {
        QListWidgetItem* item = ui.listWidget->item(row);
        item->setIcon(actions[row]->icon());
        item->setTextAlignment(Qt::AlignHCenter);
        item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    }
}

void OrvexManager::connectPages()
{
    connect(ui.listWidget, &QListWidget::itemSelectionChanged, this, &OrvexManager::showPage);
    connect(ui.toolButton_adv, &QToolButton::clicked, this, &OrvexManager::showCusAdvProDlg);
    connect(ui.toolButton_finish, &QToolButton::clicked, this, &OrvexManager::showFinishDlg);
    connect(ui.comboBox_defaultCus, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &OrvexManager::onDefaultCusChg);
    connect(ui.treeWidget_cusHis, &QTreeWidget::itemClicked, this, &OrvexManager::onItemClicked);
    connect(ui.toolButton_detail, &QToolButton::clicked, this, &OrvexManager::onDetail);
    connect(ui.toolButton_delete, &QToolButton::clicked, this, &OrvexManager::onDelete);
    connect(ui.toolButton_deleteall, &QToolButton::clicked, this, &OrvexManager::onDeleteAll);
    connect(ui.checkBox_keffunc, &QCheckBox::clicked, this, &OrvexManager::onKefFunc);
}

void OrvexManager::showPage()
{
    const int page = ui.listWidget->currentRow();
    if (page == ui.stackedWidget->indexOf(ui.historyCustom))
        fitTimes();
    ui.stackedWidget->setCurrentIndex(page);
}

void OrvexManager::showCusClient()
{
    ui.listWidget->setCurrentRow(0);
}

void OrvexManager::showCusHis()
{
    ui.listWidget->setCurrentRow(1);
}

void OrvexManager::showToolBar(bool bShow)
{
    m_pToolBar->setVisible(bShow);
}

void OrvexManager::showAboutInfo()
{
    AboutInfoDlg(this).exec();
}

void OrvexManager::refresh()
{
    CMyApplication* application = CMyApplication::current();
    if (m_ulLanguageCode == LANGUAGE_CHINESE) {
        application->m_LanguageParser.LoadLanguage(m_strAppDir + QLatin1String("/Resources/Language_zh.xml"));
        application->installTranslator(application->m_pTranslator);
    } else {
        application->m_LanguageParser.LoadLanguage(m_strAppDir + QLatin1String("/Resources/Language_en.xml"));
        application->removeTranslator(application->m_pTranslator);
    }
    setWindowTitle(langText("manager_title"));
    retranslate(m_pFileMenu, "menu_file", fileKeys);
    retranslate(m_pViewMenu, "menu_view", viewKeys);
    retranslate(m_pLanguageMenu, "menu_Language", languageKeys);
    retranslate(m_pHelpMenu, "menu_help", helpKeys);
    m_pToolBar->setAccessibleName(langText("toolbar"));
    ui.listWidget->setAccessibleName(langText("manager_title"));
    ui.listWidget->item(0)->setText(langText("cusclient_tooltip"));
    ui.listWidget->item(1)->setText(langText("cusHis_tooltip"));

    const auto setTexts = [](QAction* action, const QString& text) {
        action->setText(text);
        action->setToolTip(text);
    };
    setTexts(m_pCusClientAction, langText("cusclient_tooltip"));
    setTexts(m_pCusHisAction, langText("cusHis_tooltip"));
    setTexts(m_pAboutAction, langText("about_tooltip"));
    refreshCusClient();
    refreshCusHis();
}

void OrvexManager::changEnLanguage()
{
    changeLanguage(LANGUAGE_ENGLISH);
}

void OrvexManager::changZhLanguage()
{
    changeLanguage(LANGUAGE_CHINESE);
}

void OrvexManager::changeLanguage(unsigned long code)
{
    const QString path = m_strAppDir + QLatin1String("/config.ini");
    // A pipe in the place of the file must not block the program.
    const QFileInfo file(path);
    const bool isKept = !file.exists() || file.isFile();
    QScopedPointer<QSettings> settings(isKept ? new QSettings(path, QSettings::IniFormat) : nullptr);
    if (settings) {
        settings->beginGroup(QStringLiteral("config"));
        settings->setValue(QStringLiteral("LangCode"), QString::number(code));
        settings->endGroup();
    }
    // Contract: the settings object is still alive here; the file may reach the disk only at the end of this function.
    runShellCommand("sync");
    m_ulLanguageCode = code;
    refresh();
    growForComponents(roomFor(*this));
}

void OrvexManager::onViewSetup()
{
    showPackagePlace(store::setup, PackageSetup);
}

void OrvexManager::onViewUpdate()
{
    showPackagePlace(store::update, PackageUpdate);
}

void OrvexManager::onViewCusUpd()
{
    showPackagePlace(store::cusUpdate, PackageCusUpd);
}

void OrvexManager::showPackagePlace(const char* directory, int mask)
{
    WarningBox box("manager_title", this);
    const QString path = m_strAppDir + QLatin1Char('/') + QLatin1String(directory);
    if (!utl_DirectoryExists(path.toLocal8Bit().constData())) {
        // Contract: this one text serves all three directories.
        box.say("NotFindSetup");
        return;
    }
    CustomCompleteDlg dialog(this);
    dialog.initalDialog(mask, false);
    dialog.exec();
}

void OrvexManager::GetVersion()
{
    // Contract: the English file is the one read, whatever the language.
    CLanguageParser english;
    english.LoadLanguage(m_strAppDir + QLatin1String("/Resources/Language_en.xml"));
    utl_SetVersionStrings(english.GetKey("version").toLocal8Bit(), english.GetKey("internalVersion").toLocal8Bit());
}
