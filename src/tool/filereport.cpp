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
    FILE *out;
    int define;
    int refer;
    int links;
    int limit;
    bool totalInline; // the total of the links stands in the FILE line
};

void printdate(FILE *out, int32_t date) {
    const int month = date / 100 % 100;
    putchars(out, "(");
    if (month >= 0 && month < 12)
        putchars(out, monthnames[month]);
    else
        putnumber(out, month);
    putchars(out, " ");
    putnumber(out, date % 100);
    putchars(out, ",");
    putnumber(out, date / 10000);
    putchars(out, ")");
}

// The first and the last piece of the source path; what lies between is left out. The path
// ends at its first '@'.
void printsourcelink(FILE *out, const _tagfile *file) {
    char directory[BRAXFIELDSIZE];
    char path[BRAXFIELDSIZE];
    char library[BRAXFIELDSIZE];
    copytext(path, file->source, strcspn(file->source, "@"), sizeof path);
    copytext(library, file->library, sizeof library);
    copytext(directory, path, strcspn(path, "/\\:"), sizeof directory);
    const char *name = filepart(path);
    const char *slash = library[0] != 0 ? "/" : "";
    putchars(out, "<a onclick=\"openfile('", OPTsourcelinkprefix, library, slash, directory, "/",
             name, "')\" style=\"text-decoration: none; color:#003399; cursor: hand\" title=\"",
             name, " Source\">", library, slash, directory, "/", name, "</a>");
}

void printsource(FILE *out, const _tagfile *file) {
    if (file->source == nullptr)
        return;
    putchars(out, "    ");
    if (OPThtml != 0)
        printsourcelink(out, file);
    else
        putchars(out, file->source);
    putchars(out, " ");
    if (file->date != 0)
        printdate(out, file->date);
    putchars(out, "\n");
}

void printdefines(FILE *out, const _tagfile *file) {
    printheader(out, "DEFINES");
    for (const _tagsymlist *node = file->defines; node != nullptr; node = node->next) {
        putchars(out, "    ", symname(node->symbol), symtype(node->symbol));
        if (symsize(node->symbol) != 0) {
            putchars(out, " [");
            putnumber(out, symsize(node->symbol));
            putchars(out, "]");
        }
        putchars(out, "\n");
    }
}

void printrefers(FILE *out, const _tagfile *file) {
    printheader(out, "REFERS TO");
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
        putchars(out, "    ", symname(node->symbol), symtype(node->symbol), " (",
                 symfile(node->symbol), ")\n");
}

// What the file and everything it refers to bring into a link, the file itself first.
_tagfilelist *filecloses(const _tagfile *file, int limit) {
    _tagfilelist *list = nullptr;
    if (file->defines != nullptr)
        list = symneedfiles(file->defines->symbol, list, 0, 0);
    for (const _tagsymlist *node = file->refers; node != nullptr; node = node->next)
        list = symneedfiles(node->symbol, list, limit, 1);
    return list;
}

int64_t totalof(const _tagfilelist *list) {
    int64_t total = 0;
    for (; list != nullptr; list = list->next)
        total += list->file->size;
    return total;
}

void printfileline(const FILEREPORT &report, const _tagfile *file, int64_t total) {
    char note[64] = ")";
    if (report.totalInline && report.links != 0 && total > 0)
        snprintf(note, sizeof note, ", links %d bytes total)", saturated(total));
    putchars(report.out, "    ", file->name, " (");
    if (file->library[0] != 0)
        putchars(report.out, file->library, ", ");
    putnumber(report.out, file->size);
    putchars(report.out, " bytes", note);
    putspaces(report.out, reservedSpaces + 1 - static_cast<int64_t>(strlen(note)));
    putchars(report.out, "\n");
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
void printlibraries(FILE *out, const _tagfile *file, const _tagfilelist *list) {
    char line[BRAXFIELDSIZE] = "";
    size_t length = 0;
    addlibrary(line, &length, file->library);
    const char *last = file->library;
    for (; list != nullptr; list = list->next) {
        const char *library = list->file->library;
        if (library[0] == 0 || strcmp(library, last) == 0)
            continue;
        if (!addlibrary(line, &length, library))
            break;
        last = library;
    }
    line[length - 1] = 0;
    memcpy(strstr(line, "#990000"), "#000000", 7);
    putchars(out, "    Libraries: ", line, "\n\n");
}

void printentry(FILE *out, const _tagfile *file, const _tagfilelist *entry) {
    const char *library = entry->file->library;
    putspaces(out, 4 * (static_cast<int64_t>(entry->level) + 1));
    putchars(out, entry->file->name, " (");
    if (library[0] != 0 && strcmp(library, file->library) == 0)
        putchars(out, library, ", ");
    else if (library[0] != 0)
        putchars(out, redMark, library, markEnd, ", ");
    putnumber(out, entry->file->size);
    putchars(out, ") [", symname(entry->symbol), "]\n");
}

void printlinks(const FILEREPORT &report, const _tagfile *file, const _tagfilelist *list,
                int64_t total) {
    printheader(report.out, "LINKS IN");
    printlibraries(report.out, file, list);
    for (const _tagfilelist *entry = list; entry != nullptr; entry = entry->next)
        printentry(report.out, file, entry);
    if (!report.totalInline && total > 0) {
        putchars(report.out, "\n    Links ");
        putnumber(report.out, saturated(total));
        putchars(report.out, " bytes total");
    }
}

void printfile(const FILEREPORT &report, const _tagfile *file) {
    // The closure comes first: its total stands in the first line.
    _tagfilelist *list = report.links != 0 ? filecloses(file, report.limit) : nullptr;
    const int64_t total = totalof(list);
    printheader(report.out, "FILE");
    printfileline(report, file, total);
    printsource(report.out, file);
    if (report.define != 0)
        printdefines(report.out, file);
    if (report.refer != 0)
        printrefers(report.out, file);
    if (report.links != 0)
        printlinks(report, file, list, total);
    putchars(report.out, "\n");
    flfree(list);
}

bool isselected(const _tagfile *file, char **files, int nfiles) {
    for (int i = 0; i < nfiles; ++i) {
        if (stricmp(file->name, files[i]) == 0)
            return true;
    }
    return nfiles == 0;
}

} // namespace

int tvkfilereport(FILE *out, TVKINFO *info, char **files, int nfiles, int define, int refer,
                  int links, int limit) {
    const bool positionable = out != stdout && ftell(out) >= 0;
    const FILEREPORT report = {out, define, refer, links, limit, positionable};
    for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
        if (isselected(file, files, nfiles) && !closurefailed())
            printfile(report, file);
    }
    return closurefailed() ? 0 : 1;
}
