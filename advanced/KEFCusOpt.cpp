#include "advanced/KEFCusOpt.h"

#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/widgets/WarningBox.h"
#include "common/AddressRules.h"
#include "xml/RecordRows.h"

#include <QPushButton>

KEFCusOpt::KEFCusOpt(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    connect(ui.buttonBox, &QDialogButtonBox::accepted, this, &KEFCusOpt::onOk);
    connect(ui.buttonBox, &QDialogButtonBox::rejected, this, &KEFCusOpt::reject);
    setWindowText();
}

void KEFCusOpt::setWindowText()
{
    setWindowTitle(langText("KEF_SetupCustom"));
    ui.label_kefIp->setText(labelText(field<&KEFOptionsInfo::kefIP>));
    ui.label_kefPort->setText(labelText(field<&KEFOptionsInfo::kefPort>));
    ui.label_usbdefaultPolicy->setText(langText("KEF_USBMonitorPolicy"));
    ui.checkBox_disable->setText(labelText(field<&KEFOptionsInfo::customize>));
    ui.buttonBox->button(QDialogButtonBox::Ok)->setText(langText("ok_button"));
    ui.buttonBox->button(QDialogButtonBox::Cancel)->setText(langText("cancel_button"));
    ui.lineEdit_kefPort->setText(QStringLiteral("9029"));
    ui.lineEdit_kefIp->setFocus();
}

void KEFCusOpt::onOk()
{
    address = ui.lineEdit_kefIp->text();
    if (address.isEmpty() || address.compare(QLatin1String("127.0.0.1"), Qt::CaseInsensitive) == 0) {
        WarningBox("KEF_CreateKEFPacket", this).refuse("KEF_IpErr", ui.lineEdit_kefIp);
        return;
    }
    if (!isDottedAddress(address)) {
        WarningBox("KEF_CreateKEFPacket", this).refuse("KEF_IpErr2", ui.lineEdit_kefIp);
        return;
    }
    // Contract: the port is not checked. It may be empty and need not be a number.
    port = ui.lineEdit_kefPort->text();
    customize = ui.checkBox_disable->isChecked();
    accept();
}
