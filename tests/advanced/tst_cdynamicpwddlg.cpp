#include "advanced/CDynamicPwdDlg.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QTest>

using namespace dialogplay;

class TstCDynamicPwdDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opensWithOnlyTheChangeAllowed();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void hasNoHelpButton();
    void okAssignsBothFlags_data();
    void okAssignsBothFlags();
    void aSecondOkClearsWhatTheFirstSet();
    void cancelLeavesTheFlagsAtZero();
};

void TstCDynamicPwdDlg::initTestCase()
{
    showKeysAsTexts();
}

void TstCDynamicPwdDlg::opensWithOnlyTheChangeAllowed()
{
    const CDynamicPwdDlg dialog;
    QVERIFY(!child<QCheckBox>(dialog, "checkBox_default")->isChecked());
    QVERIFY(child<QCheckBox>(dialog, "checkBox_editable")->isChecked());
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 0);
}

void TstCDynamicPwdDlg::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("checkBox_default") << QStringLiteral("checkBox_default") << QStringLiteral("CUS_DefaultChecked");
    QTest::newRow("checkBox_editable") << QStringLiteral("checkBox_editable") << QStringLiteral("CUS_ChangeEnable");
}

void TstCDynamicPwdDlg::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    const CDynamicPwdDlg dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("CUS_DynpwdVifTitle"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstCDynamicPwdDlg::hasNoHelpButton()
{
    const CDynamicPwdDlg dialog;
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstCDynamicPwdDlg::okAssignsBothFlags_data()
{
    QTest::addColumn<bool>("isDefault");
    QTest::addColumn<bool>("isEditable");
    QTest::newRow("neither") << false << false;
    QTest::newRow("changeable") << false << true;
    QTest::newRow("selected by default") << true << false;
    QTest::newRow("both") << true << true;
}

void TstCDynamicPwdDlg::okAssignsBothFlags()
{
    QFETCH(bool, isDefault);
    QFETCH(bool, isEditable);
    ModalScript script;
    script.expect<CDynamicPwdDlg>([&](CDynamicPwdDlg& dialog) {
        tick(dialog, "checkBox_default", isDefault);
        tick(dialog, "checkBox_editable", isEditable);
        press(dialog, QDialogButtonBox::Ok);
    });
    CDynamicPwdDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(int(dialog.defaultChecked), isDefault ? 1 : 0);
    QCOMPARE(int(dialog.changeEnable), isEditable ? 1 : 0);
}

void TstCDynamicPwdDlg::aSecondOkClearsWhatTheFirstSet()
{
    ModalScript script;
    for (const bool ticked : {true, false}) {
        script.expect<CDynamicPwdDlg>([ticked](CDynamicPwdDlg& dialog) {
            tick(dialog, "checkBox_default", ticked);
            tick(dialog, "checkBox_editable", ticked);
            press(dialog, QDialogButtonBox::Ok);
        });
    }
    CDynamicPwdDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(int(dialog.defaultChecked), 1);
    QCOMPARE(int(dialog.changeEnable), 1);
    QTest::qWait(50); // the script must see the window gone before it opens again
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 0);
}

void TstCDynamicPwdDlg::cancelLeavesTheFlagsAtZero()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<CDynamicPwdDlg>([](CDynamicPwdDlg& dialog) {
        tick(dialog, "checkBox_default", true);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CDynamicPwdDlg dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(int(dialog.defaultChecked), 0);
    QCOMPARE(int(dialog.changeEnable), 0);
}

TEST_ENTRY(cdynamicpwddlg, runTest<TstCDynamicPwdDlg>)

#include "tst_cdynamicpwddlg.moc"
