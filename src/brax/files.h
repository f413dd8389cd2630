// Whole files in and out of memory, and the progress texts shown around that.
#pragma once

#include "base/options.h"

#include <cstdint>

// Loads the file into a new block of the buffer, a zero byte behind its contents, and returns
// the block, which the caller gives back with BRAX_free; buffer->size is the file's length.
// Null, and a message unless `verbose` is 0, when the file is missing, unreadable, empty or
// too large for a block. What the buffer held before is forgotten, not released.
void *BRAX_loadfilev(BRAXBUF *buffer, const char *fileName, int verbose);

// BRAX_loadfilev at the verbosity OPTverbose.
void *BRAX_loadfile(BRAXBUF *buffer, const char *fileName);

// Writes buffer->size bytes to the file, which is created or emptied first. True when all
// were written, and when OPTwrite is 0, which leaves the file alone; otherwise false, with a
// message unless OPTverbose is 0.
bool BRAX_savefile(BRAXBUF *buffer, const char *fileName);

// The text shown before a file is loaded or saved at a verbosity, empty when nothing is
// shown. The destination holds BRAXFIELDSIZE bytes and is returned.
char *BRAX_loadstr(char *destination, const char *fileName, int verbose);
char *BRAX_savestr(char *destination, const char *fileName, int verbose);

constexpr int BRAXPERCENTSIZE = 32;

// How much smaller a size has become, such as "75.0%" from 100 to 25, or "-33.3%" from 100 to
// 150. The destination holds BRAXPERCENTSIZE bytes and is returned.
char *BRAX_percentstr(char *destination, int32_t before, int32_t after);
