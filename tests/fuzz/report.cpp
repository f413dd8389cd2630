// Symbol files and every kind of report on them, in the form that the input chooses. Each report
// must be, byte for byte, the one that the plain way of doing it gives.
//
// Input: a line of words, and behind it the symbol file. The words: "v0" and "v1" are verbosities,
// 2 otherwise; "h" chooses HTML; a number limits the levels; "d", "r" and "k" leave out
// definitions, references and links; "u" keeps underscores; "l" with a text puts it in front of
// links; "s" and "f" with a name add a symbol and a file to report on.
#include "fuzz.h"

#include "../unit/plain_store.h"
#include "report/report.h"
#include "symbols/loader.h"

#include <climits>
#include <sys/mman.h>
#include <unistd.h>

namespace {

using std::string;
using TEXTS = std::vector<string>;

// The plain way takes long for large files.
constexpr size_t longestInput = 16384;
constexpr size_t mostObjects = 64;
constexpr size_t mostWords = 16;
constexpr size_t longestWord = 300;

// A file without a directory, and the name by which it can be opened.
struct FILENAME {
    int descriptor;
    char name[40];
};

FILENAME newfile() {
    FILENAME file = {memfd_create("fuzz", 0), ""};
    fuzzrequire(file.descriptor >= 0, "cannot make a file");
    snprintf(file.name, sizeof file.name, "/proc/self/fd/%d", file.descriptor);
    return file;
}

void writefile(const FILENAME &file, const string &bytes) {
    fuzzrequire(ftruncate(file.descriptor, 0) == 0 && lseek(file.descriptor, 0, SEEK_SET) == 0 &&
                    write(file.descriptor, bytes.data(), bytes.size()) ==
                        static_cast<ssize_t>(bytes.size()),
                "cannot write a file");
}

string contents(const FILENAME &file) {
    string bytes(static_cast<size_t>(lseek(file.descriptor, 0, SEEK_END)), 0);
    fuzzrequire(pread(file.descriptor, bytes.data(), bytes.size(), 0) ==
                    static_cast<ssize_t>(bytes.size()),
                "cannot read a file");
    return bytes;
}

// Reports are written to one file, by its name or as standard output.
const FILENAME &reportfile() {
    static const FILENAME file = newfile();
    static const bool isOutput = dup2(file.descriptor, STDOUT_FILENO) >= 0;
    fuzzrequire(isOutput, "cannot turn standard output");
    return file;
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

std::vector<char *> pointers(TEXTS &texts) {
    std::vector<char *> result;
    result.reserve(texts.size());
    for (string &text : texts)
        result.push_back(text.data());
    return result;
}

// What the program reports, and what it says meanwhile.
string reported(TVKINFO *info, plain::REQUEST r, string *messages) {
    static char *said = nullptr;
    static size_t length = 0;
    static FILE *const listener = open_memstream(&said, &length);
    const std::vector<char *> symbols = pointers(r.symbols);
    const std::vector<char *> files = pointers(r.files);
    writefile(reportfile(), "");
    fseeko(listener, 0, SEEK_SET);
    FILE *const speaker = stderr;
    stderr = listener; // the descriptor stays: sanitizers write to it
    const int result = tvkreport(
        r.positionable ? reportfile().name : "", info, const_cast<char **>(symbols.data()),
        static_cast<int>(symbols.size()), const_cast<char **>(files.data()),
        static_cast<int>(files.size()), r.define, r.refer, r.links, r.limit);
    stderr = speaker;
    fflush(listener);
    fuzzrequire(result == 1, "a report is not written");
    messages->assign(said, length);
    return contents(reportfile());
}

void compare(TVKINFO *info, plain::STORE &store, const plain::REQUEST &r) {
    string messages;
    string expectedMessages;
    fuzzrequire(reported(info, r, &messages) == plain::report(store, r, &expectedMessages),
                "a report is not what it must be");
    fuzzrequire(messages == expectedMessages, "the messages are not what they must be");
}

// All symbols, the named ones, few and many, all files in a file and on standard output, and the
// named files.
void comparereports(TVKINFO *info, plain::STORE &store, const plain::REQUEST &r) {
    plain::REQUEST one = r;
    one.files.clear();
    one.symbols = {"all"};
    compare(info, store, one);
    one.symbols = r.symbols;
    if (!one.symbols.empty())
        compare(info, store, one);
    while (!one.symbols.empty() && one.symbols.size() < 6)
        one.symbols.push_back(one.symbols[0]);
    if (!one.symbols.empty())
        compare(info, store, one);
    one.symbols.clear();
    compare(info, store, one);
    one.positionable = false;
    compare(info, store, one);
    one.files = r.files;
    if (!one.files.empty())
        compare(info, store, one);
}

// Adds the newest symbols of the newest file to the named ones.
void addnames(const TVKINFO *info, plain::REQUEST *r) {
    if (info->files == nullptr)
        return;
    for (const _tagsymlist *list : {info->files->defines, info->files->refers}) {
        if (list != nullptr)
            r->symbols.emplace_back(symname(list->symbol));
    }
}

} // namespace

void fuzzinput(const string &input) {
    static const FILENAME symbolfile = newfile();
    const size_t end = std::min(input.find('\n'), input.size());
    const string bytes = input.substr(std::min(end + 1, input.size()));
    if (input.size() > longestInput ||
        std::count(bytes.begin(), bytes.end(), '[') > static_cast<int>(mostObjects))
        return;
    plain::REQUEST r = readwords(input.substr(0, end));
    writefile(symbolfile, bytes);
    TVKINFO *info = tvkload(symbolfile.name);
    fuzzrequire(info != nullptr, "a symbol file is not loaded");
    plain::STORE store;
    plain::load(store, bytes);
    addnames(info, &r);
    comparereports(info, store, r);
    tvkfree(info);
}
