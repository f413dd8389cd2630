# What fails says so, leaves whole records only, and costs no other source its place.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
cp a.o b.o
tar cf lib.a a.o b.o
record='define=f,FUNCTION,GLOBAL,4
size=4
'

# No such source; a source that cannot be in a folder of that name.
run -tgc none.o=all.tvk ';' -append nofolder/../a.o=all.tvk
expect_err <<'END'
tolvik: ERROR reading symbols from 'none.o'
tolvik: ERROR reading symbols from 'nofolder/../a.o'
END
expect_status 0
expect_files a.o b.o lib.a

# Sources that cannot be read; root reads every file.
mkdir d.o
mkfifo p.o
bad='none.o d.o p.o'
[ "$(id -u)" = 0 ] || bad="$bad u.o"
: >u.o
chmod 0 u.o
run -tgc -v1 $bad
printf "tolvik: ERROR reading symbols from '%s'\n" $bad >"$STATE/said"
expect_err <"$STATE/said"
rm -rf d.o p.o u.o

# What has the temporary file's name is an earlier listing, and goes, links unfollowed. Where a
# directory has it, the listing goes elsewhere; with no place at all the walk ends behind the header.
for type in gc sgi; do
    ln -s b.o tvk0001.tmp
    (trap '' CHLD && run -t$type -v1 a.o=all.tvk)
    expect_err </dev/null
    expect_files a.o all.tvk b.o lib.a
    cmp a.o b.o
done
mkdir tvk0001.tmp
run -tgc -v1 a.o=all.tvk
expect_err </dev/null
expect_file all.tvk <<END
[a.o]
$record
END
: >tvk0000
run -tgc -v1 a.o=all.tvk
expect_err <<'END'
tolvik: ERROR: couldn't open temp file for reading
END
expect_file all.tvk <<'END'
[a.o]
END
run -tsgi -v1 a.o=all.tvk
expect_err <<'END'
tolvik: ERROR: 'tvk0001.tmp' is in the way or cannot be made
tolvik: ERROR reading symbols from 'a.o'
END
rm -r tvk0000 tvk0001.tmp

# What a killed run left is ours, also a link, known by its text.
mkdir left
cp a.o left/B.o
ln -s .//./B.o left/b.o
cp lib.a left/tvk0001.tmp
run -tgc -v1 left/B.o=all.tvk
expect_err </dev/null
[ "$(ls left)" = B.o ] || fail "left: $(ls left)"
chmod 555 left # where nothing can be made
run -tgc -v1 -append left/B.o=all.tvk
expect_err </dev/null
chmod 755 left
[ "$(grep -c ^size all.tvk)" = 2 ] || fail "not read beside a killed run's files"
rm -r all.tvk left

# A program that is missing: the shell says so. One that writes its own file leaves none.
(
    PATH=$STATE:/usr/bin:/bin
    run -tgc a.o=all.tvk
    expect_err <<'END'
sh: 1: gc-objdump: not found
tolvik: ERROR: the dump of 'a.o' failed
END
    run -tpc -v1 a.o=all.tvk
    expect_err <<'END'
sh: 1: dumpbin: not found
tolvik: ERROR: couldn't open temp file for reading
END
    expect_file all.tvk <<'END'
[a.o]
END
    run -tsgi a.o=sgi.tvk
    expect_err <<'END'
sh: 1: elfdump: not found
END
    expect_files a.o all.tvk b.o lib.a sgi.tvk
)

# A dump that fails, is killed or prints nothing does not get the listing before it.
for end in 'exit 1' 'kill -9 $$' 'exit 0'; do
    export STUB_SAY_DUMP="case \$last in b.o) $end ;; esac"
    run -tgc -v1 lib.a=all.tvk
    case $end in
    'exit 0') expect_has err "tolvik: WARNING: the dump of 'b.o' is empty" ;;
    *) expect_has err "tolvik: ERROR: the dump of 'b.o' failed" ;;
    esac
    [ "$(wc -l <"$STATE/err")" = 1 ] || fail "$end: not one message"
    expect_file all.tvk <<END
[a.o]
$record
[b.o]
size=0

END
done
unset STUB_SAY_DUMP

# An extractor that is killed.
STUB_SAY_EXTRACT='kill -9 $$' run -tgc -v1 lib.a=all.tvk
expect_err <<'END'
tolvik: ERROR: extracting files from 'lib.a' failed
END
expect_file all.tvk </dev/null

