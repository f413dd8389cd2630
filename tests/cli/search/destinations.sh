# The names that rules and wildcards give to what was found: a destination that is a symbol file
# is where the objects go, any other is the report.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH

mkdir -p s1 s2 out
printf '00A 00000000 SECT2  notype ()    External     |  _main@4\n' >a7.obj
cp a7.obj s1/b.obj
cp a7.obj s2/c.obj

# makes "FILES" ARGS...: the run makes exactly these files.
makes() {
    find . -type f | sort >"$STATE/before"
    made=$1
    shift
    run -v0 "$@"
    find . -type f | sort | comm -13 "$STATE/before" - | cut -c 3- >"$STATE/made"
    [ "$(tr '\n' ' ' <"$STATE/made")" = "$made " ] || fail "$*: $(cat "$STATE/made")"
    xargs rm -f <"$STATE/made"
}

makes 'a7.tvk' '*.obj' -.tvk
makes 'out/a7.tvk' '*.obj' -.tvk -=out/
makes 'out/a7.tvk' '*.obj=*.tvk' out/
makes 'a7.tvk b007.rpt' 'a#.obj=b###.rpt'
makes 'a7.tvk out/n-a7.rpt' -=out/ '*.obj=n-*.rpt'
makes 's1/b.tvk' -sort1 's*/*.obj' -.tvk
makes 'out/b.tvk' -sort1 's*/*.obj=out/*.tvk'

# Each file found has each of its destinations: the objects of all go to the first one's.
objects() {
    grep -c '\[' "$1"
}
run -v0 '*.obj=x.tvk=y.tvk'
[ "$(objects x.tvk)" = 2 ] || fail "x.tvk has $(objects x.tvk) objects"
run -v0 -r '*.obj' =z.tvk
[ "$(objects z.tvk)" = 3 ] || fail "z.tvk has $(objects z.tvk) objects"
expect_files a7.obj out s1 s2 x.tvk z.tvk
