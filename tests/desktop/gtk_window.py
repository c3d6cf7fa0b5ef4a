#!/usr/bin/python3
"""A real window of GTK 3 or 4 that decorates itself: header bar, round corners, own shadow.

Usage: gtk_window.py 3|4 TITLE      prints "ready" once it is on the screen
"""

import sys

import gi

version, title = sys.argv[1:]
gi.require_version("Gtk", version + ".0")
from gi.repository import GLib, Gtk  # noqa: E402


def ready():
    print("ready", flush=True)


header = Gtk.HeaderBar()
label = Gtk.Label(label="A window that decorates itself")
loop = GLib.MainLoop()
if version == "3":
    header.set_show_close_button(True)
    header.set_title(title)
    window = Gtk.Window(title=title)
    window.add(label)
    window.connect("destroy", lambda _: loop.quit())
    window.connect("map-event", lambda *_: ready())
else:
    Gtk.init()
    window = Gtk.Window(title=title)
    window.set_child(label)
    window.connect("close-request", lambda _: loop.quit())
    window.connect("map", lambda _: ready())
window.set_titlebar(header)
window.set_default_size(320, 200)
if version == "3":
    window.show_all()
else:
    window.present()
loop.run()
