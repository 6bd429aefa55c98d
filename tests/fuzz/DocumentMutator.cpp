#include "fuzz/OpenSslDes.h"

#include <QByteArray>
#include <QByteArrayList>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <random>

// Changes to a customisation document that leave it one, most of the time: libFuzzer's own, blind to elements, rarely
// do.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using Random = std::minstd_rand;

int upTo(Random& random, int most)
{
    return std::uniform_int_distribution<int>(0, std::max(most, 0))(random);
}

// clang-format off
const char* const s_texts[] = {
    "", " ", "   ", "\n", "\t", "\xC2\x85", "\xC2\xA0", "\xE3\x80\x80", "\xE2\x80\xA8",
    "\xEF\xBC\x8C", "\xEF\xBF\xBD", "\xED\xA0\x80", "\xF0\x9F\x98\x80", "\xC3\xA9", "\xE5\x8C\x97",
    "0", "1", "2", "-1", "00", "+1", "2147483647", "2147483648", "4294967295", "4294967296", "18446744073709551615",
    "true", "false", "TRUE", "]]>", "]]", "&lt;", "&#10;", "&#32;", "&#0;", "&amp;", "&a;",
    "<!-- -->", "<![CDATA[ ]]>", "<b/>", "<b>c</b>", "\"", "'", ">", "%s%n",
    "a very long text, of which some reader keeps its first characters only, and a writer perhaps all of them"};
// clang-format on

/// A secret as the document has it, of any length.
QByteArray secret(Random& random)
{
    QByteArray plain(upTo(random, 140), '\0');
    for (char& byte : plain)
        byte = char('!' + upTo(random, 90));
    return openssldes::enciphered(plain).toBase64();
}

QByteArray piece(Random& random)
{
    return upTo(random, 7) == 0 ? secret(random) : QByteArray(s_texts[upTo(random, int(std::size(s_texts)) - 1)]);
}

/// Another text in one of the elements, or behind its text.
void changeText(QByteArray& document, Random& random)
{
    const int begin = document.indexOf('>', upTo(random, document.size() - 1)) + 1;
    const int end = document.indexOf('<', begin);
    if (begin > 0 && end >= 0)
        document.replace(begin, upTo(random, 3) == 0 ? 0 : end - begin, piece(random));
}

/// Lines once more, gone, or elsewhere.
void changeLines(QByteArray& document, Random& random)
{
    QByteArrayList lines = document.split('\n');
    const int from = upTo(random, lines.size() - 1);
    const QByteArrayList some = lines.mid(from, 1 + upTo(random, 8));
    const int way = upTo(random, 2);
    if (way > 0)
        lines.erase(lines.begin() + from, lines.begin() + from + some.size());
    if (way < 2) {
        int to = upTo(random, lines.size());
        for (const QByteArray& line : some)
            lines.insert(to++, line);
    }
    document = lines.join('\n');
}

} // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned int seed)
{
    Random random(seed);
    if (size == 0 || upTo(random, 2) == 0)
        return LLVMFuzzerMutate(data, size, maxSize);
    QByteArray document(reinterpret_cast<const char*>(data), int(size));
    for (int i = upTo(random, 2); i >= 0; --i) {
        if (upTo(random, 4) == 0)
            changeLines(document, random);
        else
            changeText(document, random);
    }
    const std::size_t length = std::min(std::size_t(document.size()), maxSize);
    std::memcpy(data, document.constData(), length);
    return length;
}
