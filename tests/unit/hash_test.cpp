#include "mem/hash.h"
#include "mem/hunk.h"
#include "support.h"

#include <algorithm>
#include <cstring>
#include <random>
#include <set>
#include <vector>

namespace {

int quiet(const char *, ...) {
    return 0;
}

// The bucket of the key, found by looking for its record.
int32_t bucketof(const char *key) {
    HASHTABLE *table = HASH_init(65536);
    HASH_add(table, key, 1);
    int32_t found = -1;
    for (int32_t i = 0; i < table->size; ++i)
        found = table->buckets[i].left != nullptr ? i : found;
    HASH_purge(table);
    return found;
}

// Appends the tree's records in order of their keys; returns the depth.
int walk(const HASHRECORD *record, std::vector<std::string> *keys) {
    if (record == nullptr)
        return 0;
    const int left = walk(record->left, keys);
    keys->push_back(record->key);
    return 1 + std::max(left, walk(record->right, keys));
}

TEST(Hunk, HandsOutEveryRecordOnceAndGrows) {
    const int before = galloccount;
    MEMHUNKHEADER pool;
    ASSERT_EQ(HUNK_init(&pool, 13, 3), 3);
    EXPECT_EQ(galloccount, before + 1);
    std::set<char *> records;
    for (int i = 0; i < 7; ++i) {
        auto *record = static_cast<char *>(HUNK_newrecord(&pool));
        ASSERT_NE(record, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(record) % 8, 0U);
        memset(record, i, 13 + sizeof(MEMNODE));
        records.insert(record);
    }
    EXPECT_EQ(records.size(), 7U);
    EXPECT_EQ(galloccount, before + 3);
    EXPECT_EQ(HUNK_allocate(&pool, 5), 5);
    HUNK_purge(&pool);
    EXPECT_EQ(galloccount, before);
    EXPECT_EQ(pool.hunks.end, nullptr);
    auto *last = static_cast<char *>(HUNK_newrecord(&pool));
    EXPECT_EQ(static_cast<char *>(HUNK_newrecord(&pool)), last - 32) << "the last slot comes first";
    HUNK_purge(&pool);
}

TEST(Hunk, HalvesItsRequestUntilItFits) {
    MEMHUNKHEADER pool;
    EXPECT_EQ(HUNK_init(&pool, 1 << 30, 3), 1); // three would pass an int
    HUNK_purge(&pool);
    gprintf = quiet;
    EXPECT_EQ(HUNK_init(&pool, INT32_MAX, 8), 0);
    EXPECT_EQ(HUNK_newrecord(&pool), nullptr);
    EXPECT_EQ(HUNK_init(&pool, -1, 8), 0);
    EXPECT_EQ(HUNK_init(&pool, 8, -1), 0);
    gprintf = stdprintf;
    HUNK_purge(&pool);
}

TEST(Hash, FindsTheBucketFromTheBytesOfTheKey) {
    for (const auto &[key, bucket] : {std::pair{"", 0},
                                      {"a", 0},
                                      {"b", 1},
                                      {"ab", 1},
                                      {"ba", 32},
                                      {"A", 224},
                                      {"baaa", 0x8000},
                                      {"baaaa", 16}})
        EXPECT_EQ(bucketof(key), bucket) << key;
}

TEST(Hash, KeepsTheFirstValueAndTheNewestRecordFirst) {
    HASHTABLE *table = HASH_init(256);
    HASH_add(table, "one", 1);
    HASH_add(table, "two", -1);
    HASH_add(table, "one", 3);
    EXPECT_EQ(table->count, 2);
    EXPECT_EQ(HASH_check(table, "one"), 1);
    EXPECT_EQ(HASH_check(table, "two"), -1);
    EXPECT_EQ(HASH_check(table, "three"), -1);
    EXPECT_EQ(HASH_check(table, "ones", 3), 1);
    EXPECT_EQ(HASH_check(table, "one", 2), -1);
    EXPECT_STREQ(table->allRecords->key, "two");
    EXPECT_STREQ(table->allRecords->nextAdded->key, "one");
    HASH_purge(table);
    HASH_purge(nullptr);
    for (const int32_t size : {0, -256, 128, 257, INT32_MIN})
        EXPECT_EQ(HASH_init(size), nullptr) << size;
}

// In falling and random order of the keys.
TEST(Hash, KeepsItsTreesInOrderAndShallow) {
    constexpr int count = 20000;
    for (const bool shuffled : {false, true}) {
        const int before = galloccount;
        std::vector<std::string> keys;
        keys.reserve(count);
        for (int i = 0; i < count; ++i)
            keys.push_back("key" + std::to_string(100000 + count - i));
        if (shuffled)
            std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
        HASHTABLE *table = HASH_init(256);
        for (int i = 0; i < count; ++i)
            HASH_add(table, keys[static_cast<size_t>(i)].c_str(), i);
        HASH_add(table, "key100007", -5);
        EXPECT_EQ(table->count, count);
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(HASH_check(table, keys[static_cast<size_t>(i)].c_str()), i);
        EXPECT_EQ(HASH_check(table, "key99999"), -1);
        size_t found = 0;
        for (int32_t i = 0; i < table->size; ++i) {
            std::vector<std::string> tree;
            EXPECT_LE(walk(table->buckets[i].left, &tree), 64);
            EXPECT_TRUE(std::is_sorted(tree.begin(), tree.end()));
            found += tree.size();
        }
        EXPECT_EQ(found, static_cast<size_t>(count));
        HASH_purge(table);
        EXPECT_EQ(galloccount, before);
    }
}

} // namespace
