#include "common/PortRules.h"

#include <QString>

namespace {

std::optional<quint32> within(quint64 lowest, quint64 port)
{
    if (port < lowest || port > quint64(highestPort))
        return std::nullopt;
    return static_cast<quint32>(port);
}

} // namespace

bool isSignedPortFromOne(const QString& port)
{
    const int number = port.toInt(nullptr, 10);
    return number >= 1 && number <= highestPort;
}

bool isUnsignedPortFromOne(const QString& port)
{
    return unsignedPortNumberFromOne(port).has_value();
}

std::optional<quint32> unsignedPortNumberFromOne(const QString& port)
{
    return within(1, port.toULong(nullptr, 10));
}

bool isSignedPortFromZero(const QString& port)
{
    return within(0, static_cast<unsigned int>(port.toInt(nullptr, 10))).has_value();
}

std::optional<quint32> signedPortNumberFromZero(const QString& port)
{
    return within(0, static_cast<unsigned long>(port.toLong(nullptr, 10)));
}

std::optional<quint32> unsignedPortNumberFromZero(const QString& port)
{
    return within(0, port.toULong(nullptr, 10));
}
