// Random symbol files, good and malformed, reported on by the program and by the plain way of
// doing it: both must agree byte for byte.
#include "plain_store.h"
#include "search_tree.h"

#include "report/report.h"
#include "symbols/loader.h"

#include <climits>
#include <gtest/gtest.h>
#include <random>

namespace {

using std::string;
using TEXTS = std::vector<string>;

std::mt19937 generator;

size_t below(size_t n) {
    return generator() % n;
}

const string &pick(const TEXTS &texts) {
    return texts[below(texts.size())];
}

const TEXTS libraries = {"",         "",      "core",
                         "Core",     "audio", "#990000",
                         "</FONT>,", "b",     "a</FONT>,<FONT COLOR=\"#990000\">b",
                         "a</FONT>"};
const TEXTS sizes = {"0", "12", "4096", " 7",         "+3",          "-5",         "x",
                     "",  "1a", "- 1",  "2147483647", "99999999999", "-2147483648"};
const TEXTS sources = {"",        "a.c",
                       "src/a.c", "src\\in\\a.c,20021117",
                       " a b",    ",5",
                       "x,",      "c:d.c,-20021117",
                       "a,b,3",   "d/e@1/f.c,20021217",
                       "@",       "q/,7x",
                       "/r.c",    "m.c,99999999999",
                       "m.c, 5",  "n.c,+20020017"};
const TEXTS kinds = {"",       ",FUNCTION,GLOBAL,12", ",DATA,LOCAL,40", ",DATA,global,12",
                     ",DATA",  ",UNKNOWN,GLOBAL,9",   ",FUNCTION,",     ",FUNCTIONAL,LOCAL,8",
                     ",,,",    ",DATA,LOCALE,5",      ",DATA,,6",       ",FUNCTION,LOCAL, -7",
                     ",DATAx", ",FUNCTION,GLOBAL,x"};
const TEXTS others = {"", "\r", "Define=a", "define", " refer=a", "size", "# note", "]x["};

TEXTS makenames() {
    TEXTS names = {"", "_", "a", "_a", "a_", "__a__", "b c", "caf\xe9", "_caf\xe9", "all"};
    const size_t more = 1 + below(40);
    for (size_t i = 0; i < more; ++i)
        names.push_back(plain::format("f%zu_%zx", i % 7, i * 2654435761U));
    for (const size_t length : {size_t{253}, size_t{254}, size_t{255}})
        names.push_back(string(length, 'n'));
    return names;
}

string makeheader(bool longNames) {
    const string name = plain::format("o%zu.o", below(30));
    string library = pick(libraries);
    if (longNames)
        library = string(200 + below(30), static_cast<char>('a' + below(26)));
    const TEXTS forms = {"[" + name + "]",
                         "[" + name + "][" + library + "]",
                         "[" + name + "][" + library + "]",
                         "[" + name + "][" + library + "]",
                         "[" + name + "][" + library + "]",
                         "[" + name + "]x[" + library + "]",
                         "[" + name,
                         "[" + name + "][" + library,
                         "[]"};
    return pick(forms);
}

string makeline(const TEXTS &names) {
    const string name = pick(names);
    switch (below(16)) {
    case 0:
        return "size=" + pick(sizes);
    case 1:
        return "source=" + pick(sources);
    case 2:
        return pick(others);
    case 3: { // what lies behind 255 characters is a line of its own
        string line = (below(2) != 0 ? "define=" : "refer=") + name + " ";
        line.resize(std::max<size_t>(255, line.size()), '.');
        return line + "refer=" + pick(names);
    }
    case 4: { // a zero byte hides the rest of its line
        string line = "define=" + name + ",DATA,LOCAL,3";
        line[below(line.size())] = 0;
        return line;
    }
    case 5:
    case 6:
    case 7:
    case 8:
        return "define=" + name + pick(kinds);
    default:
        return "refer=" + name + (below(8) == 0 ? "\ttail" : "");
    }
}

string makefile(const TEXTS &names) {
    const bool longNames = below(6) == 0;
    string bytes = below(4) == 0 ? "preface\nsize=3\n" : "";
    const size_t objects = below(40);
    for (size_t i = 0; i < objects; ++i) {
        bytes += makeheader(longNames) + "\n";
        if (below(4) != 0)
            bytes += "size=" + std::to_string(below(3000)) + "\n";
        for (size_t lines = below(16); lines > 0; --lines)
            bytes += makeline(names) + "\n";
    }
    if (!bytes.empty() && below(3) == 0)
        bytes.pop_back();
    return bytes;
}

string contents(const char *path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

plain::REQUEST makerequest(const TEXTS &names) {
    const int limits[] = {0, 1, 2, 3, 7, 100, INT_MAX};
    plain::REQUEST r = {{},
                        {},
                        static_cast<int>(below(2)),
                        static_cast<int>(below(2)),
                        static_cast<int>(below(4) != 0),
                        limits[below(7)],
                        below(2) == 0};
    const size_t kind = below(5);
    if (kind == 0)
        r.symbols = {"all", "b"};
    for (size_t i = 1 + below(12); kind == 1 && i > 0; --i)
        r.symbols.push_back(pick(names));
    if (kind == 1 && r.symbols[0] == "all")
        r.symbols[0] = "_all";
    for (size_t i = 1 + below(3); kind == 2 && i > 0; --i)
        r.files.push_back(plain::format("O%zu.o", below(32)));
    return r;
}

std::vector<char *> pointers(TEXTS &texts) {
    std::vector<char *> result;
    for (string &text : texts)
        result.push_back(text.data());
    return result;
}

// The program's report and messages.
string reported(TVKINFO *info, plain::REQUEST &r, string *messages) {
    const std::vector<char *> symbols = pointers(r.symbols);
    const std::vector<char *> files = pointers(r.files);
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    EXPECT_EQ(tvkreport(r.positionable ? "report" : "", info, const_cast<char **>(symbols.data()),
                        static_cast<int>(symbols.size()), const_cast<char **>(files.data()),
                        static_cast<int>(files.size()), r.define, r.refer, r.links, r.limit),
              1);
    const string out = testing::internal::GetCapturedStdout();
    *messages = testing::internal::GetCapturedStderr();
    EXPECT_TRUE(out.empty() || !r.positionable);
    return r.positionable ? contents("report") : out;
}

void setoptions() {
    OPTverbose = static_cast<int>(below(4));
    OPThtml = static_cast<int>(below(3) == 0);
    preheader = OPThtml != 0 ? "</PRE><H4>" : "";
    postheader = OPThtml != 0 ? "</H4><PRE>" : "\n";
    copytext(OPTsourcelinkprefix, below(2) != 0 ? "//host/" : "", sizeof OPTsourcelinkprefix);
}

TEST(ReportProperty, SameAsDoneThePlainWay) {
    const TREE tree;
    for (unsigned seed = 0; seed < 400 && !HasFailure(); ++seed) {
        generator.seed(seed);
        const TEXTS names = makenames();
        const string bytes = makefile(names);
        TREE::makefile("symbols.tvk", bytes);
        OPTunderscores = static_cast<int>(below(2));
        TVKINFO *info = tvkload("symbols.tvk");
        ASSERT_NE(info, nullptr);
        plain::STORE expected;
        plain::load(expected, bytes);
        for (int i = 0; i < 8 && !HasFailure(); ++i) {
            setoptions();
            plain::REQUEST r = makerequest(names);
            string messages;
            string expectedMessages;
            const string seen = reported(info, r, &messages);
            ASSERT_EQ(seen, plain::report(expected, r, &expectedMessages))
                << "seed " << seed << " request " << i;
            EXPECT_EQ(messages, expectedMessages);
        }
        tvkfree(info);
    }
    OPTverbose = 2;
    OPThtml = 0;
    OPTunderscores = 0;
    OPTsourcelinkprefix[0] = 0;
    preheader = "";
    postheader = "";
}

} // namespace
