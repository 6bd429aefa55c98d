#pragma once

#include <QJsonObject>

/// What the soak script (scripts/soak.sh) has in common with the tests that it runs at length.
namespace soak {

/// How often to try: the number in the environment variable, without it `otherwise`.
int amount(const char* variable, int otherwise);

/// Prints a line of JSON for the table: what was tried, how often, and what came of it.
void tell(const char* part, const QString& what, int times, const QString& outcome);

} // namespace soak
