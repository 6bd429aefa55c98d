#include "support/TestEntry.h"
#include "vpn/VpnPlayer.h"

using namespace vpnplay;

namespace {

const char neg[] = "comboBox_IkeNeg";
const char idType[] = "comboBox_IDType";
const char ikeAuth[] = "comboBox_IkeAuth";
const char ahAuth[] = "comboBox_AH_Auth";

const QStringList& names()
{
    static const QStringList all = words("label_LocalName lineEdit_LocalName label_PeerName lineEdit_PeerName");
    return all;
}

struct KeepAlive
{
    const char* box;
    const char* edit;
    QStringList switched;
    quint64 IKECFG::*flag;
    QString IKECFG::*field;
    const char* errorKey;
};

const KeepAlive keepAlives[] = {
    {"checkBox_KeepAliveOn", "lineEdit_TimeInterval",
     words("label_TimeInterval lineEdit_TimeInterval label_TimeInterval_Seconds"), &IKECFG::IKESendKeepAlive,
     &IKECFG::IKESendInterval, "VUI_SendKeepAliveTimerErr"},
    {"checkBox_KeepAliveTimeout", "lineEdit_TimeOut", words("label_TimeOut lineEdit_TimeOut label_TimeOutSeconds"),
     &IKECFG::IKERecvKeepAlivePacket, &IKECFG::IKERecvPacketTimeOut, "VUI_RecvKeepAliveTimerErr"},
};

void addKeepAliveRows()
{
    QTest::addColumn<int>("which");
    QTest::newRow("send") << 0;
    QTest::newRow("receive") << 1;
}

} // namespace

class TstQVPNAdvPropertyIke : public QObject
{
    Q_OBJECT

private slots:
    void everyFieldIsLoaded();
    void defaultsAreLoaded();
    void everyFieldIsStored();
    void comboBoxesHaveTheirItems();
    void everyChoiceIsLoadedAndStored_data();
    void everyChoiceIsLoadedAndStored();
    void unknownTextsLeaveTheComboBoxesWhereTheyAre();
    void ahAlgorithmDecidesTheIkeAlgorithm_data();
    void ahAlgorithmDecidesTheIkeAlgorithm();
    void modeAndIdTypeAtOpening_data();
    void modeAndIdTypeAtOpening();
    void mainModeLocksIdTypeAndNames();
    void aggressiveModeFreesTheIdTypeOnly();
    void aggressiveModeLeavesTheNamesAsTheIdTypeLeftThem();
    void idTypeSwitchesTheNames();
    void natAtOpeningForcesAggressiveAndName_data();
    void natAtOpeningForcesAggressiveAndName();
    void namesAreStoredOnlyWithTheIdTypeName();
    void emptyNamesAreRefusedWithTheIdTypeName_data();
    void emptyNamesAreRefusedWithTheIdTypeName();
    void natAtOpeningWithoutNamesIsRefusedAtTheLocalName();
    void natReminderComesLastAndTakesBackNothing_data();
    void natReminderComesLastAndTakesBackNothing();
    void natReminderFollowsTheBoxAlsoWhenTheIpsecPageIsRefused();
    void ahBoxDecidesAlsoWhenTheIpsecPageIsRefused();
    void natReminderIsSilentWithBothNames();
    void keepAliveIsLoaded_data();
    void keepAliveIsLoaded();
    void keepAliveBoxSwitchesItsTime_data();
    void keepAliveBoxSwitchesItsTime();
    void keepAliveHasBounds_data();
    void keepAliveHasBounds();
    void switchedOffKeepAliveKeepsTheStoredTime_data();
    void switchedOffKeepAliveKeepsTheStoredTime();
    void refusedReceiveTimeKeepsTheStoredSendTime();
    void lengthLimitsActOnTypedAndLoadedTexts_data();
    void lengthLimitsActOnTypedAndLoadedTexts();
    void gatewayNamesHaveNoLengthLimit();
    void lifetimeHasBounds_data();
    void lifetimeHasBounds();
    void negativePortCountsAsZero_data();
    void negativePortCountsAsZero();
    void refusalsMoveTheFocusBeforeTheMessage_data();
    void refusalsMoveTheFocusBeforeTheMessage();
    void refusedFieldKeepsTheOnesBehindIt_data();
    void refusedFieldKeepsTheOnesBehindIt();
    void authMethodIsLeftAlone();
};

