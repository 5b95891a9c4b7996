#!/bin/sh
# Other makers' programs against the service, and the notifier against another maker's service.
# usage: interop.sh SERVICE NOTIFIER GUIDE    on a private session bus
set -eu

service=$1 notifier=$2 guide=$3
here=$(dirname "$0")
. "$here/../support/until_true.sh"
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
# Waits for the program that was started last, whose number may be another's after that.
ended() {
    last=${pids##* }
    pids=${pids% *}
    wait "$last"
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

warning="Can't register dbus service  \"org.freedesktop.Notifications\""
missing='Cannot connect to the D-Bus session bus.
Please check your system settings and try again.'
alone() { exec env DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent "$@"; }
expect 'a service without a bus' "$(alone "$service" 2>&1 </dev/null)" "$missing

$warning
$missing"
start alone alone "$notifier" Title
until_true grep 'Please check' "$work/alone"

start manager "$service"
until_true manages nbNotifications
start monitor gdbus monitor --session --dest org.freedesktop.Notifications
# It says that it monitors a moment before it does.
listens() { posts CloseNotification 0 && grep 'uint32 0' "$work/monitor"; }
until_true listens
expect 'server information' "$(posts GetServerInformation)" "('', 'ZOVAR', '1.0.0', '1.2')"
expect capabilities "$(posts GetCapabilities)" '(@as \[\],)'

expect 'first id' "$(notify-send --print-id --app-name=Mail --urgency=critical --icon=mail-unread \
    --hint=string:x-thread:t1 --expire-time=600000 Title Body)" 1
expect 'id of a replacement' "$(notify-send --print-id --replace-id=1 Title Other)" 1
until_true pending 1
notify-send --wait --expire-time=100 Title
start waiting notify-send --wait Title
until_true pending 2
posts CloseNotification 3 >/dev/null
ended

start peer dunstify --action=yes,Yes --action=no,No Title
until_true pending 2
expect 'actions of a peer' "$(manages listAction 4)" "(\['yes', 'Yes', 'no', 'No'\],)"
manages returnAction 4 no >/dev/null
ended
expect 'what the peer heard' "$(cat "$work/peer")" no

# Every call that the guide shows.
grep '^gdbus call' "$guide" | while read -r line; do sh -c "$line" >/dev/null; done
until_true grep 'uint32 7' "$work/monitor"
expect 'what a monitor saw' "$(sed -n '/uint32 0/d; s/.*Notifications\.\([AN]\)/\1/p' "$work/monitor" | tr '\n' ' ')" \
    "NotificationClosed (uint32 2, uint32 1) NotificationClosed (uint32 3, uint32 3) \
ActionInvoked (uint32 4, 'no') NotificationClosed (uint32 4, uint32 2) \
NotificationClosed (uint32 4, uint32 3) NotificationClosed (uint32 4, uint32 3) \
ActionInvoked (uint32 1, 'open') NotificationClosed (uint32 1, uint32 2) \
NotificationClosed (uint32 1, uint32 2) NotificationClosed (uint32 1, uint32 7) "

# A second service says that it is one too many, and changes nothing for peers.
start second "$service"
until_true grep -F "$warning" "$work/second"
expect 'pending before misuse' "$(manages listPending)" '(@au \[\],)'

# Any id may come, and any hint.
image="{'image-data': <(1, 1, 3, false, 8, 3, [byte 1, 2, 3])>}"
for id in 0 99 4294967295; do
    before=$(grep -c "uint32 $id, " "$work/monitor" || true)
    for call in "posts CloseNotification $id" "manages close $id" "manages close $id $id" \
        "manages returnAction $id key"; do
        expect "$call" "$($call)" '()'
    done
    expect "listAction $id" "$(manages listAction "$id")" '(@as \[\],)'
    expect "Notify $id" "$(posts Notify a $id '' s b '[]' "$image" 0)" '(uint32 *,)'
    heard() { [ "$(grep -c "uint32 $id, " "$work/monitor")" -eq $((before + 5)) ]; }
    until_true heard
done
until_true pending 3

# What does not fit a signature is an error.
sends() { # METHOD ARGUMENT...
    method=$1
    shift
    dbus-send --session --print-reply --dest="${method%.*}" \
        "/$(echo "${method%.*}" | tr . /)" "$method" "$@" 2>&1 || true
}
server=org.freedesktop.Notifications manager=com.zovar.NotificationManager
refused='Error org.freedesktop.DBus.Error.UnknownMethod*'
expect 'no arguments' "$(sends $server.Notify)" "$refused"
expect 'too few' "$(sends $server.Notify string:a uint32:0 string: string:s string:b)" "$refused"
expect 'signed id' "$(sends $server.CloseNotification int32:1)" "$refused"
expect 'text for a reason' "$(sends $manager.close uint32:1 string:2)" "$refused"
expect 'swapped' "$(sends $manager.returnAction string:key uint32:1)" "$refused"
expect 'signed id of a list' "$(sends $manager.listAction int32:-1)" "$refused"

# Peers that leave while their call waits.
start traffic dbus-monitor --session "member='Notify'"
until_true grep NameLost "$work/traffic"
service_pid=$(echo $pids | cut -d ' ' -f 2)
kill -STOP "$service_pid"
for count in 1 2 3; do
    start left "$notifier" Left
    until_true sh -c "[ \"\$(grep -c '\"Left\"' '$work/traffic')\" -eq $count ]"
    kill "${pids##* }"
    ended || true
done
kill -CONT "$service_pid"
until_true pending 6

# What the notifier makes of each reason.
count=6
tells() { # REASON SENTENCE
    start "told$1" "$notifier" Title Body
    count=$((count + 1))
    until_true pending "$count"
    manages close 77 "$1" >/dev/null
    ended
    expect "reason $1" "$(cat "$work/told$1")" "Recive signal NotificationClosed( 77 ,  $1 )
$2"
}
tells 0 'Undefined/reserved reasons.'
tells 1 'The notification expired.'
tells 2 'The notification was dismissed by the user.'
tells 3 'The notification was closed by a call to CloseNotification.'
tells 4 'Undefined/reserved reasons.'

shows() { # NAME
    gdbus introspect --session --dest "$1" --object-path "/$(echo "$1" | tr . /)" | tr -s ' \n' ' '
}
expect 'introspection of the service' "$(shows $server)" \
    '*QtTypeName.In6("QVariantMap") Notify(in s app_name, in u replaces_id, in s app_icon, in s summary, in s body, in as actions, in a{sv} hints, in i timeout, out u *signals: NotificationClosed(u id, u reason); ActionInvoked(u id, s action_key); *'
expect 'introspection of the manager' "$(shows $manager)" \
    '* nbNotifications(out i *); close(in u id, in u reason); close(in u id); returnAction(in u appid, in s key); *'
for name in $server $manager; do
    expect "interfaces of $name" "$(shows $name | grep -o 'interface [^ ]*' | grep -v DBus)" "interface $name"
done
stop_all

# The notifier and dunst, which needs an X server and shows a notification when it gets round to it.
start display Xvfb -displayfd 1 -screen 0 640x480x24 -nolisten tcp
until_true grep -x "[0-9][0-9]*" "$work/display"
DISPLAY=:$(grep -x "[0-9][0-9]*" "$work/display")
export DISPLAY
printf '[urgency_normal]\ntimeout = 0\n' >"$work/dunstrc"
start dunst dunst -config "$work/dunstrc"
until_true posts GetCapabilities
start posted dbus-monitor --session "member='Notify'"
until_true grep NameLost "$work/posted"
start chosen "$notifier" Title Body open Open
until_true sh -c "dunstctl action; grep -q '^action: open' '$work/chosen'"
until_true grep 'int32 -1' "$work/posted"
dunstctl close
ended
expect 'end of a dismissed one' "$(tail -n 1 "$work/chosen")" 'The notification was dismissed by the user.'
expect 'what was posted' "$(sed '1,/member=Notify/d' "$work/posted" | tr -s ' \n' ' ')" \
    ' string "Quorvane example" uint32 0 string "" string "Title" string "Body" array \[ string "open" string "Open" \] array \[ \] int32 -1 *'
grep -q 'Recive signal ActionInvoked( [1-9][0-9]* ,  "open" )' "$work/chosen"
