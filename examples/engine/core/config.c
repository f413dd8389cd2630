/* Settings by name: the value that was set, else the default. */
#include "core/core.h"

enum { SETTINGS = 16, NAME_BYTES = 16 };

static struct {
    char name[NAME_BYTES];
    s32 value;
} settings[SETTINGS];
static int count;

static int find(const char *name) {
    int i;
    for (i = 0; i < count; i++)
        if (text_equal(settings[i].name, name))
            return i;
    return -1;
}

s32 config_get(const char *name) {
    int i = find(name);
    if (i >= 0)
        return settings[i].value;
    for (i = 0; i < config_default_count; i++)
        if (text_equal(config_defaults[i].name, name))
            return config_defaults[i].value;
    return 0;
}

void config_set(const char *name, s32 value) {
    int i = find(name);
    if (i < 0 && count < SETTINGS) {
        i = count++;
        text_copy(settings[i].name, name, NAME_BYTES);
    }
    if (i >= 0)
        settings[i].value = value;
}
