#include "bench/Probe.h"

#include <QAbstractItemModel>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QDomDocument>
#include <QEvent>
#include <QFile>
#include <QHeaderView>
#include <QJsonDocument>
#include <QJsonObject>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <cstdlib>
#include <ctime>
#include <unistd.h>

namespace {

constexpr int s_missing = 70;
constexpr int s_busy = 75;
constexpr int s_loadsOfSelection = 11;
constexpr int s_failedLoadsOfRepaint = 22;
constexpr qint64 s_tick = 1000000; // of the timer that looks for stalls, in ns
constexpr int s_pauseMs = 30;      // between two runs, so that what was put off is done

qint64 nanoseconds(clockid_t clock)
{
    timespec time = {};
    clock_gettime(clock, &time);
    return qint64(time.tv_sec) * 1000000000 + time.tv_nsec;
}

// The clock that other processes can read too.
qint64 now()
{
    return nanoseconds(CLOCK_MONOTONIC);
}

qint64 worked()
{
    return nanoseconds(CLOCK_THREAD_CPUTIME_ID);
}

qint64 peakKib()
{
    QFile status(QStringLiteral("/proc/self/status"));
    status.open(QIODevice::ReadOnly);
    const QList<QByteArray> lines = status.readAll().split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith("VmHWM:"))
            return line.simplified().split(' ').at(1).toLongLong();
    }
    return 0;
}

[[noreturn]] void tell(const QJsonObject& answer, int exitCode = 0)
{
    QFile out(qEnvironmentVariable("ORVEX_PROBE_OUT"));
    if (!out.open(QIODevice::Append) || out.write(QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n') < 0)
        exitCode = s_missing;
    out.close();
    _exit(exitCode);
}

template <class Widget> Widget& child(const QWidget* window, const char* name)
{
    Widget* found = window ? window->findChild<Widget*>(QString::fromLatin1(name)) : nullptr;
    if (!found)
        tell({{QStringLiteral("missing"), QString::fromLatin1(name)}}, s_missing);
    return *found;
}

bool loadBare(const QString& path)
{
    QFile file(path);
    QDomDocument document;
    return file.open(QIODevice::ReadOnly) && document.setContent(&file, true);
}

// A load that fails is one that the log tells of.
void failToLoadBare(const QString& path)
{
    if (loadBare(path))
        return;
    FILE* const log = fopen("floor.log", "a+");
    if (!log)
        tell({{QStringLiteral("missing"), QStringLiteral("floor.log")}}, s_missing);
    fprintf(log, "2026-01-01 00:00:00 [ERR]CBasedQtXmlParser::LoadXmlFile:Open XML File[%s].\n", qPrintable(path));
    fclose(log);
}

} // namespace

Probe::Probe(const QString& script, QObject* parent)
    : QObject(parent), m_script(script), m_left(qEnvironmentVariableIntValue("ORVEX_PROBE_RUNS"))
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool Probe::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWidgetType())
        return false;
    QWidget* widget = static_cast<QWidget*>(watched);
    if (event->type() == QEvent::Hide) {
        // Dialogs on the stack come back at the same address.
        m_seen.remove(widget);
        if (widget->inherits("PackingWait") && m_lastTick != 0) {
            m_longest = qMax(m_longest, now() - m_lastTick - s_tick);
            m_lastTick = 0;
        }
    } else if (event->type() == QEvent::Show && widget->inherits("PackingWait")) {
        m_lastTick = now();
        m_longest = 0;
    } else if (event->type() == QEvent::Paint && widget->isWindow() && !m_seen.contains(widget)) {
        m_seen.insert(widget);
        // The event comes before the painting, which is over when the loop turns again.
        QTimer::singleShot(0, this, [this, window = QPointer<QWidget>(widget)] {
            if (window)
                painted(*window);
        });
    }
    return false;
}

void Probe::painted(QWidget& window)
{
    const qint64 moment = now();
    if (window.inherits("QMessageBox"))
        tell({{QStringLiteral("busy"), true}}, s_busy);
    if (window.inherits("FinishDlg")) {
        const bool packages = m_script == QLatin1String("stall");
        for (const char* name : {"checkBox_cusSetup", "checkBox_cusUpdate", "checkBox_cusCusUpd"})
            child<QCheckBox>(&window, name).setChecked(packages);
        QPushButton* ok = child<QDialogButtonBox>(&window, "buttonBox").button(QDialogButtonBox::Ok);
        m_since = now();
        ok->click();
    } else if (window.inherits("CustomCompleteDlg")) {
        if (m_script == QLatin1String("stall"))
            m_own.append(double(m_longest));
        else
            m_own.append(double(moment - m_since));
        QTimer::singleShot(s_pauseMs, this, [this] {
            if (m_script == QLatin1String("finish"))
                finishFloor();
            next();
        });
        child<QPushButton>(&window, "pushButton_exit").click();
    } else if (!m_main) {
        m_main = &window;
        if (m_script == QLatin1String("paint"))
            tell({{QStringLiteral("painted"), double(moment)},
                  {QStringLiteral("worked"), double(nanoseconds(CLOCK_PROCESS_CPUTIME_ID))},
                  {QStringLiteral("peakKib"), double(peakKib())},
                  {QStringLiteral("descriptors"), QDir(QStringLiteral("/proc/self/fd"))
                                                      .entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System)
                                                      .size()}});
        if (m_script == QLatin1String("stall")) {
            QTimer* timer = new QTimer(this);
            timer->setTimerType(Qt::PreciseTimer);
            connect(timer, &QTimer::timeout, this, [this] {
                if (m_lastTick == 0)
                    return;
                const qint64 tick = now();
                m_longest = qMax(m_longest, tick - m_lastTick - s_tick);
                m_lastTick = tick;
            });
            timer->start(1);
        }
        if (m_script == QLatin1String("delete"))
            child<QListWidget>(m_main, "listWidget").setCurrentRow(1);
        next();
    }
}

