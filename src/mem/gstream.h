// File streams: a thin layer over the system's file descriptors with 64-bit positions,
// used for loading and saving whole files.
#pragma once

#include <cstdint>

// A stream handle; 0 means that there is no stream.
using GSTREAM = int;

// Opens a file for reading; 0 when it cannot be opened.
GSTREAM gopen(const char *path);

// Creates or empties a file (mode 0744) for reading and writing; 0 when that fails.
GSTREAM gwopen(const char *path);

// True when the handle is 0 or was closed without an error.
bool gclose(GSTREAM handle);

// Reads up to `length` bytes; the number of bytes read, 0 at the end, or -1.
int64_t gread(GSTREAM handle, void *buffer, int64_t length);

// Writes with one system call; the number of bytes written, or -1. Fewer than asked for
// give a warning through gprintf.
int64_t gwrite(GSTREAM handle, const void *buffer, int64_t length);

// Moves the position; origin 0 is the start, 1 the current position, 2 the end. The new
// position, or -1.
int64_t __gseek(GSTREAM handle, int64_t offset, int origin);

// Positions from the start; true unless that fails.
bool gseek(GSTREAM handle, int64_t offset);

// The current position, or -1.
int64_t gtell(GSTREAM handle);

// The file's length, or 0 when it cannot be found; the position stays where it was.
int64_t glen(GSTREAM handle);
