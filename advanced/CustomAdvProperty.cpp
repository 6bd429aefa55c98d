#include "advanced/CustomAdvProperty.h"

#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "app/widgets/WheelGuard.h"
#include "xml/Catalogue.h"

#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QShowEvent>
#include <QStyle>
#include <QTabBar>

namespace {

using Widgets = Ui_CustomAdvProperty;

struct TabRow
{
    QWidget* Widgets::*page;
    const char* section; // element in the document, whose title the tab shows
};

// clang-format off
const TabRow tabRows[] = {
    {&Widgets::tab_func,   "functions"},
    {&Widgets::tab_8021x,  "x1"},
    {&Widgets::tab_portal, "portal"},
    {&Widgets::tab_sslvpn, "sslvpn"},
    {&Widgets::tab_l2tp,   "vpn"},
    {&Widgets::tab_Zoa,    "ZOA"},
    {&Widgets::tab_Gui,    "guiOptions"},
    {&Widgets::tab_domain, "domain"},
};
// clang-format on

} // namespace

CustomAdvProperty::CustomAdvProperty(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    connect(ui.buttonBox_adv, &QDialogButtonBox::accepted, this, &CustomAdvProperty::onOk);
    connect(ui.buttonBox_adv, &QDialogButtonBox::rejected, this, &CustomAdvProperty::close);
    ui.checkBox_UseZoa->hide();
    setWindowText();
    connectControls();
    keepWheelFromLists(*this);
    ui.checkBox_aclEscape->setVisible(true);
    ui.checkBox_passwd->setVisible(true);
    ui.tabWidget->setCurrentIndex(0);
}

// The slots hang on clicked(), so that ticks set by the program do not run them. The one list is connected only after
// setWindowText() has filled it.
void CustomAdvProperty::connectControls()
{
    using Self = CustomAdvProperty;
    connect(ui.checkBox_Wancontrol, &QCheckBox::clicked, this, &Self::showWancontrolDlg);
    connect(ui.checkBox_AclOpt, &QCheckBox::clicked, this, &Self::onClickAclOpt);
    connect(ui.checkBox_DynPwdVry, &QCheckBox::clicked, this, &Self::showDynPwdDlg);
    connect(ui.checkBox_MsgAuth, &QCheckBox::clicked, this, &Self::showMsgAuthDlg);
    connect(ui.checkBox_aclEscape, &QCheckBox::clicked, this, &Self::showWanEscapeDlg);
    connect(ui.checkBox_passwd, &QCheckBox::clicked, this, &Self::showUninstallPwdDlg);

    connect(ui.pushButton_Add, &QPushButton::clicked, this, &Self::OnBnClickedAddIpaddr);
    connect(ui.pushButton_Delete, &QPushButton::clicked, this, &Self::OnBnClickedDelIpaddr);
    connect(ui.pushButton_Edit, &QPushButton::clicked, this, &Self::OnBnClickedEditIpaddr);
    connect(ui.pushButton_Add_2, &QPushButton::clicked, this, &Self::OnBnClickedAddDomain);
    connect(ui.pushButton_Delete_2, &QPushButton::clicked, this, &Self::OnBnClickedDelDomain);
    connect(ui.pushButton_Edit_2, &QPushButton::clicked, this, &Self::OnBnClickedEditDomain);

    connect(ui.checkBox_AD, &QCheckBox::clicked, this, &Self::OnBnClickedAdType);
    connect(ui.checkBox_Local, &QCheckBox::clicked, this, &Self::OnBnClickedLocalType);
    connect(ui.checkBox_LDAP, &QCheckBox::clicked, this, &Self::OnBnClickedLdapType);
    connect(ui.checkBox_RADIUS, &QCheckBox::clicked, this, &Self::OnBnClickedRadiusType);
    connect(ui.checkBox_Password, &QCheckBox::clicked, this, &Self::OnBnClickedCodeauthChk);
    connect(ui.checkBox_Cert, &QCheckBox::clicked, this, &Self::OnBnClickedCertauthChk);
    connect(ui.checkBox_PwdCert, &QCheckBox::clicked, this, &Self::OnBnClickedCodecertChk);

    connect(ui.checkBox_1xAdvancedAuth, &QCheckBox::clicked, this, &Self::OnBnClicked1xAuthChk);
    connect(ui.checkBox_PortalAdvancedAuth, &QCheckBox::clicked, this, &Self::OnBnClickedPortalAuthChk);

    connect(ui.pushButton_deskIconL_locate, &QPushButton::clicked, this, &Self::OnLocateDeskIconL);
    connect(ui.pushButton_deskIconM_locate, &QPushButton::clicked, this, &Self::OnLocateDeskIconM);
    connect(ui.pushButton_mainIcon_locate, &QPushButton::clicked, this, &Self::OnLocateMainIcon);

    connect(ui.pushButton_Adv, &QPushButton::clicked, this, &Self::OnAdvProperty);
    connect(ui.radioButton_useLNS, &QRadioButton::clicked, this, &Self::OnUseLNS);
    connect(ui.radioButton_useOtherLNS, &QRadioButton::clicked, this, &Self::OnUseOtherLNS);
    connect(ui.comboBox_authMethod, qOverload<int>(&QComboBox::currentIndexChanged), this, &Self::onAuthModeSel);
    connect(ui.checkBox_EnableIpSec, &QCheckBox::clicked, this, &Self::OnIpsecEnable);
    connect(ui.checkBox_UseZoa, &QCheckBox::clicked, this, &Self::OnUseZoa);
}

