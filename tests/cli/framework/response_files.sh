# Response files from the command line, expanded where they stand.

saw() {
    for name in "$@"; do echo "tolvik: ERROR: no file extension for '$name'"; done >"$STATE/names"
    expect_err <"$STATE/names"
    expect_out </dev/null
}

printf '; options\n-v1\n;-v9\none\ttwo\r\n"th ree"' >list
run first @list last
saw first one two 'th ree' last
run @list '&list'
saw one two 'th ree' one two 'th ree'

# Parameters, variables, percent signs, nested files and the batches that they end.
printf -- '-v1 %%1-%%2 50%%%%%%3 %%USER_DIR%%/x @inner(%%1); [%%1]' >build
printf 'in%%1' >inner
USER_DIR=dir
export USER_DIR
run '@build(debug,obj,(=,))' @list
saw debug-obj '50%(=,)' dir/x 'in%1' debug one two 'th ree'
run '@build{a,b,c};' '-v1' next
saw a-b '50%c' dir/x 'in%1' a next
run '"@list"' '@list;;' -v1 four
saw one two 'th ree' one two 'th ree' four

# A variable of the file's name is taken instead.
list='-v1 variable'
export list
run @list
saw variable
unset list

# What cannot be expanded ends the run, each with its reason.
printf '%%2' >needs
printf 'a @missing b' >nested
fails() {
    argument=$1
    run noext "$argument"
    expect_status 0
    expect_err </dev/null
    expect_out
}
fails '@needs(x)' <<EOF
brax - PARAMETER %2 NOT GIVEN TO RESPONSEFILE.
WARNING - could not expand file <needs>
EOF
fails '@list(a,b' <<EOF
brax - MISSING CLOSING BRACE ON 'list(a,b'.
WARNING - could not expand file <list>
EOF
fails '@nested' <<EOF
WARNING - could not expand file <missing>
EOF
TOLVIK_OPTS=-v0 run '@list(a,b' noext
expect_has out "brax - MISSING CLOSING BRACE ON 'list(a,b'."

# One that names itself through another, by another path, is named once.
printf '@./b' >a
printf '@self2 @a' >b
ln -s a self2
fails '@a' <<EOF
brax - RESPONSE FILE 'self2' NAMES ITSELF.
WARNING - could not expand file <a>
EOF

# Any byte in the file's name, and zero bytes in it.
odd=$(printf 'b\303\244r x')
printf -- '-v1 a\0b' >"$odd"
run "@$odd"
saw a b
