#include "view/AboutInfoDlg.h"

#include "app/language/LangText.h"
#include "app/language/LanguageChoice.h"
#include "common/Version.h"

#include <QKeyEvent>
#include <QPixmap>

AboutInfoDlg::AboutInfoDlg(QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    setWindowText();
    ui.label_detailVer->setText(QString::fromLocal8Bit(utl_OrvexVerDisplay()));
    showBrand();
    connect(ui.toolButton, &QToolButton::clicked, this, &AboutInfoDlg::close);
}

AboutInfoDlg::~AboutInfoDlg() = default;

void AboutInfoDlg::setWindowText()
{
    setWindowTitle(langText("about_title"));
    ui.groupBox_info->setTitle(langText("product_info"));
    ui.label->setPixmap(QPixmap(QStringLiteral(":/OrvexManager/Resources/Orvex.ico")));
    ui.label_ver->setText(langText("product_ver"));
    ui.groupBox_right->setTitle(langText("product_right"));
    // Contract: this first text of the rights box is always replaced, see showBrand().
    ui.textEdit_Right->setPlainText(langText("product_detailright"));
    ui.textEdit_Right->document()->setDocumentMargin(0); // in line with the logo
    ui.textEdit_Right->setAccessibleName(langText("product_right"));
    ui.toolButton->setText(langText("ok_button"));
}

void AboutInfoDlg::showBrand()
{
    const QString sign = QCoreApplication::translate("AboutInfoDlg", "\xC2\xA9"); // the copyright sign in UTF-8
    if (g_ucAreaCode == 1) {
        ui.label_logo->setPixmap(QPixmap(QStringLiteral(":/OrvexManager/Resources/wylogo_32.png")));
        ui.label_name->setText(langText("AppNameStatic"));
        ui.textEdit_Right->setPlainText(sign + langText("WYCompanyStatic"));
    } else {
        ui.label_logo->setPixmap(QPixmap(QStringLiteral(":/OrvexManager/Resources/tqmlogo.png")));
        ui.label_name->setText(langText("product_name"));
        ui.textEdit_Right->setPlainText(langText("CopyRight") + sign + langText("CompanyStatic"));
    }
}

void AboutInfoDlg::keyPressEvent(QKeyEvent* event)
{
    if (event->modifiers() != Qt::ControlModifier || event->key() != Qt::Key_I)
        return;
    ui.label_ver->setText(langText("product_Inver"));
    ui.label_detailVer->setText(QString::fromLocal8Bit(utl_OrvexInterVerDisplay()));
}
