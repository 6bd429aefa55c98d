#include "advanced/UninstallPasswd.h"
#include "app/myapplication.h"
#include "support/Installation.h"
#include "support/ModalScript.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

#include <cstdlib>
#include <memory>

namespace {

template <class Widget> Widget* child(const QWidget& window, const char* name)
{
    Widget* const widget = window.findChild<Widget*>(QLatin1String(name));
    if (!widget)
        qFatal("no widget %s", name);
    return widget;
}

void click(const QDialog& dialog, QDialogButtonBox::StandardButton button)
{
    QTest::mouseClick(child<QDialogButtonBox>(dialog, "buttonBox")->button(button), Qt::LeftButton);
}

void type(const QDialog& dialog, const char* edit, const QString& text)
{
    QLineEdit* const field = child<QLineEdit>(dialog, edit);
    field->clear();
    QTest::keyClicks(field, text);
}

/// Clicks OK, plays the one message box that follows, and tells what it showed and how the dialog stands behind it.
QStringList clickRefusedOk(ModalScript& script, const QDialog& dialog)
{
    const auto told = std::make_shared<QStringList>();
    script.expect<QMessageBox>([told](QMessageBox& box) {
        QPushButton* const ok = qobject_cast<QPushButton*>(box.button(QMessageBox::Ok));
        told->append({box.windowTitle(), box.text(), QString::number(box.icon()),
                      QString::number(box.standardButtons(), 16), QString::number(ok && box.defaultButton() == ok)});
        if (ok)
            QTest::mouseClick(ok, Qt::LeftButton);
        else
            box.reject();
    });
    click(dialog, QDialogButtonBox::Ok);
    const QWidget* const focus = dialog.focusWidget();
    told->append({focus ? focus->objectName() : QString(), QString::number(dialog.isVisible())});
    return *told;
}

QStringList refusal(const char* titleKey, const char* textKey, const char* focus)
{
    const QString yes = QStringLiteral("1");
    return {QLatin1String(titleKey),
            QLatin1String(textKey),
            QString::number(QMessageBox::Warning),
            QString::number(QMessageBox::Ok, 16),
            yes,
            QLatin1String(focus),
            yes};
}

QString okText(const QDialog& dialog)
{
    return child<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Ok)->text();
}

QString cancelText(const QDialog& dialog)
{
    return child<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Cancel)->text();
}

/// A table in which every key reads as itself, so that no key can pass for another.
void showKeysAsTexts()
{
    QByteArray xml = "<language>";
    const QByteArray keys = installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/tests/data/language_keys.txt"));
    for (const QByteArray& key : keys.simplified().split(' '))
        xml += "<control key=\"" + key + "\">" + key + "</control>";
    const QString path = installation::path(QStringLiteral("keys.xml"));
    installation::writeFile(path, xml + "</language>");
    CMyApplication::current()->m_LanguageParser.LoadLanguage(path);
}

class CloseEvents : public QObject
{
public:
    int count = 0;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        count += event->type() == QEvent::Close ? 1 : 0;
        return QObject::eventFilter(watched, event);
    }
};

} // namespace

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
        click(dialog, QDialogButtonBox::Ok);
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
        click(dialog, QDialogButtonBox::Cancel);
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
        click(dialog, QDialogButtonBox::Cancel);
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
        click(dialog, QDialogButtonBox::Ok);
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
        click(dialog, QDialogButtonBox::Ok);
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
        click(dialog, QDialogButtonBox::Cancel);
    });
    UninstallPasswd dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(dialog.password, QString());
    QCOMPARE(dialog.extendPassword, 0U);
}

int main(int argc, char** argv)
{
    CMyApplication application(argc, argv);
    if (application.m_bAlreadyRunning)
        return EXIT_FAILURE;
    TstUninstallPasswd test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_uninstallpasswd.moc"
