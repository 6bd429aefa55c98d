#include "inspect/GzipStream.h"

#include "inspect/PackageLimits.h"

namespace {

constexpr int s_bufferSize = 1 << 17;
constexpr int s_gzipOnly = 15 + 16; // the largest window, and a gzip header is wanted
constexpr qint64 s_tarEnd = 1024;
constexpr qint64 s_tarBlock = 512;

} // namespace

GzipStream::GzipStream(const Source& source, PackageBudget& budget)
    : m_source(source), m_budget(budget), m_buffer(new char[s_bufferSize])
{
    m_isOpen = inflateInit2(&m_stream, s_gzipOnly) == Z_OK;
    m_isBroken = !m_isOpen;
}

GzipStream::~GzipStream()
{
    if (m_isOpen)
        inflateEnd(&m_stream);
}

bool GzipStream::refill()
{
    const char* data = nullptr;
    const qint64 got = m_source(data);
    if (got <= 0) {
        m_isBroken = m_isBroken || got < 0;
        return false;
    }
    m_stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data));
    m_stream.avail_in = static_cast<uInt>(got);
    return true;
}

bool GzipStream::endPart()
{
    if (m_stream.avail_in == 0 && !refill()) {
        m_hasEnded = !m_isBroken;
        return false;
    }
    // What follows must be a further part; its header is tested by the next step.
    return inflateReset(&m_stream) == Z_OK;
}

void GzipStream::countZeros(const char* data, qint64 length)
{
    m_length += length;
    qint64 zeros = 0;
    while (zeros < length && zeros < s_tarEnd && data[length - 1 - zeros] == '\0')
        ++zeros;
    m_zeroTail = zeros == length ? m_zeroTail + zeros : zeros;
}

qint64 GzipStream::next(const char*& data)
{
    if (m_isBroken)
        return -1;
    if (m_hasEnded)
        return 0;
    data = m_buffer.get();
    m_stream.next_out = reinterpret_cast<Bytef*>(m_buffer.get());
    m_stream.avail_out = s_bufferSize;
    while (m_stream.avail_out > 0 && !m_isBroken && !m_hasEnded) {
        if (m_stream.avail_in == 0 && !refill()) {
            m_isBroken = true; // it ends within a part
            break;
        }
        const int result = inflate(&m_stream, Z_NO_FLUSH);
        if (result == Z_STREAM_END) {
            if (!endPart() && !m_hasEnded)
                m_isBroken = true;
        } else if (result != Z_OK) {
            m_isBroken = true;
        }
    }
    if (m_isBroken)
        return -1;
    const qint64 length = s_bufferSize - qint64(m_stream.avail_out);
    countZeros(data, length);
    m_budget.unpacked += length;
    const qint64 most = qMin(limits::unpackedBytes, limits::ratioAllowance + limits::unpackedRatio * m_budget.packed);
    if (m_budget.unpacked > most || (m_allowed >= 0 && m_length > m_allowed)) {
        m_isBroken = true;
        return -1;
    }
    return length;
}

bool GzipStream::endsAsTar()
{
    const char* data = nullptr;
    while (next(data) > 0) {
    }
    return m_hasEnded && m_zeroTail >= s_tarEnd && m_length % s_tarBlock == 0;
}
