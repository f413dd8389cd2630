// symbolfile KIND OBJECTS [DEFINES REFERS [SEED]]: writes a symbol file to standard output.
//
//   product   one product: objects in libraries, references by preferential attachment, most of
//             them within the library; nearly all objects reach each other
//   growth    the same, but an object refers only to earlier ones: no two reach each other
//   uniform   the same, but each reference is to any symbol, all equally likely
//   layers    ten layers of objects that refer to the layers below: wide, shallow closures
//   hub       one object that refers to all others, which refer to it
//   chain     every object refers to the next one
//   cycle     the same, and the last to the first
//   ladder    every object refers to the next two
//   tiers     90 layers of objects that refer to 20 of the next layer
//   random    every object refers to two earlier ones
//   complete  every object refers to all
//
// DEFINES and REFERS are totals for the file; from hub on, an object has one definition.
// The same arguments give the same file on every machine.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

uint64_t state = 0;

// SplitMix64: standard generators may differ between libraries.
uint64_t next() {
    uint64_t z = state += 0x9E3779B97F4A7C15ULL;
    z = (z ^ z >> 30) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ z >> 27) * 0x94D049BB133111EBULL;
    return z ^ z >> 31;
}

size_t below(size_t n) {
    return next() % n;
}

constexpr const char *words[] = {
    "audio", "brain", "cache",  "draw",  "entity", "font",   "game",   "heap",   "input",
    "joint", "key",   "level",  "mesh",  "node",   "object", "player", "query",  "route",
    "scene", "text",  "unit",   "view",  "world",  "zone",   "mixer",  "shade",  "light",
    "path",  "sound", "stream", "flush", "reset",  "start",  "close",  "update", "sprite"};

const char *word() {
    return words[below(sizeof words / sizeof *words)];
}

struct SIZES {
    size_t objects, defines, refers;
};

// Returns the object that defines the symbol. Every object has about as many symbols.
size_t objectof(const SIZES &sizes, size_t symbol) {
    return symbol * sizes.objects / sizes.defines;
}

size_t firstsymbol(const SIZES &sizes, size_t object) {
    return (object * sizes.defines + sizes.objects - 1) / sizes.objects;
}

std::vector<std::string> makenames(size_t count) {
    std::vector<std::string> names(count);
    char text[80];
    for (size_t i = 0; i < count; ++i) {
        snprintf(text, sizeof text, "%s_%s_%s_%zx", word(), word(), word(), i);
        names[i] = text;
    }
    return names;
}

void printheader(size_t object, size_t librarySize) {
    printf("[%s%zu.o][lib%s%zu]\nsource=src/%s/%s%zu.c,%d\n", words[object % 36], object,
           words[object / librarySize % 36], object / librarySize, words[object / librarySize % 36],
           words[object % 36], object,
           20020000 + static_cast<int>(below(12) * 100 + below(28)) + 1);
}

// Returns a random symbol of `count` objects, starting with `first`.
size_t anyof(const SIZES &sizes, size_t first, size_t count) {
    const size_t from = firstsymbol(sizes, first);
    const size_t to = firstsymbol(sizes, first + count);
    return to > from ? from + below(to - from) : from;
}

constexpr size_t librarySize = 100; // objects

// Returns the target of one more reference of the object; sofar has the targets of all before.
size_t attach(const SIZES &sizes, size_t object, bool backwards,
              const std::vector<uint32_t> &sofar) {
    const size_t library = object / librarySize * librarySize;
    const size_t choice = below(10);
    size_t target = 0;
    if (choice < 3 && !sofar.empty()) {
        target = sofar[below(sofar.size())];
    } else if (choice < 7) {
        const size_t count =
            library + librarySize > sizes.objects ? sizes.objects - library : librarySize;
        target = anyof(sizes, library, count);
    } else {
        target = anyof(sizes, 0, sizes.objects);
    }
    if (backwards && objectof(sizes, target) >= object)
        target = object == 0 ? 0 : anyof(sizes, 0, object);
    return target;
}

size_t layered(const SIZES &sizes, size_t object) {
    const size_t layer = sizes.objects / 10 > 0 ? sizes.objects / 10 : 1;
    const size_t begin = (object / layer + 1) * layer;
    if (begin >= sizes.objects)
        return SIZE_MAX;
    return anyof(sizes, begin, begin + layer > sizes.objects ? sizes.objects - begin : layer);
}

