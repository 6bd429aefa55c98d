#pragma once

#include "app/language/LangText.h"

#include "ui_CustomAdvProperty.h"

#include <type_traits>
#include <variant>

// The rows of the tables that describe the plain controls of the advanced dialog, and the loops over them. Private to
// the sources of CustomAdvProperty.
namespace advanced {

using Widgets = Ui_CustomAdvProperty;

/// A control that only shows the text of its key.
struct CaptionRow
{
    std::variant<QCheckBox * Widgets::*, QRadioButton * Widgets::*, QPushButton * Widgets::*, QLabel * Widgets::*,
                 QGroupBox * Widgets::*>
        control;
    const char* key;
};

/// A check box for a flag of one section of the record, which is stored as 0 or 1.
template <class Section> struct FlagRow
{
    QCheckBox* Widgets::*box;
    const char* key;
    std::variant<quint32 Section::*, quint64 Section::*, bool Section::*> flag;
};

/// A line edit with its label for a text of one section, which is loaded and stored as it stands.
template <class Section> struct TextRow
{
    QLineEdit* Widgets::*edit;
    QLabel* Widgets::*label;
    const char* key;
    QString Section::*text;
};

template <std::size_t count> void setTexts(const Widgets& ui, const CaptionRow (&rows)[count])
{
    for (const CaptionRow& row : rows) {
        const QString text = langText(row.key);
        std::visit(
            [&](auto control) {
                if constexpr (std::is_same_v<decltype(control), QGroupBox * Widgets::*>)
                    (ui.*control)->setTitle(text);
                else
                    (ui.*control)->setText(text);
            },
            row.control);
    }
}

template <class Section, std::size_t count> void setTexts(const Widgets& ui, const FlagRow<Section> (&rows)[count])
{
    for (const FlagRow<Section>& row : rows)
        (ui.*row.box)->setText(langText(row.key));
}

template <class Section, std::size_t count> void setTexts(const Widgets& ui, const TextRow<Section> (&rows)[count])
{
    for (const TextRow<Section>& row : rows)
        (ui.*row.label)->setText(langText(row.key));
}

template <class Section, std::size_t count>
void load(const Widgets& ui, const FlagRow<Section> (&rows)[count], const Section& section)
{
    for (const FlagRow<Section>& row : rows)
        std::visit([&](auto flag) { (ui.*row.box)->setChecked(section.*flag != 0); }, row.flag);
}

template <class Section, std::size_t count>
void store(const Widgets& ui, const FlagRow<Section> (&rows)[count], Section& section)
{
    for (const FlagRow<Section>& row : rows)
        std::visit([&](auto flag) { section.*flag = (ui.*row.box)->isChecked() ? 1 : 0; }, row.flag);
}

template <class Section, std::size_t count>
void load(const Widgets& ui, const TextRow<Section> (&rows)[count], const Section& section)
{
    for (const TextRow<Section>& row : rows)
        (ui.*row.edit)->setText(section.*row.text);
}

template <class Section, std::size_t count>
void store(const Widgets& ui, const TextRow<Section> (&rows)[count], Section& section)
{
    for (const TextRow<Section>& row : rows)
        section.*row.text = (ui.*row.edit)->text();
}

} // namespace advanced
