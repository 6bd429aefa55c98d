#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "xml/XmlTestSupport.h"

#include <QtTest>

namespace {

struct Section
{
    const char* name;
    void (*format)(CustomXmlParser& parser, CustomInfo& record);
    int (*get)(CustomXmlParser& parser, const QString& path, CustomInfo& record);
    void (*take)(CustomInfo& record, const CustomInfo& source); // what the document carries of this section
    const char* distinct;                                       // of the distinct record
    const char* byDefault;                                      // of a record with its defaults
};

// @KEY@ and @PASSWORD@ stand for the enciphered texts.
const Section sections[] = {
    {"sslvpn", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLSslVpnInfo(record.sslvpn); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLSslVpnInfo(path, record.sslvpn);
     },
     [](CustomInfo& record, const CustomInfo& source) {
         record.sslvpn = source.sslvpn;
         for (SSLVPNRemoteInfo& gateway : record.sslvpn.remote)
             gateway.remoteSlot = 0;
     },
     R"(        <sslvpn>
            <remote>
                <remoteItem>
                    <ip>vpn.example.com</ip>
                    <port>4431</port>
                    <iPDes>北京网关</iPDes>
                </remoteItem>
                <remoteItem>
                    <ip>10.4.0.2</ip>
                    <port>4432</port>
                    <iPDes>second gateway</iPDes>
                </remoteItem>
                <remoteItem>
                    <ip>10.4.0.3</ip>
                    <port>4433</port>
                    <iPDes>上海网关</iPDes>
                </remoteItem>
            </remote>
            <defaultAddress>404</defaultAddress>
            <retryInterval>12</retryInterval>
            <retries>8</retries>
            <authMode>6</authMode>
            <authDefaultMode>405</authDefaultMode>
            <ulAuthType>11</ulAuthType>
            <authType>Local;AD;RADIUS</authType>
            <authDefaultType>AD</authDefaultType>
            <gatewayAuth>1</gatewayAuth>
            <getSmsVryCountdownValue>90</getSmsVryCountdownValue>
            <TLSVersion>406</TLSVersion>
            <edcode>1</edcode>
        </sslvpn>
)",
     R"(        <sslvpn>
            <remote/>
            <defaultAddress>0</defaultAddress>
            <retryInterval>5</retryInterval>
            <retries>3</retries>
            <authMode>7</authMode>
            <authDefaultMode>0</authDefaultMode>
            <ulAuthType>15</ulAuthType>
            <authType>Local;AD;LDAP;RADIUS</authType>
            <authDefaultType>RADIUS</authDefaultType>
            <gatewayAuth>0</gatewayAuth>
            <getSmsVryCountdownValue>60</getSmsVryCountdownValue>
            <TLSVersion>0</TLSVersion>
            <edcode>0</edcode>
        </sslvpn>
)"},

    {"vpn", [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatIpseVpnInfo(record.vpn); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLIpseVpnInfo(path, record.vpn);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.vpn = source.vpn; },
     R"(        <vpn>
            <autoAuth>601</autoAuth>
            <basecfg>
                <LNSIP>10.6.0.1</LNSIP>
                <LNSIPSecond>10.6.0.2</LNSIPSecond>
                <useIPSEC>602</useIPSEC>
                <useRSA>604</useRSA>
                <modifyAdvanced>606</modifyAdvanced>
                <forbidVirNIC>607</forbidVirNIC>
                <upVersion>605</upVersion>
                <resumConn>608</resumConn>
                <preSharedKey>@KEY@</preSharedKey>
                <LNSAsIPSECServer>603</LNSAsIPSECServer>
                <otherIPSECServer>10.6.0.3</otherIPSECServer>
            </basecfg>
            <l2tpcfg>
                <L2TPTunnelName>tunnel</L2TPTunnelName>
                <L2TPAuthMode>CHAP</L2TPAuthMode>
                <L2TPHelloInterval>61</L2TPHelloInterval>
                <L2TPUseTunnelPwd>609</L2TPUseTunnelPwd>
                <L2TPAVPHidden>610</L2TPAVPHidden>
                <L2TPTunnelPwd>@PASSWORD@</L2TPTunnelPwd>
                <L2TPPort>1702</L2TPPort>
            </l2tpcfg>
            <ipseccfg>
                <IPSECEncapsulationMode>Transport</IPSECEncapsulationMode>
                <IPSECSALifetime>3601</IPSECSALifetime>
                <IPSECSecurityProto>AH-ESP</IPSECSecurityProto>
                <IPSECESPAuthAlgorithm>SHA1</IPSECESPAuthAlgorithm>
                <IPSECESPEncryption>3DES</IPSECESPEncryption>
                <IPSECAHAuthAlgorithm>SHA256</IPSECAHAuthAlgorithm>
                <IPSECUseNatTranversal>611</IPSECUseNatTranversal>
                <IPSECPFS>768</IPSECPFS>
            </ipseccfg>
            <ikecfg>
                <IKENegotiationMode>Aggressive</IKENegotiationMode>
                <IKEIDType>name</IKEIDType>
                <IKEAuthMethod>CA-Windows</IKEAuthMethod>
                <IKEncryption>AES-CBC</IKEncryption>
                <IKEAuthAlgorithm>SHA-1</IKEAuthAlgorithm>
                <IKEDiffeHellman>Group2</IKEDiffeHellman>
                <IKEISAKMPLifetime>86401</IKEISAKMPLifetime>
                <IKELocalName>本地名称</IKELocalName>
                <IKERemoteName>remote name</IKERemoteName>
                <IKESendKeepAlive>612</IKESendKeepAlive>
                <IKESendInterval>21</IKESendInterval>
                <IKERecvKeepAlivePacket>613</IKERecvKeepAlivePacket>
                <IKERecvPacketTimeOut>62</IKERecvPacketTimeOut>
                <IKEPort>1501</IKEPort>
            </ikecfg>
        </vpn>
)",
     R"(        <vpn>
            <autoAuth>0</autoAuth>
            <basecfg>
                <LNSIP></LNSIP>
                <LNSIPSecond></LNSIPSecond>
                <useIPSEC>0</useIPSEC>
                <useRSA>0</useRSA>
                <modifyAdvanced>0</modifyAdvanced>
                <forbidVirNIC>0</forbidVirNIC>
                <upVersion>0</upVersion>
                <resumConn>0</resumConn>
                <preSharedKey>@NOKEY@</preSharedKey>
                <LNSAsIPSECServer>1</LNSAsIPSECServer>
                <otherIPSECServer></otherIPSECServer>
            </basecfg>
            <l2tpcfg>
                <L2TPTunnelName>vpn</L2TPTunnelName>
                <L2TPAuthMode>PAP</L2TPAuthMode>
                <L2TPHelloInterval>60</L2TPHelloInterval>
                <L2TPUseTunnelPwd>0</L2TPUseTunnelPwd>
                <L2TPAVPHidden>0</L2TPAVPHidden>
                <L2TPTunnelPwd>@NOPASSWORD@</L2TPTunnelPwd>
                <L2TPPort>1701</L2TPPort>
            </l2tpcfg>
            <ipseccfg>
                <IPSECEncapsulationMode>Tunnel</IPSECEncapsulationMode>
                <IPSECSALifetime>3600</IPSECSALifetime>
                <IPSECSecurityProto>ESP</IPSECSecurityProto>
                <IPSECESPAuthAlgorithm>MD5</IPSECESPAuthAlgorithm>
                <IPSECESPEncryption>DES</IPSECESPEncryption>
                <IPSECAHAuthAlgorithm>MD5</IPSECAHAuthAlgorithm>
                <IPSECUseNatTranversal>0</IPSECUseNatTranversal>
                <IPSECPFS>0</IPSECPFS>
            </ipseccfg>
            <ikecfg>
                <IKENegotiationMode>Main</IKENegotiationMode>
                <IKEIDType>ip</IKEIDType>
                <IKEAuthMethod>PRE-SHARE</IKEAuthMethod>
                <IKEncryption>DES-CBC</IKEncryption>
                <IKEAuthAlgorithm>SHA</IKEAuthAlgorithm>
                <IKEDiffeHellman>Group1</IKEDiffeHellman>
                <IKEISAKMPLifetime>86400</IKEISAKMPLifetime>
                <IKELocalName></IKELocalName>
                <IKERemoteName></IKERemoteName>
                <IKESendKeepAlive>0</IKESendKeepAlive>
                <IKESendInterval></IKESendInterval>
                <IKERecvKeepAlivePacket>0</IKERecvKeepAlivePacket>
                <IKERecvPacketTimeOut></IKERecvPacketTimeOut>
                <IKEPort>500</IKEPort>
            </ikecfg>
        </vpn>
)"},

    {"vpnroute",
     [](CustomXmlParser& parser, CustomInfo& record) { parser.FormatXMLIPSECVPNRouteInfo(record.vpnRoutes); },
     [](CustomXmlParser& parser, const QString& path, CustomInfo& record) {
         return parser.GetXMLIPSECVPNRouteInfo(path, record.vpnRoutes);
     },
     [](CustomInfo& record, const CustomInfo& source) { record.vpnRoutes = source.vpnRoutes; },
     R"(        <vpnroute>
            <vpnrouteItem>
                <ip>10.7.1.0</ip>
                <mask>255.255.255.0</mask>
            </vpnrouteItem>
            <vpnrouteItem>
                <ip>10.7.0.0</ip>
                <mask>255.255.0.0</mask>
            </vpnrouteItem>
            <vpnrouteItem>
                <ip>10.0.0.0</ip>
                <mask>255.0.0.0</mask>
            </vpnrouteItem>
        </vpnroute>
)",
     "        <vpnroute/>\n"},
};

