#pragma once

#include "app/language/LangText.h"
#include "xml/RecordRows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <type_traits>
#include <variant>

/// The plain controls of the dialogs and views as rows of tables: one list for texts, load and store. `Ui` is the class
/// of the form. Labels, words and limits come from the catalogue of the record; a row that shows another text than the
/// catalogue's label carries its own key.
namespace formrows {

/// A language key: a literal, or that of a field's label.
class Key
{
public:
    constexpr Key(const char* literal) : m_literal(literal) {}
    constexpr Key(const FieldRef& field) : m_label(field.label) {}
    const char* get() const { return m_label ? m_label() : m_literal; }

private:
    const char* m_literal = nullptr;
    const char* (*m_label)() = nullptr;
};

/// A control that only shows a text.
template <class Ui> struct Caption
{
    std::variant<QCheckBox * Ui::*, QRadioButton * Ui::*, QPushButton * Ui::*, QLabel * Ui::*, QGroupBox * Ui::*>
        control;
    Key key;
};

/// A check box for a flag, which is stored as 0 or 1.
template <class Ui> struct Flag
{
    QCheckBox* Ui::*box;
    FieldRef field;
    const char* key = nullptr;
};

/// A line edit with its label, loaded and stored as it stands.
template <class Ui> struct Text
{
    QLineEdit* Ui::*edit;
    QLabel* Ui::*label;
    FieldRef field;
    const char* key = nullptr;
};

/// A combo box with its label, for the words that the catalogue offers.
template <class Ui> struct Choice
{
    QComboBox* Ui::*combo;
    QLabel* Ui::*label;
    FieldRef field;
    const char* key = nullptr;
};

/// A check box of a view. A page is the tab that the row stands on.
template <class View, class Ui> struct ReadOnlyFlag
{
    QWidget* Ui::*page;
    QCheckBox* Ui::*box;
    FieldRef field;
    void (View::*undo)(); // slot of clicked()
    const char* key = nullptr;
};

enum Filling
{
    FromRecord,
    ByView // the view fills it, where more than the field decides whether it is shown
};

/// A line edit of a view with its label.
template <class Ui> struct ReadOnlyText
{
    QWidget* Ui::*page;
    QLabel* Ui::*label;
    QLineEdit* Ui::*edit;
    FieldRef field;
    Filling filling = FromRecord;
    const char* key = nullptr;
};

/// The text of a row: that of its own key, or the catalogue's label.
template <class Row> QString labelOf(const Row& row)
{
    return langText(row.key ? row.key : row.field.label());
}

template <class Ui, std::size_t count> void setTexts(const Ui& ui, const Caption<Ui> (&rows)[count])
{
    for (const Caption<Ui>& row : rows) {
        const QString text = langText(row.key.get());
        std::visit(
            [&](auto control) {
                if constexpr (std::is_same_v<decltype(control), QGroupBox * Ui::*>)
                    (ui.*control)->setTitle(text);
                else
                    (ui.*control)->setText(text);
            },
            row.control);
    }
}

template <class Ui, std::size_t count> void setTexts(const Ui& ui, const Flag<Ui> (&rows)[count])
{
    for (const Flag<Ui>& row : rows)
        (ui.*row.box)->setText(labelOf(row));
}

template <class View, class Ui, std::size_t count>
void setTexts(const Ui& ui, const ReadOnlyFlag<View, Ui> (&rows)[count])
{
    for (const ReadOnlyFlag<View, Ui>& row : rows)
        (ui.*row.box)->setText(labelOf(row));
}

/// Sets the labels of texts and choices.
template <class Ui, template <class> class Row, std::size_t count>
void setTexts(const Ui& ui, const Row<Ui> (&rows)[count])
{
    for (const Row<Ui>& row : rows)
        (ui.*row.label)->setText(labelOf(row));
}

template <class Ui, std::size_t count> void load(const Ui& ui, const Flag<Ui> (&rows)[count], const CustomInfo& info)
{
    for (const Flag<Ui>& row : rows)
        (ui.*row.box)->setChecked(row.field.number(info) != 0);
}

template <class Ui, std::size_t count> void store(const Ui& ui, const Flag<Ui> (&rows)[count], CustomInfo& info)
{
    for (const Flag<Ui>& row : rows)
        row.field.setNumber(info, (ui.*row.box)->isChecked() ? 1 : 0);
}

/// Sets the edit's length to the field's limit, if there is one.
void limit(QLineEdit* edit, const FieldRef& field);

/// The length limits come first, so that they cut a longer text of the record.
template <class Ui, std::size_t count> void load(const Ui& ui, const Text<Ui> (&rows)[count], const CustomInfo& info)
{
    for (const Text<Ui>& row : rows) {
        limit(ui.*row.edit, row.field);
        (ui.*row.edit)->setText(row.field.text(info));
    }
}

template <class Ui, std::size_t count> void store(const Ui& ui, const Text<Ui> (&rows)[count], CustomInfo& info)
{
    for (const Text<Ui>& row : rows)
        row.field.setText(info, (ui.*row.edit)->text());
}

/// Adds the words that the catalogue offers for the field.
void addWords(QComboBox* combo, const FieldRef& field);
/// Selects the word that the record holds. False, with the selection as it was, when it holds none of them.
bool selectWord(QComboBox* combo, const FieldRef& field, const CustomInfo& info);
/// Stores the selected word. With nothing selected the record keeps what it has.
void storeWord(const QComboBox* combo, const FieldRef& field, CustomInfo& info);

template <class Ui, std::size_t count> void addWords(const Ui& ui, const Choice<Ui> (&rows)[count])
{
    for (const Choice<Ui>& row : rows)
        addWords(ui.*row.combo, row.field);
}

/// A value that is none of the words leaves the combo box where it is.
template <class Ui, std::size_t count> void load(const Ui& ui, const Choice<Ui> (&rows)[count], const CustomInfo& info)
{
    for (const Choice<Ui>& row : rows)
        selectWord(ui.*row.combo, row.field, info);
}

template <class Ui, std::size_t count> void store(const Ui& ui, const Choice<Ui> (&rows)[count], CustomInfo& info)
{
    for (const Choice<Ui>& row : rows)
        storeWord(ui.*row.combo, row.field, info);
}

/// Sets the text and shows it from its start.
void showText(QLineEdit* edit, const QString& text);
/// Shows what the views show for the field.
void showField(QLineEdit* edit, const FieldRef& field, const CustomInfo& info);

template <class View, class Ui, std::size_t count>
void connectClicks(View* view, const Ui& ui, const ReadOnlyFlag<View, Ui> (&rows)[count])
{
    for (const ReadOnlyFlag<View, Ui>& row : rows)
        QObject::connect(ui.*row.box, &QCheckBox::clicked, view, row.undo);
}

/// Fills the boxes of one page.
template <class View, class Ui, std::size_t count>
void fill(const Ui& ui, const ReadOnlyFlag<View, Ui> (&rows)[count], const QWidget* page, const CustomInfo& info)
{
    for (const ReadOnlyFlag<View, Ui>& row : rows) {
        if (ui.*row.page == page)
            (ui.*row.box)->setChecked(row.field.number(info) != 0);
    }
}

/// Fills the texts of one page.
template <class Ui, std::size_t count>
void fill(const Ui& ui, const ReadOnlyText<Ui> (&rows)[count], const QWidget* page, const CustomInfo& info)
{
    for (const ReadOnlyText<Ui>& row : rows) {
        if (ui.*row.page == page && row.filling == FromRecord)
            showField(ui.*row.edit, row.field, info);
    }
}

/// Sets the box back to the record.
template <class View, class Ui, std::size_t count>
void undoClick(const Ui& ui, const ReadOnlyFlag<View, Ui> (&rows)[count], const QCheckBox* box, const CustomInfo& info)
{
    for (const ReadOnlyFlag<View, Ui>& row : rows) {
        if (ui.*row.box == box)
            (ui.*row.box)->setChecked(row.field.number(info) != 0);
    }
}

} // namespace formrows
