#include "advanced/CustomAdvProperty.h"
#include "app/language/CLanguageParser.h"
#include "app/language/FieldTexts.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/WarningBox.h"

#include <iterator>

using namespace formrows;
using Widgets = Ui_CustomAdvProperty;

namespace {

constexpr quint64 s_defaultRetries = 3;
constexpr quint64 s_shortestCountdown = 5; // seconds
constexpr quint64 s_longestCountdown = 180;

/// A check box for a word of a mask, and the word that makes it the default.
struct MaskRow
{
    QCheckBox* Widgets::*box;
    const words::Word& word;
    const words::Word& asDefault;
};

quint64 bitOf(const MaskRow& row)
{
    return words::number(row.word);
}

/// In the list of defaults and in the record.
QString nameOf(const MaskRow& row)
{
    return QLatin1String(row.asDefault.stored);
}

// clang-format off
const MaskRow typeRows[] = {
    {&Widgets::checkBox_Local,  words::sslTypes.at(0), words::sslDefaultTypes.at(0)},
    {&Widgets::checkBox_AD,     words::sslTypes.at(1), words::sslDefaultTypes.at(1)},
    {&Widgets::checkBox_LDAP,   words::sslTypes.at(2), words::sslDefaultTypes.at(2)},
    {&Widgets::checkBox_RADIUS, words::sslTypes.at(3), words::sslDefaultTypes.at(3)},
};
const MaskRow modeRows[] = {
    {&Widgets::checkBox_Password, words::sslModes.at(0), words::sslDefaultModes.at(0)},
    {&Widgets::checkBox_PwdCert,  words::sslModes.at(1), words::sslDefaultModes.at(1)},
    {&Widgets::checkBox_Cert,     words::sslModes.at(2), words::sslDefaultModes.at(2)},
};
const Text<Widgets> numberRows[] = {
    {&Widgets::lineEdit_reconnInterval, &Widgets::label_reconnInterval, field<&SSLVPNOptionsInfo::retryInterval>},
    {&Widgets::lineEdit_reconnTimes, &Widgets::label_reconnTimes, field<&SSLVPNOptionsInfo::retries>},
    {&Widgets::lineEdit_getSysVryInterval, &Widgets::label_getSysVryInterval,
     field<&SSLVPNOptionsInfo::getSmsVryCountdownValue>},
};
const Flag<Widgets> flagRows[] = {
    {&Widgets::checkBox_gatewayType, field<&SSLVPNOptionsInfo::gatewayAuth>},
    {&Widgets::checkBox_edcode,      field<&SSLVPNOptionsInfo::edcode>},
};
const Caption<Widgets> captions[] = {
    {&Widgets::label_AuthType,    field<&SSLVPNOptionsInfo::ulAuthType>},
    {&Widgets::label_defaultType, field<&SSLVPNOptionsInfo::authDefaultType>},
    {&Widgets::label_AuthMode,    field<&SSLVPNOptionsInfo::authMode>},
    {&Widgets::label_defaultMode, field<&SSLVPNOptionsInfo::authDefaultMode>},
    {&Widgets::label_TLSVersion,  field<&SSLVPNOptionsInfo::TLSVersion>},
};
// clang-format on

/// A text that is not in the list leaves the selection alone.
void selectText(QComboBox* combo, const QString& text)
{
    const int index = combo->findText(text);
    if (index >= 0)
        combo->setCurrentIndex(index);
}

/// Lists the texts anew and keeps the selection while it is listed. Otherwise the first listed text is selected, as
/// an empty list selects its first new item.
void relist(QComboBox* combo, const QStringList& texts)
{
    const QString selected = combo->currentText();
    combo->clear();
    combo->addItems(texts);
    selectText(combo, selected);
}

/// 0 for what is not a number.
quint64 numberIn(const QLineEdit* edit)
{
    return edit->text().toULong(nullptr, 10);
}

} // namespace

void CustomAdvProperty::setSslVpnTexts()
{
    for (const MaskRow& row : typeRows)
        (ui.*row.box)->setText(wordText(row.word));
    for (const MaskRow& row : modeRows)
        (ui.*row.box)->setText(wordText(row.word));
    setTexts(ui, numberRows);
    for (const Text<Widgets>& row : numberRows)
        limit(ui.*row.edit, row.field);
    setTexts(ui, flagRows);
    setTexts(ui, captions);
    setGatewayTexts();
}