QByteArray padded(const QByteArray& text, int length)
{
    return text.leftJustified(length, '\0', true);
}

QByteArray withSecrets(const char* text)
{
    return QByteArray(text)
        .replace("@KEY@", enciphered(padded("pre-shared 密钥", 128)))
        .replace("@PASSWORD@", enciphered(padded("tunnel 密码", 64)))
        .replace("@NOKEY@", enciphered(QByteArray(128, '\0')))
        .replace("@NOPASSWORD@", enciphered(QByteArray(64, '\0')));
}

void addRowForEachSection()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Section& section : sections)
        QTest::newRow(section.name) << number++;
}

QByteArray element(const char* name, const QByteArray& text)
{
    return "<" + QByteArray(name) + ">" + text + "</" + name + ">";
}

SSLVPNOptionsInfo readSslVpn(const QByteArray& children, SSLVPNOptionsInfo info = SSLVPNOptionsInfo())
{
    CustomXmlParser parser;
    parser.GetXMLSslVpnInfo(documentWith(element("sslvpn", children)), info);
    return info;
}

L2TP_IPSEC_VPN_OptionInfo readVpn(const QByteArray& children)
{
    CustomXmlParser parser;
    L2TP_IPSEC_VPN_OptionInfo info = distinctRecord().vpn;
    parser.GetXMLIpseVpnInfo(documentWith(element("vpn", children)), info);
    return info;
}

QVector<VPN_RouteInfo> readRoutes(const QByteArray& children)
{
    CustomXmlParser parser;
    QVector<VPN_RouteInfo> routes;
    parser.GetXMLIPSECVPNRouteInfo(documentWith(element("vpnroute", children)), routes);
    return routes;
}

/// One of the two enciphered fields.
struct Secret
{
    const char* group;
    const char* element;
    QString& (*of)(L2TP_IPSEC_VPN_OptionInfo& vpn);
    int plainLength;
    int cipherLength;
    int textLength;
};
const Secret secrets[] = {
    {"basecfg", "preSharedKey", [](L2TP_IPSEC_VPN_OptionInfo& vpn) -> QString& { return vpn.basecfg.preSharedKey; },
     128, 136, 184},
    {"l2tpcfg", "L2TPTunnelPwd", [](L2TP_IPSEC_VPN_OptionInfo& vpn) -> QString& { return vpn.l2tpcfg.L2TPTunnelPwd; },
     64, 72, 96},
};

