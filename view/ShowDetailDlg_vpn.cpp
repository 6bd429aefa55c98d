#include "app/language/CLanguageParser.h"
#include "app/language/FieldTexts.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/Tables.h"
#include "view/QShowVpnAdv.h"
#include "view/ShowDetailDlg.h"

void ShowDetailDlg::initSslVpnPage(CLanguageParser& parser)
{
    fillRows(ui.tab_Sslvpn);

    QTreeWidget* tree = ui.treeWidget_SSLIP;
    tree->clear();
    tree->setTextElideMode(Qt::ElideMiddle); // the mark of the default stands behind the name
    setColumns(tree,
               {parser.GetKey("SCE_DevOrder"), labelText(field<&SSLVPNRemoteInfo::iPDes>),
                labelText(field<&SSLVPNRemoteInfo::ip>), labelText(field<&SSLVPNRemoteInfo::port>)},
               {50, 100, 140, 60});

    quint64 number = 0;
    for (const SSLVPNRemoteInfo& gateway : m_customInfo.sslvpn.remote) {
        ++number;
        const bool isDefault = number == m_customInfo.sslvpn.defaultAddress;
        const QString name = isDefault ? gateway.iPDes + parser.GetKey("SSL_DEFAULTNAME") : gateway.iPDes;
        addRow(tree, {QString::number(number), name, gateway.ip, gateway.port});
    }
}

void ShowDetailDlg::initL2tpIpsecPage()
{
    const IPSECVPNBASECFG& config = m_customInfo.vpn.basecfg;
    fillRows(ui.tab_l2tp);

    const bool usesIpsec = config.useIPSEC != 0;
    const bool usesKey =
        usesIpsec && m_customInfo.vpn.ikecfg.IKEAuthMethod != stored(words::authMethods, words::Certificate);
    ui.radioButton_useLNS_S->setEnabled(usesIpsec);
    ui.radioButton_useOtherLNS_S->setEnabled(usesIpsec);
    ui.label_AuthMethod_S->setEnabled(usesIpsec);
    ui.lineEdit_authMethod_S->setEnabled(usesIpsec);
    ui.label_Authenticator_S->setEnabled(usesKey);
    ui.lineEdit_preshareKey_S->setEnabled(usesKey);
    if (usesIpsec)
        formrows::showText(ui.lineEdit_preshareKey_S, config.preSharedKey);

    const bool usesOtherServer = config.LNSAsIPSECServer == 0;
    tickIpsecServer();
    ui.label_IPSECServerIP_S->setEnabled(usesOtherServer);
    ui.lineEdit_IPSECServerIP_S->setEnabled(usesOtherServer);
    if (usesOtherServer)
        formrows::showText(ui.lineEdit_IPSECServerIP_S, config.otherIPSECServer);
}

// Of two exclusive buttons the ticked one cannot be unticked, so the one that the record names is ticked.
void ShowDetailDlg::tickIpsecServer()
{
    if (m_customInfo.vpn.basecfg.LNSAsIPSECServer != 0)
        ui.radioButton_useLNS_S->setChecked(true);
    else
        ui.radioButton_useOtherLNS_S->setChecked(true);
}

void ShowDetailDlg::OnAdvProperty()
{
    QShowVpnAdv dialog(this);
    dialog.setInital();
    dialog.exec();
}
