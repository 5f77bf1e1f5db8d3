#!/usr/bin/env python3
"""Breaks the library in one place after the other and sees whether a test notices.

Each mutant is one small change of a source of the library: a comparison, an operator, a number, a text, a
condition, a statement left out, two statements in the other order. It is built and tested in a copy of the tree. A
mutant that all tests pass is printed as a survivor, unless the list of explained ones (explained.txt beside this
program) has it; the exit code is 1 if there is one.
"""

import argparse
import fnmatch
import os
import random
import re
import resource
import shutil
import subprocess
import sys
import threading
import time
from dataclasses import dataclass
from pathlib import Path

from pygments.lexers import CppLexer
from pygments.token import Comment, Number, String, Token

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
EXPLAINED = HERE / "explained.txt"

# In the order of their cost: what a change breaks is mostly seen by the first.
TEST_PROGRAMS = ["unit_tests", "api_tests", "golden_tests", "roundtrip_tests"]
# Of processor time; the slowest program takes some three seconds. Ends mutants that run forever.
CPU_SECONDS = 60
ADDRESS_SPACE = 24 << 30

# clang-format sets blanks around binary operators and none within template arguments.
OPERATORS = {
    " < ": [" <= "],
    " <= ": [" < "],
    " > ": [" >= "],
    " >= ": [" > "],
    " == ": [" != "],
    " != ": [" == "],
    " && ": [" || "],
    " || ": [" && "],
    " + ": [" - "],
    " - ": [" + "],
    " * ": [" + "],
    " / ": [" * "],
    " % ": [" / "],
    " += ": [" -= "],
    " -= ": [" += "],
    " | ": [" & "],
    " & ": [" | "],
    " << ": [" >> "],
    " >> ": [" << "],
    " ? ": [" ? !"],
}
STATEMENT = re.compile(r"^(?P<indent> {4,})(?P<text>(?:[A-Za-z_*(+][^{}]*);)$")
# These introduce a name, leave the function or belong to a class.
NOT_A_STATEMENT = re.compile(
    r"^(?:return|break|continue|case|default|using|namespace|static_assert|throw|friend|typedef|constexpr|extern|"
    r"template|public|private|virtual|explicit|~|else)\b"
)
DECLARATION = re.compile(r"^(?:const |static |std::)?[\w:<>,*& ]+[*& ]\w+(?: = .*|\(.*\)|\{.*\})?;$")


@dataclass(frozen=True)
class Mutant:
    path: str  # below the root
    line: int  # from 1
    kind: str
    before: str  # the line or lines, without indentation
    after: str
    text: str  # the whole source

    def key(self):
        return f"{self.path} | {self.before} | {self.after}"

    def __str__(self):
        return f"{self.path}:{self.line}: {self.kind}\n  - {self.before}\n  + {self.after}"


