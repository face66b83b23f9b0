#!/usr/bin/env python3
"""Counts the instructions that the program's jobs take: bench/instructions.py KD_COUNT CORPUS [--check FILE] [--write FILE]

Counts do not depend on the machine's mood as times do. The steps run under valgrind over copies of the corpus and of an
empty one, whose counts are subtracted. --write keeps the counts in a file, --check ends with 1 when one is more than
3 % above the file's.
"""
import argparse
import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile

MOST = 1.03
# Figures that are counted by the bytes read too.
BY_BYTES = {"read", "texts"}


def counted(program, corpus, scratch):
    """The instructions of each step by its name, and what the program tells of the corpus."""
    scratch.mkdir()
    out = scratch / "counts"
    # Nothing of the surroundings takes part, or the length of a variable would move the counts; nor do instructions
    # for memory and texts that not every processor has.
    environment = {"PATH": os.environ["PATH"], "LC_ALL": "C.UTF-8", "USERNAME": "bench",
                   "GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX,-AVX2,-BMI2,-ERMS,-FSRM"}
    done = subprocess.run(["valgrind", "--tool=callgrind", f"--callgrind-out-file={out}", "--zero-before=KdCounted",
                           "--dump-after=KdCounted", program, corpus, scratch],
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
                          env=environment)
    if done.returncode != 0:
        sys.exit(f"instructions: the counted program failed\n{done.stderr}")
    lines = [line.rsplit(" ", 1) for line in done.stdout.splitlines()]
    told = {words[0]: int(words[1]) for words in lines if words[0] in ("variables", "bytes") and len(words) == 2}
    steps = [line for line in done.stdout.splitlines() if line.split(" ")[0] not in told]
    return {step: instructions_of(f"{out}.{number}") for number, step in enumerate(steps, 1)}, told


def instructions_of(path):
    return int(re.search(r"^(?:summary|totals): (\d+)", pathlib.Path(path).read_text(), re.MULTILINE)[1])


def net_counts(program, corpus):
    """The counts of the corpus less those of an empty one; both stand in a place whose name is always as long."""
    place = pathlib.Path(tempfile.mkdtemp(prefix="kd-count-", dir="/tmp"))
    try:
        shutil.copytree(corpus, place / "corpus")
        (place / "nothing").mkdir()
        counts, told = counted(program, place / "corpus", place / "full")
        empty, _ = counted(program, place / "nothing", place / "void")
        return {step: count - empty.get(step, 0) for step, count in counts.items()}, told
    finally:
        shutil.rmtree(place)


def table(counts, told):
    lines = [f"{told['variables']} variables, {told['bytes']} bytes", "",
             "| Instructions       |          all | a variable | a byte |", "|--------------------|-------------:|-----------:|-------:|"]
    for step, count in counts.items():
        a_byte = f"{count / told['bytes']:.1f}" if step in BY_BYTES else ""
        lines.append(f"| {step:18} | {count:12} | {count / told['variables']:10.0f} | {a_byte:>6} |")
    return "\n".join(lines)


def kept(path):
    """The counts of a file that --write has made."""
    rows = re.findall(r"^\| (\w[\w ]*?) +\| +(\d+) \|", pathlib.Path(path).read_text(encoding="utf-8"), re.MULTILINE)
    return {step: int(count) for step, count in rows}


def more_than_kept(counts, path):
    """A line for each figure that has risen too much, or that one of the two does not know."""
    before = kept(path)
    for step in sorted(set(before) ^ set(counts)):
        yield f"{step}: counted in one of the two only"
    for step in (step for step in counts if step in before):
        change = counts[step] / before[step]
        if change > MOST:
            yield f"{step}: {counts[step]} instructions, {(change - 1) * 100:.1f} % more than {before[step]}"


def main():
    arguments = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    arguments.add_argument("program")
    arguments.add_argument("corpus")
    arguments.add_argument("--check", metavar="FILE")
    arguments.add_argument("--write", metavar="FILE")
    given = arguments.parse_args()
    counts, told = net_counts(pathlib.Path(given.program).resolve(), given.corpus)
    print(table(counts, told))
    if given.write:
        pathlib.Path(given.write).write_text(table(counts, told) + "\n", encoding="utf-8")
    faults = list(more_than_kept(counts, given.check)) if given.check else []
    print("\n".join(f"instructions: {fault}" for fault in faults), end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
