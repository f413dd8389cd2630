// The search list: one entry per source pattern of a batch, with its destination pattern and
// the files found for it, in command-line order.
//
// The list owns its entries, and an entry its texts and matches, until DestroySearchList.
#pragma once

#include <cstdint>

// One file found.
struct Match {
    char *source;   // the name given to the tool
    char *dest;     // the destination name made for it
    uint32_t size;  // bytes; set if OPTmakesizelist is set
    uint32_t date;  // seconds; set if OPTmakedatelist is set
    uint8_t attrib; // BRAX_makeattrib; set if OPTmakeattriblist is set
};

// State of an entry while one directory is searched.
constexpr uint8_t FOUNDNOT = 0;
constexpr uint8_t FOUNDNAME = 1;      // by its name
constexpr uint8_t FOUNDALTERNATE = 2; // by its alternate name
constexpr uint8_t FOUNDRECORDED = 3;  // and recorded in this directory

// One source pattern.
struct FileInfo {
    char *source;         // may contain a directory part and wildcards
    char *dest;           // equal to the source if none was given
    int8_t type;          // class of the source, from BRAX_typeofname
    uint8_t found;        // FOUND...
    uint8_t wild;         // 1 if source or destination contains a wildcard
    uint8_t separateDest; // 1 if it was added with a destination of its own
    int32_t nmatches;
    Match **matches; // in the order found; null if there are none

    int32_t matchCapacity; // private: elements allocated for `matches`
    bool incomplete;       // private: a match or its name was lost because memory ran out
};

struct SearchList {
    FileInfo **files; // null if the list is empty
    int32_t count;

    int32_t capacity; // private: elements allocated for `files`
};

// Returns a new empty list, to be freed by DestroySearchList; null when memory runs out.
SearchList *CreateSearchList();

// Appends an entry with copies of both texts. Passing one pointer as source and dest marks the
// entry as having no destination of its own. False, with nothing appended, if the list is null
// or memory runs out.
bool AddToSearchList(SearchList *list, const char *source, const char *dest);

// Replaces an entry's source, destination or both (null keeps the old one) and frees its
// matches. On purpose, `wild` depends on the texts of this call alone. Returns 1; 0, with
// nothing changed, if the list is null, the index is out of range or memory runs out.
int UpdateSearchList(SearchList *list, int32_t index, const char *source, const char *dest);

// Removes an entry; later ones move up. Copies its texts into the outputs, which are emptied
// first; each holds BRAXFIELDSIZE bytes or is null. False if there is no such entry.
bool RemoveFromSearchList(SearchList *list, int32_t index, char *source, char *dest);

// Frees the list and everything in it. A null list is ignored.
void DestroySearchList(SearchList *list);

// Appends a copy of the match to the entry. False if the entry is null, or if memory runs out;
// the entry is then marked incomplete.
bool AddMatch(FileInfo *entry, const Match *match);
