#include "player/Player.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTextEdit>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest/QTest>

namespace {

const char mainWindow[] = "OrvexManager";

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

std::function<bool()> shown(const char* className)
{
    return [className] { return Player::window(className) != nullptr; };
}

bool mainWindowIsFree()
{
    return Player::window(mainWindow) && !QApplication::activeModalWidget() && !QApplication::activePopupWidget();
}

void pressOk(QWidget* window, const char* boxName)
{
    QDialogButtonBox* box = window->findChild<QDialogButtonBox*>(QString::fromLatin1(boxName));
    Player::click(box ? box->button(QDialogButtonBox::Ok) : nullptr);
}

void setTicked(const char* className, const char* boxName, bool ticked)
{
    QCheckBox* box = Player::child<QCheckBox>(className, boxName);
    if (!box || box->isChecked() != ticked)
        Player::click(box);
}

void showTab(QTabWidget* tabs, const char* pageName)
{
    for (int i = 0; i < tabs->count(); ++i) {
        if (tabs->widget(i)->objectName() == QLatin1String(pageName)) {
            QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier, tabs->tabBar()->tabRect(i).center());
            return;
        }
    }
    Player::fail(QStringLiteral("no such tab: ") + QLatin1String(pageName));
}

/// Two steps: opens a menu of the main window and chooses an entry, by their positions.
void chooseFromMenu(Player& player, const QString& title, int menuIndex, int entryIndex)
{
    const auto menu = [menuIndex]() -> QMenu* {
        const QMenuBar* bar = Player::child<QMenuBar>(mainWindow, "menuBar");
        return bar ? bar->actions().at(menuIndex)->menu() : nullptr;
    };
    player.step(title, mainWindowIsFree, [menu] {
        QMenuBar* bar = Player::child<QMenuBar>(mainWindow, "menuBar");
        QTest::mouseClick(bar, Qt::LeftButton, Qt::NoModifier, bar->actionGeometry(menu()->menuAction()).center());
    });
    player.step(
        QString(), [menu] { return menu() && menu()->isVisible(); },
        [menu, entryIndex] {
            QTest::mouseClick(menu(), Qt::LeftButton, Qt::NoModifier,
                              menu()->actionGeometry(menu()->actions().at(entryIndex)).center());
        });
}

void leave(Player& player)
{
    chooseFromMenu(player, text("leave the program"), 0, 3);
}

void sayHistory()
{
    const QTreeWidget* tree = Player::child<QTreeWidget>(mainWindow, "treeWidget_cusHis");
    for (int i = 0; i < tree->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* row = tree->topLevelItem(i);
        Player::say(QStringLiteral("  history: %1 | %2 | %3").arg(row->text(0), row->text(1).trimmed(), row->text(2)));
    }
}

/// From the press of Finish to the main window, with all packages.
void finish(Player& player, const QString& remark)
{
    player.step(text("press Finish"), mainWindowIsFree,
                [] { Player::click(Player::child<QToolButton>(mainWindow, "toolButton_finish")); });
    player.step(text("enter the remark, ask for all three packages"), shown("FinishDlg"), [remark] {
        QWidget* dialog = Player::window("FinishDlg");
        Player::type(Player::child<QLineEdit>("FinishDlg", "lineEdit_addinfo"), remark);
        setTicked("FinishDlg", "checkBox_cusSetup", true);
        setTicked("FinishDlg", "checkBox_cusUpdate", true);
        setTicked("FinishDlg", "checkBox_cusCusUpd", true);
        Player::shoot(QStringLiteral("finish"));
        pressOk(dialog, "buttonBox");
    });
    player.step(
        text("the packages are being made"),
        [] {
            const QTextEdit* lines = Player::child<QTextEdit>("PackingWait", "textEdit");
            return lines && !lines->toPlainText().isEmpty();
        },
        [] { Player::shoot(QStringLiteral("packing")); });
    player.step(text("the packages are made"), shown("CustomCompleteDlg"), [] {
        Player::shoot(QStringLiteral("complete"));
        Player::say(QStringLiteral("  ") + Player::child<QLabel>("CustomCompleteDlg", "label_customSuccHint")->text());
        Player::click(Player::child<QPushButton>("CustomCompleteDlg", "pushButton_exit"));
    });
}

