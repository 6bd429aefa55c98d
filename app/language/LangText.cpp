#include "app/language/LangText.h"

#include "app/language/CLanguageParser.h"

namespace {

CLanguageParser* s_table = nullptr;

} // namespace

CLanguageParser* languageTable()
{
    return s_table;
}

void setLanguageTable(CLanguageParser* table)
{
    s_table = table;
}

QString langText(const char* key)
{
    return s_table ? s_table->GetKey(key) : QStringLiteral("NULL");
}
