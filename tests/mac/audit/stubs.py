#!/usr/bin/env python3
"""Writes libraries for linking that are nothing but the lists of names in symbols.txt.

  stubs.py FOLDER

Each line of symbols.txt that begins in the first column names a library and where it lies on a Mac; the lines below it name
what of it is used: functions and variables as they are written in C, classes with "@" before them; ":x86_64" behind a
name says that the library has it for that processor alone.
"""
import pathlib
import sys

TARGETS = "[ x86_64-macos, arm64-macos ]"


def libraries(text):
    found = []
    for line in text.splitlines():
        if not line.strip() or line.startswith("#"):
            continue
        if not line[0].isspace():
            found.append((*line.split(), []))
        else:
            found[-1][2].extend(line.split())
    return found


def exports(targets, names):
    symbols = sorted("_" + name for name in names if not name.startswith("@"))
    classes = sorted(name[1:] for name in names if name.startswith("@"))
    if not names:
        return []
    lines = [f"  - targets: {targets}"]
    if symbols:
        lines.append(f"    symbols: [ {', '.join(symbols)} ]")
    if classes:
        lines.append(f"    objc-classes: [ {', '.join(classes)} ]")
    return lines


def stub(place, names):
    of_one = [name.split(":")[0] for name in names if name.endswith(":x86_64")]
    lines = ["--- !tapi-tbd", "tbd-version: 4", f"targets: {TARGETS}", f"install-name: '{place}'", "current-version: 1",
             "exports:", *exports(TARGETS, [name for name in names if ":" not in name]), *exports("[ x86_64-macos ]", of_one)]
    return "\n".join(lines + ["...", ""])


def main():
    folder = pathlib.Path(sys.argv[1])
    text = (pathlib.Path(__file__).parent / "symbols.txt").read_text()
    for name, place, names in libraries(text):
        file = folder / (f"{name}.framework/{name}.tbd" if ".framework/" in place else f"lib{name}.tbd")
        file.parent.mkdir(parents=True, exist_ok=True)
        written = stub(place, names)
        if not file.exists() or file.read_text() != written:
            file.write_text(written)
    listed = folder / "list"
    if not listed.exists() or listed.read_text() != text:
        listed.write_text(text)
    return 0


if __name__ == "__main__":
    sys.exit(main())
