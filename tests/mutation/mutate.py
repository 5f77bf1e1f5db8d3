#!/usr/bin/env python3
"""Breaks the library in one place after the other and sees whether a test notices.

Each mutant is one small change of a source of the library: a comparison, an operator, a number, a text, a name, a
condition, the class of an exception, two arguments, a statement left out, two statements in the other order. A mutant
that all tests pass is printed as a survivor, unless the list of explained ones (explained.txt beside this program) has
it; the exit code is 1 if there is one.

The mutants of functions and of initial values are compiled all at once and chosen by number at run time; a run without
any of them notes which functions each test reaches, and a mutant meets only the tests that reach it. The others, such
as those of enumerators, are compiled one by one, with the sources and the tests that include them.
"""

import argparse
import fnmatch
import functools
import json
import os
import random
import re
import resource
import shlex
import subprocess
import sys
import threading
import time
from concurrent.futures import ThreadPoolExecutor
from dataclasses import dataclass
from pathlib import Path

import switched
from mutants import Source

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
EXPLAINED = HERE / "explained.txt"

# In the order of their cost: what a change breaks is mostly seen by the first.
PROGRAMS = ["unit_tests", "api_tests", "golden_tests", "roundtrip_tests", "random_tests", "memory_tests"]
RANDOM_SEQUENCES = "100"
LIBRARIES = ["-lgtest_main", "-lgmock", "-lgtest", "-lz", "-lpthread"]
# Ends mutants that run forever: in processor time of one process, besides what the same tests take with no mutant.
CPU_SECONDS = 2
CPU_FACTOR = 4
ADDRESS_SPACE = 24 << 30
# In milliseconds. Tests that take longer meet a mutant after all others of their program.
DEAR = 50
LONGEST_FILTER = 100_000
LIBRARY = "src/CMakeFiles/moxwriter_objects.dir"
NOT_CONSTANT = re.compile(r"‘(?:[\w{}]+::)*(\w+)’ (?:is not usable in a constant expression|was not initialized)")
COMPILED = re.compile(r"mutant(\d+)/")


