#include "app/language/LangText.h"
#include "common/Version.h"
#include "mainwindow/MainWindowFixture.h"
#include "pack/CustomCompleteDlg.h"
#include "support/CommandRecorder.h"
#include "support/TestEntry.h"
#include "view/AboutInfoDlg.h"

#include <QAction>
#include <QDir>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QScopedValueRollback>
#include <QSettings>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTranslator>

using windowplay::click;

namespace {

QMenu* menu(const OrvexManager& window, int index)
{
    return child<QMenuBar>(window, "menuBar")->actions().at(index)->menu();
}

QStringList entries(const QMenu* menu)
{
    QStringList texts;
    for (const QAction* action : menu->actions())
        texts.append(action->isSeparator() ? QStringLiteral("-") : action->text());
    return texts;
}

QStringList textsOf(std::initializer_list<const char*> keys)
{
    QStringList texts;
    for (const char* key : keys)
        texts.append(key ? langText(key) : QStringLiteral("-"));
    return texts;
}

} // namespace

class TstOrvexManagerFrame : public QObject
{
    Q_OBJECT

private slots:
    void init() { prepareInstallation(); }

    void standsAsTheFormSays();
    void theSelectorKeepsBothItsMinimumAndItsSmallerMaximum();
    void menusHoldTheirEntriesInOrder();
    void theLanguageMenuTicksTheLanguageInUse();
    void theWyBrandHasASingleLanguageEntryThatIsTicked();
    void theSingleEntryIsTickedEvenWhenTheLanguageIsChinese();
    void pagesFollowTheSelectorTheMenuAndTheShortcuts();
    void shortcutsWorkWhileTheToolBarIsHidden();
    void untickingTheToolBarEntryHidesItAndTheEntryStays();
    void theToolBarKeepsTheTitleOfItsFirstMoment();
    void theAboutCommandOpensTheBox();
    void changingTheLanguageWritesTheSettingAndRewritesTheTexts();
    void theSettingIsNotYetOnDiskWhenSyncRuns();
    void choosingTheTickedLanguageRewritesTheSettingAndReadsTheFileAgain();
    void aSettingsFileThatCannotBeWrittenIsNotNoticed();
    void theTranslatorIsInstalledWhileTheLanguageIsChinese();
    void aLanguageSwitchLeavesTheRecordAlone();
    void aLanguageSwitchWaitsForNoPipe();
    void aLanguageSwitchKeepsWhatTheNewFileLacks();
    void aMissingLanguageFileLeavesTheOldWords();
    void withoutAnyLanguageFileEveryTextIsNull();
    void packagePlacesOpenWhenTheirDirectoriesExist_data();
    void packagePlacesOpenWhenTheirDirectoriesExist();
    void packagePlacesThatDoNotExistAreRefused_data();
    void packagePlacesThatDoNotExistAreRefused();
    void versionsComeFromTheEnglishFileInEveryLanguage();
    void exitClosesTheWindow();
};

