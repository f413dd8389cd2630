// The parts of a run on a large symbol file: loading, finding names, closures, totals, reports.
#include "mem/galloc.h"
#include "report/closure.h"
#include "report/report.h"
#include "report/totals.h"
#include "symbols/loader.h"
#include "symbols/options.h"

#include <benchmark/benchmark.h>
#include <climits>
#include <cstdlib>
#include <numeric>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

constexpr int objects = 2000;
constexpr int namesPerObject = 20;

uint64_t state = 1;

int below(int n) {
    state = state * 6364136223846793005ULL + 1442695040888963407ULL;
    return static_cast<int>((state >> 33) % static_cast<uint64_t>(n));
}

std::string name(int i) {
    return "audio_stream_flush_" + std::to_string(i);
}

// A symbol file in which every object refers to 80 random symbols. Its destructor removes it.
struct SYMBOLFILE {
    char path[32] = "/tmp/tolvik_bench_XXXXXX";

    SYMBOLFILE() {
        FILE *file = fdopen(mkstemp(path), "w");
        if (file == nullptr)
            abort();
        for (int i = 0; i < objects; ++i) {
            fprintf(file, "[o%d.o][lib%d]\n", i, i / 100);
            for (int j = 0; j < namesPerObject; ++j)
                fprintf(file, "define=%s,FUNCTION,GLOBAL,%d\n",
                        name(i * namesPerObject + j).c_str(), j);
            for (int j = 0; j < 4 * namesPerObject; ++j)
                fprintf(file, "refer=%s\n", name(below(objects * namesPerObject)).c_str());
            fprintf(file, "size=%d\n\n", 100 + i);
        }
        fclose(file);
    }
    ~SYMBOLFILE() {
        unlink(path);
    }
};

const char *symbolfile() {
    static const SYMBOLFILE file;
    return file.path;
}

TVKINFO *store() {
    static TVKINFO *info = tvkload(symbolfile());
    return info;
}

void loadlines(benchmark::State &run) {
    for ([[maybe_unused]] auto _ : run) {
        TVKINFO *info = tvkload(symbolfile());
        benchmark::DoNotOptimize(info);
        run.PauseTiming();
        tvkfree(info);
        run.ResumeTiming();
    }
}
BENCHMARK(loadlines)->Unit(benchmark::kMillisecond);

void findname(benchmark::State &run) {
    std::vector<std::string> names(1024);
    for (std::string &wanted : names)
        wanted = name(below(objects * namesPerObject));
    size_t i = 0;
    for ([[maybe_unused]] auto _ : run)
        benchmark::DoNotOptimize(symfind(store()->symtable, names[i++ % names.size()].c_str()));
}
BENCHMARK(findname);

void closure(benchmark::State &run) {
    _tagsymbol *symbol = symfind(store()->symtable, name(0).c_str());
    for ([[maybe_unused]] auto _ : run)
        flfree(symneedfiles(symbol, nullptr, INT_MAX, 0));
}
BENCHMARK(closure)->Unit(benchmark::kMillisecond);

void totals(benchmark::State &run) {
    for ([[maybe_unused]] auto _ : run) {
        GRAPH graph;
        LINKWALK walk;
        if (!makegraph(&graph, store(), false, nullptr, 0) || !makewalk(&walk, &graph))
            abort();
        std::vector<int32_t> files(static_cast<size_t>(graph.count));
        std::iota(files.begin(), files.end(), 0);
        gfree(linktotals(&walk, INT_MAX, files.data(), graph.count));
        freewalk(&walk);
        freegraph(&graph);
    }
}
BENCHMARK(totals)->Unit(benchmark::kMillisecond);

void report(benchmark::State &run, int verbose, const char *symbol) {
    char *symbols[] = {const_cast<char *>(symbol)};
    OPTverbose = verbose;
    for ([[maybe_unused]] auto _ : run)
        tvkreport("/dev/null", store(), symbols, symbol != nullptr ? 1 : 0, nullptr, 0, 1, 1,
                  symbol != nullptr, INT_MAX);
}
BENCHMARK_CAPTURE(report, all_symbols, 1, "all")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(report, all_files, 2, nullptr)->Unit(benchmark::kMillisecond);

} // namespace
