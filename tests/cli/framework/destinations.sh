# What names, pairs and rules make of the report's name.

printf '[a.o]\nsize=4\n' >a.tvk
mkdir out 'out put'
cp a.tvk 'my file.tvk'
umlaut=$(printf 'b\303\244r')
cp a.tvk "$umlaut.tvk"

# reports NAME ARGS...: exactly this report is written.
reports() {
    name=$1
    shift
    run -v0 "$@"
    expect_silence
    if [ -f "$name" ]; then rm "$name"; else fail "no report $name"; fi
    [ "$(find . | wc -l)" = 6 ] || fail "other files: $(find . | tr '\n' ' ')"
}

reports r.txt a.tvk=r.txt
reports r.txt a.tvk= r.txt
reports r.txt a.tvk=r.txt=x.txt
reports r.txt a.tvk =r.txt
reports r.txt -=r.txt a.tvk
reports r.txt -= r.txt a.tvk
reports 'r r.txt' a.tvk '-=r r.txt'
reports 'r r.txt' a.tvk '=r r.txt'
reports 'r,r=.txt' 'a.tvk="r,r=.txt"'
reports r.txt "-='r.txt'" '(a.tvk)'
reports r.txt 'my file.tvk' -=r.txt
reports my 'my file.tvk' -=my
reports r.txt "$umlaut.tvk=r.txt"
reports "$umlaut.txt" "a.tvk=$umlaut.txt"
reports "$umlaut.txt" a.tvk "-=$umlaut.txt"
reports "$umlaut.txt" a.tvk "=$umlaut.txt"

# A pair's destination is a rule for the names without one; each name has its own report, and the
# first one's is written.
reports r.txt a.tvk b.tvk=r.txt

# Directories and extensions.
reports out/r.txt a.tvk=r.txt out/
reports out/a.txt a.tvk -.txt out/
reports out/a.txt -=out/ a.tvk -. .txt
reports 'out put/a.txt' a.tvk -.txt 'out put/'
reports a.txt a.tvk -.txt .
reports a a.tvk -..

# Each batch forgets the rules of the one before.
run -v0 -=r.txt a.tvk ';' -v0 -=s.txt a.tvk ';' -v1 a.tvk
expect_has out 'a.o (4 bytes)'
expect_err </dev/null

# A destination without a source becomes one.
run -v3 '""=name'
expect_has out 'WARNING - No source filename match to <name>, using as source and destination.'
expect_has err "no file extension for 'name'"
expect_files a.tvk "$umlaut.tvk" 'my file.tvk' out 'out put'
