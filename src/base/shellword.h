// Names on their way into a command of the shell.
#pragma once

#include <cstddef>

// Whether the shell takes the character as it stands: letters, digits and _ . / + , : = @
// % ~ -
bool isshellsafe(char c);

// Writes the text so that the shell reads it as that very text: every character that is
// not safe gets a backslash in front of it, a line feed stands in single quotes (a
// backslash would make the shell drop it). False, with an empty destination, when the
// result does not fit `size` bytes.
bool shellword(char *destination, size_t size, const char *text);
