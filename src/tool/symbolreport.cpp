// The symbol report. For a few symbols the store's lists are walked as they are; for many,
// what they all ask for is found at once beforehand.
#include "mem/arena.h"
#include "mem/galloc.h"
#include "tool/closure.h"
#include "tool/graph.h"
#include "tool/options.h"
#include "tool/output.h"
#include "tool/report.h"
#include "tool/totals.h"

namespace {

// One symbol report.
struct SYMBOLREPORT {
    OUTPUT out;
    const TVKINFO *info;
    int define;
    int refer;
    int links;
    int limit;

    bool prepared;        // for many symbols: what follows holds, and nrefers and firstref too
    _tagfile **referrers; // in the detailed form: the files that refer to each symbol
    int64_t *totals;      // in the compact form: what each file links in
    GRAPH graph;
    WALK walk; // in the detailed form
};

constexpr int fewSymbols = 4;

bool isdetailed() {
    return OPTverbose > 1;
}

void printheading(OUTPUT *out, const char *title) {
    if (isdetailed())
        puttexts(out, "\n", preheader, title, postheader);
}

int64_t countfiles(const TVKINFO *info) {
    int64_t count = 0;
    for (const _tagfile *file = info->files; file != nullptr; file = file->next)
        ++count;
    return count;
}

// Counts every symbol's nodes and returns how many there are.
int64_t countrefs(const TVKINFO *info) {
    int64_t nodes = 0;
    for (const _tagsymlist *bucket = info->symtable; bucket < info->symtable + SYMBUCKETS;
         ++bucket) {
        for (_tagsymbol *symbol = bucket->symbol; symbol != nullptr; symbol = symbol->next) {
            symbol->nrefers = 0;
            symbol->firstref = -1;
        }
    }
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next, ++nodes)
            ++node->symbol->nrefers;
    }
    return nodes;
}

