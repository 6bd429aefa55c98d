#include "app/language/LanguageChoice.h"

#include "common/Log.h"

#include <QFileInfo>
#include <QSettings>

#include <cstdlib>
#include <strings.h>

unsigned char g_ucAreaCode = 0;

namespace {

void readSettings(const QString& path, QString& language, QString& area)
{
    // A pipe in the place of the file must not block the program.
    if (!QFileInfo(path).isFile())
        return;
    QSettings settings(path, QSettings::IniFormat);
    settings.beginGroup(QStringLiteral("config"));
    language = settings.value(QStringLiteral("LangCode"), QVariant()).toString();
    area = settings.value(QStringLiteral("Area"), QVariant()).toString();
}

} // namespace

bool chooseLanguage(const QString& settingsPath, unsigned long& code)
{
    QString language;
    QString area;
    readSettings(settingsPath, language, area);
    logX(4, "GetCurrentLanguageCode LangCode: %s, area is %s", language.toLocal8Bit().constData(),
         area.toLocal8Bit().constData());

    bool known = false;
    if (code == 0) {
        if (language == QLatin1String("1033")) {
            code = LANGUAGE_ENGLISH;
            known = true;
        } else if (language == QLatin1String("2052")) {
            code = LANGUAGE_CHINESE;
            known = true;
        }
    }
    if (area == QLatin1String("wy")) {
        // Contract: this brand has no Chinese, whatever LangCode says.
        g_ucAreaCode = 1;
        code = LANGUAGE_ENGLISH;
        return known;
    }
    if (area == QLatin1String("tqm"))
        g_ucAreaCode = 0;
    if (code != 0)
        return known;

    logX(4, "GetCurrentLanguageCode:there is no information about current language, keep it same as the OS.");
    const char* environment = getenv("LANG");
    if (!environment) {
        code = LANGUAGE_ENGLISH;
        logX(4, "GetCurrentLanguageCode:getenv LANG is NULL,so set code = 1033.");
        return known;
    }
    logX(4, "GetCurrentLanguageCode getenv LANG is %s", environment);
    // Contract: these two spellings, and no others, mean Chinese.
    const bool isChinese = strcasecmp(environment, "Zn_CN.UTF-8") == 0 || strcasecmp(environment, "zh_CN.UTF-8") == 0;
    code = isChinese ? LANGUAGE_CHINESE : LANGUAGE_ENGLISH;
    return known;
}
