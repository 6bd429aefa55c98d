#include "inspect/Command.h"
#include "inspect/InspectSupport.h"
#include "inspect/Output.h"
#include "inspect/ProgramRun.h"
#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/Catalogue.h"

#include <QCryptographicHash>
#include <QDir>
#include <QRegularExpression>
#include <QtTest>

/// What the program tells of the history: list, show, diff, search and fields.
class TstTellingCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void listIsNewestFirst();
    void listAsTextFitsItsColumns();
    void listTakesBoundsOfTime_data();
    void listTakesBoundsOfTime();
    void listTakesEntriesWithEveryNamedComponent_data();
    void listTakesEntriesWithEveryNamedComponent();
    void listOfAllTellsTheReasons();
    void listOfSeveralStoresIsOne();

    void showTellsEveryFieldByItsSection();
    void showTellsWordsInBothLanguages();
    void showMarksDefaultsAndWhatHasNoEffect();
    void showOfOneSection();
    void showHidesSecrets();
    void showRefusesWhatDoesNotVerify_data();
    void showRefusesWhatDoesNotVerify();
    void showTakesADirectoryAndADocument();
    void controlCharactersDoNotReachTheTerminal();

    void everyFieldIsToldSearchedAndCompared();
    void diffOfEqualsIsEmpty();
    void diffLeavesOutTimeAndRemark();
    void diffMatchesRowsByName();
    void diffTellsAChangedOrderInOneLine();
    void diffHidesSecrets();
    void diffComparesIconsByTheirBytes();
    void diffLeavesOutWhatHasNoEffectInBoth();

    void searchDisregardsCaseAndFindsShownWords();
    void searchTakesARegularExpression();
    void searchInOneField();
    void searchOfSecretsIsAskedFor();
    void searchThatFindsNothingIsAFinding();

    void fieldsTellTheCatalogue();

    void tablesOfOptionsAreUpToDate_data();
    void tablesOfOptionsAreUpToDate();

    void wrongUsageIsOneLine_data();
    void wrongUsageIsOneLine();
    void helpOfEachCommandHasAnExample();
    void helpIsInTheLanguageOfTheCall();
    void complaintsAboutTheCallAreInItsLanguage_data();
    void complaintsAboutTheCallAreInItsLanguage();
};

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QString storeRoot()
{
    return installation::path(QStringLiteral("store/"));
}

QStringList args(std::initializer_list<const char*> literals)
{
    return installation::texts(literals);
}

QStringList in(const QStringList& arguments)
{
    return QStringList{QStringLiteral("--store"), storeRoot(), QStringLiteral("--lang"), QStringLiteral("en")} +
           arguments;
}

/// The words of a call, one blank between two.
QStringList call(const char* words)
{
    return in(QString::fromUtf8(words).split(QLatin1Char(' ')));
}

CustomInfo recordAt(quint64 stamp)
{
    CustomInfo record;
    record.common.cusTimeStamp = stamp;
    record.common.cusTimeString =
        QDateTime::fromSecsSinceEpoch(static_cast<qint64>(stamp)).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    return record;
}

void keep(const CustomInfo& record, const QString& name = QString())
{
    storeCustomisation(storeRoot(), record, name);
}

QStringList column(const QJsonArray& rows, const char* key)
{
    QStringList values;
    for (const QJsonValue& row : rows)
        values.append(row.toObject().value(QLatin1String(key)).toString(QStringLiteral("null")));
    return values;
}

/// All fields of a `show`, by path.
QMap<QString, QJsonObject> fieldsOf(const QJsonObject& shown)
{
    QMap<QString, QJsonObject> fields;
    for (const QJsonValue& section : shown.value(QLatin1String("sections")).toArray()) {
        for (const QJsonValue& field : section.toObject().value(QLatin1String("fields")).toArray())
            fields.insert(field.toObject().value(QLatin1String("path")).toString(), field.toObject());
    }
    return fields;
}

constexpr quint64 first = 1700000000;
constexpr quint64 second = 1700000600;

} // namespace

void TstTellingCommands::init()
{
    installation::clear();
    QDir(storeRoot()).removeRecursively();
    QVERIFY(QDir().mkpath(storeRoot() + QStringLiteral("Resources")));
    for (const QString& file : {QStringLiteral("Language_en.xml"), QStringLiteral("Language_zh.xml")})
        QVERIFY(QFile::copy(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/") + file,
                            storeRoot() + QStringLiteral("Resources/") + file));
}

void TstTellingCommands::listIsNewestFirst()
{
    keep(recordAt(first));
    keep(recordAt(second));
    keep(recordAt(second), QStringLiteral("zz"));
    const QJsonArray rows = program::array(call("list --all"));
    QCOMPARE(column(rows, "entry"),
             (QStringList{QStringLiteral("zz"), QString::number(second), QString::number(first)}));
    const QJsonObject row = rows.at(1).toObject();
    QCOMPARE(row.value(QLatin1String("timeStamp")).toDouble(), double(second));
    QCOMPARE(row.value(QLatin1String("time")).toString(), recordAt(second).common.cusTimeString);
    QCOMPARE(row.value(QLatin1String("accessComponents")).toArray(),
             (QJsonArray{QStringLiteral("802.1X"), QStringLiteral("Portal")}));
    QCOMPARE(row.value(QLatin1String("functionComponents")).toArray(), QJsonArray{QStringLiteral("ZOA")});
    QCOMPARE(row.value(QLatin1String("verified")).toBool(), true);
    QVERIFY(row.value(QLatin1String("reason")).isNull());
    QCOMPARE(row.keys().size(), 8);
}

