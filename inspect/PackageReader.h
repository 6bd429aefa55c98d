#pragma once

#include "inspect/Manifest.h"
#include "inspect/StoreReader.h"
#include "inspect/Verification.h"

#include <QByteArray>

#include <array>
#include <functional>

enum class PackageKind
{
    Setup,           // a client archive (.tar.gz) with the customisation in it
    Update,          // a ZIP of the manifest and such an archive
    CustomisedUpdate // a ZIP of the manifest and an archive of the customisation
};

/// "setup", "update" or "customised-update".
const char* packageKindName(PackageKind kind);

/// A member of a client archive.
struct PackageMember
{
    enum Type
    {
        File,
        Directory,
        SymbolicLink,
        HardLink,
        Other
    };
    QByteArray name; // less "./" before it and "/" behind it, local 8-bit encoding
    Type type = File;
    quint32 mode = 0;  // permissions, 07777
    qint64 size = 0;   // bytes of a file
    QByteArray digest; // SHA-256 of a file's bytes
    QByteArray target; // of a link
};

/// A picture of a customisation in a package.
struct PackageIcon
{
    FileBytes::State state = FileBytes::Missing;
    QByteArray digest; // SHA-256 of its bytes
    QByteArray bytes;  // empty for one of more than limits::keptIconBytes
};

/// What a package holds, as far as it could be read.
struct PackageContent
{
    bool isThere = false; // the path names something
    PackageKind kind = PackageKind::Setup;
    /// Empty when the archive is sound to its end and within the limits; otherwise what is wrong, in English.
    QByteArray damage;

    /// The customisations in it. Only one that stands alone, at the place of its kind, fills the fields below.
    int customisations = 0;
    bool isAtItsPlace = false;
    FileBytes document;
    FileBytes verification;
    std::array<PackageIcon, ICON_COUNT> icons;

    bool hasManifest = false;
    Manifest manifest;
    QByteArray archiveName; // of the client archive in the ZIP
    int members = 0;        // of the client archives
};

/// Called with each member of the client archives in their order.
using MemberSink = std::function<void(PackageKind kind, const PackageMember& member)>;

/// Reads a package as a stream, once from end to end. Nothing is unpacked to disk, no link in it is followed.
/// Everything beyond the limits is damage, as are member names that are absolute or hold "..".
///
/// @param path  local 8-bit encoding
/// @param sink  when given, the files are digested
PackageContent readPackage(const QByteArray& path, const MemberSink& sink = MemberSink());
