#!/usr/bin/env python3
"""Makes the benchmark's applications from a seed: bench/make_corpus.py DIR [--scale 1/8] [--seed N]

At scale 1 it is the system's limit: 300 applications with five views each, 18 variables a file, which are 1,800 files
with 32,400 variables in some 24 MB. The same seed gives the same bytes with every version of Python.
"""
import argparse
import fractions
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "scripts" / "make"))
import samples

APPLICATIONS = 300
VIEWS = 5
VARIABLES = 18
FOLDERS = 12

# How the eighteen variables of a file are shared out among the types.
TYPES = "TTPLNNNNNNNNAARRCC"
SUBJECTS = ["Kiln feed", "Raw meal", "Reactor", "Separator", "Stripper", "Column 3", "Wash water", "Product", "Recycle",
            "Intake", "Silo 2", "Line B", "Dryer", "Furnace", "Coating", "Filler", "Cooler", "Blend tank"]
QUANTITIES = [("temperature", "°C", 6, 1), ("pressure", "bar", 6, 2), ("flow", "m³/h", 7, 2), ("pH", "", 5, 2),
              ("density", "kg/m³", 7, 1), ("conductivity", "µS/cm", 7, 1), ("moisture", "%", 6, 3),
              ("particle size", "µm", 6, 1), ("viscosity", "mm²/s", 7, 3), ("sulphur", "mg/kg", 6, 1),
              ("level", "%", 5, 1), ("count", "1/100 ml", 5, 0), ("mass", "g", 8, 3), ("voltage", "V", 6, 1)]
CATEGORIES = ["Identification", "Process conditions, hourly readings of the shift", "Laboratory, composite sample of the day",
              "Release of the batch", "Environmental monitoring and effluent", "Reference instruments, weekly check"]
CHOICES = ["Released", "On hold, waiting for the laboratory", "Rejected", "Reworked", "Sampled twice", "Not sampled",
           "Instrument out of order", "See shift log", "Line stopped", "Change of product"]


class Random:
    """A generator of its own, so that a seed means the same everywhere."""

    def __init__(self, seed):
        self.state = seed & 0xFFFFFFFFFFFFFFFF

    def below(self, limit):
        self.state = (self.state * 6364136223846793005 + 1442695040888963407) & 0xFFFFFFFFFFFFFFFF
        return (self.state >> 33) % limit

    def of(self, values):
        return values[self.below(len(values))]


def number(units, decimals):
    """`units` of the last place as text."""
    sign, digits = ("-" if units < 0 else ""), f"{abs(units):0{decimals + 1}d}"
    return sign + (f"{digits[:-decimals]}.{digits[-decimals:]}" if decimals else digits)


