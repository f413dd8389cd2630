#include "importers/symbolfile.h"

#include "tool/options.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr size_t LINELENGTH = 255;              // line feed included
constexpr size_t WORDLIMIT = 31;                // of a type or scope word
constexpr size_t HEADERLENGTH = 250;            // of name and library: less "[][]\n"
constexpr size_t SOURCELIMIT = LINELENGTH - 20; // less "source=,-2147483648\n"

// Puts the buffer into the file.
void flushrecords(RECORDS *records) {
    size_t done = 0;
    while (!records->failed && done < records->used) {
        const ssize_t count =
            write(records->descriptor, records->buffer + done, records->used - done);
        if (count > 0)
            done += static_cast<size_t>(count);
        else if (count == 0 || errno != EINTR)
            records->failed = true;
    }
    records->used = 0;
}

void put(RECORDS *records, std::string_view text) {
    if (text.size() > sizeof records->buffer - records->used)
        flushrecords(records);
    memcpy(records->buffer + records->used, text.data(), text.size());
    records->used += text.size();
}

// Puts at most `limit` characters, with `substitute` for every `forbidden` and a blank for
// a line feed, both of which would end the name early.
void putname(RECORDS *records, std::string_view name, size_t limit, char forbidden,
             char substitute) {
    name = name.substr(0, limit);
    put(records, name);
    char *copy = records->buffer + records->used - name.size();
    for (size_t i = 0; i < name.size(); ++i) {
        if (copy[i] == forbidden)
            copy[i] = substitute;
        else if (copy[i] == '\n')
            copy[i] = ' ';
    }
}

void putnumber(RECORDS *records, int64_t number) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    put(records, {digits, static_cast<size_t>(end.ptr - digits)});
}

// Appending goes on in a line of its own.
void endlastline(RECORDS *records) {
    char last = '\n';
    if (records->whole > 0 && pread(records->descriptor, &last, 1, records->whole - 1) == 1 &&
        last != '\n')
        put(records, "\n");
}

void putobject(RECORDS *records, std::string_view name, std::string_view end) {
    const std::string_view library = OPTlibrary;
    name = name.substr(0, NAMELIMIT);
    put(records, "[");
    putname(records, name, NAMELIMIT, ']', ')');
    put(records, end);
    if (!library.empty()) {
        put(records, "][");
        putname(records, library, HEADERLENGTH - name.size(), ']', ')');
    }
    put(records, "]\n");
}

} // namespace

bool openrecords(RECORDS *records, const char *path) {
    constexpr int flags = O_APPEND | O_CREAT | O_CLOEXEC;
    *records = {};
    records->path = path;
    records->descriptor = open(path, flags | O_RDWR, 0666);
    if (records->descriptor < 0)
        records->descriptor = open(path, flags | O_WRONLY, 0666);
    if (records->descriptor < 0)
        return false;
    records->whole = lseek(records->descriptor, 0, SEEK_END);
    endlastline(records);
    return true;
}

void recordobject(RECORDS *records, std::string_view name) {
    putobject(records, name, "");
}

void recordbrokenobject(RECORDS *records, std::string_view name) {
    putobject(records, name, "\n");
}

void recordsource(RECORDS *records, std::string_view path) {
    put(records, "source=");
    putname(records, path, SOURCELIMIT, '\n', ' ');
    put(records, "\n");
}

void recordsource(RECORDS *records, std::string_view path, int32_t date) {
    put(records, "source=");
    putname(records, path, SOURCELIMIT, '\n', ' ');
    put(records, ",");
    putnumber(records, date);
    put(records, "\n");
}

// The documented words always fit beside the longest name; others are cut when they do not.
void recorddefine(RECORDS *records, std::string_view name, std::string_view type,
                  std::string_view scope, int32_t size) {
    constexpr size_t fixedLength = 7 + 1 + 1 + 1 + 11 + 1;
    name = name.substr(0, NAMELIMIT);
    type = type.substr(0, WORDLIMIT);
    size_t room = LINELENGTH - fixedLength - name.size();
    if (type.size() > room - 6)
        type = type.substr(0, room - 6);
    room -= type.size();
    put(records, "define=");
    putname(records, name, NAMELIMIT, ',', ';');
    put(records, ",");
    put(records, type);
    put(records, ",");
    put(records, scope.substr(0, room < WORDLIMIT ? room : WORDLIMIT));
    put(records, ",");
    putnumber(records, size);
    put(records, "\n");
}

void recordrefer(RECORDS *records, std::string_view name) {
    put(records, "refer=");
    putname(records, name, NAMELIMIT, ',', ';');
    put(records, "\n");
}

void addsize(RECORDS *records, int32_t size) {
    records->total = std::clamp<int64_t>(records->total + size, INT32_MIN, INT32_MAX);
}

void recordsize(RECORDS *records) {
    put(records, "size=");
    putnumber(records, records->total);
    put(records, "\n\n");
    records->total = 0;
    flushrecords(records);
    if (records->whole >= 0 && !records->failed)
        records->whole = lseek(records->descriptor, 0, SEEK_CUR);
}

bool closerecords(RECORDS *records, bool wholeonly) {
    if (!wholeonly)
        flushrecords(records);
    if ((records->failed || wholeonly) && records->whole >= 0)
        records->failed |= ftruncate(records->descriptor, records->whole) != 0;
    if (close(records->descriptor) != 0)
        records->failed = true;
    if (records->failed)
        toolsay("tolvik: ERROR: could not write '%s'\n", records->path);
    return !records->failed;
}
