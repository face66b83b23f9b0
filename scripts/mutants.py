#!/usr/bin/env python3
"""Plants mutations in the sources, one at a time, and tells which of them no test notices.

SEED and COUNT pick a sample, evenly over the files; the same seed gives the same mutants. FOLDER is a folder of src,
and all but qt without it. A mutant is compiled and linked in a copy of the tree below build/mutants, where the tests
of its folder run first and then all others, until one fails; one that takes much too long has failed. What cannot
change anything is listed in tests/mutants/equivalent.txt and not run. The exit code is 1 when the score is below PASS,
in per cent; 100 wants every survivor to be listed.
"""
import hashlib
import json
import os
import pathlib
import re
import resource
import shlex
import shutil
import signal
import subprocess
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor

from mutations import mutations_of

ROOT = pathlib.Path(__file__).resolve().parent.parent
PLACE = ROOT / "build" / "mutants"
TREE = PLACE / "tree"
EQUIVALENT = ROOT / "tests" / "mutants" / "equivalent.txt"
FOLDER = os.environ.get("FOLDER", "")
SEED = os.environ.get("SEED", "1")
COUNT = int(os.environ.get("COUNT", "40"))
JOBS = int(os.environ.get("JOBS", os.cpu_count() or 1))
PASS = float(os.environ.get("PASS", "0"))
WITH_QT = FOLDER.split("/")[0] == "qt"
BUILD = TREE / "build" / ("mutants-qt" if WITH_QT else "mutants")

COMPILE_SECONDS = 300
MOST_MEMORY = 8 << 30  # bytes of address space; a loop that never ends must not take the machine's
MOST_FILE = 1 << 30  # bytes


def run(command, **more):
    return subprocess.run(command, check=True, stdin=subprocess.DEVNULL, **more)


# --- the copy of the tree and what is built in it once ---------------------------------------------------------------

def copy_tree():
    """Brings the copy up to date; a file that is the same keeps its time, so that little is built again."""
    listed = run(["git", "-c", f"safe.directory={ROOT}", "ls-files", "-z", "-co", "--exclude-standard"], cwd=ROOT,
                 stdout=subprocess.PIPE).stdout.decode().split("\0")
    wanted = {name for name in listed if name and (ROOT / name).is_file()}
    for name in wanted:
        source, target = ROOT / name, TREE / name
        if not target.exists() or source.read_bytes() != target.read_bytes():
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy(source, target)
    for path in [path for path in TREE.rglob("*") if path.is_file() and "build" not in path.relative_to(TREE).parts[:1]]:
        if str(path.relative_to(TREE)) not in wanted:
            path.unlink()


def build():
    # A compiler cache, where there is one, serves every copy.
    env = dict(os.environ, CCACHE_BASEDIR=str(TREE), CCACHE_NOHASHDIR="1")
    configure = ["cmake", "--preset", "mutants", "-B", str(BUILD)]
    if WITH_QT:
        configure += ["-DKD_WITH_QT=ON", "-DCMAKE_DISABLE_FIND_PACKAGE_Qt6=OFF"]
    run(configure, cwd=TREE, env=env, stdout=subprocess.DEVNULL)
    run(["cmake", "--build", str(BUILD), "--parallel", str(JOBS), "--target", *targets()], env=env,
        stdout=subprocess.DEVNULL)


def targets():
    programs = re.findall(r"^(test_\w+): phony", ninja("query-all"), re.M)
    return [each for each in programs if not WITH_QT or each in ("test_qt", "test_walk")]


def ninja(what, *names):
    """The lines of ninja's tools: all targets, what each object is made of, or the commands that make a target."""
    tool = {"query-all": ["targets", "all"], "deps": ["deps"]}.get(what, ["commands", "-s", *names])
    return run(["ninja", "-C", str(BUILD), "-t", *tool], stdout=subprocess.PIPE).stdout.decode()


