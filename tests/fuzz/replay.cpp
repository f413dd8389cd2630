// fuzz DIRECTORY: plays every file of a corpus and variants of it, the same in every run. The last
// input stays in the current directory.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

namespace {

constexpr int variants = 500; // of each file

std::mt19937 generator;

size_t upto(size_t most) {
    return generator() % (most + 1);
}

// Changes the text in one place: inserts a byte, drops some, repeats some, or changes one.
void change(std::string *text) {
    static const std::string bytes = "\n\t \"'#*?[]{}(),.;:=!+-/\\09az\x01\x7f\x80\xff";
    const size_t at = upto(text->size());
    const size_t kind = upto(3);
    if (kind == 0)
        text->insert(at, 1, bytes[upto(bytes.size() - 1)]);
    else if (kind == 1)
        text->erase(at, upto(16));
    else if (kind == 2)
        text->insert(at, text->substr(upto(text->size()), upto(16)));
    else
        text->replace(at, 1, 1, static_cast<char>(upto(255)));
}

void play(const std::string &text) {
    std::ofstream("replay.input", std::ios::binary) << text;
    LLVMFuzzerTestOneInput(reinterpret_cast<const uint8_t *>(text.data()), text.size());
}

} // namespace

int main(int argc, char *argv[]) {
    int files = 0;
    for (const auto &entry : std::filesystem::directory_iterator(argv[argc - 1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text(std::istreambuf_iterator<char>(file), {});
        generator.seed(1);
        for (int i = 0; i <= variants; ++i) {
            std::string variant = text;
            for (size_t changes = i == 0 ? 0 : 1 + upto(5); changes > 0; --changes)
                change(&variant);
            play(variant);
        }
        ++files;
    }
    fprintf(stderr, "%d files played\n", files);
    return files > 0 ? 0 : 1;
}
