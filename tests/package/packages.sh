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
dpkg-deb --field libquorvane1_*.deb Depends | grep libqt5dbus5
dpkg-deb --field libquorvane-qt6-1_*.deb Depends | grep libqt6dbus6
dpkg-deb --field qml-module-quorvane_*.deb Depends | grep libquorvane1
for package in ./*.deb; do
    dpkg-deb --extract "$package" root
done
if readelf --dynamic "$(find root -name libquorvaneplugin.so)" | grep RUNPATH; then
    echo 'the packaged plugin looks for its library by itself' >&2
    exit 1
fi
