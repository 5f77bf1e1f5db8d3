"""Gives both readers the same files, intact and damaged: their dumps must be equal, or both must refuse.

Needs in the environment: DUMP_MODEL and MAKE_CORPUS (the programs of this folder), MOX (the tool; without it no real
models are compared) and MOXWRITER_DATA_DIR (real models). With a TEST_CASE_STRIDE, of all damages only
every one of that number is tried.
"""

import json
import os
import random
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "reader" / "python"), str(ROOT / "reader" / "python" / "tests"),
                str(ROOT / "tests" / "conformance")]

import make  # noqa: E402
import moxfile  # noqa: E402
import moxreader  # noqa: E402

GOLDEN = ROOT / "tests" / "golden" / "golden.mox"
STRIDE = int(os.environ.get("TEST_CASE_STRIDE", 1))
DATA = Path(os.environ.get("MOXWRITER_DATA_DIR", ROOT.parent / "shared" / "data"))


def run(*command, **options):
    return subprocess.run([str(word) for word in command], capture_output=True, text=True, check=False, **options)


def cpp_dumps(folder):
    """Writes the dump of each file of a folder that the C++ reader does not refuse beside it, as FILE.json."""
    result = run(os.environ["DUMP_MODEL"], folder, "dumps")
    if result.returncode != 0:
        raise AssertionError(f"{folder}: the C++ reader ended with {result.returncode}: {result.stderr}")


def python_dump(source):
    """The dump, and whether all of the file could be read; None for both if the file is refused."""
    try:
        with moxreader.File(source) as file:
            dump = moxreader.Dump(file, moxreader.Model(file), numbers=True, storage=True)
            return dump.text(), dump.damage is None
    except moxreader.MoxError:
        return None, None


def python_verdict(data):
    text, is_whole = python_dump(data)
    if text is None:
        return "refused"
    return f"{'read' if is_whole else 'in part'} {zlib.crc32(text.encode()):08x}"


def damaged(data, damage):
    verb, *numbers = damage.split()
    if verb == "cut":
        return data[:int(numbers[0])]
    result = bytearray(data)
    for offset, mask in zip(numbers[::2], numbers[1::2]):
        result[int(offset)] ^= int(mask)
    return bytes(result)


def plain_copy(path):
    """The same model in blocks that are not compressed, so that damage reaches their records."""
    with moxreader.File(path) as file:
        return moxfile.file([(block.name.encode(), file.read_block(block), 0) for block in file.blocks
                             if block.holds_data])


