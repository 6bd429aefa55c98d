#include "app/language/LangText.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "vpn/IpInfo.h"
#include "vpn/VpnPlayer.h"

#include <QTreeWidget>

using namespace vpnplay;

namespace {

const char addButton[] = "pushButton_Add";
const char deleteButton[] = "pushButton_Delete";

CustomInfo recordWithRoutes(int count)
{
    CustomInfo info = tellingRecord();
    info.vpnRoutes.clear();
    for (int route = 1; route <= count; ++route)
        info.vpnRoutes.append({QStringLiteral("10.0.%1.0").arg(route), QStringLiteral("255.255.%1.0").arg(route)});
    return info;
}

QTreeWidget* list(const QVPNAdvProperty& dialog)
{
    return child<QTreeWidget>(dialog, "treeWidget_RouteList");
}

QStringList rowsOf(const QVPNAdvProperty& dialog)
{
    QStringList rows;
    for (int row = 0; row < list(dialog)->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = list(dialog)->topLevelItem(row);
        rows.append(item->text(0) + QLatin1Char('/') + item->text(1));
    }
    return rows;
}

QStringList routesOf(const CustomInfo& info)
{
    QStringList routes;
    for (const VPN_RouteInfo& route : info.vpnRoutes)
        routes.append(route.ip + QLatin1Char('/') + route.mask);
    return routes;
}

/// "+" or "-" for Add and Delete enabled or not.
QString buttons(const QVPNAdvProperty& dialog)
{
    const QChar plus = QLatin1Char('+');
    const QChar minus = QLatin1Char('-');
    return QString(child<QPushButton>(dialog, addButton)->isEnabled() ? plus : minus) +
           (child<QPushButton>(dialog, deleteButton)->isEnabled() ? plus : minus);
}

/// Runs the dialog with windows of its own: `script` already expects what opens behind the dialog itself.
struct RouteSession
{
    CustomInfo info;
    int result = -1;
    QStringList complaints;
};
RouteSession run(const CustomInfo& info, const std::function<void(ModalScript&, QVPNAdvProperty&)>& plan,
                 QDialogButtonBox::StandardButton end = QDialogButtonBox::Ok)
{
    RouteSession session;
    RecordHolder holder;
    holder.info = info;
    QVPNAdvProperty dialog(&holder);
    dialog.setInital();
    ModalScript script;
    script.expect<QVPNAdvProperty>([&](QVPNAdvProperty& opened) {
        child<QTabWidget>(opened, "tabWidget")->setCurrentIndex(3);
        plan(script, opened);
        QTest::mouseClick(child<QDialogButtonBox>(opened, "buttonBox")->button(end), Qt::LeftButton);
    });
    session.result = dialog.exec();
    session.complaints = script.complaints();
    session.info = holder.info;
    return session;
}

void enterRoute(IpInfo& dialog, const QString& ip, const QString& mask)
{
    typeText(child<QLineEdit>(dialog, "lineEdit_Ip"), ip);
    typeText(child<QLineEdit>(dialog, "lineEdit_mask"), mask);
    QTest::mouseClick(child<QDialogButtonBox>(dialog, "buttonBox")->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

void addRoute(ModalScript& script, QVPNAdvProperty& dialog, const QString& ip, const QString& mask)
{
    script.expect<IpInfo>([=](IpInfo& opened) { enterRoute(opened, ip, mask); });
    click(dialog, addButton);
}

void selectRow(QVPNAdvProperty& dialog, int row)
{
    QTreeWidget* tree = list(dialog);
    const QRect rectangle = tree->visualItemRect(tree->topLevelItem(row));
    QTest::mouseClick(tree->viewport(), Qt::LeftButton, Qt::NoModifier, rectangle.center());
}

void deleteSelected(ModalScript& script, QVPNAdvProperty& dialog, QMessageBox::StandardButton answer)
{
    script.expect<QMessageBox>([=](QMessageBox& box) { QTest::mouseClick(box.button(answer), Qt::LeftButton); });
    click(dialog, deleteButton);
}

} // namespace

class TstQVPNAdvPropertyRoute : public QObject
{
    Q_OBJECT

private slots:
    void routesAreLoadedInOrder();
    void columnsHaveTheirWidth();
    void buttonsAtOpening_data();
    void buttonsAtOpening();
    void moreThanTenRoutesAreShownAndStored();
    void addedRouteIsTheLastRowAndCurrent();
    void firstRouteEnablesDelete();
    void tenthRouteDisablesAdd();
    void fullListAddsNothingAndDisablesAdd();
    void cancelledEntryAddsNothing();
    void repeatedDestinationIsRefusedWhateverTheMask_data();
    void repeatedDestinationIsRefusedWhateverTheMask();
    void destinationsAreComparedAsTyped();
    void anyMaskEntersTheTableAsTyped();
    void deleteWithoutSelectionAsksForOne();
    void deleteQuestionHasYesAndNo();
    void deleteTakesTheSelectedRow();
    void deleteAnsweredByNoKeepsTheRow();
    void deleteAnsweredByEscapeKeepsTheRow();
    void deletingOneOfTenEnablesAdd();
    void deletingTheLastRowDisablesDelete();
    void deletingFromTwelveKeepsAddDisabled();
    void storedRoutesAreTheRowsInOrder();
    void cancelDiscardsAdditionsAndDeletions();
};

void TstQVPNAdvPropertyRoute::routesAreLoadedInOrder()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(rowsOf(dialog), words("10.1.0.0/255.255.0.0 10.2.0.0/255.254.0.0"));
        QVERIFY(list(dialog)->selectedItems().isEmpty());
    });
}

