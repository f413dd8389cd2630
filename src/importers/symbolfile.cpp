#include "importers/symbolfile.h"

#include "base/text.h"
#include "symbols/options.h"
#include "symbols/store.h"

namespace {

// Precision of "%.*s".
int lengthof(std::string_view text) {
    return static_cast<int>(text.size());
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
    fprintf(records, "[%.*s]", lengthof(name), name.data());
    if (!library.empty())
        fprintf(records, "[%.*s]", lengthof(library), library.data());
    fputc('\n', records);
}

void recordsource(FILE *records, std::string_view path, const int32_t *date) {
    char end[16] = "\n";
    if (date != nullptr)
        snprintf(end, sizeof end, ",%d\n", *date);
    path = path.substr(0, SYMBOLLINE - std::string_view("source=").size() -
                              std::string_view(end).size());
    fprintf(records, "source=%.*s%s", lengthof(path), path.data(), end);
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
    fprintf(records, "define=%.*s,%.*s,%.*s,%d\n", lengthof(name), name.data(), lengthof(type),
            type.data(), lengthof(scope), scope.data(), size);
}

void recordrefer(FILE *records, std::string_view name) {
    name = name.substr(0, SYMBOLLIMIT);
    fprintf(records, "refer=%.*s\n", lengthof(name), name.data());
}

void recordsize(FILE *records, int64_t size) {
    fprintf(records, "size=%d\n\n", toint32(size));
}
