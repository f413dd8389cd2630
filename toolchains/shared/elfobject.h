/* Sections and symbols of an ELF object of either class and byte order, read with libelf. */
#ifndef TOOLCHAINS_ELFOBJECT_H
#define TOOLCHAINS_ELFOBJECT_H

#include "bytes.h"

#include <gelf.h>

struct ELFOBJECT {
    BYTES bytes;
    Elf *elf;
    GElf_Ehdr header;
    size_t sectionCount; // section 0 included
    size_t symbolCount;  // symbol 0 included; 0 without a symbol table
    BYTES sectionNames;
    BYTES symbolNames;
    Elf_Data *symbols;
    Elf_Data *indexes; // section indexes of symbols from 0xff00 on; null if there are none
};

struct ELFSECTION {
    const char *name;
    GElf_Shdr header;
    BYTES contents; // empty if the section has none in the file
};

enum ELFPLACE { PLACE_UNDEFINED, PLACE_SECTION, PLACE_ABSOLUTE, PLACE_COMMON };

struct ELFSYMBOL {
    const char *name;
    GElf_Sym fields;
    ELFPLACE place;
    size_t section; // for PLACE_SECTION: an index below sectionCount
    int binding;    // STB_...
    int type;       // STT_...
};

/* Opens an object; refuses one with only a compiler's intermediate code. The bytes must outlive it.
   Returns null, or the reason why it cannot be read. Call elf_close_object in either case. */
const char *elf_open_object(ELFOBJECT *object, BYTES bytes);
void elf_close_object(ELFOBJECT *object);

/* Read a section or a symbol. The names are in the object's bytes. False if the object is damaged
   there. */
bool elf_read_section(const ELFOBJECT *object, size_t index, ELFSECTION *section);
bool elf_read_symbol(const ELFOBJECT *object, size_t index, ELFSYMBOL *symbol);

/* The most characters of a name that are read. Without a limit, a long name of many symbols takes
   quadratic time. */
enum { ELFNAMESIZE = 4096 };

/* Returns the size of a symbol's name without its version after '@', at most ELFNAMESIZE. */
size_t elf_name_size(const char *name);

#endif
