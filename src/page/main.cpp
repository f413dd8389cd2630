// tolvik-page writes symbol files as one page for a browser, or as JSON.
//
// In: symbol files, or HTML reports of tolvik. Out: on standard output, a page that needs no other
// file. Nothing is written before everything is loaded. Read main() at the end of this file first;
// pagedata.h has the data's form, and the files of page/ in the project's directory show it.
#include "base/growtext.h"
#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "mem/gstream.h"
#include "page/options.h"
#include "page/pagetext.h"
#include "page/template.h"
#include "symbols/loader.h"
#include "symbols/options.h"

namespace {

constexpr int64_t MOSTENTRIES = 2'000'000; // definitions and references of a page
constexpr int64_t MOSTREPORTBYTES = 16 * 1024 * 1024;

// One build: its files, loaded as one store.
struct BUILD {
    const char *const *paths;
    int count;
    TVKINFO *info;
    PAGEDATA data;
    GROWTEXT names; // of the files
};

bool outofmemory() {
    toolsay("tolvik-page: out of memory\n");
    return false;
}

bool unreadable(const char *path) {
    toolsay("tolvik-page: could not read '%s'\n", path);
    return false;
}

// Sets the text to the names of the paths, for a title. False when memory runs out.
bool joinnames(GROWTEXT *names, const char *const *paths, int count) {
    bool whole = growset(names, "");
    for (int i = 0; i < count && whole; ++i)
        whole = growappend(names, i > 0 ? ", " : "") && growappend(names, filepart(paths[i]));
    return whole || outofmemory();
}

// Whether one of the files before `last` has symbols.
bool hassymbols(const _tagfile *file, const _tagfile *last) {
    while (file != last && file->defines == nullptr && file->refers == nullptr)
        file = file->next;
    return file != last;
}

bool loadfile(TVKINFO *info, const char *path) {
    const _tagfile *last = info->files;
    const TVKRESULT result = tvkadd(info, path);
    if (result == TVKNOMEMORY)
        return outofmemory();
    if (result != TVKADDED)
        return unreadable(path);
    if (hassymbols(info->files, last))
        return true;
    toolsay("tolvik-page: '%s' is no symbol file, or has no symbols\n", path);
    return false;
}

bool loadbuild(BUILD *build, PAGEOPTIONS *options) {
    build->info = cinew();
    if (build->info == nullptr)
        return outofmemory();
    for (int i = 0; i < build->count; ++i) {
        if (!loadfile(build->info, build->paths[i]))
            return false;
    }
    if (!makepagedata(&build->data, build->info, &options->symbols, &options->files))
        return outofmemory();
    return joinnames(&build->names, build->paths, build->count);
}

void freebuild(BUILD *build) {
    freepagedata(&build->data);
    tvkfree(build->info);
    growfree(&build->names);
}

// Reports the first pattern that selected nothing.
bool allmatched(const PATTERNS &patterns, const char *message) {
    for (int i = 0; i < patterns.count; ++i) {
        if (!patterns.matched[i]) {
            toolsay("tolvik-page: no %s matches '%s'\n", message, patterns.texts[i]);
            return false;
        }
    }
    return true;
}

bool fitspage(int64_t entries) {
    if (entries <= MOSTENTRIES)
        return true;
    toolsay("tolvik-page: %lld definitions and references, but a page has at most %lld; choose a "
            "smaller part by --symbols or --files\n",
            static_cast<long long>(entries), static_cast<long long>(MOSTENTRIES));
    return false;
}

// Writes the text up to the mark and returns the position after it.
const char *putupto(OUTPUT *out, const char *text, const char *mark) {
    const char *end = strstr(text, mark);
    puttext(out, text, static_cast<size_t>(end - text));
    return end + strlen(mark);
}

// Writes a template. `putdata` writes its data elements.
template <typename F>
void puttemplate(OUTPUT *out, const char *text, const char *title, F putdata) {
    const char *data = strstr(text, "@DATA@");
    const char *mark = nullptr;
    while ((mark = strstr(text, "@TITLE@")) != nullptr && mark < data) {
        text = putupto(out, text, "@TITLE@");
        putmarkup(out, title);
    }
    text = putupto(out, text, "@DATA@");
    putdata();
    puttexts(out, text);
}

void beginelement(OUTPUT *out, const char *id) {
    puttexts(out, "<script type=\"application/json\" id=\"", id, "\">");
}

void endelement(OUTPUT *out) {
    puttexts(out, "</script>\n");
}

bool endpage(OUTPUT *out) {
    flushoutput(out);
    if (fflush(out->stream) == 0 && ferror(out->stream) == 0)
        return true;
    toolsay("tolvik-page: could not write to standard output\n");
    return false;
}

bool writebuilds(const BUILD &current, const BUILD &old, const PAGEOPTIONS &options) {
    OUTPUT out = beginoutput(stdout);
    const char *title = options.title != nullptr ? options.title : current.names.text;
    const auto putcurrent = [&]() {
        putpagedata(&out, &current.data, title, options.sourcePrefix);
    };
    if (options.json) {
        putcurrent();
        return endpage(&out);
    }
    puttemplate(&out, pagetemplate, title, [&]() {
        beginelement(&out, "data");
        putcurrent();
        endelement(&out);
        if (old.count == 0)
            return;
        beginelement(&out, "old");
        putpagedata(&out, &old.data, old.names.text, nullptr);
        endelement(&out);
    });
    return endpage(&out);
}

bool makepage(PAGEOPTIONS *options) {
    BUILD current = {options->inputs, options->inputCount, nullptr, {}, {}};
    BUILD old = {options->old, options->oldCount, nullptr, {}, {}};
    const bool made = loadbuild(&current, options) &&
                      (old.count == 0 || loadbuild(&old, options)) &&
                      allmatched(options->symbols, "defined symbol") &&
                      allmatched(options->files, "object or library") &&
                      (options->json || fitspage(current.data.entries + old.data.entries)) &&
                      writebuilds(current, old, *options);
    freebuild(&current);
    freebuild(&old);
    return made;
}

// Appends the contents of the file. False after a message.
bool readreport(GROWTEXT *text, const char *path) {
    char block[BRAXFIELDSIZE];
    const GSTREAM file = gopen(path);
    int64_t got = file != 0 ? gread(file, block, sizeof block) : -1;
    bool whole = true;
    while (got > 0 && whole && text->length <= MOSTREPORTBYTES) {
        whole = growappend(text, block, got);
        got = whole ? gread(file, block, sizeof block) : 0;
    }
    gclose(file);
    if (!whole)
        return outofmemory();
    if (got < 0)
        return unreadable(path);
    if (text->length > MOSTREPORTBYTES)
        toolsay("tolvik-page: the reports have more than %lld bytes; report on fewer symbols or "
                "files\n",
                static_cast<long long>(MOSTREPORTBYTES));
    return text->length <= MOSTREPORTBYTES;
}

void putreports(OUTPUT *out, const PAGEOPTIONS &options, const GROWTEXT &text,
                const int64_t *ends) {
    int64_t begin = 0;
    puttexts(out, "{\"version\":1,\"reports\":[");
    for (int i = 0; i < options.inputCount; ++i) {
        puttexts(out, i > 0 ? ",\n" : "\n", "{\"name\":");
        putjson(out, filepart(options.inputs[i]));
        puttexts(out, ",\"text\":");
        putjson(out, {text.text + begin, static_cast<size_t>(ends[i] - begin)});
        puttexts(out, "}");
        begin = ends[i];
    }
    puttexts(out, "]}\n");
}

bool writereports(const PAGEOPTIONS &options, const char *title, const GROWTEXT &text,
                  const int64_t *ends) {
    OUTPUT out = beginoutput(stdout);
    puttemplate(&out, fragmenttemplate, title, [&]() {
        beginelement(&out, "data");
        putreports(&out, options, text, ends);
        endelement(&out);
    });
    return endpage(&out);
}

bool makereportpage(const PAGEOPTIONS &options) {
    GROWTEXT text = {};
    GROWTEXT names = {};
    auto *ends = gallocarray<int64_t>(options.inputCount); // of the reports in `text`
    bool made = ends != nullptr || outofmemory();
    for (int i = 0; i < options.inputCount && made; ++i) {
        made = readreport(&text, options.inputs[i]);
        ends[i] = text.length;
    }
    made = made && joinnames(&names, options.inputs, options.inputCount) &&
           writereports(options, options.title != nullptr ? options.title : names.text, text, ends);
    growfree(&text);
    growfree(&names);
    grelease(ends);
    return made;
}

int printnothing(const char *, ...) {
    return 0;
}

} // namespace

int main(int argc, char *argv[]) {
    PAGEOPTIONS options;
    OPTverbose = 0;
    gprintf = printnothing; // standard output has the page
    readoptions(&options, argc, argv);
    const bool made = options.fragment ? makereportpage(options) : makepage(&options);
    freeoptions(&options);
    return made ? 0 : 1;
}
