"""Where the milliseconds of a start go: samples of its stacks until the first paint, by phase, as a table and a picture.

A phase is told by a function that stands on the stack while it lasts. A stack that could not be followed up to one of them
belongs to the phase of the sample before it: the main thread does one thing after the other.
"""
import collections, html, os, re, subprocess, tempfile

RATE = 8000  # samples a second
# Where the first of these functions on a stack, from the outside, says what is going on. The first line that matches counts.
PHASES = [("loading libraries", r"^(_dl_start|dl_main|_dl_sysdep_start)"),
          ("the toolkit", r"QApplication::QApplication|QApplicationPrivate::init"),
          ("looking around", r"askForDisplay|askBuses|askSession|StartConditions"),
          ("the window", r"InstallerWindow::load|readInterface|(QTextEdit|QLabel|QPushButton)::Q|QTabWidget::"),
          ("the product", r"awakeFromNib|LinuxBundles|LocalizedStrings"),
          ("shown and painted", r"QEventLoop::exec|QCoreApplication::exec|QWidgetPrivate::setVisible|bringForward")]
THREADS = "other threads"
BEFORE = "before main"


def stacks(folder, command, environment):
    """Of one start: thread number and functions, the outermost first, of each sample of the program, in their order."""
    data, program = os.path.join(folder, "samples"), os.path.basename(command[1])[:15]
    record = ["perf", "record", "-q", "-F", str(RATE), "--call-graph", "dwarf,16384", "-m", "2048", "-o", data, *command]
    if subprocess.run(record, env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode != 0:
        raise RuntimeError("nothing could be recorded (package linux-perf, and the right to use it)")
    told = subprocess.run(["perf", "script", "-i", data, "--no-inline", "-F", "comm,pid,tid,ip,sym"],
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True, errors="replace").stdout
    found = []
    for sample in told.split("\n\n"):
        lines = sample.strip("\n").split("\n")
        first = re.match(r"(.*?)\s+(\d+)/(\d+)", lines[0])
        # Its threads have names of their own; whoever started it has not.
        if first and (first[1] == program or first[1].startswith(("Q", "Halvorn"))):
            functions = [re.sub(r"^\s*[0-9a-f]+ |\(anonymous namespace\)::", "", line).split("(")[0] for line in lines[1:]]
            found.append((first[2] == first[3], [each for each in reversed(functions) if each != "[unknown]"]))
    return found


def phase_of(functions):
    for function in functions:
        for name, pattern in PHASES:
            if re.search(pattern, function):
                return name
    return None


def sorted_by_phase(samples):
    """Each phase's stacks."""
    found, now = collections.defaultdict(list), BEFORE
    for is_main, functions in samples:
        if is_main:
            now = phase_of(functions) or now
        found[now if is_main else THREADS].append(functions)
    return found


class Picture:
    """Phases beside each other, as wide as they took; below each the functions that were called, from the outside in."""
    WIDTH, LINE, LEAST, DEEPEST = 1200, 16, 2.0, 24

    def __init__(self, title, total):
        self.scale, self.shapes, self.deepest = self.WIDTH / max(total, 1), [], 0
        self.title = title

    def box(self, place, depth, samples, text, kind):
        width = samples * self.scale
        if width < self.LEAST:
            return
        self.deepest = max(self.deepest, depth)
        shown = html.escape(text[:int(width / 6.5)]) if width > 20 else ""
        words = f"{html.escape(text)}: {samples * 1000 / RATE / self.starts:.1f} ms"
        left, top = place * self.scale, (depth + 2) * self.LINE
        self.shapes.append(f'<g><title>{words}</title><rect class="{kind}" x="{left:.1f}" y="{top}" width="{width:.1f}" '
                           f'height="{self.LINE - 1}"/><text x="{left + 3:.1f}" y="{top + self.LINE - 5}">{shown}</text></g>')

    def functions(self, place, depth, rows):
        if depth > self.DEEPEST:
            return
        called = collections.defaultdict(list)
        for row in rows:
            if row:
                called[row[0]].append(row[1:])
        for name, below in sorted(called.items(), key=lambda item: -len(item[1])):
            self.box(place, depth, len(below), name, "ours" if name.startswith("halvorn::") else "theirs")
            self.functions(place, depth + 1, below)
            place += len(below)

    def draw(self, phases, starts):
        self.starts, place = starts, 0
        for name, rows in phases.items():
            self.box(place, 0, len(rows), name, "phase")
            self.functions(place, 1, rows)
            place += len(rows)
        size = f'width="{self.WIDTH}" height="{(self.deepest + 4) * self.LINE}"'
        style = (".page{fill:#fff}text{font:11px sans-serif;fill:#222}.phase{fill:#9db7d5}.ours{fill:#f2b872}.theirs{fill:#dcdcdc}"
                 "@media(prefers-color-scheme:dark){.page{fill:#1e1e1e}text{fill:#eee}.phase{fill:#3b5f8a}.ours{fill:#96601c}"
                 ".theirs{fill:#444}}")
        return (f'<svg xmlns="http://www.w3.org/2000/svg" {size}><style>{style}</style><rect class="page" {size}/>'
                f'<text x="3" y="18">{html.escape(self.title)}</text>{"".join(self.shapes)}</svg>\n')


def show(watch, commands, environment, folder, starts):
    """Prints what each phase of each program took, and leaves a picture of each in `folder`."""
    order = [BEFORE, *dict.fromkeys(name for name, _ in PHASES), THREADS]
    taken = {}
    with tempfile.TemporaryDirectory() as scratch:
        for name, command in commands.items():
            rows = collections.defaultdict(list)
            for _ in range(starts):
                for phase, found in sorted_by_phase(stacks(scratch, [watch, *command], environment)).items():
                    rows[phase] += found
            taken[name] = {phase: rows[phase] for phase in order if rows[phase]}
    os.makedirs(folder, exist_ok=True)
    print(f"milliseconds of processor time to the first paint, means of {starts} starts (being watched costs some of them)")
    print(f"{'':20}" + "".join(f"{name:>14}" for name in taken))
    for phase in order:
        print(f"{phase:20}" + "".join(f"{len(rows.get(phase, [])) * 1000 / RATE / starts:14.1f}" for rows in taken.values()))
    for name, rows in taken.items():
        path = os.path.join(folder, f"start-{name.replace(' ', '-')}.svg")
        with open(path, "w") as file:
            file.write(Picture(f"{name}: to the first paint", sum(map(len, rows.values()))).draw(rows, starts))
        print(path)
