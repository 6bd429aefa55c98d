#include "advanced/CInput1XDomainDlg.h"
#include "support/DialogPlay.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

using namespace dialogplay;

namespace {

SUIDomainInfo twoDomains()
{
    SUIDomainInfo info;
    info.domaindetail = {{QStringLiteral("one"), QStringLiteral("First")},
                         {QStringLiteral("two"), QStringLiteral("Second")}};
    return info;
}

} // namespace

class TstCInput1XDomainDlg : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void takesEveryTextFromTheLanguageTable_data();
    void takesEveryTextFromTheLanguageTable();
    void labelsAreBuddiesOfTheirFields();
    void hasNoHelpButton();
    void opensWithWhatItIsGiven_data();
    void opensWithWhatItIsGiven();
    void maximumOfThirtyActsOnTypedAndOnLoadedTexts();
    void okStoresTextsAndTheTickAsTheyStand_data();
    void okStoresTextsAndTheTickAsTheyStand();
    void disabledBoxKeepsItsTickAsTheResult_data();
    void disabledBoxKeepsItsTickAsTheResult();
    void entryThatTheListHasIsRefusedWhenDuplicatesAreChecked_data();
    void entryThatTheListHasIsRefusedWhenDuplicatesAreChecked();
    void duplicateTestComparesExactly_data();
    void duplicateTestComparesExactly();
    void duplicatesPassWhenTheyAreNotChecked();
    void duplicateTestSeesTheListAsItIsAtOk();
    void emptyDomainPasses();
    void emptyDescriptionIsRefused();
    void limitOfThirtyTwoStandsBesideTheMaximumOfTheEdits_data();
    void limitOfThirtyTwoStandsBesideTheMaximumOfTheEdits();
    void resultsAreStoredBeforeAnyCheck();
    void cancelLeavesTheGivenValues();
};

void TstCInput1XDomainDlg::initTestCase()
{
    showKeysAsTexts();
}

void TstCInput1XDomainDlg::takesEveryTextFromTheLanguageTable_data()
{
    QTest::addColumn<QString>("widget");
    QTest::addColumn<QString>("key");
    QTest::newRow("checkBox_dftDomain") << QStringLiteral("checkBox_dftDomain") << QStringLiteral("CUS_DomainDefault");
    QTest::newRow("label_domain") << QStringLiteral("label_domain") << QStringLiteral("CUS_InputDomainStatic");
    QTest::newRow("label_des_domain") << QStringLiteral("label_des_domain") << QStringLiteral("CUS_InputDomainTitle");
}

void TstCInput1XDomainDlg::takesEveryTextFromTheLanguageTable()
{
    QFETCH(QString, widget);
    QFETCH(QString, key);
    SUIDomainInfo info;
    const CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("CUS_DomainTitle"));
    QCOMPARE(okText(dialog), QStringLiteral("ok_button"));
    QCOMPARE(cancelText(dialog), QStringLiteral("cancel_button"));
    QCOMPARE(child<QWidget>(dialog, widget.toLatin1().constData())->property("text").toString(), key);
}

void TstCInput1XDomainDlg::labelsAreBuddiesOfTheirFields()
{
    SUIDomainInfo info;
    const CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(child<QLabel>(dialog, "label_domain")->buddy(), child<QWidget>(dialog, "lineEdit_domain"));
    QCOMPARE(child<QLabel>(dialog, "label_des_domain")->buddy(), child<QWidget>(dialog, "lineEdit_des_domain"));
}

void TstCInput1XDomainDlg::hasNoHelpButton()
{
    SUIDomainInfo info;
    const CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QVERIFY(!dialog.windowFlags().testFlag(Qt::WindowContextHelpButtonHint));
}

void TstCInput1XDomainDlg::opensWithWhatItIsGiven_data()
{
    QTest::addColumn<qulonglong>("defaultExists");
    QTest::addColumn<bool>("startChecked");
    QTest::addColumn<bool>("isEnabled");
    QTest::newRow("no default yet") << 0ULL << false << true;
    QTest::newRow("the default itself") << 0ULL << true << true;
    QTest::newRow("another default") << 1ULL << false << false;
    QTest::newRow("any number but 0") << 2ULL << false << false;
    QTest::newRow("another default, ticked") << 1ULL << true << false;
}

