#include "support/DistinctRecord.h"
#include "support/ModalScript.h"
#include "view/QShowVpnAdv.h"
#include "view/ViewPlayer.h"
#include "xml/CustomInfoHolder.h"

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

/// The opener of the view, reduced to the record that it lends.
class RecordHolder : public QDialog, public CustomInfoHolder
{
    Q_OBJECT
    Q_INTERFACES(CustomInfoHolder)

public:
    CustomInfo* customInfo() override { return lends ? &info : nullptr; }

    CustomInfo info;
    bool lends = true;
};

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

    void fieldShowsItsText_data();
    void fieldShowsItsText();
    void boxShowsItsFlag_data();
    void boxShowsItsFlag();
    void tunnelPasswordFollowsTunnelAuthentication();
    void avpHidingIsTickedExactlyForOne_data();
    void avpHidingIsTickedExactlyForOne();
    void protocolChoosesTheAlgorithmsEnabled_data();
    void protocolChoosesTheAlgorithmsEnabled();
    void algorithmsAreShownWhateverTheProtocol();
    void saLifetimeShowsAtMostSixCharacters();
    void natTraversalIsTickedExactlyForOne();
    void pfsGroupFollowsTheValue_data();
    void pfsGroupFollowsTheValue();
    void namesAreEnabledForTheIdTypeName_data();
    void namesAreEnabledForTheIdTypeName();
    void keepAliveFollowsItsFlags_data();
    void keepAliveFollowsItsFlags();
    void natTraversalShowsAggressiveAndNameWhateverTheRecordHolds_data();
    void natTraversalShowsAggressiveAndNameWhateverTheRecordHolds();
    void ikeAuthenticationShowsWhatTheRecordHolds();
    void routesStandInTheirOrder();

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

class OpenView
{
public:
    explicit OpenView(const CustomInfo& info) : dialog(&holder)
    {
        holder.info = info;
        dialog.setInital();
        dialog.show();
    }

    QString field(const char* name) const { return child<QLineEdit>(dialog, name)->text(); }
    bool isOn(const char* name) const { return child<QAbstractButton>(dialog, name)->isChecked(); }
    /// The names among these whose widgets are enabled.
    QString enabledOf(const char* names) const
    {
        QStringList enabled;
        for (const QByteArray& name : QByteArray(names).split(' ')) {
            if (child<QWidget>(dialog, name.constData())->isEnabled())
                enabled.append(QString::fromLatin1(name));
        }
        return enabled.join(QLatin1Char(' '));
    }

    RecordHolder holder;
    QShowVpnAdv dialog;
};

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

constexpr char nameControls[] = "lineEdit_IDType label_LocalName lineEdit_LocalName label_PeerName lineEdit_PeerName";

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
    const OpenView view(fullRecord());
    QCOMPARE(child<QWidget>(view.dialog, QTest::currentDataTag())->property("text").toString(),
             QLatin1Char('[') + key + QLatin1Char(']'));
}

void TstQShowVpnAdv::tabsHaveTheirTitlesAndOrder()
{
    const OpenView view(fullRecord());
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
    OpenView view(fullRecord());
    const auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_RouteList");
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
    const OpenView view(fullRecord());
    QCOMPARE(view.dialog.findChildren<QPushButton*>().size(), 1);
}

void TstQShowVpnAdv::fieldsAreReadOnly()
{
    const OpenView full(fullRecord());
    QCOMPARE(writableControls(full.dialog), QString());
    QVERIFY(full.dialog.findChildren<QComboBox*>().isEmpty());
    // Without tunnel authentication there is nothing to hide.
    const OpenView bare(bareRecord());
    QCOMPARE(writableControls(bare.dialog), QStringLiteral("checkBox_AVPHidden"));
}

void TstQShowVpnAdv::everyControlHasAName()
{
    const OpenView view(fullRecord());
    QCOMPARE(namelessControls(view.dialog), QString());
}

