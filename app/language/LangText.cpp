#include "app/language/LangText.h"

#include "app/language/CLanguageParser.h"

#include <mutex>

namespace {

// Held while a text is looked up: a worker may still speak when the table goes.
std::mutex s_use;
CLanguageParser* s_table = nullptr;
std::function<void()> s_load; // set before there are threads
std::once_flag s_loaded;

} // namespace

CLanguageParser* languageTable()
{
    const std::lock_guard<std::mutex> use(s_use);
    return s_table;
}

void setLanguageTable(CLanguageParser* table)
{
    const std::lock_guard<std::mutex> use(s_use);
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
    const std::lock_guard<std::mutex> use(s_use);
    return s_table ? s_table->GetKey(key) : QStringLiteral("NULL");
}
