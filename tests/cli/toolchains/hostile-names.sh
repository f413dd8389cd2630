# Members whose names are made to run or overwrite something: every type imports them all, runs and
# creates nothing beyond its own temporary names, and leaves the directory as it was.

# pack LIBRARY OBJECT NAMES...: a library that holds the object under each of the names, as the
# archive format allows and no archiver would write.
pack() {
    library=$1
    object=$2
    shift 2
    for name in "$@"; do printf '%s/\n' "$name"; done >"$STATE/names"
    size=$(wc -c <"$object")
    {
        printf '!<arch>\n'
        header // "$(wc -c <"$STATE/names")"
        cat "$STATE/names"
        offset=0
        for name in "$@"; do
            [ $(($(wc -c <"$STATE/names") % 2)) = 0 ] || [ $offset != 0 ] || printf '\n'
            header "/$offset" "$size"
            cat "$object"
            [ $((size % 2)) = 0 ] || printf '\n'
            offset=$((offset + ${#name} + 2))
        done
    } >"$library"
}

header() { printf '%-16s%-12s%-6s%-6s%-8s%-10s`\n' "$1" 0 0 0 644 "$2"; }

compile() { clang "--target=$1" -Os -ffreestanding -c "$STATE/probe.c" -o "$STATE/$2.o"; }

echo 'int probe(void) { return 1; }' >"$STATE/probe.c"
compile i686-pc-windows-msvc pc
compile powerpc-unknown-elf gc
compile mips-unknown-elf sgi
compile mips64el-unknown-elf ps2
printf '%s\n' 'source C:\LIB\PROBE.C:' 'block 0 24' 'define 0 probe' |
    "$TOLVIK_BUILD/examples/psx-object" "$STATE/psx.o"

long=$(printf '%0200d' 7).o
echo precious >escape.o
mkdir inner
cd inner
for type in pc gc sgi psx ps2; do
    library=probe.a
    case $type in pc | psx) library=probe.lib ;; esac
    pack "$library" "$STATE/$type.o" 'a;touch owned;.o' '$(touch owned).o' '`touch owned`.o' \
        "it's \"two\" words.o" -x.o @y.o '>owned.o' '&|<.o' Mixed.Case.O.o '*.o' "$long"
    run "-t$type" -nologo -sall "$library"
    expect_status 0
    grep '^\[' probe.tvk | tr '[:upper:]' '[:lower:]' | sort >seen # sgi keeps the case
    same "members of $type" seen <<END
[\$(touch owned).o]
[&|<.o]
[*.o]
[-x.o]
[$long]
[>owned.o]
[@y.o]
[\`touch owned\`.o]
[a;touch owned;.o]
[it's "two" words.o]
[mixed.case.o.o]
END
    [ "$(grep -c '^define=_*probe,' probe.tvk)" = 11 ] || fail "$type: not eleven definitions"
    rm seen
    expect_files "$library" probe.tvk
    rm "$library" probe.tvk
done

# A name that leads out of the directory is cut to its last part.
for type in pc psx ps2; do
    library=probe.lib
    [ $type != ps2 ] || library=probe.a
    pack $library "$STATE/$type.o" ../../escape.o ../escape.o '..\escape.o' "$(pwd)/owned.o" ..
    run "-t$type" -nologo -v0 -sall $library
    grep '^\[' probe.tvk | sort >seen
    same "members of $type" seen <<'END'
[escape.o]
[escape~3.o]
[escape~4.o]
[owned.o]
END
    rm seen
    expect_files $library probe.tvk
    rm $library probe.tvk
done
# The system's ar gives up at some of them, but writes nothing elsewhere either.
pack probe.a "$STATE/gc.o" first.o ../../escape.o sub/x.o "$(pwd)/owned.o"
run -tgc -nologo -v0 -sall probe.a
expect_files probe.a probe.tvk
cd ..
rm -r inner
expect_files escape.o
expect_file escape.o <<'END'
precious
END