// Collects the files that refer to each symbol, in the store's order, one for each node: a
// symbol's are nrefers entries from its firstref on.
bool collectreferrers(SYMBOLREPORT *report) {
    const int64_t nodes = countrefs(report->info);
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

bool findlinks(SYMBOLREPORT *report) {
    if (!makegraph(&report->graph, report->info, isdetailed()))
        return false;
    if (isdetailed())
        return makewalk(&report->walk, &report->graph);
    report->totals = linktotals(&report->graph, report->limit);
    return report->totals != nullptr;
}

SYMBOLREPORT beginreport(FILE *out, const TVKINFO *info, int define, int refer, int links,
                         int limit) {
    SYMBOLREPORT report = {};
    report.out = beginoutput(out);
    report.info = info;
    report.define = define;
    report.refer = refer;
    report.links = links;
    report.limit = limit;
    return report;
}

// Obtains all memory that the report will need, so that a report is whole or not begun.
bool prepare(SYMBOLREPORT *report, bool many) {
    report->prepared = many;
    if (!many)
        return report->links == 0 || closurereserve(countfiles(report->info));
    return (report->refer == 0 || collectreferrers(report)) &&
           (report->links == 0 || findlinks(report));
}

void endreport(SYMBOLREPORT *report) {
    flushoutput(&report->out);
    if (report->referrers != nullptr)
        gfree(report->referrers);
    if (report->totals != nullptr)
        gfree(report->totals);
    freewalk(&report->walk);
    freegraph(&report->graph);
}

void printdefine(OUTPUT *out, const _tagsymbol *symbol) {
    printheading(out, "DEFINED IN");
    if (isdetailed())
        puttexts(out, "    ", symfile(symbol), "\n");
    else
        putaligned(out, symfile(symbol), 16);
}

int32_t printreferrers(SYMBOLREPORT *report, const _tagsymbol *symbol) {
    const bool detailed = isdetailed();
    if (report->prepared) {
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
    printheading(out, "REFERRED TO IN");
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

void printentry(OUTPUT *out, const _tagfile *file, int level, const _tagsymbol *symbol) {
    putspaces(out, 4 * (int64_t{level} + 1));
    puttexts(out, file->name, " (");
    putnumber(out, file->size);
    puttexts(out, ") [", symname(symbol), "]\n");
}

// Lists the closure in the detailed form, and returns the sum of its sizes.
int64_t printclosure(SYMBOLREPORT *report, _tagsymbol *symbol) {
    int64_t total = 0;
    if (report->totals != nullptr)
        return symbol->file != nullptr ? report->totals[symbol->file->number] : 0;
    if (report->prepared && symbol->file != nullptr) {
        WALK *walk = &report->walk;
        restartwalk(walk);
        walkfrom(walk, symbol->file->number, symbol, report->limit, 0);
        for (int32_t i = 0; i < walk->count; ++i) {
            const REACHED &reached = walk->reached[i];
            const _tagfile *file = report->graph.files[reached.file];
            printentry(&report->out, file, reached.level, reached.symbol);
            total += file->size;
        }
    } else if (!report->prepared) {
        _tagfilelist *list = symneedfiles(symbol, nullptr, report->limit, 0);
        for (const _tagfilelist *entry = list; entry != nullptr; entry = entry->next) {
            if (isdetailed())
                printentry(&report->out, entry->file, entry->level, entry->symbol);
            total += entry->file->size;
        }
        flfree(list);
    }
    return total;
}

void printlinks(SYMBOLREPORT *report, _tagsymbol *symbol, int ownSize) {
    OUTPUT *out = &report->out;
    printheading(out, "LINKS IN");
    const int32_t total = saturated(printclosure(report, symbol));
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

void printsymbol(SYMBOLREPORT *report, _tagsymbol *symbol) {
    OUTPUT *out = &report->out;
    const int ownSize = symbol->file != nullptr ? symbol->file->size : 0;
    if (ownSize == 0 && OPTverbose == 1)
        return;
    printheading(out, "SYMBOL");
    const char *name = symname(symbol);
    const size_t length = strlen(name);
    if (isdetailed()) {
        puttexts(out, "    ", name, symtype(symbol), "\n");
    } else {
        puttext(out, name, length);
        putspaces(out, 32 - static_cast<int64_t>(length));
        puttexts(out, " ");
    }
    if (report->define != 0)
        printdefine(out, symbol);
    if (report->refer != 0)
        printrefer(report, symbol);
    if (report->links != 0)
        printlinks(report, symbol, ownSize);
    puttexts(out, "\n");
}

void printall(SYMBOLREPORT *report) {
    for (int i = 0; i < SYMBUCKETS; ++i) {
        _tagsymbol *symbol = report->info->symtable[i].symbol;
        for (; symbol != nullptr; symbol = symbol->next)
            printsymbol(report, symbol);
    }
}

void printnamed(SYMBOLREPORT *report, char **symbols, int nsymbols) {
    for (int i = 0; i < nsymbols; ++i) {
        _tagsymbol *symbol = symfind(report->info->symtable, symbols[i]);
        if (symbol != nullptr) {
            printsymbol(report, symbol);
        } else {
            flushoutput(&report->out); // messages stand behind what was reported before
            toolsay("tolvik: symbol '%s' not found\n", symbols[i]);
        }
    }
}

} // namespace

void printsymbolreport(FILE *out, _tagsymbol *symbol, TVKINFO *info, int define, int refer,
                       int links, int limit) {
    SYMBOLREPORT report = beginreport(out, info, define, refer, links, limit);
    printsymbol(&report, symbol);
    endreport(&report);
}

int tvksymbolreport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, int define, int refer,
                    int links, int limit) {
    SYMBOLREPORT report = beginreport(out, info, define, refer, links, limit);
    const bool all = nsymbols > 0 && strcmp(symbols[0], "all") == 0;
    const bool whole = prepare(&report, all || nsymbols > fewSymbols);
    if (whole && all)
        printall(&report);
    else if (whole)
        printnamed(&report, symbols, nsymbols);
    endreport(&report);
    return whole && !closurefailed() ? 1 : 0;
}