void TstQVPNAdvPropertyIke::everyFieldIsLoaded()
{
    CustomInfo info = tellingRecord();
    inspect(info, [](QVPNAdvProperty& dialog) {
        QCOMPARE(indexOf(dialog, neg), 1);
        QCOMPARE(indexOf(dialog, idType), 1);
        QCOMPARE(indexOf(dialog, ikeAuth), 1);
        QCOMPARE(indexOf(dialog, "comboBox_IkeEncrypt"), 1);
        QCOMPARE(indexOf(dialog, "comboBox_DH"), 1);
        QCOMPARE(textOf(dialog, "lineEdit_IkePort"), QStringLiteral("4500"));
        QCOMPARE(textOf(dialog, "lineEdit_ISAKMPSA"), QStringLiteral("7654"));
        QCOMPARE(textOf(dialog, "lineEdit_LocalName"), QStringLiteral("local-a"));
        QCOMPARE(textOf(dialog, "lineEdit_PeerName"), QStringLiteral("peer-b"));
        QVERIFY(isOn(dialog, "checkBox_KeepAliveOn"));
        QCOMPARE(textOf(dialog, "lineEdit_TimeInterval"), QStringLiteral("33"));
        QVERIFY(isOn(dialog, "checkBox_KeepAliveTimeout"));
        QCOMPARE(textOf(dialog, "lineEdit_TimeOut"), QStringLiteral("44"));
    });
    info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("MD5");
    inspect(info, [](QVPNAdvProperty& dialog) { QCOMPARE(indexOf(dialog, ikeAuth), 0); });
}

void TstQVPNAdvPropertyIke::defaultsAreLoaded()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(indexOf(dialog, neg), 0);
        QCOMPARE(indexOf(dialog, idType), 0);
        QCOMPARE(indexOf(dialog, ikeAuth), 1);
        QCOMPARE(indexOf(dialog, "comboBox_IkeEncrypt"), 0);
        QCOMPARE(indexOf(dialog, "comboBox_DH"), 0);
        QCOMPARE(textOf(dialog, "lineEdit_IkePort"), QStringLiteral("500"));
        QCOMPARE(textOf(dialog, "lineEdit_ISAKMPSA"), QStringLiteral("86400"));
        QCOMPARE(textOf(dialog, "lineEdit_LocalName"), QString());
        QCOMPARE(textOf(dialog, "lineEdit_PeerName"), QString());
        QVERIFY(!isOn(dialog, "checkBox_KeepAliveOn"));
        QVERIFY(!isOn(dialog, "checkBox_KeepAliveTimeout"));
    });
}

void TstQVPNAdvPropertyIke::everyFieldIsStored()
{
    const Session session = pressOkAfter(CustomInfo(), [](QVPNAdvProperty& dialog) {
        choose(dialog, neg, 1);
        choose(dialog, idType, 1);
        choose(dialog, "comboBox_IkeEncrypt", 1);
        choose(dialog, "comboBox_DH", 1);
        type(dialog, "lineEdit_IkePort", QStringLiteral("5500"));
        type(dialog, "lineEdit_ISAKMPSA", QStringLiteral("61"));
        type(dialog, "lineEdit_LocalName", QStringLiteral("here"));
        type(dialog, "lineEdit_PeerName", QStringLiteral("there"));
        click(dialog, "checkBox_KeepAliveOn");
        type(dialog, "lineEdit_TimeInterval", QStringLiteral("21"));
        click(dialog, "checkBox_KeepAliveTimeout");
        type(dialog, "lineEdit_TimeOut", QStringLiteral("22"));
    });
    QCOMPARE(session.complaints, QStringList());
    const QStringList expected = {
        QStringLiteral("IKENegotiationMode: Main -> Aggressive"),
        QStringLiteral("IKEIDType: ip -> name"),
        QStringLiteral("IKEncryption: DES-CBC -> 3DES-CBC"),
        QStringLiteral("IKEAuthAlgorithm: SHA -> MD5"),
        QStringLiteral("IKEDiffeHellman: Group1 -> Group2"),
        QStringLiteral("IKEISAKMPLifetime: 86400 -> 61"),
        QStringLiteral("IKELocalName:  -> here"),
        QStringLiteral("IKERemoteName:  -> there"),
        QStringLiteral("IKESendKeepAlive: 0 -> 1"),
        QStringLiteral("IKESendInterval:  -> 21"),
        QStringLiteral("IKERecvKeepAlivePacket: 0 -> 1"),
        QStringLiteral("IKERecvPacketTimeOut:  -> 22"),
        QStringLiteral("IKEPort: 500 -> 5500"),
    };
    QCOMPARE(changes(CustomInfo(), session.info), expected);
}

void TstQVPNAdvPropertyIke::comboBoxesHaveTheirItems()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        QCOMPARE(itemsOf(dialog, neg), words("Main Aggressive"));
        QCOMPARE(itemsOf(dialog, idType), words("ip name"));
        QCOMPARE(itemsOf(dialog, ikeAuth), words("MD5 SHA"));
        QCOMPARE(itemsOf(dialog, "comboBox_IkeEncrypt"), words("DES-CBC 3DES-CBC"));
        QCOMPARE(itemsOf(dialog, "comboBox_DH"), words("Group1 Group2"));
    });
}

