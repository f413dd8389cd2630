# Texts beyond the framework's limits are refused with one line that shows their start, and
# nothing is done; up to the limit they work.

long() { printf "%${1}s" '' | tr ' ' "${2:-x}"; }
start=$(long 40)

# A field of 2,047 characters, in each place where one can stand.
run -v1 noext "$(long 2047)"
expect_err <<EOF
tolvik: ERROR: no file extension for 'noext'
tolvik: ERROR: no file extension for '$(long 2047)'
EOF
refused() {
    run noext "$@" last
    expect_status 0
    expect_err </dev/null
    [ "$(grep -c 'TOO LONG' "$STATE/out")" = 1 ] || fail "not one refusal: $(cut -c 1-80 "$STATE/out")"
}
long=$(long 2048)
for argument in "$long" "a=$long" "$long=a" "-=$long" "=$long" "-.$long" "-r$long" "-?$long" "@$long" \
    "@list($long)" "(a$long" "-help$long" "-version$long" "my $long" "-v$long"; do
    refused "$argument"
done
refused "$long" "$long"
expect_out <<EOF
brax - FIELD TOO LONG <$start...>
EOF

# The tool's own texts: what does not fit is ignored, the rest goes on.
run -v1 "-l$(long 2047)" "-lib$(long 2047)" "-s$(long 5000)" noext
expect_err <<EOF
tolvik: ERROR: no file extension for 'noext'
EOF
run -v1 "-l$(long 2048)" "-lib$(long 2048)" noext
expect_err <<EOF
tolvik: ERROR: link path too long, ignoring '$start...'
tolvik: ERROR: library name too long, ignoring '$start...'
tolvik: ERROR: no file extension for 'noext'
EOF

# The option text: 4,194,303 characters fit, no more.
awk 'BEGIN { printf "-v1 "; for (i = 0; i < 4194296; i += 2) printf i == 2000000 ? "n " : ", " }' >fits
run @fits
expect_err <<EOF
tolvik: ERROR: no file extension for 'n'
EOF
run @fits more
expect_out <<EOF
brax - OPTION TEXT TOO LONG <more...>
EOF
expect_err </dev/null
printf ,,,, >>fits
run -v1 noext @fits
expect_out <<EOF
brax - OPTION TEXT TOO LONG <fits...>
WARNING - could not expand file <fits>
EOF
expect_err </dev/null

# A hundred thousand names in one batch.
awk 'BEGIN { print "-v1"; for (i = 0; i < 100000; ++i) print i % 3 ? "name" i : "pair=" i }' >names
run @names
expect_out </dev/null
[ "$(wc -l <"$STATE/err")" = 100000 ] || fail "$(wc -l <"$STATE/err") names"
