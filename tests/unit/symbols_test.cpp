#include "importers/paths.h"
#include "support.h"
#include "symbols/loader.h"
#include "symbols/options.h"
#include "symbols/store.h"

#include <cstring>
#include <ctime>
#include <vector>

namespace {

using std::string;

// Everything that a file's records hold, in the store's order.
string shown(const TVKINFO *info) {
    string text;
    for (const _tagfile *f = info->files; f != nullptr; f = f->next) {
        text += string("<") + f->name + "><" + f->library + "> " +
                (f->source != nullptr ? f->source : "null") + " " + std::to_string(f->date) + " " +
                std::to_string(f->size);
        for (const _tagsymlist *n = f->defines; n != nullptr; n = n->next)
            text += string(" +") + n->symbol->name + ":" + std::to_string(n->symbol->type) +
                    std::to_string(n->symbol->scope) + ":" + std::to_string(n->symbol->size) + "@" +
                    symfile(n->symbol);
        for (const _tagsymlist *n = f->refers; n != nullptr; n = n->next)
            text += string(" -") + n->symbol->name + "@" + symfile(n->symbol);
        text += "|";
    }
    return text;
}

string loaded(const string &bytes) {
    TREE::makefile("symbols.tvk", bytes);
    TVKINFO *info = tvkload("symbols.tvk");
    string text = info != nullptr ? shown(info) : "nothing";
    tvkfree(info);
    return text;
}

TEST(Loader, ReadsRecords) {
    const TREE tree;
    const char *cases[][2] = {
        {"", ""},
        {"preface\n[a.o][core]\nsize=12", "<a.o><core> null 0 12|"},
        {"[a.o]\n[b.o]\n[a.o]\n", "<a.o><> null 0 0|<b.o><> null 0 0|<a.o><> null 0 0|"},
        {"[a.o\n", "<a.o\n><> null 0 0|"},
        {"[a.o] [core]\n", "<a.o><> null 0 0|"},
        {"[]\n", "<><> null 0 0|"},
        {"[a]\ndefine=x,DATA,LOCAL,12\n", "<a><> null 0 0 +x:22:12@a|"},
        {"[a]\ndefine=x\n", "<a><> null 0 0 +x\n:11:0@a|"},
        {"[a]\ndefine=x,UNKNOWN,GLOBAL,9\n", "<a><> null 0 0 +x:11:0@a|"},
        {"[a]\ndefine=x y,FUNCTION,LOCAL, -4z\n", "<a><> null 0 0 +x y:12:-4@a|"},
        {"[a]\ndefine=x,DATA,GLOBALS,5\n", "<a><> null 0 0 +x:21:0@a|"},
        {"[a]\ndefine=x,FUNCTION,XX,5\n", "<a><> null 0 0 +x:11:0@a|"},
        {"[a]\ndefine=x,DATA,,6\n", "<a><> null 0 0 +x:21:6@a|"},
        {"[a]\nrefer=x\n[b]\ndefine=x,DATA,LOCAL,5\nrefer=y z\n[c]\ndefine=x,FUNCTION,GLOBAL,6\n",
         "<c><> null 0 0 +x:21:5@c|<b><> null 0 0 +x:21:5@c -y@unknown|<a><> null 0 0 -x@c|"},
        {"[a]\ndefine=p,\ndefine=q,\nrefer=r\nrefer=\ts\nrefer=r\n",
         "<a><> null 0 0 +q:11:0@a +p:11:0@a -r@unknown -@unknown -r@unknown|"},
        {"[a]\nsource=src\\a.c,20020517\n", "<a><> src\\a.c 20020517 0|"},
        {"[a]\nsource=,5\n", "<a><>  5 0|"},
        {"[a]\nsource=x,5\nsource=y, 6\n", "<a><> y 5 0|"},
        {"[a]\nsize=\t+7x\nsize=x\nsize=\n size=9\nSize=9\n", "<a><> null 0 7|"},
        {"[a]\nsize=99999999999999999999\n", "<a><> null 0 2147483647|"},
        {"[a]\r\nrefer=x\r\n", "<a><> null 0 0 -x@unknown|"},
        {"[a]\nrefer=x", "<a><> null 0 0 -x@unknown|"},
    };
    for (const auto &[bytes, result] : cases)
        EXPECT_EQ(loaded(bytes), result) << bytes;
}

TEST(Loader, KeepsUnderscoresAndFindsVariants) {
    const TREE tree;
    OPTunderscores = 1;
    EXPECT_EQ(loaded("[a]\ndefine=_x,DATA,LOCAL,5\nrefer=x\ndefine=y_,DATA,LOCAL,6\nrefer=y\n"),
              "<a><> null 0 0 +y_:22:6@a +_x:22:5@a -y_@a -_x@a|");
    OPTunderscores = 0;
}

TEST(Loader, EndsLinesAtZeroBytesAndAfter255Characters) {
    const TREE tree;
    EXPECT_EQ(loaded(string("[a]\nrefer=x\0y\ndefine=p\0q,DATA\nsize=1\0002\n\0size=9\n", 47)),
              "<a><> null 0 1 +p:11:0@a -x@unknown|");
    const string longName(249, 'n'); // with "refer=" 255 characters
    const string read = "<a><> null 0 0 -" + longName + "@unknown|";
    EXPECT_EQ(loaded("[a]\nrefer=" + longName + "\n"), read);
    EXPECT_EQ(loaded("[a]\nrefer=" + longName + "nn\n"), read);
    EXPECT_EQ(loaded("[a]\nrefer=" + longName + "size=3\n"),
              "<a><> null 0 3 -" + longName + "@unknown|");
    EXPECT_EQ(loaded("[a]\n" + string(255, '#') + "[b]\nsize=1\n"),
              "<b><> null 0 1|<a><> null 0 0|");
}

TEST(Loader, LosesNothingBetweenBlocks) {
    const TREE tree;
    string bytes = "[a]\n";
    std::vector<string> names;
    for (int i = 0; bytes.size() < 1500000; ++i) {
        names.push_back(std::to_string(i) + string(static_cast<size_t>(i % 211), 'x'));
        bytes += "refer=" + names.back() + "\n";
    }
    TREE::makefile("symbols.tvk", bytes);
    TVKINFO *info = tvkload("symbols.tvk");
    for (const _tagsymlist *n = info->files->refers; n != nullptr; n = n->next) {
        ASSERT_EQ(n->symbol->name, names.back());
        ASSERT_EQ(symfind(info->symtable, names.back().c_str()), n->symbol);
        names.pop_back();
    }
    EXPECT_TRUE(names.empty());
    for (int i = 0; i < SYMBUCKETS; ++i) // the newest comes first
        for (const _tagsymbol *s = info->symtable[i].symbol; s != nullptr; s = s->next)
            EXPECT_TRUE(s->next == nullptr || atoi(s->name) > atoi(s->next->name));
    tvkfree(info);
    EXPECT_EQ(tvkload("missing.tvk"), nullptr);
}

// These names collide in an index whose hash has no random key. Then the load takes minutes.
TEST(Loader, IsNotSlowedByNamesMadeToCollide) {
    const TREE tree;
    string bytes = "[a]\n";
    for (int i = 10000000; i < 10100000; ++i)
        bytes += "refer=\x15|J\x7f\xb9y7\x9e" + std::to_string(i) + "\n";
    TREE::makefile("symbols.tvk", bytes);
    const clock_t begin = clock();
    tvkfree(tvkload("symbols.tvk"));
    EXPECT_LT((clock() - begin) / CLOCKS_PER_SEC, 3);
}

struct Store : testing::Test {
    TVKINFO *info = cinew();
    _tagsymlist *table = info->symtable;

