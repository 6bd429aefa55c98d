#pragma once

#include "ui_QVPNAdvProperty.h"

#include <QDialog>

struct CustomInfo;

/// The settings behind the advanced button of the L2TP IPsec tab: an L2TP, an IPsec, an IKE and a route page.
class QVPNAdvProperty : public QDialog
{
    Q_OBJECT

public:
    /// @param parent  must be a CustomInfoHolder: its record is edited. With any other parent, or none, the pages stay
    ///                empty and nothing is stored.
    explicit QVPNAdvProperty(QWidget* parent);

    /// Shows texts and record. The opener calls it once, before exec().
    void setInital();

public slots:
    void onOk();

    void OnTunnelAuthChk();

    void OnIpsecProtoChg(int index);
    void OnUsePFSChk();
    void OnUseNATChk();

    void OnNegModeChg(int index);
    void OnIDTypeChg(int index);
    void OnKeepAliveOnChk();
    void OnKeepAliveTimeoutChk();

    void OnAddRoute();
    void OnDeleteRoute();

private:
    void connectControls();
    void setWindowText();
    /// The record of the parent, or null.
    CustomInfo* record() const;

    // Each page has its texts, its load and its store. The load and the store do nothing without a record.
    void setL2tpText();
    void setL2tpInit();
    void saveL2tpCfg();
    void enableTunnelPwd(bool enabled);

    void setIPsecText();
    void setIPsecInit();
    void saveIpsecCfg();
    void forceEspInTunnel();
    void enablePfs(bool enabled);

    void setIkeText();
    void setIkeInit();
    void saveIkeCfg();
    void enableNames(bool enabled);

    void setRouteText();
    void setRouteInit();
    void saveRouteInfo();
    void appendRoute(const QString& ip, const QString& mask);
    bool routesAreFull() const;

    Ui_QVPNAdvProperty ui;
};
