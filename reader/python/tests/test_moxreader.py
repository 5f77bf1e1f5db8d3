"""Tests of the Python reader. They can run alone: python3 -m unittest discover -s reader/python/tests"""

import contextlib
import io
import json
import math
import os
import struct
import subprocess
import sys
import tempfile
import unittest
import zlib
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[1] / "moxreader.py"
sys.path.insert(0, str(SCRIPT.parent))

import moxfile  # noqa: E402
from moxfile import compressed, f32, u8, u32  # noqa: E402

import moxreader  # noqa: E402


def open_sample(links=moxfile.SAMPLE_LINKS):
    file = moxreader.File(moxfile.compressed_file(moxfile.sample(links)))
    return file, moxreader.Model(file)


def sample_with(name, content):
    return moxfile.plain_file({**moxfile.sample(), name: content})


class MoxTest(unittest.TestCase):
    def assert_refused(self, data, complaint):
        with self.assertRaisesRegex(moxreader.MoxError, complaint):
            with moxreader.File(data) as file:
                for block in file.blocks:
                    file.read_block(block)
                moxreader.Model(file)


class Front(MoxTest):
    def test_another_format_is_refused(self):
        self.assert_refused(b"\x89PNG\r\n\x1a\n" + bytes(3000), "signature")

    def test_another_version_is_refused(self):
        self.assert_refused(moxfile.SIGNATURE + b"1.4\0" + bytes(3000), "version")

    def test_a_file_that_was_never_closed_is_told_apart(self):
        self.assert_refused(moxfile.SIGNATURE + b"1.3\0" + bytes(3000), "never closed")

    def test_a_file_cut_at_any_length_is_refused(self):
        data = moxfile.compressed_file(moxfile.sample())
        for size in range(len(data)):
            self.assert_refused(data[:size], "")


class Index(MoxTest):
    def test_a_table_of_another_count_is_refused(self):
        data = bytearray(moxfile.compressed_file(moxfile.sample()))
        data[16] = 19
        self.assert_refused(bytes(data), "19 records")

    def test_a_record_of_another_name_length_is_refused(self):
        data = bytearray(moxfile.compressed_file(moxfile.sample()))
        data[21] = 127
        self.assert_refused(bytes(data), "length of 127")

    def test_an_index_block_continues_the_table(self):
        table = (u32(200) + moxfile.record(21, b"Second", 2, 0)
                 + b"".join(moxfile.empty_record(number) for number in range(22, 221)))
        blocks = [(b"First", b"abc", 0)] * 19 + [(b"\x0bIndex Block ", table, 0x20)]
        file = moxreader.File(moxfile.file(blocks) + b"de")
        self.assertEqual(220, len(file.blocks))
        self.assertEqual(["First", "Second"], file.stream_names())
        self.assertEqual(2800 + 19 * 3 + 27804, file.blocks[20].position)
        self.assertEqual(b"de", file.read_block(file.blocks[20]))

    def test_an_index_block_before_the_end_of_its_table_is_refused(self):
        self.assert_refused(moxfile.file([(b"\x0bIndex Block ", bytes(27804), 0x20)]), "cannot be an Index Block")

    def test_a_name_can_fill_its_field(self):
        file = moxreader.File(moxfile.file([(b"n" * 128, b"abc", 0)]))
        self.assertEqual(["n" * 128], file.stream_names())


