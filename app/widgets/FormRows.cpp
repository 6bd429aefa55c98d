#include "app/widgets/FormRows.h"

#include "app/language/FieldTexts.h"

void formrows::limit(QLineEdit* edit, const FieldRef& field)
{
    if (const int longest = field.traits().longest)
        edit->setMaxLength(longest);
}

void formrows::addWords(QComboBox* combo, const FieldRef& field)
{
    for (const words::Word& word : *field.traits().offered)
        combo->addItem(wordText(word));
}

bool formrows::selectWord(QComboBox* combo, const FieldRef& field, const CustomInfo& info)
{
    const words::List& list = *field.traits().offered;
    const QString stored = field.text(info);
    for (int position = 0; position < list.size(); ++position) {
        if (stored == QLatin1String(list.at(static_cast<std::size_t>(position)).stored)) {
            combo->setCurrentIndex(position);
            return true;
        }
    }
    return false;
}

void formrows::storeWord(const QComboBox* combo, const FieldRef& field, CustomInfo& info)
{
    const words::List& list = *field.traits().offered;
    if (combo->currentIndex() >= 0 && combo->currentIndex() < list.size())
        field.setText(info, QLatin1String(list.at(static_cast<std::size_t>(combo->currentIndex())).stored));
}

void formrows::showText(QLineEdit* edit, const QString& text)
{
    edit->setText(text);
    edit->setCursorPosition(0);
}

void formrows::showField(QLineEdit* edit, const FieldRef& field, const CustomInfo& info)
{
    showText(edit, viewedText(field, info));
}
