#pragma once

#include <QPair>
#include <QString>
#include <QVector>

class QByteArray;

/// Key and text of each entry, in the order of the file.
using LanguageTexts = QVector<QPair<QString, QString>>;

/// Reads a language file of just the form of those that come with the program, without a tree of it: in UTF-8 and
/// saying so, one element for each entry, with a key of ASCII letters, digits, points and underscores and a text on one
/// line, and comments. Touches neither a file nor the log; for any thread.
///
/// @return  false, with `texts` as they were, for a file of another form, which the parser has to read. Of one that is
///          taken it makes the same.
bool readPlainTexts(const QByteArray& file, LanguageTexts& texts);
