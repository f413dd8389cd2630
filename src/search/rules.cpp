#include "search/rules.h"

#include "base/growtext.h"
#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/record.h"
#include "search/relative.h"
#include "wild/wild.h"

#include <cstring>

namespace {

bool movetodirectory(GROWTEXT *output, const char *name, const char *directory) {
    return setjoined(output, directory, lastcomponent(name));
}

bool movetodrive(GROWTEXT *output, const char *name, const char *directory) {
    const size_t length = strlen(directory);
    const bool drive = length > 0 && directory[length - 1] == ':';
    return setjoined(output, directory, drive ? name : lastcomponent(name));
}

bool changeextension(GROWTEXT *output, const char *name, const char *rule) {
    rule += *rule == '.' ? 1 : 0;
    const char *dot = strrchr(lastcomponent(name), '.');
    const char *base = dot == nullptr ? name + strlen(name) : dot;
    const char *old = dot == nullptr ? base : dot + 1;
    if (!growset(output, name))
        return false;
    growcut(output, base - name);
    if (*rule == 0)
        return true;
    if (!growappend(output, ".") ||
        !growreserve(output, output->length + WILD_outputsize(old, rule)))
        return false;
    // A rule with an invalid index gives the text before it.
    char *end = output->text + output->length;
    stringmatchfun(end, old, "*", rule);
    output->length += static_cast<int64_t>(strlen(end));
    return true;
}

using REWRITE = bool (*)(GROWTEXT *, const char *, const char *);

// Replaces an owned text by a copy of another; false, with nothing changed, when memory runs out.
bool replacetext(char **text, const char *replacement) {
    char *copy = galloctext(replacement);
    if (copy == nullptr)
        return false;
    gfree(*text);
    *text = copy;
    return true;
}

// Replaces an owned text by its rewritten form, in the same way.
bool rewritetext(char **text, REWRITE rewrite, const char *rule) {
    GROWTEXT rewritten = {};
    const bool replaced = rewrite(&rewritten, *text, rule) && replacetext(text, rewritten.text);
    growfree(&rewritten);
    return replaced;
}

bool rewriteinto(char *output, REWRITE rewrite, const char *name, const char *rule) {
    GROWTEXT rewritten = {};
    const bool made = rewrite(&rewritten, name, rule);
    const bool fits = made && rewritten.length < BRAXFIELDSIZE;
    if (made && !fits)
        BRAX_refuse("NAME", rewritten.text);
    copytext(output, fits ? rewritten.text : name, BRAXFIELDSIZE);
    growfree(&rewritten);
    return fits;
}

bool filldestination(FileInfo *entry, int skip) {
    const char *dest = *OPTnamerule != 0 && skip == 0 ? OPTnamerule : entry->source;
    return entry->dest[0] != 0 || replacetext(&entry->dest, dest);
}

bool applypathrule(FileInfo *entry) {
    const bool keepsDirectory = entry->type == BRAXNAMERELATIVE && !BRAX_haswild(entry->dest);
    return rewritetext(&entry->dest, keepsDirectory ? movetodrive : movetodirectory, OPTpathrule);
}

} // namespace

bool replacePath(char *output, const char *name, const char *directory) {
    return rewriteinto(output, movetodirectory, name, directory);
}

bool replacePathAbs(char *output, const char *name, const char *directory) {
    return rewriteinto(output, movetodrive, name, directory);
}

bool replaceExt(char *output, const char *name, const char *rule) {
    return rewriteinto(output, changeextension, name, rule);
}

void ApplyNameRules(SearchList *list) {
    if (list == nullptr)
        return;
    int skip = OPTskiprules;
    for (int32_t i = 0; i < list->count; ++i) {
        FileInfo *entry = list->files[i];
        bool complete = filldestination(entry, skip);
        if (*OPTpathrule != 0 && skip == 0)
            complete = complete && applypathrule(entry);
        else if (skip != 0 && entry->source[0] != '-' && entry->source[0] != '+')
            --skip;
        entry->incomplete = entry->incomplete || !complete;
    }
}

void ApplyExtRule(SearchList *list) {
    if (list == nullptr || *OPTextrule == 0)
        return;
    for (int32_t i = 0; i < list->count; ++i) {
        FileInfo *entry = list->files[i];
        bool complete =
            entry->nmatches > 0 || rewritetext(&entry->dest, changeextension, OPTextrule);
        for (int32_t k = 0; complete && k < entry->nmatches; ++k)
            complete = rewritetext(&entry->matches[k]->dest, changeextension, OPTextrule);
        entry->incomplete = entry->incomplete || !complete;
    }
}
