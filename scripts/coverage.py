#!/usr/bin/env python3
"""Which share of the lines and branches of src the tests run, those of the core and of the widgets together.

Goes by what the tests of the preset `coverage` have left behind; `make coverage` builds and runs them. Branches that the
compiler makes for exceptions are left out. With names of files behind it, tells the lines and branches in them that no
test runs.
"""
import collections
import json
import os
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
BUILD = ROOT / "build" / "coverage"


def gcovr(output):
    return subprocess.run(["gcovr", "--root", str(ROOT), "--filter", str(ROOT / "src") + "/", "--exclude-throw-branches",
                           "--exclude-unreachable-branches", "--gcov-ignore-parse-errors", "-j",
                           os.environ.get("JOBS", "2"), output, "-", str(BUILD)],
                          check=True, stdout=subprocess.PIPE, stdin=subprocess.DEVNULL).stdout


def folder_of(name):
    parts = pathlib.PurePath(name).parts
    return parts[1] if len(parts) > 2 else "."


def show_folders(report):
    sums = collections.defaultdict(lambda: [0, 0, 0, 0])
    for each in report["files"]:
        lines = [line for line in each["lines"] if not line.get("gcovr/noncode")]
        branches = [branch for line in lines for branch in line["branches"]]
        counts = (sum(line["count"] > 0 for line in lines), len(lines),
                  sum(branch["count"] > 0 for branch in branches), len(branches))
        own = folder_of(each["file"])
        for folder in (own, "all") if own in ("qt", ".") else (own, "core", "all"):
            sums[folder] = [a + b for a, b in zip(sums[folder], counts)]
    print("| Folder | Lines | Branches |\n|---|---|---|")
    for folder in sorted(sums, key=lambda name: (name in ("all", "core"), name)):
        done, lines, taken, branches = sums[folder]
        print(f"| {folder} | {share(done, lines)} | {share(taken, branches)} |")


def share(done, whole):
    return f"{100.0 * done / whole:.1f} % of {whole}" if whole else "none"


def show_missed(report, names):
    for each in report["files"]:
        if not any(name in each["file"] for name in names):
            continue
        for line in each["lines"]:
            missed = sum(branch["count"] == 0 for branch in line["branches"])
            if not line.get("gcovr/noncode") and (line["count"] == 0 or missed):
                print(f"{each['file']}:{line['line_number']}: "
                      + (f"{missed} of {len(line['branches'])} branches" if line["count"] else "never run"))


def main():
    report = json.loads(gcovr("--json"))
    if len(sys.argv) > 1:
        show_missed(report, sys.argv[1:])
    else:
        show_folders(report)
    return 0


if __name__ == "__main__":
    sys.exit(main())
