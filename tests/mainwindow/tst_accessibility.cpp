#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "mainwindow/MainWindowFixture.h"
#include "support/EveryWindow.h"
#include "support/TestEntry.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QLabel>
#include <QTextEdit>
#include <QToolBar>

/// What the windows tell a screen reader.
class TstAccessibility : public QObject
{
    Q_OBJECT

private slots:
    void toolBarIsNamedThoughItsTitleIsNot(); // first, before a view makes its own arrangements
    void everyControlHasANameAndARole_data() { addEveryWindow(); }
    void everyControlHasANameAndARole();
    void namesFollowTheLanguage();
    void viewsSayThatTheyAreReadOnly_data() { addEveryWindow(); }
    void viewsSayThatTheyAreReadOnly();
    void dialogsAnnounceTheRefusedField_data();
    void dialogsAnnounceTheRefusedField();
    void labelsAreBuddiesOfTheControlsBehindThem_data() { addEveryWindow(); }
    void labelsAreBuddiesOfTheControlsBehindThem();
};

namespace {

QString describe(const QAccessibleInterface& face)
{
    const QObject* object = face.object();
    return QStringLiteral("%1 \"%2\", %3")
        .arg(object ? QLatin1String(object->metaObject()->className()) : QLatin1String("part"),
             object ? object->objectName() : face.text(QAccessible::Value),
             QString::fromUtf8(QMetaEnum::fromType<QAccessible::Role>().valueToKey(face.role())));
}

/// A picture beside its text needs no name of its own.
bool isDecoration(const QObject* object)
{
    const auto* picture = qobject_cast<const QLabel*>(object);
    if (!picture || !picture->text().isEmpty())
        return false;
    for (const QLabel* label : picture->parentWidget()->findChildren<QLabel*>()) {
        if (label != picture && !label->text().isEmpty())
            return true;
    }
    return false;
}

/// The words of a list are its entries' names: one of an algorithm is "NULL", and some cells and the first stored
/// customisation to choose are empty.
bool isNamedByContent(QAccessibleInterface& face)
{
    return face.role() == QAccessible::ListItem || face.tableCellInterface();
}

/// Lists and tables take it without saying so, and the entries of menus have a mark of their own.
bool takesFocus(QAccessibleInterface& face)
{
    const auto* widget = qobject_cast<QWidget*>(face.object());
    return face.tableInterface() || face.role() == QAccessible::MenuItem ||
           (face.state().focusable && !(widget && widget->focusProxy()));
}

bool isListOfNamedCombo(const QAccessibleInterface& face)
{
    const QAccessibleInterface* around = face.parent();
    return around && around->role() == QAccessible::ComboBox && !around->text(QAccessible::Name).isEmpty();
}

QString complaintAbout(QAccessibleInterface& face)
{
    const QAccessible::Role role = face.role();
    const QString name = face.text(QAccessible::Name).trimmed();
    if (role == QAccessible::NoRole)
        return QStringLiteral("has no role");
    if (isNamedByContent(face))
        return QString();
    if (name.contains(QLatin1String("NULL")))
        return QStringLiteral("has a name that no language file holds");
    if (role == QAccessible::Graphic)
        return name.isEmpty() && !isDecoration(face.object()) ? QStringLiteral("is a nameless picture") : QString();
    if (!takesFocus(face) || isListOfNamedCombo(face))
        return QString();
    if (role == QAccessible::Client)
        return QStringLiteral("takes the focus and has no role");
    return name.isEmpty() ? QStringLiteral("has no name") : QString();
}

/// Everything visible below the interface, itself included.
void walk(QAccessibleInterface* face, const std::function<void(QAccessibleInterface&)>& look)
{
    if (!face || !face->isValid() || face->state().invisible)
        return;
    look(*face);
    for (int index = 0; index < face->childCount(); ++index)
        walk(face->child(index), look);
}

QStringList namesIn(QWidget& window)
{
    QStringList names;
    onEveryPage(window, [&](const QString&, QWidget& shown) {
        walk(QAccessible::queryAccessibleInterface(&shown), [&](QAccessibleInterface& face) {
            const QString name = face.text(QAccessible::Name);
            // A larger window has other scroll bars.
            if (!name.isEmpty() && face.role() != QAccessible::ScrollBar)
                names.append(describe(face) + QLatin1String(": ") + name);
        });
    });
    return names;
}

bool isInput(const QWidget* widget)
{
    return qobject_cast<const QLineEdit*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QTextEdit*>(widget) || qobject_cast<const QAbstractItemView*>(widget);
}

/// Whether two spans share more than a corner.
bool overlap(int from, int to, int otherFrom, int otherTo)
{
    return qMin(to, otherTo) - qMax(from, otherFrom) > 3;
}

QList<QWidget*> visibleSiblings(const QWidget* widget)
{
    QList<QWidget*> siblings;
    for (QWidget* sibling : widget->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (sibling != widget && sibling->isVisible() && !sibling->isWindow())
            siblings.append(sibling);
    }
    return siblings;
}

/// What stands directly to the left of the control, or, with nothing there, directly above it.
const QWidget* neighbourBefore(const QWidget* control)
{
    const QRect place = control->geometry();
    const QWidget* left = nullptr;
    const QWidget* above = nullptr;
    for (const QWidget* sibling : visibleSiblings(control)) {
        const QRect other = sibling->geometry();
        if (other.right() < place.left() && overlap(other.top(), other.bottom(), place.top(), place.bottom())) {
            if (!left || other.left() > left->geometry().left())
                left = sibling;
        } else if (other.bottom() < place.top() && overlap(other.left(), other.right(), place.left(), place.right())) {
            if (!above || other.top() > above->geometry().top())
                above = sibling;
        }
    }
    return left ? left : above;
}

} // namespace