void TstTellingCommands::listAsTextFitsItsColumns()
{
    CustomInfo record = recordAt(first);
    record.common.cusAddInfo = text("北京分部 ") + QString(80, QLatin1Char('x'));
    keep(record);
    const program::Outcome outcome = program::run(call("list"), {QStringLiteral("COLUMNS=80")});
    QCOMPARE(outcome.status, 0);
    QVERIFY2(outcome.output.startsWith("Entry       Time                 Components"), outcome.output.constData());
    for (const QString& line : QString::fromUtf8(outcome.output).split(QLatin1Char('\n'))) {
        int columns = 0;
        for (const QChar character : line)
            columns += character.unicode() >= 0x2E80 ? 2 : 1;
        QVERIFY2(columns <= 80, qPrintable(line));
    }
    QCOMPARE(QString::fromUtf8(outcome.output).count(QLatin1Char('x')), 80);
}

void TstTellingCommands::listTakesBoundsOfTime_data()
{
    QTest::addColumn<QStringList>("bounds");
    QTest::addColumn<int>("count");
    // 1700000000 is 2023-11-15 06:13:20 in the zone of the tests, ten minutes before the other.
    QTest::newRow("the day") << args({"--since", "2023-11-15", "--until", "2023-11-15"}) << 2;
    QTest::newRow("the day before") << args({"--until", "2023-11-14"}) << 0;
    QTest::newRow("the day after") << args({"--since", "2023-11-16"}) << 0;
    QTest::newRow("from its second") << args({"--since", "2023-11-15 06:13:20"}) << 2;
    QTest::newRow("from the next second") << args({"--since", "2023-11-15 06:13:21"}) << 1;
    QTest::newRow("up to its second") << args({"--until", "2023-11-15 06:13:20"}) << 1;
    QTest::newRow("up to the second before") << args({"--until", "2023-11-15 06:13:19"}) << 0;
}

void TstTellingCommands::listTakesBoundsOfTime()
{
    QFETCH(QStringList, bounds);
    keep(recordAt(first));
    keep(recordAt(second));
    QFETCH(int, count);
    QCOMPARE(program::array(in(QStringList{QStringLiteral("list")} + bounds)).size(), count);
}

void TstTellingCommands::listTakesEntriesWithEveryNamedComponent_data()
{
    QTest::addColumn<QString>("components");
    QTest::addColumn<int>("count");
    QTest::newRow("one") << QStringLiteral("802.1X") << 2;
    QTest::newRow("letter case") << QStringLiteral("802.1x") << 2;
    QTest::newRow("only the other") << QStringLiteral("sslvpn") << 1;
    QTest::newRow("both") << QStringLiteral("802.1X,SSLVPN") << 1;
    QTest::newRow("function component") << QStringLiteral("zoa,Portal") << 1;
    QTest::newRow("none has it") << QStringLiteral("WLAN") << 0;
}

void TstTellingCommands::listTakesEntriesWithEveryNamedComponent()
{
    QFETCH(QString, components);
    QFETCH(int, count);
    keep(recordAt(first));
    CustomInfo other = recordAt(second);
    other.common.procomVal = procom::x1 | procom::sslVpn;
    other.common.funcomVal = 0;
    keep(other);
    QStringList arguments = {QStringLiteral("list")};
    for (const QString& component : components.split(QLatin1Char(',')))
        arguments += {QStringLiteral("--component"), component};
    QCOMPARE(program::array(in(arguments)).size(), count);
}

void TstTellingCommands::listOfAllTellsTheReasons()
{
    keep(recordAt(first));
    keep(recordAt(second), QStringLiteral("elsewhere"));
    QVERIFY(QDir().mkpath(storeRoot() + QStringLiteral("UpdateCustom/empty")));
    keep(recordAt(second), QStringLiteral("changed"));
    const QString document = storeRoot() + QStringLiteral("UpdateCustom/changed/OrvexCustom.xml");
    installation::writeFile(document, installation::readFile(document) + "\n");
    installation::writeFile(storeRoot() + QStringLiteral("UpdateCustom/file"), "x");
    QVERIFY(QDir().mkpath(storeRoot() + QStringLiteral("UpdateCustom/.hidden")));

    QMap<QString, QString> reasons;
    for (const QJsonValue& row : program::array(call("list --all")))
        reasons.insert(row.toObject().value(QLatin1String("entry")).toString(),
                       row.toObject().value(QLatin1String("reason")).toString());
    QCOMPARE(reasons, (QMap<QString, QString>{{QString::number(first), QString()},
                                              {QStringLiteral("elsewhere"), QStringLiteral("stamp")},
                                              {QStringLiteral("empty"), QStringLiteral("no-document")},
                                              {QStringLiteral("changed"), QStringLiteral("digest")}}));
}

void TstTellingCommands::listOfSeveralStoresIsOne()
{
    keep(recordAt(first));
    const QString other = installation::path(QStringLiteral("store/other/"));
    storeCustomisation(other, recordAt(second));
    const QStringList arguments = {QStringLiteral("--store"), storeRoot(), QStringLiteral("--store"), other,
                                   QStringLiteral("list")};
    QCOMPARE(column(program::array(arguments), "entry"),
             (QStringList{QString::number(second), QString::number(first)}));
}