void TstCInput1XDomainDlg::opensWithWhatItIsGiven()
{
    QFETCH(qulonglong, defaultExists);
    QFETCH(bool, startChecked);
    QFETCH(bool, isEnabled);
    SUIDomainInfo info;
    QWidget parent;
    const CInput1XDomainDlg dialog(info, static_cast<unsigned long>(defaultExists), QStringLiteral("corp.example"),
                                   QStringLiteral("Head office"), startChecked, true, &parent);
    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_domain")->text(), QStringLiteral("corp.example"));
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_des_domain")->text(), QStringLiteral("Head office"));
    QCOMPARE(child<QCheckBox>(dialog, "checkBox_dftDomain")->isChecked(), startChecked);
    QCOMPARE(child<QCheckBox>(dialog, "checkBox_dftDomain")->isEnabled(), isEnabled);
    QCOMPARE(qulonglong(dialog.defaultExists), defaultExists);
    QCOMPARE(dialog.domain, QStringLiteral("corp.example"));
    QCOMPARE(dialog.description, QStringLiteral("Head office"));
}

void TstCInput1XDomainDlg::maximumOfThirtyActsOnTypedAndOnLoadedTexts()
{
    const QString thirty(30, QLatin1Char('d'));
    SUIDomainInfo info;
    const CInput1XDomainDlg dialog(info, 0, thirty + QLatin1Char('x'), thirty + QLatin1Char('y'), false, true, nullptr);
    for (const char* name : {"lineEdit_domain", "lineEdit_des_domain"}) {
        QCOMPARE(child<QLineEdit>(dialog, name)->text(), thirty);
        type(dialog, name, thirty + QLatin1Char('z'));
        QCOMPARE(child<QLineEdit>(dialog, name)->text(), thirty);
    }
}

void TstCInput1XDomainDlg::okStoresTextsAndTheTickAsTheyStand_data()
{
    QTest::addColumn<bool>("startChecked");
    QTest::addColumn<bool>("isDefault");
    QTest::newRow("stays clear") << false << false;
    QTest::newRow("becomes the default") << false << true;
    QTest::newRow("stops being the default") << true << false;
    QTest::newRow("stays the default") << true << true;
}

void TstCInput1XDomainDlg::okStoresTextsAndTheTickAsTheyStand()
{
    QFETCH(bool, startChecked);
    QFETCH(bool, isDefault);
    SUIDomainInfo info;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QStringLiteral(" corp "));
        type(dialog, "lineEdit_des_domain", QStringLiteral(" office "));
        if (startChecked != isDefault)
            child<QCheckBox>(dialog, "checkBox_dftDomain")->click();
        press(dialog, QDialogButtonBox::Ok);
    });
    CInput1XDomainDlg dialog(info, 0, QStringLiteral("old"), QStringLiteral("old"), startChecked, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.domain, QStringLiteral(" corp "));
    QCOMPARE(dialog.description, QStringLiteral(" office "));
    QCOMPARE(dialog.defaultExists, isDefault ? 1UL : 0UL);
    QCOMPARE(info.domaindetail.size(), 0);
}

void TstCInput1XDomainDlg::disabledBoxKeepsItsTickAsTheResult_data()
{
    QTest::addColumn<bool>("startChecked");
    QTest::newRow("clear") << false;
    QTest::newRow("ticked") << true;
}

