# Failures are reported in one message each and cost no other source its place.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
cp a.o b.o
tar cf lib.a a.o b.o
record='define=f,FUNCTION,GLOBAL,4
size=4
'

# No such source; a directory that cannot be entered by its name.
cp a.o 'no:a.o'
run -tgc -v1 none.o=all.tvk 'no:a.o'
expect_err <<'END'
tolvik: ERROR reading symbols from 'none.o'
END
expect_status 0
expect_file all.tvk </dev/null
rm 'no:a.o'

# An earlier listing goes, links unfollowed; a directory of its name ends the walk after the header.
ln -s b.o tvk0001.tmp
run -tgc -v1 a.o=all.tvk
expect_err </dev/null
expect_files a.o all.tvk b.o lib.a
cmp a.o b.o
mkdir tvk0001.tmp
run -tgc -v1 a.o=all.tvk ';' -v1 -tsgi -append a.o=all.tvk
expect_err <<'END'
tolvik: ERROR: couldn't open temp file for reading
tolvik: ERROR reading symbols from 'a.o'
END
expect_file all.tvk <<'END'
[a.o]
END
rmdir tvk0001.tmp

# A missing program: the shell reports it, and from -v3 on tolvik too.
(
    PATH=$STATE:/usr/bin:/bin
    run -tgc -v3 a.o=new.tvk ';' -v1 -tpc -append a.o=new.tvk ';' -v1 -tsgi -append a.o=new.tvk
    expect_err <<'END'
sh: 1: gc-objdump: not found
tolvik: ERROR: the dump of 'a.o' failed
sh: 1: dumpbin: not found
tolvik: ERROR: couldn't open temp file for reading
sh: 1: elfdump: not found
END
    expect_file new.tvk <<'END'
[a.o]
size=0

[a.o]
END
    rm new.tvk
)

# A dump or extractor that fails is not judged, and does not get the listing before it.
export STUB_SAY_DUMP='case $last in b.o) exit 1 ;; esac'
run -tgc -v1 lib.a=all.tvk
expect_err </dev/null
expect_file all.tvk <<END
[a.o]
$record
[b.o]
size=0

END
unset STUB_SAY_DUMP
STUB_SAY_EXTRACT='exit 1' run -tgc -v3 lib.a=all.tvk
expect_has err "tolvik: ERROR: extracting files from 'lib.a' failed"
expect_file all.tvk </dev/null

# Help and history leave a temporary directory alone. Members stay until the next library or the
# end, and a source there is like any other; only what is in a directory inside it survives.
mkdir -p tvk0000/sub
cp a.o tvk0000/c.o
: >tvk0000/sub/keep
for option in -h -history --version --help -zz; do
    run "$option"
    [ -f tvk0000/c.o ] || fail "$option removed tvk0000"
done
run -tgc -v1 tvk0000/c.o=all.tvk
expect_file all.tvk <<END
[c.o]
$record
END
[ -f tvk0000/sub/keep ] && [ ! -e tvk0000/c.o ] || fail "not the entries of tvk0000 were removed"
run -tgc -v1 lib.a=all.tvk
expect_has err "tolvik: ERROR reading symbols from 'lib.a'"
rm -r tvk0000
run -tgc -v1 lib.a=all.tvk ';' -v1 -tgc 'tvk0000/*.o=y.tvk'
[ "$(grep -c '^\[' y.tvk)" = 2 ] || fail "members were no sources"
rm y.tvk

# A temporary directory that is a file or a link is never followed.
mkdir elsewhere && : >elsewhere/keep && ln -s elsewhere tvk0000
run -tgc -v1 lib.a=all.tvk
expect_err <<'END'
tolvik: ERROR reading symbols from 'lib.a'
END
[ -f elsewhere/keep ] || fail "cleanup followed a link"
rm -r tvk0000 elsewhere

# No report over what the batch reads, or over symbols, whatever the name or the link: it goes to
# standard output. The report of a batch that was skipped is none.
ln b.o hard.txt
ln -s all.tvk soft.txt
for report in b.o ./b.o hard.txt soft.txt ./all.tvk; do
    rm -f all.tvk && run -tgc -v1 -sf "a.o=$report" a.o b.o
    [ "$report" != ./all.tvk ] || { mv a.tvk all.tvk && run -tgc -v1 -sf -append "a.o=$report"; }
    [ "$report" = soft.txt ] || expect_err <<END
tolvik: ERROR: no report over '$report', which holds objects or symbols
END
    cmp a.o b.o
done
rm -f hard.txt soft.txt ./*.tvk
mkdir old.tvk
printf '[a.o]\n%s\n' "$record" >a.tvk
run -v1 -sf a.tvk ';' -tgc -v1 old.o
expect_err <<'END'
tolvik: ERROR: could not remove 'old.tvk'
END
expect_out </dev/null
rm -r old.tvk a.tvk

# A symbol file that cannot be opened, or not be written whole.
ln -sf /dev/full full.tvk
run -tgc -v1 -append a.o=none/all.tvk ';' -v1 -append a.o=full.tvk
expect_err <<'END'
tolvik: ERROR reading symbols from 'a.o'
tolvik: ERROR: could not write 'full.tvk'
tolvik: ERROR reading symbols from 'a.o'
END
rm full.tvk

# Memory that runs out at any point: everything is there or nothing is.
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
