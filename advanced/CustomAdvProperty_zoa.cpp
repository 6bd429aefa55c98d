#include "advanced/CustomAdvProperty.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/WarningBox.h"
#include "common/AddressRules.h"
#include "common/PortRules.h"

#include <QFileDialog>

using namespace formrows;
using Widgets = Ui_CustomAdvProperty;

namespace {

/// Of an edit of the ZOA tab. An empty text needs no check.
struct ZoaRow
{
    Text<Widgets> text;
    bool (*isLegal)(const QString&);
    const char* refusalKey;
};

// clang-format off
// The order of the rows is the order of the checks.
const ZoaRow zoaRows[] = {
    {{&Widgets::lineEdit_ZOAIp, &Widgets::label_ZOAIp, field<&ZOAOptionsInfo::ZOAIP>},
     isIPAddrLegal, "VUI_IllegalZOAIP"},
    {{&Widgets::lineEdit_ZOAport, &Widgets::label_ZOAport, field<&ZOAOptionsInfo::ZOAPORT>},
     isSignedPortFromOne, "VUI_IllegalZOAPort"},
    {{&Widgets::lineEdit_standby_ZOAIp, &Widgets::label_standby_ZOAIp, field<&ZOAOptionsInfo::standbyZOAIP>},
     isIPAddrLegal, "VUI_IllegalStandbyZOAIP"},
    {{&Widgets::lineEdit_standby_ZOAport, &Widgets::label_standby_ZOAport, field<&ZOAOptionsInfo::standbyZOAPORT>},
     isSignedPortFromOne, "VUI_IllegalStandbyZOAPort"},
};
const Caption<Widgets> zoaCaptions[] = {
    {&Widgets::checkBox_UseZoa, field<&ZOAOptionsInfo::useZOA>},
    {&Widgets::label_UseHint,   "VUI_STANDBYZOAUSEHINT"},
};
const Text<Widgets> guiRows[] = {
    {&Widgets::lineEdit_deskIcon_dir_Linux, &Widgets::label_cusdeskIconL, field<&GUIOptionsInfo::linuxDeskIconPath>},
    {&Widgets::lineEdit_deskIcon_dir_Macos, &Widgets::label_cusdeskIconM, field<&GUIOptionsInfo::macosDeskIconPath>},
    {&Widgets::lineEdit_mainIcon_dir, &Widgets::label_cusmainIcon, field<&GUIOptionsInfo::mainIconPath>},
    {&Widgets::lineEdit_cusTitle, &Widgets::label_cusTile, field<&GUIOptionsInfo::subTitle>},
};
const Flag<Widgets> guiFlagRows[] = {
    {&Widgets::checkBox_HideCopyRight, field<&GUIOptionsInfo::hideCopyRight>},
};
const Caption<Widgets> guiCaptions[] = {
    {&Widgets::groupBox_cusIcon,            "CUS_CusIconComBox"},
    {&Widgets::pushButton_mainIcon_locate,  "Cus_Browse"},
    {&Widgets::pushButton_deskIconL_locate, "Cus_Browse"},
    {&Widgets::pushButton_deskIconM_locate, "Cus_Browse"},
    {&Widgets::groupBox_cusTitle,           "CUS_CusTitleComBox"},
};
// clang-format on

} // namespace

void CustomAdvProperty::setZoaTexts()
{
    for (const ZoaRow& row : zoaRows)
        (ui.*row.text.label)->setText(labelOf(row.text));
    setTexts(ui, zoaCaptions);
}

void CustomAdvProperty::loadZoa()
{
    const ZOAOptionsInfo& zoa = record->zoa;
    for (const ZoaRow& row : zoaRows) {
        QLineEdit* edit = ui.*row.text.edit;
        // Contract: the load raises the ports from the form's 5 characters, too.
        limit(edit, row.text.field);
        edit->setEnabled(zoa.useZOA != 0);
        // Contract: with ZOA off the edits keep the form's texts, not those of the record.
        if (zoa.useZOA != 0)
            edit->setText(row.text.field.text(*record));
    }
}

bool CustomAdvProperty::storeZoa(WarningBox& box)
{
    // Contract: OK switches ZOA on whatever the hidden box shows, and reads disabled edits like all others.
    record->zoa.useZOA = 1;
    for (const ZoaRow& row : zoaRows) {
        QLineEdit* edit = ui.*row.text.edit;
        const QString text = edit->text();
        if (!text.isEmpty() && !row.isLegal(text))
            return box.refuse(row.refusalKey, edit);
        row.text.field.setText(*record, text);
    }
    return true;
}

// Contract: the hidden box keeps its slot, and the slot greys the labels of the first server only.
void CustomAdvProperty::OnUseZoa()
{
    const bool useZoa = ui.checkBox_UseZoa->isChecked();
    ui.label_ZOAIp->setEnabled(useZoa);
    ui.label_ZOAport->setEnabled(useZoa);
}

void CustomAdvProperty::setGuiTexts()
{
    setTexts(ui, guiRows);
    setTexts(ui, guiFlagRows);
    setTexts(ui, guiCaptions);
    // The three buttons show the same text; a screen reader tells them apart by what they select.
    ui.pushButton_mainIcon_locate->setAccessibleName(langText("GUI_SelectMainIcon"));
    ui.pushButton_deskIconL_locate->setAccessibleName(langText("GUI_SelectLinuxIcon"));
    ui.pushButton_deskIconM_locate->setAccessibleName(langText("GUI_SelectMacIcon"));
}

void CustomAdvProperty::loadGui()
{
    load(ui, guiRows, *record);
    load(ui, guiFlagRows, *record);
    // The hidden row keeps the path of the record, and OK stores it back.
    ui.label_cusdeskIconM->hide();
    ui.lineEdit_deskIcon_dir_Macos->hide();
    ui.pushButton_deskIconM_locate->hide();
}

void CustomAdvProperty::storeGui()
{
    store(ui, guiRows, *record);
    store(ui, guiFlagRows, *record);
}

void CustomAdvProperty::OnLocateMainIcon()
{
    locateIcon(ui.lineEdit_mainIcon_dir, "GUI_SelectMainIcon", tr("Image Files (*.ico)"));
}

void CustomAdvProperty::OnLocateDeskIconL()
{
    locateIcon(ui.lineEdit_deskIcon_dir_Linux, "GUI_SelectLinuxIcon", tr("Image Files (*.png)"));
}

void CustomAdvProperty::OnLocateDeskIconM()
{
    locateIcon(ui.lineEdit_deskIcon_dir_Macos, "GUI_SelectMacIcon", tr("Image Files (*.icns)"));
}

void CustomAdvProperty::locateIcon(QLineEdit* edit, const char* captionKey, const QString& filter)
{
    const QString path = QFileDialog::getOpenFileName(this, langText(captionKey), QStringLiteral("/"), filter);
    if (!path.isEmpty())
        edit->setText(path);
}
