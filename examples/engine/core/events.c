/* The hub: whoever posts an event need not know who listens. */
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
        enum event event = queue[first].event;
        s32 value = queue[first].value;
        int i;
        first = (first + 1) % QUEUE;
        pending--;
        for (i = 0; i < LISTENERS && handlers[event][i]; i++)
            handlers[event][i](event, value);
    }
}

int event_pending(void) {
    return pending;
}
