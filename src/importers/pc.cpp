// PC and Xbox objects and libraries, by `wlib` and `dumpbin /symbols`:
//
//     COFF SYMBOL TABLE
//     000 00000000 DEBUG  notype       Filename     | .file
//         C:\lib\real\game\a.c
//     00A 00000000 SECT2  notype ()    External     | _WinMain@16
//     00B 00000000 UNDEF  notype       External     | _printf
//         ^        ^                   ^              ^
//         4        13                  33             49  columns
//
//       Summary
//
//               1A .text
#include "brax/options.h"
#include "brax/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"
#include "search/directory.h"

namespace {

constexpr size_t kindColumn = 13;
constexpr size_t scopeColumn = 33;
constexpr size_t nameColumn = 49;

bool isheading(std::string_view text) {
    return standsat(text, 0, "COFF SYMBOL TABLE");
}

bool iscode(std::string_view section) {
    constexpr std::string_view counted[] = {"text", "data", "sdata", "idata", "bss"};
    for (const std::string_view name : counted) {
        if (section == name)
            return true;
    }
    return false;
}

// Takes a word off the front in any case, with the separator behind it.
void passfolder(std::string_view *path, std::string_view word) {
    if (path->size() >= word.size() && strnicmp(path->data(), word.data(), word.size()) == 0)
        path->remove_prefix(path->size() > word.size() ? word.size() + 1 : word.size());
}

// The path without its drive, leading separator and the folders of the common libraries.
std::string_view shortpath(std::string_view path) {
    if (standsat(path, 1, ":"))
        path.remove_prefix(2);
    if (!path.empty() && isseparator(path[0]))
        path.remove_prefix(1);
    passfolder(&path, "lib");
    passfolder(&path, "real");
    return path;
}

// The path stands in the second line behind the heading.
void readsource(LISTING *listing, RECORDS *records) {
    LINE line;
    char path[BRAXFIELDSIZE];
    if (!skiplines(listing, 1) || !nextline(listing, &line))
        return;
    const std::string_view text = fromcolumn(line.text, 4);
    copytext(path, text.data(), text.substr(0, text.find('\r')).size(), sizeof path);
    const std::string_view source = shortpath(path);
    if (!source.empty())
        recordsource(records, source, BRAX_filedate(path));
}

void readsummary(LISTING *listing, RECORDS *records) {
    LINE line;
    skiplines(listing, 1);
    while (nextline(listing, &line)) {
        int32_t size = 0;
        std::string_view section;
        if (!takehexadecimal(&line.text, &size) || !takeword(&line.text, &section))
            continue;
        if (section[0] == '.' && iscode(section.substr(1)))
            addsize(records, size);
    }
}

void recorddefined(std::string_view text, RECORDS *records) {
    std::string_view fields = fromcolumn(text, nameColumn);
    std::string_view name;
    if (takeword(&fields, &name))
        recorddefine(records, name.substr(0, name.find('@')), "FUNCTION", "GLOBAL", 0);
}

void recordreferred(std::string_view text, RECORDS *records) {
    std::string_view fields = fromcolumn(text, nameColumn);
    std::string_view name;
    if (takeword(&fields, &name) && name.find('@') == std::string_view::npos)
        recordrefer(records, name);
}

constexpr TOOLCHAIN pctoolchain = {
    .libraryExtension = ".lib",
    .memberPattern = "*.o*",
    .extract = "wlib -d=tvk0000 -x ",
    .extractRelative = "wlib -d=tvk0000 -x ",
    .extractInside = false,
    .mustEnter = false,
    .dump = "dumpbin /symbols /out:tvk0001.tmp ",
    .dumpEnd = "",
    .parse = pcparse,
};

} // namespace

void pcparse(LISTING *listing, const char *, RECORDS *records) {
    LINE line;
    while (nextline(listing, &line)) {
        const size_t length = standsat(line.text, scopeColumn, "External") ? fulllength(&line) : 0;
        if (isheading(line.text))
            readsource(listing, records);
        else if (length > nameColumn && standsat(line.text, kindColumn, "SECT"))
            recorddefined(line.text, records);
        else if (length > scopeColumn + 8 && standsat(line.text, kindColumn, "UNDEF"))
            recordreferred(line.text, records);
        else if (standsat(line.text, 2, "Summary"))
            readsummary(listing, records);
    }
}

int pctvk(const char *source, const char *symbolfile) {
    return tvkwalk(&pctoolchain, source, symbolfile);
}
