#!/usr/bin/env python3
"""Whether a bundle that is another than what was signed is found out, and whether another signer comes to the same digests.

  seal_test.py BUNDLE.app TARGET

Works on copies. The other signer is LLVM's, which signs a program anew when it copies it (llvm-objcopy). Of code and data,
but for the page of the load commands, its digests are those of sign.py; what it signs is what bundle.py takes for signed. It
orders the linker's tables behind them anew, and knows nothing of resources.
"""
import pathlib
import plistlib
import shutil
import struct
import subprocess
import sys
import tempfile

sys.dont_write_bytecode = True
import bundle as judge  # noqa: E402 (nothing is left beside the sources)
import macho  # noqa: E402

PROGRAM, TOOL, SEAL = "MacOS/HalvornInstaller", "Resources/train", "_CodeSignature/CodeResources"


def altered(file, at=-1):
    data = bytearray(file.read_bytes())
    data[at] ^= 1
    file.write_bytes(data)


def extended(file):
    file.write_bytes(file.read_bytes() + b"\n")


def unsealed(contents, path):
    """Taken out, and out of the seal as well: what the program was signed with is another."""
    (contents / path).unlink()
    seal = plistlib.loads((contents / SEAL).read_bytes())
    del seal["files"][path], seal["files2"][path]
    (contents / SEAL).write_bytes(plistlib.dumps(seal))


BREAKS = {
    "a resource is altered": lambda contents: altered(contents / "Resources/Checkmark.png"),
    "a text of a language is altered": lambda contents: altered(contents / "Resources/en.lproj/Localizable.strings"),
    "a resource is added": lambda contents: (contents / "Resources/More.png").write_bytes(b"x"),
    "a program is added": lambda contents: (contents / "MacOS/More").write_bytes(b"x"),
    "a resource is removed": lambda contents: (contents / "Resources/SoundOfSilence.aiff").unlink(),
    "a resource is removed, and its line in the seal": lambda contents: unsealed(contents, "Resources/Done.aiff"),
    "Info.plist is altered": lambda contents: extended(contents / "Info.plist"),
    "the seal is altered": lambda contents: extended(contents / SEAL),
    "the seal is removed": lambda contents: (contents / SEAL).unlink(),
    "a load command is altered": lambda contents: altered(contents / PROGRAM, 40),
    "code is altered": lambda contents: altered(contents / PROGRAM, 0x8000),
    "the tool's code is altered": lambda contents: altered(contents / TOOL, 0x8000),
    "the tool is longer": lambda contents: extended(contents / TOOL),
}


def survivors(bundle, target, room):
    for number, (what, broken) in enumerate(BREAKS.items()):
        copy = room / str(number) / bundle.name
        shutil.copytree(bundle, copy)
        broken(copy / "Contents")
        if not list(judge.complaints_about(copy, target)):
            yield what


def directory_of(data):
    return macho.CodeDirectory(macho.blobs(data, macho.signature(data)[1])[0])


def complaints_of_other_signer(program, room):
    again = room / program.name
    subprocess.run(["llvm-objcopy", str(program), str(again)], check=True)
    data, other = program.read_bytes(), again.read_bytes()
    ours, theirs = directory_of(data), directory_of(other)
    if judge.wrong_pages(other, theirs):
        yield "takes the pages of the other signer for wrong"
    tables = struct.unpack_from("<Q", data, macho.segment(data, b"__LINKEDIT") + 40)[0] >> ours.page_bits
    if ours.pages[1:tables] != theirs.pages[1:tables] or tables < 100:
        yield f"is signed otherwise by the other signer in its {tables} pages of code and data"
    print(f"{program.name}: {len(ours.pages)} pages are signed, and the first {tables} of them by another signer likewise")


def main():
    bundle, target = pathlib.Path(sys.argv[1]), sys.argv[2]
    failures = []
    with tempfile.TemporaryDirectory() as folder:
        room = pathlib.Path(folder)
        failures += [f"nobody notices that {what}" for what in survivors(bundle, target, room)]
        for path in (PROGRAM, TOOL):
            failures += [f"{path} {complaint}" for complaint in complaints_of_other_signer(bundle / "Contents" / path, room)]
    print("\n".join(failures) if failures else f"{len(BREAKS)} of {len(BREAKS)} bundles that were altered are found out")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
