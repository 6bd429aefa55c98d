#include "inspect/Lint.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfoLoad.h"

#include <QtTest>

namespace {

using Changes = QVector<QPair<QString, QString>>;

/// All components, everything switched on, nothing to advise.
CustomInfo goodRecord()
{
    CustomInfo record;
    record.common.procomVal = 63;
    record.common.funcomVal = 5;
    record.function.msgAuthOpt = 1;
    record.function.msgAuthServIP = QStringLiteral("10.0.0.1");
    record.function.msgAuthServPort = 8080;
    record.function.passwordProtection = 1;
    record.function.uninstallPassword = QStringLiteral("fifteen letters");
    record.function.wanControlEscape = 1;
    record.function.wanControlEscapePyxIp = QStringLiteral("10.0.0.2");
    record.function.wanControlEscapePyxPort = QStringLiteral("9000");
    record.function.wanControlEscapeDns = QStringLiteral("10.0.0.3");
    record.function.wanControlEscapePyxIpBackup = QStringLiteral("10.0.0.4");
    record.domain.domaindetail = {{QStringLiteral("one"), QString()}, {QStringLiteral("two"), QString()}};
    record.sslvpn.remote = {{0, QStringLiteral("east"), QStringLiteral("gw.example.org"), QStringLiteral("443")},
                            {0, QStringLiteral("west"), QStringLiteral("10.0.1.1"), QStringLiteral("443")}};
    record.gui.mainIconPath = QStringLiteral("/somewhere/icon.ico");
    record.zoa.ZOAIP = QStringLiteral("10.0.2.1");
    record.zoa.standbyZOAIP = QStringLiteral("10.0.2.2");
    record.vpn.basecfg.LNSIP = QStringLiteral("10.0.3.1");
    record.vpn.basecfg.LNSIPSecond = QStringLiteral("10.0.3.2");
    record.vpn.basecfg.useIPSEC = 1;
    record.vpn.basecfg.preSharedKey = QStringLiteral("12345678");
    record.vpn.basecfg.LNSAsIPSECServer = 0;
    record.vpn.basecfg.otherIPSECServer = QStringLiteral("10.0.3.3");
    record.vpn.l2tpcfg.L2TPAuthMode = QStringLiteral("CHAP");
    record.vpn.ipseccfg.IPSECSecurityProto = QStringLiteral("AH-ESP");
    record.vpn.ipseccfg.IPSECESPAuthAlgorithm = QStringLiteral("SHA256");
    record.vpn.ipseccfg.IPSECESPEncryption = QStringLiteral("3DES");
    record.vpn.ipseccfg.IPSECAHAuthAlgorithm = QStringLiteral("SHA");
    record.vpn.ipseccfg.IPSECPFS = 1024;
    record.vpn.ikecfg.IKEncryption = QStringLiteral("3DES-CBC");
    record.vpn.ikecfg.IKEDiffeHellman = QStringLiteral("Group2");
    record.vpnRoutes = {{QStringLiteral("10.1.0.0"), QStringLiteral("255.255.0.0")},
                        {QStringLiteral("10.2.0.0"), QStringLiteral("255.255.0.0")}};
    record.kef.kefIP = QStringLiteral("10.0.4.1");
    record.kef.kefPort = QStringLiteral("9029");
    return record;
}

/// As it is read back from its document, with all icons beside it.
Source sourceOf(const CustomInfo& record)
{
    Source source;
    source.document = documentOf(record);
    loadCustomInfo(source.document, QStringLiteral("/x/"), source.record);
    for (PackageIcon& icon : source.icons)
        icon.state = FileBytes::Read;
    return source;
}

QStringList adviceTexts(const Source& source)
{
    QStringList texts;
    for (const Advice& advice : adviceOn(source))
        texts.append(QStringLiteral("%1 %2 %3")
                         .arg(QLatin1String(advice.code), QLatin1String(levelName(advice.level)), advice.path));
    return texts;
}

CustomInfo changed(const Changes& changes)
{
    CustomInfo record = goodRecord();
    for (const auto& change : changes)
        setField(record, change.first, change.second);
    return record;
}

} // namespace

