#include "app/widgets/WholeTexts.h"

#include "app/widgets/Tables.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>
#include <QToolTip>

namespace {

/// A text that is cut off, with the part of the widget that it stands in; empty where nothing is.
struct CutText
{
    QString text;
    QRect place;
};

CutText cutOffIn(const QLineEdit& edit)
{
    if (edit.echoMode() != QLineEdit::Normal)
        return {};
    QStyleOptionFrame option;
    option.initFrom(&edit);
    option.lineWidth = edit.hasFrame() ? edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &edit) : 0;
    const QRect inside = edit.style()->subElementRect(QStyle::SE_LineEditContents, &option, &edit);
    const int margins = 2 * 2 + edit.textMargins().left() + edit.textMargins().right(); // Qt leaves two pixels
    const int width = edit.fontMetrics().horizontalAdvance(edit.text());
    return width > inside.width() - margins ? CutText{edit.text(), edit.rect()} : CutText{};
}

CutText cutOffIn(const QComboBox& combo)
{
    QStyleOptionComboBox option;
    option.initFrom(&combo);
    option.editable = combo.isEditable();
    option.frame = combo.hasFrame();
    const QRect inside =
        combo.style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &combo);
    const int width = combo.fontMetrics().horizontalAdvance(combo.currentText());
    return width > inside.width() ? CutText{combo.currentText(), combo.rect()} : CutText{};
}

CutText cutOffIn(const QAbstractItemView& view, const QPoint& position)
{
    const QModelIndex index = view.indexAt(position);
    if (!index.isValid() || index.data(Qt::ToolTipRole).isValid())
        return {};
    const QRect cell = view.visualRect(index);
    const bool fits = view.viewport()->rect().contains(cell) && view.sizeHintForIndex(index).width() <= cell.width();
    return fits ? CutText{} : CutText{index.data().toString(), cell};
}

CutText cutOffAt(const QObject* object, const QPoint& position)
{
    if (const auto* edit = qobject_cast<const QLineEdit*>(object))
        return cutOffIn(*edit);
    if (const auto* combo = qobject_cast<const QComboBox*>(object))
        return cutOffIn(*combo);
    const auto* view = qobject_cast<const QAbstractItemView*>(object->parent());
    return view && view->viewport() == object ? cutOffIn(*view, position) : CutText{};
}

} // namespace

bool WholeTextFilter::eventFilter(QObject* watched, QEvent* event)
{
    QWidget* widget = event->type() == QEvent::ToolTip ? qobject_cast<QWidget*>(watched) : nullptr;
    if (widget && widget->toolTip().isEmpty()) {
        const QHelpEvent* help = static_cast<QHelpEvent*>(event);
        const CutText cut = cutOffAt(widget, help->pos());
        if (!cut.text.isEmpty()) {
            QToolTip::showText(help->globalPos(), literalToolTip(cut.text), widget, cut.place);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}
