#pragma once

// The generators of the three packages. All file work goes through the shell, whose exit status is never looked at: a
// result of true says only that the routine reached its end. They share `template/Temp`, so never two at once. Paths
// lie below the directory of the executable.

namespace packing {

// Outside the installation; they take no argument.
constexpr char setupScript[] = "/opt/apps/com.manager.orvex.amd/files/makeDeb.sh";
constexpr char updateScript[] = "/opt/apps/com.manager.orvex.amd/files/makeUpgradeDeb.sh";
constexpr char cusUpdateScript[] = "/opt/apps/com.manager.orvex.amd/files/makeCusPack.sh";

} // namespace packing

/// Removes what stands at `template/Temp` while no generator runs, the left-over of a process that was killed in the
/// midst of one; without a command. A link goes, what it points at stays, and so does what this user cannot remove.
/// Where a command of an earlier process still works, all is left.
void removeScratchLeftOver();

/// Returns once no command of an earlier process works in `template/Temp` or writes a package any more. There is no
/// limit: what such a command does would end up in a package, or a package would be cut. A log line tells of it.
void awaitFreeScratch();

/// Unpacks a client template into `template/Temp`, puts `custom/` into it and packs the tree again. A template that is
/// no regular file counts as missing.
///
/// @param name  "OrvexClient_Linux64", "OrvexClient_MacOS" or "OrvexCusUpd"; the case of the latter two does not
///              matter for the layout
/// @param type  0 setup, 1 update, 2 customised update
/// @return      false when the process path or the version cannot be had, and when `template/Temp` is no directory
///              that can be entered, was there before as another user's, or holds an earlier customisation that
///              cannot be removed: then nothing is unpacked or packed and a log line says so
bool genFilePack(const char* name, int type);

/// Makes `OrvexSetup/OrvexClient_Linux64_<short version>.tar.gz`. False only when the process path cannot be had.
bool utl_GenLinuxSetup();
/// The same for macOS.
bool utl_GenMacosSetup();

/// Writes the manifest `comment.txt` (CR LF lines) of an update package.
///
/// @param timeString  "YYYY-MM-DD HH:MM:SS", local time; may be empty
/// @param timeStamp   decimal seconds since the epoch
/// @param setupName   name of the client archive without its prefix
/// @param type        1 update, 2 customised update
/// @param os          0 Linux32, 1 Linux64, 2 MacOS
/// @return            true when the file was written
bool GenCommentFile(const char* timeString, const char* timeStamp, const char* setupName, int type, int os);

/// Puts the manifest and the client archive into the ZIP of the package and deletes the client archive. An earlier ZIP
/// is updated in place, but one without a readable end-of-central-directory record, central directory or first member
/// is removed first.
///
/// @param withVersion  whether the name of the ZIP carries the short version and the suffix of the system
/// @return             false, always
bool ZipUpdFiles(int type, int os, bool withVersion);

/// Makes `OrvexUpdate/OrvexUpdate<short version>_64.zip`. False only when the process path cannot be had.
bool utl_GenLinuxUpdate(const char* timeString, const char* timeStamp);
/// The same for macOS.
bool utl_GenMacosUpdate(const char* timeString, const char* timeStamp);

/// Packs `custom` of the working directory. False only when the process path cannot be had.
bool genCusPack();

/// Makes `OrvexCusUpd/OrvexCusUpd<short version>_64.zip`. False only when the process path cannot be had.
bool utl_GenLinuxCusUpd(const char* timeString, const char* timeStamp);
/// Makes `OrvexCusUpd/OrvexCusUpd.zip` with the unpacked macOS client in it.
void utl_GenMacosCusUpd(const char* timeString, const char* timeStamp);
