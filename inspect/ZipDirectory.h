#pragma once

#include <QByteArray>
#include <QVector>

/// A member as the central directory of a ZIP archive tells it (APPNOTE 4.3.12).
struct ZipMember
{
    QByteArray name;
    quint32 offset = 0; // of the local header
    quint32 size = 0;
    quint32 packedSize = 0;
};

/// Reads the central directory at the very end of the file. Taken are archives of one volume with stored and deflated
/// members, without encryption, without a comment, of less than 4 GiB.
///
/// @param file     descriptor, whose position is not used
/// @param members  in the order of their local headers
/// @return         false for everything else, and when a member or name is beyond the limits or lies behind another
bool readZipDirectory(int file, QVector<ZipMember>& members);
