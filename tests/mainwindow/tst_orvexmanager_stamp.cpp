#include "common/CustomInfoVerify.h"
#include "mainwindow/CommitPlay.h"
#include "pack/WorkThread.h"
#include "support/TestEntry.h"

#include <QComboBox>
#include <QDateTime>
#include <QDir>

using windowplay::click;

// The time stamp of a commit and where it goes.
class TstOrvexManagerStamp : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        prepareInstallation();
        frozenTime = commitMoment;
    }
    void cleanup() { frozenTime = 0; }

    void twoCommitsInOneSecondShareTheirDirectory();
    void theWorkerGetsThePackagesAndTheStamp();
    void theClockIsReadOnce();
    void aStampBelowOneHasNoTimeText();
    void aStampPast2038ReadsAsZero();
    void aCommitPast2038IsFoundAgainOnlyByItsDirectory();
};

void TstOrvexManagerStamp::twoCommitsInOneSecondShareTheirDirectory()
{
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window, QStringLiteral("first")), QStringList());
    const QByteArray random = installation::readFile(inStored(QStringLiteral("OrvexCustomXml.vrf"))).left(240);
    QCOMPARE(commit(window, QStringLiteral("second")), QStringList());
    QCOMPARE(window.history().size(), 2);
    QCOMPARE(window.history().at(0).cusTimeStamp, window.history().at(1).cusTimeStamp);
    QVERIFY(installation::readFile(inStored(QStringLiteral("OrvexCustom.xml")))
                .contains("<cusAddInfo>second</cusAddInfo>"));
    QCOMPARE(installation::readFile(inStored(QStringLiteral("OrvexCustomXml.vrf"))).left(240), random);
    QVERIFY(utl_CusXmlVerify(inStored().chopped(1).toLocal8Bit().constData()));
}

void TstOrvexManagerStamp::theWorkerGetsThePackagesAndTheStamp()
{
    installation::installArchiver();
    OrvexManager window(nullptr);
    window.show();
    installation::clearLog();
    {
        const installation::QuietOutput quiet;
        QCOMPARE(commit(window, QStringLiteral("remark"), PackageCusUpd), QStringList());
    }
    const QStringList begins = installation::logMessages(QStringLiteral("[DBG]")).filter(QStringLiteral(" begin."));
    QCOMPARE(begins, QStringList{QStringLiteral("utl_GenCusUpd begin.")});
    const QStringList packages = installation::namesIn(installation::path(QStringLiteral("OrvexCusUpd")));
    QCOMPARE(packages.size(), 1);
    const QByteArray comment = installation::run(installation::path(QStringLiteral("7za")),
                                                 {QStringLiteral("e"), QStringLiteral("-so"),
                                                  installation::path(QLatin1String("OrvexCusUpd/") + packages.first()),
                                                  QStringLiteral("comment.txt")});
    QVERIFY(comment.contains("@time: 1700000000\r\n"));
    QVERIFY(comment.contains("@timeFmt: 2023-11-15 06:13:20\r\n"));
}

void TstOrvexManagerStamp::theClockIsReadOnce()
{
    OrvexManager window(nullptr);
    window.show();
    isFrozenTimeTicking = true;
    QCOMPARE(commit(window), QStringList());
    isFrozenTimeTicking = false;
    const CUSINFOPOLICY row = window.history().first();
    QVERIFY(row.cusTimeStamp > quint64(commitMoment));
    QVERIFY(frozenTime > time_t(row.cusTimeStamp));
    const QString stamp = QString::number(row.cusTimeStamp);
    QCOMPARE(installation::namesIn(inHistory()), QStringList{stamp});
    const time_t seconds = time_t(row.cusTimeStamp);
    QCOMPARE(row.cusTimeString, QDateTime::fromSecsSinceEpoch(seconds).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")));
    const QByteArray document = installation::readFile(inHistory(stamp + QLatin1String("/OrvexCustom.xml")));
    QVERIFY(document.contains("<cusTimeStamp>" + stamp.toLatin1() + "</cusTimeStamp>"));
    QVERIFY(document.contains("<cusTimeString>" + row.cusTimeString.toLatin1() + "</cusTimeString>"));
}

void TstOrvexManagerStamp::aStampBelowOneHasNoTimeText()
{
    frozenTime = -1;
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    QCOMPARE(window.history().first().cusTimeString, QString());
    QCOMPARE(child<QComboBox>(window, "comboBox_defaultCus")->itemText(1),
             QStringLiteral("    802.1X  Portal  ZOA      remark"));
    QVERIFY(QFile::exists(inHistory(QStringLiteral("-1/OrvexCustom.xml"))));
}

void TstOrvexManagerStamp::aStampPast2038ReadsAsZero()
{
    frozenTime = 2147483648;
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    const QString directory = installation::path(QStringLiteral("UpdateCustom/-2147483648/"));
    QVERIFY(installation::readFile(directory + QLatin1String("OrvexCustom.xml"))
                .contains("<cusTimeStamp>-2147483648</cusTimeStamp>"));
    QCOMPARE(window.history().first().cusTimeStamp, quint64(2147483648));
    const OrvexManager nextStart(nullptr);
    QCOMPARE(nextStart.history().first().cusTimeStamp, quint64(0));
}

void TstOrvexManagerStamp::aCommitPast2038IsFoundAgainOnlyByItsDirectory()
{
    frozenTime = 2147483648;
    OrvexManager window(nullptr);
    window.show();
    QCOMPARE(commit(window), QStringList());
    QVERIFY(QDir(inHistory(QStringLiteral("-2147483648"))).exists());
    // A choice looks for the stamp as it is, details and deletion for its 32 bits.
    installation::clearLog();
    QComboBox* combo = child<QComboBox>(window, "comboBox_defaultCus");
    combo->setCurrentIndex(1);
    QCOMPARE(combo->currentIndex(), 0);
    QVERIFY(installation::logMessages(QStringLiteral("[ERR]"))
                .contains(QStringLiteral("GetSelCusDir::utl_FileExists failed.")));
    clickRow(window, 0);
    QVERIFY(titleOfDetails(window).contains(QLatin1String("2038-01-19 11:14:08")));
    click(window, "toolButton_delete");
    QCOMPARE(installation::namesIn(inHistory()), QStringList());
}

TEST_ENTRY(orvexmanager_stamp, playTest<TstOrvexManagerStamp>)

#include "tst_orvexmanager_stamp.moc"
