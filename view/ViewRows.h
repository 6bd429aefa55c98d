#pragma once

#include "app/language/LangText.h"
#include "xml/CustomInfo.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>

#include <type_traits>

/// The plain controls of the read-only views as rows: one list for texts, filling and the undoing of clicks. `Form` is
/// the form of the view, a page the tab that the row stands on.
namespace viewrows {

/// The field at the end of a path of members.
template <auto... path> const auto& fieldAt(const CustomInfo& info)
{
    // clang-format off
    return (info .* ... .* path);
    // clang-format on
}

/// The field as a flag; it is set when it is not 0.
template <auto... path> bool flag(const CustomInfo& info)
{
    return fieldAt<path...>(info) != 0;
}

/// The field as the view shows it, numbers in decimal.
template <auto... path> QString text(const CustomInfo& info)
{
    const auto& value = fieldAt<path...>(info);
    if constexpr (std::is_same_v<std::decay_t<decltype(value)>, QString>)
        return value;
    else
        return QString::number(value);
}

template <class View, class Form> struct BoxRow
{
    QWidget* Form::*page;
    QCheckBox* Form::*box;
    const char* key;
    bool (*isOn)(const CustomInfo&);
    void (View::*undo)(); // slot of clicked()
};

template <class Form> struct FieldRow
{
    QWidget* Form::*page;
    QLabel* Form::*label;
    const char* key;
    QLineEdit* Form::*field;
    QString (*text)(const CustomInfo&); // null: the view fills the field where more than the field's value decides
};

template <class Form> struct LabelRow
{
    QLabel* Form::*label;
    const char* key;
};

/// Sets the text and shows it from its start.
inline void showText(QLineEdit* field, const QString& text)
{
    field->setText(text);
    field->setCursorPosition(0);
}

template <class Form, class Rows> void setBoxTexts(const Form& ui, const Rows& rows)
{
    for (const auto& row : rows)
        (ui.*row.box)->setText(langText(row.key));
}

template <class Form, class Rows> void setLabelTexts(const Form& ui, const Rows& rows)
{
    for (const auto& row : rows)
        (ui.*row.label)->setText(langText(row.key));
}

template <class View, class Form, class Rows> void connectClicks(View* view, const Form& ui, const Rows& rows)
{
    for (const auto& row : rows)
        QObject::connect(ui.*row.box, &QCheckBox::clicked, view, row.undo);
}

template <class Form, class Rows>
void fillBoxes(const Form& ui, const Rows& rows, const QWidget* page, const CustomInfo& info)
{
    for (const auto& row : rows) {
        if (ui.*row.page == page)
            (ui.*row.box)->setChecked(row.isOn(info));
    }
}

template <class Form, class Rows>
void fillFields(const Form& ui, const Rows& rows, const QWidget* page, const CustomInfo& info)
{
    for (const auto& row : rows) {
        if (ui.*row.page == page && row.text)
            showText(ui.*row.field, row.text(info));
    }
}

/// Sets the box back to the record.
template <class Form, class Rows>
void undoClick(const Form& ui, const Rows& rows, const QCheckBox* box, const CustomInfo& info)
{
    for (const auto& row : rows) {
        if (ui.*row.box == box)
            (ui.*row.box)->setChecked(row.isOn(info));
    }
}

} // namespace viewrows
