// The symbol report. Closures of named symbols are found in the store's lists until these would
// take longer than a graph, which serves the rest. All memory is allocated before a report is
// begun, so that it is whole or absent. Only a caller's files that are in no list may need more.
#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "report/closure.h"
#include "report/graph.h"
#include "report/output.h"
#include "report/report.h"
#include "report/totals.h"
#include "symbols/options.h"

#include <algorithm>
#include <bit>
#include <numeric>

namespace {

// A closure of closure.h. The detailed form sets the list, the compact one the sum of the sizes.
struct CLOSURE {
    _tagfilelist *list;
    int64_t total;
};

// One symbol report.
struct SYMBOLREPORT {
    OUTPUT out;
    const TVKINFO *info;
    int define;
    int refer;
    int links;
    int limit;

    _tagsymbol **symbols = nullptr; // in the report's order; null entries are not in the store
    int64_t count = 0;
    bool isAll = false;

    // For named symbols:
    int64_t found = 0; // the first symbols have a closure
    CLOSURE *closures = nullptr;
    int slots = 0;                    // power of two; few are used, so that branches are predicted
    const _tagsymbol **set = nullptr; // the named symbols at their hashes

    int64_t counted = 0;            // references to the symbols
    _tagfile **referrers = nullptr; // in the detailed form: their files

    // For all symbols, and for those without a closure:
    GRAPH graph = {};
    LINKWALK walk = {};
    int64_t *totals = nullptr; // in the compact form: total of each file's closure
};

bool isdetailed() {
    return OPTverbose > 1;
}

// Returns the symbol's place in the set, or the free one for it.
int findslot(const SYMBOLREPORT &report, const _tagsymbol *symbol) {
    const auto address = reinterpret_cast<uintptr_t>(symbol);
    int slot = static_cast<int>(address * 0x9E3779B97F4A7C15ULL >> 33) & (report.slots - 1);
    while (report.set[slot] != nullptr && report.set[slot] != symbol)
        slot = (slot + 1) & (report.slots - 1);
    return slot;
}

// Calls the function for each reported symbol's reference. Returns the number of all references.
template <typename F> int64_t eachreference(const SYMBOLREPORT &report, const F &function) {
    int64_t nodes = 0;
    for (_tagfile *file = report.info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next, ++nodes) {
            if (report.isAll || report.set[findslot(report, node->symbol)] != nullptr)
                function(node->symbol, file);
        }
    }
    return nodes;
}

// Counts the references of each reported symbol. Returns the number of all references.
int64_t countrefs(SYMBOLREPORT *report) {
    const auto clear = [](_tagsymbol *symbol, const _tagfile * = nullptr) {
        symbol->nrefers = 0;
        symbol->firstref = -1;
    };
    for (int64_t i = 0; i < report->count; ++i) {
        if (report->symbols[i] != nullptr)
            clear(report->symbols[i]);
    }
    // Lists of a caller may hold symbols that are in no bucket.
    if (report->isAll && isdetailed())
        eachreference(*report, clear);
    return eachreference(*report, [&](_tagsymbol *symbol, const _tagfile * /*file*/) {
        ++symbol->nrefers;
        ++report->counted;
    });
}

// Collects the files that refer to each reported symbol, in the store's order, one entry a
// reference: nrefers entries from the symbol's firstref on.
bool collectreferrers(SYMBOLREPORT *report) {
    report->referrers = galloclarge<_tagfile *>(report->counted);
    if (report->referrers == nullptr)
        return false;
    int32_t used = 0;
    eachreference(*report, [&](_tagsymbol *symbol, _tagfile *file) {
        if (symbol->firstref < 0) {
            symbol->firstref = used;
            used += symbol->nrefers;
            symbol->nrefers = 0;
        }
        report->referrers[symbol->firstref + symbol->nrefers++] = file;
    });
    return true;
}

// Finds a closure in the store's lists. False when memory runs out.
bool findclosure(const SYMBOLREPORT *report, _tagsymbol *symbol, CLOSURE *closure) {
    if (isdetailed())
        closure->list = symneedfiles(symbol, nullptr, report->limit, 0);
    else
        closure->total = symneedbytes(symbol, report->limit);
    return !closurefailed();
}

// Finds closures until they have followed more references than a graph would copy.
bool findclosures(SYMBOLREPORT *report, int64_t nodes) {
    const int64_t begin = closurerefs();
    for (; report->found < report->count && closurerefs() - begin <= nodes; ++report->found) {
        _tagsymbol *symbol = report->symbols[report->found];
        if (symbol != nullptr && !findclosure(report, symbol, &report->closures[report->found]))
            return false;
    }
    return true;
}

