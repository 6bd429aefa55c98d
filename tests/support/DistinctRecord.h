#pragma once

#include <QStringList>

struct CustomInfo;

// Tests name the fields of a record by the paths of the catalogue, such as "x1/reauthTimes" or "sslvpn/remote/1/port".
// Two numbers that no document holds are fields as well, "sslvpn/remote/1/remoteSlot" and "domain/domainSlot", and the
// value of an icon is the path of its source.

/// A record that no mix-up of fields survives: no two numbers and no two texts in it are equal, none is a default, all
/// bool fields are true, all gates are open, and each list has two or three rows. All numbers are below 2^31, and the
/// secret texts fit the document, so that a document carries everything but the source paths of the icons and the two
/// slots.
CustomInfo distinctRecord();

/// A record with its defaults and as many rows in each list as the other has.
CustomInfo defaultsLike(const CustomInfo& other);

/// The fields that the record holds, in the order of the document, lists row by row; the slots come last.
QStringList fieldPaths(const CustomInfo& record);

/// A number or flag in decimal digits, or "true" or "false" where the document has these.
QString fieldValue(const CustomInfo& record, const QString& path);
void setField(CustomInfo& record, const QString& path, const QString& value);

/// The fields in which the two records differ, in the order of fieldPaths(); before them, where the lengths of two
/// lists differ, such as "vpnroute.size". Rows that only one of the records has are not compared.
QStringList differences(const CustomInfo& one, const CustomInfo& other);
