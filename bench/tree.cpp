// tree DIRECTORY FILES: makes a tree of empty files, 50 in each directory, ten subdirectories in
// each directory, three levels. Their names are "odd" or "even" and a number, without an extension,
// so that tolvik names each file that it finds and imports none.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

int main(int argc, char **argv) {
    const int files = argc == 3 ? atoi(argv[2]) : 0;
    if (files < 1) {
        fprintf(stderr, "usage: tree DIRECTORY FILES\n");
        return 1;
    }
    char directory[1024] = "";
    char name[1100];
    for (int i = 0; i < files; ++i) {
        if (i % 50 == 0) {
            snprintf(directory, sizeof directory, "%s/d%d/d%d/d%d", argv[1], i / 50 % 10,
                     i / 500 % 10, i / 5000);
            std::filesystem::create_directories(directory);
        }
        snprintf(name, sizeof name, "%s/%s%d", directory, i % 2 == 0 ? "even" : "odd", i);
        if (!std::ofstream(name)) {
            fprintf(stderr, "tree: cannot make %s\n", name);
            return 1;
        }
    }
    return 0;
}
