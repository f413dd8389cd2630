// Appends records to a symbol file. Every line stays within the 255 characters that the
// loader takes as one line, line feed included, and no name can end its line early.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

// Names are cut to this length wherever they are written, so that a definition and its
// references still meet: the longest define line is
// "define=" name ",FUNCTION,GLOBAL,-2147483648\n".
constexpr size_t NAMELIMIT = 255 - 36;

// A symbol file open for appending. It is written whole records at a time.
struct RECORDS {
    const char *path; // for messages
    int descriptor;
    bool failed;   // something could not be written; nothing more is
    int64_t whole; // the file's length up to its last whole record; -1 when it cannot be cut
    int64_t total; // size of the current object so far
    size_t used;
    char buffer[65536];
};

// Opens, or makes, the symbol file `path`, a text that outlives the RECORDS. A file whose
// last line is not ended gets a line feed first. False when it cannot be opened.
bool openrecords(RECORDS *records, const char *path);

// Starts a record: "[name]" or, when OPTlibrary is not empty, "[name][library]". A ']' in a
// name becomes a ')', a line feed a blank.
void recordobject(RECORDS *records, std::string_view name);

// The same with a line feed behind the name, still inside the brackets.
void recordbrokenobject(RECORDS *records, std::string_view name);

// The lines of a record. Commas in symbol names become semicolons, because a define line's
// name ends at the first one.
void recordsource(RECORDS *records, std::string_view path);
void recordsource(RECORDS *records, std::string_view path, int32_t date);
void recorddefine(RECORDS *records, std::string_view name, std::string_view type,
                  std::string_view scope, int32_t size);
void recordrefer(RECORDS *records, std::string_view name);

// Adds to the current object's size, which stays within 32 bits.
void addsize(RECORDS *records, int32_t size);

// Ends a record with its size line and an empty line, and writes it.
void recordsize(RECORDS *records);

// Closes the file. A record without an end is written as it stands, or taken back when
// `wholeonly` is set or something could not be written, which is told on standard error. False
// in the last case.
bool closerecords(RECORDS *records, bool wholeonly);
