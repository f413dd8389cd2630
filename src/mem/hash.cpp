// The hash rotates by five bits only, so similar keys (part1, part2, ...) share few buckets.
// Their trees are therefore kept shallow.
#include "mem/hash.h"

#include "mem/galloc.h"

#include <bit>
#include <cstring>
#include <new>

namespace {

constexpr int32_t recordsPerHunk = 100;
constexpr int shallowDepth = 30;
constexpr int maxDepth = shallowDepth + 2 * 32;

// A key that is part of a text.
struct KEY {
    const char *text;
    size_t length;
};

// Rotates left by five bits, within a bucket number's bits, before each byte.
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

// Works like strcmp; the key ends at its length.
int comparekey(KEY key, const char *other) {
    const int order = strncmp(key.text, other, key.length);
    return order == 0 && other[key.length] != 0 ? -1 : order;
}

// The links from a bucket down to a key's record, or to the null link for it.
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

// Recurses at most maxDepth deep.
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

// Rotates every other of the first 2n records on the right spine below its successor.
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

// Keeps trees shallow whatever the keys are. A new record that is too deep has an ancestor
// with more than two thirds of its subtree on one side. Balances the lowest such subtree.
// That costs logarithmic time per record added. Small trees are never balanced.
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
    auto *table = new (block) HASHTABLE{size, 0, buckets, nullptr, {}};
    HUNK_init(&table->pool, static_cast<int32_t>(sizeof(HASHRECORD)), recordsPerHunk);
    return table;
}

void HASH_add(HASHTABLE *table, const char *key, int32_t value) {
    PATH path;
    HASHRECORD **link = findlink(table, {key, strlen(key)}, &path);
    if (*link != nullptr)
        return;
    void *memory = HUNK_newrecord(&table->pool);
    if (memory == nullptr)
        return;
    *link = new (memory) HASHRECORD{nullptr, nullptr, table->allRecords, key, value};
    table->allRecords = *link;
    ++table->count;
    limitdepth(table, &path);
}

int32_t HASH_check(const HASHTABLE *table, const char *key) {
    return HASH_check(table, key, static_cast<int64_t>(strlen(key)));
}

int32_t HASH_check(const HASHTABLE *table, const char *key, int64_t length) {
    PATH path;
    const HASHRECORD *record = *findlink(table, {key, static_cast<size_t>(length)}, &path);
    return record != nullptr ? record->value : -1;
}

void HASH_purge(HASHTABLE *table) {
    if (table == nullptr)
        return;
    HUNK_purge(&table->pool);
    gfree(table);
}
