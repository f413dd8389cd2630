#include "page/options.h"

#include "base/text.h"
#include "mem/galloc.h"
#include "symbols/options.h"

#include <algorithm>
#include <cstdlib>
#include <getopt.h>

namespace {

constexpr char usage[] =
    R"(Usage: tolvik-page [options] FILE.tvk...
       tolvik-page [options] --compare OLD.tvk FILE.tvk...
       tolvik-page [--title TEXT] --fragment REPORT.html...
Writes the symbol files, as one store, to standard output: a page for a browser.

  --title TEXT         title of the page; default: the names of the files
  --source-prefix URL  text before the source paths in links (http:, https: or file:)
  --under              keep underscores around symbol names
  --symbols PATTERN    only the objects that the matching symbols link in
  --files PATTERN      only the objects whose name or library matches, and those
                       that they link in
  --compare OLD.tvk    compare with this symbol file of an older build
  --json               write the data alone, as JSON
  --fragment           a page of reports that "tolvik -html" wrote
  --help, --version    show this text, or the version

--symbols, --files and --compare may be repeated. --symbols and --files together
show the objects that either selects.
)";

enum OPTION { TITLE, PREFIX, UNDER, SYMBOLS, FILES, COMPARE, JSON, FRAGMENT, HELP, VERSION };

constexpr option longOptions[] = {{"title", required_argument, nullptr, TITLE},
                                  {"source-prefix", required_argument, nullptr, PREFIX},
                                  {"under", no_argument, nullptr, UNDER},
                                  {"symbols", required_argument, nullptr, SYMBOLS},
                                  {"files", required_argument, nullptr, FILES},
                                  {"compare", required_argument, nullptr, COMPARE},
                                  {"json", no_argument, nullptr, JSON},
                                  {"fragment", no_argument, nullptr, FRAGMENT},
                                  {"help", no_argument, nullptr, HELP},
                                  {"version", no_argument, nullptr, VERSION},
                                  {}};

[[noreturn]] void failusage(const char *message) {
    if (message != nullptr)
        toolsay("tolvik-page: %s\n", message);
    toolsay("Try 'tolvik-page --help'.\n");
    exit(2);
}

// Browsers run the text of other addresses, or do not open them from a page.
bool isaddress(const char *text) {
    constexpr const char *schemes[] = {"http:", "https:", "file:"};
    return std::any_of(std::begin(schemes), std::end(schemes), [&](const char *scheme) {
        return strnicmp(text, scheme, strlen(scheme)) == 0;
    });
}

void addpattern(PATTERNS *patterns, const char *text) {
    patterns->matched[patterns->count] = false;
    patterns->texts[patterns->count++] = text;
}

void readoption(PAGEOPTIONS *options, int code) {
    switch (code) {
    case TITLE:
        options->title = optarg;
        break;
    case PREFIX:
        options->sourcePrefix = optarg;
        break;
    case UNDER:
        OPTunderscores = 1;
        break;
    case SYMBOLS:
        addpattern(&options->symbols, optarg);
        break;
    case FILES:
        addpattern(&options->files, optarg);
        break;
    case COMPARE:
        options->old[options->oldCount++] = optarg;
        break;
    case JSON:
        options->json = true;
        break;
    case FRAGMENT:
        options->fragment = true;
        break;
    case HELP:
        fputs(usage, stdout);
        exit(0);
    case VERSION:
        puts("tolvik-page " TOLVIK_VERSION);
        exit(0);
    default:
        failusage(nullptr); // getopt_long has printed the message
    }
}

void checkoptions(const PAGEOPTIONS &options) {
    const int others = options.symbols.count + options.files.count + options.oldCount +
                       (options.sourcePrefix != nullptr) + OPTunderscores;
    if (options.inputCount == 0)
        failusage("no file given");
    if (options.fragment && (options.json || others > 0))
        failusage("with --fragment only --title is allowed");
    if (options.json && options.oldCount > 0)
        failusage("--json and --compare exclude each other");
    if (options.sourcePrefix != nullptr && !isaddress(options.sourcePrefix))
        failusage("the source prefix must begin with http:, https: or file:");
}

} // namespace

void readoptions(PAGEOPTIONS *options, int argc, char *argv[]) {
    static char program[] = "tolvik-page"; // begins the messages of getopt_long
    argv[0] = program;
    *options = {};
    options->symbols = {gallocarray<const char *>(argc), gallocarray<bool>(argc), 0};
    options->files = {gallocarray<const char *>(argc), gallocarray<bool>(argc), 0};
    options->old = gallocarray<const char *>(argc);
    if (options->symbols.texts == nullptr || options->symbols.matched == nullptr ||
        options->files.texts == nullptr || options->files.matched == nullptr ||
        options->old == nullptr) {
        toolsay("tolvik-page: out of memory\n");
        exit(1);
    }
    int code = 0;
    while ((code = getopt_long(argc, argv, "", longOptions, nullptr)) != -1)
        readoption(options, code);
    options->inputs = argv + optind;
    options->inputCount = argc - optind;
    checkoptions(*options);
}

void freeoptions(PAGEOPTIONS *options) {
    grelease(options->symbols.texts);
    grelease(options->symbols.matched);
    grelease(options->files.texts);
    grelease(options->files.matched);
    grelease(options->old);
}