# What lies in tvk0000 is no source: of the batch before, of a killed run.
mkdir tvk0000
cp a.o tvk0000/old.o
run -tgc -v1 lib.a=all.tvk ';' -v1 -r '*.o=y.tvk'
expect_err </dev/null
sort y.tvk | grep '^\[' >"$STATE/seen"
printf '[a.o]\n[b.o]\n' | cmp - "$STATE/seen"

# No report into symbols, however the path hides them.
cp y.tvk kept.tvk
run -tgc -v1 -append a.o=./y.tvk
expect_err <<'END'
tolvik: ERROR: no report into the symbol file './y.tvk'
END
cmp y.tvk kept.tvk
rm -f *y.tvk kept.tvk a.tvk

# One line of 10 MB and bytes of every value are read past.
export STUB_SAY_DUMP='case $last in b.o) head -c 10000000 /dev/zero | tr "\\0" x; exec head -c 100000 /bin/sh ;; esac'
run -tgc -v1 lib.a=all.tvk
expect_err </dev/null
[ "$(grep -c ^size= all.tvk)" = 2 ] || fail "a record is missing behind a strange listing"
unset STUB_SAY_DUMP

# A temporary directory that cannot be made.
: >tvk0000
run -tgc lib.a=all.tvk
expect_err <<'END'
tolvik: WARNING: removing existing file 'all.tvk'
tolvik: extracting files from lib.a
tolvik: ERROR reading symbols from 'lib.a'
END
rm tvk0000
mkdir elsewhere && : >elsewhere/keep && ln -s elsewhere tvk0000
run -tgc lib.a=all.tvk
expect_has err "tolvik: ERROR reading symbols from 'lib.a'"
[ -f elsewhere/keep ] || fail "cleanup followed a link"
rm -r tvk0000 elsewhere

# An old symbol file that cannot be removed is neither touched nor reported on, and the report of
# the batch before does not go into a source of the batch that is passed over.
mkdir old.tvk
run -tgc -v1 old.o=old.tvk ';' -v1 old.o
expect_err <<'END'
tolvik: ERROR: could not remove 'old.tvk'
tolvik: ERROR: could not remove 'old.tvk'
END
cp a.o old.o
printf '[a.o]\n%s\n' "$record" >a.tvk
run -v1 -sf a.tvk ';' -tgc -v1 old.o
grep -q '^f  *a.o' "$STATE/out" || fail "no report of the batch before"
cmp a.o old.o
rm -r old.tvk old.o a.tvk

# A symbol file that cannot be opened, or not be written whole.
run -tgc a.o=none/all.tvk
expect_has err "tolvik: ERROR reading symbols from 'a.o'"
ln -sf /dev/full full.tvk
run -tgc -append a.o=full.tvk
expect_err <<'END'
tolvik: ERROR: could not write 'full.tvk'
tolvik: ERROR reading symbols from 'a.o'
END
rm full.tvk
awk 'BEGIN { for (i = 0; i < 1500; i++) printf "define=of_an_object_imported_before%d\n", i
    printf "size=1" }' >all.tvk
cp all.tvk "$STATE/expected.tvk"
printf '\n[a.o]\n%s\n' "$record" >>"$STATE/expected.tvk"
awk 'BEGIN { for (i = 0; i < 1000; i++)
    printf "00000000 g     F .text\t00000004 function%d\n", i }' >>b.o
(
    ulimit -f 128 # blocks of 512 bytes
    run -tgc -append a.o=all.tvk ';' -append b.o=all.tvk
    expect_err <<'END'
tolvik: ERROR: could not write 'all.tvk'
tolvik: ERROR reading symbols from 'b.o'
END
)
same all.tvk all.tvk <"$STATE/expected.tvk"
expect_files a.o all.tvk b.o lib.a sgi.tvk

# Memory that runs out at any point: everything is there or nothing is.
cp a.o b.o
blocks=0
while
    rm -f all.tvk
    GALLOCMAX=$blocks run -tgc lib.a=all.tvk
    [ ! -s all.tvk ]
do
    expect_status 0
    blocks=$((blocks + 1))
done
[ "$blocks" -gt 3 ] || fail "memory never ran out"
expect_file all.tvk <<END
[a.o]
$record
[b.o]
$record
END
