#!/usr/bin/env python3
"""Imports models whose numbers fill more blocks of real size than the head of a file knows, and reads them back.

fill   22 arrays of 200 MiB, of which each would fill a block by itself: the case in which blocks would lie too low
share  43 arrays of 100 MiB, of which two fill a block: 21 full blocks of the size that every program has

Every number is compared with the formula that it was made of. FOLDER needs 7 GB for one model after the other, and
gets empty again. Prints what each one was and what it took.
"""

import argparse
import os
import pathlib
import resource
import subprocess
import sys
import time

import numpy

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import large_exodus  # noqa: E402

BLOCK = 200 * 2**20
ROW = 4 * len(large_exodus.COMPONENTS)
# The fewest rows that make an array as large as a block, and as half a block.
CASES = {"fill": (-(-BLOCK // ROW), 22), "share": (-(-BLOCK // 2 // ROW), 43)}


def parse_arguments():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("mox", type=pathlib.Path, help="the program")
    parser.add_argument("folder", type=pathlib.Path, metavar="FOLDER")
    parser.add_argument("--cases", default=",".join(CASES), help="fill, share or both")
    parser.add_argument("--part", type=int, default=1, metavar="N",
                        help="an N-th of the rows, to try the test itself: that shows nothing of large models")
    return parser.parse_args()


def run(*command):
    result = subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False)
    if result.returncode != 0:
        sys.exit(f"large-model: {' '.join(str(word) for word in command)}:\n{result.stdout}{result.stderr}")
    return result.stdout + result.stderr


def check_step(mox, model, step, rows):
    command = [mox, "extract", model, "--node", "/large/Block 1", "--dataset", "stress", "--step", f"Step {step + 1}",
               "--format", "raw"]
    with subprocess.Popen([str(word) for word in command], stdout=subprocess.PIPE) as process:
        for first in range(0, rows, large_exodus.CHUNK):
            count = min(large_exodus.CHUNK, rows - first)
            found = numpy.frombuffer(process.stdout.read(count * ROW), "<f4").reshape(-1, ROW // 4)
            for component in range(ROW // 4):
                expected = large_exodus.stresses(step, component, first, count)
                if not numpy.array_equal(found[:, component], expected):
                    sys.exit(f"large-model: {model}: step {step + 1}: rows from {first} on differ")
        if process.stdout.read(1):
            sys.exit(f"large-model: {model}: step {step + 1} has too many rows")
    if process.returncode != 0:
        sys.exit(f"large-model: {model}: step {step + 1} can't be read")


def test(mox, folder, case, part):
    rows, steps = CASES[case]
    rows = -(-rows // part)
    exodus, model = folder / f"{case}.exo", folder / f"{case}.mox"
    begin = time.monotonic()
    try:
        large_exodus.write_exodus(exodus, rows, steps)
        run(mox, "import", exodus, model)
        size = exodus.stat().st_size
        exodus.unlink()
        run(mox, "check", model)
        for step in range(steps):
            check_step(mox, model, step, rows)
        blocks = next(line for line in run(mox, "info", model).splitlines() if line.startswith("blocks"))
        count = blocks.split()[1]
        print(f"{case}: {steps} arrays of {rows * ROW:,} bytes, {size / 2**30:.2f} GiB of Exodus II, became "
              f"{model.stat().st_size / 2**30:.2f} GiB with {count} blocks; it is whole, and every number is there "
              f"({time.monotonic() - begin:.0f} s by the clock)", flush=True)
    finally:
        exodus.unlink(missing_ok=True)
        model.unlink(missing_ok=True)


def main():
    options = parse_arguments()
    options.folder.mkdir(parents=True, exist_ok=True)
    mox = options.mox.resolve()
    os.environ.pop("MOXWRITER_DEFAULT_BLOCK_SIZE", None)
    for case in options.cases.split(","):
        test(mox, options.folder, case, options.part)
    own, children = resource.getrusage(resource.RUSAGE_SELF), resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"CPU: {own.ru_utime + own.ru_stime:.0f} s making and comparing, "
          f"{children.ru_utime + children.ru_stime:.0f} s mox; peak of mox {children.ru_maxrss / 1024:.0f} MiB")


if __name__ == "__main__":
    main()
