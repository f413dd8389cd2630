# Two imports in one directory wait for each other; a report waits for neither.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
tar cf lib.a a.o
mkfifo "$STATE/go"
STUB_SAY_DUMP='read -r word <"$STATE/go"' $TOLVIK -tgc lib.a=all.tvk >/dev/null 2>&1 &
(
    tries=200
    while [ $tries != 0 ] && ! grep -q waiting "$STATE/second"; do
        sleep 0.05
        tries=$((tries - 1))
    done
    [ -d tvk0000 ] || echo "no tvk0000" >"$STATE/lost"
    printf '[b.o]\ndefine=g,FUNCTION,GLOBAL,4\nsize=4\n' >b.tvk
    timeout 10 $TOLVIK -v1 -sg b.tvk >"$STATE/third" 2>&1 || true
    timeout 10 sh -c 'echo go >"$STATE/go"'
) 2>/dev/null &
while ! [ -d tvk0000 ]; do sleep 0.01; done
timeout 20 $TOLVIK -v1 -tgc -append lib.a=all.tvk >/dev/null 2>"$STATE/second" || fail "the second run ended"
wait
[ "$(cat "$STATE/second")" = 'tolvik: waiting for another run in this directory' ] ||
    fail "no message: $(cat "$STATE/second")"
[ ! -e "$STATE/lost" ] || fail "the other run's tvk0000 was removed"
grep -q '^g ' "$STATE/third" || fail "no report beside the import"
[ "$(grep -c '^size=4$' all.tvk)" = 2 ] || fail "not both records"
