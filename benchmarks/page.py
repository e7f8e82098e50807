"""The rows of all benchmarks as a table of text and as docs/benchmarks.md."""
import json

TITLES = {"text": "Texts beside ICU, GLib, C and the standard library", "library": "The way through the shared libraries",
          "process": "The process model on a full machine", "startup": "From exec to the first painted window",
          "copy": "The copy beside everybody else's", "size": "What is taken along to show a window"}
EXPLAINED = """\
`./dev bench all` measures every row again and writes this page; `./dev check --bench` measures again and names each row whose
ratio is worse than here by more than noise.

**Ratio**: ours by the best of the peers that it is judged by, in the same run and turn by turn; less than 1 is ahead. It is the
median over the turns, and what stands behind "±" is the noise: how far a single turn usually lies from it. Ratios hold on other
machines, times do not. Of the other columns each figure is a median.
**Goal**: the most that the ratio may be ("< 1" is to be ahead of everybody), or the figure itself where it stands with a unit. A
row without one is there to be looked at.
**Moved**: two measurements of a ratio differ by more than the noise of both, and by at least 3 %.
"""


def compact(document):
    """A row for each line, so that a change of one is a change of one line."""
    head = {key: value for key, value in document.items() if key != "rows"}
    lines = ",\n".join("  " + json.dumps(row, ensure_ascii=False) for row in document["rows"])
    return json.dumps(head, indent=1, ensure_ascii=False)[:-2] + f',\n "rows": [\n{lines}\n ]\n}}\n'


def figure(value):
    return f"{value:,.0f}" if abs(value) >= 1000 else f"{value:.3g}"


def goal_words(row):
    goal = row.get("goal")
    if not goal:
        return ""
    return ("< " if goal["below"] else "≤ ") + f"{goal['most']:.3g}" + (f" {row['unit']}" if goal["of"] == "value" else "")


def ratio_words(row):
    return f"{row['ratio']['median']:.2f} ±{row['ratio']['noise']:.0%}" if "ratio" in row else ""


def peer_words(row):
    return ", ".join(f"{name} {figure(peer['median'])}" for name, peer in row["peers"].items())


def cells(row):
    return [row["row"], f"{figure(row['ours']['median'])} {row['unit']}", peer_words(row), ratio_words(row), goal_words(row),
            row["verdict"]]


BUSY_LOAD = 1.0
BUSY = "- the machine did other work, too: what is noisy here may be steady elsewhere"
HEAD = ["row", "ours", "peers", "ratio", "goal", "verdict"]


def table(rows):
    """For a terminal."""
    lines = [["benchmark", *HEAD]] + [[row["benchmark"], *cells(row)] for row in rows]
    widths = [min(room, max(len(line[place]) for line in lines)) for place, room in enumerate([9, 76, 28, 44, 12, 30, 7])]
    return "\n".join("  ".join(cell[:width].ljust(width) for cell, width in zip(line, widths)).rstrip() for line in lines)


def of_markdown(cell):
    return cell.replace("|", "\\|")


def section(name, rows):
    lines = [f"## {TITLES[name]}", ""]
    if any("ratio" in row for row in rows):
        lines += [f"![{TITLES[name]}: the ratios of the table below](benchmarks/{name}.svg)", ""]
    lines += ["| " + " | ".join(HEAD) + " |", "|" + " --- |" * len(HEAD)]
    lines += ["| " + " | ".join(of_markdown(cell) for cell in cells(row)) + " |" for row in rows]
    meanings = dict.fromkeys(row["meaning"] for row in rows if row["meaning"])
    return lines + ["", *(f"- {meaning}" for meaning in meanings), ""]


def markdown(document, names):
    machine, rows = document["machine"], document["rows"]
    missed = [row for row in rows if row["verdict"] == "missed"]
    facts = [f"- {what}: {value}" for what, value in machine.items() if what != "versions"]
    facts.append("- versions: " + ", ".join(f"{name} {version}" for name, version in machine["versions"].items()))
    facts += [BUSY] if float(machine.get("load before", 0)) > BUSY_LOAD else []
    lines = ["# Benchmarks", "", f"Measured on {document['date']} at {document['commit']}"
             + (", with few turns and small inputs (`--quick`)." if document["quick"] else "."),
             f"{len(rows)} rows, {sum(row['verdict'] == 'met' for row in rows)} goals met, {len(missed)} missed.", "", EXPLAINED, *facts, ""]
    for name in names:
        own = [row for row in rows if row["benchmark"] == name]
        if own:
            lines += section(name, own)
    return "\n".join(lines).rstrip() + "\n"
