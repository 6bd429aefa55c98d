#include "inspect/InspectSupport.h"
#include "inspect/ProgramRun.h"
#include "support/DistinctRecord.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QDir>
#include <QDomDocument>
#include <QtTest>

/// What the program writes to be read elsewhere, and its advice: report, diff --html and lint.
class TstAdvisingCommands : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void reportIsAPageInBothLanguages();
    void reportShowsTheIconsBesideTheDocument();
    void reportCanBeMarkdown();
    void reportIsFiledOnceAndNeverOverwrites();
    void reportOfAnUnverifiedEntryIsAskedFor();
    void reportTakesOneForm();
    void comparisonIsAPageWithItsStatus();
    void nothingBelowTheStoreChanges();

    void lintOfAGoodEntryIsEmpty();
    void lintTellsCodeLevelPathAndEntry();
    void lintOfASourceThatIsNoEntryHasNoEntry();
    void notesAloneAreNoFinding();
    void lintOfAllTakesTheVerifiedOfEveryStore();
    void lintFindsASourceInTheFirstStoreThatHasIt();
    void lintTakesSourcesOrAll();
    void lintRefusesWhatDoesNotVerify();
};

namespace {

constexpr quint64 first = 1700000000;
constexpr quint64 second = 1700000600;

QString storeRoot()
{
    return installation::path(QStringLiteral("store/"));
}

QString otherRoot()
{
    return installation::path(QStringLiteral("other/"));
}

/// The words of a call, one blank between two.
QStringList call(const char* words, const char* language = "en")
{
    return QStringList{QStringLiteral("--store"), storeRoot(), QStringLiteral("--lang"), QLatin1String(language)} +
           QString::fromUtf8(words).split(QLatin1Char(' '));
}

CustomInfo recordAt(quint64 stamp)
{
    CustomInfo record;
    record.common.cusTimeStamp = stamp;
    record.common.cusTimeString =
        QDateTime::fromSecsSinceEpoch(static_cast<qint64>(stamp)).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
    record.zoa.ZOAIP = QStringLiteral("10.0.0.1");
    return record;
}

void keep(const CustomInfo& record, const QString& root = storeRoot())
{
    storeCustomisation(root, record);
}

QDomElement parsed(const QByteArray& page)
{
    QDomDocument document;
    document.setContent(page);
    return document.documentElement();
}

QStringList adviceIn(const QJsonArray& rows)
{
    QStringList texts;
    for (const QJsonValue& value : rows) {
        const QJsonObject row = value.toObject();
        QStringList cells;
        for (const char* key : {"entry", "code", "level", "path"})
            cells.append(row.value(QLatin1String(key)).toString(QStringLiteral("null")));
        texts.append(cells.join(QLatin1Char(' ')));
    }
    return texts;
}

} // namespace

void TstAdvisingCommands::init()
{
    installation::clear();
    for (const QString& root : {storeRoot(), otherRoot()}) {
        QDir(root).removeRecursively();
        QVERIFY(QDir().mkpath(root + QStringLiteral("Resources")));
        for (const QString& file : {QStringLiteral("Language_en.xml"), QStringLiteral("Language_zh.xml")})
            QVERIFY(QFile::copy(QStringLiteral(ORVEX_SOURCE_DIR "/Resources/") + file,
                                root + QStringLiteral("Resources/") + file));
    }
}

void TstAdvisingCommands::reportIsAPageInBothLanguages()
{
    keep(recordAt(first));
    const program::Outcome english = program::run(call("report latest"));
    const program::Outcome chinese = program::run(call("report latest --html", "zh"));
    QCOMPARE(english.status, 0);
    QCOMPARE(chinese.status, 0);
    QCOMPARE(parsed(english.output).attribute(QStringLiteral("lang")), QStringLiteral("en"));
    QCOMPARE(parsed(chinese.output).attribute(QStringLiteral("lang")), QStringLiteral("zh-CN"));
    QVERIFY(english.output.contains("<td>Orvex PC 7.2 (E0408)</td>"));
    QVERIFY(english.output.contains("<th>Additional information</th>"));
    QVERIFY(QString::fromUtf8(chinese.output).contains(QStringLiteral("<th>附加信息</th>")));
    // Without --lang as the manager chooses: by the settings of the store.
    installation::writeFile(storeRoot() + QStringLiteral("config.ini"), "[config]\nLanguage=2052\n");
    const QStringList plain = {QStringLiteral("--store"), storeRoot(), QStringLiteral("report"),
                               QStringLiteral("latest")};
    const QByteArray chosen = program::run(plain, {QStringLiteral("LANG=zh_CN.UTF-8")}).output;
    QCOMPARE(parsed(chosen).attribute(QStringLiteral("lang")), QStringLiteral("zh-CN"));
}