class Blocks(MoxTest):
    def refused_block(self, stored, complaint):
        self.assert_refused(moxfile.file([(b"Mox Tree", stored, 0x01)]), complaint)

    def test_blocks_of_one_name_are_one_stream(self):
        file = moxreader.File(moxfile.file([(b"a", compressed(b"one"), 1), (b"b", b"x", 0), (b"a", b"", 0),
                                            (b"a", b"two", 0)]))
        stream = moxreader.Stream(file, "a")
        self.assertEqual(6, stream.size)
        self.assertEqual(b"onetw", stream.read(5))
        stream.seek(1)
        self.assertEqual(b"ne", stream.read(2))

    def test_a_wrong_checksum_is_refused(self):
        stored = bytearray(compressed(b"content"))
        stored[-1] ^= 1
        self.refused_block(bytes(stored), "incorrect data check")

    def test_content_of_another_length_is_refused(self):
        stream = zlib.compress(b"content")
        self.refused_block(u32(6) + stream, "stated length")
        self.refused_block(u32(8) + stream, "stated length")

    def test_a_stream_that_ends_early_or_late_is_refused(self):
        stored = compressed(b"content")
        self.refused_block(stored[:-1], "stated length")
        self.refused_block(stored + b"x", "stated length")

    def test_lost_content_is_refused(self):
        self.refused_block(b"", "lost its content")

    def test_more_content_than_zlib_can_give_is_refused_before_memory_is_taken(self):
        self.refused_block(u32(0xFFFFFFFF) + zlib.compress(b""), "more content")


class LowBlocks(MoxTest):
    """Files whose writer took an Index Block to lie at 0, so that the blocks after it cover others."""

    COUNT = 105

    @staticmethod
    def payload(i):
        return bytes((i * 37 + row * row * 11 + row) % 251 for row in range(600))

    def save(self, restarts):
        keys = [b"T%d" % i for i in range(self.COUNT)]
        light = u32(self.COUNT) + b"".join(moxfile.dataset(key, 0x0500000C, 600, 1, 600 * i)
                                           for i, key in enumerate(keys))
        tree = u32(1) + moxfile.node((1, 0, 0, 0, 0, 0), b"G", b"Geometry", b"0.7", 0)
        others = {b"Mox Tree": tree, b"Light Data": light, b"Attributes": moxfile.NO_ATTRIBUTES * self.COUNT,
                  b"Global Information": moxfile.sample()[b"Global Information"]}
        blocks = [(b"Heavy Data", compressed(self.payload(i)), 0x21) for i in range(self.COUNT)]
        blocks += [(name, compressed(content), 0x01) for name, content in others.items()]
        return moxfile.chained_file(blocks, restarts)

    def numbers(self, data):
        """The bytes of each dataset, None for those that are lost."""
        with moxreader.File(data) as file:
            model = moxreader.Model(file)
            result = []
            for dataset in model.datasets():
                try:
                    numbers = model.numbers(dataset)
                    result.append(b"".join(bytes(n >> 8 * plane & 0xFF for n in numbers) for plane in range(4)))
                except moxreader.MoxError as error:
                    self.assertRegex(str(error), "was written over")
                    result.append(None)
            return result

    def test_all_but_the_blocks_under_others_are_read(self):
        data = self.save(restarts=[19])
        with moxreader.File(data) as file:
            self.assertTrue(file.is_displaced)
            self.assertEqual(27804, file.blocks[20].position)
            lost = [block.id - (block.id > 19) for block in file.blocks if block.is_overwritten]
        expected = [None if i in lost else self.payload(i) for i in range(self.COUNT)]
        self.assertEqual(expected, self.numbers(data))
        self.assertTrue(0 < len(lost) < self.COUNT)

    def test_a_sound_file_is_read_whole(self):
        data = self.save(restarts=[])
        with moxreader.File(data) as file:
            self.assertFalse(file.is_displaced)
        self.assertEqual([self.payload(i) for i in range(self.COUNT)], self.numbers(data))

    def test_a_file_that_is_cut_is_refused(self):
        for restarts in ([], [19]):
            with moxreader.File(self.save(restarts)[:-1]) as file:
                self.assertFalse(file.is_displaced)
                with self.assertRaisesRegex(moxreader.MoxError, "reaches past the end"):
                    moxreader.Model(file)


