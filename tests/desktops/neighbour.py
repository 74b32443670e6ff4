#!/usr/bin/python3
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
"""A neighbour in the tray: a status notifier item that names a symbolic icon, as the programs of a desktop do."""

import os

from gi.repository import Gio, GLib

PLACE = "/StatusNotifierItem"
INTERFACE = "org.kde.StatusNotifierItem"
VALUES = {"Category": "SystemServices", "Id": "neighbour", "Title": "Neighbour", "Status": "Active",
          "IconName": "audio-volume-high-symbolic", "IconThemePath": "", "AttentionIconName": "", "OverlayIconName": ""}
DESCRIPTION = (f"<node><interface name='{INTERFACE}'>"
               + "".join(f"<property name='{name}' type='s' access='read'/>" for name in VALUES)
               + "<property name='Menu' type='o' access='read'/><property name='ItemIsMenu' type='b' access='read'/>"
               "<signal name='NewIcon'/></interface></node>")


def value_of(_bus, _sender, _path, _interface, name):
    if name == "Menu":
        return GLib.Variant("o", "/NO_DBUSMENU")
    if name == "ItemIsMenu":
        return GLib.Variant("b", False)
    return GLib.Variant("s", VALUES[name])


bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object(PLACE, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], None, value_of, None)
own = f"org.kde.StatusNotifierItem-{os.getpid()}-1"
bus.call_sync("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "RequestName", GLib.Variant("(su)", (own, 0)), None, 0, -1)
bus.call_sync("org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher", "org.kde.StatusNotifierWatcher",
              "RegisterStatusNotifierItem", GLib.Variant("(s)", (own,)), None, 0, -1)
GLib.MainLoop().run()
