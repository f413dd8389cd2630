# The symbol report from a symbol file, in sections and as lines, and what is said of names
# that are not there.
cat >engine.tvk <<'EOT'
text before the first record is passed over
[player.o][game]
source=game/player.c,20020517
define=_player_move,FUNCTION,GLOBAL,120
refer=pad_read
refer=_world_step_
size=900

[pad.o][input]
define=pad_read,FUNCTION,GLOBAL,40
define=pad_state,DATA,GLOBAL,8
refer=printf
size=64

[world.o][game]
define=world_step,FUNCTION,GLOBAL,300
refer=player_move
refer=pad_read
size=2000
EOT
run -nologo -splayer_move -snowhere -spad_state engine.tvk
expect_status 0
expect_err <<'EOT'
tolvik: symbol 'nowhere' not found
EOT
expect_out <<'EOT'

SYMBOL
    player_move()

DEFINED IN
    player.o

REFERRED TO IN
    world.o
    1 Files

LINKS IN
    player.o (900) [player_move]
        world.o (2000) [world_step]
            pad.o (64) [pad_read]
    Total: 2964 bytes


SYMBOL
    pad_state

DEFINED IN
    pad.o

REFERRED TO IN
    0 Files

LINKS IN
    pad.o (64) [pad_state]
    Total: 64 bytes

EOT

# One level, one section.
run -nologo -0 -links -splayer_move engine.tvk
expect_out <<'EOT'

SYMBOL
    player_move()

LINKS IN
    player.o (900) [player_move]
    Total: 900 bytes

EOT

# All symbols, one line each; printf has no object and is left out at verbosity 1 only.
run -v1 -sall -sother engine.tvk
expect_out <<'EOT'
world_step                                world.o        1 refs    2000     2964 
pad_state                                   pad.o        0 refs      64       64 
player_move                              player.o        1 refs     900     2964 
pad_read                                    pad.o        2 refs      64       64 
EOT
run -v0 -def -sall engine.tvk
expect_has out "printf                                    unknown"
expect_files engine.tvk
