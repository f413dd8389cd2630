#include "brax/files.h"

#include "base/text.h"
#include "mem/gstream.h"

#include <cstdio>
#include <utility>

namespace {

// Reads a file of `length` bytes into a new block; null on failure.
void *readwhole(BRAXBUF *buffer, GSTREAM file, int64_t length) {
    if (length <= 0 || length >= INT32_MAX ||
        BRAX_alloc(buffer, static_cast<int32_t>(length) + 1) == nullptr)
        return nullptr;
    buffer->size = static_cast<int32_t>(length);
    auto *text = static_cast<char *>(buffer->p);
    text[length] = 0;
    int64_t done = 0;
    int64_t count = 0;
    while (done < length && (count = gread(file, text + done, length - done)) > 0)
        done += count;
    if (done < length)
        BRAX_free(buffer);
    return buffer->p;
}

} // namespace

void *BRAX_loadfilev(BRAXBUF *buffer, const char *fileName, int verbose) {
    char progress[BRAXFIELDSIZE];
    *buffer = {nullptr, 0};
    BRAX_say("%s", BRAX_loadstr(progress, fileName, verbose));
    const GSTREAM file = gopen(fileName);
    if (file != 0) {
        readwhole(buffer, file, glen(file));
        gclose(file);
    }
    if (buffer->p == nullptr && verbose != 0)
        BRAX_say("BRAX_loadfilev - COULD NOT READ FILE '%s'\n", fileName);
    return buffer->p;
}

void *BRAX_loadfile(BRAXBUF *buffer, const char *fileName) {
    return BRAX_loadfilev(buffer, fileName, OPTverbose);
}

bool BRAX_savefile(BRAXBUF *buffer, const char *fileName) {
    char progress[BRAXFIELDSIZE];
    if (OPTwrite == 0)
        return true;
    BRAX_say("%s", BRAX_savestr(progress, fileName, OPTverbose));
    const GSTREAM file = gwopen(fileName);
    bool saved =
        file != 0 && buffer->size >= 0 && gwrite(file, buffer->p, buffer->size) == buffer->size;
    // Some file systems report a full disk only here.
    saved = gclose(file) && saved;
    if (!saved && OPTverbose != 0)
        BRAX_say("BRAX_savefile - COULD NOT WRITE FILE '%s'\n", fileName);
    return saved;
}

char *BRAX_loadstr(char *destination, const char *fileName, int verbose) {
    const char *name = verbose <= 0 ? "" : verbose <= 2 ? filepart(fileName) : fileName;
    const char *after = verbose <= 0 ? "" : verbose == 1 ? " " : ": Reading, ";
    snprintf(destination, BRAXFIELDSIZE, "%s%s", name, after);
    return destination;
}

char *BRAX_savestr(char *destination, const char *fileName, int verbose) {
    const char *name = verbose == 3 ? filepart(fileName) : fileName;
    if (verbose <= 2)
        copytext(destination, verbose == 2 ? "Writing, " : "", BRAXFIELDSIZE);
    else
        snprintf(destination, BRAXFIELDSIZE, "Writing as %s, ", name);
    return destination;
}

char *BRAX_percentstr(char *destination, int32_t before, int32_t after) {
    const char *sign = before < after ? "-" : "";
    if (before < after)
        std::swap(before, after);
    const double percent =
        before == 0 || after == 0 ? 100.0 : 100.0 - static_cast<double>(after) * 100.0 / before;
    snprintf(destination, BRAXPERCENTSIZE, "%s%.1f%%", sign, percent);
    return destination;
}
