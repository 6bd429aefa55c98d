#include "app/mainwindow/orvexmanager.h"
#include "app/widgets/WarningBox.h"
#include "common/CustomInfoVerify.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/TimeText.h"
#include "common/UtilityFunc.h"
#include "pack/CustomCompleteDlg.h"
#include "pack/FinishDlg.h"
#include "pack/PackingWait.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QDebug>

#include <ctime>

// The commit: the one place where a customisation becomes real. All paths are in the local 8-bit encoding.

namespace {

struct IconFile
{
    QString GUIOptionsInfo::*source;
    const char* name;
};
const IconFile iconFiles[] = {
    {&GUIOptionsInfo::linuxDeskIconPath, store::linuxDeskIcon},
    {&GUIOptionsInfo::macosDeskIconPath, store::macosDeskIcon},
    {&GUIOptionsInfo::mainIconPath, store::mainIcon},
};

} // namespace

void OrvexManager::stampRecord()
{
    const time_t now = time(nullptr);
    m_customInfo.common.cusTimeStamp = static_cast<quint64>(now);
    m_customInfo.common.cusTimeString = QString::fromLatin1(localTimeText(now));
    m_customInfo.common.areaKey = g_ucAreaCode;
}

void OrvexManager::copyIcons(const QByteArray& customDirectory)
{
    for (const IconFile& icon : iconFiles) {
        const QByteArray source = (m_customInfo.gui.*icon.source).toLocal8Bit();
        if (source.isEmpty())
            continue;
        // Contract: a source that has gone missing is not noticed; the document names the icon all the same.
        utl_FileExists(source.constData());
        const QByteArray target = customDirectory + icon.name;
        utl_CopyFile(source.constData(), target.constData());
        utl_Chmod(target.constData(), "a+r");
    }
}

void OrvexManager::showFinishDlg()
{
    WarningBox box("manager_title", this);
    FinishDlg finish(this);
    finish.initalDialog(&m_customInfo);
    if (finish.exec() == QDialog::Rejected)
        return;

    m_customInfo.common.procomVal = tickedAccessComponents();
    if (m_customInfo.common.procomVal == 0) {
        box.say("SelProtocolPls");
        return;
    }
    m_customInfo.common.funcomVal = tickedFunctionComponents();

    // Emptying custom/ removes every name with a dot in it; the history is not touched.
    QByteArray customDirectory = m_strAppDir.toLocal8Bit() + "/" + store::custom;
    qDebug() << customDirectory;
    utl_DeleteFiles(customDirectory.constData(), "*.*");
    customDirectory += "/";
    const QByteArray updateDirectory = m_strAppDir.toLocal8Bit() + "/" + store::updateCustom + "/";
    ensureDirectory(updateDirectory);
    ensureDirectory(customDirectory);
    QByteArray document = customDirectory + store::document;
    utl_DeleteFile(document.constData());

    stampRecord();
    CustomXmlParser parser;
    formatCustomInfo(parser, m_customInfo);
    copyIcons(customDirectory);
    parser.SaveFile(QString::fromLocal8Bit(document));
    unsigned long error = 0;
    if (!utl_GenCustomInfoVerify(&error, document.data())) {
        box.say("GenVrfFailed");
        return;
    }

    const CommonInfo common = m_customInfo.common;
    PackingWait wait(static_cast<unsigned long>(finish.m_iPackMask), static_cast<unsigned long>(common.cusTimeStamp),
                     this);
    wait.exec();

    CUSINFOPOLICY row;
    row.cusTimeStamp = common.cusTimeStamp;
    row.cusTimeString = common.cusTimeString;
    row.cusAddInfo = common.cusAddInfo;
    row.procomVal = static_cast<quint32>(common.procomVal);
    row.funcomVal = static_cast<quint32>(common.funcomVal);
    m_cusPolicyList.prepend(row);

    const QByteArray stored = updateDirectory + QByteArray::number(static_cast<int>(common.cusTimeStamp));
    ensureDirectory(stored);
    const QByteArray copy = "cp  -Rf \"" + customDirectory + "\"* \"" + stored + "/\"";
    runShellCommand(copy);
    qDebug() << copy;

    CustomCompleteDlg complete(this);
    complete.initalDialog(finish.m_iPackMask, true);
    complete.exec();
    m_customInfo.reset();
    OnRepaintCustomCombo();
}
