"""An installation that is ended: before each call by which its phases begin, before any call, and at random moments."""
import subprocess

from installations import SAID, Installation
from products import WHOLE, Replacement
from stopper import kill, supports

NOT_YET = "not yet"  # what it answers that is to be tried again before the next call


class Counter:
    """Counts the calls that change something in the scene, and does something before one of them."""

    def __init__(self, scene, at=0, act=kill):
        self.scene, self.at, self.act = scene, at, act
        self.roots = tuple(root + "/" for root in scene.trashes)
        self.areas = []

    def area(self, path):
        """Where it stands: a step further in is the same phase."""
        if not path.startswith(self.roots) or "/Library/" in path or path.endswith("/output"):
            return None
        if path.startswith(self.scene.place):
            return "new copy"
        for name in ("/files/", "/info/", "/Trash", "/.Trash"):
            if name in path:
                return name
        return next((name for name in ("/icons", "/applications", "/autostart") if name in path), "elsewhere")

    def __call__(self, call):
        areas = [area for area in map(self.area, call.paths()) if area]
        if areas:
            self.areas.append((call.name if call.name.startswith("rename") else "", *areas))
            if len(self.areas) == self.at and self.act(call) is NOT_YET:
                self.at += 1

    def phases(self):
        """The numbers of the calls that begin something else, and the one after the last."""
        areas = self.areas
        return [number + 1 for number in range(len(areas)) if number == 0 or areas[number] != areas[number - 1]] + [len(areas)]


class Kills:
    def __init__(self, tools):
        self.tools = tools
        self.counted = {}

    def skipped(self):
        lacking = supports()
        if lacking:
            return {way: lacking for way in SAID}
        return {way: self.tools.lacks(way) for way in SAID if self.tools.lacks(way)}

    def ways(self):
        return [way for way in SAID if way not in self.skipped()]

    def allows(self, subject, outcome):
        return outcome in WHOLE

    def run(self, way, folder, at, act=kill, **size):
        """One installation in which something happens before the call of that number; what it came to, and the counter."""
        scene = Replacement(folder, **size)
        if self.tools.is_isolated:
            self.tools.new_home_of_person()
            scene.trashes.append(self.tools.home_of_person())
        counter = Counter(scene, at, act)
        installation = Installation(self.tools, way, scene)
        status = installation.run(before=counter)
        return installation.outcome(status), counter

    def fixed(self, fresh_folder):
        """Every boundary of every way, by name. Where a run takes long, those between two phases."""
        cases = {}
        for way in self.ways():
            outcome, counter = self.run(way, fresh_folder(), 0)
            if outcome != "new placed":
                raise RuntimeError(f"{way} installs nothing: {outcome}")
            numbers = range(1, len(counter.areas) + 1) if way.startswith("train") else counter.phases()
            for number in numbers:
                cases[f"{way} {number}"] = lambda folder, way=way, number=number: self.at(way, folder, number)
        return cases

    def at(self, way, folder, number):
        outcome, counter = self.run(way, folder, number)
        if len(counter.areas) >= number:
            return f"{way} ended at a boundary", outcome
        # How often the window's program writes down what it has registered differs from run to run.
        return f"{way} not ended", outcome if way == "installer" else "never came so far"

    def chance(self, rng, folder):
        way = rng.choice(["at random", *self.ways()])
        size = {"files": rng.choice([0, 5, 50]), "size": rng.choice([10, 10000, 200000]), "rng": rng}
        if way == "at random":
            return self.at_random(rng, folder, size)
        outcome, _ = self.run(way, folder, rng.randrange(1, 60 + 8 * size["files"]), **size)
        return f"{way} ended at a call", outcome

    def at_random(self, rng, folder, size):
        scene = Replacement(folder, **size)
        installation = Installation(self.tools, "train", scene)
        program = installation.start()
        try:
            program.process.wait(rng.random() * rng.choice([0.01, 0.05, 0.3, 2]))
        except subprocess.TimeoutExpired:
            program.process.kill()
        status = program.end()
        return "train ended at random" if status else "train in time", installation.outcome(status)
