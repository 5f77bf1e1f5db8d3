"""Imports damaged Exodus II, CGNS and Gmsh files as a user does: import_damaged.py SECONDS.

Each run of `mox import` has to end in time, within its memory, with 0 and a file that `mox check` takes, or with 1, one
line and nothing left behind. Needs MOX in the environment. Files for which it does not go into FUZZ_FINDS (else the
current folder). With FUZZ_SEED other files are made. Ends with 1 if there are finds.
"""

import os
import random
import resource
import shutil
import struct
import subprocess
import sys
import tempfile
import time
import zlib
from pathlib import Path

from foreign_seeds import foreign_files

try:
    import h5py
except ImportError:
    h5py = None

MEMORY = 512  # MiB that an import may take for the file it reads.
MOST = MEMORY + 256
LONGEST = 20  # Seconds.
CHECKED = 0.1
LIMITS = (0, 1, 2, 0x7F, 0xFF, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF)
HDF5 = b"\x89HDF\r\n\x1a\n"


def flip_bits(data, chance):
    for _ in range(chance.randrange(1, 4)):
        data[chance.randrange(len(data))] ^= 1 << chance.randrange(8)


def set_byte(data, chance):
    data[chance.randrange(len(data))] = chance.randrange(256)


def set_word(data, chance):
    """In the byte orders of both netCDF (big) and all others."""
    if len(data) >= 4:
        order = chance.choice("<>")
        struct.pack_into(order + "I", data, chance.randrange(len(data) - 3), chance.choice(LIMITS))


def set_head_word(data, chance):
    """Most counts stand in the first kilobytes of a file."""
    if len(data) >= 4:
        place = chance.randrange(min(len(data), 2048) - 3) // 4 * 4
        struct.pack_into(chance.choice("<>") + "I", data, place, chance.choice(LIMITS))


def cut(data, chance):
    del data[chance.randrange(1, len(data)):]


def remove(data, chance):
    place = chance.randrange(len(data))
    del data[place:place + chance.choice((1, 4, 16, 256))]


def repeat(data, chance):
    place = chance.randrange(len(data))
    data[place:place] = data[place:place + chance.choice((1, 4, 16, 256))]


def change_line(data, chance):
    """A number of a text file, or a line."""
    lines = bytes(data).split(b"\n")
    i = chance.randrange(len(lines))
    words = lines[i].split(b" ")
    words[chance.randrange(len(words))] = chance.choice((b"0", b"-1", b"4294967296", b"1e999", b"nan", b"", b'"x', b"99"))
    lines[i] = chance.choice((b" ".join(words), b" ".join(words), b"", lines[chance.randrange(len(lines))]))
    data[:] = b"\n".join(lines)


ANY = (flip_bits, flip_bits, set_byte, set_word, set_head_word, cut, remove, repeat)


def change_hdf5(path, chance):
    """Changes an attribute or a dataset through the library, so that the file itself stays sound."""
    with h5py.File(path, "r+") as file:
        found = []
        file.visititems(lambda _, item: found.append(item))
        item = chance.choice(found)
        verb = chance.randrange(4)
        if verb == 0:
            del file[item.name]
        elif verb == 1 and item.attrs:
            del item.attrs[chance.choice(list(item.attrs))]
        elif verb == 2 and isinstance(item, h5py.Dataset) and item.size:
            values = item[()]
            flat = values.reshape(-1).view("u1")
            flat[chance.randrange(len(flat))] ^= 1 << chance.randrange(8)
            item[...] = values
        else:
            other = chance.choice(found)
            file.move(item.name, other.name + "/x" if isinstance(other, h5py.Group) else other.name + "x")


def damage(path, data, chance):
    """Writes a damaged copy of a file."""
    path.write_bytes(data)
    if data.startswith(HDF5) and h5py and chance.random() < 0.4:
        try:
            change_hdf5(path, chance)
            return
        except (ValueError, OSError, KeyError, RuntimeError, TypeError):
            path.write_bytes(data)
    changed = bytearray(data)
    edits = ANY + (change_line, change_line, change_line) if data.startswith(b"$") else ANY
    for _ in range(chance.choice((1, 1, 1, 1, 2))):
        if changed:
            chance.choice(edits)(changed, chance)
    path.write_bytes(changed)


