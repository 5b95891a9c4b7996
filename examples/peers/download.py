#!/usr/bin/python3
"""A libnotify client that updates its notification, and prints what the user does with it."""

import gi

gi.require_version("Notify", "0.7")
from gi.repository import GLib, Notify

Notify.init("Downloads")
loop = GLib.MainLoop()
download = Notify.Notification.new("Downloading", "holiday.zip", "folder-download")
download.add_action("default", "Show", lambda *_: print("default action", flush=True))
download.connect("closed", lambda *_: loop.quit())
percent = 0


def proceed():
    global percent
    percent = min(100, percent + 20)
    download.update("Downloaded" if percent == 100 else "Downloading", "holiday.zip", "folder-download")
    download.set_hint("value", GLib.Variant("i", percent))
    download.show()
    return percent < 100


proceed()
GLib.timeout_add(300, proceed)
loop.run()
print("closed", flush=True)
