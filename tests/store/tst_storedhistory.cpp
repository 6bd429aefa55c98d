#include "store/HistoryRows.h"
#include "store/HistoryScan.h"
#include "store/StoredDirectory.h"
#include "support/CommandRecorder.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"

#include <QDir>
#include <QtTest>

#include <cstdio>
#include <cstdlib>

using installation::path;
using installation::texts;
using installation::withoutRoot;

// Stored customisations without any window: where they lie, how the scan finds them, how a row is found again.
class TstStoredHistory : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        installation::clear();
        QVERIFY(QDir().mkpath(path(QStringLiteral("Log"))));
    }

    void theHistoryLiesBesideTheExecutable();
    void directoriesAreNamedBySigned32Bits_data();
    void directoriesAreNamedBySigned32Bits();
    void documentsAreMissingUnverifiedOrVerified();
    void removalTakesTheDirectoryOfTheStamp();
    void removalWithoutAHistoryIsALineAlone();
    void masksOfARowAreCutTo32Bits();
    void rowsAreFoundByExactTimeOrInAnyCase_data();
    void rowsAreFoundByExactTimeOrInAnyCase();
    void aMissingHistoryIsALineAndNoRows();
    void verifiedCustomisationsBecomeRows();
    void namesOutsideTheLocalEncodingAreRead_data();
    void namesOutsideTheLocalEncodingAreRead();
    void oddDocumentsHaveTheirLineWhateverTheName_data();
    void oddDocumentsHaveTheirLineWhateverTheName();
    void theScanStopsAtTheFirstDirectoryBeyondTheLimit();
    void exactlyTheLimitIsNoReasonToStop();
};

namespace {

CustomInfo record(quint64 timeStamp, const char* timeString, const char* remark)
{
    CustomInfo info;
    info.common.cusTimeStamp = timeStamp;
    info.common.cusTimeString = QString::fromLatin1(timeString);
    info.common.cusAddInfo = QString::fromUtf8(remark);
    info.common.procomVal = 17;
    info.common.funcomVal = 5;
    return info;
}

void keep(quint64 timeStamp, const char* timeString = "2023-11-15 06:13:21", const char* remark = "")
{
    storeCustomisation(installation::root(), record(timeStamp, timeString, remark));
}

QByteArray local(const char* relative)
{
    return path(QString::fromLatin1(relative)).toLocal8Bit();
}

QVector<CUSINFOPOLICY> rowsOf(std::initializer_list<const char*> times)
{
    QVector<CUSINFOPOLICY> rows;
    for (const char* time : times)
        rows.append(store::historyRow(record(1, time, "").common));
    return rows;
}

QList<quint64> stampsOf(const QVector<CUSINFOPOLICY>& rows)
{
    QList<quint64> stamps;
    for (const CUSINFOPOLICY& row : rows)
        stamps.append(row.cusTimeStamp);
    std::sort(stamps.begin(), stamps.end());
    return stamps;
}

int openHistoryDirectories()
{
    int count = 0;
    const QDir descriptors(QStringLiteral("/proc/self/fd"));
    for (const QString& name : descriptors.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot))
        count += QFile::symLinkTarget(descriptors.filePath(name)) == path(QStringLiteral("UpdateCustom"));
    return count;
}

} // namespace

void TstStoredHistory::theHistoryLiesBesideTheExecutable()
{
    QCOMPARE(store::historyDirectory(), local("UpdateCustom"));
    QCOMPARE(store::documentIn("/a/b"), QByteArray("/a/b/OrvexCustom.xml"));
}

void TstStoredHistory::directoriesAreNamedBySigned32Bits_data()
{
    QTest::addColumn<quint64>("timeStamp");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("ordinary") << quint64(1700000000) << QByteArray("1700000000");
    QTest::newRow("zero") << quint64(0) << QByteArray("0");
    QTest::newRow("last positive") << quint64(2147483647) << QByteArray("2147483647");
    QTest::newRow("first negative") << quint64(2147483648) << QByteArray("-2147483648");
    QTest::newRow("last of 32 bits") << quint64(4294967295) << QByteArray("-1");
    QTest::newRow("beyond 32 bits") << quint64(4294967296) + 1700000000 << QByteArray("1700000000");
}

void TstStoredHistory::directoriesAreNamedBySigned32Bits()
{
    QFETCH(quint64, timeStamp);
    QFETCH(QByteArray, name);
    QCOMPARE(store::directoryName(timeStamp), name);
    QCOMPARE(store::storedDirectory(timeStamp), local("UpdateCustom/") + name);
}

