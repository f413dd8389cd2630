/* What each mood does. Data only. */
#include "ai/ai.h"

const mood_action mood_actions[MOODS] = {behave_idle, behave_chase, behave_flee};
