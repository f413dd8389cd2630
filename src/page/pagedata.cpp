#include "page/pagedata.h"

#include "mem/galloc.h"
#include "page/pagetext.h"
#include "page/part.h"
#include "symbols/options.h"

#include <string_view>

namespace {

constexpr int32_t LIBRARYBUCKETS = 4096;

// Calls the function with each file in the page.
template <typename F> void eachfile(const PAGEDATA *data, F function) {
    for (const _tagfile *file = data->info->files; file != nullptr; file = file->next) {
        if (file->number >= 0)
            function(file);
    }
}

// Calls the function with each symbol of the file's lists, in their order.
template <typename F> void eachentry(const _tagfile *file, F function) {
    for (const _tagsymlist *node = file->defines; node != nullptr; node = node->next)
        function(node->symbol);
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
        function(node->symbol);
}

// Numbers the symbols that the page's files define or refer to, in the order of the table.
void numbersymbols(PAGEDATA *data) {
    for (int64_t i = 0; i < data->symbolCount; ++i)
        data->symbols[i]->firstref = -1;
    eachfile(data, [&](const _tagfile *file) {
        eachentry(file, [&](_tagsymbol *symbol) {
            ++data->entries;
            symbol->firstref = 0;
        });
    });
    int32_t next = 0;
    for (int64_t i = 0; i < data->symbolCount; ++i) {
        if (data->symbols[i]->firstref == 0)
            data->symbols[i]->firstref = next++;
    }
}

// Numbers the libraries in the order of the files. False when memory runs out.
bool numberlibraries(PAGEDATA *data) {
    bool whole = true;
    eachfile(data, [&](const _tagfile *file) {
        if (file->library[0] == 0 || HASH_check(data->libraries, file->library) >= 0)
            return;
        HASH_add(data->libraries, file->library, data->libraries->count);
        whole = whole && HASH_check(data->libraries, file->library) >= 0;
    });
    return whole;
}

// Writes `before` and the key of a member.
void putkey(OUTPUT *out, const char *before, const char *key) {
    puttexts(out, before, "\"", key, "\":");
}

void puttextmember(OUTPUT *out, const char *before, const char *key, const char *text) {
    putkey(out, before, key);
    putjson(out, text);
}

void putlibraries(OUTPUT *out, const PAGEDATA *data) {
    int32_t next = 0;
    putkey(out, ",\n", "libraries");
    puttexts(out, "[");
    eachfile(data, [&](const _tagfile *file) {
        if (HASH_check(data->libraries, file->library) != next)
            return;
        puttexts(out, next++ > 0 ? "," : "");
        putjson(out, file->library);
    });
    puttexts(out, "]");
}

void putsymbols(OUTPUT *out, const PAGEDATA *data) {
    const char *before = "\n";
    putkey(out, ",\n", "symbols");
    puttexts(out, "[");
    for (int64_t i = 0; i < data->symbolCount; ++i) {
        if (data->symbols[i]->firstref < 0)
            continue;
        puttexts(out, before);
        putjson(out, data->symbols[i]->name);
        before = ",\n";
    }
    puttexts(out, "]");
}

void putdefinition(OUTPUT *out, const _tagsymbol *symbol) {
    constexpr const char *types[] = {"null", "\"FUNCTION\"", "\"DATA\""};
    constexpr const char *scopes[] = {"null", "\"GLOBAL\"", "\"LOCAL\""};
    puttexts(out, "[");
    putnumber(out, symbol->firstref);
    puttexts(out, ",", types[symbol->type], ",", scopes[symbol->scope], ",");
    if (symbol->size != 0)
        putnumber(out, symbol->size);
    puttexts(out, symbol->size != 0 ? "]" : "null]");
}

void putreference(OUTPUT *out, const _tagsymbol *symbol) {
    putnumber(out, symbol->firstref);
}

void putlist(OUTPUT *out, const char *key, const _tagsymlist *list,
             void (*put)(OUTPUT *, const _tagsymbol *)) {
    putkey(out, ",", key);
    puttexts(out, "[");
    for (const _tagsymlist *node = list; node != nullptr; node = node->next) {
        puttexts(out, node != list ? "," : "");
        put(out, node->symbol);
    }
    puttexts(out, "]");
}

// Writes the date as year, month from 1, and day.
void putdate(OUTPUT *out, int32_t date) {
    char text[64];
    snprintf(text, sizeof text, "%04d-%02d-%02d", date / 10000, date / 100 % 100 + 1, date % 100);
    puttextmember(out, ",", "date", text);
}

void putobject(OUTPUT *out, const PAGEDATA *data, const _tagfile *file) {
    puttextmember(out, "{", "name", file->name);
    if (file->library[0] != 0) {
        putkey(out, ",", "library");
        putnumber(out, HASH_check(data->libraries, file->library));
    }
    if (file->source != nullptr)
        puttextmember(out, ",", "source", file->source);
    if (file->date != 0)
        putdate(out, file->date);
    if (file->size != 0) {
        putkey(out, ",", "size");
        putnumber(out, file->size);
    }
    putlist(out, "defines", file->defines, putdefinition);
    putlist(out, "refers", file->refers, putreference);
    puttexts(out, "}");
}

void putobjects(OUTPUT *out, const PAGEDATA *data) {
    const char *before = "\n";
    putkey(out, ",\n", "objects");
    puttexts(out, "[");
    eachfile(data, [&](const _tagfile *file) {
        puttexts(out, before);
        putobject(out, data, file);
        before = ",\n";
    });
    puttexts(out, "]");
}

} // namespace

bool makepagedata(PAGEDATA *data, const TVKINFO *info, PATTERNS *symbols, PATTERNS *files) {
    *data = {};
    data->info = info;
    if (!choosefiles(info, symbols, files))
        return false;
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        ++data->objects;
        data->kept += file->number >= 0;
    }
    data->symbols = symall(info->symtable, &data->symbolCount);
    data->libraries = HASH_init(LIBRARYBUCKETS);
    if (data->symbols == nullptr || data->libraries == nullptr || !numberlibraries(data)) {
        freepagedata(data);
        return false;
    }
    numbersymbols(data);
    return true;
}

void freepagedata(PAGEDATA *data) {
    grelease(data->symbols);
    if (data->libraries != nullptr)
        HASH_purge(data->libraries);
    *data = {};
}

void putpagedata(OUTPUT *out, const PAGEDATA *data, const char *title, const char *sourcePrefix) {
    putkey(out, "{", "version");
    puttexts(out, "1");
    puttextmember(out, ",", "title", title);
    putkey(out, ",", "underscores");
    puttexts(out, OPTunderscores != 0 ? "true" : "false");
    if (sourcePrefix != nullptr)
        puttextmember(out, ",", "sourcePrefix", sourcePrefix);
    if (data->kept < data->objects) {
        putkey(out, ",", "part");
        putkey(out, "{", "objects");
        putnumber(out, data->objects);
        puttexts(out, "}");
    }
    putlibraries(out, data);
    putsymbols(out, data);
    putobjects(out, data);
    puttexts(out, "}\n");
}
