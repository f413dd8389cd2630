// Objects and libraries of every kind, through the stand-ins that list them.
//
// Input: the file as hexadecimal digits. Any other character but a line feed counts as a digit too.
#include "fuzz.h"

#include "shared/coff.h"
#include "shared/elfdump.h"
#include "shared/objdumplist.h"
#include "shared/objectkind.h"

#include <cstdlib>

namespace {

constexpr size_t longestLine = 255; // line feed included

std::vector<unsigned char> decoded(const std::string &digits) {
    std::vector<unsigned char> bytes;
    unsigned value = 1;
    for (const char c : digits) {
        if (c == '\n')
            continue;
        value = value * 16 + static_cast<unsigned>(c >= 'a' ? c - 'a' + 10 : c) % 16;
        if (value < 256)
            continue;
        bytes.push_back(static_cast<unsigned char>(value));
        value = 1;
    }
    bytes.shrink_to_fit(); // so that the sanitizer finds a read after the end
    return bytes;
}

// Lists to memory, with every line as long as readers take.
void listelf(BYTES bytes, DUMP dump) {
    char *text = nullptr;
    size_t size = 0;
    dump.out = open_memstream(&text, &size);
    fuzzrequire(dump.out != nullptr, "no memory");
    elfdump_list(&dump, "input", bytes);
    fclose(dump.out);
    for (size_t i = 0, length = 1; i < size; ++i, ++length) {
        fuzzrequire(length <= longestLine, "a line is too long for readers");
        length = text[i] == '\n' ? 0 : length;
    }
    free(text);
}

} // namespace

void fuzzstandin(const std::string &input) {
    static FILE *const null = fopen("/dev/null", "w");
    static const OBJDUMPFORM gc = {8, true, false};
    static const OBJDUMPFORM ee = {16, false, true};
    fuzzrequire(null != nullptr, "cannot open /dev/null");
    const std::vector<unsigned char> block = decoded(input);
    const BYTES bytes = {block.data(), block.size()};
    DUMP dump = {"standin", null, null, 0};
    const FILEKIND kind = file_kind("input", bytes);
    complain_kind(&dump, "input", kind, KIND_ELF);
    listelf(bytes, dump);
    if (kind.kind == KIND_ELF && !kind.library) {
        objdump_list(&dump, "input", bytes, &gc);
        objdump_list(&dump, "input", bytes, &ee);
    }
    if (kind.kind == KIND_COFF && !kind.library)
        coff_list(bytes, null);
}
