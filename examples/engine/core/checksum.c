/* CRC-32 of saved games; the engine itself never asks for one. */
#include "core/core.h"

static u32 add_byte(u32 crc, u8 byte) {
    crc = (crc >> 4) ^ crc_table[(crc ^ byte) & 15];
    return (crc >> 4) ^ crc_table[(crc ^ (byte >> 4)) & 15];
}

u32 checksum_block(const void *block, bytes size) {
    const u8 *byte = block;
    u32 crc = 0xffffffffu;
    while (size-- > 0)
        crc = add_byte(crc, *byte++);
    return ~crc;
}

u32 checksum_text(const char *text) {
    return checksum_block(text, (bytes)text_length(text));
}
