#include "vpn/QVPNAdvProperty.h"

#include "app/language/LangText.h"
#include "app/widgets/WheelGuard.h"
#include "xml/CustomInfoHolder.h"

#include <QPushButton>

QVPNAdvProperty::QVPNAdvProperty(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    keepWheelFromLists(*this);
    connectControls();
}

// The slots hang on the controls before the pages are filled: the first item of a combo box fires its slot with 0, and
// the load relies on it. The check boxes are heard on clicked, so that setting one from the record fires nothing.
void QVPNAdvProperty::connectControls()
{
    using Dialog = QVPNAdvProperty;
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &Dialog::onOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &Dialog::reject);

    connect(ui.checkBox_TunnelAuthOn, &QCheckBox::clicked, this, &Dialog::OnTunnelAuthChk);
    connect(ui.checkBox_UsePFS, &QCheckBox::clicked, this, &Dialog::OnUsePFSChk);
    connect(ui.checkBox_UseNAT, &QCheckBox::clicked, this, &Dialog::OnUseNATChk);
    connect(ui.checkBox_KeepAliveOn, &QCheckBox::clicked, this, &Dialog::OnKeepAliveOnChk);
    connect(ui.checkBox_KeepAliveTimeout, &QCheckBox::clicked, this, &Dialog::OnKeepAliveTimeoutChk);

    const auto indexChanged = qOverload<int>(&QComboBox::currentIndexChanged);
    connect(ui.comboBox_IpsecProto, indexChanged, this, &Dialog::OnIpsecProtoChg);
    connect(ui.comboBox_IkeNeg, indexChanged, this, &Dialog::OnNegModeChg);
    connect(ui.comboBox_IDType, indexChanged, this, &Dialog::OnIDTypeChg);

    connect(ui.pushButton_Add, &QPushButton::clicked, this, &Dialog::OnAddRoute);
    connect(ui.pushButton_Delete, &QPushButton::clicked, this, &Dialog::OnDeleteRoute);
}

void QVPNAdvProperty::setInital()
{
    ui.tabWidget->setCurrentIndex(0);
    setWindowText();
    setL2tpInit();
    setIPsecInit();
    setIkeInit();
    setRouteInit();
}

void QVPNAdvProperty::setWindowText()
{
    setWindowTitle(langText("VUI_AdvancedSettings"));
    const struct
    {
        QWidget* page;
        const char* key;
    } titles[] = {{ui.tab, "VUI_L2TPPAGETITLE"},
                  {ui.tab_2, "VUI_IPSECPAGETITLE"},
                  {ui.tab_3, "VUI_IKEPAGETITLE"},
                  {ui.tab_4, "VUI_RouteSetting"}};
    for (const auto& title : titles)
        ui.tabWidget->setTabText(ui.tabWidget->indexOf(title.page), langText(title.key));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
    setL2tpText();
    setIPsecText();
    setIkeText();
    setRouteText();
}

// Contract: the dialog closes whatever the pages report. A refused page keeps what it stored before the refused field,
// and the pages behind it are stored all the same.
void QVPNAdvProperty::onOk()
{
    saveL2tpCfg();
    saveIpsecCfg();
    saveIkeCfg();
    saveRouteInfo();
    accept();
}

CustomInfo* QVPNAdvProperty::record() const
{
    CustomInfoHolder* holder = qobject_cast<CustomInfoHolder*>(parent());
    return holder ? holder->customInfo() : nullptr;
}
