"""What is installed in the campaign, what it replaces, and where both are afterwards."""
import hashlib
import os
import plistlib
import stat
import struct
import urllib.parse
import zlib

# The signature is nobody else's: who installs it without a desktop asks every copy of the person's to quit.
INFO = {"CFBundleName": "Sample", "CFBundleIdentifier": "example.halvorn.Sample", "CFBundleExecutable": "Sample", "CFBundleVersion": "2",
        "CFBundleSignature": "ATKD", "CFBundleShortVersionString": "2.0", "CFBundleIconFile": "Sample", "LSMinimumSystemVersion": "2.0"}


def png(width=16, height=16):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
    rows = b"".join(b"\0" + bytes([x * 7 & 255, 80, 160, 255] * width) for x in range(height))
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)) \
        + chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b"")


def tiff():
    tags = [(256, 4, 1, 2), (257, 4, 1, 2), (258, 3, 1, 8), (259, 3, 1, 1), (262, 3, 1, 1), (273, 4, 1, 8), (277, 3, 1, 1),
            (278, 4, 1, 2), (279, 4, 1, 4)]
    body = b"".join(struct.pack("<HHII", *tag) for tag in tags)
    return b"II*\0" + struct.pack("<I", 12) + b"\1\2\3\4" + struct.pack("<H", len(tags)) + body + b"\0" * 4


def icns():
    part = b"ic07" + struct.pack(">I", len(png()) + 8) + png()
    return b"icns" + struct.pack(">I", len(part) + 8) + part


def make_product(folder, name="Sample.app", version="2.0"):
    contents = os.path.join(folder, name, "Contents")
    for sub in ("Linux", "Resources/en.lproj"):
        os.makedirs(os.path.join(contents, sub))
    with open(os.path.join(contents, "Info.plist"), "wb") as file:
        file.write(plistlib.dumps(INFO | {"CFBundleShortVersionString": version}))
    with open(os.path.join(contents, "Linux/Sample"), "w") as file:
        file.write("#!/bin/sh\n")
    os.chmod(os.path.join(contents, "Linux/Sample"), 0o755)
    with open(os.path.join(contents, "Resources/Sample.icns"), "wb") as file:
        file.write(icns())
    return os.path.join(folder, name)


def picture(path):
    """Everything at and below the path: kinds, bytes, and whether it may be started. Equal pictures are equal trees."""
    facts = os.lstat(path)
    if stat.S_ISLNK(facts.st_mode):
        return "link to " + os.readlink(path)
    if stat.S_ISDIR(facts.st_mode):
        return {name: picture(os.path.join(path, name)) for name in os.listdir(path)}
    if not stat.S_ISREG(facts.st_mode):
        return stat.S_IFMT(facts.st_mode)
    with open(path, "rb") as file:
        return facts.st_mode & 0o100, hashlib.file_digest(file, "sha256").hexdigest() if hasattr(hashlib, "file_digest") \
            else hashlib.sha256(file.read()).hexdigest()


def picture_or_none(path):
    try:
        return picture(path)
    except OSError:
        return None


class Replacement:
    """A product and an older copy of it in the place where it goes."""

    def __init__(self, folder, apps="Applications", files=0, size=100, rng=None):
        self.folder, self.apps = folder, os.path.join(folder, apps)
        image = os.path.join(folder, "image")
        for each in (image, self.apps, os.path.join(folder, "home")):
            os.makedirs(each, exist_ok=True)
        self.source = make_product(image)
        for number in range(files):
            with open(os.path.join(self.source, f"Contents/Resources/{number}"), "wb") as file:
                file.write(rng.randbytes(size) if rng else bytes(size))
        self.place = make_product(self.apps, version="1.0")
        with open(os.path.join(self.place, "Contents/Resources/mine"), "w") as file:
            file.write("mine")
        self.trashes = [folder]  # below these is looked for a Trash
        self.take_pictures()

    def take_pictures(self):
        self.new, self.old = picture(self.source), picture(self.place)

    def in_the_trash(self):
        """The old copies that somebody would find there, whole and with the place that they come from."""
        found = []
        for at, folders, _ in (step for top in self.trashes for step in os.walk(top)):
            if "files" not in folders or "info" not in folders:
                continue
            for name in os.listdir(os.path.join(at, "files")):
                note = os.path.join(at, "info", name + ".trashinfo")
                if picture_or_none(os.path.join(at, "files", name)) == self.old and self._is_told_by(note, os.path.dirname(at)):
                    found.append(os.path.join(at, "files", name))
        return found

    def _is_told_by(self, note, top):
        try:
            with open(note) as file:
                paths = [urllib.parse.unquote(line[5:].rstrip("\n")) for line in file if line.startswith("Path=")]
        except OSError:
            return False
        return [os.path.join(top, path) for path in paths] == [self.place]

    def outcome(self, status):
        """Where the old copy is, and whether what was said of the new one holds."""
        now, trashed = picture_or_none(self.place), self.in_the_trash()
        if picture(self.source) != self.new:
            return "source changed"
        if now == self.old:
            return "old twice" if trashed else "said to be placed" if status == 0 else "old kept"
        if not trashed:
            return "OLD LOST"
        if now == self.new:
            return "new placed"
        return "nothing placed" if status == 0 else "old in Trash"


WHOLE = {"old kept", "old in Trash", "new placed"}
