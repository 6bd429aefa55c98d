#include "advanced/WancontrolDlg.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"

#include <QDialogButtonBox>
#include <QRadioButton>
#include <QTest>

using namespace dialogplay;

class TstWancontrolDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void opensWithPassSelected();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void hasNoHelpButton();
    void okStoresTheSelectedAction_data();
    void okStoresTheSelectedAction();
    void onlyOkReadsTheChoice_data();
    void onlyOkReadsTheChoice();
    void cancelClosesTheWindow();
};

void TstWancontrolDlg::initTestCase()
{
    showKeysAsTexts();
}

void TstWancontrolDlg::opensWithPassSelected()
{
    const WancontrolDlg dialog;
    QVERIFY(child<QRadioButton>(dialog, "radioButton_Pass")->isChecked());
    QVERIFY(!child<QRadioButton>(dialog, "radioButton_Deny")->isChecked());
    QCOMPARE(dialog.passAction, 1U);
}

void TstWancontrolDlg::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("label_Des") << QStringLiteral("label_Des") << QStringLiteral("Wancontrol_Opt_Stc");
    QTest::newRow("radioButton_Pass") << QStringLiteral("radioButton_Pass") << QStringLiteral("Pass_Rad");
    QTest::newRow("radioButton_Deny") << QStringLiteral("radioButton_Deny") << QStringLiteral("Deny_Rad");
}

void TstWancontrolDlg::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    const WancontrolDlg dialog;
    QCOMPARE(dialog.windowTitle(), QStringLiteral("wancontrol_title"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstWancontrolDlg::hasNoHelpButton()
{
    const WancontrolDlg dialog;
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstWancontrolDlg::okStoresTheSelectedAction_data()
{
    QTest::addColumn<QString>("radioButton");
    QTest::addColumn<quint32>("passAction");
    QTest::newRow("pass") << QStringLiteral("radioButton_Pass") << 1U;
    QTest::newRow("discard") << QStringLiteral("radioButton_Deny") << 0U;
}

void TstWancontrolDlg::okStoresTheSelectedAction()
{
    QFETCH(QString, radioButton);
    ModalScript script;
    script.expect<WancontrolDlg>([&](WancontrolDlg& dialog) {
        child<QRadioButton>(dialog, radioButton.toLatin1().constData())->click();
        press(dialog, QDialogButtonBox::Ok);
    });
    WancontrolDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QTEST(dialog.passAction, "passAction");
}

void TstWancontrolDlg::onlyOkReadsTheChoice_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("Cancel") << false;
    QTest::newRow("Escape") << true;
}

void TstWancontrolDlg::onlyOkReadsTheChoice()
{
    QFETCH(bool, byKey);
    ModalScript script;
    script.expect<WancontrolDlg>([&](WancontrolDlg& dialog) {
        child<QRadioButton>(dialog, "radioButton_Deny")->click();
        if (byKey)
            QTest::keyClick(&dialog, Qt::Key_Escape);
        else
            press(dialog, QDialogButtonBox::Cancel);
    });
    WancontrolDlg dialog;
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.passAction, 1U);
}

void TstWancontrolDlg::cancelClosesTheWindow()
{
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<WancontrolDlg>([](WancontrolDlg& dialog) { press(dialog, QDialogButtonBox::Cancel); });
    WancontrolDlg dialog;
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 1);
}

TEST_ENTRY(wancontroldlg, runTest<TstWancontrolDlg>)

#include "tst_wancontroldlg.moc"
