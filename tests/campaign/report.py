"""The table of a campaign: attack, input, outcome and how many cases had it. Tables of several runs can be added up."""
import collections
import os
import re


class Report:
    def __init__(self):
        self.table = collections.Counter()
        self.bad, self.skipped, self.seeds, self.hours = [], [], [], 0.0

    def count(self, attack, subject, outcome):
        self.table[attack, subject, outcome] += 1

    def read(self, path):
        """Adds what an earlier run wrote there; nothing when there was none."""
        if not os.path.exists(path):
            return
        with open(path) as file:
            text = file.read()
        for attack, subject, outcome, count in re.findall(r"^\| (.+) \| (.+) \| (.+) \| (\d+) \|$", text, re.M):
            self.table[attack, subject, outcome] += int(count)
        self.seeds += [seed for seed in re.search(r"^Seeds (.*);", text, re.M)[1].split(", ") if seed not in self.seeds]
        self.hours += float(re.search(r"; ([\d.]+) hours", text)[1])
        self.bad += re.findall(r"^- (--seed .*)$", text, re.M)
        self.skipped += [line for line in re.findall(r"^- not run: (.*)$", text, re.M) if line not in self.skipped]

    def text(self):
        lines = [f"Seeds {', '.join(self.seeds)}; {self.hours:.3f} hours, {sum(self.table.values())} cases.", "",
                 "| attack | input | outcome | cases |", "|---|---|---|---|"]
        lines += [f"| {attack} | {subject} | {outcome} | {count} |" for (attack, subject, outcome), count in sorted(self.table.items())]
        lines += [""] + [f"- not run: {line}" for line in self.skipped]
        return "\n".join(lines + ["Not allowed:" if self.bad else "Nothing that is not allowed."] + [f"- {line}" for line in self.bad]) + "\n"

    def write(self, path):
        with open(path, "w") as file:
            file.write(self.text())
