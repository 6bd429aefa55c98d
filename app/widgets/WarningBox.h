#pragma once

#include <QMessageBox>

/// The message box of the whole program: one Ok button, which is also the default, and the warning icon.
class WarningBox : public QMessageBox
{
public:
    /// @param titleKey  language key of the title; null leaves the title empty
    explicit WarningBox(const char* titleKey, QWidget* parent = nullptr);

    void setTitleKey(const char* titleKey);

    /// Shows the text of the key and waits for Ok.
    void say(const char* textKey);

    /// Shows the text of the key, then moves the focus to `focus` when one is given and announces its refusal. Always
    /// false, the answer of a check that failed.
    bool refuse(const char* textKey, QWidget* focus = nullptr);

    /// The same, where the focus moves before the text is shown.
    bool refuseAt(QWidget* focus, const char* textKey);
};

/// Tells screen readers why the field was refused: the reason describes it until the user edits it, presses a button of
/// its dialog's button box, or another field of the window is refused.
void announceRefusal(QWidget* field, const char* textKey);
