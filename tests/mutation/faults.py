#!/usr/bin/env python3
"""Puts faults that are known into the macOS adapters, each by itself: the tests of its subject must notice every one.

    tests/mutation/faults.py BUILD LIST [WORD]

BUILD is as in mutation.py. LIST has a fault on each line: PATH @@ LINE @@ FAULTY LINE @@ WHAT IT IS; with WORD those alone
that contain it. The line stands once in the source at the path, and what takes its place compiles: a list that the sources
have left behind fails. A fault has been noticed when a test program of the subject fails, crashes, exceeds its time, or
leaves an object without a pool. The report is BUILD/faults/report.
"""
import concurrent.futures
import os
import pathlib
import subprocess
import sys

sys.dont_write_bytecode = True
import mutation  # noqa: E402 (nothing is left beside the sources)

# The folder of a subject in Platform has the tests of these programs.
SUITES = {'window': ('mac_window', 'mac_views'), 'color': ('mac_color', 'mac_session')}
LEFT_BEHIND = b'autorelease called without pool'


class FaultBench(mutation.Bench):
    ROOM = 'faults'
    PROGRAMS = r'mac_(?:running|text|color|rights|files|session|sound|bundles|processes|window|views)'

    PASSES = ('*',)

    def __init__(self, build):
        self.cases, self.failed = {}, {}
        super().__init__(build)
        self.programs = {program.name: program for program in self.programs}

    def precompiled(self):
        # The other toolkit asks the system for its own arguments.
        if self.confined[:1] == ['unshare']:
            self.confined.insert(1, '--mount-proc')
        return []

    def run(self, program, tests, seconds, output=None):
        """Each case by itself, as they are run otherwise: the other toolkit has one application in a process."""
        said = pathlib.Path(f'{program}.out')
        for case in self.cases[program.name]:
            with open(said, 'wb') as output:
                status = super().run(program, case, seconds, output)
            text = said.read_bytes()
            if status == 0 and (LEFT_BEHIND in text or b'[  PASSED  ] 1 test.' not in text):
                status = 1
            if status != 0:
                self.failed[program] = f'{case}{" (time)" if status is None else ""}'
                return status
        return 0

    def program(self, name):
        listed = mutation.lines_of(str(self.build / 'tests' / name), '--gtest_list_tests')
        self.cases[name] = []
        for line in listed:
            word = line.split('#')[0].rstrip()
            if line.startswith('  '):
                self.cases[name].append(suite + word.strip())
            elif word.endswith('.'):
                suite = word
        return super().program(name)

    def killer(self, mutant, compiled, folder):
        """The program of its subject and the case in which it dies, or None."""
        subject = mutant.path.split('/')[1]
        for name in SUITES.get(subject, (f'mac_{subject}',)):
            program, target = self.programs[name], folder / name
            link = [str(target) if word == str(self.room / name) else word for word in program.link]
            subprocess.run([link[0], str(compiled), *link[1:], *self.linker], cwd=self.build, check=True)
            status = self.run(target, '*', 20)
            if status != 0:
                return f'{name}: {self.failed[target]}'
        return None


def listed(path):
    """The faults with what they are; a line that is not there once ends the program."""
    for row in pathlib.Path(path).read_text(encoding='utf-8').splitlines():
        if not row or row.startswith('#'):
            continue
        source, before, after, what = row.split(' @@ ')
        lines = (mutation.ROOT / source).read_text(encoding='utf-8').split('\n')
        found = [number for number, line in enumerate(lines, 1) if line.strip() == before]
        if len(found) != 1:
            sys.exit(f'{source}: {len(found)} lines are: {before}')
        yield mutation.Mutant(source, found[0], lines[found[0] - 1], after), what


def judged(bench, number, fault, what):
    folder = bench.room / str(number)
    folder.mkdir()
    folder.chmod(0o755)
    compiled = bench.compiled(fault, folder)
    if compiled is None:
        return 'does not compile', fault, what
    who = bench.killer(fault, compiled, folder)
    return (f'noticed by {who}' if who else 'NOBODY NOTICES'), fault, what


def main():
    faults = [(fault, what) for fault, what in listed(sys.argv[2])
              if all(word in f'{fault.path} {what}' for word in sys.argv[3:])]
    bench = FaultBench(sys.argv[1])
    noticed = 0
    with open(bench.room / 'report', 'w', encoding='utf-8') as report, \
            concurrent.futures.ThreadPoolExecutor(int(os.environ.get('KT_MUTATION_JOBS', os.cpu_count()))) as workers:
        for fate, fault, what in workers.map(lambda each: judged(bench, each[0], *each[1]), enumerate(faults)):
            line = f'{fault.path}:{fault.number}: {what}: {fate}'
            print(line, file=report, flush=True)
            if fate.startswith('noticed'):
                noticed += 1
            else:
                print(f'{line}\n    was {fault.before.strip()}\n    now {fault.after.strip()}')
    print(f'{noticed} of {len(faults)} faults are noticed')
    return 0 if noticed == len(faults) > 0 else 1


if __name__ == '__main__':
    sys.exit(main())
