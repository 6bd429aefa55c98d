#include "mainwindow/MainWindowFixture.h"
#include "support/Interposed.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QDir>

#include <algorithm>
#include <cstring>
#include <dirent.h>
#include <vector>

namespace {

bool s_isSorted = false;
DIR* s_directory = nullptr;
std::vector<dirent> s_entries;
size_t s_next = 0;

/// While `s_isSorted` is set a directory gives its names in ascending order, so that a test knows what the scan meets
/// first. One directory at a time, read from its start to its end or abandoned.
dirent* sortedReaddir(interposed::Readdir::Real real, DIR* directory)
{
    if (!s_isSorted)
        return real(directory);
    if (directory != s_directory) {
        s_directory = directory;
        s_entries.clear();
        s_next = 0;
        while (const dirent* entry = real(directory)) {
            dirent copy = {};
            memcpy(&copy, entry, std::min<size_t>(entry->d_reclen, sizeof copy));
            s_entries.push_back(copy);
        }
        std::sort(s_entries.begin(), s_entries.end(),
                  [](const dirent& a, const dirent& b) { return strcmp(a.d_name, b.d_name) < 0; });
    }
    if (s_next < s_entries.size())
        return &s_entries[s_next++];
    s_directory = nullptr;
    return nullptr;
}

QString numbered(const char* prefix, int number)
{
    return QString::fromLatin1(prefix) + QStringLiteral("%1").arg(number, 3, 10, QLatin1Char('0'));
}

/// Links to one customisation, named "a000" and so on: each is a directory to the scan.
void storeCopies(int count)
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one", QStringLiteral(".original"));
    for (int i = 0; i < count; ++i)
        QVERIFY(QFile::link(QStringLiteral(".original"), inHistory(numbered("a", i))));
}

QList<quint64> stamps(const OrvexManager& window)
{
    QList<quint64> found;
    for (const CUSINFOPOLICY& row : window.history())
        found.append(row.cusTimeStamp);
    return found;
}

/// How many descriptors of this process stand for the directory of the history.
int openHistoryDirectories()
{
    int count = 0;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString& name : descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        if (QFile::symLinkTarget(descriptors.filePath(name)) == inHistory().chopped(1))
            ++count;
    }
    return count;
}

/// The lines of the scan itself, from their tags on.
QStringList scanLines()
{
    QStringList lines;
    for (const QString& line : installation::logLines()) {
        const QString text = line.mid(5);
        if (text.startsWith(QLatin1String("GetCurAllCustoms")) || text.startsWith(QLatin1String("stat ")) ||
            text.startsWith(QLatin1String("OrvexManager::")))
            lines.append(line);
    }
    return lines;
}

bool limitIsLogged()
{
    return installation::log().contains(
        " [DBG]OrvexManager::GetCurAllCustoms: uCount >= MAX_COUTN_CUSTOM\xA3\xACso return.\n");
}

} // namespace

class TstOrvexManagerScan : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        prepareInstallation();
        s_isSorted = false;
    }
    void cleanup() { s_isSorted = false; }

    void aMissingStoreGivesAnEmptyHistoryAndALine();
    void verifiedCustomisationsAreListedInReverseOfTheDirectory();
    void theListIsNotSorted();
    void theScanLogsEachStepInOrder();
    void namesWithAPointAndPlainFilesAreSkipped();
    void aLinkToNowhereIsSkippedWithAWarning();
    void aPathOf259BytesIsListedAndOneOf260IsSkippedWithALine();
    void directoriesWithoutADocumentAreSkippedWithoutAWord();
    void alteredCustomisationsStayOnDiskOutsideTheList();
    void theThreeHundredAndFirstDirectoryEndsTheScan();
    void anInvalidDirectoryBeyondTheLimitEndsTheScanToo();
    void invalidDirectoriesDoNotCountForTheLimit();
    void plainFilesDoNotCountForTheLimit();
    void theDirectoryIsClosedUnlessTheLimitEndsTheScan();
    void aDocumentWithoutCommonSectionListsWithTheDefaults_data();
    void aDocumentWithoutCommonSectionListsWithTheDefaults();
    void elementsMissingFromACommonSectionReadAsZero_data();
    void elementsMissingFromACommonSectionReadAsZero();
    void hostileStoresNeverCrashOrHangTheScan_data();
    void hostileStoresNeverCrashOrHangTheScan();
};

