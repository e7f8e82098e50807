"""Disks of the campaign's own, in mounts of its own: small, read only, gone, lying, slow, failing."""
import os
import subprocess
import tempfile
import time

from kills import NOT_YET


def run(*words):
    done = subprocess.run(words, capture_output=True, text=True)
    if done.returncode != 0:
        raise OSError(f"{' '.join(words)}: {done.stderr.strip()}")


class Disk:
    """Mounted at `place`; what it lies in stands beside it."""

    def __init__(self, folder):
        self.place = os.path.join(folder, "disk")
        self.image = os.path.join(folder, "disk.image")
        os.mkdir(self.place)
        self.is_gone = False

    def turn_read_only(self):
        """Not where somebody writes just now."""
        done = subprocess.run(["mount", "-o", "remount,ro", self.place], capture_output=True).returncode == 0
        return None if done else NOT_YET

    def vanish(self):
        self.is_gone = True
        run("umount", "--lazy", self.place)

    def fill(self):
        with open(os.path.join(self.place, "filling"), "wb", buffering=0) as file:
            try:
                while file.write(bytes(1 << 16)):
                    pass
            except OSError:
                pass  # that is what it is for

    def come_back(self):
        """As somebody finds it who mounts it again."""

    def end(self):
        subprocess.run(["umount", "--lazy", self.place], capture_output=True)


class Memory(Disk):
    def __init__(self, folder, options):
        super().__init__(folder)
        run("mount", "-t", "tmpfs", "-o", "mode=755," + options, "campaign", self.place)


class Image(Disk):
    """A file system in a file."""

    def __init__(self, folder, room=64, lies=False):
        super().__init__(folder)
        if lies:  # it has said yes when it finds that there is no room for what it said yes to
            self.below = os.path.join(folder, "below")
            os.mkdir(self.below)
            run("mount", "-t", "tmpfs", "-o", "size=6m", "campaign", self.below)
            self.image = os.path.join(self.below, "image")
        self.lies = lies
        run("truncate", "-s", f"{room}M", self.image)
        run("mkfs.ext4", "-q", "-F", self.image)
        self.mount()

    def mount(self):
        run("mount", "-o", "loop", self.image, self.place)

    def settle(self):
        """What stands on it is on it."""
        run("sync", "-f", self.place)

    def come_back(self):
        if self.lies:
            subprocess.run(["sync", "-f", self.place], capture_output=True)
        if not self.is_gone:
            run("umount", self.place)
        self.mount()

    def end(self):
        super().end()
        if self.lies:
            subprocess.run(["umount", "--lazy", self.below], capture_output=True)


class Quota(Image):
    def __init__(self, folder):
        Disk.__init__(self, folder)
        self.lies = False
        run("truncate", "-s", "128M", self.image)
        run("mkfs.btrfs", "-q", self.image)
        self.mount()
        run("btrfs", "quota", "enable", self.place)
        run("btrfs", "qgroup", "limit", "4M", self.place)

    def come_back(self):
        pass


class Faulty(Disk):
    """One that is slow, or refuses every change from some change on."""

    def __init__(self, folder, program, slow=0):
        super().__init__(folder)
        self.behind, self.program = os.path.join(folder, "behind"), program
        os.mkdir(self.behind)
        self.slow = slow
        self.server = None
        self.mount(-1)

    def mount(self, changes, error=0):
        variables = {"KT_DISK_FAILS_AFTER": str(changes), "KT_DISK_ERROR": str(error), "KT_DISK_SLOW": str(self.slow),
                     "ASAN_OPTIONS": "detect_leaks=0"}
        self.server = subprocess.Popen([self.program, self.behind, self.place, "-f", "-o", "allow_other,default_permissions,suid,dev"],
                                       env=variables, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        end = time.monotonic() + 20
        while not os.path.ismount(self.place):
            if self.server.poll() is not None or time.monotonic() > end:
                raise OSError("the faulty disk does not come up")
            time.sleep(0.005)

    def break_after(self, changes, error):
        self.stop()
        self.mount(changes, error)

    def stop(self):
        subprocess.run(["umount", "--lazy", self.place], capture_output=True)
        try:
            self.server.wait(20)
        except subprocess.TimeoutExpired:
            self.server.kill()
            self.server.wait()

    def come_back(self):
        """Its server may have been taken away."""
        self.slow = 0
        self.break_after(-1, 0)

    def die(self):
        """Every call answers that there is nobody at the other end."""
        self.server.kill()
        self.server.wait()

    def end(self):
        self.stop()


def why_not(make, base):
    """Why there can be no such disk here; None when there can."""
    folder = tempfile.mkdtemp(dir=base)
    try:
        make(folder).end()
    except OSError as failure:
        return str(failure)
    return None
