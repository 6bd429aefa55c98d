#include "support/DistinctRecord.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "view/OpenViews.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QToolButton>
#include <QTreeWidget>

using namespace viewplay;

using RecordMaker = CustomInfo (*)();
Q_DECLARE_METATYPE(RecordMaker)

/// The frame of the detail view: texts, clicks, closing.
class TstShowDetailDlg : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void hasItsSizeAndNoContextHelp();
    void titleCarriesTheTimeOfTheCustomisation();
    void titleBeforeTheRecordComesIsThePlainOne();
    void textsComeFromTheirKeys_data();
    void textsComeFromTheirKeys();
    void columnsOfTheGatewaysHaveTheirTitlesAndWidths();

    void fieldsAreReadOnlyAndBoxesStayEnabled();
    void everyControlHasAName();
    void labelsAreBuddiesOfTheirFields();
    void tabOrderGoesFromTopToBottom();
    void preSharedKeyCanNeitherBeCopiedNorRead();
    void textsFit_data();
    void textsFit();

    void clicksChangeNothing_data();
    void clicksChangeNothing();
    void clicksOnTheServerChoiceChangeNothing_data();
    void clicksOnTheServerChoiceChangeNothing();
    void arrowKeysDoNotChangeTheServerChoice();
    void slotSetsItsBoxBackToTheRecord_data();
    void slotSetsItsBoxBackToTheRecord();

    void showsItsOwnCopyOfTheRecord();
    void lendsItsOwnCopyOfTheRecord();
    void advancedButtonOpensTheVpnDetailsOfItsRecord();
    void closeButtonEndsIt();
    void escapeEndsIt();
    void enterOpensNothing();
    void returnOnTheVpnButtonPressesIt();
    void closingWritesNothing();
};

void TstShowDetailDlg::cleanup()
{
    useKeysAsTexts();
}

void TstShowDetailDlg::hasItsSizeAndNoContextHelp()
{
    ShowDetailDlg dialog(nullptr);
    QCOMPARE(dialog.size(), QSize(435, 503));
    QVERIFY((dialog.windowFlags() & Qt::WindowContextHelpButtonHint) == 0);
    QVERIFY((dialog.windowFlags() & Qt::WindowCloseButtonHint) != 0);
}

void TstShowDetailDlg::titleCarriesTheTimeOfTheCustomisation()
{
    CustomInfo info = fullRecord();
    info.common.cusTimeString = QStringLiteral("2031-02-03 04:05:06");
    OpenDetailView view(info);
    QCOMPARE(view.dialog.windowTitle(), QStringLiteral("[detail_title] (2031-02-03 04:05:06)"));
}

void TstShowDetailDlg::titleBeforeTheRecordComesIsThePlainOne()
{
    QCOMPARE(ShowDetailDlg(nullptr).windowTitle(), QStringLiteral("[detail_title]"));
}

