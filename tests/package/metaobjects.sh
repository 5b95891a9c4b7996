#!/bin/sh
# Compares what the classes declare to Qt's meta-object system with the list of this version.
set -eu

if [ $# -ne 2 ] || [ "$1" = --help ]; then
    echo 'usage: metaobjects.sh PROGRAM LIST' >&2
    exit 2
fi
"$1" | diff -u "$2" -