def limits(random, length, decimals):
    """Seven limits that do not rise, most of them fixed, with one decimal more than the variable."""
    room = 10 ** (length - 1 if decimals else length) // 4
    spread = max(8, random.below(max(9, room // 2)))
    centre = room + random.below(max(1, room))
    texts = {}
    for position, name in enumerate(["usl", "ucl", "uwl", "tgt", "lwl", "lcl", "lsl"]):
        kind = random.below(10)
        units = (centre + spread * (3 - position) // 4) * 10 + random.below(2) * 5 * (position == 3)
        texts[name] = "B" if kind == 0 else "C" if kind == 1 else number(units, decimals + 1)
    return texts


def variable(random, template, title, view, view_name, position, kind):
    # No two variables of the corpus bear the same name, so that the column of names has a value a row.
    tag = f"{template[11:14]}-{view}{position:02d}"
    subject = random.of(SUBJECTS)
    row = {
        "file": template, "title": title, "view_no": str(view), "view": view_name, "type": kind, "length": "12",
        "decimals": "0", "max": "", "min": "", "units": "", "category": random.of(CATEGORIES), "sample": "0",
        "popup": "", "calc": "", "rules": "", "extra": "",
    }
    if kind in samples.NUMERIC_TYPES:
        quantity, units, length, decimals = random.of(QUANTITIES)
        row.update(limits(random, length, decimals))
        first = 1 + random.below(8)
        row.update({
            "variable": f"{subject} {quantity} {tag}", "units": units, "length": str(length),
            "decimals": str(decimals), "sample": str(random.below(6)),
            "rules": "".join("ABCDEFGH"[n] for n in range(8) if n < first and random.below(2) == 0),
            "calc": f"({{{subject} {quantity}}} * {1 + random.below(90)} + {{{random.of(SUBJECTS)} density}}) / 100",
        })
        if random.below(4) == 0:
            # Left to be derived at the load.
            row.update({"max": "0", "min": "0"})
        if random.below(2) == 0:
            row["extra"] += f"HELPFILE=HELP\\{subject.upper().replace(' ', '_')}_{1000 + random.below(9000)}.HTM;"
        if random.below(3) == 0:
            row["extra"] += f"INPUT=..\\LINK\\{quantity.upper().replace(' ', '_')}_{position:02d}.TXT;"
        if kind in "AR":
            row["extra"] += f"{'#AVG' if kind == 'A' else 'RANGE'}={2 + random.below(6)};"
            row["extra"] += "RELATION=" + ",".join(f"{random.below(18) if n < 4 else 0:03d}" for n in range(12))
    else:
        row["variable"] = f"{subject} {random.of(['batch', 'status', 'operator', 'remark'])} {tag}"
        row["extra"] = "REQUIRED=Y;UCASE=Y" if random.below(3) == 0 else ""
        if kind == "P":
            first = random.below(4)
            row["popup"] = "|".join(CHOICES[first:first + 4 + random.below(3)])
        elif kind == "L":
            row["popup"] = f"{subject} list"
            row["extra"] = f"LOOKUP={1 + random.below(5)};KEYID={1 + random.below(3)}"
    return row


def lines_of(random, application, view, template, rules):
    title = f"{SUBJECTS[application % len(SUBJECTS)]} {application:03d}"
    names = [""] + [f"{title}, view {number}" for number in range(1, VIEWS + 1)]
    header = samples.head(names[view] or title, number(6000 + random.below(3000), 3).rstrip("0"))
    if view == 0:
        header += ["[VIEWS]"] + [samples.key_line("VIEW", f"{n},{names[n]}") for n in range(1, VIEWS + 1)] + [""]
    shift = application % len(rules)
    header += samples.rules_section(rules[shift:] + rules[:shift])
    rows = [variable(random, template, title, view, names[view], position + 1, kind)
            for position, kind in enumerate(TYPES)]
    return samples.schema_file(header, rows)


def main():
    parser = argparse.ArgumentParser(description="Makes the benchmark's applications from a seed.")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--scale", type=fractions.Fraction, default=fractions.Fraction(1), help="1/8 to 1")
    parser.add_argument("--seed", type=int, default=20260304)
    arguments = parser.parse_args()
    count = round(APPLICATIONS * arguments.scale)
    if not 1 <= count <= APPLICATIONS:
        parser.error("a scale above 0 and up to 1")

    rules = samples.read_rules()
    files = size = 0
    for application in range(1, count + 1):
        random = Random(arguments.seed * 1000 + application)
        folder = arguments.folder / f"plant{application % FOLDERS + 1:02d}"
        folder.mkdir(parents=True, exist_ok=True)
        template = f"application{application:03d}.{'kdt6' if application % 2 else 'kdt'}"
        for view in range(VIEWS + 1):
            name = template if view == 0 else samples.view_file_name(template, view)
            content = samples.as_bytes(lines_of(random, application, view, template, rules))
            (folder / name).write_bytes(content)
            files += 1
            size += len(content)
    print(f"{files} files, {files * VARIABLES} variables, {size / 1e6:.1f} MB")
    return 0


if __name__ == "__main__":
    sys.exit(main())
