#include "common/CustomInfoVerify.h"
#include "common/StorePaths.h"
#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/PackageLimits.h"
#include "inspect/Source.h"
#include "inspect/Translation.h"

#include <QCryptographicHash>
#include <QFileInfo>

#include <archive.h>
#include <archive_entry.h>

namespace {

constexpr char s_sums[] = "SHA256SUMS";
constexpr int s_memberMode = 0644;

struct Member
{
    QByteArray name;
    QByteArray bytes;
};

struct FreeArchive
{
    void operator()(archive* handle) const { archive_write_free(handle); }
};
struct FreeEntry
{
    void operator()(archive_entry* entry) const { archive_entry_free(entry); }
};

la_ssize_t append(archive*, void* target, const void* data, size_t length)
{
    static_cast<QByteArray*>(target)->append(static_cast<const char*>(data), static_cast<int>(length));
    return static_cast<la_ssize_t>(length);
}

/// A gzip stream (RFC 1952) of a tar archive (POSIX.1-1988) in which nothing depends on when, where and by whom it is
/// made: no time stamps, owner 0, no name in the gzip header. Empty after a failure.
QByteArray packed(const QVector<Member>& members)
{
    QByteArray bytes;
    const std::unique_ptr<archive, FreeArchive> writer(archive_write_new());
    archive_write_set_format_ustar(writer.get());
    archive_write_add_filter_gzip(writer.get());
    // No padding behind the end of the gzip stream.
    archive_write_set_bytes_in_last_block(writer.get(), 1);
    bool isFine = archive_write_set_filter_option(writer.get(), "gzip", "timestamp", nullptr) == ARCHIVE_OK &&
                  archive_write_open(writer.get(), &bytes, nullptr, append, nullptr) == ARCHIVE_OK;
    for (const Member& member : members) {
        const std::unique_ptr<archive_entry, FreeEntry> entry(archive_entry_new());
        archive_entry_set_pathname(entry.get(), member.name.constData());
        archive_entry_set_filetype(entry.get(), AE_IFREG);
        archive_entry_set_perm(entry.get(), s_memberMode);
        archive_entry_set_size(entry.get(), member.bytes.size());
        archive_entry_set_mtime(entry.get(), 0, 0);
        archive_entry_set_uid(entry.get(), 0);
        archive_entry_set_gid(entry.get(), 0);
        isFine = isFine && archive_write_header(writer.get(), entry.get()) == ARCHIVE_OK &&
                 archive_write_data(writer.get(), member.bytes.constData(), static_cast<size_t>(member.bytes.size())) ==
                     member.bytes.size();
    }
    isFine = archive_write_close(writer.get()) == ARCHIVE_OK && isFine;
    return isFine ? bytes : QByteArray();
}

/// The members in their order, the sums last. False after a complaint: a file of the customisation cannot be had whole.
bool collect(const Source& source, QVector<Member>& members)
{
    const auto refuse = [&](const char* name, const QString& why) {
        Invocation::wrong(QStringLiteral("%1: %2: %3").arg(source.text, QLatin1String(name), why));
        return false;
    };
    members.append({store::document, source.document});
    if (source.verification.size() > static_cast<int>(VRF_TOTAL_LEN))
        return refuse(store::verification, translated("is longer than its 256 bytes; name another customisation"));
    if (source.reason != Reason::NoVerification)
        members.append({store::verification, source.verification});
    for (int number = 0; number < ICON_COUNT; ++number) {
        const PackageIcon& icon = source.icons[static_cast<size_t>(number)];
        if (icon.state == FileBytes::NotRegular)
            return refuse(iconName(number), translated("is no regular file; put the icon itself in its place"));
        if (icon.state != FileBytes::Read)
            continue;
        if (QCryptographicHash::hash(icon.bytes, QCryptographicHash::Sha256) != icon.digest)
            return refuse(iconName(number),
                          translated("has more than %1 bytes; copy the directory instead").arg(limits::keptIconBytes));
        members.append({iconName(number), icon.bytes});
    }
    QByteArray sums;
    for (const Member& member : qAsConst(members))
        sums += QCryptographicHash::hash(member.bytes, QCryptographicHash::Sha256).toHex() + "  " + member.name + '\n';
    members.append({s_sums, sums});
    return true;
}

/// Whether the file would lie in a directory that the manager keeps.
bool isInStore(const QString& directory, const QString& file)
{
    const QString target = QFileInfo(QFileInfo(file).absolutePath()).canonicalFilePath() + QLatin1Char('/');
    for (const char* name : {store::custom, store::updateCustom, store::templates, store::setup, store::update,
                             store::cusUpdate, "Log", "Resources"}) {
        const QString kept = QFileInfo(directory + QLatin1String(name)).canonicalFilePath();
        if (!kept.isEmpty() && target.startsWith(kept + QLatin1Char('/')))
            return true;
    }
    return false;
}

} // namespace

ExitStatus runExport(const Invocation& call)
{
    const QString file = call.value("output");
    if (file.isEmpty())
        return Invocation::wrong(translated("export needs -o FILE.tar.gz, the archive to write"));
    if (isInStore(call.stores().first(), file))
        return Invocation::wrong(translated("%1: lies in the store; name a file outside of it").arg(file));
    const std::unique_ptr<Source> source = openSource(call, call.arguments().first());
    QVector<Member> members;
    if (!source || !collect(*source, members))
        return Wrong;
    const QByteArray bytes = packed(members);
    if (bytes.isEmpty())
        return Invocation::wrong(translated("%1: the archive cannot be made; free some memory").arg(file));
    return output::writeTo(file, bytes) ? Fine : Wrong;
}
