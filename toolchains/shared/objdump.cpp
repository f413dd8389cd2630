#include "objdump.h"

#include <errno.h>
#include <spawn.h>
#include <stdlib.h>
#include <string.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

enum { MAXOPTIONS = 8 };

// Runs the arguments with standard output in `out`; an errno on failure.
int start(const char **arguments, int out, pid_t *process) {
    posix_spawn_file_actions_t actions = {};
    int failure = posix_spawn_file_actions_init(&actions);
    if (failure) {
        return failure;
    }
    failure = posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
    if (!failure) {
        // The call does not change the texts; its type is older than const.
        failure = posix_spawnp(process, arguments[0], &actions, nullptr,
                               const_cast<char *const *>(arguments), environ);
    }
    posix_spawn_file_actions_destroy(&actions);
    return failure;
}

bool is_hex(const char *text, size_t length) {
    return strspn(text, "0123456789abcdef") == length;
}

// Cuts the last word off and returns it; null when there is none.
char *last_word(char *text) {
    size_t end = strlen(text);
    while (end && text[end - 1] == ' ') {
        end--;
    }
    text[end] = 0;
    while (end && text[end - 1] != ' ') {
        end--;
    }
    return text[end] ? text + end : nullptr;
}

// " [VERSION] [MARK] NAME": returns the name.
char *name_behind_marks(char *rest) {
    static const char *const marks[] = {".hidden ", ".protected ", ".internal "};
    char *name = rest + 1;
    if (*name == ' ' || *name == '(') { // a version column, which only shared libraries have
        name += strspn(name, " ");
        name += strcspn(name, " ");
        name += strspn(name, " ");
    }
    for (const char *mark : marks) {
        if (strncmp(name, mark, strlen(mark)) == 0) {
            return name + strlen(mark);
        }
    }
    // Flags of the processor's own, as "0x" and two digits.
    if (name[0] == '0' && name[1] == 'x' && strcspn(name, " ") == 4 && name[4] == ' ') {
        name += 5;
    }
    return name;
}

// NAME@VERSION and NAME@@VERSION: the name is what is asked for elsewhere.
void drop_version(char *name) {
    char *version = *name ? strchr(name + 1, '@') : nullptr;
    if (version) {
        *version = 0;
    }
}

void settle_binding(ELFSYMBOL *symbol) {
    bool undefined = strcmp(symbol->section, "*UND*") == 0;
    bool weak = symbol->flags[FLAG_WEAK] == 'w';
    symbol->missing = undefined && !weak;
    symbol->optional = undefined && weak;
    if (undefined) {
        return;
    }
    bool common = strcmp(symbol->section, "*COM*") == 0;
    if (common) { // objdump puts its size first and the alignment behind it
        char *size = symbol->address;
        symbol->address = symbol->size;
        symbol->size = size;
    }
    if (weak || common || strchr("u!", symbol->flags[FLAG_BINDING])) {
        symbol->flags[FLAG_BINDING] = 'g';
        symbol->flags[FLAG_WEAK] = ' ';
    }
    if (symbol->flags[FLAG_INDIRECT] == 'i') {
        symbol->flags[FLAG_INDIRECT] = ' ';
        symbol->flags[FLAG_KIND] = 'F';
    }
}

} // namespace

bool listing_open(LISTING *listing, const char *self, const char *const *options,
                  const char *file) {
    const char *arguments[MAXOPTIONS + 4] = {"objdump"};
    size_t count = 1;
    while (*options && count <= MAXOPTIONS) {
        arguments[count++] = *options++;
    }
    arguments[count++] = "--";
    arguments[count] = file;

    int pipes[2];
    if (pipe(pipes)) {
        fprintf(stderr, "%s: no pipe: %s\n", self, strerror(errno));
        return false;
    }
    // Its headings are translated otherwise.
    setenv("LC_ALL", "C", 1);
    // Only the child's standard output may keep the pipe open.
    *listing = {};
    listing->stream = fdopen(pipes[0], "r");
    int failure = listing->stream ? start(arguments, pipes[1], &listing->process) : errno;
    close(pipes[1]);
    if (!failure) {
        return true;
    }
    if (listing->stream) {
        fclose(listing->stream);
    } else {
        close(pipes[0]);
    }
    if (failure == ENOENT) {
        fprintf(stderr, "%s: needs objdump, which is not on the path (Debian: binutils)\n", self);
    } else {
        fprintf(stderr, "%s: cannot run objdump: %s\n", self, strerror(failure));
    }
    return false;
}

char *listing_line(LISTING *listing) {
    ssize_t length = getline(&listing->line, &listing->room, listing->stream);
    if (length < 0) {
        return nullptr;
    }
    if (length > 0 && listing->line[length - 1] == '\n') {
        listing->line[length - 1] = 0;
    }
    return listing->line;
}

int listing_close(LISTING *listing) {
    fclose(listing->stream);
    free(listing->line);
    int status = 0;
    while (waitpid(listing->process, &status, 0) < 0 && errno == EINTR) {
    }
    if (fflush(stdout) || ferror(stdout) || !WIFEXITED(status)) {
        return 1;
    }
    return WEXITSTATUS(status);
}

char *listing_object(char *line) {
    static const char mark[] = ":     file format ";
    char *end = nullptr;
    for (char *next = strstr(line, mark); next; next = strstr(next + 1, mark)) {
        end = next;
    }
    if (!end) {
        return nullptr;
    }
    *end = 0;
    return line;
}

bool section_line(char *line, SECTIONLINE *section) {
    char *text = line + strspn(line, " ");
    size_t digits = strspn(text, "0123456789");
    if (text == line || !digits || text[digits] != ' ' || !strstr(text, "  2**")) {
        return false;
    }
    // INDEX NAME SIZE VMA LMA OFFSET ALIGNMENT, and the name may hold blanks.
    char *size = nullptr;
    for (int column = 0; column < 5; column++) {
        size = last_word(text);
        if (!size || size == text) {
            return false;
        }
        size[-1] = 0;
        section->size = strtoull(size, nullptr, 16);
    }
    section->name = text + digits + 1;
    for (size_t end = strlen(section->name); end && section->name[end - 1] == ' '; end--) {
        section->name[end - 1] = 0;
    }
    join_words(section->name);
    return true;
}

void join_words(char *name) {
    for (; *name; name++) {
        if (*name == ' ') {
            *name = '_';
        }
    }
}

bool elf_symbol(char *line, ELFSYMBOL *symbol) {
    size_t digits = strcspn(line, " ");
    if ((digits != 8 && digits != 16) || !is_hex(line, digits)) {
        return false;
    }
    size_t section = digits + 1 + FLAGS + 1;
    if (strlen(line) <= section || line[section - 1] != ' ') {
        return false;
    }
    char *tab = strchr(line + section, '\t');
    if (!tab || !is_hex(tab + 1, digits) || tab[1 + digits] != ' ') {
        return false;
    }
    line[digits] = line[section - 1] = *tab = 0;
    *symbol = {};
    symbol->address = line;
    symbol->flags = line + digits + 1;
    symbol->section = line + section;
    symbol->size = tab + 1;
    symbol->name = name_behind_marks(tab + 1 + digits);
    tab[1 + digits] = 0;
    drop_version(symbol->name);
    settle_binding(symbol);
    return true;
}
