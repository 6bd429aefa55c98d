#include "app/widgets/DocumentCharacters.h"

#include <QEvent>
#include <QLineEdit>

namespace {

bool isLineBreak(QChar unit)
{
    return unit == QLatin1Char('\n') || unit == QLatin1Char('\r');
}

} // namespace

QString documentCharacters(const QString& text)
{
    int size = text.size();
    while (size > 0 && isLineBreak(text.at(size - 1)))
        --size;
    QString kept;
    kept.reserve(size);
    for (int i = 0; i < size; ++i) {
        const QChar unit = text.at(i);
        if (unit.isHighSurrogate() && i + 1 < size && text.at(i + 1).isLowSurrogate())
            kept += text.midRef(i++, 2);
        else if (unit == QLatin1Char('\t') || isLineBreak(unit))
            kept += QLatin1Char(' ');
        else if (unit.unicode() >= 0x20 && !unit.isSurrogate() && unit.unicode() < 0xFFFE)
            kept += unit;
    }
    return kept;
}

bool DocumentCharacterFilter::eventFilter(QObject* watched, QEvent* event)
{
    // A widget is polished once, before it is first shown, so nobody has edited it yet.
    QLineEdit* edit = event->type() == QEvent::Polish ? qobject_cast<QLineEdit*>(watched) : nullptr;
    if (edit) {
        connect(edit, &QLineEdit::textEdited, this, [edit](const QString& text) {
            const QString kept = documentCharacters(text);
            if (kept == text)
                return;
            const int behind = documentCharacters(text.mid(edit->cursorPosition())).size();
            edit->setText(kept);
            edit->setCursorPosition(kept.size() - behind);
        });
    }
    return QObject::eventFilter(watched, event);
}
