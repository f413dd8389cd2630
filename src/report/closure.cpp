#include "report/closure.h"

#include "mem/arena.h"
#include "mem/galloc.h"

namespace {

ARENA arena = {};              // of all entries
_tagfilelist *spare = nullptr; // entries of flfree
bool failed = false;

// Stamps are never used twice. The first is a value that a caller's record is unlikely to hold.
int64_t lastStamp = 0x3A7C15E59B1D42;
int64_t stampInUse = lastStamp; // of the list whose files have it

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

// Whether there is a file and it does not have the stamp.
bool isneeded(const _tagfile *file, int64_t stamp) {
    return file != nullptr && file->stamp != stamp;
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
    for (; node != nullptr; node = node->next) {
        lookahead(frame, 1);
        if (isneeded(node->symbol->file, stampInUse))
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
    stack.count = 0;
    if (!isneeded(symbol->file, stampInUse) || !append(&list, symbol, level) ||
        (level < limit && !push(symbol->file->refers, level)))
        return list;
    while (stack.count > 0) {
        FRAME *top = &stack.frames[stack.count - 1];
        const int below = top->level + 1;
        const _tagsymlist *node = takeneeded(top);
        if (node == nullptr)
            --stack.count;
        else if (!append(&list, node->symbol, below) ||
                 (below < limit && !push(node->symbol->file->refers, below)))
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
    return failed;
}

bool closurereserve(const TVKINFO *info) {
    int64_t files = 0;
    _tagfilelist *list = nullptr;
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        _tagfilelist *entry = newentry();
        if (entry == nullptr)
            return false;
        entry->next = list;
        list = entry;
        ++files;
    }
    flfree(list);
    return stack.room >= files || growstack(files);
}

int32_t saturated(int64_t sum) {
    return sum > INT32_MAX ? INT32_MAX : sum < INT32_MIN ? INT32_MIN : static_cast<int32_t>(sum);
}
