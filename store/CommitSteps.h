#pragma once

#include <QByteArray>

struct CommonInfo;
struct CustomInfo;
struct GUIOptionsInfo;

/// The steps of a commit on disk, in the order of the declarations. All paths are in the local 8-bit encoding.
namespace store {

/// The two directories of a commit, each with a trailing slash.
struct CommitDirectories
{
    QByteArray working; // custom/, input of the package generators
    QByteArray history; // UpdateCustom/
};

/// Empties the working directory of the earlier customisation, all but the names without a dot, and makes both
/// directories when they are missing. The history is not touched.
///
/// @param root  directory of the executable, without a trailing slash
CommitDirectories prepareDirectories(const QByteArray& root);

/// Sets time stamp, time string (local time) and brand.
///
/// @param now    seconds since the epoch
/// @param brand  brand byte of the program
void stamp(CommonInfo& common, long long now, unsigned char brand);

/// Writes the document of the record, as it stands, beside the icons that it names. What could not be written whole is
/// removed, so that it has no verification; nothing else here reports a failure.
///
/// @param working  with a trailing slash
/// @return         path of the document; empty, which has no verification either, when it could not even be removed
QByteArray writeDocument(CustomInfo& record, const QByteArray& working);

/// Copies the chosen icons under their fixed names and makes them readable for all.
/// Contract: a source that has gone missing is not noticed; the document names the icon all the same.
/// The path of an icon runs nothing: one that the shell would read goes through a copy under another name, and a log
/// line tells when that fails. The mode is changed without a command where the shell would read, or split, the path of
/// the target. Contract: the copying itself names the target as it is, whatever the installation is called.
///
/// @param working  with a trailing slash
void copyIcons(const GUIOptionsInfo& gui, const QByteArray& working);

/// Writes the verification file. False when there is none, also when there is no document.
bool writeVerification(const QByteArray& documentPath);

/// Copies all names of the working directory, but the hidden ones, into the customisation's directory in the history,
/// and overwrites what a commit of the same second left there. By command; a log line tells when not all of them have
/// arrived there as they are.
void keepCopy(const CommitDirectories& directories, quint64 timeStamp);

} // namespace store
