#!/bin/sh
# ee-ar ARGUMENTS: a stand-in for the PlayStation 2 toolchain's archiver. Archives have not changed
# since: today's ar reads them.
if ! command -v ar >/dev/null; then
    echo "ee-ar: needs ar, which is not on the path (Debian: binutils)" >&2
    exit 127
fi
exec ar "$@"