void TstTellingCommands::showTellsEveryFieldByItsSection()
{
    CustomInfo record = distinctRecord();
    record.common.procomVal = 63;
    record.common.funcomVal = 5;
    keep(record, QStringLiteral("entry"));
    const QJsonObject shown = program::object(call("show entry --secrets"));
    QCOMPARE(shown.value(QLatin1String("source")).toString(), QStringLiteral("entry"));
    QCOMPARE(shown.value(QLatin1String("entry")).toString(), QStringLiteral("entry"));
    QCOMPARE(shown.value(QLatin1String("verified")).toBool(), true);
    QCOMPARE(column(shown.value(QLatin1String("sections")).toArray(), "section"),
             QStringLiteral("common functions x1 domain portal sslvpn guiOptions ZOA vpn vpnroute kef")
                 .split(QLatin1Char(' ')));

    const QMap<QString, QJsonObject> fields = fieldsOf(shown);
    int compared = 0;
    catalogue::walk(record, [&](const Field& field, int row) {
        const QString path = field.path(row);
        QVERIFY2(fields.contains(path), qPrintable(path));
        QCOMPARE(path + fields.value(path).value(QLatin1String("value")).toString(), path + field.value(record, row));
        ++compared;
    });
    QCOMPARE(compared, fields.size());
}

void TstTellingCommands::showTellsWordsInBothLanguages()
{
    CustomInfo record = recordAt(first);
    record.x1.reauthTimes = 10;
    record.x1.reauthInterval = 0;
    record.vpn.ipseccfg.IPSECPFS = 768;
    record.vpn.ipseccfg.IPSECUseNatTranversal = 1;
    keep(record);
    const auto shown = [](const char* language) {
        return fieldsOf(program::object({QStringLiteral("--store"), storeRoot(), QStringLiteral("--lang"),
                                         QLatin1String(language), QStringLiteral("show"), QStringLiteral("latest")}));
    };
    const auto english = shown("en");
    const auto chinese = shown("zh");
    const auto value = [](const QMap<QString, QJsonObject>& fields, const char* path, const char* key) {
        return fields.value(QLatin1String(path)).value(QLatin1String(key)).toString();
    };
    QCOMPARE(value(english, "x1/reauthTimes", "shown"), QStringLiteral("%n"));
    QCOMPARE(value(english, "x1/reauthTimes", "value"), QStringLiteral("10"));
    QCOMPARE(value(english, "vpn/ipseccfg/IPSECPFS", "shown"), QStringLiteral("dh-group1"));
    QCOMPARE(value(english, "vpn/ikecfg/IKENegotiationMode", "shown"), QStringLiteral("Aggressive"));
    QCOMPARE(value(english, "vpn/ikecfg/IKENegotiationMode", "value"), QStringLiteral("Main"));
    QCOMPARE(value(english, "sslvpn/TLSVersion", "shown"), QStringLiteral("TLS1.2"));
    QVERIFY(value(english, "x1/reauthInterval", "shown") != value(chinese, "x1/reauthInterval", "shown"));
    QVERIFY(value(english, "x1/upVer", "label") != value(chinese, "x1/upVer", "label"));
    QCOMPARE(value(english, "x1/upVer", "shown"), QStringLiteral("1"));
}

void TstTellingCommands::showMarksDefaultsAndWhatHasNoEffect()
{
    CustomInfo record = recordAt(first);
    record.x1.upIp = 0;
    keep(record);
    const QJsonObject shown = program::object(call("show latest"));
    const auto fields = fieldsOf(shown);
    QCOMPARE(fields.value(QStringLiteral("x1/upIp")).value(QLatin1String("isDefault")).toBool(), false);
    QCOMPARE(fields.value(QStringLiteral("x1/upVer")).value(QLatin1String("isDefault")).toBool(), true);
    QMap<QString, bool> effects;
    for (const QJsonValue& section : shown.value(QLatin1String("sections")).toArray())
        effects.insert(section.toObject().value(QLatin1String("section")).toString(),
                       section.toObject().value(QLatin1String("hasEffect")).toBool());
    QCOMPARE(effects.value(QStringLiteral("x1")), true);
    QCOMPARE(effects.value(QStringLiteral("domain")), true);
    QCOMPARE(effects.value(QStringLiteral("ZOA")), true);
    QCOMPARE(effects.value(QStringLiteral("common")), true);
    for (const char* section : {"sslvpn", "vpn", "vpnroute", "kef"})
        QVERIFY2(!effects.value(QLatin1String(section), true), section);
}

void TstTellingCommands::showOfOneSection()
{
    keep(recordAt(first));
    const QJsonObject shown = program::object(call("show latest --section vpn"));
    QCOMPARE(column(shown.value(QLatin1String("sections")).toArray(), "section"), QStringList{QStringLiteral("vpn")});
    const QByteArray told = program::run(call("show latest --section vpn")).output;
    QVERIFY2(told.contains("ikecfg/IKEPort") && told.contains("without effect") && told.contains("verified"),
             told.constData());
}

