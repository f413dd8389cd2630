// Gathers the option text of a run.
#include "brax/builtin.h"
#include "brax/fields.h"
#include "brax/response.h"
#include "brax/run.h"
#include "brax/text.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

char optsvariable[BRAXFIELDSIZE];

void nameprogram(const char *path) {
    char last[BRAXFIELDSIZE];
    BRAX_changeext(prgnamebuf, BRAX_getname(last, path), "=");
    lowertext(prgnamebuf);
    snprintf(optsvariable, sizeof optsvariable, "%.2000s_OPTS", prgnamebuf);
    uppertext(optsvariable);
}

// The scanner takes bytes above 127 and control characters for blanks, and would cut a
// name that holds one to pieces; inside quotes it does not.
bool holdsblankbytes(const char *argument) {
    if (*argument == 0 || islim(*argument) || strchr("-=+@&", *argument) != nullptr ||
        (*argument == '.' && BRAX_typeofname(argument) == BRAXNAMEOPTION))
        return false;
    bool held = false;
    for (; *argument != 0; ++argument) {
        if (*argument == '"')
            return false;
        held = held || (isblankchar(*argument) && *argument != ' ');
    }
    return held;
}

// A response file's name ends its batch when a ';' stands behind it: cuts such ends off.
bool cutbatchend(char *name) {
    bool ends = false;
    for (char *p = name + strlen(name); p > name && (isblankchar(p[-1]) || p[-1] == ';'); --p) {
        if (p[-1] == ';') {
            p[-1] = 0;
            ends = true;
        }
    }
    return ends;
}

// `argument` stands in the option text, behind whose end its file's contents go instead.
void expandresponse(TEXTEND *text, const char *argument) {
    char specification[BRAXFIELDSIZE];
    const bool quoted = *argument == '"';
    BRAX_getfield(specification, argument + (quoted ? 2 : 1), false, false);
    const size_t length = strlen(specification);
    if (quoted && length > 0)
        specification[length - 1] = 0;
    const bool ends = cutbatchend(specification);
    text->text[text->length] = 0;
    if (!BRAX_responsefile(specification, text->text))
        BRAXhelpgiven = 1;
    text->length += static_cast<int>(strlen(text->text + text->length));
    if (ends)
        BRAX_append(text, " ; ", 3, "OPTION TEXT");
}

bool namesresponse(const char *argument) {
    if (*argument == '"')
        ++argument;
    return *argument == '@' || *argument == '&';
}

void addargument(TEXTEND *text, const char *argument) {
    const int start = text->length;
    const char *quote = BRAX_nameneedsquotes(argument) || holdsblankbytes(argument) ? "\"" : "";
    if (!BRAX_append(text, quote, strlen(quote), "OPTION TEXT") ||
        !BRAX_append(text, argument, strlen(argument), "OPTION TEXT") ||
        !BRAX_append(text, quote, strlen(quote), "OPTION TEXT")) {
        text->length = start;
        text->text[start] = 0;
        return;
    }
    if (OPTlibnohardspace == 0 && OPTusehardspaces != 0) {
        for (char *p = text->text + start; *p != 0; ++p)
            *p = *p == ' ' ? BRAXHARDSPACE : *p;
    }
    if (!namesresponse(text->text + start)) {
        BRAX_append(text, " ", 1, "OPTION TEXT");
        return;
    }
    // The field reader bounds the copy: a longer argument is refused there.
    char own[BRAXFIELDSIZE + 2];
    copytext(own, text->text + start, sizeof own);
    text->length = start;
    expandresponse(text, own);
}

} // namespace

const char *BRAX_optsvariable() {
    return optsvariable;
}

bool BRAX_append(TEXTEND *end, const char *text, size_t length, const char *what) {
    if (length >= static_cast<size_t>(BRAXLISTSIZE - end->length)) {
        BRAX_refuse(what, text);
        return false;
    }
    memcpy(end->text + end->length, text, length);
    end->length += static_cast<int>(length);
    end->text[end->length] = 0;
    return true;
}

void BRAX_gather(int argc, char *argv[], const char *name) {
    const bool named = argc > 0 && argv[0] != nullptr && argv[0][0] != 0;
    nameprogram(named ? argv[0] : name);
    TEXTEND text = {optlist, 0};
    const char *defaults = getenv(optsvariable);
    if (defaults != nullptr && BRAX_append(&text, defaults, strlen(defaults), "OPTION TEXT"))
        BRAX_append(&text, " ", 1, "OPTION TEXT");
    for (int i = 1; i < argc && argv[i] != nullptr; ++i)
        addargument(&text, argv[i]);
}
