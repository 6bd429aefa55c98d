#include "inspect/StoreFile.h"

#include "inspect/Sha256.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int s_chunkSize = 1 << 16;

/// The owner may leave the time of access alone; anybody else is refused that and has to do without.
Descriptor openQuietly(int directory, const char* name, int flags)
{
    int number = openat(directory, name, flags | O_RDONLY | O_CLOEXEC | O_NOATIME);
    if (number < 0 && errno == EPERM)
        number = openat(directory, name, flags | O_RDONLY | O_CLOEXEC);
    return Descriptor(number);
}

/// Up to `size` bytes; fewer at the end of the file, -1 after an error.
qint64 readSome(int file, char* buffer, size_t size)
{
    ssize_t got = 0;
    do {
        got = read(file, buffer, size);
    } while (got < 0 && errno == EINTR);
    return got;
}

} // namespace

Descriptor::~Descriptor()
{
    if (m_number >= 0)
        close(m_number);
}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept
{
    if (this != &other) {
        if (m_number >= 0)
            close(m_number);
        m_number = other.take();
    }
    return *this;
}

int Descriptor::take()
{
    const int number = m_number;
    m_number = -1;
    return number;
}

Descriptor openDirectory(const QByteArray& path, int at)
{
    return openQuietly(at < 0 ? AT_FDCWD : at, path.constData(), O_DIRECTORY);
}

Descriptor openRegularFile(int directory, const QByteArray& name, FileBytes::State* state)
{
    FileBytes::State found = FileBytes::Missing;
    Descriptor file;
    struct stat status = {};
    // Asked first, because opening alone can already be noticed by who waits at a pipe or by a device.
    if (fstatat(directory, name.constData(), &status, 0) != 0) {
        if (fstatat(directory, name.constData(), &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode))
            found = FileBytes::NotRegular;
    } else if (!S_ISREG(status.st_mode)) {
        found = FileBytes::NotRegular;
    } else {
        file = openQuietly(directory, name.constData(), O_NONBLOCK | O_NOCTTY);
        if (file.isOpen()) {
            const bool isRegular = fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode);
            found = isRegular ? FileBytes::Read : FileBytes::NotRegular;
            if (!isRegular)
                file = Descriptor();
        }
    }
    if (state)
        *state = found;
    return file;
}

FileBytes readRegularFile(int directory, const QByteArray& name, qint64 limit)
{
    FileBytes result;
    const Descriptor file = openRegularFile(directory, name, &result.state);
    if (!file.isOpen())
        return result;
    struct stat status = {};
    if (fstat(file.number(), &status) != 0)
        return FileBytes();
    // One byte of room beyond the size shows the end of the file without a second growth.
    const qint64 most = limit + 1;
    result.bytes.resize(int(qMin<qint64>(qMax<qint64>(status.st_size, 0) + 1, most)));
    int length = 0;
    while (length < most) {
        if (length == result.bytes.size())
            result.bytes.resize(int(qMin<qint64>(most, qint64(length) + s_chunkSize)));
        const qint64 got = readSome(file.number(), result.bytes.data() + length, size_t(result.bytes.size() - length));
        if (got < 0)
            return FileBytes();
        if (got == 0)
            break;
        length += int(got);
    }
    result.bytes.resize(length);
    return result;
}

QByteArray digestOfRegularFile(int directory, const QByteArray& name)
{
    const Descriptor file = openRegularFile(directory, name);
    if (!file.isOpen())
        return QByteArray();
    Sha256 hash;
    char buffer[s_chunkSize];
    for (;;) {
        const qint64 got = readSome(file.number(), buffer, sizeof buffer);
        if (got < 0)
            return QByteArray();
        if (got == 0)
            return hash.result();
        hash.add(buffer, int(got));
    }
}
