#pragma once

#include <QtGlobal>

/// What a package may ask of its reader. One that asks for more is refused as unreadable.
namespace limits {

constexpr int members = 60000;                       // of all client archives of a package
constexpr int nameLength = 4096;                     // bytes of a member's name, and of a link's target
constexpr qint64 nameBytes = 8 << 20;                // of all names and targets of a package
constexpr qint64 headerBytes = 4 << 20;              // unpacked bytes between the data of two members
constexpr qint64 unpackedBytes = Q_INT64_C(4) << 30; // of all client archives of a package
constexpr qint64 unpackedRatio = 200;                // unpacked bytes for each byte of the package ...
constexpr qint64 ratioAllowance = 64 << 20;          // ... beyond these
constexpr int zipMembers = 64;
constexpr int clientArchives = 4;      // nested in a ZIP; nothing nested deeper is opened
constexpr int manifestBytes = 1400;    // what the generator's buffer holds
constexpr int keptIconBytes = 4 << 20; // of one icon; a larger one is digested only

} // namespace limits