void TstStoredHistory::documentsAreMissingUnverifiedOrVerified()
{
    keep(1700000001);
    const QByteArray directory = store::storedDirectory(1700000001);
    QCOMPARE(store::documentState(directory), store::DocumentState::Verified);
    installation::writeFile(path(QStringLiteral("UpdateCustom/1700000001/OrvexCustom.xml")), "<other/>");
    QCOMPARE(store::documentState(directory), store::DocumentState::Unverified);
    QVERIFY(QFile::remove(path(QStringLiteral("UpdateCustom/1700000001/OrvexCustom.xml"))));
    QCOMPARE(store::documentState(directory), store::DocumentState::Missing);
    QCOMPARE(store::documentState(store::storedDirectory(5)), store::DocumentState::Missing);
}

void TstStoredHistory::removalTakesTheDirectoryOfTheStamp()
{
    keep(1700000001);
    keep(1700000002);
    const CommandRecorder recorder;
    store::removeStored(quint64(4294967296) + 1700000001);
    QCOMPARE(withoutRoot(recorder.commands()), texts({R"(rm -rf "{root}UpdateCustom/1700000001")"}));
    QCOMPARE(installation::namesIn(path(QStringLiteral("UpdateCustom"))), texts({"1700000002"}));
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstStoredHistory::removalWithoutAHistoryIsALineAlone()
{
    const CommandRecorder recorder;
    store::removeStored(1700000001);
    QCOMPARE(recorder.commands(), QByteArrayList());
    QCOMPARE(installation::logLines(), texts({"[ERR]DelCustomInfo::utl_DirectoryExists failed,return."}));
}

void TstStoredHistory::masksOfARowAreCutTo32Bits()
{
    CommonInfo common = record(4294967297, "2023-11-15 06:13:21", "北京").common;
    common.procomVal = (quint64(7) << 32) + 17;
    common.funcomVal = (quint64(7) << 32) + 4;
    const CUSINFOPOLICY row = store::historyRow(common);
    QCOMPARE(row.cusTimeStamp, quint64(4294967297));
    QCOMPARE(row.cusTimeString, QStringLiteral("2023-11-15 06:13:21"));
    QCOMPARE(row.cusAddInfo, QString::fromUtf8("北京"));
    QCOMPARE(row.procomVal, 17U);
    QCOMPARE(row.funcomVal, 4U);
}

void TstStoredHistory::rowsAreFoundByExactTimeOrInAnyCase_data()
{
    QTest::addColumn<QString>("time");
    QTest::addColumn<int>("exact");
    QTest::addColumn<int>("anyCase");
    QTest::newRow("the first of two") << QStringLiteral("2023") << 1 << 1;
    QTest::newRow("another case") << QStringLiteral("morning") << 3 << 0;
    QTest::newRow("only in another case") << QStringLiteral("mORNING") << -1 << 0;
    QTest::newRow("part of a text") << QStringLiteral("202") << -1 << -1;
    QTest::newRow("no such text") << QStringLiteral("2024") << -1 << -1;
    QTest::newRow("empty") << QString() << 4 << 4;
}

void TstStoredHistory::rowsAreFoundByExactTimeOrInAnyCase()
{
    QFETCH(QString, time);
    const QVector<CUSINFOPOLICY> rows = rowsOf({"Morning", "2023", "2023", "morning", ""});
    QTEST(store::rowOfExactTime(rows, time), "exact");
    QTEST(store::rowOfAnyCase(rows, time), "anyCase");
}

void TstStoredHistory::aMissingHistoryIsALineAndNoRows()
{
    QVector<CUSINFOPOLICY> rows = rowsOf({"earlier"});
    QVERIFY(!store::scanHistory(rows, 300));
    QVERIFY(rows.isEmpty());
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")),
             texts({"GetCurAllCustoms error opendir: No such file or directory"}));
}

void TstStoredHistory::verifiedCustomisationsBecomeRows()
{
    keep(1700000001, "2023-11-15 06:13:21", "北京");
    keep(1700000002, "2023-11-15 06:13:22");
    installation::writeFile(path(QStringLiteral("UpdateCustom/1700000002/OrvexCustom.xml")), "<other/>");
    QVERIFY(QDir().mkpath(path(QStringLiteral("UpdateCustom/empty"))));
    installation::writeFile(path(QStringLiteral("UpdateCustom/file")), "plain");
    QVector<CUSINFOPOLICY> rows = rowsOf({"earlier"});
    QVERIFY(store::scanHistory(rows, 300));
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first().cusTimeStamp, quint64(1700000001));
    QCOMPARE(rows.first().cusTimeString, QStringLiteral("2023-11-15 06:13:21"));
    QCOMPARE(rows.first().cusAddInfo, QString::fromUtf8("北京"));
    QCOMPARE(rows.first().procomVal, 17U);
    QCOMPARE(rows.first().funcomVal, 5U);
    QVERIFY(installation::logMessages(QStringLiteral("[WRN]"))
                .contains(QStringLiteral("GetCurAllCustoms::utl_CusXmlVerify failed,continue.")));
    QCOMPARE(openHistoryDirectories(), 0);
}

