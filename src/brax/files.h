// Loads and saves whole files, and makes the progress texts shown before.
#pragma once

#include "base/options.h"

#include <cstdint>

// Loads the file into a new block of the buffer, with a zero byte after the contents. Returns the
// block, which the caller frees with BRAX_free; buffer->size is the file's length. Null, with a
// message unless `verbose` is 0, if the file is missing, unreadable, empty or too large for a
// block. The buffer's previous block is not freed.
void *BRAX_loadfilev(BRAXBUF *buffer, const char *fileName, int verbose);

// BRAX_loadfilev at the verbosity OPTverbose.
void *BRAX_loadfile(BRAXBUF *buffer, const char *fileName);

// Writes buffer->size bytes to the file, which is created or emptied first. Returns true if all
// were written; false, with a message unless OPTverbose is 0, if not. With OPTwrite 0 it returns
// true and writes nothing.
bool BRAX_savefile(BRAXBUF *buffer, const char *fileName);

// The text shown before a file is loaded or saved at a verbosity; may be empty. The destination
// holds BRAXFIELDSIZE bytes and is returned.
char *BRAX_loadstr(char *destination, const char *fileName, int verbose);
char *BRAX_savestr(char *destination, const char *fileName, int verbose);

constexpr int BRAXPERCENTSIZE = 32;

// The decrease of a size in percent: "75.0%" from 100 to 25, "-33.3%" from 100 to 150. The
// destination holds BRAXPERCENTSIZE bytes and is returned.
char *BRAX_percentstr(char *destination, int32_t before, int32_t after);
