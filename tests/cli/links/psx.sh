# The PlayStation importer knows names without types or sizes.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
import psx engine.lib
knows 'config defaults memory mixer music notes text' 'source=audio.music.c,0' \
    define=music_play,UNKNOWN,GLOBAL,0 define=note_steps,UNKNOWN,GLOBAL,0