void TstAccessibility::everyControlHasANameAndARole()
{
    const std::shared_ptr<QWidget> window = windowOfRow();
    QStringList complaints;
    int controls = 0;
    onEveryPage(*window, [&](const QString& page, QWidget& shown) {
        walk(QAccessible::queryAccessibleInterface(&shown), [&](QAccessibleInterface& face) {
            const QString complaint = complaintAbout(face);
            if (!complaint.isEmpty())
                complaints.append(page + QLatin1String(": ") + describe(face) + QLatin1Char(' ') + complaint);
            controls += int(takesFocus(face));
        });
    });
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join(QLatin1Char('\n'))));
    QVERIFY(controls > 0);
}

void TstAccessibility::namesFollowTheLanguage()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    window.show();
    const QStringList english = namesIn(window);
    window.changZhLanguage();
    const QStringList chinese = namesIn(window);
    OrvexManager fresh(nullptr);
    fresh.show();
    QCOMPARE(chinese, namesIn(fresh));
    window.changEnLanguage();
    QCOMPARE(namesIn(window).join(QLatin1Char(10)), english.join(QLatin1Char(10)));
    int same = 0;
    for (int index = 0; index < english.size(); ++index)
        same += int(english.at(index) == chinese.at(index));
    QCOMPARE(same, 0);
}

void TstAccessibility::toolBarIsNamedThoughItsTitleIsNot()
{
    prepareInstallation();
    OrvexManager window(nullptr);
    QToolBar* toolBar = window.findChild<QToolBar*>();
    // What a first instance reads before a language is loaded.
    toolBar->setWindowTitle(QStringLiteral("NULL"));
    QCOMPARE(QAccessible::queryAccessibleInterface(toolBar)->text(QAccessible::Name), QStringLiteral("Toolbar"));
    window.changZhLanguage();
    QCOMPARE(QAccessible::queryAccessibleInterface(toolBar)->text(QAccessible::Name), langText("toolbar"));
    QVERIFY(langText("toolbar") != QLatin1String("Toolbar"));
}

