#include "report/closure.h"
#include "report/report.h"
#include "symbols/options.h"

#include <climits>
#include <gtest/gtest.h>
#include <string>

namespace {

using std::string;

// Records whose private members hold anything; only the documented ones are set.
template <typename RECORD> RECORD scribbled(int byte) {
    RECORD record;
    memset(static_cast<void *>(&record), byte, sizeof record);
    return record;
}

// A store that a caller made: main.o refers to a symbol of pad.o, which is in no list, and so on to
// far.o; the first definition of main.o was taken over by far.o.
struct MADE {
    _tagsymlist table[SYMBUCKETS] = {};
    char texts[8][2100] = {"main.o", "pad.o", "far.o", "main", "pad", "far", "lib", ""};
    _tagfile files[3];
    _tagsymbol symbols[3];
    _tagsymlist nodes[3];
    TVKINFO info = {table, files};

    explicit MADE(int byte) {
        for (int i = 0; i < 3; ++i) {
            nodes[i] = {&symbols[i], nullptr};
            files[i] = scribbled<_tagfile>(byte);
            files[i].name = texts[i];
            files[i].library = texts[i == 1 ? 6 : 7];
            files[i].source = nullptr;
            files[i].date = 0;
            files[i].size = 10 << i;
            files[i].defines = nullptr;
            files[i].refers = i < 2 ? &nodes[i + 1] : nullptr;
            files[i].next = nullptr;
            symbols[i] = scribbled<_tagsymbol>(byte);
            symbols[i].name = texts[3 + i];
            symbols[i].type = TYPE_DATA;
            symbols[i].scope = SCOPE_GLOBAL;
            symbols[i].size = 0;
            symbols[i].file = &files[i];
            symbols[i].next = nullptr;
        }
        files[0].defines = &nodes[0];
        table[symhash("main")].symbol = &symbols[0];
    }
};

struct Report : testing::Test {
    Report() {
        postheader = "\n";
    }
    ~Report() override {
        OPTverbose = 2;
        postheader = "";
    }
    static string files(MADE &made) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(tvkreport("", &made.info, nullptr, 0, nullptr, 0, 0, 0, 1, INT_MAX), 1);
        return testing::internal::GetCapturedStdout();
    }
    static string symbols(MADE &made, const char *name, int count) {
        char *names[8] = {};
        for (char *&each : names)
            each = const_cast<char *>(name);
        testing::internal::CaptureStdout();
        EXPECT_EQ(tvkreport(nullptr, &made.info, names, count, nullptr, 0, 0, 1, 1, INT_MAX), 1);
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(Report, TakesStoresMadeByHand) {
    for (const int byte : {0, 1, 0x5a, 0xff}) {
        MADE made(byte);
        OPTverbose = 1;
        EXPECT_EQ(files(made), "    main.o (10 bytes)" + string(32, ' ') +
                                   "\n    Libraries: <FONT COLOR=\"#000000\"></FONT>,"
                                   "<FONT COLOR=\"#990000\">lib</FONT>\n\n"
                                   "    main.o (10) [main]\n"
                                   "        pad.o (<FONT COLOR=\"#990000\">lib</FONT>, 20) [pad]\n"
                                   "            far.o (40) [far]\n"
                                   "\n    Links 70 bytes total\n");
        made.symbols[0].file = &made.files[2];
        EXPECT_NE(files(made).find("    far.o (40) [main]\n        pad.o"), string::npos);
        const string line = string("main") + string(29, ' ') + "        0 refs      40       40 \n";
        EXPECT_EQ(symbols(made, "main", 1), line);
        EXPECT_EQ(symbols(made, "all", 1), line);
        OPTverbose = 2;
        made.symbols[0].file = &made.files[0];
        made.files[2].refers = &made.nodes[0];
        const string one = symbols(made, "main", 1);
        EXPECT_NE(one.find("    main.o (10) [main]\n        pad.o (20) [pad]\n"
                           "            far.o (40) [far]\n    Total: 70 bytes\n"),
                  string::npos);
        EXPECT_EQ(symbols(made, "all", 1), one);
        string six;
        for (int i = 0; i < 6; ++i)
            six += one;
        EXPECT_EQ(symbols(made, "main", 6), six);
    }
}

// The line of libraries is cut after a whole entry.
TEST_F(Report, CutsTheLineOfLibraries) {
    const struct {
        size_t own, other; // lengths of the libraries
        bool hasOwn, hasOther;
    } cases[] = {{1900, 60, true, true},    {1900, 100, true, false}, {1901, 2000, true, false},
                 {2017, 1, true, false},    {2018, 1, false, false},  {2090, 2090, false, false},
                 {1950, 1950, true, false}, {0, 2000, true, false}};
    for (const auto &c : cases) {
        MADE made(0);
        const string own(c.own, 'a');
        const string other = 'b' + string(c.other - 1, 'a');
        strcpy(made.texts[7], own.c_str());
        strcpy(made.texts[6], other.c_str());
        const string report = files(made);
        const size_t start = report.find("Libraries: ");
        const string line = report.substr(start, report.find('\n', start) - start);
        EXPECT_EQ(line.find("#000000\">" + own + "</FONT>") != string::npos, c.hasOwn);
        EXPECT_EQ(line.find("#990000\">" + other + "</FONT>") != string::npos, c.hasOther);
    }
}

} // namespace
