// Response files: options and names that are too long for a command line or shared by several
// runs.
//
//     @build(debug,obj)      the file build, with two parameters
//
//     ; a line that begins with ';' is a comment
//     -sjoystick %1.%2       %1 is a parameter
//     %SRCDIR%/pad.o         a variable of the environment
//     100%% @other; &more    a percent sign; other files, the first one ends its batch
//
// The brackets around the parameters may be (), {} or [] and nest. If the environment has a
// variable with the file's name, its value is used unchanged and no file is read.
#pragma once

// Appends the expanded contents of a response file to the option text `output`, a buffer of
// BRAXLISTSIZE bytes. `specification` is the text after the '@' or '&'.
//
// False, with nothing appended, if the specification is malformed, the file cannot be loaded, a
// parameter or variable that it uses is missing, it names itself, directly or through other
// files, or a limit is exceeded. The reason and a warning are reported unless OPTverbose is 0; a
// missing closing bracket always is. A nested file that fails for one of the first three reasons
// is skipped: the result is still true, and BRAXhelpgiven is set, which ends the run.
bool BRAX_responsefile(const char *specification, char *output);
