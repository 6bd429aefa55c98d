#include "inspect/Command.h"
// In this lane only: each function moves to a file of its own.
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
