// The search list: one entry per source pattern of a batch, with its destination pattern
// and the files found for it.
//
// The list owns its entries, an entry its texts and matches; all live until
// DestroySearchList. Indexes count from 0 in command-line order.
#pragma once

#include <cstdint>

// One file found.
struct Match {
    char *source;   // the name handed to the tool
    char *dest;     // the destination name made for it
    uint32_t size;  // bytes; filled when OPTmakesizelist is set
    uint32_t date;  // seconds; filled when OPTmakedatelist is set
    uint8_t attrib; // BRAX_makeattrib; filled when OPTmakeattriblist is set
};

// What is known of an entry while one directory is scanned.
constexpr uint8_t FOUNDNOT = 0;
constexpr uint8_t FOUNDNAME = 1;      // by its name
constexpr uint8_t FOUNDALTERNATE = 2; // by its alternate name
constexpr uint8_t FOUNDRECORDED = 3;  // and recorded in this directory

// One source pattern.
struct FileInfo {
    char *source;         // may hold a directory part and wildcards
    char *dest;           // equal to the source when none was given
    int8_t type;          // class of the source, from BRAX_typeofname
    uint8_t found;        // FOUND...
    uint8_t wild;         // 1 when source or destination holds a wildcard
    uint8_t separateDest; // 1 when it was added with a destination text of its own
    int32_t nmatches;
    Match **matches; // in the order found; null while there are none

    int32_t matchRoom; // private: elements that `matches` can hold
    bool incomplete;   // private: a match or its name was lost because memory ran out
};

struct SearchList {
    FileInfo **files; // null while the list is empty
    int32_t count;

    int32_t room; // private: elements that `files` can hold
};

// A new empty list; null when memory runs out. Give it to DestroySearchList.
SearchList *CreateSearchList();

// Appends an entry with copies of both texts. Passing the very same text object as source
// and dest says that the entry has no destination of its own. False, with nothing
// appended, when the list is null or memory runs out.
bool AddToSearchList(SearchList *list, const char *source, const char *dest);

// Replaces an entry's source and/or destination (null keeps the old one), forgets its
// matches and judges `wild` by the texts given in this call alone, deliberately. 1, or 0
// with nothing changed when the list is null, the index is not below count or memory runs
// out.
int UpdateSearchList(SearchList *list, int32_t index, const char *source, const char *dest);

// Takes an entry out; later ones move up. Its texts are copied into the outputs, each
// BRAXFIELDSIZE bytes or null, which are emptied first. False when there is no such entry.
bool RemoveFromSearchList(SearchList *list, int32_t index, char *source, char *dest);

// Releases the list with everything in it; null is allowed.
void DestroySearchList(SearchList *list);

// Appends a copy of the match to the entry. False when the entry is null; also when memory
// runs out, and the entry is then marked incomplete.
bool AddMatch(FileInfo *entry, const Match *match);
