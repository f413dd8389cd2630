# The PC importer knows functions and data: its LINKS IN are what GNU ld takes.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
import pc engine.lib
all_equal engine.lib ld -m i386pe
knows 'config defaults memory mixer music notes text' source=music.c,0 \
    define=_music_play,FUNCTION,GLOBAL,0 define=_note_steps,FUNCTION,GLOBAL,0
