#pragma once

#include <QStringList>

struct CustomInfo;

/// A record that no mix-up of fields survives: no two numbers and no two texts in it are equal, none is a default, all
/// bool fields are true, all gates are open, and each list has two or three rows. All numbers are below 2^31, and the
/// secret texts fit the document, so that a document carries everything but the source paths of the icons and the two
/// slots.
CustomInfo distinctRecord();

/// The names of the fields in which the two records differ, in the order of the members, such as "x1.reauthTimes",
/// "sslvpn.remote[1].port", or "vpnRoutes.size" where the lengths of two lists differ; rows that only one of the
/// records has are not compared.
QStringList differences(const CustomInfo& one, const CustomInfo& other);
