"""Somebody with a home in a minimal system, who opens what a maker made."""
import glob, os, subprocess

import roots
from desktops import eventually


class Person:
    """A home in a minimal system, and what is started from there."""

    def __init__(self, system, folder, desktop):
        self.system, self.desktop = system, desktop
        self.home = os.path.join(folder, "home")
        os.makedirs(os.path.join(self.home, "Applications"))
        for path in [self.home, os.path.join(self.home, "Applications")]:
            os.chown(path, *([1000, 1000] if os.geteuid() == 0 else [-1, -1]))
        self.log = os.path.join(folder, "log")

    def start(self, single, *arguments, **environment):
        values = {"HOME": "/home/anna", "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", **self.desktop.environment, **environment}
        binds = [(self.home, "home/anna"), (single, "media/anna/Foo.run"), *self.desktop.binds]
        with open(self.log, "wb") as log:
            program = "/media/anna/Foo.run" + ("/Install Foo" if os.path.isdir(single) else "")
            # Somebody whose new files are nobody else's; what is installed is as it was shipped all the same.
            words = ["sh", "-c", 'umask 077; exec "$0" "$@"', program, *arguments]
            return subprocess.Popen(roots.in_root(self.system, binds, values, words),
                                    stdin=subprocess.DEVNULL, stdout=log, stderr=log, cwd="/")

    def printed(self):
        said = ""
        for path in [self.log, *glob.glob(os.path.join(self.home, "Library/Logs/*.log"))]:
            with open(path, errors="replace") as file:
                said += file.read()
        return said

    def ended(self, *arguments, **more):
        return self.start(*arguments, **more).wait(), self.printed()

    def unpacked(self):
        return glob.glob(os.path.join(self.home, ".cache/halvorn-installer-*/*"))


def modes(bundle):
    return {os.path.relpath(path, bundle): oct(os.lstat(path).st_mode) for path in glob.glob(f"{bundle}/**", recursive=True)}


def install(person, single, product, check=lambda: None):
    """Starts what a maker made and goes through its window. CHECK is asked while the window stands."""
    go_through(person, person.start(single, "-destinationPath", "/home/anna/Applications/Foo.app"), product, check)


def go_through(person, process, product, check=lambda: None):
    """By keys, to the product in its place and a status of 0."""
    log = person.printed
    try:
        assert eventually(lambda: person.desktop.window() or process.poll() is not None) and process.poll() is None, log()
        check()

        def pressed(condition):
            def again():
                person.desktop.press("Return")
                return eventually(condition, 2)
            assert eventually(lambda: condition() or again()), log()
        pressed(lambda: "] Install\n" in log())
        assert eventually(lambda: os.path.exists(os.path.join(person.home, "started"))), log()
        pressed(lambda: process.poll() is not None)
    finally:
        if process.poll() is None:
            process.terminate()
        process.wait()
    assert process.returncode == 0, log()
    installed = os.path.join(person.home, "Applications/Foo.app")
    difference = subprocess.run(["diff", "-r", product, installed], capture_output=True, text=True)
    assert difference.returncode == 0, difference.stdout
    assert modes(product) == modes(installed), modes(installed)
    assert not person.unpacked(), "what was unpacked is still there"