void TstAdvisingCommands::reportShowsTheIconsBesideTheDocument()
{
    CustomInfo record = recordAt(first);
    record.gui.linuxDeskIconPath = QStringLiteral("/icon.png");
    record.gui.macosDeskIconPath = QStringLiteral("/icon.icns");
    keep(record);
    const QString directory = storeRoot() + QStringLiteral("UpdateCustom/%1/").arg(first);
    installation::writeFile(directory + QStringLiteral("DeskIconLinux.png"), "png bytes");
    installation::writeFile(directory + QStringLiteral("MainIcon.ico"), "not named by the document");
    const QByteArray page = program::run(call("report latest")).output;
    QVERIFY(page.contains("src=\"data:image/png;base64,cG5nIGJ5dGVz\""));
    QVERIFY(page.contains("DeskIconMacos.icns: missing"));
    QVERIFY(!page.contains("image/x-icon"));
}

void TstAdvisingCommands::reportCanBeMarkdown()
{
    CustomInfo record = recordAt(first);
    record.common.cusAddInfo = QStringLiteral("a|b <c>");
    keep(record);
    const program::Outcome outcome = program::run(call("report latest --markdown"));
    QCOMPARE(outcome.status, 0);
    QVERIFY(
        outcome.output.startsWith("# Client customisation\n\n| Field | Value |\n| --- | --- |\n| Time | 2023-11-15 "));
    QVERIFY(outcome.output.contains("| Additional information | a\\|b \\<c\\> |\n"));
}

void TstAdvisingCommands::reportIsFiledOnceAndNeverOverwrites()
{
    keep(recordAt(first));
    const QString file = installation::path(QStringLiteral("report.html"));
    QFile::remove(file);
    const QStringList arguments = call("report latest -o") + QStringList{file};
    const program::Outcome written = program::run(arguments);
    QCOMPARE(written.status, 0);
    QCOMPARE(written.output, QByteArray());
    const QByteArray page = installation::readFile(file);
    QCOMPARE(page, program::run(call("report latest")).output);

    installation::writeFile(file, "precious");
    const program::Outcome refused = program::run(arguments);
    QCOMPARE(refused.status, 2);
    QVERIFY(refused.errors.startsWith("orvex-inspect: " + file.toUtf8()));
    QCOMPARE(refused.errors.count('\n'), 1);
    QCOMPARE(installation::readFile(file), QByteArray("precious"));
}

void TstAdvisingCommands::reportOfAnUnverifiedEntryIsAskedFor()
{
    keep(recordAt(first));
    const QString file = storeRoot() + QStringLiteral("UpdateCustom/%1/OrvexCustom.xml").arg(first);
    installation::writeFile(file, installation::readFile(file) + ' ');
    const QByteArray name = QByteArray::number(first);
    const program::Outcome refused = program::run(call(QByteArray("report " + name).constData()));
    QCOMPARE(refused.status, 2);
    QVERIFY(refused.errors.contains("digest"));
    const program::Outcome told = program::run(call(QByteArray("report --unverified " + name).constData()));
    QCOMPARE(told.status, 0);
    QVERIFY(told.output.contains("NOT VERIFIED: digest"));
}

void TstAdvisingCommands::reportTakesOneForm()
{
    keep(recordAt(first));
    QCOMPARE(program::run(call("report latest --html --markdown")).status, 2);
    QCOMPARE(program::run(call("report latest --json")).status, 2);
    QCOMPARE(program::run(call("diff latest latest --html --json")).status, 2);
    QCOMPARE(program::run(call("diff latest latest -o x.html")).status, 2);
}

void TstAdvisingCommands::comparisonIsAPageWithItsStatus()
{
    keep(recordAt(first));
    CustomInfo other = recordAt(second);
    other.zoa.ZOAIP = QStringLiteral("<b>10.0.0.2</b>");
    keep(other);
    const program::Outcome same = program::run(call("diff latest latest --html"));
    QCOMPARE(same.status, 0);
    QVERIFY(same.output.contains("There is no difference."));
    const program::Outcome differs = program::run(call("diff latest~1 latest --html"));
    QCOMPARE(differs.status, 1);
    QCOMPARE(parsed(differs.output).tagName(), QStringLiteral("html"));
    QVERIFY(differs.output.contains("<td>10.0.0.1</td>"));
    QVERIFY(differs.output.contains("<td>&lt;b&gt;10.0.0.2&lt;/b&gt;</td>"));
    QVERIFY(differs.output.contains("<td>Orvex PC 7.2 (E0408)</td>"));
}

void TstAdvisingCommands::nothingBelowTheStoreChanges()
{
    keep(recordAt(first));
    keep(recordAt(second));
    inspecting::snapshot(storeRoot()); // reads the files, which notes the time of access
    const QByteArray before = inspecting::snapshot(storeRoot());
    for (const char* words : {"report latest", "report latest --markdown", "diff latest latest~1 --html", "lint latest",
                              "lint --all", "lint --all --json"})
        QVERIFY2(program::run(call(words)).status != 2, words);
    QCOMPARE(inspecting::snapshot(storeRoot()), before);
}