void TstShowDetailDlg::textsComeFromTheirKeys_data()
{
    QTest::addColumn<QString>("key");
    const auto row = [](const char* widget, const char* key) { QTest::newRow(widget) << QString::fromLatin1(key); };
    row("toolButton", "close_button");
    row("label_funcdes", "ShowBaseFunInfoHint");

    row("checkBox_1xSaveUser", "chk_saveuser");
    row("checkBox_1xUpVer", "chk_upver");
    row("checkBox_1xUpIp", "chk_upip");
    row("checkBox_1xUseBroadLogoff", "chk_broadlogoff");
    row("checkBox_1xAutoConn", "chk_auto");
    row("checkBox_1xRenewIPAfterCut", "chk_renewIpaftercut");
    row("checkBox_1xResumeConn", "chk_1Xresumeconn");
    row("checkBox_1xAdvancedAuth", "chk_HighAuth");
    row("label_RetryTimes", "label_retrytimes");
    row("label_RetryInterval", "label_retryInte");
    row("label_PktType", "grp_pkttype");

    row("checkBox_PortalSaveUser", "chk_saveuser");
    row("checkBox_PortalUpVer", "chk_upver");
    row("checkBox_PortalAutoConn", "chk_auto");
    row("checkBox_PortalReConnAftNetErr", "chk_ResumeConn");
    row("checkBox_PortalAdvancedAuth", "chk_HighAuth");

    row("label_authType", "SSL_AUTH_TYPE");
    row("label_authMode", "SSL_AUTH_MODE");
    row("label_reconnTimes", "SSL_RECONN_TIME");
    row("label_reconnInterval", "SSL_RECONN_GRAP");
    row("label_getSysVryInterval", "SSL_GetSmsVryCountDownValue");
    row("label_TLSVersion", "SSL_TLSVersion");
    row("checkBox_gatewayType", "SSL_GatewayType");
    row("checkBox_edcode", "SSL_EdCode");

    row("label_LNSIp_S", "VUI_BASELNSIP");
    row("label_Bak_LNSIp_S", "VUI_SECONDLNSIP");
    row("checkBox_upVer_S", "VUI_UpVersion");
    row("checkBox_reConn_S", "VUI_ResumeCon");
    row("checkBox_EnableIpSec_S", "VUI_BASEUseIPSEC");
    row("label_AuthMethod_S", "VUI_IKEAuthMethod");
    row("label_Authenticator_S", "VUI_BASEPreSharedKey");
    row("label_IpSecSever_S", "VUI_BASEIPSECSERVERIPCombox");
    row("radioButton_useLNS_S", "VUI_BASELNSASIPSECServer");
    row("radioButton_useOtherLNS_S", "VUI_BASEUseOtherIPSECServer");
    row("label_IPSECServerIP_S", "VUI_BASEIPSECSERVERIP");
    row("pushButton_Adv_S", "VUI_BASEHeigth");

    row("checkBox_UseZoa_S", "VUI_SECONDUseZOA");
    row("label_ZOAIp_S", "VUI_SECONDZOAIP");
    row("label_ZOAport_S", "VUI_SECONDZOAPORT");
    row("label_standby_ZOAIp_S", "VUI_STANDBYZOAIP");
    row("label_standby_ZOAport_S", "VUI_STANDBYZOAPORT");
    row("label_UseHint_S", "VUI_STANDBYZOAUSEHINT");

    row("label_kefIp", "KEF_ProxyIp");
    row("label_kefPort", "KEF_ProxyPort");
    row("label_usbdefaultPolicy", "KEF_USBMonitorPolicy");
    row("checkBox_disable", "KEF_StartUSBMonitorBeforeRegister");

    row("groupBox_Icon", "CUS_CusIconComBox");
    row("label_deckIcon_LP", "Cus_ShowDeskIconDesL");
    row("label_deckIcon_MP", "Cus_ShowDeskIconDesM");
    row("label_MainIcon_P", "Cus_ShowMainIconDes");
    row("groupBox_Ttitle", "CUS_CusTitleComBox");
    row("label_Title", "CUS_CusTitleDes");
    row("checkBox_HideCopyRight", "CUS_CusHideAgreement");
}

void TstShowDetailDlg::textsComeFromTheirKeys()
{
    QFETCH(QString, key);
    ShowDetailDlg dialog(nullptr);
    const QWidget* widget = child<QWidget>(dialog, QTest::currentDataTag());
    const char* property = qobject_cast<const QGroupBox*>(widget) ? "title" : "text";
    QCOMPARE(widget->property(property).toString(), QLatin1Char('[') + key + QLatin1Char(']'));
}

void TstShowDetailDlg::columnsOfTheGatewaysHaveTheirTitlesAndWidths()
{
    OpenDetailView view(fullRecord());
    auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_SSLIP");
    bringToFront(tree);
    QCOMPARE(tree->header()->textElideMode(), Qt::ElideRight);
    QStringList columns;
    for (int column = 0; column < tree->columnCount(); ++column) {
        columns.append(QStringLiteral("%1 %2").arg(tree->headerItem()->text(column)).arg(tree->columnWidth(column)));
        QCOMPARE(tree->headerItem()->toolTip(column), tree->headerItem()->text(column));
    }
    QCOMPARE(columns.join(QLatin1Char(';')),
             QStringLiteral("[SCE_DevOrder] 50;[SSL_VPNSERV_DISNAME] 100;[SSL_ADDRESS] 140;[SSL_PORT] 60"));
}

void TstShowDetailDlg::fieldsAreReadOnlyAndBoxesStayEnabled()
{
    for (const RecordMaker record : {fullRecord, bareRecord}) {
        OpenDetailView view(record());
        QCOMPARE(writableControls(view.dialog), QString());
    }
}

