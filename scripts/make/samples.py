#!/usr/bin/env python3
"""Makes the sample applications from the tables in samples/tables.

    scripts/make/samples.py           writes the applications into samples/
    scripts/make/samples.py --check   compares samples/ with what it would write; ends with 1 at a difference
    scripts/make/samples.py --out DIR writes them into another folder

Each file has the form that a save gives it, down to the blanks, so that loading and saving a sample changes only
its revision. Bounds that a table leaves empty are written as a load would derive them, for the same reason.
"""
import argparse
import csv
import pathlib
import re
import sys
from decimal import ROUND_HALF_UP, Decimal

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
SAMPLES = ROOT / "samples"
TABLES = SAMPLES / "tables"
CODE_PAGE = "cp1252"
NO_RELATION = ",".join(["000"] * 12)
LIMITS = ["USL", "UCL", "UWL", "TGT", "LWL", "LCL", "LSL"]
NUMERIC_TYPES = "NARC"

# What a variable holds where its table says nothing; any other property is empty.
DEFAULTS = {
    "RAWFIELD": "0", "PIVOTFIELD": "0", "STATISTIC": "0", "REQUIRED": "N", "UCASE": "N",
    "REPORTTYPE": "V", "LIMITMETHOD": "0", "TARGETMETHOD": "0", "#AVG": "0",
    "RANGE": "0", "COMPDATA": "0", "KEYID": "0", "LOOKUP": "0", "RELATION": NO_RELATION,
}

ROW = re.compile(r'^    \{\w+, +"[^"]*",[^"]*"([^"]*)", +"([^"]*)"(?:, "([^"]*)")?\},$', re.MULTILINE)


def read_properties():
    """Key, types that write it, and types that write it one line later, of each row of the table of properties."""
    table = (ROOT / "src" / "model" / "PropertyTable.h").read_text(encoding="utf-8")
    rows = ROW.findall(table[table.index("PropertyTable ="):])
    if len(rows) < len(LIMITS):
        raise ValueError("the table of properties cannot be read: is its layout another?")
    return rows


PROPERTIES = read_properties()


def keys_of(variable_type, is_view):
    """Keys of a block in the order of its lines."""
    wanted = {"*", variable_type} | ({"V"} if is_view else set())
    keys, late = [], None
    for key, types, types_later in PROPERTIES:
        if wanted & set(types):
            keys.append(key)
        if late:
            keys.append(late)
        late = key if variable_type in types_later else None
    return keys


def key_line(key, value):
    return f"   {key:<13}"[:16] + f"= {value}"


def in_mask(number, width, places):
    """A number as a mask of `width` characters shows it: no digit before the point below 1, zeros behind it."""
    rounded = number.quantize(Decimal(1).scaleb(-places), ROUND_HALF_UP)
    text = f"{rounded:f}"
    if rounded != 0 and abs(rounded) < 1:
        text = text.replace("0.", ".", 1)
    if rounded != number or len(text) > width:
        raise ValueError(f"{number} does not fit {width} characters with {places} decimals")
    return text


def limit_text(text, length, decimals):
    if text in ("C", "B"):
        return text
    width = length + 2 if decimals == 0 else length + 1
    return "F" + in_mask(Decimal(text), width, decimals + 1)


def bounds(row, length, decimals):
    """Largest and smallest value; what the width allows where the table gives neither."""
    if row["max"] or row["min"]:
        return Decimal(row["max"] or "0"), Decimal(row["min"] or "0")
    mask = list("9" * length)
    if decimals > 0:
        mask[length - decimals - 1] = "."
    largest = Decimal("".join(mask))
    if mask[0] == "9":
        mask[0] = "-"
        text = "".join(mask)
        return largest, Decimal(0) if text == "-" else Decimal(text)
    return largest, Decimal(0)


