#include "brax/help.h"

#include "base/options.h"
#include "base/runshell.h"
#include "base/shellword.h"
#include "base/text.h"

#include <cstdio>
#include <cstring>

namespace {

constexpr char helpbase[] = "https://tolvik.example/help/";

} // namespace

bool BRAX_optionhelp(char *destination, const char *text) {
    size_t length = 0;
    while (charvalue(text[length]) > 32 && text[length] != ';')
        ++length;
    destination[0] = '-';
    if (!copytext(destination + 1, text, length, BRAXFIELDSIZE - 1))
        return false;
    char *last = destination + length;
    if (*last != '?' || last[-1] == '-' || last[-1] == '/')
        return false;
    *last = 0;
    return true;
}

char *BRAX_geturl(char *destination, const char *program) {
    if (OPTurl != nullptr && OPTurl[0] != 0) {
        copytext(destination, OPTurl, BRAXFIELDSIZE);
    } else {
        char name[BRAXFIELDSIZE];
        BRAX_changeext(name, program, "=");
        copytext(destination, helpbase, BRAXFIELDSIZE);
        appendtext(destination, "util/", BRAXFIELDSIZE);
        appendtext(destination, name, BRAXFIELDSIZE);
        appendtext(destination, ".htm", BRAXFIELDSIZE);
    }
    if (OPTbookmark != nullptr)
        appendtext(destination, OPTbookmark, BRAXFIELDSIZE);
    return destination;
}

bool BRAX_webhelp(const char *program) {
    static char address[BRAXFIELDSIZE];
    return BRAX_openurl(BRAX_geturl(address, program));
}

bool BRAX_openurl(const char *address) {
    char browser[BRAXFIELDSIZE];
    char word[BRAXFIELDSIZE];
    if (!BRAX_findtool(browser, "netscape") && !BRAX_findtool(browser, "iexplore")) {
        if (OPTverbose > 3)
            BRAX_say("brax - CANT FIND BROWSER FOR OPENURL\n\n");
        return false;
    }
    char command[BRAXFIELDSIZE];
    if (!shellword(word, sizeof word, address) ||
        snprintf(command, sizeof command, "%s %s &", browser, word) >= BRAXFIELDSIZE)
        return false;
    if (OPTverbose > 4)
        BRAX_say("%s\n", command);
    // The browser runs in the background: the shell's status does not show whether it started.
    [[maybe_unused]] const int status = runshell(command);
    return true;
}

bool BRAX_findtool(char *destination, const char *tool) {
    return copytext(destination, tool, BRAXFIELDSIZE);
}
