"""Compiles and runs the code blocks of the pages, each page in a scratch folder, and compares what they print.

    run_pages.py BUILD WORK [--update] [PAGE]...

BUILD is a build of the project with its tool, its examples and its Python package. In the scratch folders, which are
made anew in WORK, `moxwriter` is the project and `installed` the installation of the build. --update writes what was
printed into the pages.
"""

import os
import re
import shutil
import subprocess
import sys
from pathlib import Path

import pages

DATE = re.compile(r"\b[A-Z][a-z]{2} [A-Z][a-z]{2} [ 0-9]\d \d\d:\d\d:\d\d \d{4} \w+")
MINUTES = 20 * 60


class Failed(Exception):
    pass


def run(command, folder, environment, text=None):
    return subprocess.run(command, cwd=folder, env=environment, input=text, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False, timeout=MINUTES)


def same(one, other):
    return DATE.sub("DATE", one) == DATE.sub("DATE", other)


class Scratch:
    """The folder in which the blocks of a page run, one after the other."""

    def __init__(self, folder, build, installed):
        self.folder = folder
        self.build = build
        folder.mkdir(parents=True)
        (folder / "moxwriter").symlink_to(pages.ROOT)
        (folder / "installed").symlink_to(installed)
        self.environment = dict(
            os.environ, TZ="UTC", LC_ALL="C.UTF-8",
            PATH=os.pathsep.join([str(installed / "bin"), str(build / "examples"), os.environ["PATH"]]),
            LD_LIBRARY_PATH=str(next(installed.glob("lib*/**/libmoxwriter.so")).parent),
            PYTHONPATH=str(build / "python"), PYTHONDONTWRITEBYTECODE="1")
        # The package is built for one Python, which need not be the first of the path.
        cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
        found = re.search(r"^MOXWRITER_PYTHON:\w+=(.+)$", cache, re.M)
        self.python = found[1] if found else "python3"
        self.printed = ""

    def take(self, block):
        """Does what is to become of the block, and gives the text that belongs into the page instead of its own."""
        if block.mark("file"):
            path = self.folder / block.mark("file")
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(block.text, encoding="utf-8")
        if block.mark("compile") is not None:
            self.compile(block)
        if block.mark("run") is not None:
            self.run(block)
        if block.mark("prints") is not None:
            return block.text if same(block.text, self.printed) else self.printed
        return None

    def run(self, block):
        command = {"sh": ["sh", "-e", "-s"], "python": [self.python, "-"]}[block.language]
        done = run(command, self.folder, self.environment, block.text)
        self.printed = done.stdout
        if (done.returncode != 0) != ("fails" in block.mark("run")):
            raise Failed(f"{block} ends with {done.returncode}:\n{done.stdout}")

    def compile(self, block):
        source = self.folder / "block.cpp"
        source.write_text(block.text, encoding="utf-8")
        done = run(["c++", "-std=c++20", "-Wall", "-Wextra", "-Werror", "-I", str(pages.ROOT / "include"),
                    "-I", str(pages.ROOT / "reader" / "include"), str(source), "-o", str(self.folder / "block"),
                    *(str(path) for path in self.build.glob("reader/libmoxreader.*[ao]")),
                    "-L", self.environment["LD_LIBRARY_PATH"], "-lmoxwriter", "-lz"], self.folder, self.environment)
        if done.returncode != 0:
            raise Failed(f"{block} does not compile:\n{done.stdout}")


def check(page, scratch, update):
    """What is wrong with the page, and how many blocks were used."""
    problems, count = [], 0
    texts = {}
    for block in pages.blocks(page):
        try:
            texts[block.line] = scratch.take(block)
        except Failed as failure:
            return [*problems, str(failure)], count
        count += 1
        if texts[block.line] is not None and texts[block.line] != block.text and not update:
            problems.append(f"{block} is not what was printed:\n{texts[block.line]}")
    if update:
        pages.fill(page, lambda block: texts.get(block.line))
    return problems, count


def install(build, folder):
    done = subprocess.run(["cmake", "--install", str(build), "--prefix", str(folder)], capture_output=True, text=True,
                          check=False)
    if done.returncode != 0:
        sys.exit(f"run_pages.py: {build} can't be installed: {done.stderr or done.stdout}")


def main(arguments):
    update = "--update" in arguments
    build, work, *chosen = (Path(word).resolve() for word in arguments if word != "--update")
    shutil.rmtree(work, ignore_errors=True)
    install(build, work / "installed")
    failed = False
    for page in chosen or pages.all_pages():
        used = [block for block in pages.blocks(page)
                if any(block.mark(kind) is not None for kind in ("file", "run", "prints", "compile"))]
        if not used:
            continue
        name = str(page.relative_to(pages.ROOT)).replace("/", "-")
        problems, count = check(page, Scratch(work / name, build, work / "installed"), update)
        failed = failed or bool(problems)
        print(f"{page.relative_to(pages.ROOT)}: {count} blocks", "FAILED" if problems else "ok", flush=True)
        for problem in problems:
            print(problem, file=sys.stderr)
    sys.exit(1 if failed else 0)


if __name__ == "__main__":
    main(sys.argv[1:])
