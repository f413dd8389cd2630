// Lookups in the hash table and in std::unordered_map, the same 100,000 keys each, in an
// order unlike that of their insertion. script/bench-expr prints the ratios.
#include "mem/hash.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

namespace {

constexpr int keyCount = 100000;

// Sequential keys are what the bucket function spreads worst; words have 4 to 15 letters.
std::vector<std::string> makekeys(bool words) {
    std::mt19937 random(1);
    std::vector<std::string> keys;
    keys.reserve(keyCount);
    for (int i = 0; i < keyCount; ++i) {
        std::string key = words ? "" : "object" + std::to_string(i) + ".o";
        for (size_t letters = words ? 4 + random() % 12 : 0; letters > 0; --letters)
            key += static_cast<char>('a' + random() % 26);
        keys.push_back(key);
    }
    return keys;
}

std::vector<const char *> shuffled(const std::vector<std::string> &keys) {
    std::vector<const char *> order;
    order.reserve(keys.size());
    for (const std::string &key : keys)
        order.push_back(key.c_str());
    std::shuffle(order.begin(), order.end(), std::mt19937(2));
    return order;
}

void HashCheck(benchmark::State &state) {
    const std::vector<std::string> keys = makekeys(state.range(0) != 0);
    const std::vector<const char *> order = shuffled(keys);
    HASHTABLE *table = HASH_init(65536);
    for (size_t i = 0; i < keys.size(); ++i)
        HASH_add(table, keys[i].c_str(), static_cast<int32_t>(i));
    size_t i = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(HASH_check(table, order[i]));
        i = i + 1 < order.size() ? i + 1 : 0;
    }
    HASH_purge(table);
}
BENCHMARK(HashCheck)->ArgName("words")->Arg(0)->Arg(1);

void UnorderedMapFind(benchmark::State &state) {
    const std::vector<std::string> keys = makekeys(state.range(0) != 0);
    const std::vector<const char *> order = shuffled(keys);
    std::unordered_map<std::string, int32_t> map;
    for (size_t i = 0; i < keys.size(); ++i)
        map.emplace(keys[i], static_cast<int32_t>(i));
    size_t i = 0;
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(map.find(order[i])->second);
        i = i + 1 < order.size() ? i + 1 : 0;
    }
}
BENCHMARK(UnorderedMapFind)->ArgName("words")->Arg(0)->Arg(1);

void HashAdd(benchmark::State &state) {
    const std::vector<std::string> keys = makekeys(state.range(0) != 0);
    while (state.KeepRunning()) {
        HASHTABLE *table = HASH_init(65536);
        for (size_t i = 0; i < keys.size(); ++i)
            HASH_add(table, keys[i].c_str(), static_cast<int32_t>(i));
        HASH_purge(table);
    }
    state.SetItemsProcessed(state.iterations() * keyCount);
}
BENCHMARK(HashAdd)->ArgName("words")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
