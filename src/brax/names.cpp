#include "brax/names.h"

#include "base/fields.h"
#include "base/options.h"
#include "base/text.h"
#include "brax/builtin.h"

#include <cstring>

const char *BRAX_nextnames(const char *position, char *source, char *destination) {
    source[0] = 0;
    destination[0] = 0;
    if (*position == 0)
        return nullptr;
    const char *name = position;
    const char *next = nullptr;
    if (name[0] == '=') {
        Zop(name);
        if (BRAX_isnextfieldpath(name))
            ++name;
        next = BRAX_getfield(source, name, true, true);
    } else {
        next = BRAX_getfield(source, name, true, false);
    }
    next = BRAX_nextfield(next);
    if (*next == '=' && position[0] != '-' && !BRAX_isnextfieldpath(next)) {
        Zop(next);
        next = BRAX_getfield(destination, BRAX_nextfield(next + 1), true, false);
        return BRAX_nextfield(next);
    }
    return BRAX_nextfield(BRAX_getfield(source, name, true, true));
}

bool BRAX_isnextfieldpath(const char *position) {
    char field[BRAXFIELDSIZE];
    BRAX_getfield(field, position, true, false);
    return BRAX_ispath(field[0] == '=' ? field + 1 : field);
}

int Unclump(char *text) {
    char *cut = text[0] != 0 ? strchr(text + 1, '=') : nullptr;
    if (cut == nullptr)
        return 0;
    const auto length = static_cast<int>(strlen(cut));
    *cut = 0;
    return length + 1;
}
