// The file report.
#include "base/text.h"
#include "report/graph.h"
#include "report/output.h"
#include "report/report.h"
#include "symbols/options.h"

#include <functional>

namespace {

constexpr char redMark[] = "<FONT COLOR=\"#990000\">";
constexpr char markEnd[] = "</FONT>";
constexpr int reservedSpaces = 32; // at the end of the FILE line, for the links total

constexpr const char *monthnames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// One file report.
struct FILEREPORT {
    OUTPUT out;
    int define;
    int refer;
    int links;
    int limit;
    bool totalInline;   // write the links total in the FILE line
    GRAPH graph = {};   // with links
    LINKWALK walk = {}; // closure of the current file
};

void printdate(OUTPUT *out, int32_t date) {
    const int month = date / 100 % 100;
    puttexts(out, "(");
    if (month >= 0 && month < 12)
        puttexts(out, monthnames[month]);
    else
        putnumber(out, month);
    puttexts(out, " ");
    putnumber(out, date % 100);
    puttexts(out, ",");
    putnumber(out, date / 10000);
    puttexts(out, ")");
}

// Writes the first and the last piece of the source path, which ends at its first '@'.
void printsourcelink(OUTPUT *out, const _tagfile *file) {
    char directory[BRAXFIELDSIZE];
    char path[BRAXFIELDSIZE];
    const char *library = file->library;
    copytext(path, file->source, strcspn(file->source, "@"), sizeof path);
    copytext(directory, path, strcspn(path, "/\\:"), sizeof directory);
    const char *name = filepart(path);
    const char *slash = library[0] != 0 ? "/" : "";
    puttexts(out, "<a onclick=\"openfile('", OPTsourcelinkprefix, library, slash, directory, "/",
             name, "')\" style=\"text-decoration: none; color:#003399; cursor: hand\" title=\"",
             name, " Source\">", library, slash, directory, "/", name, "</a>");
}

void printsource(OUTPUT *out, const _tagfile *file) {
    if (file->source == nullptr)
        return;
    puttexts(out, "    ");
    if (OPThtml != 0)
        printsourcelink(out, file);
    else
        puttexts(out, file->source);
    puttexts(out, " ");
    if (file->date != 0)
        printdate(out, file->date);
    puttexts(out, "\n");
}

void printdefines(OUTPUT *out, const _tagfile *file) {
    putheading(out, "DEFINES");
    for (const _tagsymlist *node = file->defines; node != nullptr; node = node->next) {
        puttexts(out, "    ", symname(node->symbol), symtype(node->symbol));
        if (symsize(node->symbol) != 0) {
            puttexts(out, " [");
            putnumber(out, symsize(node->symbol));
            puttexts(out, "]");
        }
        puttexts(out, "\n");
    }
}

void printrefers(OUTPUT *out, const _tagfile *file) {
    putheading(out, "REFERS TO");
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
        puttexts(out, "    ", symname(node->symbol), symtype(node->symbol), " (",
                 symfile(node->symbol), ")\n");
}

// Finds the closure of the file's first definition and of its references. Returns the sum of the
// sizes.
int64_t findlinks(FILEREPORT *report, const _tagfile *file) {
    LINKWALK *walk = &report->walk;
    const GRAPH &graph = report->graph;
    restartwalk(walk);
    const _tagsymbol *first = file->defines != nullptr ? file->defines->symbol : nullptr;
    if (first != nullptr && first->file != nullptr)
        walkfrom(walk, first->file->number, first, 0, 0);
    for (int32_t i = graph.first[file->number]; i < graph.first[file->number + 1]; ++i)
        walkfrom(walk, graph.target[i], graph.symbol[i], report->limit, 1);
    int64_t total = 0;
    for (int32_t i = 0; i < walk->count; ++i)
        total += graph.files[walk->reached[i].file]->size;
    return total;
}

void printfileline(FILEREPORT *report, const _tagfile *file, int64_t total) {
    OUTPUT *out = &report->out;
    char note[64] = ")";
    if (report->totalInline && total > 0)
        snprintf(note, sizeof note, ", links %d bytes total)", toint32(total));
    puttexts(out, "    ", file->name, " (");
    if (file->library[0] != 0)
        puttexts(out, file->library, ", ");
    putnumber(out, file->size);
    puttexts(out, " bytes", note);
    putspaces(out, reservedSpaces + 1 - static_cast<int64_t>(strlen(note)));
    puttexts(out, "\n");
}

// Appends a library's mark to the line unless the line holds it. False when the mark does not fit.
bool addlibrary(char *line, size_t *length, const char *library) {
    char mark[BRAXFIELDSIZE];
    const auto size =
        static_cast<size_t>(snprintf(mark, sizeof mark, "%s%s%s,", redMark, library, markEnd));
    if (size < sizeof mark && strstr(line, mark) != nullptr)
        return true;
    if (*length + size >= BRAXFIELDSIZE)
        return false;
    memcpy(line + *length, mark, size + 1);
    *length += size;
    return true;
}

// Writes the libraries of all linked files, the file's own in black, the others in dark red, also
// in the text form. A long line is cut after a whole entry.
void printlibraries(FILEREPORT *report, const _tagfile *file) {
    char line[BRAXFIELDSIZE] = "";
    size_t length = 0;
    const char *known[1024] = {}; // the last library of each hash, to save searches
    bool fits = addlibrary(line, &length, file->library);
    for (int32_t i = 0; fits && i < report->walk.count; ++i) {
        const char *library = report->graph.files[report->walk.reached[i].file]->library;
        const char **same = &known[std::hash<std::string_view>{}(library) % std::size(known)];
        if (library[0] == 0 || (*same != nullptr && strcmp(*same, library) == 0))
            continue;
        *same = library;
        fits = addlibrary(line, &length, library);
    }
    if (length > 0) {
        line[length - 1] = 0;
        memcpy(strstr(line, "#990000"), "#000000", 7);
    }
    puttexts(&report->out, "    Libraries: ", line, "\n\n");
}

void printentry(OUTPUT *out, const _tagfile *file, const REACHED &reached, const char *ownLibrary) {
    putlinkstart(out, file, reached.level);
    if (file->library[0] != 0 && strcmp(file->library, ownLibrary) == 0)
        puttexts(out, file->library, ", ");
    else if (file->library[0] != 0)
        puttexts(out, redMark, file->library, markEnd, ", ");
    putlinkend(out, file, reached.symbol);
}

void printlinks(FILEREPORT *report, const _tagfile *file, int64_t total) {
    OUTPUT *out = &report->out;
    putheading(out, "LINKS IN");
    printlibraries(report, file);
    constexpr int32_t ahead = 8; // prefetch: symbols are scattered over the store
    for (int32_t i = 0; i < report->walk.count; ++i) {
        const REACHED &reached = report->walk.reached[i];
        if (i + ahead < report->walk.count)
            __builtin_prefetch(report->walk.reached[i + ahead].symbol);
        printentry(out, report->graph.files[reached.file], reached, file->library);
    }
    if (!report->totalInline && total > 0) {
        puttexts(out, "\n    Links ");
        putnumber(out, toint32(total));
        puttexts(out, " bytes total");
    }
}

void printfile(FILEREPORT *report, const _tagfile *file) {
    // Found first, because the FILE line has its total.
    const int64_t total = report->links != 0 ? findlinks(report, file) : 0;
    putheading(&report->out, "FILE");
    printfileline(report, file, total);
    printsource(&report->out, file);
    if (report->define != 0)
        printdefines(&report->out, file);
    if (report->refer != 0)
        printrefers(&report->out, file);
    if (report->links != 0)
        printlinks(report, file, total);
    puttexts(&report->out, "\n");
}

// Whether the file has the name. Writers of symbol files may have cut the file's.
bool isnamed(const _tagfile *file, const char *name) {
    return stricmp(file->name, name) == 0 ||
           (strlen(file->name) == OBJECTLIMIT && strnicmp(file->name, name, OBJECTLIMIT) == 0);
}

bool isselected(const _tagfile *file, char **files, int nfiles) {
    return nfiles == 0 || std::any_of(files, files + nfiles,
                                      [&](const char *name) { return isnamed(file, name); });
}

} // namespace

int tvkfilereport(FILE *out, TVKINFO *info, char **files, int nfiles, int define, int refer,
                  int links, int limit) {
    const bool positionable = out != stdout && ftell(out) >= 0;
    FILEREPORT report = {beginoutput(out), define, refer, links, limit, positionable};
    // All memory is allocated here, so that a report is whole or not begun.
    const bool whole = links == 0 || (makegraph(&report.graph, info, true, nullptr, 0) &&
                                      makewalk(&report.walk, &report.graph));
    for (const _tagfile *file = info->files; whole && file != nullptr; file = file->next) {
        if (isselected(file, files, nfiles))
            printfile(&report, file);
    }
    flushoutput(&report.out);
    freewalk(&report.walk);
    freegraph(&report.graph);
    return whole ? 1 : 0;
}
