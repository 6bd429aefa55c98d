#include "inspect/PackageReader.h"

#include "common/CustomInfoVerify.h"
#include "common/StorePaths.h"
#include "inspect/GzipStream.h"
#include "inspect/PackageLimits.h"
#include "inspect/Sha256.h"
#include "inspect/StoreFile.h"
#include "inspect/ZipDirectory.h"

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr size_t s_blockSize = 1 << 18;

constexpr char s_archivePrefix[] = "Dot1X_";
constexpr char s_archiveEnding[] = ".tar.gz";
constexpr char s_cusUpdArchive[] = "Dot1X_OrvexCusUpd.tar.gz";

// Where a customisation stands in a client archive.
constexpr char s_linuxPlace[] = "OrvexClient/custom";
constexpr char s_macosPlace[] = "OrvexClient.pkg/Contents/custom";
constexpr char s_barePlace[] = "custom";
constexpr int s_placeCount = 2; // of a kind

const char* placeOf(PackageKind kind, int number)
{
    if (number == 1)
        return s_macosPlace;
    return kind == PackageKind::CustomisedUpdate ? s_barePlace : s_linuxPlace;
}

struct FreeArchive
{
    void operator()(archive* reader) const { archive_read_free(reader); }
};
using ArchivePointer = std::unique_ptr<archive, FreeArchive>;

/// The name as one path: without empty and "." parts. Empty when there is no such name, or when it is absolute or leads
/// upwards; `isSafe` tells the two apart.
QByteArray plainName(const QByteArray& name, bool& isSafe)
{
    isSafe = !name.isEmpty() && !name.startsWith('/');
    QByteArray plain;
    const QByteArrayList parts = name.split('/');
    for (const QByteArray& part : parts) {
        if (part == "..")
            isSafe = false;
        if (part.isEmpty() || part == ".")
            continue;
        if (!plain.isEmpty())
            plain += '/';
        plain += part;
    }
    return isSafe ? plain : QByteArray();
}

/// The files of a customisation at one place of one archive.
struct Found
{
    FileBytes document;
    FileBytes verification;
    std::array<PackageIcon, ICON_COUNT> icons;
    int documents = 0;
    bool isDoubled = false;  // a file stands there twice
    bool isDiverted = false; // something else than a directory stands on the way
};

QByteArray memberText(const char* native, const char* utf8)
{
    return native ? QByteArray(native) : QByteArray(utf8);
}

PackageMember::Type typeOf(archive_entry* entry)
{
    if (archive_entry_hardlink(entry) || archive_entry_hardlink_utf8(entry))
        return PackageMember::HardLink;
    switch (archive_entry_filetype(entry)) {
    case AE_IFREG:
        return PackageMember::File;
    case AE_IFDIR:
        return PackageMember::Directory;
    case AE_IFLNK:
        return PackageMember::SymbolicLink;
    default:
        return PackageMember::Other;
    }
}

/// One reading of one package.
class Reading
{
public:
    Reading(PackageContent& content, const MemberSink& sink, qint64 packed) : m_content(content), m_sink(sink)
    {
        m_budget.packed = packed;
    }

    void readSetup(int file);
    void readZip(int file);
    void finish();

private:
    bool fail(const char* damage)
    {
        if (m_content.damage.isEmpty())
            m_content.damage = damage;
        return false;
    }
    bool readClientArchive(const GzipStream::Source& source);
    bool readMembers(archive* reader, GzipStream& stream);
    bool readMember(archive* reader, archive_entry* entry, Found (&found)[s_placeCount]);
    /// Whether a member of this size is within the limits. A sparse one tells a size that its data need not have, and
    /// its holes cost as much as data.
    bool takesData(qint64 size);
    /// Hands the bytes of a file, holes as zeros, to `take`.
    bool readData(archive* reader, qint64 size, const std::function<void(const char*, int)>& take);
    bool readZipMember(archive* reader, archive_entry* entry, const ZipMember& member);
    /// The place where the bytes of a file of a customisation are kept; null for any other member.
    FileBytes* placeFor(const PackageMember& member, Found (&found)[s_placeCount], int& limit, PackageIcon*& icon);

