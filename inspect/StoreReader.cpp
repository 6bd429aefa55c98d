#include "inspect/StoreReader.h"

#include "common/CustomInfoVerify.h"
#include "common/StorePaths.h"
#include "inspect/StoreFile.h"
#include "xml/Catalogue.h"

#include <algorithm>
#include <cerrno>
#include <condition_variable>
#include <dirent.h>
#include <map>
#include <memory>
#include <mutex>
#include <sys/stat.h>
#include <system_error>
#include <thread>
#include <vector>

namespace {

// Contract: the manager's scan stops at the first directory it meets once it has taken this many.
constexpr int s_historyLimit = 300;

constexpr int s_digestLength = 16;

struct CloseDirectory
{
    void operator()(DIR* directory) const { closedir(directory); }
};

/// Document and verification file of an open directory, verified.
StoredCustomisation readIn(int directory, const QByteArray& documentName)
{
    StoredCustomisation found;
    found.document = readRegularFile(directory, documentName, uiCustomInfoLen);
    found.verification = readRegularFile(directory, store::verification, VRF_TOTAL_LEN);
    found.reason = verifyCustomisation(found.document, found.verification, &found.common);
    return found;
}

/// Contract: the manager names the directory of a stored customisation by the time stamp as a signed 32-bit number.
QByteArray directoryName(quint64 timeStamp)
{
    return QByteArray::number(static_cast<qint32>(timeStamp));
}

bool digestHeld(Reason reason)
{
    return reason == Reason::None || reason == Reason::NotParsed;
}

/// The names of the directories, hidden ones left out, in the order in which they are found.
bool readNames(DIR* entries, std::vector<QByteArray>& names)
{
    errno = 0;
    while (const dirent* entry = readdir(entries)) {
        struct stat status = {};
        const bool isDirectory = entry->d_name[0] != '.' &&
                                 (entry->d_type == DT_DIR ||
                                  (fstatat(dirfd(entries), entry->d_name, &status, 0) == 0 && S_ISDIR(status.st_mode)));
        if (isDirectory)
            names.emplace_back(entry->d_name);
        errno = 0;
    }
    return errno == 0;
}

/// What is known of a directory before its turn in the scan.
struct Entry
{
    StoreRow row;
    QByteArray document;
    StoreReader::Step step;
};

Entry readEntry(int base, const QByteArray& name)
{
    Entry entry;
    entry.row.entry = name;
    StoredCustomisation found;
    const Descriptor directory = openDirectory(name, base);
    if (directory.isOpen())
        found = readIn(directory.number(), store::document);
    StoreRow& row = entry.row;
    row.reason = found.reason;
    if (row.isVerified()) {
        row.row.cusTimeStamp = found.common.cusTimeStamp;
        row.row.cusTimeString = found.common.cusTimeString;
        row.row.cusAddInfo = found.common.cusAddInfo;
        row.row.procomVal = static_cast<quint32>(found.common.procomVal);
        row.row.funcomVal = static_cast<quint32>(found.common.funcomVal);
        row.hasOtherStamp = directoryName(found.common.cusTimeStamp) != name;
        row.digest = found.verification.bytes.right(s_digestLength);
        entry.document = found.document.bytes;
    }
    return entry;
}

constexpr std::size_t s_batch = 8; // entries that a thread reads in one go
constexpr std::size_t s_fewest = 4 * s_batch;

/// Reads entries in several threads, some batches ahead of the one whose turn it is.
class EntryQueue
{
public:
    using Read = std::function<Entry(int worker, std::size_t position)>;

    EntryQueue(std::size_t count, const Read& read) : m_count(count), m_read(read) {}

    ~EntryQueue()
    {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isStopped = true;
        }
        m_changed.notify_all();
        for (std::thread& thread : m_threads)
            thread.join();
    }
    EntryQueue(const EntryQueue&) = delete;
    EntryQueue& operator=(const EntryQueue&) = delete;

    /// @return  false when no thread can be had
    bool start(int workers)
    {
        // Each may hold one batch and leave another.
        m_ahead = 2 * static_cast<std::size_t>(workers);
        try {
            for (int worker = 0; worker < workers; ++worker)
                m_threads.emplace_back([this, worker] { work(worker); });
        } catch (const std::system_error&) {
            return !m_threads.empty();
        }
        return true;
    }

    /// The next batch in order, once it has been read; empty after the last.
    std::vector<Entry> next()
    {
        if (m_taken * s_batch >= m_count)
            return {};
        std::unique_lock<std::mutex> lock(m_mutex);
        m_changed.wait(lock, [this] { return m_done.count(m_taken) != 0; });
        std::vector<Entry> batch = std::move(m_done[m_taken]);
        m_done.erase(m_taken);
        ++m_taken;
        lock.unlock();
        m_changed.notify_all();
        return batch;
    }

private:
    void work(int worker)
    {
        for (;;) {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_changed.wait(lock, [this] { return m_isStopped || m_begun < m_taken + m_ahead; });
            const std::size_t number = m_begun++;
            if (m_isStopped || number * s_batch >= m_count)
                return;
            lock.unlock();
            std::vector<Entry> batch;
            const std::size_t end = std::min(m_count, (number + 1) * s_batch);
            for (std::size_t position = number * s_batch; position < end; ++position)
                batch.push_back(m_read(worker, position));
            lock.lock();
            m_done[number] = std::move(batch);
            lock.unlock();
            m_changed.notify_all();
        }
    }