void TstTellingCommands::showHidesSecrets()
{
    CustomInfo record = recordAt(first);
    record.function.passwordProtection = 1;
    record.function.uninstallPassword = QStringLiteral("un-secret");
    record.vpn.basecfg.preSharedKey = QStringLiteral("key-secret");
    keep(record);
    const QByteArray hidden =
        program::run(call("show latest")).output + program::run(call("show latest --json")).output;
    QVERIFY(!hidden.contains("un-secret") && !hidden.contains("key-secret"));
    const auto fields = fieldsOf(program::object(call("show latest")));
    QCOMPARE(fields.value(QStringLiteral("vpn/basecfg/preSharedKey")).value(QLatin1String("value")).toString(),
             QStringLiteral("******"));
    QCOMPARE(fields.value(QStringLiteral("vpn/basecfg/preSharedKey")).value(QLatin1String("secret")).toBool(), true);
    // One that is not set reads as it is.
    QCOMPARE(fields.value(QStringLiteral("vpn/l2tpcfg/L2TPTunnelPwd")).value(QLatin1String("value")).toString(),
             QString());
    const auto open = fieldsOf(program::object(call("show latest --secrets")));
    QCOMPARE(open.value(QStringLiteral("functions/uninstallPassword")).value(QLatin1String("value")).toString(),
             QStringLiteral("un-secret"));
}

void TstTellingCommands::showRefusesWhatDoesNotVerify_data()
{
    QTest::addColumn<QString>("broken");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("code");
    QTest::addColumn<bool>("canBeRead");
    QTest::newRow("digest") << QStringLiteral("OrvexCustomXml.vrf") << QByteArray(256, 'x') << QStringLiteral("digest")
                            << true;
    QTest::newRow("size of the verification")
        << QStringLiteral("OrvexCustomXml.vrf") << QByteArray(255, 'x') << QStringLiteral("verification-size") << true;
    QTest::newRow("size of the document")
        << QStringLiteral("OrvexCustom.xml") << QByteArray(40589, 'x') << QStringLiteral("document-size") << false;
}

void TstTellingCommands::showRefusesWhatDoesNotVerify()
{
    QFETCH(QString, broken);
    QFETCH(QByteArray, bytes);
    QFETCH(QString, code);
    QFETCH(bool, canBeRead);
    keep(recordAt(first), QStringLiteral("entry"));
    installation::writeFile(storeRoot() + QStringLiteral("UpdateCustom/entry/") + broken, bytes);
    const program::Outcome refused = program::run(call("show entry"));
    QCOMPARE(refused.status, 2);
    QVERIFY2(refused.errors.startsWith("orvex-inspect: entry: " + code.toLatin1()), refused.errors.constData());
    QCOMPARE(refused.errors.count('\n'), 1);
    QCOMPARE(refused.output, QByteArray());
    const program::Outcome taken = program::run(call("show entry --unverified"));
    QCOMPARE(taken.status, canBeRead ? 0 : 2);
    if (canBeRead)
        QVERIFY(taken.output.contains("NOT VERIFIED: " + code.toLatin1()));
}

void TstTellingCommands::showTakesADirectoryAndADocument()
{
    keep(recordAt(first));
    const QString directory = storeRoot() + QStringLiteral("UpdateCustom/") + QString::number(first);
    for (const QString& source : {directory, directory + QStringLiteral("/OrvexCustom.xml")}) {
        const QJsonObject shown = program::object(in({QStringLiteral("show"), source}));
        QCOMPARE(shown.value(QLatin1String("source")).toString(), source);
        QVERIFY(shown.value(QLatin1String("entry")).isNull());
        QCOMPARE(shown.value(QLatin1String("verified")).toBool(), true);
    }
}

void TstTellingCommands::controlCharactersDoNotReachTheTerminal()
{
    QByteArray document = inspecting::documentWithStamp(first, QStringLiteral("remark"));
    document.replace("remark", "a\xC2\x9B"
                               "31mb\xE2\x80\xAE"
                               "c&#9;d");
    inspecting::store(storeRoot(), QStringLiteral("entry"), document);
    for (const char* words : {"list", "show entry", "search a"}) {
        const QByteArray output = program::run(call(words)).output;
        QVERIFY2(!output.contains("\xC2\x9B") && !output.contains("\xE2\x80\xAE") && !output.contains('\t'), words);
    }
    QVERIFY(program::run(call("list")).output.contains("a\\u009b31mb\\u202ec"));
}

