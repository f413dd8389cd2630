#include "elfobject.h"

#include <string.h>

namespace {

enum { LARGE_COMMON = 0xff02 }; // x86-64, not in elf.h

// Returns the string at the offset; null if there is none. The table must end with a NUL.
const char *string_at(BYTES table, size_t offset) {
    bool inside = offset < table.size && !table.data[table.size - 1];
    return inside ? reinterpret_cast<const char *>(table.data + offset) : nullptr;
}

bool read_header(const ELFOBJECT *object, size_t index, GElf_Shdr *header) {
    Elf_Scn *section = elf_getscn(object->elf, index);
    return section && gelf_getshdr(section, header);
}

// False if the section ends beyond the file.
bool read_contents(const ELFOBJECT *object, const GElf_Shdr *header, BYTES *contents) {
    *contents = {};
    if (header->sh_type == SHT_NOBITS || header->sh_type == SHT_NULL) {
        return true;
    }
    *contents = part_of(object->bytes, header->sh_offset, header->sh_size);
    return contents->size == header->sh_size;
}

bool read_strings(const ELFOBJECT *object, size_t index, BYTES *strings) {
    GElf_Shdr header;
    return read_header(object, index, &header) && header.sh_type == SHT_STRTAB &&
           read_contents(object, &header, strings);
}

bool read_symbol_table(ELFOBJECT *object, size_t index, const GElf_Shdr *header) {
    size_t size = gelf_fsize(object->elf, ELF_T_SYM, 1, EV_CURRENT);
    object->symbols = elf_getdata(elf_getscn(object->elf, index), nullptr);
    if (!object->symbols || header->sh_entsize != size ||
        !read_strings(object, header->sh_link, &object->symbolNames)) {
        return false;
    }
    object->symbolCount = object->symbols->d_size / size;
    return true;
}

bool read_tables(ELFOBJECT *object) {
    size_t table = 0;
    for (size_t index = 1; index < object->sectionCount; index++) {
        GElf_Shdr header;
        if (!read_header(object, index, &header)) {
            return false;
        }
        if (header.sh_type == SHT_SYMTAB && !table) {
            table = index;
            if (!read_symbol_table(object, index, &header)) {
                return false;
            }
        }
    }
    for (size_t index = 1; table && index < object->sectionCount; index++) {
        GElf_Shdr header;
        if (read_header(object, index, &header) && header.sh_type == SHT_SYMTAB_SHNDX &&
            header.sh_link == table) {
            object->indexes = elf_getdata(elf_getscn(object->elf, index), nullptr);
        }
    }
    return true;
}

// Some machines have separate section indexes for small and large common blocks.
ELFPLACE reserved_place(const ELFOBJECT *object, size_t index) {
    bool mips = object->header.e_machine == EM_MIPS;
    if (index == SHN_COMMON || (mips && (index == SHN_MIPS_ACOMMON || index == SHN_MIPS_SCOMMON)) ||
        (object->header.e_machine == EM_X86_64 && index == LARGE_COMMON)) {
        return PLACE_COMMON;
    }
    return mips && index == SHN_MIPS_SUNDEFINED ? PLACE_UNDEFINED : PLACE_ABSOLUTE;
}

bool starts_with(const char *text, const char *start) {
    return strncmp(text, start, strlen(start)) == 0;
}

// Compilers mark intermediate code by these names. Another global symbol is machine code or data.
bool is_intermediate(const ELFOBJECT *object) {
    bool found = false;
    ELFSECTION section;
    for (size_t index = 1; !found && index < object->sectionCount; index++) {
        found = elf_read_section(object, index, &section) && starts_with(section.name, ".gnu.lto_");
    }
    ELFSYMBOL symbol;
    for (size_t index = 1; found && index < object->symbolCount; index++) {
        found = elf_read_symbol(object, index, &symbol) &&
                (symbol.binding == STB_LOCAL || starts_with(symbol.name, "__gnu_lto_"));
    }
    return found;
}

} // namespace

const char *elf_open_object(ELFOBJECT *object, BYTES bytes) {
    *object = {};
    object->bytes = bytes;
    elf_version(EV_CURRENT);
    // libelf does not write to the bytes.
    char *image = reinterpret_cast<char *>(const_cast<unsigned char *>(bytes.data));
    object->elf = elf_memory(image, bytes.size);
    size_t names = 0;
    if (!object->elf || elf_kind(object->elf) != ELF_K_ELF ||
        !gelf_getehdr(object->elf, &object->header) ||
        elf_getshdrnum(object->elf, &object->sectionCount)) {
        return "is damaged: its header cannot be read";
    }
    if (!object->header.e_shoff) {
        return nullptr;
    }
    if (!object->sectionCount || elf_getshdrstrndx(object->elf, &names) ||
        !read_strings(object, names, &object->sectionNames)) {
        return "is damaged: its sections cannot be read";
    }
    if (!read_tables(object)) {
        return "is damaged: its symbol table cannot be read";
    }
    return is_intermediate(object)
               ? "holds only intermediate code (-flto without -ffat-lto-objects)"
               : nullptr;
}

void elf_close_object(ELFOBJECT *object) {
    elf_end(object->elf);
    *object = {};
}

bool elf_read_section(const ELFOBJECT *object, size_t index, ELFSECTION *section) {
    if (!read_header(object, index, &section->header)) {
        return false;
    }
    section->name = string_at(object->sectionNames, section->header.sh_name);
    return section->name && read_contents(object, &section->header, &section->contents);
}

bool elf_read_symbol(const ELFOBJECT *object, size_t index, ELFSYMBOL *symbol) {
    GElf_Word extended = 0;
    if (!gelf_getsymshndx(object->symbols, object->indexes, static_cast<int>(index),
                          &symbol->fields, &extended)) {
        return false;
    }
    symbol->name = string_at(object->symbolNames, symbol->fields.st_name);
    symbol->binding = GELF_ST_BIND(symbol->fields.st_info);
    symbol->type = GELF_ST_TYPE(symbol->fields.st_info);
    symbol->section = symbol->fields.st_shndx;
    symbol->place = PLACE_SECTION;
    if (symbol->section == SHN_UNDEF) {
        symbol->place = PLACE_UNDEFINED;
    } else if (symbol->section == SHN_XINDEX && object->indexes) {
        symbol->section = extended;
    } else if (symbol->section >= SHN_LORESERVE) {
        symbol->place = reserved_place(object, symbol->section);
    }
    return symbol->name &&
           (symbol->place != PLACE_SECTION || symbol->section < object->sectionCount);
}

size_t elf_name_size(const char *name) {
    size_t size = strnlen(name, ELFNAMESIZE);
    const void *version = size ? memchr(name + 1, '@', size - 1) : nullptr;
    return version ? static_cast<size_t>(static_cast<const char *>(version) - name) : size;
}