class Build:
    """A build tree of the project, whose objects are linked anew with broken ones in place of the library's."""

    def __init__(self, folder, work):
        self.folder, self.work = folder, work
        work.mkdir(parents=True, exist_ok=True)

    def build(self, programs):
        if not (self.folder / "build.ninja").exists():
            self.run(["cmake", "-S", ROOT, "-B", self.folder, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                      "-DMOXWRITER_BUILD_EXAMPLES=OFF"])  # fmt: skip
        self.run(["cmake", "--build", self.folder, "--target", *programs])

    def prepare(self):
        self.commands = {}
        for entry in json.loads((self.folder / "compile_commands.json").read_text(encoding="utf-8")):
            words = shlex.split(entry["command"])
            output = words[words.index("-o") + 1]
            self.commands[output] = words[1 if "ccache" in words[0] else 0 :]
        source, compiled = self.work / "number.cpp", self.work / "number.o"
        if not compiled.exists() or source.read_text(encoding="utf-8") != switched.DEFINITION:
            source.write_text(switched.DEFINITION, encoding="utf-8")
            self.run(["g++", "-O1", "-c", source, "-o", compiled])
        self.dependencies = self.read_dependencies()

    @staticmethod
    def run(words):
        subprocess.run(words, check=True, stdout=subprocess.DEVNULL)

    def read_dependencies(self):
        """The sources and headers of the project that each object is made from."""
        text = subprocess.run(
            ["ninja", "-C", self.folder, "-t", "deps"], check=True, capture_output=True, text=True
        ).stdout
        found, current = {}, None
        for line in text.splitlines():
            if line.startswith("    "):
                path = os.path.realpath(self.folder / line.strip())
                if path.startswith(str(ROOT) + "/"):
                    current.add(path[len(str(ROOT)) + 1 :])
            elif ": " in line:
                current = found.setdefault(line.split(":")[0], set())
        return found

    def objects(self, program):
        """The objects of a program: of its tests, and of the library."""
        folders = {"golden_tests": ["tests/golden/CMakeFiles/golden_tests.dir",
                                    "tests/golden/CMakeFiles/golden_support.dir"]}  # fmt: skip
        found = []
        for folder in [*folders.get(program, [f"tests/CMakeFiles/{program}.dir"]), LIBRARY]:
            found += sorted(str(path.relative_to(self.folder)) for path in (self.folder / folder).rglob("*.o"))
        return found

    def object_of(self, path):
        return f"{LIBRARY}/{path[len('src/'):]}.o"

    @staticmethod
    def is_of_library(output):
        return output.startswith(LIBRARY)

    def units(self, objects, jobs):
        """Divides objects of the library into groups whose sources are compiled as one, since that is quicker."""
        objects = sorted(objects)
        return [unit for unit in (objects[first::jobs] for first in range(jobs)) if unit]

    def compile(self, unit, overlay, target, options=("-O0",)):
        """Compiles sources as one with the files of a folder before the project's; returns what the compiler says."""
        words = list(self.commands[unit[0]])
        target.parent.mkdir(parents=True, exist_ok=True)
        joined = target.with_suffix(".cpp")
        includes = [f'#include "{self.source_of(output, overlay)}"\n' for output in unit]
        joined.write_text("".join(includes), encoding="utf-8")
        words[words.index("-c") + 1] = str(joined)
        words[words.index("-o") + 1] = str(target)
        first = next(i for i, word in enumerate(words) if word.startswith("-I"))
        words[first:first] = [f"-I{overlay}/src", f"-I{overlay}/include"]
        words = [word for word in words if word not in ("-Werror", "-O3", "-Winvalid-pch")]
        words += ["-w", *options]
        done = subprocess.run(words, cwd=self.folder, capture_output=True, text=True)
        return done.stderr if done.returncode != 0 else ""

    def source_of(self, output, overlay):
        words = self.commands[output]
        source = Path(words[words.index("-c") + 1])
        broken = overlay / source.relative_to(ROOT)
        return broken if broken.exists() else source

    def link_flags(self, program):
        """Such as those that put the test's own functions in place of the system's."""
        text = (self.folder / "build.ninja").read_text(encoding="utf-8")
        pattern = rf"^build tests/(?:golden/)?{program} .*\n(?:  .*\n)*?  LINK_FLAGS = (.*)$"
        found = re.search(pattern, text, re.MULTILINE)
        return shlex.split(found[1]) if found else []

    def link(self, program, replaced, target):
        objects = self.objects(program)
        # The library first: of the inline functions that two objects have, the linker takes the first.
        objects.sort(key=lambda name: not name.startswith("src/"))
        linked = [str(name) for name in (replaced.get(name, name) for name in objects) if name]
        words = ["g++", "-fuse-ld=lld", "-o", str(target), *self.link_flags(program), *linked]
        words += [str(self.work / "number.o"), "reader/libmoxreader.a", *LIBRARIES]
        done = subprocess.run(words, cwd=self.folder, capture_output=True, text=True)
        if done.returncode != 0:
            sys.exit(f"mutate: {program} does not link\n{done.stderr}")


def mutants_in(errors):
    """The mutants that a compiler complains about: where the error is, or where it says that the template is used."""
    found, context = set(), set()
    for line in errors.splitlines():
        numbers = set(map(int, COMPILED.findall(line)))
        if ": error: " in line:
            found |= set(map(int, COMPILED.findall(line.split(": error: ")[0]))) or numbers or context
            context = set()
        elif "required from" in line or "In instantiation of" in line:
            context |= numbers
    return found


@functools.cache
def suites_of(path):
    """The test suites that this source has for itself."""
    folder = ROOT / "tests" / Path(path).parent.relative_to(Path(path).parts[0])
    names = set()
    for file in folder.glob(f"{Path(path).stem}*Test.cpp"):
        text = file.read_text(encoding="utf-8")
        names.update(re.findall(r"^(?:TYPED_)?TEST(?:_F|_P)?\((\w+),", text, re.MULTILINE))
    return names


@dataclass
class Reached:
    """What a test reaches: the functions, by the numbers that switched() has given them."""

    name: str
    milliseconds: int
    sites: frozenset


def reached_by(path):
    """The tests of a program, from what it has recorded. Begins with what is reached before the first test."""
    found = []
    for line in path.read_text(encoding="utf-8").splitlines():
        test, milliseconds, *sites = line.split(" ")
        found.append(Reached(test, int(milliseconds), frozenset(map(int, sites))))
    return found


