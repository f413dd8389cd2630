// PC and Xbox objects and libraries, by `wlib` and `dumpbin /symbols`:
//
//     COFF SYMBOL TABLE
//     000 00000000 DEBUG  notype       Filename     |  .file
//         C:\lib\real\game\a.c
//     00A 00000000 SECT2  notype ()    External     |  _WinMain@16
//     00B 00000000 UNDEF  notype       External     |  _printf
//         ^        ^                   ^               ^
//         4        13                  33              49  columns
//
//       Summary
//
//               1A .text
#include "base/text.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"
#include "search/directory.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr size_t pathColumn = 4;
constexpr size_t kindColumn = 13;
constexpr size_t scopeColumn = 33;
constexpr size_t nameColumn = 49;

bool iscounted(std::string_view section) {
    constexpr std::string_view counted[] = {"text", "data", "sdata", "idata", "bss"};
    return std::find(std::begin(counted), std::end(counted), section) != std::end(counted);
}

// Removes the first folder when it has this name, case ignored.
void skipfolder(std::string_view *path, std::string_view name) {
    if (path->size() >= name.size() && strnicmp(path->data(), name.data(), name.size()) == 0)
        *path = fromcolumn(*path, name.size() + 1);
}

// Returns the path without its drive, leading separator and the folders "lib" and "real".
std::string_view shortpath(std::string_view path) {
    if (wordat(path, 1, ":"))
        path.remove_prefix(2);
    if (!path.empty() && isseparator(path[0]))
        path.remove_prefix(1);
    skipfolder(&path, "lib");
    skipfolder(&path, "real");
    return path;
}

// Writes the source line from the second line after the heading.
void recordpath(FILE *listing, FILE *records) {
    LINE line;
    skiplines(listing, 1);
    if (!nextline(listing, line) || strlen(line) < pathColumn)
        return;
    char *path = line + pathColumn;
    path[strcspn(path, "\r\n")] = 0;
    const int32_t date = BRAX_filedate(path);
    recordsource(records, shortpath(path), &date);
}

// Returns the size of the sections in the summary, the rest of the listing.
int64_t summarysize(FILE *listing) {
    LINE line;
    int64_t total = 0;
    skiplines(listing, 1);
    while (nextline(listing, line)) {
        std::string_view text = line;
        std::string_view section;
        int32_t size = 0;
        if (!takehexadecimal(&text, &size))
            continue;
        skipwhite(&text);
        if (takeprefix(&text, ".") && takeword(&text, &section) && iscounted(section))
            total += size;
    }
    return total;
}

constexpr TOOLCHAIN pctoolchain = {
    .libraryExtension = ".lib",
    .memberPattern = "*.o*",
    .extract = "wlib -d=tvk0000 -x ",
    .extractRelative = "wlib -d=tvk0000 -x ",
    .dump = "dumpbin /symbols /out:tvk0001.tmp ",
    .dumpEnd = "",
    .parse = pcparse,
};

} // namespace

int64_t pcparse(FILE *listing, FILE *records) {
    LINE line;
    int64_t size = 0;
    while (nextline(listing, line)) {
        const std::string_view text = line;
        const bool external = wordat(text, scopeColumn, "External");
        std::string_view fields = fromcolumn(text, nameColumn);
        std::string_view name;
        if (text.starts_with("COFF SYMBOL TABLE")) {
            recordpath(listing, records);
        } else if (external && text.size() > nameColumn && wordat(text, kindColumn, "SECT")) {
            if (takeword(&fields, &name))
                recorddefine(records, name.substr(0, name.find('@')), "FUNCTION", "GLOBAL", 0);
        } else if (external && text.size() > scopeColumn + 8 && wordat(text, kindColumn, "UNDEF")) {
            if (takeword(&fields, &name) && name.find('@') == std::string_view::npos)
                recordrefer(records, name);
        } else if (wordat(text, 2, "Summary")) {
            size += summarysize(listing);
        }
    }
    return size;
}

int pctvk(const char *source, const char *symbolfile) {
    return tvkwalk(&pctoolchain, source, symbolfile);
}
