/* Lines for the developer: to the machine, to the game's own hook, and into a history. */
#include "core/core.h"

enum { HISTORY_BYTES = 1024 };

/* A game may define this to see every line. */
extern void game_console_hook(const char *text) WEAK;

static char *history;
static int history_length;

static void remember(const char *text, int length) {
    if (!history)
        history = heap_take(HISTORY_BYTES);
    if (history_length + length >= HISTORY_BYTES)
        history_length = 0;
    if (length < HISTORY_BYTES) {
        memcpy(history + history_length, text, (bytes)length);
        history_length += length;
    }
}

void console_print(const char *text) {
    int length = text_length(text);
    platform_write(text, length);
    if (game_console_hook)
        game_console_hook(text);
    remember(text, length);
}

void console_number(s32 value) {
    char digits[12];
    text_number(digits, value);
    console_print(digits);
}

void console_line(const char *text) {
    console_print(text);
    console_print("\n");
}
