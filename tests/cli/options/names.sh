# The tool's own options that take a name, and the room for those names.

printf '[a.o]\ndefine=one,FUNCTION,GLOBAL,7\ndefine=operator new,FUNCTION,GLOBAL,9\nsize=16\n' >a.tvk

# Options are matched without regard to case, names are not; what is left of a word is a name.
run -v0 -Sone -SOne -DEF a.tvk
expect_out <<EOF
one                                           a.o
EOF
expect_err <<EOF
tolvik: symbol 'One' not found
EOF
run -v1 -refer noext
expect_err <<EOF
tolvik: ERROR: no file extension for 'er'
tolvik: ERROR: no file extension for 'noext'
EOF
run -v1 -tPS2x -telfy noext -sone,x
expect_err <<EOF
tolvik: ERROR: no file extension for 'x'
tolvik: ERROR: no file extension for 'y'
tolvik: ERROR: no file extension for 'noext'
EOF

# A symbol with blanks is one name.
run -v0 -def a.tvk '-soperator new'
expect_has out 'operator new  '

# 256 symbols and 32 files have room.
# shellcheck disable=SC2046
run -v1 $(seq -f '-s%.0f' 256) $(seq -f '-f%.0f.o' 33) -sone noext
expect_out </dev/null
expect_err <<EOF
tolvik: ERROR: out of file space, ignoring '33.o'
tolvik: ERROR: out of symbol space, ignoring 'one'
tolvik: ERROR: no file extension for 'noext'
EOF
