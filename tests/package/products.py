"""A product on a medium: an icon of one color, a read-me with words of another, a program that says that it was started."""
import os, struct, subprocess

ICON, WORDS, OTHER_ICON = (0, 160, 40), (200, 0, 160), (20, 60, 200)


def drawn(kind, folder, color=ICON):
    """A picture of one color, in a format."""
    path = os.path.join(folder, f"icon.{kind}")
    color = "rgb(%d,%d,%d)" % color
    if kind == "svg":
        with open(path, "w") as file:
            file.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="128" height="128"><rect width="128" height="128" fill="{color}"/></svg>')
        return path
    made = path if kind != "icns" else os.path.join(folder, "icon.png")
    subprocess.run(["convert", "-size", "128x128", f"xc:{color}", "-quality", "100", "-sampling-factor", "4:4:4", f"{made}"], check=True)
    if kind == "icns":
        with open(made, "rb") as file:
            data = file.read()
        with open(path, "wb") as file:
            file.write(b"icns" + struct.pack(">I", 16 + len(data)) + b"ic07" + struct.pack(">I", 8 + len(data)) + data)
    return path


def put(path, text, mode=0o644):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w") as file:
        file.write(text)
    os.chmod(path, mode)


def make_product(medium, name="Foo"):
    """MEDIUM/Foo.app and MEDIUM/Read Me.rtf; started, it writes $HOME/started."""
    contents = os.path.join(medium, f"{name}.app/Contents")
    keys = {"CFBundleExecutable": name, "CFBundleIdentifier": f"org.example.{name}", "CFBundleName": name,
            "CFBundleSignature": "FOOX", "CFBundleShortVersionString": "2.1", "CFBundleIconFile": name, "CFBundlePackageType": "APPL"}
    entries = "".join(f"<key>{key}</key><string>{value}</string>" for key, value in keys.items())
    put(os.path.join(contents, "Info.plist"), f'<?xml version="1.0" encoding="UTF-8"?><plist version="1.0"><dict>{entries}</dict></plist>\n')
    put(os.path.join(contents, "Linux", name), '#!/bin/sh\necho 2.1 >"$HOME/started"\n', 0o755)
    os.makedirs(os.path.join(contents, "Resources"))
    os.replace(drawn("icns", medium), os.path.join(contents, "Resources", f"{name}.icns"))
    put(os.path.join(medium, "Read Me.rtf"),
        "{\\rtf1\\ansi{\\colortbl;\\red%d\\green%d\\blue%d;}\\f0\\fs144\\b\\cf1 Read this\\par}\n" % WORDS)
    return os.path.join(medium, f"{name}.app")
