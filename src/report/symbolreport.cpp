// The symbol report. Up to fewSymbols names scan the store's lists; more use a graph and an index
// of references. All memory is allocated before a report is begun, so that it is whole or absent.
#include "base/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "report/closure.h"
#include "report/graph.h"
#include "report/output.h"
#include "report/report.h"
#include "report/totals.h"
#include "symbols/options.h"

namespace {

constexpr int fewSymbols = 4;

// One symbol report.
struct SYMBOLREPORT {
    OUTPUT out;
    const TVKINFO *info;
    int define;
    int refer;
    int links;
    int limit;

    // For few symbols:
    _tagfilelist *closures[fewSymbols] = {};

    // For many symbols:
    bool counted = false;           // their nrefers and firstref are valid
    _tagfile **referrers = nullptr; // in the detailed form: the files that refer to them
    GRAPH graph = {};
    LINKWALK walk = {};        // in the detailed form
    int64_t *totals = nullptr; // in the compact form: total of each file's closure
};

bool isdetailed() {
    return OPTverbose > 1;
}

// Counts each symbol's references and returns their sum.
int64_t countrefs(const TVKINFO *info) {
    int64_t nodes = 0;
    const auto clear = [](_tagsymbol *symbol) {
        symbol->nrefers = 0;
        symbol->firstref = -1;
    };
    for (int i = 0; i < SYMBUCKETS; ++i) {
        for (_tagsymbol *symbol = info->symtable[i].symbol; symbol != nullptr;
             symbol = symbol->next)
            clear(symbol);
    }
    // Lists of a caller may hold symbols that are in no bucket.
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
            clear(node->symbol);
    }
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next, ++nodes)
            ++node->symbol->nrefers;
    }
    return nodes;
}

// Collects the files that refer to each symbol, in the store's order, one entry a reference:
// nrefers entries from the symbol's firstref on.
bool collectreferrers(SYMBOLREPORT *report) {
    const int64_t nodes = countrefs(report->info);
    report->counted = true;
    if (!isdetailed())
        return true;
    report->referrers = galloclarge<_tagfile *>(nodes);
    if (report->referrers == nullptr)
        return false;
    int32_t used = 0;
    for (_tagfile *file = report->info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
            _tagsymbol *symbol = node->symbol;
            if (symbol->firstref < 0) {
                symbol->firstref = used;
                used += symbol->nrefers;
                symbol->nrefers = 0;
            }
            report->referrers[symbol->firstref + symbol->nrefers++] = file;
        }
    }
    return true;
}

bool preparelinks(SYMBOLREPORT *report) {
    if (!makegraph(&report->graph, report->info, isdetailed()))
        return false;
    if (isdetailed())
        return makewalk(&report->walk, &report->graph);
    report->totals = linktotals(&report->graph, report->limit, nullptr, 0);
    return report->totals != nullptr;
}

void printdefine(OUTPUT *out, const _tagsymbol *symbol) {
    putheading(out, "DEFINED IN");
    if (isdetailed())
        puttexts(out, "    ", symfile(symbol), "\n");
    else
        putaligned(out, symfile(symbol), 16);
}

int32_t printreferrers(SYMBOLREPORT *report, const _tagsymbol *symbol) {
    const bool detailed = isdetailed();
    if (report->counted) {
        for (int32_t i = 0; detailed && i < symbol->nrefers; ++i)
            puttexts(&report->out, "    ", report->referrers[symbol->firstref + i]->name, "\n");
        return symbol->nrefers;
    }
    int32_t count = 0;
    for (const _tagfile *file = report->info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
            if (node->symbol != symbol)
                continue;
            ++count;
            if (detailed)
                puttexts(&report->out, "    ", file->name, "\n");
        }
    }
    return count;
}

void printrefer(SYMBOLREPORT *report, const _tagsymbol *symbol) {
    OUTPUT *out = &report->out;
    putheading(out, "REFERRED TO IN");
    const int32_t count = printreferrers(report, symbol);
    if (isdetailed()) {
        puttexts(out, "    ");
        putnumber(out, count);
        puttexts(out, " Files\n");
    } else {
        puttexts(out, " ");
        putaligned(out, count, 8);
        puttexts(out, " refs");
    }
}

// The closure of a symbol: in the graph, or as a list.
struct CLOSURE {
    int32_t number; // of the symbol's file in the graph; -1 when it is not there
    _tagfilelist *list;
};

// Prints the closure in the detailed form. Returns the sum of the sizes.
int64_t printclosure(SYMBOLREPORT *report, const _tagsymbol *symbol, const CLOSURE &closure) {
    int64_t total = 0;
    const bool detailed = isdetailed();
    const auto add = [&](const _tagfile *file, int level, const _tagsymbol *through) {
        total += file->size;
        if (!detailed)
            return;
        putlinkstart(&report->out, file, level);
        putlinkend(&report->out, file, through);
    };
    if (closure.number >= 0 && report->totals != nullptr)
        return report->totals[closure.number];
    if (closure.number >= 0) {
        LINKWALK *walk = &report->walk;
        restartwalk(walk);
        walkfrom(walk, closure.number, symbol, report->limit, 0);
        for (int32_t i = 0; i < walk->count; ++i) {
            const REACHED &reached = walk->reached[i];
            add(report->graph.files[reached.file], reached.level, reached.symbol);
        }
    }
    for (const _tagfilelist *entry = closure.list; entry != nullptr; entry = entry->next)
        add(entry->file, entry->level, entry->symbol);
    return total;
}

