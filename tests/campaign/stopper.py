"""Asks before each system call of a program that changes something, or that names something.

The kernel holds the call (a filter of system calls that notifies, seccomp) until the campaign has answered. So a program is ended,
frozen, or finds another disk at exactly the n-th of its calls, whichever thread makes it and however slow it is; sanitizers, which bear
no tracer, do not notice.
"""
import ctypes
import fcntl
import os
import re
import select
import signal
import socket
import struct
import subprocess
import threading

RECEIVE, SEND = 0xC0502100, 0xC0182101  # SECCOMP_IOCTL_NOTIF_*
SET_FILTER, NEW_LISTENER, WAIT_KILLABLE, CONTINUE = 1, 1 << 3, 1 << 5, 1
NO_NEW_PRIVILEGES = 38
ALLOW, NOTIFY = 0x7FFF0000, 0x7FC00000
WRITING = os.O_WRONLY | os.O_RDWR | os.O_CREAT | os.O_TRUNC

# Which arguments hold a folder's descriptor and a name below it; a name alone counts from the working folder.
NAMED = {"openat": [(0, 1)], "openat2": [(0, 1)], "newfstatat": [(0, 1)], "statx": [(0, 1)], "mkdirat": [(0, 1)], "mknodat": [(0, 1)],
         "symlinkat": [(1, 2)], "linkat": [(0, 1), (2, 3)], "renameat": [(0, 1), (2, 3)], "renameat2": [(0, 1), (2, 3)],
         "unlinkat": [(0, 1)], "fchmodat": [(0, 1)], "fchmodat2": [(0, 1)], "fchownat": [(0, 1)], "utimensat": [(0, 1)],
         "readlinkat": [(0, 1)], "faccessat": [(0, 1)], "faccessat2": [(0, 1)],
         "open": [(None, 0)], "creat": [(None, 0)], "mkdir": [(None, 0)], "rmdir": [(None, 0)], "unlink": [(None, 0)],
         "symlink": [(None, 1)], "link": [(None, 0), (None, 1)], "rename": [(None, 0), (None, 1)], "chmod": [(None, 0)],
         "chown": [(None, 0)], "lchown": [(None, 0)], "truncate": [(None, 0)], "readlink": [(None, 0)], "access": [(None, 0)],
         "stat": [(None, 0)], "lstat": [(None, 0)]}
# Which argument holds the descriptor of what is changed.
HELD = {"write": 0, "writev": 0, "pwrite64": 0, "ftruncate": 0, "fallocate": 0, "fchmod": 0, "fchown": 0, "fsetxattr": 0,
        "fremovexattr": 0, "copy_file_range": 2, "sendfile": 0}
LOOKING = {"openat2", "newfstatat", "statx", "readlinkat", "faccessat", "faccessat2", "readlink", "access", "stat", "lstat"}
CHANGING = sorted((set(NAMED) | set(HELD)) - LOOKING)
NAMING = sorted(NAMED)
FLAGS = {"openat": 2, "open": 1}  # where it says whether something is opened to be changed


def numbers():
    """What this machine's calls are called."""
    headers = subprocess.run(["cc", "-E", "-dM", "-xc", "-"], input=b"#include <sys/syscall.h>\n", capture_output=True, check=True)
    return {name.decode(): int(number) for name, number in re.findall(rb"#define __NR_(\w+) (\d+)\n", headers.stdout)}


NUMBERS = {}


def program_of(calls, looks_too):
    """The filter's code."""
    def step(code, yes, no, value):
        return struct.pack("<HBBI", code, yes, no, value)
    code = step(0x20, 0, 0, 0)  # the call's number
    for name in calls:
        if name not in NUMBERS:
            continue
        if name in FLAGS and not looks_too:
            code += step(0x15, 0, 4, NUMBERS[name]) + step(0x20, 0, 0, 16 + 8 * FLAGS[name]) + step(0x45, 0, 1, WRITING)
            code += step(0x06, 0, 0, NOTIFY) + step(0x06, 0, 0, ALLOW)
        else:
            code += step(0x15, 0, 1, NUMBERS[name]) + step(0x06, 0, 0, NOTIFY)
    return code + step(0x06, 0, 0, ALLOW)


