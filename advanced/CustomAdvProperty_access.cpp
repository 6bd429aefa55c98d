#include "advanced/CustomAdvProperty.h"
#include "app/widgets/FormRows.h"

using namespace formrows;
using Widgets = Ui_CustomAdvProperty;

namespace {

// clang-format off
const Flag<Widgets> x1Rows[] = {
    {&Widgets::checkBox_1xSaveUser,        field<&X1OptionsInfo::keepConnPasswd>},
    {&Widgets::checkBox_1xUpVer,           field<&X1OptionsInfo::upVer>},
    {&Widgets::checkBox_1xUpIp,            field<&X1OptionsInfo::upIp>},
    {&Widgets::checkBox_1xUseBroadLogoff,  field<&X1OptionsInfo::broadLogOff>},
    {&Widgets::checkBox_1xAutoConn,        field<&X1OptionsInfo::autoAuth>},
    {&Widgets::checkBox_1xRenewIPAfterCut, field<&X1OptionsInfo::refreshIPAftCut>},
    {&Widgets::checkBox_1xResumeConn,      field<&X1OptionsInfo::x1ResumeConn>},
    {&Widgets::checkBox_DefaultConn,       field<&X1OptionsInfo::defaultConnection>},
    {&Widgets::checkBox_1xAdvancedAuth,    field<&X1OptionsInfo::advancedAuth>},
};
const Caption<Widgets> x1Captions[] = {
    {&Widgets::label_RetryTimes,      field<&X1OptionsInfo::reauthTimes>},
    {&Widgets::label_RetryInterval,   field<&X1OptionsInfo::reauthInterval>},
    {&Widgets::groupBox_PacketType,   field<&X1OptionsInfo::unicastType>},
    {&Widgets::radioButton_uniPkt,    words::packetTypes.at(0).key},
    {&Widgets::radioButton_multiPkt,  words::packetTypes.at(1).key},
};
const Flag<Widgets> portalRows[] = {
    {&Widgets::checkBox_PortalSaveUser,         field<&PortalOptionsInfo::keepConnPasswd>},
    {&Widgets::checkBox_PortalUpVer,            field<&PortalOptionsInfo::upVer>},
    {&Widgets::checkBox_PortalAutoConn,         field<&PortalOptionsInfo::autoAuth>},
    {&Widgets::checkBox_PortalReConnAftNetErr,  field<&PortalOptionsInfo::resumeConn>},
    {&Widgets::checkBox_PortalAdvancedAuth,     field<&PortalOptionsInfo::advancedAuth>},
};
// clang-format on

constexpr FieldRef retryTimes = field<&X1OptionsInfo::reauthTimes>;
constexpr FieldRef retryInterval = field<&X1OptionsInfo::reauthInterval>;
constexpr FieldRef x1AuthType = field<&X1OptionsInfo::advancedAuthType>;
constexpr FieldRef portalAuthType = field<&PortalOptionsInfo::advancedAuthType>;

void refill(QComboBox* combo, const FieldRef& field)
{
    combo->clear();
    combo->setInsertPolicy(QComboBox::InsertAtBottom);
    addWords(combo, field);
}

void fillAdvancedAuth(QComboBox* combo, const FieldRef& field)
{
    refill(combo, field);
    combo->setAccessibleName(langText(field.label()));
}

/// A position beyond the list leaves nothing selected.
/// Contract: with nothing selected the record keeps the position that it brought, so that OK gives a position beyond
/// the list back unchanged.
void selectPosition(QComboBox* combo, const FieldRef& field, const CustomInfo& info)
{
    if (!selectWord(combo, field, info))
        combo->setCurrentIndex(-1);
}

} // namespace

void CustomAdvProperty::set8021xTexts()
{
    setTexts(ui, x1Rows);
    setTexts(ui, x1Captions);
    fillAdvancedAuth(ui.comboBox_1xAdvancedAuth, x1AuthType);
    refill(ui.comboBox_RetryTimes, retryTimes);
    refill(ui.comboBox_RetryInterval, retryInterval);
}

void CustomAdvProperty::load8021x()
{
    load(ui, x1Rows, *record);
    (record->x1.unicastType != 0 ? ui.radioButton_uniPkt : ui.radioButton_multiPkt)->setChecked(true);
    ui.comboBox_1xAdvancedAuth->setEnabled(record->x1.advancedAuth != 0);
    selectPosition(ui.comboBox_1xAdvancedAuth, x1AuthType, *record);
    selectPosition(ui.comboBox_RetryTimes, retryTimes, *record);
    selectPosition(ui.comboBox_RetryInterval, retryInterval, *record);
}

void CustomAdvProperty::store8021x()
{
    store(ui, x1Rows, *record);
    record->x1.unicastType = ui.radioButton_uniPkt->isChecked() ? 1 : 0;
    storeWord(ui.comboBox_RetryTimes, retryTimes, *record);
    storeWord(ui.comboBox_RetryInterval, retryInterval, *record);
    // Contract: without advanced authentication the record keeps the type that it brought, here and for the portal.
    if (record->x1.advancedAuth != 0)
        storeWord(ui.comboBox_1xAdvancedAuth, x1AuthType, *record);
}

void CustomAdvProperty::OnBnClicked1xAuthChk()
{
    ui.comboBox_1xAdvancedAuth->setEnabled(ui.checkBox_1xAdvancedAuth->isChecked());
}

void CustomAdvProperty::setPortalTexts()
{
    setTexts(ui, portalRows);
    fillAdvancedAuth(ui.comboBox_PortalAdvancedAuth, portalAuthType);
}

void CustomAdvProperty::loadPortal()
{
    load(ui, portalRows, *record);
    ui.comboBox_PortalAdvancedAuth->setEnabled(record->portal.advancedAuth != 0);
    selectPosition(ui.comboBox_PortalAdvancedAuth, portalAuthType, *record);
}

void CustomAdvProperty::storePortal()
{
    store(ui, portalRows, *record);
    if (record->portal.advancedAuth != 0)
        storeWord(ui.comboBox_PortalAdvancedAuth, portalAuthType, *record);
}

void CustomAdvProperty::OnBnClickedPortalAuthChk()
{
    ui.comboBox_PortalAdvancedAuth->setEnabled(ui.checkBox_PortalAdvancedAuth->isChecked());
}
