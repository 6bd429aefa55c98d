#include "app/language/LangText.h"
#include "mainwindow/MainWindowFixture.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "support/EveryWindow.h"
#include "support/TestEntry.h"
#include "view/AboutInfoDlg.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"
#include "xml/CustomInfo.h"

#include <QComboBox>
#include <QContextMenuEvent>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QTabBar>
#include <QTextEdit>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>

/// Every window by its keys alone.
class TstKeyboard : public QObject
{
    Q_OBJECT

private slots:
    void tabOrderFollowsTheEye_data() { addEveryWindow(); }
    void tabOrderFollowsTheEye();
    void tabReachesEveryControl_data() { addEveryWindow(); }
    void tabReachesEveryControl();
    void noMnemonicStandsTwice_data() { addEveryWindow(); }
    void noMnemonicStandsTwice();
    void returnPressesTheFocusedButtonOfBothViewsAndNothingElse();
    void arrowsTurnThePages();
    void menusOpenByTheirMnemonics();
    void everyMenuEntryHasAMnemonic();
    void returnShowsTheDetailsOfTheRow_data();
    void returnShowsTheDetailsOfTheRow();
    void blankChoosesTheRowLikeAClick();
    void theMenuDeletesTheSelectedRow();
    void theMenuLeavesARowThatIsNotSelected();
    void noSingleKeyDeletesWithoutAQuestion();
    void keysOfAnEmptyHistoryDoNothing();
    void aCustomisationIsMadeReusedSeenAndDeletedByKeysAlone();
    void menuOfTheHistoryHoldsItsCommands_data();
    void menuOfTheHistoryHoldsItsCommands();
};

namespace {

/// Where Tab stops when the widget is enabled.
bool isStop(const QWidget* widget)
{
    return widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) == Qt::TabFocus && !widget->focusProxy() &&
           !qobject_cast<QComboBox*>(widget->parentWidget());
}

QList<QWidget*> tabOrder(QWidget& window)
{
    QList<QWidget*> order;
    for (QWidget* widget = window.nextInFocusChain(); widget != &window; widget = widget->nextInFocusChain()) {
        if (isStop(widget))
            order.append(widget);
    }
    return order;
}

bool holdsStops(const QWidget* widget)
{
    const QList<QWidget*> inside = widget->findChildren<QWidget*>();
    return isStop(widget) || std::any_of(inside.begin(), inside.end(), isStop);
}

bool standInOneRow(const QRect& one, const QRect& other)
{
    const int shared = qMin(one.bottom(), other.bottom()) - qMax(one.top(), other.top());
    return 2 * shared > qMin(one.height(), other.height());
}

/// The stops as they are read: rows from top to bottom, each from left to right. What holds stops is read to its end.
void readStops(QWidget* around, QList<QWidget*>& order)
{
    QList<QWidget*> units;
    for (QWidget* child : around->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (!child->isWindow() && child->isVisible() && holdsStops(child))
            units.append(child);
    }
    std::stable_sort(units.begin(), units.end(), [](QWidget* a, QWidget* b) { return a->y() < b->y(); });
    while (!units.isEmpty()) {
        QList<QWidget*> row;
        const QRect first = units.first()->geometry();
        for (QWidget* unit : qAsConst(units)) {
            if (unit->geometry() == first || standInOneRow(first, unit->geometry()))
                row.append(unit);
        }
        std::stable_sort(row.begin(), row.end(), [](QWidget* a, QWidget* b) { return a->x() < b->x(); });
        for (QWidget* unit : qAsConst(row)) {
            units.removeOne(unit);
            if (isStop(unit))
                order.append(unit);
            readStops(unit, order);
        }
    }
}

QStringList namesOf(const QList<QWidget*>& widgets)
{
    QStringList names;
    for (const QWidget* widget : widgets) {
        const auto* button = qobject_cast<const QAbstractButton*>(widget);
        names.append(widget->objectName().isEmpty() && button ? button->text() : widget->objectName());
    }
    return names;
}

bool isControl(const QWidget* widget)
{
    // The window's bars have menu entries and shortcuts for their buttons.
    if (qobject_cast<const QHeaderView*>(widget) || qobject_cast<QToolBar*>(widget->parentWidget()) ||
        qobject_cast<QTabBar*>(widget->parentWidget()) || qobject_cast<QComboBox*>(widget->parentWidget()) ||
        widget->parentWidget()->inherits("QComboBoxPrivateContainer"))
        return false;
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
           qobject_cast<const QComboBox*>(widget) || qobject_cast<const QAbstractItemView*>(widget) ||
           qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QTabBar*>(widget);
}

