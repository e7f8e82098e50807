"""Desktops of a benchmark's own: an X server with a window manager, or a Wayland compositor without a screen."""
import os, subprocess


class Desktop:
    """There while the block lasts: `environment` for its programs, `display` and `socket` ("" for the one it is not)."""

    def __init__(self, folder, wayland=False):
        self.display, self.socket, self.started = "", "", []
        self.environment = {"HOME": folder, "PATH": os.environ["PATH"], "LANG": "C.UTF-8", "XDG_RUNTIME_DIR": folder,
                            "HALVORN_AS_ROOT": "container"}
        self.fifo = os.path.join(folder, "wayland-serves" if wayland else "managed")
        os.mkfifo(self.fifo)
        if wayland:
            self.start_compositor(folder)
        else:
            self.start_server()

    def start(self, command, environment=None, **more):
        process = subprocess.Popen(command, env=environment, stderr=subprocess.DEVNULL, **more)
        self.started.insert(0, process)

    def start_server(self):
        ready, write = os.pipe()
        self.start(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset"],
                   pass_fds=[write])
        os.close(write)
        with os.fdopen(ready) as answer:
            self.display = ":" + answer.readline().strip()
        self.environment["DISPLAY"] = self.display
        self.start(["openbox", "--sm-disable", "--startup", f"sh -c 'echo ready >{self.fifo}'"], self.environment,
                   stdout=subprocess.DEVNULL)
        with open(self.fifo) as answer:
            answer.readline()

    def start_compositor(self, folder):
        configuration = os.path.join(folder, "sway.conf")
        with open(configuration, "w") as file:
            file.write("xwayland disable\noutput HEADLESS-1 resolution 1280x800\ndefault_border none\n"
                       "default_floating_border none\nfor_window [app_id=\".*\"] floating enable, border none\n"
                       f"exec echo \"$WAYLAND_DISPLAY\" >{self.fifo}\n")
        # It does not run for the superuser, and need not.
        command = ["unshare", "--user", "--map-user=1000", "--map-group=1000"] if os.geteuid() == 0 else []
        headless = {"WLR_BACKENDS": "headless", "WLR_RENDERER": "pixman", "WLR_LIBINPUT_NO_DEVICES": "1"}
        self.start([*command, "sway", "-c", configuration], self.environment | headless, stdout=subprocess.DEVNULL)
        with open(self.fifo) as answer:
            name = answer.readline().strip()
        self.environment["WAYLAND_DISPLAY"] = name
        self.socket = os.path.join(os.path.realpath(folder), name)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in self.started:
            process.terminate()
            process.wait()