def limit_output():
    """A file that grows without end is stopped, and a crash leaves no core."""
    resource.setrlimit(resource.RLIMIT_FSIZE, (256 << 20, 256 << 20))
    resource.setrlimit(resource.RLIMIT_CORE, (0, 0))


class Importer:
    def __init__(self, folder):
        self.folder, self.temporary = folder / "work", folder / "temporary"
        self.temporary.mkdir()
        self.errors = folder / "errors"
        self.environment = {**os.environ, "TMPDIR": str(self.temporary)}

    def run(self, model):
        """What is wrong with an import of this file; nothing if it is as it has to be. And its exit code."""
        output = model.parent / "out.mox"
        command = [os.environ["MOX"], "import", "--memory", str(MEMORY), str(model), str(output)]
        with self.errors.open("wb") as errors:
            process = subprocess.Popen(command, stdout=errors, stderr=errors, env=self.environment,
                                       preexec_fn=limit_output)
            code, peak = self.wait(process)
        return self.fault(model, output, code, peak, self.errors.read_bytes()), code

    def wait(self, process):
        end = time.monotonic() + LONGEST * float(os.environ.get("FUZZ_PATIENCE", 1))
        while True:
            pid, status, used = os.wait4(process.pid, os.WNOHANG)
            if pid:
                process.returncode = os.waitstatus_to_exitcode(status)
                return process.returncode, used.ru_maxrss / 1024
            if time.monotonic() > end:
                process.kill()
                os.wait4(process.pid, 0)
                process.returncode = -9
                return "late", 0
            time.sleep(0.005)

    def fault(self, model, output, code, peak, text):
        left = {path.name for path in model.parent.iterdir()} - {model.name}
        lines = text.decode("utf-8", "replace").splitlines()
        if code not in (0, 1):
            return f"ends with {code}"
        if peak > MOST:
            return f"takes {peak:.0f} MiB"
        if any(self.temporary.iterdir()):
            return "leaves temporary files"
        if not text.endswith(b"\n") or any(not line.isprintable() for line in lines):
            return f"prints {text!r}"
        if code == 1 and (left or len(lines) != 1 or not lines[0].startswith(f"mox import: {model}: ")):
            return f"leaves {left} and says {lines}"
        if code == 0 and left != {output.name}:
            return f"leaves {left}"
        return ""


def check(output):
    """A result may break rules about what numbers mean (warnings), no others."""
    result = subprocess.run([os.environ["MOX"], "check", str(output)], capture_output=True, text=True, check=False)
    return "" if result.returncode in (0, 1) else f"makes a file with errors: {result.stdout}"


def main(seconds):
    seed = int(os.environ.get("FUZZ_SEED", time.time()))
    chance = random.Random(seed)
    counts = {"files": 0, "imported": 0, "refused": 0, "crashed inside": 0, "finds": 0}
    began = time.monotonic()
    with tempfile.TemporaryDirectory(dir="/dev/shm" if Path("/dev/shm").is_dir() else None) as scratch:
        folder = Path(scratch)
        importer = Importer(folder)
        importer.folder.mkdir()
        files = foreign_files(importer.folder)
        print(f"seed {seed}, from {', '.join(f'{name} ({len(data)} bytes)' for name, data in files.items())}", flush=True)
        while time.monotonic() - began < seconds:
            name = chance.choice(list(files))
            shutil.rmtree(importer.folder)
            importer.folder.mkdir()
            model = importer.folder / name
            damage(model, files[name], chance)
            fault, code = importer.run(model)
            if not fault and code == 0 and chance.random() < CHECKED:
                fault = check(importer.folder / "out.mox")
            counts["files"] += 1
            counts["imported" if code == 0 else "refused"] += 1
            counts["crashed inside"] += b" crashed on this file" in importer.errors.read_bytes()
            if fault:
                counts["finds"] += 1
                kept = Path(os.environ.get("FUZZ_FINDS", "."), f"import-{zlib.crc32(model.read_bytes()):08x}-{name}")
                shutil.copy(model, kept)
                print(f"{kept}: {fault}", flush=True)
    print(", ".join(f"{count} {what}" for what, count in counts.items()) + f" in {time.monotonic() - began:.0f} s")
    return 1 if counts["finds"] else 0


if __name__ == "__main__":
    sys.exit(main(float(sys.argv[1])))
