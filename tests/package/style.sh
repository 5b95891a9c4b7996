#!/bin/sh
# Every C++ file of the tree is as clang-format leaves it.
set -eu

if [ "${1-}" = --help ]; then
    echo 'usage: style.sh'
    exit 0
fi
cd "$(dirname "$0")/../.."
find quorvane quorvaneshell quorvanewidgets qml examples tests benchmarks -name '*.cpp' -o -name '*.h' |
    xargs clang-format --dry-run -Werror
