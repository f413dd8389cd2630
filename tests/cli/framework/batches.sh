# ';' and '^&' end a batch: framework options start again from their defaults, the tool's own
# stay, except the link prefix and the library name.

none() {
    for name in "$@"; do echo "tolvik: ERROR: no file extension for '$name'"; done
}

run -v1 one ';' -v0 two '^&' -v1 three
expect_out </dev/null
none one two three >"$STATE/expected_err"
expect_err <"$STATE/expected_err"

# At the end of a word; inside one it is a name's own. Nothing behind the last is no batch.
run -v1 'a;' '-v1;' '-v1' 'b;c;;' 'd' '^&e' '-v0;'
expect_has err "'a'"
expect_has out 'USAGE: tolvik'
run -v1 'b;c;;' -v1 'd ;e' ',;'
none 'b;c' 'd ;e' >"$STATE/expected_err"
expect_err <"$STATE/expected_err"
expect_out </dev/null

# A batch without files asks for usage and ends the run before the next.
run -v1 one ';' -v1 ';' two
expect_has out 'USAGE: tolvik -=<output> -options [files]'
none one >"$STATE/expected_err"
expect_err <"$STATE/expected_err"

# One report, for the last batch's symbol file, with the symbols of all.
printf '[a.o]\ndefine=f,FUNCTION,GLOBAL,1\nsize=4\n' >a.tvk
printf '[b.o]\ndefine=g,FUNCTION,GLOBAL,1\nsize=5\n' >b.tvk
run -v1 -sf -ref a.tvk=a.txt ';' -v0 -sg -def b.tvk=b.txt
expect_err <<EOF
tolvik: symbol 'f' not found
EOF
expect_file b.txt <<EOF
g                                             b.o        0 refs
EOF
run -v0 -sg -def b.tvk ';' -v0 b.tvk=b.txt -- '-=no.txt'
expect_files a.tvk b.tvk b.txt
