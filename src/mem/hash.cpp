// The bucket of a key is what five-bit rotations leave of it, so that similar keys (part1,
// part2, ...) crowd into few buckets and their trees grow deep. From `indexedCount` keys on
// the table therefore keeps an index beside the buckets: an array of slots, one for each key,
// under a second, thorough hash of the whole key. Lookups then take
// the index; the trees are kept all the same, and serve alone when there is no memory for
// the index.
#include "mem/hash.h"

#include "mem/galloc.h"

#include <bit>
#include <cstring>
#include <new>

// Holds copies, so that a lookup reads one slot and one key text only.
struct INDEXSLOT {
    const char *key; // null in a free slot
    uint32_t hash;
    int32_t value;
};

// Open addressing; a power of two of slots, at most half of them used.
struct HASHINDEX {
    uint64_t mask;
    INDEXSLOT slots[1];
};

namespace {

constexpr int32_t indexedCount = 1000;
constexpr int32_t recordsPerHunk = 100;
constexpr int shallowDepth = 30;
constexpr int maxDepth = shallowDepth + 2 * 32;

// A key with its length, so that parts of a text can be looked up.
struct KEY {
    const char *text;
    size_t length;
};

KEY wholekey(const char *text) {
    return {text, strlen(text)};
}

// Rotates left by five bits within the bits of a bucket number before each byte.
uint32_t bucketof(const HASHTABLE *table, KEY key) {
    const auto mask = static_cast<uint32_t>(table->size) - 1;
    const uint32_t wrapped = (static_cast<uint32_t>(std::bit_width(mask)) - 5) & 31;
    uint32_t hash = 0;
    for (size_t i = 0; i < key.length; ++i) {
        hash = (hash << 5 | hash >> wrapped) & mask;
        hash ^= (static_cast<unsigned char>(key.text[i]) - 97U) & 255;
    }
    return hash;
}

// strcmp with a key that may go on behind its length.
int comparekey(KEY key, const char *other) {
    const int order = strncmp(key.text, other, key.length);
    return order == 0 && other[key.length] != 0 ? -1 : order;
}

// The links from a bucket down to where a key's record hangs or, with null, belongs.
struct PATH {
    HASHRECORD **links[maxDepth + 1];
    int depth;
};

HASHRECORD **findlink(const HASHTABLE *table, KEY key, PATH *path) {
    HASHRECORD **link = &table->buckets[bucketof(table, key)].left;
    path->depth = 0;
    for (;;) {
        path->links[path->depth] = link;
        if (*link == nullptr)
            return link;
        const int order = comparekey(key, (*link)->key);
        if (order == 0)
            return link;
        link = order < 0 ? &(*link)->left : &(*link)->right;
        ++path->depth;
    }
}

// At most maxDepth deep.
int64_t countrecords(const HASHRECORD *tree) {
    return tree == nullptr ? 0 : 1 + countrecords(tree->left) + countrecords(tree->right);
}

// Rotates the whole tree into a list linked by `right`.
void flatten(HASHRECORD **link) {
    while (*link != nullptr) {
        HASHRECORD *left = (*link)->left;
        if (left == nullptr) {
            link = &(*link)->right;
        } else {
            (*link)->left = left->right;
            left->right = *link;
            *link = left;
        }
    }
}

// Rotates every other one of the first 2n records on the right spine below its successor.
void fold(HASHRECORD **link, int64_t n) {
    for (; n > 0 && *link != nullptr; --n) {
        HASHRECORD *right = (*link)->right;
        (*link)->right = right->left;
        right->left = *link;
        *link = right;
        link = &right->right;
    }
}

void balance(HASHRECORD **tree, int64_t n) {
    auto full = static_cast<int64_t>(std::bit_floor(static_cast<uint64_t>(n) + 1)) - 1;
    flatten(tree);
    fold(tree, n - full);
    for (full /= 2; full > 0; full /= 2)
        fold(tree, full);
}

// Keeps trees shallow whatever the keys are: a record that came to hang too deep has an
// ancestor with more than two thirds of its subtree on one side, and the lowest such
// subtree is balanced. It takes so many new records to get there again that this costs a
// logarithmic time for each. Small trees keep the shape that their insertions gave them.
void limitdepth(const HASHTABLE *table, const PATH *path) {
    const auto count = static_cast<uint32_t>(table->count);
    if (path->depth < shallowDepth + 2 * static_cast<int>(std::bit_width(count)))
        return;
    int64_t below = 1;
    for (int i = path->depth - 1; i >= 0; --i) {
        const int64_t size = countrecords(*path->links[i]);
        if (below * 3 > size * 2) {
            balance(path->links[i], size);
            return;
        }
        below = size;
    }
}

uint64_t mix(uint64_t hash, uint64_t word) {
    hash = (hash ^ word) * 0x9E3779B97F4A7C15ULL;
    return hash ^ hash >> 32;
}

uint32_t thoroughhash(KEY key) {
    uint64_t hash = key.length;
    const char *p = key.text;
    size_t left = key.length;
    for (; left >= sizeof hash; p += sizeof hash, left -= sizeof hash) {
        uint64_t word = 0;
        memcpy(&word, p, sizeof word);
        hash = mix(hash, word);
    }
    uint64_t word = 0;
    memcpy(&word, p, left);
    return static_cast<uint32_t>(mix(hash, word));
}

// The slot of the key or, when it has none, the free slot where it would go.
INDEXSLOT *findslot(HASHINDEX *index, KEY key, uint32_t hash) {
    uint64_t position = hash & index->mask;
    for (;; position = (position + 1) & index->mask) {
        INDEXSLOT *slot = &index->slots[position];
        if (slot->key == nullptr || (slot->hash == hash && comparekey(key, slot->key) == 0))
            return slot;
    }
}

void addtoindex(HASHINDEX *index, const HASHRECORD *record) {
    const KEY key = wholekey(record->key);
    const uint32_t hash = thoroughhash(key);
    *findslot(index, key, hash) = {record->key, hash, record->value};
}

// Replaces the index by one with four slots for every key there is; true when that worked.
bool rebuildindex(HASHTABLE *table) {
    grelease(table->index);
    const uint64_t capacity = std::bit_ceil(static_cast<uint64_t>(table->count) * 4);
    const auto bytes = static_cast<int64_t>(sizeof(HASHINDEX) + capacity * sizeof(INDEXSLOT));
    void *block = gallocarray<char>(bytes);
    if (block == nullptr)
        return false;
    memset(block, 0, static_cast<size_t>(bytes));
    table->index = new (block) HASHINDEX;
    table->index->mask = capacity - 1;
    const HASHRECORD *record = table->allRecords;
    for (; record != nullptr; record = record->nextAdded)
        addtoindex(table->index, record);
    return true;
}

// Enters the record added last.
void updateindex(HASHTABLE *table) {
    if (table->count < indexedCount || table->indexFailed)
        return;
    const bool room =
        table->index != nullptr && static_cast<uint64_t>(table->count) * 2 <= table->index->mask;
    if (room)
        addtoindex(table->index, table->allRecords);
    else
        table->indexFailed = !rebuildindex(table);
}

int32_t findvalue(const HASHTABLE *table, KEY key) {
    if (table->index != nullptr) {
        const INDEXSLOT *slot = findslot(table->index, key, thoroughhash(key));
        return slot->key != nullptr ? slot->value : -1;
    }
    PATH path;
    const HASHRECORD *record = *findlink(table, key, &path);
    return record != nullptr ? record->value : -1;
}

} // namespace

