#include "mem/gstream.h"

#include "mem/galloc.h"

#include <fcntl.h>
#include <unistd.h>

namespace {

// Moves descriptor 0, possible when standard input is closed, to the next free one:
// handle 0 means no stream.
GSTREAM handleof(int descriptor) {
    if (descriptor != 0)
        return descriptor < 0 ? 0 : descriptor;
    const int moved = fcntl(0, F_DUPFD_CLOEXEC, 1);
    close(0);
    return moved < 0 ? 0 : moved;
}

} // namespace

GSTREAM gopen(const char *path) {
    return handleof(open(path, O_RDONLY | O_CLOEXEC));
}

GSTREAM gwopen(const char *path) {
    return handleof(open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0744));
}

bool gclose(GSTREAM handle) {
    return handle == 0 || close(handle) == 0;
}

int64_t gread(GSTREAM handle, void *buffer, int64_t length) {
    return read(handle, buffer, static_cast<size_t>(length));
}

int64_t gwrite(GSTREAM handle, const void *buffer, int64_t length) {
    const int64_t written = write(handle, buffer, static_cast<size_t>(length));
    if (written < length)
        gprintf("write warning.  %d requested, got %d\n", static_cast<int>(length),
                static_cast<int>(written));
    return written;
}

int64_t __gseek(GSTREAM handle, int64_t offset, int origin) {
    const int whence = origin == 0 ? SEEK_SET : origin == 1 ? SEEK_CUR : SEEK_END;
    const int64_t position = lseek(handle, offset, whence);
    if (position >= 0)
        return position;
    // On some systems the 64-bit seek fails on some devices and a 32-bit one does not.
    return static_cast<int32_t>(lseek(handle, static_cast<int32_t>(offset), whence));
}

bool gseek(GSTREAM handle, int64_t offset) {
    return __gseek(handle, offset, 0) >= 0;
}

int64_t gtell(GSTREAM handle) {
    return __gseek(handle, 0, 1);
}

int64_t glen(GSTREAM handle) {
    const int64_t position = gtell(handle);
    const int64_t length = __gseek(handle, 0, 2);
    if (position >= 0)
        gseek(handle, position);
    return length < 0 ? 0 : length;
}
