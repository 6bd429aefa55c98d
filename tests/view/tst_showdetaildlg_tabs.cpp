#include "support/TestEntry.h"
#include "view/ShowDetailDlg.h"
#include "view/ViewPlayer.h"

#include <QTabWidget>

using namespace viewplay;

/// Which tabs of the detail view stand for which components.
class TstShowDetailDlgTabs : public QObject
{
    Q_OBJECT

private slots:
    void standByTheComponents_data();
    void standByTheComponents();
    void withoutZoaDirectTheL2tpTabGoesAlsoWhenL2tpWasChosen();
    void withoutZoaDirectAndL2tpTheNextTabGoesToo_data();
    void withoutZoaDirectAndL2tpTheNextTabGoesToo();
    void standInTheOrderOfTheFormWithTheirTitles();
    void firstTabIsInFront();
};

namespace {

QStringList shownTabs(quint64 procomVal, quint64 funcomVal)
{
    CustomInfo info = fullRecord();
    info.common.procomVal = procomVal;
    info.common.funcomVal = funcomVal;
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    const QTabWidget* tabs = child<QTabWidget>(dialog, "tabWidget");
    QStringList names;
    for (int index = 0; index < tabs->count(); ++index)
        names.append(tabs->widget(index)->objectName().mid(4));
    return names;
}

/// The rule by its outcome. ZOA, KEF and GUI follow the L2TP tab. With ZOA direct each tab stands for its own
/// component. Without it there is no L2TP tab, and when L2TP is not chosen either, the first of the three is missing.
QStringList expectedTabs(quint64 procomVal, quint64 funcomVal)
{
    const bool hasL2tp = (procomVal & 4) != 0;
    const bool hasZoaDirect = (procomVal & 32) != 0;
    QStringList tabs = {QStringLiteral("func")};
    if ((procomVal & 1) != 0)
        tabs.append(QStringLiteral("8021x"));
    if ((procomVal & 2) != 0)
        tabs.append(QStringLiteral("portal"));
    if ((procomVal & 16) != 0)
        tabs.append(QStringLiteral("Sslvpn"));

    QStringList rest;
    if (hasZoaDirect || (funcomVal & 1) != 0)
        rest.append(QStringLiteral("Zoa"));
    if ((funcomVal & 4) != 0)
        rest.append(QStringLiteral("kef"));
    rest.append(QStringLiteral("gui"));
    if (hasZoaDirect && hasL2tp)
        rest.prepend(QStringLiteral("l2tp"));
    if (!hasZoaDirect && !hasL2tp)
        rest.removeFirst();
    return tabs + rest;
}

} // namespace

void TstShowDetailDlgTabs::standByTheComponents_data()
{
    QTest::addColumn<quint64>("procomVal");
    QTest::addColumn<quint64>("funcomVal");
    QTest::addColumn<QStringList>("tabs");

    const auto stated = [](quint64 procomVal, quint64 funcomVal, const char* tabs) {
        QTest::addRow("stated: %d with %d", int(procomVal), int(funcomVal)) << procomVal << funcomVal << words(tabs);
    };
    stated(3, 1, "func 8021x portal gui");
    stated(3, 5, "func 8021x portal kef gui");
    stated(7, 1, "func 8021x portal Zoa gui");
    stated(1, 0, "func 8021x");
    stated(39, 1, "func 8021x portal l2tp Zoa gui");
    stated(63, 5, "func 8021x portal Sslvpn l2tp Zoa kef gui");

    for (quint64 procomVal = 0; procomVal < 64; ++procomVal) {
        for (const quint64 funcomVal : {0, 1, 4, 5}) {
            QTest::addRow("%d with %d", int(procomVal), int(funcomVal))
                << procomVal << funcomVal << expectedTabs(procomVal, funcomVal);
        }
    }
}

void TstShowDetailDlgTabs::standByTheComponents()
{
    QFETCH(quint64, procomVal);
    QFETCH(quint64, funcomVal);
    QTEST(shownTabs(procomVal, funcomVal), "tabs");
}

void TstShowDetailDlgTabs::withoutZoaDirectTheL2tpTabGoesAlsoWhenL2tpWasChosen()
{
    QVERIFY(!shownTabs(4, 5).contains(QStringLiteral("l2tp")));
    QVERIFY(shownTabs(4 + 32, 5).contains(QStringLiteral("l2tp")));
}

void TstShowDetailDlgTabs::withoutZoaDirectAndL2tpTheNextTabGoesToo_data()
{
    QTest::addColumn<quint64>("funcomVal");
    QTest::addColumn<QStringList>("tabs");
    QTest::newRow("the ZOA tab") << quint64(5) << words("func kef gui");
    QTest::newRow("without ZOA the KEF tab") << quint64(4) << words("func gui");
    QTest::newRow("without both the GUI tab") << quint64(0) << words("func");
}

void TstShowDetailDlgTabs::withoutZoaDirectAndL2tpTheNextTabGoesToo()
{
    QFETCH(quint64, funcomVal);
    QTEST(shownTabs(0, funcomVal), "tabs");
}

void TstShowDetailDlgTabs::standInTheOrderOfTheFormWithTheirTitles()
{
    CustomInfo info = fullRecord();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    const QTabWidget* tabs = child<QTabWidget>(dialog, "tabWidget");
    QStringList titles;
    for (int index = 0; index < tabs->count(); ++index)
        titles.append(tabs->widget(index)->objectName() + tabs->tabText(index));
    QCOMPARE(titles, words("tab_func[func_title] tab_8021x[8021x_title] tab_portal[portal_title] "
                           "tab_Sslvpn[SslVpn_title] tab_l2tp[IpsecVpn_title] tab_Zoa[Zoa_title] tab_kef[Kef_title] "
                           "tab_gui[Gui_title]"));
}

void TstShowDetailDlgTabs::firstTabIsInFront()
{
    CustomInfo info = fullRecord();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    QCOMPARE(child<QTabWidget>(dialog, "tabWidget")->currentIndex(), 0);
}

TEST_ENTRY(showdetaildlg_tabs, runTest<TstShowDetailDlgTabs>)

#include "tst_showdetaildlg_tabs.moc"