void TstOrvexManagerScan::aMissingStoreGivesAnEmptyHistoryAndALine()
{
    const OrvexManager window(nullptr);
    QVERIFY(window.history().isEmpty());
    const QStringList errors = installation::logMessages(QStringLiteral("[ERR]"));
    QVERIFY(!errors.isEmpty());
    QVERIFY(errors.first().startsWith(QLatin1String("GetCurAllCustoms error opendir: ")));
}

void TstOrvexManagerScan::verifiedCustomisationsAreListedInReverseOfTheDirectory()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    storeRow(1700000002, "2023-11-15 06:13:22", "two");
    storeRow(1700000003, "2023-11-15 06:13:23", "three");
    const OrvexManager window(nullptr);
    // What readdir gives: find does not sort either.
    const QStringList order =
        QString::fromLatin1(
            installation::run(QStringLiteral("find"), {inHistory(), QStringLiteral("-mindepth"), QStringLiteral("1"),
                                                       QStringLiteral("-maxdepth"), QStringLiteral("1"),
                                                       QStringLiteral("-printf"), QStringLiteral("%f\\n")}))
            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    QStringList reversed;
    for (quint64 stamp : stamps(window))
        reversed.prepend(QString::number(stamp));
    QCOMPARE(reversed, order);
    const QTreeWidget* tree = historyTree(window);
    QCOMPARE(tree->topLevelItemCount(), 3);
    const int row = shownTimes(window).indexOf(QStringLiteral("2023-11-15 06:13:22"));
    QVERIFY(row >= 0);
    QCOMPARE(tree->topLevelItem(row)->text(1), QStringLiteral("802.1X  Portal  ZOA  "));
    QCOMPARE(tree->topLevelItem(row)->text(2), QStringLiteral("two"));
    QCOMPARE(window.history().at(row).cusAddInfo, QStringLiteral("two"));
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->count(), 4);
    QVERIFY(isEnabled(window, "toolButton_deleteall"));
}

void TstOrvexManagerScan::theListIsNotSorted()
{
    storeRow(1700000003, "2023-11-15 06:13:23", "three", QStringLiteral("a"));
    storeRow(1700000001, "2023-11-15 06:13:21", "one", QStringLiteral("b"));
    storeRow(1700000002, "2023-11-15 06:13:22", "two", QStringLiteral("c"));
    s_isSorted = true;
    const OrvexManager window(nullptr);
    QCOMPARE(stamps(window), (QList<quint64>{1700000002, 1700000001, 1700000003}));
    QCOMPARE(shownTimes(window),
             (QStringList{QStringLiteral("2023-11-15 06:13:22"), QStringLiteral("2023-11-15 06:13:21"),
                          QStringLiteral("2023-11-15 06:13:23")}));
}

void TstOrvexManagerScan::theScanLogsEachStepInOrder()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one", QStringLiteral("a"));
    storeRow(1700000002, "2023-11-15 06:13:22", "two", QStringLiteral("b"));
    installation::writeFile(inHistory(QStringLiteral("b/OrvexCustom.xml")), "<msg/>");
    QVERIFY(QFile::link(QStringLiteral("nowhere"), inHistory(QStringLiteral("c"))));
    installation::writeFile(inHistory(QStringLiteral("d %s %n")), "a plain file");
    installation::clearLog();
    s_isSorted = true;
    const OrvexManager window(nullptr);
    const QStringList expected = installation::texts({
        "[DBG]GetCurAllCustoms updatecustom dir: {root}UpdateCustom/",
        "[DBG]GetCurAllCustoms file d_name: .",
        "[DBG]GetCurAllCustoms file d_name: ..",
        "[DBG]GetCurAllCustoms file d_name: a",
        "[DBG]GetCurAllCustoms dir path: {root}UpdateCustom/a",
        "[DBG]GetCurAllCustoms File type: 16384",
        "[DBG]GetCurAllCustoms common file: a",
        "[DBG]GetCurAllCustoms file d_name: b",
        "[DBG]GetCurAllCustoms dir path: {root}UpdateCustom/b",
        "[DBG]GetCurAllCustoms File type: 16384",
        "[DBG]GetCurAllCustoms common file: b",
        "[WRN]GetCurAllCustoms::utl_CusXmlVerify failed,continue.",
        "[DBG]GetCurAllCustoms file d_name: c",
        "[DBG]GetCurAllCustoms dir path: {root}UpdateCustom/c",
        "[WRN]stat return error",
        "[DBG]GetCurAllCustoms file d_name: d %s %n",
        "[DBG]GetCurAllCustoms dir path: {root}UpdateCustom/d %s %n",
        "[DBG]GetCurAllCustoms File type: 32768",
    });
    QCOMPARE(scanLines(), expected);
}

