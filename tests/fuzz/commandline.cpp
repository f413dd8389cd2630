// The command line as a whole, without running programs: arguments, the environment's options
// and response files. Patterns may look around in the whole file system, but an input opens
// only so many directories; the rest cannot be opened for it.
//
// Input: the arguments, one a line; behind a byte 1 the value of TOLVIK_OPTS; behind another
// the response file "list"; behind a third the response file "more".
#include "fuzz.h"

#include "base/options.h"
#include "brax/parse.h"
#include "mem/galloc.h"
#include "search/argv.h"
#include "symbols/options.h"
#include "tool/callbacks.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace {

constexpr int mostBatches = 100;
constexpr int mostDirectories = 300;
bool limited = false; // while an input runs
int directoriesLeft = 0;

} // namespace

extern "C" {
DIR *__real_opendir(const char *name);

DIR *__wrap_opendir(const char *name) {
    if (!limited || --directoriesLeft >= 0)
        return __real_opendir(name);
    errno = EACCES;
    return nullptr;
}

// Nothing that a command line asks for is run.
int system(const char * /*command*/) {
    return 0;
}
}

namespace {

int usage(const char * /*program*/, const char * /*topic*/, const char * /*address*/,
          int /*level*/) {
    return 0;
}

void writefile(const char *name, const std::string &text) {
    std::ofstream(name, std::ios::binary) << text;
}

// A few files to be found.
void enterdirectory() {
    char name[] = "/tmp/tolvik-fuzz-XXXXXX";
    fuzzrequire(mkdtemp(name) != nullptr && chdir(name) == 0, "cannot make a directory");
    for (const char *file : {"a1.c", "a2.c", "a10.c", "sub/b.obj", "sub/x/c.o", "s2/lib.a"}) {
        std::filesystem::create_directories(std::filesystem::absolute(file).parent_path());
        writefile(file, "contents");
    }
    BRAX_init(BRAX_reset, usage, BRAX_opt, nullptr);
}

void forgetnames(char **names, int *count) {
    while (*count > 0)
        gfree(names[--*count]);
}

// Nothing in here may own memory: an input that ends the process leaves by a jump.
void parse(const void *context) {
    const auto &argv = *static_cast<const std::vector<char *> *>(context);
    auto *arguments = const_cast<char **>(argv.data());
    bool more = true;
    for (int batch = 0; more && batch < mostBatches; ++batch) {
        more = BRAX_parse(static_cast<int>(argv.size()) - 1, arguments, "tolvik", "1.54 x");
        for (int i = 0; i < BRAXargnum; ++i)
            fuzzrequire(BRAXsargv[i] != nullptr && BRAXdargv[i] != nullptr, "a name is missing");
    }
}

} // namespace

void fuzzinput(const std::string &input) {
    static bool entered = false;
    if (!entered)
        enterdirectory();
    entered = true;
    std::string rest[4];
    size_t part = 0;
    for (const char c : input) {
        if (c == 1 && part < 3)
            ++part;
        else
            rest[part] += c;
    }
    setenv("TOLVIK_OPTS", rest[1].c_str(), 1);
    writefile("list", rest[2]);
    writefile("more", rest[3]);
    std::vector<std::string> arguments = fuzzpieces("tolvik\n" + rest[0], '\n', 64);
    std::vector<char *> argv;
    argv.reserve(arguments.size() + 1);
    for (std::string &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    const int held = galloccount;
    char before[4096] = "";
    char after[4096] = "";
    fuzzrequire(getcwd(before, sizeof before) != nullptr, "no current directory");
    directoriesLeft = mostDirectories;
    limited = true;
    fuzzsurvives(parse, &argv);
    limited = false;
    fuzzrequire(getcwd(after, sizeof after) != nullptr && strcmp(before, after) == 0,
                "the current directory has changed");
    BRAX_restore();
    forgetnames(OPTsymbols, &OPTnsymbols);
    forgetnames(OPTfiles, &OPTnfiles);
    BRAX_ini(); // releases the path list of a run that ended itself
    BRAX_restore();
    fuzzrequire(galloccount <= held, "a command line kept memory");
}
