#!/usr/bin/python3
"""A tray item that is whatever the test says: each line of the standard input is run as Python."""

import dbus.lowlevel
import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

NAME = "org.kde.StatusNotifierItem"
WATCHER = "org.kde.StatusNotifierWatcher"


class Item(dbus.service.Object):
    held = None
    lost = 0

    @dbus.service.method(dbus.PROPERTIES_IFACE, "s", "a{sv}", async_callbacks=("answer", "fail"))
    def GetAll(self, interface, answer, fail):
        print("GetAll", flush=True)
        if self.lost > 0:
            self.lost -= 1
        else:
            self.held = answer if self.held else answer(self.values)

    @dbus.service.method(NAME, "is")
    def Scroll(self, delta, orientation):
        print("scroll", delta, orientation, flush=True)


def make(path, **values):
    item = Item(bus, path)
    item.values = dbus.Dictionary({"Id": "odd", "IconName": "kettle", **values}, "sv")
    return item


def change(**changed):
    values.update(changed)
    for signal in ("NewTitle", "NewIcon", "NewToolTip"):
        bus.send_message(dbus.lowlevel.SignalMessage("/item", NAME, signal))


def register(text, over=None):
    (over or bus).call_blocking(WATCHER, "/StatusNotifierWatcher", WATCHER, "RegisterStatusNotifierItem", "s", [text])


def pictures(*sizes):
    pixels = [(width, height, dbus.ByteArray(b"\xff\x00\x80\x40" * number)) for width, height, number in sizes]
    return dbus.Array(pixels, "(iiay)")


def run(*_):
    try:
        exec(lines.readline(), globals())
    except dbus.DBusException as error:
        print(error.get_dbus_name(), flush=True)
    return True


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SessionBus()
item = make("/item")
values = item.values
lines = open(0, "rb", buffering=0)  # What a buffer holds wakes nobody.
print("ready", flush=True)
GLib.io_add_watch(0, GLib.IO_IN, run)
GLib.MainLoop().run()
