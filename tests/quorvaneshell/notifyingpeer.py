#!/usr/bin/env python3
"""A program that posts through GIO, and through libnotify once more when it is told to."""

import gi

gi.require_version("Notify", "0.7")
from gi.repository import Gio, GLib, Notify

app = Gio.Application(application_id="org.example.Peer")
app.register()
app.send_notification("message", Gio.Notification.new("GIO"))
Notify.init("Volume")
volume = Notify.Notification.new("Volume")
loop = GLib.MainLoop()
volume.connect("closed", lambda _: loop.quit())
volume.show()
input()
volume.update("Louder")
volume.show()
loop.run()
print(volume.get_closed_reason())
