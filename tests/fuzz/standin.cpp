// Objects and libraries of every kind, through the stand-ins that list them.
#include "fuzz.h"

#include "shared/coff.h"
#include "shared/elfdump.h"
#include "shared/objdumplist.h"
#include "shared/objectkind.h"

#include <cstdlib>
#include <vector>

namespace {

constexpr size_t longestLine = 255; // line feed included

void checklines(const char *text, size_t size) {
    size_t length = 0;
    for (size_t i = 0; i < size; i++) {
        fuzzrequire(++length <= longestLine, "a line is too long for readers");
        length = text[i] == '\n' ? 0 : length;
    }
}

void listelf(BYTES bytes, DUMP *dump) {
    char *text = nullptr;
    size_t size = 0;
    FILE *null = dump->out;
    dump->out = open_memstream(&text, &size);
    fuzzrequire(dump->out != nullptr, "no memory");
    elfdump_list(dump, "input", bytes);
    fclose(dump->out);
    checklines(text, size);
    free(text);
    dump->out = null;
}

} // namespace

void fuzzinput(const std::string &input) {
    static FILE *const null = fopen("/dev/null", "w");
    static const OBJDUMPFORM gc = {8, true, false};
    static const OBJDUMPFORM ee = {16, false, true};
    fuzzrequire(null != nullptr, "cannot open /dev/null");
    // A block of the exact size, so that reading beyond it is found.
    const std::vector<unsigned char> block(input.begin(), input.end());
    const BYTES bytes = {block.data(), block.size()};
    DUMP dump = {"standin", null, null, 0};
    const FILEKIND kind = file_kind("input", bytes);
    complain_kind(&dump, "input", kind, KIND_ELF);
    listelf(bytes, &dump);
    if (kind.kind == KIND_ELF && !kind.library) {
        objdump_list(&dump, "input", bytes, &gc);
        objdump_list(&dump, "input", bytes, &ee);
    }
    if (kind.kind == KIND_COFF && !kind.library)
        coff_list(bytes, null);
}
