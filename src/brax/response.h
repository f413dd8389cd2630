// Response files: options and names that would not fit on a command line, or that several
// runs share.
//
//     @build(debug,obj)      the file build, with two parameters
//
//     ; a line that begins with ';' is a comment
//     -sjoystick %1.%2       %1 is a parameter
//     %SRCDIR%/pad.o         a variable of the environment
//     100%% @other; &more    a percent sign; other files, the first one ends its batch
//
// The brackets around the parameters may be (), {} or [] and nest. When the environment has a
// variable of the file's name, its value is taken as it stands and no file is read.
#pragma once

// Appends the expanded contents of a response file to the option text `output`, which has
// room for BRAXLISTSIZE bytes. `specification` is what stands behind the '@' or '&'.
//
// False, with the reason and a warning unless OPTverbose is 0 (a missing closing bracket is
// told at every verbosity), and nothing appended, when the specification is malformed, the
// file cannot be loaded, a parameter or variable that it uses is missing, it names itself,
// directly or through others, or a limit is passed. A file named in it that cannot be
// expanded for one of the first three reasons is left out: BRAXhelpgiven is set, which ends
// the run, and the result is still true.
bool BRAX_responsefile(const char *specification, char *output);