    ~Store() override {
        OPTunderscores = 0;
        for (int i = 0; i < SYMBUCKETS; ++i)
            release(table[i].symbol);
        tvkfree(info);
    }
    // Frees a chain of symbols of symnew.
    static void release(_tagsymbol *symbol) {
        while (symbol != nullptr) {
            _tagsymbol *const next = symbol->next;
            gfree(symbol->name);
            gfree(symbol);
            symbol = next;
        }
    }
    _tagsymbol *add(const string &name, SYMTYPE type = TYPE_FUNCTION, int size = 0) {
        return symadd(table, symnew(name.c_str(), type, SCOPE_GLOBAL, size));
    }
};

TEST_F(Store, HashesTheLastFourCharacters) {
    const int abcd = (64 * 'a' + 16 * 'b' + 4 * 'c' + 'd') % 256;
    const std::pair<const char *, int> cases[] = {
        {"", 0},       {"ab", (4 * 'a' + 'b') % 256},    {"abcd", abcd}, {"xyzabcd", abcd},
        {"\xff", 255}, {"a\xe9", (4 * 'a' + 0xe9) % 256}};
    for (const auto &[name, bucket] : cases)
        EXPECT_EQ(symhash(name), bucket) << name;
}

TEST_F(Store, StripsUnderscoresByDefault) {
    const std::pair<const char *, const char *> cases[] = {
        {"__main__", "main"}, {"_a_b_", "a_b"}, {"___", ""}, {"", ""}, {"x", "x"}};
    for (const auto &[given, stripped] : cases) {
        _tagsymbol *symbol = symnew(given, TYPE_DATA, SCOPE_LOCAL, 7);
        EXPECT_STREQ(symname(symbol), stripped);
        release(symbol);
    }
}

TEST_F(Store, FirstNonZeroValueWins) {
    _tagsymbol *symbol = add("a", TYPE_UNKNOWN);
    const int held = galloccount;
    EXPECT_EQ(add("_a_", TYPE_FUNCTION, 12), symbol);
    EXPECT_EQ(add("a", TYPE_DATA, 40), symbol);
    EXPECT_EQ(galloccount, held) << "duplicates are freed";
    EXPECT_EQ(symbol->type, TYPE_FUNCTION);
    EXPECT_EQ(symsize(symbol), 12);
    EXPECT_EQ(symadd(table, symbol), symbol) << "its own record is no duplicate";
}

TEST_F(Store, FindsNamesUnderTheirVariants) {
    OPTunderscores = 1;
    _tagsymbol *front = add("_a");
    _tagsymbol *after = add("b_");
    _tagsymbol *empty = add("_");
    EXPECT_EQ(symfind(table, "a"), front);
    EXPECT_EQ(symfind(table, "b"), after);
    EXPECT_EQ(symfind(table, ""), empty);
    EXPECT_EQ(symfind(table, "_b"), nullptr);
    EXPECT_EQ(symfindnth(table, "a", 1), nullptr) << "exact names only";
    const string longest(254, 'n');
    _tagsymbol *variant = add("_" + longest);
    EXPECT_EQ(symfind(table, longest.c_str()), variant);
    add("_" + longest + "n");
    EXPECT_EQ(symfind(table, (longest + "n").c_str()), nullptr) << "no variants beyond 254";
}

// Names are cut when they are written and stripped when they are loaded; lookups use the whole
// name.
TEST_F(Store, FindsCutNames) {
    for (const string front : {"", "_", "__"}) {
        for (OPTunderscores = 0; OPTunderscores < 2; ++OPTunderscores) {
            string name =
                front + std::to_string(10 * front.size()) + std::to_string(OPTunderscores);
            name.resize(SYMBOLLIMIT - 1, 'n');
            name += '_';
            _tagsymbol *symbol = add(name);
            name.erase(0, OPTunderscores != 0 ? 0 : front.size());
            EXPECT_EQ(symfind(table, (name + "more").c_str()), symbol) << name;
            EXPECT_NE(add(name + "more"), symbol) << "stored names are never cut";
        }
    }
}

TEST_F(Store, FindsSymbolsChainedByHand) {
    _tagsymbol *older = add("twin");
    _tagsymbol *newer = symnew("twin", TYPE_DATA, SCOPE_LOCAL, 1);
    _tagsymlist *bucket = &table[symhash("twin")];
    newer->next = bucket->symbol;
    bucket->symbol = newer;
    EXPECT_EQ(symfindnth(table, "twin", 1), newer);
    EXPECT_EQ(symfindnth(table, "twin", 2), older);
    EXPECT_EQ(symfindnth(table, "twin", 3), nullptr);
    EXPECT_EQ(symfind(table, "twin"), newer);
    _tagsymlist own[SYMBUCKETS] = {};
    _tagsymbol *alone = symadd(own, symnew("alone", TYPE_DATA, SCOPE_LOCAL, 1));
    EXPECT_EQ(symfind(own, "alone"), alone);
    EXPECT_EQ(symfind(table, "alone"), nullptr);
    release(alone);
}

TEST_F(Store, ShowsSymbolsAsTexts) {
    _tagsymbol symbol = {};
    const char *const cases[][2] = {
        {"", "unknown"}, {"()", "global"}, {"", "local"}, {"????", "????"}};
    for (int32_t i = 0; i < 4; ++i) {
        memcpy(&symbol.type, &i, sizeof i);
        memcpy(&symbol.scope, &i, sizeof i);
        EXPECT_STREQ(symtype(&symbol), cases[i][0]);
        EXPECT_STREQ(symscope(&symbol), cases[i][1]);
    }
    EXPECT_STREQ(symfile(&symbol), "unknown");
    EXPECT_STREQ(symfile(nullptr), "unknown");
}

TEST_F(Store, TakesLibraryNamesFromPaths) {
    const char *cases[][3] = {{"c:\\libs\\libqvo.a", "libqvo", "libqvo.a"},
                              {"d:\\x\\y.LIB", "y", "y.LIB"},
                              {"ai\\foo.o", "ai", "foo.o"},
                              {"foo.o", "before", "foo.o"},
                              {"libs/libqvo.a", "libs/libqvo", "libqvo.a"},
                              {"a/b\\c:d.o", "before", "d.o"},
                              {"libs.v2\\x.lib", "libs.v2", "x.lib"}};
    for (const auto &[path, library, file] : cases) {
        strcpy(OPTlibrary, "before");
        getlibnamefrompath(path);
        EXPECT_STREQ(OPTlibrary, library) << path;
        EXPECT_STREQ(pathfilename(path), file);
    }
    getlibnamefrompath((string(3000, 'n') + ".a").c_str());
    EXPECT_EQ(string(OPTlibrary), string(2047, 'n'));
    EXPECT_EQ(pathfilename(nullptr), nullptr);
    OPTlibrary[0] = 0;
}

} // namespace
