#include "page/part.h"

#include "mem/arena.h"
#include "wild/wild.h"

namespace {

// The chosen files; those from `next` on are not followed yet.
struct CHOICE {
    _tagfile **files; // as many as the store's
    int64_t count;
    int64_t next;
};

void choose(CHOICE *choice, _tagfile *file) {
    if (file == nullptr || file->number == 0)
        return;
    file->number = 0;
    choice->files[choice->count++] = file;
}

// Chooses the files that define the symbols of the list.
void choosedefiners(CHOICE *choice, const _tagsymlist *list) {
    for (; list != nullptr; list = list->next)
        choose(choice, list->symbol->file);
}

// Chooses all files that the chosen ones need. Their definitions are followed too, because another
// file may define the same symbol and is then the one that the symbol links in.
void follow(CHOICE *choice) {
    while (choice->next < choice->count) {
        const _tagfile *file = choice->files[choice->next++];
        choosedefiners(choice, file->defines);
        choosedefiners(choice, file->refers);
    }
}

// Whether a pattern matches the name. Sets `matched` of each pattern that does.
template <typename MATCH> bool matchany(PATTERNS *patterns, const char *name, MATCH match) {
    char output[1]; // an empty destination writes an empty text
    bool found = false;
    for (int i = 0; i < patterns->count; ++i) {
        if (match(output, name, patterns->texts[i], "") == 0)
            continue;
        patterns->matched[i] = true;
        found = true;
    }
    return found;
}

bool choosebysymbols(CHOICE *choice, const TVKINFO *info, PATTERNS *patterns) {
    int64_t count = 0;
    _tagsymbol **symbols = symall(info->symtable, &count);
    if (symbols == nullptr)
        return false;
    for (int64_t i = 0; i < count; ++i) {
        if (symbols[i]->file != nullptr && matchany(patterns, symbols[i]->name, WILD_match))
            choose(choice, symbols[i]->file);
    }
    gfree(symbols);
    return true;
}

} // namespace

bool choosefiles(const TVKINFO *info, PATTERNS *symbols, PATTERNS *files) {
    const bool whole = symbols->count + files->count == 0;
    int64_t count = 0;
    for (_tagfile *file = info->files; file != nullptr; file = file->next, ++count)
        file->number = whole ? 0 : -1;
    if (whole)
        return true;
    CHOICE choice = {galloclarge<_tagfile *>(count), 0, 0};
    const bool made = choice.files != nullptr && choosebysymbols(&choice, info, symbols);
    for (_tagfile *file = info->files; file != nullptr && made; file = file->next) {
        const bool named = matchany(files, file->name, WILD_imatch);
        if (matchany(files, file->library, WILD_imatch) || named)
            choose(&choice, file);
    }
    if (made)
        follow(&choice);
    grelease(choice.files);
    return made;
}
