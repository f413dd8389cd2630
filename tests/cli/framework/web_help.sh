# Web help opens the program's page in the browser, which a stand-in logs here.

mkdir bin
cat >bin/netscape <<'EOF'
#!/bin/sh
{ echo "$#"; printf '%s\n' "$@"; } >opened.part
mv opened.part opened
EOF
chmod +x bin/netscape
PATH=$PWD/bin:$PATH

opened() {
    tries=0
    while [ ! -e opened ] && [ $tries -lt 100 ]; do
        sleep 0.1
        tries=$((tries + 1))
    done
    expect_file opened
    rm -f opened
}

page=https://tolvik.example/help/util/tolvik.htm
run -help name
expect_status 0
expect_silence
opened <<EOF
1
$page
EOF

run -helpIntro
opened <<EOF
1
$page#intro
EOF

# What the shell would act on reaches the browser as it stands, or nowhere.
# shellcheck disable=SC2016
run -v5 '-help#a;touch$(touch owned)&`b`'
expect_out <<'EOF'
netscape https://tolvik.example/help/util/tolvik.htm\#a\;touch\$\(touch\ owned\)\&\`b\` &
EOF
opened <<EOF
1
$page#a;touch\$(touch owned)&\`b\`
EOF

# A later verbosity takes the request back; a topic that is too long is refused.
run -help -v1 noext
expect_has err "no file extension for 'noext'"
run "-help$(printf 'x%.0s' $(seq 128))" noext
expect_out <<EOF
brax - HELP TOPIC TOO LONG <$(printf 'x%.0s' $(seq 40))...>
EOF
sleep 0.2
expect_files bin
