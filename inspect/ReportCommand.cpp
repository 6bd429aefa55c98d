#include "inspect/Command.h"
#include "inspect/Html.h"
#include "inspect/Markdown.h"
#include "inspect/Output.h"
#include "inspect/Translation.h"

ExitStatus runReport(const Invocation& call)
{
    if (call.has("html") && call.has("markdown"))
        return Invocation::wrong(translated("--html and --markdown: give one of them"));
    if (call.isJson())
        return Invocation::wrong(translated("report has no --json; `orvex-inspect show` has"));
    const std::unique_ptr<Source> source = openSource(call, call.arguments().first());
    if (!source)
        return Wrong;
    const ReportStyle style = reportStyleOf(call);
    const QByteArray text = call.has("markdown") ? reportMarkdown(*source, style) : reportPage(*source, style);
    return output::writeTo(call.value("output"), text) ? Fine : Wrong;
}