class Program:
    """A test program with the time that it takes unchanged."""

    def __init__(self, name):
        self.name = name
        path = {"test_qt": "tests/qt", "test_walk": "tests/walk", "test_fuzz": "tests/fuzz"}.get(name, "tests")
        self.path = f"{path}/{name}"
        self.folder = name.removeprefix("test_")
        self.seconds = 0.0


# --- the compiler's and the linker's commands -------------------------------------------------------------------------

class Commands:
    """How each source is compiled and each library and program linked."""

    def __init__(self):
        entries = json.loads((BUILD / "compile_commands.json").read_text())
        self.sources = {}
        self.tests = {}
        for entry in entries:
            path = pathlib.Path(entry["file"])
            words = [each for each in shlex.split(entry["command"]) if not each.endswith("ccache")]
            if not path.is_file() or "_fuzz" in words[words.index("-o") + 1]:
                continue
            if path.is_relative_to(TREE / "src") and path.name != "main.cpp":
                self.sources[str(path.relative_to(TREE))] = words
            elif path.is_relative_to(TREE / "tests"):
                self.tests[str(path.relative_to(TREE))] = words
        self.links = {}
        self.made_of = {}

    def includes(self, name, header):
        """Whether a source is made of that header too."""
        if not self.made_of:
            made_of = {}
            for block in ninja("deps").split("\n\n"):
                first, *names = block.split("\n")
                made_of[first.split(":")[0]] = {os.path.normpath(BUILD / each.strip()) for each in names}
            self.made_of = made_of  # whole at once: the other workers ask too
        words = self.sources.get(name) or self.tests[name]
        return str(TREE / header) in self.made_of.get(words[words.index("-o") + 1], ())

    def flags(self, name):
        """Arguments for reading a file, those of a neighbour for a header."""
        words = self.sources.get(name) or next(
            (self.sources[each] for each in sorted(self.sources) if each.startswith(str(pathlib.Path(name).parent) + "/")),
            self.sources[sorted(self.sources)[0]])
        kept = [word for i, word in enumerate(words) if i > 0 and words[i - 1] not in ("-o", "-c")]
        return [word for word in kept if word not in ("-o", "-c", "-w")]

    def link(self, target):
        if target not in self.links:
            last = ninja("commands", target).strip().splitlines()[-1]
            self.links[target] = shlex.split(last.split("&&")[1])
        return self.links[target]


LIBRARIES = ("src/libkd_core.so", "src/libkd_suite.so") + (("src/qt/libkd_qt.so",) if WITH_QT else ())


# --- one worker -------------------------------------------------------------------------------------------------------

