#pragma once

#include "inspect/Source.h"
#include "xml/Catalogue.h"

#include <QJsonValue>

/// A field with what is told of it. Secrets read "******" when they are set and are not to be shown.
struct FieldValue
{
    const Field* field = nullptr;
    int row = 0;
    QString path;
    QString label; // as the manager shows it, or the element's name where no window shows the field
    QString value; // as stored, secrets deciphered
    QString shown; // what the manager's detail views show, else the value
    bool isDefault = false;
    bool isSet = false;     // a secret that is not empty
    bool hasEffect = false; // its component is chosen
};

/// A field of a record; `row` counts the rows of its list.
FieldValue valueOf(const Field& field, int row, const CustomInfo& record, bool withSecrets);

/// All fields of a record, in the order of the document.
QVector<FieldValue> valuesOf(const CustomInfo& record, bool withSecrets);

/// The label of a field, of a section.
QString labelOf(const Field& field);
QString labelOf(const Section& section);

/// The position of the icon that a field names, -1 for any other field.
int iconOf(const Field& field);

/// What stands in place of a secret that is set.
extern const char maskedSecret[];

/// The words of the history's summary for the chosen components, SSL VPN before WLAN.
QStringList accessComponentsOf(quint64 procomVal);
QStringList functionComponentsOf(quint64 funcomVal);
/// The components that give a section effect; empty for always.
QStringList componentsOf(const Section& section);
