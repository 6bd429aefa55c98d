#include "screenshots/Complaints.h"

#include "app/widgets/ReadablePalette.h"
#include "screenshots/Drawing.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QGroupBox>
#include <QHash>
#include <QHeaderView>
#include <QHelpEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QTabBar>
#include <QTextDocument>
#include <QToolButton>
#include <QToolTip>

#include <algorithm>

namespace {

QString shownText(const QWidget* widget)
{
    if (const QLabel* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    if (const QAbstractButton* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    if (const QGroupBox* box = qobject_cast<const QGroupBox*>(widget))
        return box->title();
    return QString();
}

/// Parts of a widget, such as the buttons of a tab bar or a header, carry no name of the form.
bool isOfTheForm(const QWidget* widget)
{
    return !widget->objectName().isEmpty() && !widget->objectName().startsWith(QLatin1String("qt_")) &&
           !widget->parentWidget()->inherits("QTabBar");
}

/// The widget or the next one around it that the form names.
const QWidget* namedBy(const QWidget* widget)
{
    while (!widget->isWindow() && !isOfTheForm(widget))
        widget = widget->parentWidget();
    return widget;
}

/// What stays as it is.
struct Exception
{
    const char* widget;
    const char* complaint; // the end of it
    const char* reason;
};

const Exception exceptions[] = {
    {"treeWidget_SSLIP", "ends in dots though there is room", "the columns have fixed widths, which users can change"},
};

bool isExcepted(const QString& widget, const QString& complaint)
{
    return std::any_of(std::begin(exceptions), std::end(exceptions), [&](const Exception& exception) {
        return widget == QLatin1String(exception.widget) && complaint.endsWith(QLatin1String(exception.complaint));
    });
}

class Inspection
{
public:
    explicit Inspection(QWidget& window) : m_window(window) {}

    QStringList run()
    {
        checkWindow();
        checkWidgets();
        const Drawing drawing = drawingOf(m_window);
        if (drawing.texts.isEmpty())
            complain(&m_window, "shows no text");
        for (const DrawnText& text : drawing.texts)
            checkContrast(text, drawing.ground);
        for (const DrawnText& text : joined(drawing.texts))
            checkRoom(text);
        return m_complaints;
    }

private:
    /// A text with a selection is painted in parts, each with the rest of it clipped away.
    static QVector<DrawnText> joined(const QVector<DrawnText>& parts)
    {
        QVector<DrawnText> texts;
        for (const DrawnText& part : parts) {
            const auto isSame = [&part](const DrawnText& text) {
                return text.widget == part.widget && text.text == part.text && text.place == part.place;
            };
            const auto other = std::find_if(texts.begin(), texts.end(), isSame);
            if (other == texts.end())
                texts.append(part);
            else
                other->visible |= part.visible;
        }
        return texts;
    }

    void complain(const QWidget* widget, const QString& text, const QString& what)
    {
        const QString name = namedBy(widget)->objectName();
        const QString complaint = QStringLiteral("%1 \"%2\" %3").arg(name, text, what);
        if (!m_complaints.contains(complaint) && !isExcepted(name, complaint))
            m_complaints.append(complaint);
    }
    void complain(const QWidget* widget, const char* what) { complain(widget, shownText(widget), QLatin1String(what)); }

    void checkWindow()
    {
        if (m_window.windowTitle() == QLatin1String("NULL"))
            complain(&m_window, "has no title");
        // What is scrolled away and would fit on the screen beside the window.
        const int room = m_window.screen()->availableSize().width() - m_window.width() -
                         m_window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
        for (const QScrollArea* area : m_window.findChildren<QScrollArea*>()) {
            const int hidden = area->horizontalScrollBar()->maximum();
            if (area->isVisibleTo(&m_window) && hidden > 0 && hidden <= room)
                complain(area, "scrolls sideways");
        }
    }

    bool isShown(const QWidget* widget) const { return widget->isVisibleTo(&m_window) && isOfTheForm(widget); }

    void checkWidgets()
    {
        for (const QWidget* widget : m_window.findChildren<QWidget*>()) {
            if (!isShown(widget) || widget->isWindow())
                continue;
            if (shownText(widget).contains(QLatin1String("NULL")))
                complain(widget, "has no text");
            // Not even painted, so that it is not among the painted texts.
            if (!shownText(widget).isEmpty() && !widget->parentWidget()->rect().intersects(widget->geometry()))
                complain(widget, "is out of sight");
            const QLabel* label = qobject_cast<const QLabel*>(widget);
            if (label && label->wordWrap() && !label->text().isEmpty() &&
                label->height() < label->heightForWidth(label->width()))
                complain(widget, "is clipped");
            for (const QWidget* sibling :
                 widget->parentWidget()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                if (sibling > widget && isShown(sibling) && !sibling->isWindow() &&
                    sibling->geometry().intersects(widget->geometry()))
                    complain(widget, qPrintable(QLatin1String("overlaps ") + sibling->objectName()));
            }
        }
    }

    /// What the tool tip at that place shows, as plain text.
    QString toolTipAt(const DrawnText& text)
    {
        QWidget* widget = const_cast<QWidget*>(text.widget);
        const QPoint place = widget->mapFrom(
            &m_window, (text.visible.isEmpty() ? text.place.toRect() : text.visible.boundingRect()).center());
        const QString before = QToolTip::text();
        QHelpEvent help(QEvent::ToolTip, place, widget->mapToGlobal(place));
        QApplication::sendEvent(widget, &help);
        const QString shown = QToolTip::text();
        QToolTip::hideText();
        if (shown == before || !Qt::mightBeRichText(shown))
            return shown;
        QTextDocument document;
        document.setHtml(shown);
        return document.toPlainText();
    }

    bool tellsItsWhole(const DrawnText& text)
    {
        QString start = text.text;
        const int dots = start.indexOf(QChar(0x2026));
        if (dots >= 0)
            start.truncate(dots);
        const QString whole = toolTipAt(text);
        return !whole.isEmpty() && whole.contains(start.trimmed());
    }

    void checkRoom(const DrawnText& text)
    {
        if (text.text.contains(QChar(0x2026))) {
            if (!tellsItsWhole(text))
                complain(text.widget, text.text, QStringLiteral("ends in dots and has no tool tip"));
            else if (hasRoomBeside(text))
                complain(text.widget, text.text, QStringLiteral("ends in dots though there is room"));
        }
        const QRect shown = text.visible.boundingRect();
        const double tolerance = 1.5; // pixels, of glyphs whose ink reaches beyond their cell
        const QRectF own = QRectF(text.widget->mapTo(&m_window, QPoint()), text.widget->size())
                               .adjusted(-tolerance, -tolerance, tolerance, tolerance);
        // Of a text that is out of sight altogether, the widget tells the direction.
        const bool isCutAcross = shown.isEmpty() ? text.place.left() < own.left() || text.place.right() > own.right()
                                                 : text.place.width() - shown.width() > tolerance;
        const bool isCutDown = shown.isEmpty() ? text.place.top() < own.top() || text.place.bottom() > own.bottom()
                                               : text.place.height() - shown.height() > tolerance;
        if (!isCutAcross && !isCutDown && !shown.isEmpty())
            return;
        if (mayBeScrolled(text, isCutAcross, isCutDown))
            return;
        const bool fits = own.contains(text.place);
        complain(text.widget, text.text,
                 fits && !text.widget->isWindow() ? QStringLiteral("reaches out of what is around it")
                                                  : QStringLiteral("is clipped"));
    }

    /// A column that could be wider without one of them being scrolled away.
    bool hasRoomBeside(const DrawnText& text) const
    {
        const QWidget* parent = text.widget->parentWidget();
        const QHeaderView* header = qobject_cast<const QHeaderView*>(parent);
        if (!header) {
            const auto* view = qobject_cast<const QAbstractItemView*>(parent);
            header = view ? view->findChild<QHeaderView*>() : nullptr;
        }
        return header && header->length() < header->viewport()->width();
    }

    /// Whether the user can bring the rest of the text into sight, or read it in a tool tip.
    bool mayBeScrolled(const DrawnText& text, bool across, bool down)
    {
        if ((qobject_cast<const QLineEdit*>(text.widget) || qobject_cast<const QComboBox*>(text.widget)) && !down &&
            tellsItsWhole(text))
            return true;
        if (qobject_cast<const QTabBar*>(text.widget)) {
            // The buttons by which the tabs scroll.
            for (const QToolButton* button : text.widget->findChildren<QToolButton*>()) {
                if (button->isVisibleTo(&m_window))
                    return !down;
            }
        }
        for (const QWidget* widget = text.widget; widget && widget != &m_window; widget = widget->parentWidget()) {
            const auto* area = qobject_cast<const QAbstractScrollArea*>(widget->parentWidget());
            if (!area || area->viewport() != widget)
                continue;
            // A cell of a table shows its text in dots, where it cuts it off by itself.
            const bool scrollsAcross =
                area->horizontalScrollBar()->maximum() > 0 || qobject_cast<const QHeaderView*>(area);
            const bool scrollsDown = area->verticalScrollBar()->maximum() > 0;
            if ((!across || scrollsAcross) && (!down || scrollsDown))
                return true;
        }
        return false;
    }

    bool isDisabled(const DrawnText& text) const
    {
        if (!text.widget->isEnabled())
            return true;
        const QPoint place = text.widget->mapFrom(&m_window, text.place.center().toPoint());
        if (const QMenu* menu = qobject_cast<const QMenu*>(text.widget))
            return menu->actionAt(place) && !menu->actionAt(place)->isEnabled();
        if (const QMenuBar* bar = qobject_cast<const QMenuBar*>(text.widget))
            return bar->actionAt(place) && !bar->actionAt(place)->isEnabled();
        if (const QTabBar* bar = qobject_cast<const QTabBar*>(text.widget))
            return !bar->isTabEnabled(bar->tabAt(place));
        const QAbstractItemView* view = qobject_cast<const QAbstractItemView*>(text.widget->parentWidget());
        return view && view->viewport() == text.widget && view->indexAt(place).isValid() &&
               !view->indexAt(place).flags().testFlag(Qt::ItemIsEnabled);
    }

    void checkContrast(const DrawnText& text, const QImage& ground)
    {
        if (isDisabled(text))
            return;
        QHash<QRgb, int> colours;
        int pixels = 0;
        for (const QRect& place : text.visible& ground.rect()) {
            pixels += place.width() * place.height();
            for (int y = place.top(); y <= place.bottom(); ++y) {
                const QRgb* line = reinterpret_cast<const QRgb*>(ground.constScanLine(y));
                for (int x = place.left(); x <= place.right(); ++x)
                    ++colours[line[x]];
            }
        }
        // Three quarters of the ground count, the commonest colours of it: neither the underline of a mnemonic nor the
        // edge of a selection through the ink of a glyph makes a text unreadable.
        QVector<QRgb> byCount = colours.keys().toVector();
        std::sort(byCount.begin(), byCount.end(), [&](QRgb one, QRgb other) { return colours[one] > colours[other]; });
        const bool isSplinter = 4 * pixels < text.place.width() * text.place.height();
        double least = 21;
        int counted = 0;
        for (int i = 0; i < byCount.size() && 4 * counted < 3 * pixels && !isSplinter; ++i) {
            counted += colours[byCount.at(i)];
            const QColor behind = QColor::fromRgb(byCount.at(i));
            least = std::min(least, contrast(over(text.colour, behind), behind));
        }
        if (least < leastContrast)
            complain(text.widget, text.text, QStringLiteral("has a contrast of %1").arg(least, 0, 'f', 2));
    }

    static QColor over(const QColor& colour, const QColor& behind)
    {
        const double alpha = colour.alphaF();
        const auto mix = [alpha](double front, double back) { return front * alpha + back * (1 - alpha); };
        return QColor::fromRgbF(mix(colour.redF(), behind.redF()), mix(colour.greenF(), behind.greenF()),
                                mix(colour.blueF(), behind.blueF()));
    }

    QWidget& m_window;
    QStringList m_complaints;
};

} // namespace

QStringList complaintsAbout(QWidget& window)
{
    return Inspection(window).run();
}
