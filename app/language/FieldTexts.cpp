#include "app/language/FieldTexts.h"

#include "app/language/LangText.h"
#include "xml/RecordRows.h"

#include <QStringList>

QString labelText(const FieldRef& field)
{
    return langText(field.label());
}

QString wordText(const words::Word& word)
{
    if (word.key)
        return langText(word.key);
    return QString::fromUtf8(word.text ? word.text : word.stored);
}

QString maskText(const words::List& list, quint64 mask)
{
    QStringList texts;
    for (const words::Word& word : list) {
        if ((mask & words::number(word)) != 0)
            texts.append(wordText(word));
    }
    return texts.join(QLatin1Char(';'));
}

QString wordsText(const words::List& list, const QString& stored)
{
    if (list.isMask()) {
        const QString text = maskText(list, stored.toULongLong());
        return text.isEmpty() ? stored : text;
    }
    for (const words::Word& word : list) {
        if (stored == QLatin1String(word.stored))
            return wordText(word);
    }
    return list.otherwise() ? wordText(*list.otherwise()) : stored;
}

QString viewedText(const Traits& traits, const QString& value, const CustomInfo& info)
{
    if (traits.viewedBy)
        return traits.viewedBy(info);
    return traits.viewed ? wordsText(*traits.viewed, value) : value;
}

QString viewedText(const FieldRef& field, const CustomInfo& info)
{
    return viewedText(field.traits(), field.text(info), info);
}
