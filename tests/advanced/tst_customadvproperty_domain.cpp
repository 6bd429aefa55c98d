#include "advanced/CustomAdvPlayer.h"

#include "advanced/CInput1XDomainDlg.h"
#include "support/TestEntry.h"

#include <QLineEdit>

using namespace advplay;

namespace {

const char table[] = "treeWidget_Domain";
const char addButton[] = "pushButton_Add_2";
const char editButton[] = "pushButton_Edit_2";
const char deleteButton[] = "pushButton_Delete_2";

QStringList buttons()
{
    return words("pushButton_Add_2 pushButton_Edit_2 pushButton_Delete_2");
}

/// Domains "d1" with the description "one" and so on.
CustomInfo startWith(int count, quint64 domainDefault = 0)
{
    static const char* const descriptions[] = {"one",   "two",   "three", "four", "five",  "six",
                                               "seven", "eight", "nine",  "ten",  "eleven"};
    CustomInfo info = recordFor(procom::x1);
    info.vpn.ikecfg.IKEAuthMethod.clear(); // as OK stores it without the L2TP tab
    for (int number = 1; number <= count; ++number)
        info.domain.domaindetail.append({QStringLiteral("d%1").arg(number), QLatin1String(descriptions[number - 1])});
    info.domain.domainDefault = domainDefault;
    return info;
}

QString withDefault(const char* name)
{
    return QLatin1String(name) + langText("CUS_Default");
}

void fillAndAccept(CInput1XDomainDlg& dialog, const QString& name, const QString& description, bool isDefault)
{
    type(dialog, "lineEdit_domain", name);
    type(dialog, "lineEdit_des_domain", description);
    if (child<QAbstractButton>(dialog, "checkBox_dftDomain")->isChecked() != isDefault)
        click(dialog, "checkBox_dftDomain");
    press(dialog, QDialogButtonBox::Ok);
}

void addDomain(OpenDialog& open, const QString& name, const QString& description, bool isDefault = false)
{
    open.expect<CInput1XDomainDlg>(
        [=](CInput1XDomainDlg& dialog) { fillAndAccept(dialog, name, description, isDefault); });
    open.clickOn(addButton);
}

void editDomain(OpenDialog& open, int row, const QString& name, const QString& description, bool isDefault)
{
    open.selectRow(table, row);
    open.expect<CInput1XDomainDlg>(
        [=](CInput1XDomainDlg& dialog) { fillAndAccept(dialog, name, description, isDefault); });
    open.clickOn(editButton);
}

void deleteDomain(OpenDialog& open, int row)
{
    open.selectRow(table, row);
    open.clickOn(deleteButton);
}

/// The working list as "name|description".
QStringList listOf(const SUIDomainInfo& domain)
{
    QStringList entries;
    for (const DomainDetail& entry : domain.domaindetail)
        entries.append(entry.domainName + QLatin1Char('|') + entry.domainDesp);
    return entries;
}

} // namespace

class TstCustomAdvPropertyDomain : public QObject
{
    Q_OBJECT

private slots:
    void listIsLoaded();
    void listWithADefaultIsLoaded();
    void longTextsAreElidedInTheMiddle();
    void okStoresTheListAndTheFlags();
    void forceIsLoadedAndStored();
    void domainIsAppended();
    void cancelledAddChangesNothing();
    void defaultIsAddedInFront();
    void newDefaultShowsTheHighestNumberUntilTheNextRenumbering();
    void tenDomainsDisableAdd();
    void storedTenDomainsLeaveRoomForOneMore();
    void addRefusesDuplicates_data();
    void addRefusesDuplicates();
    void emptyDomainNamePasses();
    void emptyTableLeavesEditAndDeleteEnabled();
    void editStartsWithTheRow_data();
    void editStartsWithTheRow();
    void editFollowsTheDefaultRule_data();
    void editFollowsTheDefaultRule();
    void editedRowBecomesTheDefault();
    void editAcceptsUnchangedValues();
    void editRefusesDuplicates_data();
    void editRefusesDuplicates();
    void editedDomainHasNoParent();
    void cancelledEditChangesNothing();
    void editFindsTheFirstEntryWithTheDescription();
    void editedDefaultOfARowMovesTheEntryFound();
    void defaultRuleLooksAtTheRowNotAtTheEntryFound();
    void editComparesExactly();
    void editSkipsTheEntryFoundNotTheRow();
    void editOfARowThatTheListLacksEndsSilently();
    void selectionFollowsTheEditedDomainToTheHead_data();
    void selectionFollowsTheEditedDomainToTheHead();
    void editWithoutAMoveKeepsTheSelection();
    void rowIsDeletedAndTheOthersRenumbered();
    void deletedFirstRowLeavesNoDefault_data();
    void deletedFirstRowLeavesNoDefault();
    void deleteFindsTheFirstEntryWithTheName();
    void lastRowDeletedDisablesEditAndDelete();
    void cancelDropsTheList();
};

