// What the command-line framework calls back: the tool's options and their reset.
#pragma once

// Empties the link prefix and the library name, which hold for one batch only. The
// framework calls it whenever it sets its own defaults.
void BRAX_reset();

// Takes the tool's option at `text`, which starts after the option's '-' and ends at
// white space or the end of the text. Returns the position after the option, or null
// when the option is not the tool's.
const char *BRAX_opt(const char *text);
