"""The programs of the product, started as the campaign needs them, and how they end."""
import os
import resource
import signal
import subprocess
import time

from stopper import Stopper

PATIENCE = 60  # seconds; a program that has not come to rest by then hangs
SANITIZER_STATUS = 99
# Without a free descriptor the sanitizer cannot look whether memory may be read, and takes every object for a wrong one.
BLIND = b"note: object has invalid vptr\n<memory cannot be printed>"
# The loader's own sentence.
NO_LIBRARY, NO_DESCRIPTOR = b"error while loading shared libraries", b"Error 24"


def environment(folder):
    """That of an installation in this folder. There is no bus: what it would start would outlive the case."""
    return {"HOME": os.path.join(folder, "home"), "PATH": "/usr/bin:/bin", "LANG": "C.UTF-8", "QT_QPA_PLATFORM": "offscreen",
            "XDG_RUNTIME_DIR": folder, "XDG_DATA_HOME": os.path.join(folder, "data"), "HALVORN_AS_ROOT": "container",
            "DBUS_SESSION_BUS_ADDRESS": "disabled:",
            "ASAN_OPTIONS": f"exitcode={SANITIZER_STATUS}:detect_leaks=0:allocator_may_return_null=1",
            "UBSAN_OPTIONS": "halt_on_error=0:print_stacktrace=1"}


class Program:
    """One run. `before` is asked before each call that changes something; see stopper.py."""

    def __init__(self, command, variables, folder, limits=(), before=None, calls=None, looks_too=False, first=()):
        self.log = os.path.join(folder, "output")
        self.stopper = Stopper(before, calls, looks_too) if before else None

        def prepare():
            for step in first:
                step()
            for which, value in limits:
                resource.setrlimit(which, (value, value))
            if self.stopper:
                self.stopper.prepare()
        if limits and os.geteuid() == 0:  # who would raise the limits again
            command = ["setpriv", "--bounding-set=-sys_resource", *command]
        with open(self.log, "ab") as output:
            self.process = subprocess.Popen(command, env=variables, stdin=subprocess.DEVNULL, stdout=output, stderr=output,
                                            preexec_fn=prepare, cwd=folder, start_new_session=True)

    def ticks(self):
        try:
            with open(f"/proc/{self.process.pid}/stat", "rb") as file:
                fields = file.read().rpartition(b")")[2].split()
            return int(fields[11]) + int(fields[12])
        except OSError:
            return -1

    def waits(self):
        """Whether each of its threads waits for something. One that could run is at work, however long it is kept from it."""
        try:
            for thread in os.listdir(f"/proc/{self.process.pid}/task"):
                with open(f"/proc/{self.process.pid}/task/{thread}/stat", "rb") as file:
                    if file.read().rpartition(b")")[2].split()[0] != b"S":
                        return False
        except OSError:
            return False
        return True

    def come_to_rest(self):
        """False when it still works after all patience; waits in short turns, because rest has no event."""
        end, quiet, before = time.monotonic() + PATIENCE, 0, -1
        while time.monotonic() < end and quiet < 4 and self.process.poll() is None:
            try:
                self.process.wait(0.1)
            except subprocess.TimeoutExpired:
                now = self.ticks()
                quiet, before = (quiet + 1 if now == before and self.waits() else 0), now
        return quiet >= 4 or self.process.poll() is not None

    def output(self):
        with open(self.log, "rb") as file:
            return file.read()

    def end(self, patience=PATIENCE):
        """Waits for its end. None when it does not come; it is ended then."""
        try:
            status = self.process.wait(patience)
        except subprocess.TimeoutExpired:
            status = None
        self._tidy(status is None)
        return status

    def _tidy(self, hangs):
        if hangs:
            self.process.kill()
            self.process.wait()
            try:
                os.killpg(self.process.pid, signal.SIGKILL)  # those of its own session, which this made
            except OSError:
                pass
        if self.stopper:
            self.stopper.end()

    def fault(self, status):
        """What no case allows, in a word; None when there is nothing of the kind."""
        output = self.output()
        if status == SANITIZER_STATUS or b"Sanitizer" in output or output.count(b"runtime error:") > output.count(BLIND):
            return "sanitizer"
        return "hangs" if status is None else None

    def outcome(self, begun=lambda: True):
        """Of a start: it is left until it has begun and rests, and is asked to end then."""
        end = time.monotonic() + PATIENCE
        while not begun() and self.process.poll() is None and time.monotonic() < end:
            time.sleep(0.02)
        rested = begun() and self.come_to_rest() or self.process.poll() is not None
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
        status = self.end()
        fault = self.fault(status)
        if fault:
            return fault
        if not rested:
            return "hangs"
        if status == 0:
            return "shown"
        said = self.output()
        if (status == 69 and b"ERROR -- " in said) or (status == 127 and NO_LIBRARY in said and NO_DESCRIPTOR in said):
            return "sentence"
        return f"signal {-status}" if status < 0 else f"status {status}"