class Call:
    """A call that is about to be made. The one who makes it waits meanwhile."""

    def __init__(self, thread, name, arguments):
        self.thread, self.name, self.arguments = thread, name, arguments

    def process(self):
        with open(f"/proc/{self.thread}/status") as file:
            return int(re.search(r"^Tgid:\s*(\d+)", file.read(), re.M)[1])

    def text(self, address):
        text = b""
        with open(f"/proc/{self.thread}/mem", "rb") as memory:
            while b"\0" not in text and len(text) < 5000:
                at = address + len(text)
                text += os.pread(memory.fileno(), 4096 - at % 4096, at)
        return os.fsdecode(text.partition(b"\0")[0])

    def folder(self, descriptor):
        descriptor = ctypes.c_int(descriptor).value
        return os.readlink(f"/proc/{self.thread}/" + (f"fd/{descriptor}" if descriptor >= 0 else "cwd"))

    def paths(self):
        """What it names, or changes through a descriptor; nothing when it is too late to ask."""
        try:
            if self.name in HELD:
                return [self.folder(self.arguments[HELD[self.name]])]
            paths = []
            for folder, name in NAMED[self.name]:
                text = self.text(self.arguments[name]) if self.arguments[name] else ""  # none: what the descriptor holds
                base = "" if text.startswith("/") else self.folder(-100 if folder is None else self.arguments[folder])
                paths.append(os.path.join(base, text).rstrip("/"))
            return paths
        except OSError:
            return []

    def named(self):
        """What it names by a name: the name as it stands there, and the path. Descriptors have none."""
        found = []
        try:
            for folder, name in NAMED.get(self.name, ()):
                text = self.text(self.arguments[name]) if self.arguments[name] else ""
                if text not in ("", ".", "/"):
                    base = "" if text.startswith("/") else self.folder(-100 if folder is None else self.arguments[folder])
                    found.append((text, os.path.join(base, text)))
        except OSError:
            pass  # it is too late to ask
        return found


class Stopper:
    """Of what is started with `prepare` in the child, and all that it starts. `before(call)` is asked in a thread of its own."""

    def __init__(self, before, calls=None, looks_too=False):
        if not NUMBERS:
            NUMBERS.update(numbers())
        self.before = before
        self.names = {number: name for name, number in NUMBERS.items()}
        self.code = ctypes.create_string_buffer(program_of(calls or CHANGING, looks_too))
        self.ours, self.theirs = socket.socketpair()
        self.libc = ctypes.CDLL(None, use_errno=True)
        self.failure = None
        self.thread = threading.Thread(target=self._serve, daemon=True)
        self.thread.start()

    def prepare(self):
        """In the child, before it becomes the program."""
        if os.geteuid() != 0:
            self.libc.prctl(NO_NEW_PRIVILEGES, 1, 0, 0, 0)
        steps = struct.pack("<HxxxxxxQ", (len(self.code) - 1) // 8, ctypes.addressof(self.code))
        listener = self.libc.syscall(NUMBERS["seccomp"], SET_FILTER, NEW_LISTENER | WAIT_KILLABLE, steps)
        if listener < 0:
            raise OSError(ctypes.get_errno(), "no filter of system calls that notifies")
        socket.send_fds(self.theirs, [b"x"], [listener])
        os.close(listener)

    def end(self):
        """Once the program has ended. Says what went wrong in the asking, if anything."""
        self.theirs.close()
        self.thread.join(60)
        self.ours.close()
        if self.failure:
            raise self.failure

    def _serve(self):
        try:
            descriptors = socket.recv_fds(self.ours, 1, 1)[1]
            if descriptors:
                self._listen(descriptors[0])
                os.close(descriptors[0])
        except BaseException as failure:  # told by end()
            self.failure = failure

    def _listen(self, listener):
        poll = select.poll()
        poll.register(listener, select.POLLIN)
        while True:
            events = poll.poll()[0][1]
            if not events & select.POLLIN:
                return
            notice = bytearray(80)
            try:
                fcntl.ioctl(listener, RECEIVE, notice)
            except OSError:
                continue  # it ended meanwhile
            number, thread, _, call, *rest = struct.unpack("<QIIiIQ6Q", notice)
            try:
                self.before(Call(thread, self.names.get(call, "?"), rest[2:]))
            finally:
                try:
                    fcntl.ioctl(listener, SEND, struct.pack("<QqiI", number, 0, 0, CONTINUE))
                except OSError:
                    pass  # it was ended


def supports():
    """Why this machine cannot do it; None when it can."""
    stopper = None
    try:
        stopper = Stopper(lambda call: None)
        subprocess.run(["true"], preexec_fn=stopper.prepare, check=True)
        stopper.end()
    except (OSError, subprocess.SubprocessError) as failure:
        return f"no system call can be held: {failure}"
    return None


def kill(call):
    os.kill(call.process(), signal.SIGKILL)