QByteArray writtenSecret(const Secret& secret, const QString& value)
{
    L2TP_IPSEC_VPN_OptionInfo vpn;
    secret.of(vpn) = value;
    const QByteArray document = written([&](CustomXmlParser& parser) { parser.FormatIpseVpnInfo(vpn); });
    const int begin = document.indexOf("<" + QByteArray(secret.element) + ">") + int(strlen(secret.element)) + 2;
    return document.mid(begin, document.indexOf("</", begin) - begin);
}

QString readSecret(const Secret& secret, const QByteArray& text)
{
    L2TP_IPSEC_VPN_OptionInfo vpn = readVpn(element(secret.group, element(secret.element, text)));
    return secret.of(vpn);
}

void addRowForEachSecret()
{
    QTest::addColumn<int>("number");
    int number = 0;
    for (const Secret& secret : secrets)
        QTest::newRow(secret.element) << number++;
}

} // namespace

class TstVpnSections : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void distinctSectionIsWrittenByteForByte_data();
    void distinctSectionIsWrittenByteForByte();
    void defaultSectionIsWrittenByteForByte_data();
    void defaultSectionIsWrittenByteForByte();
    void literalSectionIsRead_data();
    void literalSectionIsRead();
    void wideNumberIsCutTo32BitsOnWriting_data();
    void wideNumberIsCutTo32BitsOnWriting();
    void numberFrom2To31UpIsWrittenNegativeAndReadsAsZero();
    void numberIsReadAs32Bits_data();
    void numberIsReadAs32Bits();
    void sectionsAreReadWhateverTheOrderOfTheirElements();

    void sslVpnWithoutElementsReadsAsZeroOrEmptyWithTwoFallbacks();
    void resumeConnOfSslVpnIsThrownAway();
    void countdownOfZeroReadsAsSixty_data();
    void countdownOfZeroReadsAsSixty();
    void emptyAuthTypeFallsBackAndTheMaskDoesNotFollow();
    void sslVpnFlagIsAnyNumberButZero_data();
    void sslVpnFlagIsAnyNumberButZero();
    void sslVpnWithoutGatewaysIsLegal();
    void gatewayWithoutPortHasAnEmptyPort();
    void gatewaysAreAppended();
    void gatewaysAreTheItemsOfTheFirstList();
    void gatewaysAreNotChecked();

    void vpnWithoutGroupsReadsAsZerosAndEmptyTexts();
    void missingGroupLosesItsDefaults_data();
    void missingGroupLosesItsDefaults();
    void missingVpnSectionKeepsTheDefaults();
    void elementsOutsideTheirGroupDoNotCount();
    void textsOfTheVpnPassThroughTheLocalCodec();

    void secretTakesAFixedNumberOfBytes_data();
    void secretTakesAFixedNumberOfBytes();
    void longSecretIsCutToItsLength_data();
    void longSecretIsCutToItsLength();
    void secretCutInTheMiddleOfACharacterEndsInAReplacement();
    void secretIsInTheLocalEncoding_data();
    void secretIsInTheLocalEncoding();
    void secretReadsUpToItsFirstZeroByte_data();
    void secretReadsUpToItsFirstZeroByte();
    void secretMayFillTheRoomOnReading_data();
    void secretMayFillTheRoomOnReading();
    void damagedSecretReadsAsEmpty_data();
    void damagedSecretReadsAsEmpty();

    void routesAreAppended();
    void routeWithoutElementsHasEmptyTexts();
    void routesAreTheItemsOfTheSection();
    void routeIsWrittenThroughTheLocalCodec();
};

void TstVpnSections::init()
{
    installation::clearLog();
    QFile::remove(documentPath());
}

void TstVpnSections::distinctSectionIsWrittenByteForByte_data()
{
    addRowForEachSection();
}

void TstVpnSections::distinctSectionIsWrittenByteForByte()
{
    QFETCH(int, number);
    CustomInfo record = distinctRecord();
    QCOMPARE(written([&](CustomXmlParser& parser) { sections[number].format(parser, record); }),
             frame(withSecrets(sections[number].distinct)));
}

void TstVpnSections::defaultSectionIsWrittenByteForByte_data()
{
    addRowForEachSection();
}

void TstVpnSections::defaultSectionIsWrittenByteForByte()
{
    QFETCH(int, number);
    CustomInfo record;
    QCOMPARE(written([&](CustomXmlParser& parser) { sections[number].format(parser, record); }),
             frame(withSecrets(sections[number].byDefault)));
}

void TstVpnSections::literalSectionIsRead_data()
{
    addRowForEachSection();
}

void TstVpnSections::literalSectionIsRead()
{
    QFETCH(int, number);
    CustomInfo record;
    CustomXmlParser parser;
    QCOMPARE(sections[number].get(parser, documentWith(withSecrets(sections[number].distinct)), record), 1);
    CustomInfo expected;
    sections[number].take(expected, distinctRecord());
    QCOMPARE(differences(record, expected), QStringList());
}

void TstVpnSections::wideNumberIsCutTo32BitsOnWriting_data()
{
    addRowForEachSection();
}