void CustomAdvProperty::initSslVpnPage(CLanguageParser& language)
{
    const SSLVPNOptionsInfo& sslvpn = record->sslvpn;
    load(ui, numberRows, *record);
    loadGateways(language.GetKey("SSL_DEFAULTNAME"));

    const QString defaultType = sslvpn.authDefaultType;
    for (const MaskRow& row : typeRows) {
        const bool isTicked = (sslvpn.ulAuthType & bitOf(row)) != 0;
        (ui.*row.box)->setChecked(isTicked);
        authTypeCount += isTicked ? 1 : 0;
    }
    if (ui.checkBox_RADIUS->isChecked() && authTypeCount == 1)
        ui.checkBox_Cert->setEnabled(false);
    SetDefaultTypeList();
    selectText(ui.comboBox_defaultType, defaultType);

    // Contract: the certificate mode is ticked and counted even where RADIUS has just disabled its box.
    for (const MaskRow& row : modeRows) {
        const bool isTicked = (sslvpn.authMode & bitOf(row)) != 0;
        (ui.*row.box)->setChecked(isTicked);
        authModeCount += isTicked ? 1 : 0;
    }
    SetDefaultModeList();
    for (const MaskRow& row : modeRows) {
        if (words::number(row.asDefault) == sslvpn.authDefaultMode)
            selectText(ui.comboBox_defaultMode, language.GetKey(row.word.key));
    }

    load(ui, flagRows, *record);
    addWords(ui.comboBox_TLS_version_list, field<&SSLVPNOptionsInfo::TLSVersion>);
    ui.comboBox_TLS_version_list->setCurrentIndex(sslvpn.TLSVersion == 1 ? 1 : 0);
}

void CustomAdvProperty::SetDefaultTypeList()
{
    QStringList names;
    for (const MaskRow& row : typeRows) {
        if ((ui.*row.box)->isChecked())
            names.append(nameOf(row));
    }
    relist(ui.comboBox_defaultType, names);
}

void CustomAdvProperty::SetDefaultModeList()
{
    QStringList texts;
    for (const MaskRow& row : modeRows) {
        if ((ui.*row.box)->isChecked())
            texts.append(wordText(row.word));
    }
    relist(ui.comboBox_defaultMode, texts);
}

/// Contract: the list of default modes is not rebuilt and goes on listing the certificate mode until a mode box is
/// clicked; OK refuses it beside RADIUS.
void CustomAdvProperty::forbidCertificateMode()
{
    if (ui.checkBox_Cert->isChecked()) {
        ui.checkBox_Cert->setChecked(false);
        --authModeCount;
    }
    ui.checkBox_Cert->setEnabled(false);
}

void CustomAdvProperty::onTypeClicked(const QCheckBox* box, const QString& name)
{
    if (box->isChecked()) {
        ++authTypeCount;
        ui.checkBox_Cert->setEnabled(true);
    } else {
        if (ui.comboBox_defaultType->currentText() == name)
            ui.comboBox_defaultType->setCurrentIndex(-1);
        --authTypeCount;
        if (authTypeCount == 1 && ui.checkBox_RADIUS->isChecked())
            forbidCertificateMode();
    }
    SetDefaultTypeList();
}

void CustomAdvProperty::OnBnClickedLocalType()
{
    onTypeClicked(ui.checkBox_Local, nameOf(typeRows[0]));
}

void CustomAdvProperty::OnBnClickedAdType()
{
    onTypeClicked(ui.checkBox_AD, nameOf(typeRows[1]));
}

void CustomAdvProperty::OnBnClickedLdapType()
{
    onTypeClicked(ui.checkBox_LDAP, nameOf(typeRows[2]));
}

void CustomAdvProperty::OnBnClickedRadiusType()
{
    if (ui.checkBox_RADIUS->isChecked()) {
        ++authTypeCount;
        if (authTypeCount == 1)
            forbidCertificateMode();
    } else {
        if (ui.comboBox_defaultType->currentText() == nameOf(typeRows[3]))
            ui.comboBox_defaultType->setCurrentIndex(-1);
        --authTypeCount;
        ui.checkBox_Cert->setEnabled(true);
    }
    SetDefaultTypeList();
}

