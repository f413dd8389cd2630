// Shared by the fuzz targets. A target is a function that runs one input and ends the process
// when it finds a fault; fuzz.cpp lists all of them. The program is linked with clang's fuzzer
// (script/fuzz) or with replay.cpp, which plays the corpora.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

void fuzzcommandline(const std::string &input);
void fuzzexpression(const std::string &input);
void fuzzlisting(const std::string &input);
void fuzzmatch(const std::string &input);
void fuzzrange(const std::string &input);
void fuzzreport(const std::string &input);
void fuzzstandin(const std::string &input);

// The input cut at the byte `separator`: at least one piece, at most `most`, the last one with
// the rest. Pieces hold no zero bytes.
std::vector<std::string> fuzzpieces(const std::string &input, char separator, size_t most);

// Calls `run`; exit returns here while it runs. Objects of `run` are then not destroyed.
void fuzzsurvives(void (*run)(const void *context), const void *context);

// Ends the process with a message unless the condition holds.
void fuzzrequire(bool condition, const char *message);