// Sets the totals of all files, or of those of the symbols without a closure.
bool findtotals(SYMBOLREPORT *report) {
    const GRAPH *graph = &report->graph;
    int32_t count = report->isAll ? graph->count : 0;
    auto *files = gallocarray<int32_t>(std::max<int64_t>(count, report->count) + 1);
    if (files == nullptr)
        return false;
    std::iota(files, files + count, 0);
    for (int64_t i = report->found; i < report->count && !report->isAll; ++i) {
        const _tagsymbol *symbol = report->symbols[i];
        files[count] = symbol != nullptr ? filenumber(graph, symbol->file) : -1;
        count += files[count] >= 0;
    }
    report->totals = linktotals(&report->walk, report->limit, files, count);
    gfree(files);
    return report->totals != nullptr;
}

bool preparelinks(SYMBOLREPORT *report, int64_t nodes, bool graphCounts) {
    if (!report->isAll && !findclosures(report, nodes))
        return false;
    if (report->found == report->count)
        return true;
    return makegraph(&report->graph, report->info, isdetailed(), report->symbols,
                     graphCounts ? report->count : 0) &&
           makewalk(&report->walk, &report->graph) && (isdetailed() || findtotals(report));
}

void printdefine(OUTPUT *out, const _tagsymbol *symbol) {
    putheading(out, "DEFINED IN");
    if (isdetailed())
        puttexts(out, "    ", symfile(symbol), "\n");
    else
        putaligned(out, symfile(symbol), 16);
}

void printrefer(SYMBOLREPORT *report, const _tagsymbol *symbol) {
    OUTPUT *out = &report->out;
    putheading(out, "REFERRED TO IN");
    const int32_t count = symbol->nrefers;
    if (isdetailed()) {
        for (int32_t i = 0; i < count; ++i)
            puttexts(out, "    ", report->referrers[symbol->firstref + i]->name, "\n");
        puttexts(out, "    ");
        putnumber(out, count);
        puttexts(out, " Files\n");
    } else {
        puttexts(out, " ");
        putnumber(out, count, 8);
        puttexts(out, " refs");
    }
}

// Returns the sum of the sizes of a closure: that of file `number` of the graph, or the one given
// if the number is -1. The detailed form prints it.
int64_t printclosure(SYMBOLREPORT *report, const _tagsymbol *symbol, int32_t number,
                     const CLOSURE &closure) {
    if (!isdetailed())
        return number >= 0 ? report->totals[number] : closure.total;
    int64_t total = 0;
    const auto add = [&](const _tagfile *file, int level, const _tagsymbol *through) {
        total += file->size;
        putlinkstart(&report->out, file, level);
        putlinkend(&report->out, file, through);
    };
    if (number >= 0) {
        LINKWALK *walk = &report->walk;
        restartwalk(walk);
        walkfrom(walk, number, symbol, report->limit, 0);
        for (int32_t i = 0; i < walk->count; ++i) {
            const REACHED &reached = walk->reached[i];
            add(report->graph.files[reached.file], reached.level, reached.symbol);
        }
    }
    for (const _tagfilelist *entry = closure.list; entry != nullptr; entry = entry->next)
        add(entry->file, entry->level, entry->symbol);
    return total;
}

void printlinks(SYMBOLREPORT *report, const _tagsymbol *symbol, int32_t number,
                const CLOSURE &closure) {
    OUTPUT *out = &report->out;
    putheading(out, "LINKS IN");
    const int32_t total = toint32(printclosure(report, symbol, number, closure));
    if (total <= 0)
        return;
    if (isdetailed()) {
        puttexts(out, "    Total: ");
        putnumber(out, total);
        puttexts(out, " bytes\n");
    } else {
        putnumber(out, symbol->file != nullptr ? symbol->file->size : 0, 8);
        puttexts(out, " ");
        putnumber(out, total, 8);
        puttexts(out, " ");
    }
}

// Prints a symbol's part. `found` is its closure, null if it was not found before. False, with
// nothing printed, when memory runs out.
bool printsymbol(SYMBOLREPORT *report, _tagsymbol *symbol, const CLOSURE *found) {
    OUTPUT *out = &report->out;
    if (OPTverbose == 1 && (symbol->file == nullptr || symbol->file->size == 0))
        return true;
    CLOSURE closure = found != nullptr ? *found : CLOSURE{};
    const int32_t number = found != nullptr ? -1 : filenumber(&report->graph, symbol->file);
    if (report->links != 0 && number < 0 && found == nullptr &&
        !findclosure(report, symbol, &closure))
        return false;
    putheading(out, "SYMBOL");
    const std::string_view name = symname(symbol);
    if (isdetailed()) {
        puttexts(out, "    ", symname(symbol), symtype(symbol), "\n");
    } else {
        puttext(out, name.data(), name.size());
        putspaces(out, std::max<int64_t>(33 - std::ssize(name), 1));
    }
    if (report->define != 0)
        printdefine(out, symbol);
    if (report->refer != 0)
        printrefer(report, symbol);
    if (report->links != 0)
        printlinks(report, symbol, number, closure);
    puttexts(out, "\n");
    flfree(closure.list);
    return true;
}

