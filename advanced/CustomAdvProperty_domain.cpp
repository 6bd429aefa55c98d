#include "advanced/CInput1XDomainDlg.h"
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
    DescriptionColumn
};

constexpr int s_mostRows = 10; // from here on the table takes no more by the Add button

// clang-format off
const Caption<Widgets> captions[] = {
    {&Widgets::label_DomainInfoHint, "CUS_DomainInfoHint"},
    {&Widgets::checkBox_DomainForce, field<&SUIDomainInfo::domainForce>},
    {&Widgets::pushButton_Add_2,     "SSL_ADD_VPNIP"},
    {&Widgets::pushButton_Edit_2,    "SSL_EDIT_VPNIP"},
    {&Widgets::pushButton_Delete_2,  "SSL_DEL_VPNIP"},
};
// clang-format on

QTreeWidgetItem* newRow(int number, const QString& shownName, const QString& description)
{
    return new QTreeWidgetItem({QString::number(number), shownName, description});
}

} // namespace

void CustomAdvProperty::setDomainTexts()
{
    setTexts(ui, captions);
    setColumns(ui.treeWidget_Domain,
               {langText("SCE_DevOrder"), labelText(field<&DomainDetail::domainName>),
                labelText(field<&DomainDetail::domainDesp>)},
               {40, 280});
    ui.treeWidget_Domain->setAccessibleName(langText("CUS_DomainTitle"));
}

void CustomAdvProperty::loadDomains()
{
    domainInfo = record->domain;
    for (int position = 0; position < domainInfo.domaindetail.size(); ++position)
        ui.treeWidget_Domain->addTopLevelItem(
            newRow(position + 1, shownDomainName(position), domainInfo.domaindetail.at(position).domainDesp));
    ui.checkBox_DomainForce->setChecked(domainInfo.domainForce != 0);
}

void CustomAdvProperty::storeDomains()
{
    record->domain = domainInfo;
    record->domain.domainForce = ui.checkBox_DomainForce->isChecked() ? 1 : 0;
}

/// The default domain is the first entry while the list has a default at all.
QString CustomAdvProperty::shownDomainName(int position) const
{
    const QString name = domainInfo.domaindetail.at(position).domainName;
    return position == 0 && domainInfo.domainDefault != 0 ? name + langText("CUS_Default") : name;
}

