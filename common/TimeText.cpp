#include "common/TimeText.h"

#include <cstdio>
#include <ctime>

QByteArray localTimeText(long long timeStamp)
{
    const time_t seconds = static_cast<time_t>(timeStamp);
    tm local = {};
    if (seconds < 1 || !localtime_r(&seconds, &local))
        return QByteArray();
    char text[96] = {};
    snprintf(text, sizeof text, "%4ld-%02d-%02d %02d:%02d:%02d", local.tm_year + 1900L, local.tm_mon + 1, local.tm_mday,
             local.tm_hour, local.tm_min, local.tm_sec);
    return QByteArray(text).left(23);
}
