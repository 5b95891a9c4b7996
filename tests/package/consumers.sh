#!/bin/sh
# Uses a build as a stranger would, from an empty root: installed there by CMake or unpacked from the
# Debian packages, and found by CMake and by pkg-config.
set -eu

if [ $# -ne 4 ] || [ "$1" = --help ]; then
    echo 'usage: consumers.sh install|packages CMAKE BUILDDIR WORKDIR' >&2
    exit 2
fi
how=$1 cmake=$2 build=$3 work=$4
here=$(dirname "$(readlink -f "$0")")
examples=$here/../../examples
prefix=$work/root/usr

rm -rf "$work"
if [ "$how" = install ]; then
    "$cmake" --install "$build" --prefix "$prefix" >/dev/null
else
    (mkdir -p "$work/packages" && cd "$work/packages" && cpack --config "$build/CPackConfig.cmake")
    dpkg-deb --field "$work"/packages/libquorvane1_*.deb Depends | grep libqt5dbus5
    dpkg-deb --field "$work"/packages/qml-module-quorvane_*.deb Depends | grep libquorvane1
    for package in "$work"/packages/libquorvane*.deb; do
        dpkg-deb --extract "$package" "$work/root"
    done
fi
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
