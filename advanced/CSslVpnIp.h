#pragma once

#include "xml/CustomInfo.h"

#include <QDialog>

#include "ui_CSslVpnIp.h"

/// Asks for one SSL VPN gateway. The list for the duplicate test belongs to the parent, when that is a
/// GatewayListHolder; other parents have no list and thus no duplicates.
class CSslVpnIp : public QDialog
{
    Q_OBJECT

public:
    /// Values of `dialogMode` for the constructor.
    enum Mode
    {
        DefaultFree = 0,   // the gateway may become the default
        DefaultTicked = 1, // the gateway is the default
        DefaultTaken = 2   // another gateway is the default: the box is disabled
    };

    /// @param info  the gateway to start with; it is copied and not written
    /// @param mode  see Mode
    CSslVpnIp(SSLVPNRemoteInfo& info, int mode, QWidget* parent);

    /// The narrow rule of isDottedAddress.
    static bool IsIPFormat(const QString& address);
    /// False for four addresses that no gateway has: "0.0.0.0", "127.0.0.1", "127.0.0.0", "169.254.0.0".
    static bool CheckIpAddr(QString& address);

    SSLVPNRemoteInfo gateway; // at first a copy of the gateway to start with; later the result
    int dialogMode;           // at first see Mode; later the result: whether the gateway is to be the default, 0 or 1

public slots:
    void OnBnClickedOk();
    void vpnSrvClicked(QAbstractButton* button);

private:
    void setWindowText();
    void showGateway();

    Ui_CSslVpnIp ui;
};