void TstCustomAdvPropertyDomain::listIsLoaded()
{
    OpenDialog open(startWith(2));
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|d1|one"), QStringLiteral("2|d2|two")}));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d2|two")}));
    QCOMPARE(open.enabledOf(buttons()), buttons());
}

void TstCustomAdvPropertyDomain::listWithADefaultIsLoaded()
{
    CustomInfo before = startWith(2, 1);
    before.domain.domainSlot = 44;
    OpenDialog open(before);
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|%1|one").arg(withDefault("d1")), QStringLiteral("2|d2|two")}));
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(1));
    QCOMPARE(open.dialog.domainInfo.domainSlot, quint64(44));
}

void TstCustomAdvPropertyDomain::longTextsAreElidedInTheMiddle()
{
    OpenDialog open(startWith(0));
    QCOMPARE(open.widget<QTreeWidget>(table)->textElideMode(), Qt::ElideMiddle);
    QCOMPARE(open.widget<QTreeWidget>(table)->columnCount(), 3);
}

void TstCustomAdvPropertyDomain::okStoresTheListAndTheFlags()
{
    CustomInfo before = startWith(1);
    before.domain.domainSlot = 44;
    OpenDialog open(before);
    addDomain(open, QStringLiteral("head"), QStringLiteral("default"), true);
    open.tick("checkBox_DomainForce");
    QCOMPARE(changes(before, open.info), QStringList());
    open.pressOk();
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!open.isOpen());
    QCOMPARE(listOf(open.info.domain), QStringList({QStringLiteral("head|default"), QStringLiteral("d1|one")}));
    QCOMPARE(open.info.domain.domainDefault, quint64(1));
    QCOMPARE(open.info.domain.domainForce, quint64(1));
    QCOMPARE(open.info.domain.domainSlot, quint64(44));
}

void TstCustomAdvPropertyDomain::forceIsLoadedAndStored()
{
    CustomInfo before = startWith(1);
    before.domain.domainForce = 5;
    {
        OpenDialog open(before);
        QVERIFY(open.isOn("checkBox_DomainForce"));
        open.pressOk();
        QCOMPARE(open.info.domain.domainForce, quint64(1));
    }
    OpenDialog open(before);
    open.tick("checkBox_DomainForce", false);
    open.pressOk();
    QCOMPARE(open.info.domain.domainForce, quint64(0));
}

void TstCustomAdvPropertyDomain::domainIsAppended()
{
    OpenDialog open(startWith(1));
    addDomain(open, QStringLiteral("new"), QStringLiteral("described"));
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|d1|one"), QStringLiteral("2|new|described")}));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("new|described")}));
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(0));
    const auto* widget = open.widget<QTreeWidget>(table);
    QCOMPARE(widget->indexOfTopLevelItem(widget->currentItem()), 1);
}

void TstCustomAdvPropertyDomain::cancelledAddChangesNothing()
{
    OpenDialog open(startWith(1));
    open.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QStringLiteral("new"));
        click(dialog, "checkBox_dftDomain");
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList(QStringLiteral("1|d1|one")));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList(QStringLiteral("d1|one")));
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(0));
}

