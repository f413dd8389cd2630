/* Lines must not exceed 254 characters: readers read the rest of a longer one as another line,
   which ends the object's list. A longer line omits the columns that readers skip. Names are cut to
   219 characters, the most in a symbol file. */
#include "elfdump.h"
#include "archive.h"
#include "elfobject.h"
#include "objectkind.h"

#include <algorithm>
#include <limits.h>
#include <stdlib.h>
#include <string.h>
#include <vector>
#include <wchar.h>

namespace {

enum { LINESIZE = 255, NAMESIZE = 220, SECTIONSIZE = 32 }; // final NULs included

struct SECTION {
    char name[SECTIONSIZE]; // one word
    bool executable;
};

struct LISTING {
    FILE *out;
    const ELFOBJECT *object;
    std::vector<SECTION> sections; // by index
    int lines;
};

// Returns the size of the first character; 0 if its bytes are no printable character.
size_t character_size(const char *text, size_t size) {
    unsigned char byte = static_cast<unsigned char>(*text);
    if (byte < 0x80 || MB_CUR_MAX == 1) {
        return byte >= ' ' && byte != 0x7F;
    }
    mbstate_t state = {};
    size_t length = mbrtowc(nullptr, text, size, &state);
    return length <= size ? length : 0;
}

// Copies as many characters as fit `space` bytes with a NUL. Bytes that are no characters become
// \xNN, because grep drops lines with them. An empty name becomes "-".
void copy_name(char *to, size_t space, const char *name, size_t size) {
    size_t used = 0;
    while (size) {
        size_t length = character_size(name, size);
        if (used + (length ? length : 4) >= space) {
            break;
        }
        if (length) {
            memcpy(to + used, name, length);
            used += length;
        } else {
            length = 1;
            used += static_cast<size_t>(
                snprintf(to + used, space - used, "\\x%02x", static_cast<unsigned char>(*name)));
        }
        name += length;
        size -= length;
    }
    if (!used) {
        to[used++] = '-';
    }
    to[used] = 0;
}

void print_line(LISTING *listing, const char *name, unsigned long long address,
                unsigned long long size, const char *kind, const char *section) {
    char line[2 * LINESIZE];
    size = std::min<unsigned long long>(size, INT_MAX); // the readers' maximum
    int length = snprintf(line, sizeof line, "[%d] %s 0x%08llx %llu %s %s\n", ++listing->lines,
                          name, address, size, kind, section);
    if (length > LINESIZE) {
        snprintf(line, sizeof line, "[0] %s 0 %llu %s %.5s\n", name, size, kind, section);
    }
    fputs(line, listing->out);
}

// A list is never empty: readers would read the next object's list instead.
void print_heading(LISTING *listing, const char *name) {
    char heading[LINESIZE - 1];
    name += strspn(name, " \t");
    copy_name(heading, sizeof heading, name, strlen(name));
    fprintf(listing->out, "\n%s:\n\n", heading);
    print_line(listing, "*ABS*", 0, 0, "LOCAL SECTION", "ABS");
}

// Prints sections that take memory; others do not count for the object's size.
bool list_sections(LISTING *listing) {
    listing->sections.resize(std::max<size_t>(listing->object->sectionCount, 1));
    for (size_t index = 1; index < listing->object->sectionCount; index++) {
        ELFSECTION section;
        if (!elf_read_section(listing->object, index, &section)) {
            return false;
        }
        char *name = listing->sections[index].name;
        copy_name(name, SECTIONSIZE, section.name, strnlen(section.name, ELFNAMESIZE));
        std::replace(name, name + strlen(name), ' ', '_');
        listing->sections[index].executable = section.header.sh_flags & SHF_EXECINSTR;
        if (section.header.sh_flags & SHF_ALLOC) {
            print_line(listing, name, 0, section.header.sh_size, "LOCAL SECTION", name);
        }
    }
    return true;
}

// Readers drop NOTYPE, but references and many labels have no type. Only a weak reference, for
// which a linker takes no member, is listed as NOTYPE.
const char *kind_of(const ELFSYMBOL *symbol, const SECTION *section) {
    bool undefined = symbol->place == PLACE_UNDEFINED;
    if (undefined && symbol->binding == STB_WEAK) {
        return "GLOB NOTYPE";
    }
    switch (symbol->type) {
    case STT_FUNC:
    case STT_GNU_IFUNC:
        return "GLOB FUNC";
    case STT_OBJECT:
    case STT_COMMON:
    case STT_TLS:
        return "GLOB OBJECT";
    default:
        return undefined || section->executable ? "GLOB FUNC" : "GLOB OBJECT";
    }
}

void print_symbol(LISTING *listing, const ELFSYMBOL *symbol) {
    static const char *const places[] = {"UNDEF", "", "ABS", "COMMON"};
    size_t size = elf_name_size(symbol->name);
    size = static_cast<size_t>(std::find(symbol->name, symbol->name + size, ' ') - symbol->name);
    if (!size) {
        return;
    }
    char name[NAMESIZE];
    copy_name(name, sizeof name, symbol->name, size);
    bool inside = symbol->place == PLACE_SECTION;
    const SECTION *section = &listing->sections[inside ? symbol->section : 0];
    print_line(listing, name, symbol->fields.st_value, symbol->fields.st_size,
               kind_of(symbol, section), inside ? section->name : places[symbol->place]);
}

// Lists the symbols that a linker sees, and counts them.
bool list_symbols(LISTING *listing, size_t *count) {
    for (size_t index = 1; index < listing->object->symbolCount; index++) {
        ELFSYMBOL symbol;
        if (!elf_read_symbol(listing->object, index, &symbol)) {
            return false;
        }
        if (symbol.binding != STB_LOCAL && symbol.type != STT_SECTION && symbol.type != STT_FILE) {
            print_symbol(listing, &symbol);
            ++*count;
        }
    }
    return true;
}

void list_object(DUMP *dump, const char *path, const char *member, BYTES bytes) {
    ELFOBJECT object;
    const char *failure = elf_open_object(&object, bytes);
    if (!failure) {
        LISTING listing = {dump->out, &object, {}, 0};
        size_t count = 0;
        print_heading(&listing, member ? member : path);
        if (!list_sections(&listing) || !list_symbols(&listing, &count)) {
            failure = "is damaged, the rest is left out";
        } else if (!count) {
            remark(dump, path, member, "has no global symbols");
        }
    }
    elf_close_object(&object);
    if (failure) {
        complain(dump, path, member, failure);
    }
}

void list_member(DUMP *dump, const char *path, const char *member, BYTES bytes) {
    OBJECTKIND kind = object_kind(bytes);
    if (kind == KIND_ELF) {
        list_object(dump, path, member, bytes);
    } else {
        complain(dump, path, member,
                 kind == KIND_BITCODE ? "holds only intermediate code (LLVM bitcode)"
                                      : "is no ELF object");
    }
}

void list_library(DUMP *dump, const char *path, ARCHIVE *archive) {
    MEMBER member;
    ARCHIVEEND end = archive_next(archive, &member);
    for (; end == ARCHIVE_MEMBER; end = archive_next(archive, &member)) {
        BYTES mapped = {};
        const char *failure = archive->thin ? map_member(path, &member, &mapped) : nullptr;
        if (failure) {
            complain(dump, path, member.name.c_str(), failure);
        } else {
            list_member(dump, path, member.name.c_str(), member.data);
        }
        unmap_file(&mapped);
    }
    if (end == ARCHIVE_DAMAGED) {
        complain(dump, path, nullptr, "is damaged, the rest is left out");
    }
}

} // namespace

void elfdump_list(DUMP *dump, const char *path, BYTES bytes) {
    FILEKIND found = file_kind(path, bytes);
    ARCHIVE archive;
    if (found.kind == KIND_COFF || found.kind == KIND_PSX || (!found.library && !found.kind)) {
        complain_kind(dump, path, found, KIND_ELF);
    } else if (archive_start(&archive, bytes)) {
        list_library(dump, path, &archive);
    } else {
        list_member(dump, path, nullptr, bytes);
    }
}
