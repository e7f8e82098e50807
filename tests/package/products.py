"""A product on a medium: an icon of one color, a read-me with words of another, a program that says that it was started."""
import os, struct, subprocess

ICON, WORDS, OTHER_ICON = (0, 160, 40), (200, 0, 160), (20, 60, 200)


def packed(tone):
    """128 x 128 bytes of that value, as old icon files pack them: a length, then what is repeated so often."""
    return (bytes([125 + 130, tone]) * (128 * 128 // 130)) + bytes([125 + 128 * 128 % 130, tone])


def write_icns(path, *entries):
    body = b"".join(name + struct.pack(">I", 8 + len(data)) + data for name, data in entries)
    with open(path, "wb") as file:
        file.write(b"icns" + struct.pack(">I", 8 + len(body)) + body)


def drawn(kind, folder, color=ICON):
    """A picture of one color, in a format; "old.icns" is what icon files were before they had PNG in them."""
    path = os.path.join(folder, f"icon.{kind}")
    if kind == "old.icns":
        write_icns(path, (b"it32", bytes(4) + b"".join(map(packed, color))), (b"t8mk", b"\xff" * 128 * 128))
        return path
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
        write_icns(path, (b"ic07", data))
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
