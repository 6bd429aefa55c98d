#include "advanced/CDynamicPwdDlg.h"
#include "advanced/CMsgAuthDlg.h"
#include "advanced/CWanEscapeDlg.h"
#include "advanced/CustomAdvProperty.h"
#include "advanced/UninstallPasswd.h"
#include "advanced/WancontrolDlg.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/WarningBox.h"

using namespace formrows;
using Widgets = Ui_CustomAdvProperty;

namespace {

// clang-format off
// Loaded from the record, stored by OK.
const Flag<Widgets> storedRows[] = {
    {&Widgets::checkBox_AclOpt,    field<&BasicFunctionInfo::acl>},
    {&Widgets::checkBox_DrvErr,    field<&BasicFunctionInfo::drvErr>},
    {&Widgets::checkBox_DynPwdVry, field<&BasicFunctionInfo::dynamicPwdVerify>},
};
// Loaded from the record, written by the small dialogs when they close.
const Flag<Widgets> dialogRows[] = {
    {&Widgets::checkBox_Wancontrol, field<&BasicFunctionInfo::wanControl>},
    {&Widgets::checkBox_MsgAuth,    field<&BasicFunctionInfo::msgAuthOpt>},
    {&Widgets::checkBox_passwd,     field<&BasicFunctionInfo::passwordProtection>},
    {&Widgets::checkBox_aclEscape,  field<&BasicFunctionInfo::wanControlEscape>},
};
// clang-format on

/// The sum that the record keeps of how the client offers a verification.
template <class Dialog> quint32 offerOf(const Dialog& dialog)
{
    return 2u * dialog.defaultChecked + dialog.changeEnable;
}

} // namespace

void CustomAdvProperty::setFunctionTexts()
{
    setTexts(ui, storedRows);
    setTexts(ui, dialogRows);
}

void CustomAdvProperty::loadFunctions()
{
    if (record->function.wanControl != 0)
        record->function.acl = 1;
    load(ui, storedRows, *record);
    load(ui, dialogRows, *record);
}

void CustomAdvProperty::storeFunctions()
{
    store(ui, storedRows, *record);
    if (!ui.checkBox_Wancontrol->isChecked())
        record->function.wanControl = 0;
}

void CustomAdvProperty::onClickAclOpt(bool checked)
{
    if (!checked && (ui.checkBox_Wancontrol->isChecked() || ui.checkBox_aclEscape->isChecked()))
        ui.checkBox_AclOpt->setChecked(true);
}

// Contract: the small dialogs start from their own defaults and are not given the stored values.
void CustomAdvProperty::showWancontrolDlg(bool checked)
{
    if (!record)
        return;
    if (!checked) {
        record->function.wanControl = 0;
        return;
    }
    WancontrolDlg dialog(this);
    dialog.exec();
    // Contract: Cancel does not refuse the function; it stays on with the filter action of the dialog's construction.
    record->function.wanControl = dialog.passAction + 1;
    ui.checkBox_AclOpt->setChecked(true);
}

void CustomAdvProperty::showDynPwdDlg(bool checked)
{
    if (!record)
        return;
    if (!checked) {
        record->function.dynamicPwdVerify = 0;
        return;
    }
    if (ui.checkBox_MsgAuth->isChecked()) {
        WarningBox("CUS_TipsTitle", this).say("CUS_HasUseInfoAuth");
        ui.checkBox_DynPwdVry->setChecked(false);
        return;
    }
    CDynamicPwdDlg dialog(this);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    if (isAccepted)
        record->function.dynamicVifInfo = offerOf(dialog);
    record->function.dynamicPwdVerify = isAccepted ? 1 : 0;
    ui.checkBox_DynPwdVry->setChecked(isAccepted);
}

void CustomAdvProperty::showMsgAuthDlg(bool checked)
{
    if (!record)
        return;
    if (!checked) {
        record->function.msgAuthOpt = 0;
        return;
    }
    if (ui.checkBox_DynPwdVry->isChecked()) {
        WarningBox("CUS_TipsTitle", this).say("CUS_HasUseDynamicPwd");
        ui.checkBox_MsgAuth->setChecked(false);
        return;
    }
    CMsgAuthDlg dialog(this);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    if (isAccepted) {
        record->function.msgAuthInfo = offerOf(dialog);
        record->function.msgAuthServIP = dialog.address;
        record->function.msgAuthServPort = static_cast<quint32>(dialog.port);
    }
    record->function.msgAuthOpt = isAccepted ? 1 : 0;
    ui.checkBox_MsgAuth->setChecked(isAccepted);
}

void CustomAdvProperty::showWanEscapeDlg(bool checked)
{
    if (!record)
        return;
    if (!checked) {
        record->function.wanControlEscape = 0;
        return;
    }
    CWanEscapeDlg dialog(this);
    const bool isAccepted = dialog.exec() == QDialog::Accepted;
    record->function.wanControlEscape = isAccepted ? 1 : 0;
    ui.checkBox_aclEscape->setChecked(isAccepted);
    if (!isAccepted)
        return;
    record->function.wanControlEscapePyxIp = dialog.address;
    record->function.wanControlEscapePyxPort = dialog.port;
    record->function.wanControlEscapeDns = dialog.dnsAddress;
    record->function.wanControlEscapePyxIpBackup = dialog.backupAddress;
    // The escape needs the control that it escapes from.
    if (!ui.checkBox_Wancontrol->isChecked()) {
        ui.checkBox_Wancontrol->setChecked(true);
        showWancontrolDlg(true);
    }
}

void CustomAdvProperty::showUninstallPwdDlg(bool checked)
{
    if (!record)
        return;
    if (!checked) {
        record->function.passwordProtection = 0;
        return;
    }
    UninstallPasswd dialog(this);
    if (dialog.exec() != QDialog::Accepted) {
        record->function.passwordProtection = 0;
        ui.checkBox_passwd->setChecked(false);
        return;
    }
    record->function.passwordProtection = 1;
    record->function.uninstallPassword = dialog.password;
    record->function.uninstallPasswordExtend = dialog.extendPassword != 0 ? 2 : 0;
}
