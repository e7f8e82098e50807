#!/usr/bin/env python3
"""The benchmark book: every row of every benchmark in one table, and whether any has moved.

usage: book.py all ROOT [--quick] [--only NAME,...]    measures, prints the table, writes docs/benchmarks.{json,md} and the plots
       book.py check ROOT [--only NAME,...]            measures as the stored book was, and names each row that is worse

What is compared are ratios to the peers of the same run. A row has moved when the two medians differ by more than the noise of
both; one that seems worse is measured a second time and counts only when it is again. Exit status of `all`: 1 when a benchmark
did not run; of `check`: 1 when a row is worse as well.
"""
import argparse, datetime, os, pathlib, platform, re, subprocess, sys, tempfile

sys.dont_write_bytecode = True
import page, plots, rows as book  # noqa: E402 (nothing is left beside the sources)

BENCHMARKS = ["text", "library", "process", "startup", "copy", "size"]
# Arguments of each run of a benchmark: (whole, quick).
RUNS = {"text": [(["1024000", "15"], ["10240", "9"])],
        "library": [(["9"], ["5"])],
        "process": [([], ["--rounds", "9", "--seconds", "3"])],
        "startup": [([], ["--rounds", "7"]), (["--wayland"], ["--wayland", "--rounds", "7"]),
                    (["--documents"], ["--documents", "--rounds", "3"])],
        "copy": [([], ["--quick", "--rounds", "3"])],
        "size": [([], [])]}
PACKAGES = ["coreutils", "rsync", "tar", "python3", "nodejs", "ruby", "procps", "libicu72", "libglib2.0-0", "libstdc++6", "libc6",
            "libqt6widgets6", "xvfb", "openbox", "sway"]


def first(*command):
    """The first line that a program prints; "" when it cannot."""
    try:
        done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
    except OSError:
        return ""
    return (done.stdout.splitlines() or [""])[0] if done.returncode == 0 else ""