HASHTABLE *HASH_init(int32_t size) {
    if (size < 256 || !std::has_single_bit(static_cast<uint32_t>(size)))
        return nullptr;
    const int64_t bytes = static_cast<int64_t>(sizeof(HASHRECORD)) * size;
    char *block = gallocarray<char>(static_cast<int64_t>(sizeof(HASHTABLE)) + bytes);
    if (block == nullptr)
        return nullptr;
    auto *buckets = reinterpret_cast<HASHRECORD *>(block + sizeof(HASHTABLE));
    memset(buckets, 0, static_cast<size_t>(bytes));
    auto *table = new (block) HASHTABLE{size, 0, buckets, nullptr, {}, nullptr, false};
    HUNK_init(&table->pool, static_cast<int32_t>(sizeof(HASHRECORD)), recordsPerHunk);
    return table;
}

void HASH_add(HASHTABLE *table, const char *key, int32_t value) {
    PATH path;
    HASHRECORD **link = findlink(table, wholekey(key), &path);
    if (*link != nullptr)
        return;
    void *room = HUNK_newrecord(&table->pool);
    if (room == nullptr)
        return;
    *link = new (room) HASHRECORD{nullptr, nullptr, table->allRecords, key, value};
    table->allRecords = *link;
    ++table->count;
    limitdepth(table, &path);
    updateindex(table);
}

int32_t HASH_check(const HASHTABLE *table, const char *key) {
    return findvalue(table, wholekey(key));
}

int32_t HASH_check(const HASHTABLE *table, const char *key, int64_t length) {
    return findvalue(table, {key, static_cast<size_t>(length)});
}

void HASH_purge(HASHTABLE *table) {
    if (table == nullptr)
        return;
    grelease(table->index);
    HUNK_purge(&table->pool);
    gfree(table);
}
