#pragma once

class CustomXmlParser;
class QByteArray;
class QString;
struct CustomInfo;

/// Begins a document anew and appends all sections of the record in their order in the file; that of KEF only when the
/// component is chosen.
void formatCustomInfo(CustomXmlParser& parser, CustomInfo& info);

/// Reads all sections of the document into the record, each by a load of its own, whatever becomes of the others.
/// `info` must have been reset: the lists are appended to.
///
/// @param xmlPath  path of the document
/// @return         true, also for a missing file, which leaves the record as it is
bool utl_LoadCustomInfo(const char* xmlPath, CustomInfo& info);

/// The same from a document in memory, which is parsed once.
///
/// @param directory  that the icons are said to lie in, with a trailing "/"; or empty
/// @return           false, with the record as it is, when the document cannot be parsed
bool loadCustomInfo(const QByteArray& document, const QString& directory, CustomInfo& info);
