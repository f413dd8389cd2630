# A report that cannot be written whole gives one message.
for i in $(seq 4000); do
    printf '[file%d.o]\ndefine=function%d,FUNCTION,GLOBAL,4\nrefer=function%d\nsize=16\n\n' \
        "$i" "$i" $((i + 1))
done >chain.tvk
TOLVIK_UNLIMITED=$TOLVIK
cat >limited <<EOT
#!/bin/sh
ulimit -f 100
exec $TOLVIK_UNLIMITED "\$@"
EOT
chmod +x limited
TOLVIK=./limited
run -v0 -links chain.tvk=report.txt
expect_err <<'EOT'
tolvik: ERROR: could not write the report 'report.txt'
EOT
expect_files chain.tvk limited report.txt
rm report.txt

TOLVIK=$TOLVIK_UNLIMITED
# A reader that goes away.
$TOLVIK -v0 -links chain.tvk 2>"$STATE/err" | head -n 1 >/dev/null
expect_err <<'EOT'
tolvik: ERROR: could not write the report to standard output
EOT
# A full device.
$TOLVIK -v0 -sfunction1 chain.tvk=/dev/full 2>"$STATE/err"
expect_err <<'EOT'
tolvik: ERROR: could not write the report '/dev/full'
EOT
# A pipe cannot be positioned, by whatever name: the total follows the list.
$TOLVIK -v0 -ffile3999.o -links chain.tvk=/dev/stdout | cat >"$STATE/out"
expect_has out "Links 32 bytes total"
mkfifo pipe
cat pipe >"$STATE/out" &
$TOLVIK -v0 -ffile3999.o -links chain.tvk=pipe
wait
expect_has out "Links 32 bytes total"
# Help that is lost says so; its status is that of help.
run_closed() {
    status=0
    "$@" 2>"$STATE/err" || status=$?
    echo "$status" >"$STATE/status"
    expect_status 0
    expect_err <<'EOT'
tolvik: ERROR: could not write to standard output
EOT
}
run_closed $TOLVIK -h >/dev/full
run_closed $TOLVIK -h >&-
run_closed $TOLVIK -history >/dev/full
