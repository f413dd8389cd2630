/* elfdump -t FILE: a stand-in for the SGI dump program that rests on today's objdump. An object, or
   every member of a library, gets a heading, its sections with their sizes, and its symbols:

       events.o:

       [1] .text 0x00000000 544 LOCAL SECTION .text
       [2] event_post 0x00000088 184 GLOB FUNC .text
       [3] panic 0x00000000 0 GLOB FUNC UNDEF

   Readers drop lines that hold NOTYPE. Compilers of the time gave references the type of what they
   refer to; those of today do not, so a reference without type is shown as one to a function. A
   weak reference, for which a linker brings nothing, keeps NOTYPE. */
#include "shared/objdump.h"

#include <ctype.h>
#include <locale.h>
#include <stdlib.h>
#include <string.h>
#include <wchar.h>

namespace {

int lineIndex = 0; // of the object being listed

// Readers send the listing through grep, which shows no line of a text with bytes that are no
// characters: these are written as \xNN.
void print_name(const char *name) {
    mbstate_t state = {};
    while (*name) {
        size_t length = MB_CUR_MAX == 1 ? 1 : mbrtowc(nullptr, name, strlen(name), &state);
        if (length <= strlen(name)) {
            printf("%.*s", static_cast<int>(length), name);
            name += length;
        } else {
            printf("\\x%02x", static_cast<unsigned>(*name++) & 0xFFU);
            state = {};
        }
    }
}

void print_line(char *name, const char *address, unsigned long long size, const char *kind,
                const char *section) {
    printf("[%d] ", ++lineIndex);
    name[strcspn(name, " ")] = 0; // a field ends there
    print_name(name);
    printf(" 0x%s %llu %s %s\n", address, size, kind, section);
}

// A list is never empty: it would end with the next object's.
void print_heading(const char *object) {
    object += strspn(object, " \t");
    putchar('\n');
    print_name(object);
    printf(":\n\n");
    lineIndex = 0;
    char name[] = "*ABS*";
    print_line(name, "00000000", 0, "LOCAL SECTION", "ABS");
}

const char *type_of(const ELFSYMBOL *symbol) {
    switch (symbol->flags[FLAG_KIND]) {
    case 'F':
        return "FUNC";
    case 'O':
        return "OBJECT";
    case 'f':
        return "FILE";
    default:
        return symbol->missing ? "FUNC" : "NOTYPE";
    }
}

const char *section_of(ELFSYMBOL *symbol) {
    static const char *const names[][2] = {
        {"*UND*", "UNDEF"}, {"*COM*", "COMMON"}, {"*ABS*", "ABS"}};
    for (const auto &name : names) {
        if (strcmp(symbol->section, name[0]) == 0) {
            return name[1];
        }
    }
    join_words(symbol->section);
    return symbol->section;
}

void print_symbol(ELFSYMBOL *symbol) {
    bool section = symbol->flags[FLAG_DEBUG] == 'd' && symbol->flags[FLAG_KIND] == ' ';
    if (section || !*symbol->name) {
        return; // the list of sections tells their sizes
    }
    char kind[16];
    snprintf(kind, sizeof kind, "%s %s", symbol->flags[FLAG_BINDING] == 'l' ? "LOCAL" : "GLOB",
             type_of(symbol));
    print_line(symbol->name, symbol->address, strtoull(symbol->size, nullptr, 16), kind,
               section_of(symbol));
}

// Only sections that take memory count for the object's size.
void print_section(LISTING *listing, SECTIONLINE *section) {
    char *name = strdup(section->name);
    char *properties = listing_line(listing);
    if (name && properties && strstr(properties, "ALLOC")) {
        print_line(name, "00000000", section->size, "LOCAL SECTION", name);
    }
    free(name);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 3 || strcmp(argv[1], "-t") != 0) {
        fprintf(stderr, "usage: elfdump -t FILE\n");
        return 2;
    }
    setlocale(LC_CTYPE, "");
    static const char *const options[] = {"-h", "-t", nullptr};
    LISTING listing;
    if (!listing_open(&listing, "elfdump", options, argv[2])) {
        return 127;
    }
    for (char *line = listing_line(&listing); line; line = listing_line(&listing)) {
        ELFSYMBOL symbol;
        SECTIONLINE section;
        if (elf_symbol(line, &symbol)) {
            print_symbol(&symbol);
        } else if (section_line(line, &section)) {
            print_section(&listing, &section);
        } else if (char *object = listing_object(line)) {
            print_heading(object);
        }
    }
    return listing_close(&listing);
}
