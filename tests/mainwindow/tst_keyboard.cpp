#include "mainwindow/EveryWindow.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeySequence>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QTabBar>
#include <QTextEdit>
#include <QToolBar>

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
    onEveryPage(*window, [&](const QString& page) {
        QList<QWidget*> read;
        readStops(window.get(), read);
        const QStringList byEye = namesOf(read);
        const QStringList byTab = namesOf(tabOrder(*window));
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
    onEveryPage(*window, [&](const QString& page) {
        const QSet<const QWidget*> visited = walkByTab(*window);
        for (const QWidget* widget : window->findChildren<QWidget*>()) {
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
    onEveryPage(*window, [&](const QString&) {
        QMap<QString, QStringList> users;
        collectMnemonics(*window, users);
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

TEST_ENTRY(keyboard, playTest<TstKeyboard>)

#include "tst_keyboard.moc"