class TstLint : public QObject
{
    Q_OBJECT

private slots:
    void goodRecordGetsNoAdvice();
    void newRecordOnlyLacksTheAddressOfZoa();
    void oneFaultGivesOneAdvice_data();
    void oneFaultGivesOneAdvice();
    void goodVariantGetsNoAdvice_data();
    void goodVariantGetsNoAdvice();
    void faultsOfComponentsThatAreNotChosenAreNotTold();
    void clientWithoutGatewayIsAnError();
    void iconWithoutFileIsAnError();
    void iconThatIsNoFileIsMissing();
    void clearPasswordThatLooksEncipheredIsFound();
    void documentThatCannotBeReadGetsAdviceOnItsRecordOnly();
    void adviceComesInTheOrderOfTheRules();
};

void TstLint::goodRecordGetsNoAdvice()
{
    QCOMPARE(adviceTexts(sourceOf(goodRecord())), QStringList());
}

void TstLint::newRecordOnlyLacksTheAddressOfZoa()
{
    QCOMPARE(adviceTexts(sourceOf(CustomInfo())), QStringList(QStringLiteral("no-zoa-address warning ZOA/ZOAIP")));
}

void TstLint::oneFaultGivesOneAdvice_data()
{
    QTest::addColumn<Changes>("changes");
    QTest::addColumn<QString>("advice");
    const auto add = [](const char* name, const Changes& changes, const char* advice) {
        QTest::newRow(name) << changes << QString::fromLatin1(advice);
    };
    const auto one = [&](const char* path, const char* value, const char* advice) {
        const QByteArray name = QByteArray(path) + " = " + value;
        add(name.constData(), {{QLatin1String(path), QLatin1String(value)}}, advice);
    };
    one("vpn/basecfg/LNSIP", "", "no-lns error vpn/basecfg/LNSIP");
    one("vpn/basecfg/preSharedKey", "", "no-psk error vpn/basecfg/preSharedKey");
    one("vpn/basecfg/preSharedKey", "1", "short-psk warning vpn/basecfg/preSharedKey");
    one("vpn/basecfg/preSharedKey", "1234567", "short-psk warning vpn/basecfg/preSharedKey");
    one("ZOA/ZOAIP", "", "no-zoa-address warning ZOA/ZOAIP");

    for (const char* path :
         {"functions/msgAuthServIP", "functions/wanControlEscapePyxIp", "functions/wanControlEscapeDns",
          "functions/wanControlEscapePyxIpBackup", "sslvpn/remote/1/ip", "ZOA/ZOAIP", "ZOA/standbyZOAIP",
          "vpn/basecfg/LNSIP", "vpn/basecfg/LNSIPSecond", "vpn/basecfg/otherIPSECServer", "kef/kefIP"})
        one(path, "127.0.0.1", QByteArray("odd-address warning " + QByteArray(path)).constData());
    for (const char* address : {"127.255.255.254", "127.0.0.1.", "0.0.0.0", "255.255.255.255", "224.0.0.1",
                                "239.255.255.255", "localhost", "::1", "::", "ff02::1", "::ffff:127.0.0.1"})
        one("vpn/basecfg/LNSIP", address, "odd-address warning vpn/basecfg/LNSIP");

    one("functions/msgAuthServPort", "0", "port-zero warning functions/msgAuthServPort");
    one("functions/wanControlEscapePyxPort", "0", "port-zero warning functions/wanControlEscapePyxPort");
    one("sslvpn/remote/0/port", "00", "port-zero warning sslvpn/remote/0/port");
    one("ZOA/ZOAPORT", "0", "port-zero warning ZOA/ZOAPORT");
    one("ZOA/standbyZOAPORT", "0", "port-zero warning ZOA/standbyZOAPORT");
    one("vpn/l2tpcfg/L2TPPort", "0", "port-zero warning vpn/l2tpcfg/L2TPPort");
    one("vpn/ikecfg/IKEPort", "0", "port-zero warning vpn/ikecfg/IKEPort");
    one("kef/kefPort", "0", "port-zero warning kef/kefPort");

    one("vpnroute/1/ip", "10.1.0.0", "route-overlap warning vpnroute/1/ip");
    one("vpnroute/1/mask", "255.0.0.0", "route-overlap warning vpnroute/1/ip");
    one("vpnroute/0/mask", "0.0.0.0", "route-overlap warning vpnroute/1/ip");
    add("a route within another",
        {{QStringLiteral("vpnroute/1/ip"), QStringLiteral("10.1.9.0")},
         {QStringLiteral("vpnroute/1/mask"), QStringLiteral("255.255.255.0")}},
        "route-overlap warning vpnroute/1/ip");

    one("domain/domaindetail/1/domainName", "ONE", "duplicate-name warning domain/domaindetail/1/domainName");
    one("sslvpn/remote/1/iPDes", "East", "duplicate-name warning sslvpn/remote/1/iPDes");

    one("functions/uninstallPassword", "sixteen letters!", "password-in-clear warning functions/uninstallPassword");

    one("vpn/l2tpcfg/L2TPAuthMode", "PAP", "weak-cryptography note vpn/l2tpcfg/L2TPAuthMode");
    one("vpn/ipseccfg/IPSECESPAuthAlgorithm", "MD5", "weak-cryptography note vpn/ipseccfg/IPSECESPAuthAlgorithm");
    one("vpn/ipseccfg/IPSECESPEncryption", "DES", "weak-cryptography note vpn/ipseccfg/IPSECESPEncryption");
    one("vpn/ipseccfg/IPSECAHAuthAlgorithm", "MD5", "weak-cryptography note vpn/ipseccfg/IPSECAHAuthAlgorithm");
    one("vpn/ipseccfg/IPSECPFS", "768", "weak-cryptography note vpn/ipseccfg/IPSECPFS");
    one("vpn/ikecfg/IKEncryption", "DES-CBC", "weak-cryptography note vpn/ikecfg/IKEncryption");
    one("vpn/ikecfg/IKEAuthAlgorithm", "MD5", "weak-cryptography note vpn/ikecfg/IKEAuthAlgorithm");
    one("vpn/ikecfg/IKEDiffeHellman", "Group1", "weak-cryptography note vpn/ikecfg/IKEDiffeHellman");

    one("ZOA/standbyZOAIP", "10.0.2.1", "same-address note ZOA/standbyZOAIP");
    one("vpn/basecfg/LNSIPSecond", "10.0.3.1", "same-address note vpn/basecfg/LNSIPSecond");
    one("functions/wanControlEscapePyxIpBackup", "10.0.0.2", "same-address note functions/wanControlEscapePyxIpBackup");
}

