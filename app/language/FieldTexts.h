#pragma once

#include "xml/RecordWords.h"

#include <QString>

struct CustomInfo;
struct FieldRef;
struct Traits;

/// The text beside a field: its label in the catalogue.
QString labelText(const FieldRef& field);

/// What the windows show for a word.
QString wordText(const words::Word& word);

/// The words of a mask with semicolons between them; empty when there is none.
QString maskText(const words::List& list, quint64 mask);

/// What the read-only views show for a value of the list: its word, or the words of a mask; for a value beyond the list
/// what the list says, else the value itself.
QString wordsText(const words::List& list, const QString& stored);

/// What the read-only views show for a field.
///
/// @param value  as stored, a number in decimal digits
/// @param info   the whole record, for fields that other fields decide about
QString viewedText(const Traits& traits, const QString& value, const CustomInfo& info);
QString viewedText(const FieldRef& field, const CustomInfo& info);