// For all symbols it prefetches the record and name of the `far` next one and the file of the
// `near` next one.
bool printall(SYMBOLREPORT *report, char **names) {
    constexpr int64_t far = 24;
    constexpr int64_t near = 12;
    _tagsymbol **symbols = report->symbols;
    for (int64_t i = 0; i < report->count; ++i) {
        if (report->isAll && i + far < report->count) {
            __builtin_prefetch(symbols[i + far]);
            __builtin_prefetch(&symbols[i + far]->size);
            const auto file = reinterpret_cast<uintptr_t>(symbols[i + near]->file);
            __builtin_prefetch(reinterpret_cast<const void *>(file));
            __builtin_prefetch(reinterpret_cast<const void *>(file + sizeof(_tagfile)));
        }
        if (symbols[i] == nullptr) {
            flushoutput(&report->out); // the message follows the report so far
            toolsay("tolvik: symbol '%s' not found\n", names[i]);
        } else if (!printsymbol(report, symbols[i],
                                i < report->found ? &report->closures[i] : nullptr)) {
            return false;
        }
    }
    return true;
}

// Allocates the arrays of named symbols.
bool newnames(SYMBOLREPORT *report, int count) {
    report->slots = static_cast<int>(std::bit_ceil(8U * static_cast<unsigned>(count) + 512));
    report->symbols = gallocarray<_tagsymbol *>(count + 1);
    report->closures = gallocarray<CLOSURE>(count + 1);
    report->set = gallocarray<const _tagsymbol *>(report->slots);
    if (report->symbols == nullptr || report->closures == nullptr || report->set == nullptr)
        return false;
    std::fill_n(report->closures, count, CLOSURE{});
    std::fill_n(report->set, report->slots, nullptr);
    return true;
}

void addname(SYMBOLREPORT *report, _tagsymbol *symbol) {
    report->symbols[report->count++] = symbol;
    if (symbol != nullptr)
        report->set[findslot(*report, symbol)] = symbol;
}

// Prepares a report on all symbols, or on those added.
bool prepare(SYMBOLREPORT *report) {
    const bool graphCounts = report->isAll && report->links != 0 && !isdetailed();
    int64_t nodes = 0;
    if (!graphCounts &&
        (report->refer != 0 || (report->links != 0 && !report->isAll && report->count > 1)))
        nodes = countrefs(report);
    return (report->refer == 0 || !isdetailed() || collectreferrers(report)) &&
           (report->links == 0 || preparelinks(report, nodes, graphCounts));
}

// Prints the report if it is `whole` so far, and frees it. False when memory ran out.
bool printreport(SYMBOLREPORT *report, bool whole, char **names) {
    whole = whole && prepare(report) && printall(report, names);
    flushoutput(&report->out);
    grelease(report->symbols);
    grelease(report->closures);
    grelease(report->set);
    grelease(report->referrers);
    grelease(report->totals);
    freewalk(&report->walk);
    freegraph(&report->graph);
    return whole;
}

} // namespace

void printsymbolreport(FILE *out, _tagsymbol *symbol, TVKINFO *info, int define, int refer,
                       int links, int limit) {
    SYMBOLREPORT report = {beginoutput(out), info, define, refer, links, limit};
    bool whole = newnames(&report, 1);
    if (whole)
        addname(&report, symbol);
    if (!printreport(&report, whole, nullptr))
        toolsay("tolvik: ERROR: out of memory reporting '%s'\n", symname(symbol));
}

int tvksymbolreport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, int define, int refer,
                    int links, int limit) {
    SYMBOLREPORT report = {beginoutput(out), info, define, refer, links, limit};
    report.isAll = nsymbols > 0 && strcmp(symbols[0], "all") == 0;
    if (report.isAll)
        report.symbols = symall(info->symtable, &report.count);
    bool whole = report.isAll ? report.symbols != nullptr : newnames(&report, nsymbols);
    for (int i = 0; i < nsymbols && !report.isAll && whole; ++i)
        addname(&report, symfind(info->symtable, symbols[i]));
    return printreport(&report, whole, symbols) ? 1 : 0;
}
