"""Minimal systems to start the package in: a release with the packages that system-libraries names, and nothing of a desktop.

Made once with mmdebstrap and kept in ~/.cache/halvorn/roots; a changed list of packages makes a new one.
"""
import fcntl, functools, hashlib, os, shutil, subprocess, sys, tempfile

SOURCE = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
FONTS = ["fonts-dejavu-core"]


class Skipped(Exception):
    """This machine cannot run the test; the text says what it would take."""


def run_test(test):
    """Runs the test as a program: its exit status is 0, 1, or 77 with the reason as the test programs print it."""
    try:
        test()
    except Skipped as reason:
        print(f"{os.path.basename(sys.argv[0])}: Skipped\n{reason}")
        sys.exit(77)


def system_libraries(late):
    """The Debian packages of the libraries that the package expects; with LATE those too that it can do without."""
    with open(os.path.join(SOURCE, "packaging/linux/system-libraries")) as file:
        rows = [line.split() for line in file if line.strip() and not line.startswith("#")]
    return sorted({row[1] for row in rows if late or row[-1] != "late"})


def cache():
    folder = os.environ.get("XDG_CACHE_HOME") or os.path.expanduser("~/.cache")
    return os.path.join(folder, "halvorn/roots")


def root(release, more=(), late=False):
    """The folder of a minimal system. Thread: any; another process that makes the same one is waited for."""
    if shutil.which("mmdebstrap") is None:
        raise Skipped("mmdebstrap is not installed")
    packages = sorted({*system_libraries(late), *FONTS, *more})
    name = f"{release}-{hashlib.sha256(' '.join(packages).encode()).hexdigest()[:12]}"
    place = os.path.join(cache(), name)
    os.makedirs(cache(), exist_ok=True)
    with open(place + ".lock", "w") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        if not os.path.isdir(place):
            make_root(release, packages, place)
    return place


def make_root(release, packages, place):
    unfinished = tempfile.mkdtemp(prefix=os.path.basename(place) + ".", dir=cache())
    os.chmod(unfinished, 0o755)
    # A mirror that is some weeks behind serves as well: signatures are checked all the same.
    command = ["mmdebstrap", "--variant=minbase", '--aptopt=Acquire::Check-Valid-Until "false"',
               '--dpkgopt=path-exclude=/usr/share/doc/*', "--dpkgopt=path-exclude=/usr/share/man/*",
               "--include=" + ",".join(packages), release, unfinished, os.environ.get("HALVORN_MIRROR", "http://deb.debian.org/debian")]
    # What it mounts must not outlive it, however it ends.
    apart = own_mounts()[0] if os.geteuid() == 0 else []
    made = subprocess.run([*apart, *command], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, stdin=subprocess.DEVNULL)
    if made.returncode != 0:
        remove_root(unfinished)
        errors = [line for line in made.stdout.splitlines() if line.startswith("E:")]
        raise Skipped(f"no minimal system of {release} could be made: {' '.join(errors) or made.stdout[-500:]}")
    for account in ("passwd", "group"):
        line = "anna:x:1000:1000::/home/anna:/bin/sh\n" if account == "passwd" else "anna:x:1000:\n"
        with open(os.path.join(unfinished, "etc", account), "a") as file:
            file.write(line)
    os.rename(unfinished, place)


def remove_root(folder):
    if os.path.isdir(folder):
        subprocess.run(["rm", "-rf", "--one-file-system", folder], check=True)


@functools.lru_cache
def own_mounts():
    """How a command gets mounts that nobody else sees, and from there the rights of an ordinary person."""
    person = ["setpriv", "--reuid=1000", "--regid=1000", "--clear-groups", "--no-new-privs"]
    if os.geteuid() == 0 and subprocess.run(["unshare", "--mount", "true"], stderr=subprocess.DEVNULL).returncode == 0:
        return ["unshare", "--mount", "--propagation=private"], person
    inside = ["unshare", "--user", "--map-root-user", "--mount", "--propagation=private"]
    if subprocess.run([*inside, "true"], stderr=subprocess.DEVNULL).returncode == 0:
        return inside, ["unshare", "--user", "--map-user=1000", "--map-group=1000"]
    raise Skipped("a root of its own needs the right to mount or user name spaces: docker run --privileged, or --security-opt seccomp=unconfined")


# Over folders of the system, and over all of it where $3 is a folder for that: nothing that a test writes stays in it. Binds what $1 names (FROM:TO, a line each) into the root $2, and becomes the rest of the words in there.
ENTER = r"""
set -e
if [ -n "$3" ]; then
  mount -t tmpfs none "$3"
  mkdir "$3/upper" "$3/work"
  mount -t overlay -o "lowerdir=$2,upperdir=$3/upper,workdir=$3/work" none "$2"
fi
IFS='
'
for folder in home media run tmp; do mount -t tmpfs -o mode=0755 none "$2/$folder"; done
chmod 1777 "$2/tmp"
for pair in $1; do
  from=${pair%%:*} to=$2/${pair#*:}
  if [ -d "$from" ]; then mkdir -p "$to"; else mkdir -p "${to%/*}"; [ -e "$to" ] || : >"$to"; fi
  mount --rbind "$from" "$to"
done
unset IFS
root=$2; shift 3
exec chroot "$root" "$@"
"""


def in_root(root, binds, environment, command, scratch="", network=False):
    """The words that run the command in the root, with BINDS (place outside, place inside) there too; as an ordinary person,
    or with SCRATCH, an empty folder, as the administrator of a system whose changes are thrown away. It is a machine of its own:
    without NETWORK it hears nothing of its neighbours, whose people have the same names and homes."""
    enter, become = own_mounts()
    if not network:
        enter = [*enter, "--net"]
    pairs = [("/proc", "proc"), ("/dev", "dev"), *binds]
    words = ["/usr/bin/env", "-i", *(f"{name}={value}" for name, value in environment.items()), *command]
    return [*enter, "sh", "-c", ENTER, "sh", "\n".join(f"{one}:{other}" for one, other in pairs), root,
            scratch, *([] if scratch else become), *words]
