#include "base/options.h"
#include "search/argv.h"
#include "search/find.h"
#include "support.h"
#include "wild/wild.h"

#include <set>
#include <sys/stat.h>
#include <unistd.h>

namespace {

struct Find : testing::Test, TREE {
    SearchList *list = nullptr;
    int held = 0;

    Find() {
        BRAX_ini();
        held = galloccount;
        current_unmatched = 0;
    }
    void TearDown() override {
        clear();
        pathmatchfun = WILD_matchpath;
        BRAX_ini();
        EXPECT_EQ(galloccount, held);
        EXPECT_EQ(here(), root);
    }
    void clear() {
        freeFiles();
        DestroySearchList(list);
        list = nullptr;
    }
    static void link(const char *target, const char *name) {
        std::filesystem::create_symlink(target, name);
    }
    // Searches for names as on a command line, "source" or "source=dest".
    void find(std::initializer_list<std::string> names) {
        clear();
        list = CreateSearchList();
        for (const std::string &name : names) {
            const std::string source = name.substr(0, name.find('='));
            AddToSearchList(list, source.c_str(), name.substr(name.find('=') + 1).c_str());
        }
        BRAX_findbatch(list);
        MakeArgvs(list);
    }
    // The files found: "source>dest", sorted, separated by blanks.
    std::string found(std::initializer_list<std::string> names) {
        find(names);
        std::multiset<std::string> all;
        for (int i = 0; i < BRAXargnum; ++i)
            all.insert(std::string(BRAXsargv[i]) + ">" + BRAXdargv[i]);
        std::string text;
        for (const std::string &one : all)
            text += (text.empty() ? "" : " ") + one;
        return text;
    }
};

TEST_F(Find, FollowsPatternsOneComponentAtATime) {
    for (const char *name : {"src/a.c", "src/b.c", "src/n.h", "sub/a.c", "sub/deep/x7.c", "top.c",
                             "sub/Src/q.c", "other/a.c", "src/.hid1", "src/.hid2"})
        makefile(name);
    makedir("src/dir.c");
    link("nowhere", "src/0dangling.c");
    const struct {
        std::string name, result;
    } cases[] = {
        {"src/*.c", "src/a.c>src/a.c src/b.c>src/b.c"},
        {"s*/*.c=o/*.o", "src/a.c>o/a.o src/b.c>o/b.o sub/a.c>o/a.o"},
        {"s*/a.c=*[0]-/x.o", "src/a.c>rc-/x.o sub/a.c>ub-/x.o"},
        {"sub/../*.c", "sub/../top.c>sub/../top.c"},
        {"sub/d*/x#.c=x###.o", "sub/deep/x7.c>x007.o"},
        {"src/none.c=#.o", "src/none.c>#.o"},
        {root + "/s?c/a.*=*.o", root + "/src/a.c>c.o"},
        {"/" + root + "/src/n.*", "/" + root + "/src/n.h>/" + root + "/src/n.h"},
        {root + "top.c=*y", "top.c>y"}, // the length of the start decides
        {"\\\\host\\share", "\\\\host\\share>\\\\host\\share"},
        {"c:/*.c", "c:/*.c>c:/*.c"},
    };
    for (const auto &c : cases)
        EXPECT_EQ(found({c.name}), c.result) << c.name;
    OPTkeepunfound = 0;
    const std::string absolute = root + "/src/a.c";
    EXPECT_EQ(found({"src/none.c", "nodir/x.c", "src/b.c", absolute}),
              absolute + ">" + absolute + " src/b.c>src/b.c");
    OPTdirectory = 1;
    EXPECT_EQ(found({"src/d*"}), "src/dir.c>src/dir.c");
    // A matcher that ignores case compares every name.
    pathmatchfun = WILD_imatchpath;
    EXPECT_EQ(found({"SUB/SRC/Q.C=*.o"}), "sub/Src/q.c>.o");
}

TEST_F(Find, SearchesOneDirectory) {
    for (const char *name : {"a1.obj", "a22.obj", "b.obj", "B2.OBJ", "x.c", "lib/a3.obj"})
        makefile(name);
    const char *cases[][2] = {
        {"*.obj", "a1.obj>a1.obj a22.obj>a22.obj b.obj>b.obj"},
        {"a#.obj=b###.rpt", "a1.obj>b001.rpt a22.obj>b022.rpt"},
        {"?.*=*[0]/?[0].o", "b.obj>obj/b.o x.c>c/x.o"},
        {"b2.obj", "b2.obj>b2.obj"},
        {".obj", ".obj>.obj"},
    };
    for (const auto &[name, result] : cases)
        EXPECT_EQ(found({name}), result) << name;
    OPTkeepunfound = 0;
    EXPECT_EQ(found({"*.zip", "none", "b2.obj", "lib"}), "B2.OBJ>b2.obj");
    OPTexpandwildcards = 0;
    makefile("*.obj");
    EXPECT_EQ(found({"*.obj"}), "*.obj>*.obj");
}

TEST_F(Find, SearchesATree) {
    for (const char *name : {"a.c", "lib/x/a.c", "lib/x/a2.c", "lib/B.C", "c#/a.c", "out/a.o"})
        makefile(name);
    OPTrecurse = 1;
    const char *cases[][2] = {
        {"*.c", "a.c>a.c c#/a.c>c#/a.c lib/x/a.c>lib/x/a.c lib/x/a2.c>lib/x/a2.c"},
        {"A.C", "a.c>A.C c#/a.c>c#/A.C lib/x/a.c>lib/x/A.C"},
        {"*.c=out/*.o",
         "a.c>out/a.o c#/a.c>out/c#/a.o lib/x/a.c>out/lib/x/a.o lib/x/a2.c>out/lib/x/a2.o"},
        {"a#.c=b##.o", "lib/x/a2.c>lib/x/b02.o"},
    };
    for (const auto &[name, result] : cases)
        EXPECT_EQ(found({name}), result) << name;
    OPTstartrecurseat = 1;
    EXPECT_EQ(found({"*.c", "b.c"}), "a.c>a.c lib/B.C>lib/b.c");
    OPTstartrecurseat = 0;
    OPTstrippaths = 1;
    EXPECT_EQ(found({"*2.c=out/*.o", "b.c"}), "lib/B.C>b.c lib/x/a2.c>out/a.o");
}

TEST_F(Find, SearchesTheDirectoriesOfAPathList) {
    for (const char *name : {"inc/a.h", "inc/sub/b.h", "more/c.h", "top.h"})
        makefile(name);
    OPTrecurse = 2;
    char paths[] = "inc;missing;;more/";
    OPTenvpath = paths;
    EXPECT_EQ(found({"*.h=*.o", "s*/b.*=#/*.x"}),
              "inc/a.h>inc/a.o inc/sub/b.h>inc/0/h.x more/c.h>more/c.o");
    OPTenvpath = nullptr;
}

TEST_F(Find, FillsListsAndFiltersByAttributes) {
    makefile("big.c", "12345");
    makefile("locked.c");
    makedir("dir.c");
    chmod("locked.c", 0444);
    OPTmakesizelist = OPTmakedatelist = OPTmakeattriblist = 1;
    OPTdirectory = 1;
    find({"*.c"});
    ASSERT_EQ(BRAXargnum, 3);
    for (int i = 0; i < 3; ++i) {
        const std::string name = BRAXsargv[i];
        EXPECT_EQ(BRAXattribargv[i], name == "dir.c" ? 1 : name == "locked.c" ? 2 : 0);
        EXPECT_TRUE(name != "big.c" || BRAXsizeargv[i] == 5);
        EXPECT_GT(BRAXdateargv[i], 0);
    }
    OPTmakesizelist = OPTmakedatelist = OPTmakeattriblist = 0;
    OPTreadonly = 0;
    EXPECT_EQ(found({"*.c"}), "big.c>big.c dir.c>dir.c");
    OPTreadonly = 1;
    OPTallfiles = 0;
    EXPECT_EQ(found({"*.c"}), "dir.c>dir.c locked.c>locked.c");
}

TEST_F(Find, WalksTreesThatLoopAndBreak) {
    makefile("t/a.c");
    makefile("t/sub/b.c");
    makefile("elsewhere/e.c");
    makefile("t/closed/c.c");
    makefile("t/z\n\x01\xff '/d.c");
    link("..", "t/sub/up");
    link(".", "t/here");
    link("/", "t/slash");
    link("../elsewhere", "t/link");
    link("../t", "elsewhere/back");
    link("nowhere", "t/0dangling.c");
    chmod("t/closed", 0);
    ASSERT_EQ(chdir("t"), 0);
    OPTrecurse = 1;
    const std::string closed = geteuid() == 0 ? " closed/c.c>closed/c.c" : "";
    EXPECT_EQ(found({"*.c"}), "a.c>a.c" + closed +
                                  " link/e.c>link/e.c sub/b.c>sub/b.c "
                                  "z\n\x01\xff '/d.c>z\n\x01\xff '/d.c");
    OPTrecurse = 0;
    // A link that is named is followed; one that a wildcard meets is not, when it leads up.
    EXPECT_EQ(found({"sub/up/*.c", "h*/*.c", "sub/*/a.c"}),
              "h*/*.c>h*/*.c sub/*/a.c>sub/*/a.c sub/up/a.c>sub/up/a.c");
    chmod("closed", 0700);
    ASSERT_EQ(chdir(".."), 0);
}

TEST_F(Find, WalksTwoThousandLevels) {
    const std::string directory = repeated("level/", 2000);
    for (int i = 0; i < 2000; ++i)
        ASSERT_TRUE(mkdir("level", 0700) == 0 && chdir("level") == 0);
    makefile("deep7.c");
    ASSERT_EQ(chdir(root.c_str()), 0);
    makefile("beside/z.c");
    OPTrecurse = 1;
    EXPECT_EQ(found({"deep#.c=##.o", "Z.C"}),
              "beside/z.c>beside/Z.C " + directory + "deep7.c>" + directory + "07.o");
}

TEST_F(Find, SplitsOffTheFirstDirectory) {
    char component[16];
    EXPECT_STREQ(GetFirstDir("ab\\c/d", component), "\\c/d");
    EXPECT_STREQ(component, "ab");
    EXPECT_STREQ(GetFirstDir("/x", component), "/x");
    EXPECT_STREQ(component, "");
    EXPECT_EQ(FindAbsolutes(nullptr) + FindDirs(nullptr, "", 0) + FindRecursive("", "", nullptr, 0),
              0);
    // Seen from another root.
    makefile("sub/a.c");
    list = CreateSearchList();
    AddToSearchList(list, "*.c", "*.c");
    EXPECT_EQ(FindRecursive((root + "/sub").c_str(), (root + "/su").c_str(), list, 1), 1);
    EXPECT_STREQ(list->files[0]->matches[0]->source, "b/a.c");
    EXPECT_EQ(FindRecursive("missing", "", list, 0), 0);
}

} // namespace
