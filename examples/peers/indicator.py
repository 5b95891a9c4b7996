#!/usr/bin/python3
"""A tray item with a menu, as GTK programs make them; prints what is chosen."""

import gi

gi.require_version("Gtk", "3.0")
gi.require_version("AyatanaAppIndicator3", "0.1")
from gi.repository import AyatanaAppIndicator3 as Indicators
from gi.repository import Gio, Gtk


def row(menu, item, name):
    item.connect("activate", lambda *_: print("chosen:", name, flush=True))
    menu.append(item)
    return item


menu = Gtk.Menu()
row(menu, Gtk.MenuItem(label="_Synchronise now", use_underline=True), "synchronise")
row(menu, Gtk.CheckMenuItem(label="Pause", active=False), "pause")
menu.append(Gtk.SeparatorMenuItem())
folders = Gtk.Menu()
for folder in ("Documents", "Pictures", "Music"):
    row(folders, Gtk.MenuItem(label=folder), folder)
parent = Gtk.MenuItem(label="Folders", submenu=folders)
menu.append(parent)
row(menu, Gtk.MenuItem(label="Conflicts (none)", sensitive=False), "conflicts")
row(menu, Gtk.MenuItem(label="Quit"), "quit").connect("activate", Gtk.main_quit)
menu.show_all()

# Before the indicator asks for it, which registers in vain if it has to wait.
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
indicator = Indicators.Indicator.new("cloud-storage", "network-transmit-receive",
                                     Indicators.IndicatorCategory.APPLICATION_STATUS)
indicator.set_title("Cloud storage")
indicator.set_label("72 %", "100 %")
indicator.set_status(Indicators.IndicatorStatus.ACTIVE)
indicator.set_menu(menu)
Gtk.main()
