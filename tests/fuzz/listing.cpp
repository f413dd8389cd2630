// One importer's listing parser, chosen when this is compiled by LISTINGPARSER. The records it
// writes are held against what the loader expects of a symbol file.
#include "fuzz.h"

#include "importers/parsers.h"
#include "importers/symbolfile.h"
#include "tool/options.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <unistd.h>

namespace {

constexpr size_t longestLine = 255;

// Every object's header comes from its dump's name; SGI listings bring their own.
[[maybe_unused]] void parse(void (*parser)(LISTING *, const char *, RECORDS *), LISTING *listing,
                            RECORDS *records) {
    recordobject(records, "object.o");
    parser(listing, "object.o", records);
    recordsize(records);
}

[[maybe_unused]] void parse(void (*parser)(LISTING *, RECORDS *), LISTING *listing,
                            RECORDS *records) {
    parser(listing, records);
}

void checkline(std::string_view line) {
    fuzzrequire(line.size() <= longestLine, "a line is too long");
    for (const char *start : {"[", "source=", "define=", "refer=", "size=", "\n", "]"})
        if (line.substr(0, strlen(start)) == start)
            return;
    fuzzrequire(false, "a line is of no known kind");
}

void checkrecords(const char *path) {
    FILE *file = fopen(path, "r");
    fuzzrequire(file != nullptr, "cannot read the records");
    char *line = nullptr;
    size_t room = 0;
    ssize_t length = 0;
    while ((length = getline(&line, &room, file)) > 0)
        checkline({line, static_cast<size_t>(length)});
    free(line);
    fclose(file);
}

} // namespace

void fuzzinput(const std::string &input) {
    static char path[] = "/tmp/tolvik-fuzz-XXXXXX";
    static const int made = mkstemp(path);
    static LISTING listing;
    static RECORDS records;
    if (input.empty())
        return;
    fuzzrequire(made >= 0 && ftruncate(made, 0) == 0, "cannot make a file for the records");
    FILE *file = fmemopen(const_cast<char *>(input.data()), input.size(), "r");
    fuzzrequire(file != nullptr, "cannot open the listing");
    fuzzrequire(openrecords(&records, path), "cannot open the records");
    startlisting(&listing, file);
    parse(LISTINGPARSER, &listing, &records);
    fuzzrequire(closerecords(&records, false), "cannot write the records");
    fclose(file);
    checkrecords(path);
}
