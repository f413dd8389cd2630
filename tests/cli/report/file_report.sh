# The file report on standard output, in a file and as HTML.
cat >engine.tvk <<'EOT'
[pad.o][input]
define=pad_read,FUNCTION,GLOBAL,40
define=pad_state,DATA,GLOBAL,8
size=64

[player.o][game]
source=game/src/player.c,20020517
define=player_move,FUNCTION,GLOBAL,120
refer=pad_read
refer=printf
size=900

EOT
run -nologo -fPLAYER.O -fnone.o engine.tvk
expect_out <<EOT

FILE
    player.o (game, 900 bytes)$(printf '%32s' '')
    game/src/player.c (Jun 17,2002)

DEFINES
    player_move() [120]

REFERS TO
    printf (unknown)
    pad_read() (pad.o)

LINKS IN
    Libraries: <FONT COLOR="#000000">game</FONT>,<FONT COLOR="#990000">input</FONT>

    player.o (game, 900) [player_move]
        pad.o (<FONT COLOR="#990000">input</FONT>, 64) [pad_read]

    Links 964 bytes total
EOT

# In a file the total stands in the first line, over the room kept for it.
run -nologo -links -fplayer.o engine.tvk=report.txt
expect_silence
expect_file report.txt <<EOT

FILE
    player.o (game, 900 bytes, links 964 bytes total)$(printf '%9s' '')
    game/src/player.c (Jun 17,2002)

LINKS IN
    Libraries: <FONT COLOR="#000000">game</FONT>,<FONT COLOR="#990000">input</FONT>

    player.o (game, 900) [player_move]
        pad.o (<FONT COLOR="#990000">input</FONT>, 64) [pad_read]

EOT

run -nologo -html -def -lhttp://host/ -fplayer.o engine.tvk
expect_has out "</PRE><H4>FILE</H4><PRE>    player.o (game, 900 bytes)"
expect_has out "    <a onclick=\"openfile('http://host/game/game/player.c')\" style=\"text-decoration: none; color:#003399; cursor: hand\" title=\"player.c Source\">game/game/player.c</a> (Jun 17,2002)"

# Without names every object is reported, the last record first.
run -nologo -def engine.tvk
[ "$(grep -c '^FILE$' "$STATE/out")" = 2 ] || fail "not two objects"
[ "$(grep -n -m1 '\.o (' "$STATE/out" | cut -d: -f2 | cut -c5-12)" = player.o ] ||
    fail "the last record does not come first"

# A file that cannot be read or created gives no report and no message, status 0.
run -nologo -sx missing.tvk
expect_silence
run -nologo engine.tvk=nowhere/report.txt
expect_silence
expect_status 0
expect_files engine.tvk report.txt
