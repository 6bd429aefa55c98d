#include "support/TestEntry.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <unistd.h>

namespace {

const TestEntry* s_first = nullptr;

constexpr char s_variable[] = "ORVEX_TEST_UNIT";
constexpr char s_prefix[] = "tst_";

const TestEntry* entryOf(const char* unit)
{
    for (const TestEntry* entry = s_first; entry; entry = entry->next) {
        if (strcmp(entry->unit, unit) == 0)
            return entry;
    }
    return nullptr;
}

const TestEntry* chosenEntry(const char* executable)
{
    if (const char* unit = getenv(s_variable))
        return entryOf(unit);
    const char* const slash = strrchr(executable, '/');
    const char* const name = slash ? slash + 1 : executable;
    return strncmp(name, s_prefix, strlen(s_prefix)) == 0 ? entryOf(name + strlen(s_prefix)) : nullptr;
}

} // namespace

TestEntry::TestEntry(const char* theUnit, Run theRun) : unit(theUnit), run(theRun), next(s_first)
{
    s_first = this;
}

int main(int argc, char** argv)
{
    const TestEntry* const chosen = chosenEntry(argv[0]);
    if (!chosen) {
        fprintf(stderr, "start it as tst_<unit>, or set %s to the unit; it has these:\n", s_variable);
        for (const TestEntry* entry = s_first; entry; entry = entry->next)
            fprintf(stderr, "  %s\n", entry->unit);
        return EXIT_FAILURE;
    }
    setenv(s_variable, chosen->unit, 1);
    // The local server has the name of the application: one for each process.
    QCoreApplication::setApplicationName(QStringLiteral("tst_%1-%2").arg(QLatin1String(chosen->unit)).arg(getpid()));
    return chosen->run(argc, argv);
}
