# For every function of the example library, the report's LINKS IN are the members that GNU ld takes
# from it, but for those that come only through data symbols, which this importer does not know.
. "$TOLVIK_SOURCE/tests/cli/links/linker"

"$TOLVIK_SOURCE/script/example-library" .
for example in '\.hidden heap_check' '\.protected panic_unless' ' w  .* platform_halt'; do
    objdump -t libengine.a | grep -q "$example" || fail "no$example among the functions"
done
run -tgc -under -nologo -sall -links libengine.a
expect_status 0
compare libengine.a ld -m elf_i386
# Members without functions, and what their data refer to.
expect_file missing <<'END'
behave.o collide.o damage.o entity.o events.o fixed.o level.o moods.o pool.o random.o route.o sinetable.o trig.o trigger.o vector.o: brain_scare brain_think
behave.o defaults.o glyphs.o keymap.o levels.o moods.o notes.o palette.o route.o shapes.o sinetable.o: menu_step menu_title session_frame session_start
behave.o keymap.o moods.o random.o route.o sinetable.o: player_eye player_place player_steer
behave.o moods.o palette.o random.o route.o shapes.o sinetable.o: scenery_draw
behave.o moods.o random.o route.o sinetable.o trig.o: collide_entities collide_move damage_entity damage_near entity_each entity_nearest entity_remove entity_spawn entity_step level_load level_solid level_tile
behave.o moods.o random.o sinetable.o trig.o: route_clear route_find
crctable.o: checksum_block checksum_text
defaults.o: config_get config_set effects_beep effects_listen mixer_busy mixer_fill mixer_play mixer_stop
defaults.o notes.o: music_play music_stop music_tick
fixed.o palette.o: shade_darker shade_distance
glyphs.o: font_draw font_draw_number font_width score_draw score_listen score_points
keymap.o: pad_held pad_key pad_pressed pad_state pad_update replay_play replay_record
moods.o sinetable.o: behave_chase behave_flee behave_idle
palette.o shapes.o sinetable.o: mesh_draw mesh_draw_marker
sinetable.o: camera_look camera_project matrix_apply matrix_identity matrix_multiply matrix_turn trig_angle trig_cosine trig_sine
END