void TstVpnSections::wideNumberIsCutTo32BitsOnWriting()
{
    QFETCH(int, number);
    const quint64 high = quint64(0xABCD) << 32;
    CustomInfo record = distinctRecord();
    SSLVPNOptionsInfo& sslvpn = record.sslvpn;
    IPSECVPNBASECFG& base = record.vpn.basecfg;
    L2TPCFG& l2tp = record.vpn.l2tpcfg;
    IPSECCFG& ipsec = record.vpn.ipseccfg;
    IKECFG& ike = record.vpn.ikecfg;
    for (quint64* field : {&sslvpn.defaultAddress,
                           &sslvpn.retries,
                           &sslvpn.retryInterval,
                           &sslvpn.authMode,
                           &sslvpn.authDefaultMode,
                           &sslvpn.ulAuthType,
                           &sslvpn.getSmsVryCountdownValue,
                           &sslvpn.TLSVersion,
                           &record.vpn.autoAuth,
                           &base.useIPSEC,
                           &base.LNSAsIPSECServer,
                           &base.useRSA,
                           &base.upVersion,
                           &base.modifyAdvanced,
                           &base.forbidVirNIC,
                           &base.resumConn,
                           &l2tp.L2TPUseTunnelPwd,
                           &l2tp.L2TPAVPHidden,
                           &l2tp.L2TPPort,
                           &ipsec.IPSECUseNatTranversal,
                           &ipsec.IPSECPFS,
                           &ike.IKESendKeepAlive,
                           &ike.IKERecvKeepAlivePacket,
                           &ike.IKEPort})
        *field += high;
    QCOMPARE(written([&](CustomXmlParser& parser) { sections[number].format(parser, record); }),
             frame(withSecrets(sections[number].distinct)));
}

void TstVpnSections::numberFrom2To31UpIsWrittenNegativeAndReadsAsZero()
{
    CustomInfo record;
    record.sslvpn.retries = 2147483648;
    record.sslvpn.getSmsVryCountdownValue = 4294967295;
    record.vpn.autoAuth = 2147483647;
    record.vpn.ikecfg.IKEPort = 4294967286;
    const QByteArray document = written([&](CustomXmlParser& parser) {
        parser.FormatXMLSslVpnInfo(record.sslvpn);
        parser.FormatIpseVpnInfo(record.vpn);
    });
    QVERIFY(document.contains("<retries>-2147483648</retries>"));
    QVERIFY(document.contains("<getSmsVryCountdownValue>-1</getSmsVryCountdownValue>"));
    QVERIFY(document.contains("<autoAuth>2147483647</autoAuth>"));
    QVERIFY(document.contains("<IKEPort>-10</IKEPort>"));
    CustomInfo read;
    CustomXmlParser parser;
    parser.GetXMLSslVpnInfo(documentPath(), read.sslvpn);
    parser.GetXMLIpseVpnInfo(documentPath(), read.vpn);
    QCOMPARE(read.sslvpn.retries, quint64(0));
    QCOMPARE(read.sslvpn.getSmsVryCountdownValue, quint64(60));
    QCOMPARE(read.vpn.autoAuth, quint64(2147483647));
    QCOMPARE(read.vpn.ikecfg.IKEPort, quint64(0));
}

void TstVpnSections::numberIsReadAs32Bits_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint64>("number");
    QTest::newRow("decimal") << QByteArray("1701") << quint64(1701);
    QTest::newRow("largest") << QByteArray("4294967295") << quint64(4294967295);
    QTest::newRow("beyond 32 bits") << QByteArray("4294967297") << quint64(0);
    QTest::newRow("negative") << QByteArray("-5") << quint64(0);
    QTest::newRow("no number") << QByteArray("abc") << quint64(0);
}

void TstVpnSections::numberIsReadAs32Bits()
{
    QFETCH(QByteArray, text);
    QFETCH(quint64, number);
    QCOMPARE(readSslVpn(element("defaultAddress", text)).defaultAddress, number);
    const L2TP_IPSEC_VPN_OptionInfo vpn =
        readVpn(element("autoAuth", text) + element("basecfg", element("LNSAsIPSECServer", text)) +
                element("l2tpcfg", element("L2TPPort", text)) + element("ipseccfg", element("IPSECPFS", text)) +
                element("ikecfg", element("IKEPort", text)));
    QCOMPARE(vpn.autoAuth, number);
    QCOMPARE(vpn.basecfg.LNSAsIPSECServer, number);
    QCOMPARE(vpn.l2tpcfg.L2TPPort, number);
    QCOMPARE(vpn.ipseccfg.IPSECPFS, number);
    QCOMPARE(vpn.ikecfg.IKEPort, number);
}

void TstVpnSections::sectionsAreReadWhateverTheOrderOfTheirElements()
{
    const SSLVPNOptionsInfo sslvpn =
        readSslVpn("<edcode>1</edcode><authType>AD</authType><retries>9</retries><remote><remoteItem>"
                   "<iPDes>name</iPDes><port>1</port><ip>2</ip></remoteItem></remote>"
                   "<getSmsVryCountdownValue>7</getSmsVryCountdownValue>");
    QCOMPARE(sslvpn.edcode, true);
    QCOMPARE(sslvpn.authType, QStringLiteral("AD"));
    QCOMPARE(sslvpn.retries, quint64(9));
    QCOMPARE(sslvpn.getSmsVryCountdownValue, quint64(7));
    QCOMPARE(sslvpn.remote.size(), 1);
    QCOMPARE(sslvpn.remote.at(0).iPDes, QStringLiteral("name"));
    QCOMPARE(sslvpn.remote.at(0).port, QStringLiteral("1"));
    QCOMPARE(sslvpn.remote.at(0).ip, QStringLiteral("2"));

    const L2TP_IPSEC_VPN_OptionInfo vpn =
        readVpn("<ikecfg><IKEPort>1</IKEPort><IKEIDType>id</IKEIDType></ikecfg>"
                "<l2tpcfg><L2TPPort>2</L2TPPort></l2tpcfg><ipseccfg><IPSECPFS>3</IPSECPFS></ipseccfg>"
                "<basecfg><otherIPSECServer>4</otherIPSECServer></basecfg><autoAuth>5</autoAuth>");
    QCOMPARE(vpn.ikecfg.IKEPort, quint64(1));
    QCOMPARE(vpn.ikecfg.IKEIDType, QStringLiteral("id"));
    QCOMPARE(vpn.l2tpcfg.L2TPPort, quint64(2));
    QCOMPARE(vpn.ipseccfg.IPSECPFS, quint64(3));
    QCOMPARE(vpn.basecfg.otherIPSECServer, QStringLiteral("4"));
    QCOMPARE(vpn.autoAuth, quint64(5));

    const QVector<VPN_RouteInfo> routes = readRoutes("<vpnrouteItem><mask>1</mask><ip>2</ip></vpnrouteItem>");
    QCOMPARE(routes.size(), 1);
    QCOMPARE(routes.at(0).mask, QStringLiteral("1"));
    QCOMPARE(routes.at(0).ip, QStringLiteral("2"));
}

