// The functions that the command-line framework calls for the tool's options.
#pragma once

// Empties the link prefix and the library name, which are valid for one batch. The framework calls
// it when it sets its own defaults.
void BRAX_reset();

// Handles the tool's option at `text`, which starts after the '-' and ends at white space or the
// end of the string. Returns the position after the option; null when it is not the tool's.
const char *BRAX_opt(const char *text);
