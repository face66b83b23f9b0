#!/usr/bin/env python3
"""Measures the sources: how full the rooms are, how long classes and functions, how much the headers say.

    scripts/figures.py             of this tree
    scripts/figures.py --root DIR  of another checkout, to compare with
    scripts/figures.py --longest N the N longest functions and largest classes by name as well

A room is a folder below src with sources of its own. A class counts with the lines of its body and of its member
functions wherever they stand; its members are functions and data, nested types apart. What each
operating system has of a class in a room of its own counts for itself. A function counts from the line of its name to
its closing brace. The ratio of comment to code is that of the headers. Lines are equal when they are so
but for blanks; six equal ones in a row, braces and includes apart, are a duplicate.
"""
import argparse
import bisect
import collections
import pathlib
import re
import statistics
import sys

from check_floors import circles, sources

BLANK = re.compile(r'//[^\n]*|/\*.*?\*/|R"(\w*)\(.*?\)\1"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'', re.S)
DIRECTIVE = re.compile(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*", re.M)
TYPE = re.compile(r"[^()]*\b(?:class|struct|union)\s+(\w+)[^()]*", re.S)
NAME = re.compile(r"((?:\w+(?:<[^<>]*>)?::)*~?(?:operator\s*\W{1,3}|operator\s+\w+|\w+))\s*\(")
TAIL = re.compile(r"(?:\)|\b(?:const|noexcept|override|final|try)|->[\w:<>&*\s]+|[\w)}]\s*[)}])\s*$")
DUPLICATE = 6
SYSTEMS = ("posix", "windows")


class Function:
    def __init__(self, name, owner, first):
        self.name, self.owner, self.first, self.lines = name, owner, first, 0


class Type:
    def __init__(self, name, first):
        self.name, self.first, self.lines, self.members = name, first, 0, 0


def blanked(text):
    """The text without comments and the content of literals; every line stays where it is."""
    def blank(match):
        piece = match.group()
        return re.sub(r"[^\n]", " ", piece) if piece[0] == "/" else '""' + "\n" * piece.count("\n")
    return DIRECTIVE.sub(lambda match: re.sub(r"[^\n]", " ", match.group()), BLANK.sub(blank, text))


def is_function(head):
    """Whether a brace behind `head`, outside of functions, opens a function's body."""
    before = head.split("(")[0]
    if "(" not in head or "=" in before.replace("operator", "") and "operator" not in before:
        return False
    return bool(TAIL.search(head)) and not re.search(r"\)\s*:\s*[^:].*\w$", head.rstrip(), re.S)


class Reader:
    """Types and functions of one source, by its braces."""

    def __init__(self, text):
        self.types, self.functions = [], []
        self.code = blanked(text)
        self.starts = [0] + [match.end() for match in re.finditer("\n", self.code)]
        self.stack = []
        self.read()

    def line(self, offset):
        return bisect.bisect_right(self.starts, offset)

    def read(self):
        start = 0
        for match in re.finditer(r"[{};]|\b(?:public|private|protected):", self.code):
            mark, head = match.group(), self.code[start:match.start()]
            inside = self.stack[-1] if self.stack else None
            if isinstance(inside, (Function, str)) and mark not in "{}":
                continue
            if mark == "{":
                opened = self.opened(head, start, inside)
                self.stack.append(opened)
                if opened == "initialiser":
                    continue
            elif mark == "}":
                if self.closed(match.start()) == "initialiser":
                    continue
            elif mark == ";" and isinstance(inside, Type):
                inside.members += bool(re.match(r"\s*(?!using|friend|enum|static_assert|class|struct)\w", head))
            start = match.end()

    def opened(self, head, start, inside):
        first = self.line(start + len(head) - len(head.lstrip()))
        if isinstance(inside, (Function, str)):
            return "block"
        if re.search(r"\bnamespace\b", head) or head.strip() == 'extern ""':
            return None
        found = TYPE.fullmatch(head)
        if found and not re.search(r"\benum\b", head):
            self.types.append(Type(found.group(1), first))
            return self.types[-1]
        if re.search(r"\benum\b", head):
            return "block"
        if is_function(head):
            if isinstance(inside, Type):
                inside.members += 1
            name = NAME.search(head)
            owner = inside.name if isinstance(inside, Type) else ""
            full = name.group(1) if name else "?"
            owner = owner or (full.rsplit("::", 1)[0] if "::" in full else "")
            self.functions.append(Function(full, owner.split("::")[-1].split("<")[0], first))
            return self.functions[-1]
        return "initialiser"

    def closed(self, offset):
        ended = self.stack.pop() if self.stack else None
        if isinstance(ended, (Function, Type)):
            ended.lines = self.line(offset) - ended.first + 1
        return ended


def comment_and_code(text):
    """Lines with a comment, and lines with code; one with both counts twice."""
    code = BLANK.sub(lambda match: re.sub(r"[^\n]", " ", match.group()) if match.group()[0] == "/" else '""', text)
    comments = sum(1 for whole, left in zip(text.split("\n"), code.split("\n")) if len(whole.strip()) and whole.rstrip()
                   != left.rstrip() and re.search(r"//|/\*|^\s*\*", whole))
    return comments, sum(1 for left in code.split("\n") if left.strip())


class Room:
    def __init__(self):
        self.files, self.functions, self.classes, self.outside = {}, [], {}, []
        self.comments = self.code = 0

    def add(self, path, text):
        self.files[path] = text.count("\n")
        reader = Reader(text)
        self.functions += [(function.lines, function.name, function.owner) for function in reader.functions]
        for each in reader.types:
            self.classes[each.name] = [self.classes.get(each.name, [0])[0] + each.lines, each.members]
        self.outside += [function for function in reader.functions if function.owner and not any(
            each.first <= function.first < each.first + each.lines for each in reader.types)]
        if path.suffix == ".h":
            comments, code = comment_and_code(text)
            self.comments += comments
            self.code += code


def give_lines_to_classes(rooms):
    """The member functions that stand outside of their class, in its room or in one within it. A class with functions in
    rooms of the operating systems is as many classes as there are systems, each with what they have in common."""
    of_system = collections.defaultdict(collections.Counter)
    for name, room in rooms.items():
        system = pathlib.PurePosixPath(name).name
        for function in room.outside:
            places = [name] + [parent.as_posix() for parent in pathlib.PurePosixPath(name).parents]
            home = next((rooms[place] for place in places if place in rooms and function.owner in rooms[place].classes),
                        None)
            if home is not None and home is not room and system in SYSTEMS:
                of_system[id(home), function.owner][system] += function.lines
            elif home is not None:
                home.classes[function.owner][0] += function.lines
    for room in rooms.values():
        for owner in [each for each in room.classes if (id(room), each) in of_system]:
            lines, members = room.classes.pop(owner)
            for system, more in of_system[id(room), owner].items():
                room.classes[f"{owner} ({system})"] = [lines + more, members]


def rooms_of(root):
    rooms = collections.defaultdict(Room)
    for path in sources(root / "src"):
        rooms[path.parent.relative_to(root).as_posix()].add(path, path.read_text(encoding="utf-8"))
    give_lines_to_classes(rooms)
    return rooms


def lengths(functions):
    lines = sorted(each[0] for each in functions)
    if not lines:
        return "-"
    return f"{statistics.median_low(lines)}/{lines[int(0.9 * (len(lines) - 1))]}/{lines[-1]}"


def duplicates(paths):
    """Blocks of equal lines beyond the first of their kind, and the lines in them."""
    seen, blocks, repeated = {}, 0, 0
    for path in paths:
        lines = [" ".join(line.split()) for line in path.read_text(encoding="utf-8").splitlines()]
        lines = [line for line in lines if re.search(r"\w", line) and not line.startswith(("#", "//", "using ", "namespace "))]
        free = 0  # the first line that no block holds yet
        for index in range(len(lines) - DUPLICATE + 1):
            window = tuple(lines[index:index + DUPLICATE])
            first = seen.setdefault(window, (path, index))
            if first == (path, index) or (first[0] == path and index - first[1] < DUPLICATE):
                continue
            blocks += index >= free
            repeated += index + DUPLICATE - max(free, index)
            free = index + DUPLICATE
    return blocks, repeated


def largest(items):
    name, value = max(items, key=lambda item: item[1], default=("-", 0))
    return name, value


def row(name, room):
    file, file_lines = largest([(path.name, lines) for path, lines in room.files.items()])
    kind, kind_lines = largest([(kind, lines) for kind, (lines, _) in room.classes.items()])
    full, most = largest([(kind, members) for kind, (_, members) in room.classes.items()])
    ratio = f"{room.comments / room.code:.2f}" if room.code else "-"
    return [name, len(room.files), sum(room.files.values()), f"{file} {file_lines}", f"{kind} {kind_lines}",
            f"{full} {most}", len(room.functions), lengths(room.functions), ratio]


def total(rooms):
    whole = Room()
    for room in rooms.values():
        whole.files.update(room.files)
        whole.functions += room.functions
        whole.classes.update(room.classes)
        whole.comments += room.comments
        whole.code += room.code
    return whole


def table(rows):
    widths = [max(len(str(each[column])) for each in rows) for column in range(len(rows[0]))]
    for each in rows:
        print("| " + " | ".join(str(cell).ljust(width) for cell, width in zip(each, widths)) + " |")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--root", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parent.parent)
    parser.add_argument("--longest", type=int, default=0, metavar="N")
    options = parser.parse_args()
    rooms = rooms_of(options.root)
    head = ["Room", "Files", "Lines", "Largest file", "Largest class (lines)", "Fullest class (members)", "Functions",
            "Lines a function: median/90 %/largest", "Comment to code in headers"]
    whole = total(rooms)
    table([head, ["---"] * len(head)] + [row(name, room) for name, room in sorted(rooms.items())] + [row("all", whole)])
    for folder in ("src", "tests"):
        blocks, lines = duplicates(sources(options.root / folder))
        print(f"Duplicates in {folder}: {blocks} blocks, {lines} lines")
    found = list(circles(options.root / "src"))
    print("Circles: " + ("; ".join(found) if found else "none"))
    for lines, name, owner in sorted(whole.functions, reverse=True)[:options.longest]:
        print(f"{lines:5} {name}" + (f" of {owner}" if owner and "::" not in name else ""))
    for name, (lines, members) in sorted(whole.classes.items(), key=lambda item: -item[1][0])[:options.longest]:
        print(f"{lines:5} lines, {members} members: {name}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
