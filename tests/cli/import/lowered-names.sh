# An object is dumped under its name in lower case, whatever its real name and its neighbours.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH

# object FILE FUNCTION: a file whose listing defines the function.
object() {
    printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 %s\n' "$2" >"$1"
}

# expect_defines OBJECT=FUNCTION...: exactly these, sorted, are in all.tvk.
expect_defines() {
    seen=$(awk -F '[][=,]' '/^\[/ { name = $2 } /^define/ { print name "=" $2 }' all.tvk |
        sort | tr '\n' ' ')
    [ "$seen" = "$* " ] || fail "the records are: $seen"
    cut -d ' ' -f 2- "$STATE/calls" | sort -u | grep -v -e '^ar ' >"$STATE/dumps" || true
    rm "$STATE/calls"
}

mkdir src
(
    cd src
    object AB.o one
    object Ab.o two
    object ab.o three
    object Main.OBJ.o four
    object x.O five
    tar cf ../game.a ./*
)
run -tgc game.a=all.tvk
expect_defines ab.o=one ab.o=three ab.o=two main.obj.o=four
expect_files all.tvk game.a src

# The user's own: a link for the length of the dump, or a place of its own beside another file.
cp -p src/AB.o src/Ab.o . && mkdir other && mv src/Main.OBJ.o other
before=$(ls -lAi --time-style=full-iso . src other | grep -v -e all.tvk -e '^total' -e ' src$' -e ' other$')
run -tgc AB.o=all.tvk ';' -append src/AB.o=all.tvk ';' "$PWD/src/Ab.o=all.tvk" ';' other/Main.OBJ.o=all.tvk
expect_defines ab.o=one ab.o=one ab.o=two main.obj.o=four
grep -q '\[main.obj.o\]' "$STATE/dumps" || fail "not dumped under the lower-case name"
after=$(ls -lAi --time-style=full-iso . src other | grep -v -e all.tvk -e '^total' -e ' src$' -e ' other$')
[ "$before" = "$after" ] || fail "the user's files were touched: $before $after"

# While it runs, the link is there; a tvk0000 of the user's leaves only the name as it is.
: >tvk0000
export STUB_SAY_DUMP='ls >>"$STATE/during"'
run -tgc other/Main.OBJ.o=all.tvk ';' -append src/AB.o=all.tvk
grep -qx main.obj.o "$STATE/during" || fail "no link beside the object"
expect_defines ab.o=one main.obj.o=four
expect_files AB.o Ab.o all.tvk game.a other src tvk0000
