// The file report.
#include "brax/text.h"
#include "mem/arena.h"
#include "mem/galloc.h"
#include "tool/closure.h"
#include "tool/graph.h"
#include "tool/options.h"
#include "tool/output.h"
#include "tool/report.h"

#include <algorithm>

namespace {

constexpr char redMark[] = "<FONT COLOR=\"#990000\">";
constexpr char markEnd[] = "</FONT>";
constexpr int reservedSpaces = 32; // behind the FILE line, for the total of the links

constexpr const char *monthnames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// What is written of a file wherever it is linked in, behind the spaces and up to the symbol:
// once for a list of a file of the same library, and behind that for all others.
struct ENTRYTEXT {
    const char *text;
    int32_t ownLength;
    int32_t foreignLength;
    int32_t library; // files of the same library have the same number; 0 without one
    int32_t size;    // of the file
};

// One file report.
struct FILEREPORT {
    OUTPUT out;
    int define;
    int refer;
    int links;
    int limit;
    bool totalInline; // the total of the links stands in the FILE line
    // With links only:
    GRAPH graph;
    WALK walk;               // the closure of the file at hand
    ENTRYTEXT *entries;      // by file number
    char *texts;             // of all entries
    int32_t *librariesShown; // by library: the last file whose line of libraries has it, plus 1
};

void printheading(OUTPUT *out, const char *title) {
    if (OPTverbose > 1)
        puttexts(out, "\n", preheader, title, postheader);
}

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

// The first and the last piece of the source path; what lies between is left out. The path
// ends at its first '@'.
void printsourcelink(OUTPUT *out, const _tagfile *file) {
    char directory[BRAXFIELDSIZE];
    char path[BRAXFIELDSIZE];
    char library[BRAXFIELDSIZE];
    copytext(path, file->source, strcspn(file->source, "@"), sizeof path);
    copytext(library, file->library, sizeof library);
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
    printheading(out, "DEFINES");
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
    printheading(out, "REFERS TO");
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
        puttexts(out, "    ", symname(node->symbol), symtype(node->symbol), " (",
                 symfile(node->symbol), ")\n");
}

// Puts what the file and everything it refers to bring into a link into the walk, the file
// itself first, and returns the sum of the sizes.
int64_t findlinks(FILEREPORT *report, const _tagfile *file) {
    WALK *walk = &report->walk;
    const GRAPH &graph = report->graph;
    restartwalk(walk);
    if (file->defines != nullptr && file->defines->symbol->file != nullptr)
        walkfrom(walk, file->defines->symbol->file->number, file->defines->symbol, 0, 0);
    for (int32_t i = graph.first[file->number]; i < graph.first[file->number + 1]; ++i)
        walkfrom(walk, graph.target[i], graph.symbol[i], report->limit, 1);
    int64_t total = 0;
    for (int32_t i = 0; i < walk->count; ++i)
        total += report->entries[walk->reached[i].file].size;
    return total;
}

void printfileline(FILEREPORT *report, const _tagfile *file, int64_t total) {
    OUTPUT *out = &report->out;
    char note[64] = ")";
    if (report->totalInline && total > 0)
        snprintf(note, sizeof note, ", links %d bytes total)", saturated(total));
    puttexts(out, "    ", file->name, " (");
    if (file->library[0] != 0)
        puttexts(out, file->library, ", ");
    putnumber(out, file->size);
    puttexts(out, " bytes", note);
    putspaces(out, reservedSpaces + 1 - static_cast<int64_t>(strlen(note)));
    puttexts(out, "\n");
}

// Puts a library's mark at the end of the line unless the line holds it already; false when
// it does not fit.
bool addlibrary(char *line, size_t *length, const char *library) {
    char mark[BRAXFIELDSIZE];
    const int size = snprintf(mark, sizeof mark, "%s%.1900s%s,", redMark, library, markEnd);
    if (strstr(line, mark) != nullptr)
        return true;
    if (*length + static_cast<size_t>(size) >= BRAXFIELDSIZE)
        return false;
    memcpy(line + *length, mark, static_cast<size_t>(size) + 1);
    *length += static_cast<size_t>(size);
    return true;
}

// The libraries of all linked files, the file's own in black, the others in dark red, also
// in the text form.
void printlibraries(FILEREPORT *report, const _tagfile *file) {
    char line[BRAXFIELDSIZE] = "";
    size_t length = 0;
    addlibrary(line, &length, file->library);
    for (int32_t i = 0; i < report->walk.count; ++i) {
        const int32_t number = report->walk.reached[i].file;
        const int32_t library = report->entries[number].library;
        if (library == 0 || report->librariesShown[library] == file->number + 1)
            continue;
        report->librariesShown[library] = file->number + 1;
        if (!addlibrary(line, &length, report->graph.files[number]->library))
            break;
    }
    line[length - 1] = 0;
    memcpy(strstr(line, "#990000"), "#000000", 7);
    puttexts(&report->out, "    Libraries: ", line, "\n\n");
}

void printlinks(FILEREPORT *report, const _tagfile *file, int64_t total) {
    OUTPUT *out = &report->out;
    const int32_t ownLibrary = report->entries[file->number].library;
    printheading(out, "LINKS IN");
    printlibraries(report, file);
    for (int32_t i = 0; i < report->walk.count; ++i) {
        const REACHED &reached = report->walk.reached[i];
        const ENTRYTEXT &entry = report->entries[reached.file];
        putspaces(out, 4 * (int64_t{reached.level} + 1));
        if (entry.library == ownLibrary)
            puttext(out, entry.text, static_cast<size_t>(entry.ownLength));
        else
            puttext(out, entry.text + entry.ownLength, static_cast<size_t>(entry.foreignLength));
        puttext(out, symname(reached.symbol), static_cast<size_t>(reached.symbol->length));
        puttext(out, "]\n", 2);
    }
    if (!report->totalInline && total > 0) {
        puttexts(out, "\n    Links ");
        putnumber(out, saturated(total));
        puttexts(out, " bytes total");
    }
}

void printfile(FILEREPORT *report, const _tagfile *file) {
    // The closure comes first: its total stands in the first line.
    const int64_t total = report->links != 0 ? findlinks(report, file) : 0;
    printheading(&report->out, "FILE");
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

// Numbers the libraries. Files of one library mostly follow one another, so few are sorted.
bool numberlibraries(FILEREPORT *report) {
    const int32_t count = report->graph.count;
    _tagfile **files = report->graph.files;
    auto *firsts = galloclarge<int32_t>(count);
    report->librariesShown = galloclarge<int32_t>(int64_t{count} + 1);
    if (firsts == nullptr || report->librariesShown == nullptr) {
        if (firsts != nullptr)
            gfree(firsts);
        return false;
    }
    std::fill_n(report->librariesShown, count + 1, 0);
    int32_t runs = 0;
    for (int32_t i = 0; i < count; ++i) {
        if (i == 0 || strcmp(files[i]->library, files[i - 1]->library) != 0)
            firsts[runs++] = i;
    }
    std::sort(firsts, firsts + runs, [files](int32_t a, int32_t b) {
        return strcmp(files[a]->library, files[b]->library) < 0;
    });
    int32_t number = 0;
    for (int32_t i = 0; i < runs; ++i) {
        const char *library = files[firsts[i]]->library;
        if (library[0] != 0 && (i == 0 || strcmp(library, files[firsts[i - 1]]->library) != 0))
            ++number;
        int32_t file = firsts[i];
        do
            report->entries[file++].library = library[0] != 0 ? number : 0;
        while (file < count && strcmp(files[file]->library, library) == 0);
    }
    gfree(firsts);
    return true;
}

// Writes one form of an entry's text, and returns its length; nothing for a null buffer.
int entryform(char *buffer, size_t size, const _tagfile *file, bool foreign) {
    if (file->library[0] == 0)
        return snprintf(buffer, size, "%s (%d) [", file->name, file->size);
    return snprintf(buffer, size, "%s (%s%s%s, %d) [", file->name, foreign ? redMark : "",
                    file->library, foreign ? markEnd : "", file->size);
}

bool maketexts(FILEREPORT *report) {
    const GRAPH &graph = report->graph;
    int64_t room = 1;
    for (int32_t i = 0; i < graph.count; ++i) {
        ENTRYTEXT &entry = report->entries[i];
        entry.ownLength = entryform(nullptr, 0, graph.files[i], false);
        entry.foreignLength = entryform(nullptr, 0, graph.files[i], true);
        entry.size = graph.files[i]->size;
        room += entry.ownLength + entry.foreignLength;
    }
    report->texts = galloclarge<char>(room);
    if (report->texts == nullptr)
        return false;
    char *next = report->texts;
    for (int32_t i = 0; i < graph.count; ++i) {
        ENTRYTEXT &entry = report->entries[i];
        const auto left = static_cast<size_t>(report->texts + room - next);
        entry.text = next;
        next += entryform(next, left, graph.files[i], false);
        next += entryform(next, left - static_cast<size_t>(entry.ownLength), graph.files[i], true);
    }
    return true;
}

// Obtains all memory that the report will need, so that a report is whole or not begun.
bool prepare(FILEREPORT *report, const TVKINFO *info) {
    if (report->links == 0)
        return true;
    if (!makegraph(&report->graph, info, true) || !makewalk(&report->walk, &report->graph))
        return false;
    report->entries = galloclarge<ENTRYTEXT>(report->graph.count);
    return report->entries != nullptr && numberlibraries(report) && maketexts(report);
}

void endreport(FILEREPORT *report) {
    flushoutput(&report->out);
    void *const blocks[] = {report->entries, report->texts, report->librariesShown};
    for (void *block : blocks) {
        if (block != nullptr)
            gfree(block);
    }
    freewalk(&report->walk);
    freegraph(&report->graph);
}

// Whether the file has the given name, which writers of symbol files may have cut.
bool isnamed(const _tagfile *file, const char *name) {
    return stricmp(file->name, name) == 0 ||
           (strlen(file->name) == OBJECTLIMIT && strnicmp(file->name, name, OBJECTLIMIT) == 0);
}

bool isselected(const _tagfile *file, char **files, int nfiles) {
    for (int i = 0; i < nfiles; ++i) {
        if (isnamed(file, files[i]))
            return true;
    }
    return nfiles == 0;
}

} // namespace

int tvkfilereport(FILE *out, TVKINFO *info, char **files, int nfiles, int define, int refer,
                  int links, int limit) {
    const bool positionable = out != stdout && ftell(out) >= 0;
    FILEREPORT report = {};
    report.out = beginoutput(out);
    report.define = define;
    report.refer = refer;
    report.links = links;
    report.limit = limit;
    report.totalInline = positionable;
    const bool whole = prepare(&report, info);
    for (const _tagfile *file = info->files; whole && file != nullptr; file = file->next) {
        if (isselected(file, files, nfiles))
            printfile(&report, file);
    }
    endreport(&report);
    return whole ? 1 : 0;
}
