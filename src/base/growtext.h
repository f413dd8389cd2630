// A text that grows as needed, for names and paths of any length.
#pragma once

#include <cstdint>

// Start with {}; release with growfree.
struct GROWTEXT {
    char *text; // null until something was put in; from then on terminated
    int64_t length;
    int64_t room;
};

// Makes sure that the text can be written up to `bytes` bytes, terminator included; what it
// holds stays. False when memory runs out, with nothing changed.
bool growroom(GROWTEXT *text, int64_t bytes);

// Puts a piece behind the text. False when memory runs out, with nothing changed.
bool growappend(GROWTEXT *text, const char *piece);
bool growappend(GROWTEXT *text, const char *piece, int64_t length);

// Sets the text to the piece, under the same terms.
bool growset(GROWTEXT *text, const char *piece);

// Cuts the text to a length that it has or had; it must hold something.
void growcut(GROWTEXT *text, int64_t length);

void growfree(GROWTEXT *text);
