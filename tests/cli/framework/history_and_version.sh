# The version history ends the run; the version check ends it when this program is too old.

run -history -v0 name
expect_status 0
expect_has out 'tolvik v1.54 (Quillmarsh) 020718 Jul 25 2002 by Velo Marn, QVO'
expect_has out '*  tolvik - symbol analysis tool              Version 1.54       *'
expect_has out '*  1.54     18 Jul 02  VM  '
expect_err </dev/null
[ "$(grep -c '^\*.\{64\}\*$' "$STATE/out")" -gt 18 ] || fail "rows of the history are missing or not framed"

for enough in '-version 1.54' '-version1.5' -VERSION,0.9; do
    # shellcheck disable=SC2086
    run $enough -v1 noext
    expect_status 0
    expect_out </dev/null
    expect_has err "no file extension for 'noext'"
done

run -version 1.55 noext
expect_status 101
expect_out <<EOF
brax - The current version is 1.54; Please get the latest version of tolvik
EOF
expect_err </dev/null
run -v0 -version 2 noext
expect_status 101
expect_silence