void TstQVPNAdvPropertyIke::everyChoiceIsLoadedAndStored_data()
{
    QTest::addColumn<QByteArray>("combo");
    QTest::addColumn<QString>("value");
    QTest::addColumn<int>("index");
    const struct
    {
        const char* combo;
        const char* values;
    } cases[] = {{neg, "Main Aggressive"},
                 {idType, "ip name"},
                 {"comboBox_IkeEncrypt", "DES-CBC 3DES-CBC"},
                 {"comboBox_DH", "Group1 Group2"}};
    for (const auto& row : cases) {
        const QStringList values = words(row.values);
        for (int index = 0; index < values.size(); ++index)
            QTest::addRow("%s %s", row.combo, qPrintable(values[index]))
                << QByteArray(row.combo) << values[index] << index;
    }
}

void TstQVPNAdvPropertyIke::everyChoiceIsLoadedAndStored()
{
    QFETCH(QByteArray, combo);
    QFETCH(QString, value);
    QFETCH(int, index);
    const QMap<QByteArray, QString IKECFG::*> fields = {{neg, &IKECFG::IKENegotiationMode},
                                                        {idType, &IKECFG::IKEIDType},
                                                        {"comboBox_IkeEncrypt", &IKECFG::IKEncryption},
                                                        {"comboBox_DH", &IKECFG::IKEDiffeHellman}};
    QString IKECFG::*const field = fields.value(combo);
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.*field = value;
    Session session =
        pressOkAfter(info, [&](QVPNAdvProperty& dialog) { QCOMPARE(indexOf(dialog, combo.constData()), index); });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.*field, value);

    info.vpn.ikecfg.*field = QStringLiteral("?");
    session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) { choose(dialog, combo.constData(), index); });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.*field, value);
}

void TstQVPNAdvPropertyIke::unknownTextsLeaveTheComboBoxesWhereTheyAre()
{
    CustomInfo info = tellingRecord();
    IKECFG& ike = info.vpn.ikecfg;
    ike.IKENegotiationMode = QStringLiteral("aggressive");
    ike.IKEIDType = QStringLiteral("Name");
    ike.IKEAuthAlgorithm = QStringLiteral("SHA256");
    ike.IKEncryption = QString();
    ike.IKEDiffeHellman = QStringLiteral("Group5");
    inspect(info, [](QVPNAdvProperty& dialog) {
        for (const char* combo : {neg, idType, ikeAuth, "comboBox_IkeEncrypt", "comboBox_DH"})
            QVERIFY2(indexOf(dialog, combo) == 0, combo);
        QCOMPARE(enabledOf(dialog, names()), QStringList());
    });
}

void TstQVPNAdvPropertyIke::ahAlgorithmDecidesTheIkeAlgorithm_data()
{
    QTest::addColumn<int>("ahIndex");
    QTest::addColumn<int>("ikeIndex");
    QTest::addColumn<QString>("stored");
    QTest::newRow("AH MD5, IKE MD5") << 0 << 0 << QStringLiteral("MD5");
    QTest::newRow("AH MD5, IKE SHA") << 0 << 1 << QStringLiteral("MD5");
    QTest::newRow("AH SHA, IKE MD5") << 1 << 0 << QStringLiteral("SHA");
    QTest::newRow("AH SHA, IKE SHA") << 1 << 1 << QStringLiteral("SHA");
    QTest::newRow("AH SHA256, IKE MD5") << 2 << 0 << QStringLiteral("SHA");
}

void TstQVPNAdvPropertyIke::ahAlgorithmDecidesTheIkeAlgorithm()
{
    QFETCH(int, ahIndex);
    QFETCH(int, ikeIndex);
    QFETCH(QString, stored);
    const Session session = pressOkAfter(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        choose(dialog, ahAuth, ahIndex);
        choose(dialog, ikeAuth, ikeIndex);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.IKEAuthAlgorithm, stored);
}

void TstQVPNAdvPropertyIke::modeAndIdTypeAtOpening_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("type");
    QTest::addColumn<bool>("isIdTypeFree");
    QTest::addColumn<bool>("areNamesFree");
    QTest::newRow("Main, ip") << QStringLiteral("Main") << QStringLiteral("ip") << false << false;
    QTest::newRow("Main, name opens the names") << QStringLiteral("Main") << QStringLiteral("name") << true << true;
    QTest::newRow("Aggressive, ip") << QStringLiteral("Aggressive") << QStringLiteral("ip") << true << false;
    QTest::newRow("Aggressive, name") << QStringLiteral("Aggressive") << QStringLiteral("name") << true << true;
}

