#include "inspect/ZipDirectory.h"

#include "inspect/PackageLimits.h"

#include <QtEndian>

#include <algorithm>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr qint64 s_endSize = 22;
constexpr qint64 s_wideLocatorSize = 20;
constexpr int s_memberSize = 46;
constexpr qint64 s_localSize = 30;
constexpr quint16 s_stored = 0;
constexpr quint16 s_deflated = 8;
constexpr quint16 s_encrypted = 1 | (1 << 6) | (1 << 13);

quint16 word(const QByteArray& bytes, int place)
{
    return qFromLittleEndian<quint16>(bytes.constData() + place);
}

quint32 wide(const QByteArray& bytes, int place)
{
    return qFromLittleEndian<quint32>(bytes.constData() + place);
}

QByteArray readAt(int file, qint64 place, qint64 length)
{
    QByteArray bytes(int(length), '\0');
    qint64 done = 0;
    while (done < length) {
        const ssize_t got = pread(file, bytes.data() + done, size_t(length - done), place + done);
        if (got <= 0)
            return QByteArray();
        done += got;
    }
    return bytes;
}

} // namespace

bool readZipDirectory(int file, QVector<ZipMember>& members)
{
    members.clear();
    struct stat status = {};
    if (fstat(file, &status) != 0 || status.st_size < s_endSize || status.st_size > qint64(0xFFFFFFFE))
        return false;
    const qint64 endPlace = status.st_size - s_endSize;
    const QByteArray end = readAt(file, endPlace, s_endSize);
    if (!end.startsWith("PK\5\6") || word(end, 4) != 0 || word(end, 6) != 0 || word(end, 20) != 0)
        return false;
    const int count = word(end, 10);
    const qint64 length = wide(end, 12);
    const qint64 place = wide(end, 16);
    const qint64 longest = qint64(limits::zipMembers) * (s_memberSize + 3 * limits::nameLength);
    if (word(end, 8) != count || count > limits::zipMembers || length > longest || place + length != endPlace)
        return false;
    // A locator there would lead the archive library to another directory.
    if (endPlace >= s_wideLocatorSize &&
        readAt(file, endPlace - s_wideLocatorSize, s_wideLocatorSize).startsWith("PK\6\7"))
        return false;

    const QByteArray directory = readAt(file, place, length);
    int at = 0;
    for (int i = 0; i < count; ++i) {
        if (directory.size() - at < s_memberSize || directory.mid(at, 4) != "PK\1\2")
            return false;
        const quint16 method = word(directory, at + 10);
        const int nameLength = word(directory, at + 28);
        const int whole = s_memberSize + nameLength + word(directory, at + 30) + word(directory, at + 32);
        if ((method != s_stored && method != s_deflated) || (word(directory, at + 8) & s_encrypted) != 0 ||
            word(directory, at + 34) != 0 || nameLength > limits::nameLength || directory.size() - at < whole)
            return false;
        ZipMember member;
        member.name = directory.mid(at + s_memberSize, nameLength);
        member.packedSize = wide(directory, at + 20);
        member.size = wide(directory, at + 24);
        member.offset = wide(directory, at + 42);
        members.append(member);
        at += whole;
    }
    if (at != directory.size())
        return false;
    std::sort(members.begin(), members.end(),
              [](const ZipMember& one, const ZipMember& other) { return one.offset < other.offset; });
    qint64 free = 0;
    for (const ZipMember& member : qAsConst(members)) {
        // Data shared by many members would be unpacked as often.
        if (member.offset < free)
            return false;
        free = qint64(member.offset) + s_localSize + member.name.size() + member.packedSize;
    }
    return free <= place;
}
