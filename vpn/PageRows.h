#pragma once

#include "app/language/LangText.h"
#include "ui_QVPNAdvProperty.h"

/// The rows of which the tables of the VPN pages are made, and the loops over them. `Section` is the part of the record
/// that a page edits.
namespace rows {

using Widgets = Ui_QVPNAdvProperty;

struct LabelRow
{
    QLabel* Widgets::*label;
    const char* key;
};

struct CheckRow
{
    QCheckBox* Widgets::*box;
    const char* key;
};

/// A text field without condition. The storing is the page's: each text has its own check.
template <class Section> struct EditRow
{
    QLineEdit* Widgets::*edit;
    int maxLength;
    QString Section::*field;
};

/// QLineEdit's own limit.
constexpr int anyLength = 32767;

class Items
{
public:
    template <int count> constexpr Items(const char* const (&texts)[count]) : m_begin(texts), m_end(texts + count) {}
    const char* const* begin() const { return m_begin; }
    const char* const* end() const { return m_end; }

private:
    const char* const* m_begin;
    const char* const* m_end;
};

template <class Section> struct ComboRow
{
    QComboBox* Widgets::*combo;
    Items items;
    QString Section::*field;
};

template <class Rows> void showLabels(Widgets& ui, const Rows& rows)
{
    for (const LabelRow& row : rows)
        (ui.*row.label)->setText(langText(row.key));
}

template <class Rows> void showCheckBoxes(Widgets& ui, const Rows& rows)
{
    for (const CheckRow& row : rows)
        (ui.*row.box)->setText(langText(row.key));
}

/// The length limit comes first, so that it cuts a longer text of the record.
template <class Section, int count>
void loadEdits(Widgets& ui, const EditRow<Section> (&rows)[count], const Section& section)
{
    for (const EditRow<Section>& row : rows) {
        (ui.*row.edit)->setMaxLength(row.maxLength);
        (ui.*row.edit)->setText(section.*row.field);
    }
}

template <class Section> void fillCombo(Widgets& ui, const ComboRow<Section>& row)
{
    for (const char* item : row.items)
        (ui.*row.combo)->addItem(QLatin1String(item));
}

/// A text that is none of the items leaves the combo box where it is.
template <class Section> void selectCombo(Widgets& ui, const ComboRow<Section>& row, const Section& section)
{
    const int index = (ui.*row.combo)->findText(section.*row.field, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (index >= 0)
        (ui.*row.combo)->setCurrentIndex(index);
}

template <class Section, int count> void fillCombos(Widgets& ui, const ComboRow<Section> (&rows)[count])
{
    for (const ComboRow<Section>& row : rows)
        fillCombo(ui, row);
}

template <class Section, int count>
void selectCombos(Widgets& ui, const ComboRow<Section> (&rows)[count], const Section& section)
{
    for (const ComboRow<Section>& row : rows)
        selectCombo(ui, row, section);
}

template <class Section, int count>
void storeCombos(const Widgets& ui, const ComboRow<Section> (&rows)[count], Section& section)
{
    for (const ComboRow<Section>& row : rows)
        section.*row.field = (ui.*row.combo)->currentText();
}

} // namespace rows
