# The PlayStation 2 importer knows functions and data: its LINKS IN are what GNU ld takes.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
all_equal ps2 ps2 libengine.a mips64el-linux-gnuabi64-ld
