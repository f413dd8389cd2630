#include "tool/closure.h"

#include "mem/galloc.h"

#include <climits>

namespace {

// Entries that were given back, and the rest of the block that new ones are taken from.
_tagfilelist *spare = nullptr;
int64_t lastStamp = 0;  // marks are never used twice
int64_t stampInUse = 0; // mark of the list whose files carry their marks now
bool failed = false;

// A file that is being followed: the references still to be looked at.
struct FRAME {
    const _tagsymlist *refers;
    int level;
};

// Takes the place of recursion, so that a chain of objects may be of any length.
struct STACK {
    FRAME *frames;
    int64_t count;
    int64_t room;
};
STACK stack = {nullptr, 0, 0};

bool push(const FRAME &frame) {
    if (stack.count == stack.room) {
        const int64_t room = stack.room == 0 ? 256 : stack.room * 2;
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
    }
    stack.frames[stack.count++] = frame;
    return true;
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
    _tagfilelist *entry = flnew();
    if (entry == nullptr)
        return false;
    entry->file = file;
    entry->level = level;
    entry->symbol = symbol;
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

_tagfilelist *flnew() {
    if (spare == nullptr) {
        constexpr int blockEntries = 512;
        auto *block = static_cast<_tagfilelist *>(storealloc(blockEntries * sizeof(_tagfilelist)));
        if (block == nullptr) {
            failed = true;
            return nullptr;
        }
        for (int i = blockEntries - 1; i >= 0; --i) {
            block[i].next = spare;
            spare = &block[i];
        }
    }
    _tagfilelist *entry = spare;
    spare = spare->next;
    *entry = {};
    return entry;
}

_tagfilelist *symneedfiles(_tagsymbol *symbol, _tagfilelist *list, int limit, int level) {
    if (list != nullptr)
        marklist(list);
    stack.count = 0;
    if (append(&list, symbol, limit, level))
        push({symbol->file->refers, level});
    while (stack.count > 0) {
        FRAME *top = &stack.frames[stack.count - 1];
        const _tagsymlist *node = top->refers;
        if (node == nullptr) {
            --stack.count;
            continue;
        }
        const int below = top->level + 1;
        top->refers = node->next;
        if (append(&list, node->symbol, limit, below) && !push({node->symbol->file->refers, below}))
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

int32_t saturated(int64_t sum) {
    return sum > INT32_MAX ? INT32_MAX : sum < INT32_MIN ? INT32_MIN : static_cast<int32_t>(sum);
}

int32_t closuretotal(_tagsymbol *symbol, int limit) {
    static int knownLimit = -1;
    static int64_t knownMark = 0;
    if (symbol->file == nullptr)
        return 0;
    // Totals found under another limit do not count any more.
    if (limit != knownLimit) {
        knownLimit = limit;
        knownMark = ++lastStamp;
    }
    _tagfile *file = symbol->file;
    if (file->totalMark == knownMark)
        return saturated(file->total);
    _tagfilelist *list = symneedfiles(symbol, nullptr, limit, 0);
    int64_t total = 0;
    for (const _tagfilelist *entry = list; entry != nullptr; entry = entry->next)
        total += entry->file->size;
    flfree(list);
    file->total = total;
    file->totalMark = knownMark;
    return saturated(total);
}
