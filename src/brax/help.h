// Help on one option, and the program's help page in a browser.
#pragma once

// Recognises a request for help on an option: copies '-' and the option word at `text` (it
// ends at a blank, a hard space or ';') to the destination (BRAXFIELDSIZE bytes). True when
// the word ends in '?' with something in front of it; the '?' is then taken off.
bool BRAX_optionhelp(char *destination, const char *text);

// Writes the address of the program's help page, OPTurl when that is not empty, with
// OPTbookmark behind it, to the destination (BRAXFIELDSIZE bytes) and returns it. The
// program's name may have an extension, which is left out.
char *BRAX_geturl(char *destination, const char *program);

// Opens the program's help page in a browser; false when that is not possible.
bool BRAX_webhelp(const char *program);

// Opens an address in a browser, in the background. False, with a message when OPTverbose
// is above 3, when there is no browser, or when the address does not fit the command.
bool BRAX_openurl(const char *address);

// Copies the name under which the tool is to be run (BRAXFIELDSIZE bytes); true when it is
// there. Tools are taken to be on the search path.
bool BRAX_findtool(char *destination, const char *tool);