void Probe::next()
{
    QTimer::singleShot(s_pauseMs, this, [this] {
        if (m_left-- <= 0)
            report();
        if (m_script == QLatin1String("select"))
            selectOnce();
        else if (m_script == QLatin1String("delete"))
            deleteOnce();
        else
            finishOnce();
    });
}

void Probe::selectOnce()
{
    QComboBox& combo = child<QComboBox>(m_main, "comboBox_defaultCus");
    combo.setCurrentIndex(0);
    qint64 since = worked();
    combo.setCurrentIndex(1);
    m_own.append(double(worked() - since));

    const QString document = qEnvironmentVariable("ORVEX_PROBE_DOCUMENT");
    since = worked();
    for (int i = 0; i < s_loadsOfSelection; ++i) {
        if (!loadBare(document))
            tell({{QStringLiteral("missing"), document}}, s_missing);
    }
    m_floor.append(double(worked() - since));
    next();
}

void Probe::finishOnce()
{
    child<QToolButton>(m_main, "toolButton_finish").click();
}

void Probe::finishFloor()
{
    // The commit before left two files in its directory as well.
    QDir().mkpath(QStringLiteral("floor/custom"));
    QDir(QStringLiteral("floor/stored")).removeRecursively();
    const QStringList names = QDir(QStringLiteral("custom")).entryList(QDir::Files);
    for (const QString& name : names)
        QFile::copy(QLatin1String("custom/") + name, QLatin1String("floor/custom/") + name);
    QFile written(QStringLiteral("custom/OrvexCustom.xml"));
    written.open(QIODevice::ReadOnly);
    const QByteArray document = written.readAll();
    const QByteArray command = "sh \"" + qgetenv("ORVEX_PROBE_SCRIPT") + "\"";
    const qint64 since = now();
    QFile copy(QStringLiteral("floor/document.xml"));
    const bool done = copy.open(QIODevice::WriteOnly) && copy.write(document) == document.size() && copy.flush() &&
                      system(command.constData()) == 0;
    m_floor.append(double(now() - since));
    if (!done)
        tell({{QStringLiteral("missing"), QString::fromLocal8Bit(command)}}, s_missing);
}

void Probe::deleteOnce()
{
    QTreeWidget& tree = child<QTreeWidget>(m_main, "treeWidget_cusHis");
    const QComboBox& combo = child<QComboBox>(m_main, "comboBox_defaultCus");
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::NoModifier,
                      tree.visualItemRect(tree.topLevelItem(0)).center());
    // The repaint begins with the combo box being emptied; before, the directory is deleted.
    m_since = 0;
    const auto begin = [this] {
        if (m_since == 0)
            m_since = worked();
    };
    const QMetaObject::Connection removed =
        connect(combo.model(), &QAbstractItemModel::rowsAboutToBeRemoved, this, begin);
    const QMetaObject::Connection reset = connect(combo.model(), &QAbstractItemModel::modelAboutToBeReset, this, begin);
    child<QToolButton>(m_main, "toolButton_delete").click();
    m_own.append(double(worked() - m_since));
    disconnect(removed);
    disconnect(reset);

    QTreeWidget bareTree;
    bareTree.setColumnCount(tree.columnCount());
    QComboBox bareCombo;
    const qint64 since = worked();
    for (int i = 0; i < s_failedLoadsOfRepaint; ++i)
        failToLoadBare(QStringLiteral("/OrvexCustom.xml"));
    for (int row = 0; row < tree.topLevelItemCount(); ++row) {
        const QTreeWidgetItem* item = tree.topLevelItem(row);
        QStringList texts;
        for (int column = 0; column < tree.columnCount(); ++column)
            texts.append(item->text(column));
        bareTree.addTopLevelItem(new QTreeWidgetItem(texts));
        bareCombo.addItem(combo.itemText(row + 1));
    }
    m_floor.append(double(worked() - since));
    next();
}

void Probe::report()
{
    tell({{QStringLiteral("own"), m_own}, {QStringLiteral("floor"), m_floor}});
}
