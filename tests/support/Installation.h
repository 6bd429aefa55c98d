#pragma once

#include <QByteArray>
#include <QByteArrayList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>
#include <initializer_list>

/// The directory of the test executable, which is the root of the store for the tested code.
namespace installation {

/// With a trailing slash.
QString root();
QString path(const QString& relative);

/// Deletes the log, the settings, the store and the templates; keeps the executable and Resources/.
void clear();

/// Copies the language files of the source tree into Resources/.
void installLanguageFiles();

/// Copies the archiver to `7za`.
void installArchiver();

/// Makes a small client template `template/<name>.tar.gz` by the real tar, with one top-level directory.
void makeSmallTemplate(const QString& name, const QString& topLevel);

void writeFile(const QString& absolutePath, const QByteArray& content);
/// Empty when there is no such file.
QByteArray readFile(const QString& absolutePath);

/// All of today's log; across midnight, that of both days.
QByteArray log();
void clearLog();
/// The messages of the log lines that carry the tag, such as "[ERR]", in order.
QStringList logMessages(const QString& tag);

/// Runs a program and returns its standard output; the test fails when it cannot be run or ends with an error.
QByteArray run(const QString& program, const QStringList& arguments, const QString& workingDirectory = QString());

/// Makes a client template `template/<name>.tar.gz` with links, differing modes, empty and hidden names.
void makeMixedTemplate(const QString& name, const QString& topLevel);

/// Makes the client templates of both systems, of several hundred files, by the script of the source tree.
void makeSampleTemplates();

/// Writes `custom/` anew: a document that holds the text `edition`, a verification file, the three icons and a name
/// without a dot.
void makeCustomisation(const QByteArray& edition);

/// One line for each entry below the directory, sorted: path, kind and mode, and the SHA-1 of a file's bytes or the
/// target of a link. Links are not followed.
QStringList describeTree(const QString& directory);

/// The names in a directory, hidden ones too, sorted.
QStringList namesIn(const QString& directory);

/// Unpacks with the real tools into the directory, which is emptied first.
void unpackTar(const QString& archive, const QString& directory);
void unpackZip(const QString& archive, const QString& directory);

/// The package, a client archive, must hold what the template holds, with all of `custom/` put into its directory
/// `client`, and nothing else: bytes, links and modes.
void comparePackage(const QString& package, const QString& archiveOfTemplate, const QString& client);

/// The members of an archive in their order there.
QStringList tarMembers(const QString& archive);
QStringList zipMembers(const QString& archive);

/// The text with the root of the store written as "{root}".
QString withoutRoot(const QByteArray& text);
QStringList withoutRoot(const QByteArrayList& lines);

/// The lines of the log in order, each from its tag on ("[DBG]text"), the root of the store written as "{root}".
QStringList logLines();

/// Text literals in UTF-8 as a list.
QStringList texts(std::initializer_list<const char*> literals);

struct Outcome
{
    int exitCode = -1; // -1: did not run or ended by a signal
    QByteArray output;
    QByteArray errors;
};

/// Copies the test executable to `executable`, whose directory becomes the root of the store there, and runs the copy.
Outcome runCopy(const QString& executable, const QStringList& arguments);

/// In a copy: runs `call` with the recorder, which runs nothing, and prints its result and the commands. The directory
/// `template/Temp` is there from the start.
int reportCall(const std::function<bool()>& call);

/// Runs a copy of the test executable, from a path of `pathLength` bytes, with the arguments "call" and `function`.
/// Returns what reportCall printed there, a line each: "true" or "false", then the commands.
QStringList callFromPathOfLength(int pathLength, const QString& function);

/// While it lives, what this process and its children print on standard output goes nowhere.
class QuietOutput
{
public:
    QuietOutput();
    ~QuietOutput();
    QuietOutput(const QuietOutput&) = delete;
    QuietOutput& operator=(const QuietOutput&) = delete;

private:
    int m_saved;
};

/// While it lives, a command of that name ends with an error and does nothing.
class FailingTool
{
public:
    explicit FailingTool(const QString& name);
    ~FailingTool();
    FailingTool(const FailingTool&) = delete;
    FailingTool& operator=(const FailingTool&) = delete;

private:
    QTemporaryDir m_directory;
    QByteArray m_path;
};

} // namespace installation
