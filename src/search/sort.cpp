#include "search/sort.h"

#include "brax/options.h"
#include "brax/text.h"
#include "mem/galloc.h"
#include "search/argv.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

// A part of a name; `end` null means up to the terminator.
struct SPAN {
    const char *text;
    const char *end;
};

bool ended(const SPAN &span) {
    return span.text == span.end || *span.text == 0;
}

int order(int64_t a, int64_t b) {
    return a > b ? 1 : a < b ? -1 : 0;
}

// Takes a run of digits off the span; its value, at most INT64_MAX.
int64_t takenumber(SPAN &span) {
    constexpr int digitLimit = 99;
    int64_t value = 0;
    for (int n = 0; n < digitLimit && !ended(span) && isdigitchar(*span.text); ++n, ++span.text) {
        int64_t next = 0;
        if (__builtin_mul_overflow(value, 10, &next) ||
            __builtin_add_overflow(next, *span.text - '0', &next))
            next = INT64_MAX;
        value = next;
    }
    return value;
}

int naturalorder(SPAN a, SPAN b) {
    while (!ended(a) && !ended(b)) {
        if (isdigitchar(*a.text) && isdigitchar(*b.text)) {
            const int64_t first = takenumber(a);
            const int difference = order(first, takenumber(b));
            if (difference != 0)
                return difference;
        } else {
            if (*a.text != *b.text)
                return order(charvalue(*a.text), charvalue(*b.text));
            ++a.text;
            ++b.text;
        }
    }
    return order(ended(b) ? 1 : 0, ended(a) ? 1 : 0);
}

SPAN wholename(const char *name) {
    return {name, nullptr};
}

SPAN directorypart(const char *name) {
    return {name, filepart(name)};
}

// The text from the last '.' of the name's final component; ':' does not end a component
// here.
SPAN extension(const char *name) {
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

int comparenames(char *const *names, int i, int j, SPAN (*part)(const char *)) {
    return naturalorder(part(names[i]), part(names[j]));
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
    switch (key) {
    case 1:
        return comparenames(BRAXsargv, i, j, bydirs != 0 ? directorypart : wholename);
    case 2:
        return comparenames(BRAXsargv, i, j, extension);
    case 3:
        return comparenumbers(BRAXdateargv, i, j);
    case 4:
        return comparenumbers(BRAXsizeargv, i, j);
    case 5:
        return comparenames(BRAXdargv, i, j, bydirs != 0 ? directorypart : wholename);
    case 6:
        return comparenames(BRAXdargv, i, j, extension);
    case 7:
        if (bydirs != 0)
            return BRAX_strcmp(filepart(BRAXsargv[i]), filepart(BRAXsargv[j]));
        return BRAX_strcmp(BRAXsargv[i], BRAXsargv[j]);
    default:
        return 0;
    }
}

void BRAX_exchange(int i, int j) {
    swapelements(BRAXsargv, 1, i, j);
    swapelements(BRAXdargv, 1, i, j);
    swapelements(BRAXdateargv, OPTmakedatelist, i, j);
    swapelements(BRAXsizeargv, OPTmakesizelist, i, j);
    swapelements(BRAXattribargv, OPTmakeattriblist, i, j);
}

int BRAX_partition(int low, int high, int key, int bydirs) {
    int pivot = low;
    int i = low - 1;
    int j = high + 1;
    for (;;) {
        do
            --j;
        while (BRAX_compare(j, pivot, key, bydirs) > 0);
        do
            ++i;
        while (BRAX_compare(i, pivot, key, bydirs) < 0);
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
    int local[256];
    int *highs;
    int count;
    int room;
};

bool push(WAITING &waiting, int high) {
    if (waiting.count == waiting.room) {
        int *larger = gallocarray<int>(static_cast<int64_t>(waiting.room) * 2);
        if (larger == nullptr)
            return false;
        memcpy(larger, waiting.highs, static_cast<size_t>(waiting.count) * sizeof(int));
        if (waiting.highs != waiting.local)
            gfree(waiting.highs);
        waiting.highs = larger;
        waiting.room *= 2;
    }
    waiting.highs[waiting.count++] = high;
    return true;
}

// Lower part first, then the upper one, as a recursive quicksort would go, for the sake of
// the sequence of random numbers; but however badly the pivots fall, without recursion.
void sortrange(int low, int high, int key, int bydirs) {
    WAITING waiting = {{}, nullptr, 0, 256};
    waiting.highs = waiting.local;
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
    if (waiting.highs != waiting.local)
        gfree(waiting.highs);
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

bool samespan(const SPAN &a, const SPAN &b) {
    return a.end - a.text == b.end - b.text &&
           memcmp(a.text, b.text, static_cast<size_t>(a.end - a.text)) == 0;
}

// Sorts each run of files with one directory part by itself.
void sortruns(int start, int last, int key) {
    // The elements move while they are sorted, their texts do not.
    SPAN current = directorypart(BRAXsargv[0]);
    bool changed = false;
    int runStart = start;
    for (int i = start; i <= last; ++i) {
        const SPAN directory = directorypart(BRAXsargv[i]);
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
