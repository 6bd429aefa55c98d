#pragma once

#include <QByteArray>
#include <QString>

struct CustomInfo;

/// Writes a customisation with its verification file into `<root>/UpdateCustom/<name>/` of any installation, by way of
/// custom/ below the test executable. The name is the record's time stamp when none is given.
void storeCustomisation(const QString& root, const CustomInfo& record, const QString& name = QString());

/// The document of the record, as a commit writes it.
QByteArray documentOf(const CustomInfo& record);
