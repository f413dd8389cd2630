// What the fuzz targets share. Each target is one source that defines fuzzinput; it is linked
// with clang's fuzzer (script/fuzz) or with replay.cpp, which runs the files of a corpus.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

// Runs one input. Whatever it finds wrong ends the process.
void fuzzinput(const std::string &input);

// The input cut at the byte `separator`; at least one piece, at most `most`, the last one with
// the rest. Pieces hold no zero bytes, for they stand for command-line texts.
std::vector<std::string> fuzzpieces(const std::string &input, char separator, size_t most);

// Calls `run`; true when it came back, false when it ended the process: exit is wrapped, so
// that such inputs do not end the fuzzing.
bool fuzzsurvives(void (*run)(const void *context), const void *context);

// Ends the process with a message unless the condition holds.
void fuzzrequire(bool condition, const char *what);
