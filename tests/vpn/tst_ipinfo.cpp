#include "app/language/LangText.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "vpn/IpInfo.h"
#include "vpn/VpnPlayer.h"

using namespace vpnplay;

namespace {

struct Refusal
{
    ShownBox box;
    QString focus;       // once the box is closed
    bool isOpen = false; // likewise
    QString ip;
    QString mask;
    QStringList complaints;
};

QPushButton* button(const IpInfo& dialog, QDialogButtonBox::StandardButton which)
{
    return child<QDialogButtonBox>(dialog, "buttonBox")->button(which);
}

/// Types both texts, presses Ok, answers the box and cancels the dialog, which must still be open.
Refusal refusalOf(const QString& ip, const QString& mask)
{
    Refusal refusal;
    IpInfo dialog(nullptr);
    ModalScript script;
    script.expect<IpInfo>([&](IpInfo& opened) {
        typeText(child<QLineEdit>(opened, "lineEdit_Ip"), ip);
        typeText(child<QLineEdit>(opened, "lineEdit_mask"), mask);
        QTest::mouseClick(button(opened, QDialogButtonBox::Ok), Qt::LeftButton);
        refusal.isOpen = opened.isVisible();
        refusal.focus = opened.focusWidget() ? opened.focusWidget()->objectName() : QString();
        QTest::mouseClick(button(opened, QDialogButtonBox::Cancel), Qt::LeftButton);
    });
    script.expect<QMessageBox>([&](QMessageBox& box) {
        refusal.box = shown(box, &dialog);
        QTest::mouseClick(box.button(QMessageBox::Ok), Qt::LeftButton);
    });
    dialog.exec();
    refusal.ip = dialog.m_strIp;
    refusal.mask = dialog.m_strMask;
    refusal.complaints = script.complaints();
    return refusal;
}

} // namespace

class TstIpInfo : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();
    void textsComeFromTheLanguageTable();
    void nothingIsClippedInEitherLanguage_data();
    void nothingIsClippedInEitherLanguage();
    void labelsAreBuddiesAndTabsRunDownwards();
    void formHasItsSize();
    void startsEmpty();
    void addressFormat_data();
    void addressFormat();
    void acceptedTextsAreHandedOverAsTyped_data();
    void acceptedTextsAreHandedOverAsTyped();
    void refusedTextsKeepTheDialogOpen_data();
    void refusedTextsKeepTheDialogOpen();
    void enterPressesOk();
    void cancelHandsOverNothing();
};

void TstIpInfo::cleanup()
{
    useLanguage(QStringLiteral("en"));
}

void TstIpInfo::textsComeFromTheLanguageTable()
{
    const IpInfo dialog(nullptr);
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Add route"));
    QCOMPARE(child<QLabel>(dialog, "label_Ip")->text(), QStringLiteral("Destination"));
    QCOMPARE(child<QLabel>(dialog, "label_mask")->text(), QStringLiteral("Subnet mask"));
    QCOMPARE(button(dialog, QDialogButtonBox::Ok)->text(), QStringLiteral("OK"));
    QCOMPARE(button(dialog, QDialogButtonBox::Cancel)->text(), QStringLiteral("Cancel"));
    QVERIFY(!(dialog.windowFlags() & Qt::WindowContextHelpButtonHint));
}

void TstIpInfo::nothingIsClippedInEitherLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Chinese") << QStringLiteral("zh");
    QTest::newRow("English") << QStringLiteral("en");
}

void TstIpInfo::nothingIsClippedInEitherLanguage()
{
    QFETCH(QString, language);
    useLanguage(language);
    IpInfo dialog(nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(child<QLabel>(dialog, "label_Ip")->text(), langText("VUI_IP"));
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        QVERIFY2(label->width() >= label->sizeHint().width(), qPrintable(label->objectName()));
    for (const QPushButton* push : dialog.findChildren<QPushButton*>())
        QVERIFY2(push->width() >= push->sizeHint().width(), qPrintable(push->text()));
    // Room for the longest address with its trailing full stop.
    QLineEdit* edit = child<QLineEdit>(dialog, "lineEdit_Ip");
    QVERIFY(edit->width() >= edit->fontMetrics().horizontalAdvance(QStringLiteral("255.255.255.255.")) + 12);
}

void TstIpInfo::labelsAreBuddiesAndTabsRunDownwards()
{
    IpInfo dialog(nullptr);
    QLineEdit* ip = child<QLineEdit>(dialog, "lineEdit_Ip");
    QLineEdit* mask = child<QLineEdit>(dialog, "lineEdit_mask");
    QCOMPARE(child<QLabel>(dialog, "label_Ip")->buddy(), static_cast<QWidget*>(ip));
    QCOMPARE(child<QLabel>(dialog, "label_mask")->buddy(), static_cast<QWidget*>(mask));
    dialog.show();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    QCOMPARE(dialog.focusWidget(), static_cast<QWidget*>(ip));
    const QList<QWidget*> order = {mask, button(dialog, QDialogButtonBox::Ok),
                                   button(dialog, QDialogButtonBox::Cancel)};
    for (QWidget* next : order) {
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QCOMPARE(dialog.focusWidget(), next);
    }
}

void TstIpInfo::formHasItsSize()
{
    QCOMPARE(IpInfo(nullptr).size(), QSize(260, 114));
}

void TstIpInfo::startsEmpty()
{
    const IpInfo dialog(nullptr);
    QCOMPARE(dialog.m_strIp, QString());
    QCOMPARE(dialog.m_strMask, QString());
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_Ip")->text(), QString());
    QCOMPARE(child<QLineEdit>(dialog, "lineEdit_mask")->text(), QString());
}

void TstIpInfo::addressFormat_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("isAddress");
    QTest::newRow("private") << QStringLiteral("192.168.0.1") << true;
    QTest::newRow("trailing full stop") << QStringLiteral("192.168.0.1.") << true;
    QTest::newRow("zeros") << QStringLiteral("0.0.0.0") << true;
    QTest::newRow("255") << QStringLiteral("255.255.255.255") << true;
    QTest::newRow("256") << QStringLiteral("256.0.0.1") << false;
    QTest::newRow("leading zero") << QStringLiteral("010.0.0.1") << false;
    QTest::newRow("three numbers") << QStringLiteral("1.2.3") << false;
    QTest::newRow("five numbers") << QStringLiteral("1.2.3.4.5") << false;
    QTest::newRow("two trailing full stops") << QStringLiteral("1.2.3.4..") << false;
    QTest::newRow("blank behind") << QStringLiteral("1.2.3.4 ") << false;
    QTest::newRow("name") << QStringLiteral("host") << false;
    QTest::newRow("empty") << QString() << false;
}

