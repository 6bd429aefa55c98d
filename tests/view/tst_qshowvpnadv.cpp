#include "support/DistinctRecord.h"
#include "support/ModalScript.h"
#include "support/TestEntry.h"
#include "view/OpenViews.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTreeWidget>

using namespace viewplay;

using Setter = void (*)(CustomInfo&);
Q_DECLARE_METATYPE(Setter)
using RecordMaker = CustomInfo (*)();
Q_DECLARE_METATYPE(RecordMaker)

class TstQShowVpnAdv : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void hasItsSizeAndNoContextHelp();
    void opensOnTheFirstTab();
    void textsComeFromTheirKeys_data();
    void textsComeFromTheirKeys();
    void tabsHaveTheirTitlesAndOrder();
    void columnsOfTheRoutesHaveTheirTitlesAndWidths();
    void hasNoButtonsForRoutes();
    void fieldsAreReadOnly();
    void everyControlHasAName();
    void labelsAreBuddiesOfTheirFields();
    void tabOrderGoesFromTopToBottom();
    void tunnelPasswordCanNeitherBeCopiedNorRead();
    void textsFit_data();
    void textsFit();

    void clicksChangeNothing_data();
    void clicksChangeNothing();
    void slotSetsItsBoxBackToTheRecord_data();
    void slotSetsItsBoxBackToTheRecord();
    void clickCountsTheFieldAsZeroOrNotZero_data();
    void clickCountsTheFieldAsZeroOrNotZero();

    void withoutHolderItStaysEmpty_data();
    void withoutHolderItStaysEmpty();
    void closeButtonEndsIt();
    void closingWritesNothing();
};

namespace {

/// A record without NAT traversal, which would decide over other fields.
CustomInfo plainRecord()
{
    CustomInfo info = fullRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = 0;
    return info;
}

CustomInfo with(Setter set)
{
    CustomInfo info = plainRecord();
    set(info);
    return info;
}

} // namespace

void TstQShowVpnAdv::cleanup()
{
    useKeysAsTexts();
}

void TstQShowVpnAdv::hasItsSizeAndNoContextHelp()
{
    RecordHolder holder;
    QShowVpnAdv dialog(&holder);
    QCOMPARE(dialog.size(), QSize(409, 370));
    QVERIFY((dialog.windowFlags() & Qt::WindowContextHelpButtonHint) == 0);
    QVERIFY((dialog.windowFlags() & Qt::WindowCloseButtonHint) != 0);
}

void TstQShowVpnAdv::opensOnTheFirstTab()
{
    RecordHolder holder;
    QShowVpnAdv dialog(&holder);
    auto* tabs = child<QTabWidget>(dialog, "tabWidget");
    tabs->setCurrentIndex(3);
    dialog.setInital();
    QCOMPARE(tabs->currentIndex(), 0);
}