/// The controls that have the focus in turn while Tab is pressed.
QSet<const QWidget*> walkByTab(QWidget& window)
{
    QSet<const QWidget*> visited;
    for (int step = 0; step < 200; ++step) {
        QWidget* focus = window.focusWidget();
        if (focus && visited.contains(focus))
            break;
        visited.insert(focus);
        QTest::keyClick(focus ? focus : &window, Qt::Key_Tab);
    }
    return visited;
}

/// The arrow keys go from one radio button to the next.
bool isBesideOneOf(const QWidget* widget, const QSet<const QWidget*>& visited)
{
    const auto* button = qobject_cast<const QRadioButton*>(widget);
    return button && std::any_of(visited.begin(), visited.end(), [button](const QWidget* other) {
               const auto* fellow = qobject_cast<const QRadioButton*>(other);
               return fellow && fellow->autoExclusive() && button->autoExclusive() &&
                      fellow->parentWidget() == button->parentWidget();
           });
}

/// The entries of an opened menu that the arrow key does not come by.
QStringList entriesBeyondReach(QMenu& menu)
{
    QSet<const QAction*> visited;
    for (int step = 0; step < menu.actions().size(); ++step) {
        QTest::keyClick(&menu, Qt::Key_Down);
        visited.insert(menu.activeAction());
    }
    QStringList beyondReach;
    for (const QAction* action : menu.actions()) {
        if (action->isEnabled() && !action->isSeparator() && !visited.contains(action))
            beyondReach.append(action->text());
    }
    return beyondReach;
}

void collectMnemonic(const QString& text, const QString& name, QMap<QString, QStringList>& users)
{
    const QString mnemonic = QKeySequence::mnemonic(text).toString();
    if (!mnemonic.isEmpty())
        users[mnemonic].append(name);
}

void collectMnemonics(const QWidget& window, QMap<QString, QStringList>& users)
{
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisible())
            continue;
        QStringList texts;
        if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
            texts = QStringList{button->text()};
        else if (const auto* box = qobject_cast<const QGroupBox*>(widget))
            texts = QStringList{box->title()};
        else if (const auto* label = qobject_cast<const QLabel*>(widget))
            texts = label->buddy() ? QStringList{label->text()} : QStringList();
        else if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
            for (int index = 0; index < tabs->count(); ++index)
                texts.append(tabs->tabText(index));
        } else if (const auto* bar = qobject_cast<const QMenuBar*>(widget)) {
            for (const QAction* action : bar->actions())
                texts.append(action->text());
        }
        for (const QString& text : qAsConst(texts))
            collectMnemonic(text, widget->objectName() + QLatin1Char(' ') + text, users);
    }
}

QStringList usedTwice(const QMap<QString, QStringList>& users)
{
    QStringList twice;
    for (auto each = users.begin(); each != users.end(); ++each) {
        if (each.value().size() > 1)
            twice.append(each.key() + QLatin1String(": ") + each.value().join(QLatin1String(", ")));
    }
    return twice;
}

} // namespace

void TstKeyboard::tabOrderFollowsTheEye()
{
    const std::shared_ptr<QWidget> window = windowOfRow();
    QStringList differences;
    onEveryPage(*window, [&](const QString& page, QWidget& shown) {
        QList<QWidget*> read;
        readStops(&shown, read);
        const QStringList byEye = namesOf(read);
        const QStringList byTab = namesOf(tabOrder(shown));
        if (byEye != byTab)
            differences.append(page + QLatin1String("\n  eye: ") + byEye.join(QLatin1Char(' ')) +
                               QLatin1String("\n  tab: ") + byTab.join(QLatin1Char(' ')));
    });
    QVERIFY2(differences.isEmpty(), qPrintable(differences.join(QLatin1Char('\n'))));
}