class TheModel(MoxTest):
    def setUp(self):
        self.file, self.model = open_sample()
        self.addCleanup(self.file.close)

    def test_nodes_form_the_tree(self):
        names = [(node.id, node.parent, node.name, node.type) for node in self.model.nodes]
        self.assertEqual([(1, 0, "root", "Group"), (2, 1, "part", "Shape"), (3, 2, "part", "Geometry"),
                          (4, 1, "old", "Shape"), (5, 4, "\udcff", "Geometry"), (6, 1, "sets", "NodeSets")], names)
        self.assertEqual([2, 4, 6], self.model.node(1).children)
        with self.assertRaises(moxreader.MoxError):
            self.model.node(7)

    def test_a_group_has_its_transforms_and_attributes_of_all_kinds(self):
        group = self.model.node(1).content
        self.assertEqual([[1, 2, 3], [0, 0, 1, 0.5], [1, 1, 2], 1],
                         [list(group.translation), list(group.rotation), list(group.scale), group.kind])
        self.assertEqual({"count": 7, "name": "Müller", "pi": 3.25, "ratio": struct.unpack("<f", f32(0.1))[0]},
                         group.attributes)
        kinds = [type(value) for value in group.attributes.values()]
        self.assertEqual([moxreader.Integer, str, float, moxreader.Float], kinds)

    def test_materials_of_all_versions_are_read(self):
        new, old = (self.model.node(shape).content.material for shape in (2, 4))
        self.assertEqual(("0.3", 0.25, 0.5, 1), (new.version, new.transparency, new.shininess, new.flag))
        self.assertEqual(("0.1", 0.75, 0, 0), (old.version, old.transparency, old.shininess, old.flag))
        self.assertEqual([0, 0, 0, 5], list(old.emissive))

    def test_datasets_give_their_numbers_row_by_row(self):
        coordinates, ids, again, once_more = self.model.node(3).content.datasets
        self.assertEqual([1, 3, 5, 2, 4, 6], list(self.model.numbers(coordinates)))
        self.assertEqual([0x01020304, 0x05060708], list(self.model.numbers(ids)))
        self.assertEqual(("Ids", "Step 1", 12, True), (ids.name, ids.step, ids.variable_type, ids.vibration))
        self.assertIs(ids, self.model.holder(again))
        self.assertIs(ids, self.model.holder(once_more))
        self.assertEqual([0x01020304, 0x05060708], list(self.model.numbers(again)))

    def test_node_sets_are_read(self):
        self.assertEqual([("top", [(7, 1), (8, 2)]), ("", []), ("fe", [(9, 3)])],
                         self.model.node_sets(self.model.node(6)))

    def test_the_modifier_is_read(self):
        (modifier,) = self.model.modifiers
        self.assertEqual(("app", "2.0", "1.3", "today"), (modifier.source_name, modifier.source_version,
                                                          modifier.format_version, modifier.date))


    def test_the_first_separator_divides_a_key(self):
        dataset = moxreader.Dataset(1, 0, "A\x1eB\x1eC", 12, 5, False)
        self.assertEqual(("A", "B\x1eC"), (dataset.name, dataset.step))


class Links(MoxTest):
    def assert_no_end(self, links):
        file, model = open_sample(links)
        with file:
            for dataset in model.node(3).content.datasets[2:]:
                self.assertIsNone(model.holder(dataset))
                with self.assertRaisesRegex(moxreader.MoxError, "dataset . of node 3 is a link without an end"):
                    model.numbers(dataset)

    def test_a_ring_has_no_numbers(self):
        self.assert_no_end(moxfile.link(b"a", 0x05000006, 3, 3) + moxfile.link(b"b", 0x05000006, 3, 2))

    def test_a_link_to_nothing_has_no_numbers(self):
        self.assert_no_end(moxfile.link(b"a", 0x05000006, 9, 0) + moxfile.link(b"b", 0x05000006, 3, 4))
        self.assert_no_end(moxfile.link(b"a", 0x05000006, 1, 0) + moxfile.link(b"b", 0x05000006, 0, 0))


