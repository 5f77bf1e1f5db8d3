#!/usr/bin/env python3
"""Breaks the library in one place after the other and sees whether a test notices.

Each mutant is one small change of a source of the library: a comparison, an operator, a number, a text, a name, a
condition, the class of an exception, two arguments, a statement left out, two statements in the other order. A mutant
that all tests pass is printed as a survivor, unless the list of explained ones (explained.txt beside this program) has
it; the exit code is 1 if there is one.

The mutants of functions are compiled all at once and chosen by number at run time; the others, such as those of
constants, are compiled one by one, with the sources and the tests that include them.
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
import time
from concurrent.futures import ThreadPoolExecutor
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
# Of processor time of one process. Ends mutants that run forever.
CPU_SECONDS = 20
ADDRESS_SPACE = 24 << 30
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
        (self.work / "number.cpp").write_text(switched.DEFINITION, encoding="utf-8")
        self.run(["g++", "-O1", "-c", self.work / "number.cpp", "-o", self.work / "number.o"])
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
        for folder in folders.get(program, [f"tests/CMakeFiles/{program}.dir"]) + [
            "src/CMakeFiles/moxwriter_objects.dir"
        ]:
            found += sorted(str(path.relative_to(self.folder)) for path in (self.folder / folder).rglob("*.o"))
        return found

    def object_of(self, path):
        return f"src/CMakeFiles/moxwriter_objects.dir/{path[len('src/'):]}.o"

    def compile(self, output, overlay, target, options=("-O0",)):
        """Compiles one object anew with the files of a folder before the project's; returns what the compiler says."""
        words = list(self.commands[output])
        source = Path(words[words.index("-c") + 1])
        broken = overlay / source.relative_to(ROOT)
        if broken.exists():
            words[words.index("-c") + 1] = str(broken)
        words[words.index("-o") + 1] = str(target)
        first = next(i for i, word in enumerate(words) if word.startswith("-I"))
        words[first:first] = [f"-I{overlay}/src", f"-I{overlay}/include"]
        words = [word for word in words if word not in ("-Werror", "-O3", "-Winvalid-pch")] + ["-w", *options]
        target.parent.mkdir(parents=True, exist_ok=True)
        done = subprocess.run(words, cwd=self.folder, capture_output=True, text=True)
        return done.stderr if done.returncode != 0 else ""

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
        words = ["g++", "-fuse-ld=lld", "-o", str(target), *self.link_flags(program), *(str(replaced.get(name, name)) for name in objects)]
        words += [str(self.work / "number.o"), "reader/libmoxreader.a", *LIBRARIES]
        done = subprocess.run(words, cwd=self.folder, capture_output=True, text=True)
        if done.returncode != 0:
            sys.exit(f"mutate: {program} does not link\n{done.stderr}")


@functools.cache
def suites_of(path):
    """A filter for the test suites that the tests of this source have for themselves."""
    folder = ROOT / "tests" / Path(path).parent.relative_to(Path(path).parts[0])
    names = set()
    for file in folder.glob(f"{Path(path).stem}*Test.cpp"):
        names.update(re.findall(r"^TEST(?:_F|_P)?\((\w+),", file.read_text(encoding="utf-8"), re.MULTILINE))
    return ":".join(f"*{name}.*" for name in sorted(names))


