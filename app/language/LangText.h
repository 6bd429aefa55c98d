#pragma once

#include <functional>

class CLanguageParser;
class QString;

/// The table of the program's texts, null while there is none. Set by the application object for its life; not owned.
/// From any thread, as langText: once another table is set, nobody reads the former by langText any more.
CLanguageParser* languageTable();
void setLanguageTable(CLanguageParser* table);

/// Has the table made, and set, when langText is first called, by whichever thread; once in the life of the process.
/// For a program that often has no text to tell.
void setLanguageLoader(const std::function<void()>& load);

/// The text of a language key from the program's table; "NULL" when it is missing or there is no table. Keys are whole
/// literals, never pasted together.
QString langText(const char* key);
