// Each toolchain's listing parser, which the first byte chooses. The records must be what the
// loader expects of a symbol file.
#include "fuzz.h"

#include "importers/parsers.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr size_t longestLine = 255; // line feed included

void checkrecords(const std::string &text) {
    for (size_t at = 0; at < text.size();) {
        const size_t end = text.find('\n', at);
        fuzzrequire(end != std::string::npos && end - at < longestLine,
                    "a line is too long or has no end");
        bool known = false;
        for (const char *start : {"[", "source=", "define=", "refer=", "size=", "\n", "]"})
            known = known || text.compare(at, strlen(start), start) == 0;
        fuzzrequire(known, "a line is of no known kind");
        at = end + 1;
    }
}

template <int64_t (*PARSER)(FILE *, FILE *)> void parseobject(FILE *listing, FILE *records) {
    recordobject(records, "object.o");
    recordsize(records, PARSER(listing, records));
}

} // namespace

void fuzzlisting(const std::string &input) {
    static const std::string choices = "gpx2s";
    void (*const parsers[])(FILE *, FILE *) = {parseobject<gcparse>, parseobject<pcparse>,
                                               parseobject<psxparse>, parseobject<ps2parse>,
                                               sgiparse};
    if (input.size() < 2 || choices.find(input[0]) == std::string::npos)
        return;
    char *text = nullptr;
    size_t size = 0;
    FILE *listing = fmemopen(const_cast<char *>(input.data() + 1), input.size() - 1, "r");
    FILE *records = open_memstream(&text, &size);
    fuzzrequire(listing != nullptr && records != nullptr, "cannot open the listing");
    parsers[choices.find(input[0])](listing, records);
    fclose(listing);
    fclose(records);
    checkrecords(std::string(text, size));
    free(text);
}
