// Plain reports: written step by step from the store's documented lists, no index, no
// sharing. The program's own reports must be the same, byte for byte.
#pragma once

#include "base/text.h"
#include "symbols/options.h"
#include "symbols/store.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace plain {

using std::string;

struct ENTRY {
    const _tagfile *file;
    int level;
    const _tagsymbol *symbol;
};
struct REQUEST {
    std::vector<string> symbols, files;
    int define, refer, links, limit;
    bool positionable; // the report goes to a file
};

[[gnu::format(printf, 1, 2)]] inline string format(const char *text, ...) {
    char buffer[8192];
    va_list arguments;
    va_start(arguments, text);
    vsnprintf(buffer, sizeof buffer, text, arguments);
    va_end(arguments);
    return buffer;
}

inline void needfiles(const _tagsymbol *symbol, std::vector<ENTRY> &list, int limit, int level) {
    const _tagfile *file = symbol->file;
    const auto isFile = [file](const ENTRY &entry) { return entry.file == file; };
    if (file == nullptr || std::any_of(list.begin(), list.end(), isFile))
        return;
    list.push_back({file, level, symbol});
    for (const _tagsymlist *n = file->refers; n != nullptr && level < limit; n = n->next)
        needfiles(n->symbol, list, limit, level + 1);
}

// The sum of the sizes, within 32 bits.
inline int sizes(const std::vector<ENTRY> &list) {
    int64_t total = 0;
    for (const ENTRY &e : list)
        total += e.file->size;
    return static_cast<int>(std::clamp<int64_t>(total, INT32_MIN, INT32_MAX));
}

inline string heading(const char *title) {
    return OPTverbose > 1 ? format("\n%s%s%s", preheader, title, postheader) : "";
}

inline string indent(const ENTRY &e) {
    return string(4 * (static_cast<size_t>(e.level) + 1), ' ') + e.file->name;
}

inline string onesymbol(const _tagsymbol *symbol, const TVKINFO *info, const REQUEST &r) {
    std::vector<ENTRY> list;
    needfiles(symbol, list, r.limit, 0);
    const int own = list.empty() ? 0 : list[0].file->size;
    if (own == 0 && OPTverbose == 1)
        return "";
    const bool detailed = OPTverbose > 1;
    string out = heading("SYMBOL") + (detailed ? format("    %s%s\n", symbol->name, symtype(symbol))
                                               : format("%-32s ", symbol->name));
    if (r.define != 0)
        out += heading("DEFINED IN") + format(detailed ? "    %s\n" : "%16s", symfile(symbol));
    if (r.refer != 0) {
        out += heading("REFERRED TO IN");
        int count = 0;
        for (const _tagfile *file = info->files; file != nullptr; file = file->next) {
            for (const _tagsymlist *n = file->refers; n != nullptr; n = n->next) {
                count += n->symbol == symbol ? 1 : 0;
                if (detailed && n->symbol == symbol)
                    out += format("    %s\n", file->name);
            }
        }
        out += format(detailed ? "    %d Files\n" : " %8d refs", count);
    }
    if (r.links != 0) {
        out += heading("LINKS IN");
        for (const ENTRY &e : list)
            if (detailed)
                out += indent(e) + format(" (%d) [%s]\n", e.file->size, e.symbol->name);
        if (sizes(list) > 0)
            out += detailed ? format("    Total: %d bytes\n", sizes(list))
                            : format("%8d %8d ", own, sizes(list));
    }
    return out + "\n";
}

inline string symbolreport(const TVKINFO *info, const REQUEST &r) {
    string out;
    for (int i = 0; i < SYMBUCKETS && r.symbols[0] == "all"; ++i)
        for (const _tagsymbol *s = info->symtable[i].symbol; s != nullptr; s = s->next)
            out += onesymbol(s, info, r);
    for (const string &name : r.symbols) {
        const _tagsymbol *symbol = symfind(info->symtable, name.c_str());
        if (r.symbols[0] != "all" && symbol != nullptr)
            out += onesymbol(symbol, info, r);
    }
    return out;
}

