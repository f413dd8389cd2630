// Writes the lines of a symbol file, each at most SYMBOLLINE characters, line feed included. A name
// that does not fit is cut to its limit in symbols/store.h.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

// Opens the symbol file for appending; null when that fails.
FILE *openrecords(const char *path);

// Closes the file. Returns 1; when a write failed, prints a message with `path` and returns 0.
int closerecords(FILE *records, const char *path);

// Starts a record: "[name]", or "[name][library]" when OPTlibrary is not empty.
void recordobject(FILE *records, std::string_view name);

// Write the lines of a record. `date` is null for a source without a date.
void recordsource(FILE *records, std::string_view path, const int32_t *date);
void recorddefine(FILE *records, std::string_view name, std::string_view type,
                  std::string_view scope, int32_t size);
void recordrefer(FILE *records, std::string_view name);

// Ends a record with its size, saturated at 32 bits, and an empty line.
void recordsize(FILE *records, int64_t size);
