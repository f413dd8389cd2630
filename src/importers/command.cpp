#include "importers/command.h"

#include "base/runshell.h"
#include "base/shellword.h"
#include "base/text.h"

#include <csignal>
#include <cstring>
#include <sys/wait.h>

namespace {

int died = 0; // SIGINT or SIGQUIT that ended a command

// Whether a program or the shell would misread the name at the start of a word. `after` is the
// command's text after the name.
bool needsprefix(const char *name, const char *after) {
    if (*name == '-' || *name == '@' || *name == '~')
        return true;
    return *after == '>' && name[strspn(name, "0123456789")] == 0; // "2>file" names a descriptor
}

} // namespace

bool makecommand(char *command, const char *before, const char *name, const char *after) {
    size_t length = strlen(before);
    copytext(command, before, COMMANDSIZE);
    if (length > 0 && before[length - 1] == '\\') {
        if (*name == '\n') // the shell drops a line feed after a backslash
            --length;
        else
            command[length++] = *name++;
    } else if (needsprefix(name, after)) {
        command[length++] = '.';
        command[length++] = '/';
    }
    const size_t space = COMMANDSIZE - length - strlen(after);
    if (!shellword(command + length, space, name))
        return false;
    return appendtext(command, after, COMMANDSIZE);
}

bool runcommand(const char *command) {
    const int status = runshell(command);
    if (WIFSIGNALED(status) && (WTERMSIG(status) == SIGINT || WTERMSIG(status) == SIGQUIT))
        died = WTERMSIG(status);
    return status == 0;
}

int importsignal() {
    return died;
}