void TstOrvexManagerFrame::standsAsTheFormSays()
{
    const ApplicationFont font(9); // a larger one makes the window grow
    OrvexManager window(nullptr);
    QCOMPARE(window.objectName(), QStringLiteral("MainWindow"));
    QCOMPARE(window.size(), QSize(694, 551));
    QCOMPARE(window.windowTitle(), langText("manager_title"));
    QVERIFY(!window.windowIcon().isNull());

    const QListWidget* selector = child<QListWidget>(window, "listWidget");
    QCOMPARE(selector->count(), 2);
    QCOMPARE(selector->currentRow(), 0);
    QCOMPARE(selector->viewMode(), QListView::IconMode);
    QCOMPARE(selector->iconSize(), QSize(96, 84));
    QCOMPARE(selector->movement(), QListView::Static);
    QCOMPARE(selector->spacing(), 12);
    QCOMPARE(selector->font().pointSize(), 10);
    QVERIFY(selector->font().bold());
    for (int row = 0; row < 2; ++row) {
        QVERIFY(!selector->item(row)->icon().isNull());
        QCOMPARE(selector->item(row)->textAlignment(), int(Qt::AlignHCenter));
        QCOMPARE(selector->item(row)->flags(), Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    }
    QCOMPARE(selector->item(0)->text(), langText("cusclient_tooltip"));
    QCOMPARE(selector->item(1)->text(), langText("cusHis_tooltip"));
    const QStackedWidget* pages = child<QStackedWidget>(window, "stackedWidget");
    QCOMPARE(pages->widget(0)->objectName(), QStringLiteral("clientCustom"));
    QCOMPARE(pages->widget(1)->objectName(), QStringLiteral("historyCustom"));
}

void TstOrvexManagerFrame::theSelectorKeepsBothItsMinimumAndItsSmallerMaximum()
{
    OrvexManager window(nullptr);
    window.show();
    const QListWidget* selector = child<QListWidget>(window, "listWidget");
    QCOMPARE(selector->minimumWidth(), 170);
    QCOMPARE(selector->maximumWidth(), 128);
    // Its entries stay in sight all the same.
    for (int row = 0; row < 2; ++row)
        QVERIFY(selector->viewport()->rect().contains(selector->visualItemRect(selector->item(row)).center()));
}

void TstOrvexManagerFrame::menusHoldTheirEntriesInOrder()
{
    const OrvexManager window(nullptr);
    const QList<QAction*> menus = child<QMenuBar>(window, "menuBar")->actions();
    QStringList titles;
    for (const QAction* action : menus)
        titles.append(action->text());
    QCOMPARE(titles, textsOf({"menu_file", "menu_view", "menu_Language", "menu_help"}));
    QCOMPARE(entries(menu(window, 0)), textsOf({"menu_cusclient", "menu_cushistory", nullptr, "menu_exit"}));
    QCOMPARE(entries(menu(window, 1)),
             textsOf({"menu_toolbar", nullptr, "menu_viewClientLoc", "menu_viewUpdLoc", "menu_viewCusUpdLoc"}));
    QCOMPARE(entries(menu(window, 2)), textsOf({"menu_English", "menu_Chinese"}));
    QCOMPARE(entries(menu(window, 3)), textsOf({"menu_about"}));
    for (const QAction* entry : menu(window, 0)->actions())
        QVERIFY(entry->shortcut().isEmpty());
    QVERIFY(menu(window, 1)->actions().first()->isChecked());
}

void TstOrvexManagerFrame::theLanguageMenuTicksTheLanguageInUse()
{
    {
        const OrvexManager english(nullptr);
        QVERIFY(menu(english, 2)->actions().at(0)->isChecked());
        QVERIFY(!menu(english, 2)->actions().at(1)->isChecked());
    }
    writeSettings("Area=tqm\nLangCode=2052\n");
    const OrvexManager chinese(nullptr);
    QVERIFY(!menu(chinese, 2)->actions().at(0)->isChecked());
    QVERIFY(menu(chinese, 2)->actions().at(1)->isChecked());
    QCOMPARE(chinese.windowTitle(), QStringLiteral("Orvex定制管理程序"));
}

void TstOrvexManagerFrame::theWyBrandHasASingleLanguageEntryThatIsTicked()
{
    writeSettings("Area=wy\nLangCode=2052\n");
    const OrvexManager window(nullptr);
    QCOMPARE(menu(window, 2)->actions().size(), 1);
    QVERIFY(menu(window, 2)->actions().first()->isChecked());
    QCOMPARE(entries(menu(window, 2)), QStringList{QStringLiteral("&English")});
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex Customisation Manager"));
}

void TstOrvexManagerFrame::theSingleEntryIsTickedEvenWhenTheLanguageIsChinese()
{
    // The settings name no brand, so the one in force stays.
    g_ucAreaCode = 1;
    writeSettings("LangCode=2052\n");
    const OrvexManager window(nullptr);
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex定制管理程序"));
    QCOMPARE(menu(window, 2)->actions().size(), 1);
    QVERIFY(menu(window, 2)->actions().first()->isChecked());
}

void TstOrvexManagerFrame::pagesFollowTheSelectorTheMenuAndTheShortcuts()
{
    OrvexManager window(nullptr);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QListWidget* selector = child<QListWidget>(window, "listWidget");
    const QStackedWidget* pages = child<QStackedWidget>(window, "stackedWidget");
    const auto clickItem = [selector](int row) {
        QTest::mouseClick(selector->viewport(), Qt::LeftButton, Qt::NoModifier,
                          selector->visualItemRect(selector->item(row)).center());
    };
    clickItem(1);
    QCOMPARE(pages->currentIndex(), 1);
    clickItem(0);
    QCOMPARE(pages->currentIndex(), 0);
    menu(window, 0)->actions().at(1)->trigger();
    QCOMPARE(pages->currentIndex(), 1);
    QCOMPARE(selector->currentRow(), 1);
    menu(window, 0)->actions().at(0)->trigger();
    QCOMPARE(pages->currentIndex(), 0);
    QTest::keyClick(child<QWidget>(window, "comboBox_defaultCus"), Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(pages->currentIndex(), 1);
    child<QToolBar>(window, "")->actions().first()->trigger();
    QCOMPARE(pages->currentIndex(), 0);
}

void TstOrvexManagerFrame::shortcutsWorkWhileTheToolBarIsHidden()
{
    OrvexManager window(nullptr);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    menu(window, 1)->actions().first()->trigger();
    QTest::keyClick(&window, Qt::Key_O, Qt::ControlModifier);
    QCOMPARE(child<QStackedWidget>(window, "stackedWidget")->currentIndex(), 1);
    ModalScript script;
    script.expect<AboutInfoDlg>([](AboutInfoDlg& about) { about.close(); });
    QTest::keyClick(&window, Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(script.complaints(), QStringList());
}

void TstOrvexManagerFrame::untickingTheToolBarEntryHidesItAndTheEntryStays()
{
    OrvexManager window(nullptr);
    window.show();
    const QToolBar* toolBar = window.findChild<QToolBar*>();
    QAction* entry = menu(window, 1)->actions().first();
    QVERIFY(toolBar->isVisible());
    entry->trigger();
    QVERIFY(!toolBar->isVisible());
    QVERIFY(entry->isVisible());
    entry->trigger();
    QVERIFY(toolBar->isVisible());
}

void TstOrvexManagerFrame::theToolBarKeepsTheTitleOfItsFirstMoment()
{
    // A fresh process has no language yet.
    CMyApplication::current()->m_LanguageParser = CLanguageParser();
    OrvexManager window(nullptr);
    const QToolBar* toolBar = window.findChild<QToolBar*>();
    QCOMPARE(toolBar->windowTitle(), QStringLiteral("NULL"));
    window.changZhLanguage();
    QCOMPARE(toolBar->windowTitle(), QStringLiteral("NULL"));
    // So the word is kept out of sight.
    QVERIFY(!toolBar->toggleViewAction()->isVisible());
    QVERIFY(!toolBar->isFloatable());
}

void TstOrvexManagerFrame::theAboutCommandOpensTheBox()
{
    OrvexManager window(nullptr);
    for (QAction* action : {menu(window, 3)->actions().first(), window.findChild<QToolBar*>()->actions().last()}) {
        ModalScript script;
        bool isChild = false;
        script.expect<AboutInfoDlg>([&](AboutInfoDlg& about) {
            isChild = about.parent() == &window;
            click(about, "toolButton");
        });
        action->trigger();
        QCOMPARE(script.complaints(), QStringList());
        QVERIFY(isChild);
    }
}

void TstOrvexManagerFrame::changingTheLanguageWritesTheSettingAndRewritesTheTexts()
{
    OrvexManager window(nullptr);
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    menu(window, 2)->actions().at(1)->trigger();
    QCOMPARE(recorder.commands(), QByteArrayList{"sync"});
    const QByteArray settings = installation::readFile(installation::path(QStringLiteral("config.ini")));
    QCOMPARE(settings, QByteArray("[config]\nArea=tqm\nLangCode=2052\n"));
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex定制管理程序"));
    QCOMPARE(child<QToolButton>(window, "toolButton_finish")->text(), QStringLiteral("完成"));
    QCOMPARE(child<QToolButton>(window, "toolButton_deleteall")->text(), QStringLiteral("全部删除"));
    QCOMPARE(menu(window, 0)->title(), langText("menu_file"));
    QCOMPARE(entries(menu(window, 1)).first(), langText("menu_toolbar"));

    menu(window, 2)->actions().at(0)->trigger();
    QVERIFY(installation::readFile(installation::path(QStringLiteral("config.ini"))).contains("LangCode=1033\n"));
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex Customisation Manager"));
}

void TstOrvexManagerFrame::theSettingIsNotYetOnDiskWhenSyncRuns()
{
    OrvexManager window(nullptr);
    const QString settings = installation::path(QStringLiteral("config.ini"));
    QByteArray duringSync;
    const CommandRecorder recorder(CommandRecorder::RecordOnly, [&](const QByteArray& command) {
        if (command == "sync")
            duringSync = installation::readFile(settings);
    });
    window.changZhLanguage();
    QCOMPARE(recorder.commands(), QByteArrayList{"sync"});
    QCOMPARE(duringSync, QByteArray("[config]\nArea=tqm\nLangCode=1033\n"));
    QCOMPARE(installation::readFile(settings), QByteArray("[config]\nArea=tqm\nLangCode=2052\n"));
}

void TstOrvexManagerFrame::choosingTheTickedLanguageRewritesTheSettingAndReadsTheFileAgain()
{
    OrvexManager window(nullptr);
    writeSettings("Area=tqm\n");
    const QString english = installation::path(QStringLiteral("Resources/Language_en.xml"));
    installation::writeFile(english, installation::readFile(english).replace("Orvex Customisation Manager", "Anew"));
    QAction* entry = menu(window, 2)->actions().at(0);
    QVERIFY(entry->isChecked());
    entry->trigger();
    QVERIFY(installation::readFile(installation::path(QStringLiteral("config.ini"))).contains("LangCode=1033\n"));
    QCOMPARE(window.windowTitle(), QStringLiteral("Anew"));
    QVERIFY(entry->isChecked());
}

void TstOrvexManagerFrame::aSettingsFileThatCannotBeWrittenIsNotNoticed()
{
    OrvexManager window(nullptr);
    const QString settings = installation::path(QStringLiteral("config.ini"));
    QVERIFY(QFile::remove(settings));
    QVERIFY(QDir().mkpath(settings));
    ModalScript script;
    menu(window, 2)->actions().at(1)->trigger();
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex定制管理程序"));
    QVERIFY(QDir().rmdir(settings));
    // Qt keeps what it could not write; it goes out here and not in the tests that follow.
    QSettings(settings, QSettings::IniFormat).sync();
}

void TstOrvexManagerFrame::theTranslatorIsInstalledWhileTheLanguageIsChinese()
{
    class Translator : public QTranslator
    {
    public:
        bool isEmpty() const override { return false; }
        QString translate(const char*, const char*, const char*, int) const override
        {
            return QStringLiteral("translated");
        }
    };
    const auto isInstalled = [] {
        return QCoreApplication::translate("context", "text") == QLatin1String("translated");
    };
    CMyApplication* application = CMyApplication::current();
    Translator translator;
    const QScopedValueRollback<QTranslator*> before(application->m_pTranslator, &translator);
    OrvexManager window(nullptr);
    QVERIFY(!isInstalled());
    window.changZhLanguage();
    QVERIFY(isInstalled());
    window.changEnLanguage();
    QVERIFY(!isInstalled());
}

void TstOrvexManagerFrame::aLanguageSwitchLeavesTheRecordAlone()
{
    OrvexManager window(nullptr);
    tick(window, "checkBox_sslvpnPro", true);
    const QStringList before = tickedBoxes(window);
    window.changZhLanguage();
    QCOMPARE(tickedBoxes(window), before);
    QCOMPARE(window.record().common.procomVal, quint64(3));
}

void TstOrvexManagerFrame::aLanguageSwitchWaitsForNoPipe()
{
    const QString settings = installation::path(QStringLiteral("config.ini"));
    QFile::remove(settings);
    installation::run(QStringLiteral("mkfifo"), {settings});
    OrvexManager window(nullptr);
    const CommandRecorder recorder(CommandRecorder::RecordOnly);
    window.changZhLanguage();
    const QStringList commands = installation::withoutRoot(recorder.commands());
    const bool isStillAPipe = QFileInfo(settings).exists() && !QFileInfo(settings).isFile();
    QVERIFY(QFile::remove(settings));
    QVERIFY(isStillAPipe);
    QCOMPARE(commands, QStringList(QStringLiteral("sync")));
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex定制管理程序"));
}

void TstOrvexManagerFrame::aLanguageSwitchKeepsWhatTheNewFileLacks()
{
    OrvexManager window(nullptr);
    installation::writeFile(installation::path(QStringLiteral("Resources/Language_zh.xml")),
                            "<texts><control key=\"manager_title\">only this</control></texts>");
    window.changZhLanguage();
    QCOMPARE(window.windowTitle(), QStringLiteral("only this"));
    QCOMPARE(child<QToolButton>(window, "toolButton_finish")->text(), QStringLiteral("Finish"));
}

void TstOrvexManagerFrame::aMissingLanguageFileLeavesTheOldWords()
{
    OrvexManager window(nullptr);
    QVERIFY(QFile::remove(installation::path(QStringLiteral("Resources/Language_zh.xml"))));
    window.changZhLanguage();
    QCOMPARE(window.windowTitle(), QStringLiteral("Orvex Customisation Manager"));
}

void TstOrvexManagerFrame::withoutAnyLanguageFileEveryTextIsNull()
{
    CMyApplication::current()->m_LanguageParser = CLanguageParser();
    QVERIFY(QDir(installation::path(QStringLiteral("Resources"))).removeRecursively());
    const OrvexManager window(nullptr);
    QCOMPARE(window.windowTitle(), QStringLiteral("NULL"));
    QCOMPARE(child<QToolButton>(window, "toolButton_finish")->text(), QStringLiteral("NULL"));
    QCOMPARE(QByteArray(utl_GetVersion()), QByteArray("NULL"));
    QCOMPARE(QByteArray(utl_OrvexVerDisplay()), QByteArray("Orvex PC ULL (L)"));
}

void TstOrvexManagerFrame::packagePlacesOpenWhenTheirDirectoriesExist_data()
{
    QTest::addColumn<int>("entry");
    QTest::addColumn<QString>("directory");
    QTest::addColumn<QString>("row");
    QTest::newRow("setup") << 2 << QStringLiteral("OrvexSetup") << QStringLiteral("widget_setup");
    QTest::newRow("update") << 3 << QStringLiteral("OrvexUpdate") << QStringLiteral("widget_update");
    QTest::newRow("customised update") << 4 << QStringLiteral("OrvexCusUpd") << QStringLiteral("widget_cusupd");
}

void TstOrvexManagerFrame::packagePlacesOpenWhenTheirDirectoriesExist()
{
    QFETCH(int, entry);
    QFETCH(QString, directory);
    QFETCH(QString, row);
    QDir().mkpath(installation::path(directory));
    OrvexManager window(nullptr);
    QStringList visibleRows;
    bool successLine = true;
    bool isChild = false;
    ModalScript script;
    script.expect<CustomCompleteDlg>([&](CustomCompleteDlg& dialog) {
        for (const char* name : {"widget_setup", "widget_update", "widget_cusupd"}) {
            if (child<QWidget>(dialog, name)->isVisible())
                visibleRows.append(QLatin1String(name));
        }
        successLine = child<QWidget>(dialog, "label_customSuccHint")->isVisible();
        isChild = dialog.parent() == &window;
        click(dialog, "pushButton_exit");
    });
    menu(window, 1)->actions().at(entry)->trigger();
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(visibleRows, QStringList{row});
    QVERIFY(!successLine);
    QVERIFY(isChild);
}

void TstOrvexManagerFrame::packagePlacesThatDoNotExistAreRefused_data()
{
    QTest::addColumn<int>("entry");
    QTest::newRow("setup") << 2;
    QTest::newRow("update") << 3;
    QTest::newRow("customised update") << 4;
}

void TstOrvexManagerFrame::packagePlacesThatDoNotExistAreRefused()
{
    QFETCH(int, entry);
    OrvexManager window(nullptr);
    ShownBox shown;
    ModalScript script;
    script.expect<QMessageBox>(answer(shown));
    menu(window, 1)->actions().at(entry)->trigger();
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(isWarning(shown, window, "NotFindSetup"));
}

void TstOrvexManagerFrame::versionsComeFromTheEnglishFileInEveryLanguage()
{
    writeSettings("Area=tqm\nLangCode=2052\n");
    const QString chinese = installation::path(QStringLiteral("Resources/Language_zh.xml"));
    QByteArray text = installation::readFile(chinese);
    text.replace("V7.2-R0408E", "V9.9-R9999Z");
    installation::writeFile(chinese, text);
    const OrvexManager window(nullptr);
    QCOMPARE(QByteArray(utl_OrvexVerDisplay()), QByteArray("Orvex PC 7.2 (E0408)"));
    QCOMPARE(QByteArray(utl_GetVersion()), QByteArray("V7.2-R0408E"));
    QCOMPARE(QByteArray(utl_OrvexInterVerDisplay()), QByteArray("7.2.0408.115"));
}

void TstOrvexManagerFrame::exitClosesTheWindow()
{
    class CloseCounter : public QObject
    {
    public:
        int closes = 0;
        bool eventFilter(QObject*, QEvent* event) override
        {
            closes += event->type() == QEvent::Close;
            return false;
        }
    };
    OrvexManager window(nullptr);
    CloseCounter counter;
    window.installEventFilter(&counter);
    window.show();
    menu(window, 0)->actions().at(3)->trigger();
    QVERIFY(!window.isVisible());
    QCOMPARE(counter.closes, 1);
}

TEST_ENTRY(orvexmanager_frame, playTest<TstOrvexManagerFrame>)

#include "tst_orvexmanager_frame.moc"
