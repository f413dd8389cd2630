# The SGI importer knows functions and data, and names the source as a symbol.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
import sgi libengine.a
knows 'config defaults memory mixer music notes text' define=music.c,FILE,LOCAL,0 \
    'define=music_play,FUNCTION,GLOB,[1-9][0-9]*' 'define=note_steps,DATA,GLOB,[1-9][0-9]*'
