#pragma once

#include <QThread>

/// Bits of the package mask.
enum PackageMask : unsigned long
{
    PackageSetup = 1,
    PackageUpdate = 2,
    PackageCusUpd = 4
};

/// Runs the package generators one after the other, once every worker that came before is done. It holds copies only
/// and talks through its two signals. Nobody waits for it or deletes it: the object lives until the process ends.
class WorkThread : public QThread
{
    Q_OBJECT

public:
    /// @param mask       sum of PackageMask values
    /// @param timeStamp  the customisation's time in seconds since the epoch
    WorkThread(unsigned long mask, unsigned long timeStamp);

signals:
    /// One line for the user, in the current language.
    void stepInfo(QString line);
    /// The result of the last step that ran, false when none did.
    void finishPacket(bool result);

protected:
    void run() override;

private:
    void tell(const char* key);

    unsigned long m_ulGenMask;
    unsigned long m_ulTimeStamp;
};
