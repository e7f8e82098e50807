#!/usr/bin/env python3
"""Mutates single lines of the core and runs the unit suites against each: what survives, no test has noticed.

    tests/mutation/mutation.py BUILD [COUNT [SEED]]

BUILD is a build tree made by Ninja of the sources as they lie here; leave them alone meanwhile. A mutant is one object more,
linked before the libraries, so that theirs is not taken. It dies when a program fails, crashes or exceeds its time or memory;
what does not compile is no mutant. The report is BUILD/mutation/report; the status is 1 when less than nine of ten die.
Mutants that no test can tell from the original are listed in equivalent.txt with the reason and count for neither side;
elsewhere.txt says of some sources who notices what survives here.
"""
import collections
import contextlib
import json
import os
import pathlib
import queue
import random
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import threading

sys.dont_write_bytecode = True
import mutants  # noqa: E402 (nothing is left beside the sources)

ROOT = pathlib.Path(__file__).resolve().parents[2]
FOLDERS = ('Core', 'KTStuff', 'Sources', 'train')
# Roots of programs: no unit program links them, the flows run them.
ROOTS = re.compile(r'(^|/)(\w+_)?main(_\w+)?\.cpp$|SanitizerOptions')
# Held against the tree as it lies there, and against the toolkit.
OTHER_PROGRAMS = ('walls_unit', 'window_unit')
WANTED = 0.9
MEMORY = 3 << 30

Program = collections.namedtuple('Program', 'name link members seconds')  # seconds of processor time for each pass
Mutant = collections.namedtuple('Mutant', 'path number before after')


def lines_of(*command, **options):
    return subprocess.run(command, check=True, text=True, stdout=subprocess.PIPE, **options).stdout.splitlines()


def confinement():
    """What a mutant may do is not known: it runs without rights and sees no process but its own, where that can be had."""
    without_rights = ['setpriv', '--reuid=65534', '--regid=65534', '--clear-groups'] if os.getuid() == 0 else []
    alone = ['unshare', '--pid', '--fork', '--kill-child'] if os.getuid() == 0 else \
            ['unshare', '--user', '--pid', '--fork', '--kill-child']
    possible = subprocess.run([*alone, *without_rights, 'true'], stderr=subprocess.DEVNULL).returncode == 0
    return (alone if possible else []) + without_rights


