#include "vpn/QVPNAdvProperty.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/Tables.h"
#include "app/widgets/WarningBox.h"
#include "vpn/IpInfo.h"
#include "xml/RecordRows.h"

namespace {

constexpr int destinationColumn = 0;
constexpr int maskColumn = 1;
constexpr int maxRoutes = 10;

} // namespace

void QVPNAdvProperty::setRouteText()
{
    ui.label_RouteDes->setText(langText("VUI_AddRoutePrincple"));
    setColumns(ui.treeWidget_RouteList, {labelText(field<&VPN_RouteInfo::ip>), labelText(field<&VPN_RouteInfo::mask>)},
               {170, 170});
    ui.treeWidget_RouteList->setAccessibleName(langText("VUI_RouteSetting"));
    ui.pushButton_Add->setText(langText("VUI_Add"));
    ui.pushButton_Delete->setText(langText("VUI_Delete"));
}

void QVPNAdvProperty::setRouteInit()
{
    const CustomInfo* info = record();
    if (!info)
        return;
    ui.treeWidget_RouteList->clear();
    for (const VPN_RouteInfo& route : info->vpnRoutes)
        appendRoute(route.ip, route.mask);
    if (info->vpnRoutes.isEmpty())
        ui.pushButton_Delete->setEnabled(false);
    if (routesAreFull())
        ui.pushButton_Add->setEnabled(false);
}

void QVPNAdvProperty::saveRouteInfo()
{
    CustomInfo* info = record();
    if (!info)
        return;
    info->vpnRoutes = QVector<VPN_RouteInfo>();
    for (int row = 0; row < ui.treeWidget_RouteList->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = ui.treeWidget_RouteList->topLevelItem(row);
        info->vpnRoutes.append({item->text(destinationColumn), item->text(maskColumn)});
    }
}

void QVPNAdvProperty::OnAddRoute()
{
    WarningBox box("VUI_AddRoute");
    if (routesAreFull()) {
        ui.pushButton_Add->setEnabled(false);
        return;
    }
    IpInfo dialog(this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    // Contract: a destination stands once in the list, whatever the masks; the texts are compared as typed.
    QTreeWidget* list = ui.treeWidget_RouteList;
    for (int row = 0; row < list->topLevelItemCount(); ++row) {
        if (list->topLevelItem(row)->text(destinationColumn) == dialog.m_strIp) {
            box.say("VUI_NetworkAddrRepeat");
            return;
        }
    }
    appendRoute(dialog.m_strIp, dialog.m_strMask);
    list->setCurrentItem(list->topLevelItem(list->topLevelItemCount() - 1));
    ui.pushButton_Delete->setEnabled(true);
    if (routesAreFull())
        ui.pushButton_Add->setEnabled(false);
}

void QVPNAdvProperty::OnDeleteRoute()
{
    WarningBox box("VUI_RouteSetting");
    const QList<QTreeWidgetItem*> selected = ui.treeWidget_RouteList->selectedItems();
    if (selected.isEmpty()) {
        box.say("VUI_SelectRoute");
        return;
    }
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    box.setIcon(QMessageBox::Question);
    box.setText(langText("VUI_DeleteRoute"));
    if (box.exec() == QMessageBox::Yes)
        delete selected.first();
    if (!routesAreFull())
        ui.pushButton_Add->setEnabled(true);
    if (ui.treeWidget_RouteList->topLevelItemCount() == 0)
        ui.pushButton_Delete->setEnabled(false);
}

void QVPNAdvProperty::appendRoute(const QString& ip, const QString& mask)
{
    ui.treeWidget_RouteList->addTopLevelItem(new QTreeWidgetItem({ip, mask}));
}

/// Also with more routes than the list takes: a record may come with them.
bool QVPNAdvProperty::routesAreFull() const
{
    return ui.treeWidget_RouteList->topLevelItemCount() >= maxRoutes;
}
