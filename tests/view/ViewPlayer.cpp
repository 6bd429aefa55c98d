#include "view/ViewPlayer.h"

#include "support/DistinctRecord.h"
#include "support/Installation.h"

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDirIterator>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QRadioButton>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QTreeWidget>

namespace viewplay {

namespace {

template <class Widget> QList<Widget*> children(const QDialog& dialog)
{
    QList<Widget*> all;
    for (Widget* widget : dialog.findChildren<Widget*>()) {
        // Qt's own children, such as the scroll buttons of a tab bar, do not count.
        if (!widget->objectName().isEmpty() && !widget->objectName().startsWith(QLatin1String("qt_")) &&
            widget->objectName() != QLatin1String("ScrollLeftButton") &&
            widget->objectName() != QLatin1String("ScrollRightButton"))
            all.append(widget);
    }
    return all;
}

QList<QAbstractButton*> tickable(const QDialog& dialog)
{
    QList<QAbstractButton*> all;
    for (QAbstractButton* button : children<QAbstractButton>(dialog)) {
        if (qobject_cast<QCheckBox*>(button) || qobject_cast<QRadioButton*>(button))
            all.append(button);
    }
    return all;
}

bool fits(const QWidget* widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(widget)) {
        if (label->wordWrap())
            return label->height() >= label->heightForWidth(label->width());
    }
    const QSize needed = qobject_cast<const QGroupBox*>(widget) ? widget->minimumSizeHint() : widget->sizeHint();
    return widget->width() >= needed.width() && widget->height() >= needed.height();
}

QString textOf(const QWidget* widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (const auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    if (const auto* box = qobject_cast<const QGroupBox*>(widget))
        return box->title();
    return QString();
}

void collectClipped(const QDialog& dialog, QStringList& clipped)
{
    for (const QWidget* widget : children<QWidget>(dialog)) {
        const QString text = textOf(widget);
        if (!widget->isVisible() || text.isEmpty())
            continue;
        if (!fits(widget))
            clipped.append(widget->objectName() + QLatin1String(": ") + text);
        if (text.contains(QLatin1String("NULL")))
            clipped.append(widget->objectName() + QLatin1String(" has no text"));
    }
}

} // namespace

void useKeysAsTexts()
{
    windowplay::showKeysAsTexts("[", "]");
}

CustomInfo fullRecord()
{
    CustomInfo info = distinctRecord();
    info.x1.advancedAuthType = 1;
    info.portal.advancedAuthType = 0;
    info.sslvpn.defaultAddress = 2;
    info.sslvpn.authDefaultMode = 1;
    info.sslvpn.TLSVersion = 1;
    info.vpn.basecfg.LNSAsIPSECServer = 0;
    info.vpn.ikecfg.IKEAuthMethod = QStringLiteral("PRE-SHARE");
    info.vpn.l2tpcfg.L2TPAVPHidden = 1;
    info.vpn.ipseccfg.IPSECUseNatTranversal = 1;
    return info;
}

CustomInfo bareRecord()
{
    CustomInfo info = distinctRecord();
    info.x1 = {};
    info.x1.keepConnPasswd = info.x1.upVer = info.x1.upIp = info.x1.unicastType = info.x1.broadLogOff = 0;
    info.x1.x1ResumeConn = 0;
    info.portal = {};
    info.portal.keepConnPasswd = info.portal.upVer = info.portal.resumeConn = 0;
    info.function = {};
    info.sslvpn.gatewayAuth = info.sslvpn.edcode = false;
    info.vpn.basecfg.upVersion = info.vpn.basecfg.resumConn = info.vpn.basecfg.useIPSEC = 0;
    info.vpn.basecfg.LNSAsIPSECServer = 1;
    info.vpn.l2tpcfg.L2TPUseTunnelPwd = info.vpn.l2tpcfg.L2TPAVPHidden = 0;
    info.vpn.ipseccfg.IPSECUseNatTranversal = info.vpn.ipseccfg.IPSECPFS = 0;
    info.vpn.ikecfg.IKESendKeepAlive = info.vpn.ikecfg.IKERecvKeepAlivePacket = 0;
    info.zoa.useZOA = 0;
    info.kef.customize = false;
    info.gui.hideCopyRight = false;
    return info;
}

QStringList ticks(const QDialog& dialog)
{
    QStringList all;
    for (const QAbstractButton* button : tickable(dialog))
        all.append(QStringLiteral("%1=%2").arg(button->objectName()).arg(button->isChecked()));
    all.sort();
    return all;
}

QString changesByClicks(QDialog& dialog, int& clicked)
{
    QStringList changes;
    const QStringList before = ticks(dialog);
    for (QAbstractButton* button : tickable(dialog)) {
        bringToFront(button);
        if (!button->isEnabled() || !button->isVisible())
            continue;
        QSignalSpy spy(button, &QAbstractButton::clicked);
        click(button);
        if (ticks(dialog) != before)
            changes.append(QLatin1String("mouse on ") + button->objectName());
        QTest::keyClick(button, Qt::Key_Space);
        if (ticks(dialog) != before)
            changes.append(QLatin1String("space bar on ") + button->objectName());
        clicked += spy.count();
    }
    return changes.join(QLatin1String("; "));
}

QString writableControls(const QDialog& dialog)
{
    QStringList names;
    for (const QLineEdit* field : children<QLineEdit>(dialog)) {
        if (!field->isReadOnly())
            names.append(field->objectName());
    }
    for (const QComboBox* combo : children<QComboBox>(dialog)) {
        if (combo->isEnabled())
            names.append(combo->objectName());
    }
    for (const QAbstractItemView* view : children<QAbstractItemView>(dialog)) {
        for (int row = 0; row < view->model()->rowCount(); ++row) {
            const bool editable = (view->model()->index(row, 0).flags() & Qt::ItemIsEditable) != 0;
            if (editable && view->editTriggers() != QAbstractItemView::NoEditTriggers)
                names.append(view->objectName());
        }
    }
    for (const QCheckBox* box : children<QCheckBox>(dialog)) {
        if (!box->isEnabled())
            names.append(box->objectName());
    }
    return names.join(QLatin1String("; "));
}

QString namelessControls(const QDialog& dialog)
{
    QStringList names;
    for (QWidget* widget : children<QWidget>(dialog)) {
        const bool isNamed = qobject_cast<QLineEdit*>(widget) || qobject_cast<QComboBox*>(widget) ||
                             qobject_cast<QAbstractItemView*>(widget) || qobject_cast<QAbstractButton*>(widget);
        if (!isNamed)
            continue;
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(widget);
        if (!accessible || accessible->text(QAccessible::Name).isEmpty())
            names.append(widget->objectName());
    }
    return names.join(QLatin1String("; "));
}

QString readableSecrets(const QDialog& dialog, const QString& secret)
{
    QStringList found;
    QClipboard* clipboard = QGuiApplication::clipboard();
    for (QLineEdit* field : children<QLineEdit>(dialog)) {
        if (!field->text().contains(secret))
            continue;
        bringToFront(field);
        clipboard->setText(QStringLiteral("untouched"));
        field->selectAll();
        field->copy();
        field->cut();
        QTest::keyClick(field, Qt::Key_C, Qt::ControlModifier);
        if (clipboard->text() != QLatin1String("untouched"))
            found.append(QLatin1String("copied from ") + field->objectName());
        if (field->displayText().contains(secret))
            found.append(QLatin1String("shown by ") + field->objectName());
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(field);
        if (accessible->text(QAccessible::Value).contains(secret) ||
            accessible->textInterface()->text(0, secret.size()).contains(secret))
            found.append(QLatin1String("read from ") + field->objectName());
    }
    return found.join(QLatin1String("; "));
}

QString backwardSteps(const QDialog& dialog)
{
    QStringList steps;
    const QWidget* last = nullptr;
    QPoint lastPlace;
    QWidget* widget = dialog.nextInFocusChain();
    for (; widget != &dialog; widget = widget->nextInFocusChain()) {
        if ((widget->focusPolicy() & Qt::TabFocus) == 0 || !children<QWidget>(dialog).contains(widget))
            continue;
        bringToFront(widget);
        QCoreApplication::processEvents();
        const QPoint place = widget->mapTo(&dialog, QPoint(0, 0));
        if (last && last->parentWidget() == widget->parentWidget() && place.y() < lastPlace.y())
            steps.append(last->objectName() + QLatin1String(" > ") + widget->objectName());
        last = widget;
        lastPlace = place;
    }
    return steps.join(QLatin1String("; "));
}

QString clippedTexts(QDialog& dialog)
{
    QStringList clipped;
    dialog.show();
    if (!QTest::qWaitForWindowExposed(&dialog))
        clipped.append(QStringLiteral("the window did not appear"));
    if (dialog.windowTitle().contains(QLatin1String("NULL")))
        clipped.append(QStringLiteral("the window has no title"));
    collectClipped(dialog, clipped);
    for (QTabWidget* tabs : dialog.findChildren<QTabWidget*>()) {
        const QTabBar* bar = tabs->tabBar();
        for (int index = 0; index < tabs->count(); ++index) {
            tabs->setCurrentIndex(index);
            QCoreApplication::processEvents();
            collectClipped(dialog, clipped);
            if (!bar->rect().contains(bar->tabRect(index)))
                clipped.append(QLatin1String("tab ") + tabs->tabText(index));
            if (tabs->tabText(index).contains(QLatin1String("NULL")))
                clipped.append(QStringLiteral("tab %1 has no text").arg(index));
        }
    }
    clipped.removeDuplicates();
    return clipped.join(QLatin1String("; "));
}

QStringList storedFiles()
{
    QStringList files;
    QDirIterator each(installation::root(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (each.hasNext()) {
        const QString path = each.next();
        if (!path.contains(QLatin1String("/Log/")))
            files.append(path + QLatin1Char(' ') + each.fileInfo().lastModified().toString(Qt::ISODateWithMs));
    }
    files.sort();
    return files;
}

} // namespace viewplay
