#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "view/ShowDetailDlg.h"
#include "xml/RecordRows.h"

namespace {

QString bracket(const QString& content)
{
    return langText("VUI_ZuoKuoHao") + content + langText("VUI_YouKuoHao");
}

QString dynamicPassword(const BasicFunctionInfo& function)
{
    QString text = langText("CUS_FuncName.DynamicpwdVerify");
    if (function.dynamicVifInfo != 0)
        text += bracket(maskText(words::passwordOffers, function.dynamicVifInfo));
    return text;
}

QString messageAuthentication(const BasicFunctionInfo& function)
{
    QString content;
    if (function.msgAuthInfo != 0)
        content = maskText(words::passwordOffers, function.msgAuthInfo) + QLatin1Char(';');
    content += langText("CUS_MsgAuthServIPShow") + function.msgAuthServIP + QLatin1Char(';');
    content += langText("CUS_MsgAuthServDomainShow") + QString::number(function.msgAuthServPort);
    return langText("CUS_FuncName.MsgAuth") + bracket(content);
}

QString passwordProtection(const BasicFunctionInfo& function)
{
    QString text = labelText(field<&BasicFunctionInfo::passwordProtection>);
    if (function.uninstallPasswordExtend != 0)
        text += QLatin1String(": ") + labelText(field<&BasicFunctionInfo::uninstallPasswordExtend>);
    return text;
}

QString wanControlEscape(const BasicFunctionInfo& function)
{
    // Contract: a blank follows the semicolon behind the port, and none the other two.
    QString content =
        labelText(field<&BasicFunctionInfo::wanControlEscapePyxIp>) + function.wanControlEscapePyxIp + QLatin1Char(';');
    content += labelText(field<&BasicFunctionInfo::wanControlEscapePyxIpBackup>) +
               function.wanControlEscapePyxIpBackup + QLatin1Char(';');
    content += labelText(field<&BasicFunctionInfo::wanControlEscapePyxPort>) + function.wanControlEscapePyxPort +
               QLatin1String("; ");
    content += labelText(field<&BasicFunctionInfo::wanControlEscapeDns>) + function.wanControlEscapeDns;
    return langText("CUS_Wancotrol_Escape") + bracket(content);
}

} // namespace

void ShowDetailDlg::initFunctionPage()
{
    const BasicFunctionInfo& function = m_customInfo.function;
    ui.listWidget_func->clear();
    if (function.acl != 0)
        ui.listWidget_func->addItem(labelText(field<&BasicFunctionInfo::acl>));
    if (function.wanControl != 0)
        ui.listWidget_func->addItem(viewedText(field<&BasicFunctionInfo::wanControl>, m_customInfo));
    if (function.drvErr != 0)
        ui.listWidget_func->addItem(labelText(field<&BasicFunctionInfo::drvErr>));
    if (function.dynamicPwdVerify != 0)
        ui.listWidget_func->addItem(dynamicPassword(function));
    if (function.msgAuthOpt != 0)
        ui.listWidget_func->addItem(messageAuthentication(function));
    if (function.passwordProtection != 0)
        ui.listWidget_func->addItem(passwordProtection(function));
    if (function.wanControlEscape != 0)
        ui.listWidget_func->addItem(wanControlEscape(function));
}
