#include "archive.h"

#include <algorithm>
#include <stdlib.h>
#include <string.h>

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

bool is_digit(char character) {
    return character >= '0' && character <= '9';
}

// Reads at most 15 digits, which cannot overflow.
size_t number_at(const char *text, size_t length, size_t *end) {
    size_t number = 0;
    size_t digits = 0;
    while (digits < std::min<size_t>(length, 15) && is_digit(text[digits])) {
        number = number * 10 + static_cast<size_t>(text[digits++] - '0');
    }
    *end = digits;
    return number;
}

std::string text_of(BYTES bytes) {
    return std::string(reinterpret_cast<const char *>(bytes.data), bytes.size);
}

// "/OFFSET", or in a thin library "/OFFSET:ORIGIN" for the member of a library.
void read_long_name(const ARCHIVE *archive, const std::string &field, MEMBER *member) {
    size_t end = 0;
    size_t begin = number_at(field.c_str() + 1, field.size() - 1, &end);
    const char *rest = field.c_str() + 1 + end;
    member->nested = archive->thin && *rest == ':';
    member->origin = member->nested ? number_at(rest + 1, strlen(rest + 1), &end) : 0;
    BYTES table = part_of(archive->longNames, begin, archive->longNames.size);
    size_t length = 0;
    while (length < table.size && table.data[length] != '\n' && table.data[length]) {
        length++;
    }
    member->name = text_of(part_of(table, 0, length));
}

// "#1/LENGTH": the name is the first part of the data.
bool read_name_before_data(const std::string &field, MEMBER *member) {
    size_t end = 0;
    size_t length = number_at(field.c_str() + 3, field.size() - 3, &end);
    if (length > member->data.size) {
        return false;
    }
    member->name = text_of(part_of(member->data, 0, length));
    member->name.erase(std::min(member->name.find('\0'), member->name.size()));
    member->data = part_of(member->data, length, member->data.size);
    return true;
}

// Returns the name without the blanks at its end.
std::string name_field(const HEADER *header) {
    std::string name(header->name, sizeof header->name);
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

// False if the member cannot be read. Sets an empty name for a member to skip.
bool read_member(ARCHIVE *archive, const HEADER *header, MEMBER *member) {
    std::string field = name_field(header);
    *member = {"", member->data, false, 0};
    if (field == "//") {
        archive->longNames = member->data;
    } else if (field.size() > 1 && field[0] == '/' && is_digit(field[1])) {
        read_long_name(archive, field, member);
    } else if (field.compare(0, 3, "#1/") == 0) {
        if (!read_name_before_data(field, member)) {
            return false;
        }
    } else if (!field.empty() && field[0] != '/') {
        member->name = field;
    }
    if (!member->name.empty() && member->name.back() == '/') {
        member->name.pop_back();
    }
    if (member->name.compare(0, 9, "__.SYMDEF") == 0) {
        member->name.clear();
    }
    return true;
}

// Whether the library itself holds the member's bytes.
bool holds_data(const ARCHIVE *archive, const HEADER *header) {
    return !archive->thin || (header->name[0] == '/' && !is_digit(header->name[1]));
}

bool read_header(ARCHIVE *archive, HEADER *header, MEMBER *member) {
    BYTES bytes = part_of(archive->bytes, archive->next, sizeof *header);
    if (bytes.size < sizeof *header) {
        return false;
    }
    memcpy(header, bytes.data, sizeof *header);
    size_t digits = 0;
    size_t size = number_at(header->size, sizeof header->size, &digits);
    if (!digits || memcmp(header->end, "`\n", 2) != 0) {
        return false;
    }
    archive->next += sizeof *header;
    size = holds_data(archive, header) ? size : 0;
    member->data = part_of(archive->bytes, archive->next, size);
    archive->next += size + (size & 1);
    return member->data.size == size;
}

} // namespace

bool archive_start(ARCHIVE *archive, BYTES bytes) {
    *archive = {};
    archive->bytes = bytes;
    archive->next = 8;
    archive->thin = bytes_match(bytes, 0, "!<thin>\n", 8);
    return archive->thin || bytes_match(bytes, 0, "!<arch>\n", 8);
}

ARCHIVEEND archive_next(ARCHIVE *archive, MEMBER *member) {
    while (archive->next < archive->bytes.size) {
        HEADER header;
        if (!read_header(archive, &header, member) || !read_member(archive, &header, member)) {
            archive->next = archive->bytes.size;
            return ARCHIVE_DAMAGED;
        }
        archive->position++;
        if (!member->name.empty()) {
            return ARCHIVE_MEMBER;
        }
    }
    return ARCHIVE_END;
}

const char *map_member(const char *path, MEMBER *member, BYTES *mapped) {
    std::string file = member->name;
    if (file[0] != '/') {
        const char *separator = strrchr(path, '/');
        file.insert(0, path, separator ? static_cast<size_t>(separator - path) + 1 : 0);
    }
    const char *failure = map_file(file.c_str(), mapped);
    member->data = *mapped;
    if (failure || !member->nested) {
        return failure;
    }
    ARCHIVE outer;
    size_t origin = member->origin;
    // The first call reads the table of names, which comes before all members.
    bool found = archive_start(&outer, *mapped) && !outer.thin &&
                 archive_next(&outer, member) == ARCHIVE_MEMBER;
    outer.next = origin;
    found = found && archive_next(&outer, member) == ARCHIVE_MEMBER;
    return found ? nullptr : "is no library that holds the member";
}