def fails(program, number, tests=None):
    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))
        resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    command = [program, "--gtest_brief=1", "--gtest_fail_fast"]
    if tests:
        command.append(f"--gtest_filter={tests}")
    environment = dict(os.environ, MUTANT=str(number), MOXWRITER_RANDOM_SEQUENCES=RANDOM_SEQUENCES)
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
        self.verdicts_file = build.work / "verdicts.json"
        self.verdicts = {}
        if self.verdicts_file.exists():
            self.verdicts = json.loads(self.verdicts_file.read_text(encoding="utf-8"))
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
        self.verdicts_file.write_text(json.dumps(self.verdicts, indent=0), encoding="utf-8")
        if verdict == "survived":
            print(f"survived: {mutant}", flush=True)

    def judge(self, mutant, number, program_of):
        """Returns who killed it, or "survived"."""
        own = suites_of(mutant.path)
        if own and fails(program_of("unit_tests"), number, own):
            return "unit_tests"
        for name in self.programs:
            if fails(program_of(name), number):
                return name
        return "survived"

    def switched(self, sources, mutants):
        """Compiles all functions with all their mutants, and tries one after the other. Returns the others."""
        numbered = list(enumerate(mutants, 1))
        overlay = self.build.work / "overlay"
        subprocess.run(["rm", "-rf", overlay], check=True)
        taken = self.write(overlay, sources, numbered)
        replaced = {}
        headers = {mutant.path for number, mutant in numbered if number in taken and not is_source(mutant)}
        broken = {self.build.object_of(m.path) for number, m in numbered if number in taken and is_source(m)}
        for output, files in self.build.dependencies.items():
            own = any(Path(path).stem + "Test.cpp.o" == Path(output).name for path in headers)
            if files & headers and (output.startswith("src/CMakeFiles/moxwriter_objects.dir") or own):
                broken.add(output)
        while broken:
            with ThreadPoolExecutor(self.arguments.jobs) as pool:
                said = list(pool.map(lambda output: self.compiled(output, overlay, replaced), broken))
            bad = {int(number) for text in said for number in COMPILED.findall(text)}
            if any(said) and not bad:
                sys.exit("mutate: " + "\n".join(said))
            for number in bad:
                self.settle(mutants[number - 1], "does not compile")
            print(f"{len(bad)} mutants don't compile", flush=True)
            spoilt = {mutants[number - 1].path for number in bad}
            numbered = [pair for pair in numbered if pair[0] not in bad]
            taken = self.write(overlay, sources, numbered, spoilt) | (taken - bad)
            broken = {output for output, text in zip(broken, said) if text}
        for name in self.programs:
            self.build.link(name, replaced, self.build.work / name)
            if fails(self.build.work / name, 0):
                sys.exit(f"mutate: {name} fails without any mutant")
        def one(pair):
            if self.is_late():
                self.not_tried += 1
            else:
                self.settle(pair[1], self.judge(pair[1], pair[0], lambda name: self.build.work / name))
        with ThreadPoolExecutor(self.arguments.jobs) as pool:
            list(pool.map(one, [pair for pair in numbered if pair[0] in taken]))
        return [mutant for number, mutant in numbered if number not in taken]

    def compiled(self, output, overlay, replaced):
        replaced[output] = self.build.work / "objects" / output
        return self.build.compile(output, overlay, replaced[output])

    def write(self, overlay, sources, numbered, only=None):
        taken = set()
        for source in sources:
            own = [pair for pair in numbered if pair[1].path == source.path]
            if not own or (only is not None and source.path not in only):
                continue
            text, numbers = switched.switched(source.path, source.lines, own)
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
        for output in self.affected(mutant):
            if output not in plain:
                plain[output] = self.build.work / "plain" / output
                self.build.compile(output, self.build.work / "nothing", plain[output])
            replaced[output] = self.build.work / "objects-alone" / output
            if self.build.compile(output, overlay, replaced[output]):
                return "does not compile"
            same = same and plain[output].read_bytes() == replaced[output].read_bytes()
        if same:
            return "same code"
        linked = {}

        def program_of(name):
            if name not in linked:
                linked[name] = self.build.work / f"{name}-alone"
                self.build.link(name, replaced, linked[name])
            return linked[name]

        return self.judge(mutant, 0, program_of)

    def affected(self, mutant):
        if is_source(mutant):
            return [self.build.object_of(mutant.path)]
        return [
            output
            for output, files in self.build.dependencies.items()
            if mutant.path in files
            and (
                output.startswith("src/CMakeFiles/moxwriter_objects.dir")
                or (output.startswith("tests/CMakeFiles/unit_tests.dir/Qel")
                    and Path(output).name.startswith(Path(mutant.path).stem))
            )
        ]  # fmt: skip

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
