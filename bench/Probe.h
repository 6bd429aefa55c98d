#pragma once

#include <QJsonArray>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QWidget>

/// Takes times inside a running program, from the events of its real windows. Appends one line of JSON to the file
/// named by ORVEX_PROBE_OUT and ends the process at once, with exit code 0; 75 when the program shows a message in
/// place of its window, because another instance runs, 70 when a widget is missing.
///
/// Times are of the clock on the wall, but for `select` and `delete`: these compute and read cached files in one
/// thread, so the thread's time on the processor is taken, which leaves out what else the machine does.
///
/// Scripts, of which all but the first also obey ORVEX_PROBE_RUNS, the number of times:
///   paint   the moment at which the first window is painted ("painted", ns of the monotonic clock), the process's time
///           on the processors until then ("worked", ns), its highest resident memory ("peakKib") and its open
///           descriptors ("descriptors")
///   select  choosing the first stored customisation ("own", a list in ns) beside eleven loads of the document
///           ORVEX_PROBE_DOCUMENT by a bare QDomDocument ("floor")
///   finish  from OK to the painted completion dialog, no packages ("own"), beside ORVEX_PROBE_SCRIPT, a shell script,
///           and one write of the document ("floor")
///   delete  the repaint after the deletion of one customisation ("own") beside the same rows in bare widgets and 22
///           loads that fail, each with its line in a log ("floor")
///   stall   the longest time between two ticks of a timer of 1 ms, less that millisecond, while three packages are
///           made ("own")
class Probe : public QObject
{
    Q_OBJECT

public:
    Probe(const QString& script, QObject* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void painted(QWidget& window);
    void next();
    void selectOnce();
    void finishOnce();
    void finishFloor();
    void deleteOnce();
    [[noreturn]] void report();

    QString m_script;
    int m_left;
    QPointer<QWidget> m_main;
    QSet<QWidget*> m_seen; // windows painted since they were shown
    QJsonArray m_own;
    QJsonArray m_floor;
    qint64 m_since = 0; // start of what is measured just now, ns; 0 for nothing
    qint64 m_lastTick = 0;
    qint64 m_longest = 0;
};
