// The scan of the option text: applies options and collects the names of the batch.
//
// The scan is either between options or in an option, after a '-'. Built-in options may follow
// one another in one word. The rest of a word after an option of the program's callback is read
// between options, that is as a name.
#include "base/fields.h"
#include "base/text.h"
#include "brax/builtin.h"
#include "brax/run.h"

#include <cstring>

namespace {

struct SCAN {
    char *p;
    TEXTEND names;
    bool inOption;
    bool batchEnd; // the batch ends after the current option or name
    int options;
};

void addname(SCAN *scan, const char *before, const char *name, const char *after) {
    if (*name == 0)
        return;
    const int start = scan->names.length;
    const char *parts[] = {before, name, after, " "};
    for (const char *part : parts) {
        if (!BRAX_append(&scan->names, part, "NAME LIST", part)) {
            scan->names.length = start;
            scan->names.text[start] = 0;
            return;
        }
    }
}

// Moves to a position in the option text, which is writable although readers return const.
void moveto(SCAN *scan, const char *position) {
    scan->p += position - scan->p;
}

void scanrule(SCAN *scan) {
    char rule[BRAXFIELDSIZE];
    moveto(scan, BRAX_getfield(rule, BRAX_nextfield(scan->p + 1), true, true));
    if (OPTkeepopts != 0)
        addname(scan, "=\"", rule, "\"");
    BRAX_setdestinationrule(rule);
}

void scanname(SCAN *scan) {
    char name[BRAXFIELDSIZE];
    const char *end = BRAX_getfield(name, scan->p, false, true);
    scan->batchEnd = BRAX_cutbatchend(name, strlen(name), 0) || scan->batchEnd;
    moveto(scan, end);
    addname(scan, "", name, "");
}

void scanbetween(SCAN *scan) {
    const char c = *scan->p;
    if (c == '-') {
        scan->inOption = true;
        ++scan->options;
        ++scan->p;
    } else if (c == '^' && scan->p[1] == '&') {
        scan->batchEnd = true;
        scan->p += 2;
    } else if (c == ';') {
        scan->batchEnd = true;
        ++scan->p;
    } else if (c == '=') {
        scanrule(scan);
    } else if (c == '?' && isblankchar(scan->p[1])) {
        OPTverbose = 3;
        autohelp = 2;
        ++scan->p;
    } else if (isblankchar(c) || c == ',') {
        ++scan->p;
    } else {
        scanname(scan);
    }
}

// Length of the option word at `text`. A bracket or quote must be closed within the length of a
// field; otherwise every such word would be searched to the end of the text.
size_t wordlength(const char *text) {
    char window[BRAXFIELDSIZE];
    const bool whole = copytext(window, text, strnlen(text, BRAXFIELDSIZE), sizeof window);
    const char *end = BRAX_getfield(nullptr, window, false, true);
    auto length = static_cast<size_t>(end - window);
    if (*end != 0 || whole)
        return length;
    for (length = 0; text[length] != 0 && !isblankchar(text[length]);)
        ++length;
    return length;
}

void keepoption(SCAN *scan) {
    char word[BRAXFIELDSIZE];
    if (!copytext(word, scan->p, wordlength(scan->p), sizeof word)) {
        BRAX_refuse("FIELD", word);
        return;
    }
    for (char *p = word; *p != 0; ++p)
        *p = tosoftspace(*p);
    addname(scan, "-", word, "");
}

void refuseoption(SCAN *scan) {
    BRAX_unknownoption(3, scan->p - 1);
    opterror = -1;
    autohelp = 1;
    scan->p += strlen(scan->p);
}

// Scans an option word from its first character, or the next built-in option in one.
void scanoption(SCAN *scan) {
    if (!isblankchar(*scan->p)) {
        if (OPToptlower != 0)
            *scan->p = lowerchar(*scan->p);
        scan->batchEnd = BRAX_cutbatchend(scan->p, wordlength(scan->p), ' ') || scan->batchEnd;
    }
    if (isblankchar(*scan->p)) { // after the word, or the word was ';' alone
        scan->inOption = false;
        return;
    }
    if (OPTkeepopts != 0)
        keepoption(scan);
    const char *end = BRAX_programoption(scan->p, true);
    if (end != nullptr) {
        moveto(scan, end);
        scan->inOption = false;
        return;
    }
    if (*scan->p == ',') {
        ++scan->p;
    } else if (*scan->p == ';') {
        ++scan->p;
        scan->batchEnd = true;
        scan->inOption = false;
    } else if ((end = BRAX_builtin(scan->p, true)) != nullptr) {
        moveto(scan, end);
    } else {
        refuseoption(scan);
    }
}

} // namespace

int BRAX_scan() {
    if (optptr == nullptr)
        return 0;
    SCAN scan = {optlist + (optptr - optlist), {namelist, 0}, false, false, 0};
    while (*scan.p != 0 && (scan.inOption || !scan.batchEnd)) {
        if (scan.inOption)
            scanoption(&scan);
        else
            scanbetween(&scan);
    }
    // Blanks and commas after a separator do not make another batch.
    optptr = BRAX_nextfield(scan.p);
    return scan.options;
}
