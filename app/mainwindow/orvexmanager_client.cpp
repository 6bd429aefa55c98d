#include "advanced/CustomAdvProperty.h"
#include "advanced/KEFCusOpt.h"
#include "app/language/FieldTexts.h"
#include "app/language/LangText.h"
#include "app/mainwindow/orvexmanager.h"
#include "app/widgets/FitToTexts.h"
#include "app/widgets/Tables.h"
#include "app/widgets/WarningBox.h"
#include "common/StorePaths.h"
#include "xml/CustomInfoLoad.h"
#include "xml/RecordRows.h"

#include <QAbstractItemView>
#include <QHash>
#include <QItemSelectionModel>
#include <QLayout>
#include <QStandardItemModel>
#include <QStringBuilder>
#include <QStyle>

// The client page: the starting point and the components of a customisation.

namespace {

using Widgets = Ui_OrvexManagerClass;

constexpr int s_leastHeightOfAccess = 100; // of the area of the access components

struct Component
{
    QCheckBox* Widgets::*box;
    quint64 value;
};

const Component accessComponents[] = {
    {&Widgets::checkBox_8021xPro, procom::x1},           {&Widgets::checkBox_portalPro, procom::portal},
    {&Widgets::checkBox_ipsecvpnPro, procom::l2tpIpsec}, {&Widgets::checkBox_wlanPro, procom::wlan},
    {&Widgets::checkBox_sslvpnPro, procom::sslVpn},      {&Widgets::checkBox_zoaPro, procom::zoaDirect},
};
const Component functionComponents[] = {
    {&Widgets::checkBox_zoafunc, funcom::zoa},
    {&Widgets::checkBox_keffunc, funcom::kef},
};

template <size_t count> quint64 ticked(const Widgets& ui, const Component (&components)[count])
{
    quint64 mask = 0;
    for (const Component& component : components) {
        if ((ui.*component.box)->isChecked())
            mask += component.value;
    }
    return mask;
}

template <size_t count> void tick(const Widgets& ui, const Component (&components)[count], quint64 mask)
{
    for (const Component& component : components)
        (ui.*component.box)->setChecked((mask & component.value) != 0);
}

/// The chosen components in a fixed spelling, each with two blanks behind it.
QString summaryOf(const words::List& components, int mask)
{
    QString summary;
    for (const words::Word& word : components) {
        if ((mask & static_cast<int>(words::number(word))) != 0)
            summary += wordText(word) + QLatin1String("  ");
    }
    return summary;
}

// Keeps the text of an entry of the combo box, which does not change. The whole of it is its tool tip, made when it is
// asked for.
class Entry : public QStandardItem
{
public:
    explicit Entry(const QString& text) : m_text(text) {}

    QVariant data(int role) const override
    {
        switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return m_text;
        case Qt::ToolTipRole:
            return m_text.isEmpty() ? QVariant() : literalToolTip(m_text);
        default:
            return QStandardItem::data(role);
        }
    }

private:
    const QString m_text;
};

} // namespace

QString OrvexManager::GetCusCompStr(int procomVal, int funcomVal)
{
    return summaryOf(words::accessComponents, procomVal) + summaryOf(words::functionComponents, funcomVal);
}

void OrvexManager::refreshCusClient()
{
    ui.label_cusClientTitle->setText(langText("CusClient"));
    ui.groupBox_selDefaultCus->setTitle(langText("DefaultCus"));
    ui.comboBox_defaultCus->setAccessibleName(langText("DefaultCus"));
    ui.groupBox_proComp->setTitle(labelText(field<&CommonInfo::procomVal>));
    ui.label_proCompDes->setText(langText("AccessComDes"));
    ui.checkBox_8021xPro->setText(langText("X1ComName"));
    ui.checkBox_portalPro->setText(langText("PortalComName"));
    ui.checkBox_sslvpnPro->setText(langText("SslvpnComName"));
    ui.checkBox_wlanPro->setText(langText("WlanComName"));
    ui.checkBox_ipsecvpnPro->setText(langText("IpsecvpnComName"));
    ui.checkBox_zoaPro->setText(langText("ZoaDirectComName"));
    ui.groupBox_funcComp->setTitle(labelText(field<&CommonInfo::funcomVal>));
    ui.label_funcCompDes->setText(langText("FuncComDes"));
    ui.checkBox_zoafunc->setText(langText("ZOAComName"));
    ui.checkBox_keffunc->setText(langText("KEFComName"));
    ui.label_advDes->setText(langText("PressAdvanDes"));
    ui.label_finishDes->setText(langText("PressFinishDes"));
    ui.toolButton_adv->setText(langText("AdvancedCusBtn"));
    ui.toolButton_finish->setText(langText("FinishBtn"));
}