void TstVpnSections::sslVpnWithoutElementsReadsAsZeroOrEmptyWithTwoFallbacks()
{
    CustomInfo record = distinctRecord();
    record.sslvpn = readSslVpn("<other/>", record.sslvpn);
    CustomInfo expected = distinctRecord();
    expected.sslvpn.defaultAddress = expected.sslvpn.retries = expected.sslvpn.retryInterval = 0;
    expected.sslvpn.authMode = expected.sslvpn.authDefaultMode = expected.sslvpn.ulAuthType = 0;
    expected.sslvpn.TLSVersion = 0;
    expected.sslvpn.authType = QStringLiteral("Local;AD;LDAP;RADIUS");
    expected.sslvpn.authDefaultType.clear();
    expected.sslvpn.gatewayAuth = expected.sslvpn.edcode = false;
    expected.sslvpn.getSmsVryCountdownValue = 60;
    QCOMPARE(differences(record, expected), QStringList());
}

void TstVpnSections::resumeConnOfSslVpnIsThrownAway()
{
    CustomInfo with;
    with.sslvpn = readSslVpn("<resumeConn>9</resumeConn><retries>2</retries>");
    CustomInfo without;
    without.sslvpn = readSslVpn("<retries>2</retries>");
    QCOMPARE(differences(with, without), QStringList());
    QVERIFY(!written([](CustomXmlParser& parser) {
                 parser.FormatXMLSslVpnInfo(distinctRecord().sslvpn);
             }).contains("resumeConn"));
}

void TstVpnSections::countdownOfZeroReadsAsSixty_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint64>("seconds");
    QTest::newRow("0") << QByteArray("0") << quint64(60);
    QTest::newRow("empty") << QByteArray() << quint64(60);
    QTest::newRow("no number") << QByteArray("abc") << quint64(60);
    QTest::newRow("negative") << QByteArray("-1") << quint64(60);
    QTest::newRow("1") << QByteArray("1") << quint64(1);
    QTest::newRow("180") << QByteArray("180") << quint64(180);
    QTest::newRow("out of its range") << QByteArray("9999") << quint64(9999);
}

void TstVpnSections::countdownOfZeroReadsAsSixty()
{
    QFETCH(QByteArray, text);
    QFETCH(quint64, seconds);
    SSLVPNOptionsInfo former;
    former.getSmsVryCountdownValue = 90;
    QCOMPARE(readSslVpn(element("getSmsVryCountdownValue", text), former).getSmsVryCountdownValue, seconds);
}

void TstVpnSections::emptyAuthTypeFallsBackAndTheMaskDoesNotFollow()
{
    const SSLVPNOptionsInfo empty = readSslVpn("<ulAuthType>3</ulAuthType><authType></authType>");
    QCOMPARE(empty.authType, QStringLiteral("Local;AD;LDAP;RADIUS"));
    QCOMPARE(empty.ulAuthType, quint64(3));
    QCOMPARE(empty.authDefaultType, QString());

    const SSLVPNOptionsInfo missing = readSslVpn("<authDefaultType>AD</authDefaultType>");
    QCOMPARE(missing.authType, QStringLiteral("Local;AD;LDAP;RADIUS"));
    QCOMPARE(missing.ulAuthType, quint64(0));
    QCOMPARE(missing.authDefaultType, QStringLiteral("AD"));

    const SSLVPNOptionsInfo other = readSslVpn("<ulAuthType>15</ulAuthType><authType>any 文</authType>");
    QCOMPARE(other.authType, QStringLiteral("any 文"));
    QCOMPARE(other.ulAuthType, quint64(15));
}

void TstVpnSections::sslVpnFlagIsAnyNumberButZero_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<bool>("flag");
    QTest::newRow("1") << QByteArray("1") << true;
    QTest::newRow("2") << QByteArray("2") << true;
    QTest::newRow("0") << QByteArray("0") << false;
    QTest::newRow("empty") << QByteArray() << false;
    QTest::newRow("true") << QByteArray("true") << false;
    QTest::newRow("-1") << QByteArray("-1") << false;
}

void TstVpnSections::sslVpnFlagIsAnyNumberButZero()
{
    QFETCH(QByteArray, text);
    QFETCH(bool, flag);
    for (const bool former : {false, true}) {
        SSLVPNOptionsInfo info;
        info.gatewayAuth = info.edcode = former;
        info = readSslVpn(element("gatewayAuth", text), info);
        QCOMPARE(info.gatewayAuth, flag);
        QCOMPARE(info.edcode, false);
        info.edcode = former;
        info = readSslVpn(element("edcode", text), info);
        QCOMPARE(info.edcode, flag);
        QCOMPARE(info.gatewayAuth, false);
    }
}

void TstVpnSections::sslVpnWithoutGatewaysIsLegal()
{
    CustomInfo record;
    written([&](CustomXmlParser& parser) { parser.FormatXMLSslVpnInfo(record.sslvpn); });
    CustomInfo read;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLSslVpnInfo(documentPath(), read.sslvpn), 1);
    QCOMPARE(differences(read, record), QStringList());
    QCOMPARE(read.sslvpn.defaultAddress, quint64(0));
}

void TstVpnSections::gatewayWithoutPortHasAnEmptyPort()
{
    const SSLVPNOptionsInfo info = readSslVpn(
        "<remote><remoteItem><ip>10.0.0.1</ip></remoteItem><remoteItem/><remoteItem><port/></remoteItem></remote>");
    QCOMPARE(info.remote.size(), 3);
    QCOMPARE(info.remote.at(0).ip, QStringLiteral("10.0.0.1"));
    for (const SSLVPNRemoteInfo& gateway : info.remote) {
        QCOMPARE(gateway.port, QString());
        QCOMPARE(gateway.iPDes, QString());
        QCOMPARE(gateway.remoteSlot, quint64(0));
    }
}

