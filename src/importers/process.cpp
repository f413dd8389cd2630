#include "importers/process.h"

#include "importers/command.h"
#include "importers/tempdir.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <iterator>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT}; // SIGINT first
constexpr int errorSignals[] = {SIGPIPE, SIGXFSZ};
constexpr int terminalSignals[] = {SIGTTIN, SIGTTOU};

struct sigaction endingBefore[std::size(endingSignals)];
struct sigaction errorBefore[std::size(errorSignals)];
struct sigaction childBefore;
volatile sig_atomic_t noted = 0;   // the signal that ends the run
volatile sig_atomic_t running = 0; // process group of the program, while there is one

// The program must end too, with all that it started: a shell's own programs, a script's.
void notesignal(int signal) {
    const int before = errno;
    noted = signal;
    if (running > 0)
        kill(-running, signal);
    errno = before;
}

bool isignored(const struct sigaction &action) {
    return (action.sa_flags & SA_SIGINFO) == 0 && action.sa_handler == SIG_IGN;
}

void addsignals(sigset_t *set, const int *signals, size_t count) {
    for (size_t i = 0; i < count; ++i)
        sigaddset(set, signals[i]);
}

// What the program gets: the signal mask from before, its own way with the signals that are
// errors to us, and a process group of its own, to which notesignal passes on also what the
// terminal sends to ours. Out of the terminal's reach it may still write there, and a read
// fails; neither stops it, for nobody would let it go on.
void setattributes(posix_spawnattr_t *attributes, const sigset_t *before) {
    sigset_t defaults;
    sigset_t mask = *before;
    addsignals(&mask, terminalSignals, std::size(terminalSignals));
    sigemptyset(&defaults);
    for (size_t i = 0; i < std::size(errorSignals); ++i) {
        if (!isignored(errorBefore[i]))
            sigaddset(&defaults, errorSignals[i]);
    }
    posix_spawnattr_setsigdefault(attributes, &defaults);
    posix_spawnattr_setsigmask(attributes, &mask);
    posix_spawnattr_setpgroup(attributes, 0);
    posix_spawnattr_setflags(attributes, POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK |
                                             POSIX_SPAWN_SETPGROUP);
}

// Starts a program, whose process id is then in `running`; false when it cannot be started.
bool start(const char *program, char *const *words, const char *output) {
    posix_spawn_file_actions_t actions;
    posix_spawnattr_t attributes;
    sigset_t ending;
    sigset_t before;
    pid_t process = 0;
    if (posix_spawn_file_actions_init(&actions) != 0)
        return false;
    if (posix_spawnattr_init(&attributes) != 0) {
        posix_spawn_file_actions_destroy(&actions);
        return false;
    }
    sigemptyset(&ending);
    addsignals(&ending, endingSignals, std::size(endingSignals));
    // No signal comes between looking for one, the start and our knowing about it.
    sigprocmask(SIG_BLOCK, &ending, &before);
    setattributes(&attributes, &before);
    const bool redirected = output == nullptr || posix_spawn_file_actions_addopen(
                                                     &actions, STDOUT_FILENO, output,
                                                     O_WRONLY | O_CREAT | O_TRUNC, 0666) == 0;
    const bool started =
        noted == 0 && redirected &&
        posix_spawnp(&process, program, &actions, &attributes, words, environ) == 0;
    if (started)
        running = process;
    sigprocmask(SIG_SETMASK, &before, nullptr);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    return started;
}

// Waits for the program; false when it failed. It keeps its process id, to which a signal may
// be passed on, until it is known to have ended.
bool finish() {
    const pid_t process = running;
    siginfo_t info = {};
    int status = 0;
    while (waitid(P_PID, static_cast<id_t>(process), &info, WEXITED | WNOWAIT) != 0 &&
           errno == EINTR)
        continue;
    running = 0;
    if (waitpid(process, &status, 0) != process)
        return false;
    const bool bySignal = WIFSIGNALED(status) && WTERMSIG(status) == SIGINT;
    const bool byShell = WIFEXITED(status) && WEXITSTATUS(status) == 128 + SIGINT;
    if ((bySignal || byShell) && noted == 0 && !isignored(endingBefore[0]))
        noted = SIGINT;
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

void beginimport() {
    struct sigaction note = {};
    struct sigaction ignore = {};
    struct sigaction await = {};
    noted = 0;
    note.sa_handler = notesignal;
    ignore.sa_handler = SIG_IGN;
    await.sa_handler = SIG_DFL; // whoever ignores it never learns how a program ended
    sigaction(SIGCHLD, &await, &childBefore);
    for (size_t i = 0; i < std::size(endingSignals); ++i) {
        sigaction(endingSignals[i], nullptr, &endingBefore[i]);
        if (!isignored(endingBefore[i]))
            sigaction(endingSignals[i], &note, nullptr);
    }
    for (size_t i = 0; i < std::size(errorSignals); ++i)
        sigaction(errorSignals[i], &ignore, &errorBefore[i]);
}

void endimport() {
    if (noted != 0)
        cleanup();
    for (size_t i = 0; i < std::size(endingSignals); ++i)
        sigaction(endingSignals[i], &endingBefore[i], nullptr);
    for (size_t i = 0; i < std::size(errorSignals); ++i)
        sigaction(errorSignals[i], &errorBefore[i], nullptr);
    sigaction(SIGCHLD, &childBefore, nullptr);
    if (noted == 0)
        return;
    fflush(stdout);
    raise(noted);
}

bool interrupted() {
    return noted != 0;
}

bool runcommand(const char *command) {
    PLAINCOMMAND plain;
    fflush(stdout);
    if (interrupted())
        return false;
    bool started =
        plaincommand(&plain, command) && start(plain.words[0], plain.words, plain.output);
    if (!started) {
        char shell[] = "sh";
        char option[] = "-c";
        char *words[] = {shell, option, const_cast<char *>(command), nullptr};
        started = start("/bin/sh", words, nullptr);
    }
    return started && finish();
}
