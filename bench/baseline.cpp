// baseline SYMBOLFILE NAME: the straightforward program: one hash map, strings and vectors,
// std::getline, a breadth-first walk. Prints the line that `tolvik -v1 -sNAME` prints. script/bench
// compares tolvik with it.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <queue>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

struct OBJECT;

struct SYMBOL {
    std::string name;
    std::string type, scope;
    int size = 0;
    OBJECT *file = nullptr;
};

struct OBJECT {
    std::string name, library, source;
    int size = 0;
    std::vector<SYMBOL *> defines, refers;
};

struct PRODUCT {
    std::unordered_map<std::string, SYMBOL *> symbols;
    std::vector<OBJECT *> objects;
};

std::string stripped(std::string name) {
    while (!name.empty() && name.front() == '_')
        name.erase(0, 1);
    while (!name.empty() && name.back() == '_')
        name.pop_back();
    return name;
}

SYMBOL *enter(PRODUCT &product, const std::string &name) {
    SYMBOL *&symbol = product.symbols[stripped(name)];
    if (symbol == nullptr) {
        symbol = new SYMBOL;
        symbol->name = stripped(name);
    }
    return symbol;
}

std::vector<std::string> split(const std::string &text) {
    std::vector<std::string> fields;
    size_t from = 0;
    for (size_t comma = text.find(','); comma != std::string::npos; comma = text.find(',', from)) {
        fields.push_back(text.substr(from, comma - from));
        from = comma + 1;
    }
    fields.push_back(text.substr(from));
    return fields;
}

void readline(PRODUCT &product, const std::string &line) {
    if (line.rfind('[', 0) == 0) {
        auto *object = new OBJECT;
        object->name = line.substr(1, line.find(']') - 1);
        const size_t library = line.find("][");
        if (library != std::string::npos)
            object->library = line.substr(library + 2, line.size() - library - 3);
        product.objects.push_back(object);
    } else if (product.objects.empty()) {
        return;
    } else if (line.rfind("define=", 0) == 0) {
        const std::vector<std::string> fields = split(line.substr(7));
        SYMBOL *symbol = enter(product, fields[0]);
        symbol->type = fields.size() > 1 ? fields[1] : "";
        symbol->scope = fields.size() > 2 ? fields[2] : "";
        symbol->size = fields.size() > 3 ? atoi(fields[3].c_str()) : 0;
        symbol->file = product.objects.back();
        product.objects.back()->defines.push_back(symbol);
    } else if (line.rfind("refer=", 0) == 0) {
        product.objects.back()->refers.push_back(enter(product, line.substr(6)));
    } else if (line.rfind("source=", 0) == 0) {
        product.objects.back()->source = split(line.substr(7))[0];
    } else if (line.rfind("size=", 0) == 0) {
        product.objects.back()->size = atoi(line.c_str() + 5);
    }
}

long linked(const SYMBOL *symbol) {
    std::unordered_set<const OBJECT *> seen = {symbol->file};
    std::queue<const OBJECT *> waiting({symbol->file});
    long total = 0;
    for (; !waiting.empty(); waiting.pop()) {
        total += waiting.front()->size;
        for (const SYMBOL *refer : waiting.front()->refers) {
            if (refer->file != nullptr && seen.insert(refer->file).second)
                waiting.push(refer->file);
        }
    }
    return total;
}

} // namespace

int main(int argc, char **argv) {
    std::ios::sync_with_stdio(false);
    std::ifstream file(argc > 2 ? argv[1] : "");
    if (!file) {
        fprintf(stderr, "usage: baseline SYMBOLFILE NAME\n");
        return 1;
    }
    PRODUCT product;
    for (std::string line; std::getline(file, line);)
        readline(product, line);
    const auto found = product.symbols.find(argv[2]);
    if (found == product.symbols.end() || found->second->file == nullptr)
        return 1;
    const SYMBOL *symbol = found->second;
    int refs = 0;
    for (const OBJECT *object : product.objects) {
        for (const SYMBOL *refer : object->refers)
            refs += refer == symbol ? 1 : 0;
    }
    printf("%-32s %16s %8d refs %8d %8ld \n", symbol->name.c_str(), symbol->file->name.c_str(),
           refs, symbol->file->size, linked(symbol));
    fflush(stdout);
    _Exit(0); // freeing millions of blocks is not measured
}