void TstQShowVpnAdv::labelsAreBuddiesOfTheirFields()
{
    const OpenView view(fullRecord());
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
    const OpenView view(fullRecord());
    QCOMPARE(backwardSteps(view.dialog), QString());
}

void TstQShowVpnAdv::tunnelPasswordCanNeitherBeCopiedNorRead()
{
    const OpenView view(with([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("opensesame"); }));
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
    useLanguage(language.constData());
    OpenView view(fullRecord());
    QCOMPARE(clippedTexts(view.dialog), QString());
}

void TstQShowVpnAdv::fieldShowsItsText_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QString>("text");
    // Each row bears the name of its field.
    const auto row = [](const char* field, Setter set, const char* text) {
        QTest::newRow(field) << set << QString::fromUtf8(text);
    };
    row(
        "lineEdit_TunnelName", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPTunnelName = QStringLiteral("隧道 & co"); },
        "隧道 & co");
    row(
        "lineEdit_AutnMode", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPAuthMode = QStringLiteral("EAP"); }, "EAP");
    row(
        "lineEdit_HelloInterval",
        [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPHelloInterval = QStringLiteral("123456"); }, "123456");
    row(
        "lineEdit_L2tpPort", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPPort = 18446744073709551615ULL; },
        "18446744073709551615");
    row(
        "lineEdit_TunnelPwd",
        [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("longer than sixteen characters"); },
        "longer than sixteen characters");

    row(
        "lineEdit_EncapMode",
        [](CustomInfo& info) { info.vpn.ipseccfg.IPSECEncapsulationMode = QStringLiteral("Mode A"); }, "Mode A");
    row(
        "lineEdit_SaLifeTime", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("604800"); },
        "604800");
    row(
        "lineEdit_IpsecProto",
        [](CustomInfo& info) { info.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("AH-ESP"); }, "AH-ESP");
    row(
        "lineEdit_ESP_Auth",
        [](CustomInfo& info) { info.vpn.ipseccfg.IPSECESPAuthAlgorithm = QStringLiteral("SHA512"); }, "SHA512");
    row(
        "lineEdit_ESP_Encrypt", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECESPEncryption = QStringLiteral("AES"); },
        "AES");
    row(
        "lineEdit_AH_Auth", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA3"); },
        "SHA3");
    row(
        "lineEdit_PFS", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECPFS = 1024; }, "dh-group2");

    row(
        "lineEdit_IkeNeg", [](CustomInfo& info) { info.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Quick"); },
        "Quick");
    row(
        "lineEdit_IDType", [](CustomInfo& info) { info.vpn.ikecfg.IKEIDType = QStringLiteral("fqdn"); }, "fqdn");
    row(
        "lineEdit_IkeAuth", [](CustomInfo& info) { info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("SHA384"); },
        "SHA384");
    row(
        "lineEdit_IkeEncrypt", [](CustomInfo& info) { info.vpn.ikecfg.IKEncryption = QStringLiteral("AES-128"); },
        "AES-128");
    row(
        "lineEdit_DH", [](CustomInfo& info) { info.vpn.ikecfg.IKEDiffeHellman = QStringLiteral("Group14"); },
        "Group14");
    row(
        "lineEdit_IkePort", [](CustomInfo& info) { info.vpn.ikecfg.IKEPort = 4500; }, "4500");
    row(
        "lineEdit_ISAKMPSA", [](CustomInfo& info) { info.vpn.ikecfg.IKEISAKMPLifetime = QStringLiteral("1234567"); },
        "1234567");
    row(
        "lineEdit_LocalName", [](CustomInfo& info) { info.vpn.ikecfg.IKELocalName = QStringLiteral("本端"); }, "本端");
    row(
        "lineEdit_PeerName", [](CustomInfo& info) { info.vpn.ikecfg.IKERemoteName = QStringLiteral("对端"); }, "对端");
    row(
        "lineEdit_TimeInterval", [](CustomInfo& info) { info.vpn.ikecfg.IKESendInterval = QStringLiteral("28800"); },
        "28800");
    row(
        "lineEdit_TimeOut", [](CustomInfo& info) { info.vpn.ikecfg.IKERecvPacketTimeOut = QStringLiteral("28799"); },
        "28799");
}

