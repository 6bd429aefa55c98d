#include "soak/Soak.h"

#include <QJsonDocument>

#include <cstdio>

namespace soak {

int amount(const char* variable, int otherwise)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? number : otherwise;
}

void tell(const char* part, const QString& what, int times, const QString& outcome)
{
    const QJsonObject line = {{QStringLiteral("part"), QString::fromLatin1(part)},
                              {QStringLiteral("what"), what},
                              {QStringLiteral("times"), times},
                              {QStringLiteral("outcome"), outcome}};
    printf("%s\n", QJsonDocument(line).toJson(QJsonDocument::Compact).constData());
    fflush(stdout);
}

} // namespace soak
