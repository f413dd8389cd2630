/* Which key is which button; a game may write its own keys here. Data only. */
#include "input/input.h"

u8 keymap_keys[BUTTONS] = {'a', 'd', 'w', 's', ' '};
