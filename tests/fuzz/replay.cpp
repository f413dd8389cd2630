// Runs every file of the directories given through the fuzz target that it is linked with.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

int main(int argc, char *argv[]) {
    int files = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto &entry : std::filesystem::recursive_directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string text(std::istreambuf_iterator<char>(file), {});
            LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(text.data()), text.size());
            ++files;
        }
    }
    fprintf(stderr, "%d files replayed\n", files);
    return files > 0 ? 0 : 1;
}
