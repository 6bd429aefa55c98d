#include "view/ShowDetailDlg.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/AccessibleFaces.h"
#include "app/widgets/FormRows.h"
#include "app/widgets/ReturnKey.h"
#include "xml/Catalogue.h"

#include <QPixmap>

namespace {

constexpr int s_iconHeight = 32; // pixels
constexpr int s_iconWidth = 40;

struct TabRow
{
    QWidget* Ui_ShowDetailDlg::*page;
    const char* section; // element in the document, whose title the tab shows
};

const TabRow tabRows[] = {
    {&Ui_ShowDetailDlg::tab_func, "functions"}, {&Ui_ShowDetailDlg::tab_8021x, "x1"},
    {&Ui_ShowDetailDlg::tab_portal, "portal"},  {&Ui_ShowDetailDlg::tab_Sslvpn, "sslvpn"},
    {&Ui_ShowDetailDlg::tab_l2tp, "vpn"},       {&Ui_ShowDetailDlg::tab_Zoa, "ZOA"},
    {&Ui_ShowDetailDlg::tab_kef, "kef"},        {&Ui_ShowDetailDlg::tab_gui, "guiOptions"},
};

void fillAuthTypes(QComboBox* combo, const FieldRef& field)
{
    formrows::addWords(combo, field);
    combo->setAccessibleName(langText(field.label()));
}

/// A picture that cannot be loaded leaves its label empty.
void showPicture(QLabel* label, const QString& path)
{
    const QPixmap picture(path);
    if (picture.isNull())
        label->clear();
    else
        label->setPixmap(picture.scaled(s_iconWidth, s_iconHeight, Qt::KeepAspectRatio, Qt::SmoothTransformation));
}

} // namespace

ShowDetailDlg::ShowDetailDlg(QWidget* parent) : QDialog(parent)
{
    tellReadOnly(*this);
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowText();
    connect(ui.toolButton, &QToolButton::clicked, this, &ShowDetailDlg::close);
    connectRows();
    connect(ui.radioButton_useLNS_S, &QRadioButton::clicked, this, &ShowDetailDlg::OnUseLNS);
    connect(ui.radioButton_useOtherLNS_S, &QRadioButton::clicked, this, &ShowDetailDlg::OnUseOtherLNS);
    connect(ui.pushButton_Adv_S, &QPushButton::clicked, this, &ShowDetailDlg::OnAdvProperty);
}

ShowDetailDlg::~ShowDetailDlg() = default;

void ShowDetailDlg::keyPressEvent(QKeyEvent* event)
{
    if (!takesReturn(*this, *event))
        QDialog::keyPressEvent(event);
}

void ShowDetailDlg::setWindowText()
{
    setWindowTitle(langText("detail_title"));
    for (const TabRow& row : tabRows)
        ui.tabWidget->setTabText(ui.tabWidget->indexOf(ui.*row.page),
                                 langText(catalogue::section(row.section).titleKey));
    ui.toolButton->setText(langText("close_button"));
    setRowTexts();
    fillAuthTypes(ui.comboBox_1xAdvancedAuth, field<&X1OptionsInfo::advancedAuthType>);
    fillAuthTypes(ui.comboBox_PortalAdvancedAuth, field<&PortalOptionsInfo::advancedAuthType>);
    ui.radioButton_useLNS_S->setText(wordText(words::ipsecServers.at(0)));
    ui.radioButton_useOtherLNS_S->setText(wordText(words::ipsecServers.at(1)));
    ui.pushButton_Adv_S->setText(langText("VUI_BASEHeigth"));
    ui.groupBox_Icon->setTitle(langText("CUS_CusIconComBox"));
    ui.groupBox_Ttitle->setTitle(langText("CUS_CusTitleComBox"));
    ui.listWidget_func->setAccessibleName(langText("ShowBaseFunInfoHint"));
    ui.label_deskIcon_Linux->setAccessibleName(langText("Cus_ShowDeskIconDesL"));
    ui.label_deskIcon_MacOs->setAccessibleName(langText("Cus_ShowDeskIconDesM"));
    ui.label_MainIcon->setAccessibleName(langText("Cus_ShowMainIconDes"));
    ui.treeWidget_SSLIP->setAccessibleName(langText("SslVpn_title"));
}

void ShowDetailDlg::onInitDialog(CustomInfo& info)
{
    setWindowTitle(langText("detail_title") + QLatin1String(" (") + info.common.cusTimeString + QLatin1Char(')'));
    m_customInfo = info;
    initFunctionPage();
    removeOrFillTabs();
    initGuiPage();
}

// Positions count the tabs that stand at that moment, so the order of the steps is part of the rule.
void ShowDetailDlg::removeOrFillTabs()
{
    const auto hasAccess = [this](quint64 component) { return (m_customInfo.common.procomVal & component) != 0; };
    const auto hasFunction = [this](quint64 component) { return (m_customInfo.common.funcomVal & component) != 0; };

    if (hasFunction(funcom::kef))
        fillRows(ui.tab_kef);
    else
        ui.tabWidget->removeTab(6);

    if (hasAccess(procom::zoaDirect) || hasFunction(funcom::zoa))
        initZoaPage();
    else
        ui.tabWidget->removeTab(5);

    // Contract: without ZOA direct the L2TP tab goes even when L2TP was chosen; when it was not chosen, the tab that
    // moved up to position 4 goes as well.
    if (hasAccess(procom::zoaDirect))
        initZoaPage();
    else
        ui.tabWidget->removeTab(4);
    if (hasAccess(procom::l2tpIpsec))
        initL2tpIpsecPage();
    else
        ui.tabWidget->removeTab(4);

    if (hasAccess(procom::sslVpn))
        initSslVpnPage(*languageTable());
    else
        ui.tabWidget->removeTab(3);

    if (hasAccess(procom::portal)) {
        fillRows(ui.tab_portal);
        ui.comboBox_PortalAdvancedAuth->setCurrentIndex(static_cast<int>(m_customInfo.portal.advancedAuthType));
    } else {
        ui.tabWidget->removeTab(2);
    }

    if (hasAccess(procom::x1)) {
        fillRows(ui.tab_8021x);
        ui.comboBox_1xAdvancedAuth->setCurrentIndex(static_cast<int>(m_customInfo.x1.advancedAuthType));
    } else {
        ui.tabWidget->removeTab(1);
    }
}

void ShowDetailDlg::initZoaPage()
{
    const bool isUsed = m_customInfo.zoa.useZOA != 0;
    if (isUsed)
        fillRows(ui.tab_Zoa);
    else
        ui.checkBox_UseZoa_S->setChecked(false);
    for (QLineEdit* field :
         {ui.lineEdit_ZOAIp_S, ui.lineEdit_ZOAport_S, ui.lineEdit_standby_ZOAIp_S, ui.lineEdit_standby_ZOAport_S})
        field->setEnabled(isUsed);
}

void ShowDetailDlg::initGuiPage()
{
    showPicture(ui.label_deskIcon_Linux, m_customInfo.gui.linuxDeskIconPath);
    showPicture(ui.label_deskIcon_MacOs, m_customInfo.gui.macosDeskIconPath);
    showPicture(ui.label_MainIcon, m_customInfo.gui.mainIconPath);
    // Contract: the macOS icon is never visible.
    ui.label_deckIcon_MP->hide();
    ui.label_deskIcon_MacOs->hide();
    fillRows(ui.tab_gui);
}