def fails(program, number, tests=None, seconds=3600, record=None):
    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (seconds, seconds))
        resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    command = [program, "--gtest_brief=1", "--gtest_fail_fast"]
    if tests and len(tests) <= LONGEST_FILTER:
        command.append(f"--gtest_filter={tests}")
    environment = dict(os.environ, MUTANT=str(number), MOXWRITER_RANDOM_SEQUENCES=RANDOM_SEQUENCES)
    if record:
        environment["MUTANTS_REACHED"] = str(record)
    try:
        return subprocess.run(
            command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=limit, timeout=3600,
            env=environment).returncode != 0  # fmt: skip
    except subprocess.TimeoutExpired:
        return True


class Run:
    """Judges mutants and keeps the verdicts in a file, so that a later run goes on where this one ended."""

    def __init__(self, arguments, build):
        self.arguments, self.build = arguments, build
        self.programs = arguments.programs
        self.end = time.monotonic() + arguments.minutes * 60 if arguments.minutes else None
        self.verdicts_file = build.work / "verdicts.txt"
        self.verdicts = {}
        if self.verdicts_file.exists():
            for line in self.verdicts_file.read_text(encoding="utf-8").splitlines():
                verdict, key = line.split("\t", 1)
                self.verdicts[key] = verdict
        self.reached = {}
        self.constants = set()  # that can't be chosen at run time
        self.known = keys_in(EXPLAINED)
        self.not_tried = 0

    def is_late(self):
        return self.end is not None and time.monotonic() > self.end

    def is_waiting(self, mutant):
        verdict = self.verdicts.get(mutant.key())
        return verdict is None or (self.arguments.survivors and verdict == "survived")

    def settle(self, mutant, verdict):
        if verdict == "survived" and mutant.key() in self.known:
            verdict = "explained"
        self.verdicts[mutant.key()] = verdict
        with self.verdicts_file.open("a", encoding="utf-8") as file:
            file.write(f"{verdict}\t{mutant.key()}\n")
        if verdict == "survived":
            print(f"survived: {mutant}", flush=True)

    def judge(self, mutant, number, program_of, site=None):
        """Returns who killed it, or "survived"."""
        for name in self.programs:
            program = program_of(name)
            for tests, seconds in self.tests_for(name, mutant.path, site):
                if fails(program, number, tests, seconds):
                    return name
        return "survived"

    def tests_for(self, name, path, site):
        """Yields filters for the tests of a program that can see a mutant, and how much processor time they may take.
        First come those of its own source, last those that take long."""
        before, *tests = self.reached[name]
        if site is not None and site not in before.sites:
            tests = [test for test in tests if site in test.sites]
        own = suites_of(path)
        groups = ([], [], [])
        for test in tests:
            is_own = not own.isdisjoint(re.split(r"[./]", test.name))
            groups[0 if is_own else 1 if test.milliseconds <= DEAR else 2].append(test)
        for chosen in filter(None, groups):
            milliseconds = sum(test.milliseconds for test in chosen)
            yield ":".join(test.name for test in chosen), CPU_SECONDS + CPU_FACTOR * milliseconds // 1000

    def record(self, name, program):
        """Runs a program with no mutant, and keeps which functions its tests reach."""
        path = self.build.work / f"{name}.reached"
        if fails(program, 0, record=path):
            sys.exit(f"mutate: {name} fails without any mutant")
        self.reached[name] = reached_by(path)

    def switched(self, sources, mutants):
        """Compiles all functions with all their mutants, and tries one after the other. Returns the others."""
        numbered = list(enumerate(mutants, 1))
        overlay = self.build.work / "overlay"
        subprocess.run(["rm", "-rf", overlay], check=True)
        taken = self.write(overlay, sources, numbered)
        replaced = {}
        headers = {mutant.path for number, mutant in numbered if number in taken and not is_source(mutant)}
        broken = {self.build.object_of(m.path) for number, m in numbered if number in taken and is_source(m)}
        own = set()
        for output, files in self.build.dependencies.items():
            if files & headers and self.build.is_of_library(output):
                broken.add(output)
            elif files & headers and any(Path(path).stem + "Test.cpp.o" == Path(output).name for path in headers):
                own.add(output)
        units = self.build.units(broken, self.arguments.jobs) + [[output] for output in sorted(own)]
        while units:
            with ThreadPoolExecutor(self.arguments.jobs) as pool:
                said = list(pool.map(lambda unit: self.compiled(unit, overlay, replaced), units))
            errors = "\n".join(said)
            (self.build.work / "errors.txt").write_text(errors, encoding="utf-8")
            constants = set(NOT_CONSTANT.findall(errors)) - self.constants
            bad = set() if constants else mutants_in(errors)
            if errors.strip() and not bad and not constants:
                sys.exit("mutate: " + errors)
            if constants:
                print("constant when it is compiled:", *sorted(constants), flush=True)
                self.constants |= constants
                taken = self.write(overlay, sources, numbered)
                units = [unit for unit, text in zip(units, said) if text]
                continue
            for number in bad:
                self.settle(mutants[number - 1], "does not compile")
            print(f"{len(bad)} mutants don't compile", flush=True)
            spoilt = {mutants[number - 1].path for number in bad}
            numbered = [pair for pair in numbered if pair[0] not in bad]
            taken = {number: site for number, site in taken.items() if number not in bad}
            taken |= self.write(overlay, sources, numbered, spoilt)
            units = [unit for unit, text in zip(units, said) if text]
        self.judge_all(numbered, taken, replaced)
        return [mutant for number, mutant in numbered if number not in taken]

    def judge_all(self, numbered, taken, replaced):
        lock = threading.Lock()

        def program_of(name):
            program = self.build.work / name
            with lock:
                if name not in self.reached:
                    self.build.link(name, replaced, program)
                    self.record(name, program)
            return program

        def one(pair):
            number, mutant = pair
            if self.is_late():
                self.not_tried += 1
            else:
                self.settle(mutant, self.judge(mutant, number, program_of, taken[number]))

        with ThreadPoolExecutor(self.arguments.jobs) as pool:
            list(pool.map(one, [pair for pair in numbered if pair[0] in taken]))

    def compiled(self, unit, overlay, replaced):
        """Compiles the sources of these objects as one, which takes the place of all of them."""
        for output in unit:
            replaced[output] = None
        replaced[unit[0]] = self.build.work / "objects" / unit[0]
        return self.build.compile(unit, overlay, replaced[unit[0]])

    def write(self, overlay, sources, numbered, only=None):
        taken = {}
        for source in sources:
            own = [pair for pair in numbered if pair[1].path == source.path]
            if not own or (only is not None and source.path not in only):
                continue
            text, numbers = switched.switched(source.path, source.lines, own, self.constants)
            taken |= numbers
            if numbers:
                (overlay / source.path).parent.mkdir(parents=True, exist_ok=True)
                (overlay / source.path).write_text(text, encoding="utf-8")
        return taken

    def one_by_one(self, sources, mutants):
        lines = {source.path: source.lines for source in sources}
        plain = {}
        for mutant in mutants:
            if self.is_late():
                self.not_tried += 1
                continue
            self.settle(mutant, self.judge_alone(mutant, lines[mutant.path], plain))

    def judge_alone(self, mutant, lines, plain):
        overlay = self.build.work / "alone"
        subprocess.run(["rm", "-rf", overlay], check=True)
        path = overlay / mutant.path
        path.parent.mkdir(parents=True)
        path.write_text("\n".join([f'#line 1 "{mutant.path}"', *mutant.applied(lines)]), encoding="utf-8")
        replaced, same = {}, True
        for unit in self.affected(mutant):
            if tuple(unit) not in plain:
                plain[tuple(unit)] = self.build.work / "plain" / str(len(plain)) / unit[0]
                self.build.compile(unit, self.build.work / "nothing", plain[tuple(unit)])
            replaced |= dict.fromkeys(unit)
            replaced[unit[0]] = self.build.work / "objects-alone" / unit[0]
            if self.build.compile(unit, overlay, replaced[unit[0]]):
                return "does not compile"
            same = same and plain[tuple(unit)].read_bytes() == replaced[unit[0]].read_bytes()
        if same:
            return "same code"
        linked = {}

        def program_of(name):
            if name not in self.reached:
                self.build.link(name, {}, self.build.work / f"{name}-plain")
                self.record(name, self.build.work / f"{name}-plain")
            if name not in linked:
                linked[name] = self.build.work / f"{name}-alone"
                self.build.link(name, replaced, linked[name])
            return linked[name]

        return self.judge(mutant, 0, program_of)

    def affected(self, mutant):
        """What to compile with a mutant, in groups that are compiled as one."""
        if is_source(mutant):
            return [[self.build.object_of(mutant.path)]]
        using = sorted(output for output, files in self.build.dependencies.items() if mutant.path in files)
        library = [output for output in using if self.build.is_of_library(output)]
        tests = [output for output in using if output.startswith("tests/CMakeFiles/unit_tests.dir/Qel")
                 and Path(output).name.startswith(Path(mutant.path).stem)]  # fmt: skip
        return [unit for unit in [library, *([output] for output in tests)] if unit]

    def report(self, mutants):
        counts = {}
        for mutant in mutants:
            verdict = self.verdicts.get(mutant.key(), "not tried")
            counts[verdict] = counts.get(verdict, 0) + 1
        print(", ".join(f"{count} {verdict}" for verdict, count in sorted(counts.items())))
        return 1 if "survived" in counts else 0