    const std::size_t m_count;
    const Read& m_read;
    std::size_t m_ahead = 0;
    std::mutex m_mutex; // guards what follows; m_taken is written by the taking thread only
    std::condition_variable m_changed;
    std::map<std::size_t, std::vector<Entry>> m_done; // by the number of the batch
    std::size_t m_begun = 0;
    std::size_t m_taken = 0;
    bool m_isStopped = false;
    std::vector<std::thread> m_threads;
};

/// Reads `count` entries and takes them one after the other, in their order.
void inOrder(std::size_t count, const EntryQueue::Read& read, const std::function<void(Entry&)>& take)
{
    const unsigned int processors = count < s_fewest ? 1 : std::thread::hardware_concurrency();
    const int workers = static_cast<int>(std::min<unsigned int>(processors, StoreReader::WORKERS));
    EntryQueue queue(count, read);
    if (workers > 1 && queue.start(workers)) {
        for (std::vector<Entry> batch = queue.next(); !batch.empty(); batch = queue.next()) {
            for (Entry& entry : batch)
                take(entry);
        }
        return;
    }
    for (std::size_t position = 0; position < count; ++position) {
        Entry entry = read(0, position);
        take(entry);
    }
}

} // namespace

bool isNewer(const StoreRow& one, const StoreRow& other)
{
    if (one.row.cusTimeStamp != other.row.cusTimeStamp)
        return one.row.cusTimeStamp > other.row.cusTimeStamp;
    return one.entry > other.entry;
}

const char* iconName(int icon)
{
    return icon >= 0 && icon < ICON_COUNT ? iconFiles()[icon].name : "";
}

const char* StoreRow::code() const
{
    if (reason != Reason::None)
        return reasonCode(reason);
    if (isBeyondLimit)
        return "beyond-300";
    return hasOtherStamp ? "stamp" : "";
}

StoredCustomisation readCustomisation(const QByteArray& directory, const QByteArray& documentName)
{
    const Descriptor opened = openDirectory(directory);
    if (!opened.isOpen())
        return StoredCustomisation();
    StoredCustomisation found = readIn(opened.number(), documentName);
    for (int icon = 0; icon < ICON_COUNT; ++icon)
        found.icons[size_t(icon)] = digestOfRegularFile(opened.number(), iconName(icon));
    return found;
}

StoredCustomisation readCustomisation(const QByteArray& directory)
{
    return readCustomisation(directory, store::document);
}

StoreReader::StoreReader(const QByteArray& installation)
    : m_base(installation + (installation.endsWith('/') ? "" : "/") + store::updateCustom + "/")
{
}

QByteArray StoreReader::pathOf(const QByteArray& entry) const
{
    return m_base + entry;
}

bool StoreReader::scan(const Visitor& visitor)
{
    return scanWith(Work(), visitor);
}

bool StoreReader::scanWith(const Work& work)
{
    return scanWith(work, Visitor());
}

bool StoreReader::scanWith(const Work& work, const Visitor& visitor)
{
    m_rows.clear();
    Descriptor base = openDirectory(m_base);
    if (!base.isOpen())
        return errno == ENOENT;
    // The number stays the property of `entries`, which closes it.
    const int number = base.number();
    const std::unique_ptr<DIR, CloseDirectory> entries(fdopendir(number));
    if (!entries)
        return false;
    base.take();

    std::vector<QByteArray> names;
    const bool isWhole = readNames(entries.get(), names);

    int taken = 0;
    bool isBeyond = false;
    const auto read = [&](int worker, std::size_t position) {
        Entry entry = readEntry(number, names[position]);
        if (entry.row.isVerified() && work)
            entry.step = work(worker, entry.row, entry.document);
        if (!visitor)
            entry.document.clear();
        return entry;
    };
    const auto take = [&](Entry& entry) {
        isBeyond = isBeyond || taken == s_historyLimit;
        StoreRow& row = entry.row;
        row.isBeyondLimit = isBeyond;
        row.isListed = digestHeld(row.reason) && !isBeyond;
        if (row.isListed)
            ++taken;
        if (row.isVerified() && visitor)
            visitor(row, entry.document);
        if (entry.step)
            entry.step();
        m_rows.append(row);
    };
    inOrder(names.size(), read, take);
    std::sort(m_rows.begin(), m_rows.end(), isNewer);
    return isWhole;
}

const StoreRow* StoreReader::newest() const
{
    const auto found = std::find_if(m_rows.begin(), m_rows.end(), [](const StoreRow& row) { return row.isVerified(); });
    return found == m_rows.end() ? nullptr : &*found;
}

const StoreRow* StoreReader::resolve(const QByteArray& text) const
{
    const auto first = [this](const auto& isMeant) {
        const auto found = std::find_if(m_rows.begin(), m_rows.end(), isMeant);
        return found == m_rows.end() ? nullptr : &*found;
    };
    if (const StoreRow* named = first([&](const StoreRow& row) { return row.entry == text; }))
        return named;

    const QByteArray latest = "latest";
    if (text == latest)
        return newest();
    if (text.startsWith(latest + "~")) {
        bool isNumber = false;
        const uint before = text.mid(latest.size() + 1).toUInt(&isNumber);
        uint passed = 0;
        return isNumber ? first([&](const StoreRow& row) { return row.isVerified() && passed++ == before; }) : nullptr;
    }

    const QString time = QString::fromLocal8Bit(text);
    return first(
        [&](const StoreRow& row) { return row.isVerified() && !time.isEmpty() && row.row.cusTimeString == time; });
}
