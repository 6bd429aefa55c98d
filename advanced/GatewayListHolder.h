#pragma once

#include <QVector>
#include <QtPlugin>

struct SSLVPNRemoteInfo;

/// A dialog that edits a list of SSL VPN gateways and shows it to its child windows, which ask
/// qobject_cast<GatewayListHolder*>(parent()) for it.
class GatewayListHolder
{
public:
    virtual ~GatewayListHolder() = default;

    /// The gateways as they stand in the dialog, not yet in the record.
    virtual const QVector<SSLVPNRemoteInfo>& gateways() const = 0;
};

#define GatewayListHolder_iid "orvex.GatewayListHolder"
Q_DECLARE_INTERFACE(GatewayListHolder, GatewayListHolder_iid)
