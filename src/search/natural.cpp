// Places are found by sorting keys: texts that compare byte by byte as the parts do in natural
// order. In a key, every character has its highest bit inverted, so that bytes compare as signed
// characters. A run of digits becomes the character '0', inverted likewise, the number of bytes
// of its value, and these bytes, highest first. The first eight bytes of a key are kept beside
// it and decide most comparisons.
#include "search/natural.h"

#include "base/text.h"
#include "mem/galloc.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int numberBytes = 8;
constexpr int prefixBytes = 8;

struct SORTKEY {
    uint64_t prefix; // missing bytes are 0
    const char *text;
    int32_t length;
    int32_t element; // from 0
};

bool ended(const NAMEPART &part) {
    return part.text == part.end || *part.text == 0;
}

// Removes a run of digits from the start of the part; returns its value, at most INT64_MAX.
int64_t takenumber(NAMEPART &part) {
    constexpr int digitLimit = 99;
    int64_t value = 0;
    for (int n = 0; n < digitLimit && !ended(part) && isdigitchar(*part.text); ++n, ++part.text) {
        int64_t next = 0;
        if (__builtin_mul_overflow(value, 10, &next) ||
            __builtin_add_overflow(next, *part.text - '0', &next))
            next = INT64_MAX;
        value = next;
    }
    return value;
}

char biased(char c) {
    return static_cast<char>(static_cast<unsigned char>(c) ^ 0x80U);
}

// Upper limit of the size of a part's key: a run of one digit takes three bytes.
int64_t keysize(const NAMEPART &part) {
    const auto length =
        part.end != nullptr ? part.end - part.text : static_cast<int64_t>(strlen(part.text));
    return 3 * length;
}

// Writes the key and returns its end.
char *writekey(char *key, NAMEPART part) {
    while (!ended(part)) {
        if (!isdigitchar(*part.text)) {
            *key++ = biased(*part.text++);
            continue;
        }
        const auto value = static_cast<uint64_t>(takenumber(part));
        int bytes = numberBytes;
        while (bytes > 0 && value >> (8 * (bytes - 1)) == 0)
            --bytes;
        *key++ = biased('0');
        *key++ = static_cast<char>(bytes);
        while (bytes > 0)
            *key++ = static_cast<char>(value >> (8 * --bytes) & 0xFF);
    }
    return key;
}

uint64_t prefixof(const char *key, int32_t length) {
    uint64_t prefix = 0;
    for (int i = 0; i < prefixBytes; ++i)
        prefix = prefix << 8 | (i < length ? static_cast<unsigned char>(key[i]) : 0U);
    return prefix;
}

int comparekeys(const SORTKEY &a, const SORTKEY &b) {
    if (a.prefix != b.prefix)
        return a.prefix < b.prefix ? -1 : 1;
    const int32_t shorter = std::min(a.length, b.length);
    const int difference = memcmp(a.text, b.text, static_cast<size_t>(shorter));
    return difference != 0 ? difference : numericorder(a.length, b.length);
}

// Fills the keys, and writes their texts to `text` one after another.
void makekeys(SORTKEY *keys, char *text, int low, int count, NAMEPART (*part)(int element)) {
    for (int i = 0; i < count; ++i) {
        char *end = writekey(text, part(low + i));
        const auto length = static_cast<int32_t>(end - text);
        keys[i] = {prefixof(text, length), text, length, i};
        text = end;
    }
}

void numberplaces(int32_t *places, const SORTKEY *keys, int count) {
    int32_t place = 0;
    for (int i = 0; i < count; ++i) {
        if (i > 0 && comparekeys(keys[i - 1], keys[i]) != 0)
            place = i;
        places[keys[i].element] = place;
    }
}

} // namespace

int naturalorder(NAMEPART a, NAMEPART b) {
    while (!ended(a) && !ended(b)) {
        if (isdigitchar(*a.text) && isdigitchar(*b.text)) {
            const int64_t first = takenumber(a);
            const int difference = numericorder(first, takenumber(b));
            if (difference != 0)
                return difference;
        } else {
            if (*a.text != *b.text)
                return numericorder(charvalue(*a.text), charvalue(*b.text));
            ++a.text;
            ++b.text;
        }
    }
    return numericorder(ended(b) ? 1 : 0, ended(a) ? 1 : 0);
}

int32_t *naturalplaces(int low, int high, NAMEPART (*part)(int element)) {
    const int count = high - low + 1;
    int64_t bytes = 1;
    for (int i = low; i <= high; ++i)
        bytes += keysize(part(i));
    auto *places = gallocarray<int32_t>(count);
    auto *keys = gallocarray<SORTKEY>(count);
    auto *text = gallocarray<char>(bytes);
    const bool possible = places != nullptr && keys != nullptr && text != nullptr;
    if (possible) {
        makekeys(keys, text, low, count, part);
        std::sort(keys, keys + count,
                  [](const SORTKEY &a, const SORTKEY &b) { return comparekeys(a, b) < 0; });
        numberplaces(places, keys, count);
    }
    grelease(keys);
    grelease(text);
    if (!possible)
        grelease(places);
    return places;
}
