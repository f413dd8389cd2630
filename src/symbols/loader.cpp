// The file is read in large blocks and lines are not copied. Names are looked up in batches, so
// that cache misses in the index and in the records overlap. This makes loading about as fast as
// reading.
#include "symbols/loader.h"

#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "mem/gstream.h"
#include "symbols/options.h"

#include <cstring>

namespace {

constexpr int64_t LINELENGTH = SYMBOLLINE; // longest piece that is read as one line
constexpr int64_t BUFFERSIZE = 64 * 1024;
constexpr int64_t SPAREBYTES = 16; // readable after the buffer's last byte
constexpr int BATCHSIZE = 64;

// A line or the rest of it; a zero byte ends it.
struct LINE {
    const char *text;
    const char *end;
};

// The file being read: `next` to `end` are bytes not yet handed out.
struct LINES {
    GSTREAM file;
    char *buffer;
    char *next;
    char *end;
    bool hasZeros; // some zero byte is in the buffer
    bool atEnd;
};

// A load in progress. The first `count` entries wait to be entered; their names stand in the
// buffer of lines.
struct LOAD {
    TVKINFO *info;
    ARENA *arena; // of the store
    _tagfile *file;
    bool outOfMemory;
    int count;
    SYMENTRY entries[BATCHSIZE];
    _tagfile *files[BATCHSIZE]; // that the entries' lines belong to
    bool defines[BATCHSIZE];    // a definition, else a reference
};

// Moves the rest to the buffer's start and fills the buffer.
void fill(LINES *lines) {
    const auto kept = lines->end - lines->next;
    memmove(lines->buffer, lines->next, static_cast<size_t>(kept));
    lines->next = lines->buffer;
    lines->end = lines->buffer + kept;
    while (!lines->atEnd && lines->end - lines->next < LINELENGTH) {
        const int64_t room = lines->buffer + BUFFERSIZE - lines->end;
        const int64_t got = gread(lines->file, lines->end, room);
        lines->atEnd = got <= 0;
        lines->end += got > 0 ? got : 0;
    }
    const auto length = static_cast<size_t>(lines->end - lines->next);
    lines->hasZeros = memchr(lines->next, 0, length) != nullptr;
}

// Takes the next line, its line feed included, from the buffer.
LINE nextline(LINES *lines) {
    int64_t length = lines->end - lines->next;
    length = length < LINELENGTH ? length : LINELENGTH;
    const void *feed = memchr(lines->next, '\n', static_cast<size_t>(length));
    if (feed != nullptr)
        length = static_cast<const char *>(feed) - lines->next + 1;
    LINE line = {lines->next, lines->next + length};
    lines->next += length;
    if (lines->hasZeros)
        line.end = line.text + strnlen(line.text, static_cast<size_t>(length));
    return line;
}

// The first c in the line, or the line's end.
const char *findchar(const LINE &line, char c) {
    const void *found = memchr(line.text, c, static_cast<size_t>(line.end - line.text));
    return found != nullptr ? static_cast<const char *>(found) : line.end;
}

// Moves the line past the word when it begins with it.
template <size_t SIZE> bool pass(LINE *line, const char (&word)[SIZE]) {
    constexpr size_t length = SIZE - 1;
    if (static_cast<size_t>(line->end - line->text) < length ||
        memcmp(line->text, word, length) != 0)
        return false;
    line->text += length;
    return true;
}

bool isspacechar(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// Reads a decimal integer after optional blanks and sign into *value, which keeps its value
// when there is none.
void readnumber(LINE line, int32_t *value) {
    while (line.text < line.end && isspacechar(*line.text))
        ++line.text;
    const bool negative = line.text < line.end && *line.text == '-';
    if (negative || (line.text < line.end && *line.text == '+'))
        ++line.text;
    if (line.text == line.end || !isdigitchar(*line.text))
        return;
    int64_t number = 0;
    for (; line.text < line.end && isdigitchar(*line.text); ++line.text) {
        if (number <= INT32_MAX)
            number = number * 10 + (*line.text - '0');
    }
    number = negative ? -number : number;
    *value = number > INT32_MAX   ? INT32_MAX
             : number < INT32_MIN ? INT32_MIN
                                  : static_cast<int32_t>(number);
}

// A copy in the store's memory; null, and the load marked, when there is none.
char *keep(LOAD *load, const char *text, const char *end) {
    const auto length = static_cast<size_t>(end - text);
    auto *copy = static_cast<char *>(arenaalloc(load->arena, length + 1));
    if (copy == nullptr) {
        load->outOfMemory = true;
        return nullptr;
    }
    memcpy(copy, text, length);
    copy[length] = 0;
    return copy;
}

void readheader(LOAD *load, LINE line) {
    ++line.text;
    const char *nameEnd = findchar(line, ']');
    LINE library = {nameEnd, line.end};
    const char *libraryEnd = pass(&library, "][") ? findchar(library, ']') : library.text;
    auto *file = static_cast<_tagfile *>(arenaalloc(load->arena, sizeof(_tagfile)));
    char *ownName = keep(load, line.text, nameEnd);
    char *ownLibrary = keep(load, library.text, libraryEnd);
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

void readsource(LOAD *load, LINE line) {
    while (line.text < line.end && isspacechar(*line.text))
        ++line.text;
    const char *end = line.text;
    while (end < line.end && !isspacechar(*end))
        ++end;
    if (end == line.text)
        return;
    const char *pathEnd = findchar({line.text, end}, ',');
    load->file->source = keep(load, line.text, pathEnd);
    if (pathEnd < end && pathEnd + 1 < end)
        readnumber({pathEnd + 1, end}, &load->file->date);
}

// Enters the waiting names and puts a node for each at the head of its file's list.
void enterall(LOAD *load) {
    if (load->count == 0)
        return;
    auto *nodes = static_cast<_tagsymlist *>(
        arenaalloc(load->arena, static_cast<size_t>(load->count) * sizeof(_tagsymlist)));
    if (nodes == nullptr || !symenterall(load->info->symtable, load->entries, load->count)) {
        load->outOfMemory = true;
        return;
    }
    for (int i = 0; i < load->count; ++i) {
        _tagsymbol *symbol = load->entries[i].symbol;
        _tagfile *file = load->files[i];
        if (load->defines[i])
            symbol->file = file;
        _tagsymlist **list = load->defines[i] ? &file->defines : &file->refers;
        nodes[i] = {symbol, *list};
        *list = &nodes[i];
    }
    load->count = 0;
}

void addentry(LOAD *load, const SYMENTRY &entry, bool define) {
    load->entries[load->count] = entry;
    symprepare(load->info->symtable, &load->entries[load->count]);
    load->files[load->count] = load->file;
    load->defines[load->count] = define;
    if (++load->count == BATCHSIZE)
        enterall(load);
}

void readdefine(LOAD *load, LINE line) {
    const char *nameEnd = findchar(line, ',');
    SYMENTRY entry = {line.text,
                      static_cast<int32_t>(nameEnd - line.text),
                      0,
                      TYPE_FUNCTION,
                      SCOPE_GLOBAL,
                      nullptr,
                      0};
    LINE rest = {nameEnd, line.end};
    if (pass(&rest, ",")) {
        if (!pass(&rest, "FUNCTION") && pass(&rest, "DATA"))
            entry.type = TYPE_DATA;
        if (pass(&rest, ",")) {
            if (pass(&rest, "LOCAL"))
                entry.scope = SCOPE_LOCAL;
            else
                pass(&rest, "GLOBAL");
            if (pass(&rest, ","))
                readnumber(rest, &entry.size);
        }
    }
    addentry(load, entry, true);
}

// Whether any of the characters is a blank or another control character, eight at a time;
// reads up to seven bytes after them.
bool hasblank(const char *text, int64_t length) {
    constexpr uint64_t ones = 0x0101010101010101ULL;
    uint64_t found = 0;
    for (; length > 0; text += 8, length -= 8) {
        uint64_t word = eightbytes(text);
        if (length < 8)
            word |= ~uint64_t{0} << 8 * length; // bytes after the text are no blanks
        found |= (word - ones * '!') & ~word & ones * 0x80;
    }
    return found != 0;
}

void readrefer(LOAD *load, LINE line) {
    const char *end = line.end;
    if (end > line.text && end[-1] == '\n')
        --end;
    if (hasblank(line.text, end - line.text)) {
        for (end = line.text; end < line.end && !isspacechar(*end);)
            ++end;
    }
    addentry(load,
             {line.text, static_cast<int32_t>(end - line.text), 0, TYPE_UNKNOWN, SCOPE_GLOBAL,
              nullptr, 0},
             false);
}

void readline(LOAD *load, LINE line) {
    if (pass(&line, "refer="))
        readrefer(load, line);
    else if (pass(&line, "define="))
        readdefine(load, line);
    else if (pass(&line, "size="))
        readnumber(line, &load->file->size);
    else if (pass(&line, "source="))
        readsource(load, line);
}

void readlines(LOAD *load, LINES *lines) {
    while (!load->outOfMemory) {
        if (lines->end - lines->next < LINELENGTH && !lines->atEnd) {
            enterall(load); // their names are about to move
            fill(lines);
        }
        if (lines->next == lines->end)
            return enterall(load);
        const LINE line = nextline(lines);
        if (line.text < line.end && *line.text == '[')
            readheader(load, line);
        else if (load->file != nullptr)
            readline(load, line);
    }
}

} // namespace

TVKINFO *tvkload(const char *path) {
    LINES lines = {};
    lines.file = gopen(path);
    if (lines.file == 0)
        return nullptr;
    LOAD load;
    load.info = cinew();
    load.arena = load.info != nullptr ? symarena(load.info->symtable) : nullptr;
    load.file = nullptr;
    load.count = 0;
    lines.buffer = galloclarge<char>(BUFFERSIZE + SPAREBYTES);
    load.outOfMemory = load.info == nullptr || lines.buffer == nullptr;
    lines.next = lines.buffer;
    lines.end = lines.buffer;
    if (!load.outOfMemory)
        readlines(&load, &lines);
    gclose(lines.file);
    if (lines.buffer != nullptr)
        gfree(lines.buffer);
    if (!load.outOfMemory)
        return load.info;
    tvkfree(load.info);
    toolsay("tolvik: ERROR: out of memory reading '%s'\n", path);
    return nullptr;
}
