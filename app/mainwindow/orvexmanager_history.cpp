#include "app/language/LangText.h"
#include "app/mainwindow/orvexmanager.h"
#include "app/widgets/Tables.h"
#include "app/widgets/WarningBox.h"
#include "common/CustomInfoVerify.h"
#include "common/Log.h"
#include "common/ProcessPath.h"
#include "common/StorePaths.h"
#include "common/UtilityFunc.h"
#include "view/ShowDetailDlg.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QFontMetrics>
#include <QMessageBox>

#include <cerrno>
#include <cstring>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

// The history page: the verified customisations below UpdateCustom/.

namespace {

constexpr int s_pathSize = 260;
constexpr int s_timeColumnWidth = 140;

// The column has a fixed width, so a large font gives way until a time string fits.
QFont fontForTimes(QFont font)
{
    const int cellMargin = 12;
    while (font.pointSizeF() > 6 &&
           QFontMetrics(font).horizontalAdvance(QStringLiteral("0000-00-00 00:00:00")) > s_timeColumnWidth - cellMargin)
        font.setPointSizeF(font.pointSizeF() - 0.5);
    return font;
}

QByteArray historyDirectory()
{
    return processDirectory(true) + store::updateCustom;
}

QByteArray documentIn(const QByteArray& directory)
{
    return directory + "/" + store::document;
}

/// The name of a stored customisation's directory.
// Contract: the time stamp goes through a signed 32-bit number.
QByteArray directoryName(quint64 timeStamp)
{
    return QByteArray::number(static_cast<int>(timeStamp));
}

} // namespace

void OrvexManager::refreshCusHis()
{
    ui.label_cusHisTitle->setText(langText("CusUpdateTitle"));
    ui.groupBox_allCusHisInfo->setTitle(langText("AllCusComBox"));
    ui.label_cusHisDes->setText(langText("CusListHint"));
    ui.toolButton_deleteall->setText(langText("DeleteAll"));
    ui.checkBox_allSelect->setText(langText("SelectAll"));
    ui.toolButton_detail->setText(langText("ShowCustomDetailBtn"));
    ui.toolButton_delete->setText(langText("DeleteCustomBtn"));

    QTreeWidget* tree = ui.treeWidget_cusHis;
    setColumns(tree, {langText("CusTime"), langText("CusComponents"), langText("CusAddInfo")},
               {s_timeColumnWidth, 160});
    tree->setFont(fontForTimes(font()));
    tree->setSortingEnabled(false);
}

bool OrvexManager::GetCurAllCustoms()
{
    const QByteArray base = historyDirectory() + "/";
    logX(4, "GetCurAllCustoms updatecustom dir: %s", base.constData());
    m_cusPolicyList.clear();

    DIR* directory = opendir(base.constData());
    if (!directory) {
        logX(1, "GetCurAllCustoms error opendir: %s", strerror(errno));
        return false;
    }
    while (const dirent* entry = readdir(directory)) {
        logX(4, "GetCurAllCustoms file d_name: %s", entry->d_name);
        if (entry->d_name[0] == '.')
            continue;
        const QByteArray path = base + QByteArray(entry->d_name);
        if (path.size() >= s_pathSize) {
            logX(1, "GetCurAllCustoms: path is too long: %s", path.constData());
            continue;
        }
        logX(4, "GetCurAllCustoms dir path: %s", path.constData());
        struct stat status = {};
        if (stat(path.constData(), &status) != 0) {
            logX(2, "stat return error");
            continue;
        }
        logX(4, "GetCurAllCustoms File type: %u", static_cast<unsigned int>(status.st_mode & S_IFMT));
        if (!S_ISDIR(status.st_mode))
            continue;
        logX(4, "GetCurAllCustoms common file: %s", entry->d_name);
        if (m_cusPolicyList.size() > MAX_COUTN_CUSTOM - 1) {
            // Contract: the full-width comma stands in the log in its GBK bytes, and the directory stays open.
            logX(4, "OrvexManager::GetCurAllCustoms: uCount >= MAX_COUTN_CUSTOM\xA3\xACso return.");
            return true;
        }
        takeStoredCustom(path);
    }
    closedir(directory);
    return true;
}

void OrvexManager::takeStoredCustom(const QByteArray& directory)
{
    const QByteArray document = documentIn(directory);
    if (!utl_FileExists(document.constData()))
        return;
    CustomXmlParser parser;
    parser.FormatXMLInit();
    if (!utl_CusXmlVerify(directory.constData())) {
        logX(2, "GetCurAllCustoms::utl_CusXmlVerify failed,continue.");
        return;
    }
    CommonInfo info;
    parser.GetXMLCommonInfo(QString::fromLocal8Bit(document), info);

    CUSINFOPOLICY row;
    row.cusTimeStamp = info.cusTimeStamp;
    row.cusTimeString = info.cusTimeString;
    row.cusAddInfo = info.cusAddInfo;
    row.procomVal = static_cast<quint32>(info.procomVal);
    row.funcomVal = static_cast<quint32>(info.funcomVal);
    m_cusPolicyList.prepend(row);
}

