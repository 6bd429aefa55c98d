#pragma once

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QStringList>
#include <QVector>

/// What the program shows on a terminal.
namespace output {

/// The text with nothing in it that a terminal would obey: control characters (C0, DEL, C1), line and paragraph
/// separators, direction marks (Unicode bidirectional formatting) and lone surrogates stand as "\u001b".
QString printable(const QString& text);

/// Columns that the text takes on a terminal: 2 for a wide East Asian character (UAX #11), 0 for a combining mark.
int columnsOf(const QString& text);

/// The width of the terminal on standard output, else that of COLUMNS, else 100.
int terminalWidth();

/// Rows under headings, in columns that fit `width`: a cell that is too long ends in an ellipsis, the last column goes
/// on in further lines instead.
QString table(const QStringList& headings, const QVector<QStringList>& rows, int width = terminalWidth());

/// Writes to standard output as UTF-8.
void write(const QString& text);

/// Writes an object or an array, and nothing else, as UTF-8.
void write(const QJsonValue& json);

/// Writes a whole file, or to standard output when the path is empty. Refuses to overwrite; a file that could not be
/// written whole is removed. Complains and answers false then.
bool writeTo(const QString& path, const QByteArray& bytes);

/// One line on standard error, begun with "orvex-inspect: ". Control characters are made visible.
void complain(const QString& message);

} // namespace output
