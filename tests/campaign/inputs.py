"""Everything that a product brings, changed at random: shown by the installer, installed, and read by halvorn."""
import json
import os
import plistlib
import shutil
import struct
import subprocess

from installations import Installation
from products import INFO, WHOLE, Replacement, icns, png, tiff
from program import Program, environment
from stopper import supports

OLD_LIST = "{\n" + "".join(f'  {key} = "{value}";\n' for key, value in INFO.items()) + "}\n"
SVG = '<svg xmlns="http://www.w3.org/2000/svg" width="16" height="16"><defs><g id="a"><rect width="8" height="8"/></g></defs>' \
      '<use href="#a" x="4"/><path d="M0 0L9 9" stroke="red"/></svg>'
SOUND = b"RIFF" + struct.pack("<I", 44) + b"WAVEfmt " + struct.pack("<IHHIIHH", 16, 1, 1, 8000, 8000, 1, 8) + b"data" \
    + struct.pack("<I", 8) + b"\x80" * 8
ENTRY = b"[Desktop Entry]\nType=Application\nName=Sample\nExec=/usr/bin/true %U\nIcon=sample\nHidden=false\n"


def seeds(sources):
    """Name of the input, file in the product, its bytes."""
    data = os.path.join(sources, "tests/data/window")
    result = {"plist xml": ("Info.plist", plistlib.dumps(INFO)),
              "plist binary": ("Info.plist", plistlib.dumps(INFO, fmt=plistlib.FMT_BINARY)),
              "plist old": ("Info.plist", OLD_LIST.encode()),
              "strings": ("Resources/en.lproj/InfoPlist.strings", b'"CFBundleName" = "Sample";\n/* x */ "a\\U00e4" = "b\\"c";\n'),
              "icns": ("Resources/Sample.icns", icns()), "png": ("Resources/Sample", png()),
              "tiff": ("Resources/Sample", tiff()), "svg": ("Resources/Sample", SVG.encode()),
              "sound wav": (None, SOUND), "desktop entry": (None, ENTRY), "layout": (None, b"")}
    with open(os.path.join(sources, "Resources/sounds/Done.aiff"), "rb") as file:
        result["sound aiff"] = (None, file.read())
    for kind, name in (("rtf", "editor.rtf"), ("html", "readme.html"), ("md", "readme.md")):
        with open(os.path.join(data, name), "rb") as file:
            result[kind] = (f"../../Read Me.{kind}", file.read())
    return result


def mutated(rng, data):
    data = bytearray(data)
    for _ in range(rng.choice([1, 1, 2, 4, 16, 64])):
        at = rng.randrange(len(data) + 1)
        way = rng.randrange(8)
        if way == 0 and at < len(data):
            data[at] ^= 1 << rng.randrange(8)
        elif way == 1:
            data[at:at + rng.randrange(1, 64)] = b""
        elif way == 2:
            data[at:at] = rng.randbytes(rng.randrange(1, 16))
        elif way == 3:
            piece = bytes(data[at:at + rng.randrange(1, 256)])
            data[at:at] = piece * rng.choice([2, 10, 1000, 20000])
        elif way == 4:
            data[at:at + 4] = rng.choice([b"\xff" * 4, b"\0" * 4, b"\x7f\xff\xff\xff", b"\x80\0\0\0", b"65536", b"-1"])
        elif way == 5:
            data[at:at] = rng.choice(["\u202e", "\u200b", "\ufeff", "\u2028", "%@%n", "\\u{0}", "\ud7ff"]).encode()
        elif way == 6:
            data[at:] = b""
        else:
            other = rng.randrange(len(data) + 1)
            data[at:at] = data[other:other + rng.randrange(1, 512)]
        del data[20 << 20:]
    return bytes(data)


def tangle(rng, contents):
    """Makes the layout of the bundle a strange one."""
    way = rng.randrange(6)
    resources = os.path.join(contents, "Resources")
    if way == 0:
        shutil.rmtree(resources)
        os.symlink(rng.choice(["/", "/dev", "..", ".", "/nowhere"]), resources)
    elif way == 1:
        os.remove(os.path.join(contents, "Info.plist"))
        os.mkfifo(os.path.join(contents, "Info.plist"))
    elif way == 2:
        deep = resources
        for _ in range(rng.randrange(1, 400)):
            deep = os.path.join(deep, "d")
        try:
            os.makedirs(deep)
        except OSError:
            pass  # deeper than a path may be
    elif way == 3:
        for i in range(rng.randrange(1, 300)):
            os.symlink(rng.choice([str(i), "..", "/dev/zero"]), os.path.join(resources, str(i)))
    elif way == 4:
        shutil.move(os.path.join(contents, "Info.plist"), os.path.join(resources, "Info-gnustep.plist"))
    else:
        os.makedirs(os.path.join(os.fsencode(resources), rng.choice([b"\xff\xfe", b"a\nb", "\u202eppa".encode(), b"%@%n"])))


