"""What the administrator's tool names twice is exchanged in between by the person who asked for the rights.

The tool stands still before the second call meanwhile, so each race is won at once. Tried for every pair of its calls."""
import ctypes
import os
import shutil
import stat
import time

from installations import PERSON
from products import make_product
from program import Program, environment
from stopper import NAMING, supports

SECRET = b"known to root alone\n"
FOLDERS = {"the person's folder": (PERSON, 0o755), "everybody's folder": (0, 0o1777), "root's folder": (0, 0o755)}
EXCHANGES = ("link", "root's own", "pipe")
STAYS = ("for good", "for one call")
RENAME_EXCHANGE = 2
LIBC = ctypes.CDLL(None, use_errno=True)


class Person:
    """This thread reaches files as the person does."""

    def __enter__(self):
        LIBC.setfsgid(PERSON)
        LIBC.setfsuid(PERSON)

    def __exit__(self, *_):
        LIBC.setfsuid(0)
        LIBC.setfsgid(0)


def exchange(one, other):
    if LIBC.renameat2(-100, os.fsencode(one), -100, os.fsencode(other), RENAME_EXCHANGE) != 0:
        raise OSError(ctypes.get_errno(), f"{one} and {other}")


class Kept:
    """What is root's alone, made beforehand: what was born just now could be taken for the tool's own."""

    def __init__(self, base):
        self.folder, self.made = os.path.join(base, "kept"), 0
        self.there = {kind: [] for kind in ("file", "folder", "open folder")}
        os.mkdir(self.folder)

    def refill(self):
        if min(map(len, self.there.values())) >= 4:
            return
        for _ in range(50):
            for kind, there in self.there.items():
                self.made += 1
                there.append(self.make(os.path.join(self.folder, str(self.made)), kind))
        time.sleep(1.5)  # as long as the tool takes something for new

    def make(self, path, kind):
        """A secret, a folder with one, or a folder that everybody may read."""
        if kind == "file":
            write(path, SECRET, 0o600)
        else:
            os.mkdir(path)
            write(os.path.join(path, "file"), *((SECRET, 0o600) if kind == "folder" else (b"root's\n", 0o644)))
            os.chmod(path, 0o700 if kind == "folder" else 0o755)
        return path

    def take(self, kind, path):
        self.refill()
        os.makedirs(os.path.dirname(path), exist_ok=True)
        os.rename(self.there[kind].pop(), path)
        return path

    def give_back(self, path, kind):
        self.made += 1
        again = os.path.join(self.folder, str(self.made))
        os.rename(path, again)
        self.there[kind].append(again)


def write(path, data, mode):
    with open(path, "wb") as file:
        file.write(data)
    os.chmod(path, mode)


