#pragma once

#include <QByteArray>

/// Local time of a time stamp in the form "%4d-%02d-%02d %02d:%02d:%02d" (year to second), at most 23 bytes; empty for
/// a stamp below 1 and for one that has no local time.
///
/// @param timeStamp  seconds since the epoch
QByteArray localTimeText(long long timeStamp);
