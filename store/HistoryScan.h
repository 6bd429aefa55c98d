#pragma once

#include "xml/CustomInfo.h"

#include <QVector>

namespace store {

/// Fills `rows` anew from the verified customisations below the history's directory, each put in front: the reverse of
/// the order in which the file system names them. A name that begins with a dot, a path of 260 bytes or more, and what
/// is no directory or holds no verified document are passed over. Of each document only the common section is read.
/// Every entry is logged.
///
/// @param limit  the scan stops at the first directory beyond this many rows, whatever that holds
/// @return       false, with a log line, when the history cannot be opened
bool scanHistory(QVector<CUSINFOPOLICY>& rows, int limit);

} // namespace store
