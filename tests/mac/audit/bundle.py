#!/usr/bin/env python3
"""Whether a bundle is laid out as macOS wants it, and its programs are what they should be.

  bundle.py BUNDLE.app TARGET

TARGET is aarch64-macos or x86_64-macos. What is compared with what is expected: the kind of file and processor, the
libraries that each program loads and no others, and, for the processor that demands one, the signature.
"""
import pathlib
import plistlib
import struct
import sys

PROCESSORS = {"aarch64-macos": 0x0100000C, "x86_64-macos": 0x01000007}
SYSTEM = "/usr/lib/libSystem.B.dylib"
FRAMEWORKS = {"AppKit": "C", "Foundation": "C", "Carbon": "A", "CoreServices": "A", "ApplicationServices": "A",
              "CoreFoundation": "A", "Security": "A", "CoreAudio": "A", "IOKit": "A"}
LOADED = {
    "Contents/MacOS/HalvornInstaller": {SYSTEM, "/usr/lib/libobjc.A.dylib", "/usr/lib/libxml2.2.dylib"} | {
        f"/System/Library/Frameworks/{name}.framework/Versions/{version}/{name}" for name, version in FRAMEWORKS.items()},
    # The tool with administrator rights: the C library alone, C++ is in it.
    "Contents/Resources/train": {SYSTEM},
}
RESOURCES = ("InstallerWindow.xml", "HalvornInstaller.icns", "en.lproj/Localizable.strings", "Checkmark.png",
             "AlertStopIcon.png", "SoundOfSilence.aiff")


def load_commands(data):
    magic, processor, _, kind, count = struct.unpack_from("<5I", data)
    libraries, signature, place = set(), None, 32
    for _ in range(count):
        command, size = struct.unpack_from("<2I", data, place)
        if command in (0xC, 0x80000018):  # a library, a weak one
            start = place + struct.unpack_from("<I", data, place + 8)[0]
            libraries.add(data[start:data.index(b"\0", start)].decode())
        if command == 0x1D:
            signature = struct.unpack_from("<2I", data, place + 8)
        place += size
    return magic, processor, kind, libraries, signature


def is_signed_ad_hoc(data, signature):
    """The code directory's flags say ad hoc, and each page has the digest that it names."""
    import hashlib
    start, _ = signature
    magic, _, count = struct.unpack_from(">3I", data, start)
    if magic != 0xFADE0CC0:
        return False
    for i in range(count):
        kind, offset = struct.unpack_from(">2I", data, start + 12 + 8 * i)
        if kind != 0:
            continue
        at = start + offset
        _, _, _, flags, hashes, _, _, slots, limit = struct.unpack_from(">9I", data, at)
        length, _, _, page = struct.unpack_from("4B", data, at + 36)
        for slot in range(slots):
            piece = data[slot << page:min((slot + 1) << page, limit)]
            named = data[at + hashes + length * slot:at + hashes + length * (slot + 1)]
            if hashlib.sha256(piece).digest()[:length] != named:
                return False
        return flags & 0x2 != 0 and slots > 0
    return False


def complaints_about(bundle, target):
    with open(bundle / "Contents/Info.plist", "rb") as file:
        information = plistlib.load(file)
    if information.get("CFBundlePackageType") != "APPL" or information.get("CFBundleExecutable") != "HalvornInstaller":
        yield "Info.plist does not describe the program"
    if not all(part.isdigit() for part in information.get("CFBundleShortVersionString", "?").split(".")):
        yield "Info.plist has no version"
    for name in RESOURCES:
        if not (bundle / "Contents/Resources" / name).is_file():
            yield f"there is no resource {name}"
    for name, expected in LOADED.items():
        data = (bundle / name).read_bytes()
        magic, processor, kind, libraries, signature = load_commands(data)
        if (magic, processor, kind) != (0xFEEDFACF, PROCESSORS[target], 2):
            yield f"{name} is no program for {target}"
        if libraries != expected:
            yield f"{name} loads {sorted(libraries - expected)} beyond and lacks {sorted(expected - libraries)}"
        if target == "aarch64-macos" and (signature is None or not is_signed_ad_hoc(data, signature)):
            yield f"{name} is not signed"


def main():
    bundle, target = pathlib.Path(sys.argv[1]), sys.argv[2]
    complaints = list(complaints_about(bundle, target))
    print("\n".join(complaints) if complaints else f"{bundle}: a bundle for {target}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
