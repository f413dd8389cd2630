# Usage at each verbosity, and the ways to ask for more of it.

banner='
tolvik v1.54 (Quillmarsh) 020718 Jul 25 2002 by Velo Marn, QVO
'
short="$banner
USAGE: tolvik -=<output> -options [files]"

run
expect_status 0
expect_out <<EOF
$short

tolvik -h for more help
type 'tolvik -help' for web page (https://tolvik.example/help/util/tolvik.htm)
EOF
expect_err </dev/null

for one in -h1 -v1 '-?1'; do
    run "$one"
    expect_status 0
    expect_out <<EOF
$short
EOF
done

cat >"$STATE/full" <<EOF
$short
VERSION: Linux v1.54 (Quillmarsh) 020718 Jul 25 2002, Brax v3.58
SUMMARY: tolvik is a symbol analysis tool
         BRAX environment variable is TOLVIK_OPTS

    -t<type>          object file type (sgi, u64, pc; default pc)
    -s<symbol>        symbol to search for, repeat as desired (default all)
    -f<file>          file to search for, repeat as desired (default all)
    -def              look for symbol definitions
    -ref              look for symbol references
    -links            look for files that symbol/file links in
    -all              same as "-def -ref -links" (default)
    -under            keep underscores (default strip 'em)
    -html             generate HTML output (default plain text)
    -l<linkpath>      link path to be prepended to source code link (use with -html only)
    -lib              get library name from path of object file(s) or library filename(s)
    -lib<libraryname> assign libraryname to each object in tvk file
    -append           append symbol info to .tvk file (default overwrite)
    -<n>              n levels of recursion (default complete)

   @file          response file, containing a list of options and files
    -=<name>      specifies output file name
    -v0           no console output
    -v1           prints source file name and errors
    -v2           status line for each file (default)
    -v3           additional info

Examples: 
    Find definition of and references to symbol abortmessage:
        tolvik -sabortmessage -ref -def libqvo.a
    Find all symbols defined in files key.o and remkey.o within library:
        tolvik -fkey.o -fremkey.o -def libqvo.a
    List files linked in by symbol joystick in pre-built symbol file:
        tolvik -sjoystickn -links symbols.tvk=report.txt
    List files brought in if init.o linked, checking info in all .obj files:
        tolvik -finit.o -links *.obj
EOF
for one in -h '?' -? -v3 -H3 --help; do
    run "$one" name
    [ "$one" = -v3 ] && run -v
    expect_status 0
    expect_out <"$STATE/full"
done

# Above 3 the usage line alone; at 0 nothing.
run -v5
expect_out <<EOF
$short
EOF
run -v0
expect_silence

run --version name
expect_status 0
expect_out <<EOF
$banner
EOF

# Help on an option; a built-in one with a value shows that as well.
run -x? name
expect_out <<EOF
$short
EOF
run -sort? name
expect_out <<EOF
$short
Numerical Option sort names = 0. Valid range is 0..7
EOF
run '-?links' name
expect_out <<EOF
$short
EOF
expect_status 0
expect_files
