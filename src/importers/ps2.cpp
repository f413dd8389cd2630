// PlayStation 2 objects and libraries, by `ee-ar` and `ee-objdump --syms --full-contents`:
//
//     (an empty line)
//     foo.o:     file format elf32-littlemips
//     (an empty line)
//     SYMBOL TABLE:
//     0000000000000000 g     F .text	0000000000000040 main
//     0000000000000000         *UND*	0000000000000000 printf
//                      ^       ^
//                      17      25  columns: binding, section; a tab, the size and the name
//
//     Contents of section .rodata:
//      0000 67616d65 2f707332 2f72656e 6465722e  game/ps2/render.
//                          ^                     ^
//     column of the section's name: 21           43  the bytes as text
#include "base/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"

#include <cstring>

namespace {

constexpr size_t bindingColumn = 17;
constexpr size_t sectionColumn = 25;
constexpr size_t sizeWidth = 16;    // digits after the tab
constexpr size_t usedDigits = 8;    // the last eight are read
constexpr size_t titleColumn = 21;  // the section's name in its title
constexpr size_t textColumn = 43;   // bytes as text
constexpr size_t textWidth = 16;    // in one row
constexpr int sectionBytes = 16384; // of the contents are searched
constexpr int sourceBytes = 256;

// Writes the symbols up to an empty line and returns their size.
int64_t recordsymbols(FILE *listing, FILE *records) {
    LINE line;
    LINE name;
    char type[32];
    char scope[32];
    int64_t total = 0;
    int size = 0;
    while (nextline(listing, line) && line[0] != '\n') {
        if (ps2_parse_line(line, name, type, scope, &size) == 0)
            continue;
        if (strcmp(type, "unknown") == 0)
            recordrefer(records, name);
        else
            recorddefine(records, name, type, scope, size);
        total += size;
    }
    return total;
}

// Reads up to and including the title of the section.
bool findsection(FILE *listing, const char *section) {
    LINE line = "";
    while (nextline(listing, line)) {
        // Most lines differ in this character, so that their length need not be known.
        if (line[titleColumn] == section[0] && wordat(line, titleColumn, section))
            return true;
    }
    return false;
}

bool findsource(FILE *listing, const char *section, char *source) {
    char text[sectionBytes];
    return ps2fgetsection(text, sizeof text, listing, section) != nullptr &&
           ps2fgetsourcename(source, sourceBytes, text) != nullptr;
}

constexpr TOOLCHAIN ps2toolchain = {
    .libraryExtension = ".a",
    .memberPattern = "*.o",
    .extract = "ee-ar x ",
    .extractRelative = "ee-ar x ..\\",
    .extractInside = true,
    .mustEnter = true,
    .dump = "ee-objdump --syms --full-contents ",
    .dumpEnd = ">tvk0001.tmp",
    .parse = ps2parse,
};

} // namespace

int ps2_parse_line(const char *line, char *name, char *type, char *scope, int *size) {
    const std::string_view text(line, strcspn(line, "\n"));
    const size_t tab = text.find('\t');
    if (text.size() <= bindingColumn || tab == std::string_view::npos)
        return 0;
    const char binding = text[bindingColumn];
    const std::string_view found = fromcolumn(text, tab + 1 + sizeWidth + 1);
    if ((binding != 'g' && binding != ' ') || found.empty())
        return 0;
    *size = 0;
    copytext(type, "unknown", 32);
    if (binding == 'g') {
        std::string_view section = fromcolumn(text, sectionColumn);
        section = section.substr(0, section.find('\t'));
        std::string_view digits = text.substr(tab + 1 + sizeWidth - usedDigits, usedDigits);
        if (!ishexdigit(digits[0]) || !takehexadecimal(&digits, size))
            return 0;
        copytext(type, section == ".text" ? "FUNCTION" : "DATA", 32);
    }
    copytext(name, found.data(), found.size(), sizeof(LINE));
    copytext(scope, "GLOBAL", 32);
    return 1;
}

char *ps2fgetsection(char *buffer, int size, FILE *file, const char *section) {
    LINE line;
    size_t used = 0;
    if (size < 1)
        return nullptr;
    buffer[0] = 0;
    rewind(file);
    if (!findsection(file, section))
        return nullptr;
    for (int64_t needed = textWidth; needed < size; needed += textWidth) {
        if (!nextline(file, line) || line[0] == '\n')
            break;
        line[strcspn(line, "\n")] = 0;
        const std::string_view text = fromcolumn(line, textColumn).substr(0, textWidth);
        memcpy(buffer + used, text.data(), text.size());
        used += text.size();
    }
    buffer[used] = 0;
    return buffer;
}

char *ps2fgetsourcename(char *name, int size, const char *text) {
    if (size < 1)
        return nullptr;
    name[0] = 0;
    const char *start = strstr(text, "cmn/");
    if (start == nullptr)
        start = strstr(text, "ps2/");
    const char *dot = start != nullptr ? strchr(start, '.') : nullptr;
    const char *end = dot != nullptr ? strchr(dot + 1, '.') : nullptr;
    if (end == nullptr)
        return nullptr;
    copytext(name, start, static_cast<size_t>(end - start), static_cast<size_t>(size));
    return name;
}

int64_t ps2parse(FILE *listing, FILE *records) {
    char source[sourceBytes];
    skiplines(listing, 4);
    const int64_t size = recordsymbols(listing, records);
    if (findsource(listing, "rodata", source) || findsource(listing, "mdebug", source))
        recordsource(records, source, nullptr);
    return size;
}

int ps2tvk(const char *source, const char *symbolfile) {
    return tvkwalk(&ps2toolchain, source, symbolfile);
}