void TstQShowVpnAdv::fieldShowsItsText()
{
    QFETCH(Setter, set);
    QTEST(OpenView(with(set)).field(QTest::currentDataTag()), "text");
}

void TstQShowVpnAdv::boxShowsItsFlag_data()
{
    QTest::addColumn<Setter>("set");
    const auto row = [](const char* box, Setter set) { QTest::newRow(box) << set; };
    row("checkBox_TunnelAuthOn", [](CustomInfo& info) { info.vpn.l2tpcfg.L2TPUseTunnelPwd = 2; });
    row("checkBox_UsePFS", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECPFS = 768; });
    row("checkBox_UseNAT", [](CustomInfo& info) { info.vpn.ipseccfg.IPSECUseNatTranversal = 1; });
    row("checkBox_KeepAliveOn", [](CustomInfo& info) { info.vpn.ikecfg.IKESendKeepAlive = 2; });
    row("checkBox_KeepAliveTimeout", [](CustomInfo& info) { info.vpn.ikecfg.IKERecvKeepAlivePacket = 2; });
}

// From a record without any flag, one flag ticks its own box and no other.
void TstQShowVpnAdv::boxShowsItsFlag()
{
    QFETCH(Setter, set);
    CustomInfo info = bareRecord();
    set(info);
    const OpenView view(info);
    QStringList ticked;
    for (const QCheckBox* each : view.dialog.findChildren<QCheckBox*>()) {
        if (each->isChecked())
            ticked.append(each->objectName());
    }
    QCOMPARE(ticked, QStringList(QString::fromLatin1(QTest::currentDataTag())));
}

void TstQShowVpnAdv::tunnelPasswordFollowsTunnelAuthentication()
{
    const char* controls = "label_TunnelPwd lineEdit_TunnelPwd checkBox_AVPHidden";
    const OpenView on(with([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPUseTunnelPwd = 1; }));
    QCOMPARE(on.enabledOf(controls), QString::fromLatin1(controls));
    QVERIFY(!on.field("lineEdit_TunnelPwd").isEmpty());

    const OpenView off(with([](CustomInfo& info) { info.vpn.l2tpcfg.L2TPUseTunnelPwd = 0; }));
    QCOMPARE(off.enabledOf(controls), QString());
    QCOMPARE(off.field("lineEdit_TunnelPwd"), QString());
    QVERIFY(!off.isOn("checkBox_TunnelAuthOn"));
}

void TstQShowVpnAdv::avpHidingIsTickedExactlyForOne_data()
{
    QTest::addColumn<quint64>("L2TPUseTunnelPwd");
    QTest::addColumn<quint64>("L2TPAVPHidden");
    QTest::addColumn<bool>("ticked");
    QTest::newRow("0") << quint64(1) << quint64(0) << false;
    QTest::newRow("1") << quint64(1) << quint64(1) << true;
    QTest::newRow("2") << quint64(1) << quint64(2) << false;
    QTest::newRow("1 without tunnel authentication") << quint64(0) << quint64(1) << false;
}

void TstQShowVpnAdv::avpHidingIsTickedExactlyForOne()
{
    QFETCH(quint64, L2TPUseTunnelPwd);
    QFETCH(quint64, L2TPAVPHidden);
    CustomInfo info = plainRecord();
    info.vpn.l2tpcfg.L2TPUseTunnelPwd = L2TPUseTunnelPwd;
    info.vpn.l2tpcfg.L2TPAVPHidden = L2TPAVPHidden;
    QTEST(OpenView(info).isOn("checkBox_AVPHidden"), "ticked");
}

