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

namespace {

constexpr size_t shortestLine = 24;

// The name without an encoded argument signature: f for f__Fi.
std::string_view withoutsignature(std::string_view name) {
    return name.substr(0, name.find("__F", 1));
}

void recordsymbol(std::string_view text, RECORDS *records) {
    std::string_view fields = fromcolumn(text, 17);
    std::string_view section;
    std::string_view name;
    int32_t size = 0;
    if (!takeword(&fields, &section) || !takehexadecimal(&fields, &size) ||
        !takeword(&fields, &name))
        return;
    name = withoutsignature(name);
    if (standsat(text, 14, "df"))
        recordsource(records, name);
    else if (text[9] == 'g' && text[15] == 'F')
        recorddefine(records, name, "FUNCTION", "GLOBAL", size);
    else if (section == "*UND*")
        recordrefer(records, name);
    addsize(records, size);
}

constexpr TOOLCHAIN gctoolchain = {
    .libraryExtension = ".a",
    .memberPattern = "*.o*",
    .extract = "ar -x ",
    .extractRelative = "ar -x ",
    .extractInside = true,
    .mustEnter = false,
    .dump = "gc-objdump -t ",
    .dumpEnd = " >tvk0001.tmp",
    .parse = gcparse,
};

} // namespace

void gcparse(LISTING *listing, const char *, RECORDS *records) {
    LINE line;
    skiplines(listing, 4);
    while (nextline(listing, &line) && line.ended) {
        if (fulllength(&line) >= shortestLine)
            recordsymbol(line.text, records);
    }
}

int gctvk(const char *source, const char *symbolfile) {
    return tvkwalk(&gctoolchain, source, symbolfile);
}