void TstTellingCommands::everyFieldIsToldSearchedAndCompared()
{
    CustomInfo record = distinctRecord();
    record.common.procomVal = 63;
    record.common.funcomVal = 5;
    keep(record, QStringLiteral("a"));
    int position = 0;
    const auto before = fieldsOf(program::object(call("show a --secrets")));
    // Shown together, each compared and searched alone.
    CustomInfo allChanged = record;
    QMap<QString, QString> values;
    catalogue::walk(record, [&](const Field& field, int row) {
        const QString path = field.path(row);
        // Icons are compared by their files; another name of a row is another row.
        if (field.element == QByteArray("linuxDeskIcon") || field.element == QByteArray("macosDeskIcon") ||
            field.element == QByteArray("mainIcon") ||
            (field.list && field.element == QByteArray(field.list->nameElement)))
            return;
        CustomInfo changed = record;
        QString value = QStringLiteral("%1").arg(700000 + ++position);
        if (path == QLatin1String("common/procomVal"))
            value = QStringLiteral("55");
        else if (path == QLatin1String("common/funcomVal"))
            value = QStringLiteral("4");
        else if (field.type == Field::Flag)
            value = QStringLiteral("0");
        else if (field.type == Field::TrueFalse)
            value = QStringLiteral("false");
        else if (path == QLatin1String("functions/uninstallPassword"))
            value = QStringLiteral("p%1").arg(position);
        setField(changed, path, value);
        setField(allChanged, path, value);
        values.insert(path, value);
        // Closing a gate leaves out the fields behind it, which then read as in a new record.
        if (field.element == QByteArray("msgAuthOpt") || field.element == QByteArray("passwordProtection") ||
            field.element == QByteArray("wanControlEscape") || field.element == QByteArray("advancedAuth"))
            QVERIFY2(value != QLatin1String("0"), qPrintable(path));
        keep(changed, QStringLiteral("b"));

        const QJsonArray diff = program::array(call("diff a b --all --secrets"));
        QCOMPARE(column(diff, "path"), QStringList{path});
        QCOMPARE(diff.at(0).toObject().value(QLatin1String("a")).toString(),
                 before.value(path).value(QLatin1String("value")).toString());
        QCOMPARE(diff.at(0).toObject().value(QLatin1String("b")).toString(), value);
        const QJsonArray hits = program::array(
            in({QStringLiteral("search"), value, QStringLiteral("--field"), path, QStringLiteral("--secrets")}));
        QVERIFY2(column(hits, "entry").contains(QStringLiteral("b")), qPrintable(path));
    });
    QVERIFY(position > 110);

    keep(allChanged, QStringLiteral("c"));
    const auto after = fieldsOf(program::object(call("show c --secrets")));
    for (auto value = values.constBegin(); value != values.constEnd(); ++value) {
        const QString shown = after.value(value.key()).value(QLatin1String("value")).toString();
        QVERIFY2(shown == value.value(), qPrintable(value.key() + QLatin1String(": ") + shown));
    }
}

void TstTellingCommands::diffOfEqualsIsEmpty()
{
    keep(recordAt(first), QStringLiteral("a"));
    keep(recordAt(first), QStringLiteral("b"));
    QCOMPARE(program::array(call("diff a b")), QJsonArray());
    QCOMPARE(program::run(call("diff a b")).status, 0);
    QCOMPARE(program::run(call("diff a b")).output, QByteArray());
}

void TstTellingCommands::diffLeavesOutTimeAndRemark()
{
    keep(recordAt(first), QStringLiteral("a"));
    CustomInfo other = recordAt(second);
    other.common.cusAddInfo = QStringLiteral("remark");
    keep(other, QStringLiteral("b"));
    QCOMPARE(program::run(call("diff a b")).status, 0);
    QCOMPARE(column(program::array(call("diff a b --all")), "path"),
             (QStringList{QStringLiteral("common/cusTimeStamp"), QStringLiteral("common/cusTimeString"),
                          QStringLiteral("common/cusAddInfo")}));
    QCOMPARE(program::run(call("diff a b --all")).status, 1);
}

void TstTellingCommands::diffMatchesRowsByName()
{
    CustomInfo a = recordAt(first);
    a.common.procomVal |= procom::sslVpn;
    a.sslvpn.remote = {{0, QStringLiteral("one"), QStringLiteral("10.0.0.1"), QStringLiteral("443")},
                       {0, QStringLiteral("gone"), QStringLiteral("10.0.0.2"), QStringLiteral("444")}};
    CustomInfo b = a;
    b.sslvpn.remote = {{0, QStringLiteral("come"), QStringLiteral("10.0.0.3"), QStringLiteral("445")},
                       {0, QStringLiteral("one"), QStringLiteral("10.0.0.9"), QStringLiteral("443")}};
    keep(a, QStringLiteral("a"));
    keep(b, QStringLiteral("b"));
    QStringList lines;
    for (const QJsonValue& value : program::array(call("diff a b"))) {
        const QJsonObject row = value.toObject();
        const auto side = [&](const char* key) {
            return row.value(QLatin1String(key)).toString(QStringLiteral("null"));
        };
        lines.append(side("path") + QLatin1Char(' ') + side("a") + QLatin1Char(' ') + side("b"));
    }
    QCOMPARE(lines,
             (QStringList{
                 QStringLiteral("sslvpn/remote/0/ip 10.0.0.1 10.0.0.9"),
                 QStringLiteral("sslvpn/remote/1/ip 10.0.0.2 null"), QStringLiteral("sslvpn/remote/1/port 444 null"),
                 QStringLiteral("sslvpn/remote/1/iPDes gone null"), QStringLiteral("sslvpn/remote/0/ip null 10.0.0.3"),
                 QStringLiteral("sslvpn/remote/0/port null 445"), QStringLiteral("sslvpn/remote/0/iPDes null come")}));
}

void TstTellingCommands::diffTellsAChangedOrderInOneLine()
{
    CustomInfo a = recordAt(first);
    a.domain.domaindetail = {{QStringLiteral("one"), QStringLiteral("1")},
                             {QStringLiteral("two"), QStringLiteral("2")}};
    CustomInfo b = a;
    b.domain.domaindetail.move(0, 1);
    keep(a, QStringLiteral("a"));
    keep(b, QStringLiteral("b"));
    const QJsonArray rows = program::array(call("diff a b"));
    QCOMPARE(rows.size(), 1);
    const QJsonObject row = rows.at(0).toObject();
    QCOMPARE(row.value(QLatin1String("path")).toString(), QStringLiteral("domain/domaindetail"));
    QCOMPARE(row.value(QLatin1String("a")).toString(), QStringLiteral("one; two"));
    QCOMPARE(row.value(QLatin1String("b")).toString(), QStringLiteral("two; one"));
}