void TstQShowVpnAdv::protocolChoosesTheAlgorithmsEnabled_data()
{
    QTest::addColumn<QString>("protocol");
    QTest::addColumn<quint64>("IPSECUseNatTranversal");
    QTest::addColumn<QString>("enabled");
    const auto row = [](const char* name, const char* protocol, quint64 nat, const char* enabled) {
        QTest::newRow(name) << QString::fromLatin1(protocol) << nat << QString::fromLatin1(enabled);
    };
    row("ESP", "ESP", 0, "lineEdit_IpsecProto lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH", "AH", 0, "lineEdit_IpsecProto lineEdit_AH_Auth");
    row("AH-ESP", "AH-ESP", 0, "lineEdit_IpsecProto lineEdit_ESP_Auth lineEdit_ESP_Encrypt lineEdit_AH_Auth");
    row("ESP with NAT traversal", "ESP", 1, "lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH with NAT traversal", "AH", 1, "lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH-ESP with NAT traversal", "AH-ESP", 1, "lineEdit_ESP_Auth lineEdit_ESP_Encrypt");
    row("AH with NAT traversal of another value than 1", "AH", 2, "lineEdit_IpsecProto lineEdit_AH_Auth");
}

void TstQShowVpnAdv::protocolChoosesTheAlgorithmsEnabled()
{
    QFETCH(QString, protocol);
    QFETCH(quint64, IPSECUseNatTranversal);
    CustomInfo info = plainRecord();
    info.vpn.ipseccfg.IPSECSecurityProto = protocol;
    info.vpn.ipseccfg.IPSECUseNatTranversal = IPSECUseNatTranversal;
    const OpenView view(info);
    QTEST(view.enabledOf("lineEdit_IpsecProto lineEdit_ESP_Auth lineEdit_ESP_Encrypt lineEdit_AH_Auth"), "enabled");
    QCOMPARE(view.field("lineEdit_IpsecProto"), protocol);
}

void TstQShowVpnAdv::algorithmsAreShownWhateverTheProtocol()
{
    for (const char* protocol : {"ESP", "AH", "AH-ESP"}) {
        CustomInfo info = plainRecord();
        info.vpn.ipseccfg.IPSECSecurityProto = QString::fromLatin1(protocol);
        const OpenView view(info);
        QCOMPARE(view.field("lineEdit_ESP_Auth"), info.vpn.ipseccfg.IPSECESPAuthAlgorithm);
        QCOMPARE(view.field("lineEdit_ESP_Encrypt"), info.vpn.ipseccfg.IPSECESPEncryption);
        QCOMPARE(view.field("lineEdit_AH_Auth"), info.vpn.ipseccfg.IPSECAHAuthAlgorithm);
    }
}

void TstQShowVpnAdv::saLifetimeShowsAtMostSixCharacters()
{
    const OpenView view(with([](CustomInfo& info) { info.vpn.ipseccfg.IPSECSALifetime = QStringLiteral("1234567"); }));
    QCOMPARE(view.field("lineEdit_SaLifeTime"), QStringLiteral("123456"));
}

void TstQShowVpnAdv::natTraversalIsTickedExactlyForOne()
{
    QVERIFY(
        OpenView(with([](CustomInfo& info) { info.vpn.ipseccfg.IPSECUseNatTranversal = 1; })).isOn("checkBox_UseNAT"));
    QVERIFY(
        !OpenView(with([](CustomInfo& info) { info.vpn.ipseccfg.IPSECUseNatTranversal = 2; })).isOn("checkBox_UseNAT"));
    QVERIFY(
        !OpenView(with([](CustomInfo& info) { info.vpn.ipseccfg.IPSECUseNatTranversal = 0; })).isOn("checkBox_UseNAT"));
}

