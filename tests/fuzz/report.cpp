// Symbol files and every kind of report on them. Each report must equal the report
// of plain_report.h, byte for byte.
//
// Input: a line of words, then the symbol file. The words: "v0" and "v1" are verbosities,
// 2 otherwise; "h" chooses HTML; a number limits the levels; "d", "r" and "k" leave out
// definitions, references and links; "u" keeps underscores; "l" with a text sets the prefix of
// links; "s" and "f" with a name add a symbol and a file to report on.
#include "fuzz.h"

#include "plain_report.h"
#include "report/report.h"
#include "symbols/loader.h"

#include <climits>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <sys/mman.h>

namespace {

using std::string;
using TEXTS = std::vector<string>;

// plain_report.h is slow on large files.
constexpr size_t longestInput = 16384;
constexpr int mostObjects = 64;
constexpr size_t mostWords = 16;
constexpr size_t longestWord = 300;

// The name of a file in memory: one on a disk takes ten times as long.
string newfile() {
    return plain::format("/proc/self/fd/%d", memfd_create("fuzz", 0));
}

plain::REQUEST readwords(const string &line) {
    plain::REQUEST r = {{}, {}, 1, 1, 1, INT_MAX, true};
    OPTverbose = 2;
    OPThtml = 0;
    OPTunderscores = 0;
    OPTsourcelinkprefix[0] = 0;
    for (const string &word : fuzzpieces(line, ' ', mostWords)) {
        if (word.empty() || word.size() > longestWord)
            continue;
        const string rest = word.substr(1);
        if (isdigitchar(word[0]))
            r.limit = atoi(word.substr(0, 9).c_str());
        r.define = word == "d" ? 0 : r.define;
        r.refer = word == "r" ? 0 : r.refer;
        r.links = word == "k" ? 0 : r.links;
        OPTverbose = word == "v0" ? 0 : word == "v1" ? 1 : OPTverbose;
        OPThtml = word == "h" ? 1 : OPThtml;
        OPTunderscores = word == "u" ? 1 : OPTunderscores;
        if (word[0] == 'l')
            copytext(OPTsourcelinkprefix, rest.c_str(), sizeof OPTsourcelinkprefix);
        if (word[0] == 's')
            r.symbols.push_back(rest);
        if (word[0] == 'f')
            r.files.push_back(rest);
    }
    preheader = OPThtml != 0 ? "</PRE><H4>" : "";
    postheader = OPThtml != 0 ? "</H4><PRE>" : "\n";
    return r;
}

// Requires the program's report to be the plain one.
void compare(TVKINFO *info, plain::REQUEST r) {
    static const string report = newfile();
    static FILE *const null = fopen("/dev/null", "w");
    std::vector<char *> names;
    for (TEXTS *texts : {&r.symbols, &r.files})
        for (string &text : *texts)
            names.push_back(text.data());
    const auto nsymbols = static_cast<int>(r.symbols.size());
    fuzzrequire(null != nullptr && freopen(report.c_str(), "w", stdout) != nullptr,
                "cannot open the report");
    FILE *const speaker = stderr;
    stderr = null; // sanitizers write to the descriptor
    const int result = tvkreport(r.positionable ? report.c_str() : "", info, names.data(), nsymbols,
                                 names.data() + nsymbols, static_cast<int>(r.files.size()),
                                 r.define, r.refer, r.links, r.limit);
    stderr = speaker;
    fflush(stdout);
    std::ifstream file(report, std::ios::binary);
    fuzzrequire(result == 1 &&
                    string(std::istreambuf_iterator<char>(file), {}) == plain::report(info, r),
                "a report is not what it must be");
}

} // namespace

void fuzzreport(const string &input) {
    static const string symbolfile = newfile();
    const size_t end = std::min(input.find('\n'), input.size());
    const string bytes = input.substr(std::min(end + 1, input.size()));
    if (input.size() > longestInput || std::count(bytes.begin(), bytes.end(), '[') > mostObjects)
        return;
    plain::REQUEST r = readwords(input.substr(0, end));
    std::ofstream(symbolfile, std::ios::binary) << bytes;
    TVKINFO *info = tvkload(symbolfile.c_str());
    fuzzrequire(info != nullptr, "a symbol file is not loaded");
    // The named symbols and the newest, few and many; all symbols; the named files; all files, in a
    // file and on standard output.
    if (const _tagfile *newest = info->files; newest != nullptr) {
        for (const _tagsymlist *list : {newest->defines, newest->refers})
            if (list != nullptr)
                r.symbols.emplace_back(symname(list->symbol));
    }
    const TEXTS files = r.files;
    r.files.clear();
    for (const size_t most : {r.symbols.size(), size_t{6}}) {
        while (!r.symbols.empty() && r.symbols.size() < most)
            r.symbols.push_back(r.symbols[0]);
        if (!r.symbols.empty())
            compare(info, r);
    }
    r.symbols = {"all"};
    compare(info, r);
    r.symbols.clear();
    compare(info, r);
    r.positionable = false;
    compare(info, r);
    r.files = files;
    compare(info, r);
    tvkfree(info);
}
