#include "brax/builtin.h"

#include "base/fields.h"
#include "base/options.h"
#include "base/text.h"
#include "brax/help.h"
#include "brax/run.h"
#include "mem/galloc.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

const char *BRAXversiontext = "";
const char *BRAXprogram = "";

namespace {

constexpr int statusOldVersion = 101;

bool beginswith(const char *text, const char *word) {
    return strnicmp(text, word, strlen(word)) == 0;
}

bool iswordalone(const char *text, const char *word) {
    return beginswith(text, word) && !isletter(text[strlen(word)]);
}

// Whether the value at `text` is a lone "?".
bool asksforvalue(const char *text) {
    return text[0] == '?' && (text[1] == ',' || text[1] == '=' || isblankchar(text[1]));
}

const char *optbanneroff(const char *value) {
    int off = OPTbanner == 0 ? 1 : 0;
    value = BRAX_getbuiltin(&off, value, "disable logo", 1, 1);
    OPTbanner = off == 0 ? 1 : 0;
    return value;
}

const char *optsort(const char *value) {
    value = BRAX_getbuiltin(&OPTsorttype, value, "sort names", 7, 1);
    OPTsortbydirs = 1;
    if ((OPTsorttype == 4 && OPTmakesizelist == 0) || (OPTsorttype == 3 && OPTmakedatelist == 0))
        OPTsorttype = 0;
    return value;
}

// Prints the banner and the lines up to a null or empty one.
void showversion(const char *const *line) {
    if (BRAXhelpgiven != 0)
        return;
    if (BRAX_usagefunc != nullptr)
        BRAX_usagefunc(prgnamebuf, nullptr, nullptr, 0);
    for (; line != nullptr && *line != nullptr && **line != 0; ++line)
        BRAX_say("%s\n", *line);
    BRAXhelpgiven = 1;
}

// Sets the anchor of the help page, which is opened at the end of the call.
const char *optwebhelp(const char *text) {
    char anchor[BRAXFIELDSIZE];
    const char *end = BRAX_getfield(anchor, text, true, true);
    autohelp = 3;
    if (OPTbookmark == nullptr)
        return end;
    const char *mark = anchor[0] == 0 || anchor[0] == '#' ? "" : "#";
    if (strlen(mark) + strlen(anchor) >= BRAXBOOKMARKSIZE) {
        BRAX_refuse("HELP TOPIC", anchor);
        return end;
    }
    snprintf(OPTbookmark, BRAXBOOKMARKSIZE, "%s%.126s", mark, anchor);
    lowertext(OPTbookmark);
    return end;
}

const char *optverbosity(const char *value, const char *label) {
    return BRAX_getbuiltin(&OPTverbose, value, label, 6, 3);
}

const char *opthelp(const char *text) {
    if (beginswith(text, "history")) {
        showversion(OPThistory);
        return text + 7;
    }
    if (beginswith(text, "help"))
        return optwebhelp(text + 4);
    autohelp = 2;
    return optverbosity(text + 1, "help");
}

// The words that begin with a second '-'; null for others.
const char *optlong(const char *text) {
    if (beginswith(text, "help") && isblankchar(text[4])) {
        autohelp = 2;
        return optverbosity(text + 4, "help");
    }
    if (!beginswith(text, "version") || !isblankchar(text[7]))
        return nullptr;
    showversion(nullptr);
    return text + 7;
}

// The scan passes the help address built at the start of the run.
void showtopic(const char *topic, bool scanning) {
    char address[BRAXFIELDSIZE];
    BRAX_usagefunc(prgnamebuf, topic, scanning ? helpaddress : BRAX_geturl(address, prgnamebuf), 4);
    BRAXhelpgiven = 1;
}

const char *optquestion(const char *text, bool scanning) {
    char topic[BRAXFIELDSIZE];
    const char *end = BRAX_getfield(topic, text, false, false);
    if (BRAX_isnumber(topic)) {
        autohelp = 2;
        return optverbosity(text, "help");
    }
    if (BRAX_usagefunc != nullptr && BRAXhelpgiven == 0)
        showtopic(topic, scanning);
    return end;
}

const char *optrecurse(const char *text) {
    char list[BRAXFIELDSIZE];
    const char *end = BRAX_getargument(list, text, true, true);
    if (end == text) {
        OPTrecurse = 1;
        return end;
    }
    grelease(OPTenvpath);
    OPTenvpath = galloctext(list);
    if (OPTenvpath == nullptr)
        BRAXhelpgiven = 1; // out of memory: end the run
    OPTrecurse = 2;
    return end;
}

// Ends the process if the program is older than the required version.
void checkversion() {
    int major = 0;
    int minor = 0;
    int version = 0;
    if (sscanf(BRAXversiontext, "%6d.%6d", &major, &minor) == 2)
        version = major * 100 + minor;
    if (version == 0) {
        BRAX_say("brax - No version number in TextVersion string\n");
        exit(statusOldVersion);
    }
    // Versions are counted in hundredths. The bounds keep the conversion defined, also for NaN.
    const double required = static_cast<double>(OPTversion) * 100.0 + 0.5;
    if (version >= static_cast<int>(std::fmax(std::fmin(required, 1e9), -1e9)))
        return;
    if (OPTverbose != 0)
        BRAX_say("brax - The current version is %.2f; Please get the latest version of %s\n",
                 version / 100.0, BRAXprogram);
    exit(statusOldVersion);
}

const char *optversion(const char *text, bool scanning) {
    const char *end = BRAX_getfield(OPTstr, BRAX_nextfield(text), false, true);
    OPTversion = strtof(OPTstr, nullptr);
    if (scanning)
        checkversion();
    return end;
}

const char *optverbose(const char *text, bool scanning) {
    if (beginswith(text, "version"))
        return optversion(text + 7, scanning);
    if (!asksforvalue(text + 1))
        autohelp = 1;
    return optverbosity(text + 1, "verbose");
}

const char *optextension(const char *text) {
    const char *end = BRAX_getfield(OPTextrulebuf, BRAX_nextfield(text), true, true);
    OPTextrule = OPTextrulebuf;
    return end;
}

const char *optdestination(const char *text) {
    char rule[BRAXFIELDSIZE];
    const char *end = BRAX_getfield(rule, BRAX_nextfield(text), true, true);
    BRAX_setdestinationrule(rule);
    return end;
}

// Whether the word is a built-in option with a number as value.
bool isnumericoption(const char *word) {
    const char *words[] = {"b", "h", "log", "nologo", "sort", "strippaths", "time", "v", "w"};
    return std::any_of(std::begin(words), std::end(words),
                       [word](const char *known) { return stricmp(word, known) == 0; });
}

// Words that are built-in options even if the program's callback would accept them.
bool isreserved(const char *text) {
    return iswordalone(text, "sort") || iswordalone(text, "nologo");
}

// Shows help on the option word at `text` if it asks for that; returns the position after it, or
// null. A lone numeric option also shows its value and range.
const char *topichelp(const char *text, bool scanning) {
    char topic[BRAXFIELDSIZE];
    if (!BRAX_optionhelp(topic, text) || BRAX_usagefunc == nullptr || BRAXhelpgiven != 0)
        return nullptr;
    const bool numeric = isnumericoption(topic + 1);
    if (!numeric && isreserved(text))
        return nullptr;
    showtopic(topic, scanning);
    return numeric ? BRAX_builtin(text, false) : text + strlen(topic);
}

} // namespace