void TstVpnSections::gatewaysAreAppended()
{
    SSLVPNOptionsInfo former = distinctRecord().sslvpn;
    former = readSslVpn("<remote><remoteItem><ip>new</ip></remoteItem></remote>", former);
    QCOMPARE(former.remote.size(), 4);
    QCOMPARE(former.remote.at(0).remoteSlot, quint64(401));
    QCOMPARE(former.remote.at(2).ip, QStringLiteral("10.4.0.3"));
    QCOMPARE(former.remote.at(3).ip, QStringLiteral("new"));
}

void TstVpnSections::gatewaysAreTheItemsOfTheFirstList()
{
    const SSLVPNOptionsInfo info =
        readSslVpn("<remoteItem><ip>outside</ip></remoteItem><remote>text<other/><remoteItem><ip>1</ip></remoteItem>"
                   "<other><remoteItem/></other><remoteItem><ip>2</ip></remoteItem></remote>"
                   "<remote><remoteItem><ip>3</ip></remoteItem></remote>");
    QCOMPARE(info.remote.size(), 2);
    QCOMPARE(info.remote.at(0).ip, QStringLiteral("1"));
    QCOMPARE(info.remote.at(1).ip, QStringLiteral("2"));
}

void TstVpnSections::gatewaysAreNotChecked()
{
    const SSLVPNOptionsInfo info =
        readSslVpn("<remote><remoteItem><ip>no address</ip><port>99999</port><iPDes>同</iPDes></remoteItem>"
                   "<remoteItem><ip>no address</ip><port>99999</port><iPDes>同</iPDes></remoteItem></remote>"
                   "<defaultAddress>77</defaultAddress>");
    QCOMPARE(info.remote.size(), 2);
    QCOMPARE(info.remote.at(1).port, QStringLiteral("99999"));
    QCOMPARE(info.defaultAddress, quint64(77));
}

void TstVpnSections::vpnWithoutGroupsReadsAsZerosAndEmptyTexts()
{
    CustomInfo record;
    record.vpn = readVpn("<other/>");
    CustomInfo expected;
    expected.vpn.basecfg.LNSAsIPSECServer = 0;
    expected.vpn.l2tpcfg = {QString(), QString(), QString(), 0, 0, QString(), 0};
    expected.vpn.ipseccfg = {QString(), QString(), QString(), QString(), QString(), QString(), 0, 0};
    expected.vpn.ikecfg = {QString(), QString(), QString(), QString(), QString(), QString(), QString(),
                           QString(), QString(), 0,         QString(), 0,         QString(), 0};
    QCOMPARE(differences(record, expected), QStringList());
}

void TstVpnSections::missingGroupLosesItsDefaults_data()
{
    QTest::addColumn<QString>("group");
    for (const char* group : {"basecfg", "l2tpcfg", "ipseccfg", "ikecfg"})
        QTest::newRow(group) << QString::fromLatin1(group);
}

void TstVpnSections::missingGroupLosesItsDefaults()
{
    QFETCH(QString, group);
    // The document of the distinct record less one group, read over that record.
    QByteArray document = frame(withSecrets(sections[1].distinct));
    const QByteArray end = "</" + group.toLatin1() + ">";
    const int begin = document.indexOf("<" + group.toLatin1() + ">");
    document.remove(begin, document.indexOf(end) + end.size() - begin);
    CustomInfo record = distinctRecord();
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLIpseVpnInfo(documentOf(document), record.vpn), 1);

    CustomInfo nothing;
    nothing.vpn = readVpn("<other/>");
    const QString prefix = QLatin1String("vpn/") + group + QLatin1Char('/');
    const QStringList lost = differences(record, distinctRecord());
    QCOMPARE(lost, differences(nothing, distinctRecord()).filter(prefix));
    QVERIFY(!lost.isEmpty());
    QVERIFY(differences(record, nothing).filter(prefix).isEmpty());
    if (group == QLatin1String("ikecfg")) {
        QCOMPARE(record.vpn.ikecfg.IKEAuthMethod, QString());
        QCOMPARE(record.vpn.ikecfg.IKEPort, quint64(0));
    }
}

void TstVpnSections::missingVpnSectionKeepsTheDefaults()
{
    CustomInfo record;
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLIpseVpnInfo(documentWith("<vpnroute/>"), record.vpn), 1);
    QCOMPARE(record.vpn.ikecfg.IKEAuthMethod, QStringLiteral("PRE-SHARE"));
    QCOMPARE(record.vpn.ikecfg.IKEPort, quint64(500));
    QCOMPARE(differences(record, CustomInfo()), QStringList());
}

void TstVpnSections::elementsOutsideTheirGroupDoNotCount()
{
    const L2TP_IPSEC_VPN_OptionInfo vpn =
        readVpn("<LNSIP>1</LNSIP><ikecfg><LNSIP>2</LNSIP><autoAuth>3</autoAuth><basecfg><LNSIP>4</LNSIP></basecfg>"
                "</ikecfg><basecfg><IKEPort>5</IKEPort></basecfg><basecfg><LNSIP>6</LNSIP></basecfg>");
    QCOMPARE(vpn.basecfg.LNSIP, QString());
    QCOMPARE(vpn.autoAuth, quint64(0));
    QCOMPARE(vpn.ikecfg.IKEPort, quint64(0));
}

