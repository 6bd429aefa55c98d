#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/mainwindow/orvexmanager.h"
#include "app/widgets/EmptyHint.h"
#include "app/widgets/Tables.h"
#include "app/widgets/WarningBox.h"
#include "common/Log.h"
#include "store/HistoryRows.h"
#include "store/HistoryScan.h"
#include "store/StoredDirectory.h"
#include "view/ShowDetailDlg.h"
#include "xml/CustomInfoLoad.h"
#include "xml/RecordRows.h"

#include <QAction>
#include <QFontMetrics>
#include <QMenu>
#include <QMessageBox>
#include <QShortcut>
#include <QtMath>

#include <memory>

// The history page: the verified customisations below UpdateCustom/.

namespace {

constexpr int s_timeColumnWidth = 140;

constexpr qreal s_roomForTimes = s_timeColumnWidth - 12; // but for the margins of a cell

qreal widthOfTimes(const QFont& font)
{
    return QFontMetrics(font).horizontalAdvance(QStringLiteral("0000-00-00 00:00:00"));
}

// The column has a fixed width, so a large font gives way, by half points, until a time string fits.
QFont fontForTimes(QFont font)
{
    const qreal width = widthOfTimes(font);
    const qreal size = font.pointSizeF();
    const int mostSteps = qCeil((size - 6) * 2); // the last is taken unmeasured
    if (width <= s_roomForTimes || mostSteps <= 0)
        return font;
    // Each font that is measured has to be loaded. A text is about as wide as its font is large, so the search begins
    // where it should nearly fit.
    int steps = qBound(1, qFloor(size * (1 - s_roomForTimes / width) * 2), mostSteps);
    font.setPointSizeF(size - steps * 0.5);
    for (; steps < mostSteps && widthOfTimes(font) > s_roomForTimes; ++steps)
        font.setPointSizeF(size - (steps + 1) * 0.5);
    return font;
}

} // namespace

void OrvexManager::addHistoryCommands()
{
    QTreeWidget* tree = ui.treeWidget_cusHis;
    const auto clickCurrentRow = [this, tree] {
        if (QTreeWidgetItem* row = tree->currentItem()) {
            tree->setCurrentItem(row);
            onItemClicked(row);
        }
    };
    const auto onKey = [this, tree](int key, auto play) {
        connect(new QShortcut(key, tree, nullptr, nullptr, Qt::WidgetShortcut), &QShortcut::activated, this, play);
    };
    // Contract: the arrow keys move the selection alone; the blank, like a click, makes the row that of the buttons. A
    // search by typed letters ends at it.
    onKey(Qt::Key_Space, clickCurrentRow);
    onKey(Qt::SHIFT + Qt::Key_F10, [tree] {
        const QRect row = tree->visualItemRect(tree->currentItem());
        QMenu::exec(tree->actions(), tree->viewport()->mapToGlobal(row.bottomLeft()), nullptr, tree);
    });

    // Keys and menu end in the buttons, so that they do what these do, and nothing while these are disabled.
    const auto addCommand = [this, tree](const QList<QKeySequence>& keys, auto play) {
        auto* command = new QAction(tree);
        command->setShortcuts(keys);
        command->setShortcutContext(Qt::WidgetShortcut);
        connect(command, &QAction::triggered, this, play);
        tree->addAction(command);
    };
    addCommand({Qt::Key_Return, Qt::Key_Enter}, [this, clickCurrentRow] {
        clickCurrentRow();
        ui.toolButton_detail->click();
    });
    // There is no question, so no single key deletes, and the row must be seen to be selected.
    addCommand({}, [this, tree, clickCurrentRow] {
        if (tree->selectedItems().isEmpty())
            return;
        clickCurrentRow();
        ui.toolButton_delete->click();
    });
    addCommand({}, [this] { ui.toolButton_deleteall->click(); });
    tree->setContextMenuPolicy(Qt::ActionsContextMenu);
    connect(tree, &QTreeWidget::currentItemChanged, this, &OrvexManager::offerHistoryCommands);
    connect(tree, &QTreeWidget::itemSelectionChanged, this, &OrvexManager::offerHistoryCommands);
}

