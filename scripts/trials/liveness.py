#!/usr/bin/python3
"""Asks a running window whether it is alive: scripts/trials/liveness.py LONGEST PROGRAM [ARGUMENT...]

Starts PROGRAM, which tells on its standard output when each of its jobs begins and ends ("begin NAME MS", "end NAME MS"
by CLOCK_MONOTONIC), and asks its main window as a window manager does (_NET_WM_PING) fifty times a second. Prints the
longest silence in each job, in seconds: the longest time between two answers, the job's begin and end among them. The
exit code is 0 only if no silence is longer than LONGEST and the program has ended well.
"""
import subprocess
import sys
import threading
import time

from Xlib import X, Xatom, display, error
from Xlib.protocol import event

EACH = 0.02


class Questions:
    """One window's answers to whether it is alive."""

    def __init__(self):
        self.display = display.Display()
        self.root = self.display.screen().root
        self.root.change_attributes(event_mask=X.StructureNotifyMask | X.SubstructureNotifyMask)  # answers go to either
        self.protocols = self.display.intern_atom("WM_PROTOCOLS")
        self.ping = self.display.intern_atom("_NET_WM_PING")
        self.clients = self.display.intern_atom("_NET_CLIENT_LIST")
        self.asked = 0
        self.answers = []

    def main_window(self, pid):
        """The program's window that belongs to no other, once the window manager shows it."""
        listed = self.root.get_full_property(self.clients, Xatom.WINDOW)
        for number in listed.value if listed else []:
            window = self.display.create_resource_object("window", number)
            of = window.get_full_property(self.display.intern_atom("_NET_WM_PID"), Xatom.CARDINAL)
            if of and of.value[0] == pid and not window.get_full_property(Xatom.WM_TRANSIENT_FOR, Xatom.WINDOW):
                return window
        return None

    def ask(self, window):
        self.asked += 1
        words = (32, [self.ping, self.asked, window.id, 0, 0])
        window.send_event(event.ClientMessage(window=window, client_type=self.protocols, data=words), event_mask=0)
        self.display.flush()

    def take_answers(self):
        while self.display.pending_events():
            got = self.display.next_event()
            if got.type & 0x7F == X.ClientMessage and got.client_type == self.protocols and got.data[1][0] == self.ping:
                self.answers.append(time.monotonic())


def jobs_of(lines):
    """Begin and end of each job by its name, in seconds."""
    jobs = {}
    for what, name, moment in (line.split() for line in lines if line.startswith(("begin ", "end "))):
        jobs.setdefault(name, {})[what] = float(moment) / 1000
    return jobs


def longest_silence(job, answers):
    moments = [job["begin"]] + [answer for answer in answers if job["begin"] < answer < job["end"]] + [job["end"]]
    return max(later - earlier for earlier, later in zip(moments, moments[1:]))


def main():
    longest, program = float(sys.argv[1]), sys.argv[2:]
    questions, lines = Questions(), []
    running = subprocess.Popen(program, stdout=subprocess.PIPE, text=True)
    reader = threading.Thread(target=lambda: lines.extend(running.stdout), daemon=True)
    reader.start()
    while running.poll() is None:
        try:
            if window := questions.main_window(running.pid):
                questions.ask(window)
        except error.BadWindow:
            pass  # it went while it was looked at
        questions.take_answers()
        time.sleep(EACH)
    reader.join()
    bad = running.returncode != 0
    print(f"{questions.asked} questions, {len(questions.answers)} answers; the program ended with {running.returncode}")
    for name, job in jobs_of(lines).items():
        silence = longest_silence(job, questions.answers)
        bad = bad or silence > longest
        print(f"{'ok     ' if silence <= longest else 'FAILED '} {name}: {job['end'] - job['begin']:.2f} s, "
              f"longest silence {silence:.3f} s")
    return 1 if bad or not jobs_of(lines) else 0


if __name__ == "__main__":
    sys.exit(main())