void TstTellingCommands::diffHidesSecrets()
{
    CustomInfo a = recordAt(first);
    a.common.procomVal |= procom::l2tpIpsec;
    CustomInfo b = a;
    a.vpn.basecfg.preSharedKey = QStringLiteral("first-key");
    b.vpn.basecfg.preSharedKey = QStringLiteral("second-key");
    b.vpn.l2tpcfg.L2TPTunnelPwd = QStringLiteral("pass");
    keep(a, QStringLiteral("a"));
    keep(b, QStringLiteral("b"));
    const QJsonArray rows = program::array(call("diff a b"));
    QCOMPARE(column(rows, "a"), (QStringList{QStringLiteral("******"), QString()}));
    QCOMPARE(column(rows, "b"), (QStringList{QStringLiteral("******"), QStringLiteral("******")}));
    QVERIFY(!program::run(call("diff a b")).output.contains("-key"));
    QCOMPARE(column(program::array(call("diff a b --secrets")), "b"),
             (QStringList{QStringLiteral("second-key"), QStringLiteral("pass")}));
}

void TstTellingCommands::diffComparesIconsByTheirBytes()
{
    CustomInfo record = recordAt(first);
    record.gui.linuxDeskIconPath = QStringLiteral("/somewhere/a.png");
    keep(record, QStringLiteral("a"));
    keep(record, QStringLiteral("b"));
    const auto icon = [](const char* entry) {
        return storeRoot() + QLatin1String("UpdateCustom/") + QLatin1String(entry) +
               QLatin1String("/DeskIconLinux.png");
    };
    installation::writeFile(icon("a"), "one");
    installation::writeFile(icon("b"), "one");
    QCOMPARE(program::array(call("diff a b")), QJsonArray());
    installation::writeFile(icon("b"), "two");
    QJsonArray rows = program::array(call("diff a b"));
    QCOMPARE(column(rows, "path"), QStringList{QStringLiteral("guiOptions/linuxDeskIcon")});
    QCOMPARE(column(rows, "a").first(),
             QString::fromLatin1(QCryptographicHash::hash("one", QCryptographicHash::Sha256).toHex()));
    QVERIFY(QFile::remove(icon("b")));
    rows = program::array(call("diff a b"));
    QVERIFY(rows.at(0).toObject().value(QLatin1String("b")).isNull());
}

void TstTellingCommands::diffLeavesOutWhatHasNoEffectInBoth()
{
    CustomInfo a = recordAt(first);
    CustomInfo b = a;
    b.vpn.ikecfg.IKEPort = 4500;
    keep(a, QStringLiteral("a"));
    keep(b, QStringLiteral("b"));
    QCOMPARE(program::array(call("diff a b")), QJsonArray());
    QCOMPARE(column(program::array(call("diff a b --all")), "path"), QStringList{QStringLiteral("vpn/ikecfg/IKEPort")});
    b.common.procomVal |= procom::l2tpIpsec;
    keep(b, QStringLiteral("b"));
    QCOMPARE(column(program::array(call("diff a b")), "path"),
             (QStringList{QStringLiteral("common/procomVal"), QStringLiteral("vpn/ikecfg/IKEPort")}));
}

void TstTellingCommands::searchDisregardsCaseAndFindsShownWords()
{
    CustomInfo record = recordAt(first);
    record.vpn.basecfg.LNSIP = QStringLiteral("Gate.Example.COM");
    record.vpn.ipseccfg.IPSECPFS = 1024;
    keep(record);
    const QJsonArray hits = program::array(call("search gate.example"));
    QCOMPARE(column(hits, "path"), QStringList{QStringLiteral("vpn/basecfg/LNSIP")});
    QCOMPARE(column(hits, "value"), QStringList{QStringLiteral("Gate.Example.COM")});
    QCOMPARE(column(hits, "entry"), QStringList{QString::number(first)});
    QCOMPARE(column(hits, "store"), QStringList{storeRoot()});
    QCOMPARE(column(program::array(call("search dh-group2")), "path"),
             QStringList{QStringLiteral("vpn/ipseccfg/IPSECPFS")});
    QVERIFY(column(program::array(in({QStringLiteral("search"), QStringLiteral("ike port")})), "path")
                .contains(QStringLiteral("vpn/ikecfg/IKEPort")));
}

void TstTellingCommands::searchTakesARegularExpression()
{
    CustomInfo record = recordAt(first);
    record.vpn.basecfg.LNSIP = QStringLiteral("10.1.2.3");
    keep(record);
    QCOMPARE(column(program::array(
                        in({QStringLiteral("search"), QStringLiteral("^10\\.[0-9.]+$"), QStringLiteral("--regex")})),
                    "path"),
             QStringList{QStringLiteral("vpn/basecfg/LNSIP")});
    // Without the option the text stands for itself.
    QCOMPARE(program::run(in({QStringLiteral("search"), QStringLiteral("^10\\.[0-9.]+$")})).status, 1);
    QCOMPARE(program::run(in({QStringLiteral("search"), QStringLiteral("("), QStringLiteral("--regex")})).status, 2);
}

