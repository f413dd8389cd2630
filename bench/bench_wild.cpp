// The cost of one match. A recursive search matches every file, so a miss must cost less than
// reading the directory entry.
#include "range/range.h"
#include "wild/wild.h"

#include <benchmark/benchmark.h>
#include <string>

namespace {

void match(benchmark::State &state, WILDMATCHFUN function, const char *string, const char *pattern,
           const char *destination) {
    char output[2048];
    while (state.KeepRunning())
        benchmark::DoNotOptimize(function(output, string, pattern, destination));
}

void range(benchmark::State &state, const char *spec) {
    int32_t number = 0;
    while (state.KeepRunning())
        benchmark::DoNotOptimize(RANGE_match(spec, nullptr, number++ & 1023));
}

// The time grows with the product of the lengths, not exponentially with the number of stars.
void stars(benchmark::State &state) {
    std::string bound;
    for (int64_t i = 0; i < state.range(0); ++i)
        bound += "*a";
    const std::string text(2000, 'b');
    while (state.KeepRunning())
        benchmark::DoNotOptimize(wildstrcmp(text.c_str(), bound.c_str()));
}

BENCHMARK_CAPTURE(match, hit, WILD_match, "joystick.obj", "*.obj", "*.obj");
BENCHMARK_CAPTURE(match, miss, WILD_match, "joystick.cpp", "*.obj", "*.obj");
BENCHMARK_CAPTURE(match, miss_at_once, WILD_match, "joystick.cpp", "lib*.obj", "lib*.obj");
BENCHMARK_CAPTURE(match, hit_without_case, WILD_imatch, "JOYSTICK.OBJ", "*.obj", "*.obj");
BENCHMARK_CAPTURE(match, number, WILD_match, "level12.obj", "level#.obj", "map####.obj");
BENCHMARK_CAPTURE(match, path, WILD_matchpath, "src/input/joystick.obj", "src/*/*.obj",
                  "out/*/*.tvk");
BENCHMARK_CAPTURE(match, index_range, WILD_match, "joystick.obj", "*.obj", "*[0][0..2].obj");
BENCHMARK_CAPTURE(range, span, "1..500");
BENCHMARK_CAPTURE(range, list, "1..9,20..40+=2,!100..900");
BENCHMARK(stars)->RangeMultiplier(4)->Range(2, 512);

} // namespace
