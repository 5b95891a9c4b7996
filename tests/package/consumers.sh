#!/bin/sh
# Installs a build into an empty prefix and uses it from there: found by CMake, and by pkg-config.
set -eu

if [ $# -ne 3 ] || [ "$1" = --help ]; then
    echo 'usage: consumers.sh CMAKE BUILDDIR WORKDIR' >&2
    exit 2
fi
cmake=$1 build=$2 work=$3
here=$(dirname "$(readlink -f "$0")")
examples=$here/../../examples
prefix=$work/prefix

rm -rf "$work"
"$cmake" --install "$build" --prefix "$prefix" >/dev/null
libdir=$(dirname "$(find "$prefix" -name libquorvane.so.1.1.0)")
[ "$(readlink "$libdir/libquorvane.so")" = libquorvane.so.1 ]
[ "$(readlink "$libdir/libquorvane.so.1")" = libquorvane.so.1.1.0 ]
if find "$prefix/include" -name '*_p.h' | grep .; then
    echo 'private headers are installed' >&2
    exit 1
fi

"$cmake" -S "$here/consumer" -B "$work/cmake" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
    -DHEADERS_DIR="$prefix/include" >/dev/null
"$cmake" --build "$work/cmake"
"$work/cmake/consumer" "$examples"

PKG_CONFIG_PATH=$libdir/pkgconfig
export PKG_CONFIG_PATH
[ "$(pkg-config --modversion quorvane)" = 1.1.0 ]
# shellcheck disable=SC2046 # The flags are separate words.
c++ -std=c++17 -fPIC -o "$work/pkgconfig" "$here/consumer/main.cpp" \
    $(pkg-config --cflags --libs quorvane)
LD_LIBRARY_PATH=$libdir "$work/pkgconfig" "$examples"
