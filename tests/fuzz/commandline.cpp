// The command line as a whole, without running programs: arguments, the environment's options
// and response files. Patterns may name any directory; an input opens only so many of them.
//
// Input: the arguments, one a line; after a byte 1 the value of TOLVIK_OPTS; after the next the
// response file "list"; after the third the response file "more".
#include "fuzz.h"

#include "base/options.h"
#include "brax/parse.h"
#include "mem/galloc.h"
#include "search/argv.h"
#include "symbols/options.h"
#include "tool/callbacks.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <filesystem>
#include <fstream>

namespace {

constexpr int mostBatches = 100;
constexpr int mostDirectories = 100;
int directoriesLeft = INT_MAX; // that an input may open; the fuzzer opens some itself

} // namespace

extern "C" {
DIR *__real_opendir(const char *name);
DIR *__wrap_opendir(const char *name);

DIR *__wrap_opendir(const char *name) {
    if (--directoriesLeft >= 0)
        return __real_opendir(name);
    errno = EACCES;
    return nullptr;
}

// No command runs.
int system(const char * /*command*/) {
    return 0;
}
}

namespace {

namespace fs = std::filesystem;

// Makes a few files below the current directory and enters their directory.
fs::path enterdirectory() {
    fs::create_directories("commandline/sub/x");
    fs::current_path("commandline");
    for (const char *file : {"a1.c", "a2.c", "a10.c", "sub/b.obj", "sub/x/c.o"})
        std::ofstream(file) << "contents";
    const auto usage = [](const char *, const char *, const char *, int) { return 0; };
    BRAX_init(BRAX_reset, usage, BRAX_opt, nullptr);
    return fs::current_path();
}

// Frees the memory of an input, also when that called exit.
void release() {
    while (OPTnsymbols > 0)
        gfree(OPTsymbols[--OPTnsymbols]);
    while (OPTnfiles > 0)
        gfree(OPTfiles[--OPTnfiles]);
    BRAX_restore();
    BRAX_ini();
    BRAX_restore();
}

void parse(const void *context) {
    const auto &argv = *static_cast<const std::vector<char *> *>(context);
    auto *arguments = const_cast<char **>(argv.data());
    const auto count = static_cast<int>(argv.size()) - 1;
    int batches = 0;
    while (BRAX_parse(count, arguments, "tolvik", "1.54 x") && ++batches < mostBatches)
        continue;
}

} // namespace

void fuzzcommandline(const std::string &input) {
    static const fs::path directory = enterdirectory();
    std::vector<std::string> parts = fuzzpieces(input, 1, 4);
    parts.resize(4);
    setenv("TOLVIK_OPTS", parts[1].c_str(), 1);
    std::ofstream("list") << parts[2];
    std::ofstream("more") << parts[3];
    std::vector<std::string> arguments = fuzzpieces("tolvik\n" + parts[0], '\n', 64);
    std::vector<char *> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    release();
    const int held = galloccount;
    directoriesLeft = mostDirectories;
    fuzzsurvives(parse, &argv);
    directoriesLeft = INT_MAX;
    fuzzrequire(fs::current_path() == directory, "the current directory has changed");
    release();
    fuzzrequire(galloccount == held, "a command line kept memory");
}
