// Quotes names for shell commands.
#pragma once

#include <cstddef>

// Returns whether the character needs no quoting: letters, digits and _ . / + , : = @ % ~ -
bool isshellsafe(char c);

// Writes the text as one shell word: a backslash before every unsafe character, single
// quotes around a line feed, because the shell drops one after a backslash. Returns false,
// with an empty destination, when the result does not fit into `size` bytes.
bool shellword(char *destination, size_t size, const char *text);