void TstQShowVpnAdv::textsComeFromTheirKeys_data()
{
    QTest::addColumn<QString>("key");
    const auto row = [](const char* widget, const char* key) { QTest::newRow(widget) << QString::fromLatin1(key); };
    row("pushButton", "close_button");

    row("label_TunnelName", "VUI_L2TPTunnelName");
    row("label_AuthMode", "VUI_L2TPAuthMode");
    row("label_HelloInterval", "VUI_L2TPHelloInterval");
    row("label_Seconds", "VUI_StaticSeconds");
    row("label_L2tpPort", "VUT_L2TPPORT");
    row("checkBox_TunnelAuthOn", "VUI_L2TPUseTunnelPwd");
    row("label_TunnelPwd", "VUI_L2TPTunnelPwd");
    row("checkBox_AVPHidden", "VUI_L2TPAVPHidden");

    row("label_EncapMode", "VUI_IPSECEncapMode");
    row("label_SaLifeTime", "VUI_IPSECSALifetime");
    row("label_SA_Seconds", "VUI_IKESecond");
    row("label_IpsecProto", "VUI_IPSECAdopSecuriProto");
    row("label_ESP_Auth", "VUI_IPSECESPAuth");
    row("label_ESP_Encrypt", "VUI_IPSECESPEncypt");
    row("label_AH_Auth", "VUI_IPSECAHAuth");
    row("checkBox_UsePFS", "VUI_UsePFS");
    row("label_PFS", "VUI_UsePFS");
    row("checkBox_UseNAT", "VUI_IPSECUseNat");

    row("label_IkeNeg", "VUI_IKENegMode");
    row("label_IDType", "VUI_IKEIDType");
    row("label_IkeAuth", "VUI_IKEAuth");
    row("label_IkeEncrypt", "VUI_IKEEncrypt");
    row("label_DH", "VUI_IKEDHGroup");
    row("label_IkePort", "VUI_IKEPort");
    row("label_ISAKMPSA", "VUI_IKEISAKMPSA");
    row("label_ISAKMPSA_Seconds", "VUI_IKESecond");
    row("label_LocalName", "VUI_IKELocalName");
    row("label_PeerName", "VUI_IKERemoteName");
    row("checkBox_KeepAliveOn", "VUI_IKESendKeepAlive");
    row("label_TimeInterval", "VUI_IKETimeInterval");
    row("label_TimeInterval_Seconds", "VUI_IKESecond");
    row("checkBox_KeepAliveTimeout", "VUI_IKERecvKeepAlive");
    row("label_TimeOut", "VUI_IKETimeout");
    row("label_TimeOutSeconds", "VUI_IKESecond");

    row("label_RouteDes", "VUI_AddRoutePrincple");
}

void TstQShowVpnAdv::textsComeFromTheirKeys()
{
    QFETCH(QString, key);
    const OpenVpnView view(fullRecord());
    QCOMPARE(child<QWidget>(view.dialog, QTest::currentDataTag())->property("text").toString(),
             QLatin1Char('[') + key + QLatin1Char(']'));
}

void TstQShowVpnAdv::tabsHaveTheirTitlesAndOrder()
{
    const OpenVpnView view(fullRecord());
    const auto* tabs = child<QTabWidget>(view.dialog, "tabWidget");
    QStringList titles;
    for (int index = 0; index < tabs->count(); ++index)
        titles.append(tabs->widget(index)->objectName() + tabs->tabText(index));
    QCOMPARE(titles.join(QLatin1Char(' ')), QStringLiteral("tab[VUI_L2TPPAGETITLE] tab_2[VUI_IPSECPAGETITLE] "
                                                           "tab_3[VUI_IKEPAGETITLE] tab_4[VUI_RouteSetting]"));
    QCOMPARE(view.dialog.windowTitle(), QStringLiteral("[VUI_AdvancedSettings]"));
}

void TstQShowVpnAdv::columnsOfTheRoutesHaveTheirTitlesAndWidths()
{
    OpenVpnView view(fullRecord());
    auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_RouteList");
    bringToFront(tree);
    QCOMPARE(tree->header()->textElideMode(), Qt::ElideRight);
    QStringList columns;
    for (int column = 0; column < tree->columnCount(); ++column) {
        columns.append(QStringLiteral("%1 %2").arg(tree->headerItem()->text(column)).arg(tree->columnWidth(column)));
        QCOMPARE(tree->headerItem()->toolTip(column), tree->headerItem()->text(column));
    }
    QCOMPARE(columns.join(QLatin1Char(';')), QStringLiteral("[VUI_IP] 170;[VUI_Mask] 170"));
}

void TstQShowVpnAdv::hasNoButtonsForRoutes()
{
    const OpenVpnView view(fullRecord());
    QCOMPARE(view.dialog.findChildren<QPushButton*>().size(), 1);
}

