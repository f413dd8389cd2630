// PlayStation objects and libraries, by `psylib` and `reverse /nop /macro`:
//
//     ; block addr=80010000 size=2C
//             XDEF    _main
//             XREF    printf
//
// The source file's name stands in the object itself, behind a folder called LIB:
//
//     C:\LIB\SRC\MAIN.C:
#include "brax/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"
#include "search/directory.h"

#include <cstring>

namespace {

// The name is looked for in the beginning of the object; the last byte read is not looked at.
constexpr size_t headBytes = 256;

// The text from the word on; empty when the word is not in it.
std::string_view fromword(std::string_view text, std::string_view word) {
    const size_t position = text.find(word);
    return position != std::string_view::npos ? text.substr(position) : std::string_view();
}

// The word behind the first one.
bool secondword(std::string_view text, std::string_view *word) {
    if (!takeword(&text, word))
        return false;
    return takeword(&text, word);
}

size_t readhead(const char *object, char *head) {
    FILE *file = fopen(object, "re");
    if (file == nullptr)
        return 0;
    const size_t got = fread(head, 1, headBytes, file);
    fclose(file);
    return got < headBytes ? got : headBytes - 1;
}

bool endsname(char c) {
    return charvalue(c) < ' ' || c == ':';
}

void readsource(const char *object, RECORDS *records) {
    constexpr char folder[] = "\\LIB\\";
    char head[headBytes];
    const size_t length = readhead(object, head);
    head[length < headBytes ? length : headBytes - 1] = 0;
    const char *found = TVKmemstr(head, folder, static_cast<int>(length));
    if (found == nullptr)
        return;
    char *source = head + (found - head) + strlen(folder);
    char *end = source;
    while (!endsname(*end))
        ++end;
    *end = 0;
    lowertext(source);
    if (*source != 0)
        recordsource(records, source, BRAX_filedate(source));
}

void readline(std::string_view text, RECORDS *records) {
    std::string_view word;
    if (text.find("; block addr=") != std::string_view::npos) {
        std::string_view size = fromword(text, "size=");
        int32_t bytes = 0;
        if (!size.empty()) {
            size.remove_prefix(strlen("size="));
            if (takehexadecimal(&size, &bytes))
                addsize(records, bytes);
        }
    }
    if (secondword(fromword(text, "XREF"), &word))
        recordrefer(records, word);
    if (secondword(fromword(text, "XDEF"), &word))
        recorddefine(records, word, "UNKNOWN", "GLOBAL", 0);
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
    .parse = psxparse,
};

} // namespace

const char *TVKmemstr(const void *block, const char *needle, int length) {
    const size_t size = length > 0 ? static_cast<size_t>(length) : 0;
    const std::string_view bytes(static_cast<const char *>(block), size);
    const size_t position = bytes.find(needle);
    return size > 0 && position != std::string_view::npos ? bytes.data() + position : nullptr;
}

void psxparse(LISTING *listing, const char *object, RECORDS *records) {
    LINE line;
    readsource(object, records);
    while (nextline(listing, &line))
        readline(line.text, records);
}

int psxtvk(const char *source, const char *symbolfile) {
    return tvkwalk(&psxtoolchain, source, symbolfile);
}
