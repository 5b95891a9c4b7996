#!/bin/sh
# Builds the soak test and runs it on a session bus of its own.
set -eu

if [ "${1-}" = --help ]; then
    echo 'usage: run.sh [MINUTES]     use the library hard for so long (10) and look for what grows'
    exit 0
fi
cd "$(dirname "$0")/../.."

cmake --preset default >/dev/null
cmake --build --preset default --target soak
# Without the caches of each thread, which count as heap in use and fill up for minutes.
export GLIBC_TUNABLES=glibc.malloc.tcache_count=0
export QT_QPA_PLATFORM=offscreen QT_LOGGING_RULES=xdg.system_tray.debug=true
exec dbus-run-session --config-file=tests/support/session.conf -- \
    build/default/tests/soak/soak "${1-10}"
