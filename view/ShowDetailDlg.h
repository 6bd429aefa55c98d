#pragma once

#include "ui_ShowDetailDlg.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoHolder.h"

#include <QDialog>

class CLanguageParser;

/// Shows a stored customisation. Nothing can be changed: fields are read-only, and the check boxes stay enabled for
/// the sake of their texts while every click is undone.
class ShowDetailDlg : public QDialog, public CustomInfoHolder
{
    Q_OBJECT
    Q_INTERFACES(CustomInfoHolder)

public:
    explicit ShowDetailDlg(QWidget* parent);
    ~ShowDetailDlg() override;

    /// Copies the record and fills everything from the copy; the tabs of components that the client lacks go. Called
    /// once, before exec().
    void onInitDialog(CustomInfo& info);
    void initL2tpIpsecPage();
    void initSslVpnPage(CLanguageParser& parser);

    /// The dialog's own copy.
    CustomInfo* customInfo() override { return &m_customInfo; }

protected:
    /// Return presses the button that has the focus and does nothing elsewhere, as in the VPN view.
    void keyPressEvent(QKeyEvent* event) override;

public slots:
    // 802.1X tab
    void onClick1xSaveUser() { undoClick(ui.checkBox_1xSaveUser); }
    void onClick1xUpVer() { undoClick(ui.checkBox_1xUpVer); }
    void onClick1xUpIp() { undoClick(ui.checkBox_1xUpIp); }
    void onClick1xUseBroadLogoff() { undoClick(ui.checkBox_1xUseBroadLogoff); }
    void onClick1xAutoConn() { undoClick(ui.checkBox_1xAutoConn); }
    void onClick1xRenewIPAfterCut() { undoClick(ui.checkBox_1xRenewIPAfterCut); }
    void onClick1xResumeConn() { undoClick(ui.checkBox_1xResumeConn); }
    void OnClick1xMacAuth() { undoClick(ui.checkBox_1xAdvancedAuth); }

    // Portal tab
    void onClickPortalSaveUser() { undoClick(ui.checkBox_PortalSaveUser); }
    void onClickPortalUpVer() { undoClick(ui.checkBox_PortalUpVer); }
    void onClickPortalAutoConn() { undoClick(ui.checkBox_PortalAutoConn); }
    void onClickPortalReConnAftNetErr() { undoClick(ui.checkBox_PortalReConnAftNetErr); }
    void OnClickPortalMacAuth() { undoClick(ui.checkBox_PortalAdvancedAuth); }

    // SSL VPN tab
    void onClickGatewayType() { undoClick(ui.checkBox_gatewayType); }
    void onClickEdcode() { undoClick(ui.checkBox_edcode); }

    // L2TP IPsec tab
    void OnUpVerChk() { undoClick(ui.checkBox_upVer_S); }
    void OnReconnChk() { undoClick(ui.checkBox_reConn_S); }
    void OnIpsecEnable() { undoClick(ui.checkBox_EnableIpSec_S); }
    void OnUseLNS() { tickIpsecServer(); }
    void OnUseOtherLNS() { tickIpsecServer(); }
    void OnAdvProperty();

    // ZOA, KEF and GUI tabs
    void OnUseZoa() { undoClick(ui.checkBox_UseZoa_S); }
    void OnDisable() { undoClick(ui.checkBox_disable); }
    void onClickHideCopyRight() { undoClick(ui.checkBox_HideCopyRight); }

private:
    CustomInfo m_customInfo;
    Ui_ShowDetailDlg ui;

    // Frame
    void setWindowText();
    void removeOrFillTabs();
    void initZoaPage();
    void initGuiPage();

    // Functions tab
    void initFunctionPage();

    // L2TP IPsec tab
    void tickIpsecServer();

    // Plain controls of all tabs
    void setRowTexts();
    void connectRows();
    void fillRows(const QWidget* page);
    void undoClick(QCheckBox* box);
};
