#include "app/mainwindow/orvexmanager.h"
#include "app/widgets/WarningBox.h"
#include "common/ProcessPath.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "pack/WorkThread.h"
#include "store/CommitSteps.h"
#include "store/HistoryRows.h"

#include <ctime>

// The commit: the one place where a customisation becomes real.
void OrvexManager::showFinishDlg()
{
    WarningBox box("manager_title", this);
    FinishDlg finish(this);
    finish.initalDialog(&m_customInfo);
    if (finish.exec() == QDialog::Rejected || !takeComponents(box))
        return;

    const store::CommitDirectories directories = store::prepareDirectories(processDirectory(false));
    CommonInfo& common = m_customInfo.common;
    store::stamp(common, time(nullptr), g_ucAreaCode);
    if (!store::writeVerification(store::writeDocument(m_customInfo, directories.working))) {
        box.say("GenVrfFailed");
        return;
    }

    // Contract: whatever becomes of the packages, and though Escape leaves the worker behind, the customisation enters
    // the history. The window lasts until all is done.
    PackingWait wait(static_cast<unsigned long>(finish.m_iPackMask), common.cusTimeStamp, this);
    if (wait.exec() == QDialog::Rejected)
        withholdFinish(*wait.worker());
    m_cusPolicyList.prepend(store::historyRow(common));
    store::keepCopy(directories, common.cusTimeStamp);

    CustomCompleteDlg complete(this);
    complete.initalDialog(finish.m_iPackMask, true);
    complete.exec();
    m_customInfo.reset();
    OnRepaintCustomCombo();
}

void OrvexManager::withholdFinish(const WorkThread& worker)
{
    // Connected before the look at the worker, so that its end is not missed.
    connect(&worker, &WorkThread::finished, this, [this] { ui.toolButton_finish->setEnabled(true); });
    ui.toolButton_finish->setEnabled(!worker.isRunning());
}
