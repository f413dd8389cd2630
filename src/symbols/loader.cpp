// The file is read in large blocks and lines are not copied. Names are looked up in batches, so
// that cache misses in the index and in the records overlap.
#include "symbols/loader.h"

#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "mem/gstream.h"
#include "symbols/options.h"
#include "symbols/symindex.h"
#include "symbols/words.h"

#include <algorithm>

namespace {

constexpr int64_t LINELENGTH = SYMBOLLINE; // longest piece that is read as one line
constexpr int64_t BUFFERSIZE = 64 * 1024;
constexpr int64_t SPAREBYTES = 16; // readable after the buffer's last byte
constexpr int BATCHSIZE = 64;
constexpr int64_t BYTESPERSLOT = 128;            // of a usual file, for each slot of the index
constexpr int64_t MOSTBYTES = 256 * 1024 * 1024; // a directory's length is no size

// The file being read. The bytes from `next` to `end` are not read as lines yet.
struct READER {
    GSTREAM file;
    char *buffer;
    char *next;
    char *end; // a zero byte
    bool atEnd;
    bool failed; // the last read failed
};

// A load in progress. The first `count` entries wait for symenterall; their names are in the
// reader's buffer.
struct LOAD {
    TVKINFO *info;
    SYMTABLE *table; // the store's
    _tagfile *file;  // of the last header line
    bool outOfMemory;
    int count;
    SYMENTRY entries[BATCHSIZE];
    _tagfile *files[BATCHSIZE]; // of the entries
    bool defines[BATCHSIZE];    // a definition, not a reference
};

// Moves the unread bytes to the buffer's start and fills the buffer.
void fill(READER *reader) {
    const auto kept = reader->end - reader->next;
    memmove(reader->buffer, reader->next, static_cast<size_t>(kept));
    reader->next = reader->buffer;
    reader->end = reader->buffer + kept;
    while (!reader->atEnd && reader->end - reader->next < LINELENGTH) {
        const int64_t space = reader->buffer + BUFFERSIZE - reader->end;
        const int64_t got = gread(reader->file, reader->end, space);
        reader->atEnd = got <= 0;
        reader->failed = got < 0;
        reader->end += got > 0 ? got : 0;
    }
    *reader->end = 0;
}

// Returns the first byte that is not from '!' to 127, or one after LINELENGTH such bytes.
const char *printableend(const char *text) {
    constexpr uint64_t ones = 0x0101010101010101;
    for (const char *end = text + LINELENGTH; text < end; text += 8) {
        const uint64_t word = eightbytes(text);
        const uint64_t others = ((word - ones * '!') | word) & ones << 7;
        // A borrow changes only bytes after the first such byte.
        if (others != 0)
            return text + std::countr_zero(others) / 8;
    }
    return text;
}

// Returns the next line with its line feed. A zero byte ends it. Most lines have neither that nor
// blanks.
std::string_view nextline(READER *reader) {
    const char *start = reader->next;
    const char *end = printableend(start);
    std::string_view line(start, end + 1);
    const bool isPlain = *end == '\n' && std::ssize(line) <= LINELENGTH;
    if (!isPlain) {
        line = {start, static_cast<size_t>(std::min(reader->end - start, LINELENGTH))};
        line = line.substr(0, std::min(line.find('\n'), line.size() - 1) + 1);
    }
    reader->next += line.size();
    return isPlain ? line : upto(line, 0);
}

// Returns a terminated copy in the store's memory. When memory runs out, sets outOfMemory and
// returns null.
char *keep(LOAD *load, std::string_view text) {
    auto *copy = static_cast<char *>(arenaalloc(&load->table->records, text.size() + 1));
    if (copy == nullptr) {
        load->outOfMemory = true;
        return nullptr;
    }
    memcpy(copy, text.data(), text.size());
    copy[text.size()] = 0;
    return copy;
}

void readheader(LOAD *load, std::string_view line) {
    line.remove_prefix(1);
    const std::string_view name = upto(line, ']');
    line.remove_prefix(name.size());
    const std::string_view library = takeprefix(&line, "][") ? upto(line, ']') : "";
    auto *file = static_cast<_tagfile *>(arenaalloc(&load->table->records, sizeof(_tagfile)));
    char *ownName = keep(load, name);
    char *ownLibrary = keep(load, library);
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

void readsource(LOAD *load, std::string_view line) {
    std::string_view word;
    if (!takeword(&line, &word))
        return;
    const std::string_view path = upto(word, ',');
    load->file->source = keep(load, path);
    word.remove_prefix(path.size());
    if (takeprefix(&word, ","))
        takedecimal(&word, &load->file->date);
}

// Enters the waiting names and puts a node for each at the head of its file's list.
void enterall(LOAD *load) {
    if (load->count == 0)
        return;
    auto *nodes = static_cast<_tagsymlist *>(
        arenaalloc(&load->table->nodes, static_cast<size_t>(load->count) * sizeof(_tagsymlist)));
    if (nodes == nullptr || !symenterall(load->table, load->entries, load->count)) {
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

inline void addentry(LOAD *load, std::string_view name, SYMTYPE type, SYMSCOPE scope, int32_t size,
                     bool define) {
    name = symstripped(name);
    const SYMINDEX &index = load->table->index;
    const uint64_t hash = symindexhash(&index, name, true);
    __builtin_prefetch(&index.slots[hash & index.mask]);
    load->entries[load->count] = {name, type, scope, size, nullptr, hash};
    load->files[load->count] = load->file;
    load->defines[load->count] = define;
    if (++load->count == BATCHSIZE)
        enterall(load);
}

void addrefer(LOAD *load, std::string_view name) {
    addentry(load, name, TYPE_UNKNOWN, SCOPE_GLOBAL, 0, false);
}

// Reads a "refer=" line without blanks: most lines. False when the next line is of another kind.
bool readrefer(LOAD *load, READER *reader) {
    if (load->file == nullptr || memcmp(reader->next, "refer=", 6) != 0)
        return false;
    const char *name = reader->next + 6;
    const char *end = printableend(name);
    if (*end != '\n' || end - reader->next >= LINELENGTH)
        return false;
    reader->next += end + 1 - reader->next;
    addrefer(load, {name, end});
    return true;
}

void readdefine(LOAD *load, std::string_view line) {
    const std::string_view name = upto(line, ',');
    SYMTYPE type = TYPE_FUNCTION;
    SYMSCOPE scope = SCOPE_GLOBAL;
    int32_t size = 0;
    line.remove_prefix(name.size());
    if (takeprefix(&line, ",")) {
        if (!takeprefix(&line, "FUNCTION") && takeprefix(&line, "DATA"))
            type = TYPE_DATA;
        if (takeprefix(&line, ",")) {
            if (takeprefix(&line, "LOCAL"))
                scope = SCOPE_LOCAL;
            else
                takeprefix(&line, "GLOBAL");
            if (takeprefix(&line, ","))
                takedecimal(&line, &size);
        }
    }
    addentry(load, name, type, scope, size, true);
}

void readline(LOAD *load, std::string_view line) {
    if (takeprefix(&line, "define="))
        readdefine(load, line);
    else if (takeprefix(&line, "refer="))
        addrefer(load, {line.begin(), std::find_if(line.begin(), line.end(), iswhite)});
    else if (takeprefix(&line, "size="))
        takedecimal(&line, &load->file->size);
    else if (takeprefix(&line, "source="))
        readsource(load, line);
}

void readlines(LOAD *load, READER *reader) {
    while (!load->outOfMemory) {
        if (reader->end - reader->next < LINELENGTH && !reader->atEnd) {
            enterall(load); // fill moves their names
            fill(reader);
        }
        if (reader->next == reader->end)
            return enterall(load);
        if (readrefer(load, reader))
            continue;
        const std::string_view line = nextline(reader);
        if (line.starts_with('['))
            readheader(load, line);
        else if (load->file != nullptr)
            readline(load, line);
    }
}

} // namespace

TVKRESULT tvkadd(TVKINFO *info, const char *path) {
    READER reader = {};
    reader.file = gopen(path);
    if (reader.file == 0)
        return TVKNOTOPENED;
    LOAD load;
    load.info = info;
    load.table = reinterpret_cast<SYMTABLE *>(info->symtable);
    load.file = nullptr;
    load.count = 0;
    reader.buffer = galloclarge<char>(BUFFERSIZE + SPAREBYTES);
    load.outOfMemory =
        reader.buffer == nullptr ||
        !symindexreserve(&load.table->index, std::min(glen(reader.file), MOSTBYTES) / BYTESPERSLOT);
    reader.next = reader.end = reader.buffer;
    if (!load.outOfMemory)
        readlines(&load, &reader);
    gclose(reader.file);
    grelease(reader.buffer);
    if (load.outOfMemory)
        return TVKNOMEMORY;
    return reader.failed ? TVKNOTREAD : TVKADDED;
}

TVKINFO *tvkload(const char *path) {
    TVKINFO *info = cinew();
    const TVKRESULT result = info != nullptr ? tvkadd(info, path) : TVKNOMEMORY;
    if (result == TVKADDED)
        return info;
    tvkfree(info);
    if (result != TVKNOTOPENED)
        toolsay("tolvik: ERROR: %s '%s'\n",
                result == TVKNOMEMORY ? "out of memory reading" : "could not read", path);
    return nullptr;
}
