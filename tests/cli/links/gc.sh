# The GameCube importer knows functions: members that only data bring are missing.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
import gc libengine.a
knows 'config memory mixer music text' source=music.c \
    'define=music_play,FUNCTION,GLOBAL,[1-9][0-9]*' \
    'define=platform_write,FUNCTION,GLOBAL,[1-9][0-9]*'