class DamagedRecords(MoxTest):
    def assert_stream_refused(self, name, content, complaint):
        self.assert_refused(sample_with(name, content), complaint)

    def test_bytes_behind_the_last_record_are_refused(self):
        for name, content in moxfile.sample().items():
            if name != b"Heavy Data":
                self.assert_stream_refused(name, content + b"\0", "1 bytes too many")

    def test_a_stream_that_ends_early_is_refused(self):
        for name, content in moxfile.sample().items():
            if name != b"Heavy Data":
                self.assert_stream_refused(name, content[:-1], "")

    def test_a_tree_without_nodes_is_refused(self):
        self.assert_stream_refused(b"Mox Tree", u32(0), "no node")

    def test_a_count_beyond_the_stream_is_refused(self):
        self.assert_stream_refused(b"Mox Tree", u32(0x7FFFFFFF) + bytes(100), "count of 2147483647")

    def test_missing_streams_are_refused(self):
        self.assert_refused(moxfile.file([]), 'no block "Mox Tree"')

    def test_each_link_of_each_node_is_checked(self):
        tree = moxfile.sample()[b"Mox Tree"]
        ids = [(1, 0, 0, 0, 2, 6), (2, 1, 0, 4, 3, 3), (3, 2, 0, 0, 0, 0), (4, 1, 2, 6, 5, 5), (5, 4, 0, 0, 0, 0),
               (6, 1, 4, 0, 0, 0)]
        for links in ids:
            for field in range(6):
                damaged = list(links)
                damaged[field] ^= 1
                self.assertEqual(1, tree.count(u32(*links)))
                self.assert_stream_refused(b"Mox Tree", tree.replace(u32(*links), u32(*damaged)), "")

    def test_a_descriptor_at_another_position_is_refused(self):
        self.assert_stream_refused(b"Mox Tree", u32(1) + moxfile.node((1, 0, 0, 0, 0, 0), b"", b"", b"", 1),
                                   "expects another position")

    def test_unknown_nodes_are_refused(self):
        for kind, version in ((b"Camera", b"0.1"), (b"Group", b"0.5"), (b"Geometry", b"0.6")):
            tree = u32(1) + moxfile.node((1, 0, 0, 0, 0, 0), b"", kind, version, 0)
            self.assert_stream_refused(b"Mox Tree", tree, "unknown version")

    def test_attributes_that_contradict_themselves_are_refused(self):
        stream_end = 4 * moxfile.NO_ATTRIBUTES
        no_value = moxfile.texts(b"a") + u32(1) + u8(0) + u32(0, 0, 0, 0)
        no_key = u32(0, 0, 1, 5, 0, 0, 0)
        unknown_kind = moxfile.texts(b"a") + u32(1) + u8(4) + u32(0, 0, 0, 0)
        for record in (no_value, no_key, unknown_kind):
            self.assert_stream_refused(b"Attributes", record + stream_end, "kinds")
        twice = moxfile.texts(b"a", b"a") + u32(2) + u8(0, 0) + u32(2, 5, 6, 0, 0, 0)
        self.assert_stream_refused(b"Attributes", twice + stream_end, "two attributes of one key")

    def test_a_truth_value_of_two_is_refused(self):
        light = bytearray(moxfile.sample()[b"Light Data"])
        light[41 + 4 + 4 + len("Coordinates") + 4] = 2
        self.assert_stream_refused(b"Light Data", bytes(light), "truth value of 2")

    def test_a_record_smaller_than_its_fields_is_refused(self):
        self.assert_stream_refused(b"Resources", u32(8) + moxfile.sample()[b"Resources"][4:], "too small")

    def test_fields_of_later_versions_are_stepped_over(self):
        later = moxfile.material(b"0.9", moxfile.COLOURS, f32(0.5, 0.25), u8(1), b"more")
        old = moxfile.material(b"0.1", moxfile.COLOURS, f32(0.75))
        with moxreader.File(sample_with(b"Resources", later + old)) as file:
            model = moxreader.Model(file)
            self.assertEqual(0.25, model.node(2).content.material.shininess)
            self.assertEqual(0.75, model.node(4).content.material.transparency)


class Unshuffling(MoxTest):
    def test_planes_become_rows(self):
        planes = bytes([0xA0, 0xC0, 0xA1, 0xC1, 0xA2, 0xC2, 0xA3, 0xC3,
                        0xB0, 0xD0, 0xB1, 0xD1, 0xB2, 0xD2, 0xB3, 0xD3])
        self.assertEqual([0xA3A2A1A0, 0xB3B2B1B0, 0xC3C2C1C0, 0xD3D2D1D0], list(moxreader.unshuffle(planes, 2, "I")))

    def test_nothing_stays_nothing(self):
        self.assertEqual([], list(moxreader.unshuffle(b"", 3, "f")))
        self.assertEqual([], list(moxreader.unshuffle(b"", 0, "f")))