void TstCInput1XDomainDlg::disabledBoxKeepsItsTickAsTheResult()
{
    QFETCH(bool, startChecked);
    SUIDomainInfo info;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) {
        child<QCheckBox>(dialog, "checkBox_dftDomain")->click();
        type(dialog, "lineEdit_des_domain", QStringLiteral("office"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CInput1XDomainDlg dialog(info, 7, QString(), QString(), startChecked, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.defaultExists, startChecked ? 1UL : 0UL);
}

void TstCInput1XDomainDlg::entryThatTheListHasIsRefusedWhenDuplicatesAreChecked_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("focus");
    const QByteArray nameExists = "CUS_DomainExistWarning";
    const QByteArray descriptionExists = "CUS_DomainDesExistWarning";
    const QByteArray nameEdit = "lineEdit_domain";
    const QByteArray descriptionEdit = "lineEdit_des_domain";
    QTest::newRow("name of the first") << QStringLiteral("one") << QStringLiteral("new") << nameExists << nameEdit;
    QTest::newRow("name of the last") << QStringLiteral("two") << QStringLiteral("new") << nameExists << nameEdit;
    QTest::newRow("description of the first")
        << QStringLiteral("new") << QStringLiteral("First") << descriptionExists << descriptionEdit;
    QTest::newRow("description of the last")
        << QStringLiteral("new") << QStringLiteral("Second") << descriptionExists << descriptionEdit;
    QTest::newRow("both of one: the name comes first")
        << QStringLiteral("two") << QStringLiteral("Second") << nameExists << nameEdit;
    QTest::newRow("description of an earlier entry comes before a later name")
        << QStringLiteral("two") << QStringLiteral("First") << descriptionExists << descriptionEdit;
    QTest::newRow("name of an earlier entry comes before a later description")
        << QStringLiteral("one") << QStringLiteral("Second") << nameExists << nameEdit;
    QTest::newRow("before the empty description") << QStringLiteral("one") << QString() << nameExists << nameEdit;
    QTest::newRow("empty description that the list has")
        << QStringLiteral("new") << QString() << descriptionExists << descriptionEdit;
    QTest::newRow("empty name that the list has") << QString() << QStringLiteral("new") << nameExists << nameEdit;
}

void TstCInput1XDomainDlg::entryThatTheListHasIsRefusedWhenDuplicatesAreChecked()
{
    QFETCH(QString, domain);
    QFETCH(QString, description);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, focus);
    SUIDomainInfo info = twoDomains();
    if (description.isEmpty())
        info.domaindetail.append({QStringLiteral("three"), QString()});
    if (domain.isEmpty())
        info.domaindetail.append({QString(), QStringLiteral("Third")});
    QStringList told;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", domain);
        type(dialog, "lineEdit_des_domain", description);
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("CUS_InputDomainTitle", key.constData(), focus.constData()));
}

void TstCInput1XDomainDlg::duplicateTestComparesExactly_data()
{
    QTest::addColumn<QString>("domain");
    QTest::addColumn<QString>("description");
    QTest::newRow("case") << QStringLiteral("ONE") << QStringLiteral("FIRST");
    QTest::newRow("blank behind") << QStringLiteral("one ") << QStringLiteral("First ");
    QTest::newRow("name as a description") << QStringLiteral("First") << QStringLiteral("one");
}

void TstCInput1XDomainDlg::duplicateTestComparesExactly()
{
    QFETCH(QString, domain);
    QFETCH(QString, description);
    SUIDomainInfo info = twoDomains();
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", domain);
        type(dialog, "lineEdit_des_domain", description);
        press(dialog, QDialogButtonBox::Ok);
    });
    CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.domain, domain);
    QCOMPARE(dialog.description, description);
}

void TstCInput1XDomainDlg::duplicatesPassWhenTheyAreNotChecked()
{
    SUIDomainInfo info = twoDomains();
    ModalScript script;
    script.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) { press(dialog, QDialogButtonBox::Ok); });
    CInput1XDomainDlg dialog(info, 0, QStringLiteral("one"), QStringLiteral("First"), false, false, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
}

void TstCInput1XDomainDlg::duplicateTestSeesTheListAsItIsAtOk()
{
    SUIDomainInfo info;
    QStringList told;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        info = twoDomains();
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CInput1XDomainDlg dialog(info, 0, QStringLiteral("one"), QStringLiteral("new"), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("CUS_InputDomainTitle", "CUS_DomainExistWarning", "lineEdit_domain"));
}

void TstCInput1XDomainDlg::emptyDomainPasses()
{
    SUIDomainInfo info = twoDomains();
    ModalScript script;
    script.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QString());
        type(dialog, "lineEdit_des_domain", QStringLiteral("d"));
        press(dialog, QDialogButtonBox::Ok);
    });
    CInput1XDomainDlg dialog(info, 0, QStringLiteral("old"), QString(), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.domain, QString());
    QCOMPARE(dialog.description, QStringLiteral("d"));
}

