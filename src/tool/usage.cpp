#include "tool/usage.h"

#include <cstdio>
#include <cstdlib>

const char TextVersion[] = "1.54 (Quillmarsh) 020718";

// The program's banner and its releases.
const char *const BRAX_history[] = {
    "******************************************************************",
    "*                                                                *",
    "*  tolvik - symbol analysis tool              Version 1.54       *",
    "*                                                                *",
    "*  Author: Velo Marn                          Date 25 Jul 2002   *",
    "*                                                                *",
    "******************************************************************",
    "*  Version  Date       SE  History                               *",
    "*  -------  ---------  --  ------------------------------------  *",
    "*  1.00     12 Mar 01  VM  symbols and references of SGI files   *",
    "*  1.10     30 Apr 01  VM  PC object files and libraries         *",
    "*  1.20     18 Jun 01  VM  files that a symbol links in          *",
    "*  1.30     09 Oct 01  VM  PlayStation object files              *",
    "*  1.40     21 Jan 02  VM  PlayStation 2 and GameCube files      *",
    "*  1.50     17 May 02  VM  HTML reports with source links        *",
    "*  1.52     10 Jun 02  VM  library names from paths              *",
    "*  1.53     02 Jul 02  VM  symbol files can be appended to       *",
    "*  1.54     18 Jul 02  VM  dates of sources, Xbox type           *",
    "******************************************************************",
    "",
    nullptr,
};

namespace {

constexpr char builddate[] = "Jul 25 2002";
constexpr double braxversion = 3.58F;

constexpr char optionhelp[] =
    "\n"
    "    -t<type>          object file type (sgi, u64, pc; default pc)\n"
    "    -s<symbol>        symbol to search for, repeat as desired (default all)\n"
    "    -f<file>          file to search for, repeat as desired (default all)\n"
    "    -def              look for symbol definitions\n"
    "    -ref              look for symbol references\n"
    "    -links            look for files that symbol/file links in\n"
    "    -all              same as \"-def -ref -links\" (default)\n"
    "    -under            keep underscores (default strip 'em)\n"
    "    -html             generate HTML output (default plain text)\n"
    "    -l<linkpath>      link path to be prepended to source code link (use with -html only)\n"
    "    -lib              get library name from path of object file(s) or library filename(s)\n"
    "    -lib<libraryname> assign libraryname to each object in tvk file\n"
    "    -append           append symbol info to .tvk file (default overwrite)\n"
    "    -<n>              n levels of recursion (default complete)\n"
    "\n"
    "   @file          response file, containing a list of options and files\n"
    "    -=<name>      specifies output file name\n"
    "    -v0           no console output\n"
    "    -v1           prints source file name and errors\n"
    "    -v2           status line for each file (default)\n"
    "    -v3           additional info\n"
    "\n"
    "Examples: \n"
    "    Find definition of and references to symbol abortmessage:\n"
    "        tolvik -sabortmessage -ref -def libqvo.a\n"
    "    Find all symbols defined in files key.o and remkey.o within library:\n"
    "        tolvik -fkey.o -fremkey.o -def libqvo.a\n"
    "    List files linked in by symbol joystick in pre-built symbol file:\n"
    "        tolvik -sjoystickn -links symbols.tvk=report.txt\n"
    "    List files brought in if init.o linked, checking info in all .obj files:\n"
    "        tolvik -finit.o -links *.obj\n";

const char *shown(const char *text) {
    return text != nullptr ? text : "";
}

} // namespace

int BRAX_usage(const char *program, const char *topic, const char *address, int mode) {
    printf("\n%s v%s %s by Velo Marn, QVO\n\n", program, TextVersion, builddate);
    if (mode != 0)
        printf("USAGE: %s -=<output> -options [files]\n", program);
    if (mode <= 0 || mode > 3)
        return 0;
    if (mode == 2) {
        printf("\n%s -h for more help\n", program);
        printf("type '%s -help' for web page (%s)\n", program, shown(address));
    } else if (mode == 3) {
        printf("VERSION: %s v%s %s, Brax v%.2f\n", "Linux", TextVersion, builddate, braxversion);
        printf("SUMMARY: %s is a symbol analysis tool\n", program);
        printf("         BRAX environment variable is %s\n", shown(topic));
        fputs(optionhelp, stdout);
    }
    exit(0);
}
