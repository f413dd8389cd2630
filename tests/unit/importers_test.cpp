#include "importers/command.h"
#include "importers/parsers.h"
#include "support.h"
#include "symbols/options.h"
#include "symbols/store.h"

#include <cstring>
#include <span>

namespace {

using std::string;

FILE *asfile(const string &text) {
    FILE *file = tmpfile();
    fwrite(text.data(), 1, text.size(), file);
    rewind(file);
    return file;
}

// The lines that a parser adds to a symbol file for a listing.
template <typename PARSE> string recorded(const string &text, PARSE parse) {
    char *result = nullptr;
    size_t size = 0;
    FILE *listing = asfile(text);
    FILE *records = open_memstream(&result, &size);
    parse(listing, records);
    fclose(listing);
    fclose(records);
    string lines(result, size);
    free(result);
    return lines;
}

const string heading = "\nfoo.o:     file format elf32\n\nSYMBOL TABLE:\n";
const string cutName(SYMBOLLIMIT, 'n');

struct CASE {
    string line;
    string expected;
};

void check(int64_t (*parser)(FILE *, FILE *), const string &front, std::span<const CASE> cases) {
    const auto parse = [&](FILE *listing, FILE *records) {
        recordsize(records, parser(listing, records));
    };
    for (const CASE &c : cases)
        EXPECT_EQ(recorded(front + c.line, parse), c.expected) << c.line.substr(0, 80);
}

TEST(Importers, GameCubeListing) {
    const CASE cases[] = {
        {"00000000 g     F .text\t00000024 main__Fv\n",
         "define=main,FUNCTION,GLOBAL,36\nsize=36\n\n"},
        {"00000000 l    df *ABS*\t00000000 foo.c\n", "source=foo.c\nsize=0\n\n"},
        {"00000000         *UND*\t00000000 printf\n", "refer=printf\nsize=0\n\n"},
        {"00000000         *UND*\t00000000 __Fx__Fi\n", "refer=__Fx\nsize=0\n\n"},
        {"00000000 l    d  .text\t00000008 .text\n", "size=8\n\n"},
        {"00000000 g     F .text.unlikely.of_any_length\tffffffff f\n",
         "define=f,FUNCTION,GLOBAL,2147483647\nsize=2147483647\n\n"},
        {"00000000 g     F .text\t00000024\n", "size=0\n\n"},
        {"00000000 g     F .text\t00000024 unended", "size=0\n\n"},
        {"00000000         *UND*\t00000000 f(int,char]\n", "refer=f(int,char]\nsize=0\n\n"},
        {string("00000000         *UND*\t00000000 ") + cutName + "nn\n",
         string("refer=") + cutName + "\nsize=0\n\n"},
        {string("00000000 g     F .text\t00000024 a\0b\n", 36) +
             "00000000         *UND*\t00000000 c\n",
         "define=a,FUNCTION,GLOBAL,36\nrefer=c\nsize=36\n\n"},
        {string(510, 'x') + "00000000         *UND*\t00000000 c\n", "refer=c\nsize=0\n\n"},
    };
    check(gcparse, heading, cases);
}

string pcsymbol(const string &kind, const string &name) {
    string line = string("00A 00000000 ") + kind;
    line.resize(33, ' ');
    return line + "External     | " + name + "\n";
}

TEST(Importers, PcListing) {
    const CASE cases[] = {
        {pcsymbol("SECT2", "  _WinMain@16"), "define=_WinMain,FUNCTION,GLOBAL,0\nsize=0\n\n"},
        {pcsymbol("SECT2", " _a (int __cdecl a)"), "define=_a,FUNCTION,GLOBAL,0\nsize=0\n\n"},
        {pcsymbol("UNDEF", "  _printf"), "refer=_printf\nsize=0\n\n"},
        {pcsymbol("UNDEF", "  __imp__Sleep@4"), "size=0\n\n"},
        {"\n  Summary\n\n      1A .text\n  +4. data\n 10 .bss\n  200 .debug$S\n 8 .idata$2\n x\n "
         "7\n",
         "size=46\n\n"},
    };
    check(pcparse, "", cases);
    const CASE sources[] = {
        {"    C:\\lib\\real\\game\\a.c", "source=game\\a.c,0\nsize=0\n\n"},
        {"    C:\\src\\a.c\r\n", "source=src\\a.c,0\nsize=0\n\n"},
        {"    D:\\library\\a.c", "source=ary\\a.c,0\nsize=0\n\n"},
        {"    REAL/a.c", "source=a.c,0\nsize=0\n\n"},
        {"", "size=0\n\n"},
    };
    check(pcparse, "COFF SYMBOL TABLE\n000 .file\n", sources);
}

TEST(Importers, PlayStationListing) {
    const CASE cases[] = {
        {"    XDEF _main\n", "define=_main,UNKNOWN,GLOBAL,0\nsize=0\n\n"},
        {"    XREF printf", "refer=printf\nsize=0\n\n"},
        {"XDEF a XREF b\n", "refer=b\ndefine=a,UNKNOWN,GLOBAL,0\nsize=0\n\n"},
        {"; block addr=0 size=100\n; block addr=0\n; block addr=0 size=2C\n", "size=300\n\n"},
    };
    check(psxparse, "", cases);
    const TREE tree;
    const string front(240, '\xff');
    const CASE sources[] = {
        {string("PSX\0C:\\LIB\\SRC\\MAIN.C:\0more", 27), "source=src\\main.c,0\n"},
        {"\\LIB\\short", "source=short,0\n"},
        {"\\LIB\\:C:", ""},
        {front + "\\LIB\\abcdefghijkl", "source=abcdefghij,0\n"},
        {front + "123456789012\\LIB\\a", ""},
    };
    for (const CASE &c : sources) {
        TREE::makefile("object", c.line);
        EXPECT_EQ(recorded("", [](FILE *, FILE *records) { psxsource("object", records); }),
                  c.expected);
    }
    const char block[] = "a\0ab\0abc";
    EXPECT_EQ(TVKmemstr(block, "abc", 8), block + 5);
    EXPECT_EQ(TVKmemstr(block, "abc", 7), nullptr);
    EXPECT_EQ(TVKmemstr(block, "", 1), block);
}

string ps2symbol(const string &flags, const string &section, const string &size,
                 const string &name) {
    return string("0000000000000000 ") + flags + " " + section + "\t" + size + " " + name + "\n";
}

const string size64 = "0000000000000040";

string row(const string &text) {
    return string(" 0000 00000000 00000000 00000000 00000000  ") + text + "\n";
}

TEST(Importers, PlayStation2Listing) {
    const CASE cases[] = {
        {ps2symbol("g     F", ".text", size64, "f"), "define=f,FUNCTION,GLOBAL,64\nsize=64\n\n"},
        {ps2symbol("g     O", ".data", size64, "a b"), "define=a b,DATA,GLOBAL,64\nsize=64\n\n"},
        {ps2symbol("g     F", ".text.x", size64, "f"), "define=f,DATA,GLOBAL,64\nsize=64\n\n"},
        {ps2symbol("g     F", ".text", "1200000000000010", "f"),
         "define=f,FUNCTION,GLOBAL,16\nsize=16\n\n"},
        {ps2symbol("       ", "*UND*", size64, "printf"), "refer=printf\nsize=0\n\n"},
        {ps2symbol("g     F", ".text", "00000000zzzzzzzz", "f"), "size=0\n\n"},
        {"0000000000000000 g     F .text no tab\nx\n", "size=0\n\n"},
        {string("\nContents of section .rodata:\n") + row("game/ps2/render.") +
             row("cpp.Assert......"),
         "source=ps2/render.cpp\nsize=0\n\n"},
        {string("\nContents of section .rodata:\n") + row("nothing here") +
             string("Contents of section .mdebug:\n") + row("ps2/a.c.cmn/b.c."),
         "source=cmn/b.c\nsize=0\n\n"},
    };
    check(ps2parse, heading, cases);
}

TEST(Importers, PlayStation2Functions) {
    char name[256];
    char type[32];
    char scope[32];
    int size = -1;
    const string symbol = ps2symbol("       ", "*UND*", size64, "p");
    EXPECT_EQ(ps2_parse_line(symbol.c_str(), name, type, scope, &size), 1);
    EXPECT_EQ(string(name) + type + scope + std::to_string(size), "punknownGLOBAL0");

    // A buffer takes whole rows, and one row fewer than fit.
    FILE *file = asfile(string("\nContents of section .rodata:\n") + row("0123456789abcdef") +
                        row("ghijklmnopqrstuv") + row("end"));
    char text[64];
    EXPECT_STREQ(ps2fgetsection(text, 64, file, "rodata"), "0123456789abcdefghijklmnopqrstuvend");
    EXPECT_STREQ(ps2fgetsection(text, 33, file, "rodata"), "0123456789abcdefghijklmnopqrstuv");
    EXPECT_STREQ(ps2fgetsection(text, 32, file, "rodata"), "0123456789abcdef");
    EXPECT_EQ(ps2fgetsection(text, 64, file, "mdebug"), nullptr);
    fclose(file);
    EXPECT_STREQ(ps2fgetsourcename(text, 5, "xps2/a.c.b"), "ps2/");
    EXPECT_EQ(ps2fgetsourcename(text, 64, "xps2/a.c"), nullptr);
}

TEST(Importers, SgiListing) {
    const string listing = "\n  indented\nlibx.a[foo.o]:\n.symtab\n"
                           "[1] main 0x0 124 GLOB FUNC .text\n"
                           "[ 2] table 0x0 8 LOCL OBJECT .data\n"
                           "[3] foo.c 0x0 0 LOCL FILE ABS\n"
                           "[4] .text 0x0 124 LOCL SECTION .text\n"
                           "[5] printf 0x0 0 GLOB OBJECT UNDEF\n"
                           "[6] short 0x0 0 GLOB FUNC\n"
                           "[x] f 0x0 0 GLOB FUNC .text\n"
                           "bar.o: ignored\n"
                           "bar.o\n"
                           "[1] .text 0x0 7 LOCL SECTION .text";
    EXPECT_EQ(recorded(listing, sgiparse), "[libx.a[foo.o]]\ndefine=main,FUNCTION,GLOB,124\n"
                                           "define=table,DATA,LOCL,8\ndefine=foo.c,FILE,LOCL,0\n"
                                           "refer=printf\nsize=124\n\n"
                                           "[bar.o\n]\nsize=7\n\n");
    EXPECT_EQ(recorded(string("[x:\n[1] ") + cutName + " 0 1 bindings long_typeword t\n", sgiparse),
              string("[[x]\ndefine=") + cutName + ",long_typ,bindin,1\nsize=0\n\n");
}

TEST(Importers, HeaderLinesAreCutTogether) {
    const string object(200, 'o');
    const CASE cases[] = {
        {"lib", string("[") + object + "][lib]\n"},
        {string(60, 'l'),
         string("[") + object.substr(0, OBJECTLIMIT) + "][" + string(60, 'l') + "]\n"},
        {string(2000, 'l'),
         string("[") + object.substr(0, OBJECTLIMIT) + "][" + string(LIBRARYLIMIT, 'l') + "]\n"},
    };
    for (const CASE &c : cases) {
        strcpy(OPTlibrary, c.line.c_str());
        EXPECT_EQ(recorded("", [&](FILE *, FILE *records) { recordobject(records, object); }),
                  c.expected);
    }
    OPTlibrary[0] = 0;
}

TEST(Importers, CommandsReachTheProgramAsTheyAre) {
    const char *cases[][4] = {
        {"p ", "lib/a_b.o", " >t", "p lib/a_b.o >t"},
        {"p ", "a b$c;'\"\\.o", ">t", "p a\\ b\\$c\\;\\'\\\"\\\\.o>t"},
        {"p ", "-x.o", "", "p ./-x.o"},
        {"p ", "12", ">t", "p ./12>t"},
        {"p ", "12", " >t", "p 12 >t"},
        {"p ..\\", "lib/x y.a", "", "p ..\\lib/x\\ y.a"},
        {"p ..\\", "\nx.a", "", "p ..'\n'x.a"},
    };
    char command[COMMANDSIZE];
    for (const auto &[before, name, after, expected] : cases) {
        ASSERT_TRUE(makecommand(command, before, name, after));
        EXPECT_STREQ(command, expected);
    }
    EXPECT_FALSE(makecommand(command, "p ", string(COMMANDSIZE, 'a').c_str(), ""));
}

TEST(Importers, EveryByteOfANameArrives) {
    string name = "x";
    for (int c = 1; c < 256; ++c)
        name += static_cast<char>(c);
    char command[COMMANDSIZE];
    ASSERT_TRUE(makecommand(command, "printf %s ", name.c_str(), ""));
    FILE *pipe = popen(command, "r");
    char received[512] = "";
    received[fread(received, 1, sizeof received - 1, pipe)] = 0;
    pclose(pipe);
    EXPECT_EQ(received, name);
}

} // namespace