void TstCustomAdvPropertyDomain::defaultIsAddedInFront()
{
    OpenDialog open(startWith(0));
    QObject* parent = nullptr;
    bool isFree = false;
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        parent = dialog.parent();
        isFree = child<QWidget>(dialog, "checkBox_dftDomain")->isEnabled();
        fillAndAccept(dialog, QStringLiteral("head"), QStringLiteral("default"), true);
    });
    open.clickOn(addButton);
    QCOMPARE(parent, &open.dialog);
    QVERIFY(isFree);
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(1));
    QCOMPARE(open.rowsOf(table), QStringList(QStringLiteral("1|%1|default").arg(withDefault("head"))));
    // The list has a default now: the next Add cannot choose another, each Edit can.
    bool isFreeOnAdd = true;
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        isFreeOnAdd = child<QWidget>(dialog, "checkBox_dftDomain")->isEnabled();
        fillAndAccept(dialog, QStringLiteral("second"), QStringLiteral("2"), false);
    });
    open.clickOn(addButton);
    QVERIFY(!isFreeOnAdd);
    for (int row : {0, 1}) {
        bool isFreeOnEdit = false;
        open.selectRow(table, row);
        open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
            isFreeOnEdit = child<QWidget>(dialog, "checkBox_dftDomain")->isEnabled();
            press(dialog, QDialogButtonBox::Cancel);
        });
        open.clickOn(editButton);
        QVERIFY(isFreeOnEdit);
    }
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyDomain::newDefaultShowsTheHighestNumberUntilTheNextRenumbering()
{
    OpenDialog open(startWith(2));
    addDomain(open, QStringLiteral("head"), QStringLiteral("default"), true);
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("3|%1|default").arg(withDefault("head")),
                                              QStringLiteral("1|d1|one"), QStringLiteral("2|d2|two")}));
    QCOMPARE(listOf(open.dialog.domainInfo),
             QStringList({QStringLiteral("head|default"), QStringLiteral("d1|one"), QStringLiteral("d2|two")}));
    const auto* widget = open.widget<QTreeWidget>(table);
    QCOMPARE(widget->indexOfTopLevelItem(widget->currentItem()), 0);
    editDomain(open, 2, QStringLiteral("d2"), QStringLiteral("two"), false);
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|%1|default").arg(withDefault("head")),
                                              QStringLiteral("2|d1|one"), QStringLiteral("3|d2|two")}));
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyDomain::tenDomainsDisableAdd()
{
    OpenDialog open(startWith(0));
    for (int number = 1; number <= 10; ++number) {
        QVERIFY(open.isEnabled(addButton));
        addDomain(open, QStringLiteral("name%1").arg(number), QStringLiteral("text%1").arg(number));
    }
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table).size(), 10);
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Edit_2 pushButton_Delete_2"));
    deleteDomain(open, 4);
    QCOMPARE(open.rowsOf(table).size(), 9);
    QCOMPARE(open.enabledOf(buttons()), buttons());
}

void TstCustomAdvPropertyDomain::storedTenDomainsLeaveRoomForOneMore()
{
    OpenDialog open(startWith(10));
    QVERIFY(open.isEnabled(addButton));
    addDomain(open, QStringLiteral("eleventh"), QStringLiteral("text"));
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table).size(), 11);
    QVERIFY(!open.isEnabled(addButton));
    deleteDomain(open, 0);
    QVERIFY(!open.isEnabled(addButton));
    deleteDomain(open, 0);
    QVERIFY(open.isEnabled(addButton));
}

void TstCustomAdvPropertyDomain::addRefusesDuplicates_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("focus");
    QTest::newRow("name") << "d2"
                          << "new"
                          << "CUS_DomainExistWarning"
                          << "lineEdit_domain";
    QTest::newRow("description") << "new"
                                 << "two"
                                 << "CUS_DomainDesExistWarning"
                                 << "lineEdit_des_domain";
    QTest::newRow("both") << "d1"
                          << "one"
                          << "CUS_DomainExistWarning"
                          << "lineEdit_domain";
    QTest::newRow("entries in order") << "d2"
                                      << "one"
                                      << "CUS_DomainDesExistWarning"
                                      << "lineEdit_des_domain";
}