class Worker:
    """Compiles, links and tries mutants in a folder of its own beside the copy."""

    def __init__(self, number, commands, programs):
        self.place = PLACE / f"worker-{number}"
        shutil.rmtree(self.place, ignore_errors=True)
        self.commands = commands
        self.programs = programs
        self.overlay = self.place / "src"
        self.lib = self.place / "lib"

    def limited(self):
        resource.setrlimit(resource.RLIMIT_AS, (MOST_MEMORY, MOST_MEMORY))
        resource.setrlimit(resource.RLIMIT_FSIZE, (MOST_FILE, MOST_FILE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    def execute(self, command, seconds, env=None, cwd=None):
        """The exit code; None when it took too long."""
        process = subprocess.Popen(command, cwd=cwd or BUILD, env=env, stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                   stderr=subprocess.DEVNULL, start_new_session=True, preexec_fn=self.limited)
        try:
            return process.wait(seconds)
        except subprocess.TimeoutExpired:
            return None
        finally:
            try:
                os.killpg(process.pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
            process.wait()

    def compile(self, name, text, like):
        """Object of a source in the overlay with the flags of another; None when it does not compile."""
        source = self.overlay / pathlib.Path(*pathlib.Path(name).parts[1:])
        source.parent.mkdir(parents=True, exist_ok=True)
        source.write_bytes(text)
        words = list(self.commands.sources.get(like) or self.commands.tests[like])
        made = self.place / (source.name + ".o")
        words[words.index("-o") + 1] = str(made)
        words[words.index("-c") + 1] = str(source)
        beside = TREE / pathlib.Path(name).parent
        words[1:1] = ["-I", str(self.overlay), "-iquote", str(beside)]
        return made if self.execute(words, COMPILE_SECONDS) == 0 else None

    def link(self, target, output, instead=None, first=None):
        """Links a library or program with objects exchanged, or with another: these go before all, as of inline
        functions the first is taken."""
        words = list(self.commands.link(target))
        changed = [each for whole, each in (instead or {}).items() if whole in words]
        words = [word for word in words if word not in (instead or {})]
        words[1:1] = [str(first)] if first else changed
        words[words.index("-o") + 1] = str(output)
        words = [str(self.lib / pathlib.Path(word).name) if (self.lib / pathlib.Path(word).name).exists()
                 and word.endswith(".so") and word != str(output) else word for word in words]
        return self.execute(words, COMPILE_SECONDS) == 0

    def clear_home(self):
        """Takes away what a test has left behind; one that was stopped may leave a file system mounted."""
        for line in pathlib.Path("/proc/self/mounts").read_text(encoding="utf-8").splitlines():
            if line.split()[1].startswith(f"{self.place}/"):
                subprocess.run(["umount", "--lazy", line.split()[1]], check=False, stdin=subprocess.DEVNULL)
        shutil.rmtree(self.place / "home", ignore_errors=True)

    def make(self, name, mutation, source, wholly=False):
        """Makes the mutant; what is to be run for each program, or None when it does not compile. `wholly` makes all of
        the header's folder anew that includes it, and not only what bears its name."""
        self.clear_home()
        shutil.rmtree(self.place, ignore_errors=True)
        self.lib.mkdir(parents=True)
        text = mutation.apply(source)
        if name.endswith(".h") and mutation.used is not None:
            return self.make_inline(name, mutation, text, len(source))
        changed = [name]
        if name.endswith(".h"):
            header = pathlib.Path(name)
            (self.overlay / header.relative_to("src")).parent.mkdir(parents=True)
            (self.overlay / header.relative_to("src")).write_bytes(text)
            # Its own source or sources: Files.cpp, or posix/FilesPosix.cpp; and the tests of that name, which have
            # what a template makes in themselves.
            folders = tuple(f"{top}/{header.parts[1]}/" for top in ("src", "tests"))
            changed = [each for each in (*self.commands.sources, *self.commands.tests) if each.startswith(folders)
                       and (self.commands.includes(each, name) if wholly
                            else pathlib.Path(each).stem.startswith(header.stem))]
        instead = {}
        for each in changed:
            made = self.compile(each, text if each == name else (TREE / each).read_bytes(), each)
            if made is None:
                return None
            words = self.commands.sources.get(each) or self.commands.tests[each]
            instead[words[words.index("-o") + 1]] = str(made)
        for library in LIBRARIES:
            if any(whole in self.commands.link(library) for whole in instead):
                if not self.link(library, self.lib / pathlib.Path(library).name, instead=instead):
                    return None
        if not changed:
            return None
        paths = {program.name: str(BUILD / program.path) for program in self.programs}
        for program in self.programs:
            if any(each in self.commands.link(program.path) for each in instead):
                paths[program.name] = str(self.place / program.name)
                if not self.link(program.path, self.place / program.name, instead=instead):
                    return None
        return paths

    def make_inline(self, name, mutation, text, size):
        """An inline function's changed copy goes before all others in every library and program."""
        at = mutation.used + (len(text) - size if mutation.used > mutation.start else 0)
        text = text[:at] + b"[[gnu::used]] " + text[at:]
        header = self.overlay / pathlib.Path(name).relative_to("src")
        header.parent.mkdir(parents=True)
        header.write_bytes(text)
        include = str(pathlib.Path(name).relative_to("src"))
        like = sorted(each for each in self.commands.sources if each.startswith("src/qt/" if WITH_QT else "src/"))[0]
        made = self.compile("src/changed.cpp", f'#include "{include}"\n'.encode(), like)
        if made is None:
            return None
        for library in LIBRARIES:
            if not self.link(library, self.lib / pathlib.Path(library).name, first=made):
                return None
        paths = {}
        for program in self.programs:
            output = self.place / program.name
            paths[program.name] = lambda program=program, output=output: self.relinked(program, output, made)
        return paths

    def relinked(self, program, output, made):
        if not self.link(program.path, output, first=made):
            raise RuntimeError(f"{program.name} cannot be linked with {made}")
        return str(output)

    def try_out(self, name, paths):
        """Name of the program that noticed, or None."""
        folder = pathlib.Path(name).parts[1]
        order = sorted(self.programs, key=lambda each: (each.folder != folder, each.seconds))
        for program in order:
            if program.name not in paths:
                continue
            path = paths[program.name]
            path = path() if callable(path) else path
            if self.test(program, path, name) != 0:
                return program.name
        return None

    def test(self, program, path, name):
        self.clear_home()
        home = self.place / "home" / "test"
        home.mkdir(parents=True)
        env = dict(os.environ, LD_LIBRARY_PATH=str(self.lib), TMPDIR=str(home), HOME=str(home), QT_QPA_PLATFORM="offscreen",
                   XDG_CONFIG_HOME=str(home), XDG_RUNTIME_DIR=str(home))
        command = [path, "--gtest_fail_fast", "--gtest_brief=1"]
        likely = f"--gtest_filter=*{pathlib.Path(name).stem}*"
        seconds = max(20.0, 6 * program.seconds)
        # The tests of the same name first: they are the most likely to notice.
        if program.seconds > 5 and self.execute([*command, likely], seconds, env, cwd=home) != 0:
            return 1
        return self.execute(command, seconds, env, cwd=home)


# --- the sample -------------------------------------------------------------------------------------------------------

def drawn(*texts):
    """The place of a file or mutation in the order of drawing. It hangs on nothing but their own texts, so that a change
    elsewhere seldom puts others into the sample."""
    return hashlib.sha256("\t".join((SEED, *texts)).encode()).digest()


def files_of(commands):
    """Sources and headers that mutants are planted in."""
    top = "src/" + FOLDER + "/" if FOLDER else "src/"
    sources = [name for name in commands.sources if name.startswith(top)]
    headers = [str(path.relative_to(TREE)) for path in (TREE / top).rglob("*.h")]
    files = [name for name in sorted(sources + headers) if "/windows/" not in name and "autogen" not in name
             and (WITH_QT or not name.startswith("src/qt/")) and not is_made(TREE / name)]
    return sorted(files, key=drawn)


def is_made(path):
    """Whether a script makes the file; it is compared with what the script gives."""
    with path.open(encoding="utf-8") as text:
        return "made by scripts/" in text.readline()


def read_equivalents():
    listed = set()
    for line in EQUIVALENT.read_text(encoding="utf-8").splitlines() if EQUIVALENT.exists() else ():
        if line.strip() and not line.startswith("#"):
            words = [" ".join(each.split()) for each in line.split("\t")]
            if len(words) != 4:
                sys.exit(f"mutants: {EQUIVALENT.name}: four texts with tabs between them are wanted: {line}")
            listed.add(tuple(words[:3]))
    return listed


class Run:
    def __init__(self):
        self.commands = Commands()
        self.programs = [Program(name) for name in targets()]
        self.equivalents = read_equivalents()
        self.lock = threading.Lock()
        self.idle = [Worker(str(number), self.commands, self.programs) for number in range(1, JOBS + 1)]
        self.files = files_of(self.commands)
        self.found = {}  # by file: its mutations that have not been drawn, the next one last
        self.counted = dict.fromkeys(self.files, 0)
        self.planted = self.killed = self.equivalent = 0
        self.survivors = []
        self.seconds = []

    def measure(self):
        """The tests pass while nothing is planted, and take that long."""
        def one(program):
            with self.lock:
                worker = self.idle.pop()
            worker.lib.mkdir(parents=True, exist_ok=True)
            program.seconds = 100.0
            begin = time.monotonic()
            passes = worker.test(program, str(BUILD / program.path), "no such test") == 0
            program.seconds = time.monotonic() - begin
            with self.lock:
                self.idle.append(worker)
            return passes

        with ThreadPoolExecutor(JOBS) as pool:
            for program, passes in zip(self.programs, pool.map(one, self.programs)):
                if not passes:
                    subprocess.run([str(BUILD / program.path), "--gtest_brief=1"], check=False, stdin=subprocess.DEVNULL)
                    sys.exit(f"mutants: {program.name} fails with nothing planted")

    def rounds(self):
        """Deals out the mutants; what a file is too small for goes to others in another round."""
        while self.planted < COUNT:
            order = [name for name in self.files if self.found.get(name, True)]
            if not order:
                return
            order.sort(key=lambda name: self.counted[name])
            each, more = divmod(COUNT - self.planted, len(order))
            shares = [(name, each + (i < more)) for i, name in enumerate(order) if each or i < more]
            with ThreadPoolExecutor(JOBS) as pool:
                for _ in pool.map(lambda share: self.plant(*share), shares):
                    pass

    def plant(self, name, count):
        path = TREE / name
        source = path.read_bytes()
        if name not in self.found:
            found = mutations_of(path, ["-x", "c++", *self.commands.flags(name)])
            found.sort(key=lambda each: drawn(name, each.function, each.kind, *each.texts(source)), reverse=True)
            self.found[name] = found
        with self.lock:
            worker = self.idle.pop()
        while count > 0 and self.found[name]:
            planted = self.one(worker, name, self.found[name].pop(), source)
            self.counted[name] += planted
            count -= planted
        with self.lock:
            self.idle.append(worker)

    def one(self, worker, name, mutation, source):
        """1 when the mutant counts."""
        old, new = mutation.texts(source)
        if (mutation.function, old, new) in self.equivalents:
            with self.lock:
                self.planted += 1
                self.equivalent += 1
            return 1
        begin = time.monotonic()
        # A default of a member is in whoever makes the object, and a template in whoever uses it.
        is_spread = name.endswith(".h") and mutation.used is None
        paths = worker.make(name, mutation, source)
        noticed = worker.try_out(name, paths) if paths else None
        if noticed is None and is_spread:
            own = "test_" + pathlib.Path(name).parts[1]
            whole = worker.make(name, mutation, source, wholly=True)
            if whole is None:
                return 0
            noticed = worker.try_out(name, whole if paths is None else {own: whole[own]})
        elif paths is None:
            return 0
        took = time.monotonic() - begin
        with self.lock:
            self.planted += 1
            self.seconds.append(took)
            place = f"{name}:{mutation.line(source)}"
            if noticed:
                self.killed += 1
                print(f"killed in {took:.1f} s by {noticed}: {place} ({mutation.kind})", flush=True)
            else:
                self.survivors.append(place)
                print(f"SURVIVES after {took:.1f} s: {place} in {mutation.function} ({mutation.kind})\n"
                      f"    {old}\n    {new}", flush=True)
        return 1

    def score(self):
        tried = self.planted - self.equivalent
        return 100.0 * self.killed / tried if tried else 100.0


def main():
    copy_tree()
    build()
    whole = Run()
    whole.measure()
    print(f"tests pass with nothing planted, in {sum(each.seconds for each in whole.programs):.0f} s", flush=True)
    begin = time.monotonic()
    whole.rounds()
    each = sum(whole.seconds) / len(whole.seconds) if whole.seconds else 0.0
    print(f"{time.monotonic() - begin:.0f} s, {each:.1f} s for a mutant")
    print(f"{whole.planted} planted, {whole.killed} killed, {whole.equivalent} equivalent, "
          f"{len(whole.survivors)} survive, score {whole.score():.1f} %")
    return 0 if whole.score() >= PASS else 1


if __name__ == "__main__":
    sys.exit(main())
