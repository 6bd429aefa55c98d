#pragma once

#include <QByteArray>
#include <QString>

struct CustomInfo;

/// A record with telling values in the fields that the history shows.
CustomInfo storedRecord(quint64 timeStamp, const QString& timeString, const QString& remark, quint64 procomVal = 3,
                        quint64 funcomVal = 1);

/// Writes a customisation with its verification file into `<root>/UpdateCustom/<name>/` of any installation, by way of
/// custom/ below the test executable. The name is the record's time stamp when none is given.
void storeCustomisation(const QString& root, const CustomInfo& record, const QString& name = QString());

/// The same with a document of any bytes, up to the longest that can be verified.
void storeDocument(const QString& root, const QByteArray& document, const QString& name);

/// The document of the record, as a commit writes it.
QByteArray documentOf(const CustomInfo& record);