    PackageContent& m_content;
    const MemberSink& m_sink;
    PackageBudget m_budget;
    Sha256 m_hash;
    qint64 m_nameBytes = 0;
    qint64 m_dataBytes = 0;
    int m_archives = 0;
    int m_misplaced = 0;
    Found m_found;
};

la_ssize_t readStream(archive* reader, void* client, const void** data)
{
    const char* bytes = nullptr;
    const qint64 length = static_cast<GzipStream*>(client)->next(bytes);
    *data = bytes;
    if (length < 0)
        archive_set_error(reader, EINVAL, "the compressed stream is damaged");
    return static_cast<la_ssize_t>(length);
}

bool Reading::takesData(qint64 size)
{
    if (size < 0 || size > limits::unpackedBytes - m_dataBytes)
        return false;
    m_dataBytes += size;
    return m_dataBytes <= limits::ratioAllowance + limits::unpackedRatio * m_budget.packed;
}

bool Reading::readData(archive* reader, qint64 size, const std::function<void(const char*, int)>& take)
{
    static const char zeros[4096] = {};
    qint64 done = 0;
    const auto fill = [&](qint64 end) {
        while (done < end) {
            const int length = int(qMin<qint64>(end - done, sizeof zeros));
            take(zeros, length);
            done += length;
        }
    };
    for (;;) {
        const void* data = nullptr;
        size_t length = 0;
        la_int64_t offset = 0;
        const int result = archive_read_data_block(reader, &data, &length, &offset);
        if (result == ARCHIVE_EOF)
            break;
        if (result != ARCHIVE_OK || offset < done || offset > size || qint64(length) > size - offset)
            return fail("the data of a member are damaged");
        fill(offset);
        take(static_cast<const char*>(data), int(length));
        done += qint64(length);
    }
    fill(size);
    return true;
}

FileBytes* Reading::placeFor(const PackageMember& member, Found (&found)[s_placeCount], int& limit, PackageIcon*& icon)
{
    for (int number = 0; number < s_placeCount; ++number) {
        const QByteArray place = placeOf(m_content.kind, number);
        Found& here = found[number];
        if ((place + '/').startsWith(member.name + '/') && member.type != PackageMember::Directory)
            here.isDiverted = true;
        if (!member.name.startsWith(place + '/'))
            continue;
        const QByteArray name = member.name.mid(place.size() + 1);
        if (name == store::document) {
            here.isDoubled = here.isDoubled || here.documents > 0;
            ++here.documents;
            limit = int(uiCustomInfoLen);
            return &here.document;
        }
        if (name == store::verification) {
            here.isDoubled = here.isDoubled || here.verification.state != FileBytes::Missing;
            limit = int(VRF_TOTAL_LEN);
            return &here.verification;
        }
        for (int i = 0; i < ICON_COUNT; ++i) {
            if (name == iconName(i)) {
                icon = &here.icons[size_t(i)];
                here.isDoubled = here.isDoubled || icon->state != FileBytes::Missing;
            }
        }
        return nullptr;
    }
    const QByteArray anywhere = QByteArray("/") + s_barePlace + "/" + store::document;
    if (("/" + member.name).endsWith(anywhere))
        ++m_misplaced;
    return nullptr;
}