void TstCustomAdvPropertyDomain::addRefusesDuplicates()
{
    QFETCH(QString, name);
    QFETCH(QString, description);
    QFETCH(QString, key);
    QFETCH(QString, focus);
    OpenDialog open(startWith(2));
    QString focusAfter;
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        fillAndAccept(dialog, name, description, false);
        focusAfter = focusOf(dialog);
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.expectBox();
    open.clickOn(addButton);
    QCOMPARE(open.shown(), QStringList(warning("CUS_InputDomainTitle", key.toLatin1().constData())));
    QCOMPARE(focusAfter, focus);
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d2|two")}));
    QCOMPARE(open.rowsOf(table).size(), 2);
}

void TstCustomAdvPropertyDomain::emptyDomainNamePasses()
{
    OpenDialog open(startWith(0));
    addDomain(open, QString(), QStringLiteral("nameless"));
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList(QStringLiteral("|nameless")));
}

void TstCustomAdvPropertyDomain::emptyTableLeavesEditAndDeleteEnabled()
{
    OpenDialog open(startWith(0));
    QCOMPARE(open.enabledOf(buttons()), buttons());
    open.expectBox();
    open.clickOn(editButton);
    open.expectBox();
    open.clickOn(deleteButton);
    const QString box = warning("CUS_InputDomainTitle", "CUS_DomainSelectWarning");
    QCOMPARE(open.shown(), QStringList({box, box}));
}

void TstCustomAdvPropertyDomain::editStartsWithTheRow_data()
{
    QTest::addColumn<int>("domainDefault");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("texts");
    QTest::addColumn<bool>("isTicked");
    QTest::newRow("first, a default") << 1 << 0 << "d1|one" << true;
    QTest::newRow("first, no default") << 0 << 0 << "d1|one" << false;
    QTest::newRow("second, a default") << 1 << 1 << "d2|two" << false;
    QTest::newRow("second, no default") << 0 << 1 << "d2|two" << false;
}

void TstCustomAdvPropertyDomain::editStartsWithTheRow()
{
    QFETCH(int, domainDefault);
    QFETCH(int, row);
    QFETCH(QString, texts);
    QFETCH(bool, isTicked);
    OpenDialog open(startWith(2, quint64(domainDefault)));
    QString shown;
    bool wasTicked = false;
    bool wasEnabled = false;
    open.selectRow(table, row);
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        shown = child<QLineEdit>(dialog, "lineEdit_domain")->text() + QLatin1Char('|') +
                child<QLineEdit>(dialog, "lineEdit_des_domain")->text();
        wasTicked = child<QAbstractButton>(dialog, "checkBox_dftDomain")->isChecked();
        wasEnabled = child<QAbstractButton>(dialog, "checkBox_dftDomain")->isEnabled();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(shown, texts);
    QCOMPARE(wasTicked, isTicked);
    QVERIFY(wasEnabled);
}

void TstCustomAdvPropertyDomain::editFollowsTheDefaultRule_data()
{
    QTest::addColumn<int>("domainDefault");
    QTest::addColumn<int>("row");
    QTest::addColumn<bool>("isTicked");
    QTest::addColumn<int>("domainDefaultAfter");
    QTest::addColumn<QString>("order");
    QTest::newRow("set, first, set") << 1 << 0 << true << 1 << "E d2 d3";
    QTest::newRow("set, first, clear") << 1 << 0 << false << 0 << "E d2 d3";
    QTest::newRow("set, other, clear") << 1 << 2 << false << 1 << "d1 d2 E";
    QTest::newRow("set, other, set") << 1 << 2 << true << 1 << "E d1 d2";
    QTest::newRow("clear, first, clear") << 0 << 0 << false << 0 << "E d2 d3";
    QTest::newRow("clear, other, clear") << 0 << 1 << false << 0 << "d1 E d3";
    QTest::newRow("clear, first, set") << 0 << 0 << true << 1 << "E d2 d3";
    QTest::newRow("clear, other, set") << 0 << 1 << true << 1 << "E d1 d3";
}

