// Builds the option text of a run: the default options, then every argument, with response files
// expanded.
#include "base/fields.h"
#include "base/text.h"
#include "brax/builtin.h"
#include "brax/help.h"
#include "brax/run.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

void setprogramname(const char *path) {
    char last[BRAXFIELDSIZE];
    BRAX_changeext(prgnamebuf, BRAX_getname(last, path), "=");
    lowertext(prgnamebuf);
    snprintf(optsvariable, sizeof optsvariable, "%.2000s_OPTS", prgnamebuf);
    uppertext(optsvariable);
}

// Whether the text contains bytes above 127, which are blanks to the scan.
bool hashighbytes(const char *text, size_t length) {
    while (length > 0 && charvalue(text[length - 1]) >= 0)
        --length;
    return length > 0;
}

// Length up to a tab or another control character, which ends a name.
size_t lengthtocontrol(const char *text) {
    size_t i = 0;
    while (!isblankchar(text[i]) || text[i] == ' ' || charvalue(text[i]) < 0)
        ++i;
    return i;
}

// Length of a name: up to a control character or an '=' that pairs it with a destination.
size_t lengthofname(const char *text) {
    const size_t end = lengthtocontrol(text);
    for (size_t i = 0; i < end; ++i) {
        if (text[i] == '=' && text[i + 1] == '=')
            ++i;
        else if (text[i] == '=' && (i == 0 || (text[i - 1] != '+' && text[i - 1] != '-')))
            return i;
    }
    return end;
}

// Length of the prefix to copy unquoted: the mark of a rule, an option, or all of an enclosed
// argument.
size_t lengthofmark(const char *argument) {
    if (argument[0] == '-' && (argument[1] == '=' || argument[1] == '.'))
        return 2;
    if (islim(argument[0]) || strchr(argument, '"') != nullptr)
        return strlen(argument);
    if (argument[0] == '-' || argument[0] == '+' ||
        (argument[0] == '.' && BRAX_typeofname(argument) == BRAXNAMEOPTION))
        return lengthtocontrol(argument);
    return argument[0] == '=' ? 1 : 0;
}

bool append(TEXTEND *text, std::string_view part) {
    return BRAX_append(text, part, "OPTION TEXT", part.data());
}

// Appends the argument, with quotes around each name that holds bytes above 127.
bool appendnames(TEXTEND *text, const char *argument) {
    size_t length = lengthofmark(argument);
    bool fits = append(text, {argument, length});
    for (argument += length; fits && *argument != 0; argument += length) {
        length = lengthofname(argument);
        size_t quoted = length;
        while (quoted > 0 && argument[quoted - 1] == ';')
            --quoted;
        const char *quote = argument[0] != '-' && hashighbytes(argument, quoted) ? "\"" : "";
        length += argument[length] != 0 ? 1 : 0;
        fits = append(text, quote) && append(text, {argument, quoted}) && append(text, quote) &&
               append(text, {argument + quoted, length - quoted});
    }
    return fits;
}

// Replaces the argument at `start` of the option text by the contents of the response file that it
// names.
void expandresponse(TEXTEND *text, int start) {
    char specification[BRAXFIELDSIZE];
    const bool quoted = text->text[start] == '"';
    const char *name = text->text + start + (quoted ? 2 : 1);
    const char *end = BRAX_getargument(specification, name, false, false);
    const size_t length = strlen(specification);
    const bool refused = length == 0 && end > name;
    if (quoted && length > 0)
        specification[length - 1] = 0;
    const bool ends = BRAX_cutbatchend(specification, strlen(specification), 0);
    text->length = start;
    text->text[start] = 0;
    if (refused || !BRAX_appendresponse(specification, text))
        BRAXhelpgiven = 1;
    if (ends)
        append(text, " ; ");
}

bool namesresponse(const char *argument) {
    if (*argument == '"')
        ++argument;
    return *argument == '@' || *argument == '&';
}

void addargument(TEXTEND *text, const char *argument) {
    const int start = text->length;
    const bool fits = BRAX_nameneedsquotes(argument)
                          ? append(text, "\"") && append(text, argument) && append(text, "\"")
                      : namesresponse(argument) ? append(text, argument)
                                                : appendnames(text, argument);
    if (!fits) {
        text->length = start;
        text->text[start] = 0;
        return;
    }
    if (OPTlibnohardspace == 0 && OPTusehardspaces != 0) {
        for (char *p = text->text + start; *p != 0; ++p)
            *p = *p == ' ' ? BRAXHARDSPACE : *p;
    }
    if (namesresponse(text->text + start))
        expandresponse(text, start);
    else
        append(text, " ");
}

} // namespace

bool BRAX_append(TEXTEND *end, std::string_view text, const char *what, const char *input) {
    if (text.size() >= static_cast<size_t>(BRAXLISTSIZE - end->length)) {
        BRAX_refuse(what, input);
        return false;
    }
    memcpy(end->text + end->length, text.data(), text.size());
    end->length += static_cast<int>(text.size());
    end->text[end->length] = 0;
    return true;
}

bool BRAX_cutbatchend(char *text, size_t length, char replacement) {
    bool ends = false;
    for (char *p = text + length; p > text && (isblankchar(p[-1]) || p[-1] == ';'); --p) {
        if (p[-1] == ';') {
            p[-1] = replacement;
            ends = true;
        }
    }
    return ends;
}

void BRAX_gather(int argc, char *argv[], const char *name) {
    const bool named = argc > 0 && argv[0] != nullptr && argv[0][0] != 0;
    setprogramname(named ? argv[0] : name);
    TEXTEND text = {optlist, 0};
    const char *defaults = getenv(optsvariable);
    if (defaults != nullptr && append(&text, defaults))
        append(&text, " ");
    BRAX_geturl(helpaddress, prgnamebuf);
    for (int i = 1; i < argc && argv[i] != nullptr; ++i)
        addargument(&text, argv[i]);
}