void TstQShowVpnAdv::fieldsAreReadOnly()
{
    const OpenVpnView full(fullRecord());
    QCOMPARE(writableControls(full.dialog), QString());
    QVERIFY(full.dialog.findChildren<QComboBox*>().isEmpty());
    // Without tunnel authentication there is nothing to hide.
    const OpenVpnView bare(bareRecord());
    QCOMPARE(writableControls(bare.dialog), QStringLiteral("checkBox_AVPHidden"));
}

void TstQShowVpnAdv::everyControlHasAName()
{
    const OpenVpnView view(fullRecord());
    QCOMPARE(namelessControls(view.dialog), QString());
}

void TstQShowVpnAdv::labelsAreBuddiesOfTheirFields()
{
    const OpenVpnView view(fullRecord());
    QStringList pairs;
    for (const QLabel* label : view.dialog.findChildren<QLabel*>()) {
        if (!label->buddy())
            continue;
        const QString field = label->buddy()->objectName();
        // The field of the authentication mode is spelled apart from its label.
        if (field.section(QLatin1Char('_'), 1) != label->objectName().section(QLatin1Char('_'), 1))
            pairs.append(label->objectName() + QLatin1Char(' ') + field);
    }
    pairs.sort();
    QCOMPARE(pairs, QStringList({QStringLiteral("label_AuthMode lineEdit_AutnMode"),
                                 QStringLiteral("label_RouteDes treeWidget_RouteList")}));
}

void TstQShowVpnAdv::tabOrderGoesFromTopToBottom()
{
    const OpenVpnView view(fullRecord());
    QCOMPARE(backwardSteps(view.dialog), QString());
}

void TstQShowVpnAdv::tunnelPasswordCanNeitherBeCopiedNorRead()
{
    const OpenVpnView view(
        with([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("opensesame"); }));
    QCOMPARE(view.field("lineEdit_TunnelPwd"), QStringLiteral("opensesame"));
    QCOMPARE(child<QLineEdit>(view.dialog, "lineEdit_TunnelPwd")->echoMode(), QLineEdit::Password);
    QCOMPARE(readableSecrets(view.dialog, QStringLiteral("opensesame")), QString());
}

void TstQShowVpnAdv::textsFit_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::newRow("English") << QByteArray("en");
    QTest::newRow("Chinese") << QByteArray("zh");
}

void TstQShowVpnAdv::textsFit()
{
    QFETCH(QByteArray, language);
    useLanguage(QString::fromLatin1(language));
    OpenVpnView view(fullRecord());
    QCOMPARE(clippedTexts(view.dialog), QString());
}

void TstQShowVpnAdv::clicksChangeNothing_data()
{
    QTest::addColumn<RecordMaker>("record");
    QTest::addColumn<int>("expectedClicks");
    QTest::newRow("everything ticked") << RecordMaker(fullRecord) << 6 * 2;
    // The box of AVP hiding is disabled there.
    QTest::newRow("nothing ticked") << RecordMaker(bareRecord) << 5 * 2;
}

void TstQShowVpnAdv::clicksChangeNothing()
{
    QFETCH(RecordMaker, record);
    OpenVpnView view(record());
    QVERIFY(QTest::qWaitForWindowExposed(&view.dialog));
    int clicked = 0;
    QCOMPARE(changesByClicks(view.dialog, clicked), QString());
    QTEST(clicked, "expectedClicks");
}

void TstQShowVpnAdv::slotSetsItsBoxBackToTheRecord_data()
{
    QTest::addColumn<QByteArray>("box");
    QTest::newRow("OnTunnelAuthChk") << QByteArray("checkBox_TunnelAuthOn");
    QTest::newRow("OnAVPHidChk") << QByteArray("checkBox_AVPHidden");
    QTest::newRow("OnUsePFSChk") << QByteArray("checkBox_UsePFS");
    QTest::newRow("OnUseNATChk") << QByteArray("checkBox_UseNAT");
    QTest::newRow("OnKeepAliveOnChk") << QByteArray("checkBox_KeepAliveOn");
    QTest::newRow("OnKeepAliveTimeoutChk") << QByteArray("checkBox_KeepAliveTimeout");
}

