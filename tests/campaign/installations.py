"""The ways by which a product is installed: the tool alone, `halvorn install`, and the installer's own window."""
import os
import shutil
import subprocess
import time

from program import PATIENCE, Program, environment

# How each way ends that said what it did: the tool's statuses, those of halvorn's table.
SAID = {"train": {0, 1, 2}, "train for a person": {0, 1, 2}, "halvorn": {0, 2, 3, 5, 6, 7}, "halvorn with rights": {0, 2, 3, 5, 6, 7},
        "installer": {0, 69}}
PERSON = 61234


class Screen:
    """A screen of its own for the installer's window, without a window manager."""

    def __init__(self):
        reads, writes = os.pipe()
        self.server = subprocess.Popen(["Xvfb", "-displayfd", str(writes), "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"],
                                       pass_fds=[writes], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        os.close(writes)
        with open(reads) as file:
            self.name = ":" + file.readline().strip()

    def end(self):
        self.server.terminate()
        self.server.wait()

    def press(self, process):
        """Return, in the window of the process. Whether there was one."""
        ask = {"env": {"DISPLAY": self.name, "PATH": "/usr/bin:/bin"}, "stdout": subprocess.PIPE, "stderr": subprocess.DEVNULL}
        found = subprocess.run(["xdotool", "search", "--onlyvisible", "--pid", str(process.pid)], **ask).stdout.split()
        return bool(found) and subprocess.run(["xdotool", "key", "--window", found[-1], "Return"], **ask).returncode == 0


class SoundServer:
    """A sound server of its own, with one device that nobody hears."""

    def __init__(self, base):
        self.address = f"unix:{base}/sound"
        words = ["-n", f"--load=module-native-protocol-unix socket={base}/sound auth-anonymous=1", "--load=module-null-sink",
                 "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "--realtime=no", "--high-priority=no", "--disable-shm=yes"]
        self.server = subprocess.Popen(["pulseaudio", *words], env={"HOME": base, "XDG_RUNTIME_DIR": base, "PATH": "/usr/bin:/bin"},
                                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + PATIENCE
        while not os.path.exists(f"{base}/sound") and self.server.poll() is None and time.monotonic() < end:
            time.sleep(0.01)

    def end(self):
        self.server.terminate()
        self.server.wait()


class Tools:
    """The built programs, and what the campaign has of the machine."""

    def __init__(self, options, base):
        self.train, self.bundle, self.sources, self.base = options.train, options.bundle, options.sources, base
        built = os.path.dirname(options.bundle)
        self.installer = os.path.join(options.bundle, "Contents/Linux/HalvornInstaller")
        self.halvorn = os.path.join(built, "halvorn")
        self.naive = os.path.join(built, "tests/kt_naive_tool")
        self.faulty_disk = os.path.join(built, "tests/kt_faulty_disk")
        self.is_isolated = options.is_isolated
        self.screen = None
        self.server = None

    def sound(self):
        """A server to play on; None where there is none to be had."""
        if not self.server and shutil.which("pulseaudio"):
            self.server = SoundServer(self.base)
        return self.server

    def lacks(self, way):
        """Why the way cannot be gone here; None when it can."""
        if way == "installer" and not (shutil.which("Xvfb") and shutil.which("xdotool")):
            return "no Xvfb or no xdotool"
        if way == "train for a person" and not self.is_isolated:
            return "no mounts of its own, so no account of its own"
        if way == "halvorn with rights" and os.geteuid() != 0:
            return "not root, so a dialog would ask"
        return None

    def home_of_person(self):
        return os.path.join(self.base, "person")

    def new_home_of_person(self):
        shutil.rmtree(self.home_of_person(), ignore_errors=True)
        os.mkdir(self.home_of_person())
        os.chown(self.home_of_person(), PERSON, PERSON)

    def train_of_bundle(self):
        return os.path.join(self.bundle, "Contents/Resources/train")

    def give_to_person(self, folder):
        subprocess.run(["chown", "-R", "--no-dereference", f"{PERSON}:{PERSON}", folder], check=True)

    def become_person(self):
        """In the child, before it becomes the program."""
        os.setgroups([])
        os.setresgid(PERSON, PERSON, PERSON)
        os.setresuid(PERSON, PERSON, PERSON)

    def end(self):
        for server in (self.screen, self.server):
            if server:
                server.end()


class Installation:
    """One installation of a Replacement, by one of the ways; the case may change words and variables before it is run."""

    def __init__(self, tools, way, scene):
        self.tools, self.way, self.scene = tools, way, scene
        self.variables, self.words, self.prefix = environment(scene.folder), [], []
        self.program = None

    def command(self):
        scene = self.scene
        if self.way.startswith("train"):
            return [self.tools.train, scene.source, scene.place, *self.words]
        arguments = ["-sourcePath", scene.source, "-destinationPath", scene.place, *self.words]
        if self.way == "installer":
            return [self.tools.installer, *arguments]
        rights = ["--administrator"] if self.way == "halvorn with rights" else []
        return [self.tools.halvorn, "install", *arguments, "--yes", "--json", "--no-launch", *rights, "--installer", self.tools.bundle]

    def start(self, **how):
        if self.way == "train for a person":
            self.variables["PKEXEC_UID"] = str(PERSON)
        if self.way == "halvorn with rights":
            del self.variables["HALVORN_AS_ROOT"]  # as an administrator's script, not as a person whose account is root's
        if self.way == "installer":
            self.tools.screen = self.tools.screen or Screen()
            self.variables |= {"QT_QPA_PLATFORM": "xcb", "DISPLAY": self.tools.screen.name}
        self.program = Program([*self.prefix, *self.command()], self.variables, self.scene.folder, **how)
        return self.program

    def run(self, patience=PATIENCE, **how):
        """The status in which it ended; None when it did not."""
        program = self.start(**how)
        if self.way == "installer":
            self._press_install(patience)
        return program.end(patience)

    def _log(self):
        try:
            with open(os.path.join(self.variables["HOME"], "Library/Logs/HalvornInstaller.log"), "rb") as file:
                return file.read()
        except OSError:
            return b""

    def _press_install(self, patience):
        """Until it has been heard; then until the log tells the end and the window rests, which is asked to end then."""
        end, process = time.monotonic() + patience, self.program.process
        while process.poll() is None and time.monotonic() < end and b"] Install\n" not in self._log():
            self.tools.screen.press(process)
        while process.poll() is None and time.monotonic() < end and not any(word in self._log() for word in (b"] launched", b"] ERROR")):
            time.sleep(0.02)
        self.program.come_to_rest()
        if process.poll() is None:
            process.terminate()

    def _went_elsewhere(self):
        """Whether the place had gone before it was chosen: everybody's applications are taken then."""
        chosen = b'"destinationPath" = "'
        log = b"" if self.way.startswith("train") else self._log()
        return chosen in log and chosen + os.fsencode(self.scene.place) + b'"' not in log

    def outcome(self, status, also=()):
        """A fault, or where the old copy is. A way that says nothing of how it ended is known by its words alone."""
        fault = self.program.fault(status)
        if fault:
            return fault
        if status >= 0 and status not in SAID[self.way] | set(also):
            return f"status {status}"
        said = status
        if self.way == "installer" and status == 0 and b"successfully copied" not in self._log():
            said = None  # its window was closed
        if said == 0 and self._went_elsewhere():
            said = None  # nothing was said of this place
        return self.scene.outcome(said)
