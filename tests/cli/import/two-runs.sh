# Two runs in one directory do not disturb each other, and each does its whole work.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
tar cf lib.a a.o
mkfifo "$STATE/go"

# start ARGS...: a run whose dump program waits until something is written into $STATE/go.
start() {
    STUB_SAY_DUMP='echo started >"$STATE/started"; read -r word <"$STATE/go"' \
        $TOLVIK "$@" >"$STATE/first" 2>&1 &
    while [ ! -e "$STATE/started" ]; do sleep 0.01; done
    rm "$STATE/started"
}

# second ARGS...: a run beside it, which says that it waits before the first one goes on.
second() {
    rm -f "$STATE/err"
    (
        while ! grep -q 'waiting for another run' "$STATE/err" 2>/dev/null; do sleep 0.01; done
        [ -d tvk0000 ] || echo "no tvk0000" >"$STATE/lost"
        echo go >"$STATE/go"
    ) &
    run "$@"
    wait
    expect_has err 'tolvik: waiting for another run in this directory'
    [ ! -e "$STATE/lost" ] || fail "the other run's tvk0000 was removed"
}

# Both build the same symbol file.
record='define=f,FUNCTION,GLOBAL,4
size=4
'
start -tgc lib.a=all.tvk
second -tgc -append lib.a=all.tvk
expect_file all.tvk <<END
[a.o]
$record
[a.o]
$record
END

# From two directories on one object: the second run leaves what the first one has there alone.
mkdir one two obj
cp a.o obj/A.o
(
    cd one
    start -tgc ../obj/A.o=all.tvk
    cd ../two
    run -tgc -v1 ../obj/A.o=all.tvk
    expect_err </dev/null
    [ "$(ls ../obj)" = "$(printf 'A.o\na.o\ntvk0001.tmp')" ] || fail "during: $(ls ../obj)"
    echo go >"$STATE/go"
    wait
)
[ "$(ls obj)" = A.o ] || fail "afterwards: $(ls obj)"
grep -q '^size=4' one/all.tvk && cmp one/all.tvk two/all.tvk || fail "not both whole"

# A run that does neither leaves the directory of the running one alone.
mkdir tvk0000
(
    flock 9
    run -history
    [ -d tvk0000 ] || fail "tvk0000 was removed under the lock"
) 9<.
