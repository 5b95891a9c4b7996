#!/usr/bin/python3
"""Menus of others: one of GTK behind an indicator, and one that is whatever the test says.

Each line of the standard input is run as Python; "ready" means that the menus are there.
"""

import sys

import dbus.mainloop.glib
import dbus.service
import gi

gi.require_version("AyatanaAppIndicator3", "0.1")
gi.require_version("Gtk", "3.0")
from gi.repository import AyatanaAppIndicator3, Gio, GLib, Gtk  # noqa: E402

NAME = "com.canonical.dbusmenu"


def item(id, *children, **properties):
    named = {name.replace("_", "-"): value for name, value in properties.items()}
    return dbus.Struct((dbus.Int32(id), dbus.Dictionary(named, "sv"), dbus.Array(children, "v")))


class Menu(dbus.service.Object):
    def show(self, *children, later=None):
        self.layout, self.later = item(0, *children), later
        self.LayoutUpdated(0, 0)

    @dbus.service.method(NAME, "iias", "u(ia{sv}av)")
    def GetLayout(self, id, depth, names):
        return 0, self.layout

    @dbus.service.method(NAME, "i", "b")
    def AboutToShow(self, id):
        self.layout = self.later or self.layout
        return bool(self.later)

    @dbus.service.method(NAME, "isvu")
    def Event(self, id, event, data, time):
        print(event, id, flush=True)

    @dbus.service.signal(NAME, "ui")
    def LayoutUpdated(self, revision, id):
        pass

    @dbus.service.signal(NAME, "a(ia{sv})a(ias)")
    def ItemsPropertiesUpdated(self, changed, removed):
        pass


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
menu = Menu(dbus.SessionBus(), "/menu")
menu.show()
name = dbus.service.BusName("org.quorvane.menu", dbus.SessionBus())

widgets = Gtk.Menu()
radio = Gtk.RadioMenuItem(label="Quiet", active=True)
below = Gtk.MenuItem.new_with_mnemonic("_More")
below.set_submenu(Gtk.Menu())
below.get_submenu().append(Gtk.MenuItem(label="a_b"))
for widget in (
    Gtk.MenuItem.new_with_mnemonic("_Open"), Gtk.SeparatorMenuItem(), Gtk.CheckMenuItem(label="Mute", active=True),
    radio, Gtk.RadioMenuItem(label="Loud", group=radio), Gtk.MenuItem(label="Off", sensitive=False), below,
):
    widget.connect("activate", lambda item: print("GTK", item.get_label(), flush=True))
    widgets.append(widget)
widgets.show_all()
indicator = AyatanaAppIndicator3.Indicator.new("kettle", "kettle", 0)
indicator.set_menu(widgets)
Gio.bus_own_name_on_connection(
    Gio.bus_get_sync(Gio.BusType.SESSION), "org.quorvane.gtk", 0, lambda *_: print("ready", flush=True), None
)


def run(*_):
    exec(sys.stdin.readline(), globals())
    return True


GLib.io_add_watch(0, GLib.IO_IN, run)
GLib.MainLoop().run()