void BRAX_setdestinationrule(const char *text) {
    if (BRAX_ispath(text)) {
        copytext(OPTpathrulebuf, text, sizeof OPTpathrulebuf);
        OPTpathrule = OPTpathrulebuf;
    } else {
        copytext(OPTnamerulebuf, text, sizeof OPTnamerulebuf);
        OPTnamerule = OPTnamerulebuf;
    }
}

const char *BRAX_builtin(const char *text, bool scanning) {
    switch (lowerchar(*text)) {
    case 'b':
        return BRAX_getbuiltin(&OPTbanner, text + 1, "banner", 1, 1);
    case 'h':
        return opthelp(text);
    case '?':
        return optquestion(text + 1, scanning);
    case 'l':
        return beginswith(text, "log") ? BRAX_getbuiltin(&OPTlog, text + 3, "log", 2, 1) : nullptr;
    case 'n':
        return beginswith(text, "nologo") ? optbanneroff(text + 6) : nullptr;
    case 'r':
        return optrecurse(text + 1);
    case 's':
        if (beginswith(text, "sort"))
            return optsort(text + 4);
        return beginswith(text, "strippaths")
                   ? BRAX_getbuiltin(&OPTstrippaths, text + 10,
                                     "strip paths of destination filename", 1, 1)
                   : nullptr;
    case 't':
        return beginswith(text, "time")
                   ? BRAX_getbuiltin(&OPTtime, text + 4, "enable timing diagnostics", 1, 1)
                   : nullptr;
    case 'v':
        return optverbose(text, scanning);
    case 'w':
        return BRAX_getbuiltin(&OPTwrite, text + 1, "write mode", 1, 1);
    case '.':
        return optextension(text + 1);
    case '=':
        return optdestination(text + 1);
    case '-':
        return optlong(text + 1);
    default:
        return nullptr;
    }
}

const char *BRAX_programoption(const char *text, bool scanning) {
    if (const char *end = topichelp(text, scanning); end != nullptr)
        return end;
    return BRAX_optfunc != nullptr && !isreserved(text) ? BRAX_optfunc(text) : nullptr;
}

void BRAX_unknownoption(int place, const char *text) {
    char word[BRAXFIELDSIZE];
    if (OPTverbose == 0)
        return;
    BRAX_getfield(word, text, true, true);
    BRAX_say("brax - %d UNKNOWN OPTION <%s>\n", place, word);
    BRAXhelpgiven = 1;
}

const char *Zop(const char *text) {
    const char *end = BRAX_programoption(text, false);
    if (end == nullptr)
        end = BRAX_builtin(text, false);
    if (end == nullptr) {
        BRAX_unknownoption(1, text);
        opterror = -1;
        autohelp = 1;
        return nullptr;
    }
    if (static_cast<unsigned char>(*end) <= 32)
        return end;
    if (BRAXhelpgiven == 0)
        BRAX_unknownoption(2, text);
    return nullptr;
}

bool BRAX_isoption(const char *name) {
    switch (name[0]) {
    case '-':
        return Zop(name + 1) != nullptr;
    case '.':
        return name[1] != '.' && !isslash(name[1]) && Zop(name + 1) != nullptr;
    case '=':
    case '+':
        return Zop(name) != nullptr;
    default:
        return false;
    }
}

bool BRAX_nameneedsquotes(const char *text) {
    if (OPTautoquote == 0 || strchr(text, ' ') == nullptr || islim(text[0]))
        return false;
    return !BRAX_isoption(text);
}