void TstQVPNAdvPropertyIke::modeAndIdTypeAtOpening()
{
    QFETCH(QString, mode);
    QFETCH(QString, type);
    QFETCH(bool, isIdTypeFree);
    QFETCH(bool, areNamesFree);
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKENegotiationMode = mode;
    info.vpn.ikecfg.IKEIDType = type;
    const Session session = pressOkAfter(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(child<QComboBox>(dialog, neg)->currentText(), mode);
        QCOMPARE(child<QComboBox>(dialog, idType)->currentText(), type);
        QCOMPARE(enabledOf(dialog, words("comboBox_IkeNeg")), words("comboBox_IkeNeg"));
        QCOMPARE(!enabledOf(dialog, words("comboBox_IDType")).isEmpty(), isIdTypeFree);
        QCOMPARE(enabledOf(dialog, names()), areNamesFree ? names() : QStringList());
        QCOMPARE(textOf(dialog, "lineEdit_LocalName"), QStringLiteral("local-a"));
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(info, session.info), QStringList());
}

void TstQVPNAdvPropertyIke::mainModeLocksIdTypeAndNames()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        choose(dialog, neg, 0);
        QCOMPARE(indexOf(dialog, idType), 0);
        QCOMPARE(enabledOf(dialog, words("comboBox_IDType") + names()), QStringList());
    });
    // The ID type stands at "ip" already, so that only the mode can lock it.
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKEIDType = QStringLiteral("ip");
    inspect(info, [](QVPNAdvProperty& dialog) {
        choose(dialog, neg, 0);
        QCOMPARE(indexOf(dialog, idType), 0);
        QCOMPARE(enabledOf(dialog, words("comboBox_IDType") + names()), QStringList());
    });
}

void TstQVPNAdvPropertyIke::aggressiveModeFreesTheIdTypeOnly()
{
    inspect(CustomInfo(), [](QVPNAdvProperty& dialog) {
        choose(dialog, neg, 1);
        QCOMPARE(indexOf(dialog, idType), 0);
        QCOMPARE(enabledOf(dialog, words("comboBox_IDType") + names()), words("comboBox_IDType"));
    });
}

void TstQVPNAdvPropertyIke::aggressiveModeLeavesTheNamesAsTheIdTypeLeftThem()
{
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Main");
    inspect(info, [](QVPNAdvProperty& dialog) {
        choose(dialog, neg, 1);
        QCOMPARE(indexOf(dialog, idType), 1);
        QCOMPARE(enabledOf(dialog, names()), names());
    });
}

void TstQVPNAdvPropertyIke::idTypeSwitchesTheNames()
{
    inspect(tellingRecord(), [](QVPNAdvProperty& dialog) {
        choose(dialog, idType, 0);
        QCOMPARE(enabledOf(dialog, names()), QStringList());
        choose(dialog, idType, 1);
        QCOMPARE(enabledOf(dialog, names()), names());
    });
}

void TstQVPNAdvPropertyIke::natAtOpeningForcesAggressiveAndName_data()
{
    QTest::addColumn<quint64>("nat");
    QTest::newRow("1") << quint64(1);
    QTest::newRow("2 counts as on for this page") << quint64(2);
}

void TstQVPNAdvPropertyIke::natAtOpeningForcesAggressiveAndName()
{
    QFETCH(quint64, nat);
    CustomInfo info = tellingRecord();
    info.vpn.ipseccfg.IPSECUseNatTranversal = nat;
    info.vpn.ikecfg.IKENegotiationMode = QStringLiteral("Main");
    info.vpn.ikecfg.IKEIDType = QStringLiteral("ip");
    const Session session = pressOkAfter(info, [](QVPNAdvProperty& dialog) {
        QCOMPARE(indexOf(dialog, neg), 1);
        QCOMPARE(indexOf(dialog, idType), 1);
        QCOMPARE(enabledOf(dialog, words("comboBox_IkeNeg comboBox_IDType") + names()), QStringList());
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.IKENegotiationMode, QStringLiteral("Aggressive"));
    QCOMPARE(session.info.vpn.ikecfg.IKEIDType, QStringLiteral("name"));
}

void TstQVPNAdvPropertyIke::namesAreStoredOnlyWithTheIdTypeName()
{
    const auto typeNames = [](QVPNAdvProperty& dialog) {
        type(dialog, "lineEdit_LocalName", QStringLiteral("new local"));
        type(dialog, "lineEdit_PeerName", QStringLiteral("new peer"));
    };
    Session session = pressOkAfter(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        typeNames(dialog);
        choose(dialog, idType, 0);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(tellingRecord(), session.info), QStringList(QStringLiteral("IKEIDType: name -> ip")));

    session = pressOkAfter(tellingRecord(), typeNames);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.IKELocalName, QStringLiteral("new local"));
    QCOMPARE(session.info.vpn.ikecfg.IKERemoteName, QStringLiteral("new peer"));
}

