#!/bin/sh
# Uses the library as a stranger would, from an empty root: installed there by CMake or unpacked from
# the Debian packages, and found by CMake, by pkg-config and by QML.
set -eu

if [ $# -lt 5 ] || [ "$1" = --help ]; then
    echo 'usage: consumers.sh install|packages CMAKE BUILDDIR WORKDIR QT...' >&2
    exit 2
fi
how=$1 cmake=$2 build=$3 work=$4
shift 4
here=$(dirname "$(readlink -f "$0")")
prefix=$work/root/usr

rm -rf "$work"
if [ "$how" = install ]; then
    "$cmake" --install "$build" --prefix "$prefix" >/dev/null
else
    "$here/packages.sh" "$work"
fi
libdir=$(dirname "$(find "$prefix" -name pkgconfig)")
export PKG_CONFIG_PATH="$libdir/pkgconfig"
export XDG_DATA_DIRS="$here/../../examples"

[ -f "$prefix/share/dbus-1/interfaces/org.freedesktop.Notifications.xml" ]
if find "$prefix" -name '*_p.h' -o -type d -empty | grep .; then
    echo 'private headers or empty folders are installed' >&2
    exit 1
fi

# use_library PACKAGE SUFFIX HEADERS
use_library() {
    version=$(pkg-config --modversion "quorvane$2")
    [ "$version" = "$(dpkg-parsechangelog --file "$here/../../debian/changelog" --show-field Version)" ]
    [ "$(readlink "$libdir/libquorvane$2.so")" = "libquorvane$2.so.1" ]
    [ "$(readlink "$libdir/libquorvane$2.so.1")" = "libquorvane$2.so.$version" ]

    "$cmake" -S "$here/consumer" -B "$work/cmake$2" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
        -DQUORVANE_PACKAGE="$1" -DHEADERS_DIR="$3" >/dev/null
    "$cmake" --build "$work/cmake$2"
    "$work/cmake$2/consumer"

    # shellcheck disable=SC2046 # The flags are separate words.
    c++ -std=c++17 -fPIC -o "$work/pkgconfig$2" "$here/consumer/main.cpp" \
        $(pkg-config --cflags --libs "quorvane$2")
    LD_LIBRARY_PATH=$libdir "$work/pkgconfig$2"
}

for qt in "$@"; do
    case $qt in
    5) use_library Quorvane '' "$prefix/include" ;;
    6) use_library QuorvaneQt6 -qt6 "$prefix/include/quorvane-qt6" ;;
    esac
done

qmldir=$(find "$prefix" -name qmldir)
[ -n "$qmldir" ] || exit 0 # Whoever builds may do without the module.
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software
export QML2_IMPORT_PATH="${qmldir%/Quorvane/qmldir}"
# A package leaves it to the system to find the library, which knows nothing of this root.
[ "$how" = install ] || export LD_LIBRARY_PATH="$libdir"
"$(pkg-config --variable=host_bins Qt5Core)/qml" "$here/consumer/page.qml"
