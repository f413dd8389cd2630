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
#include "brax/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"

#include <cstring>

namespace {

constexpr size_t bindingColumn = 17;
constexpr size_t sectionColumn = 25;
constexpr size_t sizeWidth = 16;    // digits behind the tab
constexpr size_t usedDigits = 8;    // the last ones of them
constexpr size_t titleColumn = 21;  // section name in front of its contents
constexpr size_t textColumn = 43;   // bytes as text
constexpr size_t textWidth = 16;    // in one row
constexpr int sectionBytes = 16384; // of the contents that are searched
constexpr int sourceBytes = 256;

struct PS2SYMBOL {
    std::string_view name;
    const char *type; // null for one that is only referred to
    int32_t size;
};

// The size of a defined symbol, whose digits stand behind the tab.
bool readsize(std::string_view digits, int32_t *size) {
    std::string_view used = fromcolumn(digits.substr(0, sizeWidth), sizeWidth - usedDigits);
    return !used.empty() && ishexdigit(used[0]) && takehexadecimal(&used, size);
}

// `text` is a line without its line feed.
bool readsymbol(std::string_view text, PS2SYMBOL *symbol) {
    const size_t tab = text.find('\t');
    if (text.size() <= bindingColumn || tab == std::string_view::npos)
        return false;
    const char binding = text[bindingColumn];
    symbol->name = fromcolumn(text, tab + 1 + sizeWidth + 1);
    if (symbol->name.empty())
        return false;
    if (binding == ' ') {
        symbol->type = nullptr;
        symbol->size = 0;
        return true;
    }
    if (binding != 'g')
        return false;
    const std::string_view rest = fromcolumn(text, sectionColumn);
    symbol->type = rest.substr(0, rest.find('\t')) == ".text" ? "FUNCTION" : "DATA";
    return readsize(fromcolumn(text, tab + 1), &symbol->size);
}

void readsymbols(LISTING *listing, RECORDS *records) {
    LINE line;
    PS2SYMBOL symbol = {};
    while (nextline(listing, &line) && !isemptyline(&line)) {
        if (!readsymbol(line.text, &symbol))
            continue;
        if (symbol.type == nullptr) {
            recordrefer(records, symbol.name);
            continue;
        }
        recorddefine(records, symbol.name, symbol.type, "GLOBAL", symbol.size);
        addsize(records, symbol.size);
    }
}

// Moves to the line behind the section's title.
bool findsection(LISTING *listing, std::string_view section) {
    LINE line;
    while (nextline(listing, &line)) {
        if (standsat(line.text, titleColumn, section))
            return true;
    }
    return false;
}

// Collects as ps2fgetsection does, with the listing at the file's beginning.
bool getsection(LISTING *listing, char *buffer, int size, std::string_view section) {
    LINE line;
    size_t used = 0;
    if (!findsection(listing, section))
        return false;
    for (int64_t room = textWidth; room < size; room += textWidth) {
        if (!nextline(listing, &line) || isemptyline(&line))
            break;
        const std::string_view text = fromcolumn(line.text, textColumn).substr(0, textWidth);
        memcpy(buffer + used, text.data(), text.size());
        used += text.size();
    }
    buffer[used] = 0;
    return true;
}

bool sourcefrom(LISTING *listing, const char *section, char *source) {
    char text[sectionBytes];
    rewind(listing->file);
    startlisting(listing, listing->file);
    return getsection(listing, text, sizeof text, section) &&
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
    PS2SYMBOL symbol = {};
    if (!readsymbol({line, strcspn(line, "\n")}, &symbol))
        return 0;
    copytext(name, symbol.name.data(), symbol.name.size(), NAMELIMIT + 1);
    copytext(type, symbol.type != nullptr ? symbol.type : "unknown", 32);
    copytext(scope, "GLOBAL", 32);
    *size = symbol.size;
    return 1;
}

char *ps2fgetsection(char *buffer, int size, FILE *file, const char *section) {
    LISTING listing;
    if (size < 1)
        return nullptr;
    buffer[0] = 0;
    rewind(file);
    startlisting(&listing, file);
    return getsection(&listing, buffer, size, section) ? buffer : nullptr;
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

void ps2parse(LISTING *listing, const char *, RECORDS *records) {
    char source[sourceBytes];
    skiplines(listing, 4);
    readsymbols(listing, records);
    if (sourcefrom(listing, "rodata", source) || sourcefrom(listing, "mdebug", source))
        recordsource(records, source);
}

int ps2tvk(const char *source, const char *symbolfile) {
    return tvkwalk(&ps2toolchain, source, symbolfile);
}