inline string sourcelink(const _tagfile *f) {
    const string source = f->source;
    const string path = source.substr(0, source.find('@'));
    const string directory = path.substr(0, path.find_first_of("/\\:"));
    const string file = path.substr(path.find_last_of("/\\:") + 1);
    const string shown =
        (f->library[0] == 0 ? "" : string(f->library) + "/") + directory + "/" + file;
    return format("<a onclick=\"openfile('%s%s')\" style=\"text-decoration: none; color:#003399; "
                  "cursor: hand\" title=\"%s Source\">%s</a>",
                  OPTsourcelinkprefix, shown.c_str(), file.c_str(), shown.c_str());
}

inline string date(int d) {
    const char *const months = "JanFebMarAprMayJunJulAugSepOctNovDec";
    const int month = d / 100 % 100;
    const string shown = month >= 0 && month < 12
                             ? string(months).substr(static_cast<size_t>(month) * 3, 3)
                             : std::to_string(month);
    return format("(%s %d,%d)", shown.c_str(), d % 100, d / 10000);
}

inline string marked(const char *library) {
    return string("<FONT COLOR=\"#990000\">") + library + "</FONT>,";
}

inline string libraries(const _tagfile *f, const std::vector<ENTRY> &list) {
    string text = marked(f->library);
    for (const ENTRY &e : list) {
        const string mark = marked(e.file->library);
        if (e.file->library[0] == 0 || text.find(mark) != string::npos)
            continue;
        if (text.size() + mark.size() > 2047)
            break;
        text += mark;
    }
    text.pop_back();
    return text.replace(text.find("#990000"), 7, "#000000");
}

inline string onefile(const _tagfile *f, const REQUEST &r) {
    string out = heading("FILE") + "    " + f->name + " (" +
                 (f->library[0] == 0 ? "" : string(f->library) + ", ") +
                 format("%d bytes", f->size);
    const size_t position = out.size();
    out += ")" + string(32, ' ') + "\n";
    if (f->source != nullptr)
        out += "    " + (OPThtml != 0 ? sourcelink(f) : f->source) + " " +
               (f->date != 0 ? date(f->date) : "") + "\n";
    if (r.define != 0)
        out += heading("DEFINES");
    for (const _tagsymlist *n = f->defines; n != nullptr && r.define != 0; n = n->next)
        out += string("    ") + n->symbol->name + symtype(n->symbol) +
               (n->symbol->size != 0 ? format(" [%d]", n->symbol->size) : "") + "\n";
    if (r.refer != 0)
        out += heading("REFERS TO");
    for (const _tagsymlist *n = f->refers; n != nullptr && r.refer != 0; n = n->next)
        out += format("    %s%s (%s)\n", n->symbol->name, symtype(n->symbol), symfile(n->symbol));
    if (r.links == 0)
        return out + "\n";
    std::vector<ENTRY> list;
    if (f->defines != nullptr)
        needfiles(f->defines->symbol, list, 0, 0);
    for (const _tagsymlist *n = f->refers; n != nullptr; n = n->next)
        needfiles(n->symbol, list, r.limit, 1);
    out += heading("LINKS IN") + "    Libraries: " + libraries(f, list) + "\n\n";
    for (const ENTRY &e : list) {
        const char *library = e.file->library;
        out += indent(e) + " (";
        if (library[0] != 0)
            out +=
                strcmp(library, f->library) == 0 ? format("%s, ", library) : marked(library) + " ";
        out += format("%d) [%s]\n", e.file->size, e.symbol->name);
    }
    const int total = sizes(list);
    if (total > 0 && !r.positionable)
        out += format("\n    Links %d bytes total", total);
    const string note = format(", links %d bytes total)", total);
    if (total > 0 && r.positionable)
        out.replace(position, note.size(), note);
    return out + "\n";
}

inline string report(const TVKINFO *info, const REQUEST &r) {
    if (!r.symbols.empty())
        return symbolreport(info, r);
    string out;
    for (const _tagfile *f = info->files; f != nullptr; f = f->next) {
        bool selected = r.files.empty();
        for (const string &name : r.files)
            selected = selected || stricmp(name.c_str(), f->name) == 0;
        out += selected ? onefile(f, r) : "";
    }
    return out;
}

} // namespace plain