void TstVpnSections::textsOfTheVpnPassThroughTheLocalCodec()
{
    const LocaleCodec codec(s_latin1);
    CustomInfo record;
    IPSECVPNBASECFG& base = record.vpn.basecfg;
    L2TPCFG& l2tp = record.vpn.l2tpcfg;
    IPSECCFG& ipsec = record.vpn.ipseccfg;
    IKECFG& ike = record.vpn.ikecfg;
    for (QString* text : {&base.LNSIP,
                          &base.LNSIPSecond,
                          &base.otherIPSECServer,
                          &l2tp.L2TPTunnelName,
                          &l2tp.L2TPAuthMode,
                          &l2tp.L2TPHelloInterval,
                          &ipsec.IPSECEncapsulationMode,
                          &ipsec.IPSECSALifetime,
                          &ipsec.IPSECSecurityProto,
                          &ipsec.IPSECESPAuthAlgorithm,
                          &ipsec.IPSECESPEncryption,
                          &ipsec.IPSECAHAuthAlgorithm,
                          &ike.IKENegotiationMode,
                          &ike.IKEIDType,
                          &ike.IKEAuthMethod,
                          &ike.IKEncryption,
                          &ike.IKEAuthAlgorithm,
                          &ike.IKEDiffeHellman,
                          &ike.IKEISAKMPLifetime,
                          &ike.IKELocalName,
                          &ike.IKERemoteName,
                          &ike.IKESendInterval,
                          &ike.IKERecvPacketTimeOut,
                          &record.sslvpn.authType,
                          &record.sslvpn.authDefaultType})
        *text = QStringLiteral("é");
    SSLVPNRemoteInfo gateway;
    gateway.ip = gateway.port = gateway.iPDes = QStringLiteral("é");
    record.sslvpn.remote.append(gateway);
    const QByteArray document = written([&](CustomXmlParser& parser) {
        parser.FormatXMLSslVpnInfo(record.sslvpn);
        parser.FormatIpseVpnInfo(record.vpn);
    });
    for (const char* name : {"LNSIP",
                             "LNSIPSecond",
                             "otherIPSECServer",
                             "L2TPTunnelName",
                             "L2TPAuthMode",
                             "L2TPHelloInterval",
                             "IPSECEncapsulationMode",
                             "IPSECSALifetime",
                             "IPSECSecurityProto",
                             "IPSECESPAuthAlgorithm",
                             "IPSECESPEncryption",
                             "IPSECAHAuthAlgorithm",
                             "IKENegotiationMode",
                             "IKEIDType",
                             "IKEAuthMethod",
                             "IKEncryption",
                             "IKEAuthAlgorithm",
                             "IKEDiffeHellman",
                             "IKEISAKMPLifetime",
                             "IKELocalName",
                             "IKERemoteName",
                             "IKESendInterval",
                             "IKERecvPacketTimeOut"})
        QVERIFY2(document.contains(element(name, "Ã©")), name);
    for (const char* name : {"ip", "port", "iPDes", "authType", "authDefaultType"})
        QVERIFY2(document.contains(element(name, "é")), name);
    CustomInfo read;
    CustomXmlParser parser;
    parser.GetXMLIpseVpnInfo(documentPath(), read.vpn);
    QCOMPARE(read.vpn.ikecfg.IKELocalName, QStringLiteral("Ã©"));
}

void TstVpnSections::secretTakesAFixedNumberOfBytes_data()
{
    addRowForEachSecret();
}

void TstVpnSections::secretTakesAFixedNumberOfBytes()
{
    QFETCH(int, number);
    const Secret& secret = secrets[number];
    for (const QString& value :
         {QString(), QStringLiteral("x"), QStringLiteral("密钥"), QString(secret.plainLength - 1, QLatin1Char('p')),
          QString(secret.plainLength, QLatin1Char('p'))}) {
        const QByteArray text = writtenSecret(secret, value);
        QCOMPARE(text.size(), secret.textLength);
        QCOMPARE(QByteArray::fromBase64(text).size(), secret.cipherLength);
        QCOMPARE(deciphered(text), padded(value.toUtf8(), secret.plainLength));
        QCOMPARE(text, enciphered(padded(value.toUtf8(), secret.plainLength)));
        QCOMPARE(readSecret(secret, text), value);
    }
}

void TstVpnSections::longSecretIsCutToItsLength_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("length");
    QTest::newRow("pre-shared key of 128 bytes") << 0 << 128;
    QTest::newRow("pre-shared key of 129 bytes") << 0 << 129;
    QTest::newRow("pre-shared key of 200 bytes") << 0 << 200;
    QTest::newRow("pre-shared key of 5000 bytes") << 0 << 5000;
    QTest::newRow("tunnel password of 64 bytes") << 1 << 64;
    QTest::newRow("tunnel password of 65 bytes") << 1 << 65;
    QTest::newRow("tunnel password of 70 bytes") << 1 << 70;
}

void TstVpnSections::longSecretIsCutToItsLength()
{
    QFETCH(int, number);
    QFETCH(int, length);
    QString value;
    for (int i = 0; i < length; ++i)
        value.append(QLatin1Char(char('a' + i % 26)));
    const Secret& secret = secrets[number];
    const QByteArray text = writtenSecret(secret, value);
    QCOMPARE(text.size(), secret.textLength);
    QCOMPARE(deciphered(text), value.left(secret.plainLength).toLatin1());
    QCOMPARE(readSecret(secret, text), value.left(secret.plainLength));
}

void TstVpnSections::secretCutInTheMiddleOfACharacterEndsInAReplacement()
{
    // 126 bytes, and the first two of three
    const QString value = QString(126, QLatin1Char('k')) + QStringLiteral("密");
    const QByteArray text = writtenSecret(secrets[0], value);
    QCOMPARE(deciphered(text), value.toUtf8().left(128));
    const QString read = readSecret(secrets[0], text);
    QCOMPARE(read.left(126), QString(126, QLatin1Char('k')));
    QVERIFY(read.midRef(126).contains(QChar(QChar::ReplacementCharacter)));
}

void TstVpnSections::secretIsInTheLocalEncoding_data()
{
    addRowForEachSecret();
}

