/* Memory, text, console, events and settings. Every other header includes this one. */
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

/* memory.c: the compiler may call these on its own. */
void *memset(void *to, int value, bytes size);
void *memcpy(void *to, const void *from, bytes size);

/* text.c */
int text_length(const char *text);
int text_equal(const char *left, const char *right);
int text_copy(char *to, const char *from, int size);
int text_number(char *to, s32 value);

/* heap.c: blocks are never null; running out is a panic. */
void *heap_take(bytes size);
void heap_give(void *block);
HIDDEN int heap_check(void);

/* panic.c */
void panic(const char *reason);
PROTECTED void panic_unless(int holds, const char *reason);

/* console.c */
void console_print(const char *text);
void console_number(s32 value);
void console_line(const char *text);

/* platform.c: weak, so that a game can replace each of them. */
void platform_write(const char *text, int length);
void platform_halt(void);
u32 platform_ticks(void);

/* events.c */
enum event { EVENT_NONE, EVENT_SPAWN, EVENT_HIT, EVENT_DEATH, EVENT_TRIGGER, EVENT_GOAL, EVENTS };
typedef void (*event_handler)(enum event event, s32 value);
void event_subscribe(enum event event, event_handler handler);
void event_post(enum event event, s32 value);
void event_dispatch(void);

/* config.c, defaults.c */
struct setting {
    const char *name;
    s32 value;
};
extern const struct setting config_defaults[];
extern const int config_default_count;
s32 config_get(const char *name);
void config_set(const char *name, s32 value);

/* profiler.c */
void profiler_mark(const char *what);
void profiler_report(void);

#endif