void TstQShowVpnAdv::pfsGroupFollowsTheValue_data()
{
    QTest::addColumn<quint64>("IPSECPFS");
    QTest::addColumn<bool>("ticked");
    QTest::addColumn<bool>("enabled");
    QTest::addColumn<QString>("text");
    QTest::newRow("0") << quint64(0) << false << false << QString();
    QTest::newRow("768") << quint64(768) << true << true << QStringLiteral("dh-group1");
    QTest::newRow("1024") << quint64(1024) << true << true << QStringLiteral("dh-group2");
    QTest::newRow("another value leaves all as the form has it") << quint64(5) << false << true << QString();
}

void TstQShowVpnAdv::pfsGroupFollowsTheValue()
{
    QFETCH(quint64, IPSECPFS);
    QFETCH(bool, enabled);
    CustomInfo info = plainRecord();
    info.vpn.ipseccfg.IPSECPFS = IPSECPFS;
    const OpenView view(info);
    QTEST(view.isOn("checkBox_UsePFS"), "ticked");
    QTEST(view.field("lineEdit_PFS"), "text");
    QCOMPARE(view.enabledOf("label_PFS lineEdit_PFS"), enabled ? QStringLiteral("label_PFS lineEdit_PFS") : QString());
}

void TstQShowVpnAdv::namesAreEnabledForTheIdTypeName_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("name") << QStringLiteral("name") << QString::fromLatin1(nameControls);
    QTest::newRow("ip") << QStringLiteral("ip") << QString();
    QTest::newRow("Name") << QStringLiteral("Name") << QString();
}

void TstQShowVpnAdv::namesAreEnabledForTheIdTypeName()
{
    QFETCH(QString, type);
    CustomInfo info = plainRecord();
    info.vpn.ikecfg.IKEIDType = type;
    const OpenView view(info);
    QTEST(view.enabledOf(nameControls), "enabled");
    QCOMPARE(view.field("lineEdit_IDType"), type);
    QCOMPARE(view.field("lineEdit_LocalName"), info.vpn.ikecfg.IKELocalName);
    QCOMPARE(view.field("lineEdit_PeerName"), info.vpn.ikecfg.IKERemoteName);
}

void TstQShowVpnAdv::keepAliveFollowsItsFlags_data()
{
    QTest::addColumn<quint64>("send");
    QTest::addColumn<quint64>("receive");
    for (const quint64 send : {0, 1, 2}) {
        for (const quint64 receive : {0, 1, 2})
            QTest::addRow("%d and %d", int(send), int(receive)) << send << receive;
    }
}

void TstQShowVpnAdv::keepAliveFollowsItsFlags()
{
    QFETCH(quint64, send);
    QFETCH(quint64, receive);
    CustomInfo info = plainRecord();
    IKECFG& config = info.vpn.ikecfg;
    config.IKESendKeepAlive = send;
    config.IKERecvKeepAlivePacket = receive;
    const OpenView view(info);
    const char* sending = "label_TimeInterval lineEdit_TimeInterval label_TimeInterval_Seconds";
    const char* receiving = "label_TimeOut lineEdit_TimeOut label_TimeOutSeconds";
    QCOMPARE(view.isOn("checkBox_KeepAliveOn"), send != 0);
    QCOMPARE(view.enabledOf(sending), send != 0 ? QString::fromLatin1(sending) : QString());
    QCOMPARE(view.field("lineEdit_TimeInterval"), send != 0 ? config.IKESendInterval : QString());
    QCOMPARE(view.isOn("checkBox_KeepAliveTimeout"), receive != 0);
    QCOMPARE(view.enabledOf(receiving), receive != 0 ? QString::fromLatin1(receiving) : QString());
    QCOMPARE(view.field("lineEdit_TimeOut"), receive != 0 ? config.IKERecvPacketTimeOut : QString());
}

