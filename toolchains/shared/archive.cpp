#include "archive.h"

#include <algorithm>
#include <errno.h>
#include <fcntl.h>
#include <set>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// A member's header; every field is text, padded with blanks.
struct HEADER {
    char name[16];
    char dateAndOwner[24];
    char mode[8];
    char size[10];
    char end[2];
};
static_assert(sizeof(HEADER) == 60);

struct ARCHIVE {
    const char *self;
    const char *path;
    const char *directory;
    FILE *file;
    off_t length;
    std::string longNames;
    std::set<std::string> written;
    size_t position; // of the member being read, from 1 on
    int status;
};

void complain(ARCHIVE *archive, const char *what, const char *why) {
    fprintf(stderr, "%s: %s: %s: %s\n", archive->self, archive->path, what, why);
    archive->status = 1;
}

std::string trimmed(const char *text, size_t length) {
    while (length && text[length - 1] == ' ') {
        length--;
    }
    return std::string(text, length);
}

// Reads length bytes from where the file stands.
bool read_text(ARCHIVE *archive, off_t length, std::string *text) {
    text->resize(static_cast<size_t>(length));
    return fread(text->data(), 1, text->size(), archive->file) == text->size();
}

std::string long_name(const ARCHIVE *archive, const char *offset) {
    size_t begin = strtoul(offset, nullptr, 10);
    if (begin >= archive->longNames.size()) {
        return "";
    }
    size_t end = archive->longNames.find_first_of(std::string("\n\0", 2), begin);
    return archive->longNames.substr(begin, std::min(end, archive->longNames.size()) - begin);
}

std::string without_directories(std::string name) {
    if (!name.empty() && name.back() == '/') { // how archives end a name
        name.pop_back();
    }
    size_t separator = name.find_last_of("/\\");
    return separator == std::string::npos ? name : name.substr(separator + 1);
}

// The name to write a member under: its own unless another one has it.
std::string free_name(ARCHIVE *archive, const std::string &name) {
    std::string free = name;
    size_t dot = std::min(name.find_last_of('.'), name.size());
    for (std::string mark = "~"; archive->written.count(free); mark += '~') {
        free = name.substr(0, dot) + mark + std::to_string(archive->position) + name.substr(dot);
    }
    return free;
}

bool copy(ARCHIVE *archive, FILE *to, off_t length) {
    char block[65536];
    while (length > 0) {
        size_t part = static_cast<size_t>(std::min<off_t>(length, sizeof block));
        if (fread(block, 1, part, archive->file) != part || fwrite(block, 1, part, to) != part) {
            return false;
        }
        length -= static_cast<off_t>(part);
    }
    return true;
}

void extract(ARCHIVE *archive, const std::string &member, off_t length) {
    std::string name = without_directories(member);
    if (name.empty() || name == "." || name == ".." || name.find('\0') != std::string::npos) {
        complain(archive, member.c_str(), "no name for a file");
        return;
    }
    name = free_name(archive, name);
    archive->written.insert(name);
    std::string path = std::string(archive->directory) + "/" + name;
    // What stands there is replaced, not written through: it may be a link.
    unlink(path.c_str());
    int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    FILE *to = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
    if (!to) {
        complain(archive, path.c_str(), strerror(errno));
        return;
    }
    bool whole = copy(archive, to, length);
    if (fclose(to) || !whole) {
        complain(archive, path.c_str(), "could not be written");
        unlink(path.c_str());
    }
}

// A member's header has been read, and its data of `length` bytes follow.
void read_member(ARCHIVE *archive, const HEADER *header, off_t length) {
    std::string name = trimmed(header->name, sizeof header->name);
    if (name == "//") {
        if (!read_text(archive, length, &archive->longNames)) {
            complain(archive, "names", "could not be read");
        }
        return;
    }
    if (name[0] == '/' && name[1] >= '0' && name[1] <= '9') {
        name = long_name(archive, name.c_str() + 1);
    } else if (name[0] == '/' || name.empty()) {
        return; // an index of symbols
    } else if (name.compare(0, 3, "#1/") == 0) {
        off_t inFront = std::min<off_t>(strtol(name.c_str() + 3, nullptr, 10), length);
        if (inFront < 0 || !read_text(archive, inFront, &name)) {
            complain(archive, "member", "has no name");
            return;
        }
        name.erase(std::min(name.find('\0'), name.size()));
        length -= inFront;
    }
    if (name.compare(0, 9, "__.SYMDEF") != 0) {
        extract(archive, name, length);
    }
}

bool read_size(const HEADER *header, off_t *length) {
    char digits[sizeof header->size + 1] = {};
    memcpy(digits, header->size, sizeof header->size);
    *length = strtoll(digits, nullptr, 10);
    return memcmp(header->end, "`\n", 2) == 0 && *length >= 0;
}

void read_members(ARCHIVE *archive) {
    char magic[8];
    if (fread(magic, sizeof magic, 1, archive->file) != 1 || memcmp(magic, "!<arch>\n", 8) != 0) {
        complain(archive, "first bytes", "not those of a library");
        return;
    }
    off_t next = sizeof magic;
    while (next < archive->length && archive->position < SIZE_MAX) {
        HEADER header;
        off_t length = 0;
        if (fseeko(archive->file, next, SEEK_SET) ||
            fread(&header, sizeof header, 1, archive->file) != 1 || !read_size(&header, &length) ||
            length > archive->length - next - static_cast<off_t>(sizeof header)) {
            complain(archive, "library", "damaged, the rest is left out");
            return;
        }
        archive->position++;
        read_member(archive, &header, length);
        next += static_cast<off_t>(sizeof header) + length + (length & 1);
    }
}

} // namespace

int archive_extract(const char *self, const char *path, const char *directory) {
    ARCHIVE archive = {};
    archive.self = self;
    archive.path = path;
    archive.directory = directory;
    archive.file = fopen(path, "rb");
    struct stat properties;
    if (!archive.file || fstat(fileno(archive.file), &properties)) {
        fprintf(stderr, "%s: %s: %s\n", self, path, strerror(errno));
        if (archive.file) {
            fclose(archive.file);
        }
        return 1;
    }
    archive.length = properties.st_size;
    read_members(&archive);
    fclose(archive.file);
    return archive.status;
}
