#include "importers/command.h"

#include "brax/shellword.h"
#include "brax/text.h"

#include <cstring>

namespace {

// Whether the name would be read as something else at the beginning of a word.
bool needsfolder(const char *name, const char *after) {
    if (*name == '-' || *name == '@' || *name == '~')
        return true;
    return *after == '>' && name[strspn(name, "0123456789")] == 0; // "2>file" names a descriptor
}

} // namespace

bool makecommand(char *command, const char *before, const char *name, const char *after) {
    size_t length = strlen(before);
    copytext(command, before, COMMANDSIZE);
    if (length > 0 && before[length - 1] == '\\') {
        if (*name == '\n') // which a backslash would make the shell drop
            --length;
        else
            command[length++] = *name++;
    } else if (needsfolder(name, after)) {
        command[length++] = '.';
        command[length++] = '/';
    }
    const size_t room = COMMANDSIZE - length - strlen(after);
    if (!shellword(command + length, room, name))
        return false;
    return appendtext(command, after, COMMANDSIZE);
}

namespace {

// Copies one word, without its quoting, to *end, which moves behind the copy. Returns the
// position behind the word, null when something in it is for the shell alone.
const char *copyword(char **end, const char *text) {
    for (; *text != 0 && *text != ' ' && *text != '>'; ++text) {
        if (*text == '\'') {
            const char *close = strchr(text + 1, '\'');
            if (close == nullptr)
                return nullptr;
            while (++text < close)
                *(*end)++ = *text;
            continue;
        }
        if (*text == '\\' && text[1] != 0)
            ++text;
        else if (!isshellsafe(*text))
            return nullptr;
        *(*end)++ = *text;
    }
    *(*end)++ = 0;
    return text;
}

} // namespace

bool plaincommand(PLAINCOMMAND *plain, const char *command) {
    char *end = plain->text;
    int count = 0;
    plain->output = nullptr;
    while (*command != 0) {
        if (*command == ' ') {
            ++command;
            continue;
        }
        const bool output = *command == '>';
        command += output ? 1 + strspn(command + 1, " ") : 0;
        char *word = end;
        if ((output && plain->output != nullptr) || count == PLAINWORDS)
            return false;
        command = copyword(&end, command);
        if (command == nullptr || *word == 0)
            return false;
        if (output)
            plain->output = word;
        else
            plain->words[count++] = word;
    }
    plain->words[count] = nullptr;
    return count > 0;
}
