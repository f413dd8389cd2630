// Help on one option, and the program's help page in a browser.
#pragma once

// Copies '-' and the option word at `text`, up to a blank, a hard space or ';', to the destination
// (BRAXFIELDSIZE bytes). True if the word is a request for help: it ends in '?' and is not '?'
// alone. The '?' is then removed.
bool BRAX_optionhelp(char *destination, const char *text);

// Writes the address of the program's help page to the destination (BRAXFIELDSIZE bytes) and
// returns it: OPTurl if that is not empty, else one made from the program's name without its
// extension; then OPTbookmark.
char *BRAX_geturl(char *destination, const char *program);

// Opens the program's help page in a browser; false on failure.
bool BRAX_webhelp(const char *program);

// Opens an address in a browser, in the background. False if the command would be too long, or if
// there is no browser, with a message if OPTverbose is above 3.
bool BRAX_openurl(const char *address);

// Copies the command name of a tool (BRAXFIELDSIZE bytes). Returns true: tools are assumed to be
// on the search path.
bool BRAX_findtool(char *destination, const char *tool);
