#pragma once

#include <QByteArray>

/// Kinds of package for genFilePack.
enum PackKind
{
    PackSetup = 0,  // into OrvexSetup/, version in the name, then the script that makes the Debian package
    PackUpdate = 1, // into OrvexUpdate/ with the prefix "Dot1X_", then the script for the upgrade package
    PackCusUpd = 2  // into OrvexCusUpd/ with the prefix "Dot1X_", no script
};

/// The paths and commands that the generators share; all are bytes in the local 8-bit encoding.
namespace packing {

constexpr char updatePrefix[] = "Dot1X_";
constexpr char linuxClient[] = "OrvexClient_Linux64";
constexpr char macosClient[] = "OrvexClient_MacOS";
constexpr char cusUpdArchive[] = "OrvexCusUpd";
constexpr char tarEnding[] = ".tar.gz";

/// Deletes `template/Temp` below the directory of the executable.
void removeScratch(const char* processPath);

/// Removes the archive that a killed run has left for the ZIP of an update package; without a command.
///
/// @param directory  store::update or store::cusUpdate
/// @param setupName  name of the archive without its prefix
void removeIntermediate(const QByteArray& processPath, const char* directory, const QByteArray& setupName);

} // namespace packing