SOUNDS = {"sound wav": "Done.aiff", "sound aiff": "Done.aiff"}  # which of the installer's own they take the place of
SEEN = {"rtf": "-readMePath", "html": "-readMePath", "md": "-readMePath", "png": "-iconPath", "tiff": "-iconPath", "svg": "-iconPath"}
# How each command of halvorn may end, whatever it was given.
ANSWERS = {"check": {0, 1, 66}, "plan": {0, 2, 3, 4, 5, 6, 7, 66}, "remove": {0, 4, 5, 7, 66}}
PLACED_BY_NOBODY = {"old kept", "said to be placed"}  # the tool's answer is all that whoever asked it knows
COMPLAINTS = (b"Error executing command as another user: Not authorized\n\nThis incident has been reported.\n",
              b"Error executing command as another user: No authentication agent found.\n", b"copied 4194304\ncopied 8388608\n",
              b"ERROR -- Could not copy myself to /opt/x\nCAUSE -- No space left on device: /opt/x (write)\n")


class Inputs:
    def __init__(self, tools):
        self.tools, self.seeds = tools, seeds(tools.sources)

    def skipped(self):
        lacking = {} if self.tools.is_isolated else {"sounds and the tool's answer": "no mounts of its own"}
        return lacking | ({"the installer's window": self.tools.lacks("installer")} if self.tools.lacks("installer") else {})

    def allows(self, subject, outcome):
        if subject.endswith(" unchanged"):
            return outcome == "read"
        if "tool's answer" in subject:
            return outcome in PLACED_BY_NOBODY
        return outcome in (WHOLE if "installed" in subject else {"answered"} if "asked about" in subject else {"shown", "sentence"})

    def fixed(self, fresh_folder):
        """Every input as it should be, and whether it is read: what nobody reads, no change of it can attack."""
        if supports():
            return {}
        names = [name for name in self.seeds if name != "layout" and (self.tools.is_isolated or name not in SOUNDS)]
        cases = {f"{name} unchanged": lambda folder, name=name: (f"{name} unchanged", self.read(folder, name)) for name in names}
        if self.tools.is_isolated:
            cases["tool's answer unchanged"] = lambda folder: ("tool's answer unchanged", self.answer_read(folder))
        return cases

    def chance(self, rng, folder):
        names = sorted(set(self.seeds) - set(SOUNDS)) + (["tool's answer", *sorted(SOUNDS)] if self.tools.is_isolated else [])
        name = rng.choice(names)
        if name == "tool's answer":
            return name, self.answered(rng, folder)
        if name in SOUNDS:
            return f"{name} installed", self.heard(folder, name, mutated(rng, self.seeds[name][1]))
        way = rng.choice(["shown", "installed", "asked about"] if name in SEEN else ["shown", "installed", "installed", "asked about"])
        if way == "asked about":
            command = rng.choice(sorted(ANSWERS))
            return f"{name} asked about: {command}", self.asked(rng, folder, name, command)
        in_window = way == "installed" and not self.tools.lacks("installer") and rng.randrange(2 if name in SEEN else 8) == 0
        if in_window:
            return f"{name} installed in the window", self.installed(rng, folder, name, "installer")
        return f"{name} {way}", getattr(self, way)(rng, folder, name)

    def place(self, folder, name, product):
        if name == "desktop entry":
            return os.path.join(folder, "config/autostart/sample.desktop")
        if name in SOUNDS:
            return os.path.join(self.tools.bundle, "Contents/Resources", SOUNDS[name])
        return os.path.normpath(os.path.join(product, "Contents", self.seeds[name][0]))

    def change(self, rng, scene, name, product):
        """Puts the changed input into its place; answers the words that make the installer read it."""
        if name == "layout":
            tangle(rng, os.path.join(product, "Contents"))
            return []
        place, data = self.place(scene.folder, name, product), self.seeds[name][1]
        if name == "desktop entry":
            os.makedirs(os.path.dirname(place))
            data = data.replace(b"/usr/bin/true", os.fsencode(scene.place) + b"/Contents/Linux/Sample")
        with open(place, "wb") as file:
            file.write(mutated(rng, data) if rng else data)
        return [SEEN[name], place] if name in SEEN else []

    def prepared(self, rng, folder, name, way, of_the_old=False):
        """An installation whose source is changed, or what is there already; the pictures are those after it."""
        scene = Replacement(folder)
        installation = Installation(self.tools, way, scene)
        installation.words = self.change(rng, scene, name, scene.place if of_the_old else scene.source)
        installation.variables["XDG_CONFIG_HOME"] = os.path.join(folder, "config")
        scene.take_pictures()
        return installation

    def shown(self, rng, folder, name, begun=lambda: True, **how):
        installation = self.prepared(rng, folder, name, "installer")
        return Program(installation.command(), installation.variables, folder, **how).outcome(begun)

    def installed(self, rng, folder, name, way="halvorn"):
        installation = self.prepared(rng, folder, name, way, rng.randrange(4) == 0)
        return installation.outcome(installation.run())

    def asked(self, rng, folder, name, command, **how):
        scene = self.prepared(rng, folder, name, "halvorn", command == "remove").scene
        words = {"check": [scene.source], "plan": ["-sourcePath", scene.source, "-destinationPath", scene.place],
                 "remove": [scene.place, "--yes"]}[command]
        variables = environment(folder) | {"XDG_CONFIG_HOME": os.path.join(folder, "config")}
        program = Program([self.tools.halvorn, command, *words, "--json", "--installer", self.tools.bundle], variables, folder, **how)
        status = program.end()
        fault = program.fault(status) or (None if status in ANSWERS[command] else f"status {status}")
        return fault or ("answered" if is_json(program.output(), status) else "no JSON")

    def heard(self, folder, name, data, **how):
        """The sound stands where the installer has its own, which it plays at the end."""
        installation = Installation(self.tools, "halvorn", Replacement(folder))
        installation.words = ["-completionSound", "YES"]
        if self.tools.sound():
            installation.variables["PULSE_SERVER"] = self.tools.sound().address
        with open(os.path.join(folder, "sound"), "wb") as file:
            file.write(data)
        with Bound(file.name, self.place(folder, name, None)):
            return installation.outcome(installation.run(**how))

    def read(self, folder, name):
        """Whether a case with this input would notice what stands in it."""
        names, place = set(), self.place(folder, name, os.path.join(folder, "image/Sample.app"))
        how = {"before": lambda call: names.update(call.paths()), "calls": ["open", "openat"], "looks_too": True}
        if name in SOUNDS:
            outcome, good = self.heard(folder, name, self.seeds[name][1], **how), "new placed"
        elif name in ("desktop entry", "strings"):
            outcome, good = self.asked(None, folder, name, "check", **how), "answered"
        else:
            # A program that is held looks like one that rests.
            outcome, good = self.shown(None, folder, name, lambda: place in names, **how), "shown"
        return "never read" if place not in names else "read" if outcome == good else outcome

    def fake_tool(self, folder, text, stream, runs, status, stays=0):
        """`stays` is for how many seconds: one that ends before its beginning is seen passes for a pkexec that failed."""
        fake = os.path.join(folder, "fake")
        with open(fake, "w") as file:
            file.write(FAKE.format(text=text, stream=stream, runs=runs, status=status, stays=stays, mark=os.path.join(folder, "ran")))
        os.chmod(fake, 0o755)
        return fake

    def answered(self, rng, folder):
        """A tool that does nothing, and says what it likes to whoever asked for it: root's halvorn, or pkexec a person's."""
        fake = self.fake_tool(folder, mutated(rng, rng.choice(COMPLAINTS)), rng.choice([1, 2]), rng.randrange(3) > 0,
                              rng.choice([0, 0, 1, 2, 3, 64, 99, 126, 127, 255, "kill"]))
        return self.answered_by(fake, folder, "/usr/bin/pkexec" if rng.randrange(2) else self.tools.train_of_bundle())

    def answered_by(self, fake, folder, place):
        installation = Installation(self.tools, "halvorn with rights", Replacement(folder))
        how = {}
        if place == "/usr/bin/pkexec":
            self.tools.give_to_person(folder)
            how = {"first": [self.tools.become_person]}
        with Bound(fake, place):
            return installation.outcome(installation.run(**how), also={8})

    def answer_read(self, folder):
        for number, place in enumerate(["/usr/bin/pkexec", self.tools.train_of_bundle()]):
            inner = os.path.join(folder, str(number))
            os.mkdir(inner)
            outcome = self.answered_by(self.fake_tool(inner, COMPLAINTS[2], 1, True, 0, stays=1), inner, place)
            if outcome != "said to be placed" or not os.path.exists(os.path.join(inner, "ran")):
                return f"never read from {os.path.basename(place)}: {outcome}"
        return "read"


FAKE = """#!/usr/bin/python3 -IS
import os, signal, socket, sys, time
open({mark!r}, "w").close()
if {runs}:
    try:
        told = socket.socket(fileno=0)  # open until the end: closed, it tells of an end
        told.shutdown(socket.SHUT_WR)
    except OSError:
        pass
    time.sleep({stays!r})
try:
    os.write({stream}, {text!r})
except OSError:
    pass
if {status!r} == "kill":
    os.kill(os.getpid(), signal.SIGKILL)
os._exit({status!r})
"""


class Bound:
    """A file that stands in the place of another one, for this campaign alone."""

    def __init__(self, file, place):
        self.file, self.place = file, place

    def __enter__(self):
        subprocess.run(["mount", "--bind", self.file, self.place], check=True)

    def __exit__(self, *_):
        subprocess.run(["umount", "--lazy", self.place], check=True)


def is_json(output, status):
    """Whether a command that answered did so in lines that are all of them objects."""
    lines = [line for line in output.splitlines() if line.startswith(b"{")]
    try:
        return all(isinstance(json.loads(line), dict) for line in lines) and (bool(lines) or status >= 64)
    except ValueError:
        return False
