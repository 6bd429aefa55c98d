#include "app/DocumentCharacters.h"

#include <QEvent>
#include <QLineEdit>

QString documentCharacters(const QString& text)
{
    QString kept;
    kept.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            kept += text.midRef(i++, 2);
        else if (unit == QLatin1Char('\t') || unit == QLatin1Char('\n') || unit == QLatin1Char('\r'))
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
            // A hidden text is stored enciphered, and nobody would see that it is not what was pasted.
            const QString kept = edit->echoMode() == QLineEdit::Normal ? documentCharacters(text) : text;
            if (kept == text)
                return;
            const int position = documentCharacters(text.left(edit->cursorPosition())).size();
            edit->setText(kept);
            edit->setCursorPosition(position);
        });
    }
    return QObject::eventFilter(watched, event);
}
