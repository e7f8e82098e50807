"""Installations where a desktop never is: limits, variables, silent services, disks, clocks, freezes, little memory."""
import errno
import os
import random
import resource
import signal
import socket
import subprocess
import threading

import disks
from installations import SAID, Installation
from kills import Counter
from products import WHOLE, Replacement, make_product
from program import Program, environment
from stopper import supports

STARTED = {"shown", "sentence"}
MIDDLE = 12  # of the calls that change something on the disk: the old copy is in the Trash, the new one is begun
LIMITS = ("CORE", "CPU", "FSIZE", "MEMLOCK", "MSGQUEUE", "NICE", "NOFILE", "RTPRIO", "RTTIME", "SIGPENDING", "STACK")
MEMORY_LIMITS = ("AS", "DATA")  # not of sanitized programs
LOWEST = {"CPU": (1, 1), "FSIZE": (0, 65536), "NOFILE": (3, 64), "STACK": (256 << 10, 8 << 20), "AS": (64 << 20, 1 << 29),
          "DATA": (1 << 20, 1 << 27)}
SERVICES = {"DBUS_SESSION_BUS_ADDRESS": "unix:path={}", "AT_SPI_BUS_ADDRESS": "unix:path={}", "PULSE_SERVER": "unix:{}",
            "WAYLAND_DISPLAY": "{}", "SESSION_MANAGER": "local/x:{}"}
HARMLESS = {"slow FUSE", "freeze", "frozen group", "wall clock that jumps", "monotonic clock far ahead"}