void TstIpInfo::addressFormat()
{
    QFETCH(QString, address);
    QFETCH(bool, isAddress);
    QCOMPARE(IpInfo(nullptr).IsIPFormat(address), isAddress);
}

void TstIpInfo::acceptedTextsAreHandedOverAsTyped_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("mask");
    QTest::newRow("plain") << QStringLiteral("10.1.0.0") << QStringLiteral("255.255.0.0");
    QTest::newRow("trailing full stop") << QStringLiteral("192.168.0.1.") << QStringLiteral("255.255.255.0");
    QTest::newRow("the mask is never looked at: letters") << QStringLiteral("1.2.3.4") << QStringLiteral("abc");
    QTest::newRow("the mask is never looked at: a blank") << QStringLiteral("1.2.3.4") << QStringLiteral(" ");
    QTest::newRow("the mask is never looked at: 0") << QStringLiteral("1.2.3.4") << QStringLiteral("0");
    QTest::newRow("the mask is never looked at: too narrow")
        << QStringLiteral("10.1.2.3") << QStringLiteral("255.0.0.0");
}

void TstIpInfo::acceptedTextsAreHandedOverAsTyped()
{
    QFETCH(QString, ip);
    QFETCH(QString, mask);
    IpInfo dialog(nullptr);
    ModalScript script;
    script.expect<IpInfo>([&](IpInfo& opened) {
        typeText(child<QLineEdit>(opened, "lineEdit_Ip"), ip);
        typeText(child<QLineEdit>(opened, "lineEdit_mask"), mask);
        QTest::mouseClick(button(opened, QDialogButtonBox::Ok), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.m_strIp, ip);
    QCOMPARE(dialog.m_strMask, mask);
}

void TstIpInfo::refusedTextsKeepTheDialogOpen_data()
{
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QString>("mask");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("focus");
    const QString ipEdit = QStringLiteral("lineEdit_Ip");
    const QString maskEdit = QStringLiteral("lineEdit_mask");
    QTest::newRow("both empty") << QString() << QString() << QByteArray("VUI_IpOrMaskBlank") << ipEdit;
    QTest::newRow("no address") << QString() << QStringLiteral("255.0.0.0") << QByteArray("VUI_IpOrMaskBlank")
                                << ipEdit;
    QTest::newRow("no mask") << QStringLiteral("10.0.0.1") << QString() << QByteArray("VUI_IpOrMaskBlank") << maskEdit;
    QTest::newRow("leading zero") << QStringLiteral("010.0.0.1") << QStringLiteral("255.0.0.0")
                                  << QByteArray("VUI_IpInvalid") << ipEdit;
    QTest::newRow("256") << QStringLiteral("256.0.0.1") << QStringLiteral("255.0.0.0") << QByteArray("VUI_IpInvalid")
                         << ipEdit;
    QTest::newRow("the form of the address comes before the empty mask")
        << QStringLiteral("1.2.3") << QString() << QByteArray("VUI_IpInvalid") << ipEdit;
}

void TstIpInfo::refusedTextsKeepTheDialogOpen()
{
    QFETCH(QString, ip);
    QFETCH(QString, mask);
    QFETCH(QByteArray, key);
    QFETCH(QString, focus);
    const Refusal refusal = refusalOf(ip, mask);
    QCOMPARE(refusal.complaints, QStringList());
    compareWarning(refusal.box, "VUI_AddRoute", key.constData());
    QVERIFY(refusal.isOpen);
    QCOMPARE(refusal.box.focus, QString());
    QCOMPARE(refusal.focus, focus);
    QCOMPARE(refusal.ip, ip);
    QCOMPARE(refusal.mask, mask);
}

void TstIpInfo::enterPressesOk()
{
    IpInfo dialog(nullptr);
    ModalScript script;
    script.expect<IpInfo>([](IpInfo& opened) {
        typeText(child<QLineEdit>(opened, "lineEdit_Ip"), QStringLiteral("1.2.3.4"));
        QLineEdit* mask = child<QLineEdit>(opened, "lineEdit_mask");
        typeText(mask, QStringLiteral("255.0.0.0"));
        QTest::keyClick(mask, Qt::Key_Return);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QCOMPARE(script.complaints(), QStringList());
}

void TstIpInfo::cancelHandsOverNothing()
{
    IpInfo dialog(nullptr);
    ModalScript script;
    script.expect<IpInfo>([](IpInfo& opened) {
        typeText(child<QLineEdit>(opened, "lineEdit_Ip"), QStringLiteral("1.2.3.4"));
        QTest::mouseClick(button(opened, QDialogButtonBox::Cancel), Qt::LeftButton);
    });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(dialog.m_strIp, QString());
}

TEST_ENTRY(ipinfo, runTest<TstIpInfo>)

#include "tst_ipinfo.moc"
