#include "importers/paths.h"
#include "support.h"
#include "symbols/options.h"
#include "symbols/store.h"

#include <cstring>
#include <vector>

namespace {

using std::string;

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
    for (const auto &[name, bucket] : {std::pair{"", 0},
                                       {"ab", (4 * 'a' + 'b') % 256},
                                       {"abcd", abcd},
                                       {"xyzabcd", abcd},
                                       {"\xff", 255},
                                       {"a\xe9", (4 * 'a' + 0xe9) % 256}})
        EXPECT_EQ(symhash(name), bucket) << name;
}

TEST_F(Store, StripsUnderscoresByDefault) {
    for (const auto &[given, stripped] :
         {std::pair{"__main__", "main"}, {"_a_b_", "a_b"}, {"___", ""}, {"", ""}, {"x", "x"}}) {
        for (OPTunderscores = 0; OPTunderscores < 2; ++OPTunderscores) {
            _tagsymbol *symbol = symnew(given, TYPE_DATA, SCOPE_LOCAL, 7);
            EXPECT_STREQ(symname(symbol), OPTunderscores != 0 ? given : stripped);
            release(symbol);
        }
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
    EXPECT_STREQ(symname(symbol), "a");
}

TEST_F(Store, FindsNamesUnderTheirVariants) {
    OPTunderscores = 1;
    _tagsymbol *front = add("_a");
    _tagsymbol *after = add("b_");
    _tagsymbol *empty = add("_");
    EXPECT_EQ(add("a"), front);
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

// Names are cut when they are written and stripped when they are loaded; lookups get them whole.
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
            EXPECT_EQ(symfind(table, name.substr(0, 200).c_str()), nullptr);
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

TEST_F(Store, KeepsManyNamesApartInChainOrder) {
    std::vector<_tagsymbol *> symbols;
    for (int i = 0; i < 5000; ++i)
        symbols.push_back(add("name" + std::to_string(i)));
    for (size_t i = 0; i < symbols.size(); ++i)
        ASSERT_EQ(symfind(table, ("name" + std::to_string(i)).c_str()), symbols[i]) << i;
    for (int i = 0; i < SYMBUCKETS; ++i) {
        int before = INT32_MAX;
        for (const _tagsymbol *s = table[i].symbol; s != nullptr; s = s->next) {
            EXPECT_LT(atoi(symname(s) + 4), before) << "the newest comes first";
            before = atoi(symname(s) + 4);
        }
    }
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
    const struct {
        const char *path, *library, *file;
    } cases[] = {{"c:\\libs\\libqvo.a", "libqvo", "libqvo.a"},
                 {"d:\\x\\y.LIB", "y", "y.LIB"},
                 {"ai\\foo.o", "ai", "foo.o"},
                 {"\\ai\\foo.o", "ai", "foo.o"},
                 {"foo.o", "before", "foo.o"},
                 {"libs/libqvo.a", "libs/libqvo", "libqvo.a"},
                 {"a/b\\c:d.o", "before", "d.o"},
                 {"libs.v2\\x.lib", "libs.v2", "x.lib"},
                 {"x", "before", "x"},
                 {"", "before", ""}};
    for (const auto &c : cases) {
        strcpy(OPTlibrary, "before");
        getlibnamefrompath(c.path);
        EXPECT_STREQ(OPTlibrary, c.library) << c.path;
        EXPECT_STREQ(pathfilename(c.path), c.file);
    }
    getlibnamefrompath((string(3000, 'n') + ".a").c_str());
    EXPECT_EQ(string(OPTlibrary), string(2047, 'n'));
    EXPECT_EQ(pathfilename(nullptr), nullptr);
    OPTlibrary[0] = 0;
}

} // namespace
