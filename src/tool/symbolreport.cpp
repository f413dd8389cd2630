// The symbol report.
#include "tool/closure.h"
#include "tool/options.h"
#include "tool/output.h"
#include "tool/report.h"

#include "mem/galloc.h"

namespace {

// For every symbol the files that refer to it, in the store's order, one for each node: a
// symbol's files are `count` entries from its firstref on. Built when first needed, for
// walking all files for every symbol would take forever.
struct REFINDEX {
    const TVKINFO *info;
    _tagfile **files;
};
REFINDEX refindex = {nullptr, nullptr};
bool outOfMemory = false;

bool isdetailed() {
    return OPTverbose > 1;
}

// Counts the nodes of every symbol anew; their sum is the size of the index.
int64_t countrefs(const TVKINFO *info) {
    int64_t nodes = 0;
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
            node->symbol->nrefers = 0;
            node->symbol->firstref = -1;
            ++nodes;
        }
    }
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
            ++node->symbol->nrefers;
    }
    return nodes;
}

bool buildrefindex(const TVKINFO *info) {
    if (refindex.info == info)
        return true;
    const int64_t nodes = countrefs(info);
    if (refindex.files != nullptr)
        gfree(refindex.files);
    refindex = {nullptr, gallocarray<_tagfile *>(nodes > 0 ? nodes : 1)};
    if (refindex.files == nullptr)
        return false;
    int64_t used = 0;
    for (_tagfile *file = info->files; file != nullptr; file = file->next) {
        for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next) {
            _tagsymbol *symbol = node->symbol;
            if (symbol->firstref < 0) {
                symbol->firstref = used;
                used += symbol->nrefers;
                symbol->nrefers = 0;
            }
            refindex.files[symbol->firstref + symbol->nrefers++] = file;
        }
    }
    refindex.info = info;
    return true;
}

void printdefine(FILE *out, const _tagsymbol *symbol) {
    printheader(out, "DEFINED IN");
    if (isdetailed())
        putchars(out, "    ", symfile(symbol), "\n");
    else
        putaligned(out, symfile(symbol), 16);
}

void printrefer(FILE *out, const _tagsymbol *symbol, const TVKINFO *info) {
    printheader(out, "REFERRED TO IN");
    if (!isdetailed()) {
        putchars(out, " ");
        putaligned(out, symbol->nrefers, 8);
        putchars(out, " refs");
        return;
    }
    if (symbol->nrefers > 0 && !buildrefindex(info)) {
        outOfMemory = true;
        return;
    }
    for (int32_t i = 0; i < symbol->nrefers; ++i)
        putchars(out, "    ", refindex.files[symbol->firstref + i]->name, "\n");
    putchars(out, "    ");
    putnumber(out, symbol->nrefers);
    putchars(out, " Files\n");
}

void printlinkslist(FILE *out, _tagsymbol *symbol, int limit) {
    _tagfilelist *list = symneedfiles(symbol, nullptr, limit, 0);
    int64_t total = 0;
    for (const _tagfilelist *entry = list; entry != nullptr; entry = entry->next) {
        putspaces(out, 4 * (static_cast<int64_t>(entry->level) + 1));
        putchars(out, entry->file->name, " (");
        putnumber(out, entry->file->size);
        putchars(out, ") [", symname(entry->symbol), "]\n");
        total += entry->file->size;
    }
    flfree(list);
    if (total <= 0)
        return;
    putchars(out, "    Total: ");
    putnumber(out, saturated(total));
    putchars(out, " bytes\n");
}

void printlinks(FILE *out, _tagsymbol *symbol, int ownSize, int limit) {
    printheader(out, "LINKS IN");
    if (isdetailed()) {
        printlinkslist(out, symbol, limit);
        return;
    }
    const int32_t total = closuretotal(symbol, limit);
    if (total <= 0)
        return;
    putaligned(out, ownSize, 8);
    putchars(out, " ");
    putaligned(out, total, 8);
    putchars(out, " ");
}

} // namespace

void printsymbolreport(FILE *out, _tagsymbol *symbol, TVKINFO *info, int define, int refer,
                       int links, int limit) {
    const int ownSize = symbol->file != nullptr ? symbol->file->size : 0;
    if (ownSize == 0 && OPTverbose == 1)
        return;
    printheader(out, "SYMBOL");
    if (isdetailed()) {
        putchars(out, "    ", symname(symbol), symtype(symbol), "\n");
    } else {
        const char *name = symname(symbol);
        putchars(out, name);
        putspaces(out, 32 - static_cast<int64_t>(strlen(name)));
        putchars(out, " ");
    }
    if (define != 0)
        printdefine(out, symbol);
    if (refer != 0)
        printrefer(out, symbol, info);
    if (links != 0)
        printlinks(out, symbol, ownSize, limit);
    putchars(out, "\n");
}

int tvksymbolreport(FILE *out, TVKINFO *info, char **symbols, int nsymbols, int define, int refer,
                    int links, int limit) {
    outOfMemory = false;
    if (nsymbols > 0 && strcmp(symbols[0], "all") == 0) {
        for (int i = 0; i < SYMBUCKETS; ++i) {
            _tagsymbol *symbol = info->symtable[i].symbol;
            for (; symbol != nullptr && !outOfMemory; symbol = symbol->next)
                printsymbolreport(out, symbol, info, define, refer, links, limit);
        }
        return outOfMemory || closurefailed() ? 0 : 1;
    }
    for (int i = 0; i < nsymbols; ++i) {
        _tagsymbol *symbol = symfind(info->symtable, symbols[i]);
        if (symbol != nullptr)
            printsymbolreport(out, symbol, info, define, refer, links, limit);
        else
            toolsay("tolvik: symbol '%s' not found\n", symbols[i]);
    }
    return outOfMemory || closurefailed() ? 0 : 1;
}
