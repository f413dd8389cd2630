// Variables: symbols in chains, chosen by a checksum of their names.
#include "expr/internal.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>

namespace {

constexpr int64_t blockBytes = 65536;
constexpr uint32_t firstChecksum = 0xFBEA;

constexpr std::array<uint16_t, 256> crctable() {
    std::array<uint16_t, 256> table{};
    for (uint32_t i = 0; i < 256; ++i) {
        uint32_t crc = i;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0xA001U : 0U);
        table[i] = static_cast<uint16_t>(crc);
    }
    return table;
}
constexpr std::array<uint16_t, 256> crcTable = crctable();

uint32_t checksum(const char *name, int64_t length) {
    uint32_t crc = firstChecksum;
    for (int64_t i = 0; i < length; ++i)
        crc = crc >> 8 ^ crcTable[(crc ^ static_cast<unsigned char>(name[i])) & 255];
    return crc;
}

uint32_t chainof(uint32_t crc) {
    return crc & (EXPRCHAINS - 1);
}

void addblock(EXPR *e, EXPRBLOCK **chain, int64_t bytes) {
    const auto head = static_cast<int64_t>(sizeof(EXPRBLOCK));
    const int64_t size = std::max(blockBytes, bytes + head);
    *chain = new (EXPR_require(e, size)) EXPRBLOCK{*chain, size - head, size};
}

// Returns bytes of the newest block, or of a new one when it is full.
char *carve(EXPR *e, EXPRBLOCK **chain, int64_t bytes) {
    if ((*chain)->left < bytes)
        addblock(e, chain, bytes);
    EXPRBLOCK *block = *chain;
    char *place = reinterpret_cast<char *>(block) + (block->size - block->left);
    block->left -= bytes;
    return place;
}

// Called for the first variable, because most evaluators have none.
void createtable(EXPR *e) {
    const size_t bytes = sizeof(EXPRSYMBOL *) * EXPRCHAINS;
    e->chains = static_cast<EXPRSYMBOL **>(EXPR_require(e, static_cast<int64_t>(bytes)));
    memset(e->chains, 0, bytes);
    addblock(e, &e->symbolBlocks, 0);
    addblock(e, &e->nameBlocks, 0);
}

} // namespace

uint32_t HashIt(const char *name, int64_t length) {
    return chainof(checksum(name, length));
}

EXPRSYMBOL *ReadSymTab(const EXPR *e, const char *name, int64_t length) {
    if (e->chains == nullptr)
        return nullptr;
    const uint32_t crc = checksum(name, length);
    EXPRSYMBOL *symbol = e->chains[chainof(crc)];
    while (symbol != nullptr && (symbol->checksum != crc || symbol->length != length ||
                                 memcmp(symbol->name, name, static_cast<size_t>(length)) != 0))
        symbol = symbol->next;
    return symbol;
}

const char *AddName(EXPR *e, const char *name, int64_t length) {
    char *copy = carve(e, &e->nameBlocks, length + 1);
    memcpy(copy, name, static_cast<size_t>(length));
    copy[length] = 0;
    return copy;
}

EXPRSYMBOL *AddSymTab(EXPR *e, const char *name, int64_t length, double value) {
    if (e->chains == nullptr)
        createtable(e);
    const uint32_t crc = checksum(name, length);
    const char *copy = AddName(e, name, length);
    EXPRSYMBOL **link = &e->chains[chainof(crc)];
    while (*link != nullptr)
        link = &(*link)->next;
    void *memory = carve(e, &e->symbolBlocks, sizeof(EXPRSYMBOL));
    *link = new (memory) EXPRSYMBOL{nullptr, copy, length, value, EXPRABSOLUTE, crc};
    return *link;
}

void ModSymTab(EXPRSYMBOL *symbol, double value) {
    symbol->value = value;
    symbol->section = EXPRABSOLUTE;
}

EXPRSYMBOL *AddRef(EXPR *e, const char *name, int64_t length) {
    EXPRSYMBOL *symbol = AddSymTab(e, name, length, 0);
    if (++e->sections == EXPRABSOLUTE)
        ++e->sections;
    symbol->section = e->sections;
    return symbol;
}
