# The example library, compiled for each type: the same objects come along with a function, and what
# a type cannot know is missing: gc the members that only data bring.
EXAMPLE_TOOLS=$TOLVIK_BUILD/examples
export EXAMPLE_TOOLS
for type in pc gc sgi psx ps2; do
    library=libengine.a
    case $type in pc | psx) library=engine.lib ;; esac
    "$TOLVIK_SOURCE/script/example-library" "a $type" $type
    cd "a $type"
    run "-t$type" -nologo -smusic_play -links $library
    expect_status 0
    sed -n '/^LINKS IN/,/Total/s/^ *\([a-z]*\)\.[a-z]* .*/\1/p' "$STATE/out" | sort | tr '\n' ' ' >seen
    case $type in
    gc) printf 'config memory mixer music text ' ;;
    *) printf 'config defaults memory mixer music notes text ' ;;
    esac >expected
    same "what comes along for $type" seen <expected
    symbols=$(ls *engine.tvk)
    [ "$(grep -c '^\[' $symbols)" = 51 ] || fail "$type: not 51 objects"
    # Where the type knows sources and functions, they are the source's own.
    case $type in
    pc) set -- music.c,0 _music_play,FUNCTION,GLOBAL,0 _note_steps,FUNCTION,GLOBAL,0 ;;
    gc) set -- music.c music_play,FUNCTION,GLOBAL,[1-9] platform_write,FUNCTION,GLOBAL,[1-9] ;;
    sgi) set -- '' music_play,FUNCTION,GLOB,[1-9] note_steps,DATA,GLOB,[1-9] ;;
    psx) set -- 'audio.music.c,0' music_play,UNKNOWN,GLOBAL,0 note_steps,UNKNOWN,GLOBAL,0 ;;
    ps2) set -- ps2/audio/music.c music_play,FUNCTION,GLOBAL,[1-9] note_steps,DATA,GLOBAL,[1-9] ;;
    esac
    [ -z "$1" ] || grep -q "^source=$1\$" $symbols || fail "$type: no source $1"
    grep -q "^define=$2" $symbols && grep -q "^define=$3" $symbols || fail "$type: no $2, $3"
    # A weak reference brings nothing, so none is known.
    ! grep -q 'refer=_*profiler_mark' $symbols || fail "$type: refers to profiler_mark"
    ! ls | grep -q tvk0 || fail "$type: leaves temporary files"
    cd ..
done
