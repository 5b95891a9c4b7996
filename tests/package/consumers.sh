#!/bin/sh
# Uses the libraries as a stranger would, from an empty root: installed there by CMake or unpacked from
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
export QT_QPA_PLATFORM=offscreen QT_QUICK_BACKEND=software

[ -f "$prefix/share/dbus-1/interfaces/org.freedesktop.Notifications.xml" ]
if find "$prefix" -name '*_p.h' -o -type d -empty | grep .; then
    echo 'private headers or empty folders are installed' >&2
    exit 1
fi

# use_library PACKAGE SUFFIX HEADERS LIBRARY MODULE PROGRAM [COMPONENT]
use_library() {
    library=$4$2 module=$5$2 name=$4$2
    version=$(pkg-config --modversion "$module")
    [ "$version" = "$(dpkg-parsechangelog --file "$here/../../debian/changelog" --show-field Version)" ]
    [ "$(readlink "$libdir/lib$library.so")" = "lib$library.so.1" ]
    [ "$(readlink "$libdir/lib$library.so.1")" = "lib$library.so.$version" ]

    "$cmake" -S "$here/consumer" -B "$work/cmake-$name" -G Ninja -DCMAKE_PREFIX_PATH="$prefix" \
        -DQUORVANE_PACKAGE="$1" -DCOMPONENT="${7-}" -DPROGRAM="$6" -DHEADERS_DIR="$3" \
        -DHEADERS="$4" >/dev/null
    if [ -z "${7-}" ] && grep -E '^Qt[56](Widgets|Qml|Quick)_' \
        "$work/cmake-$name/CMakeCache.txt"; then
        echo 'more is looked for than is needed' >&2
        exit 1
    fi
    "$cmake" --build "$work/cmake-$name"
    # A package leaves it to the system to find what a library needs, which knows nothing of this root.
    [ "$how" = install ] || export LD_LIBRARY_PATH="$libdir"
    "$work/cmake-$name/consumer"
    unset LD_LIBRARY_PATH

    # shellcheck disable=SC2046 # The flags are separate words.
    c++ -std=c++17 -fPIC -o "$work/pkgconfig-$name" "$here/consumer/$6" \
        $(pkg-config --cflags --libs "$module") "-Wl,-rpath-link,$libdir"
    LD_LIBRARY_PATH=$libdir "$work/pkgconfig-$name"
}

# use_module BINARIES FOLDER: the module in a folder, by the program that runs pages with that Qt.
use_module() {
    qmldir=$(find "$prefix" -path "*/$2/Quorvane/qmldir")
    [ -n "$qmldir" ] || return 0 # Whoever builds may do without the module.
    [ "$how" = install ] || export LD_LIBRARY_PATH="$libdir"
    QML2_IMPORT_PATH="${qmldir%/Quorvane/qmldir}" "$1/qml" "$here/consumer/page.qml"
    unset LD_LIBRARY_PATH
}

for qt in "$@"; do
    case $qt in
    5) package=Quorvane suffix='' headers=$prefix/include ;;
    6) package=QuorvaneQt6 suffix=-qt6 headers=$prefix/include/quorvane-qt6 ;;
    esac
    use_library "$package" "$suffix" "$headers" quorvane quorvane main.cpp
    # Whoever builds may do without these.
    [ ! -e "$libdir/libquorvaneshell$suffix.so" ] ||
        use_library "$package" "$suffix" "$headers" quorvaneshell quorvane-shell shell.cpp Shell
    [ ! -e "$libdir/libquorvanewidgets$suffix.so" ] ||
        use_library "$package" "$suffix" "$headers" quorvanewidgets quorvane-widgets widgets.cpp Widgets
    case $qt in
    5) use_module "$(pkg-config --variable=host_bins Qt5Core)" qt5/qml ;;
    6) use_module "$(pkg-config --variable=bindir Qt6Core)" qt6/qml ;;
    esac
done
