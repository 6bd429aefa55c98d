#pragma once

class QString;

/// Brand of the installation: 0 `tqm`, 1 `wy`. 0 when the process starts.
extern unsigned char g_ucAreaCode;

/// Language codes of the settings.
constexpr unsigned long LANGUAGE_ENGLISH = 1033;
constexpr unsigned long LANGUAGE_CHINESE = 2052;

/// Reads the settings file and sets `g_ucAreaCode`.
///
/// @param settingsPath  config.ini of an installation
/// @param code          0 on entry; becomes 1033 (English) or 2052 (Chinese), by the settings or else by LANG
/// @return              true only when the settings name a known language
bool chooseLanguage(const QString& settingsPath, unsigned long& code);
