// Texts in a page, which is UTF-8. A byte that is not part of a UTF-8 character is written as the
// Latin-1 character of its value.
#pragma once

#include "report/output.h"

#include <string_view>

// Writes the text as a JSON string with quotes. It holds no '<', so that it ends no script element.
void putjson(OUTPUT *out, std::string_view text);

// Writes the text as HTML text.
void putmarkup(OUTPUT *out, std::string_view text);