def values_of(row):
    """All keys of a variable with their texts."""
    length, decimals = int(row["length"]), int(row["decimals"])
    values = dict(DEFAULTS)
    values.update(entry.split("=", 1) for entry in row["extra"].split(";") if entry)
    values.update({
        "NAME": row["variable"], "TYPE": row["type"], "LENGTH": str(length), "DECIMALS": str(decimals),
        "SAMPLE": row["sample"] or "0", "RULES": row["rules"], "CALC": row["calc"], "POPUP": row["popup"],
        "UNITS": row["units"], "CATEGORY": row["category"],
    })
    if row["type"] in NUMERIC_TYPES:
        largest, smallest = bounds(row, length, decimals)
        values["MAX"] = in_mask(largest, length, decimals)
        values["MIN"] = in_mask(smallest, length, decimals)
        for limit in LIMITS:
            values[limit] = limit_text(row[limit.lower()], length, decimals)
    return values


def block(row):
    values = values_of(row)
    keys = keys_of(row["type"], int(row["view_no"]) >= 1)
    return ["[FIELD]"] + [key_line(key, values.get(key, "")) for key in keys]


def rules_section(rules):
    return ["[RULES]"] + [key_line("RULE", rule) for rule in rules] + [""]


def head(title, revision):
    return ["[APPLICATION]", key_line("TITLE", title), key_line("VERSION", revision), ""]


def schema_file(header, rows):
    lines = list(header)
    for index, row in enumerate(rows):
        if index > 0:
            lines.append("")
        lines += block(row)
    return lines


def as_bytes(lines):
    return "".join(line + "\r\n" for line in lines).encode(CODE_PAGE)


def generation(template):
    return 6 if template.endswith("6") else 5


def view_file_name(template, number):
    base = template[: template.rindex(".")]
    return f"{base}{'.KDV6' if generation(template) == 6 else ''}.V{number}"


def read_rules():
    with open(TABLES / "rules.tsv", encoding="utf-8", newline="") as table:
        return [row["name"] for row in csv.DictReader(table, delimiter="\t")]


def read_applications():
    """Rows by template and view number, both in the order of the tables."""
    applications = {}
    for path in sorted(TABLES.glob("*.csv")):
        with open(path, encoding="utf-8", newline="") as table:
            for row in csv.DictReader(table):
                views = applications.setdefault(row["file"], {})
                views.setdefault(int(row["view_no"]), []).append(row)
    return applications


def make_files():
    """File name -> bytes of everything the tables give."""
    rules = read_rules()
    files = {"Rules.ini": as_bytes(rules_section(rules)[:-1])}
    for template, views in read_applications().items():
        revision = f"{generation(template)}."
        title = views[0][0]["title"]
        listed = sorted(number for number in views if number > 0)
        header = head(title, revision)
        if listed:
            header += ["[VIEWS]"]
            header += [key_line("VIEW", f"{number},{views[number][0]['view']}") for number in listed] + [""]
        files[template] = as_bytes(schema_file(header + rules_section(rules), views[0]))
        for number in listed:
            header = head(views[number][0]["view"], revision) + rules_section(rules)
            files[view_file_name(template, number)] = as_bytes(schema_file(header, views[number]))
    return files


def check(files, folder):
    present = {path.name for path in folder.iterdir() if path.is_file()} - {"README.md"}
    wrong = sorted(present ^ set(files))
    wrong += sorted(name for name in present & set(files) if (folder / name).read_bytes() != files[name])
    for name in wrong:
        print(f"{name} is not what the tables give", file=sys.stderr)
    return 1 if wrong else 0


def main():
    parser = argparse.ArgumentParser(description="Makes the sample applications from samples/tables.")
    parser.add_argument("--check", action="store_true", help="compare only; ends with 1 at a difference")
    parser.add_argument("--out", type=pathlib.Path, default=SAMPLES, help="folder of the samples")
    arguments = parser.parse_args()
    files = make_files()
    if arguments.check:
        return check(files, arguments.out)
    arguments.out.mkdir(parents=True, exist_ok=True)
    for name, content in files.items():
        (arguments.out / name).write_bytes(content)
    print(f"{len(files)} files written to {arguments.out}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