void TstCustomAdvPropertyDomain::editFollowsTheDefaultRule()
{
    QFETCH(int, domainDefault);
    QFETCH(int, row);
    QFETCH(bool, isTicked);
    QFETCH(int, domainDefaultAfter);
    QFETCH(QString, order);
    OpenDialog open(startWith(3, quint64(domainDefault)));
    editDomain(open, row, QStringLiteral("E"), QStringLiteral("edited"), isTicked);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(domainDefaultAfter));
    QStringList names;
    for (const DomainDetail& entry : qAsConst(open.dialog.domainInfo.domaindetail))
        names.append(entry.domainName);
    QCOMPARE(names.join(QLatin1Char(' ')), order);
    QStringList rows;
    for (int position = 0; position < 3; ++position) {
        const DomainDetail& entry = open.dialog.domainInfo.domaindetail[position];
        const QString name =
            position == 0 && domainDefaultAfter ? entry.domainName + langText("CUS_Default") : entry.domainName;
        rows.append(QStringLiteral("%1|%2|%3").arg(position + 1).arg(name, entry.domainDesp));
    }
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(open.dialog.domainInfo.domaindetail[names.indexOf(QStringLiteral("E"))].domainDesp,
             QStringLiteral("edited"));
}

void TstCustomAdvPropertyDomain::editedRowBecomesTheDefault()
{
    OpenDialog open(startWith(2, 1));
    editDomain(open, 1, QStringLiteral("d2"), QStringLiteral("two"), true);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|%1|two").arg(withDefault("d2")), QStringLiteral("2|d1|one")}));
}

void TstCustomAdvPropertyDomain::editAcceptsUnchangedValues()
{
    OpenDialog open(startWith(2));
    open.selectRow(table, 1);
    open.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) { press(dialog, QDialogButtonBox::Ok); });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|d1|one"), QStringLiteral("2|d2|two")}));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d2|two")}));
}

void TstCustomAdvPropertyDomain::editRefusesDuplicates_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("description");
    QTest::addColumn<QString>("key");
    QTest::newRow("name of an earlier row") << "d1"
                                            << "new"
                                            << "CUS_DomainExistWarning";
    QTest::newRow("name of a later row") << "d3"
                                         << "new"
                                         << "CUS_DomainExistWarning";
    QTest::newRow("description of an earlier row") << "new"
                                                   << "one"
                                                   << "CUS_DomainDesExistWarning";
    QTest::newRow("description of a later row") << "d2"
                                                << "three"
                                                << "CUS_DomainDesExistWarning";
    QTest::newRow("rows in order") << "d3"
                                   << "one"
                                   << "CUS_DomainDesExistWarning";
}

// The box comes once the small dialog has closed, and the small dialog does not come again.
void TstCustomAdvPropertyDomain::editRefusesDuplicates()
{
    QFETCH(QString, name);
    QFETCH(QString, description);
    QFETCH(QString, key);
    OpenDialog open(startWith(3, 1));
    const QStringList rows = open.rowsOf(table);
    QPointer<QWidget> small;
    bool wasOpen = true;
    QString box;
    open.selectRow(table, 1);
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        small = &dialog;
        fillAndAccept(dialog, name, description, true);
    });
    open.expect<QMessageBox>([&](QMessageBox& shown) {
        box = describe(shown);
        wasOpen = small && small->isVisible();
        shown.button(QMessageBox::Ok)->click();
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(box, warning("CUS_InputDomainTitle", key.toLatin1().constData()));
    QVERIFY(!wasOpen);
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.domainInfo), listOf(startWith(3, 1).domain));
}

