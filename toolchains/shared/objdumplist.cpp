#include "objdumplist.h"
#include "objectkind.h"

#include <algorithm>
#include <string.h>
#include <string>

namespace {

enum { ROWBYTES = 16, NAMELENGTH = 219 };
enum { LINELENGTH = 255, COLUMNS = 12 }; // of a symbol: flags, separators and line feed

// Replaces control characters, which would end a line or a field, by ^X.
std::string printable(const char *name, size_t size) {
    std::string text;
    for (; size; size--, name++) {
        bool control = static_cast<unsigned char>(*name) < ' ' || *name == 0x7F;
        text += control ? "^" : "";
        text += control ? static_cast<char>(*name ^ 0x40) : *name;
    }
    return text;
}

std::string section_name(const ELFSECTION *section, const OBJDUMPFORM *form) {
    std::string name = printable(section->name, strnlen(section->name, ELFNAMESIZE));
    if (form->word) {
        std::replace(name.begin(), name.end(), ' ', '_');
    }
    return name;
}

// Readers ignore the format.
const char *format_name(const GElf_Ehdr *header) {
    bool wide = header->e_ident[EI_CLASS] == ELFCLASS64;
    bool big = header->e_ident[EI_DATA] == ELFDATA2MSB;
    switch (header->e_machine) {
    case EM_386:
        return "elf32-i386";
    case EM_X86_64:
        return wide ? "elf64-x86-64" : "elf32-x86-64";
    default:
        break;
    }
    if (wide) {
        return big ? "elf64-big" : "elf64-little";
    }
    return big ? "elf32-big" : "elf32-little";
}

// The seven columns of flags and a NUL.
void set_flags(const ELFSYMBOL *symbol, char *flags) {
    strcpy(flags, "       ");
    if (symbol->place != PLACE_UNDEFINED || symbol->binding == STB_LOCAL) {
        flags[0] = symbol->binding == STB_LOCAL ? 'l' : 'g';
    }
    switch (symbol->type) {
    case STT_SECTION:
        flags[5] = 'd';
        break;
    case STT_FILE:
        flags[5] = 'd';
        flags[6] = 'f';
        break;
    case STT_FUNC:
    case STT_GNU_IFUNC:
        flags[6] = 'F';
        break;
    case STT_OBJECT:
    case STT_COMMON:
        flags[6] = 'O';
        break;
    default:
        break;
    }
}

// Cuts the texts of a line to what readers take. All names are cut to the same length, so that
// definitions and references still match. A cut section name ends with '~'.
void fit_line(std::string *place, std::string *name, const OBJDUMPFORM *form) {
    size_t rest = LINELENGTH - COLUMNS - static_cast<size_t>(2 * form->digits);
    size_t longest = std::min<size_t>(NAMELENGTH, rest - strlen("*UND*"));
    name->resize(std::min(name->size(), longest));
    if (place->size() > rest - name->size()) {
        place->resize(rest - name->size());
        place->back() = '~';
    }
}

bool list_symbol(DUMP *dump, const ELFOBJECT *object, const ELFSYMBOL *symbol,
                 const OBJDUMPFORM *form) {
    static const char *const places[] = {"*UND*", "", "*ABS*", "*COM*"};
    std::string place = places[symbol->place];
    std::string name = printable(symbol->name, elf_name_size(symbol->name));
    unsigned long long value = symbol->fields.st_value;
    if (symbol->place == PLACE_SECTION) {
        ELFSECTION section;
        if (!elf_read_section(object, symbol->section, &section)) {
            return false;
        }
        place = section_name(&section, form);
        if (symbol->type == STT_SECTION && name.empty()) {
            name = printable(section.name, strnlen(section.name, ELFNAMESIZE));
        }
        value += object->header.e_type == ET_REL ? section.header.sh_addr : 0;
    }
    fit_line(&place, &name, form);
    unsigned long long most = form->digits == 8 ? 0xFFFFFFFF : ~0ULL;
    char flags[8];
    set_flags(symbol, flags);
    fprintf(dump->out, "%0*llx %s %s\t%0*llx %s\n", form->digits, value & most, flags,
            place.c_str(), form->digits,
            static_cast<unsigned long long>(symbol->fields.st_size) & most, name.c_str());
    return true;
}

bool list_symbols(DUMP *dump, const ELFOBJECT *object, const OBJDUMPFORM *form) {
    fprintf(dump->out, "SYMBOL TABLE:\n%s", object->symbolCount > 1 ? "" : "no symbols\n");
    for (size_t index = 1; index < object->symbolCount; index++) {
        ELFSYMBOL symbol;
        if (!elf_read_symbol(object, index, &symbol)) {
            return false;
        }
        bool optional = symbol.place == PLACE_UNDEFINED && symbol.binding == STB_WEAK;
        if (!optional && !list_symbol(dump, object, &symbol, form)) {
            return false;
        }
    }
    fputs("\n\n", dump->out);
    return true;
}

// The offset has four digits in sections of any size, because the text must begin at column 43.
void list_row(FILE *out, unsigned long long offset, BYTES bytes) {
    static const char digits[] = "0123456789abcdef";
    char row[] = "                                     "; // four groups of eight digits
    char *place = row;
    char text[ROWBYTES + 1] = "                ";
    for (size_t index = 0; index < bytes.size; index++) {
        unsigned char byte = bytes.data[index];
        *place++ = digits[byte >> 4U];
        *place++ = digits[byte & 0xFU];
        place += index % 4 == 3;
        text[index] = byte >= ' ' && byte < 0x7F ? static_cast<char>(byte) : '.';
    }
    fprintf(out, " %04llx %s%s\n", offset & 0xFFFF, row, text);
}

// objdump does not list tables as sections.
bool is_table(GElf_Word type) {
    return type == SHT_SYMTAB || type == SHT_STRTAB || type == SHT_SYMTAB_SHNDX ||
           type == SHT_REL || type == SHT_RELA;
}

bool list_contents(DUMP *dump, const ELFOBJECT *object, const OBJDUMPFORM *form) {
    size_t listed = 0;
    for (size_t index = 1; index < object->sectionCount; index++) {
        ELFSECTION section;
        if (!elf_read_section(object, index, &section)) {
            return false;
        }
        if (!section.contents.size || is_table(section.header.sh_type)) {
            continue;
        }
        listed += section.contents.size;
        if (listed > object->bytes.size) { // many sections may overlap
            return false;
        }
        fprintf(dump->out, "Contents of section %s:\n", section_name(&section, form).c_str());
        for (size_t offset = 0; offset < section.contents.size; offset += ROWBYTES) {
            list_row(dump->out, section.header.sh_addr + offset,
                     part_of(section.contents, offset, ROWBYTES));
        }
    }
    return true;
}

} // namespace

void objdump_list(DUMP *dump, const char *path, BYTES bytes, const OBJDUMPFORM *form) {
    ELFOBJECT object;
    const char *failure = elf_open_object(&object, bytes);
    if (!failure) {
        fprintf(dump->out, "\n%s:     file format %s\n\n", path, format_name(&object.header));
        if (!list_symbols(dump, &object, form) ||
            (form->contents && !list_contents(dump, &object, form))) {
            failure = "is damaged, the rest is left out";
        }
    }
    elf_close_object(&object);
    if (failure) {
        complain(dump, path, nullptr, failure);
    }
}

int objdump_run(const char *self, const char *path, const OBJDUMPFORM *form) {
    DUMP dump = {self, stdout, stderr, 0};
    BYTES bytes;
    if (map_object(&dump, path, KIND_ELF, &bytes)) {
        objdump_list(&dump, path, bytes, form);
    }
    return fflush(stdout) || ferror(stdout) ? 1 : dump.status;
}
