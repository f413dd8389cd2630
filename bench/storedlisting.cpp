// A dump program for measuring: writes the file $STORED_LISTING to standard output and ignores
// its arguments.
#include <cstdlib>
#include <fcntl.h>
#include <sys/sendfile.h>

int main() {
    const char *name = getenv("STORED_LISTING");
    const int file = name != nullptr ? open(name, O_RDONLY) : -1;
    return sendfile(1, file, nullptr, 1 << 20) > 0 ? 0 : 1;
}