void addRoad(Player& player)
{
    const QString icons = qEnvironmentVariable("ORVEX_PLAY_ICONS");
    player.step(text("the main window stands"), mainWindowIsFree, [] { Player::shoot(QStringLiteral("client-page")); });
    player.step(text("choose components: 802.1X, Portal, SSL VPN, ZOA"), mainWindowIsFree, [] {
        setTicked(mainWindow, "checkBox_8021xPro", true);
        setTicked(mainWindow, "checkBox_portalPro", true);
        setTicked(mainWindow, "checkBox_sslvpnPro", true);
        setTicked(mainWindow, "checkBox_zoafunc", true);
        Player::click(Player::child<QToolButton>(mainWindow, "toolButton_adv"));
    });
    player.step(text("set options, icons and title in the advanced dialog"), shown("CustomAdvProperty"), [icons] {
        const char dialog[] = "CustomAdvProperty";
        QTabWidget* tabs = Player::child<QTabWidget>(dialog, "tabWidget");
        showTab(tabs, "tab_Zoa");
        Player::type(Player::child<QLineEdit>(dialog, "lineEdit_ZOAIp"), QStringLiteral("192.0.2.10"));
        Player::shoot(QStringLiteral("advanced-zoa"));
        showTab(tabs, "tab_8021x");
        setTicked(dialog, "checkBox_1xAutoConn", true);
        Player::shoot(QStringLiteral("advanced-8021x"));
        showTab(tabs, "tab_Gui");
        if (!icons.isEmpty()) {
            Player::type(Player::child<QLineEdit>(dialog, "lineEdit_deskIcon_dir_Linux"),
                         icons + QLatin1String("/client.png"));
            Player::type(Player::child<QLineEdit>(dialog, "lineEdit_mainIcon_dir"),
                         icons + QLatin1String("/client.ico"));
        }
        Player::type(Player::child<QLineEdit>(dialog, "lineEdit_cusTitle"), text("示例客户端"));
        Player::shoot(QStringLiteral("advanced-gui"));
        pressOk(Player::window(dialog), "buttonBox_adv");
    });
    finish(player, qEnvironmentVariable("ORVEX_PLAY_REMARK"));
    player.step(text("look at the history"), mainWindowIsFree,
                [] { Player::child<QListWidget>(mainWindow, "listWidget")->setCurrentRow(1); });
    player.step(text("open the newest customisation"), mainWindowIsFree, [] {
        sayHistory();
        Player::shoot(QStringLiteral("history-page"));
        QTreeWidget* tree = Player::child<QTreeWidget>(mainWindow, "treeWidget_cusHis");
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                          tree->visualItemRect(tree->topLevelItem(0)).center());
        Player::click(Player::child<QToolButton>(mainWindow, "toolButton_detail"));
    });
    player.step(text("it shows what was set"), shown("ShowDetailDlg"), [] {
        Player::shoot(QStringLiteral("detail"));
        Player::click(Player::child<QToolButton>("ShowDetailDlg", "toolButton"));
    });
    leave(player);
}

/// Takes the newest stored customisation as the starting point of a new one.
void addReuse(Player& player)
{
    player.step(text("take the newest customisation as the starting point"), mainWindowIsFree, [] {
        QComboBox* combo = Player::child<QComboBox>(mainWindow, "comboBox_defaultCus");
        combo->setFocus();
        QTest::keyClick(combo, Qt::Key_Down);
        Player::say(QStringLiteral("  starting point: ") + combo->currentText());
    });
    finish(player, qEnvironmentVariable("ORVEX_PLAY_REMARK"));
    player.step(text("read the history"), mainWindowIsFree, sayHistory);
    leave(player);
}

/// Reads the history and leaves.
void addHistory(Player& player)
{
    player.step(text("read the history"), mainWindowIsFree, sayHistory);
    leave(player);
}

