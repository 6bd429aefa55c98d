#include "app/language/LangText.h"

#include "app/language/CLanguageParser.h"

#include <mutex>

namespace {

CLanguageParser* s_table = nullptr;
std::function<void()> s_load; // set before there are threads
std::once_flag s_loaded;

} // namespace

CLanguageParser* languageTable()
{
    return s_table;
}

void setLanguageTable(CLanguageParser* table)
{
    s_table = table;
}

void setLanguageLoader(const std::function<void()>& load)
{
    s_load = load;
}

QString langText(const char* key)
{
    if (s_load)
        std::call_once(s_loaded, s_load);
    return s_table ? s_table->GetKey(key) : QStringLiteral("NULL");
}
