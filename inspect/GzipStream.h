#pragma once

#include <QtGlobal>

#include <functional>
#include <memory>

#include <zlib.h>

/// What a package may give, over all its archives.
struct PackageBudget
{
    qint64 packed = 0;   // size of the package
    qint64 unpacked = 0; // bytes so far
};

/// Unpacks a gzip stream (RFC 1952) piece by piece. Unlike the archive library it tests checksum and length at the end
/// of the stream, so that a stream which ended well is whole; it refuses anything behind that end.
class GzipStream
{
public:
    /// Sets `data` to the next packed bytes, which stay where they are until the next call; returns their number, 0 at
    /// the end, -1 after a failure.
    using Source = std::function<qint64(const char*& data)>;

    GzipStream(const Source& source, PackageBudget& budget);
    ~GzipStream();
    GzipStream(const GzipStream&) = delete;
    GzipStream& operator=(const GzipStream&) = delete;

    /// Sets `data` to the next unpacked bytes, which stay where they are until the next call; returns their number, 0
    /// at the end of a stream that is whole, -1 when it is damaged or beyond the limits.
    qint64 next(const char*& data);

    /// Reads what is left. True when the stream is whole and ends as a tar archive does, with 1024 zero bytes.
    bool endsAsTar();

    /// From here on no more than `bytes` may be unpacked until the next call; a negative number lifts the limit.
    void allow(qint64 bytes) { m_allowed = bytes < 0 ? -1 : m_length + bytes; }

private:
    bool refill();
    /// Looks behind the end of a compressed part: another part, the end, or damage.
    bool endPart();
    void countZeros(const char* data, qint64 length);

    Source m_source;
    PackageBudget& m_budget;
    std::unique_ptr<char[]> m_buffer;
    z_stream m_stream = {};
    qint64 m_allowed = -1; // the length at which it breaks; -1: none
    qint64 m_length = 0;   // unpacked so far
    qint64 m_zeroTail = 0; // zero bytes at the end of it, counted up to the need
    bool m_isOpen = false;
    bool m_isBroken = false;
    bool m_hasEnded = false;
};
