#include "objectkind.h"
#include "archive.h"

#include <algorithm>
#include <string.h>

namespace {

struct KINDTEXT {
    const char *object; // "is ..."
    const char *objects;
    const char *type; // empty: no type reads it
};

const KINDTEXT kindTexts[] = {
    {"no object", "no objects", ""},         {"an ELF object", "ELF objects", "elf"},
    {"a COFF object", "COFF objects", "pc"}, {"a PlayStation object", "PlayStation objects", "psx"},
    {"LLVM bitcode", "LLVM bitcode", ""},
};

// A COFF object with more than 65,279 sections has another header.
bool is_large_coff(BYTES bytes) {
    static const char id[] = "\xC7\xA1\xBA\xD1\xEE\xBA\xA9\x4B\xAF\x20\xFA\xF6\x6A\xA4\xDC\xB8";
    bool import = bytes_match(bytes, 4, "\0", 2);
    return bytes_match(bytes, 0, "\0\0\xFF\xFF", 4) && (import || bytes_match(bytes, 12, id, 16));
}

bool is_coff(BYTES bytes) {
    static const unsigned machines[] = {0x14c, 0x8664, 0x1c0, 0x1c2, 0x1c4, 0xaa64, 0xa641};
    if (bytes.size < 20) {
        return false;
    }
    const unsigned machine = bytes.data[0] | unsigned{bytes.data[1]} << 8U;
    return std::find(std::begin(machines), std::end(machines), machine) != std::end(machines) ||
           is_large_coff(bytes);
}

OBJECTKIND member_kind(const char *path, bool thin, MEMBER *member) {
    BYTES mapped = {};
    bool readable = !thin || !map_member(path, member, &mapped);
    OBJECTKIND kind = readable ? object_kind(member->data) : KIND_OTHER;
    unmap_file(&mapped);
    return kind;
}

} // namespace

OBJECTKIND object_kind(BYTES bytes) {
    if (bytes_match(bytes, 0, "\177ELF", 4)) {
        return KIND_ELF;
    }
    if (bytes_match(bytes, 0, "PSXOBJ1", 8)) {
        return KIND_PSX;
    }
    if (bytes_match(bytes, 0, "BC\xC0\xDE", 4) || bytes_match(bytes, 0, "\xDE\xC0\x17\x0B", 4)) {
        return KIND_BITCODE;
    }
    return is_coff(bytes) ? KIND_COFF : KIND_OTHER;
}

FILEKIND file_kind(const char *path, BYTES bytes) {
    ARCHIVE archive;
    if (!archive_start(&archive, bytes)) {
        return {false, object_kind(bytes)};
    }
    FILEKIND found = {true, KIND_OTHER};
    MEMBER member;
    while (!found.kind && archive_next(&archive, &member) == ARCHIVE_MEMBER) {
        found.kind = member_kind(path, archive.thin, &member);
    }
    return found;
}

void complain_kind(DUMP *dump, const char *path, FILEKIND found, OBJECTKIND wanted) {
    const KINDTEXT *text = &kindTexts[found.kind];
    dump->status = 1;
    fprintf(dump->messages, "%s: %s ", dump->self, path);
    if (found.library && found.kind == wanted) {
        fprintf(dump->messages,
                "is a library: it is read as one when it is named without directories or other "
                "dots%s\n",
                wanted == KIND_ELF ? ", or with -telf, which takes any" : "");
        return;
    }
    fprintf(dump->messages, "%s %s", found.library ? "holds" : "is",
            found.library ? text->objects : text->object);
    if (*text->type) {
        fprintf(dump->messages, ", which -t%s reads", text->type);
    }
    fputc('\n', dump->messages);
}

bool map_object(DUMP *dump, const char *path, OBJECTKIND wanted, BYTES *bytes) {
    if (const char *failure = map_file(path, bytes)) {
        complain(dump, path, nullptr, failure);
        return false;
    }
    FILEKIND found = file_kind(path, *bytes);
    if (!found.library && found.kind == wanted) {
        return true;
    }
    complain_kind(dump, path, found, wanted);
    unmap_file(bytes);
    return false;
}
