// File streams: a thin layer over the system's file descriptors with 64-bit positions.
#pragma once

#include <cstdint>

// A stream handle; 0 means no stream.
using GSTREAM = int;

// Opens a file for reading. Returns 0 on failure.
GSTREAM gopen(const char *path);

// Creates or truncates a file (mode 0744) for reading and writing. Returns 0 on failure.
GSTREAM gwopen(const char *path);

// Returns true when the handle is 0 or was closed without an error.
bool gclose(GSTREAM handle);

// Reads up to `length` bytes. Returns their number, 0 at the end, or -1.
int64_t gread(GSTREAM handle, void *buffer, int64_t length);

// Writes with one system call. Returns the number of bytes written, or -1. Prints a
// warning through gprintf when it is below `length`.
int64_t gwrite(GSTREAM handle, const void *buffer, int64_t length);

// Moves the position; origin 0 is the start, 1 the current position, 2 the end. Returns
// the new position, or -1.
int64_t __gseek(GSTREAM handle, int64_t offset, int origin);

// Moves the position to an offset from the start. Returns false on failure.
bool gseek(GSTREAM handle, int64_t offset);

// Returns the current position, or -1.
int64_t gtell(GSTREAM handle);

// Returns the file's length, or 0 when it is unknown. The position stays unchanged.
int64_t glen(GSTREAM handle);