class Floats(MoxTest):
    def single(self, bits):
        return struct.unpack("<f", struct.pack("<I", bits))[0]

    def test_have_the_fewest_digits_that_read_back_equal(self):
        for bits, text in ((0x3DCCCCCD, "0.1"), (0x3F4CCCCD, "0.8"), (0x3EAAAAAB, "0.33333334"), (0x4B800000, "16777216.0"),
                           (0x7F7FFFFF, "3.4028235e+38"), (0x00000001, "1e-45"), (0x00800000, "1.1754944e-38"),
                           (0x3F800001, "1.0000001"), (0xC0490FDB, "-3.1415927")):
            self.assertEqual(text, moxreader.float_text(self.single(bits)))

    def test_of_a_power_of_two_can_have_the_next_higher_digits(self):
        # 2^87 is 1.547425049106725e+26. The nearest of eight digits, 1.5474250e+26, is that of the float below.
        self.assertEqual("1.5474251e+26", moxreader.float_text(2.0 ** 87))
        for exponent in range(-149, 128):
            value = 2.0 ** exponent
            self.assertEqual(value, struct.unpack("<f", struct.pack("<f", float(moxreader.float_text(value))))[0])

    def test_have_an_exponent_below_1e_4_and_from_1e16_on(self):
        texts = [moxreader.float_text(value, is_single=False) for value in (1e-4, 1e-5, 1e15, 1e16, 123.5, -1.5e-7)]
        self.assertEqual(["0.0001", "1e-05", "1000000000000000.0", "1e+16", "123.5", "-1.5e-07"], texts)

    def test_keep_the_sign_of_zero(self):
        self.assertEqual(["0.0", "-0.0"], [moxreader.float_text(0.0), moxreader.float_text(-0.0)])

    def test_that_are_not_finite_are_texts(self):
        self.assertEqual(['"nan"', '"inf"', '"-inf"'],
                         [moxreader.float_text(value) for value in (math.nan, math.inf, -math.inf)])


class Texts(MoxTest):
    def test_escape_what_json_demands_and_nothing_else(self):
        self.assertEqual('"\\"\\\\/\\n\\u001b\x7fü"', moxreader.quoted('"\\/\n\x1b\x7fü'))

    def test_that_are_not_utf8_are_bytes(self):
        self.assertEqual('{"bytes":"61ff"}', moxreader.quoted(moxreader.to_text(b"a\xff")))


