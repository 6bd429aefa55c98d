#include "inspect/InspectSupport.h"

#include "common/KeyGen.h"
#include "common/TimeText.h"
#include "support/Installation.h"
#include "support/StoredCustomisation.h"
#include "xml/CustomInfo.h"

#include <QCryptographicHash>
#include <QDirIterator>
#include <QFile>

#include <sys/stat.h>

QByteArray inspecting::verificationOf(const QByteArray& document, int seed)
{
    QByteArray random(240, '\0');
    for (int i = 0; i < random.size(); ++i)
        random[i] = char(uchar((i * 37 + 11 + seed) % 255));
    const unsigned char zeros[6] = {};
    unsigned char key[100] = {};
    unsigned long length = sizeof key;
    utl_KeyGen(zeros, sizeof zeros, key, &length);
    const QByteArray all =
        document + random + '\xFF' + QByteArray(31, '\0') + QByteArray(reinterpret_cast<char*>(key), int(length));
    return random + QCryptographicHash::hash(all, QCryptographicHash::Md5);
}

QByteArray inspecting::documentWithStamp(long long stamp, const QString& remark)
{
    CustomInfo record;
    record.common.cusTimeStamp = quint64(stamp);
    record.common.cusTimeString = QString::fromLatin1(localTimeText(stamp));
    record.common.cusAddInfo = remark;
    return documentOf(record);
}

void inspecting::store(const QString& root, const QString& name, const QByteArray& document, int seed)
{
    const QString directory = root + QLatin1String("UpdateCustom/") + name;
    installation::writeFile(directory + QLatin1String("/OrvexCustom.xml"), document);
    installation::writeFile(directory + QLatin1String("/OrvexCustomXml.vrf"), verificationOf(document, seed));
}

QByteArray inspecting::snapshot(const QString& directory)
{
    QByteArrayList lines;
    QDirIterator entries(directory, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QString entry = entries.next();
        struct stat status = {};
        lstat(QFile::encodeName(entry).constData(), &status);
        QByteArray line = QFile::encodeName(entry);
        for (const qint64 value :
             {qint64(status.st_mode), qint64(status.st_size), qint64(status.st_ino), qint64(status.st_mtim.tv_sec),
              qint64(status.st_mtim.tv_nsec), qint64(status.st_ctim.tv_sec), qint64(status.st_ctim.tv_nsec)})
            line += ' ' + QByteArray::number(value);
        if (S_ISREG(status.st_mode))
            line += ' ' + QByteArray::number(qint64(status.st_atim.tv_nsec)) + ' ' +
                    QCryptographicHash::hash(installation::readFile(entry), QCryptographicHash::Sha1).toHex();
        lines.append(line);
    }
    std::sort(lines.begin(), lines.end());
    return lines.join('\n');
}
