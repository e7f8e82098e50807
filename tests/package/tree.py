"""A copy of the source tree: what belongs to it, nothing that was built."""
import os, shutil, subprocess


def names(source):
    """Tracked files and new ones; where git does not know the tree, everything but what builds leave."""
    listed = subprocess.run(["git", "-C", source, "ls-files", "-coz", "--exclude-standard"], capture_output=True)
    if listed.returncode == 0:
        return [name for name in listed.stdout.decode().split("\0") if name]
    found = []
    for parent, folders, files in os.walk(source):
        if parent == source:
            folders[:] = [folder for folder in folders if folder not in (".git", ".cache") and not folder.startswith("build")]
        found += [os.path.relpath(os.path.join(parent, file), source) for file in files]
    return found


def copy(source, target, time=None):
    """The files keep their times, or all have TIME."""
    for name in names(source):
        file, made = os.path.join(source, name), os.path.join(target, name)
        if not os.path.lexists(file):
            continue
        os.makedirs(os.path.dirname(made), exist_ok=True)
        shutil.copy2(file, made, follow_symlinks=False)
        if time is not None:
            os.utime(made, (time, time), follow_symlinks=False)
