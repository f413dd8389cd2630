// One importer's listing parser, chosen when this is compiled by LISTINGPARSER. The records it
// writes are held against what the loader expects of a symbol file.
#include "fuzz.h"

#include "importers/parsers.h"
#include "importers/symbolfile.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace {

constexpr size_t longestLine = 255;

// Every object's header comes from its dump's name; SGI listings have their own.
[[maybe_unused]] void parse(int64_t (*parser)(FILE *, FILE *), FILE *listing, FILE *records) {
    recordobject(records, "object.o");
    recordsize(records, parser(listing, records));
}

[[maybe_unused]] void parse(void (*parser)(FILE *, FILE *), FILE *listing, FILE *records) {
    parser(listing, records);
}

void checkline(std::string_view line) {
    fuzzrequire(line.size() <= longestLine, "a line is too long");
    for (const char *start : {"[", "source=", "define=", "refer=", "size=", "\n", "]"})
        if (line.substr(0, strlen(start)) == start)
            return;
    fuzzrequire(false, "a line is of no known kind");
}

} // namespace

void fuzzinput(const std::string &input) {
    char *text = nullptr;
    size_t size = 0;
    if (input.empty())
        return;
    FILE *listing = fmemopen(const_cast<char *>(input.data()), input.size(), "r");
    FILE *records = open_memstream(&text, &size);
    fuzzrequire(listing != nullptr && records != nullptr, "cannot open the listing");
    parse(LISTINGPARSER, listing, records);
    fclose(listing);
    fclose(records);
    std::string_view rest(text, size);
    while (!rest.empty()) {
        const size_t end = rest.find('\n');
        fuzzrequire(end != std::string_view::npos, "the last line is not ended");
        checkline(rest.substr(0, end + 1));
        rest.remove_prefix(end + 1);
    }
    free(text);
}