void TstOrvexManagerScan::namesWithAPointAndPlainFilesAreSkipped()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "hidden", QStringLiteral(".1700000001"));
    storeRow(1700000002, "2023-11-15 06:13:22", "shown");
    installation::writeFile(inHistory(QStringLiteral("1700000003")), "a plain file");
    const OrvexManager window(nullptr);
    QCOMPARE(shownTimes(window), QStringList{QStringLiteral("2023-11-15 06:13:22")});
}

void TstOrvexManagerScan::aLinkToNowhereIsSkippedWithAWarning()
{
    storeRow(1700000002, "2023-11-15 06:13:22", "shown");
    QVERIFY(QFile::link(QStringLiteral("nowhere"), inHistory(QStringLiteral("1700000001"))));
    installation::clearLog();
    const OrvexManager window(nullptr);
    QCOMPARE(shownTimes(window), QStringList{QStringLiteral("2023-11-15 06:13:22")});
    QCOMPARE(installation::logMessages(QStringLiteral("[WRN]")), QStringList{QStringLiteral("stat return error")});
    QVERIFY(QFileInfo(inHistory(QStringLiteral("1700000001"))).isSymLink());
}

void TstOrvexManagerScan::aPathOf259BytesIsListedAndOneOf260IsSkippedWithALine()
{
    const int room = 259 - inHistory().toLocal8Bit().size();
    QVERIFY2(room >= 10 && room < 255, "the build directory lies too deep for this test");
    const QString longest(room, QLatin1Char('l'));
    const QString tooLong(room + 1, QLatin1Char('m'));
    storeRow(1700000001, "2023-11-15 06:13:21", "fits", longest);
    storeRow(1700000002, "2023-11-15 06:13:22", "does not fit", tooLong);
    installation::clearLog();
    const OrvexManager window(nullptr);
    QCOMPARE(stamps(window), QList<quint64>{1700000001});
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QLatin1String("GetCurAllCustoms: path is too long: ") + inHistory(tooLong)));
    QVERIFY(QFile::exists(inHistory(tooLong)));
}

void TstOrvexManagerScan::directoriesWithoutADocumentAreSkippedWithoutAWord()
{
    QDir().mkpath(inHistory(QStringLiteral("1700000001")));
    installation::clearLog();
    const OrvexManager window(nullptr);
    QVERIFY(window.history().isEmpty());
    QCOMPARE(installation::logMessages(QStringLiteral("[WRN]")), QStringList());
    QVERIFY(!installation::log().contains("vrf file path is"));
    QVERIFY(QDir(inHistory(QStringLiteral("1700000001"))).exists());
}

void TstOrvexManagerScan::alteredCustomisationsStayOnDiskOutsideTheList()
{
    storeRow(1700000001, "2023-11-15 06:13:21", "one");
    const QString document = inHistory(QStringLiteral("1700000001/OrvexCustom.xml"));
    installation::writeFile(document, installation::readFile(document).replace("one", "two"));
    installation::clearLog();
    const OrvexManager window(nullptr);
    QVERIFY(window.history().isEmpty());
    QCOMPARE(installation::logMessages(QStringLiteral("[WRN]")),
             QStringList{QStringLiteral("GetCurAllCustoms::utl_CusXmlVerify failed,continue.")});
    QVERIFY(QFile::exists(document));
}