void TstCInput1XDomainDlg::emptyDescriptionIsRefused()
{
    SUIDomainInfo info = twoDomains();
    QStringList told;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QStringLiteral("three"));
        told = clickRefusedOk(script, dialog);
        type(dialog, "lineEdit_des_domain", QStringLiteral(" "));
        press(dialog, QDialogButtonBox::Ok);
    });
    CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("CUS_InputDomainTitle", "CUS_InputDomainErr", "lineEdit_des_domain"));
    QCOMPARE(dialog.description, QStringLiteral(" "));
}

void TstCInput1XDomainDlg::limitOfThirtyTwoStandsBesideTheMaximumOfTheEdits_data()
{
    QTest::addColumn<int>("domainLength");
    QTest::addColumn<int>("descriptionLength");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("focus");
    QTest::newRow("32 each") << 32 << 32 << QByteArray() << QByteArray();
    QTest::newRow("domain of 33") << 33 << 1 << QByteArray("CUS_InputDomainLenErr") << QByteArray("lineEdit_domain");
    QTest::newRow("description of 33") << 1 << 33 << QByteArray("CUS_InputDomainLenErr")
                                       << QByteArray("lineEdit_des_domain");
    QTest::newRow("both of 33") << 33 << 33 << QByteArray("CUS_InputDomainLenErr") << QByteArray("lineEdit_domain");
    QTest::newRow("domain of 33 before the empty description")
        << 33 << 0 << QByteArray("CUS_InputDomainLenErr") << QByteArray("lineEdit_domain");
}

void TstCInput1XDomainDlg::limitOfThirtyTwoStandsBesideTheMaximumOfTheEdits()
{
    QFETCH(int, domainLength);
    QFETCH(int, descriptionLength);
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, focus);
    SUIDomainInfo info;
    QStringList told;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        child<QLineEdit>(dialog, "lineEdit_domain")->setMaxLength(40);
        child<QLineEdit>(dialog, "lineEdit_des_domain")->setMaxLength(40);
        type(dialog, "lineEdit_domain", QString(domainLength, QLatin1Char('d')));
        type(dialog, "lineEdit_des_domain", QString(descriptionLength, QLatin1Char('e')));
        if (key.isEmpty()) {
            press(dialog, QDialogButtonBox::Ok);
        } else {
            told = clickRefusedOk(script, dialog);
            press(dialog, QDialogButtonBox::Cancel);
        }
    });
    CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(key.isEmpty() ? QDialog::Accepted : QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, key.isEmpty() ? QStringList() : refusal("CUS_InputDomainTitle", key.constData(), focus.constData()));
}

void TstCInput1XDomainDlg::resultsAreStoredBeforeAnyCheck()
{
    SUIDomainInfo info = twoDomains();
    QStringList told;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QStringLiteral("one"));
        type(dialog, "lineEdit_des_domain", QStringLiteral("new"));
        child<QCheckBox>(dialog, "checkBox_dftDomain")->click();
        told = clickRefusedOk(script, dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    CInput1XDomainDlg dialog(info, 0, QString(), QString(), false, true, nullptr);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(told, refusal("CUS_InputDomainTitle", "CUS_DomainExistWarning", "lineEdit_domain"));
    QCOMPARE(dialog.domain, QStringLiteral("one"));
    QCOMPARE(dialog.description, QStringLiteral("new"));
    QCOMPARE(dialog.defaultExists, 1UL);
}

void TstCInput1XDomainDlg::cancelLeavesTheGivenValues()
{
    SUIDomainInfo info;
    CloseEvents closeEvents;
    ModalScript script;
    script.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QStringLiteral("changed"));
        type(dialog, "lineEdit_des_domain", QStringLiteral("changed"));
        press(dialog, QDialogButtonBox::Cancel);
    });
    CInput1XDomainDlg dialog(info, 3, QStringLiteral("one"), QStringLiteral("First"), false, true, nullptr);
    dialog.installEventFilter(&closeEvents);
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(closeEvents.count, 0);
    QCOMPARE(dialog.domain, QStringLiteral("one"));
    QCOMPARE(dialog.description, QStringLiteral("First"));
    QCOMPARE(dialog.defaultExists, 3UL);
}

TEST_ENTRY(cinput1xdomaindlg, runTest<TstCInput1XDomainDlg>)

#include "tst_cinput1xdomaindlg.moc"
