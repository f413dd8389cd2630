#include "archive.h"

#include <algorithm>
#include <errno.h>
#include <fcntl.h>
#include <set>
#include <string.h>
#include <unistd.h>

namespace {

std::string without_directories(const std::string &name) {
    size_t separator = name.find_last_of("/\\");
    return separator == std::string::npos ? name : name.substr(separator + 1);
}

// Returns the member's name, changed if another member has it.
std::string free_name(const std::set<std::string> &written, const std::string &name,
                      size_t position) {
    std::string free = name;
    size_t dot = std::min(name.find_last_of('.'), name.size());
    for (std::string mark = "~"; written.count(free); mark += '~') {
        free = name.substr(0, dot) + mark + std::to_string(position) + name.substr(dot);
    }
    return free;
}

// Returns null, or the reason why the file could not be written.
const char *write_file(const char *path, BYTES data) {
    // An existing file may be a symbolic link; do not follow it.
    unlink(path);
    int descriptor = open(path, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    FILE *file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
    if (!file) {
        return strerror(errno);
    }
    bool whole = fwrite(data.data, 1, data.size, file) == data.size;
    if (fclose(file) || !whole) {
        unlink(path);
        return "could not be written";
    }
    return nullptr;
}

void extract_members(DUMP *dump, const char *path, ARCHIVE *archive, const char *directory) {
    std::set<std::string> written;
    MEMBER member;
    ARCHIVEEND end = archive_next(archive, &member);
    for (; end == ARCHIVE_MEMBER; end = archive_next(archive, &member)) {
        std::string name = without_directories(member.name);
        if (name.empty() || name == "." || name == ".." || name.find('\0') != std::string::npos) {
            complain(dump, path, member.name.c_str(), "is no name for a file");
            continue;
        }
        name = free_name(written, name, archive->position);
        written.insert(name);
        std::string file = std::string(directory) + "/" + name;
        if (const char *failure = write_file(file.c_str(), member.data)) {
            complain(dump, path, name.c_str(), failure);
        }
    }
    if (end == ARCHIVE_DAMAGED) {
        complain(dump, path, nullptr, "is damaged, the rest is left out");
    }
}

} // namespace

int archive_extract(const char *self, const char *path, const char *directory) {
    DUMP dump = {self, stdout, stderr, 0};
    BYTES bytes;
    ARCHIVE archive;
    if (const char *failure = map_file(path, &bytes)) {
        complain(&dump, path, nullptr, failure);
    } else if (!archive_start(&archive, bytes)) {
        complain(&dump, path, nullptr, "is no library");
    } else if (archive.thin) {
        complain(&dump, path, nullptr, "is a thin library, which only -telf reads");
    } else {
        extract_members(&dump, path, &archive, directory);
    }
    unmap_file(&bytes);
    return dump.status;
}
