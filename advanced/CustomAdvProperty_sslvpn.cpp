#include "advanced/CustomAdvProperty.h"
#include "advanced/CustomAdvPropertyRows.h"
#include "app/language/CLanguageParser.h"
#include "app/widgets/OptionLists.h"
#include "app/widgets/WarningBox.h"

#include <iterator>

using namespace advanced;

namespace {

constexpr quint64 s_defaultRetries = 3;
constexpr quint64 s_shortestCountdown = 5; // seconds
constexpr quint64 s_longestCountdown = 180;

struct TypeRow
{
    QCheckBox* Widgets::*box;
    const char* key;
    quint64 bit;
    const char* name; // in the list of defaults and in the record
};

struct ModeRow
{
    QCheckBox* Widgets::*box;
    const char* key; // also the text in the list of defaults
    quint64 bit;
    quint64 defaultMode; // in the record
};

struct NumberRow
{
    QLineEdit* Widgets::*edit;
    QLabel* Widgets::*label;
    const char* key;
    quint64 SSLVPNOptionsInfo::*number;
    int longest;
};

// clang-format off
const TypeRow typeRows[] = {
    {&Widgets::checkBox_Local,  "SSL_LocalType",  1, "Local"},
    {&Widgets::checkBox_AD,     "SSL_ADAuthType", 2, "AD"},
    {&Widgets::checkBox_LDAP,   "SSL_LDAPType",   4, "LDAP"},
    {&Widgets::checkBox_RADIUS, "SSL_RadiusType", 8, "RADIUS"},
};
const ModeRow modeRows[] = {
    {&Widgets::checkBox_Password, options::sslModeKeys[0], 1, 0},
    {&Widgets::checkBox_PwdCert,  options::sslModeKeys[1], 2, 1},
    {&Widgets::checkBox_Cert,     options::sslModeKeys[2], 4, 2},
};
const NumberRow numberRows[] = {
    {&Widgets::lineEdit_reconnInterval, &Widgets::label_reconnInterval, "SSL_RECONN_GRAP",
     &SSLVPNOptionsInfo::retryInterval, 5},
    {&Widgets::lineEdit_reconnTimes, &Widgets::label_reconnTimes, "SSL_RECONN_TIME",
     &SSLVPNOptionsInfo::retries, 5},
    {&Widgets::lineEdit_getSysVryInterval, &Widgets::label_getSysVryInterval, "SSL_GetSmsVryCountDownValue",
     &SSLVPNOptionsInfo::getSmsVryCountdownValue, 3},
};
const FlagRow<SSLVPNOptionsInfo> flagRows[] = {
    {&Widgets::checkBox_gatewayType, "SSL_GatewayType", &SSLVPNOptionsInfo::gatewayAuth},
    {&Widgets::checkBox_edcode,      "SSL_EdCode",      &SSLVPNOptionsInfo::edcode},
};
const CaptionRow captions[] = {
    {&Widgets::label_AuthType,    "SSL_AUTH_TYPE"},
    {&Widgets::label_defaultType, "SSL_DEFAULTTYPE"},
    {&Widgets::label_AuthMode,    "SSL_AUTH_MODE"},
    {&Widgets::label_defaultMode, "SSL_DEFAULTMODE"},
    {&Widgets::label_TLSVersion,  "SSL_TLSVersion"},
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
    for (const TypeRow& row : typeRows)
        (ui.*row.box)->setText(langText(row.key));
    for (const ModeRow& row : modeRows)
        (ui.*row.box)->setText(langText(row.key));
    for (const NumberRow& row : numberRows) {
        (ui.*row.label)->setText(langText(row.key));
        (ui.*row.edit)->setMaxLength(row.longest);
    }
    setTexts(ui, flagRows);
    setTexts(ui, captions);
    setGatewayTexts();
}

void CustomAdvProperty::initSslVpnPage(CLanguageParser& language)
{
    const SSLVPNOptionsInfo& sslvpn = record->sslvpn;
    for (const NumberRow& row : numberRows)
        (ui.*row.edit)->setText(QString::number(sslvpn.*row.number));
    loadGateways(language.GetKey("SSL_DEFAULTNAME"));

    const QString defaultType = sslvpn.authDefaultType;
    for (const TypeRow& row : typeRows) {
        const bool isTicked = (sslvpn.ulAuthType & row.bit) != 0;
        (ui.*row.box)->setChecked(isTicked);
        authTypeCount += isTicked ? 1 : 0;
    }
    if (ui.checkBox_RADIUS->isChecked() && authTypeCount == 1)
        ui.checkBox_Cert->setEnabled(false);
    SetDefaultTypeList();
    selectText(ui.comboBox_defaultType, defaultType);

    // Contract: the certificate mode is ticked and counted even where RADIUS has just disabled its box.
    for (const ModeRow& row : modeRows) {
        const bool isTicked = (sslvpn.authMode & row.bit) != 0;
        (ui.*row.box)->setChecked(isTicked);
        authModeCount += isTicked ? 1 : 0;
    }
    SetDefaultModeList();
    for (const ModeRow& row : modeRows) {
        if (row.defaultMode == sslvpn.authDefaultMode)
            selectText(ui.comboBox_defaultMode, language.GetKey(row.key));
    }

    load(ui, flagRows, sslvpn);
    for (const char* version : options::tlsVersions)
        ui.comboBox_TLS_version_list->addItem(QLatin1String(version));
    ui.comboBox_TLS_version_list->setCurrentIndex(sslvpn.TLSVersion == 1 ? 1 : 0);
}

void CustomAdvProperty::SetDefaultTypeList()
{
    QStringList names;
    for (const TypeRow& row : typeRows) {
        if ((ui.*row.box)->isChecked())
            names.append(QLatin1String(row.name));
    }
    relist(ui.comboBox_defaultType, names);
}

void CustomAdvProperty::SetDefaultModeList()
{
    QStringList texts;
    for (const ModeRow& row : modeRows) {
        if ((ui.*row.box)->isChecked())
            texts.append(langText(row.key));
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
    onTypeClicked(ui.checkBox_Local, QStringLiteral("Local"));
}

void CustomAdvProperty::OnBnClickedAdType()
{
    onTypeClicked(ui.checkBox_AD, QStringLiteral("AD"));
}

void CustomAdvProperty::OnBnClickedLdapType()
{
    onTypeClicked(ui.checkBox_LDAP, QStringLiteral("LDAP"));
}

void CustomAdvProperty::OnBnClickedRadiusType()
{
    if (ui.checkBox_RADIUS->isChecked()) {
        ++authTypeCount;
        if (authTypeCount == 1)
            forbidCertificateMode();
    } else {
        if (ui.comboBox_defaultType->currentText() == QLatin1String("RADIUS"))
            ui.comboBox_defaultType->setCurrentIndex(-1);
        --authTypeCount;
        ui.checkBox_Cert->setEnabled(true);
    }
    SetDefaultTypeList();
}

void CustomAdvProperty::onModeClicked(const QCheckBox* box, const char* key)
{
    if (box->isChecked()) {
        ++authModeCount;
    } else {
        --authModeCount;
        if (ui.comboBox_defaultMode->currentText() == langText(key))
            ui.comboBox_defaultMode->setCurrentIndex(-1);
    }
    SetDefaultModeList();
}

void CustomAdvProperty::OnBnClickedCodeauthChk()
{
    onModeClicked(ui.checkBox_Password, "SSL_CodeAuth");
}

void CustomAdvProperty::OnBnClickedCodecertChk()
{
    onModeClicked(ui.checkBox_PwdCert, "SSL_CodeCertAuth");
}

void CustomAdvProperty::OnBnClickedCertauthChk()
{
    onModeClicked(ui.checkBox_Cert, "SSL_CertAuth");
}

bool CustomAdvProperty::storeSslVpn(WarningBox& box)
{
    SSLVPNOptionsInfo& sslvpn = record->sslvpn;
    box.setTitleKey("SCE_SceneTipsTitle");
    const quint64 retryInterval = numberIn(ui.lineEdit_reconnInterval);
    if (retryInterval == 0)
        return box.refuse("SSL_RECONNGRAP_ERROR");
    const quint64 countdown = numberIn(ui.lineEdit_getSysVryInterval);
    if (countdown < s_shortestCountdown || countdown > s_longestCountdown)
        return box.refuse("SSL_GetSmsVryCountDownValu_ERROR");
    sslvpn.getSmsVryCountdownValue = countdown;
    if (!storeAuthTypes(box) || !storeAuthModes(box))
        return false;
    store(ui, flagRows, sslvpn);
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
        for (const TypeRow& row : typeRows) {
            if ((ui.*row.box)->isChecked()) {
                sslvpn.ulAuthType |= row.bit;
                names.append(QLatin1String(row.name));
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
    if (sslvpn.authDefaultType == QLatin1String("RADIUS") && defaultMode == langText("SSL_CertAuth"))
        return box.refuse("SSL_SelRADIUSCert_DENY");
    if (authModeCount < 1 || authModeCount > static_cast<int>(std::size(modeRows)))
        return box.refuse("SSL_Selectless_Mode");
    sslvpn.authMode = 0;
    for (const ModeRow& row : modeRows) {
        if (defaultMode == langText(row.key))
            sslvpn.authDefaultMode = row.defaultMode;
        if ((ui.*row.box)->isChecked())
            sslvpn.authMode |= row.bit;
    }
    return true;
}