void TstShowDetailDlg::everyControlHasAName()
{
    OpenDetailView view(fullRecord());
    QCOMPARE(namelessControls(view.dialog), QString());
}

void TstShowDetailDlg::labelsAreBuddiesOfTheirFields()
{
    ShowDetailDlg dialog(nullptr);
    QStringList pairs;
    for (const QLabel* label : dialog.findChildren<QLabel*>()) {
        if (label->buddy())
            pairs.append(label->objectName().mid(6) + QLatin1Char('-') + label->buddy()->objectName());
    }
    pairs.sort();
    QCOMPARE(pairs.join(QLatin1Char(' ')),
             QStringLiteral("AuthMethod_S-lineEdit_authMethod_S Authenticator_S-lineEdit_preshareKey_S "
                            "Bak_LNSIp_S-lineEdit_LNSIpSecond_S IPSECServerIP_S-lineEdit_IPSECServerIP_S "
                            "LNSIp_S-lineEdit_LNSIp_S PktType-lineEdit_PktType "
                            "RetryInterval-lineEdit_RetryInterval RetryTimes-lineEdit_RetryTimes "
                            "TLSVersion-lineEdit_TLS_version_value Title-lineEdit_Title "
                            "ZOAIp_S-lineEdit_ZOAIp_S ZOAport_S-lineEdit_ZOAport_S authMode-lineEdit_authMode "
                            "authType-lineEdit_authType funcdes-listWidget_func "
                            "getSysVryInterval-lineEdit_getSysVryInterval kefIp-lineEdit_kefIp "
                            "kefPort-lineEdit_kefPort reconnInterval-lineEdit_reconnInterval "
                            "reconnTimes-lineEdit_reconnTimes standby_ZOAIp_S-lineEdit_standby_ZOAIp_S "
                            "standby_ZOAport_S-lineEdit_standby_ZOAport_S"));
}

void TstShowDetailDlg::tabOrderGoesFromTopToBottom()
{
    OpenDetailView view(fullRecord());
    QCOMPARE(backwardSteps(view.dialog), QString());
}

void TstShowDetailDlg::preSharedKeyCanNeitherBeCopiedNorRead()
{
    CustomInfo info = fullRecord();
    info.vpn.basecfg.preSharedKey = QStringLiteral("opensesame");
    OpenDetailView view(info);
    const auto* field = child<QLineEdit>(view.dialog, "lineEdit_preshareKey_S");
    QCOMPARE(field->text(), QStringLiteral("opensesame"));
    QCOMPARE(field->echoMode(), QLineEdit::Password);
    QCOMPARE(readableSecrets(view.dialog, QStringLiteral("opensesame")), QString());
}

void TstShowDetailDlg::textsFit_data()
{
    QTest::addColumn<RecordMaker>("record");
    QTest::newRow("en") << RecordMaker(fullRecord);
    QTest::newRow("zh") << RecordMaker(fullRecord);
    QTest::newRow("en, two tabs") << RecordMaker([] {
        CustomInfo info = fullRecord();
        info.common.procomVal = 1;
        info.common.funcomVal = 0;
        return info;
    });
}

void TstShowDetailDlg::textsFit()
{
    QFETCH(RecordMaker, record);
    useLanguage(QString::fromLatin1(QTest::currentDataTag()).left(2));
    CustomInfo info = record();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    QCOMPARE(clippedTexts(dialog), QString());
}

void TstShowDetailDlg::clicksChangeNothing_data()
{
    QTest::addColumn<RecordMaker>("record");
    QTest::addColumn<int>("expectedClicks");
    // 21 boxes, by mouse and by keyboard; the two radio buttons only while they are enabled.
    QTest::newRow("everything ticked") << RecordMaker(fullRecord) << (21 + 2) * 2;
    QTest::newRow("nothing ticked") << RecordMaker(bareRecord) << 21 * 2;
}

void TstShowDetailDlg::clicksChangeNothing()
{
    QFETCH(RecordMaker, record);
    OpenDetailView view(record());
    QVERIFY(QTest::qWaitForWindowExposed(&view.dialog));
    int clicked = 0;
    QCOMPARE(changesByClicks(view.dialog, clicked), QString());
    QTEST(clicked, "expectedClicks");
}

