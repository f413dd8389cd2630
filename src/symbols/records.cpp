#include "symbols/records.h"

#include "mem/galloc.h"

#include <cstring>

void discardblocks(void *a, void *b, void *c) {
    void *const blocks[] = {a, b, c};
    for (void *block : blocks) {
        if (block != nullptr)
            gfree(block);
    }
}

_tagfile *finew(const char *name, const char *library) {
    auto *file = gallocarray<_tagfile>(1);
    char *ownName = galloctext(name);
    char *ownLibrary = galloctext(library);
    if (file == nullptr || ownName == nullptr || ownLibrary == nullptr) {
        discardblocks(file, ownName, ownLibrary);
        return nullptr;
    }
    *file = {};
    file->name = ownName;
    file->library = ownLibrary;
    return file;
}

_tagsymbol *symnew(const char *name, SYMTYPE type, SYMSCOPE scope, int32_t size) {
    auto *symbol = gallocarray<_tagsymbol>(1);
    size_t length = strlen(name);
    char *copy = gallocarray<char>(static_cast<int64_t>(length) + 1);
    if (symbol == nullptr || copy == nullptr) {
        discardblocks(symbol, copy);
        return nullptr;
    }
    symstrip(&name, &length);
    memcpy(copy, name, length);
    copy[length] = 0;
    *symbol = {copy, type, scope, size, nullptr, nullptr, static_cast<int32_t>(length), 0, 0};
    return symbol;
}

_tagsymlist *slnew() {
    auto *node = gallocarray<_tagsymlist>(1);
    if (node != nullptr)
        *node = {};
    return node;
}

_tagfilelist *flnew() {
    auto *entry = gallocarray<_tagfilelist>(1);
    if (entry != nullptr)
        *entry = {};
    return entry;
}

const char *symname(const _tagsymbol *symbol) {
    return symbol->name;
}

const char *symfile(const _tagsymbol *symbol) {
    return symbol != nullptr && symbol->file != nullptr ? symbol->file->name : "unknown";
}

const char *symtype(const _tagsymbol *symbol) {
    switch (static_cast<int32_t>(symbol->type)) {
    case TYPE_FUNCTION:
        return "()";
    case TYPE_UNKNOWN:
    case TYPE_DATA:
        return "";
    default:
        return "????";
    }
}

const char *symscope(const _tagsymbol *symbol) {
    switch (static_cast<int32_t>(symbol->scope)) {
    case SCOPE_UNKNOWN:
        return "unknown";
    case SCOPE_GLOBAL:
        return "global";
    case SCOPE_LOCAL:
        return "local";
    default:
        return "????";
    }
}

int symsize(const _tagsymbol *symbol) {
    return symbol->size;
}
