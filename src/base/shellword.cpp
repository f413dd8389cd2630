#include "base/shellword.h"

#include "base/text.h"

#include <cstring>

bool isshellsafe(char c) {
    return isdigitchar(c) || isletter(c) || (c != 0 && strchr("_./+,:=@%~-", c) != nullptr);
}

bool shellword(char *destination, size_t size, const char *text) {
    size_t length = 0;
    for (; *text != 0; ++text) {
        if (size < 4 || length > size - 4) {
            destination[0] = 0;
            return false;
        }
        if (*text == '\n') {
            memcpy(destination + length, "'\n'", 3);
            length += 3;
            continue;
        }
        if (!isshellsafe(*text))
            destination[length++] = '\\';
        destination[length++] = *text;
    }
    destination[length] = 0;
    return true;
}
