#include "report/closure.h"

#include "mem/arena.h"
#include "mem/galloc.h"

namespace {

ARENA arena = {};              // holds all entries
_tagfilelist *spare = nullptr; // entries of flfree
bool failed = false;
int64_t followed = 0; // references
bool listing = true;  // false: only add sizes
int64_t bytes = 0;    // of the files reached

// A stamp is never used twice. The first is a value that a caller's record is unlikely to hold.
int64_t lastStamp = 0x3A7C15E59B1D42;

// The list of the last call, which has the last stamp, and its last entry if there is one.
_tagfilelist *head = nullptr;
_tagfilelist *tail = nullptr;

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
    if (!growarray(stack, depth, capacity))
        return false;
    FRAME *frame = &stack[depth++];
    *frame = {refers, refers, level};
    lookahead(frame, 8);
    return true;
}

// Begins a new list for null. Else sets the stamps of the list and its files, and `tail`: needed
// for lists that the last call did not return.
void marklist(_tagfilelist *list) {
    head = list;
    if (list != nullptr && list->stamp == lastStamp && tail->next == nullptr)
        return;
    ++lastStamp;
    if (list != nullptr)
        list->stamp = lastStamp;
    for (_tagfilelist *entry = list; entry != nullptr; entry = entry->next) {
        if (entry->file != nullptr)
            entry->file->stamp = lastStamp;
        tail = entry;
    }
}

// Whether the file is not null and was not reached yet.
bool isneeded(const _tagfile *file) {
    return file != nullptr && file->stamp != lastStamp;
}

bool append(_tagsymbol *symbol, int level) {
    _tagfilelist *entry = spare;
    if (entry != nullptr)
        spare = entry->next;
    else
        entry = static_cast<_tagfilelist *>(arenaalloc(&arena, sizeof *entry));
    if (entry == nullptr)
        return false;
    *entry = {symbol->file, level, symbol, nullptr, head == nullptr ? lastStamp : 0};
    (head != nullptr ? tail->next : head) = entry;
    tail = entry;
    return true;
}

// Adds the size of the symbol's file, appends it to a list, and pushes its references if the level
// is below the limit. False when memory runs out.
bool reach(_tagsymbol *symbol, int limit, int level) {
    if (listing && !append(symbol, level))
        return false;
    symbol->file->stamp = lastStamp;
    bytes += symbol->file->size;
    return level >= limit || push(symbol->file->refers, level);
}

// Returns the frame's next reference to a file that was not reached; null when there is none.
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
    marklist(list);
    depth = 0;
    bool made = !isneeded(symbol->file) || reach(symbol, limit, level);
    while (depth > 0 && made) {
        FRAME *top = &stack[depth - 1];
        const int below = top->level + 1;
        const _tagsymlist *node = takeneeded(top);
        if (top->refers == nullptr)
            --depth;
        made = node == nullptr || reach(node->symbol, limit, below);
    }
    failed = (failed && list != nullptr) || !made;
    return head;
}

void flfree(_tagfilelist *list) {
    if (list == nullptr)
        return;
    _tagfilelist *last = list->stamp == lastStamp ? tail : list;
    while (last->next != nullptr)
        last = last->next;
    last->next = spare;
    spare = list;
}

int64_t symneedbytes(_tagsymbol *symbol, int limit) {
    bytes = 0;
    listing = false;
    symneedfiles(symbol, nullptr, limit, 0);
    listing = true;
    return bytes;
}

bool closurefailed() {
    return failed;
}

int64_t closurerefs() {
    return followed;
}
