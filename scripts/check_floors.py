#!/usr/bin/env python3
"""Checks who includes whom: a folder of src uses only floors below its own, and the core is the standard library alone.

Prints each include that leads up or sideways, and ends with 1 if there is one.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SRC = ROOT / "src"

# From the ground up. Folders of one floor know nothing of each other, but for the pairs below.
FLOORS = {
    "base": 1, "platform": 2, "ini": 3, "model": 3, "grid": 4, "appfiles": 5,
    "edit": 6, "commit": 6, "admin": 6, "help": 6, "lifecycle": 7, "qt": 8, ".": 9,
}
# Beside the house: what stands behind platform/, which knows nothing above floor 3.
BESIDE = {"suite": 3, "system": 2}
# The suite reads ini text and stands on the machine's files.
ALLOWED = {("suite", "system")}
# The operating system's own headers; only system may include them.
SYSTEM_HEADER = re.compile(r"^(sys/|unistd\.h|fcntl\.h|dirent\.h|pwd\.h|windows\.h|linux/|poll\.h|signal\.h)")
TOOLKIT_HEADER = re.compile(r"^(Q[A-Z]|Qt)")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def folder_of(path):
    parts = path.relative_to(SRC).parts
    return parts[0] if len(parts) > 1 else "."


def may_include(user, used):
    if user == used or (user, used) in ALLOWED:
        return True
    if user in ("qt", "."):
        return used != "."
    if user in BESIDE:
        return used in FLOORS and FLOORS[used] <= BESIDE[user]
    return used in FLOORS and FLOORS[used] < FLOORS[user]


def faults_of(path):
    user = folder_of(path)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if not match:
            continue
        quote, name = match.groups()
        place = f"{path.relative_to(ROOT)}:{number}: {user} must not include {name}"
        if quote == "<":
            if TOOLKIT_HEADER.match(name) and user not in ("qt", "."):
                yield place
            elif SYSTEM_HEADER.match(name) and user != "system":
                yield place
            continue
        used = name.split("/")[0] if "/" in name else "."
        if "/" not in name and (path.parent / name).exists() and user == "qt":
            continue
        if not (SRC / name).exists():
            yield f"{path.relative_to(ROOT)}:{number}: {name} is no path from src"
        elif not may_include(user, used):
            yield place


def main():
    files = [path for path in sorted(SRC.rglob("*")) if path.suffix in (".h", ".cpp")]
    unknown = sorted({folder_of(path) for path in files} - set(FLOORS) - set(BESIDE))
    faults = [f"src/{folder}: a folder without a floor" for folder in unknown]
    for path in files:
        if folder_of(path) not in unknown:
            faults += faults_of(path)
    print("\n".join(faults) if faults else f"{len(files)} files, every include leads down")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
