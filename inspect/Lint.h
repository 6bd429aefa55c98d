#pragma once

#include "inspect/Source.h"

#include <QString>
#include <QVector>

/// A piece of advice on a customisation.
struct Advice
{
    enum Level
    {
        Error,   // the client will not work
        Warning, // it will hardly do what was meant
        Note
    };

    const char* code;
    Level level;
    QString path; // of the field, or of the list
    QString message;
};

/// "error", "warning" or "note".
const char* levelName(Advice::Level level);

/// What may go wrong with a customisation, in the order of the rules; of one rule in the order of the document. Only
/// what has effect is looked at: components that are chosen, and in them what is switched on.
QVector<Advice> adviceOn(const Source& source);
