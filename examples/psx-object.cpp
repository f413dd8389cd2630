/* psx-object OBJECT: makes a PlayStation object, in the form that toolchains/reverse.cpp describes,
   from a list on standard input, with hexadecimal numbers:

       source C:\LIB\CORE\EVENTS.C:
       block 00000000 21c
       define 00000064 event_post
       refer panic

   Ends with status 1, and leaves no object, when a line cannot be read. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

namespace {

void put_number(FILE *object, int bytes, unsigned number) {
    for (int byte = 0; byte < bytes; byte++) {
        putc(static_cast<int>(number >> (8 * byte) & 0xFFU), object);
    }
}

bool put_name(FILE *object, const char *name) {
    size_t length = strlen(name);
    put_number(object, 2, static_cast<unsigned>(length));
    fputs(name, object);
    return length > 0 && length <= 0xFFFF;
}

// The text after the word if the line begins with the word, else null.
const char *after(const char *line, const char *word) {
    size_t length = strlen(word);
    return strncmp(line, word, length) == 0 ? line + length : nullptr;
}

// Writes the tag and the number, and returns the text after the number and a blank, or null.
const char *put_tagged(FILE *object, char tag, const char *text) {
    char *rest = nullptr;
    putc(tag, object);
    put_number(object, 4, static_cast<unsigned>(strtoul(text, &rest, 16)));
    return *rest == ' ' ? rest + 1 : nullptr;
}

bool put_line(FILE *object, const char *line) {
    if (const char *block = after(line, "block ")) {
        const char *size = put_tagged(object, 'B', block);
        put_number(object, 4, size ? static_cast<unsigned>(strtoul(size, nullptr, 16)) : 0);
        return size != nullptr;
    }
    if (const char *definition = after(line, "define ")) {
        const char *name = put_tagged(object, 'D', definition);
        return name && put_name(object, name);
    }
    const char *name = after(line, "refer ");
    putc('R', object);
    return name && put_name(object, name);
}

// Reads a line, without its line feed, into *line, which getline allocates.
bool next_line(char **line, size_t *size) {
    if (getline(line, size, stdin) <= 0) {
        return false;
    }
    (*line)[strcspn(*line, "\n")] = 0;
    return true;
}

bool write_object(FILE *object) {
    char *line = nullptr;
    size_t size = 0;
    const char *source = next_line(&line, &size) ? after(line, "source ") : nullptr;
    bool good = source != nullptr;
    if (good) {
        fwrite("PSXOBJ1", 1, 8, object);
        fwrite(source, 1, strlen(source) + 1, object);
    }
    while (good && next_line(&line, &size)) {
        good = put_line(object, line);
    }
    if (!good) {
        fprintf(stderr, "psx-object: cannot read: %s\n", line ? line : "");
    }
    putc('E', object);
    free(line);
    return good;
}

} // namespace

int main(int argc, char **argv) {
    FILE *object = argc == 2 ? fopen(argv[1], "wb") : nullptr;
    if (!object) {
        fprintf(stderr, argc == 2 ? "psx-object: cannot write %s\n" : "usage: psx-object OBJECT\n",
                argv[1]);
        return 2;
    }
    bool good = write_object(object);
    if (ferror(object) + fclose(object) != 0 || !good) {
        remove(argv[1]);
        return 1;
    }
    return 0;
}
