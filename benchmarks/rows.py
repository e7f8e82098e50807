"""What the benchmarks measured, row by row, as other programs read it.

A row compares ours with its peers in one run. Samples with the same place were taken in the same turn, so a ratio is made of the
two of each turn, and what slows the machine for a while slows both. The ratio of a row is the median over the turns; its noise is
how far a single turn usually lies from it, as a share of it. Times on another machine are others; ratios hold.
"""
import argparse, json, math, statistics

# Two runs of the same program differ by this much where the turns themselves hardly differ at all: where the machine puts things.
LEAST_NOISE = 0.03
FORMAT = 1


class Unreadable(Exception):
    """A store that cannot be used; the text says which and why."""


def noise_of(values):
    """How far a single one usually lies from the median, as a share of it: what a standard deviation would be without outliers."""
    middle = statistics.median(values)
    if not middle:
        return 0.0
    return 1.4826 * statistics.median(abs(value - middle) for value in values) / abs(middle)


def column(samples):
    """What is kept of the samples of one program."""
    return {"median": statistics.median(samples), "least": min(samples), "most": max(samples), "noise": noise_of(samples),
            "samples": len(samples)}


def fastest_of(peers, against):
    """The least of these peers in each turn."""
    return [min(turn) for turn in zip(*(peers[name] for name in against))]


class Rows:
    """The rows of one benchmark, in the order in which they were measured."""

    def __init__(self, benchmark):
        self.benchmark, self.rows = benchmark, []

    def add(self, name, unit, ours, peers=None, *, against=None, goal=None, goal_of="ratio", below=False, meaning=""):
        """ours: samples; peers: samples by name. The ratio is that to the best of `against`, or of all. `goal` is the most that the
        ratio may be, or with goal_of="value" the median itself; with `below` it is to be less than that."""
        peers = peers or {}
        row = {"benchmark": self.benchmark, "row": name, "unit": unit, "meaning": meaning, "ours": column(ours),
               "peers": {peer: column(samples) for peer, samples in peers.items()}}
        if peers:
            row["against"] = list(against or peers)
            turns = [mine / theirs for mine, theirs in zip(ours, fastest_of(peers, row["against"])) if theirs]
            if turns:
                row["ratio"] = column(turns)
        if goal is not None:
            row["goal"] = {"of": goal_of, "most": goal, "below": below}
        row["verdict"] = verdict_of(row)
        self.rows.append(row)
        return row

    def write(self, path):
        if path:
            with open(path, "w") as file:
                json.dump({"format": FORMAT, "rows": self.rows}, file, indent=1)


def verdict_of(row):
    """"met", "missed", or "" where nothing was to be reached; a ratio that was not found misses."""
    goal = row.get("goal")
    if not goal:
        return ""
    value = row["ours"]["median"] if goal["of"] == "value" else row.get("ratio", {}).get("median", math.inf)
    return "met" if value < goal["most"] or (value == goal["most"] and not goal["below"]) else "missed"


def key_of(row):
    return f"{row['benchmark']}: {row['row']}"


def allowance(before, now):
    """By how much of the ratio two measurements of it may differ: by the noise of both."""
    return max(LEAST_NOISE, math.hypot(before["ratio"]["noise"], now["ratio"]["noise"]))


def change(before, now):
    """How much more the ratio is than it was, as a share of it, and whether that is beyond noise: -1 better, 0 no, 1 worse."""
    was, is_now = before["ratio"]["median"], now["ratio"]["median"]
    share = (is_now - was) / was if was else math.inf if is_now else 0.0
    if abs(share) <= allowance(before, now):
        return share, 0
    return share, 1 if share > 0 else -1


def compared(before, now):
    """(row, share, direction) of every row of both that has a ratio to its peers; what has none cannot be compared."""
    stored = {key_of(row): row for row in before if "ratio" in row}
    pairs = [(stored[key_of(row)], row) for row in now if "ratio" in row and key_of(row) in stored]
    return [(new, *change(old, new)) for old, new in pairs]


def read(path):
    """The document of a store or of one benchmark."""
    try:
        with open(path) as file:
            document = json.load(file)
    except OSError as error:
        raise Unreadable(f"{path}: {error.strerror}") from error
    except ValueError as error:
        raise Unreadable(f"{path}: no JSON ({error})") from error
    if not isinstance(document, dict) or document.get("format") != FORMAT:
        raise Unreadable(f"{path}: not in format {FORMAT}")
    for place, row in enumerate(document.get("rows") or [None]):
        if not isinstance(row, dict) or not {"benchmark", "row", "unit", "ours", "peers", "verdict"} <= row.keys():
            raise Unreadable(f"{path}: row {place + 1} is incomplete")
    return document


def add_option(parser: argparse.ArgumentParser):
    parser.add_argument("--json", default="", metavar="FILE", help="the rows, for other programs")
