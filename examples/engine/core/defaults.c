/* The default settings. Data only. */
#include "core/core.h"

const struct setting config_defaults[] = {{"volume", 80}, {"difficulty", 1}, {"invert", 0}};
const int config_default_count = COUNT(config_defaults);
