# Names without an extension are named, each on a line, and not imported: what the search found.

mkdir -p lib/x lib/y 'c# sharp' empty
for name in a1 a2 a10 b lib/a3 lib/x/a2 lib/x/b lib/y/a4 'c# sharp/a5'; do : >"$name"; done
here=$(pwd -P)
ln -s .. lib/up
ln -s . here
ln -s "$here/lib" empty/link
ln -s nowhere a0

# finds "NAMES" ARGS...: the run names exactly these, in any order.
finds() {
    for name in $1; do echo "tolvik: ERROR: no file extension for '$name'"; done | tr _ ' ' |
        sort >"$STATE/names"
    shift
    run -v0 "$@"
    sort -o "$STATE/err" "$STATE/err"
    expect_err <"$STATE/names"
}

# Each file once, also where links lead up; a link to elsewhere in the tree is a directory of its own.
finds 'a1 a2 a10 c#_sharp/a5 lib/a3 lib/x/a2 lib/y/a4 empty/link/a3 empty/link/x/a2 empty/link/y/a4' \
    -r 'a*'
finds 'b lib/x/b empty/link/x/b' -r B
finds 'b lib/x/b empty/link/x/b missing' -r b missing
finds 'a1 a2 b' 'a?' b
finds 'lib/x/a2 lib/x/b lib/y/a4' 'l*/?/*'
finds 'lib/up/a1 lib/up/a2' 'lib/up/a?'
finds "$here/lib/x/a2 $here/lib/y/a4" "$here/*/?/a*"
finds 'lib/a3 lib/x/a2 lib/x/b' '-rlib;missing;lib/x' 'a*' 'b*'

# Sorted names count: grouped by directory, then by number.
run -v0 -r -sort1 'a*' ';' -v0 -sort1 a10 a2 a1
grep -o "'[^/]*'" "$STATE/err" | tr -d "'" >"$STATE/seen"
printf '%s\n' a1 a2 a10 a1 a2 a10 >"$STATE/sorted"
cmp "$STATE/sorted" "$STATE/seen" || fail "sorted: $(cat "$STATE/seen")"
expect_files a0 a1 a10 a2 b 'c# sharp' empty here lib

# The directory is the same afterwards: what is made lies here, not in the tree.
mkdir deep
cd deep
for _ in $(seq 30); do mkdir level; cd level; done
: >bottom
cd "$here/deep"
run -v0 -r 'bot*'
expect_has err "level/level/bottom'"
printf '[a.o]\nsize=4\n' >r.tvk
run -v0 -r 'bot*' ';' -v0 r.tvk=made
[ -f made ] || fail "no report where the run began"