void TstLint::oneFaultGivesOneAdvice()
{
    QFETCH(Changes, changes);
    QFETCH(QString, advice);
    QCOMPARE(adviceTexts(sourceOf(changed(changes))), QStringList(advice));
}

void TstLint::goodVariantGetsNoAdvice_data()
{
    QTest::addColumn<Changes>("changes");
    const auto add = [](const char* name, const Changes& changes) { QTest::newRow(name) << changes; };
    const auto pair = [](const char* path, const char* value) {
        return QPair<QString, QString>(QLatin1String(path), QLatin1String(value));
    };
    add("no key is needed with certificates",
        {pair("vpn/ikecfg/IKEAuthMethod", "ca-windows"), pair("vpn/basecfg/preSharedKey", "")});
    add("no IPsec", {pair("vpn/basecfg/useIPSEC", "0"), pair("vpn/basecfg/preSharedKey", ""),
                     pair("vpn/ikecfg/IKEPort", "0"), pair("vpn/ipseccfg/IPSECESPEncryption", "DES"),
                     pair("vpn/ikecfg/IKEncryption", "DES-CBC"), pair("vpn/basecfg/otherIPSECServer", "0.0.0.0")});
    add("the LNS is the IPsec server",
        {pair("vpn/basecfg/LNSAsIPSECServer", "1"), pair("vpn/basecfg/otherIPSECServer", "127.0.0.1")});
    add("ESP alone has no AH",
        {pair("vpn/ipseccfg/IPSECSecurityProto", "ESP"), pair("vpn/ipseccfg/IPSECAHAuthAlgorithm", "MD5")});
    add("AH alone has no ESP",
        {pair("vpn/ipseccfg/IPSECSecurityProto", "AH"), pair("vpn/ipseccfg/IPSECESPAuthAlgorithm", "MD5"),
         pair("vpn/ipseccfg/IPSECESPEncryption", "DES")});
    add("no PFS", {pair("vpn/ipseccfg/IPSECPFS", "0")});
    add("no SMS server", {pair("functions/msgAuthOpt", "0"), pair("functions/msgAuthServPort", "0"),
                          pair("functions/msgAuthServIP", "0.0.0.0")});
    add("no escape", {pair("functions/wanControlEscape", "0"), pair("functions/wanControlEscapePyxPort", "0"),
                      pair("functions/wanControlEscapePyxIp", "127.0.0.1")});
    add("no password protection",
        {pair("functions/passwordProtection", "0"), pair("functions/uninstallPassword", "sixteen letters!")});
    add("no uninstall password", {pair("functions/uninstallPassword", "")});
    add("ZOA off", {pair("ZOA/useZOA", "0"), pair("ZOA/ZOAIP", ""), pair("ZOA/ZOAPORT", "0")});
    add("no standby", {pair("ZOA/standbyZOAIP", ""), pair("ZOA/standbyZOAPORT", "0")});
    add("no second LNS", {pair("vpn/basecfg/LNSIPSecond", "")});
    add("no port", {pair("ZOA/ZOAPORT", ""), pair("kef/kefPort", "none")});
    add("addresses beside the odd ones",
        {pair("vpn/basecfg/LNSIP", "126.255.255.255"), pair("vpn/basecfg/LNSIPSecond", "128.0.0.0"),
         pair("ZOA/ZOAIP", "223.1.1.1"), pair("ZOA/standbyZOAIP", "240.0.0.1"), pair("kef/kefIP", "0.0.0.1")});
    add("IPv6", {pair("vpn/basecfg/LNSIP", "2001:db8::1"), pair("vpn/basecfg/LNSIPSecond", "::ffff:10.0.0.1")});
    add("routes that are none", {pair("vpnroute/0/mask", "abc"), pair("vpnroute/1/ip", "10.1.0.0")});
    add("routes whose masks cross", {pair("vpnroute/0/ip", "10.2.0.0"), pair("vpnroute/0/mask", "255.0.0.255")});
    add("neighbouring routes", {pair("vpnroute/0/ip", "10.2.128.0"), pair("vpnroute/0/mask", "255.255.128.0"),
                                pair("vpnroute/1/mask", "255.255.128.0")});
}

