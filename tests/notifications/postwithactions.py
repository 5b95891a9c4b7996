"""Posts a notification with two actions and prints what comes of it: the chosen key and the reason."""

import dbus
import dbus.mainloop.glib
from gi.repository import GLib

dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
loop = GLib.MainLoop()
name = "org.freedesktop.Notifications"
service = dbus.Interface(dbus.SessionBus().get_object(name, "/" + name.replace(".", "/")), name)
service.connect_to_signal("ActionInvoked", lambda number, key: print(key))
service.connect_to_signal("NotificationClosed", lambda number, reason: (print(reason), loop.quit()))
image = dbus.Struct((1, 1, 3, False, 8, 3, dbus.ByteArray(b"rgb")))
service.Notify("peer", 0, "", "?", "", ["yes", "Yes", "no", "No"], {"image-data": image}, -1)
loop.run()
