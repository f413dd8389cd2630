# The PC importer knows functions and data: its LINKS IN are what GNU ld takes.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
all_equal pc pc engine.lib ld -m i386pe
