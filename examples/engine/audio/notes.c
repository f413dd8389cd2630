/* How fast a sample runs for each half tone. Data only. */
#include "audio/audio.h"

const u16 note_steps[12] = {
    4096, 4340, 4598, 4871, 5161, 5468, 5793, 6137, 6502, 6889, 7298, 7732,
};
