#!/usr/bin/env python3
"""Whether a bundle is laid out as macOS wants it, its programs are what they should be, and it is what was signed.

  bundle.py BUNDLE.app TARGET

TARGET is aarch64-macos or x86_64-macos. What is compared with what is expected: the kind of file and processor, and the
libraries that each program loads and no others. What is signed is computed again: every page of the programs, Info.plist,
and every file that the rules of the bundle's own seal ask for.
"""
import hashlib
import pathlib
import plistlib
import re
import struct
import subprocess
import sys

sys.dont_write_bytecode = True
import macho  # noqa: E402 (nothing is left beside the sources)

PROCESSORS = {"aarch64-macos": 0x0100000C, "x86_64-macos": 0x01000007}
KINDS = {"aarch64-macos": "arm64", "x86_64-macos": "x86_64"}
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


MAIN_PROGRAM = "Contents/MacOS/HalvornInstaller"


def loaded_libraries(data):
    for place, command, _ in macho.load_commands(data):
        if command in (0xC, 0x80000018):  # a library, a weak one
            start = place + struct.unpack_from("<I", data, place + 8)[0]
            yield data[start:data.index(b"\0", start)].decode()


def complaints_of_others(program, target, libraries):
    """What two tools that know the format say of it."""
    kind = subprocess.run(["file", "-b", str(program)], check=True, text=True, stdout=subprocess.PIPE).stdout
    if not kind.startswith(f"Mach-O 64-bit {KINDS[target]} executable"):
        yield f"is {kind.strip()}"
    listing = subprocess.run(["llvm-objdump", "--macho", "--dylibs-used", str(program)], check=True, text=True,
                             stdout=subprocess.PIPE).stdout
    listed = {line.split(" (")[0].strip() for line in listing.splitlines()[1:]}
    if listed != libraries:
        yield f"loads, as another reads it, {sorted(listed ^ libraries)} differently"


def wrong_pages(data, directory):
    """Pages that are another than was signed, or that only one of the two has."""
    length = 1 << directory.page_bits
    pages = [hashlib.sha256(data[at:min(at + length, directory.limit)]).digest() for at in range(0, directory.limit, length)]
    return [i for i in range(max(len(pages), len(directory.pages))) if pages[i:i + 1] != directory.pages[i:i + 1]]


def complaints_about_signature(data, identifier, sealed):
    """sealed: {slot: the bytes that its digest is of}"""
    found = macho.signature(data)
    if found is None:
        yield "is not signed"
        return
    _, start, size = found
    blobs = macho.blobs(data, start)
    if 0 not in blobs:
        yield "has no code directory"
        return
    directory = macho.CodeDirectory(blobs[0])
    if directory.magic != macho.CODE_DIRECTORY or directory.flags & macho.AD_HOC == 0 or directory.kind != macho.SHA256:
        yield "is not signed ad hoc with the digests that today's systems ask for"
    if directory.identifier != identifier:
        yield f"is signed as {directory.identifier}"
    if directory.limit != start or start + size != len(data):
        yield "has bytes that are not signed"
    wrong = wrong_pages(data, directory)
    if wrong:
        yield f"has {len(wrong)} pages that are not what was signed, the first is {wrong[0]}"
    expected = {**sealed, macho.REQUIREMENTS_SLOT: blobs.get(macho.REQUIREMENTS_SLOT, b"")}
    for slot, content in expected.items():
        if directory.special.get(slot) != hashlib.sha256(content).digest():
            yield f"was signed with something else in slot {slot}"


def is_sealed(path, rules):
    """Whether the heaviest of the rules asks for the file."""
    heaviest = {"omit": True, "weight": 0.0}
    for pattern, rule in rules.items():
        rule = rule if isinstance(rule, dict) else {}
        if re.match(pattern, path) and rule.get("weight", 1.0) > heaviest.get("weight", 1.0):
            heaviest = rule
    return not heaviest.get("omit", False)


def complaints_about_seal(contents):
    """Files that are another, or not there, or that nobody signed."""
    seal = plistlib.loads((contents / "_CodeSignature/CodeResources").read_bytes())
    files, rules = seal["files2"], seal["rules2"]
    for path, entry in files.items():
        file = contents / path
        if not file.is_file():
            if not entry.get("optional"):
                yield f"{path} is sealed and is not there"
        elif hashlib.sha256(file.read_bytes()).digest() != entry["hash2"]:
            yield f"{path} is not what was sealed"
    for file in contents.rglob("*"):
        path = file.relative_to(contents).as_posix()
        is_own = path.startswith("_CodeSignature/") or f"Contents/{path}" == MAIN_PROGRAM
        if file.is_file() and not is_own and path not in files and is_sealed(path, rules):
            yield f"{path} is not sealed"


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
        magic, processor, _, kind = struct.unpack_from("<4I", data)
        libraries = set(loaded_libraries(data))
        if (magic, processor, kind) != (0xFEEDFACF, PROCESSORS[target], 2):
            yield f"{name} is no program for {target}"
        if libraries != expected:
            yield f"{name} loads {sorted(libraries - expected)} beyond and lacks {sorted(expected - libraries)}"
        yield from (f"{name} {complaint}" for complaint in complaints_of_others(bundle / name, target, libraries))
    yield from complaints_about_signatures(bundle, information.get("CFBundleIdentifier"))


def complaints_about_signatures(bundle, identifier):
    seal = bundle / "Contents/_CodeSignature/CodeResources"
    if not seal.is_file():
        yield "there is no seal"
        return
    yield from complaints_about_seal(bundle / "Contents")
    sealed = {macho.INFORMATION_SLOT: (bundle / "Contents/Info.plist").read_bytes(), macho.RESOURCES_SLOT: seal.read_bytes()}
    for name, asked in ((MAIN_PROGRAM, (identifier, sealed)), ("Contents/Resources/train", ("train", {}))):
        yield from (f"{name} {complaint}" for complaint in complaints_about_signature((bundle / name).read_bytes(), *asked))


def main():
    bundle, target = pathlib.Path(sys.argv[1]), sys.argv[2]
    complaints = list(complaints_about(bundle, target))
    print("\n".join(complaints) if complaints else f"{bundle}: a bundle for {target}")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
