#include "common/AddressRules.h"

#include <QRegExp>
#include <QStringList>

#include <algorithm>

bool isIPAddrLegal(const QString& address)
{
    const QStringList parts = address.split(QLatin1Char('.'), Qt::KeepEmptyParts);
    if (parts.size() != 4)
        return false;
    return std::all_of(parts.begin(), parts.end(), [](const QString& part) {
        bool isNumber = false;
        const int value = part.toInt(&isNumber, 10);
        return isNumber && value >= 0 && value <= 255;
    });
}

const char dottedAddressPattern[] = R"(^((([1-9]{0,1}|2[0-4]|1\d)\d|25[0-5])(\.|$)){4})";

bool isDottedAddress(const QString& address)
{
    return QRegExp(QLatin1String(dottedAddressPattern), Qt::CaseSensitive).exactMatch(address);
}