void TstKeyboard::tabReachesEveryControl()
{
    const std::shared_ptr<QWidget> window = windowOfRow();
    QVERIFY(QTest::qWaitForWindowActive(window.get()));
    QStringList beyondReach;
    onEveryPage(*window, [&](const QString& page, QWidget& shown) {
        if (auto* menu = qobject_cast<QMenu*>(&shown))
            beyondReach += entriesBeyondReach(*menu);
        const QSet<const QWidget*> visited = walkByTab(shown);
        for (const QWidget* widget : shown.findChildren<QWidget*>()) {
            if (widget->isVisible() && widget->isEnabled() && isControl(widget) && !visited.contains(widget) &&
                !isBesideOneOf(widget, visited))
                beyondReach.append(page + QLatin1String(": ") + widget->objectName());
        }
    });
    QVERIFY2(beyondReach.isEmpty(), qPrintable(beyondReach.join(QLatin1Char('\n'))));
}

void TstKeyboard::noMnemonicStandsTwice()
{
    const std::shared_ptr<QWidget> window = windowOfRow();
    QStringList twice;
    onEveryPage(*window, [&](const QString&, QWidget& shown) {
        QMap<QString, QStringList> users;
        collectMnemonics(shown, users);
        twice += usedTwice(users);
    });
    for (const QMenu* menu : window->findChildren<QMenu*>()) {
        QMap<QString, QStringList> users;
        for (const QAction* action : menu->actions())
            collectMnemonic(action->text(), action->text(), users);
        twice += usedTwice(users);
    }
    QVERIFY2(twice.isEmpty(), qPrintable(twice.join(QLatin1Char('\n'))));
}

void TstKeyboard::returnPressesTheFocusedButtonOfBothViewsAndNothingElse()
{
    windowplay::useEnglish();
    QSet<QString> closing;
    int views = 0;
    Contents contents = distinctContents();
    for (const ProgramWindow& each : everyWindow()) {
        const std::shared_ptr<QWidget> window = each.open(contents);
        if (!qobject_cast<ShowDetailDlg*>(window.get()) && !qobject_cast<QShowVpnAdv*>(window.get()))
            continue;
        ++views;
        window->show();
        for (const QPushButton* button : window->findChildren<QPushButton*>())
            QVERIFY2(!button->isDefault(), "a default button is drawn, and would take Return");
        onEveryPage(*window, [&](const QString&, QWidget& shown) {
            for (QWidget* stop : tabOrder(shown)) {
                if (!stop->isEnabled() || stop->objectName() == QLatin1String("pushButton_Adv_S"))
                    continue;
                window->show();
                stop->setFocus();
                QTest::keyClick(stop, Qt::Key_Return);
                if (!window->isVisible())
                    closing.insert(stop->objectName());
            }
            window->show();
        });
    }
    QCOMPARE(closing, QSet<QString>({QStringLiteral("toolButton"), QStringLiteral("pushButton")}));
    QCOMPARE(views, 2);
}

namespace {

/// The history with three rows, its list with the focus and the second row current.
struct History : QObject
{
    History()
    {
        prepareInstallation();
        storeRow(1700000001, "2023-11-15 06:13:21", "one");
        storeRow(1700000002, "2023-11-15 06:13:22", "two");
        storeRow(1700000003, "2023-11-15 06:13:23", "three");
        window = std::make_unique<OrvexManager>(nullptr);
        window->show();
        window->activateWindow();
        isActive = QTest::qWaitForWindowActive(window.get()); // or no shortcut is heard
        window->showCusHis();
        tree = historyTree(*window);
        tree->setFocus();
        QTest::keyClick(tree, Qt::Key_Home);
        QTest::keyClick(tree, Qt::Key_Down);
        times = shownTimes(*window);
    }

    QString titleOf(int row) const { return langText("detail_title") + QStringLiteral(" (%1)").arg(times.at(row)); }

    std::unique_ptr<OrvexManager> window;
    bool isActive = false;
    QTreeWidget* tree = nullptr;
    QStringList times;
};

/// The entry of the menu that is called as the button is.
QAction* deleteCommand(const History& history)
{
    for (QAction* command : history.tree->actions()) {
        if (command->text() == langText("DeleteCustomBtn"))
            return command;
    }
    return nullptr;
}

} // namespace

void TstKeyboard::arrowsTurnThePages()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    window.show();
    const auto* pages = child<QStackedWidget>(window, "stackedWidget");
    auto* choice = child<QListWidget>(window, "listWidget");
    choice->setFocus();
    QTest::keyClick(choice, Qt::Key_Down);
    QCOMPARE(pages->currentIndex(), 1);
    QTest::keyClick(choice, Qt::Key_Up);
    QCOMPARE(pages->currentIndex(), 0);
}

