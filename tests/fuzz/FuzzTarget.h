#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

// A fuzz target takes any bytes and ends the process where an invariant of the code under test does not hold. With
// ORVEX_FUZZER it is the entry of libFuzzer, one in an executable; else it stands in the list of those that the replay
// runs over the files of seeds/ and findings/.

namespace fuzz {

using Target = void (*)(const QByteArray& input);

/// Stands in the list of the executable from its start.
struct Entry
{
    Entry(const char* ownName, Target ownTarget);

    const char* const name;
    const Target target;
    const Entry* const next;
};

/// Tells where, and aborts.
[[noreturn]] void brokenInvariant(const char* file, int line, const char* text, const QByteArray& told);

/// A disposable directory that the code under test takes for that of its executable, without trailing "/". The log is
/// off, and the local 8-bit encoding is UTF-8.
QByteArray directory();

/// Writes a file below that directory and returns its path.
QByteArray written(const char* name, const QByteArray& bytes);
QByteArray contentOf(const QByteArray& path);

/// Takes the first byte off; 0 when there is none.
int takeByte(QByteArray& input);

} // namespace fuzz

#define HOLDS(condition) HOLDS_TOLD(condition, QByteArray())
#define HOLDS_TOLD(condition, told)                                                                                    \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            fuzz::brokenInvariant(__FILE__, __LINE__, #condition, told);                                               \
    } while (false)

#ifdef ORVEX_FUZZER
#define FUZZ_ENTRY(name)                                                                                               \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)                                  \
    {                                                                                                                  \
        fuzzTarget(QByteArray(reinterpret_cast<const char*>(data), int(size)));                                        \
        return 0;                                                                                                      \
    }
#else
#define FUZZ_ENTRY(name) static const fuzz::Entry s_entry(name, fuzzTarget);
#endif

/// Stands before the body of a target, with the name of its directories below seeds/ and findings/.
#define FUZZ_TARGET(name)                                                                                              \
    static void fuzzTarget(const QByteArray& bytes);                                                                   \
    FUZZ_ENTRY(name)                                                                                                   \
    static void fuzzTarget(const QByteArray& bytes)