void TstShowDetailDlg::clicksOnTheServerChoiceChangeNothing_data()
{
    QTest::addColumn<quint64>("LNSAsIPSECServer");
    QTest::newRow("the LNS") << quint64(1);
    QTest::newRow("the LNS, by another value than 1") << quint64(5);
    QTest::newRow("another server") << quint64(0);
}

void TstShowDetailDlg::clicksOnTheServerChoiceChangeNothing()
{
    QFETCH(quint64, LNSAsIPSECServer);
    CustomInfo info = fullRecord();
    info.vpn.basecfg.useIPSEC = 1;
    info.vpn.basecfg.LNSAsIPSECServer = LNSAsIPSECServer;
    OpenDetailView view(info);
    auto* lns = child<QRadioButton>(view.dialog, "radioButton_useLNS_S");
    auto* other = child<QRadioButton>(view.dialog, "radioButton_useOtherLNS_S");
    bringToFront(lns);
    for (QRadioButton* button : {other, lns, lns, other, other}) {
        QSignalSpy spy(button, &QAbstractButton::clicked);
        click(button);
        QCOMPARE(spy.count(), 1);
        QCOMPARE(lns->isChecked(), LNSAsIPSECServer != 0);
        QCOMPARE(other->isChecked(), LNSAsIPSECServer == 0);
    }
}

void TstShowDetailDlg::arrowKeysDoNotChangeTheServerChoice()
{
    CustomInfo info = fullRecord();
    info.vpn.basecfg.useIPSEC = 1;
    info.vpn.basecfg.LNSAsIPSECServer = 1;
    OpenDetailView view(info);
    auto* lns = child<QRadioButton>(view.dialog, "radioButton_useLNS_S");
    auto* other = child<QRadioButton>(view.dialog, "radioButton_useOtherLNS_S");
    QVERIFY(QTest::qWaitForWindowActive(&view.dialog));
    bringToFront(lns);
    lns->setFocus();
    QSignalSpy spy(other, &QAbstractButton::clicked);
    QTest::keyClick(lns, Qt::Key_Down);
    QCOMPARE(spy.count(), 1);
    QVERIFY(lns->isChecked());
    QVERIFY(!other->isChecked());
}

void TstShowDetailDlg::slotSetsItsBoxBackToTheRecord_data()
{
    QTest::addColumn<QByteArray>("box");
    const auto row = [](const char* slot, const char* box) { QTest::newRow(slot) << QByteArray(box); };
    row("onClick1xSaveUser", "checkBox_1xSaveUser");
    row("onClick1xUpVer", "checkBox_1xUpVer");
    row("onClick1xUpIp", "checkBox_1xUpIp");
    row("onClick1xUseBroadLogoff", "checkBox_1xUseBroadLogoff");
    row("onClick1xAutoConn", "checkBox_1xAutoConn");
    row("onClick1xRenewIPAfterCut", "checkBox_1xRenewIPAfterCut");
    row("onClick1xResumeConn", "checkBox_1xResumeConn");
    row("OnClick1xMacAuth", "checkBox_1xAdvancedAuth");
    row("onClickPortalSaveUser", "checkBox_PortalSaveUser");
    row("onClickPortalUpVer", "checkBox_PortalUpVer");
    row("onClickPortalAutoConn", "checkBox_PortalAutoConn");
    row("onClickPortalReConnAftNetErr", "checkBox_PortalReConnAftNetErr");
    row("OnClickPortalMacAuth", "checkBox_PortalAdvancedAuth");
    row("onClickGatewayType", "checkBox_gatewayType");
    row("onClickEdcode", "checkBox_edcode");
    row("onClickHideCopyRight", "checkBox_HideCopyRight");
    row("OnUpVerChk", "checkBox_upVer_S");
    row("OnReconnChk", "checkBox_reConn_S");
    row("OnIpsecEnable", "checkBox_EnableIpSec_S");
    row("OnUseZoa", "checkBox_UseZoa_S");
    row("OnDisable", "checkBox_disable");
}

void TstShowDetailDlg::slotSetsItsBoxBackToTheRecord()
{
    QFETCH(QByteArray, box);
    for (const RecordMaker record : {fullRecord, bareRecord}) {
        OpenDetailView view(record());
        auto* checkBox = child<QCheckBox>(view.dialog, box.constData());
        checkBox->setChecked(record == bareRecord);
        QVERIFY(QMetaObject::invokeMethod(&view.dialog, QTest::currentDataTag()));
        QCOMPARE(checkBox->isChecked(), record == fullRecord);
    }
}

