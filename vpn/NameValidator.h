#pragma once

#include <QRegExpValidator>

/// Takes tunnel and gateway names: at least one character, and only those that the pattern's class lists.
///
/// The bare `]` in the pattern closes the class early, QRegExp cannot compile what follows, and a plain
/// QRegExpValidator would then refuse every key stroke. Contract: the pattern stays letter for letter as it is, and the
/// answer is given by the characters that it lists.
class NameValidator : public QRegExpValidator
{
public:
    explicit NameValidator(QObject* parent);

    State validate(QString& input, int& position) const override;
};
