#include "search_tree.h"

#include "tool/loader.h"
#include "tool/options.h"
#include "tool/report.h"

#include <climits>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

using std::string;

constexpr char product[] = "[key.o][input]\n"
                           "source=src/in@x/key.c,20020517\n"
                           "define=_getkey,FUNCTION,GLOBAL,40\n"
                           "define=keys,DATA,GLOBAL,0\n"
                           "refer=abort\nrefer=joystick\nrefer=print\nrefer=print\n"
                           "size=100\n\n"
                           "[joy.o][pads]\n"
                           "source=joy.c\n"
                           "define=joystick,FUNCTION,GLOBAL,80\n"
                           "refer=getkey\nsize=2000\n\n"
                           "[print.o]\n"
                           "source=a:b\\p.c,20021399\n"
                           "define=print,FUNCTION,LOCAL,8\nsize=0\n";

struct Report : testing::Test {
    const TREE tree;
    TVKINFO *info = nullptr;

    Report() {
        TREE::makefile("p.tvk", product);
        info = tvkload("p.tvk");
        postheader = "\n";
    }
    ~Report() override {
        tvkfree(info);
        OPTverbose = 2;
        OPThtml = 0;
        OPTsourcelinkprefix[0] = 0;
        preheader = postheader = "";
    }

