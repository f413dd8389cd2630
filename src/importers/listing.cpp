#include "importers/listing.h"

#include "brax/text.h"
#include "importers/process.h"

#include <algorithm>
#include <cstring>

namespace {

// Moves what is left to the front of the buffer and reads on behind it; false at the end.
bool fill(LISTING *listing) {
    const size_t left = static_cast<size_t>(listing->end - listing->next);
    if (interrupted())
        return false;
    memmove(listing->buffer, listing->next, left);
    const size_t got =
        fread(listing->buffer + left, 1, sizeof listing->buffer - left, listing->file);
    listing->next = listing->buffer;
    listing->end = listing->buffer + left + got;
    return got > 0;
}

// Moves to the line feed that ends the line whose beginning stays in the front half of the
// buffer; false when the file ends before.
bool skiprest(LISTING *listing) {
    char *rest = listing->buffer + LINELIMIT;
    size_t got = static_cast<size_t>(listing->end - rest);
    while (got > 0) {
        const void *feed = memchr(rest, '\n', got);
        if (feed != nullptr) {
            listing->next = static_cast<const char *>(feed) + 1;
            return true;
        }
        got = interrupted() ? 0 : fread(rest, 1, sizeof listing->buffer - LINELIMIT, listing->file);
        listing->end = rest + got;
    }
    listing->next = rest;
    listing->end = rest;
    return false;
}

// Hands out `length` characters, or what is in front of a zero byte in them.
void setline(LINE *line, const char *text, size_t length, bool ended) {
    const void *zero = memchr(text, 0, length);
    if (zero != nullptr)
        length = static_cast<size_t>(static_cast<const char *>(zero) - text);
    *line = {{text, length}, ended};
}

} // namespace

void startlisting(LISTING *listing, FILE *file) {
    listing->file = file;
    listing->next = listing->buffer;
    listing->end = listing->buffer;
}

bool nextline(LISTING *listing, LINE *line) {
    size_t searched = 0;
    while (true) {
        const char *text = listing->next;
        const size_t length = static_cast<size_t>(listing->end - text);
        const void *feed = memchr(text + searched, '\n', length - searched);
        if (feed != nullptr) {
            listing->next = static_cast<const char *>(feed) + 1;
            const size_t taken = static_cast<size_t>(listing->next - text) - 1;
            setline(line, text, taken < LINELIMIT ? taken : LINELIMIT, true);
            return true;
        }
        if (text == listing->buffer && length == sizeof listing->buffer) {
            setline(line, text, LINELIMIT, skiprest(listing));
            return true;
        }
        searched = length;
        if (fill(listing))
            continue;
        listing->next = listing->end;
        setline(line, listing->end - length, length < LINELIMIT ? length : LINELIMIT, false);
        return length > 0 && !interrupted();
    }
}

bool skiplines(LISTING *listing, int count) {
    LINE line;
    while (count > 0 && nextline(listing, &line))
        --count;
    return count == 0;
}

namespace {

void skipwhite(std::string_view *text) {
    size_t count = 0;
    while (count < text->size() && iswhite((*text)[count]))
        ++count;
    text->remove_prefix(count);
}

// The digit's value; the radix or more for any other character.
int digitvalue(char c) {
    if (isdigitchar(c))
        return c - '0';
    return isletter(c) ? lowerchar(c) - 'a' + 10 : 99;
}

bool takenumber(std::string_view *text, int radix, int32_t *number) {
    skipwhite(text);
    const bool negative = standsat(*text, 0, "-");
    if (negative || standsat(*text, 0, "+"))
        text->remove_prefix(1);
    if (radix == 16 && (standsat(*text, 0, "0x") || standsat(*text, 0, "0X")))
        text->remove_prefix(2);
    size_t count = 0;
    int64_t value = 0;
    for (; count < text->size() && digitvalue((*text)[count]) < radix; ++count)
        value = value > INT32_MAX ? value : value * radix + digitvalue((*text)[count]);
    text->remove_prefix(count);
    value = negative ? -value : value;
    *number = static_cast<int32_t>(std::clamp<int64_t>(value, INT32_MIN, INT32_MAX));
    return count > 0;
}

} // namespace

bool ishexdigit(char c) {
    return digitvalue(c) < 16;
}

bool takeword(std::string_view *text, std::string_view *word) {
    skipwhite(text);
    size_t length = 0;
    while (length < text->size() && !iswhite((*text)[length]))
        ++length;
    *word = text->substr(0, length);
    text->remove_prefix(length);
    return length > 0;
}

bool takedecimal(std::string_view *text, int32_t *number) {
    return takenumber(text, 10, number);
}

bool takehexadecimal(std::string_view *text, int32_t *number) {
    return takenumber(text, 16, number);
}
