#include "search/sort.h"

#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/argv.h"
#include "search/natural.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// While a range of elements is sorted by a part of their names: the places of these parts, which
// move along with the elements, and the first element of the range. Null otherwise.
int32_t *places = nullptr;
int firstplaced = 0;

int order(int64_t a, int64_t b) {
    return a > b ? 1 : a < b ? -1 : 0;
}

NAMEPART wholename(const char *name) {
    return {name, nullptr};
}

NAMEPART directorypart(const char *name) {
    return {name, filepart(name)};
}

// The text from the last '.' of the name's final component; ':' does not end a component
// here.
NAMEPART extension(const char *name) {
    const char *end = name + strlen(name);
    const char *at = end;
    while (at > name && at[-1] != '.' && !isslash(at[-1]))
        --at;
    if (at > name && at[-1] == '.')
        return {at - 1, end};
    return {end, end};
}

int comparenumbers(const int32_t *vector, int i, int j) {
    return vector == nullptr ? 0 : order(vector[i], vector[j]);
}

using PARTFUNC = NAMEPART (*)(int element);

// What a key looks at in an element's names; null for the keys that are no texts.
PARTFUNC partof(int key, int bydirs) {
    switch (key) {
    case 1:
        if (bydirs != 0)
            return [](int i) { return directorypart(BRAXsargv[i]); };
        return [](int i) { return wholename(BRAXsargv[i]); };
    case 2:
        return [](int i) { return extension(BRAXsargv[i]); };
    case 5:
        if (bydirs != 0)
            return [](int i) { return directorypart(BRAXdargv[i]); };
        return [](int i) { return wholename(BRAXdargv[i]); };
    case 6:
        return [](int i) { return extension(BRAXdargv[i]); };
    case 7:
        if (bydirs != 0)
            return [](int i) { return wholename(filepart(BRAXsargv[i])); };
        return [](int i) { return wholename(BRAXsargv[i]); };
    default:
        return nullptr;
    }
}

template <typename T> void swapelements(T *vector, int wanted, int i, int j) {
    if (wanted == 0 || vector == nullptr)
        return;
    const T kept = vector[i];
    vector[i] = vector[j];
    vector[j] = kept;
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
    if (places != nullptr)
        swapelements(places, 1, i - firstplaced, j - firstplaced);
}

namespace {

// BRAX_compare, by the places while there are some.
int compareelements(int i, int j, int key, int bydirs) {
    if (places != nullptr)
        return order(places[i - firstplaced], places[j - firstplaced]);
    return BRAX_compare(i, j, key, bydirs);
}

} // namespace

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
    // Deliberately not high - low + 1: the last element is never the pivot.
    BRAX_exchange(low + rand() % (high - low), low);
    return BRAX_partition(low, high, key, bydirs);
}

namespace {

// The upper parts that still wait while a lower part is being sorted. They lie one behind
// the other, so that their last indexes say everything.
struct WAITING {
    int *highs;
    int count;
    int room;
};

bool push(WAITING &waiting, int high) {
    if (!growarray(waiting.highs, waiting.count, waiting.room))
        return false;
    waiting.highs[waiting.count++] = high;
    return true;
}

// Lower part first, then the upper one, as a recursive quicksort would go, for the sake of
// the sequence of random numbers; but however badly the pivots fall, without recursion.
void sortsteps(int low, int high, int key, int bydirs) {
    WAITING waiting = {};
    for (;;) {
        if (low < high) {
            const int split = BRAX_randpartition(low, high, key, bydirs);
            if (!push(waiting, high))
                break; // unsorted rather than wrong: galloc has said why
            high = split;
        } else if (waiting.count > 0) {
            low = high + 1;
            high = waiting.highs[--waiting.count];
        } else {
            break;
        }
    }
    grelease(waiting.highs);
}

// Long ranges are compared by places. The steps and what they compare are the same either way.
void sortrange(int low, int high, int key, int bydirs) {
    constexpr int worthwhile = 32;
    const PARTFUNC part = high - low >= worthwhile ? partof(key, bydirs) : nullptr;
    if (part != nullptr) {
        places = naturalplaces(low, high, part);
        firstplaced = low;
    }
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

bool samespan(const NAMEPART &a, const NAMEPART &b) {
    return a.end - a.text == b.end - b.text &&
           memcmp(a.text, b.text, static_cast<size_t>(a.end - a.text)) == 0;
}

// Sorts each run of files with one directory part by itself.
void sortruns(int start, int last, int key) {
    // The elements move while they are sorted, their texts do not.
    NAMEPART current = directorypart(BRAXsargv[0]);
    bool changed = false;
    int runStart = start;
    for (int i = start; i <= last; ++i) {
        const NAMEPART directory = directorypart(BRAXsargv[i]);
        if (!samespan(directory, current)) {
            BRAX_qsort(runStart, i - 1, key, 0);
            current = directory;
            runStart = i;
            changed = true;
        } else if (i == last) {
            BRAX_qsort(runStart, i, key, 0);
        }
    }
    // A single run is sorted once more, deliberately: the second pass decides in which order
    // equal elements come out.
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
