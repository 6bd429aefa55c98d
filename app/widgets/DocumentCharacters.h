#pragma once

#include <QObject>

/// The text without the characters that a document cannot hold: all but those of the production `Char` (XML 1.0,
/// section 2.2) are dropped, lone surrogates among them. A tab or a line break becomes a blank, as line edits show it;
/// line breaks at the end, which come along with a copied line, are dropped.
QString documentCharacters(const QString& text);

/// Keeps what users type or paste into line edits to the characters that a document can hold: one pasted control
/// character would make a document that no client can read. Passwords are no exception, because a long one is stored in
/// clear. Works as an event filter of the application object.
class DocumentCharacterFilter : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override;
};
