/* What the stand-ins that rest on today's objdump share: they run it, read what it prints line by
   line, and take its symbol lines apart.

   A stand-in prints what it read as the vendor's program would have printed it. Names stay as
   objdump shows them, so that a symbol has the same text in every object. */
#ifndef TOOLCHAINS_OBJDUMP_H
#define TOOLCHAINS_OBJDUMP_H

#include <stddef.h>
#include <stdio.h>
#include <sys/types.h>

struct LISTING {
    FILE *stream;
    char *line; // the last line read, without its line end
    size_t room;
    pid_t process;
};

/* Starts "objdump OPTIONS -- file" with its output in the listing, in the C locale. options ends
   with a null. False, and a message that begins with the stand-in's own name, when objdump cannot
   be started; the listing is then not to be closed. What objdump itself has to say goes to standard
   error as it is. */
bool listing_open(LISTING *listing, const char *self, const char *const *options, const char *file);

/* The next line, without its line end, to be changed at will until the next call; null at the
   listing's end. */
char *listing_line(LISTING *listing);

/* Waits for objdump; returns the exit status that the stand-in is to end with: objdump's own, or 1
   when it was killed or our own output could not be written. */
int listing_close(LISTING *listing);

/* "NAME:     file format FORMAT" is how objdump announces an object. Returns the name, cut out of
   the line, or null for any other line. */
char *listing_object(char *line);

/* A line of objdump's list of sections, its name one word. */
struct SECTIONLINE {
    char *name;
    unsigned long long size;
};

/* Cuts a line of the list of sections; false for any other line. The section's properties stand in
   the line that follows it. */
bool section_line(char *line, SECTIONLINE *section);

/* Makes one word of a name: the readers of listings end a section's name at a blank. */
void join_words(char *name);

/* The seven flag columns of a symbol line; the other columns are always blank. */
enum { FLAG_BINDING = 0, FLAG_WEAK = 1, FLAG_INDIRECT = 4, FLAG_DEBUG = 5, FLAG_KIND = 6, FLAGS };

/* A line of objdump's symbol table of an ELF file, cut into its fields. */
struct ELFSYMBOL {
    char *address; // 8 or 16 hexadecimal digits
    char *flags;   // FLAGS characters and a NUL
    char *section; // "*UND*", "*COM*", "*ABS*" or a section's name
    char *size;    // as many digits as the address has
    char *name;    // without marks of visibility or version
    bool missing;  // not defined in this object, and needed: a weak one may stay missing
    bool optional; // not defined in this object, and not needed
};

/* Cuts a line into a symbol, the pieces of which lie in the line. False for any other line.
   What a linker treats as a global definition becomes one in the flags: weak and unique symbols,
   common blocks, and functions that are chosen at run time. */
bool elf_symbol(char *line, ELFSYMBOL *symbol);

#endif
