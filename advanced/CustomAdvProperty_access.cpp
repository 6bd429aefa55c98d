#include "advanced/CustomAdvProperty.h"
#include "advanced/CustomAdvPropertyRows.h"
#include "app/widgets/OptionLists.h"

using namespace advanced;

namespace {

// clang-format off
const FlagRow<X1OptionsInfo> x1Rows[] = {
    {&Widgets::checkBox_1xSaveUser,        "chk_saveuser",            &X1OptionsInfo::keepConnPasswd},
    {&Widgets::checkBox_1xUpVer,           "chk_upver",               &X1OptionsInfo::upVer},
    {&Widgets::checkBox_1xUpIp,            "chk_upip",                &X1OptionsInfo::upIp},
    {&Widgets::checkBox_1xUseBroadLogoff,  "chk_broadlogoff",         &X1OptionsInfo::broadLogOff},
    {&Widgets::checkBox_1xAutoConn,        "chk_auto",                &X1OptionsInfo::autoAuth},
    {&Widgets::checkBox_1xRenewIPAfterCut, "chk_renewIpaftercut",     &X1OptionsInfo::refreshIPAftCut},
    {&Widgets::checkBox_1xResumeConn,      "chk_1Xresumeconn",        &X1OptionsInfo::x1ResumeConn},
    {&Widgets::checkBox_DefaultConn,       "chk_create_default_conn", &X1OptionsInfo::defaultConnection},
    {&Widgets::checkBox_1xAdvancedAuth,    "chk_HighAuth",            &X1OptionsInfo::advancedAuth},
};
const CaptionRow x1Captions[] = {
    {&Widgets::label_RetryTimes,      "label_retrytimes"},
    {&Widgets::label_RetryInterval,   "label_retryInte"},
    {&Widgets::groupBox_PacketType,   "grp_pkttype"},
    {&Widgets::radioButton_uniPkt,    "rad_uiPkt"},
    {&Widgets::radioButton_multiPkt,  "rad_multiPkt"},
};
const FlagRow<PortalOptionsInfo> portalRows[] = {
    {&Widgets::checkBox_PortalSaveUser,         "chk_saveuser",   &PortalOptionsInfo::keepConnPasswd},
    {&Widgets::checkBox_PortalUpVer,            "chk_upver",      &PortalOptionsInfo::upVer},
    {&Widgets::checkBox_PortalAutoConn,         "chk_auto",       &PortalOptionsInfo::autoAuth},
    {&Widgets::checkBox_PortalReConnAftNetErr,  "chk_ResumeConn", &PortalOptionsInfo::resumeConn},
    {&Widgets::checkBox_PortalAdvancedAuth,     "chk_HighAuth",   &PortalOptionsInfo::advancedAuth},
};
// clang-format on

/// A position beyond the list leaves nothing selected.
void selectPosition(QComboBox* combo, quint32 position)
{
    combo->setCurrentIndex(position < static_cast<quint32>(combo->count()) ? static_cast<int>(position) : -1);
}

/// Contract: with nothing selected the record keeps the position that it brought, so that OK gives a position beyond
/// the list back unchanged.
void storePosition(const QComboBox* combo, quint32& position)
{
    if (combo->currentIndex() >= 0)
        position = static_cast<quint32>(combo->currentIndex());
}

void fillAdvancedAuth(QComboBox* combo)
{
    combo->clear();
    for (const char* key : options::advancedAuthKeys)
        combo->addItem(langText(key));
    combo->setAccessibleName(langText("chk_HighAuth"));
}

template <class Section> void loadAdvancedAuth(QComboBox* combo, const Section& section)
{
    combo->setEnabled(section.advancedAuth != 0);
    selectPosition(combo, section.advancedAuthType);
}

/// Contract: without advanced authentication the record keeps the type that it brought.
template <class Section> void storeAdvancedAuth(const QComboBox* combo, Section& section)
{
    if (section.advancedAuth != 0)
        storePosition(combo, section.advancedAuthType);
}

} // namespace

void CustomAdvProperty::set8021xTexts()
{
    setTexts(ui, x1Rows);
    setTexts(ui, x1Captions);
    fillAdvancedAuth(ui.comboBox_1xAdvancedAuth);

    ui.comboBox_RetryTimes->clear();
    ui.comboBox_RetryTimes->setInsertPolicy(QComboBox::InsertAtBottom);
    for (int times : options::retryTimes)
        ui.comboBox_RetryTimes->addItem(QString::number(times));
    ui.comboBox_RetryTimes->addItem(langText("CMN_NoLimite"));

    ui.comboBox_RetryInterval->clear();
    ui.comboBox_RetryInterval->setInsertPolicy(QComboBox::InsertAtBottom);
    for (const char* key : options::retryIntervalKeys)
        ui.comboBox_RetryInterval->addItem(langText(key));
}

void CustomAdvProperty::load8021x()
{
    const X1OptionsInfo& x1 = record->x1;
    load(ui, x1Rows, x1);
    (x1.unicastType != 0 ? ui.radioButton_uniPkt : ui.radioButton_multiPkt)->setChecked(true);
    loadAdvancedAuth(ui.comboBox_1xAdvancedAuth, x1);
    selectPosition(ui.comboBox_RetryTimes, x1.reauthTimes);
    selectPosition(ui.comboBox_RetryInterval, x1.reauthInterval);
}

void CustomAdvProperty::store8021x()
{
    X1OptionsInfo& x1 = record->x1;
    store(ui, x1Rows, x1);
    x1.unicastType = ui.radioButton_uniPkt->isChecked() ? 1 : 0;
    storePosition(ui.comboBox_RetryTimes, x1.reauthTimes);
    storePosition(ui.comboBox_RetryInterval, x1.reauthInterval);
    storeAdvancedAuth(ui.comboBox_1xAdvancedAuth, x1);
}

void CustomAdvProperty::OnBnClicked1xAuthChk()
{
    ui.comboBox_1xAdvancedAuth->setEnabled(ui.checkBox_1xAdvancedAuth->isChecked());
}

void CustomAdvProperty::setPortalTexts()
{
    setTexts(ui, portalRows);
    fillAdvancedAuth(ui.comboBox_PortalAdvancedAuth);
}

void CustomAdvProperty::loadPortal()
{
    load(ui, portalRows, record->portal);
    loadAdvancedAuth(ui.comboBox_PortalAdvancedAuth, record->portal);
}

void CustomAdvProperty::storePortal()
{
    store(ui, portalRows, record->portal);
    storeAdvancedAuth(ui.comboBox_PortalAdvancedAuth, record->portal);
}

void CustomAdvProperty::OnBnClickedPortalAuthChk()
{
    ui.comboBox_PortalAdvancedAuth->setEnabled(ui.checkBox_PortalAdvancedAuth->isChecked());
}