void CustomAdvProperty::OnBnClickedAddDomain()
{
    CInput1XDomainDlg dialog(domainInfo, domainInfo.domainDefault, QString(), QString(), false, true, this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    const DomainDetail entry = {dialog.domain, dialog.description};
    const int number = ui.treeWidget_Domain->topLevelItemCount() + 1;
    QTreeWidgetItem* row = nullptr;
    if (dialog.defaultExists != 0) {
        // Contract: a new default carries the highest number on the first row until the next renumbering.
        domainInfo.domainDefault = 1;
        domainInfo.domaindetail.prepend(entry);
        row = newRow(number, shownDomainName(0), entry.domainDesp);
        ui.treeWidget_Domain->insertTopLevelItem(0, row);
    } else {
        domainInfo.domaindetail.append(entry);
        row = newRow(number, entry.domainName, entry.domainDesp);
        ui.treeWidget_Domain->addTopLevelItem(row);
    }
    ui.treeWidget_Domain->setCurrentItem(row);
    ui.pushButton_Edit_2->setEnabled(true);
    ui.pushButton_Delete_2->setEnabled(true);
    if (number >= s_mostRows)
        ui.pushButton_Add_2->setEnabled(false);
}

void CustomAdvProperty::OnBnClickedEditDomain()
{
    WarningBox box("CUS_InputDomainTitle", this);
    const QList<QTreeWidgetItem*> selected = ui.treeWidget_Domain->selectedItems();
    if (selected.isEmpty()) {
        box.say("CUS_DomainSelectWarning");
        return;
    }
    const int row = ui.treeWidget_Domain->indexOfTopLevelItem(selected.first());
    QList<DomainDetail>& entries = domainInfo.domaindetail;
    const QString shownDescription = selected.first()->text(DescriptionColumn);
    const auto found = std::find_if(entries.cbegin(), entries.cend(),
                                    [&](const DomainDetail& entry) { return entry.domainDesp == shownDescription; });
    if (found == entries.cend())
        return;
    const int position = static_cast<int>(found - entries.cbegin());

    const bool isDefault = domainInfo.domainDefault != 0 && row == 0;
    CInput1XDomainDlg dialog(domainInfo, 0, found->domainName, found->domainDesp, isDefault, false, nullptr);
    if (dialog.exec() != QDialog::Accepted)
        return;
    for (int other = 0; other < entries.size(); ++other) {
        if (other == position)
            continue;
        if (entries.at(other).domainName == dialog.domain) {
            box.say("CUS_DomainExistWarning");
            return;
        }
        if (entries.at(other).domainDesp == dialog.description) {
            box.say("CUS_DomainDesExistWarning");
            return;
        }
    }
    entries[position] = {dialog.domain, dialog.description};
    applyDefaultOfEdit(row, position, dialog.defaultExists != 0);
    rewriteDomainRows();
}

/// Contract: the rule looks at the row, while the entry that moves was found by its description. Unticking the default
/// of an ordinary row changes nothing. The selection follows the entry to the head, for the next Edit or Delete.
void CustomAdvProperty::applyDefaultOfEdit(int row, int position, bool isDefault)
{
    const bool wasDefault = domainInfo.domainDefault != 0 && row == 0;
    if (isDefault == wasDefault)
        return;
    domainInfo.domainDefault = isDefault ? 1 : 0;
    if (isDefault) {
        domainInfo.domaindetail.move(position, 0);
        ui.treeWidget_Domain->setCurrentItem(ui.treeWidget_Domain->topLevelItem(0));
    }
}

void CustomAdvProperty::rewriteDomainRows()
{
    const int count = std::min(ui.treeWidget_Domain->topLevelItemCount(), domainInfo.domaindetail.size());
    for (int position = 0; position < count; ++position) {
        QTreeWidgetItem* row = ui.treeWidget_Domain->topLevelItem(position);
        row->setText(NumberColumn, QString::number(position + 1));
        row->setText(NameColumn, shownDomainName(position));
        row->setText(DescriptionColumn, domainInfo.domaindetail.at(position).domainDesp);
    }
}

void CustomAdvProperty::OnBnClickedDelDomain()
{
    const QList<QTreeWidgetItem*> selected = ui.treeWidget_Domain->selectedItems();
    if (selected.isEmpty()) {
        WarningBox("CUS_InputDomainTitle", this).say("CUS_DomainSelectWarning");
        return;
    }
    QList<DomainDetail>& entries = domainInfo.domaindetail;
    const int row = ui.treeWidget_Domain->indexOfTopLevelItem(selected.first());
    const QString shownName = selected.first()->text(NameColumn);
    delete ui.treeWidget_Domain->takeTopLevelItem(row);
    if (row == 0) {
        if (!entries.isEmpty())
            entries.removeFirst();
        domainInfo.domainDefault = 0;
    } else {
        const auto found = std::find_if(entries.begin(), entries.end(),
                                        [&](const DomainDetail& entry) { return entry.domainName == shownName; });
        if (found != entries.end())
            entries.erase(found);
    }
    const int count = ui.treeWidget_Domain->topLevelItemCount();
    for (int position = 0; position < count; ++position)
        ui.treeWidget_Domain->topLevelItem(position)->setText(NumberColumn, QString::number(position + 1));
    if (count == 0) {
        ui.pushButton_Edit_2->setEnabled(false);
        ui.pushButton_Delete_2->setEnabled(false);
    }
    if (count < s_mostRows)
        ui.pushButton_Add_2->setEnabled(true);
}
