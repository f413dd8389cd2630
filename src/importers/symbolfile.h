// Writes the lines of a symbol file. Each is at most 255 characters, line feed included, as the
// loader reads them. A name that does not fit is cut to the fixed length of its kind (store.h).
#pragma once

#include <cstdint>
#include <cstdio>
#include <string_view>

// Opens the symbol file for appending; null when that fails.
FILE *openrecords(const char *path);

// Closes the file. Returns 1, or 0 after a message that names `path` when a write failed.
int closerecords(FILE *records, const char *path);

// Starts a record: "[name]", or "[name][library]" when OPTlibrary is not empty.
void recordobject(FILE *records, std::string_view name);

// The lines of a record. A source without a date has a null `date`.
void recordsource(FILE *records, std::string_view path, const int32_t *date);
void recorddefine(FILE *records, std::string_view name, std::string_view type,
                  std::string_view scope, int32_t size);
void recordrefer(FILE *records, std::string_view name);

// Ends a record with its size, which saturates at 32 bits, and an empty line.
void recordsize(FILE *records, int64_t size);
