#!/usr/bin/python3
"""A picture of KWin's screen, by the interface that it has for that.

usage: kwin_picture.py FILE.png
"""
import os
import subprocess
import sys
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

bus = Gio.bus_get_sync(Gio.BusType.SESSION)
with open(sys.argv[1] + ".raw", "w+b") as raw:
    descriptors = Gio.UnixFDList.new()
    number = descriptors.append(raw.fileno())
    told, _ = bus.call_with_unix_fd_list_sync(
        "org.kde.KWin", "/org/kde/KWin/ScreenShot2", "org.kde.KWin.ScreenShot2", "CaptureActiveScreen",
        GLib.Variant("(a{sv}h)", ({}, number)), None, Gio.DBusCallFlags.NONE, 10000, descriptors)
    of_picture = told.unpack()[0]
    width, height = of_picture["width"], of_picture["height"]
    # It is written behind the answer, and nothing tells that it is whole.
    end = time.monotonic() + 10
    while os.fstat(raw.fileno()).st_size < of_picture["stride"] * height:
        if time.monotonic() > end:
            sys.exit("KWin has not written its picture")
        time.sleep(0.01)
subprocess.run(["convert", "-size", f"{width}x{height}", "-depth", "8", "bgra:" + raw.name, "-alpha", "off", sys.argv[1]],
               check=True)
os.remove(raw.name)
