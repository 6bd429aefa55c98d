#include "vpn/NameValidator.h"

#include <algorithm>

namespace {

constexpr char namePattern[] = R"([0-9a-zA-Z\x80-\xFF -.@_`~#$%^&*()+={[}]\|:;<>,'/]+)";

bool isWithin(QChar character, ushort first, ushort last)
{
    return character.unicode() >= first && character.unicode() <= last;
}

bool isListed(QChar character)
{
    return isWithin(character, '0', '9') || isWithin(character, 'a', 'z') || isWithin(character, 'A', 'Z') ||
           isWithin(character, 0x80, 0xFF) || isWithin(character, ' ', '.') ||
           QLatin1String(R"(@_`~#$%^&*()+={[}]\|:;<>,'/)").contains(character);
}

} // namespace

NameValidator::NameValidator(QObject* parent)
    : QRegExpValidator(QRegExp(QLatin1String(namePattern), Qt::CaseSensitive), parent)
{
}

QValidator::State NameValidator::validate(QString& input, int&) const
{
    if (input.isEmpty())
        return Intermediate;
    return std::all_of(input.cbegin(), input.cend(), isListed) ? Acceptable : Invalid;
}
