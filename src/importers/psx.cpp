// PlayStation objects and libraries, by `psylib` and `reverse /nop /macro`:
//
//     ; block addr=80010000 size=2C
//             XDEF    _main
//             XREF    printf
//
// The source file's name is in the object itself, after a folder called LIB:
//
//     C:\LIB\SRC\MAIN.C:
#include "base/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"
#include "search/directory.h"

#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr size_t headBytes = 256; // of the object; all but the last are searched

// Returns the text from the word on; empty when the text does not hold the word.
std::string_view fromword(std::string_view text, std::string_view word) {
    return fromcolumn(text, text.find(word));
}

bool secondword(std::string_view text, std::string_view *word) {
    std::string_view first;
    return takeword(&text, &first) && takeword(&text, word);
}

// Reads and terminates the object's first bytes; returns their number. O_NONBLOCK: a FIFO may have
// no writer.
size_t readhead(const char *object, char (&head)[headBytes]) {
    const int file = open(object, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const ssize_t got = file >= 0 ? read(file, head, headBytes - 1) : 0;
    if (file >= 0)
        close(file);
    const size_t length = got > 0 ? static_cast<size_t>(got) : 0;
    head[length] = 0;
    return length;
}

bool endsname(char c) {
    return charvalue(c) < ' ' || c == ':';
}

// Writes the symbols of a line and returns the size of its block.
int32_t recordline(std::string_view text, FILE *records) {
    std::string_view word;
    int32_t size = 0;
    if (text.find("; block addr=") != std::string_view::npos) {
        std::string_view digits = fromcolumn(fromword(text, "size="), strlen("size="));
        takehexadecimal(&digits, &size);
    }
    if (secondword(fromword(text, "XREF"), &word))
        recordrefer(records, word);
    if (secondword(fromword(text, "XDEF"), &word))
        recorddefine(records, word, "UNKNOWN", "GLOBAL", 0);
    return size;
}

constexpr TOOLCHAIN psxtoolchain = {
    .libraryExtension = ".lib",
    .memberPattern = "*.o*",
    .extract = "psylib /x /q ",
    .extractRelative = "psylib /x /q ..\\",
    .extractInside = true,
    .mustEnter = true,
    .dump = "reverse /nop /macro ",
    .dumpEnd = ">tvk0001.tmp",
    .source = psxsource,
    .parse = psxparse,
};

} // namespace

const char *TVKmemstr(const void *block, const char *needle, int length) {
    const size_t size = length > 0 ? static_cast<size_t>(length) : 0;
    const std::string_view bytes(static_cast<const char *>(block), size);
    const size_t position = bytes.find(needle);
    return size > 0 && position != std::string_view::npos ? bytes.data() + position : nullptr;
}

void psxsource(const char *object, FILE *records) {
    constexpr char folder[] = "\\LIB\\";
    char head[headBytes];
    const size_t length = readhead(object, head);
    const char *found = TVKmemstr(head, folder, static_cast<int>(length));
    if (found == nullptr)
        return;
    char *source = head + (found - head) + strlen(folder);
    char *end = source;
    while (!endsname(*end))
        ++end;
    *end = 0;
    lowertext(source);
    if (*source == 0)
        return;
    const int32_t date = BRAX_filedate(source);
    recordsource(records, source, &date);
}

int64_t psxparse(FILE *listing, FILE *records) {
    LINE line;
    int64_t size = 0;
    while (nextline(listing, line))
        size += recordline(line, records);
    return size;
}

int psxtvk(const char *source, const char *symbolfile) {
    return tvkwalk(&psxtoolchain, source, symbolfile);
}
