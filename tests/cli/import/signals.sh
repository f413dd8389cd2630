# A signal during an import ends the run as by that signal and leaves whole records only, no link
# beside the user's object, and nothing that the next run stumbles over.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
cp a.o B.o
tar cf lib.a a.o B.o

# ended STATUS ARGS...: the run, which STUB_SAY_DUMP interrupts, ends with the status.
ended() {
    expected=$1
    shift
    rm -f all.tvk
    run "$@"
    expect_status "$expected"
    expect_hasnt err ERROR
    expect_files B.o a.o all.tvk lib.a
    ! grep -q B.o all.tvk && ! grep -q b.o all.tvk || fail "a record was not taken back"
}

for signal in 1 2 3 15; do
    export STUB_SAY_DUMP="case \$last in b.o) kill -$signal \$PPID; exec sleep 60 ;; esac"
    ended $((128 + signal)) -tgc lib.a=all.tvk
    ended $((128 + signal)) -tgc B.o=all.tvk
done
export STUB_SAY_DUMP='case $last in b.o) kill -INT $$ ;; esac'
ended 130 -tgc lib.a=all.tvk
ended 130 -tgc B.o=all.tvk
# A pipe and a script end with all that they started.
export STUB_SAY_DUMP='echo $$ >"$STATE/pid"
kill -TERM "$(cut -d " " -f 4 /proc/$PPID/stat)"
sleep 60 & echo $! >>"$STATE/pid"; wait'
rm all.tvk
run -tsgi a.o=all.tvk
expect_status 143
expect_files B.o a.o lib.a
while read -r pid; do
    tries=100
    while [ $tries != 0 ] && grep -q '^State:.[^Z]' "/proc/$pid/status" 2>/dev/null; do
        sleep 0.05
        tries=$((tries - 1))
    done
    [ $tries != 0 ] || fail "process $pid goes on"
done <"$STATE/pid"
unset STUB_SAY_DUMP
run -tgc lib.a=all.tvk
[ "$(grep -c ^size all.tvk)" = 2 ] || fail "the next run is not whole"