bool Reading::readMember(archive* reader, archive_entry* entry, Found (&found)[s_placeCount])
{
    const QByteArray raw = memberText(archive_entry_pathname(entry), archive_entry_pathname_utf8(entry));
    PackageMember member;
    member.type = typeOf(entry);
    member.mode = static_cast<quint32>(archive_entry_perm(entry)) & 07777;
    if (member.type == PackageMember::SymbolicLink)
        member.target = memberText(archive_entry_symlink(entry), archive_entry_symlink_utf8(entry));
    bool isSafe = true;
    if (member.type == PackageMember::HardLink)
        member.target =
            plainName(memberText(archive_entry_hardlink(entry), archive_entry_hardlink_utf8(entry)), isSafe);
    m_nameBytes += raw.size() + member.target.size();
    if (++m_content.members > limits::members || raw.size() > limits::nameLength ||
        member.target.size() > limits::nameLength || m_nameBytes > limits::nameBytes)
        return fail("there are too many members, or their names are too long");
    bool isSafeName = false;
    member.name = plainName(raw, isSafeName);
    if (!isSafe || !isSafeName)
        return fail("the name of a member leads out of the archive");
    member.size = archive_entry_size(entry);
    if (!takesData(member.size))
        return fail("a member is too large");
    if (member.name.isEmpty())
        return member.type == PackageMember::Directory || fail("a member has no name");

    int limit = 0;
    PackageIcon* icon = nullptr;
    FileBytes* kept = placeFor(member, found, limit, icon);
    const bool isFile = member.type == PackageMember::File;
    if (kept)
        *kept = {isFile ? FileBytes::Read : FileBytes::NotRegular, QByteArray()};
    if (icon)
        *icon = {isFile ? FileBytes::Read : FileBytes::NotRegular, QByteArray(), QByteArray()};
    const bool isDigested = isFile && (m_sink || icon);
    m_hash.begin();
    const auto take = [&](const char* data, int length) {
        if (isDigested)
            m_hash.add(data, length);
        if (isFile && kept)
            kept->bytes.append(data, qMin(length, limit + 1 - kept->bytes.size()));
        if (isFile && icon && member.size <= limits::keptIconBytes)
            icon->bytes.append(data, length);
    };
    if (!readData(reader, member.size, take))
        return false;
    if (isDigested)
        member.digest = m_hash.result();
    if (icon)
        icon->digest = member.digest;
    if (m_sink)
        m_sink(m_content.kind, member);
    return true;
}

bool Reading::readMembers(archive* reader, GzipStream& stream)
{
    Found found[s_placeCount];
    for (;;) {
        archive_entry* entry = nullptr;
        stream.allow(limits::headerBytes);
        const int result = archive_read_next_header(reader, &entry);
        stream.allow(-1);
        if (result == ARCHIVE_EOF)
            break;
        // A warning is no more than a name that the locale cannot write.
        if (result != ARCHIVE_OK && result != ARCHIVE_WARN)
            return fail("the archive is damaged");
        if (!readMember(reader, entry, found))
            return false;
    }
    for (Found& here : found) {
        if (here.isDiverted)
            continue;
        m_content.customisations += here.documents + (here.documents == 1 && here.isDoubled ? 1 : 0);
        if (here.documents > 0)
            m_found = here;
    }
    return true;
}

bool Reading::readClientArchive(const GzipStream::Source& source)
{
    if (++m_archives > limits::clientArchives)
        return fail("there are too many archives in the package");
    GzipStream stream(source, m_budget);
    const ArchivePointer reader(archive_read_new());
    if (!reader || archive_read_support_format_tar(reader.get()) != ARCHIVE_OK)
        return fail("no memory");
    stream.allow(limits::headerBytes);
    const int opened = archive_read_open(reader.get(), &stream, nullptr, readStream, nullptr);
    if (opened != ARCHIVE_OK)
        return fail("the archive is damaged");
    if (!readMembers(reader.get(), stream))
        return false;
    return stream.endsAsTar() || fail("the archive is not whole");
}

void Reading::readSetup(int file)
{
    m_content.kind = PackageKind::Setup;
    const std::unique_ptr<char[]> buffer(new char[s_blockSize]);
    readClientArchive([&](const char*& data) -> qint64 {
        ssize_t got = 0;
        do {
            got = read(file, buffer.get(), s_blockSize);
        } while (got < 0 && errno == EINTR);
        data = buffer.get();
        return got;
    });
}

