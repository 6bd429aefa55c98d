#include "pack/PackingWait.h"

#include "app/language/LangText.h"
#include "pack/WorkThread.h"

PackingWait::PackingWait(unsigned long mask, unsigned long timeStamp, QWidget* parent) : QDialog(parent)
{
    ui.setupUi(this);
    setWindowFlags(windowFlags() & ~(Qt::WindowContextHelpButtonHint | Qt::WindowCloseButtonHint));
    setWindowTitle(langText("manager_title"));
    ui.label_packingHint->setText(langText("GenSetupOrUpdPktHint"));
    // With a large font the hint takes more lines than the form has room for; the steps scroll, and three of them will
    // do.
    ui.textEdit->setMinimumHeight(3 * fontMetrics().lineSpacing());
    resize(width(), qMax(height(), ui.verticalLayout->minimumHeightForWidth(width())));

    m_pWorkThread = new WorkThread(mask, timeStamp);
    connect(m_pWorkThread, &WorkThread::finishPacket, this, &PackingWait::finishPacket);
    connect(m_pWorkThread, &WorkThread::stepInfo, this, &PackingWait::setStepInfo);
    m_pWorkThread->start(QThread::InheritPriority);
    m_iTimerId = 0;
}

void PackingWait::init()
{
    m_iTimerId = startTimer(100, Qt::CoarseTimer);
}

void PackingWait::setStepInfo(QString line)
{
    ui.textEdit->append(line);
}

void PackingWait::finishPacket(bool result)
{
    // Contract: the window closes in the same way after success and after failure.
    Q_UNUSED(result)
    stopTimer();
    accept();
}

void PackingWait::timerEvent(QTimerEvent* event)
{
    Q_UNUSED(event)
    // Contract: nothing sets the flag; finishPacket() alone closes the window.
    if (!m_bFinished)
        return;
    stopTimer();
    accept();
}

void PackingWait::stopTimer()
{
    if (m_iTimerId != 0)
        killTimer(m_iTimerId);
}