void CustomAdvProperty::onModeClicked(const QCheckBox* box, const QString& mode)
{
    if (box->isChecked()) {
        ++authModeCount;
    } else {
        --authModeCount;
        if (ui.comboBox_defaultMode->currentText() == mode)
            ui.comboBox_defaultMode->setCurrentIndex(-1);
    }
    SetDefaultModeList();
}

void CustomAdvProperty::OnBnClickedCodeauthChk()
{
    onModeClicked(ui.checkBox_Password, wordText(modeRows[0].word));
}

void CustomAdvProperty::OnBnClickedCodecertChk()
{
    onModeClicked(ui.checkBox_PwdCert, wordText(modeRows[1].word));
}

void CustomAdvProperty::OnBnClickedCertauthChk()
{
    onModeClicked(ui.checkBox_Cert, wordText(modeRows[2].word));
}

bool CustomAdvProperty::storeSslVpn(WarningBox& box)
{
    SSLVPNOptionsInfo& sslvpn = record->sslvpn;
    box.setTitleKey("SCE_SceneTipsTitle");
    const quint64 retryInterval = numberIn(ui.lineEdit_reconnInterval);
    // Contract: these two refusals leave the focus where it is.
    if (retryInterval == 0) {
        announceRefusal(ui.lineEdit_reconnInterval, "SSL_RECONNGRAP_ERROR");
        return box.refuse("SSL_RECONNGRAP_ERROR");
    }
    const quint64 countdown = numberIn(ui.lineEdit_getSysVryInterval);
    if (countdown < s_shortestCountdown || countdown > s_longestCountdown) {
        announceRefusal(ui.lineEdit_getSysVryInterval, "SSL_GetSmsVryCountDownValu_ERROR");
        return box.refuse("SSL_GetSmsVryCountDownValu_ERROR");
    }
    sslvpn.getSmsVryCountdownValue = countdown;
    if (!storeAuthTypes(box) || !storeAuthModes(box))
        return false;
    store(ui, flagRows, *record);
    sslvpn.retryInterval = retryInterval;
    sslvpn.retries = ui.lineEdit_reconnTimes->text().isEmpty() ? s_defaultRetries : numberIn(ui.lineEdit_reconnTimes);
    storeGateways(box);
    sslvpn.TLSVersion = static_cast<quint64>(ui.comboBox_TLS_version_list->currentIndex());
    return true;
}

bool CustomAdvProperty::storeAuthTypes(WarningBox& box)
{
    SSLVPNOptionsInfo& sslvpn = record->sslvpn;
    constexpr int most = static_cast<int>(std::size(typeRows));
    if (authTypeCount == 0)
        return box.refuse("SSL_Selectless_Type");
    if (ui.comboBox_defaultType->currentText().isEmpty())
        return box.refuse("SSL_SelDefault_Type");
    if (authTypeCount >= 1 && authTypeCount <= most) {
        sslvpn.ulAuthType = 0;
        QStringList names;
        for (const MaskRow& row : typeRows) {
            if ((ui.*row.box)->isChecked()) {
                sslvpn.ulAuthType |= bitOf(row);
                names.append(nameOf(row));
            }
        }
        sslvpn.authType = names.join(QLatin1Char(';'));
    }
    sslvpn.authDefaultType = ui.comboBox_defaultType->currentText();
    // Contract: a count beyond the types ends OK without a message.
    return authTypeCount <= most;
}

bool CustomAdvProperty::storeAuthModes(WarningBox& box)
{
    SSLVPNOptionsInfo& sslvpn = record->sslvpn;
    if (authModeCount == 0)
        return box.refuse("SSL_Selectless_Mode");
    const QString defaultMode = ui.comboBox_defaultMode->currentText();
    if (defaultMode.isEmpty())
        return box.refuse("SSL_SelDefault_Mode");
    if (sslvpn.authDefaultType == nameOf(typeRows[3]) && defaultMode == wordText(modeRows[2].word))
        return box.refuse("SSL_SelRADIUSCert_DENY");
    if (authModeCount < 1 || authModeCount > static_cast<int>(std::size(modeRows)))
        return box.refuse("SSL_Selectless_Mode");
    sslvpn.authMode = 0;
    for (const MaskRow& row : modeRows) {
        if (defaultMode == wordText(row.word))
            sslvpn.authDefaultMode = words::number(row.asDefault);
        if ((ui.*row.box)->isChecked())
            sslvpn.authMode |= bitOf(row);
    }
    return true;
}
