#!/bin/sh
# netscape ADDRESS: opens the address with the desktop's browser.
if [ $# -ne 1 ]; then
    echo "usage: netscape ADDRESS" >&2
    exit 2
fi
for opener in xdg-open gio sensible-browser x-www-browser www-browser; do
    command -v "$opener" >/dev/null || continue
    case $opener in
    gio) exec gio open "$1" ;;
    *) exec "$opener" "$1" ;;
    esac
done
echo "netscape: nothing here opens addresses (Debian: xdg-utils): $1" >&2
exit 127
