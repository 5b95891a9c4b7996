#!/usr/bin/env python3
"""A program that asks for silence too often, tells what it is answered, and takes one back."""

from gi.repository import Gio, GLib

service = Gio.DBusProxy.new_for_bus_sync(
    Gio.BusType.SESSION, Gio.DBusProxyFlags.NONE, None, "org.freedesktop.Notifications",
    "/org/freedesktop/Notifications", "org.freedesktop.Notifications", None)
answer = []
for number in range(17):
    try:
        answer.append(service.Inhibit("(ssa{sv})", "org.example.slides.desktop", str(number), {}))
    except GLib.Error as error:
        print(Gio.DBusError.get_remote_error(error).split(".")[-1], end=" ")
context = GLib.MainContext.default()
while not service.get_cached_property("Inhibited").unpack():
    context.iteration()
print(True, flush=True)
input()
service.UnInhibit("(u)", answer[0])
input()