void TstAdvisingCommands::lintOfAGoodEntryIsEmpty()
{
    keep(recordAt(first));
    const program::Outcome text = program::run(call("lint latest"));
    QCOMPARE(text.status, 0);
    QCOMPARE(text.output, QByteArray());
    QCOMPARE(program::array(call("lint latest")), QJsonArray());
}

void TstAdvisingCommands::lintTellsCodeLevelPathAndEntry()
{
    CustomInfo record = recordAt(first);
    record.zoa.ZOAIP = QStringLiteral("127.0.0.1");
    keep(record);
    const program::Outcome text = program::run(call("lint latest"));
    QCOMPARE(text.status, 1);
    QVERIFY(text.output.contains("1700000000  warning  odd-address  ZOA/ZOAIP"));
    const QJsonArray rows = program::array(call("lint latest"));
    QCOMPARE(rows, QJsonArray{(QJsonObject{{QStringLiteral("entry"), QStringLiteral("1700000000")},
                                           {QStringLiteral("code"), QStringLiteral("odd-address")},
                                           {QStringLiteral("level"), QStringLiteral("warning")},
                                           {QStringLiteral("path"), QStringLiteral("ZOA/ZOAIP")},
                                           {QStringLiteral("message"),
                                            QStringLiteral("the server address 127.0.0.1 is a loopback address")}})});
}

void TstAdvisingCommands::lintOfASourceThatIsNoEntryHasNoEntry()
{
    CustomInfo record = recordAt(first);
    record.zoa.ZOAIP.clear();
    keep(record);
    const QString directory = storeRoot() + QStringLiteral("UpdateCustom/%1").arg(first);
    const QJsonArray rows = program::array(call("lint") + QStringList{directory});
    QCOMPARE(adviceIn(rows), QStringList(QStringLiteral("null no-zoa-address warning ZOA/ZOAIP")));
    QVERIFY(rows.first().toObject().value(QLatin1String("entry")).isNull());
}

void TstAdvisingCommands::notesAloneAreNoFinding()
{
    CustomInfo record = recordAt(first);
    record.zoa.standbyZOAIP = record.zoa.ZOAIP;
    keep(record);
    const program::Outcome outcome = program::run(call("lint latest --json"));
    QCOMPARE(outcome.status, 0);
    QVERIFY(outcome.output.contains("same-address"));
}

void TstAdvisingCommands::lintOfAllTakesTheVerifiedOfEveryStore()
{
    CustomInfo record = recordAt(first);
    record.zoa.ZOAIP.clear();
    keep(record);
    record.common.cusTimeStamp = second;
    keep(record, otherRoot());
    record.common.cusTimeStamp = second + 1;
    keep(record);
    installation::writeFile(storeRoot() + QStringLiteral("UpdateCustom/%1/OrvexCustomXml.vrf").arg(second + 1), "x");
    const QStringList both = QStringList{QStringLiteral("--store"), otherRoot()} + call("lint --all");
    QCOMPARE(adviceIn(program::array(both)),
             QStringList({QStringLiteral("1700000600 no-zoa-address warning ZOA/ZOAIP"),
                          QStringLiteral("1700000000 no-zoa-address warning ZOA/ZOAIP")}));
    QCOMPARE(program::run(both).status, 1);
}

void TstAdvisingCommands::lintFindsASourceInTheFirstStoreThatHasIt()
{
    CustomInfo record = recordAt(first);
    record.zoa.ZOAIP.clear();
    keep(record);
    const QStringList both = QStringList{QStringLiteral("--store"), otherRoot()} +
                             call(QByteArray("lint " + QByteArray::number(first)).constData());
    QCOMPARE(program::array(both).size(), 1);
}

void TstAdvisingCommands::lintTakesSourcesOrAll()
{
    keep(recordAt(first));
    for (const char* words : {"lint", "lint --all latest"}) {
        const program::Outcome outcome = program::run(call(words));
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.errors.startsWith("orvex-inspect: lint takes"));
    }
}

void TstAdvisingCommands::lintRefusesWhatDoesNotVerify()
{
    keep(recordAt(first));
    const QByteArray name = QByteArray::number(first);
    installation::writeFile(storeRoot() + QStringLiteral("UpdateCustom/%1/OrvexCustomXml.vrf").arg(first), "x");
    const program::Outcome refused = program::run(call(QByteArray("lint --json " + name).constData()));
    QCOMPARE(refused.status, 2);
    QCOMPARE(refused.output, QByteArray());
    QVERIFY(refused.errors.contains("verification-size"));
    QCOMPARE(program::run(call(QByteArray("lint --unverified " + name).constData())).status, 0);
}

TEST_ENTRY(advisingcommands, runGuilessTest<TstAdvisingCommands>)
#include "tst_advisingcommands.moc"
