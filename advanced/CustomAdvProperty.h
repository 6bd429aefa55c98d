#pragma once

#include "advanced/GatewayListHolder.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoHolder.h"

#include <QDialog>
#include <QVector>

#include "ui_CustomAdvProperty.h"

class CLanguageParser;
class WarningBox;

/// The dialog for every option of the client. It shows the tabs that the components of the record need. OK checks the
/// tabs one after the other and stores each in the record; small dialogs write into the record when they close, and
/// Cancel does not undo what they wrote.
class CustomAdvProperty : public QDialog, public CustomInfoHolder, public GatewayListHolder
{
    Q_OBJECT
    Q_INTERFACES(CustomInfoHolder GatewayListHolder)

public:
    explicit CustomAdvProperty(QWidget* parent = nullptr);

    /// Fills the dialog. To be called once, between construction and exec().
    ///
    /// @param info  not owned, must outlive the dialog
    void initalDialog(CustomInfo* info);

    /// Sets all texts from the language table and fills the lists that do not depend on the record.
    void setWindowText();

    CustomInfo* customInfo() override;
    const QVector<SSLVPNRemoteInfo>& gateways() const override;

    // SSL VPN tab
    void initSslVpnPage(CLanguageParser& language);
    void SetDefaultTypeList();
    void SetDefaultModeList();

    // L2TP IPsec tab
    void initL2tpIpsecPage(CustomInfo* info);
    /// Runs on every OK, also without the tab: the widgets of a removed tab stand empty. Shows its own messages.
    void saveL2tpIpsecCfg();

    QVector<SSLVPNRemoteInfo> gatewayList; // working copy, in the order of the rows
    qint32 defaultGatewayIndex = 0;        // row of the default gateway, counted from 1; 0 is none
    qint32 authModeCount = 0;              // ticked authentication modes
    qint32 authTypeCount = 0;              // ticked authentication types

private:
    Ui_CustomAdvProperty ui;

public:
    CustomInfo* record = nullptr; // not owned; null before initalDialog()
    SUIDomainInfo domainInfo;     // working copy, its list in the order of the rows

public slots:
    void onOk();

    // Functions tab
    void onClickAclOpt(bool checked);
    void showWancontrolDlg(bool checked);
    void showDynPwdDlg(bool checked);
    void showMsgAuthDlg(bool checked);
    void showWanEscapeDlg(bool checked);
    void showUninstallPwdDlg(bool checked);

    // 802.1X and portal tabs
    void OnBnClicked1xAuthChk();
    void OnBnClickedPortalAuthChk();

    // Domain tab
    void OnBnClickedAddDomain();
    void OnBnClickedEditDomain();
    void OnBnClickedDelDomain();

    // SSL VPN tab
    void OnBnClickedAddIpaddr();
    void OnBnClickedEditIpaddr();
    void OnBnClickedDelIpaddr();
    void OnBnClickedLocalType();
    void OnBnClickedAdType();
    void OnBnClickedLdapType();
    void OnBnClickedRadiusType();
    void OnBnClickedCodeauthChk();
    void OnBnClickedCodecertChk();
    void OnBnClickedCertauthChk();

    // L2TP IPsec tab
    void OnAdvProperty();
    void OnUseLNS();
    void OnUseOtherLNS();
    void onAuthModeSel(int index);
    void OnIpsecEnable();

    // ZOA and GUI tabs
    void OnUseZoa();
    void OnLocateMainIcon();
    void OnLocateDeskIconL();
    void OnLocateDeskIconM();

protected:
    void showEvent(QShowEvent* event) override;

private:
    void connectControls();
    bool hasAccess(quint64 component) const;
    bool hasZoa() const;
    void removeTab(QWidget* page);
    int wholeWidth() const;

    // Functions tab
    void setFunctionTexts();
    void loadFunctions();
    void storeFunctions();

    // 802.1X and portal tabs
    void set8021xTexts();
    void load8021x();
    void store8021x();
    void setPortalTexts();
    void loadPortal();
    void storePortal();

    // Domain tab
    void setDomainTexts();
    void loadDomains();
    void storeDomains();
    QString shownDomainName(int position) const;
    void applyDefaultOfEdit(int row, int position, bool isDefault);
    void rewriteDomainRows();

    // SSL VPN tab
    void setSslVpnTexts();
    void setGatewayTexts();
    void loadGateways(const QString& defaultSuffix);
    bool storeSslVpn(WarningBox& box);
    bool storeAuthTypes(WarningBox& box);
    bool storeAuthModes(WarningBox& box);
    void storeGateways(WarningBox& box);
    void onTypeClicked(const QCheckBox* box, const QString& name);
    void onModeClicked(const QCheckBox* box, const QString& mode);
    void forbidCertificateMode();
    int findGateway(const QString& shownName, const QString& suffix) const;

    // L2TP IPsec tab
    void setL2tpTexts();
    void enableKey(bool enable);
    void enableAuthMethod(bool enable);
    void enableServerChoice(bool enable);
    void enableOtherServer(bool enable);
    bool storeIpsec(WarningBox& box);

    // ZOA and GUI tabs
    void setZoaTexts();
    void loadZoa();
    bool storeZoa(WarningBox& box);
    void setGuiTexts();
    void loadGui();
    void storeGui();
    void locateIcon(QLineEdit* edit, const char* captionKey, const QString& filter);
};