class Source:
    """A source file, and the mutants that can be made of it."""

    def __init__(self, path):
        self.path = path
        self.text = (ROOT / path).read_text(encoding="utf-8")
        self.lines = self.text.split("\n")
        self.starts = [0]
        for line in self.lines:
            self.starts.append(self.starts[-1] + len(line) + 1)
        self.tokens = list(CppLexer(stripnl=False, ensurenl=False).get_tokens_unprocessed(self.text))
        self.is_code = bytearray(b"\1" * (len(self.text) + 1))
        for start, kind, value in self.tokens:
            if kind in Comment or kind in String or kind in Token.Comment.Preproc:
                self.is_code[start : start + len(value)] = b"\0" * len(value)

    def mutants(self):
        yield from self.replaced_operators()
        yield from self.changed_numbers()
        yield from self.changed_texts()
        yield from self.changed_conditions()
        yield from self.removed_statements()
        yield from self.swapped_statements()

    def line_of(self, place):
        low, high = 0, len(self.lines)
        while high - low > 1:
            middle = (low + high) // 2
            low, high = (middle, high) if self.starts[middle] <= place else (low, middle)
        return low

    def is_preprocessed(self, line):
        return self.lines[line].lstrip().startswith("#")

    def replaced(self, kind, start, end, new):
        line = self.line_of(start)
        if self.is_preprocessed(line):
            return
        text = self.text[:start] + new + self.text[end:]
        yield Mutant(
            self.path, line + 1, kind, self.lines[line].strip(), text.split("\n")[line].strip(), text
        )

    def places(self, pattern):
        for match in re.finditer(pattern, self.text):
            if self.is_code[match.start()] and self.is_code[match.end() - 1]:
                yield match

    def replaced_operators(self):
        for operator, others in OPERATORS.items():
            for match in self.places(re.escape(operator)):
                for other in others:
                    yield from self.replaced("operator", match.start(), match.end(), other)
        for match in self.places(r"\+\+|--"):
            yield from self.replaced(
                "operator", match.start(), match.end(), "--" if match.group() == "++" else "++"
            )

    def changed_numbers(self):
        for start, kind, value in self.tokens:
            if kind not in Number or kind is Number.Float:
                continue
            digits = re.match(r"0[xX][0-9a-fA-F]+|\d+", value)
            if not digits:
                continue
            number = int(digits.group(), 0)
            for other in {number + 1, number - 1} if number > 1 else {number + 1}:
                yield from self.replaced("number", start, start + digits.end(), str(other))

    def changed_texts(self):
        for match in re.finditer(r'"((?:[^"\\\n]|\\.)*)"', self.text):
            if self.is_code[match.start()]:
                continue
            line = self.line_of(match.start())
            if "//" in self.lines[line][: match.start() - self.starts[line]]:
                continue
            inner = match.group(1)
            other = inner[:-1] if inner and inner[-2:-1] != "\\" else inner + "x"
            yield from self.replaced("text", match.start(1), match.end(1), other)

    def changed_conditions(self):
        for match in self.places(r"\btrue\b|\bfalse\b"):
            other = "false" if match.group() == "true" else "true"
            yield from self.replaced("condition", match.start(), match.end(), other)
        for match in self.places(r"!(?=[\w(])"):
            yield from self.replaced("condition", match.start(), match.end(), "")
        for match in self.places(r"\bif \((?=[\w*:.()>\-]+\) \{)"):
            yield from self.replaced("condition", match.end(), match.end(), "!")

    def statements(self):
        if self.path.endswith(".h"):
            return
        for number, line in enumerate(self.lines):
            match = STATEMENT.match(line)
            if not match or not self.is_code[self.starts[number] + len(match["indent"])]:
                continue
            text = match["text"]
            if NOT_A_STATEMENT.match(text) or text.count("(") != text.count(")"):
                continue
            if self.ends_a_statement(number - 1):
                yield number, match["indent"], text

    def ends_a_statement(self, number):
        before = self.lines[number].strip()
        return before == "" or before.startswith("//") or before.endswith(("{", "}", ";", ":"))

    def removed_statements(self):
        for number, indent, text in self.statements():
            if DECLARATION.match(text):
                continue
            lines = list(self.lines)
            lines[number] = indent + ";"
            yield Mutant(self.path, number + 1, "left out", text, ";", "\n".join(lines))

    def swapped_statements(self):
        before = None
        for number, indent, text in self.statements():
            if (
                before
                and before[0] == number - 1
                and before[1] == indent
                and not (DECLARATION.match(text) and DECLARATION.match(before[2]))
            ):
                lines = list(self.lines)
                lines[number - 1], lines[number] = lines[number], lines[number - 1]
                yield Mutant(
                    self.path, number, "swapped", f"{before[2]} {text}", f"{text} {before[2]}", "\n".join(lines)
                )
            before = (number, indent, text)