void TstQVPNAdvPropertyIke::emptyNamesAreRefusedWithTheIdTypeName_data()
{
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("peer");
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QString>("focus");
    QTest::newRow("local") << QString() << QStringLiteral("new peer") << QByteArray("VUI_LocalGateName")
                           << QStringLiteral("lineEdit_LocalName");
    QTest::newRow("peer") << QStringLiteral("new local") << QString() << QByteArray("VUI_PeerGateName")
                          << QStringLiteral("lineEdit_PeerName");
    QTest::newRow("both") << QString() << QString() << QByteArray("VUI_LocalGateName")
                          << QStringLiteral("lineEdit_LocalName");
}

void TstQVPNAdvPropertyIke::emptyNamesAreRefusedWithTheIdTypeName()
{
    QFETCH(QString, local);
    QFETCH(QString, peer);
    QFETCH(QByteArray, key);
    QFETCH(QString, focus);
    const Session session = pressOkAfter(
        tellingRecord(),
        [&](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_LocalName", local);
            type(dialog, "lineEdit_PeerName", peer);
            child<QWidget>(dialog, ikeAuth)->setFocus();
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", key.constData());
    QCOMPARE(session.boxes.value(0).focus, focus);
    QCOMPARE(changes(tellingRecord(), session.info), QStringList());
}

void TstQVPNAdvPropertyIke::natAtOpeningWithoutNamesIsRefusedAtTheLocalName()
{
    CustomInfo info;
    info.vpn.ipseccfg.IPSECUseNatTranversal = 1;
    const Session session = pressOkAfter(
        info, [](QVPNAdvProperty&) {}, 1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_LocalGateName");
    QCOMPARE(session.result, int(QDialog::Accepted));
    QCOMPARE(changes(info, session.info), QStringList());
}

void TstQVPNAdvPropertyIke::natReminderComesLastAndTakesBackNothing_data()
{
    QTest::addColumn<QString>("local");
    QTest::addColumn<QString>("peer");
    QTest::newRow("no names") << QString() << QString();
    QTest::newRow("no local name") << QString() << QStringLiteral("peer-b");
    QTest::newRow("no peer name") << QStringLiteral("local-a") << QString();
}

void TstQVPNAdvPropertyIke::natReminderComesLastAndTakesBackNothing()
{
    QFETCH(QString, local);
    QFETCH(QString, peer);
    CustomInfo info;
    info.vpn.ikecfg.IKELocalName = local;
    info.vpn.ikecfg.IKERemoteName = peer;
    const Session session = pressOkAfter(
        info,
        [](QVPNAdvProperty& dialog) {
            click(dialog, "checkBox_UseNAT");
            type(dialog, "lineEdit_IkePort", QStringLiteral("501"));
            choose(dialog, "comboBox_DH", 1);
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputLocalPeerName");
    QVERIFY(!session.focus.contains(QStringLiteral("Name")));
    QCOMPARE(session.result, int(QDialog::Accepted));
    const QStringList expected = {
        QStringLiteral("IPSECUseNatTranversal: 0 -> 1"),
        QStringLiteral("IKEAuthAlgorithm: SHA -> MD5"),
        QStringLiteral("IKEDiffeHellman: Group1 -> Group2"),
        QStringLiteral("IKEPort: 500 -> 501"),
    };
    QCOMPARE(changes(info, session.info), expected);
}

void TstQVPNAdvPropertyIke::natReminderFollowsTheBoxAlsoWhenTheIpsecPageIsRefused()
{
    const Session session = pressOkAfter(
        CustomInfo(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_SaLifeTime", QStringLiteral("1"));
            click(dialog, "checkBox_UseNAT");
        },
        2);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputValidPLS");
    compareWarning(session.boxes.value(1), "VUI_AdvancedSettings", "VUI_InputLocalPeerName");
    QCOMPARE(session.info.vpn.ipseccfg.IPSECUseNatTranversal, quint64(0));
    QCOMPARE(changes(CustomInfo(), session.info), QStringList(QStringLiteral("IKEAuthAlgorithm: SHA -> MD5")));
}

void TstQVPNAdvPropertyIke::ahBoxDecidesAlsoWhenTheIpsecPageIsRefused()
{
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("MD5");
    info.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("MD5");
    const Session session = pressOkAfter(
        info,
        [](QVPNAdvProperty& dialog) {
            choose(dialog, "comboBox_AH_Auth", 1);
            type(dialog, "lineEdit_SaLifeTime", QStringLiteral("1"));
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(info, session.info), QStringList(QStringLiteral("IKEAuthAlgorithm: MD5 -> SHA")));
}

void TstQVPNAdvPropertyIke::natReminderIsSilentWithBothNames()
{
    CustomInfo info;
    info.vpn.ikecfg.IKELocalName = QStringLiteral("l");
    info.vpn.ikecfg.IKERemoteName = QStringLiteral("p");
    const Session session = pressOkAfter(info, [](QVPNAdvProperty& dialog) { click(dialog, "checkBox_UseNAT"); });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ipseccfg.IPSECUseNatTranversal, quint64(1));
}

void TstQVPNAdvPropertyIke::keepAliveIsLoaded_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<quint64>("flag");
    for (int which = 0; which < 2; ++which) {
        for (quint64 flag = 0; flag < 3; ++flag)
            QTest::addRow("%s %d", which == 0 ? "send" : "receive", int(flag)) << which << flag;
    }
}

void TstQVPNAdvPropertyIke::keepAliveIsLoaded()
{
    QFETCH(int, which);
    QFETCH(quint64, flag);
    const KeepAlive& pair = keepAlives[which];
    CustomInfo info;
    info.vpn.ikecfg.*pair.flag = flag;
    info.vpn.ikecfg.*pair.field = QStringLiteral("55");
    inspect(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(isOn(dialog, pair.box), flag != 0);
        QCOMPARE(textOf(dialog, pair.edit), flag != 0 ? QStringLiteral("55") : QString());
        QCOMPARE(enabledOf(dialog, pair.switched), flag != 0 ? pair.switched : QStringList());
        QCOMPARE(isOn(dialog, keepAlives[1 - which].box), false);
    });
}

void TstQVPNAdvPropertyIke::keepAliveBoxSwitchesItsTime_data()
{
    addKeepAliveRows();
}

void TstQVPNAdvPropertyIke::keepAliveBoxSwitchesItsTime()
{
    QFETCH(int, which);
    const KeepAlive& pair = keepAlives[which];
    inspect(CustomInfo(), [&](QVPNAdvProperty& dialog) {
        click(dialog, pair.box);
        QCOMPARE(enabledOf(dialog, pair.switched), pair.switched);
        QCOMPARE(enabledOf(dialog, keepAlives[1 - which].switched), QStringList());
        click(dialog, pair.box);
        QCOMPARE(enabledOf(dialog, pair.switched), QStringList());
    });
}

void TstQVPNAdvPropertyIke::keepAliveHasBounds_data()
{
    QTest::addColumn<int>("which");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isTaken");
    for (int which = 0; which < 2; ++which) {
        const char* name = which == 0 ? "send" : "receive";
        QTest::addRow("%s 19", name) << which << QStringLiteral("19") << false;
        QTest::addRow("%s 20", name) << which << QStringLiteral("20") << true;
        QTest::addRow("%s 28800", name) << which << QStringLiteral("28800") << true;
        QTest::addRow("%s 28801", name) << which << QStringLiteral("28801") << false;
        QTest::addRow("%s empty", name) << which << QString() << false;
        QTest::addRow("%s no number", name) << which << QStringLiteral("often") << false;
        QTest::addRow("%s negative", name) << which << QStringLiteral("-20") << false;
    }
}

void TstQVPNAdvPropertyIke::keepAliveHasBounds()
{
    QFETCH(int, which);
    QFETCH(QString, typed);
    QFETCH(bool, isTaken);
    const KeepAlive& pair = keepAlives[which];
    CustomInfo info;
    info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("MD5");
    const Session session = pressOkAfter(
        info,
        [&](QVPNAdvProperty& dialog) {
            click(dialog, pair.box);
            type(dialog, pair.edit, typed);
            child<QWidget>(dialog, ikeAuth)->setFocus();
        },
        isTaken ? 0 : 1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.*pair.flag, quint64(isTaken ? 1 : 0));
    QCOMPARE(session.info.vpn.ikecfg.*pair.field, isTaken ? typed : QString());
    if (!isTaken) {
        compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", pair.errorKey);
        QCOMPARE(session.boxes.value(0).focus, QString::fromLatin1(pair.edit));
    }
}

void TstQVPNAdvPropertyIke::switchedOffKeepAliveKeepsTheStoredTime_data()
{
    addKeepAliveRows();
}

void TstQVPNAdvPropertyIke::switchedOffKeepAliveKeepsTheStoredTime()
{
    QFETCH(int, which);
    const KeepAlive& pair = keepAlives[which];
    CustomInfo expected = tellingRecord();
    expected.vpn.ikecfg.*pair.flag = 0;
    const Session session = pressOkAfter(tellingRecord(), [&](QVPNAdvProperty& dialog) {
        type(dialog, pair.edit, QStringLiteral("1"));
        click(dialog, pair.box);
    });
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(expected, session.info), QStringList());
}

void TstQVPNAdvPropertyIke::refusedReceiveTimeKeepsTheStoredSendTime()
{
    const Session session = pressOkAfter(
        tellingRecord(),
        [](QVPNAdvProperty& dialog) {
            type(dialog, "lineEdit_TimeInterval", QStringLiteral("25"));
            type(dialog, "lineEdit_TimeOut", QStringLiteral("1"));
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(tellingRecord(), session.info), QStringList(QStringLiteral("IKESendInterval: 33 -> 25")));
}

void TstQVPNAdvPropertyIke::lengthLimitsActOnTypedAndLoadedTexts_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<int>("length");
    QTest::newRow("lifetime") << QByteArray("lineEdit_ISAKMPSA") << 6;
    QTest::newRow("interval") << QByteArray("lineEdit_TimeInterval") << 5;
    QTest::newRow("time-out") << QByteArray("lineEdit_TimeOut") << 5;
}

void TstQVPNAdvPropertyIke::lengthLimitsActOnTypedAndLoadedTexts()
{
    QFETCH(QByteArray, edit);
    QFETCH(int, length);
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKEISAKMPLifetime = QStringLiteral("12345678");
    info.vpn.ikecfg.IKESendInterval = QStringLiteral("12345678");
    info.vpn.ikecfg.IKERecvPacketTimeOut = QStringLiteral("12345678");
    inspect(info, [&](QVPNAdvProperty& dialog) {
        QCOMPARE(textOf(dialog, edit.constData()), QStringLiteral("12345678").left(length));
        type(dialog, edit.constData(), QStringLiteral("98765432"));
        QCOMPARE(textOf(dialog, edit.constData()), QStringLiteral("98765432").left(length));
    });
}

void TstQVPNAdvPropertyIke::gatewayNamesHaveNoLengthLimit()
{
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKELocalName = QString(300, QLatin1Char('l'));
    info.vpn.ikecfg.IKERemoteName = QString(300, QLatin1Char('p'));
    const Session session = pressOkAfter(info, [](QVPNAdvProperty&) {});
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(info, session.info), QStringList());
}

void TstQVPNAdvPropertyIke::lifetimeHasBounds_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isTaken");
    QTest::newRow("59") << QStringLiteral("59") << false;
    QTest::newRow("60") << QStringLiteral("60") << true;
    QTest::newRow("604800") << QStringLiteral("604800") << true;
    QTest::newRow("604801") << QStringLiteral("604801") << false;
    QTest::newRow("empty") << QString() << false;
    QTest::newRow("no number") << QStringLiteral("day") << false;
    QTest::newRow("negative") << QStringLiteral("-60") << false;
}