int OrvexManager::GetIndexByStrTime(QString time)
{
    // Contract: a deletion finds its row by the exact text; a choice (GetSelCusDir) disregards case.
    for (int i = 0; i < m_cusPolicyList.size(); ++i) {
        if (m_cusPolicyList.at(i).cusTimeString == time)
            return i;
    }
    return -1;
}

QString OrvexManager::GetSelCusDir(QString selText)
{
    if (selText.isEmpty()) {
        m_customInfo.reset();
        return QStringLiteral("");
    }
    // The text of an entry begins with its time string, which finds the row again.
    const QString time = selText.left(19);
    // Contract: a choice disregards case; a deletion (GetIndexByStrTime) finds its row by the exact text.
    int index = 0;
    while (index < m_cusPolicyList.size() &&
           QString::compare(m_cusPolicyList.at(index).cusTimeString, time, Qt::CaseInsensitive) != 0)
        ++index;
    if (index == m_cusPolicyList.size()) {
        m_customInfo.reset();
        return QStringLiteral("");
    }

    const QByteArray directory = historyDirectory() + "/" + QByteArray::number(m_cusPolicyList.at(index).cusTimeStamp);
    const auto giveUp = [this](const char* line) {
        ui.comboBox_defaultCus->setCurrentIndex(0);
        m_customInfo.reset();
        logX(1, "%s", line);
        return QStringLiteral("");
    };
    if (!utl_FileExists(documentIn(directory).constData()))
        return giveUp("GetSelCusDir::utl_FileExists failed.");
    if (!utl_CusXmlVerify(directory.constData()))
        return giveUp("GetSelCusDir::utl_CusXmlVerify failed.");
    return QString::fromLocal8Bit(directory);
}

void OrvexManager::onItemClicked(QTreeWidgetItem* itemSel)
{
    const int row = ui.treeWidget_cusHis->indexOfTopLevelItem(itemSel);
    if (row == -1)
        return;
    m_iSelIndex = row;
    ui.toolButton_delete->setEnabled(true);
    ui.toolButton_detail->setEnabled(true);
}

void OrvexManager::onDetail()
{
    WarningBox box("manager_title", this);
    if (m_iSelIndex == -1) {
        const QList<QTreeWidgetItem*> selected = ui.treeWidget_cusHis->selectedItems();
        if (selected.isEmpty()) {
            box.say("SelCus");
            return;
        }
        m_iSelIndex = ui.treeWidget_cusHis->indexOfTopLevelItem(selected.first());
    }
    if (m_iSelIndex < 0 || m_iSelIndex >= m_cusPolicyList.size())
        return;
    const QByteArray directory = historyDirectory() + "/" + directoryName(m_cusPolicyList.at(m_iSelIndex).cusTimeStamp);
    const QByteArray document = documentIn(directory);
    if (!utl_FileExists(document.constData())) {
        box.say("CusIniNotFound");
        return;
    }
    if (!utl_CusXmlVerify(directory.constData())) {
        box.say("VerifyFail");
        return;
    }
    CustomInfo stored;
    utl_LoadCustomInfo(document.constData(), stored);
    ShowDetailDlg dialog(this);
    dialog.onInitDialog(stored);
    dialog.exec();
}

void OrvexManager::DelCustomInfo(unsigned long stamp)
{
    const QByteArray base = historyDirectory();
    if (!utl_DirectoryExists(base.constData())) {
        logX(1, "DelCustomInfo::utl_DirectoryExists failed,return.");
        return;
    }
    utl_DelDirRecursively((base + "/" + directoryName(stamp)).constData());
}

void OrvexManager::onDelete()
{
    WarningBox box("manager_title", this);
    const QList<QTreeWidgetItem*> selected = ui.treeWidget_cusHis->selectedItems();
    if (selected.isEmpty()) {
        box.say("SelCus");
        return;
    }
    for (QTreeWidgetItem* item : selected) {
        QTreeWidget* tree = ui.treeWidget_cusHis;
        const std::unique_ptr<QTreeWidgetItem> taken(tree->takeTopLevelItem(tree->indexOfTopLevelItem(item)));
        const int index = GetIndexByStrTime(taken->text(0));
        if (index >= 0) {
            DelCustomInfo(m_cusPolicyList.at(index).cusTimeStamp);
            m_cusPolicyList.remove(index);
        }
    }
    OnRepaintCustomCombo();
    m_iSelIndex = -1;
}

void OrvexManager::onDeleteAll()
{
    WarningBox box("manager_title", this);
    box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
    box.setDefaultButton(QMessageBox::Yes);
    box.setIcon(QMessageBox::Question);
    box.setText(langText("ConfirmDeleteAll"));
    // Escape and the frame's close control count as No.
    if (box.exec() != QMessageBox::Yes)
        return;
    if (m_cusPolicyList.isEmpty())
        return;
    for (const CUSINFOPOLICY& row : qAsConst(m_cusPolicyList))
        DelCustomInfo(row.cusTimeStamp);
    m_cusPolicyList.clear();
    OnRepaintCustomCombo();
    m_iSelIndex = -1;
}
