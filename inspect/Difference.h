#pragma once

#include "inspect/Source.h"

#include <QString>
#include <QVector>

/// A field, or the order of a list, in which two customisations differ.
struct Difference
{
    QString path; // with the row's position in A, or in B for a row that only B has
    QString label;
    // Null (QString()) where the side has no such row, or no icon; empty texts are not null.
    QString a;
    QString b;
    QString shownA; // as the manager's detail views show the values
    QString shownB;
};

/// Compares two customisations field by field in the order of the document. Rows of lists are matched by their names
/// (a domain by its name, a gateway by its display name, a route by its destination), rows of one name in their order.
/// Icons are compared by their bytes, and told by their SHA-256 in hexadecimal digits.
///
/// @param all          also time and remark, and what has effect in neither
/// @param withSecrets  otherwise secrets that differ read "******" where they are set
QVector<Difference> compare(const Source& a, const Source& b, bool all, bool withSecrets);
