#include "importers/symbolfile.h"

#include "base/text.h"
#include "symbols/options.h"
#include "symbols/store.h"

#include <charconv>
#include <initializer_list>

namespace {

// Writes a line of these parts, which have at most SYMBOLLINE characters together.
void putline(FILE *records, std::initializer_list<std::string_view> parts) {
    char line[SYMBOLLINE];
    size_t length = 0;
    for (const std::string_view part : parts)
        length += part.copy(line + length, part.size());
    fwrite(line, 1, length, records);
}

using DIGITS = char[12];

std::string_view decimal(DIGITS &digits, int32_t number) {
    const char *end = std::to_chars(digits, digits + sizeof digits, number).ptr;
    return {digits, static_cast<size_t>(end - digits)};
}

} // namespace

FILE *openrecords(const char *path) {
    return fopen(path, "ae");
}

int closerecords(FILE *records, const char *path) {
    const bool failed = ferror(records) != 0;
    if (fclose(records) == 0 && !failed)
        return 1;
    toolsay("tolvik: ERROR: could not write '%s'\n", path);
    return 0;
}

void recordobject(FILE *records, std::string_view name) {
    std::string_view library = OPTlibrary;
    const size_t brackets = library.empty() ? 2 : 4;
    if (name.size() + library.size() + brackets + 1 > SYMBOLLINE) {
        name = name.substr(0, OBJECTLIMIT);
        library = library.substr(0, LIBRARYLIMIT);
    }
    if (library.empty())
        putline(records, {"[", name, "]\n"});
    else
        putline(records, {"[", name, "][", library, "]\n"});
}

void recordsource(FILE *records, std::string_view path, const int32_t *date) {
    DIGITS digits;
    const std::string_view comma = date != nullptr ? "," : "";
    const std::string_view number = date != nullptr ? decimal(digits, *date) : "";
    const std::string_view key = "source=";
    path = path.substr(0, SYMBOLLINE - key.size() - comma.size() - number.size() - 1);
    putline(records, {key, path, comma, number, "\n"});
}

// Cuts type and scope to their usual lengths when the line does not fit.
void recorddefine(FILE *records, std::string_view name, std::string_view type,
                  std::string_view scope, int32_t size) {
    constexpr size_t fixedLength = std::string_view("define=,,,-2147483648\n").size();
    name = name.substr(0, SYMBOLLIMIT);
    if (fixedLength + name.size() + type.size() + scope.size() > SYMBOLLINE) {
        type = type.substr(0, std::string_view("FUNCTION").size());
        scope = scope.substr(0, std::string_view("GLOBAL").size());
    }
    DIGITS digits;
    putline(records, {"define=", name, ",", type, ",", scope, ",", decimal(digits, size), "\n"});
}

void recordrefer(FILE *records, std::string_view name) {
    putline(records, {"refer=", name.substr(0, SYMBOLLIMIT), "\n"});
}

void recordsize(FILE *records, int64_t size) {
    DIGITS digits;
    putline(records, {"size=", decimal(digits, toint32(size)), "\n\n"});
}
