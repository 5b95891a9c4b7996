#!/bin/sh
# Other makers' programs in the tray: gdbus, and the tray icon of Qt Widgets.
# usage: interop.sh TRAYPEER    on a private session bus
set -eu

traypeer=$1
. "$(dirname "$0")/../support/until_true.sh"
work=$(mktemp -d)
pids=
input=3
stop_all() {
    for pid in $pids; do kill "$pid" 2>/dev/null || true; done
    wait
    rm -rf "$work"
}
trap stop_all EXIT
mkfifo "$work/empty" "$work/input"
exec 3<>"$work/empty" 4<>"$work/input" # Stay open: a peer ends with its input.

# A program that goes on running writes to files of its own.
start() { # FILE COMMAND...
    out=$work/$1
    shift
    "$@" <&"$input" >"$out" 2>"$out.log" &
    pids="$pids $!"
}
expect() { # WHAT ACTUAL EXPECTED
    [ "$2" = "$3" ] || { printf '%s: expected\n%s\ngot\n%s\n' "$1" "$3" "$2" >&2 && exit 1; }
}
peer() { # ROLE NAME
    start "$1" "$traypeer" "$1" "$2"
    until_true grep ready "$work/$1"
}

export XDG_RUNTIME_DIR="$work"
export QT_QPA_PLATFORM=minimal # offscreen leaks its screen.

# Without a bus there are warnings alone.
no_bus='xdg.system_tray: Cannot connect to the D-Bus session bus.
 Please check your system settings and try again.'
alone() { # ROLE
    DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent QT_LOGGING_RULES='*.debug=false' \
        "$traypeer" "$1" name 2>&1 >/dev/null </dev/null
}
expect 'an item alone' "$(alone item)" "$no_bus"
expect 'a watcher alone' "$(alone watcher)" "$no_bus

xdg.system_tray: Don't register StatusNotifierWatcher service, probably already exists"
expect 'a host alone' "$(alone host)" \
    "xdg.system_tray: Can't find watcher org.kde.StatusNotifierWatcher/StatusNotifierWatcher"

