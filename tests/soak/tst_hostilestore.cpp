#include "mainwindow/CommitPlay.h"
#include "mainwindow/PlayedProgram.h"
#include "support/DistinctRecord.h"
#include "support/StoredCustomisation.h"
#include "support/TestEntry.h"
#include "xml/CustomInfo.h"

#include <QComboBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>

// The program on stores that somebody else has filled: hostile.py makes them and knows what is to be listed. As "look"
// this executable is the program, which looks at every row and prints rows and commands as JSON; as "finish" it also
// makes new customisations out of some rows; as "documents" it writes the documents that hostile.py starts from into a
// directory.

namespace {

constexpr int s_finishes = 8;

QJsonArray s_commands;

int noteSystem(interposed::System::Real real, const char* command)
{
    s_commands.append(QString::fromLatin1(command));
    return real(command);
}

/// Whether a detail view or a refusal came and went.
bool lookAtDetails(const OrvexManager& window)
{
    ModalScript script;
    script.expect<QDialog>([](QDialog& dialog) { dialog.reject(); });
    windowplay::click(window, "toolButton_detail");
    return script.complaints().isEmpty();
}

void look(const OrvexManager& window)
{
    QJsonArray rows;
    int views = 0;
    const QTreeWidget* tree = historyTree(window);
    for (int row = 0; row < tree->topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = tree->topLevelItem(row);
        rows.append(QJsonArray{item->text(0), item->text(1), item->text(2)});
        child<QComboBox>(window, "comboBox_defaultCus")->setCurrentIndex(row + 1);
        clickRow(window, row);
        views += lookAtDetails(window) ? 1 : 0;
    }
    const QJsonObject told = {
        {QStringLiteral("rows"), rows}, {QStringLiteral("views"), views}, {QStringLiteral("commands"), s_commands}};
    printf("%s\n", QJsonDocument(told).toJson(QJsonDocument::Compact).constData());
}

// A document may have grown too large, or have no component: then there is a box in the place of the report.
void finish(const OrvexManager& window)
{
    QComboBox* const combo = child<QComboBox>(window, "comboBox_defaultCus");
    for (int i = 0; i < s_finishes; ++i) {
        combo->setCurrentIndex(1 + i * (combo->count() - 1) / s_finishes);
        frozenTime = commitMoment + i;
        for (const QString& complaint : commit(window)) {
            if (!complaint.contains(QLatin1String("QMessageBox")) && !complaint.contains(QLatin1String("never came")))
                qFatal("%s", qPrintable(complaint));
        }
    }
    look(window);
}

void writeDocuments(const QString& directory)
{
    CustomInfo most = distinctRecord();
    most.common.cusTimeString = QStringLiteral("2020-09-13 20:26:40");
    const CustomInfo records[] = {
        storedRecord(1600000000, QStringLiteral("2020-09-13 20:26:40"), QStringLiteral("remark")), most};
    int number = 0;
    for (const CustomInfo& record : records)
        installation::writeFile(QStringLiteral("%1/%2.xml").arg(directory).arg(++number), documentOf(record));
}

} // namespace

class TstHostileStore : public QObject
{
    Q_OBJECT

private slots:
    void whatIsListedFollowsTheRuleAndNothingChanges();
};

void TstHostileStore::whatIsListedFollowsTheRuleAndNothingChanges()
{
    installation::clear();
    const QTemporaryDir work(installation::path(QStringLiteral("work-XXXXXX")));
    QVERIFY(work.isValid());
    QProcess process;
    process.start(QStringLiteral("python3"),
                  {QStringLiteral(ORVEX_SOURCE_DIR "/tests/soak/hostile.py"), QStringLiteral("--program"),
                   QCoreApplication::applicationFilePath(), QStringLiteral("--place"), work.path(),
                   QStringLiteral("--stores"), QStringLiteral("1"), QStringLiteral("--entries"), QStringLiteral("60")});
    QVERIFY(process.waitForFinished(100000));
    const QByteArray told = process.readAllStandardOutput() + process.readAllStandardError();
    QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, told.constData());
    QVERIFY2(told.contains("\"times\": 60"), told.constData());
}

static int run(int argc, char** argv)
{
    for (const auto& [name, play] : {std::pair("look", look), std::pair("finish", finish)}) {
        if (argc == 2 && qstrcmp(argv[1], name) == 0) {
            interposed::onSystem = noteSystem;
            return playedprogram::run(argc, argv, play);
        }
    }
    QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "documents") == 0) {
        writeDocuments(QString::fromLocal8Bit(argv[2]));
        return 0;
    }
    TstHostileStore test;
    return QTest::qExec(&test, argc, argv);
}

TEST_ENTRY(hostilestore, run)

#include "tst_hostilestore.moc"
