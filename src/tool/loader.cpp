#include "tool/loader.h"

#include "brax/text.h"
#include "mem/galloc.h"
#include "mem/gstream.h"
#include "tool/options.h"

#include <cstdlib>
#include <cstring>

namespace {

constexpr int64_t LINELENGTH = 255; // longest piece that is read as one line
constexpr int64_t BUFFERSIZE = 128 * 1024;

// The file being read: `next` to `end` are bytes not yet handed out.
struct LINES {
    GSTREAM file;
    char *buffer;
    char *next;
    char *end;
    char *text; // the line handed out last, ended by a zero byte in place of `saved`
    char *textEnd;
    char saved;
    bool atEnd;
    bool failed;
};

void fill(LINES *lines) {
    const auto kept = lines->end - lines->next;
    memmove(lines->buffer, lines->next, static_cast<size_t>(kept));
    lines->next = lines->buffer;
    lines->end = lines->buffer + kept;
    while (!lines->atEnd && lines->end - lines->next < LINELENGTH) {
        const int64_t room = lines->buffer + BUFFERSIZE - lines->end;
        const int64_t got = gread(lines->file, lines->end, room);
        lines->failed = got < 0;
        lines->atEnd = got <= 0;
        lines->end += got > 0 ? got : 0;
    }
}

// Takes the next line into `text`, its line feed included; a zero byte in the file ends its
// text early. False at the end of the file.
bool nextline(LINES *lines) {
    if (lines->textEnd != nullptr)
        *lines->textEnd = lines->saved;
    if (lines->end - lines->next < LINELENGTH && !lines->atEnd)
        fill(lines);
    int64_t length = lines->end - lines->next;
    if (length == 0) {
        lines->textEnd = nullptr;
        return false;
    }
    length = length < LINELENGTH ? length : LINELENGTH;
    const void *feed = memchr(lines->next, '\n', static_cast<size_t>(length));
    if (feed != nullptr)
        length = static_cast<const char *>(feed) - lines->next + 1;
    lines->text = lines->next;
    lines->next += length;
    lines->textEnd = lines->next; // one spare byte behind the buffer makes this writable
    lines->saved = *lines->textEnd;
    *lines->textEnd = 0;
    return true;
}

// A load in progress.
struct LOAD {
    TVKINFO *info;
    _tagfile *file;
    bool outOfMemory;
};

// A copy in the store's memory; null, and the load marked, when there is none.
char *keep(LOAD *load, const char *text, size_t length) {
    auto *copy = static_cast<char *>(storealloc(length + 1));
    if (copy == nullptr) {
        load->outOfMemory = true;
        return nullptr;
    }
    memcpy(copy, text, length);
    copy[length] = 0;
    return copy;
}

// Reads a decimal integer into *value, which keeps its value when there is none.
void readnumber(const char *text, int32_t *value) {
    char *end = nullptr;
    const long number = strtol(text, &end, 10);
    if (end == text)
        return;
    *value = number > INT32_MAX   ? INT32_MAX
             : number < INT32_MIN ? INT32_MIN
                                  : static_cast<int32_t>(number);
}

void readheader(LOAD *load, const char *text) {
    const char *name = text + 1;
    const size_t nameLength = strcspn(name, "]");
    const char *library = name + nameLength;
    size_t libraryLength = 0;
    if (library[0] == ']' && library[1] == '[') {
        library += 2;
        libraryLength = strcspn(library, "]");
    }
    auto *file = static_cast<_tagfile *>(storealloc(sizeof(_tagfile)));
    char *ownName = keep(load, name, nameLength);
    char *ownLibrary = keep(load, library, libraryLength);
    if (file == nullptr || load->outOfMemory) {
        load->outOfMemory = true;
        return;
    }
    *file = {};
    file->name = ownName;
    file->library = ownLibrary;
    file->next = load->info->files;
    load->info->files = file;
    load->file = file;
}

bool isspacechar(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

void readsource(LOAD *load, const char *text) {
    while (isspacechar(*text))
        ++text;
    const char *end = text;
    while (*end != 0 && !isspacechar(*end))
        ++end;
    if (end == text)
        return;
    const size_t length = static_cast<size_t>(end - text);
    const void *comma = memchr(text, ',', length);
    const char *pathEnd = comma != nullptr ? static_cast<const char *>(comma) : end;
    load->file->source = keep(load, text, static_cast<size_t>(pathEnd - text));
    if (comma != nullptr && pathEnd + 1 < end)
        readnumber(pathEnd + 1, &load->file->date);
}

// Moves *text past the word when it begins with it.
bool pass(const char **text, const char *word) {
    const size_t length = strlen(word);
    if (strncmp(*text, word, length) != 0)
        return false;
    *text += length;
    return true;
}

void addnode(LOAD *load, _tagsymlist **list, _tagsymbol *symbol) {
    auto *node = static_cast<_tagsymlist *>(storealloc(sizeof(_tagsymlist)));
    if (node == nullptr) {
        load->outOfMemory = true;
        return;
    }
    *node = {symbol, *list};
    *list = node;
}

void readdefine(LOAD *load, const char *name) {
    SYMTYPE type = TYPE_FUNCTION;
    SYMSCOPE scope = SCOPE_GLOBAL;
    int32_t size = 0;
    const size_t length = strcspn(name, ",");
    const char *text = name + length;
    if (pass(&text, ",")) {
        if (!pass(&text, "FUNCTION") && pass(&text, "DATA"))
            type = TYPE_DATA;
        if (pass(&text, ",")) {
            if (pass(&text, "LOCAL"))
                scope = SCOPE_LOCAL;
            else
                pass(&text, "GLOBAL");
            if (pass(&text, ","))
                readnumber(text, &size);
        }
    }
    _tagsymbol *symbol = symenter(load->info->symtable, name, length, type, scope, size);
    if (symbol == nullptr) {
        load->outOfMemory = true;
        return;
    }
    symbol->file = load->file;
    addnode(load, &load->file->defines, symbol);
}

void readrefer(LOAD *load, const char *name) {
    size_t length = 0;
    while (name[length] != 0 && !isspacechar(name[length]))
        ++length;
    _tagsymbol *symbol =
        symenter(load->info->symtable, name, length, TYPE_UNKNOWN, SCOPE_GLOBAL, 0);
    if (symbol == nullptr) {
        load->outOfMemory = true;
        return;
    }
    ++symbol->nrefers;
    addnode(load, &load->file->refers, symbol);
}

void readline(LOAD *load, const char *text) {
    if (*text == '[')
        readheader(load, text);
    else if (load->file == nullptr)
        return;
    else if (pass(&text, "refer="))
        readrefer(load, text);
    else if (pass(&text, "define="))
        readdefine(load, text);
    else if (pass(&text, "size="))
        readnumber(text, &load->file->size);
    else if (pass(&text, "source="))
        readsource(load, text);
}

// Closes the file and says what went wrong, if anything did.
TVKINFO *endload(LINES *lines, const LOAD *load, const char *path) {
    gclose(lines->file);
    if (lines->buffer != nullptr)
        gfree(lines->buffer);
    if (load->outOfMemory) {
        toolsay("tolvik: ERROR: out of memory reading '%s'\n", path);
        return nullptr;
    }
    if (lines->failed) {
        toolsay("tolvik: ERROR: could not read '%s'\n", path);
        return nullptr;
    }
    return load->info;
}

} // namespace

TVKINFO *tvkload(const char *path) {
    LINES lines = {};
    lines.file = gopen(path);
    if (lines.file == 0)
        return nullptr;
    LOAD load = {cinew(), nullptr, false};
    lines.buffer = gallocarray<char>(BUFFERSIZE + 1);
    load.outOfMemory = load.info == nullptr || lines.buffer == nullptr;
    lines.next = lines.buffer;
    lines.end = lines.buffer;
    while (!load.outOfMemory && nextline(&lines))
        readline(&load, lines.text);
    return endload(&lines, &load, path);
}