void TstAccessibility::viewsSayThatTheyAreReadOnly()
{
    const std::shared_ptr<QWidget> window = windowOfRow();
    const bool isView = qobject_cast<ShowDetailDlg*>(window.get()) || qobject_cast<QShowVpnAdv*>(window.get());
    QStringList unlike;
    int boxes = 0;
    onEveryPage(*window, [&](const QString&, QWidget& shown) {
        walk(QAccessible::queryAccessibleInterface(&shown), [&](QAccessibleInterface& face) {
            const bool isBox = face.role() == QAccessible::CheckBox || face.role() == QAccessible::RadioButton;
            const bool isEdit = qobject_cast<QLineEdit*>(face.object()) && face.role() == QAccessible::EditableText;
            if (const auto* text = qobject_cast<QTextEdit*>(face.object())) {
                if (bool(face.state().readOnly) != text->isReadOnly())
                    unlike.append(describe(face));
            }
            if (!isBox && !isEdit)
                return;
            boxes += int(isBox);
            const QStringList actions = face.actionInterface() ? face.actionInterface()->actionNames() : QStringList();
            const bool canBeDone = actions.contains(QAccessibleActionInterface::toggleAction()) ||
                                   actions.contains(QAccessibleActionInterface::pressAction());
            const auto* box = qobject_cast<QAbstractButton*>(face.object());
            if (bool(face.state().readOnly) != isView || (isBox && canBeDone == isView) ||
                (box &&
                 (box->isChecked() != bool(face.state().checked) || box->text() != face.text(QAccessible::Name))))
                unlike.append(describe(face));
        });
    });
    QVERIFY2(unlike.isEmpty(), qPrintable(unlike.join(QLatin1Char('\n'))));
    QVERIFY(!isView || boxes >= 6);
}

void TstAccessibility::labelsAreBuddiesOfTheControlsBehindThem()
{
    const std::shared_ptr<QWidget> window = windowOfRow();
    QStringList complaints;
    onEveryPage(*window, [&](const QString& page, QWidget& shown) {
        for (QWidget* control : shown.findChildren<QWidget*>()) {
            if (!control->isVisible() || !isInput(control) || isInput(control->parentWidget()))
                continue;
            const auto* label = qobject_cast<const QLabel*>(neighbourBefore(control));
            if (label && !label->text().isEmpty() && label->buddy() != control)
                complaints.append(page + QLatin1String(": ") + label->objectName() + QLatin1String(" before ") +
                                  control->objectName());
        }
    });
    QVERIFY2(complaints.isEmpty(), qPrintable(complaints.join(QLatin1Char('\n'))));
}

void TstAccessibility::dialogsAnnounceTheRefusedField_data()
{
    QTest::addColumn<QString>("window");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("key");
    const auto row = [](const char* window, const char* field, const char* typed, const char* key) {
        QTest::newRow(key) << QString::fromLatin1(window) << QByteArray(field) << QString::fromLatin1(typed)
                           << QByteArray(key);
    };
    row("route", "lineEdit_Ip", "", "VUI_IpOrMaskBlank");
    row("kef", "lineEdit_kefIp", "127.0.0.1", "KEF_IpErr");
    row("uninstall-password", "input", "unlike the other", "SMT_PwdDismatchMsgBox");
    row("vpn", "lineEdit_SaLifeTime", "1", "VUI_InputValidPLS");
    row("advanced", "lineEdit_reconnInterval", "0", "SSL_RECONNGRAP_ERROR");
    row("advanced", "lineEdit_getSysVryInterval", "1", "SSL_GetSmsVryCountDownValu_ERROR");
}

void TstAccessibility::dialogsAnnounceTheRefusedField()
{
    QFETCH(QString, window);
    QFETCH(QByteArray, field);
    QFETCH(QString, typed);
    QFETCH(QByteArray, key);
    windowplay::useEnglish();
    Contents contents = distinctContents();
    const std::shared_ptr<QWidget> opened = openWindow(window, contents);
    opened->show();
    auto* edit = child<QLineEdit>(*opened, field.constData());
    edit->setText(typed);
    ModalScript script;
    QStringList told;
    script.expect<WarningBox>([&](WarningBox& box) {
        told.append(box.text());
        box.button(QMessageBox::Ok)->click();
    });
    windowplay::press(*opened, QDialogButtonBox::Ok);
    QCOMPARE(told, QStringList(langText(key.constData())));
    QCOMPARE(edit->accessibleDescription(), langText(key.constData()));
    QTest::keyClick(edit, Qt::Key_1);
    QCOMPARE(edit->accessibleDescription(), QString());
}

TEST_ENTRY(accessibility, playTest<TstAccessibility>)

#include "tst_accessibility.moc"