class Surroundings:
    def __init__(self, tools):
        self.tools = tools
        self.why_not, self.reasons = supports(), {}
        self.disks = {"full disk": (lambda folder: disks.Memory(folder, "size=700k"), None),
                      "disk without room for names": (lambda folder: disks.Memory(folder, "nr_inodes=24"), None),
                      "disk that fills up": (lambda folder: disks.Memory(folder, "size=24m"), disks.Disk.fill),
                      "read-only disk": (disks.Image, "from the start"),
                      "disk that turns read-only": (disks.Image, disks.Disk.turn_read_only),
                      "disk that vanishes": (disks.Image, disks.Disk.vanish),
                      "disk that lies": (lambda folder: disks.Image(folder, 64, True), None),
                      "quota": (disks.Quota, None),
                      "slow FUSE": (lambda folder: disks.Faulty(folder, tools.faulty_disk, 2000), None),
                      "failing FUSE": (lambda folder: disks.Faulty(folder, tools.faulty_disk), "after some changes"),
                      "dying FUSE": (lambda folder: disks.Faulty(folder, tools.faulty_disk), disks.Faulty.die)}
        self.others = {"freeze": self.frozen, "frozen group": self.frozen_group, "little memory": self.little_memory,
                       "wall clock that jumps": self.wall_clock, "monotonic clock far ahead": self.monotonic_clock}
        self.starts = {"limit": self.limit, "scale": self.scale, "variable": self.variable, "home": self.home,
                       "no display": self.no_display, "silent service": self.silent_service}

    def reason_against(self, name):
        if name not in self.reasons:
            self.reasons[name] = self.reason_found(name)
        return self.reasons[name]

    def reason_found(self, name):
        """Why it cannot be tried here; None when it can."""
        if name in self.starts:
            return None
        if not self.tools.is_isolated:
            return "no mounts of its own"
        if name in self.disks:
            make, event = self.disks[name]
            if "FUSE" in name and not (os.path.exists(self.tools.faulty_disk) and os.path.exists("/dev/fuse")):
                return "not built with libfuse3, or no /dev/fuse"
            return disks.why_not(make, self.tools.base) or (self.why_not if callable(event) else None)
        if name == "wall clock that jumps":
            return self.why_not or (None if faketime() else "libfaketime is not installed")
        if name == "monotonic clock far ahead":
            works = subprocess.run(["unshare", "--time", "--monotonic", "1000", "true"], capture_output=True).returncode == 0
            return None if works else "no time namespaces"
        if name in ("frozen group", "little memory"):
            kind = "freezer" if name == "frozen group" else "memory"
            return None if os.access(f"/sys/fs/cgroup/{kind}", os.W_OK) else f"no groups of processes of version 1 for {kind}"
        return self.why_not

    def skipped(self):
        always = {"clock_settime": "the clock is the whole machine's"}
        if os.geteuid() == 0:
            always["limit NPROC"] = "it does not hold root"
        if self.is_sanitized():
            always["limits AS and DATA"] = "a sanitizer reserves more memory than there is"
        return always | {name: why for name in [*self.disks, *self.others] if (why := self.reason_against(name))}

    def is_sanitized(self):
        return bool(libraries(self.tools.installer, "libasan"))

    def limits(self):
        return [*LIMITS, *(() if self.is_sanitized() else MEMORY_LIMITS), *(() if os.geteuid() == 0 else ["NPROC"])]

    def allows(self, subject, outcome):
        if subject.startswith("started: limit CPU"):
            return outcome in STARTED | {"signal 24", "signal 9"}
        if subject in ("started: limit AS", "started: limit DATA"):
            return outcome in STARTED | {"signal 6", "status 127"}
        if subject.startswith("started"):
            return outcome in STARTED
        if subject.rpartition(": ")[2] in HARMLESS:
            return outcome == "new placed"
        # What was written and never came to be is known to nobody before the disk says so.
        return outcome in WHOLE | ({"nothing placed", "said to be placed"} if "disk that lies" in subject else set())

    def fixed(self, fresh_folder):
        cases = {f"limit {name}": lambda folder, name=name: self.limit(None, folder, name) for name in self.limits()}
        for name in [*self.disks, *self.others]:
            if not self.reason_against(name):
                for way in ("train", "halvorn"):
                    cases[f"{name}, {way}"] = lambda folder, name=name, way=way: self.installed(None, folder, name, way)
        for variable in SERVICES:
            cases[f"silent {variable}"] = lambda folder, variable=variable: self.silent_service(None, folder, variable)
        return cases

    def chance(self, rng, folder):
        name = rng.choice([name for name in [*self.starts, *self.disks, *self.others] if not self.reason_against(name)])
        if name in self.starts:
            return self.starts[name](rng, folder)
        return self.installed(rng, folder, name, rng.choice([way for way in SAID if not self.tools.lacks(way)]))

    # Installations

    def installed(self, rng, folder, name, way):
        if self.tools.is_isolated:
            self.tools.new_home_of_person()
        if name in self.disks:
            return f"installed by {way}: {name}", self.on_disk(rng, folder, way, *self.disks[name])
        scene = self.scene(rng, folder, "Applications")
        return f"installed by {way}: {name}", self.others[name](rng, Installation(self.tools, way, scene))

    def scene(self, rng, folder, apps):
        scene = Replacement(folder, apps, files=rng.choice([0, 5, 40]) if rng else 40, size=rng.choice([100, 200000]) if rng else 200000,
                            rng=rng or random.Random(1))
        scene.trashes.append(self.tools.home_of_person())
        return scene

    def on_disk(self, rng, folder, way, make, event):
        disk = make(folder)
        try:
            scene = self.scene(rng, folder, "disk/Applications")
            if isinstance(disk, disks.Image):
                disk.settle()
            at = rng.randrange(1, 60) if rng else MIDDLE
            if event == "from the start":
                disk.turn_read_only()
            if event == "after some changes":
                disk.break_after(at, rng.choice([errno.EIO, errno.ENOSPC, errno.EROFS, errno.ENXIO]) if rng else errno.EIO)
            installation = Installation(self.tools, way, scene)
            status = installation.run(before=Counter(scene, at, lambda call: event(disk)) if callable(event) else None)
            disk.come_back()
            return installation.outcome(status)
        finally:
            disk.end()

    def interrupted(self, rng, installation, act, **how):
        at = rng.randrange(1, 60) if rng else MIDDLE
        status = installation.run(before=Counter(installation.scene, at, act), **how)
        return installation.outcome(status)

    def frozen(self, rng, installation):
        def freeze(call):
            process = call.process()
            os.kill(process, signal.SIGSTOP)
            threading.Timer(rng.random() if rng else 0.3, lambda: os.kill(process, signal.SIGCONT)).start()
        return self.interrupted(rng, installation, freeze)

    def frozen_group(self, rng, installation):
        with Group("freezer") as group:
            def freeze(call):
                group.write("freezer.state", "FROZEN")
                threading.Timer(rng.random() if rng else 0.3, lambda: group.write("freezer.state", "THAWED")).start()
            return self.interrupted(rng, installation, freeze, first=[group.join])

    def little_memory(self, rng, installation):
        with Group("memory") as group:
            group.write("memory.limit_in_bytes", f"{rng.choice([1, 4, 16, 40, 80, 160]) if rng else 16}M")
            return installation.outcome(installation.run(first=[group.join]))

    def wall_clock(self, rng, installation):
        file = os.path.join(installation.scene.folder, "clock")
        offsets = ["-50y", "+80y", "-1d", "+3000d", "-1", "+1"]

        def set_clock(offset):
            with open(file, "w") as clock:
                clock.write(offset)
        set_clock(rng.choice(offsets) if rng else offsets[0])
        sanitizer = libraries(installation.command()[0], "libasan")
        installation.variables |= {"LD_PRELOAD": ":".join([*sanitizer, faketime()]), "FAKETIME_NO_CACHE": "1",
                                   "FAKETIME_TIMESTAMP_FILE": file, "FAKETIME_DONT_FAKE_MONOTONIC": "1"}
        return self.interrupted(rng, installation, lambda call: set_clock(rng.choice(offsets) if rng else offsets[1]))

    def monotonic_clock(self, rng, installation):
        seconds = str(rng.choice([1 << 31, 1 << 32]) if rng else 1 << 32)
        installation.prefix = ["unshare", "--time", "--monotonic", seconds, "--boottime", seconds]
        return installation.outcome(installation.run())

    # Starts of the window

    def started(self, folder, name, limits=(), variables=(), without=(), begun=lambda: True):
        product = make_product(os.path.join(folder, "image"))
        all_variables = environment(folder) | dict(variables)
        for variable in without:
            del all_variables[variable]
        os.makedirs(os.path.join(folder, "home"), exist_ok=True)
        command = [self.tools.installer, "-sourcePath", product, "-destinationPath", os.path.join(folder, "Sample.app")]
        return f"started: {name}", Program(command, all_variables, folder, limits).outcome(begun)

    def limit(self, rng, folder, name=None):
        name = name or rng.choice(self.limits())
        low, high = LOWEST.get(name, (0, 0))
        value = high if not rng else rng.choice([256, 1024, 8192]) << 10 if name == "STACK" else rng.randrange(low, high + 1)
        return self.started(folder, f"limit {name}", [(getattr(resource, "RLIMIT_" + name), value)])

    def scale(self, rng, folder):
        name = rng.choice(["QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"])
        value = rng.choice(["-1", "0", "1000", "nan", "inf", "1e300", "x", "1;2;3", "a=b", "0.0001"])
        return self.started(folder, "scale", variables={name: value})

    def variable(self, rng, folder):
        name = rng.choice(["LANG", "LANGUAGE", "PATH", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TMPDIR",
                           "XDG_CURRENT_DESKTOP", "DBUS_SESSION_BUS_ADDRESS", "JOURNAL_STREAM"])
        value = rng.choice(["", "/", folder + "/nowhere", "x" * 100000, "\u202e", "../..", "%n%@", "unix:path=/dev/null"])
        return self.started(folder, "variable", variables={name: value})

    def home(self, rng, folder):
        return self.started(folder, "home", variables={"HOME": rng.choice(["", folder + "/nowhere", "/dev/null", "relative", "/proc"])})

    def no_display(self, rng, folder):
        return self.started(folder, "no display", without=["QT_QPA_PLATFORM"])

    def silent_service(self, rng, folder, variable=None):
        """Somebody takes the connection there and says nothing."""
        variable = variable or rng.choice(sorted(SERVICES))
        with socket.socket(socket.AF_UNIX) as server:
            server.bind(os.path.join(folder, "silent"))
            server.listen()
            value = SERVICES[variable].format(os.path.join(folder, "silent"))
            # Until then it may wait for an answer, and that is no rest.
            return self.started(folder, f"silent {variable}", variables={variable: value}, begun=lambda: has_begun(folder))


class Group:
    """A group of processes of its own."""

    def __init__(self, kind):
        self.folder = f"/sys/fs/cgroup/{kind}/campaign-{os.getpid()}"

    def __enter__(self):
        os.mkdir(self.folder)
        return self

    def write(self, name, value):
        with open(os.path.join(self.folder, name), "w") as file:
            file.write(value)

    def join(self):
        """In the child, before it becomes the program."""
        self.write("cgroup.procs", str(os.getpid()))

    def __exit__(self, *_):
        os.rmdir(self.folder)


def has_begun(folder):
    try:
        with open(os.path.join(folder, "home/Library/Logs/HalvornInstaller.log"), "rb") as log:
            return b"] Updated arguments" in log.read()
    except OSError:
        return False


def faketime():
    for folder in ("x86_64-linux-gnu", "aarch64-linux-gnu"):
        path = f"/usr/lib/{folder}/faketime/libfaketime.so.1"
        if os.path.exists(path):
            return path
    return None


def libraries(program, name):
    """Those of a name that the program is loaded with."""
    listed = subprocess.run(["ldd", program], capture_output=True, text=True).stdout.split()
    return [word for word in listed if word.startswith("/") and name in word][:1]