void TstOrvexManagerScan::theThreeHundredAndFirstDirectoryEndsTheScan()
{
    storeCopies(301);
    storeRow(1700000002, "2023-11-15 06:13:22", "late", QStringLiteral("z"));
    installation::clearLog();
    s_isSorted = true;
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 300);
    QVERIFY(limitIsLogged());
    QCOMPARE(scanLines().filter(QStringLiteral("common file: ")).last(),
             QStringLiteral("[DBG]GetCurAllCustoms common file: a300"));
    QVERIFY(!shownTimes(window).contains(QStringLiteral("2023-11-15 06:13:22")));
    QVERIFY(QFile::exists(inHistory(QStringLiteral("z/OrvexCustom.xml"))));
}

void TstOrvexManagerScan::anInvalidDirectoryBeyondTheLimitEndsTheScanToo()
{
    storeCopies(300);
    QDir().mkpath(inHistory(QStringLiteral("b without a document")));
    storeRow(1700000002, "2023-11-15 06:13:22", "late", QStringLiteral("c"));
    installation::clearLog();
    s_isSorted = true;
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 300);
    QVERIFY(limitIsLogged());
    QCOMPARE(scanLines().filter(QStringLiteral("d_name: ")).last(),
             QStringLiteral("[DBG]GetCurAllCustoms file d_name: b without a document"));
}

void TstOrvexManagerScan::invalidDirectoriesDoNotCountForTheLimit()
{
    storeCopies(299);
    for (int i = 0; i < 20; ++i) {
        QDir().mkpath(inHistory(numbered("0 empty ", i)));
        installation::writeFile(inHistory(numbered("1 altered ", i) + QLatin1String("/OrvexCustom.xml")), "<msg/>");
    }
    storeRow(1700000002, "2023-11-15 06:13:22", "the 300th", QStringLiteral("z"));
    installation::clearLog();
    s_isSorted = true;
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 300);
    QCOMPARE(shownTimes(window).first(), QStringLiteral("2023-11-15 06:13:22"));
    QVERIFY(!limitIsLogged());
}

void TstOrvexManagerScan::plainFilesDoNotCountForTheLimit()
{
    storeCopies(300);
    for (int i = 0; i < 20; ++i)
        installation::writeFile(inHistory(numbered("z plain ", i)), "x");
    installation::clearLog();
    s_isSorted = true;
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 300);
    QVERIFY(!limitIsLogged());
    QCOMPARE(scanLines().last(), QStringLiteral("[DBG]GetCurAllCustoms File type: 32768"));
}

void TstOrvexManagerScan::theDirectoryIsClosedUnlessTheLimitEndsTheScan()
{
    storeCopies(300);
    const int before = openHistoryDirectories();
    {
        const OrvexManager full(nullptr);
        QCOMPARE(full.history().size(), 300);
        QCOMPARE(openHistoryDirectories(), before);
    }
    QVERIFY(QFile::link(QStringLiteral(".original"), inHistory(QStringLiteral("b"))));
    const OrvexManager overfull(nullptr);
    QCOMPARE(overfull.history().size(), 300);
    QCOMPARE(openHistoryDirectories(), before + 1);
}

void TstOrvexManagerScan::aDocumentWithoutCommonSectionListsWithTheDefaults_data()
{
    QTest::addColumn<QByteArray>("document");
    const QByteArray head = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n";
    QTest::newRow("other sections") << QByteArray(
        head + "<msg>\n    <content>\n        <portal>\n            <autoAuth>1</autoAuth>\n        </portal>\n"
               "    </content>\n</msg>\n");
    QTest::newRow("empty content") << QByteArray(head + "<msg><content/></msg>\n");
    QTest::newRow("no content") << QByteArray(head + "<msg/>\n");
    QTest::newRow("common outside content")
        << QByteArray(head + "<msg><common><cusTimeStamp>5</cusTimeStamp><procomVal>63</procomVal></common></msg>\n");
    QTest::newRow("no XML") << QByteArray("not well-formed <");
    QTest::newRow("no byte") << QByteArray();
}

