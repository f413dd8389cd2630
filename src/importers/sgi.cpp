// SGI and Nintendo 64 objects and libraries, by `elfdump -t` on the source itself:
//
//     libx.a[foo.o]:
//       .symtab
//     [3]   main    0x00000000  124  GLOB  FUNC    .text
//     [4]   .text   0x00000000  124  LOCL  SECTION .text
//     [5]   printf  0x00000000  0    GLOB  OBJECT  UNDEF
//     index name    value       size binding type section
#include "importers/command.h"
#include "importers/dumpfile.h"
#include "importers/importers.h"
#include "importers/importwalk.h"
#include "importers/parsers.h"
#include "importers/process.h"
#include "importers/tempdir.h"
#include "tool/options.h"

namespace {

// Takes the index in brackets.
bool takeindex(std::string_view *text) {
    int32_t index = 0;
    text->remove_prefix(1);
    if (!takedecimal(text, &index) || !standsat(*text, 0, "]"))
        return false;
    text->remove_prefix(1);
    return true;
}

std::string_view typeword(std::string_view type) {
    if (type == "FUNC")
        return "FUNCTION";
    return type == "OBJECT" ? "DATA" : type;
}

void readsymbol(std::string_view text, RECORDS *records) {
    std::string_view name;
    std::string_view value;
    std::string_view binding;
    std::string_view type;
    std::string_view section;
    int32_t size = 0;
    if (!takeindex(&text) || !takeword(&text, &name) || !takeword(&text, &value) ||
        !takedecimal(&text, &size) || !takeword(&text, &binding) || !takeword(&text, &type) ||
        !takeword(&text, &section))
        return;
    if (type == "SECTION")
        addsize(records, size);
    else if (section == "UNDEF")
        recordrefer(records, name);
    else
        recorddefine(records, name, typeword(type), binding, size);
}

// Takes lines until one that begins an object; false at the end.
bool findobject(LISTING *listing, LINE *line) {
    while (nextline(listing, line)) {
        if (!line->text.empty() && !iswhite(line->text[0]))
            return true;
    }
    return false;
}

// The name goes up to the first ':'; without one the line end belongs to it.
void readheader(const LINE *line, RECORDS *records) {
    const size_t colon = line->text.find(':');
    if (colon == std::string_view::npos && reachesend(line))
        recordbrokenobject(records, line->text);
    else
        recordobject(records, line->text.substr(0, colon));
}

int readlisting(FILE *file, const char *symbolfile) {
    LISTING listing;
    RECORDS records;
    if (!openrecords(&records, symbolfile)) {
        fclose(file);
        return 0;
    }
    startlisting(&listing, file);
    sgiparse(&listing, &records);
    const bool whole = closerecords(&records, interrupted());
    fclose(file);
    letgodump(false);
    return whole ? 1 : 0;
}

} // namespace

// The line that ends the symbols of an object is passed over, whatever it is.
void sgiparse(LISTING *listing, RECORDS *records) {
    LINE line;
    while (!records->failed && findobject(listing, &line)) {
        readheader(&line, records);
        bool more = nextline(listing, &line);
        while (more && !standsat(line.text, 0, "["))
            more = nextline(listing, &line);
        while (more && standsat(line.text, 0, "[")) {
            readsymbol(line.text, records);
            more = nextline(listing, &line);
        }
        if (interrupted())
            return;
        recordsize(records);
    }
}

int sgitvk(const char *source, const char *symbolfile) {
    char command[COMMANDSIZE];
    if (!isimportable(source) ||
        !makecommand(command, "elfdump -t ", source, " | grep -v NOTYPE > tvk0001.tmp"))
        return 0;
    holdworkdir();
    beginimport();
    int result = 0;
    if (claimdump(true)) {
        runcommand(command);
        FILE *file = interrupted() ? nullptr : opendump();
        result = file != nullptr ? readlisting(file, symbolfile) : 0;
        letgodump(file != nullptr); // without a symbol file the listing stays
    } else if (!interrupted()) {
        toolsay("tolvik: ERROR: '%s' is in the way or cannot be made\n", TEMPFILE);
    }
    endimport();
    return result;
}