void TstLint::goodVariantGetsNoAdvice()
{
    QFETCH(Changes, changes);
    QCOMPARE(adviceTexts(sourceOf(changed(changes))), QStringList());
}

void TstLint::faultsOfComponentsThatAreNotChosenAreNotTold()
{
    CustomInfo record = changed({{QStringLiteral("sslvpn/remote/1/port"), QStringLiteral("0")},
                                 {QStringLiteral("sslvpn/remote/1/iPDes"), QStringLiteral("east")},
                                 {QStringLiteral("domain/domaindetail/1/domainName"), QStringLiteral("one")},
                                 {QStringLiteral("vpn/basecfg/LNSIP"), QString()},
                                 {QStringLiteral("vpn/basecfg/preSharedKey"), QString()},
                                 {QStringLiteral("vpn/l2tpcfg/L2TPAuthMode"), QStringLiteral("PAP")},
                                 {QStringLiteral("vpnroute/1/ip"), QStringLiteral("10.1.0.0")},
                                 {QStringLiteral("ZOA/ZOAIP"), QString()},
                                 {QStringLiteral("ZOA/standbyZOAIP"), QStringLiteral("0.0.0.0")},
                                 {QStringLiteral("kef/kefIP"), QStringLiteral("127.0.0.1")}});
    record.common.funcomVal = 5;
    QCOMPARE(adviceTexts(sourceOf(record)).size(), 10);
    record.common.procomVal = 2;
    record.common.funcomVal = 0;
    QCOMPARE(adviceTexts(sourceOf(record)), QStringList());
    // ZOA belongs to two components.
    record.common.procomVal = 32;
    QCOMPARE(adviceTexts(sourceOf(record)).first(), QStringLiteral("no-zoa-address warning ZOA/ZOAIP"));
    record.common.procomVal = 2;
    record.common.funcomVal = 1;
    QCOMPARE(adviceTexts(sourceOf(record)).first(), QStringLiteral("no-zoa-address warning ZOA/ZOAIP"));
}