void TstOrvexManagerScan::aDocumentWithoutCommonSectionListsWithTheDefaults()
{
    QFETCH(QByteArray, document);
    // What an earlier document held does not carry over.
    storeCustomisation(installation::root(),
                       storedRecord(1700000001, QStringLiteral("2023-11-15 06:13:21"), QStringLiteral("one"), 63, 5),
                       QStringLiteral("a"));
    storeDocument(installation::root(), document, QStringLiteral("b"));
    s_isSorted = true;
    const OrvexManager window(nullptr);
    QCOMPARE(stamps(window), (QList<quint64>{0, 1700000001}));
    const CUSINFOPOLICY& row = window.history().first();
    QCOMPARE(row.cusTimeString, QString());
    QCOMPARE(row.cusAddInfo, QString());
    QCOMPARE(row.procomVal, 3U);
    QCOMPARE(row.funcomVal, 1U);
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->itemText(1),
             QStringLiteral("    802.1X  Portal  ZOA      "));
}

void TstOrvexManagerScan::elementsMissingFromACommonSectionReadAsZero_data()
{
    QTest::addColumn<QByteArray>("masks");
    QTest::addColumn<QString>("summary");
    QTest::addColumn<QStringList>("boxes");
    QTest::newRow("no mask") << QByteArray() << QString() << QStringList();
    QTest::newRow("no access components")
        << QByteArray("<funcomVal>4</funcomVal>") << QStringLiteral("KEF  ") << QStringList{QStringLiteral("keffunc")};
    QTest::newRow("no function components") << QByteArray("<procomVal>16</procomVal>") << QStringLiteral("SSLVPN  ")
                                            << QStringList{QStringLiteral("sslvpnPro")};
}

void TstOrvexManagerScan::elementsMissingFromACommonSectionReadAsZero()
{
    QFETCH(QByteArray, masks);
    storeDocument(installation::root(),
                  "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<msg><content><common>"
                  "<cusTimeStamp>1700000001</cusTimeStamp><cusTimeString>2023-11-15 06:13:21</cusTimeString>" +
                      masks + "</common></content></msg>\n",
                  QStringLiteral("1700000001"));
    const OrvexManager window(nullptr);
    QCOMPARE(window.history().size(), 1);
    QTEST(historyTree(window)->topLevelItem(0)->text(1), "summary");
    QCOMPARE(historyTree(window)->topLevelItem(0)->text(2), QString());
    child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(1);
    QTEST(tickedBoxes(window), "boxes");
}

void TstOrvexManagerScan::hostileStoresNeverCrashOrHangTheScan_data()
{
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<QByteArray>("verification");
    const QByteArray verification(256, 'v');
    QByteArray nested;
    for (int i = 0; i < 13000; ++i)
        nested += "<a>";
    QTest::newRow("empty files") << QByteArray() << QByteArray();
    QTest::newRow("verification too short") << QByteArray("<msg/>") << verification.left(255);
    QTest::newRow("verification too long") << QByteArray("<msg/>") << QByteArray(verification + "v");
    QTest::newRow("deep nesting") << nested << verification;
    QTest::newRow("oversized") << QByteArray(5000000, 'x') << verification;
    QTest::newRow("NUL bytes") << QByteArray(2000, '\0') << verification;
    QTest::newRow("foreign") << QByteArray("\x7f"
                                           "ELF and so on")
                             << verification;
}

void TstOrvexManagerScan::hostileStoresNeverCrashOrHangTheScan()
{
    QFETCH(QByteArray, document);
    QFETCH(QByteArray, verification);
    storeRow(1700000001, "2023-11-15 06:13:21", "good");
    installation::writeFile(inHistory(QStringLiteral("1700000002/OrvexCustom.xml")), document);
    installation::writeFile(inHistory(QStringLiteral("1700000002/OrvexCustomXml.vrf")), verification);
    installation::run(QStringLiteral("mkfifo"),
                      {QStringLiteral("-m"), QStringLiteral("600"), inHistory(QStringLiteral("pipe"))});
    const OrvexManager window(nullptr);
    QCOMPARE(shownTimes(window), QStringList{QStringLiteral("2023-11-15 06:13:21")});
    QCOMPARE(installation::readFile(inHistory(QStringLiteral("1700000002/OrvexCustom.xml"))), document);
}

static int run(int argc, char** argv)
{
    interposed::onReaddir = sortedReaddir;
    return playTest<TstOrvexManagerScan>(argc, argv);
}

TEST_ENTRY(orvexmanager_scan, run)

#include "tst_orvexmanager_scan.moc"
