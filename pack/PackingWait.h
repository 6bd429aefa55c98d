#pragma once

#include "ui_PackingWait.h"

#include <QDialog>

class WorkThread;

/// The progress window: starts the worker in its constructor, shows a line a step, and closes when the worker is done,
/// whatever the result. There is no cancel; the window cannot be closed by its frame.
class PackingWait : public QDialog
{
    Q_OBJECT

public:
    /// @param mask       packages to make, sum of PackageMask values
    /// @param timeStamp  the customisation's time in seconds since the epoch
    PackingWait(unsigned long mask, unsigned long timeStamp, QWidget* parent);

    /// The worker, which may still be at work when Escape has closed the window. It lives until the process ends.
    WorkThread* worker() const { return m_pWorkThread; }

    /// Starts the polling timer. Not needed: finishPacket alone closes the window.
    void init();

public slots:
    void setStepInfo(QString line);
    void finishPacket(bool result);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void stopTimer();

    Ui_PackingWait ui;
    WorkThread* m_pWorkThread; // not owned: it outlives the window
    int m_iTimerId = 0;
    bool m_bFinished = false; // stays false
};
