// How fast listings are read: bytes of listing text per second, records included.
#include "importers/parsers.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <memory>
#include <string>

namespace {

using std::string;
using PARSER = void (*)(LISTING *, const char *, RECORDS *);

constexpr int symbols = 50000;

// A listing in the proportions of a C++ object: a third of its symbols long, half of them
// defined here.
template <typename LINEOF> string listing(const string &heading, LINEOF lineof) {
    string text = heading;
    for (int i = 0; i < symbols; ++i) {
        const string number = std::to_string(i);
        const string name =
            i % 3 == 0 ? "_ZN4game6render" + string(60, 'x') + number : "draw" + number;
        text += lineof(i % 2 == 0, name);
    }
    return text;
}

const string elfHeading = "\nfoo.o:     file format elf32\n\nSYMBOL TABLE:\n";

string gclisting() {
    return listing(elfHeading, [](bool defined, const string &name) {
        return (defined ? "00000000 g     F .text\t00000024 "
                        : "00000000         *UND*\t00000000 ") +
               name + "\n";
    });
}

string pclisting() {
    return listing("COFF SYMBOL TABLE\n000 .file\n    C:\\a.c\n",
                   [](bool defined, const string &name) {
                       return (defined ? "00A 00000000 SECT2  notype ()    External     |  "
                                       : "00B 00000000 UNDEF  notype       External     |  ") +
                              name + "\n";
                   });
}

string psxlisting() {
    return listing("; block addr=0 size=100\n", [](bool defined, const string &name) {
        return (defined ? "\t\tXDEF\t" : "\t\tXREF\t") + name + "\n";
    });
}

string ps2listing() {
    string text = listing(elfHeading, [](bool defined, const string &name) {
        return (defined ? "0000000000000000 g     F .text\t0000000000000024 "
                        : "0000000000000000         *UND*\t0000000000000000 ") +
               name + "\n";
    });
    text += "\n\nContents of section .text:\n";
    for (int i = 0; i < 2 * symbols; ++i)
        text += " 0000 67616d65 2f707332 2f72656e 6465722e  game/ps3/render.\n";
    return text;
}

string sgilisting() {
    return listing("lib.a[foo.o]:\n", [](bool defined, const string &name) {
        return "[12]   " + name + "  0x00000000  124  GLOB  FUNC  " +
               (defined ? ".text\n" : "UNDEF\n");
    });
}

void read(benchmark::State &state, const string &text, PARSER parser) {
    const auto input = std::make_unique<LISTING>();
    const auto records = std::make_unique<RECORDS>();
    FILE *file = tmpfile();
    fwrite(text.data(), 1, text.size(), file);
    openrecords(records.get(), "/dev/null");
    for ([[maybe_unused]] auto run : state) {
        rewind(file);
        startlisting(input.get(), file);
        parser(input.get(), "none", records.get());
        recordsize(records.get());
    }
    closerecords(records.get(), false);
    fclose(file);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void gc(benchmark::State &state) {
    read(state, gclisting(), gcparse);
}

void pc(benchmark::State &state) {
    read(state, pclisting(), pcparse);
}

void psx(benchmark::State &state) {
    read(state, psxlisting(), psxparse);
}

void ps2(benchmark::State &state) {
    read(state, ps2listing(), ps2parse);
}

void sgi(benchmark::State &state) {
    read(state, sgilisting(),
         [](LISTING *input, const char *, RECORDS *records) { sgiparse(input, records); });
}

BENCHMARK(gc);
BENCHMARK(pc);
BENCHMARK(psx);
BENCHMARK(ps2);
BENCHMARK(sgi);

} // namespace
