#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QStringList>

/// Runs the real executable `orvex-inspect`.
namespace program {

struct Outcome
{
    int status = -1;
    QByteArray output;
    QByteArray errors;
};

/// `environment` are settings such as "LANG=C"; COLUMNS is 100 unless told otherwise. `wrapper` are a program and its
/// arguments, which runs the executable.
Outcome run(const QStringList& arguments, const QStringList& environment = {}, const QStringList& wrapper = {});

/// The answer of a call with --json; the test fails when it is no array, or no object.
QJsonArray array(const QStringList& arguments);
QJsonObject object(const QStringList& arguments);

} // namespace program
