#include "vpn/IpInfo.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "common/AddressRules.h"
#include "xml/RecordRows.h"

#include <QPushButton>

IpInfo::IpInfo(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowTitle(langText("VUI_AddRoute"));
    ui.label_Ip->setText(labelText(field<&VPN_RouteInfo::ip>));
    ui.label_mask->setText(labelText(field<&VPN_RouteInfo::mask>));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &IpInfo::onOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &IpInfo::reject);
}

bool IpInfo::IsIPFormat(const QString& address) const
{
    return isDottedAddress(address);
}

void IpInfo::onOk()
{
    m_strIp = ui.lineEdit_Ip->text();
    m_strMask = ui.lineEdit_mask->text();

    WarningBox box("VUI_AddRoute");
    if (m_strIp.isEmpty()) {
        box.refuse("VUI_IpOrMaskBlank", ui.lineEdit_Ip);
        return;
    }
    if (!IsIPFormat(m_strIp)) {
        box.refuse("VUI_IpInvalid", ui.lineEdit_Ip);
        return;
    }
    if (m_strMask.isEmpty()) {
        box.refuse("VUI_IpOrMaskBlank", ui.lineEdit_mask);
        return;
    }
    // Contract: the rule reads the raw texts as decimal numbers. A dotted address reads as 0 and covers any mask, so
    // every mask that is not empty passes, whatever its form.
    const unsigned long address = m_strIp.toULong(nullptr, 10);
    const unsigned long mask = m_strMask.toULong(nullptr, 10);
    if ((address & mask) != address) {
        box.refuse("VUI_MaskError", ui.lineEdit_mask);
        return;
    }
    accept();
}
