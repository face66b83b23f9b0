#!/usr/bin/env python3
"""Checks who includes whom: a room of src uses only the rooms that its line below names, and the core is the standard
library alone. No two sources include each other, neither directly nor around others.

Prints each fault, and ends with 1 if there is one.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
SRC = ROOT / "src"

# From the ground up; each room's README says the same in words.
CORE = ["base", "platform", "ini", "model", "grid", "appfiles", "edit", "commit", "admin", "help", "lifecycle"]
USES = {
    "base": [],
    "platform": ["base"],
    "ini": ["base", "platform"],
    "model": ["base", "platform"],
    "grid": ["base", "platform", "model"],
    "appfiles": ["base", "platform", "ini", "model", "grid"],
    "edit": ["base", "platform", "model", "grid"],
    "commit": ["base", "platform", "model", "grid", "appfiles"],
    "admin": ["base", "platform", "model"],
    "help": ["base", "platform", "model"],
    "lifecycle": CORE,
    # Beside the house, behind platform.
    "suite": ["base", "platform", "ini"],
    "system": ["base", "platform"],
    "system/posix": ["base", "platform", "system"],
    "system/windows": ["base", "platform", "system"],
    # The screen.
    "qt/services": ["base", "platform"],
    "qt/grid": ["base", "platform", "qt/services"],
    "qt/forms": CORE + ["qt/services", "qt/grid"],
    "qt": CORE + ["suite", "system", "qt/services", "qt/grid", "qt/forms"],
    ".": CORE + ["suite", "system", "qt", "qt/services"],
}
# The operating system's own headers; only system may include them.
SYSTEM_HEADER = re.compile(r"^(sys/|unistd\.h|fcntl\.h|dirent\.h|pwd\.h|windows\.h|linux/|poll\.h|signal\.h)")
TOOLKIT_HEADER = re.compile(r"^(Q[A-Z]|Qt)")
INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def room_of(name):
    """The room of a path from src, written with slashes."""
    return name.rpartition("/")[0] or "."


def includes_of(path):
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        match = INCLUDE.match(line)
        if match:
            yield number, *match.groups()


def faults_of(path):
    user = room_of(path.relative_to(SRC).as_posix())
    on_screen = user == "." or user.split("/")[0] == "qt"
    for number, quote, name in includes_of(path):
        place = f"{path.relative_to(ROOT)}:{number}: {user} must not include {name}"
        if quote == "<":
            if TOOLKIT_HEADER.match(name) and not on_screen:
                yield place
            elif SYSTEM_HEADER.match(name) and user.split("/")[0] != "system":
                yield place
        elif on_screen and name == path.stem + ".moc":
            continue
        elif not (SRC / name).exists():
            yield f"{path.relative_to(ROOT)}:{number}: {name} is no path from src"
        elif room_of(name) != user and room_of(name) not in USES[user]:
            yield place


def sources(src):
    return [path for path in sorted(src.rglob("*")) if path.suffix in (".h", ".cpp")]


def circles(src):
    """Sources below `src` that include each other, a header and its source being one."""
    uses = {}
    for path in sources(src):
        unit = path.relative_to(src).with_suffix("").as_posix()
        used = {name.rpartition(".")[0] for _, quote, name in includes_of(path) if quote == '"'}
        uses.setdefault(unit, set()).update(used - {unit})
    done, road = set(), []

    def visit(unit):
        if unit in road:
            yield " -> ".join(road[road.index(unit):] + [unit])
        elif unit not in done and unit in uses:
            road.append(unit)
            for used in sorted(uses[unit]):
                yield from visit(used)
            road.pop()
            done.add(unit)

    for unit in sorted(uses):
        yield from visit(unit)


def main():
    files = sources(SRC)
    rooms = {room_of(path.relative_to(SRC).as_posix()) for path in files}
    faults = [f"src/{room}: a room that USES does not know" for room in sorted(rooms - set(USES))]
    for path in files:
        if room_of(path.relative_to(SRC).as_posix()) in USES:
            faults += faults_of(path)
    faults += [f"a circle: {circle}" for circle in circles(SRC)]
    print("\n".join(faults) if faults else f"{len(files)} files, every include leads down, and none in a circle")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
