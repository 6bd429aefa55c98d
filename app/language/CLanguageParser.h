#pragma once

#include "app/language/PlainTexts.h"
#include "xml/CBasedQtXmlParser.h"

#include <QMap>

/// The table of shown texts by key. Keys are opaque and compared with case.
class CLanguageParser : public CBasedQtXmlParser
{
public:
    CLanguageParser();
    ~CLanguageParser() override;

    /// Merges a language file into the table: its keys overwrite, all others keep their texts. An entry without key or
    /// text changes nothing. The document itself is not kept. Always 1, also when the file cannot be read.
    int LoadLanguage(QString path);

    /// The text of the key, or "NULL" when no file had it. From any thread, also while another loads a file.
    QString GetKey(const char* key) const;

private:
    /// Keys and texts of the document that was loaded, some of them perhaps empty.
    LanguageTexts textsOfTree();

    QMap<QString, QString> m_mapTexts;
};
