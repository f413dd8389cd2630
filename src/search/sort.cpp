#include "search/sort.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/argv.h"
#include "search/natural.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

// Ranks of the range being sorted, exchanged with its elements, and the range's first element. Null
// when names are compared directly.
int32_t *places = nullptr;
int firstplaced = 0;

NAMEPART wholename(const char *name) {
    return {name, nullptr};
}

NAMEPART directorypart(const char *name) {
    return {name, filepart(name)};
}

NAMEPART filename(const char *name) {
    return wholename(filepart(name));
}

// The text from the last '.' after the last '/' or '\', else empty. Here ':' is no separator.
NAMEPART extension(const char *name) {
    const char *end = name + strlen(name);
    const char *at = end;
    while (at > name && at[-1] != '.' && !isslash(at[-1]))
        --at;
    return {at > name && at[-1] == '.' ? at - 1 : end, end};
}

template <NAMEPART (*part)(const char *)> NAMEPART ofsource(int element) {
    return part(BRAXsargv[element]);
}

template <NAMEPART (*part)(const char *)> NAMEPART ofdest(int element) {
    return part(BRAXdargv[element]);
}

int comparenumbers(const int32_t *vector, int i, int j) {
    return vector == nullptr ? 0 : numericorder(vector[i], vector[j]);
}

using PARTFUNC = NAMEPART (*)(int element);

// The part of an element's names that a key compares; null if the key is not a text.
PARTFUNC partof(int key, int bydirs) {
    switch (key) {
    case 1:
        return bydirs != 0 ? ofsource<directorypart> : ofsource<wholename>;
    case 2:
        return ofsource<extension>;
    case 5:
        return bydirs != 0 ? ofdest<directorypart> : ofdest<wholename>;
    case 6:
        return ofdest<extension>;
    case 7:
        return bydirs != 0 ? ofsource<filename> : ofsource<wholename>;
    default:
        return nullptr;
    }
}

// BRAX_compare, by the places if there are any.
int compareelements(int i, int j, int key, int bydirs) {
    if (places != nullptr)
        return numericorder(places[i - firstplaced], places[j - firstplaced]);
    return BRAX_compare(i, j, key, bydirs);
}

template <typename T> void swapelements(T *vector, int wanted, int i, int j) {
    if (wanted != 0 && vector != nullptr)
        std::swap(vector[i], vector[j]);
}

} // namespace

int BRAX_strcmp(const char *a, const char *b) {
    return naturalorder(wholename(a), wholename(b));
}

int BRAX_compare(int i, int j, int key, int bydirs) {
    if (const PARTFUNC part = partof(key, bydirs); part != nullptr)
        return naturalorder(part(i), part(j));
    if (key == 3)
        return comparenumbers(BRAXdateargv, i, j);
    return key == 4 ? comparenumbers(BRAXsizeargv, i, j) : 0;
}

void BRAX_exchange(int i, int j) {
    swapelements(BRAXsargv, 1, i, j);
    swapelements(BRAXdargv, 1, i, j);
    swapelements(BRAXdateargv, OPTmakedatelist, i, j);
    swapelements(BRAXsizeargv, OPTmakesizelist, i, j);
    swapelements(BRAXattribargv, OPTmakeattriblist, i, j);
    swapelements(places, 1, i - firstplaced, j - firstplaced);
}

int BRAX_partition(int low, int high, int key, int bydirs) {
    int pivot = low;
    int i = low - 1;
    int j = high + 1;
    for (;;) {
        do
            --j;
        while (compareelements(j, pivot, key, bydirs) > 0);
        do
            ++i;
        while (compareelements(i, pivot, key, bydirs) < 0);
        if (i >= j)
            return j;
        BRAX_exchange(i, j);
        if (pivot == i)
            pivot = j;
        else if (pivot == j)
            pivot = i;
    }
}

int BRAX_randpartition(int low, int high, int key, int bydirs) {
    if (low >= high)
        return low;
    // On purpose not high - low + 1: the last element is never the pivot.
    BRAX_exchange(low + rand() % (high - low), low);
    return BRAX_partition(low, high, key, bydirs);
}

namespace {

// Sorts the lower part first, then the upper one, like a recursive quicksort: the order of the
// rand calls depends on it. The upper parts still to be sorted are adjacent, so the stack keeps
// only their last indexes.
void sortsteps(int low, int high, int key, int bydirs) {
    int *highs = nullptr;
    int count = 0;
    int capacity = 0;
    for (;;) {
        if (low < high) {
            const int split = BRAX_randpartition(low, high, key, bydirs);
            if (!growarray(highs, count, capacity))
                break; // leave the rest unsorted; galloc reported the error
            highs[count++] = high;
            high = split;
        } else if (count > 0) {
            low = high + 1;
            high = highs[--count];
        } else {
            break;
        }
    }
    grelease(highs);
}

// Sorts a range. Long ranges of texts are compared by places, with the same result.
void sortrange(int low, int high, int key, int bydirs) {
    constexpr int leastRange = 32;
    const PARTFUNC part = high - low >= leastRange ? partof(key, bydirs) : nullptr;
    firstplaced = low;
    places = part != nullptr ? naturalplaces(low, high, part) : nullptr;
    sortsteps(low, high, key, bydirs);
    grelease(places);
}

bool staysinplace(int i) {
    return BRAXsargv[i][0] == '-' || BRAXsargv[i][0] == '.';
}

void sortaroundoptions(int low, int high, int key, int bydirs) {
    while (low < high) {
        while (low < high && staysinplace(low))
            ++low;
        int last = low;
        while (last < high && !staysinplace(last + 1))
            ++last;
        sortrange(low, last, key, bydirs);
        low = last + 1;
    }
}

std::string_view directoryof(int i) {
    return {BRAXsargv[i], static_cast<size_t>(filepart(BRAXsargv[i]) - BRAXsargv[i])};
}

// Sorts each run of files with the same directory part by itself.
void sortruns(int start, int last, int key) {
    // Sorting moves the elements, but not their texts.
    std::string_view current = directoryof(0);
    bool changed = false;
    int runStart = start;
    for (int i = start; i <= last; ++i) {
        const std::string_view directory = directoryof(i);
        if (directory != current) {
            BRAX_qsort(runStart, i - 1, key, 0);
            current = directory;
            runStart = i;
            changed = true;
        } else if (i == last) {
            BRAX_qsort(runStart, i, key, 0);
        }
    }
    // On purpose a single run is sorted twice: the second pass decides the order of equal elements.
    if (!changed)
        BRAX_qsort(start, last, key, 0);
}

} // namespace

void BRAX_qsort(int low, int high, int key, int bydirs) {
    if (OPTkeepopts != 0)
        sortaroundoptions(low, high, key, bydirs);
    else
        sortrange(low, high, key, bydirs);
}

void BRAX_sortbatch() {
    const int start = OPTstartsortat > 0 ? OPTstartsortat : 0;
    const int last = BRAXargnum - 1;
    if (OPTverbose > 5)
        BRAX_say("OPTsorttype %d\n", OPTsorttype);
    if (OPTsortbydirs != 0)
        BRAX_qsort(start, last, OPTsorttype, 1);
    if (OPTsorttype != 0 && BRAXargnum > 0)
        sortruns(start, last, OPTsorttype);
}