void TstVpnSections::secretIsInTheLocalEncoding()
{
    QFETCH(int, number);
    const Secret& secret = secrets[number];
    const LocaleCodec codec(s_latin1);
    const QByteArray text = writtenSecret(secret, QStringLiteral("é1"));
    QCOMPARE(deciphered(text), padded("\xE9"
                                      "1",
                                      secret.plainLength));
    QCOMPARE(readSecret(secret, text), QStringLiteral("é1"));
    QCOMPARE(deciphered(writtenSecret(secret, QStringLiteral("密1"))), padded("?1", secret.plainLength));
}

void TstVpnSections::secretReadsUpToItsFirstZeroByte_data()
{
    addRowForEachSecret();
}

void TstVpnSections::secretReadsUpToItsFirstZeroByte()
{
    QFETCH(int, number);
    QCOMPARE(readSecret(secrets[number], enciphered(QByteArray("ab\0cd", 5))), QStringLiteral("ab"));
    QCOMPARE(readSecret(secrets[number], enciphered(QByteArray("\0cd", 3))), QString());
    // A secret with a NUL keeps what stands before it.
    const QString value = QStringLiteral("ab") + QChar(0) + QStringLiteral("cd");
    QCOMPARE(readSecret(secrets[number], writtenSecret(secrets[number], value)), QStringLiteral("ab"));
}

void TstVpnSections::secretMayFillTheRoomOnReading_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<int>("length");
    QTest::addColumn<bool>("fits");
    for (const int number : {0, 1}) {
        for (const int length : {1, 64, 65, 128, 129, 255, 256})
            QTest::addRow("%s of %d bytes", secrets[number].element, length) << number << length << true;
        for (const int length : {257, 263, 264, 1000})
            QTest::addRow("%s of %d bytes", secrets[number].element, length) << number << length << false;
    }
}

void TstVpnSections::secretMayFillTheRoomOnReading()
{
    QFETCH(int, number);
    QFETCH(int, length);
    QFETCH(bool, fits);
    const QByteArray plain(length, 's');
    QCOMPARE(readSecret(secrets[number], enciphered(plain)), fits ? QString::fromLatin1(plain) : QString());
}

void TstVpnSections::damagedSecretReadsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("text");
    const QByteArray good = enciphered(padded("secret", 128));
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("in clear") << QByteArray("secret");
    QTest::newRow("no base64") << QByteArray("????");
    QTest::newRow("Chinese") << QByteArray("密钥密钥");
    QTest::newRow("one character less") << good.chopped(1);
    QTest::newRow("four characters less") << good.chopped(4);
    QTest::newRow("line feed at the end") << good + '\n';
    QTest::newRow("megabyte") << QByteArray(1 << 20, 'A');
}

void TstVpnSections::damagedSecretReadsAsEmpty()
{
    QFETCH(QByteArray, text);
    for (const Secret& secret : secrets)
        QCOMPARE(readSecret(secret, text), QString());
    QCOMPARE(installation::log(), QByteArray());
}

void TstVpnSections::routesAreAppended()
{
    CustomInfo record = distinctRecord();
    CustomXmlParser parser;
    QCOMPARE(parser.GetXMLIPSECVPNRouteInfo(
                 documentWith("<vpnroute><vpnrouteItem><ip>new</ip></vpnrouteItem></vpnroute>"), record.vpnRoutes),
             1);
    QCOMPARE(record.vpnRoutes.size(), 4);
    QCOMPARE(record.vpnRoutes.at(0).ip, QStringLiteral("10.7.1.0"));
    QCOMPARE(record.vpnRoutes.at(3).ip, QStringLiteral("new"));
    QCOMPARE(parser.GetXMLIPSECVPNRouteInfo(documentWith("<vpnroute/>"), record.vpnRoutes), 1);
    QCOMPARE(record.vpnRoutes.size(), 4);
}

void TstVpnSections::routeWithoutElementsHasEmptyTexts()
{
    const QVector<VPN_RouteInfo> routes =
        readRoutes("<vpnrouteItem/><vpnrouteItem><mask>255.0.0.0</mask></vpnrouteItem>");
    QCOMPARE(routes.size(), 2);
    QCOMPARE(routes.at(0).ip, QString());
    QCOMPARE(routes.at(0).mask, QString());
    QCOMPARE(routes.at(1).ip, QString());
    QCOMPARE(routes.at(1).mask, QStringLiteral("255.0.0.0"));
}

void TstVpnSections::routesAreTheItemsOfTheSection()
{
    const QVector<VPN_RouteInfo> routes =
        readRoutes("text<other/><vpnrouteItem><ip>1</ip></vpnrouteItem><other><vpnrouteItem/></other>"
                   "<vpnrouteItem><ip>2</ip><mask>no mask</mask></vpnrouteItem>");
    QCOMPARE(routes.size(), 2);
    QCOMPARE(routes.at(0).ip, QStringLiteral("1"));
    QCOMPARE(routes.at(1).mask, QStringLiteral("no mask"));
}

void TstVpnSections::routeIsWrittenThroughTheLocalCodec()
{
    QVector<VPN_RouteInfo> routes = {{QStringLiteral("é"), QStringLiteral("ü")}};
    const auto format = [&](CustomXmlParser& parser) { parser.FormatXMLIPSECVPNRouteInfo(routes); };
    CustomXmlParser parser;
    QVERIFY(written(format).contains("<ip>é</ip>"));
    QVector<VPN_RouteInfo> same;
    parser.GetXMLIPSECVPNRouteInfo(documentPath(), same);
    QCOMPARE(same.at(0).ip, QStringLiteral("é"));

    const LocaleCodec codec(s_latin1);
    const QByteArray document = written(format);
    QVERIFY(document.contains("<ip>Ã©</ip>"));
    QVERIFY(document.contains("<mask>Ã¼</mask>"));
    QVector<VPN_RouteInfo> read;
    parser.GetXMLIPSECVPNRouteInfo(documentPath(), read);
    QCOMPARE(read.at(0).ip, QStringLiteral("Ã©"));
    QCOMPARE(read.at(0).mask, QStringLiteral("Ã¼"));
}

TEST_ENTRY(vpnsections, runGuilessTest<TstVpnSections>)
#include "tst_vpnsections.moc"