class Bench:
    """A build tree, the unit programs in it, and a folder of its own for each of those who work at once."""
    ROOM = 'mutation'
    PROGRAMS = r'\w+_unit\w*'
    # The slow tests of a program run when the others have noticed nothing.
    PASSES = ('-*Oracle*', '*Oracle*')

    def __init__(self, build):
        self.build = pathlib.Path(build).resolve()
        self.room = self.build / self.ROOM
        shutil.rmtree(self.room, ignore_errors=True)
        self.room.mkdir()
        self.room.chmod(0o755)
        self.confined = confinement()
        self.linker = ['-fuse-ld=lld'] if shutil.which('ld.lld') else ['-fuse-ld=gold'] if shutil.which('ld.gold') else []
        commands = json.loads((self.build / 'compile_commands.json').read_text())
        self.compile = {os.path.relpath(entry['file'], ROOT): shlex.split(entry['command']) for entry in commands}
        self.prelude = self.precompiled()
        names = {found.group(1) for line in lines_of('ninja', '-C', str(self.build), '-t', 'targets', 'all')
                 if (found := re.match(rf'(?:.*/)?({self.PROGRAMS}): CXX_EXECUTABLE_LINKER', line))}
        names = sorted(names.difference(OTHER_PROGRAMS))
        subprocess.run(['ninja', '-C', str(self.build), *names], check=True, stdout=subprocess.DEVNULL)
        self.programs = [self.program(name) for name in names]

    def precompiled(self):
        """The headers of the library that most sources include, read once for all mutants."""
        counted = collections.Counter(
            line for folder in FOLDERS for kind in ('*.h', '*.cpp') for path in (ROOT / folder).rglob(kind)
            if not ROOTS.search(path.name) for line in re.findall(r'^#include <[a-z_]+>$', path.read_text(), re.MULTILINE))
        header = self.room / 'standard.h'
        header.write_text('\n'.join(line for line, count in counted.items() if count > 1) + '\n')
        command = self.command(next(path for path in self.compile if path.startswith('Core/')), header, f'{header}.gch', '-O0')
        subprocess.run(command, cwd=self.build, check=True)
        return ['-include', str(header)]

    def command(self, path, source, target, level):
        """As the build compiles the file at the path, but in silence, with the library's own assertions."""
        command = [word for word in self.compile[path] if word not in ('-Werror', '-g1') and 'ccache' not in word]
        command[command.index('-o') + 1] = str(target)
        command[command.index('-c') + 1] = str(source)
        for word in ('-MF', '-MT', '-MD'):
            if word in command:
                place = command.index(word)
                del command[place:place + (1 if word == '-MD' else 2)]
        return [*command, '-w', '-D_GLIBCXX_ASSERTIONS', level]

    def program(self, name):
        command = lines_of('ninja', '-C', str(self.build), '-t', 'commands', f'tests/{name}')[-1]
        link = shlex.split(command.removeprefix(': && ').removesuffix(' && :'))
        place = link.index('-o') + 1
        link[place] = str(self.room / name)
        table = self.room / f'{name}.map'
        subprocess.run([*link, *self.linker, f'-Wl,-Map={table}'], cwd=self.build, check=True)
        members = {pathlib.Path(found).name for found in re.findall(r'\.a\(([\w.]+\.(?:cpp|mm)\.o)\)', table.read_text())}
        seconds = []
        for tests in self.PASSES:
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            if self.run(self.room / name, tests, 600) != 0:
                sys.exit(f'{name} fails without any mutant')
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            seconds.append(after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime)
        return Program(name, link, members, seconds)

    def run(self, program, tests, seconds, output=subprocess.DEVNULL):
        """The status; None when it took more than so many seconds of the processor, or waited for ten times as long."""
        limits = {resource.RLIMIT_AS: MEMORY, resource.RLIMIT_CORE: 0, resource.RLIMIT_CPU: int(seconds) + 1}

        def limit():
            for kind, most in limits.items():
                resource.setrlimit(kind, (most, most))

        environment = {'PATH': os.environ['PATH'], 'HOME': '/', 'GTEST_FAIL_FAST': '1', 'GTEST_BRIEF': '1',
                       'TMPDIR': os.environ.get('TMPDIR', '/tmp')}
        process = subprocess.Popen(
            [*self.confined, str(program), f'--gtest_filter={tests}'], cwd='/', env=environment, start_new_session=True,
            stdin=subprocess.DEVNULL, stdout=output, stderr=output, preexec_fn=limit)
        try:
            status = process.wait(10 * seconds)
        except subprocess.TimeoutExpired:
            status = None
        # All of it: a change of the user takes the child out of its parent's care.
        with contextlib.suppress(ProcessLookupError):
            os.killpg(process.pid, signal.SIGKILL)
        process.wait()
        return None if status in (-signal.SIGKILL, 128 + signal.SIGKILL, 128 + signal.SIGXCPU) else status

    def compiled(self, mutant, folder, level='-O0'):
        """The mutant's object, or None when it does not compile."""
        text = (ROOT / mutant.path).read_text(encoding='utf-8').split('\n')
        text[mutant.number - 1] = mutant.after
        source = folder / pathlib.Path(mutant.path).name
        source.write_text('\n'.join(text), encoding='utf-8')
        target = folder / f'{source.name}{level}.o'
        command = self.command(mutant.path, source, target, level)
        prelude = self.prelude if level == '-O0' else []
        done = subprocess.run([*command, *prelude], cwd=self.build, stderr=subprocess.DEVNULL)
        return target if done.returncode == 0 else None

    def killer(self, mutant, compiled, folder):
        """The name of the program in which it dies, or None."""
        member = pathlib.Path(mutant.path).name + '.o'
        subject = pathlib.Path(mutant.path).stem
        reached = [program for program in self.programs if member in program.members]
        passes = [(tests, program) for tests in range(len(self.PASSES)) for program in reached]
        passes.sort(key=lambda each: (each[0], not near(subject, each[1].name), each[1].seconds[each[0]]))
        for tests, program in passes:
            target = folder / program.name
            if tests == 0:
                link = [str(target) if word == str(self.room / program.name) else word for word in program.link]
                # First of all, so that what several objects hold is taken from it.
                subprocess.run([link[0], str(compiled), *link[1:], *self.linker], cwd=self.build, check=True)
            status = self.run(target, self.PASSES[tests], 5 + 3 * program.seconds[tests])
            if status != 0:
                return f'{program.name}{" (time)" if status is None else ""}'
        return None


def near(subject, program):
    """Whether the program is the one for this source, to ask it first."""
    words = {'String': 'text_unit', 'KTProcess': 'processes_unit', 'Sound': 'sound_unit', 'Color': 'color_unit',
             'KTUtilitiesVersions': 'versions', 'KTUtilitiesLaunching': 'launching', 'KTUtilitiesDesktop': 'session_unit',
             'KTUtilitiesScripts': 'running_unit', 'View': 'views', 'Privileged': 'rights_unit', 'Text': 'core_unit',
             'Format': 'core_unit', 'Paths': 'core_unit', 'Real': 'core_unit', 'Notifications': 'core_unit_notifications',
             'KTCompatibility': 'core_unit_notifications'}
    return any(word in subject and name in program for word, name in words.items())


