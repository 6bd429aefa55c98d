#include "advanced/CSslVpnIp.h"
#include "advanced/CustomAdvProperty.h"
#include "app/language/FieldTexts.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/Tables.h"
#include "app/widgets/WarningBox.h"

#include <algorithm>

using namespace formrows;
using Widgets = Ui_CustomAdvProperty;

namespace {

enum Column
{
    NumberColumn,
    NameColumn,
    AddressColumn,
    PortColumn
};

constexpr int s_mostRows = 20; // from here on the table takes no more by the Add button

// clang-format off
const Caption<Widgets> captions[] = {
    {&Widgets::pushButton_Add,    "SSL_ADD_VPNIP"},
    {&Widgets::pushButton_Edit,   "SSL_EDIT_VPNIP"},
    {&Widgets::pushButton_Delete, "SSL_DEL_VPNIP"},
};
// clang-format on

QString shownGatewayName(const SSLVPNRemoteInfo& gateway, bool isDefault)
{
    return isDefault ? gateway.iPDes + langText("SSL_DEFAULTNAME") : gateway.iPDes;
}

} // namespace

void CustomAdvProperty::setGatewayTexts()
{
    setTexts(ui, captions);
    setColumns(ui.treeWidget_SSLIP,
               {langText("SCE_DevOrder"), labelText(field<&SSLVPNRemoteInfo::iPDes>),
                labelText(field<&SSLVPNRemoteInfo::ip>), labelText(field<&SSLVPNRemoteInfo::port>)},
               {40, 100, 140, 50});
    ui.treeWidget_SSLIP->setAccessibleName(langText("SSL_SERV_ADDR_TITLE"));
}

void CustomAdvProperty::loadGateways(const QString& defaultSuffix)
{
    ui.treeWidget_SSLIP->clear();
    quint64 number = 0;
    for (const SSLVPNRemoteInfo& gateway : qAsConst(record->sslvpn.remote)) {
        ++number;
        const bool isDefault = number == record->sslvpn.defaultAddress;
        const QString shownName = isDefault ? gateway.iPDes + defaultSuffix : gateway.iPDes;
        ui.treeWidget_SSLIP->addTopLevelItem(
            new QTreeWidgetItem({QString::number(number), shownName, gateway.ip, gateway.port}));
        gatewayList.append(gateway);
    }
    // Contract: the Edit button stays enabled over an empty table.
    if (gatewayList.isEmpty()) {
        ui.pushButton_Add->setEnabled(true);
        ui.pushButton_Delete->setEnabled(false);
    }
    if (gatewayList.size() >= s_mostRows)
        ui.pushButton_Add->setEnabled(false);
}

/// The position of the first gateway that is shown so, or -1.
int CustomAdvProperty::findGateway(const QString& shownName, const QString& suffix) const
{
    const auto found = std::find_if(gatewayList.begin(), gatewayList.end(), [&](const SSLVPNRemoteInfo& gateway) {
        return gateway.iPDes + suffix == shownName;
    });
    return found == gatewayList.end() ? -1 : static_cast<int>(found - gatewayList.begin());
}

void CustomAdvProperty::OnBnClickedAddIpaddr()
{
    SSLVPNRemoteInfo gateway;
    CSslVpnIp dialog(gateway, defaultGatewayIndex != 0 ? CSslVpnIp::DefaultTaken : CSslVpnIp::DefaultFree, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    gateway = dialog.gateway;
    const bool isDefault = dialog.dialogMode != 0;
    const int number = ui.treeWidget_SSLIP->topLevelItemCount() + 1;
    if (isDefault)
        defaultGatewayIndex = number;
    auto* row =
        new QTreeWidgetItem({QString::number(number), shownGatewayName(gateway, isDefault), gateway.ip, gateway.port});
    ui.treeWidget_SSLIP->addTopLevelItem(row);
    ui.treeWidget_SSLIP->setCurrentItem(row);
    gatewayList.append(gateway);
    ui.pushButton_Edit->setEnabled(true);
    ui.pushButton_Delete->setEnabled(true);
    if (number >= s_mostRows)
        ui.pushButton_Add->setEnabled(false);
}

void CustomAdvProperty::OnBnClickedEditIpaddr()
{
    const QList<QTreeWidgetItem*> selected = ui.treeWidget_SSLIP->selectedItems();
    if (selected.isEmpty()) {
        WarningBox("SCE_SceneTipsTitle", this).say("SSL_AddrSelectWarning");
        return;
    }
    QTreeWidgetItem* row = selected.first();
    const int number = ui.treeWidget_SSLIP->indexOfTopLevelItem(row) + 1;
    int mode = defaultGatewayIndex != 0 ? CSslVpnIp::DefaultTaken : CSslVpnIp::DefaultFree;
    QString suffix;
    if (number == defaultGatewayIndex) {
        mode = CSslVpnIp::DefaultTicked;
        suffix = langText("SSL_DEFAULTNAME");
    }
    const int position = findGateway(row->text(NameColumn), suffix);
    SSLVPNRemoteInfo gateway = position < 0 ? SSLVPNRemoteInfo() : gatewayList.at(position);

    CSslVpnIp dialog(gateway, mode, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    gateway = dialog.gateway;
    const bool isDefault = dialog.dialogMode != 0;
    if (mode == CSslVpnIp::DefaultTicked)
        defaultGatewayIndex = 0;
    if (isDefault)
        defaultGatewayIndex = number;
    row->setText(NameColumn, shownGatewayName(gateway, isDefault));
    row->setText(AddressColumn, gateway.ip);
    row->setText(PortColumn, gateway.port);
    if (position >= 0)
        gatewayList[position] = gateway;
}

void CustomAdvProperty::OnBnClickedDelIpaddr()
{
    const QList<QTreeWidgetItem*> selected = ui.treeWidget_SSLIP->selectedItems();
    if (selected.isEmpty()) {
        WarningBox("SCE_SceneTipsTitle", this).say("SSL_AddrSelectWarning");
        return;
    }
    const int row = ui.treeWidget_SSLIP->indexOfTopLevelItem(selected.first());
    const QString shownName = selected.first()->text(NameColumn);
    delete ui.treeWidget_SSLIP->takeTopLevelItem(row);
    QString suffix;
    if (row + 1 == defaultGatewayIndex) {
        suffix = langText("SSL_DEFAULTNAME");
        defaultGatewayIndex = 0;
    }
    const int position = findGateway(shownName, suffix);
    if (position >= 0) {
        if (defaultGatewayIndex != 0 && row < defaultGatewayIndex - 1)
            --defaultGatewayIndex;
        gatewayList.remove(position);
    }
    const int count = ui.treeWidget_SSLIP->topLevelItemCount();
    for (int other = 0; other < count; ++other)
        ui.treeWidget_SSLIP->topLevelItem(other)->setText(NumberColumn, QString::number(other + 1));
    if (count == 0) {
        ui.pushButton_Edit->setEnabled(false);
        ui.pushButton_Delete->setEnabled(false);
    }
    if (count < s_mostRows)
        ui.pushButton_Add->setEnabled(true);
}

void CustomAdvProperty::storeGateways(WarningBox& box)
{
    record->sslvpn.remote = gatewayList;
    if (!gatewayList.isEmpty() && defaultGatewayIndex == 0) {
        defaultGatewayIndex = 1;
        box.say("SSL_Set_DefaultGateway");
    }
    record->sslvpn.defaultAddress = static_cast<quint64>(defaultGatewayIndex);
    gatewayList.clear();
}
