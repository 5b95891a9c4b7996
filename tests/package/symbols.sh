#!/bin/sh
# Compares the symbols that the library exports with the list of this version.
set -eu

if [ $# -ne 2 ] || [ "$1" = --help ]; then
    echo 'usage: symbols.sh LIBRARY LIST     (--print LIBRARY: what it exports)' >&2
    exit 2
fi
symbols() {
    nm --dynamic --defined-only --demangle "$1" | cut -d ' ' -f 3- | LC_ALL=C sort -u
}
if [ "$1" = --print ]; then
    symbols "$2"
else
    symbols "$1" | diff -u "$2" -
fi
