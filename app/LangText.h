#pragma once

class QString;

/// The text of a language key from the application's table; "NULL" when it is missing or there is no application.
/// Keys are whole literals, never pasted together.
QString langText(const char* key);