void TstTellingCommands::searchInOneField()
{
    CustomInfo record = recordAt(first);
    record.vpnRoutes = {{QStringLiteral("10.0.0.0"), QStringLiteral("255.0.0.0")},
                        {QStringLiteral("10.9.0.0"), QStringLiteral("255.255.0.0")}};
    keep(record);
    const auto paths = [](const char* field) {
        return column(program::array(in({QStringLiteral("search"), QStringLiteral("10."), QStringLiteral("--field"),
                                         QLatin1String(field)})),
                      "path");
    };
    QCOMPARE(paths("vpnroute/*/ip"), (QStringList{QStringLiteral("vpnroute/0/ip"), QStringLiteral("vpnroute/1/ip")}));
    QCOMPARE(paths("vpnroute/1/ip"), QStringList{QStringLiteral("vpnroute/1/ip")});
    QCOMPARE(program::run(call("search x --field vpn/none")).status, 2);
}

void TstTellingCommands::searchOfSecretsIsAskedFor()
{
    CustomInfo record = recordAt(first);
    record.vpn.basecfg.preSharedKey = QStringLiteral("needle");
    keep(record);
    QCOMPARE(program::run(call("search needle")).status, 1);
    QCOMPARE(program::run(call("search needle")).output, QByteArray());
    // The mask is not a value to be found either.
    QCOMPARE(program::run(in({QStringLiteral("search"), QStringLiteral("****")})).status, 1);
    QCOMPARE(column(program::array(call("search needle --secrets")), "path"),
             QStringList{QStringLiteral("vpn/basecfg/preSharedKey")});
}

void TstTellingCommands::searchThatFindsNothingIsAFinding()
{
    keep(recordAt(first));
    const program::Outcome outcome = program::run(call("search nothing-of-it"));
    QCOMPARE(outcome.status, 1);
    QCOMPARE(outcome.errors, QByteArray());
    QCOMPARE(program::array(call("search nothing-of-it")), QJsonArray());
}

void TstTellingCommands::fieldsTellTheCatalogue()
{
    const QJsonArray rows = program::array(call("fields"));
    QCOMPARE(rows.size(), int(catalogue::fields().size()));
    QMap<QString, QJsonObject> fields;
    for (const QJsonValue& row : rows)
        fields.insert(row.toObject().value(QLatin1String("path")).toString(), row.toObject());
    const QJsonObject mode = fields.value(QStringLiteral("vpn/ikecfg/IKENegotiationMode"));
    QCOMPARE(mode.value(QLatin1String("default")).toString(), QStringLiteral("Main"));
    QCOMPARE(mode.value(QLatin1String("component")).toArray(), QJsonArray{QStringLiteral("L2TP IPsec VPN")});
    QCOMPARE(column(mode.value(QLatin1String("values")).toArray(), "value"),
             (QStringList{QStringLiteral("Main"), QStringLiteral("Aggressive")}));
    QCOMPARE(fields.value(QStringLiteral("ZOA/ZOAIP")).value(QLatin1String("component")).toArray(),
             (QJsonArray{QStringLiteral("ZOADirect"), QStringLiteral("ZOA")}));
    QCOMPARE(fields.value(QStringLiteral("common/cusAddInfo")).value(QLatin1String("component")).toArray(),
             QJsonArray());
    QCOMPARE(fields.value(QStringLiteral("vpn/basecfg/preSharedKey")).value(QLatin1String("secret")).toBool(), true);
    QCOMPARE(fields.value(QStringLiteral("vpn/basecfg/preSharedKey")).value(QLatin1String("maxLength")).toInt(), 128);
    QVERIFY(fields.value(QStringLiteral("x1/upVer")).value(QLatin1String("maxLength")).isNull());
    QCOMPARE(fields.value(QStringLiteral("x1/upVer")).keys().size(), 8);
    QVERIFY(!fields.contains(QStringLiteral("ZOA/switchZOARetryTimes")));
}

void TstTellingCommands::tablesOfOptionsAreUpToDate_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("file");
    QTest::newRow("English") << QStringLiteral("en") << QStringLiteral("options.md");
    QTest::newRow("Chinese") << QStringLiteral("zh") << QStringLiteral("options.zh.md");
}

void TstTellingCommands::tablesOfOptionsAreUpToDate()
{
    QFETCH(QString, language);
    QFETCH(QString, file);
    const QByteArray told = program::run({QStringLiteral("--store"), storeRoot(), QStringLiteral("--lang"), language,
                                          QStringLiteral("fields"), QStringLiteral("--markdown")})
                                .output;
    QVERIFY(told.count("\n## ") == 10 && told.contains("| vpn/ikecfg/IKEPort |"));
    const QByteArray document = installation::readFile(QStringLiteral(ORVEX_SOURCE_DIR "/docs/") + file);
    QVERIFY2(document.endsWith(told), "the document is out of date: scripts/write-options.sh");
}

void TstTellingCommands::wrongUsageIsOneLine_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("no such command") << args({"tell"});
    QTest::newRow("no source") << in(args({"show"}));
    QTest::newRow("no such source") << in(args({"show", "nowhere"}));
    QTest::newRow("one source of two") << in(args({"diff", "latest"}));
    QTest::newRow("no such option") << in(args({"list", "--newest"}));
    QTest::newRow("no such section") << in(args({"show", "latest", "--section", "none"}));
    QTest::newRow("no such component") << in(args({"list", "--component", "LAN"}));
    QTest::newRow("no date") << in(args({"list", "--since", "yesterday"}));
    QTest::newRow("no such language") << args({"--lang", "fr", "list"});
    QTest::newRow("no such store") << args({"--store", "/nowhere", "list"});
    QTest::newRow("two stores for one") << in(args({"--store", ".", "show", "latest"}));
    QTest::newRow("control characters") << in(args({"show", "a\033[31m\nb"}));
}