void TstShowDetailDlg::showsItsOwnCopyOfTheRecord()
{
    OpenDetailView view(fullRecord());
    view.record = bareRecord();
    int clicked = 0;
    QCOMPARE(changesByClicks(view.dialog, clicked), QString());
    QVERIFY(clicked > 0);
}

void TstShowDetailDlg::lendsItsOwnCopyOfTheRecord()
{
    OpenDetailView view(fullRecord());
    auto* holder = qobject_cast<CustomInfoHolder*>(static_cast<QObject*>(&view.dialog));
    QVERIFY(holder);
    QVERIFY(holder->customInfo() != &view.record);
    QCOMPARE(differences(*holder->customInfo(), fullRecord()), QStringList());
}

void TstShowDetailDlg::advancedButtonOpensTheVpnDetailsOfItsRecord()
{
    CustomInfo info = fullRecord();
    info.vpn.l2tpcfg.L2TPTunnelName = QStringLiteral("tunnel of this record");
    OpenDetailView view(info);
    auto* button = child<QAbstractButton>(view.dialog, "pushButton_Adv_S");
    bringToFront(button);

    QString tunnel;
    const QObject* parent = nullptr;
    ModalScript script;
    script.expect<QShowVpnAdv>([&](QShowVpnAdv& details) {
        tunnel = child<QLineEdit>(details, "lineEdit_TunnelName")->text();
        parent = details.parent();
        QTest::mouseClick(child<QAbstractButton>(details, "pushButton"), Qt::LeftButton);
    });
    QTest::mouseClick(button, Qt::LeftButton);
    QCOMPARE(script.complaints(), QStringList());
    QCOMPARE(tunnel, QStringLiteral("tunnel of this record"));
    QCOMPARE(parent, &view.dialog);
    QVERIFY(!view.dialog.findChild<QShowVpnAdv*>());
}

void TstShowDetailDlg::closeButtonEndsIt()
{
    CustomInfo info = fullRecord();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    ModalScript script;
    script.expect<ShowDetailDlg>(
        [](ShowDetailDlg& opened) { QTest::mouseClick(child<QToolButton>(opened, "toolButton"), Qt::LeftButton); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
}

void TstShowDetailDlg::escapeEndsIt()
{
    CustomInfo info = fullRecord();
    ShowDetailDlg dialog(nullptr);
    dialog.onInitDialog(info);
    ModalScript script;
    script.expect<ShowDetailDlg>([](ShowDetailDlg& opened) { QTest::keyClick(&opened, Qt::Key_Escape); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
}

void TstShowDetailDlg::enterOpensNothing()
{
    OpenDetailView view(fullRecord());
    QVERIFY(QTest::qWaitForWindowExposed(&view.dialog));
    auto* field = child<QLineEdit>(view.dialog, "lineEdit_LNSIp_S");
    bringToFront(field);
    field->setFocus();
    ModalScript script;
    QTest::keyClick(field, Qt::Key_Return);
    QCoreApplication::processEvents();
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(view.dialog.isVisible());
}

void TstShowDetailDlg::returnOnTheVpnButtonPressesIt()
{
    OpenDetailView view(fullRecord());
    auto* button = child<QPushButton>(view.dialog, "pushButton_Adv_S");
    bringToFront(button);
    button->setFocus();
    ModalScript script;
    script.expect<QShowVpnAdv>([](QShowVpnAdv& opened) { opened.close(); });
    QVERIFY(QTest::qWaitForWindowActive(&view.dialog));
    QTest::keyClick(button, Qt::Key_Return);
    QCOMPARE(script.complaints(), QStringList());
    QVERIFY(view.dialog.isVisible());
}

void TstShowDetailDlg::closingWritesNothing()
{
    const QStringList files = storedFiles();
    OpenDetailView view(fullRecord());
    int clicked = 0;
    changesByClicks(view.dialog, clicked);
    view.dialog.close();
    QVERIFY(!view.dialog.isVisible());
    QCOMPARE(differences(view.record, fullRecord()), QStringList());
    QCOMPARE(differences(*view.dialog.customInfo(), fullRecord()), QStringList());
    QCOMPARE(storedFiles(), files);
}

TEST_ENTRY(showdetaildlg, runTest<TstShowDetailDlg>)

#include "tst_showdetaildlg.moc"
