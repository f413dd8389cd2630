# The PlayStation 2 importer knows functions and data: its LINKS IN are what GNU ld takes.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
import ps2 libengine.a
all_equal libengine.a mips64el-linux-gnuabi64-ld
knows 'config defaults memory mixer music notes text' source=ps2/audio/music.c \
    'define=music_play,FUNCTION,GLOBAL,[1-9][0-9]*' 'define=note_steps,DATA,GLOBAL,[1-9][0-9]*'
