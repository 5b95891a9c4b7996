#!/bin/sh
# Builds the library as a part of another tree: with nothing but Qt's Core, Gui and DBus to be found,
# and without looking for what the library for shells needs when it is not wanted.
set -eu

if [ $# -ne 2 ] || [ "$1" = --help ]; then
    echo 'usage: subproject.sh CMAKE WORKDIR' >&2
    exit 2
fi
here=$(dirname "$(readlink -f "$0")")
configure() {
    "$@" -S "$here/consumer" -G Ninja -DQUORVANE_SOURCE_DIR="$here/../.." -DBUILD_TESTING=OFF
}
rm -rf "$2"

configure "$1" -B "$2/wanted" -DQUORVANE_BUILD_SHELL=OFF
if grep -E '^(Qt[56](Qml|Quick|Test|Widgets)_DIR|PKG_CONFIG|SHELL_LIBRARIES|GIO|DBUS|DOXYGEN|benchmark)' \
    "$2/wanted/CMakeCache.txt"; then
    echo 'more is looked for than is needed' >&2
    exit 1
fi

configure "$1" -B "$2/found" -DCMAKE_DISABLE_FIND_PACKAGE_Qt5Quick=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_PkgConfig=ON
"$1" --build "$2/found"
XDG_DATA_DIRS="$here/../../examples" "$2/found/consumer"
