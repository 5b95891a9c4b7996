# The Debian packages that the demo needs, what it needs besides to run with Qt 6, and what the build of
# everything, the tests and the benchmarks need on top of both. Sourced by ./check, ./demo and ./bench.

demo_packages='
    adwaita-icon-theme
    build-essential
    cmake
    dbus
    fonts-dejavu-core
    gir1.2-ayatanaappindicator3-0.1
    gir1.2-notify-0.7
    libdbus-1-dev
    libglib2.0-bin
    libglib2.0-dev
    libqt5svg5
    ninja-build
    pkg-config
    python3-gi
    qml-module-qtqml-models2
    qml-module-qtquick-controls2
    qml-module-qtquick-layouts
    qml-module-qtquick-window2
    qml-module-qtquick2
    qtbase5-dev
    qtdeclarative5-dev
    qtdeclarative5-dev-tools
    qtquickcontrols2-5-dev
    xvfb
'

qt6_packages='
    libqt6svg6
    qml6-module-qtqml
    qml6-module-qtqml-models
    qml6-module-qtqml-workerscript
    qml6-module-qtquick
    qml6-module-qtquick-controls
    qml6-module-qtquick-layouts
    qml6-module-qtquick-templates
    qml6-module-qtquick-window
    qt6-base-dev
    qt6-declarative-dev
    qt6-declarative-dev-tools
'

other_packages='
    clang
    clang-format
    clang-tidy
    clazy
    debhelper
    doxygen
    dunst
    git
    libbenchmark-dev
    libclang-rt-14-dev
    libnotify-bin
    lintian
    llvm
    python3-dbus
    qml
    qml-qt6
'

# require_packages demo|demo-qt6|all: installs what is missing, as root or through sudo; on another distribution
# it says what is missing.
require_packages() {
    wanted=$demo_packages
    [ "$1" = demo ] || wanted="$wanted $qt6_packages"
    [ "$1" != all ] || wanted="$wanted $other_packages"
    missing=
    for package in $wanted; do
        case $(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true) in
        'install ok installed') ;;
        *) missing="$missing $package" ;;
        esac
    done
    [ -n "$missing" ] || return 0

    if ! command -v apt-get >/dev/null; then
        echo "These packages (Debian's names) may be missing:$missing" >&2
        exit 1
    fi
    sudo=
    [ "$(id -u)" -eq 0 ] || sudo=sudo
    echo "Installing$missing"
    # The names are separate words on purpose.
    # shellcheck disable=SC2086
    $sudo apt-get update -qq
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing \
        >/dev/null
}
