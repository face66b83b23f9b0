#!/usr/bin/python3
"""Cells to and from LibreOffice Calc over the clipboard: scripts/trials/spreadsheet.py TRIAL [--capture FOLDER]

TRIAL is the built program clipboard_trial. Needs LibreOffice Calc with its Python bridge, xclip and a display (see
scripts/trials/spreadsheet.sh). Calc's copy must arrive here as the cells it shows, and a copy made here must be pasted
into Calc as the same cells. --capture keeps what Calc offers as files, for the tests.
"""
import pathlib
import subprocess
import sys
import tempfile
import time

import uno
from com.sun.star.beans import PropertyValue

PORT = 2091
# What is typed into Calc, row by row: numbers with and without their zeros, text, blanks, an empty cell, a line break.
TYPED = [
    ["845.00", "-0.5", "C", "F12.50"],
    ["Größe µm", "", "1E-05", "<b>&amp;</b>"],
    ["two\nlines", "a  b", "'007", "12345678.9"],
    ["Über", "=1/4", "=\"\"", "last"],
]
FORMATS = {(0, 0): "0.00", (0, 1): "0.0", (2, 3): "#,##0.00"}
# What Calc shows of it, and what therefore arrives.
ARRIVES = [
    ["845.00", "-0.5", "C", "F12.50"],
    ["Größe µm", "", "0.00001", "<b>&amp;</b>"],
    ["two lines", "a b", "007", "12,345,678.90"],
    ["Über", "0.25", "", "last"],
]
# A block with a cell over two rows and one over two columns, and the cells that it stands for.
MERGED = [["tall", "1", "2"], ["", "3", "4"], ["5", "wide", ""]]
# What is copied here; the texts that Calc keeps as they stand, and numbers that it reads as such.
COPIED = "845\tC\tGröße\r\n-0.5\t\tF12.5\r\n<b>\t1.25\tlast"
PASTED = [["845", "C", "Größe"], ["-0.5", "", "F12.5"], ["<b>", "1.25", "last"]]

failures = 0


def check(what, found, expected):
    global failures
    if found == expected:
        print("ok     ", what)
    else:
        failures += 1
        print("FAILED ", what, "\n  found   ", found, "\n  expected", expected)


def connect():
    resolver = uno.getComponentContext().ServiceManager.createInstance("com.sun.star.bridge.UnoUrlResolver")
    end = time.monotonic() + 120
    while True:
        try:
            return resolver.resolve(f"uno:socket,host=127.0.0.1,port={PORT};urp;StarOffice.ComponentContext")
        except Exception:  # not up yet; every failure of the bridge looks alike
            if time.monotonic() > end:
                sys.exit("FAILED  no answer from LibreOffice")
            time.sleep(0.3)


def option(name, value):
    property = PropertyValue()
    property.Name, property.Value = name, value
    return property


class Calc:
    def __init__(self):
        context = connect()
        manager = context.ServiceManager
        desktop = manager.createInstanceWithContext("com.sun.star.frame.Desktop", context)
        self.dispatcher = manager.createInstanceWithContext("com.sun.star.frame.DispatchHelper", context)
        self.document = desktop.loadComponentFromURL("private:factory/scalc", "_blank", 0, ())
        self.frame = self.document.CurrentController.Frame
        self.sheet = self.document.Sheets.getByIndex(0)
        self.locale = uno.createUnoStruct("com.sun.star.lang.Locale")
        self.locale.Language, self.locale.Country = "en", "US"

    def type_in(self, rows, formats, top=0):
        for r, row in enumerate(rows, top):
            for c, text in enumerate(row):
                cell = self.sheet.getCellByPosition(c, r)
                if "\n" in text:
                    cell.setString(text)
                else:
                    cell.setFormula(text)
                if (r, c) in formats:
                    keys = self.document.NumberFormats
                    key = keys.queryKey(formats[r, c], self.locale, False)
                    cell.NumberFormat = key if key >= 0 else keys.addNew(formats[r, c], self.locale)

    def select(self, left, top, right, bottom):
        self.document.CurrentController.select(self.sheet.getCellRangeByPosition(left, top, right, bottom))

    def copy(self, left, top, right, bottom):
        self.select(left, top, right, bottom)
        self.command("Copy")
        time.sleep(1)  # the offer travels by the display's own messages, of which no one tells

    def command(self, name, *options):
        self.dispatcher.executeDispatch(self.frame, ".uno:" + name, "", 0, options)

    def texts(self, left, top, right, bottom):
        return [[self.sheet.getCellByPosition(c, r).String for c in range(left, right + 1)]
                for r in range(top, bottom + 1)]


def offered(target):
    return subprocess.run(["xclip", "-selection", "clipboard", "-t", target, "-o"], capture_output=True, timeout=30,
                          check=True).stdout


def capture(name):
    if "--capture" in sys.argv:
        folder = pathlib.Path(sys.argv[sys.argv.index("--capture") + 1])
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"calc-{name}.html").write_bytes(offered("text/html"))
        (folder / f"calc-{name}.txt").write_bytes(offered("text/plain;charset=utf-8"))


def arrived(trial):
    got = subprocess.run([trial, "get"], capture_output=True, timeout=60, check=True).stdout.decode()
    return [line.split("\t") for line in got.split("\r")]


def main():
    trial = sys.argv[1]
    calc = Calc()
    calc.type_in(TYPED, FORMATS)
    calc.copy(0, 0, 3, 3)
    capture("block")
    check("a block from Calc arrives as the cells it shows", arrived(trial), ARRIVES)

    calc.type_in(MERGED, {}, 30)
    calc.sheet.getCellRangeByPosition(0, 30, 0, 31).merge(True)
    calc.sheet.getCellRangeByPosition(1, 32, 2, 32).merge(True)
    calc.copy(0, 30, 2, 32)
    capture("merged")
    check("cells over several rows and columns leave the further places empty", arrived(trial), MERGED)

    with tempfile.NamedTemporaryFile() as file:
        file.write(COPIED.encode())
        file.flush()
        owner = subprocess.Popen([trial, "put", file.name], stdout=subprocess.PIPE)
        owner.stdout.readline()
        calc.select(0, 10, 0, 10)
        # Calc asks how it shall read the table, and the paste waits for the answer.
        answer = subprocess.Popen(["sh", "-c", "until xdotool search --onlyvisible --name 'Import Options'; do sleep 0.2; "
                                   "done; sleep 0.5; xdotool key Return"], stdout=subprocess.DEVNULL,
                                  stderr=subprocess.DEVNULL)
        calc.command("Paste")
        answer.kill()
        end = time.monotonic() + 20
        while calc.texts(2, 12, 2, 12) != [["last"]] and time.monotonic() < end:
            time.sleep(0.2)
        check("a block copied here is pasted into Calc as the same cells", calc.texts(0, 10, 2, 12), PASTED)
        check("beside and below it nothing", calc.texts(3, 10, 3, 13) + calc.texts(0, 13, 2, 13), [[""]] * 4 + [["", "", ""]])
        owner.kill()
        owner.wait()
    calc.document.close(False)
    print("spreadsheet:", "all holds" if failures == 0 else f"{failures} failed")
    return failures != 0


if __name__ == "__main__":
    sys.exit(main())
