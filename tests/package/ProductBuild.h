#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// What the build makes for the packages, and the packages.
namespace product {

struct Outcome
{
    int status = -1; // -1: did not run or ended by a signal
    QString output;
    QString errors;
};

/// Runs a program to its end, in the language of the machine's own messages.
Outcome run(const QString& program, const QStringList& arguments);

/// A file that the build made for the packages, by its name there.
QString madeFile(const QString& name);

/// The text of a file; the test fails when it cannot be read.
QString textOf(const QString& path);

/// The first capture of the pattern in the text, or nothing.
QString found(const QString& text, const QString& pattern);

/// The version that the project states.
QString version();

/// The packages, made by CPack in the directory of the test executable: the paths of the .deb and of the .tar.gz, or
/// nothing when that failed.
struct Packages
{
    QString debian;
    QString archive;
};
Packages makePackages();

/// The Debian package once more, under another version: unpacked, changed in the lines of its control file that name
/// the version, and packed again. The path, or nothing.
QString repacked(const QString& debian, const QString& version);

} // namespace product
