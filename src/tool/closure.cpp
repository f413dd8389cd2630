#include "tool/closure.h"

#include "mem/arena.h"
#include "mem/galloc.h"

namespace {

ARENA arena = {};              // of all entries
_tagfilelist *spare = nullptr; // entries of flfree
bool failed = false;

// Stamps are never used twice. The first is a value that a caller's record is unlikely to hold.
int64_t lastStamp = 0x3A7C15E59B1D42;
int64_t stampInUse = lastStamp; // of the list whose files have it
int64_t linksInUse = lastStamp; // of the files with links

// A file that is being followed: the references still to be looked at, and the one whose
// symbol is being fetched meanwhile.
struct FRAME {
    const _tagsymlist *refers;
    const _tagsymlist *ahead;
    int level;
};

// Takes the place of recursion, so that a chain of objects may be of any length.
struct STACK {
    FRAME *frames;
    int64_t count;
    int64_t room;
};
STACK stack = {nullptr, 0, 0};

bool growstack(int64_t room) {
    auto *larger = gallocarray<FRAME>(room);
    if (larger == nullptr) {
        failed = true;
        return false;
    }
    for (int64_t i = 0; i < stack.count; ++i)
        larger[i] = stack.frames[i];
    if (stack.frames != nullptr)
        gfree(stack.frames);
    stack.frames = larger;
    stack.room = room;
    return true;
}

// Fetches the symbols of the next `count` references: they lie all over the store.
void lookahead(FRAME *frame, int count) {
    for (; count > 0 && frame->ahead != nullptr; --count) {
        __builtin_prefetch(frame->ahead->symbol);
        frame->ahead = frame->ahead->next;
    }
}

bool push(const _tagfile *file, int level) {
    if (stack.count == stack.room && !growstack(stack.room == 0 ? 256 : stack.room * 2))
        return false;
    const _tagsymlist *refers = islinked(file) ? file->links : file->refers;
    FRAME *frame = &stack.frames[stack.count++];
    *frame = {refers, refers, level};
    lookahead(frame, 8);
    return true;
}

_tagfilelist *newentry() {
    _tagfilelist *entry = spare;
    if (entry != nullptr)
        spare = entry->next;
    else
        entry = static_cast<_tagfilelist *>(arenaalloc(&arena, sizeof *entry));
    failed = failed || entry == nullptr;
    return entry;
}

// Gives every file of the list the list's stamp, and finds its last entry. The list of the last
// call has both already; lists that a caller made or put aside have not.
void marklist(_tagfilelist *list) {
    if (list->stamp == stampInUse && list->last->next == nullptr)
        return;
    stampInUse = ++lastStamp;
    list->stamp = stampInUse;
    for (_tagfilelist *entry = list; entry != nullptr; entry = entry->next) {
        if (entry->file != nullptr)
            entry->file->stamp = stampInUse;
        list->last = entry;
    }
}

// Whether the symbol's file exists and is in no list with that stamp.
bool isneeded(const _tagsymbol *symbol, int64_t stamp) {
    return symbol->file != nullptr && symbol->file->stamp != stamp;
}

bool append(_tagfilelist **list, _tagsymbol *symbol, int level) {
    _tagfilelist *entry = newentry();
    if (entry == nullptr)
        return false;
    *entry = {symbol->file, level, symbol, nullptr, nullptr, 0};
    if (*list == nullptr) {
        *list = entry;
        entry->stamp = stampInUse;
    } else {
        (*list)->last->next = entry;
    }
    (*list)->last = entry;
    symbol->file->stamp = stampInUse;
    return true;
}

// Takes the frame's next reference to a file that is not listed yet; null when there is none.
const _tagsymlist *takeneeded(FRAME *frame) {
    const _tagsymlist *node = frame->refers;
    for (; node != nullptr && !isneeded(node->symbol, stampInUse); node = node->next)
        lookahead(frame, 1);
    frame->refers = node != nullptr ? node->next : nullptr;
    return node;
}

// Numbers the files; nodes are counted in *nodes.
bool numberfiles(LINKS *links, const TVKINFO *info, int64_t *nodes) {
    int64_t count = 0;
    for (const _tagfile *file = info->files; file != nullptr; file = file->next, ++count) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
            ++*nodes;
    }
    links->files = galloclarge<_tagfile *>(count);
    if (links->files == nullptr)
        return false;
    linksInUse = ++lastStamp;
    for (_tagfile *file = info->files; file != nullptr; file = file->next) {
        file->linkstamp = linksInUse;
        file->links = nullptr;
        file->number = links->count;
        links->files[links->count++] = file;
    }
    return true;
}

