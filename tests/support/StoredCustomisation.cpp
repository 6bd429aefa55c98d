#include "support/StoredCustomisation.h"

#include "common/CustomInfoVerify.h"
#include "support/Installation.h"
#include "xml/CustomInfo.h"
#include "xml/CustomInfoLoad.h"
#include "xml/CustomXmlParser.h"

#include <QDir>
#include <QFile>
#include <QTest>

CustomInfo storedRecord(quint64 timeStamp, const QString& timeString, const QString& remark, quint64 procomVal,
                        quint64 funcomVal)
{
    CustomInfo record;
    record.common.cusTimeStamp = timeStamp;
    record.common.cusTimeString = timeString;
    record.common.cusAddInfo = remark;
    record.common.procomVal = procomVal;
    record.common.funcomVal = funcomVal;
    return record;
}

QByteArray documentOf(const CustomInfo& record)
{
    CustomInfo copy = record;
    CustomXmlParser parser;
    formatCustomInfo(parser, copy);
    const QString path = installation::path(QStringLiteral("custom/OrvexCustom.xml"));
    QDir().mkpath(installation::path(QStringLiteral("custom")));
    parser.SaveFile(path);
    return installation::readFile(path);
}

void storeDocument(const QString& root, const QByteArray& document, const QString& name)
{
    const QString working = installation::path(QStringLiteral("custom/OrvexCustom.xml"));
    installation::writeFile(working, document);
    // One that is there would be removed by a command.
    QFile::remove(installation::path(QStringLiteral("custom/OrvexCustomXml.vrf")));
    unsigned long error = 0;
    QVERIFY(utl_GenCustomInfoVerify(&error, working.toLocal8Bit().data()));
    const QString target = root + QLatin1String("UpdateCustom/") + name + QLatin1Char('/');
    QDir().mkpath(target);
    for (const QString& file : {QStringLiteral("OrvexCustom.xml"), QStringLiteral("OrvexCustomXml.vrf")}) {
        QFile::remove(target + file);
        QVERIFY(QFile::copy(installation::path(QLatin1String("custom/") + file), target + file));
    }
}

void storeCustomisation(const QString& root, const CustomInfo& record, const QString& name)
{
    storeDocument(root, documentOf(record), name.isEmpty() ? QString::number(record.common.cusTimeStamp) : name);
}