void printlinks(SYMBOLREPORT *report, const _tagsymbol *symbol, const CLOSURE &closure,
                int ownSize) {
    OUTPUT *out = &report->out;
    putheading(out, "LINKS IN");
    const int32_t total = toint32(printclosure(report, symbol, closure));
    if (total <= 0)
        return;
    if (isdetailed()) {
        puttexts(out, "    Total: ");
        putnumber(out, total);
        puttexts(out, " bytes\n");
    } else {
        putaligned(out, ownSize, 8);
        puttexts(out, " ");
        putaligned(out, total, 8);
        puttexts(out, " ");
    }
}

// Prints a symbol's part. `list` is its closure if it was found before. False, with nothing
// printed, when memory runs out.
bool printsymbol(SYMBOLREPORT *report, _tagsymbol *symbol, _tagfilelist *list = nullptr) {
    OUTPUT *out = &report->out;
    const int ownSize = symbol->file != nullptr ? symbol->file->size : 0;
    if (ownSize == 0 && OPTverbose == 1)
        return true;
    CLOSURE closure = {filenumber(&report->graph, symbol->file), list};
    if (report->links != 0 && closure.number < 0 && list == nullptr) {
        closure.list = symneedfiles(symbol, nullptr, report->limit, 0);
        if (closurefailed())
            return false;
    }
    putheading(out, "SYMBOL");
    const char *name = symname(symbol);
    if (isdetailed()) {
        puttexts(out, "    ", name, symtype(symbol), "\n");
    } else {
        puttexts(out, name);
        putspaces(out, 32 - static_cast<int64_t>(strlen(name)));
        puttexts(out, " ");
    }
    if (report->define != 0)
        printdefine(out, symbol);
    if (report->refer != 0)
        printrefer(report, symbol);
    if (report->links != 0)
        printlinks(report, symbol, closure, ownSize);
    puttexts(out, "\n");
    flfree(closure.list);
    return true;
}

bool printall(SYMBOLREPORT *report) {
    for (int i = 0; i < SYMBUCKETS; ++i) {
        _tagsymbol *symbol = report->info->symtable[i].symbol;
        for (; symbol != nullptr; symbol = symbol->next) {
            if (!printsymbol(report, symbol))
                return false;
        }
    }
    return true;
}

bool printnamed(SYMBOLREPORT *report, char **symbols, int nsymbols) {
    for (int i = 0; i < nsymbols; ++i) {
        _tagsymbol *symbol = symfind(report->info->symtable, symbols[i]);
        if (symbol == nullptr) {
            flushoutput(&report->out); // the message follows the report so far
            toolsay("tolvik: symbol '%s' not found\n", symbols[i]);
        } else if (!printsymbol(report, symbol, i < fewSymbols ? report->closures[i] : nullptr)) {
            return false;
        }
    }
    return true;
}

// Finds the closures of a few symbols.
bool findclosures(SYMBOLREPORT *report, char **symbols, int nsymbols) {
    for (int i = 0; i < nsymbols && report->links != 0; ++i) {
        _tagsymbol *symbol = symfind(report->info->symtable, symbols[i]);
        if (symbol == nullptr)
            continue;
        report->closures[i] = symneedfiles(symbol, nullptr, report->limit, 0);
        if (closurefailed())
            return false;
    }
    return true;
}

// Prepares a report on many symbols.
bool prepare(SYMBOLREPORT *report) {
    return (report->refer == 0 || collectreferrers(report)) &&
           (report->links == 0 || preparelinks(report));
}

void endreport(SYMBOLREPORT *report) {
    flushoutput(&report->out);
    grelease(report->referrers);
    grelease(report->totals);
    freewalk(&report->walk);
    freegraph(&report->graph);
}

} // namespace

void printsymbolreport(FILE *out, _tagsymbol *symbol, TVKINFO *info, int define, int refer,
                       int links, int limit) {
    SYMBOLREPORT report = {beginoutput(out), info, define, refer, links, limit};
    if (!printsymbol(&report, symbol))
        toolsay("tolvik: ERROR: out of memory reporting '%s'\n", symname(symbol));
    endreport(&report);
}

int tvksymbolreport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, int define, int refer,
                    int links, int limit) {
    SYMBOLREPORT report = {beginoutput(out), info, define, refer, links, limit};
    const bool all = nsymbols > 0 && strcmp(symbols[0], "all") == 0;
    const bool whole = (all || nsymbols > fewSymbols ? prepare(&report)
                                                     : findclosures(&report, symbols, nsymbols)) &&
                       (all ? printall(&report) : printnamed(&report, symbols, nsymbols));
    endreport(&report);
    return whole ? 1 : 0;
}
