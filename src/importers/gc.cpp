// GameCube objects and libraries, by GNU ar and `gc-objdump -t`:
//
//     (an empty line)
//     foo.o:     file format elf32-powerpc
//     (an empty line)
//     SYMBOL TABLE:
//     00000000 l    df *ABS*	00000000 foo.c
//     00000000 g     F .text	00000024 main__Fv
//     00000000         *UND*	00000000 printf
//              ^    ^^ ^
//              9   14  17  columns: binding, kind, and section, size, name
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"

#include <cstring>

namespace {

constexpr size_t shortestLine = 24;

// Returns the name without an encoded argument signature: f for f__Fi.
std::string_view withoutsignature(std::string_view name) {
    return name.substr(0, name.find("__F", 1));
}

// Writes the line of a symbol and returns its size.
int32_t recordsymbol(std::string_view text, FILE *records) {
    std::string_view fields = fromcolumn(text, 17);
    std::string_view section;
    std::string_view name;
    int32_t size = 0;
    if (!takeword(&fields, &section) || !takehexadecimal(&fields, &size) ||
        !takeword(&fields, &name))
        return 0;
    name = withoutsignature(name);
    if (wordat(text, 14, "df"))
        recordsource(records, name, nullptr);
    else if (text[9] == 'g' && text[15] == 'F')
        recorddefine(records, name, "FUNCTION", "GLOBAL", size);
    else if (section == "*UND*")
        recordrefer(records, name);
    return size;
}

constexpr TOOLCHAIN gctoolchain = {
    .libraryExtension = ".a",
    .memberPattern = "*.o*",
    .extract = "ar -x ",
    .extractRelative = "ar -x ",
    .extractInside = true,
    .dump = "gc-objdump -t ",
    .dumpEnd = " >tvk0001.tmp",
    .parse = gcparse,
};

} // namespace

// Ignores a last line without a line feed.
int64_t gcparse(FILE *listing, FILE *records) {
    LINE line;
    int64_t size = 0;
    skiplines(listing, 4);
    while (nextline(listing, line) && feof(listing) == 0) {
        if (strlen(line) >= shortestLine)
            size += recordsymbol(line, records);
    }
    return size;
}

int gctvk(const char *source, const char *symbolfile) {
    return tvkwalk(&gctoolchain, source, symbolfile);
}
