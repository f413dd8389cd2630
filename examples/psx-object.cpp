/* psx-object OBJECT: makes a PlayStation object, in the form that toolchains/reverse.cpp tells of,
   from a list of what it is to hold, on standard input, numbers in hexadecimal:

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
    if (!length || length > 0xFFFF) {
        return false;
    }
    put_number(object, 2, static_cast<unsigned>(length));
    fputs(name, object);
    return true;
}

// The text behind the word when the line begins with it.
const char *behind(const char *line, const char *word) {
    size_t length = strlen(word);
    return strncmp(line, word, length) == 0 ? line + length : nullptr;
}

bool put_block(FILE *object, const char *numbers) {
    char *rest = nullptr;
    unsigned address = static_cast<unsigned>(strtoul(numbers, &rest, 16));
    if (*rest != ' ') {
        return false;
    }
    putc('B', object);
    put_number(object, 4, address);
    put_number(object, 4, static_cast<unsigned>(strtoul(rest, nullptr, 16)));
    return true;
}

bool put_definition(FILE *object, const char *text) {
    char *rest = nullptr;
    unsigned address = static_cast<unsigned>(strtoul(text, &rest, 16));
    if (*rest != ' ') {
        return false;
    }
    putc('D', object);
    put_number(object, 4, address);
    return put_name(object, rest + 1);
}

bool put_line(FILE *object, const char *line) {
    if (const char *block = behind(line, "block ")) {
        return put_block(object, block);
    }
    if (const char *definition = behind(line, "define ")) {
        return put_definition(object, definition);
    }
    if (const char *name = behind(line, "refer ")) {
        putc('R', object);
        return put_name(object, name);
    }
    return false;
}

char *next_line(char **line, size_t *room) {
    ssize_t length = getline(line, room, stdin);
    if (length <= 0) {
        return nullptr;
    }
    (*line)[strcspn(*line, "\n")] = 0;
    return *line;
}

bool write_object(FILE *object) {
    char *line = nullptr;
    size_t room = 0;
    const char *source = next_line(&line, &room) ? behind(line, "source ") : nullptr;
    bool good = source != nullptr;
    if (good) {
        fwrite("PSXOBJ1", 1, 8, object);
        fwrite(source, 1, strlen(source) + 1, object);
    }
    while (good && next_line(&line, &room)) {
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
