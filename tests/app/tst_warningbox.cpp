#include "app/language/LangText.h"
#include "app/myapplication.h"
#include "app/widgets/WarningBox.h"
#include "support/Installation.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "support/WindowPlay.h"

#include <QAccessible>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

using windowplay::runTest;
using windowplay::useLanguage;

namespace {

const char s_missing[] = "NULL";

QVector<const QObject*> s_alerted;

/// A window with two fields, the second of which has the focus.
struct TwoFields
{
    TwoFields()
    {
        QVBoxLayout* layout = new QVBoxLayout(&window);
        layout->addWidget(&first);
        layout->addWidget(&second);
        window.show();
        second.setFocus();
    }

    QWidget window;
    QLineEdit first;
    QLineEdit second;
};

} // namespace

// Stands before the library's, which tells nobody while no screen reader runs.
void QAccessible::updateAccessibility(QAccessibleEvent* event)
{
    if (event->type() == QAccessible::Alert)
        s_alerted.append(event->object());
}

class TstWarningBox : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void textsComeFromTheApplication();
    void boxHasOneOkButtonWhichIsTheDefault();
    void titleComesFromItsKey();
    void titleFollowsTheLanguage();
    void nullTitleKeyLeavesTheTitleEmpty();
    void missingKeysShowNull();
    void parentIsThatOfTheCaller();
    void sayShowsTheTextUntilOkIsPressed();
    void keyEndsTheBox_data();
    void keyEndsTheBox();
    void oneBoxSaysSeveralTexts();
    void refuseMovesTheFocusBehindTheBox();
    void refuseWithoutAFieldLeavesTheFocus();
    void refuseAtMovesTheFocusBeforeTheBox();
    void refusalIsAnnouncedUntilTheNextEdit();
    void aRefusedFieldKeepsOneWatcher();
    void nextRefusalTakesBackTheOneBefore();
    void nextOkTakesBackTheRefusalBeforeItChecks();
};

void TstWarningBox::initTestCase()
{
    useLanguage(QStringLiteral("en"));
    for (const char* key : {"manager_title", "CUS_TipsTitle", "OneInstance", "SelProtocolPls"})
        QVERIFY2(langText(key) != QLatin1String(s_missing), key);
}

void TstWarningBox::textsComeFromTheApplication()
{
    const CLanguageParser& table = CMyApplication::current()->m_LanguageParser;
    QCOMPARE(langText("OneInstance"), table.GetKey("OneInstance"));
    QCOMPARE(langText("CUS_FuncName.MsgAuth"), table.GetKey("CUS_FuncName.MsgAuth"));
    QCOMPARE(langText("no_such_key"), QLatin1String(s_missing));
    QCOMPARE(langText(nullptr), QLatin1String(s_missing));
}

