# An unknown option: told and the end of the run, unless the verbosity is 0, where the names in
# front of it are still worked on.

for verbose in 1 2 4; do
    run one -v$verbose -xyz two
    expect_status 0
    expect_out <<EOF
brax - 3 UNKNOWN OPTION <-xyz>
EOF
    expect_err </dev/null
done
run -v6 -qa,b=c one
expect_out <<EOF
verbose 6
brax - 3 UNKNOWN OPTION <-qa,b=c>
OPTsorttype 0
EOF
run one -v0 -xyz two
expect_err <<EOF
tolvik: ERROR: no file extension for 'one'
EOF
# The next call finds nothing more and asks for usage at the default verbosity.
expect_has out 'tolvik -h for more help'

# Behind built-in options in one word; a built-in letter that begins no option; an unknown type;
# an argument with a blank is tried before the rest is read.
run -v3bxy one
expect_out <<EOF
brax - 3 UNKNOWN OPTION <bxy>
EOF
for option in -nox -tx -tu64; do
    run "$option" one
    expect_out <<EOF
brax - 3 UNKNOWN OPTION <$option>
EOF
done
run one '-xyz two'
expect_out <<EOF
brax - 1 UNKNOWN OPTION <xyz>
EOF
run one .obj
expect_out <<EOF
brax - 1 UNKNOWN OPTION <obj>
EOF
expect_err </dev/null
