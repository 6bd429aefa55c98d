#pragma once

#include "inspect/ProgramRun.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

/// Runs the program on the installation of the test.
namespace inspecting {

/// With `--store <root>` before the arguments.
program::Outcome inspect(const QStringList& arguments, const QStringList& wrapper = {});

/// With `--json`; the test fails when the output is no JSON, or the status another one.
QJsonArray inspectArray(const QStringList& arguments, int status, const QStringList& wrapper = {});
QJsonObject inspectObject(const QStringList& arguments, int status);

/// Wrong usage or unreadable input: nothing on standard output, one line on standard error with the text in it.
void compareComplaint(const program::Outcome& outcome, const QString& text);

} // namespace inspecting