void TstQShowVpnAdv::natTraversalShowsAggressiveAndNameWhateverTheRecordHolds_data()
{
    QTest::addColumn<quint64>("IPSECUseNatTranversal");
    QTest::addColumn<QString>("type");
    QTest::newRow("1, the record with ip") << quint64(1) << QStringLiteral("ip");
    QTest::newRow("1, the record with name") << quint64(1) << QStringLiteral("name");
    QTest::newRow("2, the record with name") << quint64(2) << QStringLiteral("name");
}

void TstQShowVpnAdv::natTraversalShowsAggressiveAndNameWhateverTheRecordHolds()
{
    QFETCH(quint64, IPSECUseNatTranversal);
    QFETCH(QString, type);
    CustomInfo info = fullRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = IPSECUseNatTranversal;
    info.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Main");
    info.vpn.ikecfg.IKEIDType = type;
    const OpenView view(info);
    QCOMPARE(view.field("lineEdit_IkeNeg"), QStringLiteral("Aggressive"));
    QCOMPARE(view.field("lineEdit_IDType"), QStringLiteral("name"));
    QCOMPARE(view.enabledOf("lineEdit_IkeNeg"), QString());
    QCOMPARE(view.enabledOf(nameControls), QString());
    QCOMPARE(view.field("lineEdit_LocalName"), info.vpn.ikecfg.IKELocalName);
    QCOMPARE(view.holder.info.vpn.ikecfg.IKENegotiationMode, QStringLiteral("Main"));
    QCOMPARE(view.holder.info.vpn.ikecfg.IKEIDType, type);
}

void TstQShowVpnAdv::ikeAuthenticationShowsWhatTheRecordHolds()
{
    const OpenView view(with([](CustomInfo& info) {
        info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("MD5");
        info.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA256");
    }));
    QCOMPARE(view.field("lineEdit_IkeAuth"), QStringLiteral("MD5"));
}

void TstQShowVpnAdv::routesStandInTheirOrder()
{
    OpenView view(with([](CustomInfo& info) {
        info.vpnRoutes = {{QStringLiteral("192.168.9.0"), QStringLiteral("255.255.255.0")},
                          {QStringLiteral("10.0.0.0"), QStringLiteral("abc")},
                          {QString(), QString()}};
    }));
    const auto* tree = child<QTreeWidget>(view.dialog, "treeWidget_RouteList");
    const auto rows = [tree] {
        QStringList texts;
        for (int row = 0; row < tree->topLevelItemCount(); ++row)
            texts.append(tree->topLevelItem(row)->text(0) + QLatin1Char('|') + tree->topLevelItem(row)->text(1));
        return texts.join(QLatin1Char(' '));
    };
    QCOMPARE(rows(), QStringLiteral("192.168.9.0|255.255.255.0 10.0.0.0|abc |"));
    // Filled anew, the list does not grow.
    view.dialog.setInital();
    QCOMPARE(rows(), QStringLiteral("192.168.9.0|255.255.255.0 10.0.0.0|abc |"));
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
    OpenView view(record());
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
        OpenView view(record());
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
    OpenView view(with(set));
    QVERIFY(QTest::qWaitForWindowExposed(&view.dialog));
    auto* box = child<QCheckBox>(view.dialog, QTest::currentDataTag());
    bringToFront(box);
    QVERIFY(!box->isChecked());
    clickOn(box);
    QVERIFY(box->isChecked());
    clickOn(box);
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
    clickOn(box);
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
    OpenView view(fullRecord());
    int clicked = 0;
    changesByClicks(view.dialog, clicked);
    view.dialog.close();
    QVERIFY(!view.dialog.isVisible());
    QCOMPARE(differences(view.holder.info, fullRecord()), QStringList());
    QCOMPARE(storedFiles(), files);
}

int main(int argc, char** argv)
{
    return runTest<TstQShowVpnAdv>(argc, argv);
}

#include "tst_qshowvpnadv.moc"
