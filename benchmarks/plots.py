"""The rows of a benchmark as a picture: a scale of ratios, a dot for each row, a bar for its noise, a tick for its goal.

Written by hand: a library that draws would be a hundred times as large as what is asked of it. One file for light and dark, in
colors that are told apart in both; a missed goal is hollow, not only of another color.
"""
import math
from xml.sax.saxutils import escape

WIDTH, LABELS, RIGHT, LINE, TOP, BOTTOM = 1010, 520, 70, 20, 46, 52
STEPS = [step * 10.0 ** power for power in range(-4, 5) for step in (1, 2, 5)]
FINE_STEPS = [step * 10.0 ** power for power in range(-4, 5) for step in (1, 1.2, 1.5, 2, 3, 5, 7)]
STYLE = """
  text { font: 12px sans-serif; fill: #1f2328 } .small { font-size: 11px; fill: #59636e } .title { font-size: 15px; font-weight: bold }
  .grid { stroke: #d1d9e0 } .peer { stroke: #59636e; stroke-width: 1.5 } .noise { stroke: #7d9cc0; stroke-width: 5 }
  .goal { stroke: #1a7f37; stroke-width: 3 } .dot { fill: #0550ae; stroke: #0550ae; stroke-width: 2 }
  .missed { fill: #ffffff; stroke: #b35900; stroke-width: 2.5 }
  @media (prefers-color-scheme: dark) {
    text { fill: #f0f6fc } .small { fill: #9da7b1 } .grid { stroke: #30363d } .peer { stroke: #9da7b1 } .noise { stroke: #48617d }
    .goal { stroke: #3fb950 } .dot { fill: #79c0ff; stroke: #79c0ff } .missed { fill: #0d1117; stroke: #ffa657 }
  }
"""


def steps_of(rows):
    """The steps of the scale, between whose ends everything lies that is drawn."""
    values = [1.0]
    for row in rows:
        ratio = row["ratio"]
        values += [ratio["median"] * (1 + sign * min(ratio["noise"], 0.9)) for sign in (-1, 1)] + goal_of(row)
    steps = STEPS if max(values) > 8 * min(values) else FINE_STEPS
    least = max([step for step in steps if step < min(values)], default=steps[0])
    most = min([step for step in steps if step > max(values)], default=steps[-1])
    return [step for step in steps if least <= step <= most]


def goal_of(row):
    """The goal of the ratio, or nothing."""
    goal = row.get("goal")
    return [goal["most"]] if goal and goal["of"] == "ratio" else []


def shortened(text, room=80):
    return text if len(text) <= room else text[:room - 1] + "…"


def drawn(row, y, x):
    """One row: what is seen of it and what it says where a pointer rests on it."""
    ratio = row["ratio"]
    half = ratio["median"] * min(ratio["noise"], 0.9)
    missed = row["verdict"] == "missed"
    lines = [f'<text x="{LABELS - 12}" y="{y + 4}" text-anchor="end">{escape(shortened(row["row"]))}</text>',
             f'<line class="noise" x1="{x(ratio["median"] - half):.1f}" x2="{x(ratio["median"] + half):.1f}" y1="{y}" y2="{y}"/>']
    lines += [f'<line class="goal" x1="{x(goal):.1f}" x2="{x(goal):.1f}" y1="{y - 7}" y2="{y + 7}"/>' for goal in goal_of(row)]
    lines += [f'<circle class="{"missed" if missed else "dot"}" cx="{x(ratio["median"]):.1f}" cy="{y}" r="4">'
              f'<title>{escape(row["row"])}: {ratio["median"]:.3f}</title></circle>',
              f'<text x="{WIDTH - RIGHT + 12}" y="{y + 4}">{ratio["median"]:{".2f" if ratio["median"] >= 0.1 else ".2g"}}{" ✗" if missed else ""}</text>']
    return lines


def svg(title, rows):
    """None where no row has a ratio."""
    rows = [row for row in rows if "ratio" in row]
    if not rows:
        return None
    steps = steps_of(rows)
    least, most = steps[0], steps[-1]
    height, scale = TOP + LINE * len(rows) + BOTTOM, (WIDTH - LABELS - RIGHT) / math.log(most / least)

    def x(value):
        return LABELS + math.log(max(value, least) / least) * scale

    bottom = height - BOTTOM
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" height="{height}" role="img">',
             f"<title>{escape(title)}</title>", f"<style>{STYLE}</style>", f'<text class="title" x="12" y="22">{escape(title)}</text>']
    for step in steps:
        lines += [f'<line class="{"peer" if step == 1 else "grid"}" x1="{x(step):.1f}" x2="{x(step):.1f}" y1="{TOP - 12}" y2="{bottom}"/>',
                  f'<text class="small" x="{x(step):.1f}" y="{bottom + 15}" text-anchor="middle">{step:g}</text>']
    lines.append(f'<text class="small" x="{x(1):.1f}" y="{TOP - 18}" text-anchor="middle">its peers</text>')
    for place, row in enumerate(rows):
        lines += drawn(row, TOP + LINE * place + LINE // 2 - 4, x)
    lines.append(f'<text class="small" x="12" y="{bottom + 38}">ratio to its peers: less is quicker or smaller. Bar: noise; line: goal; hollow: missed</text>')
    return "\n".join([*lines, "</svg>"]) + "\n"