void TstLint::clientWithoutGatewayIsAnError()
{
    CustomInfo record = goodRecord();
    record.sslvpn.remote.clear();
    QCOMPARE(adviceTexts(sourceOf(record)), QStringList(QStringLiteral("no-gateway error sslvpn/remote")));
}

void TstLint::iconWithoutFileIsAnError()
{
    CustomInfo record = goodRecord();
    record.gui.linuxDeskIconPath = QStringLiteral("/somewhere/icon.png");
    Source source = sourceOf(record);
    source.icons[0].state = FileBytes::Missing;
    source.icons[1].state = FileBytes::Missing; // which the document does not name
    QCOMPARE(adviceTexts(source), QStringList(QStringLiteral("icon-missing error guiOptions/linuxDeskIcon")));
}

void TstLint::iconThatIsNoFileIsMissing()
{
    Source source = sourceOf(goodRecord());
    source.icons[2].state = FileBytes::NotRegular;
    QCOMPARE(adviceTexts(source), QStringList(QStringLiteral("icon-missing error guiOptions/mainIcon")));
}

void TstLint::clearPasswordThatLooksEncipheredIsFound()
{
    // Base64 of 24 bytes, which the reader deciphers to something without meaning, or not at all.
    CustomInfo record = goodRecord();
    record.function.uninstallPassword = QStringLiteral("QUJDREVGR0hJSktMTU5PUFFSU1RVVldY");
    const Source source = sourceOf(record);
    QVERIFY(source.document.contains("QUJDREVGR0hJSktMTU5PUFFSU1RVVldY"));
    QCOMPARE(adviceTexts(source), QStringList(QStringLiteral("password-in-clear warning functions/uninstallPassword")));
}

void TstLint::documentThatCannotBeReadGetsAdviceOnItsRecordOnly()
{
    Source source = sourceOf(goodRecord());
    source.document = "<msg";
    QCOMPARE(adviceTexts(source), QStringList());
}

void TstLint::adviceComesInTheOrderOfTheRules()
{
    CustomInfo record = changed({{QStringLiteral("functions/uninstallPassword"), QStringLiteral("sixteen letters!")},
                                 {QStringLiteral("kef/kefPort"), QStringLiteral("0")},
                                 {QStringLiteral("vpn/ipseccfg/IPSECESPEncryption"), QStringLiteral("DES")},
                                 {QStringLiteral("ZOA/standbyZOAIP"), QStringLiteral("10.0.2.1")},
                                 {QStringLiteral("vpn/basecfg/preSharedKey"), QStringLiteral("1")}});
    QStringList codes;
    for (const Advice& advice : adviceOn(sourceOf(record)))
        codes.append(QLatin1String(advice.code));
    QCOMPARE(
        codes,
        QStringLiteral("short-psk port-zero password-in-clear weak-cryptography same-address").split(QLatin1Char(' ')));
}

TEST_ENTRY(lint, runGuilessTest<TstLint>)
#include "tst_lint.moc"