class Scene:
    """A product and a wrapper of the person's, an old copy of root's, and what is root's alone."""

    def __init__(self, tools, kept, folder, kind, is_easy):
        self.folder, self.home, self.is_easy = folder, tools.home_of_person(), is_easy
        self.source, self.wrapper = os.path.join(folder, "source/Sample.app"), os.path.join(folder, "wrapper")
        self.target = os.path.join(folder, "target")
        self.place = os.path.join(self.target, "Sample.app")
        self.make_given(tools)
        self.make_target(*FOLDERS[kind])
        outside = os.path.join(folder, "outside")
        self.kinds = {}
        for near in (outside, self.target, os.path.dirname(self.source), self.home):
            for name, kind in ((".decoy-file", "file"), (".decoy-folder", "folder" if near == outside else "open folder")):
                self.kinds[kept.take(kind, os.path.join(near, name))] = kind
        self.keeps = list(self.kinds)
        self.facts = {path: self.facts_of(path) for keep in self.keeps for path in self.below(keep)}
        # While they are held, nothing new gets their numbers.
        self.held = [os.open(path, os.O_PATH | os.O_NOFOLLOW) for path in self.facts]
        self.inodes = {facts[0]: path for path, facts in self.facts.items()}
        self.took_the_place_of_an_item = False
        self.is_kept_outside = {path: path.startswith(outside) for path in self.facts}

    def make_given(self, tools):
        make_product(os.path.dirname(self.source))
        os.mkdir(self.wrapper)
        for holder in (self.wrapper, os.path.join(self.source, "Contents")):
            os.mkdir(os.path.join(holder, "inner"))
            with open(os.path.join(holder, "inner/note"), "w") as file:
                file.write("new")
            with open(os.path.join(holder, "note"), "w") as file:
                file.write("new")
            os.symlink("note", os.path.join(holder, "link"))
            if not self.is_easy:
                os.mkfifo(os.path.join(holder, "pipe"))
        os.link(os.path.join(self.source, "Contents/note"), os.path.join(self.source, "Contents/same"))
        for given in (os.path.dirname(self.source), self.wrapper):
            tools.give_to_person(given)

    def make_target(self, owner, mode):
        os.mkdir(self.target)
        make_product(self.target, version="1.0")
        os.mkdir(os.path.join(self.target, "inner"))
        with open(os.path.join(self.target, "inner/old"), "w") as file:
            file.write("old")
        if not self.is_easy:
            os.symlink("Sample.app", os.path.join(self.target, "link"))
        os.chown(self.target, owner, owner)
        os.chmod(self.target, mode)

    def below(self, path):
        return [path, *(os.path.join(path, name) for name in (os.listdir(path) if os.path.isdir(path) else ()))]

    def facts_of(self, path):
        facts = os.lstat(path)
        names = sorted(os.listdir(path)) if stat.S_ISDIR(facts.st_mode) else []
        return facts.st_ino, facts.st_mode, facts.st_uid, facts.st_gid, facts.st_mtime_ns, sorted(os.listxattr(path)), names

    def may_exchange(self, path):
        """Whether the person may put another thing under that name just now."""
        try:
            above = os.stat(os.path.dirname(path))
            is_persons = os.path.lexists(path) and os.lstat(path).st_uid == PERSON
        except OSError:
            return False
        if above.st_uid == PERSON:
            return True
        return bool(above.st_mode & stat.S_IWOTH) and (is_persons or not above.st_mode & stat.S_ISVTX or not os.path.lexists(path))

    def decoy(self, path, name):
        """One beside it, for a folder of root's cannot be moved to another; a file can."""
        beside = os.path.join(os.path.dirname(path), name)
        return beside if os.path.lexists(beside) else os.path.join(os.path.dirname(self.source), name)

    def exchange(self, path, how):
        """By the person. Answers how it is taken back; None when the person may not."""
        is_folder = os.path.isdir(path) and not os.path.islink(path)
        aside = path + ".aside"
        with Person():
            try:
                if how == "root's own":
                    decoy = self.decoy(path, ".decoy-folder" if is_folder else ".decoy-file")
                    exchange(path, decoy)
                    name = os.path.relpath(path, self.target)
                    self.took_the_place_of_an_item = os.path.lexists(os.path.join(self.wrapper, name))
                    return lambda: exchange(path, decoy)
                os.mkfifo(aside, 0o666) if how == "pipe" else os.symlink(self.keeps[1 if is_folder else 0], aside)
                if os.path.lexists(path):
                    exchange(path, aside)
                    return lambda: exchange(path, aside)
                os.rename(aside, path)
                return lambda: os.rename(path, aside)
            except OSError:
                return None

    def seen(self):
        """Where each thing is now, by its number."""
        walks = (step for top in (self.folder, self.home) for step in os.walk(top))
        paths = (os.path.join(at, name) for at, folders, files in walks for name in folders + files)
        return {os.lstat(path).st_ino: path for path in paths}

    def let_go(self):
        for descriptor in self.held:
            os.close(descriptor)

    def give_back(self, kept):
        seen = self.seen()
        for keep in self.keeps:
            path = seen.get(self.facts[keep][0])
            if path:
                kept.give_back(path, self.kinds[keep])

    def harm(self):
        """What came of root's own, in a word; None for nothing."""
        seen = self.seen()
        for number, was in self.inodes.items():
            before, path = self.facts[was], seen.get(number)
            if path is None:
                if self.is_kept_outside[was]:
                    return f"gone: {os.path.relpath(was, self.folder)}"
                continue  # it had got the name of what was to be replaced
            now = self.facts_of(path)
            if was.startswith(self.target) and self.took_the_place_of_an_item:
                # Whatever bears the name of a wrapper's item is removed, and the folder's owner says what bears it. Removed and
                # nothing else: not given away, not opened to others.
                now, before = now[:4], before[:4]
            if now != before:
                return "given away" if now[2] == PERSON else f"changed: {os.path.relpath(was, self.folder)}"
        return next((f"secret told: {os.path.relpath(path, self.folder)}" for number, path in seen.items()
                     if number not in self.inodes and self.tells(path)), None)

    def tells(self, path):
        facts = os.lstat(path)
        if not stat.S_ISREG(facts.st_mode) or facts.st_size != len(SECRET):
            return False
        with open(path, "rb") as file:
            return file.read() == SECRET


def named(call):
    """What the call names by name, and every folder on the way to it that a name leads through."""
    result = []
    for text, path in call.named():
        path = os.path.normpath(path)
        steps = len([step for step in text.split("/") if step not in ("", ".")])
        for _ in range(steps):
            result.append(path)
            path = os.path.dirname(path)
    return result


class Exchanger:
    """Notes what each call names; before one call it exchanges one thing."""

    def __init__(self, scene, at=(None, 0), path=None, how=None, stay=STAYS[0]):
        self.scene, self.at, self.path, self.how, self.stay = scene, at, path, how, stay
        self.times = 0
        self.calls, self.undo, self.was_met, self.was_done = [], None, False, False

    def __call__(self, call):
        if self.undo and self.stay == "for one call":
            with Person():
                try:
                    self.undo()
                except OSError:
                    pass  # the tool has taken it away
            self.undo = None
        tops = (self.scene.folder + "/", self.scene.home + "/")
        paths = [path for path in named(call) if path.startswith(tops)]
        if not paths:
            return
        self.calls.append((call.name, [(path, self.scene.may_exchange(path)) for path in paths]))
        # Known by what it names, for folders are not always listed in the same order.
        self.times += call.name == self.at[0] and self.path in paths
        if self.times == self.at[1] and call.name == self.at[0] and self.path in paths:
            self.was_met = True
            self.undo = self.scene.exchange(self.path, self.how)
            self.was_done = self.undo is not None

    def pairs(self):
        """A call and which of its kind on this path it is, the path, and what named it before; if the person may touch it."""
        before, times = {}, {}
        for name, paths in self.calls:
            for path, may in paths:
                times[name, path] = times.get((name, path), 0) + 1
                if path in before and may:
                    yield (name, times[name, path]), path, before[path]
            before |= {path: name for path, _ in paths}