void TstKeyboard::menusOpenByTheirMnemonics()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    const auto choose = [&window](Qt::Key menu, Qt::Key entry) {
        window.activateWindow();
        if (!QTest::qWaitForWindowActive(&window))
            return false;
        QTest::keyClick(&window, menu, Qt::AltModifier);
        QWidget* opened = QApplication::activePopupWidget();
        if (opened)
            QTest::keyClick(opened, entry);
        return opened != nullptr;
    };
    const auto* pages = child<QStackedWidget>(window, "stackedWidget");
    QVERIFY(choose(Qt::Key_F, Qt::Key_H));
    QCOMPARE(pages->currentIndex(), 1);
    QVERIFY(choose(Qt::Key_F, Qt::Key_C));
    QCOMPARE(pages->currentIndex(), 0);
    const auto* toolBar = window.findChild<QToolBar*>();
    QVERIFY(choose(Qt::Key_V, Qt::Key_T));
    QVERIFY(!toolBar->isVisible());
    ModalScript script;
    script.expect<AboutInfoDlg>([](AboutInfoDlg& about) {
        while (!qobject_cast<QToolButton*>(about.focusWidget()))
            QTest::keyClick(about.focusWidget(), Qt::Key_Tab);
        QTest::keyClick(about.focusWidget(), Qt::Key_Space);
    });
    QVERIFY(choose(Qt::Key_H, Qt::Key_A));
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(choose(Qt::Key_L, Qt::Key_C));
    QCOMPARE(window.windowTitle(), langText("manager_title"));
    QVERIFY(window.windowTitle() != QLatin1String("Orvex Customisation Manager"));
}

void TstKeyboard::everyMenuEntryHasAMnemonic()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    QStringList without;
    int entries = 0;
    for (const auto change : {&OrvexManager::changEnLanguage, &OrvexManager::changZhLanguage}) {
        (window.*change)();
        QList<QAction*> actions = child<QMenuBar>(window, "menuBar")->actions();
        const QList<QAction*> titles = actions;
        for (const QAction* title : titles)
            actions += title->menu()->actions();
        for (const QAction* action : qAsConst(actions)) {
            if (!action->isSeparator() && QKeySequence::mnemonic(action->text()).isEmpty())
                without.append(action->text());
            entries += int(!action->isSeparator());
        }
    }
    QCOMPARE(without, QStringList());
    QCOMPARE(entries, 28);
}

void TstKeyboard::returnShowsTheDetailsOfTheRow_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void TstKeyboard::returnShowsTheDetailsOfTheRow()
{
    QFETCH(int, key);
    const History history;
    QVERIFY(history.isActive);
    QString title;
    ModalScript script;
    script.expect<ShowDetailDlg>([&](ShowDetailDlg& dialog) {
        dialog.activateWindow();
        if (QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }))
            title = dialog.windowTitle();
        QTest::keyClick(&dialog, Qt::Key_Escape);
    });
    QTest::keyClick(history.tree, Qt::Key(key));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(title, history.titleOf(1));
}

void TstKeyboard::blankChoosesTheRowLikeAClick()
{
    const History history;
    QVERIFY(history.isActive);
    QVERIFY(!isEnabled(*history.window, "toolButton_detail"));
    QTest::keyClick(history.tree, Qt::Key_Space);
    QVERIFY(isEnabled(*history.window, "toolButton_delete"));
    QCOMPARE(titleOfDetails(*history.window), history.titleOf(1));
    QTest::keyClick(history.tree, Qt::Key_Up);
    QCOMPARE(titleOfDetails(*history.window), history.titleOf(1));
    history.window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(history.window.get()));
    history.tree->setFocus();
    QTest::keyClick(history.tree, Qt::Key_Space);
    QCOMPARE(titleOfDetails(*history.window), history.titleOf(0));
}

void TstKeyboard::theMenuDeletesTheSelectedRow()
{
    History history;
    QVERIFY(history.isActive);
    deleteCommand(history)->trigger();
    const QString deleted = history.times.takeAt(1);
    QCOMPARE(shownTimes(*history.window), history.times);
    QVERIFY(!deleted.isEmpty());
    // Nothing is selected now.
    deleteCommand(history)->trigger();
    QCOMPARE(shownTimes(*history.window), history.times);
}

