#include "bytes.h"

#include <algorithm>
#include <errno.h>
#include <fcntl.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char *map_descriptor(int descriptor, BYTES *bytes) {
    struct stat properties;
    if (fstat(descriptor, &properties)) {
        return strerror(errno);
    }
    if (!S_ISREG(properties.st_mode)) {
        return "is no regular file";
    }
    size_t size = static_cast<size_t>(properties.st_size);
    if (!size) {
        return nullptr; // mmap refuses a length of 0
    }
    void *data = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    if (data == MAP_FAILED) {
        return strerror(errno);
    }
    *bytes = {static_cast<const unsigned char *>(data), size};
    return nullptr;
}

} // namespace

void remark(const DUMP *dump, const char *path, const char *member, const char *text) {
    if (member) {
        fprintf(dump->messages, "%s: %s(%s): %s\n", dump->self, path, member, text);
    } else {
        fprintf(dump->messages, "%s: %s: %s\n", dump->self, path, text);
    }
}

void complain(DUMP *dump, const char *path, const char *member, const char *text) {
    remark(dump, path, member, text);
    dump->status = 1;
}

const char *map_file(const char *path, BYTES *bytes) {
    *bytes = {};
    // O_NONBLOCK: opening a FIFO must not wait for a writer.
    int descriptor = open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return strerror(errno);
    }
    const char *failure = map_descriptor(descriptor, bytes);
    close(descriptor);
    return failure;
}

void unmap_file(BYTES *bytes) {
    if (bytes->size) {
        munmap(const_cast<unsigned char *>(bytes->data), bytes->size);
    }
    *bytes = {};
}

BYTES part_of(BYTES whole, size_t offset, size_t size) {
    offset = std::min(offset, whole.size);
    return {whole.data + offset, std::min(size, whole.size - offset)};
}

bool bytes_match(BYTES bytes, size_t offset, const char *text, size_t size) {
    BYTES part = part_of(bytes, offset, size);
    return part.size == size && memcmp(part.data, text, size) == 0;
}
