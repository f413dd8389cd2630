# The commands, messages and records of every type, for a library and for a single object. What an
# object is in its listing is in tests/unit; here every listing is one short line or two.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH

# listing TYPE: an object's listing with a definition and a reference.
listing() {
    case $1 in
    gc)
        printf '\n1\n\nSYMBOL TABLE:\n'
        printf '00000000 g     F .text\t00000024 main__Fv\n00000000         *UND*\t00000000 put\n'
        ;;
    pc)
        printf '00A 00000000 SECT2  notype ()    External     |  _main@4\n'
        printf '00A 00000000 UNDEF  notype       External     |  put\n'
        ;;
    psx) printf '; \\LIB\\SRC\\A.C:\n; block addr=0 size=24\nXDEF _main\nXREF put\n' ;;
    ps2)
        printf '\n1\n\nSYMBOL TABLE:\n'
        printf '0000000000000000 g     F .text\t0000000000000024 main\n'
        printf '0000000000000000         *UND*\t0000000000000000 put\n\n'
        ;;
    *)
        printf 'lib.a[Pad.o]:\n[1] main 0 36 GLOB FUNC .text\n[2] put 0 0 GLOB OBJECT UNDEF\n'
        printf '[3] x 0 0 GLOB NOTYPE .text\n'
        ;;
    esac
}

# objects TYPE LIBRARY OBJECT: lib/LIBRARY with the members OBJECT and notes.txt, and src/OBJECT.
objects() {
    rm -rf ./* "$STATE/calls"
    mkdir lib src
    listing "$1" >"src/$3"
    echo x >src/notes.txt
    tar cf "lib/$2" -C src "$3" notes.txt
}

calls() {
    same "the calls" "$STATE/calls"
    rm "$STATE/calls"
}

objects gc game.a pad.o
run -tgc -v4 -libcore lib/game.a=game.tvk
calls <<'END'
tvk0000: ar [-x] [lib/game.a]
tvk0000: gc-objdump [-t] [pad.o]
END
expect_has out 'system(ar -x lib/game.a)'
expect_has out 'tolvik: extracting symbols from pad.o'
expect_hasnt out 'objdump'
expect_err <<'END'
tolvik: extracting files from lib/game.a
END
expect_file game.tvk <<'END'
[pad.o][core]
define=main,FUNCTION,GLOBAL,36
refer=put
size=36

END
expect_files game.tvk lib src
run -tgc -lib src/pad.o=game.tvk
calls <<'END'
src: gc-objdump [-t] [pad.o]
END
expect_err <<'END'
tolvik: WARNING: removing existing file 'game.tvk'
END

objects pc game.lib pad.obj
run -v4 lib/game.lib=game.tvk ';' -v0 -append "$PWD/src/pad.obj=game.tvk"
calls <<'END'
work: wlib [-d=tvk0000] [-x] [lib/game.lib]
tvk0000: dumpbin [/symbols] [/out:tvk0001.tmp] [pad.obj]
src: dumpbin [/symbols] [/out:tvk0001.tmp] [pad.obj]
END
expect_has out 'system(wlib -d=tvk0000 -x lib/game.lib)'
expect_file game.tvk <<'END'
[pad.obj]
define=_main,FUNCTION,GLOBAL,0
refer=put
size=0

[pad.obj]
define=_main,FUNCTION,GLOBAL,0
refer=put
size=0

END

objects psx game.lib pad.obj
: >src/a.c
run -tpsx -v4 lib/game.lib=game.tvk ';' -append "$PWD/lib/game.lib=game.tvk" ';' -append src/pad.obj=game.tvk
calls <<END
tvk0000: psylib [/x] [/q] [..lib/game.lib]
tvk0000: reverse [/nop] [/macro] [pad.obj]
tvk0000: psylib [/x] [/q] [$PWD/lib/game.lib]
tvk0000: reverse [/nop] [/macro] [pad.obj]
src: reverse [/nop] [/macro] [pad.obj]
END
expect_has out 'system(psylib /x /q ..\lib/game.lib)'
date=$(date -r src/a.c +%Y)$(printf %02d $(($(date -r src/a.c +%-m) - 1)))$(date -r src/a.c +%d)
for date in 0 0 "$date"; do
    printf '[pad.obj]\nsource=src\\a.c,%s\ndefine=_main,UNKNOWN,GLOBAL,0\nrefer=put\nsize=36\n\n' "$date"
done >"$STATE/records"
same game.tvk game.tvk <"$STATE/records"

objects ps2 game.a pad.o
run -tps2 -v4 lib/game.a=game.tvk ';' -append src/pad.o=game.tvk
calls <<'END'
tvk0000: ee-ar [x] [..lib/game.a]
tvk0000: ee-objdump [--syms] [--full-contents] [pad.o]
src: ee-objdump [--syms] [--full-contents] [pad.o]
END
expect_has out 'system(ee-ar x ..\lib/game.a)'
for once in 1 2; do
    printf '[pad.o]\ndefine=main,FUNCTION,GLOBAL,36\nrefer=put\nsize=36\n\n'
done >"$STATE/records"
same game.tvk game.tvk <"$STATE/records"

objects sgi game.a pad.o
cp src/pad.o lib/Game.a
run -tn64 -v4 lib/Game.a=game.tvk
calls <<'END'
work: elfdump [-t] [lib/Game.a]
END
expect_hasnt out 'system'
expect_err </dev/null
expect_file game.tvk <<'END'
[lib.a[Pad.o]]
define=main,FUNCTION,GLOB,36
refer=put
size=0

END
expect_files game.tvk lib src
