#pragma once

#include <QString>
#include <QVector>

// The words of the program's own, which the language files have not: heads of tables, advice, findings and complaints.
// The sources have them in English.

/// From here on they are answered in Chinese; before, in English. Answers to --json are not translated, since programs
/// read them.
void translateToChinese();

/// The text in the language of the answer; a text that has no translation, as it stands. Placeholders are those of the
/// English text.
///
/// @param english  local 8-bit encoding
QString translated(const char* english);

/// A text and its translation, both in UTF-8.
struct Translation
{
    const char* english;
    const char* chinese;
};

const QVector<Translation>& translations();
