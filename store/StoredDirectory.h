#pragma once

#include <QByteArray>

/// The stored customisations on disk, a directory each. All paths are in the local 8-bit encoding, without a trailing
/// slash.
namespace store {

/// The directory of the history, below that of the executable.
QByteArray historyDirectory();

/// The name of a stored customisation's directory. Contract: the time stamp goes through a signed 32-bit number.
QByteArray directoryName(quint64 timeStamp);

/// The directory of a stored customisation, which need not be there.
QByteArray storedDirectory(quint64 timeStamp);

/// The document that belongs into the directory.
QByteArray documentIn(const QByteArray& directory);

enum class DocumentState
{
    Missing,
    Unverified, // not as its verification file has it, with a log line
    Verified
};

/// Looks at the document and its verification file anew: both may have changed since the scan.
DocumentState documentState(const QByteArray& directory);

/// Deletes the directory of a stored customisation, by command and without looking at the result; with no history to
/// delete from, there is only a log line.
void removeStored(quint64 timeStamp);

} // namespace store
