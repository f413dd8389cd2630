# TOLVIK_OPTS comes in front of the command line, which so has the last word.

TOLVIK_OPTS='-v1 -t one'
export TOLVIK_OPTS
run two
expect_out <<EOF
brax - 3 UNKNOWN OPTION <-t>
EOF
TOLVIK_OPTS='-v1 one ,;	three'
run two
expect_out </dev/null
expect_err <<EOF
tolvik: ERROR: no file extension for 'one'
tolvik: ERROR: no file extension for 'three'
tolvik: ERROR: no file extension for 'two'
EOF
TOLVIK_OPTS=-v0
run -version 9
expect_status 101
expect_silence
run -v2 -version 9
expect_has out 'brax - The current version is 1.54'

# It is not a response file, and the program's name names the variable.
TOLVIK_OPTS='@list'
echo '-v1 listed' >list
run -v1
expect_err <<EOF
tolvik: ERROR: no file extension for '@list'
EOF
unset TOLVIK_OPTS
OTHER_OPTS='-v1 other'
export OTHER_OPTS
ln -s "$TOLVIK_BUILD/tolvik" "$STATE/Other.exe"
TOLVIK=${TOLVIK_WRAPPER:-} # a wrapper stays in front
TOLVIK=${TOLVIK:+$TOLVIK }$STATE/Other.exe
run
expect_err <<EOF
tolvik: ERROR: no file extension for 'other'
EOF