void TstCustomAdvPropertyDomain::editedDomainHasNoParent()
{
    OpenDialog open(startWith(1));
    QObject* parent = &open.dialog;
    open.selectRow(table, 0);
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        parent = dialog.parent();
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QVERIFY(!parent);
}

void TstCustomAdvPropertyDomain::cancelledEditChangesNothing()
{
    OpenDialog open(startWith(2, 1));
    const QStringList rows = open.rowsOf(table);
    open.selectRow(table, 0);
    open.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) {
        type(dialog, "lineEdit_domain", QStringLiteral("other"));
        click(dialog, "checkBox_dftDomain");
        press(dialog, QDialogButtonBox::Cancel);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.domainInfo), listOf(startWith(2, 1).domain));
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(1));
}

void TstCustomAdvPropertyDomain::editFindsTheFirstEntryWithTheDescription()
{
    CustomInfo before = startWith(3);
    before.domain.domaindetail[2].domainDesp = QStringLiteral("two");
    OpenDialog open(before);
    QString shown;
    open.selectRow(table, 2);
    open.expect<CInput1XDomainDlg>([&](CInput1XDomainDlg& dialog) {
        shown = child<QLineEdit>(dialog, "lineEdit_domain")->text();
        fillAndAccept(dialog, QStringLiteral("E"), QStringLiteral("edited"), false);
    });
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(shown, QStringLiteral("d2"));
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|d1|one"), QStringLiteral("2|E|edited"), QStringLiteral("3|d3|two")}));
}

void TstCustomAdvPropertyDomain::editedDefaultOfARowMovesTheEntryFound()
{
    CustomInfo before = startWith(3);
    before.domain.domaindetail[2].domainDesp = QStringLiteral("two");
    OpenDialog open(before);
    editDomain(open, 2, QStringLiteral("E"), QStringLiteral("edited"), true);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|%1|edited").arg(withDefault("E")),
                                              QStringLiteral("2|d1|one"), QStringLiteral("3|d3|two")}));
}

void TstCustomAdvPropertyDomain::defaultRuleLooksAtTheRowNotAtTheEntryFound()
{
    CustomInfo before = startWith(3, 1);
    before.domain.domaindetail[2].domainDesp = QStringLiteral("one");
    OpenDialog open(before);
    editDomain(open, 2, QStringLiteral("E"), QStringLiteral("edited"), false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(1));
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|%1|edited").arg(withDefault("E")),
                                              QStringLiteral("2|d2|two"), QStringLiteral("3|d3|one")}));
}

void TstCustomAdvPropertyDomain::editComparesExactly()
{
    OpenDialog open(startWith(2));
    editDomain(open, 1, QStringLiteral("D1"), QStringLiteral("ONE"), false);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|d1|one"), QStringLiteral("2|D1|ONE")}));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("D1|ONE")}));
}

// The entry of the selected row counts as another one, since the first with its description is the one edited.
void TstCustomAdvPropertyDomain::editSkipsTheEntryFoundNotTheRow()
{
    CustomInfo before = startWith(3);
    before.domain.domaindetail[2].domainDesp = QStringLiteral("two");
    OpenDialog open(before);
    const QStringList rows = open.rowsOf(table);
    open.selectRow(table, 2);
    open.expect<CInput1XDomainDlg>([](CInput1XDomainDlg& dialog) { press(dialog, QDialogButtonBox::Ok); });
    open.expectBox();
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList(warning("CUS_InputDomainTitle", "CUS_DomainDesExistWarning")));
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.domainInfo), listOf(before.domain));
}

// Delete takes the first entry with the name of the row, so that the row left over may show another description.
void TstCustomAdvPropertyDomain::editOfARowThatTheListLacksEndsSilently()
{
    CustomInfo before = startWith(3);
    before.domain.domaindetail[2].domainName = QStringLiteral("d2");
    OpenDialog open(before);
    deleteDomain(open, 2);
    const QStringList rows = {QStringLiteral("1|d1|one"), QStringLiteral("2|d2|two")};
    const QStringList entries = {QStringLiteral("d1|one"), QStringLiteral("d2|three")};
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.domainInfo), entries);
    open.selectRow(table, 1);
    open.clickOn(editButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), rows);
    QCOMPARE(listOf(open.dialog.domainInfo), entries);
}

