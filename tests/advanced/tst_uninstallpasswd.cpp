#include "advanced/UninstallPasswd.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace dialogplay;

class TstUninstallPasswd : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opensEmptyWithoutTheExtendedPassword();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void labelsAreBuddiesOfTheirFields();
    void hasNoHelpButton();
    void fieldsHideThePassword();
    void fieldsTakeThirtyTwoCharacters();
    void passwordIsTakenExactlyAsTyped_data();
    void passwordIsTakenExactlyAsTyped();
    void emptyPasswordIsRefused_data();
    void emptyPasswordIsRefused();
    void differentTextsAreRefusedAndBothFieldsCleared_data();
    void differentTextsAreRefusedAndBothFieldsCleared();
    void extendedPasswordLeavesTheFieldsUnread_data();
    void extendedPasswordLeavesTheFieldsUnread();
    void correctedPasswordIsAcceptedAfterARefusal();
    void cancelStoresNothing();
};

void TstUninstallPasswd::initTestCase()
{
    showKeysAsTexts();
}

void TstUninstallPasswd::opensEmptyWithoutTheExtendedPassword()
{
    const UninstallPasswd dialog;
    QCOMPARE(child<QLineEdit>(dialog, "input")->text(), QString());
    QCOMPARE(child<QLineEdit>(dialog, "confirm")->text(), QString());
    QVERIFY(!child<QCheckBox>(dialog, "checkBox_extend")->isChecked());
    QCOMPARE(dialog.password, QString());
    QCOMPARE(dialog.extendPassword, 0U);
}

void TstUninstallPasswd::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("input_passwd") << QStringLiteral("input_passwd") << QStringLiteral("CUS_Uinstall_Password");
    QTest::newRow("confirm_passwd") << QStringLiteral("confirm_passwd")
                                    << QStringLiteral("CUS_Uinstall_Password_Confirm");
    QTest::newRow("checkBox_extend") << QStringLiteral("checkBox_extend")
                                     << QStringLiteral("CUS_Uinstall_Password_Extend");
}

void TstUninstallPasswd::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    const UninstallPasswd dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("CUS_Uinstall_Password_Caption"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstUninstallPasswd::labelsAreBuddiesOfTheirFields()
{
    const UninstallPasswd dialog;
    QCOMPARE(child<QLabel>(dialog, "input_passwd")->buddy(), child<QWidget>(dialog, "input"));
    QCOMPARE(child<QLabel>(dialog, "confirm_passwd")->buddy(), child<QWidget>(dialog, "confirm"));
}

void TstUninstallPasswd::hasNoHelpButton()
{
    const UninstallPasswd dialog;
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstUninstallPasswd::fieldsHideThePassword()
{
    const UninstallPasswd dialog;
    QCOMPARE(child<QLineEdit>(dialog, "input")->echoMode(), QLineEdit::Password);
    QCOMPARE(child<QLineEdit>(dialog, "confirm")->echoMode(), QLineEdit::Password);
}

void TstUninstallPasswd::fieldsTakeThirtyTwoCharacters()
{
    const UninstallPasswd dialog;
    for (const char* name : {"input", "confirm"}) {
        type(dialog, name, QString(32, QLatin1Char('a')));
        QCOMPARE(child<QLineEdit>(dialog, name)->text(), QString(32, QLatin1Char('a')));
        type(dialog, name, QString(32, QLatin1Char('a')) + QLatin1Char('b'));
        QCOMPARE(child<QLineEdit>(dialog, name)->text(), QString(32, QLatin1Char('a')));
    }
}

void TstUninstallPasswd::passwordIsTakenExactlyAsTyped_data()
{
    QTest::addColumn<QString>("password");
    QTest::newRow("one character") << QStringLiteral("a");
    QTest::newRow("32 characters") << QStringLiteral("abcdefghijklmnopqrstuvwxyz012345");
    QTest::newRow("blank in front") << QStringLiteral(" secret");
    QTest::newRow("blank behind") << QStringLiteral("secret ");
    QTest::newRow("blanks alone") << QStringLiteral("  ");
    QTest::newRow("mixed case") << QStringLiteral("SeCrEt");
    QTest::newRow("Chinese") << QStringLiteral("密码");
}

void TstUninstallPasswd::passwordIsTakenExactlyAsTyped()
{
    QFETCH(QString, password);
    ModalScript script;
    script.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        child<QLineEdit>(dialog, "input")->insert(password);
        child<QLineEdit>(dialog, "confirm")->insert(password);
        press(dialog, QDialogButtonBox::Ok);
    });
    UninstallPasswd dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.password, password);
    QCOMPARE(dialog.extendPassword, 0U);
}