bool Reading::readZipMember(archive* reader, archive_entry* entry, const ZipMember& member)
{
    bool isSafe = false;
    const QByteArray name = plainName(member.name, isSafe);
    if (!isSafe ||
        plainName(memberText(archive_entry_pathname(entry), archive_entry_pathname_utf8(entry)), isSafe) != name)
        return fail("the directory of the ZIP does not agree with its members");
    if (!isSafe)
        return fail("the name of a member leads out of the archive");

    const bool isFile = archive_entry_filetype(entry) == AE_IFREG;
    if (isFile && name.startsWith(s_archivePrefix) && name.endsWith(s_archiveEnding) && !name.contains('/')) {
        m_content.archiveName = name;
        m_content.kind = name == s_cusUpdArchive ? PackageKind::CustomisedUpdate : PackageKind::Update;
        qint64 done = 0;
        const GzipStream::Source source = [&](const char*& data) -> qint64 {
            for (;;) {
                const void* block = nullptr;
                size_t length = 0;
                la_int64_t offset = 0;
                const int result = archive_read_data_block(reader, &block, &length, &offset);
                if (result == ARCHIVE_EOF)
                    return done == qint64(member.size) ? 0 : -1;
                if (result != ARCHIVE_OK || offset != done)
                    return -1;
                done += qint64(length);
                if (done > qint64(member.size))
                    return -1;
                data = static_cast<const char*>(block);
                if (length > 0)
                    return qint64(length);
            }
        };
        return readClientArchive(source);
    }

    const bool isManifest = isFile && name == store::comment;
    if (isManifest && m_content.hasManifest)
        return fail("there are two manifests");
    QByteArray text;
    if (!takesData(qint64(member.size)))
        return fail("a member is too large");
    if (!readData(reader, member.size, [&](const char* data, int length) {
            text.append(data, qMin(length, limits::manifestBytes - text.size()));
        }))
        return false;
    if (isManifest) {
        m_content.hasManifest = true;
        m_content.manifest = parseManifest(text);
    }
    return true;
}

void Reading::readZip(int file)
{
    m_content.kind = PackageKind::Update;
    QVector<ZipMember> members;
    if (!readZipDirectory(file, members)) {
        fail("the directory of the ZIP is damaged");
        return;
    }
    const ArchivePointer reader(archive_read_new());
    if (!reader || archive_read_support_format_zip_seekable(reader.get()) != ARCHIVE_OK ||
        archive_read_open_fd(reader.get(), file, s_blockSize) != ARCHIVE_OK) {
        fail("the archive is damaged");
        return;
    }
    for (const ZipMember& member : qAsConst(members)) {
        archive_entry* entry = nullptr;
        // Here a warning tells that the header of a member does not agree with the directory.
        if (archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK) {
            fail("the directory of the ZIP does not agree with its members");
            return;
        }
        if (!readZipMember(reader.get(), entry, member))
            return;
    }
    archive_entry* entry = nullptr;
    if (archive_read_next_header(reader.get(), &entry) != ARCHIVE_EOF)
        fail("the archive is not whole");
}

void Reading::finish()
{
    m_content.isAtItsPlace = m_content.customisations == 1 && m_misplaced == 0;
    m_content.customisations += m_misplaced;
    if (!m_content.isAtItsPlace || !m_content.damage.isEmpty())
        return;
    m_content.document = m_found.document;
    m_content.verification = m_found.verification;
    m_content.icons = m_found.icons;
}

} // namespace

const char* packageKindName(PackageKind kind)
{
    switch (kind) {
    case PackageKind::Setup:
        break;
    case PackageKind::Update:
        return "update";
    case PackageKind::CustomisedUpdate:
        return "customised-update";
    }
    return "setup";
}

PackageContent readPackage(const QByteArray& path, const MemberSink& sink)
{
    PackageContent content;
    const QByteArray name = path.mid(path.lastIndexOf('/') + 1);
    if (name.endsWith(".zip"))
        content.kind = name.startsWith(store::cusUpdate) ? PackageKind::CustomisedUpdate : PackageKind::Update;
    struct stat status = {};
    content.isThere = lstat(path.constData(), &status) == 0;
    const Descriptor file = openRegularFile(AT_FDCWD, path);
    char magic[4] = {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 ||
        pread(file.number(), magic, sizeof magic, 0) != ssize_t(sizeof magic)) {
        content.damage = "there is no file that can be read";
        return content;
    }
    const QByteArray start(magic, sizeof magic);
    const PackageKind named = content.kind;
    Reading reading(content, sink, status.st_size);
    if (start.startsWith("\x1f\x8b")) {
        reading.readSetup(file.number());
    } else if (start == "PK\3\4") {
        reading.readZip(file.number());
        if (content.archiveName.isEmpty() && named == PackageKind::CustomisedUpdate)
            content.kind = named;
    } else {
        content.damage = "it is neither a gzip nor a ZIP archive";
    }
    reading.finish();
    return content;
}