watcher=org.kde.StatusNotifierWatcher
item=org.kde.StatusNotifierItem
get=org.freedesktop.DBus.Properties.Get
calls() { # NAME INTERFACE METHOD ARGUMENT...
    name=$1 path=/${2##*.} method=$3
    shift 3
    gdbus call --session --dest "$name" --object-path "$path" --method "$method" -- "$@"
}
asks() { calls $watcher $watcher "$@"; }

peer watcher watcher
asks $get $watcher IsStatusNotifierHostRegistered | grep -q false
peer host traypeer
host_pid=${pids##* }
until_true sh -c "gdbus call --session --dest $watcher --object-path /StatusNotifierWatcher \
    --method $get $watcher IsStatusNotifierHostRegistered | grep true"
input=4
peer item mail
input=3
service=org.quorvane.mail-${pids##* }
until_true grep '|mail|' "$work/host"

# A string is registered as a host and twice as an item, and is listed once or not at all.
list="'$service/StatusNotifierItem'"
registers() { # FORM [LISTED]
    for kind in Host Item Item; do
        asks $watcher.RegisterStatusNotifier$kind "\"$1\"" >/dev/null
    done
    list=$list${2:+", '$1/StatusNotifierItem'"}
    expect "$1" "$(asks $get $watcher RegisteredStatusNotifierItems)" "(<[$list]>,)"
}
unique=$(gdbus call --session --dest org.freedesktop.DBus --object-path / \
    --method org.freedesktop.DBus.GetNameOwner "$service" | cut -d "'" -f 2)
registers "$service"
registers $watcher listed
registers "$unique" listed
registers /StatusNotifierItem
registers "$service/StatusNotifierItem"
registers org.example.nobody
registers ''
registers /
registers '   '
registers word
registers org.quorvane.Übung-1
registers "org.example.form',type='signal"
registers "$(printf 'a.%0100000d' 0)"
both() { [ "$(grep -o '[^|]*|mail|' "$work/host" | wc -l)" -eq 2 ]; }
until_true both # Rows, one for each name of the item.
"$traypeer" item Übung </dev/null >/dev/null 2>&1

members() { # NAME INTERFACE
    gdbus introspect --session --dest "$1" --object-path "/${2##*.}" |
        sed -n "/interface $2 {/,/};/{s/ = .*;/;/;p}" | tr -s ' \n' ' '
}
expect 'introspection of the watcher' "$(members $watcher $watcher)" \
    " interface $watcher { methods: RegisterStatusNotifierItem(in s service); \
RegisterStatusNotifierHost(in s service); signals: StatusNotifierItemRegistered(s arg_0); \
StatusNotifierItemUnregistered(s arg_0); StatusNotifierHostRegistered(); \
StatusNotifierHostUnregistered(); properties: @org.qtproject.QtDBus.QtTypeName.Out0(\"QStringList\") \
readonly as RegisteredStatusNotifierItems; readonly b IsStatusNotifierHostRegistered; \
readonly i ProtocolVersion; }; "
expect 'introspection of the item' "$(members "$service" $item)" \
    " interface $item { methods: Activate(in i x, in i y); SecondaryActivate(in i x, in i y); \
signals: NewTitle(); NewIcon(); NewAttentionIcon(); NewOverlayIcon(); NewToolTip(); \
NewStatus(s status); properties: readonly s Category; readonly s Id; readonly s Title; \
readonly s Status; readonly i WindowId; readonly s IconName; readonly s OverlayIconName; \
readonly s AttentionIconName; readonly s AttentionMovieName; }; "

start monitor gdbus monitor --session --dest "$service"
# It says so a moment before it listens.
until_true sh -c "date '+title %N' >&4; grep NewTitle '$work/monitor'"
echo status NeedsAttention >&4
echo iconName mail-unread >&4
until_true grep NewIcon "$work/monitor"
expect 'what a monitor saw' "$(sed -n "s/.*$item.\(New[SI]\)/\1/p" "$work/monitor" | tr '\n' ' ')" \
    "NewStatus ('NeedsAttention',) NewIcon () "
expect 'a property' "$(calls "$service" $item $get $item IconName)" "(<'mail-unread'>,)"
expect 'a click' "$(calls "$service" $item $item.Activate -1 2)" '()'
until_true grep 'first 4294967295 2' "$work/item"

# The icon of Qt Widgets asks once whether there is a host. 3 is a click, 4 one of the middle button.
start display Xvfb -displayfd 1 -screen 0 64x64x24 -nolisten tcp
until_true grep . "$work/display"
DISPLAY=:$(cat "$work/display")
export DISPLAY QT_QPA_PLATFORM=xcb
peer icon traypeer
until_true grep '|traypeer|' "$work/host"
until_true grep 4 "$work/icon"
expect 'clicks on the icon' "$(sed 1d "$work/icon" | tr '\n' ' ')" '3 4 '
expect 'row of the icon' "$(grep -o '[A-Z][^|]*|traypeer.*' "$work/host")" \
    'ApplicationStatus|traypeer|traypeer|Active|0|||||'

# What the three have logged.
kill "${service##*-}"
until_true grep unregistered "$work/watcher.log"
logged() { # ROLE LINE...
    log=$work/$1.log
    shift
    for line; do
        grep -qF "$line" "$log" || { echo "no line $line in" >&2 && cut -c -500 "$log" >&2 && exit 1; }
    done
}
logged watcher 'xdg.system_tray: Register StatusNotifierWatcher service' \
    "xdg.system_tray: Watcher: RegisterStatusNotifierItem( \"$service\" )" \
    "Registering \"$service/StatusNotifierItem\" to system tray" \
    'xdg.system_tray: Watcher: RegisterStatusNotifierHost( "word" )' \
    "xdg.system_tray: Service  \"$service\" unregistered (ITEMS: (\"$service/StatusNotifierItem\", \"" \
    ")  HOSTS: (\"org.kde.StatusNotifierHost-$host_pid\", \"$service\", \""
logged item "xdg.system_tray: Register Item service \"$service\" : true"
logged host "xdg.system_tray: Register Host service \"org.kde.StatusNotifierHost-$host_pid\" : true" \
    'xdg.system_tray: Find Watcher  true  with protocol  1'
