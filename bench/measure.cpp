// measure RUNS FILE: runs the commands of the file, one a line, RUNS times. Each round has an order
// of its own, so that the load of the machine and what the system does every few seconds affect all
// of them. Prints for each, in any order, its name, its median CPU time in milliseconds and its
// median peak memory in kilobytes, and for each two of them a line "A:B RATIO": the median over the
// rounds of A's time divided by B's, which load and changes of the clock rate affect alike. A line
// of the file is the name, a blank, and the command's words. The word %F stands for all words of
// the file F. Lines with one name are one command that runs several times a round. Standard output
// goes to /dev/null.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <map>
#include <random>
#include <spawn.h>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <vector>

extern char **environ;

namespace {

struct COMMAND {
    std::string name;
    std::vector<std::string> words;
};

struct RESULT {
    std::vector<double> milliseconds;
    std::vector<double> rounds; // sum of the times in each
    int times = 0;              // runs a round
    std::vector<long> kilobytes;
};

COMMAND readcommand(const std::string &line) {
    COMMAND command;
    std::istringstream words(line);
    words >> command.name;
    for (std::string word; words >> word;) {
        if (word[0] != '%') {
            command.words.push_back(word);
            continue;
        }
        std::ifstream file(word.substr(1));
        for (std::string more; file >> more;)
            command.words.push_back(more);
    }
    return command;
}

double milliseconds(const timeval &time) {
    return static_cast<double>(time.tv_sec) * 1000 + static_cast<double>(time.tv_usec) / 1000;
}

bool run(COMMAND *command, RESULT *result) {
    std::vector<char *> arguments;
    for (std::string &word : command->words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    int status = 0;
    rusage usage = {};
    const bool started =
        posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0;
    const bool ended = started && wait4(child, &status, 0, &usage) == child && status == 0;
    posix_spawn_file_actions_destroy(&actions);
    result->milliseconds.push_back(milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime));
    result->rounds.back() += result->milliseconds.back();
    result->kilobytes.push_back(usage.ru_maxrss);
    return ended;
}

template <typename T> T median(std::vector<T> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

void print(const std::map<std::string, RESULT> &results) {
    for (const auto &[name, result] : results) {
        printf("%s %.3f %ld\n", name.c_str(), median(result.milliseconds),
               median(result.kilobytes));
        for (const auto &[other, base] : results) {
            std::vector<double> ratios = result.rounds;
            for (size_t i = 0; i < ratios.size(); ++i)
                ratios[i] *= base.times / (result.times * std::max(base.rounds[i], 0.001));
            printf("%s:%s %.4f\n", name.c_str(), other.c_str(), median(ratios));
        }
    }
}

} // namespace

int main(int argc, char **argv) {
    const int runs = argc == 3 ? atoi(argv[1]) : 0;
    std::ifstream file(argc == 3 ? argv[2] : "");
    if (!file || runs < 1) {
        fprintf(stderr, "usage: measure RUNS FILE\n");
        return 1;
    }
    std::vector<COMMAND> commands;
    for (std::string line; std::getline(file, line);)
        commands.push_back(readcommand(line));
    std::map<std::string, RESULT> results;
    for (const COMMAND &command : commands)
        ++results[command.name].times;
    std::mt19937 random; // the same orders in each measurement
    for (int i = 0; i < runs; ++i) {
        std::shuffle(commands.begin(), commands.end(), random);
        for (auto &[name, result] : results)
            result.rounds.push_back(0);
        for (COMMAND &command : commands) {
            if (!run(&command, &results[command.name])) {
                fprintf(stderr, "measure: '%s' failed\n", command.name.c_str());
                return 1;
            }
        }
    }
    print(results);
}
