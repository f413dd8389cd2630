# The search options reach the search: names without an extension show what was found.

mkdir -p src/deep lib
for name in src/n10 src/n2 src/deep/n1 lib/n3; do : >$name; done
saw() {
    for name in "$@"; do echo "tolvik: ERROR: no file extension for '$name'"; done >"$STATE/names"
    expect_err <"$STATE/names"
    expect_out </dev/null
}
run -v1 'src/n*' -sort
saw src/n2 src/n10
run -v1 -sort -r 'n?' 'n10'
saw lib/n3 src/n2 src/n10 src/deep/n1
run -v1 -sort '-rsrc;lib' 'n*'
saw lib/n3 src/n2 src/n10
run -v1 -sort -r 'n?' ';' -v1 'n*'
expect_has err "'n*'"