void OrvexManager::offerHistoryCommands()
{
    const QTreeWidget* tree = ui.treeWidget_cusHis;
    const bool hasRows = tree->topLevelItemCount() > 0;
    const QList<QAction*> commands = tree->actions();
    commands.at(0)->setEnabled(hasRows && (tree->currentItem() || ui.toolButton_detail->isEnabled()));
    commands.at(1)->setEnabled(!tree->selectedItems().isEmpty());
    commands.at(2)->setEnabled(hasRows);
}

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
    const QToolButton* const buttons[] = {ui.toolButton_detail, ui.toolButton_delete, ui.toolButton_deleteall};
    int command = 0;
    for (const QToolButton* button : buttons)
        tree->actions().at(command++)->setText(button->text());
    tree->setAccessibleName(langText("AllCusComBox"));
    setColumns(tree,
               {labelText(field<&CommonInfo::cusTimeString>), langText("CusComponents"),
                labelText(field<&CommonInfo::cusAddInfo>)},
               {s_timeColumnWidth, 160});
    if (ui.stackedWidget->currentWidget() == ui.historyCustom)
        fitTimes();
    tree->setSortingEnabled(false);
    // The language files of earlier installations lack this text, and then nothing is shown.
    const QString hint = langText("CusListEmpty");
    setEmptyHint(*tree, hint == QLatin1String("NULL") ? QString() : hint);
}

void OrvexManager::fitTimes()
{
    ui.treeWidget_cusHis->setFont(fontForTimes(font()));
}

bool OrvexManager::GetCurAllCustoms()
{
    return store::scanHistory(m_cusPolicyList, MAX_COUTN_CUSTOM);
}

int OrvexManager::GetIndexByStrTime(QString time)
{
    // Contract: a deletion finds its row by the exact text; a choice (GetSelCusDir) disregards case.
    return store::rowOfExactTime(m_cusPolicyList, time);
}

QString OrvexManager::GetSelCusDir(QString selText)
{
    // The text of an entry begins with its time string, which finds the row again.
    // Contract: a choice disregards case; a deletion (GetIndexByStrTime) finds its row by the exact text.
    const int row = selText.isEmpty() ? -1 : store::rowOfAnyCase(m_cusPolicyList, selText.left(19));
    if (row < 0) {
        m_customInfo.reset();
        return QStringLiteral("");
    }

    // Contract: here the time stamp names the directory in all its 64 bits, unlike store::directoryName. A stamp beyond
    // a signed 32-bit number is stored, shown and deleted under one name and looked for under another.
    const QByteArray directory =
        store::historyDirectory() + "/" + QByteArray::number(m_cusPolicyList.at(row).cusTimeStamp);
    const auto giveUp = [this](const char* line) {
        ui.comboBox_defaultCus->setCurrentIndex(0);
        m_customInfo.reset();
        logX(1, "%s", line);
        return QStringLiteral("");
    };
    switch (store::documentState(directory)) {
    case store::DocumentState::Missing:
        return giveUp("GetSelCusDir::utl_FileExists failed.");
    case store::DocumentState::Unverified:
        return giveUp("GetSelCusDir::utl_CusXmlVerify failed.");
    case store::DocumentState::Verified:
        break;
    }
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
    const QByteArray directory = store::storedDirectory(m_cusPolicyList.at(m_iSelIndex).cusTimeStamp);
    switch (store::documentState(directory)) {
    case store::DocumentState::Missing:
        box.say("CusIniNotFound");
        return;
    case store::DocumentState::Unverified:
        box.say("VerifyFail");
        return;
    case store::DocumentState::Verified:
        break;
    }
    CustomInfo stored;
    utl_LoadCustomInfo(store::documentIn(directory).constData(), stored);
    ShowDetailDlg dialog(this);
    dialog.onInitDialog(stored);
    dialog.exec();
}

void OrvexManager::DelCustomInfo(unsigned long stamp)
{
    store::removeStored(stamp);
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
