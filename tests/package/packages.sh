#!/bin/sh
# Builds the Debian packages out of a copy of the tree, looks at them, and unpacks them.
set -eu

if [ $# -ne 1 ] || [ "$1" = --help ]; then
    echo 'usage: packages.sh WORKDIR    (they are unpacked into WORKDIR/root)' >&2
    exit 2
fi
work=$1
cd "$(dirname "$(readlink -f "$0")")/../.."

mkdir -p "$work/source"
git ls-files -z --cached --others --exclude-standard |
    tar --create --null --files-from=- | tar --extract --directory="$work/source"
cd "$work/source"
# debhelper gives the compiler another home.
if command -v ccache >/dev/null; then
    CCACHE_DIR=$(ccache --get-config cache_dir)
    export CCACHE_DIR
fi
DEB_BUILD_OPTIONS=noautodbgsym dpkg-buildpackage --build=binary --no-sign
cd "$work"

lintian --fail-on error,warning ./*.changes
# depends PACKAGE LIBRARY
depends() { dpkg-deb --field "$1"_*.deb Depends | grep "$2"; }
depends libquorvane1 libqt5dbus5
depends libquorvane-qt6-1 libqt6dbus6
depends libquorvaneshell1 libquorvane1
depends libquorvaneshell-qt6-1 libquorvane-qt6-1
depends libquorvanewidgets1 libqt5widgets5
depends libquorvanewidgets-qt6-1 libqt6widgets6
depends qml-module-quorvane libquorvaneshell1
depends qml6-module-quorvane libquorvaneshell-qt6-1
for package in ./*.deb; do
    dpkg-deb --extract "$package" root
done
find root -name 'lib*.so' | while read -r library; do
    if readelf --dynamic "$library" | grep RUNPATH; then
        echo "$library looks for its library by itself" >&2
        exit 1
    fi
done
