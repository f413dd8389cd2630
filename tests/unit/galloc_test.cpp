#include "mem/gstream.h"
#include "support.h"

#include <cstdarg>
#include <cstring>

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
    void SetUp() override {
        said.clear();
        gprintf = listen;
    }
    void TearDown() override {
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
    EXPECT_EQ(galloccount, before + 1);
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
    EXPECT_EXIT(run("3", 3), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(run(" +2x", 2), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(run("0", 0), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(run("none", 0), testing::ExitedWithCode(0), "");
    EXPECT_EXIT(run("-1", most), testing::ExitedWithCode(0), "");
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

} // namespace
