#pragma once

#include <QByteArray>

struct CustomInfo;

namespace fuzz {

/// What the parser makes of a document, without the reader of plain ones.
///
/// @param directory  where the icons are said to lie, with trailing "/"
/// @return           false, with the record as it is, when it refuses the document
bool byParser(const QByteArray& document, const QString& directory, CustomInfo& info);

/// The first field in which two records differ, with both values; empty when there is none. Fields that no document
/// carries do not count.
QByteArray difference(const CustomInfo& one, const CustomInfo& other);

} // namespace fuzz
