/* Readers take "SECT" with "External" as a definition, and "UNDEF" with "External" as a reference.
   To match a linker:

   - a weak definition is an External symbol in the section of its default, and the default that the
     compiler adds for it (".weak.NAME...") is Static;
   - a weak reference, for which no linker searches a library, is WeakExternal;
   - common and absolute symbols are in the section "SECT-", which has no number;
   - the summary sums sections by their contents, because readers count few section names: code as
     .text, initialised data of any name as .data, other data as .bss. It omits sections that take
     no memory. */
#include "coff.h"

#include <stdint.h>
#include <string.h>
#include <string_view>

namespace {

enum { CLASS_EXTERNAL = 2, CLASS_STATIC = 3, CLASS_FILE = 103, CLASS_WEAK = 105 };
enum { SECTION_UNDEFINED = 0, SECTION_ABSOLUTE = -1, SECTION_COMMON = -3 };
enum { HOLDS_CODE = 0x20, HOLDS_DATA = 0x40, HOLDS_ZEROS = 0x80 };

constexpr size_t SHORTNAME = 8;
constexpr size_t HEADERSIZE = 20;
constexpr size_t BIGHEADERSIZE = 56;
constexpr size_t SECTIONSIZE = 40;
constexpr size_t SYMBOLSIZE = 18;
constexpr size_t LONGESTNAME = 205; // readers read 255 characters of a line, with columns
constexpr size_t LONGESTTEXT = 250; // of a name, and of a line after four columns

struct OBJECT {
    const unsigned char *bytes;
    size_t length;
    bool import; // an import record, which has no tables
    bool big;
    size_t sections; // offset of the table
    size_t sectionCount;
    size_t symbols; // offset of the table
    size_t symbolCount;
    size_t symbolSize;
    std::string_view strings;
    const char *fault; // null, or the first one found
};

struct SYMBOL {
    size_t index;
    std::string_view name;
    uint32_t value;
    int section; // from 1 on, or SECTION_...
    unsigned type;
    unsigned storage; // CLASS_...
    size_t auxiliary; // records that follow
    const unsigned char *record;
};

unsigned read16(const unsigned char *bytes) {
    return bytes[0] | static_cast<unsigned>(bytes[1]) << 8;
}

uint32_t read32(const unsigned char *bytes) {
    return read16(bytes) | static_cast<uint32_t>(read16(bytes + 2)) << 16;
}

bool fits(const OBJECT *object, size_t offset, size_t count, size_t size) {
    return offset <= object->length && count <= (object->length - offset) / size;
}

// Returns the text up to its first zero byte.
std::string_view text_of(const unsigned char *bytes, size_t length) {
    const std::string_view text(reinterpret_cast<const char *>(bytes), length);
    return text.substr(0, text.find('\0'));
}

std::string_view string_at(OBJECT *object, uint64_t offset) {
    if (offset < 4 || offset >= object->strings.size()) {
        object->fault = "a name lies outside its string table";
        return "";
    }
    const std::string_view rest = object->strings.substr(static_cast<size_t>(offset), LONGESTTEXT);
    return rest.substr(0, rest.find('\0'));
}

// Finds the string table after the symbols. It begins with its own size.
void find_strings(OBJECT *object) {
    const size_t begin = object->symbols + object->symbolCount * object->symbolSize;
    if (!object->symbols || !fits(object, begin, 1, 4)) {
        return;
    }
    const size_t size = read32(object->bytes + begin);
    if (!fits(object, begin, size, 1)) {
        object->fault = "its string table ends beyond the file";
        return;
    }
    object->strings = {reinterpret_cast<const char *>(object->bytes + begin), size};
}

void read_header(OBJECT *object) {
    const unsigned char *bytes = object->bytes;
    if (!fits(object, 0, 1, HEADERSIZE)) {
        object->fault = "its header ends beyond the file";
        return;
    }
    const bool marked = read16(bytes) == 0 && read16(bytes + 2) == 0xFFFF;
    object->import = marked && read16(bytes + 4) == 0;
    object->big = marked && !object->import && fits(object, 0, 1, BIGHEADERSIZE);
    if (object->import) {
        return;
    }
    object->sections = object->big ? BIGHEADERSIZE : HEADERSIZE + read16(bytes + 16);
    object->sectionCount = object->big ? read32(bytes + 44) : read16(bytes + 2);
    object->symbols = read32(bytes + (object->big ? 48 : 8));
    object->symbolCount = object->symbols ? read32(bytes + (object->big ? 52 : 12)) : 0;
    object->symbolSize = object->big ? SYMBOLSIZE + 2 : SYMBOLSIZE;
    if (!fits(object, object->sections, object->sectionCount, SECTIONSIZE)) {
        object->fault = "its section table ends beyond the file";
    } else if (!fits(object, object->symbols, object->symbolCount, object->symbolSize)) {
        object->fault = "its symbol table ends beyond the file";
    } else {
        find_strings(object);
    }
}

// In 16 bits, numbers from 0xFF00 on are special sections.
int section_number(const OBJECT *object, const unsigned char *bytes) {
    if (object->big) {
        return static_cast<int>(read32(bytes));
    }
    const int number = static_cast<int>(read16(bytes));
    return number < 0xFF00 ? number : number - 0x10000;
}

void read_symbol(OBJECT *object, size_t index, SYMBOL *symbol) {
    const unsigned char *record = object->bytes + object->symbols + index * object->symbolSize;
    const unsigned char *rest = record + 12 + (object->big ? 4 : 2); // after the section number
    symbol->index = index;
    symbol->name =
        read32(record) ? text_of(record, SHORTNAME) : string_at(object, read32(record + 4));
    symbol->value = read32(record + 8);
    symbol->section = section_number(object, record + 12);
    symbol->type = read16(rest);
    symbol->storage = rest[2];
    symbol->auxiliary = rest[3];
    symbol->record = record;
    if (symbol->auxiliary >= object->symbolCount - index) {
        object->fault = "auxiliary records lie beyond its symbol table";
    }
}

// Reads the symbol at *index and moves on to the next one. False at the end and after a fault.
bool next_symbol(OBJECT *object, size_t *index, SYMBOL *symbol) {
    if (*index >= object->symbolCount) {
        return false;
    }
    read_symbol(object, *index, symbol);
    *index += 1 + symbol->auxiliary;
    return !object->fault;
}

// Reads the name from the auxiliary records of a file record, or from the string table.
std::string_view file_name(OBJECT *object, const SYMBOL *file) {
    const unsigned char *name = file->record + object->symbolSize;
    if (file->auxiliary && !read32(name) && read32(name + 4)) {
        return string_at(object, read32(name + 4));
    }
    return text_of(name, file->auxiliary * object->symbolSize);
}

// Returns the name in the first file record; empty when there is none.
std::string_view source_name(OBJECT *object) {
    SYMBOL symbol;
    for (size_t index = 0; next_symbol(object, &index, &symbol);) {
        if (symbol.storage == CLASS_FILE) {
            return file_name(object, &symbol);
        }
    }
    return "";
}

// Changes the symbol to what a linker sees.
void resolve(OBJECT *object, SYMBOL *symbol) {
    if (symbol->storage == CLASS_WEAK && symbol->auxiliary) {
        const uint32_t index = read32(symbol->record + object->symbolSize);
        SYMBOL body = {};
        if (index < object->symbolCount) {
            read_symbol(object, index, &body);
        }
        if (body.section > SECTION_UNDEFINED) {
            symbol->section = body.section;
            symbol->type = body.type;
            symbol->value = body.value;
            symbol->storage = CLASS_EXTERNAL;
        }
    } else if (symbol->storage == CLASS_EXTERNAL && symbol->name.substr(0, 6) == ".weak.") {
        symbol->storage = CLASS_STATIC;
    } else if (symbol->storage == CLASS_EXTERNAL &&
               (symbol->section == SECTION_ABSOLUTE ||
                (symbol->section == SECTION_UNDEFINED && symbol->value))) {
        symbol->section = SECTION_COMMON;
    }
}

// Prints at most `most` characters. Control characters, which would break the line, become ^X.
void print_line(FILE *out, std::string_view text, size_t most) {
    for (const char c : text) {
        const bool control = c >= 0 && c < ' ';
        if (most < (control ? 2 : 1)) {
            break;
        }
        if (control) {
            fputc('^', out);
            most--;
        }
        fputc(control ? c + '@' : c, out);
        most--;
    }
    fputc('\n', out);
}

const char *storage_text(unsigned storage) {
    return storage == CLASS_EXTERNAL ? "External"
           : storage == CLASS_STATIC ? "Static"
           : storage == CLASS_FILE   ? "Filename"
           : storage == CLASS_WEAK   ? "WeakExternal"
                                     : "Other";
}

void print_columns(FILE *out, const SYMBOL *symbol) {
    char section[16];
    const char *form = symbol->section == SECTION_UNDEFINED  ? "UNDEF"
                       : symbol->section == SECTION_ABSOLUTE ? "ABS"
                       : symbol->section == SECTION_COMMON   ? "SECT-"
                       : symbol->section > 0                 ? "SECT%X"
                                                             : "DEBUG";
    snprintf(section, sizeof section, form, static_cast<unsigned>(symbol->section));
    fprintf(out, "%03zX %08X %-7.7snotype %-2s    %-13s|  ", symbol->index & 0xFFFU, symbol->value,
            section, symbol->type == 0x20 ? "()" : "", storage_text(symbol->storage));
}

void print_symbol(FILE *out, const SYMBOL *symbol) {
    print_columns(out, symbol);
    print_line(out, symbol->name, LONGESTNAME);
}

void print_symbols(OBJECT *object, FILE *out) {
    const std::string_view source = source_name(object);
    SYMBOL symbol = {0, ".file", 0, -2, 0, CLASS_FILE, 0, nullptr};
    if (source.empty()) {
        // After the usual heading readers would read the first symbol as the source.
        fprintf(out, "SYMBOL TABLE WITHOUT A FILE RECORD\n");
    } else {
        fprintf(out, "COFF SYMBOL TABLE\n");
        print_symbol(out, &symbol);
        fprintf(out, "    ");
        print_line(out, source, LONGESTTEXT);
    }
    for (size_t index = 0; next_symbol(object, &index, &symbol);) {
        resolve(object, &symbol);
        if (symbol.storage != CLASS_FILE) {
            print_symbol(out, &symbol);
        }
    }
}

// Every import defines a pointer, and code also a function that jumps there.
void print_import(const OBJECT *object, FILE *out) {
    const std::string_view name = text_of(object->bytes + HEADERSIZE, object->length - HEADERSIZE);
    const bool code = (object->bytes[18] & 3) == 0;
    for (const char *prefix : {"__imp_", ""}) {
        if (*prefix || code) {
            SYMBOL symbol = {0, "", 0, SECTION_COMMON, 0, CLASS_EXTERNAL, 0, nullptr};
            print_columns(out, &symbol);
            fputs(prefix, out);
            print_line(out, name, LONGESTNAME - strlen(prefix));
        }
    }
}

// Reads the digits after "//", base 64, of an offset too large for decimal digits.
uint64_t base64_value(std::string_view digits) {
    constexpr std::string_view values =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    uint64_t value = 0;
    for (const char digit : digits) {
        const size_t place = values.find(digit);
        if (place == std::string_view::npos) {
            return UINT64_MAX;
        }
        value = value * 64 + place;
    }
    return value;
}

std::string_view section_name(OBJECT *object, const unsigned char *section) {
    const std::string_view name = text_of(section, SHORTNAME);
    if (name.substr(0, 2) == "//") {
        return string_at(object, base64_value(name.substr(2)));
    }
    if (name.size() < 2 || name[0] != '/' ||
        name.find_first_not_of("0123456789", 1) != std::string_view::npos) {
        return name;
    }
    uint64_t offset = 0;
    for (const char digit : name.substr(1)) {
        offset = offset * 10 + static_cast<uint64_t>(digit - '0');
    }
    return string_at(object, offset);
}

bool is_debugging(std::string_view section) {
    for (const std::string_view start : {".debug", ".zdebug", ".stab"}) {
        if (section.substr(0, start.size()) == start) {
            return true;
        }
    }
    return false;
}

void print_summary(OBJECT *object, FILE *out) {
    uint64_t code = 0;
    uint64_t data = 0;
    uint64_t zeros = 0;
    for (size_t i = 0; i < object->sectionCount && !object->fault; i++) {
        const unsigned char *section = object->bytes + object->sections + i * SECTIONSIZE;
        const uint32_t contents = read32(section + 36);
        const uint32_t memorySize = read32(section + 8); // zero in most objects
        const uint32_t fileSize = read32(section + 16);
        if (contents & HOLDS_CODE) {
            code += fileSize;
        } else if (contents & HOLDS_DATA) {
            data += is_debugging(section_name(object, section)) ? 0 : fileSize;
        } else if (contents & HOLDS_ZEROS) {
            zeros += memorySize ? memorySize : fileSize;
        }
    }
    fprintf(out, "\n  Summary\n\n%12llX .text\n%12llX .data\n%12llX .bss\n",
            static_cast<unsigned long long>(code), static_cast<unsigned long long>(data),
            static_cast<unsigned long long>(zeros));
}

} // namespace

const char *coff_list(BYTES bytes, FILE *out) {
    OBJECT object = {};
    object.bytes = bytes.data;
    object.length = bytes.size;
    read_header(&object);
    if (object.import) {
        print_import(&object, out);
    } else if (!object.fault) {
        print_symbols(&object, out);
    }
    if (!object.fault) {
        print_summary(&object, out);
    }
    return object.fault;
}