def chosen(seed, reached):
    """Lines in the order of chance, for each a mutant of it by chance."""
    chance = random.Random(seed)
    found = []
    for folder in FOLDERS:
        for path in sorted((ROOT / folder).rglob('*.cpp')):
            name = str(path.relative_to(ROOT))
            if ROOTS.search(name) or path.name + '.o' not in reached:
                continue
            text = path.read_text(encoding='utf-8').split('\n')
            found += [Mutant(name, number, text[number - 1], after) for number, all_of_line in mutants.of_file(path)
                      for after in [chance.choice(all_of_line)]]
    chance.shuffle(found)
    return found


def listed(name):
    """The rows of a list beside this file."""
    lines = (pathlib.Path(__file__).parent / name).read_text(encoding='utf-8').splitlines()
    return [tuple(part.strip() for part in line.split(' @@ ')) for line in lines if line and not line.startswith('#')]


def equivalents():
    """{(path, line, the line mutated)}"""
    return {row[:3] for row in listed('equivalent.txt')}


class Trial:
    """Mutants one after the other, until so many have died or survived."""

    def __init__(self, bench, count, seed):
        self.bench, self.count, self.known = bench, count, equivalents()
        self.waiting = queue.Queue()
        for mutant in chosen(seed, set().union(*(program.members for program in bench.programs))):
            self.waiting.put(mutant)
        self.results = {'died': [], 'survived': [], 'equivalent': [], 'no mutant': []}
        self.lock = threading.Lock()
        self.report = open(bench.room / 'report', 'w', encoding='utf-8')

    def run(self, workers):
        threads = [threading.Thread(target=self.work, args=(self.bench.room / str(number),)) for number in range(workers)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    def work(self, folder):
        folder.mkdir()
        folder.chmod(0o755)
        while len(self.results['died']) + len(self.results['survived']) < self.count:
            try:
                mutant = self.waiting.get_nowait()
            except queue.Empty:
                return
            fate, who = judged(self.bench, mutant, folder, self.known)
            with self.lock:
                self.results[fate].append(mutant)
                if fate != 'no mutant':
                    print(f'{fate}{" in " + who if who else ""} @@ {mutant.path}:{mutant.number} @@ {mutant.before.strip()} @@ '
                          f'{mutant.after.strip()}', file=self.report, flush=True)


def main():
    build, count, seed = sys.argv[1], int((sys.argv[2:] or ['500'])[0]), int((sys.argv[3:] or ['1'])[0])
    trial = Trial(Bench(build), count, seed)
    trial.run(int(os.environ.get('KT_MUTATION_JOBS', os.cpu_count())))
    results = trial.results
    reasons = dict(listed('elsewhere.txt'))
    for mutant in sorted(results['survived']):
        print(f'{mutant.path}:{mutant.number}\n    was {mutant.before.strip()}\n    now {mutant.after.strip()}')
        if mutant.path in reasons:
            print(f'    {reasons[mutant.path]}')
    died, all_tried = len(results['died']), len(results['died']) + len(results['survived'])
    print(f'{died} of {all_tried} mutants died; {len(results["equivalent"])} are as good as the original, '
          f'{len(results["no mutant"])} did not compile (seed {seed})')
    return 0 if died >= WANTED * all_tried and died > 0 else 1


def judged(bench, mutant, folder, known):
    if (mutant.path, mutant.before.strip(), mutant.after.strip()) in known:
        return 'equivalent', 'the list'
    compiled = bench.compiled(mutant, folder)
    if compiled is None:
        return 'no mutant', None
    who = bench.killer(mutant, compiled, folder)
    if who is not None:
        return 'died', who
    return ('equivalent', 'the compiler') if same_when_optimised(bench, mutant, folder) else ('survived', None)


def same_when_optimised(bench, mutant, folder):
    """Whether the compiler makes the same program of both."""
    original = mutant._replace(after=mutant.before)
    with_it, without = folder / 'with', folder / 'without'
    texts = []
    for variant, place in ((mutant, with_it), (original, without)):
        done = bench.compiled(variant, folder, '-O2')
        if done is None:
            return False
        subprocess.run(['objcopy', '--strip-debug', str(done), str(place)], check=True)
        texts.append(place.read_bytes())
    return texts[0] == texts[1]


if __name__ == '__main__':
    sys.exit(main())
