#include "app/widgets/EmptyHint.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QFontInfo>
#include <QPainter>

namespace {

// Paints on the viewport before the view does, which paints nothing there while it has no rows.
class EmptyHint : public QObject
{
public:
    explicit EmptyHint(QAbstractItemView& view) : QObject(&view), m_view(view)
    {
        view.viewport()->installEventFilter(this);
        const QAbstractItemModel* model = view.model();
        connect(model, &QAbstractItemModel::rowsInserted, this, &EmptyHint::describe);
        connect(model, &QAbstractItemModel::rowsRemoved, this, &EmptyHint::describe);
        connect(model, &QAbstractItemModel::modelReset, this, &EmptyHint::describe);
    }

    void setText(const QString& text)
    {
        m_text = text;
        describe();
        m_view.viewport()->update();
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && isEmpty())
            paint();
        return QObject::eventFilter(watched, event);
    }

private:
    bool isEmpty() const { return m_view.model()->rowCount() == 0; }

    void describe()
    {
        // The model goes with the view, and says so when a plain widget is all that is left of that.
        if (qobject_cast<QAbstractItemView*>(parent()))
            m_view.setAccessibleDescription(isEmpty() ? m_text : QString());
    }

    void paint()
    {
        const int margin = 16;
        QColor colour = m_view.palette().color(QPalette::Text);
        colour.setAlphaF(0.75);
        QPainter painter(m_view.viewport());
        // The view's own may be smaller. Without a size of its own the font would take that of the view.
        QFont font = m_view.parentWidget()->font();
        font.setPointSizeF(QFontInfo(font).pointSizeF());
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(m_view.viewport()->rect().adjusted(margin, margin, -margin, -margin),
                         Qt::AlignCenter | Qt::TextWordWrap, m_text);
    }

    QAbstractItemView& m_view;
    QString m_text;
};

} // namespace

void setEmptyHint(QAbstractItemView& view, const QString& text)
{
    const QString name = QStringLiteral("emptyHint");
    QObject* hint = view.findChild<QObject*>(name, Qt::FindDirectChildrenOnly);
    if (!hint) {
        hint = new EmptyHint(view);
        hint->setObjectName(name);
    }
    static_cast<EmptyHint*>(hint)->setText(text);
}
