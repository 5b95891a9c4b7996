#!/bin/sh
# Compares the symbols that a library exports with the list of its Debian package.
set -eu

if [ $# -ne 3 ] || [ "$1" = --help ]; then
    echo 'usage: symbols.sh --check LIBRARY PACKAGE     fails if one is missing, or not in the list' >&2
    echo '       symbols.sh --update LIBRARY PACKAGE    writes the list anew; what stays keeps its version' >&2
    exit 2
fi
library=$(readlink -f "$2") package=$3
cd "$(dirname "$0")/../.."
list=debian/$package.symbols

# listed SYMBOL: its line of the list. One demangled name stands for all variants of a constructor.
listed() { grep -F " $1 " "$list"; }
version=$(dpkg-parsechangelog --show-field Version)

if [ "$1" = --check ]; then
    # A symbol is missed only by a version after the one that it came with.
    dpkg-gensymbols -p"$package" -v"$version+" -I"$list" -e"$library" -O/dev/null -c4
else
    if [ ! -e "$list" ]; then
        # The package for developers: libquorvane-qt6-1 and libquorvanewidgets1 have it under other names.
        developers=$(echo "$package" | sed -e 's/-\{0,1\}1$//; s/widgets/shell/')-dev
        soname=$(objdump --private-headers "$library" | sed -n 's/^ *SONAME *//p')
        printf '%s %s #MINVER#\n* Build-Depends-Package: %s\n' "$soname" "$package" "$developers" >"$list"
    fi
    {
        grep -v '^ ' "$list"
        nm --dynamic --defined-only --demangle "$library" | cut -d ' ' -f 3- |
            sed -e 's/^QUORVANE[A-Z]*_.*/&@&/; t' -e '/@@/!s/$/@Base/; s/@@/@/; s/.*/(c++)"&"/' |
            LC_ALL=C sort -u |
            while read -r symbol; do
                listed "$symbol" || echo " $symbol $version"
            done
    } >"$list.new"
    mv "$list.new" "$list"
fi
