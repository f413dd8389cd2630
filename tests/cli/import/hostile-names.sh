# Names that mean something to the shell or to the programs reach them as they are, run nothing and
# create nothing.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
line='
'
long=$(printf '%0196d' 0)
mkdir src
(
    cd src
    for name in 'a;touch owned;.o' '$(touch owned).o' '`touch owned`.o' 'a b.o' '$HOME.o' '-x.o' \
        '@x.o' '~root.o' "it's.o" '"q".o' '*.o' 'a|b.o' 'a>owned.o' 'a&.o' '#.o' "a${line}b.o" \
        'a]b.o' 'a\b.o' 'a.b.c.o' "$(printf '\351\200.o')" "$long.o"; do
        printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >"./$name"
    done
    for library in plain.a 'lib dir/game $x;.a'; do
        mkdir -p "../$(dirname -- "$library")"
        tar cf "../$library" --no-unquote -- *
    done
)
for library in ./*.a lib*/*.a; do
    library=${library#./}
    for type in gc ps2; do
        rm -f "$STATE/calls"
        run -t$type "-libl" "\"$PWD/$library\"=$type.tvk" ';' -append "-libl" "\"$library\"=$type.tvk"
        expect_hasnt err 'ERROR'
        [ "$(grep -c '^\[.*\]\[l\]$' $type.tvk)" = 40 ] || fail "$type $library: not all records"
        [ "$(grep -c '^size=' $type.tvk)" = 42 ] || fail "$type $library: not all sizes"
    done
done
grep -v -e ' ee-ar ' "$STATE/calls" | sed 's/.*\[\(.*\)\]$/\1/' >"$STATE/seen"
grep -qx -e './-x.o' "$STATE/seen" || fail "-x.o is an option"
for name in '*.o' 'a;touch owned;.o' '$(touch owned).o' './@x.o' './~root.o'; do
    grep -qxF -e "$name" "$STATE/seen" || fail "$name did not arrive"
done
expect_files gc.tvk 'lib dir' plain.a ps2.tvk src

# A member of the library's own name is not written through the link that leads to it.
rm -rf ./* && mkdir "$STATE/bin" dir
printf '#!/bin/sh\nexec cat "$2"\n' >"$STATE/bin/gc-objdump"
chmod +x "$STATE/bin/gc-objdump"
PATH=$STATE/bin:/usr/bin:/bin
head -c 1000000 /dev/zero >own.a
printf '\n1\n\nSYMBOL TABLE:\n' >pad.o
ar -rc dir/own.a own.a pad.o
mv dir/own.a .
cp own.a "$STATE/own.a"
rm pad.o
run -tgc own.a
cmp own.a "$STATE/own.a" || fail "the library was written to"
expect_files dir own.a own.tvk