class Dumps(MoxTest):
    def dump(self, data, **options):
        with moxreader.File(data) as file:
            dump = moxreader.Dump(file, moxreader.Model(file), **options)
            return json.loads(dump.text()), dump.damage

    def test_have_the_whole_sample(self):
        result, damage = self.dump(moxfile.compressed_file(moxfile.sample()), numbers=True, no_date=True)
        self.assertIsNone(damage)
        self.assertNotIn("date", result["saves"][0])
        self.assertEqual({"bytes": "ff"}, result["nodes"][4]["name"])
        coordinates, ids, again, once_more = result["nodes"][2]["datasets"]
        self.assertEqual([[1, 3, 5], [2, 4, 6]], coordinates["numbers"])
        self.assertEqual([0x01020304, 0x05060708], ids["numbers"])
        self.assertEqual(({"node": 3, "dataset": 3}, {"node": 3, "dataset": 1}), (again["link"], again["holder"]))
        self.assertEqual({"node": 3, "dataset": 1}, once_more["link"])
        self.assertNotIn("holder", once_more)
        self.assertEqual([{"key": "count", "integer": 7}, {"key": "name", "text": "Müller"}, {"key": "pi", "double": 3.25},
                          {"key": "ratio", "float": 0.1}], result["nodes"][0]["attributes"])
        self.assertEqual([{"name": "top", "members": [[7, 1], [8, 2]]}, {"name": "", "members": []},
                          {"name": "fe", "members": [[9, 3]]}],
                         result["nodes"][5]["sets"])

    def test_have_numbers_and_storage_on_request_alone(self):
        data = moxfile.plain_file(moxfile.sample())
        brief, _ = self.dump(data)
        self.assertNotIn("blocks", brief)
        self.assertNotIn("numbers", brief["nodes"][2]["datasets"][0])
        self.assertNotIn("sets", brief["nodes"][5])
        full, _ = self.dump(data, storage=True)
        self.assertEqual({"id": 0, "number": 1, "name": "Heavy Data", "length": 113, "flags": 0, "reserved": 0,
                          "position": 2800, "overwritten": False}, full["blocks"][0])
        self.assertEqual(6, len(full["blocks"]))
        self.assertEqual([2, 4, 6], full["nodes"][0]["children"])
        self.assertEqual(24, full["nodes"][2]["datasets"][1]["position"])

    def test_name_what_cannot_be_read_and_go_on(self):
        streams = moxfile.sample()
        heavy = moxfile.compressed(streams.pop(b"Heavy Data"))
        blocks = [(b"Heavy Data", heavy[:-1] + bytes([heavy[-1] ^ 1]), 1)]
        blocks += [(name, content, 0) for name, content in streams.items()]
        result, damage = self.dump(moxfile.file(blocks), numbers=True)
        self.assertEqual("ChecksumMismatch", damage.code)
        first, second, *_ = result["nodes"][2]["datasets"]
        self.assertEqual(["ChecksumMismatch"] * 3,
                         [first["unreadable"], second["unreadable"], result["nodes"][5]["unreadable"]])
        self.assertNotIn("numbers", first)

    def test_name_why_a_link_has_no_end(self):
        ring = moxfile.link(b"a", 0x05000006, 3, 3) + moxfile.link(b"b", 0x05000006, 3, 2)
        nowhere = moxfile.link(b"a", 0x05000006, 9, 0) + moxfile.link(b"b", 0x05000006, 3, 2)
        for links, code in ((ring, "LinkCycle"), (nowhere, "BadLinkTarget")):
            result, damage = self.dump(moxfile.plain_file(moxfile.sample(links)))
            self.assertEqual([code, code], [each["unreadable"] for each in result["nodes"][2]["datasets"][2:]])
            self.assertEqual(code, damage.code)


class Script(MoxTest):
    def run_on(self, data, *options):
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "model of Müller.mox")
            Path(path).write_bytes(data)
            result = subprocess.run([sys.executable, str(SCRIPT), *options, path], capture_output=True, check=False,
                                    env={**os.environ, "PYTHONIOENCODING": "utf-8"})
        return result.returncode, result.stdout.decode(), result.stderr.decode()

    def test_a_model_is_printed_as_json(self):
        code, out, err = self.run_on(moxfile.compressed_file(moxfile.sample()))
        self.assertEqual((0, ""), (code, err))
        self.assertEqual("today", json.loads(out)["saves"][0]["date"])
        self.assertNotIn('"numbers"', out)

    def test_a_damaged_file_is_one_line_on_stderr(self):
        code, out, err = self.run_on(b"no such format", "--numbers")
        self.assertEqual((1, ""), (code, out))
        self.assertRegex(err, r"^moxreader.py: .*model of Müller.mox: the signature .*\n$")
        self.assertEqual(1, err.count("\n"))

    def test_lost_numbers_are_one_line_on_stderr_and_the_rest_is_printed(self):
        streams = {**moxfile.sample(), b"Heavy Data": b""}
        code, out, err = self.run_on(moxfile.plain_file(streams), "--numbers")
        self.assertEqual(1, code)
        self.assertEqual("EndOfStream", json.loads(out)["nodes"][2]["datasets"][0]["unreadable"])
        self.assertEqual(1, err.count("\n"))

    def test_a_missing_file_is_one_line_on_stderr(self):
        err = io.StringIO()
        with contextlib.redirect_stderr(err):
            self.assertEqual(1, moxreader.main(["no such file.mox"]))
        self.assertEqual("moxreader.py: no such file.mox: No such file or directory\n", err.getvalue())


if __name__ == "__main__":
    unittest.main()