void TstWarningBox::boxHasOneOkButtonWhichIsTheDefault()
{
    const WarningBox box("manager_title");
    QCOMPARE(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
    QCOMPARE(box.buttons().size(), 1);
    QCOMPARE(static_cast<QAbstractButton*>(box.defaultButton()), box.button(QMessageBox::Ok));
    QCOMPARE(box.icon(), QMessageBox::Warning);
    QCOMPARE(box.text(), QString());
}

void TstWarningBox::titleComesFromItsKey()
{
    WarningBox box("manager_title");
    QCOMPARE(box.windowTitle(), langText("manager_title"));
    box.setTitleKey("CUS_TipsTitle");
    QCOMPARE(box.windowTitle(), langText("CUS_TipsTitle"));
}

void TstWarningBox::titleFollowsTheLanguage()
{
    const QString english = WarningBox("manager_title").windowTitle();
    useLanguage(QStringLiteral("zh"));
    const QString chinese = WarningBox("manager_title").windowTitle();
    useLanguage(QStringLiteral("en"));
    QVERIFY(chinese != english);
    QCOMPARE(WarningBox("manager_title").windowTitle(), english);
}

void TstWarningBox::nullTitleKeyLeavesTheTitleEmpty()
{
    WarningBox box(nullptr);
    QCOMPARE(box.windowTitle(), QString());
    QCOMPARE(box.standardButtons(), QMessageBox::StandardButtons(QMessageBox::Ok));
    box.setTitleKey("manager_title");
    QCOMPARE(box.windowTitle(), langText("manager_title"));
}

void TstWarningBox::missingKeysShowNull()
{
    WarningBox box("no_such_title");
    QString title;
    QString text;
    ModalScript script;
    script.expect<WarningBox>([&](WarningBox& shown) {
        title = shown.windowTitle();
        text = shown.text();
        shown.button(QMessageBox::Ok)->click();
    });
    box.say("no_such_text");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(title, QLatin1String(s_missing));
    QCOMPARE(text, QLatin1String(s_missing));
}

void TstWarningBox::parentIsThatOfTheCaller()
{
    QWidget window;
    const WarningBox child("manager_title", &window);
    QCOMPARE(child.parentWidget(), &window);
    const WarningBox alone("manager_title");
    QVERIFY(!alone.parentWidget());
}

void TstWarningBox::sayShowsTheTextUntilOkIsPressed()
{
    QWidget window;
    window.show();
    WarningBox box("manager_title", &window);
    QString title;
    QString text;
    QWidget* parent = nullptr;
    bool isModal = false;
    bool hasReturned = false;
    bool returnedEarly = true;
    ModalScript script;
    script.expect<WarningBox>([&](WarningBox& shown) {
        title = shown.windowTitle();
        text = shown.text();
        parent = shown.parentWidget();
        isModal = shown.isModal();
        QTest::qWait(50);
        returnedEarly = hasReturned;
        QTest::mouseClick(shown.button(QMessageBox::Ok), Qt::LeftButton);
    });
    box.say("OneInstance");
    hasReturned = true;
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(!returnedEarly);
    QVERIFY(isModal);
    QCOMPARE(title, langText("manager_title"));
    QCOMPARE(text, langText("OneInstance"));
    QCOMPARE(parent, &window);
    QVERIFY(!box.isVisible());
}

void TstWarningBox::keyEndsTheBox_data()
{
    QTest::addColumn<int>("key");
    QTest::newRow("Return presses the default button") << int(Qt::Key_Return);
    QTest::newRow("blank presses the focused button") << int(Qt::Key_Space);
    QTest::newRow("Escape presses the only button") << int(Qt::Key_Escape);
}

void TstWarningBox::keyEndsTheBox()
{
    QFETCH(const int, key);
    WarningBox box("manager_title");
    ModalScript script;
    script.expect<WarningBox>([&](WarningBox& shown) {
        QVERIFY(QTest::qWaitForWindowActive(&shown));
        QTest::keyClick(shown.focusWidget(), Qt::Key(key));
    });
    box.say("OneInstance");
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(box.clickedButton(), box.button(QMessageBox::Ok));
}

void TstWarningBox::oneBoxSaysSeveralTexts()
{
    WarningBox box("manager_title");
    QStringList texts;
    for (int i = 0; i < 2; ++i) {
        ModalScript script;
        script.expect<WarningBox>([&](WarningBox& shown) {
            texts.append(shown.text());
            shown.button(QMessageBox::Ok)->click();
        });
        box.say(i == 0 ? "OneInstance" : "SelProtocolPls");
        QCOMPARE(script.complaints(), QStringList());
    }
    QCOMPARE(texts, QStringList({langText("OneInstance"), langText("SelProtocolPls")}));
}

void TstWarningBox::refuseMovesTheFocusBehindTheBox()
{
    TwoFields fields;
    WarningBox box("manager_title", &fields.window);
    QString text;
    const QWidget* focusWhileOpen = nullptr;
    ModalScript script;
    script.expect<WarningBox>([&](WarningBox& shown) {
        text = shown.text();
        focusWhileOpen = fields.window.focusWidget();
        shown.button(QMessageBox::Ok)->click();
    });
    QCOMPARE(box.refuse("SelProtocolPls", &fields.first), false);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(text, langText("SelProtocolPls"));
    QCOMPARE(focusWhileOpen, &fields.second);
    QCOMPARE(fields.window.focusWidget(), &fields.first);
}

void TstWarningBox::refuseWithoutAFieldLeavesTheFocus()
{
    TwoFields fields;
    WarningBox box("manager_title", &fields.window);
    ModalScript script;
    script.expect<WarningBox>([](WarningBox& shown) { shown.button(QMessageBox::Ok)->click(); });
    QCOMPARE(box.refuse("SelProtocolPls"), false);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(fields.window.focusWidget(), &fields.second);
}

void TstWarningBox::refuseAtMovesTheFocusBeforeTheBox()
{
    TwoFields fields;
    WarningBox box("manager_title", &fields.window);
    const QWidget* focusWhileOpen = nullptr;
    ModalScript script;
    script.expect<WarningBox>([&](WarningBox& shown) {
        focusWhileOpen = fields.window.focusWidget();
        shown.button(QMessageBox::Ok)->click();
    });
    QCOMPARE(box.refuseAt(&fields.first, "SelProtocolPls"), false);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(focusWhileOpen, &fields.first);
    QCOMPARE(fields.window.focusWidget(), &fields.first);
    QCOMPARE(fields.first.accessibleDescription(), langText("SelProtocolPls"));
}

void TstWarningBox::refusalIsAnnouncedUntilTheNextEdit()
{
    s_alerted.clear();
    TwoFields fields;
    for (const char* key : {"OneInstance", "SelProtocolPls"}) {
        WarningBox box("manager_title", &fields.window);
        ModalScript script;
        script.expect<WarningBox>([](WarningBox& shown) { shown.button(QMessageBox::Ok)->click(); });
        box.refuse(key, &fields.first);
        QCOMPARE(script.complaints(), QStringList());
        QCOMPARE(fields.first.accessibleDescription(), langText(key));
    }
    QCOMPARE(s_alerted.count(&fields.first), 2);
    QCOMPARE(s_alerted.count(&fields.second), 0);
    fields.first.setText(QStringLiteral("set by the program"));
    QCOMPARE(fields.first.accessibleDescription(), langText("SelProtocolPls"));
    QTest::keyClick(&fields.first, Qt::Key_A);
    QCOMPARE(fields.first.accessibleDescription(), QString());
}

void TstWarningBox::aRefusedFieldKeepsOneWatcher()
{
    TwoFields fields;
    announceRefusal(&fields.first, "OneInstance");
    const int once = fields.first.children().size();
    announceRefusal(&fields.first, "SelProtocolPls");
    QTest::keyClick(&fields.first, Qt::Key_A);
    announceRefusal(&fields.first, "OneInstance");
    QCOMPARE(fields.first.children().size(), once);
    QCOMPARE(fields.first.accessibleDescription(), langText("OneInstance"));
    QTest::keyClick(&fields.first, Qt::Key_A);
    QCOMPARE(fields.first.accessibleDescription(), QString());
}

void TstWarningBox::nextRefusalTakesBackTheOneBefore()
{
    TwoFields fields;
    announceRefusal(&fields.first, "OneInstance");
    announceRefusal(&fields.second, "SelProtocolPls");
    QCOMPARE(fields.first.accessibleDescription(), QString());
    QCOMPARE(fields.second.accessibleDescription(), langText("SelProtocolPls"));
}

// A field may be mended by what no key wrote, or by another field.
void TstWarningBox::nextOkTakesBackTheRefusalBeforeItChecks()
{
    TwoFields fields;
    QDialogButtonBox buttons(QDialogButtonBox::Ok, &fields.window);
    QStringList reasons;
    QObject::connect(&buttons, &QDialogButtonBox::accepted, &fields.window, [&] {
        reasons = QStringList({fields.first.accessibleDescription(), fields.second.accessibleDescription()});
        announceRefusal(&fields.second, "SelProtocolPls");
    });
    announceRefusal(&fields.first, "OneInstance");
    buttons.button(QDialogButtonBox::Ok)->click();
    QCOMPARE(reasons, QStringList({QString(), QString()}));
    QCOMPARE(fields.second.accessibleDescription(), langText("SelProtocolPls"));
    reasons.clear();
    buttons.button(QDialogButtonBox::Ok)->click();
    QCOMPARE(reasons, QStringList({QString(), QString()}));
}

TEST_ENTRY(warningbox, runTest<TstWarningBox>)

#include "tst_warningbox.moc"
