"""A desktop for a program in another root: an X server with a window manager, or a Wayland compositor; keys and pictures."""
import json, os, re, select, signal, subprocess, tempfile, time

PATIENCE = 60


def eventually(condition, seconds=PATIENCE):
    """Until the condition answers something; answers that, or what it answered last."""
    limit = time.monotonic() + seconds
    while True:
        answer = condition()
        if answer or time.monotonic() > limit:
            return answer
        time.sleep(0.05)


class Server:
    """A process that ends with the test."""

    def __init__(self, command, environment):
        self.process = subprocess.Popen(command, env=environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                                        stderr=subprocess.STDOUT)
        self.printed = b""

    def wait_for(self, pattern):
        """Reads until the pattern is there; answers its first group."""
        limit = time.monotonic() + PATIENCE
        while not (found := re.search(pattern, self.printed.decode(errors="replace"), re.MULTILINE)):
            ready, _, _ = select.select([self.process.stdout], [], [], max(0, limit - time.monotonic()))
            more = os.read(self.process.stdout.fileno(), 65536) if ready else b""
            if not more:
                raise AssertionError(f"{self.process.args[0]} did not come up: {self.printed.decode(errors='replace')}")
            self.printed += more
        return found.group(1)

    def end(self):
        self.process.send_signal(signal.SIGTERM)
        self.process.wait()
        self.process.stdout.close()


class Desktop:
    """What is common to both: BINDS and ENVIRONMENT are what a program in a root needs to reach it."""

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        self.own = {"PATH": os.environ["PATH"], "HOME": self.folder.name, "XDG_RUNTIME_DIR": self.folder.name, "LANG": "C.UTF-8"}
        self.servers = []
        try:
            self.start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for server in reversed(self.servers):
            server.end()
        self.folder.cleanup()

    def started(self, *command, **more):
        self.servers.append(Server(command, {**self.own, **more}))
        return self.servers[-1]

    def run(self, *command):
        return subprocess.run(command, env=self.own, capture_output=True, check=False)

    def colors(self):
        """How often each color is on the screen: {(255, 255, 255): 81920, ...}."""
        points = self.picture()
        listed = subprocess.run(["convert", points, "-alpha", "off", "-depth", "8", "-format", "%c", "histogram:info:-"], capture_output=True, check=True).stdout
        return {tuple(map(int, row[1:])): int(row[0])
                for row in re.findall(r"(\d+): \( *(\d+), *(\d+), *(\d+)", listed.decode())}


class X11(Desktop):
    def start(self):
        server = self.started("Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp", "-noreset")
        self.own["DISPLAY"] = ":" + server.wait_for(r"^(\d+)$")
        self.started("openbox", "--sm-disable", "--startup", "echo serves").wait_for("(serves)")
        self.environment = {"DISPLAY": self.own["DISPLAY"]}
        self.binds = [("/tmp/.X11-unix", "tmp/.X11-unix")]

    def window(self):
        """Whether a window shows and has the keyboard."""
        return self.run("xdotool", "getactivewindow").stdout.strip().decode()

    def press(self, key):
        self.run("xdotool", "key", key)

    def picture(self):
        path = os.path.join(self.folder.name, "screen.png")
        self.run("import", "-window", "root", path)
        return path


class Wayland(Desktop):
    def start(self):
        configuration = os.path.join(self.folder.name, "sway.conf")
        with open(configuration, "w") as file:
            file.write('xwayland disable\noutput HEADLESS-1 resolution 1280x800\nfor_window [app_id=".*"] floating enable\n'
                       'exec echo serves "$SWAYSOCK" "$WAYLAND_DISPLAY"\n')
        # It does not run for the superuser; in a name space of its own it is somebody else.
        somebody = ["unshare", "--user", "--map-user=1000", "--map-group=1000"] if os.geteuid() == 0 else []
        server = self.started(*somebody, "sway", "-c", configuration, WLR_BACKENDS="headless", WLR_RENDERER="pixman",
                              WLR_LIBINPUT_NO_DEVICES="1")
        self.own["SWAYSOCK"], self.own["WAYLAND_DISPLAY"] = server.wait_for(r"^serves (\S+ \S+)").split()
        socket = os.path.join(self.folder.name, self.own["WAYLAND_DISPLAY"])
        os.chmod(socket, 0o777)
        # A seat whose only keyboard comes with a key and goes with it tells programs of the keyboard after the key. This one stays.
        self.started("wtype", "-s", "86400000", "-k", "Return")
        self.environment = {"WAYLAND_DISPLAY": "wayland-1", "XDG_RUNTIME_DIR": "/run/user/1000"}
        self.binds = [(socket, "run/user/1000/wayland-1")]

    def window(self):
        tree = json.loads(self.run("swaymsg", "-r", "-t", "get_tree").stdout or "{}")
        return self.focused(tree)

    def focused(self, node):
        if node.get("focused") and node.get("pid"):
            return str(node["id"])
        inside = node.get("nodes", []) + node.get("floating_nodes", [])
        return next((found for found in map(self.focused, inside) if found), "")

    def press(self, key):
        self.run("wtype", "-k", key)

    def picture(self):
        path = os.path.join(self.folder.name, "screen.png")
        self.run("grim", path)
        return path