void TstStoredHistory::namesOutsideTheLocalEncodingAreRead_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("remark");
    QTest::newRow("GBK") << QByteArray("\xb1\xb1\xbe\xa9") << QByteArray("北京");
    QTest::newRow("one byte") << QByteArray("\xff") << QByteArray("北京");
    QTest::newRow("cut character") << QByteArray("1700000001\xe5\x8c") << QByteArray("北京");
    QTest::newRow("surrogate") << QByteArray("\xed\xa0\x80") << QByteArray("北京");
    // Such a document has to be parsed.
    QTest::newRow("GBK, remark with markup") << QByteArray("\xb1\xb1\xbe\xa9") << QByteArray("北京 & <上海>");
}

void TstStoredHistory::namesOutsideTheLocalEncodingAreRead()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, remark);
    keep(1700000001, "2023-11-15 06:13:21", remark.constData());
    const QByteArray history = QFile::encodeName(path(QStringLiteral("UpdateCustom/")));
    QCOMPARE(rename((history + "1700000001").constData(), (history + name).constData()), 0);
    QVector<CUSINFOPOLICY> rows;
    QVERIFY(store::scanHistory(rows, 300));
    const int removed = system(("rm -r \"" + history + "\"").constData());
    QCOMPARE(removed, 0);
    QCOMPARE(rows.size(), 1);
    QCOMPARE(rows.first().cusTimeStamp, quint64(1700000001));
    QCOMPARE(rows.first().cusTimeString, QStringLiteral("2023-11-15 06:13:21"));
    QCOMPARE(rows.first().cusAddInfo, QString::fromUtf8(remark));
    QCOMPARE(rows.first().procomVal, 17U);
    QCOMPARE(rows.first().funcomVal, 5U);
    QCOMPARE(installation::logMessages(QStringLiteral("[ERR]")), QStringList());
}

void TstStoredHistory::oddDocumentsHaveTheirLineWhateverTheName_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("document");
    QTest::addColumn<bool>("isXml");
    for (const QByteArray& name : {QByteArray("1700000001"), QByteArray("\xb1\xb1\xbe\xa9")}) {
        const QByteArray row = name.startsWith('1') ? "stamp, " : "GBK, ";
        QTest::newRow((row + "no XML").constData()) << name << QByteArray("no XML") << false;
        QTest::newRow((row + "empty").constData()) << name << QByteArray() << false;
        QTest::newRow((row + "nothing in it").constData()) << name << QByteArray("<OrvexCustom/>") << true;
    }
}

void TstStoredHistory::oddDocumentsHaveTheirLineWhateverTheName()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, document);
    QFETCH(const bool, isXml);
    storeDocument(installation::root(), document, QStringLiteral("1700000009"));
    const QByteArray history = QFile::encodeName(path(QStringLiteral("UpdateCustom/")));
    QCOMPARE(rename((history + "1700000009").constData(), (history + name).constData()), 0);
    installation::clearLog();
    QVector<CUSINFOPOLICY> rows;
    QVERIFY(store::scanHistory(rows, 300));
    const int removed = system(("rm -r \"" + history + "\"").constData());
    QCOMPARE(removed, 0);
    QCOMPARE(rows.size(), 1);
    const QByteArray line =
        "[ERR]CBasedQtXmlParser::LoadXmlFile:Load XML File[" + history + name + "/OrvexCustom.xml].\n";
    QCOMPARE(installation::log().count("[ERR]"), isXml ? 0 : 1);
    QCOMPARE(installation::log().contains(line), !isXml);
}

void TstStoredHistory::theScanStopsAtTheFirstDirectoryBeyondTheLimit()
{
    keep(1700000001);
    keep(1700000002);
    keep(1700000003);
    QVector<CUSINFOPOLICY> rows;
    QVERIFY(store::scanHistory(rows, 2));
    QCOMPARE(rows.size(), 2);
    QVERIFY(installation::log().contains(
        " [DBG]OrvexManager::GetCurAllCustoms: uCount >= MAX_COUTN_CUSTOM\xA3\xACso return.\n"));
    QCOMPARE(openHistoryDirectories(), 1);
}

void TstStoredHistory::exactlyTheLimitIsNoReasonToStop()
{
    keep(1700000001);
    keep(1700000002);
    QVector<CUSINFOPOLICY> rows;
    QVERIFY(store::scanHistory(rows, 2));
    QCOMPARE(stampsOf(rows), (QList<quint64>{1700000001, 1700000002}));
    QVERIFY(!installation::log().contains("uCount"));
}

TEST_ENTRY(storedhistory, runGuilessTest<TstStoredHistory>)
#include "tst_storedhistory.moc"
