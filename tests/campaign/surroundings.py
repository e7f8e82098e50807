"""Installations where a desktop never is: limits, variables, disks, clocks."""
import os
import resource

from products import make_product
from program import Program, environment

STARTED = {"shown", "sentence"}


class Surroundings:
    def __init__(self, tools):
        self.tools = tools

    def skipped(self):
        return {}

    def allows(self, subject, outcome):
        return outcome in STARTED

    def fixed(self, fresh_folder):
        return {}

    def chance(self, rng, folder):
        product = make_product(os.path.join(folder, "image"))
        variables, limits = environment(folder), []
        os.mkdir(variables["HOME"])
        way = rng.choice(["files", "stack", "file size", "core", "scale", "variable", "home", "no display", "pending signals"])
        limited = {"files": (resource.RLIMIT_NOFILE, rng.randrange(3, 64)), "core": (resource.RLIMIT_CORE, 0),
                   "stack": (resource.RLIMIT_STACK, rng.choice([256, 1024, 8192]) * 1024),
                   "file size": (resource.RLIMIT_FSIZE, rng.choice([4096, 65536])),
                   "pending signals": (resource.RLIMIT_SIGPENDING, rng.randrange(2))}
        if way in limited:
            limits.append(limited[way])
        elif way == "scale":
            name = rng.choice(["QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_FONT_DPI"])
            variables[name] = rng.choice(["-1", "0", "1000", "nan", "inf", "1e300", "x", "1;2;3", "a=b", "0.0001"])
        elif way == "variable":
            name = rng.choice(["LANG", "LANGUAGE", "PATH", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "TMPDIR",
                               "XDG_CURRENT_DESKTOP", "DBUS_SESSION_BUS_ADDRESS", "JOURNAL_STREAM"])
            variables[name] = rng.choice(["", "/", folder + "/nowhere", "x" * 100000, "\u202e", "../..", "%n%@", "unix:path=/dev/null"])
        elif way == "home":
            variables["HOME"] = rng.choice(["", folder + "/nowhere", "/dev/null", "relative", "/proc"])
        else:
            del variables["QT_QPA_PLATFORM"]
        return way, Program([self.tools.installer, "-sourcePath", product, "-destinationPath", folder + "/Sample.app"], variables, folder, limits).outcome()
