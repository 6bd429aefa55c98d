#pragma once

class CLanguageParser;
class QString;

/// The table of the program's texts, null while there is none. Set by the application object for its life; not owned.
CLanguageParser* languageTable();
void setLanguageTable(CLanguageParser* table);

/// The text of a language key from the program's table; "NULL" when it is missing or there is no table. Keys are whole
/// literals, never pasted together.
QString langText(const char* key);
