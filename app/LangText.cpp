#include "app/LangText.h"

#include "app/myapplication.h"

QString langText(const char* key)
{
    const CMyApplication* application = CMyApplication::current();
    return application ? application->m_LanguageParser.GetKey(key) : QStringLiteral("NULL");
}
