#pragma once

/// Goes over the characters, in UTF-8, that the parser takes just as they stand: no markup, entities, control
/// characters and the like. A zero byte has to stand at the end.
///
/// @param isBlank  made false by a character that is surely no space. The parser drops a text of nothing but spaces.
/// @return         the first byte that is none of those characters
const char* plainCharactersEnd(const char* text, bool& isBlank);
