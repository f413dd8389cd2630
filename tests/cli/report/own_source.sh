# A destination that is the source under another spelling names no report file; a usage page of
# a later batch leaves no temporary directory behind.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
tar cf lib.a a.o
cp lib.a kept
for destination in ./lib.a "$PWD/lib.a"; do
    run -nologo -v1 -tgc -sf lib.a="$destination"
    expect_has out "f "
    cmp lib.a kept || fail "the library was overwritten by $destination"
done
run -nologo -tgc lib.a -=./
cmp lib.a kept || fail "the library was overwritten"
run -v1 -tgc lib.a=all.tvk ';' -sf
expect_has out "USAGE"
expect_files a.o all.tvk kept lib.a lib.tvk
