/* What every other folder of the engine stands on: memory, text, console, time and events. */
#ifndef ENGINE_CORE_H
#define ENGINE_CORE_H

typedef unsigned char u8;
typedef unsigned short u16;
typedef unsigned int u32;
typedef int s32;
typedef u32 bytes;

#define NOTHING ((void *)0)
#define COUNT(array) ((int)(sizeof(array) / sizeof *(array)))
#define HIDDEN __attribute__((visibility("hidden")))
#define PROTECTED __attribute__((visibility("protected")))
#define WEAK __attribute__((weak))

/* Games of the time carried the names of their sources in the texts of assertions. */
#ifdef ENGINE_SOURCE_NAMES
static const char engine_source_name[] __attribute__((used)) = __BASE_FILE__;
#endif

/* memory.c: the four that a freestanding compiler may call on its own. */
void *memset(void *to, int value, bytes size);
void *memcpy(void *to, const void *from, bytes size);
void *memmove(void *to, const void *from, bytes size);
int memcmp(const void *left, const void *right, bytes size);

/* text.c */
int text_length(const char *text);
int text_equal(const char *left, const char *right);
int text_copy(char *to, const char *from, int room);
int text_number(char *to, s32 value);
int text_hash(const char *text);

/* heap.c: blocks are never null; running out is a panic. */
void *heap_take(bytes size);
void heap_give(void *block);
bytes heap_used(void);
void heap_reset(void);
HIDDEN int heap_check(void);

/* pool.c: equal-sized blocks, handed out from one heap block. */
struct pool {
    u8 *first;
    void *free;
    bytes size;
};
void pool_open(struct pool *pool, bytes size, int count);
void *pool_take(struct pool *pool);
void pool_give(struct pool *pool, void *block);
void pool_close(struct pool *pool);

/* panic.c */
void panic(const char *reason);
PROTECTED void panic_unless(int holds, const char *reason);

/* console.c */
void console_print(const char *text);
void console_number(s32 value);
void console_line(const char *text);
int console_history(char *to, int room);

/* platform.c: defined weak, so that a game overrides what its machine does better. */
void platform_write(const char *text, int length);
void platform_halt(void);
u32 platform_ticks(void);
void platform_present(const u8 *pixels, int width, int height);

/* clock.c */
void clock_reset(void);
u32 clock_elapsed(void);
PROTECTED void clock_pause(int paused);

/* random.c */
void random_seed(u32 seed);
u32 random_next(void);
s32 random_range(s32 least, s32 most);

/* events.c */
enum event { EVENT_NONE, EVENT_SPAWN, EVENT_HIT, EVENT_DEATH, EVENT_TRIGGER, EVENT_GOAL, EVENTS };
typedef void (*event_handler)(enum event event, s32 value);
void event_subscribe(enum event event, event_handler handler);
void event_post(enum event event, s32 value);
void event_dispatch(void);
HIDDEN int event_pending(void);

/* config.c, defaults.c */
struct setting {
    const char *name;
    s32 value;
};
extern const struct setting config_defaults[];
extern const int config_default_count;
s32 config_get(const char *name);
void config_set(const char *name, s32 value);

/* checksum.c, crctable.c */
extern const u32 crc_table[16];
u32 checksum_block(const void *block, bytes size);
u32 checksum_text(const char *text);

/* profiler.c */
void profiler_mark(const char *what);
void profiler_report(void);

#endif