void TstKeyboard::theMenuLeavesARowThatIsNotSelected()
{
    const History history;
    QVERIFY(history.isActive);
    history.tree->clearSelection();
    ModalScript script;
    deleteCommand(history)->trigger();
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(shownTimes(*history.window), history.times);
}

void TstKeyboard::noSingleKeyDeletesWithoutAQuestion()
{
    const History history;
    QVERIFY(history.isActive);
    ModalScript script;
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Backspace})
        QTest::keyClick(history.tree, key);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(shownTimes(*history.window), history.times);
}

void TstKeyboard::keysOfAnEmptyHistoryDoNothing()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.showCusHis();
    historyTree(window)->setFocus();
    ModalScript script;
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Space, Qt::Key_Delete})
        QTest::keyClick(historyTree(window), key);
    for (QAction* command : historyTree(window)->actions())
        command->trigger();
    QCoreApplication::processEvents();
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(!isEnabled(window, "toolButton_detail"));
}

namespace {

/// Tab until the named widget has the focus; false when it does not come by.
bool tabTo(QWidget& window, const char* name)
{
    window.activateWindow();
    if (!QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }))
        return false;
    for (int step = 0; step < 100 && windowplay::focusOf(window) != QLatin1String(name); ++step)
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    return windowplay::focusOf(window) == QLatin1String(name);
}

} // namespace

void TstKeyboard::aCustomisationIsMadeReusedSeenAndDeletedByKeysAlone()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    window.show();
    QVERIFY(tabTo(window, "checkBox_wlanPro"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    ModalScript script;
    script.tolerate<PackingWait>();
    script.expect<FinishDlg>([](FinishDlg& finish) {
        if (tabTo(finish, "lineEdit_addinfo"))
            QTest::keyClicks(finish.focusWidget(), QStringLiteral("by keys"));
        QTest::keyClick(finish.focusWidget(), Qt::Key_Return);
    });
    script.expect<CustomCompleteDlg>([](CustomCompleteDlg& report) { QTest::keyClick(&report, Qt::Key_Return); });
    QVERIFY(tabTo(window, "toolButton_finish"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(window.history().size(), 1);
    QCOMPARE(window.history().first().cusAddInfo, QStringLiteral("by keys"));

    QVERIFY(tabTo(window, "comboBox_defaultCus"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Down);
    QCOMPARE(window.record().common.cusAddInfo, QStringLiteral("by keys"));
    QCOMPARE(window.record().common.procomVal & procom::wlan, quint64(procom::wlan));

    QTest::keyClick(window.focusWidget(), Qt::Key_O, Qt::ControlModifier);
    QVERIFY(tabTo(window, "treeWidget_cusHis"));
    QTest::keyClick(historyTree(window), Qt::Key_Space);
    script.expect<ShowDetailDlg>([](ShowDetailDlg& details) {
        if (tabTo(details, "toolButton"))
            QTest::keyClick(details.focusWidget(), Qt::Key_Return);
    });
    QVERIFY(tabTo(window, "toolButton_detail"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(tabTo(window, "toolButton_delete"));
    QTest::keyClick(window.focusWidget(), Qt::Key_Space);
    QCOMPARE(window.history().size(), 0);
}

void TstKeyboard::menuOfTheHistoryHoldsItsCommands_data()
{
    QTest::addColumn<bool>("byShiftF10");
    QTest::newRow("Shift and F10") << true;
    QTest::newRow("the key for menus") << false;
}

void TstKeyboard::menuOfTheHistoryHoldsItsCommands()
{
    QFETCH(bool, byShiftF10);
    History history;
    QVERIFY(history.isActive);
    QStringList entries;
    QTimer::singleShot(0, &history, [&] {
        const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        if (!menu)
            return;
        for (const QAction* action : menu->actions())
            entries.append(action->text());
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Down);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
    });
    if (byShiftF10) {
        QTest::keyClick(history.tree, Qt::Key_F10, Qt::ShiftModifier);
    } else {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5), history.tree->mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(history.tree, &event);
    }
    QCOMPARE(entries,
             QStringList({langText("ShowCustomDetailBtn"), langText("DeleteCustomBtn"), langText("DeleteAll")}));
    history.times.removeAt(1);
    QCOMPARE(shownTimes(*history.window), history.times);
}

TEST_ENTRY(keyboard, playTest<TstKeyboard>)

#include "tst_keyboard.moc"
