#!/usr/bin/env python3
"""Programs that post without a library: one with a number of its own, or one with large hints."""

import sys

from gi.repository import Gio, GLib

NAME = "org.freedesktop.Notifications"
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
loop = GLib.MainLoop()


def call(method, signature, *arguments):
    bus.call(NAME, "/" + NAME.replace(".", "/"), NAME, method,
             GLib.Variant(signature, arguments), None, 0, -1)


def hear(_bus, _sender, _path, _interface, signal, arguments):
    print(*arguments.unpack(), flush=True)
    if signal == "NotificationClosed":
        loop.quit()


if sys.argv[1] == "large":
    zeros = GLib.Bytes(bytes(15000000))
    large = GLib.Variant.new_from_bytes(GLib.VariantType("ay"), zeros, True)
    for _ in range(8):
        call("Notify", "(susssasa{sv}i)", "", 0, "", "Large", "", [], {"urgency": large}, 0)
    bus.flush_sync()
else:
    bus.signal_subscribe(None, NAME, None, None, None, 0, hear)
    stays = {"resident": GLib.Variant("b", True)}
    call("Notify", "(susssasa{sv}i)", "", 0, "", "Other", "", [], {}, 0)
    call("Notify", "(susssasa{sv}i)", "", 7, "", "Own", "", ["b", "B"], stays, 0)
    call("CloseNotification", "(u)", 0)
    input()
    call("CloseNotification", "(u)", 7)
    loop.run()
