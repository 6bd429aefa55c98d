#include "inspect/StoreReader.h"

#include "common/CustomInfoVerify.h"
#include "common/StorePaths.h"
#include "inspect/StoreFile.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <memory>
#include <sys/stat.h>

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

} // namespace

bool isNewer(const StoreRow& one, const StoreRow& other)
{
    if (one.row.cusTimeStamp != other.row.cusTimeStamp)
        return one.row.cusTimeStamp > other.row.cusTimeStamp;
    return one.entry > other.entry;
}

const char* iconName(int icon)
{
    static const char* const names[ICON_COUNT] = {store::linuxDeskIcon, store::macosDeskIcon, store::mainIcon};
    return icon >= 0 && icon < ICON_COUNT ? names[icon] : "";
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

    int taken = 0;
    bool isBeyond = false;
    errno = 0;
    while (const dirent* entry = readdir(entries.get())) {
        const QByteArray name(entry->d_name);
        struct stat status = {};
        if (name.startsWith('.') || fstatat(number, name.constData(), &status, 0) != 0 || !S_ISDIR(status.st_mode)) {
            errno = 0;
            continue;
        }
        isBeyond = isBeyond || taken == s_historyLimit;

        StoreRow row;
        row.entry = name;
        StoredCustomisation found;
        const Descriptor directory = openDirectory(name, number);
        if (directory.isOpen())
            found = readIn(directory.number(), store::document);
        row.reason = found.reason;
        row.isBeyondLimit = isBeyond;
        row.isListed = digestHeld(found.reason) && !isBeyond;
        if (row.isListed)
            ++taken;
        if (row.isVerified()) {
            row.row.cusTimeStamp = found.common.cusTimeStamp;
            row.row.cusTimeString = found.common.cusTimeString;
            row.row.cusAddInfo = found.common.cusAddInfo;
            row.row.procomVal = static_cast<quint32>(found.common.procomVal);
            row.row.funcomVal = static_cast<quint32>(found.common.funcomVal);
            row.hasOtherStamp = directoryName(found.common.cusTimeStamp) != name;
            row.digest = found.verification.bytes.right(s_digestLength);
            if (visitor)
                visitor(row, found.document.bytes);
        }
        m_rows.append(row);
        errno = 0;
    }
    const bool isWhole = errno == 0;
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
