// The file report.
#include "brax/text.h"
#include "tool/closure.h"
#include "tool/options.h"
#include "tool/output.h"
#include "tool/report.h"

namespace {

constexpr char redMark[] = "<FONT COLOR=\"#990000\">";
constexpr char markEnd[] = "</FONT>";
constexpr int reservedSpaces = 32; // behind the FILE line, for the total of the links

constexpr const char *monthnames[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                      "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

// One file report.
struct FILEREPORT {
    OUTPUT out;
    int define;
    int refer;
    int links;
    int limit;
    bool totalInline; // the total of the links stands in the FILE line
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

// The closure of the file and of everything that it refers to; its sizes are added to *total.
_tagfilelist *findlinks(const _tagfile *file, int limit, int64_t *total) {
    _tagfilelist *list = nullptr;
    if (file->defines != nullptr)
        list = symneedfiles(file->defines->symbol, list, 0, 0);
    const _tagsymlist *node = islinked(file) ? file->links : file->refers;
    for (; node != nullptr; node = node->next)
        list = symneedfiles(node->symbol, list, limit, 1);
    for (const _tagfilelist *entry = list; entry != nullptr; entry = entry->next)
        *total += entry->file->size;
    return list;
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

// Appends a library's mark to the line unless the line holds it already; false when it does not
// fit.
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

// The libraries of all linked files, the file's own in black, the others in dark red, also
// in the text form. The line is cut after a whole entry.
void printlibraries(OUTPUT *out, const _tagfile *file, const _tagfilelist *list) {
    char line[BRAXFIELDSIZE] = "";
    size_t length = 0;
    const char *library = file->library; // the last one added
    bool fits = addlibrary(line, &length, library);
    for (; fits && list != nullptr; list = list->next) {
        if (list->file->library[0] == 0 || strcmp(list->file->library, library) == 0)
            continue;
        library = list->file->library;
        fits = addlibrary(line, &length, library);
    }
    if (length > 0) {
        line[length - 1] = 0;
        memcpy(strstr(line, "#990000"), "#000000", 7);
    }
    puttexts(out, "    Libraries: ", line, "\n\n");
}

void printentry(OUTPUT *out, const _tagfilelist *entry, const char *ownLibrary) {
    const _tagfile *file = entry->file;
    putspaces(out, 4 * (int64_t{entry->level} + 1));
    puttexts(out, file->name, " (");
    if (file->library[0] != 0 && strcmp(file->library, ownLibrary) == 0)
        puttexts(out, file->library, ", ");
    else if (file->library[0] != 0)
        puttexts(out, redMark, file->library, markEnd, ", ");
    putnumber(out, file->size);
    puttexts(out, ") [", symname(entry->symbol), "]\n");
}

void printlinks(FILEREPORT *report, const _tagfile *file, const _tagfilelist *list, int64_t total) {
    OUTPUT *out = &report->out;
    printheading(out, "LINKS IN");
    printlibraries(out, file, list);
    for (; list != nullptr; list = list->next)
        printentry(out, list, file->library);
    if (!report->totalInline && total > 0) {
        puttexts(out, "\n    Links ");
        putnumber(out, saturated(total));
        puttexts(out, " bytes total");
    }
}

// False when memory runs out; nothing is then written of the file.
bool printfile(FILEREPORT *report, const _tagfile *file) {
    // The closure comes first: its total stands in the first line.
    int64_t total = 0;
    _tagfilelist *list = report->links != 0 ? findlinks(file, report->limit, &total) : nullptr;
    if (closurefailed())
        return false;
    printheading(&report->out, "FILE");
    printfileline(report, file, total);
    printsource(&report->out, file);
    if (report->define != 0)
        printdefines(&report->out, file);
    if (report->refer != 0)
        printrefers(&report->out, file);
    if (report->links != 0)
        printlinks(report, file, list, total);
    puttexts(&report->out, "\n");
    flfree(list);
    return true;
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
    FILEREPORT report = {beginoutput(out), define, refer, links, limit, positionable};
    LINKS prepared = {};
    bool whole = links == 0 || closurebegin(&prepared, info);
    for (const _tagfile *file = info->files; whole && file != nullptr; file = file->next)
        whole = !isselected(file, files, nfiles) || printfile(&report, file);
    closureend(&prepared);
    flushoutput(&report.out);
    return whole ? 1 : 0;
}
