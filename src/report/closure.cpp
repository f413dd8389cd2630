#include "report/closure.h"

#include "mem/arena.h"
#include "mem/galloc.h"

namespace {

ARENA arena = {};              // holds all entries
_tagfilelist *spare = nullptr; // entries of flfree
bool failed = false;
int64_t followed = 0; // references

// A stamp is never used twice. The first is a value that a caller's record is unlikely to hold.
int64_t lastStamp = 0x3A7C15E59B1D42;
int64_t stampInUse = lastStamp; // of the last list

// A file that is being followed.
struct FRAME {
    const _tagsymlist *refers; // references not followed yet
    const _tagsymlist *ahead;  // next reference whose symbol is prefetched
    int level;
};

// The files with references left to follow. A stack instead of recursion: it may be of any depth.
FRAME *stack = nullptr;
int64_t depth = 0;
int64_t capacity = 0;

// Prefetches the symbols of the next `count` references, which are scattered over the store.
void lookahead(FRAME *frame, int count) {
    for (; count > 0 && frame->ahead != nullptr; --count) {
        __builtin_prefetch(frame->ahead->symbol);
        frame->ahead = frame->ahead->next;
    }
}

bool push(const _tagsymlist *refers, int level) {
    if (!growarray(stack, depth, capacity)) {
        failed = true;
        return false;
    }
    FRAME *frame = &stack[depth++];
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

// Sets the stamps of the list and its files, and the list's last entry. Needed for lists that the
// last call did not return.
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

// Whether the file is not null and not in the last list.
bool isneeded(const _tagfile *file) {
    return file != nullptr && file->stamp != stampInUse;
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

// Returns the frame's next reference to a file that is not listed; null when there is none.
const _tagsymlist *takeneeded(FRAME *frame) {
    const _tagsymlist *node = frame->refers;
    for (; node != nullptr; node = node->next) {
        ++followed;
        lookahead(frame, 1);
        if (isneeded(node->symbol->file))
            break;
    }
    frame->refers = node != nullptr ? node->next : nullptr;
    return node;
}

} // namespace

_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level) {
    if (list != nullptr) {
        marklist(list);
    } else {
        stampInUse = ++lastStamp;
        failed = false;
    }
    depth = 0;
    if (!isneeded(symbol->file) || !append(&list, symbol, level) ||
        (level < limit && !push(symbol->file->refers, level)))
        return list;
    while (depth > 0) {
        FRAME *top = &stack[depth - 1];
        const int below = top->level + 1;
        const _tagsymlist *node = takeneeded(top);
        if (top->refers == nullptr)
            --depth;
        if (node != nullptr && (!append(&list, node->symbol, below) ||
                                (below < limit && !push(node->symbol->file->refers, below))))
            break;
    }
    return list;
}

void flfree(_tagfilelist *list) {
    if (list == nullptr)
        return;
    _tagfilelist *last = list->last != nullptr ? list->last : list;
    while (last->next != nullptr)
        last = last->next;
    last->next = spare;
    spare = list;
}

bool closurefailed() {
    return failed;
}

int64_t closurerefs() {
    return followed;
}