class Races:
    def __init__(self, tools):
        self.tools, self.kept, self.known = tools, None, {}

    def skipped(self):
        why = self.tools.lacks("train for a person") or supports()
        return {"every pair of calls": why} if why else {}

    def allows(self, subject, outcome):
        if subject == "the naive tool":
            return outcome == "harmed"
        return outcome in ("unharmed", "the person may not")

    def run(self, folder, kind, tool, **what):
        """A fault or a harm or None, what was met, and the status in which it ended."""
        self.kept = self.kept or Kept(self.tools.base)
        self.tools.new_home_of_person()
        scene = Scene(self.tools, self.kept, folder, kind, tool == self.tools.naive)
        exchanger = Exchanger(scene, **what)
        variables = {"PATH": "/usr/bin:/bin", "HOME": "/root", "PKEXEC_UID": str(PERSON),
                     "ASAN_OPTIONS": environment(folder)["ASAN_OPTIONS"]}
        program = Program([tool, scene.source, scene.place, scene.wrapper], variables, folder, before=exchanger, calls=NAMING,
                          looks_too=True, first=[one_processor])
        status = program.end(10)
        harm = program.fault(status) or scene.harm()
        if not harm:
            scene.give_back(self.kept)
        scene.let_go()
        return harm, exchanger, status

    def cases(self, fresh_folder, kind, tool):
        """Every exchange between two calls, by what makes it a case of its own: the calls, where, how, and for how long."""
        if (kind, tool) not in self.known:
            folder = fresh_folder()
            harm, exchanger, status = self.run(folder, kind, tool)
            if harm or (status != 0 and tool == self.tools.train):
                raise RuntimeError(f"nothing is installed in {kind}: {harm or status}")
            cases = self.known[kind, tool] = {}
            for at, path, first in exchanger.pairs():
                where = os.path.relpath(path, folder) if path.startswith(folder) else os.path.relpath(path, self.tools.base)
                for how, stay in ((how, stay) for how in EXCHANGES for stay in STAYS):
                    cases.setdefault((first, at[0], where.split("/")[0], how, stay), []).append((at, where))
        return self.known[kind, tool]

    def outcome(self, folder, kind, tool, at, where, how, stay):
        base = self.tools.base if where.startswith("person") else folder
        harm, exchanger, _ = self.run(folder, kind, tool, at=at, path=os.path.join(base, where), how=how, stay=stay)
        return harm or ("never met" if not exchanger.was_met else "unharmed" if exchanger.was_done else "the person may not")

    def fixed(self, fresh_folder):
        """The first of each kind of case; and the naive tool, which must be harmed by one or the laboratory proves nothing."""
        if self.skipped():
            return {}
        result = {}
        for kind in FOLDERS:
            for (first, second, area, how, stay), [(at, where), *_] in self.cases(fresh_folder, kind, self.tools.train).items():
                name = f"{kind}, {first} and {second} of {area}, {how} {stay}"
                result[name] = lambda folder, kind=kind, at=at, where=where, how=how, stay=stay: (
                    f"{kind}: {how}, {stay}", self.outcome(folder, kind, self.tools.train, at, where, how, stay))
        if os.path.exists(self.tools.naive):
            result["the naive tool"] = lambda folder: ("the naive tool", self.naive_outcome(folder))
        return result

    def naive_outcome(self, folder):
        kind = "the person's folder"
        cases = self.cases(lambda: new_folder(folder, "known"), kind, self.tools.naive)
        for turn, ((_, _, _, how, stay), [(at, where), *_]) in enumerate(cases.items()):
            inner = new_folder(folder, str(turn))
            if self.outcome(inner, kind, self.tools.naive, at, where, how, stay) not in ("never met", "unharmed", "the person may not"):
                return "harmed"
        return "harms nobody"

    def chance(self, rng, folder):
        if self.skipped():
            return "nothing", "unharmed"
        kind = rng.choice(sorted(FOLDERS))
        cases = self.cases(lambda: new_folder(folder, "known"), kind, self.tools.train)
        chosen = rng.choice(sorted(cases))
        at, where = rng.choice(cases[chosen])
        return f"{kind}: {chosen[3]}, {chosen[4]}, by chance", self.outcome(folder, kind, self.tools.train, at, where, *chosen[3:])


def new_folder(folder, name):
    path = os.path.join(folder, name)
    os.mkdir(path)
    return path


def one_processor():
    """In the child: then it works with one thread, and the n-th call is the same in each run."""
    os.sched_setaffinity(0, [min(os.sched_getaffinity(0))])