class Workshop:
    """A copy of the tree in which one mutant after the other is built and tested."""

    def __init__(self, folder, programs):
        self.tree = folder / "tree"
        self.build = folder / "build"
        self.programs = programs

    def prepare(self):
        files = subprocess.run(
            ["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True, text=True
        ).stdout.split("\0")
        for name in filter(None, files):
            source, target = ROOT / name, self.tree / name
            if target.exists() and target.stat().st_mtime == source.stat().st_mtime:
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            shutil.copy2(source, target)
        self.command(
            ["cmake", "-S", self.tree, "-B", self.build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=None",
             "-DCMAKE_CXX_FLAGS=-O1", "-DMOXWRITER_BUILD_TOOLS=OFF", "-DMOXWRITER_BUILD_EXAMPLES=OFF",
             "-DMOXWRITER_WITH_DEFLATE=OFF"],
            check=True)  # fmt: skip
        self.command(["cmake", "--build", self.build, "--target", *self.programs], check=True)
        for program in self.programs:
            if self.fails(program):
                sys.exit(f"mutate: {program} fails without any mutant")

    def command(self, words, check=False):
        return subprocess.run(
            words, check=check, stdout=subprocess.DEVNULL, stderr=None if check else subprocess.DEVNULL
        )

    def judge(self, mutant):
        """Returns who killed it, "does not compile", or None for a survivor."""
        path = self.tree / mutant.path
        original = path.read_text(encoding="utf-8")
        path.write_text(mutant.text, encoding="utf-8")
        try:
            for program in self.programs:
                built = self.command(["cmake", "--build", self.build, "--target", program])
                if built.returncode != 0:
                    return "does not compile"
                if self.fails(program):
                    return program
            return None
        finally:
            path.write_text(original, encoding="utf-8")

    def fails(self, program):
        def limit():
            resource.setrlimit(resource.RLIMIT_CPU, (CPU_SECONDS, CPU_SECONDS))
            resource.setrlimit(resource.RLIMIT_AS, (ADDRESS_SPACE, ADDRESS_SPACE))
            resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

        command = [self.build / "tests" / program, "--gtest_brief=1", "--gtest_fail_fast"]
        try:
            return subprocess.run(
                command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, preexec_fn=limit, timeout=600
            ).returncode != 0  # fmt: skip
        except subprocess.TimeoutExpired:
            return True


def explained():
    """The keys of the mutants that no test can kill, each with its reason in the comment above it."""
    if not EXPLAINED.exists():
        return set()
    lines = EXPLAINED.read_text(encoding="utf-8").splitlines()
    return {line for line in lines if line and not line.startswith("#")}


def sources(patterns):
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
    parser.add_argument("--minutes", type=float, help="stop after that time")
    parser.add_argument("--jobs", type=int, default=os.cpu_count(), help="trees to work in at once")
    parser.add_argument("--work", type=Path, default=ROOT / "build" / "mutation", help="folder to build in")
    return parser.parse_args()


class Run:
    def __init__(self, mutants, minutes):
        self.waiting = list(reversed(mutants))
        self.end = time.monotonic() + minutes * 60 if minutes else None
        self.lock = threading.Lock()
        self.counts = {}
        self.survivors = []
        self.known = explained()

    def next(self):
        with self.lock:
            late = self.end is not None and time.monotonic() > self.end
            return self.waiting.pop() if self.waiting and not late else None

    def work(self, workshop):
        while (mutant := self.next()) is not None:
            result = workshop.judge(mutant)
            if result is None and mutant.key() in self.known:
                result = "explained"
            with self.lock:
                self.counts[result or "survived"] = self.counts.get(result or "survived", 0) + 1
                if result is None:
                    self.survivors.append(mutant)
                    print(f"survived: {mutant}", flush=True)

    def report(self):
        print(", ".join(f"{count} {result}" for result, count in sorted(self.counts.items())))
        if self.waiting:
            print(f"{len(self.waiting)} not tried")


def main():
    arguments = parse_arguments()
    mutants = [mutant for path in sources(arguments.patterns) for mutant in Source(path).mutants()]
    if arguments.sample:
        mutants = random.Random(arguments.seed).sample(mutants, min(arguments.sample, len(mutants)))
    if arguments.list:
        print(*mutants, sep="\n")
        print(f"{len(mutants)} mutants")
        return 0
    workshops = [Workshop(arguments.work / str(number), TEST_PROGRAMS) for number in range(arguments.jobs)]
    for workshop in workshops:
        workshop.prepare()
    run = Run(mutants, arguments.minutes)
    threads = [threading.Thread(target=run.work, args=(workshop,)) for workshop in workshops]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    run.report()
    return 1 if run.survivors else 0


if __name__ == "__main__":
    sys.exit(main())
