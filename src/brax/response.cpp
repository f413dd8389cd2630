// Expands response files without recursion: every open file is a RESPONSE record on a stack, above
// the record of the file that names it.
#include "brax/response.h"

#include "base/fields.h"
#include "base/options.h"
#include "base/text.h"
#include "brax/files.h"
#include "brax/run.h"
#include "mem/galloc.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/stat.h>

namespace {

// Longest name of a file, of a parameter and of a variable.
constexpr size_t longestname = 127;

// Every open file stays in memory, and each new one is compared with all of them.
constexpr int deepestnesting = 4096;

struct RESPONSE {
    RESPONSE *outer;
    BRAXBUF contents; // owned
    const char *p;    // position of the expansion
    const char *end;
    dev_t device;
    ino_t inode;
    int depth;
    bool endsBatch; // a batch separator follows the contents
    int parameterCount;
    int parameters[BRAXFIELDSIZE];     // offset of each in the specification
    char specification[BRAXFIELDSIZE]; // the name, then the parameters, each zero-terminated
};

struct EXPANSION {
    RESPONSE *top;
    const char *specification; // of the outermost file
    TEXTEND *output;
    bool stopped; // the whole expansion failed, which was reported
};

// The value of an item that begins with '%', or the reason why it has none.
struct PERCENT {
    enum { VALUE, NOPARAMETER, NOVARIABLE } kind;
    std::string_view text; // the value, or the name of the missing variable
    int number;            // of the missing parameter
    const char *end;
};

bool islinebreak(char c) {
    return c == '\n' || c == '\r';
}

int namelength(const char *specification) {
    return static_cast<int>(strcspn(specification, "({["));
}

void put(EXPANSION *expansion, std::string_view text) {
    if (!expansion->stopped)
        expansion->stopped =
            !BRAX_append(expansion->output, text, "OPTION TEXT", expansion->specification);
}

// Splits the parameters, which start at `p`, after the opening bracket. False, with a message, if
// they are not closed at the end of the specification.
bool splitparameters(RESPONSE *response, char *p, char opening, const char *specification) {
    const char closing = limtodelim(opening);
    int depth = 1;
    int count = 0;
    response->parameters[count++] = static_cast<int>(p - response->specification);
    for (; *p != 0; ++p) {
        depth += *p == opening ? 1 : *p == closing ? -1 : 0;
        if (depth == 0)
            break;
        if (*p == ',' && depth == 1) {
            *p = 0;
            response->parameters[count++] = static_cast<int>(p + 1 - response->specification);
        }
    }
    if (*p == 0 && count > 1) {
        BRAX_say("brax - MISSING CLOSING BRACE ON '%s'.\n", specification);
        return false;
    }
    if (*p == 0) // an opening bracket alone has no parameters
        return true;
    *p = 0;
    response->parameterCount = count;
    if (p[1] != 0 && OPTverbose > 0)
        BRAX_say("brax - INVALID NAME FORMAT '%s'.\n", specification);
    return p[1] == 0;
}

bool splitspecification(RESPONSE *response, const char *specification) {
    if (!copytext(response->specification, specification, BRAXFIELDSIZE)) {
        BRAX_refuse("RESPONSE FILE NAME", specification);
        return false;
    }
    char *p = response->specification + namelength(specification);
    if (*p != 0) {
        const char opening = *p;
        *p++ = 0;
        if (!splitparameters(response, p, opening, specification))
            return false;
    }
    if (strlen(response->specification) > longestname) {
        BRAX_refuse("RESPONSE FILE NAME", response->specification);
        return false;
    }
    for (int i = 0; i < response->parameterCount; ++i) {
        const char *parameter = response->specification + response->parameters[i];
        if (strlen(parameter) > longestname) {
            BRAX_refuse("RESPONSE FILE PARAMETER", parameter);
            return false;
        }
    }
    return true;
}

// Compares the file's device and inode with those of the open files. If it is one of them, returns
// false and stops the whole expansion: skipping the file could take time exponential in the
// number of files that name each other.
bool checknesting(EXPANSION *expansion, RESPONSE *response) {
    struct stat status = {};
    if (stat(response->specification, &status) != 0)
        return false;
    response->device = status.st_dev;
    response->inode = status.st_ino;
    const char *problem = response->depth > deepestnesting ? "IS NESTED TOO DEEPLY" : nullptr;
    for (const RESPONSE *r = response->outer; r != nullptr && problem == nullptr; r = r->outer) {
        if (r->device == response->device && r->inode == response->inode)
            problem = "NAMES ITSELF";
    }
    if (problem == nullptr)
        return true;
    if (OPTverbose > 0)
        BRAX_say("brax - RESPONSE FILE '%s' %s.\n", response->specification, problem);
    expansion->stopped = true;
    return false;
}

// Skips comment lines if `p` is at the start of one.
const char *skipcomments(const RESPONSE *response, const char *p) {
    while (*p == ';' && (p == response->contents.p || islinebreak(p[-1]))) {
        while (p < response->end && !islinebreak(*p))
            ++p;
        while (islinebreak(*p))
            ++p;
    }
    return p;
}

PERCENT readpercent(const RESPONSE *response, const char *p) {
    const char *start = p++;
    if (*p == '%')
        return {PERCENT::VALUE, "%", 0, p + 1};
    if (isdigitchar(*p)) {
        int number = 0;
        for (; isdigitchar(*p); ++p)
            number = number < INT_MAX / 10 ? number * 10 + (*p - '0') : INT_MAX;
        if (number > response->parameterCount)
            return {PERCENT::NOPARAMETER, "", number, p};
        const char *value =
            number > 0 ? response->specification + response->parameters[number - 1] : "";
        return {PERCENT::VALUE, value, number, p};
    }
    while (isletter(*p) || isdigitchar(*p) || *p == '_')
        ++p;
    const auto length = static_cast<size_t>(p - start);
    if (*p != '%')
        return {PERCENT::VALUE, {start, length}, 0, p};
    char name[longestname + 1];
    const bool fits = copytext(name, start + 1, length - 1, sizeof name);
    if (const char *value = fits ? getenv(name) : nullptr; value != nullptr)
        return {PERCENT::VALUE, value, 0, p + 1};
    return {PERCENT::NOVARIABLE, {start + 1, length - 1}, 0, p + 1};
}

void reportmissing(const PERCENT &percent) {
    char name[longestname + 1];
    if (!copytext(name, percent.text.data(), percent.text.size(), sizeof name)) {
        BRAX_refuse("ENVIRONMENT VARIABLE NAME", name);
    } else if (OPTverbose > 0 && percent.kind == PERCENT::NOPARAMETER) {
        BRAX_say("brax - PARAMETER %%%i NOT GIVEN TO RESPONSEFILE.\n", percent.number);
    } else if (OPTverbose > 0) {
        uppertext(name);
        BRAX_say("BRAX - ENVIRONMENT VARIABLE '%s' NOT DEFINED.\n", name);
    }
}

// Checks every '%' before anything is appended.
bool checkcontents(const RESPONSE *response) {
    const char *p = response->p;
    while ((p = skipcomments(response, p)) < response->end) {
        if (*p != '%') {
            ++p;
            continue;
        }
        const PERCENT percent = readpercent(response, p);
        if (percent.kind != PERCENT::VALUE) {
            reportmissing(percent);
            return false;
        }
        p = percent.end;
    }
    return true;
}

// Loads the file, or appends the value of the variable with its name. False if neither is
// possible.
bool fillresponse(EXPANSION *expansion, RESPONSE *response, const char *specification) {
    if (!splitspecification(response, specification))
        return false;
    if (const char *value = getenv(response->specification); value != nullptr) {
        put(expansion, value);
        put(expansion, "\n");
        response->p = response->end = "";
        return !expansion->stopped;
    }
    if (!checknesting(expansion, response) ||
        BRAX_loadfilev(&response->contents, response->specification, 0) == nullptr)
        return false;
    response->p = static_cast<const char *>(response->contents.p);
    response->end = response->p + response->contents.size;
    return checkcontents(response);
}

void freeresponse(RESPONSE *response) {
    BRAX_free(&response->contents);
    gfree(response);
}

void warn(const char *specification) {
    if (OPTverbose > 0)
        BRAX_say("WARNING - could not expand file <%.*s>\n", namelength(specification),
                 specification);
}

// Pushes the file on the stack; false, with a warning, if it cannot be expanded.
bool begin(EXPANSION *expansion, const char *specification, bool endsBatch) {
    auto *response = gallocarray<RESPONSE>(1);
    if (response != nullptr) {
        *response = {};
        response->outer = expansion->top;
        response->depth = expansion->top != nullptr ? expansion->top->depth + 1 : 1;
        response->endsBatch = endsBatch;
        if (fillresponse(expansion, response, specification)) {
            expansion->top = response;
            return true;
        }
        freeresponse(response);
    }
    if (!expansion->stopped)
        warn(specification);
    return false;
}

void finish(EXPANSION *expansion) {
    RESPONSE *response = expansion->top;
    expansion->top = response->outer;
    if (response->contents.p != nullptr)
        put(expansion, " ");
    if (response->endsBatch)
        put(expansion, " ; ");
    freeresponse(response);
}

// Begins the response file named after the '@' or '&'.
void expandnested(EXPANSION *expansion, RESPONSE *response) {
    char specification[BRAXFIELDSIZE];
    const char *name = response->p + 1;
    response->p = BRAX_getfield(specification, name, false, false);
    size_t length = strlen(specification);
    if (length == 0 && response->p > name) // refused: too long for a field
        return;
    const bool endsBatch = length > 0 && specification[length - 1] == ';';
    while (length > 0 && specification[length - 1] == ';')
        specification[--length] = 0;
    if (begin(expansion, specification, endsBatch))
        return;
    BRAXhelpgiven = 1;
    if (endsBatch)
        put(expansion, " ; ");
}

// Expands the next piece of the innermost file.
void step(EXPANSION *expansion) {
    RESPONSE *response = expansion->top;
    const char *p = response->p = skipcomments(response, response->p);
    if (p == response->end) {
        finish(expansion);
    } else if (*p == '%') {
        // Missing here if the check skipped it as a comment, but it is inside the brackets of a
        // nested file.
        const PERCENT percent = readpercent(response, p);
        if (percent.kind == PERCENT::VALUE)
            put(expansion, percent.text);
        response->p = percent.end;
    } else if ((*p == '@' || *p == '&') && (p == response->contents.p || isblankchar(p[-1]))) {
        expandnested(expansion, response);
    } else {
        // A zero byte would end the option text.
        const bool blank = islinebreak(*p) || *p == '\t' || *p == 0;
        put(expansion, {blank ? " " : p, 1});
        ++response->p;
    }
}

} // namespace

bool BRAX_appendresponse(const char *specification, TEXTEND *output) {
    const int length = output->length;
    EXPANSION expansion = {nullptr, specification, output, false};
    bool expanded = begin(&expansion, specification, false);
    while (expansion.top != nullptr && !expansion.stopped)
        step(&expansion);
    while (expansion.top != nullptr)
        finish(&expansion);
    if (expansion.stopped) {
        warn(specification);
        output->length = length;
        output->text[length] = 0;
        expanded = false;
    }
    return expanded;
}

bool BRAX_responsefile(const char *specification, char *output) {
    TEXTEND end = {output, static_cast<int>(strlen(output))};
    return BRAX_appendresponse(specification, &end);
}
