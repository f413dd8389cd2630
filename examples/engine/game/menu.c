/* Lists to choose from; what an item does is a function in a table. */
#include "game/game.h"

static const u8 arrow_pixels[] = {1, 0, 0, 1, 1, 0, 1, 1, 1, 1, 1, 0, 1, 0, 0};
static const struct sprite arrow = {arrow_pixels, 3, 5};

static void toggle_volume(void) {
    config_set("volume", config_get("volume") ? 0 : 80);
}

static const struct menu_item title[] = {
    {"START", session_start},
    {"VOLUME", toggle_volume},
};

int menu_step(const struct menu_item *items, int count, int at) {
    int i;
    at += pad_pressed(BUTTON_DOWN) - pad_pressed(BUTTON_UP);
    at = (at + count) % count;
    for (i = 0; i < count; i++)
        font_draw(items[i].label, 20, 20 + 8 * i, 7);
    sprite_tint(&arrow, 12, 20 + 8 * at, 10);
    if (pad_pressed(BUTTON_FIRE))
        items[at].chosen();
    return at;
}

int menu_title(int at) {
    return menu_step(title, COUNT(title), at);
}
