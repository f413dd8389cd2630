#include "mem/gstream.h"
#include "mem/hash.h"
#include "mem/hunk.h"
#include "support.h"

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <random>
#include <set>
#include <vector>

namespace {

std::string said;

int listen(const char *format, ...) {
    char text[256];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    said += text;
    return length;
}

struct Galloc : testing::Test {
    Galloc() {
        said.clear();
        gprintf = listen;
    }
    ~Galloc() override {
        gprintf = stdprintf;
    }
};

TEST_F(Galloc, RefusesSizesBelowOne) {
    EXPECT_EQ(galloc(0), nullptr);
    EXPECT_EQ(galloc(-5), nullptr);
    EXPECT_EQ(said, "galloc - INVALID SIZE 0\ngalloc - INVALID SIZE -5\n");
}

TEST_F(Galloc, CountsHeldBlocksAndRecognisesASecondRelease) {
    const int before = galloccount;
    auto *block = static_cast<char *>(galloc(1));
    ASSERT_NE(block, nullptr);
    EXPECT_EQ(memcmp(block - 8, "GMEM\1\0\0\0", 8), 0);
    EXPECT_EQ(memcmp(block + 1, "GEND", 4), 0);
    EXPECT_TRUE(gfree(block));
    EXPECT_FALSE(gfree(block));
    EXPECT_EQ(galloccount, before);
    EXPECT_EQ(said, "gfree - ATTEMPT TO FREE MEMORY TWICE\n");
}

TEST_F(Galloc, KeepsADamagedBlockHeld) {
    auto *block = static_cast<char *>(galloc(10));
    block[10] = 'x';
    EXPECT_FALSE(gfree(block));
    block[10] = 'G';
    const int sizes[] = {INT32_MAX, 10};
    memcpy(block - 4, &sizes[0], 4);
    EXPECT_FALSE(gfree(block));
    memcpy(block - 4, &sizes[1], 4);
    EXPECT_TRUE(gfree(block));
    EXPECT_EQ(said, "gfree - SENTINAL CORRUPTED; PROBABLE MEMORY DATA CORRUPTION\n"
                    "gfree - SENTINAL CORRUPTED; PROBABLE MEMORY DATA CORRUPTION\n");
}

TEST_F(Galloc, ReadsNoMemoryOfAddressesItNeverReturned) {
    EXPECT_FALSE(gfree(nullptr));
    EXPECT_FALSE(gfree(reinterpret_cast<void *>(2047)));
    EXPECT_FALSE(gfree(reinterpret_cast<void *>(4096)));
    EXPECT_EQ(said, "gfree - ATTEMPT TO FREE NULL POINTER\ngfree - ATTEMPT TO FREE NULL POINTER\n"
                    "gfree - SENTINAL CORRUPTED; PROBABLE MEMORY DATA CORRUPTION\n");
}

// Each value of GALLOCMAX needs a process of its own, which reads it once. The process holds blocks
// until one is refused or `most` are held, frees the last and gets exactly that one again.
TEST_F(Galloc, FailsAtTheCountThatTheEnvironmentNames) {
    static constexpr int most = 10;
    const auto run = [&](const char *value, int expected) {
        setenv("GALLOCMAX", value, 1);
        void *blocks[most + 1] = {};
        int count = 0;
        while (count < most && (blocks[count] = galloc(4)) != nullptr)
            ++count;
        const std::string number = std::to_string(expected);
        const std::string refusal =
            "galloc - ERROR, PURPOSELY FAILING ON GALLOC COUNT " + number + ", SIZE 4\n";
        bool right = count == expected && said == (expected < most ? refusal : "");
        if (count > 0)
            right = gfree(blocks[count - 1]) && (blocks[count - 1] = galloc(4)) != nullptr && right;
        for (int i = 0; i < count; ++i)
            right = gfree(blocks[i]) && right;
        exit(right && galloccount == 0 ? 0 : 1);
    };
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::pair<const char *, int> cases[] = {
        {"3", 3}, {" +2x", 2}, {"0", 0}, {"none", 0}, {"-1", most}};
    for (const auto &[value, count] : cases)
        EXPECT_EXIT(run(value, count), testing::ExitedWithCode(0), "") << value;
    GTEST_FLAG_SET(death_test_style, "fast");
}

TEST_F(Galloc, StreamsKeepTheirPosition) {
    const TREE tree;
    const GSTREAM stream = gwopen("stream");
    ASSERT_NE(stream, 0);
    EXPECT_EQ(gwrite(stream, "hello", 5), 5);
    EXPECT_TRUE(gseek(stream, 5LL << 30));
    EXPECT_EQ(gwrite(stream, "!", 1), 1);
    EXPECT_TRUE(gseek(stream, 2));
    EXPECT_EQ(glen(stream), (5LL << 30) + 1);
    EXPECT_EQ(gtell(stream), 2);
    char buffer[4] = "";
    EXPECT_EQ(gread(stream, buffer, 3), 3);
    EXPECT_STREQ(buffer, "llo");
    EXPECT_TRUE(gclose(stream));
    EXPECT_FALSE(gclose(stream));
    EXPECT_TRUE(gclose(0));
    EXPECT_EQ(gopen("absent"), 0);
    EXPECT_EQ(said, "");
}

int depthof(const HASHRECORD *tree) {
    return tree == nullptr ? 0 : 1 + std::max(depthof(tree->left), depthof(tree->right));
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
    gprintf = listen;
    EXPECT_EQ(HUNK_init(&pool, INT32_MAX, 8), 0);
    EXPECT_EQ(HUNK_newrecord(&pool), nullptr);
    EXPECT_EQ(HUNK_init(&pool, -1, 8) + HUNK_init(&pool, 8, -1), 0);
    gprintf = stdprintf;
    HUNK_purge(&pool);
}

TEST(Hash, FindsTheBucketFromTheBytesOfTheKey) {
    const std::pair<const char *, int> cases[] = {{"", 0},          {"a", 0},     {"b", 1},
                                                  {"ab", 1},        {"ba", 32},   {"A", 224},
                                                  {"baaa", 0x8000}, {"baaaa", 16}};
    for (const auto &[key, bucket] : cases) {
        HASHTABLE *table = HASH_init(65536);
        HASH_add(table, key, 1);
        EXPECT_NE(table->buckets[bucket].left, nullptr) << key;
        HASH_purge(table);
    }
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
        std::vector<std::string> keys(count);
        for (int i = 0; i < count; ++i)
            keys[static_cast<size_t>(i)] = "key" + std::to_string(100000 + count - i);
        if (shuffled)
            std::shuffle(keys.begin(), keys.end(), std::mt19937(1));
        HASHTABLE *table = HASH_init(256);
        for (int i = 0; i < count; ++i)
            HASH_add(table, keys[static_cast<size_t>(i)].c_str(), i);
        for (int i = 0; i < count; ++i)
            ASSERT_EQ(HASH_check(table, keys[static_cast<size_t>(i)].c_str()), i);
        EXPECT_EQ(HASH_check(table, "key99999"), -1);
        for (int32_t i = 0; i < table->size; ++i)
            EXPECT_LE(depthof(table->buckets[i].left), 64);
        HASH_purge(table);
        EXPECT_EQ(galloccount, before);
    }
}

} // namespace