def machine(root):
    cpu = re.search(r"^model name\s*: (.*)$", pathlib.Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    memory = re.search(r"^MemTotal: +(\d+)", pathlib.Path("/proc/meminfo").read_text(), re.MULTILINE)
    versions = {name: first("dpkg-query", "-W", "-f", "${Version}", name) for name in PACKAGES}
    return {"processors": f"{os.cpu_count()} x {cpu.group(1) if cpu else platform.machine()}",
            "memory": f"{int(memory.group(1)) / 1e6:.0f} GB" if memory else "unknown", "kernel": platform.release(),
            "file system": first("stat", "-f", "-c", "%T", str(root)), "load before": f"{os.getloadavg()[0]:.1f}",
            "versions": {name: version for name, version in versions.items() if version}}


def command_of(root, name):
    """A benchmark's driver, and what it is told first."""
    programs, installer = root / "build/release/benchmarks" / name, root / "build/HalvornInstaller.app"
    told = {"size": [root / "build/package/HalvornInstaller.app"], "startup": [programs, installer], "process": [programs, installer]}
    return [str(word) for word in [root / "benchmarks" / f"run_{name}", *told.get(name, [programs])]]


def measured(root, name, quick):
    """The rows of one benchmark; what it prints goes to build/benchmarks/NAME.log."""
    found, log = [], root / "build/benchmarks" / f"{name}.log"
    log.parent.mkdir(parents=True, exist_ok=True)
    with open(log, "w") as output, tempfile.TemporaryDirectory() as folder:
        for place, arguments in enumerate(run[quick] for run in RUNS[name]):
            file = os.path.join(folder, str(place))
            subprocess.run([*command_of(root, name), *arguments, "--json", file], stdout=output, stderr=output)
            found += book.read(file)["rows"]
    return found


def measure(root, names, quick):
    """(document, names that did not run)."""
    document = {"format": book.FORMAT, "commit": first("git", "-C", str(root), "rev-parse", "--short", "HEAD"), "quick": quick,
                "date": datetime.date.today().isoformat(), "machine": machine(root), "rows": []}
    failed = []
    for name in names:
        print(f"measuring: {name}", file=sys.stderr, flush=True)
        try:
            document["rows"] += measured(root, name, quick)
        except book.Unreadable as error:
            failed.append(name)
            print(f"{name} did not run, see build/benchmarks/{name}.log: {error}", file=sys.stderr)
    return document, failed


def moves(stored, document):
    """A line for each row that has moved beyond noise."""
    if stored is None:
        return []
    if stored["quick"] != document["quick"]:
        return ["the stored book was measured otherwise (quick or whole): nothing is compared"]
    words = {1: "worse", -1: "better"}
    return [f"{words[direction]} than at {stored['commit']} by {abs(share):.0%}: {book.key_of(row)}"
            for row, share, direction in book.compared(stored["rows"], document["rows"]) if direction]


def write(root, document):
    (root / "docs/benchmarks").mkdir(exist_ok=True)
    for name in BENCHMARKS:
        drawing = plots.svg(page.TITLES[name], [row for row in document["rows"] if row["benchmark"] == name])
        if drawing:
            (root / f"docs/benchmarks/{name}.svg").write_text(drawing)
    (root / "docs/benchmarks.json").write_text(page.compact(document))
    (root / "docs/benchmarks.md").write_text(page.markdown(document, BENCHMARKS))


def all_rows(root, options):
    store = root / "docs/benchmarks.json"
    stored = book.read(store) if store.exists() else None
    document, failed = measure(root, options.only, options.quick)
    print(page.table(document["rows"]))
    for line in moves(stored, document) or ["no row has moved beyond noise" if stored else "nothing was stored to compare with"]:
        print(line)
    if failed or options.only != BENCHMARKS:
        print("not stored: " + ("not every benchmark ran" if failed else "not every benchmark was asked for"))
    else:
        write(root, document)
    return 1 if failed else 0


def check(root, options):
    stored = book.read(root / "docs/benchmarks.json")
    document, failed = measure(root, options.only, stored["quick"])
    worse = worse_rows(stored, document)
    if worse:
        again, failed_again = measure(root, sorted({row["benchmark"] for row in worse.values()}), stored["quick"])
        failed += failed_again
        worse = {key: row for key, row in worse_rows(stored, again).items() if key in worse}
    for key, row in worse.items():
        before = next(each for each in stored["rows"] if book.key_of(each) == key)["ratio"]["median"]
        print(f"worse: {key}: ratio {row['ratio']['median']:.3f}, stored {before:.3f}")
    missing = missing_rows(stored, document, options.only)
    for key in missing:
        print(f"not measured: {key}")
    print(f"{len(book.compared(stored['rows'], document['rows']))} ratios compared with those of {stored['commit']}")
    return 1 if worse or failed or missing else 0


def worse_rows(stored, document):
    return {book.key_of(row): row for row, _, direction in book.compared(stored["rows"], document["rows"]) if direction > 0}


def missing_rows(stored, document, names):
    """What was stored with a ratio and is not there any more."""
    there = {book.key_of(row) for row in document["rows"] if "ratio" in row}
    return [book.key_of(row) for row in stored["rows"]
            if "ratio" in row and row["benchmark"] in names and book.key_of(row) not in there]


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("verb", choices=["all", "check"])
    parser.add_argument("root", type=pathlib.Path)
    parser.add_argument("--quick", action="store_true")
    parser.add_argument("--only", default=",".join(BENCHMARKS))
    options = parser.parse_args()
    options.only = [name for name in BENCHMARKS if name in options.only.split(",")]
    if not options.only:
        parser.error(f"--only takes of {', '.join(BENCHMARKS)}")
    try:
        return (all_rows if options.verb == "all" else check)(options.root.resolve(), options)
    except book.Unreadable as error:
        print(f"the stored book cannot be used: {error}", file=sys.stderr)
        return 1


if __name__ == "__main__":
    sys.exit(main())
