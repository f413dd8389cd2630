// SGI and Nintendo 64 objects and libraries, by `elfdump -t` on the source itself:
//
//     libx.a[foo.o]:
//       .symtab
//     [3]   main    0x00000000  124  GLOB  FUNC    .text
//     [4]   .text   0x00000000  124  LOCL  SECTION .text
//     [5]   printf  0x00000000  0    GLOB  OBJECT  UNDEF
//     index name    value       size binding type section
#include "importers/command.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"
#include "importers/tempdir.h"

#include <cstring>
#include <unistd.h>

namespace {

// Takes the index in brackets.
bool takeindex(std::string_view *text) {
    int32_t index = 0;
    return takeprefix(text, "[") && takedecimal(text, &index) && takeprefix(text, "]");
}

std::string_view typeword(std::string_view type) {
    if (type == "FUNC")
        return "FUNCTION";
    return type == "OBJECT" ? "DATA" : type;
}

// Writes the line of a symbol; returns the size of a section, 0 for others.
int32_t recordsymbol(std::string_view text, FILE *records) {
    std::string_view name;
    std::string_view value;
    std::string_view binding;
    std::string_view type;
    std::string_view section;
    int32_t size = 0;
    if (!takeindex(&text) || !takeword(&text, &name) || !takeword(&text, &value) ||
        !takedecimal(&text, &size) || !takeword(&text, &binding) || !takeword(&text, &type) ||
        !takeword(&text, &section))
        return 0;
    if (type == "SECTION")
        return size;
    if (section == "UNDEF")
        recordrefer(records, name);
    else
        recorddefine(records, name, typeword(type), binding, size);
    return 0;
}

int readlisting(FILE *listing, const char *symbolfile) {
    FILE *records = openrecords(symbolfile);
    int result = 0;
    if (records != nullptr) {
        sgiparse(listing, records);
        result = closerecords(records, symbolfile);
        unlink(TEMPFILE); // without a symbol file the listing stays
    }
    fclose(listing);
    return result;
}

} // namespace

// Skips the line after an object's symbols, whatever it holds.
void sgiparse(FILE *listing, FILE *records) {
    LINE line;
    while (nextline(listing, line)) {
        if (iswhite(line[0]))
            continue;
        // Without a ':' the line feed belongs to the name.
        recordobject(records, std::string_view(line).substr(0, strcspn(line, ":")));
        bool more = nextline(listing, line);
        while (more && line[0] != '[')
            more = nextline(listing, line);
        int64_t size = 0;
        while (more && line[0] == '[') {
            size += recordsymbol(line, records);
            more = nextline(listing, line);
        }
        recordsize(records, size);
    }
}

int sgitvk(const char *source, const char *symbolfile) {
    char command[COMMANDSIZE];
    if (access(source, R_OK) != 0 ||
        !makecommand(command, "elfdump -t ", source, " | grep -v NOTYPE > tvk0001.tmp"))
        return 0;
    FILE *listing = rundump(command, source) ? fopen(TEMPFILE, "re") : nullptr;
    return listing != nullptr ? readlisting(listing, symbolfile) : 0;
}