class Agreement(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def compare_all(self, folder, can_be_refused=()):
        """Compares the dumps of all files of a folder. Returns them by name, None for those that are refused."""
        paths = sorted(folder.iterdir())
        self.assertTrue(paths)
        cpp_dumps(folder)
        dumps = {}
        for path in paths:
            with self.subTest(file=path.name):
                written = path.with_name(path.name + ".json")
                dumps[path.stem] = python_dump(path)[0]
                self.assertEqual(written.read_text("utf-8") if written.exists() else None, dumps[path.stem])
                if path.stem not in can_be_refused:
                    self.assertIsNotNone(dumps[path.stem], "both readers refuse the file")
        return dumps

    def save(self, name, data):
        path = self.folder / name
        path.write_bytes(data)
        return path

    def compare_damaged(self, data, damages):
        """Returns how many of the damages both readers find: those for which they refuse the file or some numbers."""
        path = self.save("damaged.mox", data)
        reader = subprocess.Popen([os.environ["DUMP_MODEL"], str(path), "damages"], text=True,
                                  stdin=self.save("damages", "\n".join(damages).encode() + b"\n").open(),
                                  stdout=(self.folder / "verdicts").open("w"), stderr=subprocess.PIPE)
        with reader:
            expected = [python_verdict(damaged(data, damage)) for damage in damages]
            complaint = reader.communicate()[1]
        self.assertEqual(0, reader.returncode, complaint)
        verdicts = (self.folder / "verdicts").read_text().split("\n")[:-1]
        self.assertEqual(len(damages), len(verdicts))
        for damage, verdict, own in zip(damages, verdicts, expected):
            self.assertEqual(verdict, own, damage)
        return sum(not verdict.startswith("read") for verdict in verdicts)


class WholeFiles(Agreement):
    def test_models_saved_with_small_and_large_blocks(self):
        for size in ("1", "4096", ""):
            folder = self.folder / f"blocks{size}"
            folder.mkdir()
            variable = {"MOXWRITER_DEFAULT_BLOCK_SIZE": size} if size else {}
            result = run(os.environ["MAKE_CORPUS"], folder, env={**os.environ, **variable})
            self.assertEqual(0, result.returncode, result.stderr)
            # With small blocks there is an Index Block among the many, which can damage the file.
            self.compare_all(folder, can_be_refused=("many",) if size else ())

    def test_real_models(self):
        mox = os.environ.get("MOX")
        if not mox or not DATA.is_dir():
            self.skipTest(f"there is no mox tool or no folder {DATA}")
        for model in sorted(DATA.iterdir()):
            if run(mox, "import", model, self.folder / (model.name + ".mox")).returncode != 0:
                print(f"left out: mox import takes no {model.name}", file=sys.stderr)
        if not any(self.folder.iterdir()):
            self.skipTest("mox import takes none of the models")
        self.compare_all(self.folder)

    def test_what_no_writer_makes_today(self):
        ring = moxfile.link(b"a", 0x05000006, 3, 3) + moxfile.link(b"b", 0x05000006, 3, 2)
        lost = moxfile.link(b"a", 0x05000006, 9, 0) + moxfile.link(b"b", 0x05000006, 3, 4)
        for name, links in (("chain", moxfile.SAMPLE_LINKS), ("ring", ring), ("lost", lost)):
            streams = moxfile.sample(links)
            self.save(name + ".mox", moxfile.compressed_file(streams))
            self.save(name + "-plain.mox", moxfile.plain_file(streams))
        self.compare_all(self.folder)

    def test_empty_block_inside_a_part_that_covers_others(self):
        self.save("low.mox", make.arrays([1500] * 30, restarts=[19], lost=[8]))
        blocks = json.loads(self.compare_all(self.folder)["low"])["blocks"]
        self.assertEqual([5, 6, 7, *range(9, 18)], [block["id"] for block in blocks if block["overwritten"]])

    def test_files_of_the_conformance_set(self):
        for name, data in make.make_files().items():
            self.save(name + ".mox", data)
        expected = json.loads((ROOT / "tests" / "conformance" / "expected.json").read_text())
        refused = {name for name, each in expected.items() if each["result"] == "refuse"}
        dumps = self.compare_all(self.folder, can_be_refused=refused)
        self.assertEqual(refused, {name for name, dump in dumps.items() if dump is None})


class DamagedFiles(Agreement):
    def test_blocks_that_hold_something_else_than_they_state(self):
        content = moxfile.sample()[b"Heavy Data"]
        stream, size = zlib.compress(content), len(content)
        wrong = {"lost": b"", "no-length": b"\x20\0", "no-stream": moxfile.u32(size),
                 "short": moxfile.u32(size + 1) + stream, "long": moxfile.u32(size - 1) + stream,
                 "nothing": moxfile.u32(0) + stream, "huge": moxfile.u32(0xFFFFFFFF) + stream,
                 "after": moxfile.u32(size) + stream + b"x", "cut": moxfile.u32(size) + stream[:-1],
                 "checksum": moxfile.u32(size) + stream[:-1] + bytes([stream[-1] ^ 1])}
        others = {name: stored for name, stored in moxfile.sample().items() if name != b"Heavy Data"}
        for name, heavy in wrong.items():
            blocks = [(b"Heavy Data", heavy, 1), *((key, stored, 0) for key, stored in others.items())]
            self.save(name + ".mox", moxfile.file(blocks))
        for name, dump in self.compare_all(self.folder).items():
            nodes = json.loads(dump)["nodes"]
            parts = nodes[2]["datasets"][:2] + nodes[5:]  # Both arrays and the sets of nodes.
            self.assertTrue(all("unreadable" in part for part in parts), name)

    def test_files_cut_short(self):
        data = GOLDEN.read_bytes()
        sizes = [*range(0, 40), *range(40, len(data), 19), len(data) - 1][::STRIDE]
        self.assertEqual(len(sizes), self.compare_damaged(data, [f"cut {size}" for size in sizes]))

    def test_flipped_bits_in_the_index_and_the_compressed_blocks(self):
        data = GOLDEN.read_bytes()
        flips = [f"flip {offset} {1 << offset % 8}" for offset in range(0, len(data), STRIDE)]
        flips += [f"flip {offset} {1 << bit}" for offset in range(20) for bit in range(8)]
        refused = self.compare_damaged(data, flips)
        # At least one bit of each byte of the blocks, the name lengths, and the first lengths of the blocks.
        self.assertGreater(refused, (len(data) - 2800) // STRIDE)

    def test_flipped_bits_in_records_that_are_not_compressed(self):
        for data in (moxfile.plain_file(moxfile.sample()), plain_copy(GOLDEN)):
            flips = [f"flip {offset} {1 << bit}" for offset in range(2800, len(data)) for bit in (offset % 7, 7)]
            flips = flips[::STRIDE]
            self.assertGreater(self.compare_damaged(data, flips), len(flips) // 4)

    def test_files_with_lost_blocks(self):
        chance = random.Random(4)
        files = make.make_files()
        for name in ("low-blocks-over-earlier-ones", "low-blocks-twice", "lost-blocks-in-a-row"):
            data = files[name]
            # Mostly in the index, since it decides where blocks lie.
            places = [chance.randrange(2800) for _ in range(60)] + [chance.randrange(len(data)) for _ in range(40)]
            damages = [f"flip {place} {1 << chance.randrange(8)}" for place in places]
            damages += [f"cut {len(data) - chance.randrange(1, len(data))}" for _ in range(20)]
            damages = damages[::STRIDE]
            self.assertEqual(len(damages), self.compare_damaged(data, damages), name)

    def test_several_damages_at_once(self):
        chance = random.Random(20)
        for data in (GOLDEN.read_bytes(), plain_copy(GOLDEN)):
            damages = []
            for _ in range(150 // STRIDE):
                places = [(chance.randrange(2800, len(data)), chance.randrange(1, 256)) for _ in range(2)]
                damages.append("flip " + " ".join(f"{offset} {mask}" for offset, mask in places))
            self.assertGreater(self.compare_damaged(data, damages), 0)


if __name__ == "__main__":
    unittest.main(verbosity=2)