void TstCustomAdvPropertyDomain::selectionFollowsTheEditedDomainToTheHead_data()
{
    QTest::addColumn<int>("domainDefault");
    QTest::newRow("with a default") << 1;
    QTest::newRow("without default") << 0;
}

void TstCustomAdvPropertyDomain::selectionFollowsTheEditedDomainToTheHead()
{
    QFETCH(int, domainDefault);
    OpenDialog open(startWith(3, quint64(domainDefault)));
    editDomain(open, 2, QStringLiteral("E"), QStringLiteral("edited"), true);
    const auto* tree = open.widget<QTreeWidget>(table);
    QCOMPARE(tree->selectedItems(), QList<QTreeWidgetItem*>({tree->topLevelItem(0)}));
    QCOMPARE(tree->currentItem(), tree->topLevelItem(0));
    open.clickOn(deleteButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table), QStringList({QStringLiteral("1|d1|one"), QStringLiteral("2|d2|two")}));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d2|two")}));
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(0));
}

void TstCustomAdvPropertyDomain::editWithoutAMoveKeepsTheSelection()
{
    OpenDialog open(startWith(3, 1));
    editDomain(open, 2, QStringLiteral("E"), QStringLiteral("edited"), false);
    open.clickOn(deleteButton);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d2|two")}));
}

void TstCustomAdvPropertyDomain::rowIsDeletedAndTheOthersRenumbered()
{
    OpenDialog open(startWith(3, 1));
    deleteDomain(open, 1);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.rowsOf(table),
             QStringList({QStringLiteral("1|%1|one").arg(withDefault("d1")), QStringLiteral("2|d3|three")}));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d3|three")}));
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(1));
}

void TstCustomAdvPropertyDomain::deletedFirstRowLeavesNoDefault_data()
{
    QTest::addColumn<int>("domainDefault");
    QTest::newRow("with default") << 1;
    QTest::newRow("without default") << 0;
}

void TstCustomAdvPropertyDomain::deletedFirstRowLeavesNoDefault()
{
    QFETCH(int, domainDefault);
    OpenDialog open(startWith(2, quint64(domainDefault)));
    deleteDomain(open, 0);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(open.dialog.domainInfo.domainDefault, quint64(0));
    QCOMPARE(open.rowsOf(table), QStringList(QStringLiteral("1|d2|two")));
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList(QStringLiteral("d2|two")));
}

void TstCustomAdvPropertyDomain::deleteFindsTheFirstEntryWithTheName()
{
    CustomInfo before = startWith(3);
    before.domain.domaindetail[2].domainName = QStringLiteral("d2");
    OpenDialog open(before);
    deleteDomain(open, 2);
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(listOf(open.dialog.domainInfo), QStringList({QStringLiteral("d1|one"), QStringLiteral("d2|three")}));
}

void TstCustomAdvPropertyDomain::lastRowDeletedDisablesEditAndDelete()
{
    OpenDialog open(startWith(1));
    deleteDomain(open, 0);
    QCOMPARE(open.enabledOf(buttons()), words("pushButton_Add_2"));
    addDomain(open, QStringLiteral("new"), QStringLiteral("text"));
    QCOMPARE(open.enabledOf(buttons()), buttons());
    QCOMPARE(open.shown(), QStringList());
}

void TstCustomAdvPropertyDomain::cancelDropsTheList()
{
    OpenDialog open(startWith(2));
    addDomain(open, QStringLiteral("new"), QStringLiteral("text"), true);
    deleteDomain(open, 2);
    open.pressCancel();
    QCOMPARE(open.shown(), QStringList());
    QCOMPARE(changes(startWith(2), open.info), QStringList());
}

TEST_ENTRY(customadvproperty_domain, runTest<TstCustomAdvPropertyDomain>)

#include "tst_customadvproperty_domain.moc"