// Makes the file's list of links from the nodes at `next`, and returns the first one left.
_tagsymlist *makelinks(LINKS *links, _tagfile *file, _tagsymlist *next) {
    const int64_t stamp = ++lastStamp;
    _tagsymlist **end = &file->links;
    FRAME frame = {file->refers, file->refers, 0};
    lookahead(&frame, 8);
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
        lookahead(&frame, 1);
        if (!isneeded(node->symbol, stamp))
            continue;
        node->symbol->file->stamp = stamp;
        links->foreign = links->foreign || !islinked(node->symbol->file);
        *next = {node->symbol, nullptr};
        *end = next;
        end = &next++->next;
    }
    return next;
}

// Obtains the memory of a closure of `files` files.
bool reserve(int64_t files) {
    if (stack.room < files && !growstack(files))
        return false;
    _tagfilelist *list = nullptr;
    for (; files > 0; --files) {
        _tagfilelist *entry = newentry();
        if (entry == nullptr)
            break;
        entry->next = list;
        list = entry;
    }
    flfree(list);
    return files == 0;
}

} // namespace

_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level) {
    if (list != nullptr) {
        marklist(list);
    } else {
        stampInUse = ++lastStamp;
        failed = false;
    }
    stack.count = 0;
    if (!isneeded(symbol, stampInUse) || !append(&list, symbol, level) ||
        (level < limit && !push(symbol->file, level)))
        return list;
    while (stack.count > 0) {
        FRAME *top = &stack.frames[stack.count - 1];
        const int below = top->level + 1;
        const _tagsymlist *node = takeneeded(top);
        if (node == nullptr)
            --stack.count;
        else if (!append(&list, node->symbol, below) ||
                 (below < limit && !push(node->symbol->file, below)))
            break;
    }
    return list;
}

void flfree(_tagfilelist *list) {
    if (list == nullptr)
        return;
    _tagfilelist *last = list;
    while (last->next != nullptr)
        last = last->next;
    last->next = spare;
    spare = list;
}

bool closurefailed() {
    const bool result = failed;
    failed = false;
    return result;
}

bool closurebegin(LINKS *links, const TVKINFO *info) {
    int64_t nodes = 0;
    *links = {};
    if (!numberfiles(links, info, &nodes))
        return false;
    links->nodes = galloclarge<_tagsymlist>(nodes);
    if (links->nodes == nullptr)
        return false;
    stampInUse = ++lastStamp; // the files lose their list's stamp
    _tagsymlist *next = links->nodes;
    for (int32_t i = 0; i < links->count; ++i)
        next = makelinks(links, links->files[i], next);
    return reserve(links->count);
}

void closureend(LINKS *links) {
    linksInUse = ++lastStamp;
    failed = false;
    if (links->files != nullptr)
        gfree(links->files);
    if (links->nodes != nullptr)
        gfree(links->nodes);
    *links = {};
}

bool islinked(const _tagfile *file) {
    return file->linkstamp == linksInUse;
}

int32_t saturated(int64_t sum) {
    return sum > INT32_MAX ? INT32_MAX : sum < INT32_MIN ? INT32_MIN : static_cast<int32_t>(sum);
}
