#!/bin/sh
# Writes its arguments and its environment to the file named by the first argument, one per line
# and all at once, and waits to be stopped. It ends with the test that started it.
set -eu
target=$1
shift
{
    [ $# -eq 0 ] || printf 'argument %s\n' "$@"
    env | sed 's/^/variable /'
} >"$target.part"
mv "$target.part" "$target"
exec setpriv --pdeathsig KILL sleep 600