void OrvexManager::OnRepaintCustomCombo()
{
    // Clearing and filling run onDefaultCusChg: after a repaint the page and the record hold the defaults.
    QComboBox* combo = ui.comboBox_defaultCus;
    combo->view()->setTextElideMode(Qt::ElideRight); // the remark may be cut off, the components not
    QStandardItemModel* entries = qobject_cast<QStandardItemModel*>(combo->model());
    combo->clear();
    entries->appendRow(new Entry(QStringLiteral("")));
    // Without a selection to give up the table is not laid out once more before it is emptied.
    ui.treeWidget_cusHis->selectionModel()->reset();
    ui.treeWidget_cusHis->clear();
    QList<QStandardItem*> items;
    QVector<QStringList> rows;
    QHash<QPair<quint32, quint32>, QString> summaries; // most rows have the same few components
    for (const CUSINFOPOLICY& row : qAsConst(m_cusPolicyList)) {
        QString& summary = summaries[{row.procomVal, row.funcomVal}];
        if (summary.isNull())
            summary = GetCusCompStr(int(row.procomVal), int(row.funcomVal));
        const QLatin1String gap("    ");
        items.append(new Entry(row.cusTimeString % gap % summary % gap % row.cusAddInfo));
        rows.append({row.cusTimeString, summary, row.cusAddInfo});
    }
    entries->invisibleRootItem()->appendRows(items);
    addRows(ui.treeWidget_cusHis, rows);
    combo->setCurrentIndex(0);

    ui.toolButton_deleteall->setEnabled(false);
    if (m_cusPolicyList.isEmpty()) {
        ui.toolButton_delete->setEnabled(false);
        ui.toolButton_detail->setEnabled(false);
    } else {
        ui.toolButton_deleteall->setEnabled(true);
    }
    offerHistoryCommands();
}

void OrvexManager::growForComponents(const QSize& room)
{
    const auto sizeToShow = [](const QScrollArea* area) {
        return area->widget()->sizeHint() + QSize(2 * area->frameWidth(), 2 * area->frameWidth());
    };
    QScrollArea* access = ui.scrollArea_proComp;
    QScrollArea* functions = ui.scrollArea_funcComp;
    functions->setFixedHeight(sizeToShow(functions).height());
    forgetSizes(functions);

    // A scroll area does not ask for what it holds, so it is fixed to that as long as the layouts are asked.
    const QLayout* pages = ui.centralWidget->layout();
    const int bars = layout()->totalSizeHint().height() - pages->totalSizeHint().height();
    const auto sizeWith = [&](const QSize& sizeOfAccess, int leastWidth) {
        access->setMinimumWidth(qMax(sizeOfAccess.width(), sizeToShow(functions).width()));
        access->setFixedHeight(sizeOfAccess.height());
        forgetSizes(access);
        const int width = qMax(leastWidth, pages->totalMinimumSize().width());
        return QSize(width, pages->totalHeightForWidth(width) + bars);
    };
    const int scrollBar = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, access);
    const QSize needed = sizeWith(sizeToShow(access), width());
    const QSize smallest = sizeWith(QSize(sizeToShow(access).width() + scrollBar, s_leastHeightOfAccess), 0);
    // With a large font on a low screen only a part of that is left, for at least one component.
    const int missing = qMax(0, smallest.height() - room.height());
    access->setMinimumSize(0, qMax(ui.checkBox_8021xPro->sizeHint().height(), s_leastHeightOfAccess - missing));
    access->setMaximumHeight(QWIDGETSIZE_MAX);
    forgetSizes(access);

    if (windowState() != Qt::WindowNoState)
        return;
    // A main window's own minimum does not count on wrapped texts.
    setMinimumSize(smallest.boundedTo(room));
    resize(size().expandedTo(needed.boundedTo(room)));
}

void OrvexManager::onDefaultCusChg(int)
{
    const QString directory = GetSelCusDir(ui.comboBox_defaultCus->currentText());
    const QString path = directory + QLatin1Char('/') + QLatin1String(store::document);
    m_customInfo.reset();
    utl_LoadCustomInfo(path.toLocal8Bit().constData(), m_customInfo);
    // Set by the program, so the KEF dialog does not open.
    tick(ui, accessComponents, m_customInfo.common.procomVal);
    tick(ui, functionComponents, m_customInfo.common.funcomVal);
    // The closed box cuts a long text off.
    ui.comboBox_defaultCus->setToolTip(ui.comboBox_defaultCus->currentData(Qt::ToolTipRole).toString());
    ui.comboBox_defaultCus->setAccessibleDescription(ui.comboBox_defaultCus->currentText());
}

bool OrvexManager::takeComponents(WarningBox& box)
{
    m_customInfo.common.procomVal = ticked(ui, accessComponents);
    // Contract: a refusal leaves no access component in the record, and its function components as they were.
    if (m_customInfo.common.procomVal == 0)
        return box.refuse("SelProtocolPls");
    m_customInfo.common.funcomVal = ticked(ui, functionComponents);
    return true;
}

void OrvexManager::showCusAdvProDlg()
{
    WarningBox box("manager_title", this);
    if (!takeComponents(box))
        return;
    CustomAdvProperty dialog(this);
    dialog.initalDialog(&m_customInfo);
    dialog.exec();
}

void OrvexManager::onKefFunc()
{
    if (!ui.checkBox_keffunc->isChecked())
        return;
    KEFCusOpt dialog(this);
    if (dialog.exec() != QDialog::Accepted) {
        ui.checkBox_keffunc->setChecked(false);
        return;
    }
    m_customInfo.kef.kefIP = dialog.address;
    m_customInfo.kef.kefPort = dialog.port;
    m_customInfo.kef.customize = dialog.customize;
}
