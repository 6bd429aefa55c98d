#include "inspect/Command.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

#include <QCoreApplication>

namespace {

void addFlag(QCommandLineParser& parser, const char* name, const char* description)
{
    parser.addOption({QString::fromLatin1(name), translated(description)});
}

void addValue(QCommandLineParser& parser, const QStringList& names, const char* valueName, const char* description)
{
    parser.addOption({names, translated(description), QString::fromLatin1(valueName)});
}

void addSecrets(QCommandLineParser& parser)
{
    addFlag(parser, "secrets", "Show passwords and keys instead of ******.");
}

void addUnverified(QCommandLineParser& parser)
{
    addFlag(parser, "unverified", "Take a customisation whose verification does not hold.");
}

void addOutput(QCommandLineParser& parser)
{
    addValue(parser, {QStringLiteral("o"), QStringLiteral("output")}, "FILE",
             "Write to this file; it must not exist yet.");
}

void listOptions(QCommandLineParser& parser)
{
    addValue(parser, {QStringLiteral("since")}, "T", "From this local time on: YYYY-MM-DD or \"YYYY-MM-DD HH:MM:SS\".");
    addValue(parser, {QStringLiteral("until")}, "T", "Up to this local time; a day counts whole.");
    addValue(parser, {QStringLiteral("component")}, "NAME", "Only with this component; may be given several times.");
    addFlag(parser, "all", "Also the directories that the manager does not list, each with its reason.");
}

void showOptions(QCommandLineParser& parser)
{
    addValue(parser, {QStringLiteral("section")}, "S", "Only this section, such as sslvpn.");
    addSecrets(parser);
    addUnverified(parser);
}

void diffOptions(QCommandLineParser& parser)
{
    addFlag(parser, "all", "Also time, remark, and what has no effect in both.");
    addFlag(parser, "html", "As a page to print or to file.");
    addOutput(parser);
    addSecrets(parser);
    addUnverified(parser);
}

void reportOptions(QCommandLineParser& parser)
{
    addFlag(parser, "html", "As a page; this is the default.");
    addFlag(parser, "markdown", "As Markdown.");
    addOutput(parser);
    addSecrets(parser);
    addUnverified(parser);
}

void searchOptions(QCommandLineParser& parser)
{
    addFlag(parser, "regex", "TEXT is a regular expression.");
    addValue(parser, {QStringLiteral("field")}, "PATH", "Only in this field, such as vpn/ikecfg/IKEPort.");
    addSecrets(parser);
}

void lintOptions(QCommandLineParser& parser)
{
    addFlag(parser, "all", "All verified entries.");
    addUnverified(parser);
}

void errorsOptions(QCommandLineParser& parser)
{
    addValue(parser, {QStringLiteral("day")}, "YYYYMMDD", "All of this day.");
    addFlag(parser, "last", "The last Finish; this is the default.");
}

void exportOptions(QCommandLineParser& parser)
{
    addOutput(parser);
    addUnverified(parser);
}

void fieldsOptions(QCommandLineParser& parser)
{
    addFlag(parser, "markdown", "As tables in Markdown, one for each section.");
}

void noOptions(QCommandLineParser&)
{
}

} // namespace

const QVector<Command>& commands()
{
    static const QVector<Command> all = {
        {"list", "[--since T] [--until T] [--component NAME]... [--all]", "The history, newest first",
         "list --since 2026-01-01 --component Portal", 0, 0, true, listOptions, runList},
        {"show", "SOURCE [--section S]", "Every field of a customisation", "show latest --section sslvpn", 1, 1, false,
         showOptions, runShow},
        {"diff", "A B [--all] [--html [-o FILE]]", "What differs between two customisations", "diff latest~1 latest", 2,
         2, false, diffOptions, runDiff},
        {"report", "SOURCE [--html|--markdown] [-o FILE]", "A customisation to print or to file",
         "report latest -o customisation.html", 1, 1, false, reportOptions, runReport},
        {"verify", "[PACKAGE...]", "Whether entries and packages are what the manager wrote",
         "verify OrvexSetup/OrvexClient_Linux64_*.tar.gz", 0, -1, false, noOptions, runVerify},
        {"which", "PACKAGE...", "Which customisation a package holds", "which OrvexUpdate/*.zip", 1, -1, false,
         noOptions, runWhich},
        {"search", "TEXT [--regex] [--field PATH]", "Where a text stands in the history",
         "search 10.1.0.5 --field sslvpn/remote/*/ip", 1, 1, true, searchOptions, runSearch},
        {"lint", "SOURCE... | --all", "What may go wrong with a customisation", "lint latest", 0, -1, true, lintOptions,
         runLint},
        {"doctor", "", "Whether a customisation can be finished here", "doctor", 0, 0, false, noOptions, runDoctor},
        {"errors", "[--day YYYYMMDD | --last]", "What failed, from the manager's log", "errors --day 20260131", 0, 0,
         false, errorsOptions, runErrors},
        {"export", "SOURCE -o FILE.tar.gz", "A customisation as an archive", "export latest -o customisation.tar.gz", 1,
         1, false, exportOptions, runExport},
        {"fields", "[--markdown]", "The fields of a customisation", "fields --json", 0, 0, false, fieldsOptions,
         runFields},
    };
    return all;
}

ExitStatus Invocation::wrong(const QString& message)
{
    output::complain(message);
    return Wrong;
}
