#!/usr/bin/env python3
"""How fast a field arrives in NumPy arrays, compared with the reader in C++: seconds of CPU time, in turn.

    PYTHONPATH=build/python python3 benchmarks/python_read.py build/benchmarks/read_file [MIB [ROUNDS]]
"""

import os
import subprocess
import sys
import tempfile
import time

import numpy as np

import moxwriter


def save(path, mebibytes):
    """Arrays of 16 MiB: waves with noise in their last bits."""
    rows = (16 << 20) // 12
    phase = np.linspace(0, 50, rows * 3, dtype=np.float32).reshape(rows, 3)
    noise = np.random.default_rng(1).random(phase.shape, np.float32) * np.float32(1e-3)
    moxwriter.compressor("zlib")
    with moxwriter.Model(path) as model:
        model.add_group("root")
        part = model.add_shape("part")
        for step in range(mebibytes // 16):
            model.add_array(part, "Displacement", np.sin(phase + step) + noise, step=f"Step {step}")


def read(path):
    begin = time.process_time()
    numbers = 0
    with moxwriter.open(path) as file:
        for node in file.geometries:
            for dataset in node.datasets:
                numbers += dataset.read().size
    return time.process_time() - begin, numbers


def main(program, mebibytes="1024", rounds="3"):
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "field.mox")
        save(path, int(mebibytes))
        ratios = []
        for _ in range(int(rounds)):
            native, count = subprocess.run([program, path], capture_output=True, text=True, check=True).stdout.split()
            python, numbers = read(path)
            assert numbers == int(count)
            ratios.append(float(native) / python)
            print(f"C++ {float(native):.2f} s, Python {python:.2f} s, speed {ratios[-1]:.2f} of C++")
        print(f"median: {sorted(ratios)[len(ratios) // 2]:.2f}")


if __name__ == "__main__":
    main(*sys.argv[1:])