void printobjects(const SIZES &sizes, const char *kind) {
    const std::vector<std::string> names = makenames(sizes.defines);
    std::vector<uint32_t> targets;
    targets.reserve(sizes.refers);
    size_t refers = 0;
    for (size_t object = 0; object < sizes.objects; ++object) {
        printheader(object, librarySize);
        for (size_t i = firstsymbol(sizes, object); i < firstsymbol(sizes, object + 1); ++i)
            printf("define=%s,%s,%s,%zu\n", names[i].c_str(), below(5) != 0 ? "FUNCTION" : "DATA",
                   below(10) != 0 ? "GLOBAL" : "LOCAL", 4 + below(600));
        for (; refers < sizes.refers * (object + 1) / sizes.objects; ++refers) {
            const size_t target = strcmp(kind, "layers") == 0 ? layered(sizes, object)
                                  : strcmp(kind, "uniform") == 0
                                      ? below(sizes.defines)
                                      : attach(sizes, object, strcmp(kind, "growth") == 0, targets);
            if (target == SIZE_MAX)
                continue;
            targets.push_back(static_cast<uint32_t>(target));
            if (below(50) == 0)
                printf("refer=external_%s_%s\n", word(), word());
            else
                printf("refer=%s\n", names[target].c_str());
        }
        printf("size=%zu\n\n", 200 + below(30000));
    }
}

// Objects with one definition. `target` returns the object of the i-th reference, or SIZE_MAX after
// the last.
struct SHAPE {
    const char *name;
    size_t (*target)(size_t objects, size_t object, size_t i);
};

constexpr SHAPE shapes[] = {
    {"hub",
     [](size_t objects, size_t object, size_t i) {
         if (object == 0)
             return i + 1 < objects ? i + 1 : SIZE_MAX;
         return i == 0 ? 0 : SIZE_MAX;
     }},
    {"chain", [](size_t objects, size_t object,
                 size_t i) { return i == 0 && object + 1 < objects ? object + 1 : SIZE_MAX; }},
    {"cycle", [](size_t objects, size_t object,
                 size_t i) { return i == 0 ? (object + 1) % objects : SIZE_MAX; }},
    {"ladder",
     [](size_t objects, size_t object, size_t i) {
         return i < 2 && object + i + 1 < objects ? object + i + 1 : SIZE_MAX;
     }},
    {"tiers",
     [](size_t objects, size_t object, size_t i) {
         const size_t tier = objects / 90 + 1;
         const size_t begin = (object / tier + 1) * tier;
         return i < 20 && begin < objects ? begin + below(std::min(tier, objects - begin))
                                          : SIZE_MAX;
     }},
    {"random", [](size_t /*objects*/, size_t object,
                  size_t i) { return i < 2 && object > 0 ? below(object) : SIZE_MAX; }},
    {"complete",
     [](size_t objects, size_t /*object*/, size_t i) { return i < objects ? i : SIZE_MAX; }},
};

const SHAPE *findshape(const std::string &name) {
    for (const SHAPE &shape : shapes) {
        if (name == shape.name)
            return &shape;
    }
    return nullptr;
}

void printshape(const SHAPE &shape, size_t objects) {
    for (size_t object = 0; object < objects; ++object) {
        printheader(object, librarySize);
        printf("define=link_%zu,FUNCTION,GLOBAL,%zu\n", object, 4 + below(600));
        size_t target = shape.target(objects, object, 0);
        for (size_t i = 1; target != SIZE_MAX; ++i) {
            printf("refer=link_%zu\n", target);
            target = shape.target(objects, object, i);
        }
        printf("size=%zu\n\n", 20 + below(300));
    }
}

size_t numberof(const char *text) {
    char *end = nullptr;
    const unsigned long long number = strtoull(text, &end, 10);
    return *end == 0 ? number : 0;
}

} // namespace

int main(int argc, char **argv) {
    const std::string kind = argc > 1 ? argv[1] : "";
    const SHAPE *shape = findshape(kind);
    const bool known = shape != nullptr || kind == "product" || kind == "growth" ||
                       kind == "uniform" || kind == "layers";
    SIZES sizes = {argc > 2 ? numberof(argv[2]) : 0, 1, 1};
    if (argc > 4)
        sizes = {sizes.objects, numberof(argv[3]), numberof(argv[4])};
    if (!known || (shape == nullptr && argc < 5) || sizes.objects == 0 || sizes.defines == 0) {
        fprintf(stderr, "usage: symbolfile KIND OBJECTS [DEFINES REFERS [SEED]]\n");
        return 1;
    }
    state = argc > 5 ? numberof(argv[5]) : 1;
    if (shape != nullptr)
        printshape(*shape, sizes.objects);
    else
        printobjects(sizes, kind.c_str());
    return fflush(stdout) == 0 && ferror(stdout) == 0 ? 0 : 1;
}
