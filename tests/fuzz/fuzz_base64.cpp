#include "common/Base64.h"
#include "fuzz/FuzzTarget.h"

#include <memory>

namespace {

bool isOfAlphabet(char character)
{
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') || character == '+' || character == '/';
}

/// What the decoder takes: whole groups of the alphabet, with "=" in the third and fourth place of any of them.
bool isTaken(const QByteArray& text)
{
    for (int i = 0; i < text.size(); ++i) {
        if (!isOfAlphabet(text.at(i)) && (text.at(i) != '=' || i % 4 < 2))
            return false;
    }
    return text.size() % 4 == 0;
}

} // namespace

// Where RFC 4648 has a meaning for a text, the decoder has the same, and it takes no more than its contract says. What
// the encoder makes of any bytes is read back.
FUZZ_TARGET("base64")
{
    const QByteArray text(bytes.constData()); // up to the first zero byte
    const size_t room = size_t(text.size()) / 4 * 3 + 1;
    const std::unique_ptr<unsigned char[]> out(new unsigned char[room]);
    std::fill_n(out.get(), room, static_cast<unsigned char>(0xA5));
    const std::unique_ptr<unsigned char[]> in(new unsigned char[size_t(text.size()) + 1]);
    std::copy_n(text.constData(), text.size() + 1, in.get());
    int length = -7;
    const int result = base64_decode(in.get(), out.get(), &length);
    HOLDS(result == (isTaken(text) ? 0 : -1));
    if (result != 0) {
        HOLDS(length == -7 && std::count(out.get(), out.get() + room, 0xA5) == qint64(room));
    } else {
        const QByteArray decoded(reinterpret_cast<const char*>(out.get()), length);
        HOLDS(out[size_t(length)] == 0 && length == text.size() / 4 * 3 - text.count('='));
        // Padding within the text is beyond the standard; the groups before it are not.
        const int whole = text.indexOf('=') < 0 ? text.size() : text.indexOf('=') / 4 * 4;
        const QByteArray standard = QByteArray::fromBase64(text.left(whole));
        HOLDS_TOLD(decoded.left(standard.size()) == standard.left(decoded.size()), text);
        const bool isPaddedAtEnd = whole + 4 == text.size() && (text.endsWith("==") || text.at(whole + 3) == '=');
        if (isPaddedAtEnd && !(text.at(whole + 2) == '=' && text.at(whole + 3) != '='))
            HOLDS_TOLD(decoded == QByteArray::fromBase64(text), text);
    }

    QByteArray plain = bytes;
    const std::unique_ptr<unsigned char[]> encoded(new unsigned char[size_t(plain.size() + 2) / 3 * 4 + 1]);
    HOLDS(base64_encode(reinterpret_cast<unsigned char*>(plain.data()), encoded.get(), plain.size()) == 0);
    HOLDS(QByteArray(reinterpret_cast<const char*>(encoded.get())) == plain.toBase64());
    const std::unique_ptr<unsigned char[]> back(new unsigned char[size_t(plain.size() + 2) / 3 * 3 + 1]);
    HOLDS(base64_decode(encoded.get(), back.get(), &length) == 0);
    HOLDS(QByteArray(reinterpret_cast<const char*>(back.get()), length) == plain);
}
