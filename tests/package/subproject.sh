#!/bin/sh
# Builds the library as a part of another tree, with all its options off and nothing but Qt's Core,
# Gui and DBus to be found.
set -eu

if [ $# -ne 2 ] || [ "$1" = --help ]; then
    echo 'usage: subproject.sh CMAKE WORKDIR' >&2
    exit 2
fi
here=$(dirname "$(readlink -f "$0")")

"$1" -S "$here/consumer" -B "$2" -G Ninja -DQUORVANE_SOURCE_DIR="$here/../.." \
    -DBUILD_TESTING=OFF -DCMAKE_DISABLE_FIND_PACKAGE_Qt5Qml=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_Qt5Test=ON -DCMAKE_DISABLE_FIND_PACKAGE_benchmark=ON \
    -DCMAKE_DISABLE_FIND_PACKAGE_Doxygen=ON -DCMAKE_DISABLE_FIND_PACKAGE_PkgConfig=ON
"$1" --build "$2"
XDG_DATA_DIRS="$here/../../examples" "$2/consumer"