    static string contents(const char *path) {
        std::ifstream file(path);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    int write(const char *path, const char *symbol, const char *file = nullptr, int links = 1) {
        char *symbols[] = {const_cast<char *>(symbol)};
        char *files[] = {const_cast<char *>(file)};
        return tvkreport(path, info, symbols, symbol != nullptr ? 1 : 0, files,
                         file != nullptr ? 1 : 0, 1, 1, links, INT_MAX);
    }
    string written(const char *symbol, const char *file = nullptr, int links = 1) {
        EXPECT_EQ(write("out", symbol, file, links), 1);
        return contents("out");
    }
    string printed(const char *symbol, const char *file = nullptr) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(write("", symbol, file), 1);
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(Report, ShowsASymbolInSectionsOrInOneLine) {
    EXPECT_EQ(written("getkey"),
              "\nSYMBOL\n    getkey()\n\nDEFINED IN\n    key.o\n"
              "\nREFERRED TO IN\n    joy.o\n    1 Files\n"
              "\nLINKS IN\n    key.o (100) [getkey]\n        print.o (0) [print]\n"
              "        joy.o (2000) [joystick]\n    Total: 2100 bytes\n\n");
    OPTverbose = 1;
    const string getkey = "getkey                          "
                          "            key.o        1 refs     100     2100 \n";
    EXPECT_EQ(written("getkey"), getkey);
    EXPECT_EQ(written("abort"), "");
    EXPECT_EQ(written("print"), "");
    EXPECT_EQ(
        written("all"),
        "keys                                        key.o        0 refs     100     2100 \n"
        "joystick                                    joy.o        1 refs    2000     2100 \n" +
            getkey);
    OPTverbose = 0;
    EXPECT_EQ(written("abort"),
              "abort                                     unknown        1 refs\n");
    EXPECT_EQ(written("print"),
              "print                                     print.o        2 refs\n");
}

TEST_F(Report, SaysWhichSymbolsAreMissing) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(written("_getkey"), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "tolvik: symbol '_getkey' not found\n");
}

constexpr char joy[] = "    joy.c \n\nDEFINES\n    joystick() [80]\n\nREFERS TO\n"
                       "    getkey() (key.o)\n";
constexpr char joyLinks[] = "\nLINKS IN\n    Libraries: <FONT COLOR=\"#000000\">pads</FONT>,"
                            "<FONT COLOR=\"#990000\">input</FONT>\n\n"
                            "    joy.o (pads, 2000) [joystick]\n"
                            "        key.o (<FONT COLOR=\"#990000\">input</FONT>, 100) [getkey]\n"
                            "            print.o (0) [print]\n";

TEST_F(Report, PutsTheTotalWhereTheOutputAllows) {
    EXPECT_EQ(written(nullptr, "JOY.O"), string("\nFILE\n    joy.o (pads, 2000 bytes, links 2100 "
                                                "bytes total)        \n") +
                                             joy + joyLinks + "\n");
    const string line = "\nFILE\n    joy.o (pads, 2000 bytes)" + string(32, ' ') + "\n";
    const string total = "\n    Links 2100 bytes total\n";
    EXPECT_EQ(printed(nullptr, "joy.o"), line + joy + joyLinks + total);
    EXPECT_EQ(written(nullptr, "joy.o", 0), line + joy + "\n");
    mkfifo("pipe", 0600);
    FILE *reader = popen("cat pipe >copy", "r");
    EXPECT_EQ(write("pipe", nullptr, "joy.o"), 1);
    pclose(reader);
    EXPECT_EQ(contents("copy"), line + joy + joyLinks + total);
}

TEST_F(Report, LinksSourcesInHtml) {
    OPThtml = 1;
    preheader = "</PRE><H4>";
    postheader = "</H4><PRE>";
    strcpy(OPTsourcelinkprefix, "//src/");
    const char style[] =
        "')\" style=\"text-decoration: none; color:#003399; cursor: hand\" title=\"";
    const string spaces = ")" + string(32, ' ') + "\n    ";
    OPTverbose = 1;
    EXPECT_EQ(written(nullptr, "key.o", 0).substr(0, 260),
              ("    key.o (input, 100 bytes" + spaces +
               "<a onclick=\"openfile('//src/input/src/in" + style +
               "in Source\">input/src/in</a> (Jun 17,2002)\n    keys\n    getkey() [40]\n" +
               "    print() (print.o)\n    print() (print.o)\n")
                  .substr(0, 260));
    EXPECT_EQ(written(nullptr, "print.o", 0),
              "    print.o (0 bytes" + spaces + "<a onclick=\"openfile('//src/a/p.c" + style +
                  "p.c Source\">a/p.c</a> (13 99,2002)\n    print() [8]\n\n");
    OPTverbose = 2;
    EXPECT_EQ(written(nullptr, "joy.o", 0),
              "\n</PRE><H4>FILE</H4><PRE>    joy.o (pads, 2000 bytes" + spaces +
                  "<a onclick=\"openfile('//src/pads/joy.c/joy.c" + style +
                  "joy.c Source\">pads/joy.c/joy.c</a> \n\n</PRE><H4>DEFINES</H4><PRE>"
                  "    joystick() [80]\n\n</PRE><H4>REFERS TO</H4><PRE>    getkey() (key.o)\n\n");
}

TEST_F(Report, WritesNothingOrSaysThatItFailed) {
    TVKINFO *none = nullptr;
    std::swap(info, none);
    EXPECT_EQ(write("out", "getkey"), 0);
    EXPECT_FALSE(std::filesystem::exists("out"));
    std::swap(info, none);
    testing::internal::CaptureStderr();
    EXPECT_EQ(write("missing/out", "getkey"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    testing::internal::CaptureStderr();
    EXPECT_EQ(write("/dev/full", "getkey"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "tolvik: ERROR: could not write the report '/dev/full'\n");
    EXPECT_EQ(printed(nullptr, "unknown.o"), "");
}

// Records that were put together by hand carry none of what the loader knows beside.
TEST_F(Report, CountsReferencesInStoresMadeByHand) {
    OPTverbose = 0;
    _tagfile *file = finew("hand.o", "");
    file->refers = slnew();
    file->refers->symbol = symfind(info->symtable, "keys");
    file->next = info->files;
    info->files = file;
    testing::internal::CaptureStdout();
    printsymbolreport(stdout, file->refers->symbol, info, 0, 1, 0, 0);
    printheader(stdout, "none at verbosity 0");
    fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "keys                                     1 refs\n");
}

} // namespace
