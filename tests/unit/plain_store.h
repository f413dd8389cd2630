// Symbol file, store and reports done the plain way: every definition step by step, no index,
// no sharing, no thought of speed. The program's own must show the same, byte for byte.
#pragma once

#include "base/text.h"
#include "symbols/options.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

namespace plain {

using std::string;

struct OBJECT;
struct SYMBOL {
    string name;
    int type, scope, size;
    OBJECT *file;
};
struct OBJECT {
    string name, library, source;
    bool hasSource = false;
    int date = 0, size = 0;
    std::vector<SYMBOL *> defines, refers; // newest first
};
struct STORE {
    std::deque<SYMBOL> symbols;
    std::deque<OBJECT> objects;
    std::vector<SYMBOL *> buckets[256]; // newest first
    std::vector<OBJECT *> files;        // newest first
};
struct ENTRY {
    OBJECT *file;
    int level;
    SYMBOL *symbol;
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

inline int saturate(long long n) {
    return static_cast<int>(std::clamp<long long>(n, INT32_MIN, INT32_MAX));
}

inline unsigned hash(const string &name) {
    unsigned h = 0;
    for (const char c : name)
        h = h * 4 + static_cast<unsigned>(static_cast<signed char>(c));
    return h % 256;
}

inline SYMBOL *findexact(STORE &store, const string &name) {
    for (SYMBOL *symbol : store.buckets[hash(name)]) {
        if (symbol->name == name)
            return symbol;
    }
    return nullptr;
}

inline SYMBOL *find(STORE &store, const string &name) {
    SYMBOL *symbol = findexact(store, name);
    if (symbol == nullptr && name.size() <= 254)
        symbol = findexact(store, "_" + name);
    if (symbol == nullptr && name.size() <= 254)
        symbol = findexact(store, name + "_");
    return symbol;
}

// For a report: names that do not fit a define line were cut, and then stripped.
inline SYMBOL *findasked(STORE &store, const string &name) {
    SYMBOL *symbol = find(store, name);
    for (size_t limit = 219; limit >= 216 && symbol == nullptr; --limit) {
        string cut = name.substr(0, limit);
        if (OPTunderscores == 0)
            cut.erase(cut.find_last_not_of('_') + 1);
        if (name.size() > limit)
            symbol = find(store, cut);
    }
    return symbol;
}

inline SYMBOL *add(STORE &store, string name, int type, int scope, int size) {
    if (OPTunderscores == 0) {
        name.erase(0, std::min(name.find_first_not_of('_'), name.size()));
        name.erase(name.find_last_not_of('_') + 1);
    }
    if (SYMBOL *found = find(store, name); found != nullptr) {
        found->type = found->type != 0 ? found->type : type;
        found->scope = found->scope != 0 ? found->scope : scope;
        found->size = found->size != 0 ? found->size : size;
        return found;
    }
    store.symbols.push_back({name, type, scope, size, nullptr});
    auto &bucket = store.buckets[hash(name)];
    bucket.insert(bucket.begin(), &store.symbols.back());
    return &store.symbols.back();
}

inline void number(const string &text, int *value) {
    char *end = nullptr;
    const long long n = strtoll(text.c_str(), &end, 10);
    if (end != text.c_str())
        *value = saturate(n);
}

inline bool begins(const string &text, const char *word) {
    return text.compare(0, strlen(word), word) == 0;
}

// Takes the word off the front of the text when it is there.
inline bool take(string *text, const char *word) {
    if (!begins(*text, word))
        return false;
    text->erase(0, strlen(word));
    return true;
}

inline void define(STORE &store, OBJECT *file, string rest) {
    const string name = rest.substr(0, rest.find(','));
    rest.erase(0, name.size());
    int type = 1;
    int scope = 1;
    int size = 0;
    if (take(&rest, ",")) {
        type = !take(&rest, "FUNCTION") && take(&rest, "DATA") ? 2 : 1;
        if (take(&rest, ",")) {
            scope = take(&rest, "LOCAL") ? 2 : (take(&rest, "GLOBAL"), 1);
            if (take(&rest, ","))
                number(rest, &size);
        }
    }
    SYMBOL *symbol = add(store, name, type, scope, size);
    symbol->file = file;
    file->defines.insert(file->defines.begin(), symbol);
}

constexpr const char *blanks = " \t\n\v\f\r";

inline void source(OBJECT *file, string rest) {
    rest.erase(0, std::min(rest.find_first_not_of(blanks), rest.size()));
    rest = rest.substr(0, rest.find_first_of(blanks));
    if (rest.empty())
        return;
    file->hasSource = true;
    file->source = rest.substr(0, rest.find(','));
    if (rest.find(',') != string::npos)
        number(rest.substr(rest.find(',') + 1), &file->date);
}

inline void header(STORE &store, const string &line) {
    OBJECT object;
    object.name =
        line.substr(1, line.find(']', 1) == string::npos ? string::npos : line.find(']', 1) - 1);
    const string rest = line.substr(1 + object.name.size());
    if (begins(rest, "]["))
        object.library = rest.substr(2, rest.find(']', 2) == string::npos ? string::npos
                                                                          : rest.find(']', 2) - 2);
    store.objects.push_back(object);
    store.files.insert(store.files.begin(), &store.objects.back());
}

inline void load(STORE &store, const string &bytes) {
    for (size_t at = 0; at < bytes.size();) {
        const size_t feed = bytes.find('\n', at);
        const size_t end = feed == string::npos ? bytes.size() : feed + 1;
        const size_t length = std::min(end - at, size_t{255});
        string line = bytes.substr(at, length).c_str(); // a zero byte ends it
        at += length;
        OBJECT *file = store.files.empty() ? nullptr : store.files.front();
        if (begins(line, "["))
            header(store, line);
        else if (file == nullptr)
            continue;
        else if (take(&line, "size="))
            number(line, &file->size);
        else if (take(&line, "source="))
            source(file, line);
        else if (take(&line, "define="))
            define(store, file, line);
        else if (take(&line, "refer="))
            file->refers.insert(file->refers.begin(),
                                add(store, line.substr(0, line.find_first_of(blanks)), 0, 1, 0));
    }
}

inline void needfiles(SYMBOL *symbol, std::vector<ENTRY> &list, int limit, int level) {
    OBJECT *file = symbol->file;
    if (file == nullptr)
        return;
    for (const ENTRY &entry : list) {
        if (entry.file == file)
            return;
    }
    list.push_back({file, level, symbol});
    if (level >= limit)
        return;
    for (SYMBOL *refer : file->refers)
        needfiles(refer, list, limit, level + 1);
}

inline string heading(const char *title) {
    return OPTverbose > 1 ? format("\n%s%s%s", preheader, title, postheader) : "";
}

inline const char *typetext(const SYMBOL *symbol) {
    return symbol->type == 1 ? "()" : "";
}

inline const char *filetext(const SYMBOL *symbol) {
    return symbol->file != nullptr ? symbol->file->name.c_str() : "unknown";
}

inline string onesymbol(SYMBOL *symbol, STORE &store, const REQUEST &r) {
    std::vector<ENTRY> list;
    needfiles(symbol, list, r.limit, 0);
    const int own = list.empty() ? 0 : list[0].file->size;
    if (own == 0 && OPTverbose == 1)
        return "";
    const bool detailed = OPTverbose > 1;
    const char *name = symbol->name.c_str();
    string out = heading("SYMBOL") +
                 (detailed ? format("    %s%s\n", name, typetext(symbol)) : format("%-32s ", name));
    if (r.define != 0)
        out += heading("DEFINED IN") + format(detailed ? "    %s\n" : "%16s", filetext(symbol));
    if (r.refer != 0) {
        out += heading("REFERRED TO IN");
        int count = 0;
        for (const OBJECT *file : store.files) {
            for (const SYMBOL *refer : file->refers) {
                count += refer == symbol ? 1 : 0;
                if (detailed && refer == symbol)
                    out += format("    %s\n", file->name.c_str());
            }
        }
        out += format(detailed ? "    %d Files\n" : " %8d refs", count);
    }
    if (r.links != 0) {
        out += heading("LINKS IN");
        long long total = 0;
        for (const ENTRY &e : list) {
            if (detailed)
                out += string(4 * (static_cast<size_t>(e.level) + 1), ' ') +
                       format("%s (%d) [%s]\n", e.file->name.c_str(), e.file->size,
                              e.symbol->name.c_str());
            total += e.file->size;
        }
        if (total > 0)
            out += detailed ? format("    Total: %d bytes\n", saturate(total))
                            : format("%8ld %8ld ", static_cast<long>(own),
                                     static_cast<long>(saturate(total)));
    }
    return out + "\n";
}

inline string symbolreport(STORE &store, const REQUEST &r, string *messages) {
    string out;
    if (r.symbols[0] == "all") {
        for (const auto &bucket : store.buckets) {
            for (SYMBOL *symbol : bucket)
                out += onesymbol(symbol, store, r);
        }
        return out;
    }
    for (const string &name : r.symbols) {
        if (SYMBOL *symbol = findasked(store, name); symbol != nullptr)
            out += onesymbol(symbol, store, r);
        else
            *messages += format("tolvik: symbol '%s' not found\n", name.c_str());
    }
    return out;
}

inline string sourcelink(const OBJECT *f) {
    const string path = f->source.substr(0, f->source.find('@'));
    const string directory = path.substr(0, path.find_first_of("/\\:"));
    const string file = path.substr(path.find_last_of("/\\:") + 1);
    const string shown = (f->library.empty() ? "" : f->library + "/") + directory + "/" + file;
    return format("<a onclick=\"openfile('%s%s')\" style=\"text-decoration: none; color:#003399; "
                  "cursor: hand\" title=\"%s Source\">%s</a>",
                  OPTsourcelinkprefix, shown.c_str(), file.c_str(), shown.c_str());
}

inline string date(int d) {
    static const char *const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                         "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    const int month = d / 100 % 100;
    const string shown = month >= 0 && month < 12 ? months[month] : std::to_string(month);
    return format("(%s %d,%d)", shown.c_str(), d % 100, d / 10000);
}

inline string libraries(const OBJECT *f, const std::vector<ENTRY> &list) {
    const auto mark = [](const string &library) {
        return "<FONT COLOR=\"#990000\">" + library + "</FONT>,";
    };
    string text = mark(f->library);
    for (const ENTRY &e : list) {
        if (e.file->library.empty() || text.find(mark(e.file->library)) != string::npos)
            continue;
        if (text.size() + mark(e.file->library).size() > 2047)
            break;
        text += mark(e.file->library);
    }
    text.pop_back();
    return text.replace(text.find("#990000"), 7, "#000000");
}

inline string onefile(OBJECT *f, const REQUEST &r) {
    string out = heading("FILE") + "    " + f->name + " (" +
                 (f->library.empty() ? "" : f->library + ", ") + format("%d bytes", f->size);
    const size_t p = out.size();
    out += ")" + string(32, ' ') + "\n";
    if (f->hasSource)
        out += "    " + (OPThtml != 0 ? sourcelink(f) : f->source) + " " +
               (f->date != 0 ? date(f->date) : "") + "\n";
    if (r.define != 0) {
        out += heading("DEFINES");
        for (const SYMBOL *s : f->defines)
            out += "    " + s->name + typetext(s) + (s->size != 0 ? format(" [%d]", s->size) : "") +
                   "\n";
    }
    if (r.refer != 0) {
        out += heading("REFERS TO");
        for (const SYMBOL *s : f->refers)
            out += format("    %s%s (%s)\n", s->name.c_str(), typetext(s), filetext(s));
    }
    if (r.links == 0)
        return out + "\n";
    out += heading("LINKS IN");
    std::vector<ENTRY> list;
    if (!f->defines.empty())
        needfiles(f->defines[0], list, 0, 0);
    for (SYMBOL *s : f->refers)
        needfiles(s, list, r.limit, 1);
    out += "    Libraries: " + libraries(f, list) + "\n\n";
    long long total = 0;
    for (const ENTRY &e : list) {
        const string &library = e.file->library;
        out += string(4 * (static_cast<size_t>(e.level) + 1), ' ') + e.file->name + " (";
        if (!library.empty())
            out += library == f->library ? library + ", "
                                         : "<FONT COLOR=\"#990000\">" + library + "</FONT>, ";
        out += format("%d) [%s]\n", e.file->size, e.symbol->name.c_str());
        total += e.file->size;
    }
    if (total > 0 && !r.positionable)
        out += format("\n    Links %d bytes total", saturate(total));
    else if (total > 0) {
        const string note = format(", links %d bytes total)", saturate(total));
        out.replace(p, note.size(), note);
    }
    return out + "\n";
}

inline string report(STORE &store, const REQUEST &r, string *messages) {
    if (!r.symbols.empty())
        return symbolreport(store, r, messages);
    string out;
    for (OBJECT *f : store.files) {
        bool selected = r.files.empty();
        for (const string &name : r.files)
            selected = selected || stricmp(name.c_str(), f->name.c_str()) == 0;
        if (selected)
            out += onefile(f, r);
    }
    return out;
}

} // namespace plain