void TstQVPNAdvPropertyRoute::columnsHaveTheirWidth()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        bringToFront(list(dialog));
        QCOMPARE(list(dialog)->columnCount(), 2);
        QCOMPARE(list(dialog)->columnWidth(0), 170);
        QCOMPARE(list(dialog)->columnWidth(1), 170);
        QVERIFY(list(dialog)->viewport()->width() >= 340);
    });
}

void TstQVPNAdvPropertyRoute::buttonsAtOpening_data()
{
    QTest::addColumn<int>("routes");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << 0 << QStringLiteral("+-");
    QTest::newRow("one") << 1 << QStringLiteral("++");
    QTest::newRow("nine") << 9 << QStringLiteral("++");
    QTest::newRow("ten") << 10 << QStringLiteral("-+");
    QTest::newRow("twelve") << 12 << QStringLiteral("-+");
}

void TstQVPNAdvPropertyRoute::buttonsAtOpening()
{
    QFETCH(int, routes);
    QFETCH(QString, expected);
    inspect(recordWithRoutes(routes), [&](QVPNAdvProperty& dialog) { QCOMPARE(buttons(dialog), expected); });
}

void TstQVPNAdvPropertyRoute::moreThanTenRoutesAreShownAndStored()
{
    const CustomInfo info = recordWithRoutes(12);
    const RouteSession session =
        run(info, [&](ModalScript&, QVPNAdvProperty& dialog) { QCOMPARE(rowsOf(dialog), routesOf(info)); });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), routesOf(info));
}

void TstQVPNAdvPropertyRoute::addedRouteIsTheLastRowAndCurrent()
{
    const RouteSession session = run(recordWithRoutes(2), [](ModalScript& script, QVPNAdvProperty& dialog) {
        addRoute(script, dialog, QStringLiteral("1.2.3.0"), QStringLiteral("255.255.255.0"));
        QCOMPARE(rowsOf(dialog).value(2), QStringLiteral("1.2.3.0/255.255.255.0"));
        QCOMPARE(list(dialog)->currentItem(), list(dialog)->topLevelItem(2));
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), words("10.0.1.0/255.255.1.0 10.0.2.0/255.255.2.0 1.2.3.0/255.255.255.0"));
}

void TstQVPNAdvPropertyRoute::firstRouteEnablesDelete()
{
    const RouteSession session = run(recordWithRoutes(0), [](ModalScript& script, QVPNAdvProperty& dialog) {
        addRoute(script, dialog, QStringLiteral("1.2.3.0"), QStringLiteral("255.255.255.0"));
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), words("1.2.3.0/255.255.255.0"));
}

