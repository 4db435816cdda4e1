#!/usr/bin/python3
"""A portal whose colour scheme is what the last line on its standard input said: 0 none, 1 dark, 2 light."""
import sys

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

NAME, PATH = "org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop"
INTERFACE = "org.freedesktop.portal.Settings"
SETTING = ("org.freedesktop.appearance", "color-scheme")
DESCRIPTION = f"""<node><interface name="{INTERFACE}">
<method name="Read"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/></method>
<signal name="SettingChanged"><arg type="s"/><arg type="s"/><arg type="v"/></signal></interface></node>"""


def scheme():
    return GLib.Variant("v", GLib.Variant("u", value))


def answer(_bus, _sender, _path, _interface, _method, _arguments, invocation):
    invocation.return_value(GLib.Variant.new_tuple(scheme()))


def follow(source, _condition):
    global value
    line = source.readline()
    if line:
        value = int(line)
        change = GLib.Variant("(ssv)", (*SETTING, GLib.Variant("u", value)))
        bus.emit_signal(None, PATH, INTERFACE, "SettingChanged", change)
    return bool(line)


value = int(sys.stdin.readline())
bus = Gio.bus_get_sync(Gio.BusType.SESSION)
bus.register_object(PATH, Gio.DBusNodeInfo.new_for_xml(DESCRIPTION).interfaces[0], answer)
Gio.bus_own_name_on_connection(bus, NAME, Gio.BusNameOwnerFlags.NONE, lambda *_: print("ready", flush=True), None)
GLib.io_add_watch(sys.stdin, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, follow)
GLib.MainLoop().run()
