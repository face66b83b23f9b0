#!/usr/bin/python3
"""Looks at the running program as a screen reader does, over AT-SPI: scripts/trials/accessibility.py PROGRAM [VARIABLES]

Starts PROGRAM (whose settings list applications of VARIABLES variables in all), confirms Manage Applications through the
accessibility interface, and checks names and roles of the dialog and the grid: a table of so many rows whose cells
answer one by one. Needs a display and a session bus. The exit code is 0 only if all holds.
"""
import os
import subprocess
import sys
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402

failures = 0


def check(what, truth, found=""):
    global failures
    print(("ok      " if truth else "FAILED  ") + what + (f": {found}" if found != "" else ""))
    failures += not truth


def wait_for(what, find, seconds=60):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        try:
            if (found := find()) is not None:
                return found
        except gi.repository.GLib.Error:
            pass  # the program is busy or the object has gone; asked again
        time.sleep(0.1)
    sys.exit(f"FAILED  no {what} within {seconds} seconds")


def children(node):
    return [child for i in range(node.get_child_count()) if (child := node.get_child_at_index(i)) is not None]


def all_below(node, depth=8):
    for child in children(node):
        yield child
        if depth > 0 and child.get_role() not in (Atspi.Role.TABLE, Atspi.Role.LIST):
            yield from all_below(child, depth - 1)


def application(pid):
    desktop = Atspi.get_desktop(0)
    return next((a for a in children(desktop) if a.get_process_id() == pid), None)


def window(app, title):
    return next((w for w in children(app) if w.get_name().startswith(title)), None)


def check_named(top, what):
    """Everything that can be operated has a name and a role."""
    operated = {Atspi.Role.PUSH_BUTTON, Atspi.Role.CHECK_BOX, Atspi.Role.RADIO_BUTTON, Atspi.Role.TEXT, Atspi.Role.LIST,
                Atspi.Role.TABLE, Atspi.Role.COMBO_BOX, Atspi.Role.MENU_ITEM, Atspi.Role.MENU_BAR}
    found = [n for n in all_below(top) if n.get_role() in operated and n.get_role() != Atspi.Role.MENU_BAR]
    unnamed = [n.get_role_name() for n in found if not n.get_name()]
    if "--list" in sys.argv:
        for n in found:
            print("       ", n.get_role_name(), repr(n.get_name()), "in", n.get_parent().get_role_name())
    check(f"{what}: {len(found)} controls, each with a name", bool(found) and not unnamed, ", ".join(unnamed))


def main():
    variables = int(sys.argv[2]) if len(sys.argv) > 2 else None
    environment = dict(os.environ, QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
    program = subprocess.Popen([sys.argv[1]], env=environment)
    try:
        app = wait_for("application on the accessibility bus", lambda: application(program.pid))
        dialog = wait_for("Manage Applications", lambda: window(app, "KD LimitDesk - Manage Applications"))
        check("Manage Applications has the role of a dialog", dialog.get_role() == Atspi.Role.DIALOG, dialog.get_role_name())
        check_named(dialog, "Manage Applications")
        ok = next(n for n in all_below(dialog) if n.get_role() == Atspi.Role.PUSH_BUTTON and n.get_name().upper() == "OK")
        ok.get_action_iface().do_action(0)

        main_window = wait_for("main window", lambda: window(app, "KD LimitDesk (v"))
        wait_for("end of the load", lambda: next(
            (n for n in all_below(main_window) if n.get_name().startswith("Done ...")), None))
        check("the main window has a menu bar",
              any(n.get_role() == Atspi.Role.MENU_BAR for n in all_below(main_window)))
        grids = [n for n in all_below(main_window) if n.get_role() == Atspi.Role.TABLE]
        check("there is one table", len(grids) == 1, len(grids))
        grid = grids[0]
        check("the grid has a name", bool(grid.get_name()), grid.get_name())
        table = grid.get_table_iface()
        rows, columns = table.get_n_rows(), table.get_n_columns()
        check("rows of the table", rows > 0 and variables in (None, rows), rows)
        check("columns of the table", columns > 0, columns)
        headers = [table.get_column_description(c) for c in range(columns)]
        check("the columns are described", any(h == "Variable Name" for h in headers), ", ".join(h for h in headers if h))
        name_column = headers.index("Variable Name")
        begin = time.monotonic()
        steps = max(1, rows // 200)
        names = [table.get_accessible_at(row, name_column).get_name() for row in range(0, rows, steps)]
        seconds = time.monotonic() - begin
        check(f"{len(names)} cells over all rows answer with their text", all(names), names[-1])
        check("a cell answers within 20 ms on average", seconds / len(names) < 0.02, f"{1000 * seconds / len(names):.1f} ms")
        cell = table.get_accessible_at(0, name_column)
        check("a cell has the role of a table cell", cell.get_role() == Atspi.Role.TABLE_CELL, cell.get_role_name())
        check("a cell knows its place",
              table.get_row_at_index(table.get_index_at(rows - 1, name_column)) == rows - 1)
    finally:
        program.kill()
        program.wait()
    print("accessibility:", "all holds" if failures == 0 else f"{failures} failed")
    return failures != 0


if __name__ == "__main__":
    sys.exit(main())