void TstQVPNAdvPropertyIke::lifetimeHasBounds()
{
    QFETCH(QString, typed);
    QFETCH(bool, isTaken);
    const Session session = pressOkAfter(
        tellingRecord(), [&](QVPNAdvProperty& dialog) { type(dialog, "lineEdit_ISAKMPSA", typed); }, isTaken ? 0 : 1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.IKEISAKMPLifetime, isTaken ? typed : QStringLiteral("7654"));
    if (!isTaken)
        compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputValidISAKMPSA");
}

void TstQVPNAdvPropertyIke::negativePortCountsAsZero_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<bool>("isTaken");
    QTest::addColumn<quint64>("stored");
    QTest::newRow("-1") << QStringLiteral("-1") << true << quint64(0);
    QTest::newRow("0") << QStringLiteral("0") << true << quint64(0);
    QTest::newRow("65535") << QStringLiteral("65535") << true << quint64(65535);
    QTest::newRow("65536") << QStringLiteral("65536") << false << quint64(4500);
    QTest::newRow("empty counts as 0") << QString() << true << quint64(0);
    QTest::newRow("no number counts as 0") << QStringLiteral("port") << true << quint64(0);
}

void TstQVPNAdvPropertyIke::negativePortCountsAsZero()
{
    QFETCH(QString, typed);
    QFETCH(bool, isTaken);
    QFETCH(quint64, stored);
    const Session session = pressOkAfter(
        tellingRecord(), [&](QVPNAdvProperty& dialog) { type(dialog, "lineEdit_IkePort", typed); }, isTaken ? 0 : 1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(session.info.vpn.ikecfg.IKEPort, stored);
    if (!isTaken)
        compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", "VUI_InputValidIKEPort");
}

void TstQVPNAdvPropertyIke::refusalsMoveTheFocusBeforeTheMessage_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QByteArray>("key");
    QTest::newRow("lifetime") << QByteArray("lineEdit_ISAKMPSA") << QStringLiteral("1")
                              << QByteArray("VUI_InputValidISAKMPSA");
    QTest::newRow("local name") << QByteArray("lineEdit_LocalName") << QString() << QByteArray("VUI_LocalGateName");
    QTest::newRow("peer name") << QByteArray("lineEdit_PeerName") << QString() << QByteArray("VUI_PeerGateName");
    QTest::newRow("send interval") << QByteArray("lineEdit_TimeInterval") << QStringLiteral("1")
                                   << QByteArray("VUI_SendKeepAliveTimerErr");
    QTest::newRow("receive time-out") << QByteArray("lineEdit_TimeOut") << QStringLiteral("1")
                                      << QByteArray("VUI_RecvKeepAliveTimerErr");
    QTest::newRow("port") << QByteArray("lineEdit_IkePort") << QStringLiteral("70000")
                          << QByteArray("VUI_InputValidIKEPort");
}