void TstTellingCommands::wrongUsageIsOneLine()
{
    QFETCH(QStringList, arguments);
    const program::Outcome outcome = program::run(arguments);
    QCOMPARE(outcome.status, 2);
    QCOMPARE(outcome.output, QByteArray());
    QVERIFY2(outcome.errors.startsWith("orvex-inspect: "), outcome.errors.constData());
    QCOMPARE(outcome.errors.count('\n'), 1);
    QVERIFY(!outcome.errors.contains('\033'));
}

void TstTellingCommands::helpOfEachCommandHasAnExample()
{
    const program::Outcome whole = program::run({QStringLiteral("--help")});
    QCOMPARE(whole.status, 0);
    for (const char* command : {"list", "show", "diff", "report", "verify", "which", "search", "lint", "doctor",
                                "errors", "export", "fields"}) {
        QVERIFY2(whole.output.contains(QByteArray("  ") + command), command);
        const program::Outcome help = program::run({QLatin1String(command), QStringLiteral("--help")});
        QCOMPARE(help.status, 0);
        QVERIFY2(help.output.contains(QByteArray("Example:\n  orvex-inspect ") + command), command);
        QVERIFY2(help.output.startsWith(QByteArray("Usage: orvex-inspect ") + command), command);
    }
    QCOMPARE(program::run({QStringLiteral("--version")}).status, 0);
}

void TstTellingCommands::helpIsInTheLanguageOfTheCall()
{
    static const QRegularExpression han(QStringLiteral("\\p{Han}"));
    for (const Command& command : commands()) {
        const program::Outcome help = program::run(
            {QStringLiteral("--lang"), QStringLiteral("zh"), QLatin1String(command.name), QStringLiteral("--help")});
        QCOMPARE(help.status, 0);
        const QString text = QString::fromUtf8(help.output);
        QVERIFY2(text.startsWith(QStringLiteral("用法：orvex-inspect ") + QLatin1String(command.name)), command.name);
        const QStringList options =
            text.section(QStringLiteral("选项：\n"), 1).section(QStringLiteral("\n\n"), 0, 0).split(QLatin1Char('\n'));
        QVERIFY2(options.size() >= 4, command.name);
        for (const QString& option : options)
            QVERIFY2(han.match(option).hasMatch() && output::columnsOf(option) <= 80, qPrintable(option));
    }
    const QByteArray english = program::run({QStringLiteral("--help")}, {QStringLiteral("LANG=C")}).output;
    QVERIFY2(english.startsWith("Usage: "), english.constData());
    const QByteArray chinese = program::run({QStringLiteral("--help")}, {QStringLiteral("LANG=zh_CN.UTF-8")}).output;
    QVERIFY2(chinese.startsWith("用法："), chinese.constData());
    QCOMPARE(program::run({QStringLiteral("--lang=zh"), QStringLiteral("--help")}).output, chinese);
    // The installation's own choice counts before that of the environment.
    const QString store = installation::path(QStringLiteral("chinese"));
    installation::writeFile(store + QStringLiteral("/config.ini"), "[config]\nLangCode=2052\n");
    QCOMPARE(
        program::run({QStringLiteral("--store"), store, QStringLiteral("--help")}, {QStringLiteral("LANG=C")}).output,
        chinese);
}

void TstTellingCommands::complaintsAboutTheCallAreInItsLanguage_data()
{
    QTest::addColumn<QString>("call");
    QTest::addColumn<QString>("complaint");
    QTest::newRow("no command") << "--lang zh"
                                << "没有给出命令，`orvex-inspect --help`列出全部命令";
    QTest::newRow("no such command") << "--lang zh sow"
                                     << "sow：没有该命令，`orvex-inspect --help`列出全部命令";
    QTest::newRow("unknown option") << "show --foo --lang=zh"
                                    << "show: 未知选项“foo”，见`orvex-inspect show --help`";
    QTest::newRow("unknown options") << "show -x -y --lang zh"
                                     << "show: 未知选项：x, y，见`orvex-inspect show --help`";
    QTest::newRow("missing value") << "--lang zh show --section"
                                   << "show: “--section”之后缺少值，见`orvex-inspect show --help`";
    QTest::newRow("value too many") << "--lang zh show --json=a"
                                    << "show: “--json”之后不能有值，见`orvex-inspect show --help`";
    QTest::newRow("missing argument") << "--lang zh which"
                                      << "which的参数为PACKAGE...，见`orvex-inspect which --help`";
    QTest::newRow("no such directory") << "--lang zh --store /nowhere list"
                                       << "--store /nowhere：没有该目录";
    QTest::newRow("two stores") << "--lang zh --store / --store / doctor"
                                << "doctor只能使用一个--store，见`orvex-inspect doctor --help`";
    QTest::newRow("another language") << "--lang zh --lang de list"
                                      << "--lang de: give en or zh";
}

void TstTellingCommands::complaintsAboutTheCallAreInItsLanguage()
{
    QFETCH(const QString, call);
    QFETCH(const QString, complaint);
    const program::Outcome outcome = program::run(call.split(QLatin1Char(' ')), {QStringLiteral("LANG=zh_CN.UTF-8")});
    QCOMPARE(outcome.status, 2);
    QCOMPARE(QString::fromUtf8(outcome.errors), QStringLiteral("orvex-inspect: ") + complaint + QLatin1Char('\n'));
}

TEST_ENTRY(tellingcommands, runGuilessTest<TstTellingCommands>)

#include "tst_tellingcommands.moc"
