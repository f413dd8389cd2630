#include "support.h"
#include "symbols/loader.h"

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
    const struct {
        const char *bytes, *result;
    } cases[] = {
        {"", ""},
        {"size=3\ndefine=a\n", ""},
        {"preface\n[a.o][core]\nsize=12", "<a.o><core> null 0 12|"},
        {"[a.o]\n[b.o]\n[a.o]\n", "<a.o><> null 0 0|<b.o><> null 0 0|<a.o><> null 0 0|"},
        {"[a.o", "<a.o><> null 0 0|"},
        {"[a.o\n", "<a.o\n><> null 0 0|"},
        {"[a.o][core\n", "<a.o><core\n> null 0 0|"},
        {"[a.o] [core]\n", "<a.o><> null 0 0|"},
        {"[]\n", "<><> null 0 0|"},
        {"[a]\ndefine=x,DATA,LOCAL,12\n", "<a><> null 0 0 +x:22:12@a|"},
        {"[a]\ndefine=x\n", "<a><> null 0 0 +x\n:11:0@a|"},
        {"[a]\ndefine=x,DATA,global,12\n", "<a><> null 0 0 +x:21:0@a|"},
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
        {"[a]\nsource= x y,7\nsource=\n", "<a><> x 0 0|"},
        {"[a]\nsource=,5\n", "<a><>  5 0|"},
        {"[a]\nsource=x,5\nsource=y, 6\n", "<a><> y 5 0|"},
        {"[a]\nsource=x,z\n", "<a><> x 0 0|"},
        {"[a]\nsize=\t+7x\nsize=x\nsize=\n size=9\nSize=9\n", "<a><> null 0 7|"},
        {"[a]\nsize=99999999999999999999\n", "<a><> null 0 2147483647|"},
        {"[a]\nsize=-2147483649\n", "<a><> null 0 -2147483648|"},
        {"[a]\nrefer=x", "<a><> null 0 0 -x@unknown|"},
        {"[a]\r\nrefer=x\r\n", "<a><> null 0 0 -x@unknown|"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(loaded(c.bytes), c.result) << c.bytes;
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
    EXPECT_EQ(loaded("[" + string(254, 'h') + "]\n"), "<" + string(254, 'h') + "><> null 0 0|");
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
        names.pop_back();
    }
    EXPECT_TRUE(names.empty());
    tvkfree(info);
    EXPECT_EQ(tvkload("missing.tvk"), nullptr);
}

} // namespace
