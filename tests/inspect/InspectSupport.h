#pragma once

#include <QByteArray>
#include <QString>

struct CustomInfo;

/// Makes stores and looks at them without the tested code.
namespace inspecting {

/// The 256 bytes of the verification file of a document; `seed` chooses its random bytes.
QByteArray verificationOf(const QByteArray& document, int seed = 0);

/// A document as a commit writes it, with a time stamp, its local time and a remark.
QByteArray documentWithStamp(long long stamp, const QString& remark = QString());

/// Writes `<root>UpdateCustom/<name>/` with the document and its verification file.
void store(const QString& root, const QString& name, const QByteArray& document, int seed = 0);

/// One line for each entry below the directory with all that lstat tells but the time of access of directories, and
/// the bytes of files.
QByteArray snapshot(const QString& directory);

} // namespace inspecting
