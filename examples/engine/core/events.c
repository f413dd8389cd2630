/* The hub: a source of events has no reference to its listeners. */
#include "core/core.h"

enum { QUEUE = 64, LISTENERS = 4 };

static struct {
    enum event event;
    s32 value;
} queue[QUEUE];
static int first, pending;
static event_handler handlers[EVENTS][LISTENERS];

void event_subscribe(enum event event, event_handler handler) {
    int i;
    for (i = 0; i < LISTENERS; i++) {
        if (!handlers[event][i] || handlers[event][i] == handler) {
            handlers[event][i] = handler;
            return;
        }
    }
    panic("too many listeners");
}

void event_post(enum event event, s32 value) {
    int slot = (first + pending) % QUEUE;
    panic_unless(pending < QUEUE, "event queue is full");
    queue[slot].event = event;
    queue[slot].value = value;
    pending++;
}

void event_dispatch(void) {
    while (pending > 0) {
        int slot = first;
        int i;
        first = (first + 1) % QUEUE;
        pending--;
        for (i = 0; i < LISTENERS && handlers[queue[slot].event][i]; i++)
            handlers[queue[slot].event][i](queue[slot].event, queue[slot].value);
    }
}