void TstQShowVpnAdv::slotSetsItsBoxBackToTheRecord()
{
    QFETCH(QByteArray, box);
    for (const RecordMaker record : {fullRecord, bareRecord}) {
        OpenVpnView view(record());
        auto* checkBox = child<QCheckBox>(view.dialog, box.constData());
        checkBox->setChecked(record == bareRecord);
        QVERIFY(QMetaObject::invokeMethod(&view.dialog, QTest::currentDataTag()));
        QCOMPARE(checkBox->isChecked(), record == fullRecord);
    }
}

void TstQShowVpnAdv::clickCountsTheFieldAsZeroOrNotZero_data()
{
    QTest::addColumn<Setter>("set");
    QTest::newRow("checkBox_AVPHidden") << Setter([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPAVPHidden = 2; });
    QTest::newRow("checkBox_UseNAT") << Setter([](CustomInfo& info) { info.vpn.ipseccfg.IPSECUseNatTranversal = 2; });
    QTest::newRow("checkBox_UsePFS") << Setter([](CustomInfo& info) { info.vpn.ipseccfg.IPSECPFS = 5; });
}

void TstQShowVpnAdv::clickCountsTheFieldAsZeroOrNotZero()
{
    QFETCH(Setter, set);
    OpenVpnView view(with(set));
    QVERIFY(QTest::qWaitForWindowExposed(&view.dialog));
    auto* box = child<QCheckBox>(view.dialog, QTest::currentDataTag());
    bringToFront(box);
    QVERIFY(!box->isChecked());
    click(box);
    QVERIFY(box->isChecked());
    click(box);
    QVERIFY(box->isChecked());
}

void TstQShowVpnAdv::withoutHolderItStaysEmpty_data()
{
    QTest::addColumn<int>("parent");
    QTest::newRow("no parent") << 0;
    QTest::newRow("a parent without record") << 1;
    QTest::newRow("a holder that lends nothing") << 2;
}

void TstQShowVpnAdv::withoutHolderItStaysEmpty()
{
    QFETCH(int, parent);
    RecordHolder holder;
    holder.info = fullRecord();
    holder.lends = false;
    QDialog plain;
    QWidget* parents[] = {nullptr, &plain, &holder};
    QShowVpnAdv dialog(parents[parent]);
    dialog.setInital();
    dialog.show();
    QCOMPARE(dialog.windowTitle(), QStringLiteral("[VUI_AdvancedSettings]"));
    for (const QLineEdit* field : dialog.findChildren<QLineEdit*>())
        QCOMPARE(field->objectName() + field->text(), field->objectName());
    QCOMPARE(child<QTreeWidget>(dialog, "treeWidget_RouteList")->topLevelItemCount(), 0);
    auto* box = child<QCheckBox>(dialog, "checkBox_TunnelAuthOn");
    QSignalSpy spy(box, &QAbstractButton::clicked);
    click(box);
    QCOMPARE(spy.count(), 1);
}

void TstQShowVpnAdv::closeButtonEndsIt()
{
    RecordHolder holder;
    QShowVpnAdv dialog(&holder);
    dialog.setInital();
    ModalScript script;
    script.expect<QShowVpnAdv>(
        [](QShowVpnAdv& opened) { QTest::mouseClick(child<QPushButton>(opened, "pushButton"), Qt::LeftButton); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    QCOMPARE(script.complaints(), QStringList());
}

void TstQShowVpnAdv::closingWritesNothing()
{
    const QStringList files = storedFiles();
    OpenVpnView view(fullRecord());
    int clicked = 0;
    changesByClicks(view.dialog, clicked);
    view.dialog.close();
    QVERIFY(!view.dialog.isVisible());
    QCOMPARE(differences(view.holder.info, fullRecord()), QStringList());
    QCOMPARE(storedFiles(), files);
}

TEST_ENTRY(qshowvpnadv, runTest<TstQShowVpnAdv>)

#include "tst_qshowvpnadv.moc"
