#!/bin/sh
# Other makers' programs against the service, and the notifier against another maker's service.
# usage: interop.sh SERVICE NOTIFIER GUIDE    on a private session bus
set -eu

service=$1 notifier=$2 guide=$3
here=$(dirname "$0")
work=$(mktemp -d)
pids=
stop_all() {
    for pid in $pids; do kill "$pid" 2>/dev/null || true; done
    wait
    pids=
}
trap 'stop_all; rm -rf "$work"' EXIT
mkfifo "$work/open"
exec 3<>"$work/open"

# A program that goes on running writes to a file of its own.
start() { # FILE COMMAND...
    out=$work/$1
    shift
    "$@" <&3 >"$out" 2>&1 &
    pids="$pids $!"
}
until_true() { # COMMAND...
    tries=600
    until "$@" >/dev/null 2>&1; do
        tries=$((tries - 1))
        [ "$tries" -gt 0 ] || { echo "in vain: $*" >&2 && exit 1; }
        sleep 0.05
    done
}
expect() { # WHAT ACTUAL PATTERN
    # shellcheck disable=SC2254 # The pattern is one.
    case $2 in
    $3) ;;
    *) echo "$1: expected $3, got $2" >&2 && exit 1 ;;
    esac
}
calls() { # NAME METHOD ARGUMENT...
    name=$1 method=$2
    shift 2
    gdbus call --session --dest "$name" --object-path "/$(echo "$name" | tr . /)" \
        --method "$name.$method" "$@"
}
posts() { calls org.freedesktop.Notifications "$@"; }
manages() { calls com.zovar.NotificationManager "$@"; }
pending() { [ "$(manages nbNotifications)" = "($1,)" ]; }

# What notify-send sends, as a server without a function logs it.
start bare "$service" bare
until_true grep ready "$work/bare"
notify-send --app-name=Mail --urgency=critical --icon=mail-unread --hint=string:x-thread:t1 \
    --expire-time=60000 --replace-id=7 Title Body
expect 'a post of notify-send' "$(grep Notify "$work/bare")" \
    '*( "Mail" ,  7 ,  "mail-unread" ,  "Title" ,  "Body" ,  () ,  QMap(*("urgency", QVariant(uchar, 2))("x-thread", QVariant(QString, "t1"))) ,  60000 )'
expect 'server information' "$(posts GetServerInformation)" "('', 'ZOVAR', '1.0.0', '1.2')"
expect capabilities "$(posts GetCapabilities)" '(@as \[\],)'
stop_all

start manager "$service" manager
until_true grep ready "$work/manager"
start monitor gdbus monitor --session --dest org.freedesktop.Notifications
until_true grep owned "$work/monitor"

expect 'first id' "$(notify-send --print-id Title)" 1
expect 'id of a replacement' "$(notify-send --print-id --replace-id=1 Title Other)" 1
until_true pending 1
notify-send --wait --expire-time=100 Title
start waiting notify-send --wait Title
until_true pending 2
posts CloseNotification 3 >/dev/null
wait "${pids##* }"

start peer /usr/bin/python3 "$here/postwithactions.py"
until_true pending 2
expect 'actions of a peer' "$(manages listAction 4)" "(\['yes', 'Yes', 'no', 'No'\],)"
manages returnAction 4 no >/dev/null
wait "${pids##* }"
expect 'what the peer heard' "$(tr '\n' ' ' <"$work/peer")" 'no 2 '

# Every call that the guide shows.
grep '^gdbus call' "$guide" | while read -r line; do sh -c "$line" >/dev/null; done
until_true grep 'uint32 7' "$work/monitor"
expect 'what a monitor saw' "$(sed -n 's/.*Notifications\.\([AN]\)/\1/p' "$work/monitor" | tr '\n' ' ')" \
    "NotificationClosed (uint32 2, uint32 1) NotificationClosed (uint32 3, uint32 3) \
ActionInvoked (uint32 4, 'no') NotificationClosed (uint32 4, uint32 2) \
ActionInvoked (uint32 1, 'open') NotificationClosed (uint32 1, uint32 2) \
NotificationClosed (uint32 1, uint32 2) NotificationClosed (uint32 1, uint32 7) "

shows() { # NAME
    gdbus introspect --session --dest "$1" --object-path "/$(echo "$1" | tr . /)" | tr -s ' \n' ' '
}
expect 'introspection of the service' "$(shows org.freedesktop.Notifications)" \
    '*QtTypeName.In6("QVariantMap") Notify(in s app_name, in u replaces_id, in s app_icon, in s summary, in s body, in as actions, in a{sv} hints, in i timeout, out u *signals: NotificationClosed(u id, u reason); ActionInvoked(u id, s action_key); *'
expect 'introspection of the manager' "$(shows com.zovar.NotificationManager)" \
    '* nbNotifications(out i *); close(in u id, in u reason); close(in u id); returnAction(in u appid, in s key); *'
stop_all

# The notifier and dunst, which needs an X server and shows a notification when it gets round to it.
start display Xvfb -displayfd 1 -screen 0 640x480x24 -nolisten tcp
until_true grep . "$work/display"
DISPLAY=:$(grep '^[0-9]*$' "$work/display")
export DISPLAY
start dunst dunst -config /dev/null
until_true posts GetCapabilities
start chosen "$notifier" Title Body open Open
chosen_pid=${pids##* }
until_true sh -c "dunstctl action; grep -q '^action: open' '$work/chosen'"
dunstctl close
wait "$chosen_pid"
expect 'end of a dismissed one' "$(tail -n 1 "$work/chosen")" 'The notification was dismissed by the user.'
