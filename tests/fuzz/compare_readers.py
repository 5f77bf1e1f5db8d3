"""Gives both readers mutated files until the time is up: compare_readers.py SECONDS [FOLDER...].

The folders have inputs of moxreader_records_fuzz, from which files are made too, or whole files. Needs DUMP_MODEL in the
environment. What the readers disagree on, or what takes one of them too long, goes into FUZZ_FINDS (else the current
folder). With FUZZ_SEED other files are made. Prints how many files were compared; ends with 1 if there are finds.
"""

import os
import random
import struct
import subprocess
import sys
import time
import zlib
from pathlib import Path

import seeds
from seeds import moxfile, moxreader

BATCH = 200
LONGEST = 1.0  # Seconds of work on one file.
LIMITS = (0, 1, 2, 3, 4, 5, 16, 0x7F, 0xFF, 0x100, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFE, 0xFFFFFFFF)


def set_word(data, chance):
    if len(data) >= 4:
        place = chance.randrange(len(data) - 3)
        number = chance.choice(LIMITS) if chance.random() < 0.7 else chance.randrange(len(data) + 4)
        struct.pack_into("<I", data, place, number)


def set_byte(data, chance):
    if data:
        data[chance.randrange(len(data))] = chance.choice((0, 1, 2, 3, 4, 5, 0x1E, 0x7F, 0xFF, chance.randrange(256)))


def flip_bit(data, chance):
    if data:
        data[chance.randrange(len(data))] ^= 1 << chance.randrange(8)


def remove(data, chance):
    place = chance.randrange(len(data) + 1)
    del data[place:place + chance.choice((1, 4, 8, 24, 1000))]


def repeat(data, chance):
    place = chance.randrange(len(data) + 1)
    data[place:place] = data[place:place + chance.choice((1, 4, 8, 24, 41))]


EDITS = (set_word, set_word, set_byte, set_byte, flip_bit, flip_bit, flip_bit, remove, repeat)


def mutated(data, chance, most):
    data = bytearray(data)
    for _ in range(chance.randrange(most)):
        chance.choice(EDITS)(data, chance)
    return bytes(data)


def packed(streams, chance):
    """A file of these streams in one block or two each, some of which are compressed, some lost."""
    blocks = []
    for name, content in streams.items():
        parts = chance.choice((1, 1, 1, 2, 3)) if len(blocks) < 15 else 1
        cuts = [len(content) * i // parts for i in range(parts + 1)]
        for start, end in zip(cuts, cuts[1:]):
            is_compressed = chance.random() < 0.3
            stored = moxfile.compressed(content[start:end]) if is_compressed else content[start:end]
            if chance.random() < 0.005:
                stored, is_compressed = b"", True
            blocks.append((name, stored, is_compressed + 0x20 * (chance.random() < 0.5)))
    if chance.random() < 0.1:
        chance.shuffle(blocks)
    return moxfile.file(blocks[:20])


def made_files(inputs, wholes, chance):
    """Mostly streams with changes in a few of them, in a file that is sound or nearly so."""
    while True:
        if chance.random() < 0.15:
            yield mutated(chance.choice(wholes), chance, 5)
            continue
        streams = dict(chance.choice(inputs))
        for _ in range(chance.choice((0, 0, 1, 1, 2))):
            name = chance.choice(list(streams))
            streams[name] = mutated(streams[name], chance, 3)
        file = packed(streams, chance)
        yield mutated(file, chance, 3) if chance.random() < 0.1 else file


def read_inputs(folders):
    inputs, wholes = list(seeds.models().values()), [data for data in seeds.make.make_files().values()]
    for folder in folders:
        for path in Path(folder).iterdir():
            try:
                data = path.read_bytes()
            except FileNotFoundError:  # A target that runs at the same time has found a smaller one.
                continue
            (wholes if data.startswith(moxfile.SIGNATURE) else inputs).append(
                data if data.startswith(moxfile.SIGNATURE) else seeds.streams_of_input(data))
    return [streams for streams in inputs if streams], [data for data in wholes if len(data) < 8192]


def python_verdict(data):
    try:
        with moxreader.File(data) as file:
            dump = moxreader.Dump(file, moxreader.Model(file), numbers=True, storage=True)
            text = dump.text()
            return f"{'read' if dump.damage is None else 'in part'} {zlib.crc32(text.encode()):08x}"
    except moxreader.MoxError:
        return "refused"
    except Exception as failure:  # What a reader must never end with.
        return f"{type(failure).__name__}: {failure}"


class CppReader:
    def __init__(self):
        self.start()

    def start(self):
        self.process = subprocess.Popen([os.environ["DUMP_MODEL"], "-", "files"], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE)

    def verdict(self, data):
        try:
            self.process.stdin.write(struct.pack("<I", len(data)) + data)
            self.process.stdin.flush()
            line = self.process.stdout.readline()
        except BrokenPipeError:
            line = b""
        if line:
            return line.decode().rstrip("\n")
        end = f"died with {self.stop()}"
        self.start()
        return end

    def stop(self):
        self.process.communicate()
        return self.process.returncode


class Comparison:
    def __init__(self, folders, seed):
        self.cpp, self.chance = CppReader(), random.Random(seed)
        self.files = made_files(*read_inputs(folders), self.chance)
        self.counts = {"files": 0, "read": 0, "in part": 0, "refused": 0, "finds": 0}

    def run(self, seconds):
        end = time.monotonic() + seconds
        while time.monotonic() < end:
            for _ in range(BATCH):
                self.compare(next(self.files))
        self.cpp.stop()
        return self.counts

    def compare(self, data):
        start = time.process_time()
        own = python_verdict(data)
        took = time.process_time() - start
        cpp = self.cpp.verdict(data)
        self.counts["files"] += 1
        kind = own.rsplit(" ", 1)[0] if own[-9:-8] == " " else own
        self.counts[kind] = self.counts.get(kind, 0) + 1
        if own != cpp or took > LONGEST:
            self.keep(data, own, cpp, took)

    def keep(self, data, own, cpp, took):
        self.counts["finds"] += 1
        path = Path(os.environ.get("FUZZ_FINDS", "."), f"disagreement-{zlib.crc32(data):08x}.mox")
        path.write_bytes(data)
        print(f"{path}: C++ {cpp}, Python {own}, which took {took:.1f} s", flush=True)


if __name__ == "__main__":
    began = time.monotonic()
    seed = int(os.environ.get("FUZZ_SEED", time.time()))
    result = Comparison(sys.argv[2:], seed).run(float(sys.argv[1]))
    print(f"seed {seed}: " + ", ".join(f"{count} {what}" for what, count in result.items()) +
          f" in {time.monotonic() - began:.0f} s, {time.process_time():.0f} s of them CPU")
    sys.exit(1 if result["finds"] else 0)
