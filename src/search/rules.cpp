#include "search/rules.h"

#include "base/growtext.h"
#include "base/options.h"
#include "base/text.h"
#include "mem/galloc.h"
#include "search/record.h"
#include "wild/wild.h"

#include <cstring>

namespace {

bool joindirectory(GROWTEXT *output, const char *directory, const char *name) {
    const size_t length = strlen(directory);
    const bool ends = length > 0 && isslash(directory[length - 1]);
    return growset(output, directory) && (ends || growappend(output, "/")) &&
           growappend(output, name);
}

bool isdrive(const char *directory) {
    const size_t length = strlen(directory);
    return length > 0 && directory[length - 1] == ':';
}

bool movetodirectory(GROWTEXT *output, const char *name, const char *directory) {
    return joindirectory(output, directory, lastcomponent(name));
}

bool movetodrive(GROWTEXT *output, const char *name, const char *directory) {
    return joindirectory(output, directory, isdrive(directory) ? name : lastcomponent(name));
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
    if (!growappend(output, ".") || !growroom(output, output->length + WILD_outputroom(old, rule)))
        return false;
    // A rule with a broken index gives what stands in front of it.
    char *end = output->text + output->length;
    stringmatchfun(end, old, "*", rule);
    output->length += static_cast<int64_t>(strlen(end));
    return true;
}

using REWRITE = bool (*)(GROWTEXT *, const char *, const char *);

// Replaces an owned text by its rewritten form; as it was when memory runs out.
bool rewritetext(char **text, REWRITE rewrite, const char *rule) {
    GROWTEXT rewritten = {};
    char *copy = rewrite(&rewritten, *text, rule) ? galloctext(rewritten.text) : nullptr;
    growfree(&rewritten);
    if (copy == nullptr)
        return false;
    gfree(*text);
    *text = copy;
    return true;
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
    if (entry->dest[0] != 0)
        return true;
    char *copy = galloctext(*OPTnamerule != 0 && skip == 0 ? OPTnamerule : entry->source);
    if (copy == nullptr)
        return false;
    gfree(entry->dest);
    entry->dest = copy;
    return true;
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
        bool complete = true;
        if (entry->nmatches < 1)
            complete = rewritetext(&entry->dest, changeextension, OPTextrule);
        for (int32_t k = 0; k < entry->nmatches; ++k)
            complete =
                rewritetext(&entry->matches[k]->dest, changeextension, OPTextrule) && complete;
        entry->incomplete = entry->incomplete || !complete;
    }
}