void TstUninstallPasswd::emptyPasswordIsRefused_data()
{
    QTest::addColumn<QString>("confirmation");
    QTest::newRow("both empty") << QString();
    QTest::newRow("only confirmed") << QStringLiteral("secret");
}

void TstUninstallPasswd::emptyPasswordIsRefused()
{
    QFETCH(QString, confirmation);
    QStringList told;
    QString kept;
    ModalScript script;
    script.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        type(dialog, "confirm", confirmation);
        told = clickRefusedOk(script, dialog);
        kept = child<QLineEdit>(dialog, "confirm")->text();
        press(dialog, QDialogButtonBox::Cancel);
    });
    UninstallPasswd dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "SMT_InputPwdMsgBox", "input"));
    QCOMPARE(kept, confirmation);
    QCOMPARE(dialog.password, QString());
    QCOMPARE(dialog.extendPassword, 0U);
}

void TstUninstallPasswd::differentTextsAreRefusedAndBothFieldsCleared_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("confirmation");
    QTest::newRow("blank in front") << QStringLiteral(" secret") << QStringLiteral("secret");
    QTest::newRow("blank behind") << QStringLiteral("secret") << QStringLiteral("secret ");
    QTest::newRow("case") << QStringLiteral("secret") << QStringLiteral("Secret");
    QTest::newRow("no confirmation") << QStringLiteral("secret") << QString();
}

void TstUninstallPasswd::differentTextsAreRefusedAndBothFieldsCleared()
{
    QFETCH(QString, password);
    QFETCH(QString, confirmation);
    QStringList told;
    QStringList left;
    ModalScript script;
    script.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        type(dialog, "input", password);
        type(dialog, "confirm", confirmation);
        told = clickRefusedOk(script, dialog);
        left = QStringList{child<QLineEdit>(dialog, "input")->text(), child<QLineEdit>(dialog, "confirm")->text()};
        press(dialog, QDialogButtonBox::Cancel);
    });
    UninstallPasswd dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "SMT_PwdDismatchMsgBox", "input"));
    QCOMPARE(left, QStringList({QString(), QString()}));
    QCOMPARE(dialog.password, QString());
    QCOMPARE(dialog.extendPassword, 0U);
}

void TstUninstallPasswd::extendedPasswordLeavesTheFieldsUnread_data()
{
    QTest::addColumn<QString>("password");
    QTest::addColumn<QString>("confirmation");
    QTest::newRow("empty fields") << QString() << QString();
    QTest::newRow("different texts") << QStringLiteral("secret") << QStringLiteral("other");
    QTest::newRow("same text") << QStringLiteral("secret") << QStringLiteral("secret");
}

void TstUninstallPasswd::extendedPasswordLeavesTheFieldsUnread()
{
    QFETCH(QString, password);
    QFETCH(QString, confirmation);
    ModalScript script;
    script.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        type(dialog, "input", password);
        type(dialog, "confirm", confirmation);
        child<QCheckBox>(dialog, "checkBox_extend")->click();
        press(dialog, QDialogButtonBox::Ok);
    });
    UninstallPasswd dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.password, QString());
    QCOMPARE(dialog.extendPassword, 1U);
}

void TstUninstallPasswd::correctedPasswordIsAcceptedAfterARefusal()
{
    QStringList told;
    ModalScript script;
    script.expect<UninstallPasswd>([&](UninstallPasswd& dialog) {
        type(dialog, "input", QStringLiteral("first"));
        told = clickRefusedOk(script, dialog);
        type(dialog, "input", QStringLiteral("second"));
        type(dialog, "confirm", QStringLiteral("second"));
        press(dialog, QDialogButtonBox::Ok);
    });
    UninstallPasswd dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("SCE_SceneTipsTitle", "SMT_PwdDismatchMsgBox", "input"));
    QCOMPARE(dialog.password, QStringLiteral("second"));
}

void TstUninstallPasswd::cancelStoresNothing()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<UninstallPasswd>([](UninstallPasswd& dialog) {
        type(dialog, "input", QStringLiteral("secret"));
        type(dialog, "confirm", QStringLiteral("secret"));
        child<QCheckBox>(dialog, "checkBox_extend")->click();
        press(dialog, QDialogButtonBox::Cancel);
    });
    UninstallPasswd dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(dialog.password, QString());
    QCOMPARE(dialog.extendPassword, 0U);
}

TEST_ENTRY(uninstallpasswd, runTest<TstUninstallPasswd>)

#include "tst_uninstallpasswd.moc"
