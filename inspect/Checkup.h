#pragma once

#include <QString>
#include <QVector>

/// One thing that a Finish needs.
struct Check
{
    enum Level
    {
        Note,
        Warning,
        Error
    };
    const char* name = "";
    bool isOk = true;
    Level level = Error; // how much it matters when it is not so
    QString detail;
};

/// "note", "warning" or "error".
const char* levelName(Check::Level level);

/// Looks whether a customisation can be finished in an installation, by the user of this process. Reads only; of
/// external programs only the archiver and tar run, to tell of themselves.
///
/// @param installation  with a trailing "/"
/// @return              one row for each check, always the same checks in the same order
QVector<Check> checkUp(const QString& installation);