void CustomAdvProperty::setWindowText()
{
    setWindowTitle(langText("adv_title"));
    ui.buttonBox_adv->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox_adv->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
    for (const TabRow& row : tabRows)
        ui.tabWidget->setTabText(ui.tabWidget->indexOf(ui.*row.page),
                                 langText(catalogue::section(row.section).titleKey));
    setFunctionTexts();
    set8021xTexts();
    setPortalTexts();
    setSslVpnTexts();
    setL2tpTexts();
    setZoaTexts();
    setGuiTexts();
    setDomainTexts();
}

void CustomAdvProperty::initalDialog(CustomInfo* info)
{
    ui.tabWidget->setCurrentIndex(0);
    record = info;
    if (!record)
        return;
    defaultGatewayIndex = static_cast<qint32>(record->sslvpn.defaultAddress);

    if (hasAccess(procom::x1))
        loadDomains();
    else
        removeTab(ui.tab_domain);
    if (hasZoa())
        loadZoa();
    else
        removeTab(ui.tab_Zoa);
    if (hasAccess(procom::l2tpIpsec))
        initL2tpIpsecPage(record);
    else
        removeTab(ui.tab_l2tp);
    if (hasAccess(procom::sslVpn))
        initSslVpnPage(*languageTable());
    else
        removeTab(ui.tab_sslvpn);
    if (hasAccess(procom::portal))
        loadPortal();
    else
        removeTab(ui.tab_portal);
    if (hasAccess(procom::x1))
        load8021x();
    else
        removeTab(ui.tab_8021x);
    loadFunctions();
    loadGui();
}

// Each step stores as it goes: after a refusal everything before the failed check stays in the record. The box has no
// parent, and no title before the SSL VPN step.
// Contract: a refused field on another tab gets the focus while the tab on view stays.
void CustomAdvProperty::onOk()
{
    WarningBox box(nullptr);
    if (!record)
        return;
    if (hasZoa() && !storeZoa(box))
        return;
    storeFunctions();
    if (hasAccess(procom::x1)) {
        store8021x();
        storeDomains();
    }
    if (hasAccess(procom::portal))
        storePortal();
    if (hasAccess(procom::sslVpn) && !storeSslVpn(box))
        return;
    storeGui();
    saveL2tpIpsecCfg();
    // Contract: the dialog closes whatever the L2TP checks report; they show their own messages.
    accept();
}

CustomInfo* CustomAdvProperty::customInfo()
{
    return record;
}

const QVector<SSLVPNRemoteInfo>& CustomAdvProperty::gateways() const
{
    return gatewayList;
}

bool CustomAdvProperty::hasAccess(quint64 component) const
{
    return (record->common.procomVal & component) != 0;
}

bool CustomAdvProperty::hasZoa() const
{
    return hasAccess(procom::zoaDirect) || (record->common.funcomVal & funcom::zoa) != 0;
}

// The page keeps its widgets and its place among the children of the dialog.
void CustomAdvProperty::removeTab(QWidget* page)
{
    ui.tabWidget->removeTab(ui.tabWidget->indexOf(page));
}

// The width, in pixels, at which neither the row of tabs nor a page scrolls sideways.
int CustomAdvProperty::wholeWidth() const
{
    const QMargins margins = layout()->contentsMargins();
    const int tabs = ui.tabWidget->tabBar()->sizeHint().width() + margins.left() + margins.right() +
                     style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
    int contents = 0;
    for (int index = 0; index < ui.tabWidget->count(); ++index) {
        QWidget* const page = ui.tabWidget->widget(index)->findChild<QScrollArea*>()->widget();
        // The layouts of a page that was never on view still hold the widths from before its texts.
        for (QLayout* inner : page->findChildren<QLayout*>())
            inner->invalidate();
        contents = qMax(contents, page->minimumSizeHint().width());
    }
    const int around = width() - ui.tabWidget->currentWidget()->width();
    return qMax(tabs, contents + around + style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this));
}

// The form opens at its own height wherever that and a title bar fit. On a lower screen the tabs scroll, so that the
// buttons stay on it, and there is room for what else a window system draws around a window.
void CustomAdvProperty::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        const int frame = style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, this);
        const QSize available = screen()->availableSize();
        const bool fits = height() + frame <= available.height();
        const QSize room = available - QSize(frame, fits ? frame : 2 * frame);
        resize(size().expandedTo(QSize(wholeWidth(), 0)).boundedTo(room));
    }
    QDialog::showEvent(event);
}
