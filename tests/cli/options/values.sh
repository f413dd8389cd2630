# Values of options: ranges, defaults, number syntax, and several options in one word.

# said TEXT OPTIONS...: exactly this is told, and nothing is done.
said() {
    text=$1
    shift
    run "$@" noext
    expect_status 0
    expect_out <<EOF
$text
EOF
    expect_err </dev/null
}
said 'Value too large for -<n> option. Valid range is 0..100.  Using 100.' -500
said 'Value too small for write mode option. Valid range is 0..1.  Using 0.' -w-1
said 'Value too large for banner option. Valid range is 0..1.  Using 1.' -v1b2
said 'brax - NUMERICAL OPTION ERROR #10 IN verbose OPTION VALUE. Using 0.' -v2z
said 'brax - NUMERICAL OPTION ERROR #7 IN write mode OPTION VALUE. Using 1.' -w42949672961
said 'brax - NUMERICAL OPTION ERROR #10 IN -<n> OPTION VALUE. Using 0.' -5html
said 'Numerical Option write mode = 0. Valid range is 0..1' -w0,w?,
said 'Value too large for verbose option. Valid range is 0..6.  Using 6.
verbose 6
OPTsorttype 0' -v9

# With verbosity 0 in front the bound is used silently.
run -v0 -500 -w7 noext
expect_out </dev/null
expect_err <<EOF
tolvik: ERROR: no file extension for 'noext'
EOF

# What each option reads, as verbosity 6 shows it.
run -v6w0TIME0 -TIME1b -b0nologo0 -sort1h,w -10d -10h -nologo,w0x1 noext -v0 '-v&6'
expect_out <<EOF
verbose 6
write mode 0
enable timing diagnostics 0
enable timing diagnostics 1
banner 0
disable logo 0
sort names 1
write mode 1
-<n> 10
-<n> 16
disable logo 1
write mode 1
verbose 6
OPTsorttype 1
EOF
expect_err <<EOF
tolvik: ERROR: no file extension for 'noext'
EOF
