#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/TestEntry.h"
#include "xml/Catalogue.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QDomDocument>
#include <QRegularExpression>
#include <QSet>
#include <QtTest>

/// The catalogue is the one description of the record: every member of the record has its row, and a document can be
/// written and read by it alone.
class TstCatalogue : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void everyMemberOfTheRecordHasItsRow();
    void everyPathStandsOnce();
    void walkFollowsTheOrderOfTheDocument();
    void walkShowsWhatTheDocumentHolds();
    void recordIsWrittenAndReadByTheCatalogueAlone();
    void changeByThePathChangesThisFieldOnly();
    void defaultsAreThoseOfANewRecord();
    void secretsAreTheThreeThatTheDocumentEnciphers();
    void retryTimesOfTheDocumentAreNoField();
    void sectionsHaveEffectWithTheirComponents_data();
    void sectionsHaveEffectWithTheirComponents();
    void fieldOfAMemberIsThatOfTheCatalogue();
};

namespace {

/// The members of the structures in CustomInfo.h that stand for one value each, as "Structure::member".
QStringList membersOfTheRecord()
{
    QStringList members;
    QString structure;
    const QString source =
        QString::fromUtf8(installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/xml/CustomInfo.h")));
    const QRegularExpression opening(QStringLiteral("^struct (\\w+)"));
    const QRegularExpression member(QStringLiteral("^    (?:quint32|quint64|bool|QString) (\\w+)(?: = [^;]*)?;"));
    for (const QString& line : source.split(QLatin1Char('\n'))) {
        const QRegularExpressionMatch begins = opening.match(line);
        if (begins.hasMatch())
            structure = begins.captured(1);
        const QRegularExpressionMatch found = member.match(line);
        if (found.hasMatch())
            members.append(structure + QLatin1String("::") + found.captured(1));
    }
    return members;
}

template <class S> void addMembers(QStringList& members, const char* structure)
{
    for (const Row<S>& row : rowsOf<S>()) {
        if (qstrcmp(row.element, "switchZOARetryTimes") == 0)
            continue;
        // The one kind of row whose member bears another name than its element.
        const char* suffix = row.form == Form::Icon ? "Path" : "";
        members.append(QLatin1String(structure) + QLatin1String("::") + QLatin1String(row.element) +
                       QLatin1String(suffix));
    }
}

/// A value that fits the field and differs from its default, another one for each field and row.
QString valueFor(const Field& field, int position)
{
    switch (field.type) {
    case Field::Flag:
        return field.defaultValue == QLatin1String("0") ? QStringLiteral("1") : QStringLiteral("0");
    case Field::TrueFalse:
        return field.defaultValue == QLatin1String("false") ? QStringLiteral("true") : QStringLiteral("false");
    case Field::Number:
        return QString::number(1000 + position);
    case Field::Text:
        break;
    }
    return QStringLiteral("text %1").arg(position);
}

CustomInfo loaded(const CustomInfo& record)
{
    CustomInfo copy = record;
    CustomXmlParser parser;
    formatCustomInfo(parser, copy);
    const QString path = installation::path(QStringLiteral("custom/OrvexCustom.xml"));
    QDir().mkpath(installation::path(QStringLiteral("custom")));
    parser.SaveFile(path);
    CustomInfo read;
    utl_LoadCustomInfo(path.toLocal8Bit().constData(), read);
    return read;
}

/// "path=value" for each field.
QStringList listing(const CustomInfo& record)
{
    QStringList lines;
    catalogue::walk(record, [&](const Field& field, int row) {
        lines.append(field.path(row) + QLatin1Char('=') + field.value(record, row));
    });
    return lines;
}

/// The elements without child elements, in the order of the document, each by its path without list positions.
void addLeaves(const QDomElement& element, const QString& path, QStringList& leaves)
{
    if (element.firstChildElement().isNull()) {
        leaves.append(path);
        return;
    }
    for (QDomElement child = element.firstChildElement(); !child.isNull(); child = child.nextSiblingElement())
        addLeaves(child, path.isEmpty() ? child.tagName() : path + QLatin1Char('/') + child.tagName(), leaves);
}

} // namespace

void TstCatalogue::init()
{
    installation::clear();
}

void TstCatalogue::everyMemberOfTheRecordHasItsRow()
{
    QStringList rows;
    addMembers<CommonInfo>(rows, "CommonInfo");
    addMembers<PortalOptionsInfo>(rows, "PortalOptionsInfo");
    addMembers<X1OptionsInfo>(rows, "X1OptionsInfo");
    addMembers<BasicFunctionInfo>(rows, "BasicFunctionInfo");
    addMembers<SSLVPNRemoteInfo>(rows, "SSLVPNRemoteInfo");
    addMembers<SSLVPNOptionsInfo>(rows, "SSLVPNOptionsInfo");
    addMembers<DomainDetail>(rows, "DomainDetail");
    addMembers<SUIDomainInfo>(rows, "SUIDomainInfo");
    addMembers<GUIOptionsInfo>(rows, "GUIOptionsInfo");
    addMembers<IPSECVPNBASECFG>(rows, "IPSECVPNBASECFG");
    addMembers<L2TPCFG>(rows, "L2TPCFG");
    addMembers<IPSECCFG>(rows, "IPSECCFG");
    addMembers<IKECFG>(rows, "IKECFG");
    addMembers<L2TP_IPSEC_VPN_OptionInfo>(rows, "L2TP_IPSEC_VPN_OptionInfo");
    addMembers<VPN_RouteInfo>(rows, "VPN_RouteInfo");
    addMembers<ZOAOptionsInfo>(rows, "ZOAOptionsInfo");
    addMembers<KEFOptionsInfo>(rows, "KEFOptionsInfo");

    QStringList members = membersOfTheRecord();
    // Copied along with the record, not stored; the last structure is a row of the history.
    for (const QString& apart :
         {QStringLiteral("SSLVPNRemoteInfo::remoteSlot"), QStringLiteral("SUIDomainInfo::domainSlot")})
        QVERIFY2(members.removeOne(apart), qPrintable(apart));
    members = members.filter(QRegularExpression(QStringLiteral("^(?!CUSINFOPOLICY)")));
    QVERIFY(members.size() > 100);

    rows.sort();
    members.sort();
    QCOMPARE(rows, members);
    QCOMPARE(rows.removeDuplicates(), 0);
    QCOMPARE(int(catalogue::fields().size()), members.size());
}

void TstCatalogue::everyPathStandsOnce()
{
    QSet<QString> paths;
    for (const Field& field : catalogue::fields()) {
        QVERIFY2(!paths.contains(field.path()), qPrintable(field.path()));
        paths.insert(field.path());
    }
    QVERIFY(paths.contains(QStringLiteral("vpn/ikecfg/IKEPort")));
    QVERIFY(paths.contains(QStringLiteral("vpnroute/*/ip")));
    QVERIFY(paths.contains(QStringLiteral("domain/domaindetail/*/domainName")));
    QVERIFY(paths.contains(QStringLiteral("guiOptions/linuxDeskIcon")));
}

void TstCatalogue::walkFollowsTheOrderOfTheDocument()
{
    CustomInfo record = distinctRecord();
    QStringList walked;
    catalogue::walk(record, [&](const Field& field, int row) { walked.append(field.path(row)); });

    CustomXmlParser parser;
    formatCustomInfo(parser, record);
    const QString path = installation::path(QStringLiteral("document.xml"));
    parser.SaveFile(path);
    QDomDocument document;
    QVERIFY(document.setContent(installation::readFile(path)));
    QStringList leaves;
    addLeaves(document.documentElement().firstChildElement(QStringLiteral("content")), QString(), leaves);
    QCOMPARE(leaves.removeAll(QStringLiteral("ZOA/switchZOARetryTimes")), 1);

    // The document names each row of a list by an element of its own.
    const QRegularExpression position(QStringLiteral("/\\d+/"));
    QStringList expected;
    for (QString leaf : leaves) {
        leaf.replace(QLatin1String("/domaindetailItem/"), QLatin1String("/*/"));
        leaf.replace(QLatin1String("/remoteItem/"), QLatin1String("/*/"));
        leaf.replace(QLatin1String("vpnroute/vpnrouteItem/"), QLatin1String("vpnroute/*/"));
        expected.append(leaf);
    }
    for (QString& field : walked)
        field.replace(position, QStringLiteral("/*/"));
    QCOMPARE(walked, expected);
}

void TstCatalogue::walkShowsWhatTheDocumentHolds()
{
    CustomInfo record;
    record.sslvpn.remote.append({0, QStringLiteral("gate"), QStringLiteral("10.0.0.1"), QStringLiteral("443")});
    record.gui.hideCopyRight = true;
    record.gui.mainIconPath = QStringLiteral("/tmp/a.ico");
    record.x1.defaultConnection = true;
    record.function.uninstallPassword = QStringLiteral("pass");
    const QStringList lines = listing(record);
    for (const char* line :
         {"sslvpn/remote/0/ip=10.0.0.1", "sslvpn/remote/0/port=443", "sslvpn/remote/0/iPDes=gate",
          "guiOptions/hideCopyRight=true", "guiOptions/mainIcon=true", "guiOptions/linuxDeskIcon=false",
          "x1/defaultConnection=1", "functions/uninstallPassword=pass", "vpn/l2tpcfg/L2TPPort=1701"})
        QVERIFY2(lines.contains(QLatin1String(line)), line);
}

void TstCatalogue::recordIsWrittenAndReadByTheCatalogueAlone()
{
    CustomInfo record;
    // All components, so that all sections are written.
    int position = 0;
    for (const Field& field : catalogue::fields()) {
        ++position;
        if (!field.list) {
            field.setValue(record, 0, valueFor(field, position));
            continue;
        }
        field.list->resize(record, 2);
        field.setValue(record, 0, valueFor(field, 2000 + position));
        field.setValue(record, 1, valueFor(field, 4000 + position));
    }
    record.common.funcomVal = funcom::zoa | funcom::kef;
    const QStringList before = listing(record);
    QCOMPARE(QSet<QString>(before.begin(), before.end()).size(), before.size());
    QCOMPARE(listing(loaded(record)), before);
}

void TstCatalogue::changeByThePathChangesThisFieldOnly()
{
    const CustomInfo record = distinctRecord();
    const QStringList before = listing(record);
    int at = 0;
    catalogue::walk(record, [&](const Field& field, int row) {
        CustomInfo changed = record;
        const bool isSwitch = field.type == Field::Flag || field.type == Field::TrueFalse;
        const QString value = isSwitch ? QString() : valueFor(field, 777);
        field.setValue(changed, row, value);
        const QStringList after = listing(changed);
        QCOMPARE(after.size(), before.size());
        for (int i = 0; i < before.size(); ++i)
            QVERIFY2((after.at(i) != before.at(i)) == (i == at), qPrintable(before.at(i)));
        ++at;
    });
    QCOMPARE(at, before.size());
}

void TstCatalogue::defaultsAreThoseOfANewRecord()
{
    const CustomInfo record;
    for (const Field& field : catalogue::fields()) {
        if (!field.list)
            QCOMPARE(field.path() + field.value(record, 0), field.path() + field.defaultValue);
    }
    const SSLVPNRemoteInfo gateway;
    for (const Field& field : catalogue::fields()) {
        if (field.path() == QLatin1String("sslvpn/remote/*/port"))
            QCOMPARE(field.defaultValue, gateway.port);
    }
}

void TstCatalogue::secretsAreTheThreeThatTheDocumentEnciphers()
{
    QStringList secrets;
    for (const Field& field : catalogue::fields()) {
        if (field.traits.isSecret)
            secrets.append(field.path());
    }
    QCOMPARE(secrets,
             (QStringList{QStringLiteral("functions/uninstallPassword"), QStringLiteral("vpn/basecfg/preSharedKey"),
                          QStringLiteral("vpn/l2tpcfg/L2TPTunnelPwd")}));
}

void TstCatalogue::retryTimesOfTheDocumentAreNoField()
{
    for (const Field& field : catalogue::fields())
        QVERIFY(field.path() != QLatin1String("ZOA/switchZOARetryTimes"));
}

void TstCatalogue::sectionsHaveEffectWithTheirComponents_data()
{
    QTest::addColumn<quint64>("access");
    QTest::addColumn<quint64>("functions");
    QTest::addColumn<QString>("withEffect");
    const QString always = QStringLiteral("common functions ");
    const QString gui = QStringLiteral("guiOptions ");
    QTest::newRow("none") << quint64(0) << quint64(0) << always + gui;
    QTest::newRow("802.1X") << procom::x1 << quint64(0) << always + QStringLiteral("x1 domain ") + gui;
    QTest::newRow("Portal") << procom::portal << quint64(0) << always + QStringLiteral("portal ") + gui;
    QTest::newRow("SSL VPN") << procom::sslVpn << quint64(0) << always + QStringLiteral("sslvpn ") + gui;
    QTest::newRow("L2TP IPsec VPN") << procom::l2tpIpsec << quint64(0)
                                    << always + gui + QStringLiteral("vpn vpnroute ");
    QTest::newRow("ZOA direct") << procom::zoaDirect << quint64(0) << always + gui + QStringLiteral("ZOA ");
    QTest::newRow("ZOA") << quint64(0) << funcom::zoa << always + gui + QStringLiteral("ZOA ");
    QTest::newRow("KEF") << quint64(0) << funcom::kef << always + gui + QStringLiteral("kef ");
    QTest::newRow("WLAN") << procom::wlan << quint64(0) << always + gui;
}

void TstCatalogue::sectionsHaveEffectWithTheirComponents()
{
    QFETCH(quint64, access);
    QFETCH(quint64, functions);
    CommonInfo common;
    common.procomVal = access;
    common.funcomVal = functions;
    QString found;
    for (const Section& section : catalogue::sections()) {
        if (section.isChosen(common))
            found += QLatin1String(section.element) + QLatin1Char(' ');
    }
    QTEST(found, "withEffect");
}

void TstCatalogue::fieldOfAMemberIsThatOfTheCatalogue()
{
    CustomInfo record;
    constexpr FieldRef port = field<&IKECFG::IKEPort>;
    port.setNumber(record, 4500);
    QCOMPARE(record.vpn.ikecfg.IKEPort, quint64(4500));
    QCOMPARE(port.text(record), QStringLiteral("4500"));
    QCOMPARE(QByteArray(port.label()), QByteArray("VUI_IKEPort"));
    constexpr FieldRef key = field<&IPSECVPNBASECFG::preSharedKey>;
    key.setText(record, QStringLiteral("secret"));
    QCOMPARE(record.vpn.basecfg.preSharedKey, QStringLiteral("secret"));
    QVERIFY(key.traits().isSecret);
    constexpr FieldRef flag = field<&X1OptionsInfo::defaultConnection>;
    flag.setNumber(record, 7);
    QVERIFY(record.x1.defaultConnection);
    QCOMPARE(flag.number(record), quint64(1));
}

TEST_ENTRY(catalogue, runGuilessTest<TstCatalogue>)

#include "tst_catalogue.moc"