def is_source(mutant):
    return mutant.path.endswith(".cpp")


def keys_in(path):
    """The mutants that a file such as explained.txt names."""
    if not path.exists():
        return set()
    lines = path.read_text(encoding="utf-8").splitlines()
    return {line for line in lines if line and not line.startswith("#")}


def source_paths(patterns):
    found = subprocess.run(
        ["git", "ls-files", "src", "include"], cwd=ROOT, check=True, capture_output=True, text=True
    ).stdout.split()
    return [
        path
        for path in found
        if path.endswith((".cpp", ".h", ".inl")) and any(fnmatch.fnmatch(path, one) for one in patterns)
    ]


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("patterns", nargs="*", default=["*"], help="sources to break, such as 'src/Qel/Tnf/*'")
    parser.add_argument("--list", action="store_true", help="print the mutants and build nothing")
    parser.add_argument("--sample", type=int, metavar="N", help="N of them, chosen at random")
    parser.add_argument("--seed", type=int, default=1, help="of the choice")
    parser.add_argument("--kinds", nargs="+", help="only mutants of these kinds, as --list names them")
    parser.add_argument("--keys", type=Path, help="only the mutants in this file, which looks like explained.txt")
    parser.add_argument("--survivors", action="store_true", help="also try those again that survived the last run")
    parser.add_argument("--together", action="store_true", help="only those that are compiled all at once")
    parser.add_argument("--programs", nargs="+", default=PROGRAMS, help="the test programs to try, in this order")
    parser.add_argument("--minutes", type=float, help="stop after that time")
    parser.add_argument("--jobs", type=int, default=1, help="compilers and tests to run at once")
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "mutation", help="the build tree")
    parser.add_argument("--no-build", action="store_true", help="what is in the build tree is up to date")
    parser.add_argument("--work", type=Path, default=ROOT / "build" / "mutants", help="folder for all else")
    return parser.parse_args()


def main():
    arguments = parse_arguments()
    sources = [Source(ROOT, path) for path in source_paths(arguments.patterns)]
    mutants = [mutant for source in sources for mutant in source.mutants()]
    if arguments.kinds:
        mutants = [mutant for mutant in mutants if mutant.kind in arguments.kinds]
    if arguments.keys:
        keys = keys_in(arguments.keys)
        mutants = [mutant for mutant in mutants if mutant.key() in keys]
    if arguments.sample:
        mutants = random.Random(arguments.seed).sample(mutants, min(arguments.sample, len(mutants)))
    if arguments.list:
        print(*mutants, sep="\n")
        print(f"{len(mutants)} mutants")
        return 0
    build = Build(arguments.build.resolve(), arguments.work.resolve())
    if not arguments.no_build:
        build.build(arguments.programs)
    build.prepare()
    run = Run(arguments, build)
    alone = run.switched(sources, [mutant for mutant in mutants if run.is_waiting(mutant)])
    if not arguments.together:
        run.one_by_one(sources, alone)
    return run.report(mutants)


if __name__ == "__main__":
    sys.exit(main())
