#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVector>

/// Something that failed, as the manager's log tells it.
struct LogFinding
{
    QString time; // local, "YYYY-MM-DD HH:MM:SS"
    /// "document", "verification", "setup", "update", "customised-update", "history" or "start".
    const char* step = "";
    const char* code = "";
    QString message; // in plain words
    QString line;    // of the log, without secrets
};

/// Reads the log of an installation, `Log/MainUI<YYYYMMDD>.log`, line by line. Lines that tell of errors and are none
/// are known: the ZIP step, which never has another result; the history that is not there before the first Finish; a
/// second start, which gives way to the first; and lines that only repeat the line before them.
class LogReader
{
public:
    enum Result
    {
        Read,
        NoLog,      // of that day; or no log at all, or no Finish in it
        Unreadable, // the file or the directory may not be read
        TooMany     // more findings than anybody reads
    };

    /// @param installation  local 8-bit encoding, with a trailing "/"
    explicit LogReader(const QByteArray& installation);

    /// All of a day, YYYYMMDD.
    Result readDay(const QString& day);
    /// The last Finish, also one that went on past midnight.
    Result readLastFinish();

    const QVector<LogFinding>& findings() const { return m_findings; }
    /// When the last Finish that was met began; empty for none.
    QString finish() const { return m_finish; }

private:
    QByteArray m_directory;
    QVector<LogFinding> m_findings;
    QString m_finish;
};

/// Text of the log: in the local 8-bit encoding, else UTF-8, else GBK, of which the manager writes one line.
QString decodeLog(const QByteArray& bytes);
