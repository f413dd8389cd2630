// Expands response files with a stack of its own instead of recursion: each file that is being
// expanded is one RESPONSE record, the file that named it is the one below.
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
#include <sys/stat.h>

namespace {

// Longest name of a file, of a parameter and of a variable.
constexpr size_t longestname = 127;

// Every file that is being expanded stays in memory, and each new one is compared with all of
// them.
constexpr int deepestnesting = 4096;

struct RESPONSE {
    RESPONSE *outer;
    BRAXBUF contents; // owned
    const char *p;    // what is to be expanded next
    const char *end;
    dev_t device; // these two tell a file whatever path leads to it
    ino_t inode;
    int depth;
    bool endsBatch; // a batch separator follows the contents
    int parameterCount;
    int parameters[BRAXFIELDSIZE];     // where each begins in the specification
    char specification[BRAXFIELDSIZE]; // the name, then the parameters, each zero-terminated
};

struct EXPANSION {
    RESPONSE *top;
    const char *specification; // of the outermost file
    TEXTEND *output;
    bool stopped; // the whole expansion failed, the reason was reported
};

// What a '%' stands for.
struct PERCENT {
    enum { PLAINTEXT, PERCENTSIGN, PARAMETER, VARIABLE } kind;
    int number;         // of the parameter
    const char *text;   // the plain text, or the variable's name
    size_t length;      // of the text
    const char *behind; // what follows
};

bool islinebreak(char c) {
    return c == '\n' || c == '\r';
}

int namelength(const char *specification) {
    return static_cast<int>(strcspn(specification, "({["));
}

void put(EXPANSION *expansion, const char *text, size_t length) {
    if (!expansion->stopped)
        expansion->stopped =
            !BRAX_append(expansion->output, text, length, "OPTION TEXT", expansion->specification);
}

void put(EXPANSION *expansion, const char *text) {
    put(expansion, text, strlen(text));
}

// Cuts the parameters apart; `p` stands behind the opening bracket. False, with a message,
// when they are not closed at the end of the specification.
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
    response->parameterCount = 0;
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

// Tells files apart by device and number: false, and the whole expansion stops, when this one
// is being expanded already. Going on without it could take as long as there are paths
// through files that name each other.
bool learnidentity(EXPANSION *expansion, RESPONSE *response) {
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

// Passes over comment lines when `p` stands at the start of one.
const char *skipcomments(const RESPONSE *response, const char *p) {
    while (*p == ';' && (p == response->contents.p || islinebreak(p[-1]))) {
        while (p < response->end && !islinebreak(*p))
            ++p;
        while (islinebreak(*p))
            ++p;
    }
    return p;
}

// Reads what begins with the '%' at `p`.
PERCENT readpercent(const char *p) {
    const char *start = p++;
    if (*p == '%')
        return {PERCENT::PERCENTSIGN, 0, start, 1, p + 1};
    if (isdigitchar(*p)) {
        int number = 0;
        for (; isdigitchar(*p); ++p)
            number = number < INT_MAX / 10 ? number * 10 + (*p - '0') : INT_MAX;
        return {PERCENT::PARAMETER, number, start, 0, p};
    }
    while (isletter(*p) || isdigitchar(*p) || *p == '_')
        ++p;
    const auto length = static_cast<size_t>(p - start);
    if (*p == '%')
        return {PERCENT::VARIABLE, 0, start + 1, length - 1, p + 1};
    return {PERCENT::PLAINTEXT, 0, start, length, p};
}

// The variable's value; null when it is not set.
const char *variablevalue(const PERCENT &percent) {
    char name[longestname + 1];
    return copytext(name, percent.text, percent.length, sizeof name) ? getenv(name) : nullptr;
}

bool checkpercent(const RESPONSE *response, const PERCENT &percent) {
    if (percent.kind == PERCENT::PARAMETER && percent.number > response->parameterCount) {
        if (OPTverbose > 0)
            BRAX_say("brax - PARAMETER %%%i NOT GIVEN TO RESPONSEFILE.\n", percent.number);
        return false;
    }
    if (percent.kind != PERCENT::VARIABLE || variablevalue(percent) != nullptr)
        return true;
    char name[longestname + 1];
    if (!copytext(name, percent.text, percent.length, sizeof name)) {
        BRAX_refuse("ENVIRONMENT VARIABLE NAME", name);
        return false;
    }
    uppertext(name);
    if (OPTverbose > 0)
        BRAX_say("BRAX - ENVIRONMENT VARIABLE '%s' NOT DEFINED.\n", name);
    return false;
}

// Looks at every '%' before anything is appended.
bool checkcontents(const RESPONSE *response) {
    const char *p = response->p;
    while ((p = skipcomments(response, p)) < response->end) {
        if (*p != '%') {
            ++p;
            continue;
        }
        const PERCENT percent = readpercent(p);
        if (!checkpercent(response, percent))
            return false;
        p = percent.behind;
    }
    return true;
}

// Makes the file the next to be expanded. Its name may be a variable's instead, whose value
// is appended at once. False when neither is possible.
bool fillresponse(EXPANSION *expansion, RESPONSE *response, const char *specification) {
    if (!splitspecification(response, specification))
        return false;
    if (const char *value = getenv(response->specification); value != nullptr) {
        put(expansion, value);
        put(expansion, "\n");
        response->p = response->end = "";
        return !expansion->stopped;
    }
    if (!learnidentity(expansion, response) ||
        BRAX_loadfilev(&response->contents, response->specification, 0) == nullptr)
        return false;
    response->p = static_cast<const char *>(response->contents.p);
    response->end = response->p + response->contents.size;
    return checkcontents(response);
}

void release(RESPONSE *response) {
    BRAX_free(&response->contents);
    gfree(response);
}

void warn(const char *specification) {
    if (OPTverbose > 0)
        BRAX_say("WARNING - could not expand file <%.*s>\n", namelength(specification),
                 specification);
}

// Puts the file on the stack; false, with a warning, when it cannot be expanded.
bool begin(EXPANSION *expansion, const char *specification, bool endsBatch) {
    auto *response = static_cast<RESPONSE *>(galloc(static_cast<int>(sizeof(RESPONSE))));
    if (response != nullptr) {
        RESPONSE *outer = expansion->top;
        response->outer = outer;
        response->contents = {nullptr, 0};
        response->depth = outer != nullptr ? outer->depth + 1 : 1;
        response->endsBatch = endsBatch;
        if (fillresponse(expansion, response, specification)) {
            expansion->top = response;
            return true;
        }
        release(response);
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
    release(response);
}

// Begins the response file that the text at the '@' or '&' names.
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

void expandpercent(EXPANSION *expansion, RESPONSE *response) {
    const PERCENT percent = readpercent(response->p);
    response->p = percent.behind;
    // What was not checked, because the check took it for a comment that in truth stands
    // inside the brackets of a nested file, gives nothing.
    switch (percent.kind) {
    case PERCENT::PARAMETER:
        if (percent.number > 0 && percent.number <= response->parameterCount)
            put(expansion, response->specification + response->parameters[percent.number - 1]);
        break;
    case PERCENT::VARIABLE:
        if (const char *value = variablevalue(percent); value != nullptr)
            put(expansion, value);
        break;
    default:
        put(expansion, percent.text, percent.length);
    }
}

// Expands the next piece of the innermost file.
void step(EXPANSION *expansion) {
    RESPONSE *response = expansion->top;
    const char *p = response->p = skipcomments(response, response->p);
    if (p == response->end) {
        finish(expansion);
    } else if (*p == '%') {
        expandpercent(expansion, response);
    } else if ((*p == '@' || *p == '&') && (p == response->contents.p || isblankchar(p[-1]))) {
        expandnested(expansion, response);
    } else {
        // A zero byte would end the option text; like other control characters it separates.
        const bool blank = islinebreak(*p) || *p == '\t' || *p == 0;
        put(expansion, blank ? " " : p, 1);
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
