"""A GTK program with a user interface that can be watched; see WatchedMain.cpp for what its input means.

Beside that: minimise | restore | resize big | resize small | add | remove
"""
import sys

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import GLib, Gtk  # noqa: E402

window = Gtk.Window(title="Watched")
column = Gtk.Box(orientation=Gtk.Orientation.VERTICAL)
window.add(column)
first, second = Gtk.Entry(), Gtk.Entry()
check = Gtk.CheckButton(label="Check")
rows = Gtk.ListBox()
for name in ("One", "Two"):
    rows.add(Gtk.Label(label=name))
for widget in (first, second, check, rows):
    column.add(widget)
others, labels = [], []


def open_other():
    other = Gtk.Window(title="Other")
    other.add(Gtk.Label(label="Inside"))
    other.show_all()
    others.append(other)


def close_other():
    while others:
        others.pop().destroy()


def add():
    label = Gtk.Label(label="Added")
    column.add(label)
    label.show()
    labels.append(label)


def remove():
    while labels:
        labels.pop().destroy()


commands = {
    "focus first": first.grab_focus,
    "focus second": second.grab_focus,
    "check on": lambda: check.set_active(True),
    "check off": lambda: check.set_active(False),
    "rename a": lambda: check.set_label("A"),
    "rename b": lambda: check.set_label("B"),
    "mark all": lambda: first.select_region(0, -1),
    "mark none": lambda: first.select_region(0, 0),
    "row 0": lambda: rows.select_row(rows.get_row_at_index(0)),
    "row 1": lambda: rows.select_row(rows.get_row_at_index(1)),
    "open": open_other,
    "close": close_other,
    "minimise": window.iconify,
    "restore": window.deiconify,
    "resize big": lambda: window.resize(500, 500),
    "resize small": lambda: window.resize(300, 300),
    "add": add,
    "remove": remove,
}


def read(channel, _condition):
    line = channel.readline()
    if line in ("", "quit\n"):
        Gtk.main_quit()
        return False
    line = line.rstrip("\n")
    if line.startswith("type "):
        first.set_text(line[5:])
    else:
        commands.get(line, lambda: None)()
    print("done " + line, flush=True)
    return True


is_ready = []


def focused(*_arguments):
    # Focus means nothing before the window is the active one.
    if not is_ready:
        is_ready.append(True)
        print("ready", flush=True)
    return False


first.connect("focus-in-event", focused)
GLib.io_add_watch(sys.stdin, GLib.IO_IN | GLib.IO_HUP, read)
window.show_all()
Gtk.main()
