#pragma once

class QByteArray;
class QString;
struct CommonInfo;
struct CustomInfo;

// A document of just the form that this system writes is read without a tree of it: the line that declares UTF-8, the
// elements of the catalogue in its order, each on a line of its own or around others, indented by 4, numbers in plain
// digits, text without markup, entities and control characters. Of any other document the functions say false, which
// tells nothing of it: the parser has to read it. Of one they take, the parser makes the same.
//
// They touch neither a file nor the log, and are for any thread.

/// Reads the record. What the document leaves out by a closed gate stays as it is, and the rows of lists are appended.
///
/// @param directory  that the icons are said to lie in, with a trailing "/"; or empty
/// @return           false, with the record as it is, for a document of another form
bool readPlainDocument(const QByteArray& document, const QString& directory, CustomInfo& info);

/// Reads the section `common` of a document that has that form as a whole.
///
/// @return  false, with `common` as it is, for a document of another form
bool readPlainCommon(const QByteArray& document, CommonInfo& common);
