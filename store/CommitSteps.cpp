#include "store/CommitSteps.h"

#include "common/CustomInfoVerify.h"
#include "common/ShellCommand.h"
#include "common/StorePaths.h"
#include "common/TimeText.h"
#include "common/UtilityFunc.h"
#include "store/StoredDirectory.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QDebug>

namespace store {

namespace {

struct IconFile
{
    QString GUIOptionsInfo::*source;
    const char* name;
};
const IconFile iconFiles[] = {
    {&GUIOptionsInfo::linuxDeskIconPath, linuxDeskIcon},
    {&GUIOptionsInfo::macosDeskIconPath, macosDeskIcon},
    {&GUIOptionsInfo::mainIconPath, mainIcon},
};

} // namespace

CommitDirectories prepareDirectories(const QByteArray& root)
{
    const QByteArray emptied = root + "/" + custom;
    CommitDirectories directories = {emptied + "/", root + "/" + updateCustom + "/"};
    qDebug() << emptied;
    utl_DeleteFiles(emptied.constData(), "*.*");
    ensureDirectory(directories.history);
    ensureDirectory(directories.working);
    // By its name once more: find does not follow a link to the directory.
    utl_DeleteFile((directories.working + document).constData());
    return directories;
}

void stamp(CommonInfo& common, long long now, unsigned char brand)
{
    common.cusTimeStamp = static_cast<quint64>(now);
    common.cusTimeString = QString::fromLatin1(localTimeText(now));
    common.areaKey = brand;
}

QByteArray writeDocument(CustomInfo& record, const QByteArray& working)
{
    QByteArray path = working + document;
    CustomXmlParser parser;
    formatCustomInfo(parser, record);
    copyIcons(record.gui, working);
    parser.SaveFile(QString::fromLocal8Bit(path));
    return path;
}

void copyIcons(const GUIOptionsInfo& gui, const QByteArray& working)
{
    for (const IconFile& icon : iconFiles) {
        const QByteArray source = (gui.*icon.source).toLocal8Bit();
        if (source.isEmpty())
            continue;
        utl_FileExists(source.constData());
        const QByteArray target = working + icon.name;
        utl_CopyFile(source.constData(), target.constData());
        utl_Chmod(target.constData(), "a+r");
    }
}

bool writeVerification(const QByteArray& documentPath)
{
    unsigned long error = 0;
    return utl_GenCustomInfoVerify(&error, QByteArray(documentPath).data());
}

void keepCopy(const CommitDirectories& directories, quint64 timeStamp)
{
    const QByteArray stored = directories.history + directoryName(timeStamp);
    ensureDirectory(stored);
    const QByteArray copy = "cp  -Rf \"" + directories.working + "\"* \"" + stored + "/\"";
    runShellCommand(copy);
    qDebug() << copy;
}

} // namespace store
