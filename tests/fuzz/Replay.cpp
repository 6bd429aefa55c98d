#include "fuzz/FuzzTarget.h"
#include "fuzz/Surroundings.h"

#include <QByteArrayList>
#include <QDir>

#include <cstdio>
#include <cstring>

// fuzz_replay TARGET DIRECTORY...: runs the target over every file of the directories, each once. A target ends the
// process where an invariant does not hold; the file has been named by then.
int main(int argc, char** argv)
{
    if (argc < 3) {
        std::fprintf(stderr, "usage: %s TARGET DIRECTORY...\n", argv[0]);
        return 2;
    }
    LLVMFuzzerInitialize(&argc, &argv);
    const fuzz::Entry* entry = fuzz::firstEntry();
    while (entry && strcmp(entry->name, argv[1]) != 0)
        entry = entry->next;
    if (!entry) {
        std::fprintf(stderr, "no target %s\n", argv[1]);
        return 2;
    }

    int files = 0;
    for (int i = 2; i < argc; ++i) {
        const QDir directory(QString::fromLocal8Bit(argv[i]));
        for (const QString& name : directory.entryList(QDir::Files, QDir::Name)) {
            const QByteArray path = directory.filePath(name).toLocal8Bit();
            std::printf("%s\n", path.constData());
            std::fflush(stdout);
            entry->target(fuzz::contentOf(path));
            ++files;
        }
    }
    std::printf("%s: %d inputs\n", entry->name, files);
    return files > 0 ? 0 : 1; // without seeds nothing has been shown
}
