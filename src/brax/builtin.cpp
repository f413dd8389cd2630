#include "brax/builtin.h"

#include "base/fields.h"
#include "base/options.h"
#include "base/text.h"
#include "brax/help.h"
#include "brax/run.h"
#include "mem/galloc.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

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

// The value field at `text` is a lone "?".
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

// Prints the banner and the lines, which an empty text or null ends.
void showversion(const char *const *line) {
    if (BRAXhelpgiven != 0)
        return;
    if (BRAX_usagefunc != nullptr)
        BRAX_usagefunc(prgnamebuf, nullptr, nullptr, 0);
    for (; line != nullptr && *line != nullptr && **line != 0; ++line)
        BRAX_say("%s\n", *line);
    BRAXhelpgiven = 1;
}

// The anchor of the help page, and the page itself at the end of the call.
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

// The words that start with a second '-'; null for any other.
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

// The scan hands out the address kept since the start of the run.
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
        BRAXhelpgiven = 1; // nothing would be found, for want of memory alone
    OPTrecurse = 2;
    return end;
}

// Ends the process when the program is older than the version asked for.
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
    // Cut to an integer, as versions are counted in hundredths; the bounds only keep the
    // conversion defined.
    double required = static_cast<double>(OPTversion) * 100.0 + 0.5;
    required = required < 1e9 ? required : 1e9;
    required = required > -1e9 ? required : -1e9;
    if (version >= static_cast<int>(required))
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

// The built-in options whose value is a number, for help on a lone one.
bool isnumericoption(const char *word) {
    const char *words[] = {"b", "h", "log", "nologo", "sort", "strippaths", "time", "v", "w"};
    for (const char *known : words) {
        if (stricmp(word, known) == 0)
            return true;
    }
    return false;
}

void unknownoption(int place, const char *text) {
    char word[BRAXFIELDSIZE];
    BRAX_getfield(word, text, true, true);
    BRAX_say("brax - %d UNKNOWN OPTION <%s>\n", place, word);
    BRAXhelpgiven = 1;
}

// One option word, with its effect; null when it is unknown.
const char *recognise(const char *text) {
    if (const char *end = BRAX_topichelp(text, false); end != nullptr)
        return end;
    if (!BRAX_isreserved(text) && BRAX_optfunc != nullptr) {
        if (const char *end = BRAX_optfunc(text); end != nullptr)
            return end;
    }
    return BRAX_builtin(text, false);
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

bool BRAX_isreserved(const char *text) {
    return iswordalone(text, "sort") || iswordalone(text, "nologo");
}

const char *BRAX_topichelp(const char *text, bool scanning) {
    char topic[BRAXFIELDSIZE];
    if (!BRAX_optionhelp(topic, text) || BRAX_usagefunc == nullptr || BRAXhelpgiven != 0)
        return nullptr;
    const bool numeric = isnumericoption(topic + 1);
    if (!numeric && BRAX_isreserved(text))
        return nullptr;
    showtopic(topic, scanning);
    return numeric ? BRAX_builtin(text, false) : text + strlen(topic);
}

const char *Zop(const char *text) {
    const char *end = recognise(text);
    if (end == nullptr) {
        if (OPTverbose != 0)
            unknownoption(1, text);
        opterror = -1;
        autohelp = 1;
        return nullptr;
    }
    if (static_cast<unsigned char>(*end) <= 32)
        return end;
    if (OPTverbose != 0 && BRAXhelpgiven == 0)
        unknownoption(2, text);
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
