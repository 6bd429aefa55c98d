#pragma once

#include "inspect/Source.h"

#include <QString>
#include <QStringList>
#include <QVector>

// What a report tells, whatever its form. All texts are as stored: each form escapes them in its own way.

/// How a report or comparison is made.
struct ReportStyle
{
    QString clientVersion; // display form
    QString language;      // of labels and words: "en" or "zh"
    bool withSecrets = false;
};

struct ReportField
{
    QString path;
    QString label;
    QString shown;
    bool isDefault = false;
    int icon = -1; // position of the icon that it names, where the document does
};

struct ReportSection
{
    QString title;
    QStringList columns; // of its list; empty where there is none
    QVector<QStringList> rows;
    QVector<ReportField> fields;
};

/// As the call asks; takes the version from the language file of its first store.
ReportStyle reportStyleOf(const Invocation& call);

/// Time, components, remark, client version, source and verification: name and text.
QVector<QStringList> reportHead(const Source& source, const ReportStyle& style);

/// The sections with effect, in the order of the document.
QVector<ReportSection> reportSections(const Source& source, const ReportStyle& style);

/// File name, size and SHA-256 of an icon; that it is missing, when it is.
QString iconCaption(const Source& source, int icon);

/// The words of the program's own that reports need and the language files have not.
namespace reportwords {

extern const char source[];
extern const char verification[];
extern const char verified[];
extern const char notVerified[];
extern const char none[];
extern const char defaults[];
extern const char comparison[];
extern const char noDifference[];
extern const char field[];
extern const char value[];
extern const char bytes[];
extern const char missing[];

} // namespace reportwords
