#pragma once

#include "inspect/Verification.h"
#include "xml/CustomInfo.h"

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>
#include <functional>

/// The icons of a customisation, in the order of the record: Linux desktop, macOS desktop, main window.
constexpr int ICON_COUNT = 3;

/// The file name of an icon beside the document.
const char* iconName(int icon);

/// A customisation as it lies in a directory: its document and its verification file.
struct StoredCustomisation
{
    FileBytes document;
    FileBytes verification;
    Reason reason = Reason::NoDocument;
    CommonInfo common; // filled when the reason is None
    /// SHA-256 of each icon, 32 bytes; empty where there is none.
    std::array<QByteArray, ICON_COUNT> icons;
};

/// Reads and verifies a customisation in any directory; opens files for reading and nothing else.
///
/// @param directory     path, local 8-bit encoding
/// @param documentName  name of the document there; its verification file bears the one name it always bears
StoredCustomisation readCustomisation(const QByteArray& directory, const QByteArray& documentName);
StoredCustomisation readCustomisation(const QByteArray& directory);

/// A directory below UpdateCustom/.
struct StoreRow
{
    QByteArray entry; // its name, local 8-bit encoding
    Reason reason = Reason::NoDocument;
    /// Past the limit of the manager's history, in the order of the manager's own scan.
    bool isBeyondLimit = false;
    /// The time stamp in the document names another directory. Never for a row with a reason.
    bool hasOtherStamp = false;
    /// The manager shows it: its digest holds, and it stands within the limit.
    bool isListed = false;
    /// What the history shows; left alone unless the reason is None.
    CUSINFOPOLICY row;
    /// The last 16 bytes of the verification file, by which a package finds its entry; empty where the reason is one.
    QByteArray digest;

    bool isVerified() const { return reason == Reason::None; }
    /// The reason's code, else "beyond-300", else "stamp", else empty.
    const char* code() const;
};

/// Newest first: by time stamp, then by directory name, both descending.
bool isNewer(const StoreRow& one, const StoreRow& other);

/// The stored customisations of an installation, to be looked at only: no lock, no log line, nothing written, nothing
/// but directories and regular files opened. What another process changes meanwhile is seen as it is found.
class StoreReader
{
public:
    /// @param installation  the directory that holds UpdateCustom/, local 8-bit encoding, with or without trailing "/"
    explicit StoreReader(const QByteArray& installation);

    /// Called with each verified directory in the order of the scan, and with its document.
    using Visitor = std::function<void(const StoreRow& row, const QByteArray& document)>;

    /// What is to be done for a directory when its turn in the scan comes; may be empty.
    using Step = std::function<void()>;
    /// Called with each verified directory and its document, by up to WORKERS threads at once, each with a number of
    /// its own from 0. Of the row only the entry, what the history shows and the digest are known yet.
    using Work = std::function<Step(int worker, const StoreRow& row, const QByteArray& document)>;
    static constexpr int WORKERS = 4;

    /// Reads all directories anew, in several threads when they are many, and holds some dozens of documents at most.
    /// Plain files and hidden names are left out, as in the manager's own scan. The visitor is called by this thread.
    ///
    /// @return  false when UpdateCustom/ is there and cannot be read; a store without it is empty
    bool scan(const Visitor& visitor = Visitor());
    /// The same for work that need not wait for its turn. The steps are called by this thread, in the order of the
    /// scan.
    bool scanWith(const Work& work);

    /// Newest first: by time stamp, then by directory name, both descending. Rows without a time stamp come last.
    const QVector<StoreRow>& rows() const { return m_rows; }

    /// The newest verified entry, or null.
    const StoreRow* newest() const;

    /// What the administrator means: the name of a directory, else "latest", else "latest~N" (the N-th before the
    /// latest, among the verified), else a time as the history shows it, of a verified entry; of several the newest.
    /// @return  null when nothing is meant
    const StoreRow* resolve(const QByteArray& text) const;

    /// The path of an entry's directory.
    QByteArray pathOf(const QByteArray& entry) const;

private:
    bool scanWith(const Work& work, const Visitor& visitor);

    QByteArray m_base; // UpdateCustom/ with the slash
    QVector<StoreRow> m_rows;
};
