#include "inspect/Command.h"
#include "inspect/Html.h"
// In this lane only: each function moves to a file of its own.
ExitStatus runReport(const Invocation&)
{
    return Wrong;
}
ExitStatus runVerify(const Invocation&)
{
    return Wrong;
}
ExitStatus runWhich(const Invocation&)
{
    return Wrong;
}
ExitStatus runDoctor(const Invocation&)
{
    return Wrong;
}
ExitStatus runErrors(const Invocation&)
{
    return Wrong;
}
ExitStatus runExport(const Invocation&)
{
    return Wrong;
}
QByteArray comparisonPage(const Source&, const Source&, const QVector<Difference>&)
{
    return {};
}
