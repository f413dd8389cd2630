#include "fuzz.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

// The environment's FUZZ_TARGET names the target of a run.
const struct {
    const char *name;
    void (*run)(const std::string &input);
} targets[] = {
    {"commandline", fuzzcommandline},
    {"expression", fuzzexpression},
    {"listing", fuzzlisting},
    {"match", fuzzmatch},
    {"range", fuzzrange},
    {"report", fuzzreport},
    {"standin", fuzzstandin},
};

bool guarded = false;
jmp_buf back;

} // namespace

extern "C" {
[[noreturn]] void __real_exit(int status);
[[noreturn]] void __wrap_exit(int status); // the linker sends every call of exit here
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

void __wrap_exit(int status) {
    if (guarded)
        longjmp(back, 1);
    __real_exit(status);
}

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static FILE *const quiet = freopen("/dev/null", "w", stdout);
    fuzzrequire(quiet != nullptr, "cannot open /dev/null");
    static const char *const name = getenv("FUZZ_TARGET");
    for (const auto &target : targets) {
        if (name != nullptr && strcmp(name, target.name) == 0) {
            target.run(std::string(reinterpret_cast<const char *>(data), size));
            return 0;
        }
    }
    fuzzrequire(false, "FUZZ_TARGET names no target");
    return 0;
}
}

void fuzzsurvives(void (*run)(const void *context), const void *context) {
    guarded = true;
    if (setjmp(back) == 0)
        run(context);
    guarded = false;
}

std::vector<std::string> fuzzpieces(const std::string &input, char separator, size_t most) {
    std::vector<std::string> pieces(1);
    for (const char c : input) {
        if (c == separator && pieces.size() < most)
            pieces.emplace_back();
        else if (c != 0)
            pieces.back() += c;
    }
    return pieces;
}

void fuzzrequire(bool condition, const char *message) {
    if (condition)
        return;
    fprintf(stderr, "fuzz: %s\n", message);
    abort();
}
