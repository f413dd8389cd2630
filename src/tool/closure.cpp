#include "tool/closure.h"

#include "mem/arena.h"
#include "mem/galloc.h"

namespace {

// Entries that were given back, and the rest of the block that new ones are taken from.
ARENA arena = {};
_tagfilelist *spare = nullptr;
_tagfilelist *fresh = nullptr;
int64_t freshCount = 0;
int64_t spareCount = 0;

int64_t lastStamp = 0;  // marks are never used twice
int64_t stampInUse = 0; // mark of the list whose files carry their marks now
bool failed = false;

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

bool push(const _tagsymlist *refers, int level) {
    if (stack.count == stack.room && !growstack(stack.room == 0 ? 256 : stack.room * 2))
        return false;
    FRAME *frame = &stack.frames[stack.count++];
    *frame = {refers, refers, level};
    lookahead(frame, 8);
    return true;
}

bool newentries(int64_t count) {
    auto *block = static_cast<_tagfilelist *>(
        arenaalloc(&arena, static_cast<size_t>(count) * sizeof(_tagfilelist)));
    if (block == nullptr)
        return false;
    fresh = block;
    freshCount = count;
    return true;
}

_tagfilelist *newentry() {
    if (spare != nullptr) {
        _tagfilelist *entry = spare;
        spare = entry->next;
        --spareCount;
        return entry;
    }
    constexpr int64_t blockEntries = 512;
    if (freshCount == 0 && !newentries(blockEntries)) {
        failed = true;
        return nullptr;
    }
    --freshCount;
    return fresh++;
}

// Makes every file of the list carry the list's mark, and finds its last entry. A list that
// was worked on last has both already; this is for one that was built by hand or put aside
// while another grew.
void marklist(_tagfilelist *list) {
    if (list->stamp != 0 && list->stamp == stampInUse && list->last->next == nullptr)
        return;
    stampInUse = ++lastStamp;
    list->stamp = stampInUse;
    for (_tagfilelist *entry = list; entry != nullptr; entry = entry->next) {
        entry->file->stamp = stampInUse;
        list->last = entry;
    }
}

// Lists the symbol's file when it has one that is not listed yet. True when its references
// are to be followed.
bool append(_tagfilelist **list, _tagsymbol *symbol, int limit, int level) {
    _tagfile *file = symbol->file;
    if (file == nullptr || (*list != nullptr && file->stamp == (*list)->stamp))
        return false;
    _tagfilelist *entry = newentry();
    if (entry == nullptr)
        return false;
    *entry = {file, level, symbol, nullptr, nullptr, 0};
    if (*list == nullptr) {
        *list = entry;
        stampInUse = ++lastStamp;
        entry->stamp = stampInUse;
    } else {
        (*list)->last->next = entry;
    }
    (*list)->last = entry;
    file->stamp = (*list)->stamp;
    return level < limit;
}

} // namespace

bool closurereserve(int64_t files) {
    if (stack.room < files && !growstack(files))
        return false;
    return spareCount + freshCount >= files || newentries(files);
}

_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level) {
    if (list != nullptr)
        marklist(list);
    stack.count = 0;
    if (append(&list, symbol, limit, level))
        push(symbol->file->refers, level);
    while (stack.count > 0) {
        FRAME *top = &stack.frames[stack.count - 1];
        const _tagsymlist *node = top->refers;
        if (node == nullptr) {
            --stack.count;
            continue;
        }
        const int below = top->level + 1;
        top->refers = node->next;
        lookahead(top, 1);
        if (append(&list, node->symbol, limit, below) && !push(node->symbol->file->refers, below))
            break;
    }
    return list;
}

void flfree(_tagfilelist *list) {
    if (list == nullptr)
        return;
    _tagfilelist *last = list;
    for (; last->next != nullptr; last = last->next)
        ++spareCount;
    ++spareCount;
    last->next = spare;
    spare = list;
}

void closurefree() {
    while (spare != nullptr) {
        _tagfilelist *entry = spare;
        spare = entry->next;
        if (!arenaowns(&arena, entry))
            gfree(entry); // it was made by flnew
    }
    fresh = nullptr;
    freshCount = spareCount = 0;
    arenafree(&arena);
    if (stack.frames != nullptr)
        gfree(stack.frames);
    stack = {nullptr, 0, 0};
    failed = false;
}

bool closurefailed() {
    return failed;
}

int32_t saturated(int64_t sum) {
    return sum > INT32_MAX ? INT32_MAX : sum < INT32_MIN ? INT32_MIN : static_cast<int32_t>(sum);
}
