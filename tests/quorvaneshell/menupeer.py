#!/usr/bin/python3
"""Menus of others: one of GTK behind an indicator, and one that is whatever the test says."""
from functools import reduce

import dbus.mainloop.glib
import dbus.service
import gi

gi.require_version("AyatanaAppIndicator3", "0.1")
gi.require_version("Gtk", "3.0")
from gi.repository import AyatanaAppIndicator3, GdkPixbuf, Gio, GLib, Gtk


def item(id, *children, **properties):
    named = {name.replace("_", "-"): value for name, value in properties.items()}
    return dbus.Struct((dbus.Int32(id), dbus.Dictionary(named, "sv"), dbus.Array(children, "v")))


def png(width, height):
    pixbuf = GdkPixbuf.Pixbuf.new(GdkPixbuf.Colorspace.RGB, False, 8, width, height)
    return dbus.ByteArray(pixbuf.save_to_bufferv("png", [], [])[1])


class Menu(dbus.service.Object):
    def show(self, *children):
        self.layout = item(0, *children)
        self.LayoutUpdated(0, 0)

    @dbus.service.method("com.canonical.dbusmenu", "iias", "u(ia{sv}av)")
    def GetLayout(self, id, depth, names):
        print("asked", flush=True)
        return 0, self.layout

    @dbus.service.method("com.canonical.dbusmenu", "isvu")
    def Event(self, id, event, data, time):
        print(event, id, flush=True)

    @dbus.service.signal("com.canonical.dbusmenu", "ui")
    def LayoutUpdated(self, revision, id):
        pass

    @dbus.service.signal("com.canonical.dbusmenu", "iu")
    def ItemActivationRequested(self, id, time):
        pass

    @dbus.service.signal("com.canonical.dbusmenu", "a(ia{sv})a(ias)")
    def ItemsPropertiesUpdated(self, changed, removed):
        pass


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
menu = Menu(dbus.SessionBus(), "/menu")
menu.show()
name = dbus.service.BusName("org.quorvane.menu", dbus.SessionBus())

bus = Gio.bus_get_sync(2)  # Before the indicator asks for it, which may be in vain otherwise.
widgets = Gtk.Menu()
loud = Gtk.RadioMenuItem(label="Loud", active=True)
more = Gtk.MenuItem(label="More", submenu=Gtk.Menu())
more.get_submenu().append(Gtk.MenuItem(label="a_b"))
for widget in (Gtk.MenuItem(label="_Open", use_underline=True), Gtk.SeparatorMenuItem(),
               Gtk.CheckMenuItem(label="Mute", sensitive=False), loud, more):
    widget.connect("activate", lambda item: print("clicked", item.get_label(), flush=True))
    widgets.append(widget)
widgets.show_all()
indicator = AyatanaAppIndicator3.Indicator.new("kettle", "kettle", 0)
indicator.set_menu(widgets)
indicator.connect("scroll-event", lambda _, steps, direction: print(direction, flush=True))
Gio.bus_own_name_on_connection(bus, "org.quorvane.gtk", 0, lambda *_: print("ready", flush=True))
# Each line of the standard input is run.
lines = open(0, "rb", buffering=0)  # What a buffer holds wakes nobody.
GLib.io_add_watch(0, GLib.IO_IN, lambda *_: exec(lines.readline(), globals()) or True)
GLib.MainLoop().run()