void TstQVPNAdvPropertyIke::refusalsMoveTheFocusBeforeTheMessage()
{
    QFETCH(QByteArray, edit);
    QFETCH(QString, typed);
    QFETCH(QByteArray, key);
    const Session session = pressOkAfter(
        tellingRecord(),
        [&](QVPNAdvProperty& dialog) {
            type(dialog, edit.constData(), typed);
            child<QWidget>(dialog, ikeAuth)->setFocus();
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    compareWarning(session.boxes.value(0), "VUI_AdvancedSettings", key.constData());
    QCOMPARE(session.boxes.value(0).focus, QString::fromLatin1(edit));
    QCOMPARE(session.result, int(QDialog::Accepted));
}

void TstQVPNAdvPropertyIke::refusedFieldKeepsTheOnesBehindIt_data()
{
    QTest::addColumn<QByteArray>("edit");
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QStringList>("stored");
    const QString lifetime = QStringLiteral("IKEISAKMPLifetime: 7654 -> 100");
    const QString local = QStringLiteral("IKELocalName: local-a -> new local");
    const QString interval = QStringLiteral("IKESendInterval: 33 -> 101");
    const QString timeOut = QStringLiteral("IKERecvPacketTimeOut: 44 -> 102");
    const QString algorithm = QStringLiteral("IKEAuthAlgorithm: MD5 -> SHA");
    const QString encryption = QStringLiteral("IKEncryption: 3DES-CBC -> DES-CBC");
    QTest::newRow("lifetime") << QByteArray("lineEdit_ISAKMPSA") << QStringLiteral("1") << QStringList();
    QTest::newRow("peer name") << QByteArray("lineEdit_PeerName") << QString() << QStringList(lifetime);
    QTest::newRow("send interval") << QByteArray("lineEdit_TimeInterval") << QStringLiteral("1")
                                   << QStringList({lifetime, local});
    QTest::newRow("receive time-out") << QByteArray("lineEdit_TimeOut") << QStringLiteral("1")
                                      << QStringList({lifetime, local, interval});
    QTest::newRow("port") << QByteArray("lineEdit_IkePort") << QStringLiteral("70000")
                          << QStringList({encryption, algorithm, lifetime, local, interval, timeOut});
}

void TstQVPNAdvPropertyIke::refusedFieldKeepsTheOnesBehindIt()
{
    QFETCH(QByteArray, edit);
    QFETCH(QString, typed);
    QFETCH(QStringList, stored);
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKEAuthAlgorithm = QStringLiteral("MD5");
    const Session session = pressOkAfter(
        info,
        [&](QVPNAdvProperty& dialog) {
            choose(dialog, "comboBox_IkeEncrypt", 0);
            type(dialog, "lineEdit_ISAKMPSA", QStringLiteral("100"));
            type(dialog, "lineEdit_LocalName", QStringLiteral("new local"));
            type(dialog, "lineEdit_TimeInterval", QStringLiteral("101"));
            type(dialog, "lineEdit_TimeOut", QStringLiteral("102"));
            type(dialog, edit.constData(), typed);
        },
        1);
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(info, session.info), stored);
}

void TstQVPNAdvPropertyIke::authMethodIsLeftAlone()
{
    CustomInfo info = tellingRecord();
    info.vpn.ikecfg.IKEAuthMethod = QStringLiteral("CA-Windows");
    const Session session = pressOkAfter(info, [](QVPNAdvProperty&) {});
    QCOMPARE(session.complaints, QStringList());
    QCOMPARE(changes(info, session.info), QStringList());
}

TEST_ENTRY(qvpnadvproperty_ike, runTest<TstQVPNAdvPropertyIke>)

#include "tst_qvpnadvproperty_ike.moc"
