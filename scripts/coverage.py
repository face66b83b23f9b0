#!/usr/bin/env python3
"""Which share of the lines and branches of src the tests run, those of the core and of the widgets together.

Goes by what the tests of the preset `coverage` have left behind; `make coverage` builds and runs them. A branch is one
outcome of a condition that stands in the sources: of each operand of && and ||, each loop, each case. So the branches
that a compiler makes for exceptions, destructors, first calls and defaulted comparisons are none, and what it runs
itself while it compiles is left out; a constexpr function that no test runs counts as the compiler's. A condition that
is a macro alone is not counted. What a call throws past counts as run to the end of its block, and a condition that
throws as one that did not hold. The lines of main(), which no test links, are not counted. With names of files behind
it, tells the lines and outcomes in them that no test runs.
"""
import collections
import json
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "coverage"
PROFILES = BUILD / "profiles"


def run(*command):
    """What the command prints; what it complains of is shown where it fails."""
    done = subprocess.run(command, capture_output=True, stdin=subprocess.DEVNULL, text=True)
    if done.returncode != 0:
        sys.exit(f"{done.stderr}coverage: {command[0]} failed")
    return done.stdout


def programs():
    """The test programs; the first is the argument without a name that llvm-cov asks for."""
    found = sorted(str(each) for each in (BUILD / "tests").rglob("test_*") if each.is_file() and not each.suffix)
    return [found[0]] + [part for each in found[1:] for part in ("-object", each)]


def export(form):
    return run("llvm-cov-14", "export", f"-format={form}", f"-instr-profile={BUILD / 'tests.profdata'}", *programs())


def source_of(name):
    """The path within the project of a file of src; nothing for any other."""
    path = pathlib.Path(name).resolve()
    return str(path.relative_to(ROOT)) if path.is_relative_to(ROOT / "src") else None


def read():
    """By file of src: by line, how often it ran; and by the place of a condition, how often it held and how often not,
    in all instances of a template."""
    lines, branches = {}, {}
    name = None
    for line in export("lcov").splitlines():
        if line.startswith("SF:"):
            name = source_of(line[3:])
        elif line.startswith("DA:") and name:
            number, count = map(int, line[3:].split(",")[:2])
            ran = lines.setdefault(name, {})
            ran[number] = ran.get(number, 0) + count
    report = json.loads(export("text"))["data"][0]
    for each in report["files"]:
        name = source_of(each["filename"])
        if name:
            text = text_of(name)
            for line, column, last_line, last_column, held, failed, *_ in each["branches"]:
                if is_own(text, line, column, last_line, last_column):
                    place = (line, column, last_line, last_column)
                    sums = branches.setdefault(name, {}).setdefault(place, [0, 0])
                    sums[0] += held
                    sums[1] += failed
    leave_out_what_the_compiler_runs(report["functions"], lines, branches)
    return lines, branches


def text_of(name):
    return (ROOT / name).read_text(encoding="utf-8").splitlines()


def is_own(text, line, column, last_line, last_column):
    """Whether the condition there decides anything when the program runs."""
    before = text[line - 1][:column - 1]
    is_constant = line == last_line and text[line - 1][column - 1:last_column - 1] == "true"
    # A switch branches at its cases.
    return not (is_constant or before.endswith("switch (") or "if constexpr" in before or
                "= default;" in text[line - 1])


def leave_out_what_the_compiler_runs(functions, lines, branches):
    ran = collections.Counter()
    places = collections.defaultdict(set)
    for each in functions:
        name = source_of(each["filenames"][0])
        if name:
            first, column, last, *_ = each["regions"][0]
            ran[name, first, column] += each["count"]
            places[name].add((first, column, last))
    for name, spans in places.items():
        text = text_of(name)
        for first, column, last in spans:
            before = text[max(first - 4, 0):first - 1] + [text[first - 1][:column - 1]]
            head = " ".join(before).replace("}", ";").rsplit(";", 1)[-1]
            if not ran[name, first, column] and "constexpr" in head:
                for line in range(first, last + 1):
                    lines.get(name, {}).pop(line, None)
                for place in [place for place in branches.get(name, {}) if first <= place[0] <= last]:
                    del branches[name][place]


def folder_of(name):
    parts = pathlib.PurePath(name).parts
    return parts[1] if len(parts) > 2 else "."


def show_folders(lines, branches):
    sums = collections.defaultdict(lambda: [0, 0, 0, 0])
    for name, counts in lines.items():
        outcomes = [count for pair in branches.get(name, {}).values() for count in pair]
        counts = (sum(count > 0 for count in counts.values()), len(counts),
                  sum(count > 0 for count in outcomes), len(outcomes))
        own = folder_of(name)
        for folder in (own, "all") if own in ("qt", ".") else (own, "core", "all"):
            sums[folder] = [a + b for a, b in zip(sums[folder], counts)]
    print("| Folder | Lines | Branches |\n|---|---|---|")
    for folder in sorted(sums, key=lambda name: (name in ("all", "core"), name)):
        done, whole, taken, outcomes = sums[folder]
        print(f"| {folder} | {share(done, whole)} | {share(taken, outcomes)} |")


def share(done, whole):
    return f"{100.0 * done / whole:.1f} % of {whole}" if whole else "none"


def show_missed(lines, branches, names):
    for name in sorted(each for each in lines if any(part in each for part in names)):
        missed = [(line, 0, "never run") for line, count in lines[name].items() if not count]
        for (line, column, *_), (held, failed) in branches.get(name, {}).items():
            if lines[name].get(line) and not (held and failed):
                missed.append((line, column, "never reached" if not held and not failed else
                               "never false" if held else "never true"))
        for line, column, what in sorted(missed):
            print(f"{name}:{line}:" + (f"{column}:" if column else "") + f" {what}")


def main():
    # Functions that never ran are kept: a program that does not call an inline one has but a stand-in of it.
    run("llvm-profdata-14", "merge", "-o", str(BUILD / "tests.profdata"),
        *(str(each) for each in sorted(PROFILES.glob("*.profraw"))))
    lines, branches = read()
    if len(sys.argv) > 1:
        show_missed(lines, branches, sys.argv[1:])
    else:
        show_folders(lines, branches)
    return 0


if __name__ == "__main__":
    sys.exit(main())
