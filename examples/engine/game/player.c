/* The one entity that the pad steers. */
#include "game/game.h"

static struct entity *player;
static int heading;

void player_place(struct vector place) {
    player = entity_spawn(place, 12);
    panic_unless(player != NOTHING, "no room for the player");
}

void player_steer(void) {
    fixed pace = (pad_held(BUTTON_UP) - pad_held(BUTTON_DOWN)) * (ONE / 4);
    heading += 4 * (pad_held(BUTTON_RIGHT) - pad_held(BUTTON_LEFT));
    player->speed.x = fixed_multiply(pace, trig_cosine(heading));
    player->speed.z = fixed_multiply(pace, trig_sine(heading));
    if (pad_pressed(BUTTON_FIRE))
        damage_near(vector_add(player->place, vector_scale(player->speed, FIXED(4))), 10);
}

struct vector player_eye(int *angle) {
    *angle = heading;
    return player->place;
}
