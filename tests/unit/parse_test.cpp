#include "base/fields.h"
#include "base/text.h"
#include "brax/builtin.h"
#include "brax/names.h"
#include "brax/parse.h"
#include "search/argv.h"
#include "support.h"

#include <cstring>
#include <vector>

namespace {

std::string called; // the calls of the callbacks, in order
void (*reset)() = nullptr;

void onreset() {
    if (reset != nullptr)
        reset();
}

int onusage(const char *program, const char *topic, const char *address, int level) {
    const char *anchor = address != nullptr ? strchr(address, '#') : nullptr;
    called += std::string(program) + " " + (topic != nullptr ? topic : "-") + " " +
              std::to_string(level) + (anchor != nullptr ? anchor : "") + "; ";
    return 0;
}

// Takes "def", and "s" with the rest of its word.
const char *onoption(const char *text) {
    if (strncmp(text, "def", 3) == 0)
        return text + 3;
    if (*text != 's')
        return nullptr;
    const char *end = text + strcspn(text, " ");
    called += std::string(text, end) + "; ";
    return end;
}

struct Parse : testing::Test {
    void SetUp() override {
        called.clear();
        reset = nullptr;
        OPTnamecombine = 1;
        unsetenv("PROG_OPTS");
    }

    // Parses to the end: "source>destination " for each file, "| " after each batch but the last.
    std::string parse(std::vector<std::string> arguments) {
        BRAX_init(onreset, onusage, onoption, nullptr);
        BRAX_restore();
        const int held = galloccount;
        std::vector<char *> argv = {const_cast<char *>("dir/Prog.exe")};
        for (std::string &argument : arguments)
            argv.push_back(argument.data());
        std::string files;
        printed([&] {
            for (bool more = true; more;) {
                more = BRAX_parse(static_cast<int>(argv.size()), argv.data(), "prog", "1.0");
                for (int i = 0; i < BRAXargnum; ++i)
                    files += std::string(BRAXsargv[i]) + ">" + BRAXdargv[i] + " ";
                files += more ? "| " : "";
            }
        });
        BRAX_restore();
        EXPECT_EQ(galloccount, held);
        return files;
    }
};

TEST_F(Parse, PairsNamesWithDestinations) {
    const struct {
        std::vector<std::string> arguments;
        const char *files;
    } cases[] = {
        {{"a.c", "b"}, "a.c>a.c b>b "},
        {{"a.c=b.o"}, "a.c>b.o "},
        {{"x", "a.c=b.o", "y"}, "x>b.o a.c>b.o y>b.o "},
        {{"a.c", "=b.o"}, "a.c>b.o "},
        {{"a.c", "-rno;where", "-=b.o"}, "a.c>b.o "},
        {{"a=x=y=z", "b"}, "a>x a>y a>z b>z "},
        {{"a=x", "b=y", "c=z=w"}, "a>x b>y c>z c>w "},
        {{"a.c", "src/b.c", "out/"}, "a.c>out/a.c src/b.c>out/b.c "},
        {{"out/", "a.c"}, "out/>out/ a.c>a.c "},
        {{"a.c", "-=dir/", "-.obj"}, "a.c>dir/a.obj "},
        {{"a.c=b.o", "dir/", "-.", ".x*"}, "a.c>dir/b.xo "},
        {{"my file.c", "(in brackets)=x,y"}, "my file.c>x,y in brackets>x y>x,y "},
        {{"\"a=b\"=c", "'p,q'"}, "a=b>c p,q>c "},
        {{"a", "\"\"=x"}, "a>x x>x "},
        {{"-def", "defref", "-defref"}, "defref>defref ref>ref "},
        {{"\xE9.c=\xFC\tb\nc\xE9", "=\xE4"}, "\xE9.c>\xFC b>\xFC c\xE9>\xFC "},
        {{"a;", "-v2", "b;c;", "-w0;", "d"}, "a>a | b;c>b;c | "},
        {{"a", "^&", "-=r", "b", ";", "c", ";"}, "a>a | b>r | c>c "},
    };
    for (const auto &c : cases)
        EXPECT_EQ(parse(c.arguments), c.files) << c.arguments[0];
}

TEST_F(Parse, KeepsOptionsAndSkipsRulesWhenTheProgramAsksForIt) {
    reset = [] {
        OPTkeepopts = 1;
        OPTskiprules = 1;
    };
    EXPECT_EQ(parse({"-v1", "a", "b", "-=r"}), "-v1>-v1 a>a b>r -=r>r ");
    // A lone destination goes to the last name without one.
    reset = [] { OPTskiprules = 2; };
    EXPECT_EQ(parse({"a", ".def", "b", "\"\"=x", "c"}), "a>a .def>.def b>x c>x ");
    OPTnamecombine = 0;
    EXPECT_EQ(parse({"a", ".def", "\"\"=x", "b"}), "a>x .def>.def b>x ");
}

TEST_F(Parse, CallsTheProgramBack) {
    const struct {
        std::vector<std::string> arguments;
        const char *called;
    } cases[] = {
        {{"a", "-def"}, "prog PROG_OPTS 0; "},
        {{"a", "-b0"}, ""},
        {{}, "prog PROG_OPTS 2; "},
        {{"-v0"}, ""},
        {{"a", "-?4"}, "prog PROG_OPTS 4; "},
        {{"a", "?"}, "prog PROG_OPTS 3; "},
        {{"a", "-h", "-v1"}, ""},
        {{"a", "-x?", "b"}, "prog -x 4; "},
        {{"a", "-?topic"}, "prog topic 4; "},
        {{"a", "-v?"}, "prog -v 4; "},
        {{"a", "-nologo?"}, "prog -nologo 4; "},
        {{"-sym bol;", "a"}, "sym; sym\034bol; prog PROG_OPTS 2; "},
        {{"-sort1", "-sorted", "-v1", "a"}, "sorted; "},
    };
    for (const auto &c : cases) {
        called.clear();
        parse(c.arguments);
        EXPECT_EQ(called, c.called);
    }
}

TEST_F(Parse, RecognisesOneOptionWord) {
    BRAX_init(nullptr, nullptr, onoption, nullptr);
    const struct {
        const char *text;
        int length; // -1 when it is refused
    } cases[] = {
        {"v3 x", 2}, {"def", 3}, {"sort? x", 5}, {"defx y", -1}, {"(x y)z", -1}, {"=out/ x", 5},
    };
    for (const auto &c : cases) {
        BRAXhelpgiven = 0;
        const char *end = nullptr;
        printed([&] { end = Zop(c.text); });
        EXPECT_EQ(end == nullptr ? -1 : end - c.text, c.length) << c.text;
    }
    EXPECT_STREQ(OPTpathrule, "out/");
    EXPECT_TRUE(BRAX_nameneedsquotes("my file"));
    EXPECT_FALSE(BRAX_nameneedsquotes("(my file)") || BRAX_nameneedsquotes("file") ||
                 BRAX_nameneedsquotes("-v1 file"));
    char text[] = "=x=yz";
    EXPECT_EQ(Unclump(text), 4);
    EXPECT_STREQ(text, "=x");
    EXPECT_EQ(Unclump(text), 0);
    BRAXhelpgiven = 0;
    BRAX_restore();
}

} // namespace
