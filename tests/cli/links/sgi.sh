# The SGI importer knows functions and data: its LINKS IN are what GNU ld takes.
. "$TOLVIK_SOURCE/tests/cli/links/linker"
import sgi libengine.a
knows 'config defaults memory mixer music notes text' \
    'define=music_play,FUNCTION,GLOB,[1-9][0-9]*' 'define=note_steps,DATA,GLOB,[1-9][0-9]*'
"$TOLVIK_SOURCE/script/example-library" .
run -tsgi -under -nologo -sall -links libengine.a
all_equal libengine.a ld -m elf_i386
