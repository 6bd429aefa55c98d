#pragma once

class CustomXmlParser;
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