void TstQVPNAdvPropertyRoute::tenthRouteDisablesAdd()
{
    const RouteSession session = run(recordWithRoutes(8), [](ModalScript& script, QVPNAdvProperty& dialog) {
        addRoute(script, dialog, QStringLiteral("1.2.3.0"), QStringLiteral("1"));
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
        addRoute(script, dialog, QStringLiteral("1.2.4.0"), QStringLiteral("1"));
        QCOMPARE(buttons(dialog), QStringLiteral("-+"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpnRoutes.size(), 10);
}

void TstQVPNAdvPropertyRoute::fullListAddsNothingAndDisablesAdd()
{
    const RouteSession session = run(recordWithRoutes(10), [](ModalScript&, QVPNAdvProperty& dialog) {
        child<QPushButton>(dialog, addButton)->setEnabled(true);
        click(dialog, addButton);
        QCOMPARE(buttons(dialog), QStringLiteral("-+"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpnRoutes.size(), 10);
}

void TstQVPNAdvPropertyRoute::cancelledEntryAddsNothing()
{
    const RouteSession session = run(recordWithRoutes(0), [](ModalScript& script, QVPNAdvProperty& dialog) {
        QObject* parent = nullptr;
        script.expect<IpInfo>([&](IpInfo& opened) {
            parent = opened.parent();
            typeText(child<QLineEdit>(opened, "lineEdit_Ip"), QStringLiteral("1.2.3.4"));
            typeText(child<QLineEdit>(opened, "lineEdit_mask"), QStringLiteral("255.0.0.0"));
            QTest::mouseClick(child<QDialogButtonBox>(opened, "buttonBox")->button(QDialogButtonBox::Cancel),
                              Qt::LeftButton);
        });
        click(dialog, addButton);
        QCOMPARE(parent, static_cast<QObject*>(&dialog));
        QCOMPARE(rowsOf(dialog), QStringList());
        QCOMPARE(buttons(dialog), QStringLiteral("+-"));
    });
    QCOMPARE(session.complaints, QStringList());
}

void TstQVPNAdvPropertyRoute::repeatedDestinationIsRefusedWhateverTheMask_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("mask");
    QTest::newRow("first row, same mask") << QStringLiteral("10.0.1.0") << QStringLiteral("255.255.1.0");
    QTest::newRow("first row, other mask") << QStringLiteral("10.0.1.0") << QStringLiteral("255.0.0.0");
    QTest::newRow("last row, other mask") << QStringLiteral("10.0.3.0") << QStringLiteral("255.0.0.0");
}

void TstQVPNAdvPropertyRoute::repeatedDestinationIsRefusedWhateverTheMask()
{
    QFETCH(QString, ip);
    QFETCH(QString, mask);
    const CustomInfo info = recordWithRoutes(3);
    ShownBox box;
    const RouteSession session = run(info, [&](ModalScript& script, QVPNAdvProperty& dialog) {
        script.expect<IpInfo>([&](IpInfo& opened) { enterRoute(opened, ip, mask); });
        script.expect<QMessageBox>([&](QMessageBox& opened) {
            box = shown(opened, &dialog);
            QTest::mouseClick(opened.button(QMessageBox::Ok), Qt::LeftButton);
        });
        click(dialog, addButton);
    });
    QCOMPARE(session.complaints, QStringList());
    compareWarning(box, "VUI_AddRoute", "VUI_NetworkAddrRepeat");
    QCOMPARE(routesOf(session.info), routesOf(info));
}

void TstQVPNAdvPropertyRoute::destinationsAreComparedAsTyped()
{
    const RouteSession session = run(recordWithRoutes(1), [](ModalScript& script, QVPNAdvProperty& dialog) {
        addRoute(script, dialog, QStringLiteral("10.0.1.0."), QStringLiteral("255.255.1.0"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), words("10.0.1.0/255.255.1.0 10.0.1.0./255.255.1.0"));
}

void TstQVPNAdvPropertyRoute::anyMaskEntersTheTableAsTyped()
{
    const RouteSession session = run(recordWithRoutes(0), [](ModalScript& script, QVPNAdvProperty& dialog) {
        addRoute(script, dialog, QStringLiteral("1.2.3.4"), QStringLiteral("abc"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), words("1.2.3.4/abc"));
}

void TstQVPNAdvPropertyRoute::deleteWithoutSelectionAsksForOne()
{
    const CustomInfo info = recordWithRoutes(3);
    ShownBox box;
    const RouteSession session = run(info, [&](ModalScript& script, QVPNAdvProperty& dialog) {
        script.expect<QMessageBox>([&](QMessageBox& opened) {
            box = shown(opened, &dialog);
            QTest::mouseClick(opened.button(QMessageBox::Ok), Qt::LeftButton);
        });
        click(dialog, deleteButton);
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
    });
    QCOMPARE(session.complaints, QStringList());
    compareWarning(box, "VUI_RouteSetting", "VUI_SelectRoute");
    QCOMPARE(routesOf(session.info), routesOf(info));
}

void TstQVPNAdvPropertyRoute::deleteQuestionHasYesAndNo()
{
    ShownBox box;
    const RouteSession session = run(recordWithRoutes(3), [&](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 1);
        script.expect<QMessageBox>([&](QMessageBox& opened) {
            box = shown(opened, &dialog);
            QTest::mouseClick(opened.button(QMessageBox::No), Qt::LeftButton);
        });
        click(dialog, deleteButton);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(box.title, langText("VUI_RouteSetting"));
    QCOMPARE(box.text, langText("VUI_DeleteRoute"));
    QVERIFY(box.text != QLatin1String("NULL"));
    QCOMPARE(box.icon, QMessageBox::Question);
    QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Yes | QMessageBox::No));
    QCOMPARE(box.defaultButton, QMessageBox::Yes);
    QVERIFY(!box.parent);
}

void TstQVPNAdvPropertyRoute::deleteTakesTheSelectedRow()
{
    const RouteSession session = run(recordWithRoutes(3), [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 1);
        deleteSelected(script, dialog, QMessageBox::Yes);
        QCOMPARE(rowsOf(dialog), words("10.0.1.0/255.255.1.0 10.0.3.0/255.255.3.0"));
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), words("10.0.1.0/255.255.1.0 10.0.3.0/255.255.3.0"));
}

void TstQVPNAdvPropertyRoute::deleteAnsweredByNoKeepsTheRow()
{
    const CustomInfo info = recordWithRoutes(10);
    const RouteSession session = run(info, [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 1);
        deleteSelected(script, dialog, QMessageBox::No);
        QCOMPARE(buttons(dialog), QStringLiteral("-+"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), routesOf(info));
}

void TstQVPNAdvPropertyRoute::deleteAnsweredByEscapeKeepsTheRow()
{
    const CustomInfo info = recordWithRoutes(3);
    const RouteSession session = run(info, [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 1);
        script.expect<QMessageBox>([](QMessageBox& box) { QTest::keyClick(&box, Qt::Key_Escape); });
        click(dialog, deleteButton);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), routesOf(info));
}

void TstQVPNAdvPropertyRoute::deletingOneOfTenEnablesAdd()
{
    const RouteSession session = run(recordWithRoutes(10), [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 0);
        deleteSelected(script, dialog, QMessageBox::Yes);
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpnRoutes.size(), 9);
}

void TstQVPNAdvPropertyRoute::deletingTheLastRowDisablesDelete()
{
    const RouteSession session = run(recordWithRoutes(1), [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 0);
        deleteSelected(script, dialog, QMessageBox::Yes);
        QCOMPARE(buttons(dialog), QStringLiteral("+-"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), QStringList());
}

void TstQVPNAdvPropertyRoute::deletingFromTwelveKeepsAddDisabled()
{
    const RouteSession session = run(recordWithRoutes(12), [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 0);
        deleteSelected(script, dialog, QMessageBox::Yes);
        QCOMPARE(buttons(dialog), QStringLiteral("-+"));
        selectRow(dialog, 0);
        deleteSelected(script, dialog, QMessageBox::Yes);
        QCOMPARE(buttons(dialog), QStringLiteral("-+"));
        selectRow(dialog, 0);
        deleteSelected(script, dialog, QMessageBox::Yes);
        QCOMPARE(buttons(dialog), QStringLiteral("++"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpnRoutes.size(), 9);
}

void TstQVPNAdvPropertyRoute::storedRoutesAreTheRowsInOrder()
{
    const RouteSession session = run(recordWithRoutes(3), [](ModalScript& script, QVPNAdvProperty& dialog) {
        selectRow(dialog, 0);
        deleteSelected(script, dialog, QMessageBox::Yes);
        addRoute(script, dialog, QStringLiteral("10.0.1.0"), QStringLiteral("255.0.0.0"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(routesOf(session.info), words("10.0.2.0/255.255.2.0 10.0.3.0/255.255.3.0 10.0.1.0/255.0.0.0"));
}

void TstQVPNAdvPropertyRoute::cancelDiscardsAdditionsAndDeletions()
{
    const CustomInfo info = recordWithRoutes(2);
    const RouteSession session = run(
        info,
        [](ModalScript& script, QVPNAdvProperty& dialog) {
            selectRow(dialog, 0);
            deleteSelected(script, dialog, QMessageBox::Yes);
            addRoute(script, dialog, QStringLiteral("1.2.3.4"), QStringLiteral("255.0.0.0"));
        },
        QDialogButtonBox::Cancel);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.result, int(QDialog::Rejected));
    QCOMPARE(routesOf(session.info), routesOf(info));
}

TEST_ENTRY(qvpnadvproperty_route, runTest<TstQVPNAdvPropertyRoute>)

#include "tst_qvpnadvproperty_route.moc"
