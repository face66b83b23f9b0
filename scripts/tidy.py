#!/usr/bin/env python3
"""clang-tidy over the sources, each only when it or something that it includes is not as it was when last found clean.

    scripts/tidy.py             all sources
    scripts/tidy.py src bench   those below these folders
    scripts/tidy.py --changed   those that differ from the last commit, and the sources of headers that do

Goes by the commands of the preset `tidy`, which `make tidy` configures. What was found clean is remembered in the
user's cache by the hash of all that went in, so that every checkout on the machine profits; headers of the system are
taken to change with clang-tidy alone. Ends with 1 if there is a finding.
"""
import argparse
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import resource
import shlex
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "tidy"
CACHE = pathlib.Path(os.environ.get("XDG_CACHE_HOME") or pathlib.Path.home() / ".cache") / "kd-limitdesk" / "tidy"
INCLUDE = re.compile(rb'^[ \t]*#[ \t]*include[ \t]*"([^"]+)"', re.M)
FORGET_AFTER = 60 * 24 * 3600  # seconds without use


@functools.cache
def content(path):
    """Hash of a file and the names that it includes."""
    data = path.read_bytes()
    return hashlib.sha256(data).digest(), tuple(name.decode() for name in INCLUDE.findall(data))


def included(path, folders):
    """The file and all of ours that it includes, at any depth."""
    found, waiting = {path}, [path]
    while waiting:
        user = waiting.pop()
        for name in content(user)[1]:
            used = next((folder / name for folder in (user.parent, *folders) if (folder / name).is_file()), None)
            if used is not None and used.resolve() not in found:
                found.add(used.resolve())
                waiting.append(used.resolve())
    return found


def place(path):
    """A name that is the same in every checkout."""
    return str(path.relative_to(ROOT)) if path.is_relative_to(ROOT) else str(path)


class Source:
    def __init__(self, entry, setting):
        self.path = pathlib.Path(entry["file"]).resolve()
        words = shlex.split(entry["command"])
        folders = [ROOT / word[2:] for word in words if word.startswith("-I")]
        self.used = included(self.path, folders)
        key = hashlib.sha256(setting)
        key.update(" ".join(words).replace(str(ROOT), ".").encode())
        for path in sorted(self.used, key=place):
            key.update(place(path).encode() + content(path)[0])
        self.mark = CACHE / key.hexdigest()

    def clean(self):
        if self.mark.exists():
            self.mark.touch()  # still of use
            return True
        return False

    def look(self):
        """What clang-tidy has to say; empty when the source is clean."""
        run = subprocess.run(["clang-tidy", "--quiet", "-p", str(BUILD), str(self.path)], stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        if run.returncode == 0:
            self.mark.touch()
            return ""
        return run.stdout.strip() or run.stderr.strip() or f"{place(self.path)}: clang-tidy ended with {run.returncode}"


def changed_files():
    """What differs from the last commit, new files included; only what is staged when git asks before a commit."""
    staged = ["--cached"] if os.environ.get("GIT_INDEX_FILE") else []
    names = subprocess.run(["git", "diff", "--name-only", "-z", *staged, "HEAD"], cwd=ROOT, capture_output=True,
                           check=True).stdout
    names += subprocess.run(["git", "ls-files", "-z", "--others", "--exclude-standard"], cwd=ROOT, capture_output=True,
                            check=True).stdout
    return {ROOT / name.decode() for name in names.split(b"\0") if name}


def chosen(sources, options):
    if options.changed:
        changed = changed_files()
        alone = {path for path in changed if path.suffix == ".h" and not path.with_suffix(".cpp").exists()}
        picked = [source for source in sources if source.path in changed or source.path.with_suffix(".h") in changed]
        for header in sorted(alone):  # a header without a source of its own: the source that includes least beside it
            users = [source for source in sources if header in source.used]
            picked += sorted(users, key=lambda source: len(source.used))[:1]
        return list(dict.fromkeys(picked))
    folders = [(ROOT / folder).resolve() for folder in options.folders] or [ROOT]
    return [source for source in sources if any(source.path.is_relative_to(folder) for folder in folders)]


def forget_old():
    for mark in CACHE.iterdir():
        if time.time() - mark.stat().st_mtime > FORGET_AFTER:
            mark.unlink(missing_ok=True)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--changed", action="store_true")
    parser.add_argument("folders", nargs="*")
    options = parser.parse_args()
    CACHE.mkdir(parents=True, exist_ok=True)
    version = subprocess.run(["clang-tidy", "--version"], capture_output=True, check=True).stdout
    setting = version + (ROOT / ".clang-tidy").read_bytes()
    entries = json.loads((BUILD / "compile_commands.json").read_text(encoding="utf-8"))
    entries = {entry["file"]: entry for entry in entries if not pathlib.Path(entry["file"]).is_relative_to(ROOT / "build")}
    sources = chosen([Source(entry, setting) for entry in entries.values()], options)
    dirty = [source for source in sources if not source.clean()]
    findings = 0
    with concurrent.futures.ThreadPoolExecutor(int(os.environ.get("JOBS") or os.cpu_count() or 1)) as pool:
        for words in pool.map(Source.look, dirty):
            findings += bool(words)
            if words:
                print(words, flush=True)
    forget_old()
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"{len(sources)} sources, {len(dirty)} looked at in {usage.ru_utime + usage.ru_stime:.0f} s of the processor, "
          f"{findings} with findings")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