/// Deletes the newest stored customisation.
void addDelete(Player& player)
{
    player.step(text("choose the newest customisation of the history"), mainWindowIsFree, [] {
        Player::child<QListWidget>(mainWindow, "listWidget")->setCurrentRow(1);
        QTreeWidget* tree = Player::child<QTreeWidget>(mainWindow, "treeWidget_cusHis");
        QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier,
                          tree->visualItemRect(tree->topLevelItem(0)).center());
    });
    player.step(text("delete it"), mainWindowIsFree,
                [] { Player::click(Player::child<QToolButton>(mainWindow, "toolButton_delete")); });
    player.step(text("read the history"), mainWindowIsFree, sayHistory);
    leave(player);
}

void addLanguages(Player& player)
{
    const auto pages = [](const QString& language) {
        QListWidget* selector = Player::child<QListWidget>(mainWindow, "listWidget");
        selector->setCurrentRow(0);
        Player::shoot(QStringLiteral("client-page-") + language);
        selector->setCurrentRow(1);
        Player::shoot(QStringLiteral("history-page-") + language);
        Player::say(QStringLiteral("  title: ") + Player::window(mainWindow)->windowTitle());
    };
    chooseFromMenu(player, text("switch to English"), 2, 0);
    player.step(text("look at both pages in English"), mainWindowIsFree, [pages] { pages(QStringLiteral("en")); });
    chooseFromMenu(player, text("switch to Chinese"), 2, 1);
    player.step(text("look at both pages in Chinese"), mainWindowIsFree, [pages] { pages(QStringLiteral("zh")); });
    leave(player);
}

/// The first instance: minimised until a second start brings it back.
void addFirst(Player& player)
{
    player.step(text("minimise and wait for a second start"), mainWindowIsFree, [] {
        Player::window(mainWindow)->showMinimized();
        Player::say(QStringLiteral("  minimised"));
    });
    player.step(
        text("the window is back"),
        [] {
            const QWidget* window = Player::window(mainWindow);
            return window && !window->isMinimized();
        },
        [] {});
    leave(player);
}

/// The second instance: reads its warning, waits a moment and confirms it.
void addSecond(Player& player)
{
    player.step(text("the second start is warned"), shown("QMessageBox"), [] {
        QMessageBox* box = qobject_cast<QMessageBox*>(Player::window("QMessageBox"));
        Player::say(QStringLiteral("  warning: %1 | %2").arg(box->windowTitle(), box->text()));
        Player::shoot(QStringLiteral("second-start"));
        Player::click(box->button(QMessageBox::Ok));
    });
}

/// Starts a commit with packages, sends Escape to the progress window and leaves while the worker still runs.
void addImpatient(Player& player)
{
    player.step(text("press Finish"), mainWindowIsFree,
                [] { Player::click(Player::child<QToolButton>(mainWindow, "toolButton_finish")); });
    player.step(text("ask for all three packages"), shown("FinishDlg"), [] {
        setTicked("FinishDlg", "checkBox_cusSetup", true);
        setTicked("FinishDlg", "checkBox_cusUpdate", true);
        setTicked("FinishDlg", "checkBox_cusCusUpd", true);
        pressOk(Player::window("FinishDlg"), "buttonBox");
    });
    player.step(text("press Escape while the packages are being made"), shown("PackingWait"),
                [] { QTest::keyClick(Player::window("PackingWait"), Qt::Key_Escape); });
    player.step(text("close the report"), shown("CustomCompleteDlg"),
                [] { Player::click(Player::child<QPushButton>("CustomCompleteDlg", "pushButton_exit")); });
    leave(player);
}

} // namespace

bool addScript(Player& player, const QString& name)
{
    const struct
    {
        const char* name;
        void (*add)(Player&);
    } scripts[] = {
        {"delete", addDelete},       {"first", addFirst},         {"history", addHistory},
        {"impatient", addImpatient}, {"languages", addLanguages}, {"leave", leave},
        {"reuse", addReuse},         {"road", addRoad},           {"second", addSecond},
    };
    for (const auto& script : scripts) {
        if (name == QLatin1String(script.name)) {
            script.add(player);
            return true;
        }
    }
    return false;
}
