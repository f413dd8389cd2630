/* Settings as shipped. Data only. */
#include "core/core.h"

const struct setting config_defaults[] = {
    {"volume", 80}, {"difficulty", 1}, {"invert", 0}, {"shake", 1}, {"gamma", 100},
};
const int config_default_count = COUNT(config_defaults);
