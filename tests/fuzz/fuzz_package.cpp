#include "common/CustomInfoVerify.h"
#include "fuzz/FuzzTarget.h"
#include "inspect/PackageLimits.h"
#include "inspect/PackageReader.h"

#include <QtEndian>

#include <algorithm>
#include <zlib.h>

namespace {

/// Without compression, so that the bytes of the input are those of the archive.
QByteArray gzipped(const QByteArray& bytes)
{
    z_stream stream = {};
    QByteArray packed(bytes.size() + bytes.size() / 1000 + 128, '\0');
    deflateInit2(&stream, Z_NO_COMPRESSION, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY);
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.constData()));
    stream.avail_in = uInt(bytes.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = uInt(packed.size());
    const int result = deflate(&stream, Z_FINISH);
    packed.truncate(int(stream.total_out));
    deflateEnd(&stream);
    return result == Z_STREAM_END ? packed : QByteArray();
}

/// Puts the sums right that headers of a tar archive (POSIX.1-1988) carry, wherever one seems to stand.
void mendSums(QByteArray& tar)
{
    for (int at = 0; at + 512 <= tar.size(); at += 512) {
        if (tar.mid(at + 257, 5) != "ustar")
            continue;
        std::fill_n(tar.data() + at + 148, 8, ' ');
        unsigned int sum = 0;
        for (int i = 0; i < 512; ++i)
            sum += static_cast<unsigned char>(tar.at(at + i));
        tar.replace(at + 148, 7, QByteArray::number(sum, 8).rightJustified(6, '0').left(6) + '\0');
    }
}

QByteArray number(quint32 value, int bytes)
{
    QByteArray little(4, '\0');
    qToLittleEndian(value, little.data());
    return little.left(bytes);
}

/// A ZIP of these members, stored.
QByteArray zipOf(const QList<QPair<QByteArray, QByteArray>>& members)
{
    QByteArray zip;
    QByteArray directory;
    for (const auto& member : members) {
        const QByteArray& data = member.second;
        const quint32 sum = quint32(crc32(0, reinterpret_cast<const Bytef*>(data.constData()), uInt(data.size())));
        const QByteArray common = number(20, 2) + number(0, 8 - 4) + number(0, 4) + number(0, 2) + number(sum, 4) +
                                  number(quint32(data.size()), 4) + number(quint32(data.size()), 4) +
                                  number(quint32(member.first.size()), 2) + number(0, 2);
        directory += "PK\1\2" + number(20, 2) + common + number(0, 2) + number(0, 4) + number(0, 2) + number(0, 4) +
                     number(quint32(zip.size()), 4) + member.first;
        zip += "PK\3\4" + common + member.first + data;
    }
    const quint32 count = quint32(members.size());
    return zip + directory + "PK\5\6" + number(0, 4) + number(count, 2) + number(count, 2) +
           number(quint32(directory.size()), 4) + number(quint32(zip.size()), 4) + number(0, 2);
}

bool isPlain(const QByteArray& name)
{
    const QByteArrayList parts = name.split('/');
    return std::none_of(parts.begin(), parts.end(),
                        [](const QByteArray& part) { return part.isEmpty() || part == "." || part == ".."; });
}

bool isSame(const PackageContent& one, const PackageContent& other)
{
    return one.damage == other.damage && one.kind == other.kind && one.customisations == other.customisations &&
           one.isAtItsPlace == other.isAtItsPlace && one.members == other.members &&
           one.document.bytes == other.document.bytes && one.verification.bytes == other.verification.bytes &&
           one.archiveName == other.archiveName && one.manifest.time == other.manifest.time;
}

void read(const QByteArray& path, bool wantsSound)
{
    int told = 0;
    qint64 nameBytes = 0;
    const PackageContent content = readPackage(path, [&](PackageKind, const PackageMember& member) {
        ++told;
        nameBytes += member.name.size() + member.target.size();
        HOLDS_TOLD(isPlain(member.name), member.name);
        HOLDS(member.size >= 0 && member.size <= limits::unpackedBytes && (member.mode & ~07777U) == 0);
        HOLDS(member.name.size() <= limits::nameLength && member.target.size() <= limits::nameLength);
        HOLDS(member.type != PackageMember::File || member.digest.size() == 32);
        if (member.type == PackageMember::HardLink)
            HOLDS(member.target.isEmpty() || isPlain(member.target));
    });
    HOLDS(content.isThere && told <= content.members && nameBytes <= limits::nameBytes);
    HOLDS(!content.damage.isEmpty() || content.members <= limits::members);
    HOLDS(content.document.bytes.size() <= int(uiCustomInfoLen) + 1);
    HOLDS(content.verification.bytes.size() <= int(VRF_TOTAL_LEN) + 1);
    for (const PackageIcon& icon : content.icons)
        HOLDS(icon.bytes.size() <= limits::keptIconBytes && (icon.digest.isEmpty() || icon.digest.size() == 32));
    if (!content.isAtItsPlace || !content.damage.isEmpty())
        HOLDS(content.document.state == FileBytes::Missing && content.verification.state == FileBytes::Missing);
    else
        HOLDS(content.customisations == 1 && content.document.state != FileBytes::Missing);
    HOLDS_TOLD(!wantsSound || content.damage.isEmpty(), content.damage);
    HOLDS(isSame(readPackage(path), content)); // digests change nothing
}

} // namespace

// The first byte chooses the way: the bytes of a package as they are, under one of three names, or those of a tar
// archive, whose sums may be put right and which is packed as a package of one of three kinds.
FUZZ_TARGET("package")
{
    QByteArray input = bytes;
    const int way = fuzz::takeByte(input);
    static const char* const names[] = {"OrvexClient_Linux64.tar.gz", "OrvexUpdate7.2_64.zip", "OrvexCusUpd7.2_64.zip"};
    const int kind = way % 3;
    if (way / 3 % 2 == 0) {
        read(fuzz::written(names[kind], input), false);
        return;
    }
    if (way / 6 % 2 == 0)
        mendSums(input);
    QByteArray package = gzipped(input);
    if (kind > 0) {
        const QByteArray archive = kind == 1 ? "Dot1X_OrvexClient_Linux64.tar.gz" : "Dot1X_OrvexCusUpd.tar.gz";
        package =
            zipOf({{"comment.txt", "Setup=\"" + archive + "\"\r\nostype=Linux64\r\n@time: 1\r\n"}, {archive, package}});
    }
    read(fuzz::written(names[kind], package), input == QByteArray(1024, '\0'));
}
