"""Tests of the meshes for ParaView, without ParaView: python3 -m unittest discover -s paraview/tests"""

import ast
import math
import os
import re
import sys
import unittest
from array import array
from pathlib import Path
from types import SimpleNamespace

import numpy

ROOT = Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "paraview"), str(ROOT / "reader" / "python")]

import moxmesh  # noqa: E402
import moxreader  # noqa: E402
from moxreader import Dataset, Geometry, Group, Integer, MoxError, Node, Shape  # noqa: E402

STEP = "\x1e"
SOURCES = [ROOT / "reader/python/moxreader.py", ROOT / "paraview/moxmesh.py", ROOT / "paraview/plugin.py"]


def node(number, parent, name="", content=None):
    return Node(number, parent, 0, 0, 0, 0, name, "", "", 0, content)


def group(translation=(0, 0, 0), rotation=(0, 0, 1, 0), scale=(1, 1, 1)):
    return Group(array("f", translation), array("f", rotation), array("f", scale), 0)


def dataset(key, kind, items=1, width=1, position=0, tag=1, vibration=False, **attributes):
    keys = {name.replace("_", " "): value for name, value in attributes.items()}
    return Dataset(2, 0, key, kind, tag, False, size=4 * width * items, width=width, position=position,
                   vibration=vibration, attributes=keys)


def mesh_of(nodes, elements):
    return [dataset("Coordinates", 1, nodes, 3), dataset("Connectivity", 6, 8, tag=5),
            dataset("Polylength", 9, elements, tag=5)]


def model_of(*datasets, nodes=4, elements=1):
    """A model of one part. None of its datasets are links."""
    geometry = Geometry([*mesh_of(nodes, elements), *datasets])
    return SimpleNamespace(nodes=[node(1, 0, "root", group()), node(2, 1, "part", geometry)],
                           holder=lambda each: None if each.is_link else each)


def results_of(*datasets, **counts):
    model = model_of(*datasets, **counts)
    return moxmesh.Results(model, moxmesh.find_parts(model))


def cells_of(dimension, lengths, nodes=None, is_nsided=False):
    nodes = range(sum(lengths)) if nodes is None else nodes
    nodes, lengths = (numpy.array(numbers, numpy.uint32) for numbers in (nodes, lengths))
    return moxmesh.make_cells(dimension, nodes, lengths, is_nsided)


class NumbersTest(unittest.TestCase):
    def test_numbers_of_all_golden_files_are_those_of_the_reader(self):
        compared = 0
        for path in sorted((ROOT / "tests/golden").glob("*.mox")):
            with moxreader.File(path) as file:
                model = moxreader.Model(file)
                for each in model.datasets():
                    try:
                        expected = model.numbers(each)
                    except MoxError:
                        with self.assertRaises(MoxError):
                            moxmesh.table(model, each)
                        continue
                    found = moxmesh.table(model, each)
                    self.assertEqual(found.tobytes(), expected.tobytes(), (path, each))
                    self.assertEqual(found.shape[1], model.holder(each).width)
                    self.assertEqual(found.dtype.char, expected.typecode)
                    compared += 1
        self.assertGreater(compared, 100)

    def test_text_beside_a_float_has_its_digits(self):
        attributes = {"Time": moxreader.Float(0.10000000149011612), "Time (exact)": "0.1"}
        self.assertEqual(moxmesh.number_attribute(attributes, "Time"), 0.1)

    def test_integers_are_signed_and_texts_that_are_no_numbers_are_none(self):
        self.assertEqual(moxmesh.number_attribute({"Mode": Integer(0xFFFFFFFF)}, "Mode"), -1)
        self.assertIsNone(moxmesh.number_attribute({"Mode": "first"}, "Mode"))
        self.assertIsNone(moxmesh.number_attribute({}, "Mode"))


class CellsTest(unittest.TestCase):
    def test_hexahedron_of_20_nodes_has_its_top_before_its_vertical_edges(self):
        cells = cells_of(3, [20])
        self.assertEqual(cells.types.tolist(), [25])
        self.assertEqual(cells.nodes.tolist(), [0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 16, 17, 18, 19, 12, 13, 14, 15])

    def test_hexahedron_of_27_nodes_ends_with_its_faces_and_its_centre(self):
        self.assertEqual(cells_of(3, [27]).nodes[20:].tolist(), [23, 24, 25, 26, 21, 22, 20])

    def test_wedge_of_15_nodes_has_its_top_before_its_vertical_edges(self):
        cells = cells_of(3, [15])
        self.assertEqual(cells.types.tolist(), [26])
        self.assertEqual(cells.nodes[9:].tolist(), [12, 13, 14, 9, 10, 11])

    def test_mixed_solids_keep_their_places_and_each_its_own_order(self):
        cells = cells_of(3, [4, 15, 8, 15])
        self.assertEqual(cells.types.tolist(), [10, 26, 12, 26])
        self.assertEqual(cells.offsets.tolist(), [0, 4, 19, 27, 42])
        self.assertEqual(cells.nodes[:4].tolist(), [0, 1, 2, 3])
        self.assertEqual(cells.nodes[13:19].tolist(), [16, 17, 18, 13, 14, 15])
        self.assertEqual(cells.nodes[36:].tolist(), [39, 40, 41, 36, 37, 38])

    def test_lines_and_single_nodes_are_known_by_their_number_of_nodes(self):
        self.assertEqual(cells_of(1, [1, 2, 3]).types.tolist(), [1, 3, 21])

    def test_one_face_of_an_unknown_length_makes_all_faces_polygons(self):
        self.assertEqual(cells_of(2, [3, 4]).types.tolist(), [5, 9])
        self.assertEqual(cells_of(2, [3, 4, 5]).types.tolist(), [7, 7, 7])

    def test_faces_that_an_import_took_as_polygons_are_polygons(self):
        self.assertEqual(cells_of(2, [3, 4], is_nsided=True).types.tolist(), [7, 7])
        self.assertTrue(moxmesh.is_nsided({"Block Id": Integer(1), "Element Type": "NSIDED"}))
        self.assertFalse(moxmesh.is_nsided({"Element Type": "NSIDED"}))

    def test_solids_of_an_unknown_number_of_nodes_are_loose_points(self):
        self.assertEqual(cells_of(3, [8, 7]).types.tolist(), [12, 2])

    def test_lengths_that_do_not_fit_are_refused(self):
        with self.assertRaisesRegex(MoxError, "5 nodes by Polylength and 4 by Connectivity"):
            cells_of(2, [3, 2], range(4))
        with self.assertRaisesRegex(MoxError, "an element without nodes"):
            cells_of(2, [3, 0])

    def test_only_used_nodes_are_numbered_anew(self):
        cells, used = moxmesh.squeeze(cells_of(1, [2, 2], [7, 2, 2, 5]), 9)
        self.assertEqual(used.tolist(), [2, 5, 7])
        self.assertEqual(cells.nodes.tolist(), [2, 0, 0, 1])

    def test_nodes_that_are_all_used_stay(self):
        cells, used = moxmesh.squeeze(cells_of(1, [2], [1, 0]), 2)
        self.assertIsNone(used)
        self.assertEqual(cells.nodes.tolist(), [1, 0])


class PartsTest(unittest.TestCase):
    def test_mesh_of_a_file_is_read_whole(self):
        with moxreader.File(ROOT / "tests/golden/mesh.mox") as file:
            model = moxreader.Model(file)
            parts = moxmesh.find_parts(model)
            self.assertEqual([part.name for part in parts], ["lines", "faces", "solids"])
            self.assertEqual(moxmesh.read_points(model, parts[0], True).shape, (6, 3))
            self.assertEqual(moxmesh.read_cells(model, parts[0]).types.tolist(), [3])

    def test_geometry_with_a_list_of_elements_alone_is_no_part(self):
        model = model_of()
        model.nodes[1].content.datasets[1].key = "Part Elements"
        self.assertEqual(moxmesh.find_parts(model), [])

    def test_material_is_that_of_the_shape_above(self):
        model = model_of()
        model.nodes[0].content = Shape("steel")
        self.assertEqual(moxmesh.find_parts(model)[0].material, "steel")

    def test_transform_scales_then_rotates_then_moves(self):
        nodes = [node(1, 0, content=group((10, 0, 0), (0, 0, 2, math.pi / 2), (2, 1, 1)))]
        transform = moxmesh.group_transforms(SimpleNamespace(nodes=nodes))[0]
        numpy.testing.assert_allclose(transform @ [1, 0, 0, 1], [10, 2, 0, 1], atol=1e-6)
        numpy.testing.assert_allclose(transform @ [0, 1, 0, 1], [9, 0, 0, 1], atol=1e-6)

    def test_transform_of_a_group_comes_before_that_of_the_group_above(self):
        nodes = [node(1, 0, content=group(scale=(2, 2, 2))), node(2, 1, content=group((1, 0, 0))), node(3, 2)]
        transforms = moxmesh.group_transforms(SimpleNamespace(nodes=nodes))
        numpy.testing.assert_allclose(transforms[2] @ [1, 0, 0, 1], [4, 0, 0, 1])

    def test_groups_that_move_nothing_have_no_transform(self):
        nodes = [node(1, 0, content=group(rotation=(0, 0, 0, 1))), node(2, 1)]
        self.assertEqual(moxmesh.group_transforms(SimpleNamespace(nodes=nodes)), [None, None])


class ResultsTest(unittest.TestCase):
    def test_steps_are_in_the_order_of_their_numbers_in_the_file(self):
        results = results_of(dataset("T" + STEP + "late", 12, 4, position=64, Time=2.0),
                             dataset("T" + STEP + "early", 12, 4, position=16, Time=1.0))
        self.assertEqual([(step.name, step.value) for step in results.steps], [("early", 1.0), ("late", 2.0)])

    def test_mode_shape_stands_at_its_frequency(self):
        results = results_of(
            dataset("Mode shape" + STEP + "Mode 1", 13, 4, 3, vibration=True, Time=0.0, Frequency=84.5))
        self.assertEqual(results.steps[0].value, 84.5)
        self.assertTrue(results.steps[0].is_vibration)

    def test_step_without_time_stands_at_its_number(self):
        results = results_of(dataset("T" + STEP + "a", 12, 4), dataset("T" + STEP + "b", 12, 4, position=16))
        self.assertEqual([step.value for step in results.steps], [0.0, 1.0])

    def test_times_that_repeat_become_numbers_from_1(self):
        steps = [moxmesh.ModelStep(str(place), place, place, time) for place, time in enumerate([0.5, 0.0, 0.5])]
        self.assertEqual([(value, step.name) for value, step in moxmesh.on_axis(steps)],
                         [(1.0, "0"), (2.0, "1"), (3.0, "2")])

    def test_times_that_fall_are_put_in_order(self):
        steps = [moxmesh.ModelStep(str(place), place, place, time) for place, time in enumerate([2.0, 1.0])]
        self.assertEqual([(value, step.name) for value, step in moxmesh.on_axis(steps)], [(1.0, "1"), (2.0, "0")])

    def test_displacement_with_rotation_is_two_fields(self):
        results = results_of(dataset("Displacement", 14, 4, 6))
        self.assertEqual([(each.name, each.first_column, each.end_column) for each in results.fields],
                         [("Displacement", 0, 3), ("Rotation", 3, 6)])

    def test_columns_have_the_names_of_the_variables_that_they_were(self):
        results = results_of(dataset("S", 17, 1, 3, Component_1="sx", Component_2="sy"))
        self.assertEqual(results.fields[0].column_names, ["sx", "sy"])

    def test_results_of_one_name_but_another_kind_get_a_number(self):
        results = results_of(dataset("T", 12, 4), dataset("T" + STEP + "a", 12, 4), dataset("T", 16, 1))
        self.assertEqual([(each.name, each.is_nodal) for each in results.fields],
                         [("T", True), ("T (2)", True), ("T", False)])

    def test_result_without_step_is_in_every_step(self):
        field = results_of(dataset("T", 12, 4)).fields[0]
        self.assertIsNotNone(field.source(0, "any"))
        self.assertIsNone(field.source(1, "any"))

    def test_results_of_another_size_are_listed_and_left_out(self):
        results = results_of(dataset("T", 12, 3))
        self.assertEqual(results.fields, [])
        self.assertEqual(results.misfits, ['"T" of "part" fits neither nodes nor elements'])

    def test_results_of_further_kinds_are_left_out(self):
        self.assertEqual(results_of(dataset("T", 20, 4)).fields, [])


class JoinedFileTest(unittest.TestCase):
    def setUp(self):
        if "PLUGIN" not in os.environ:
            self.skipTest("PLUGIN does not name the joined file")
        self.text = Path(os.environ["PLUGIN"]).read_text(encoding="utf-8")

    def test_it_imports_none_of_its_parts(self):
        modules = {name.name for each in ast.walk(ast.parse(self.text)) if isinstance(each, ast.Import)
                   for name in each.names}
        modules |= {each.module for each in ast.walk(ast.parse(self.text)) if isinstance(each, ast.ImportFrom)}
        self.assertIn("numpy", modules)
        self.assertFalse(modules & {"moxreader", "moxmesh", "plugin"})

    def test_it_defines_what_it_uses_of_its_parts(self):
        defined = defined_names(self.text)
        for source in SOURCES[1:]:
            imported = re.findall(r"^from mox\w+ import (.*?)  # not in", source.read_text(encoding="utf-8"), re.M)
            for name in re.findall(r"\w+", " ".join(imported)):
                self.assertIn(name, defined)

    def test_no_two_of_its_parts_give_one_name_to_different_things(self):
        names = [name for source in SOURCES for name in set(defined_names(source.read_text(encoding="utf-8")))]
        self.assertEqual(sorted(name for name in set(names) if names.count(name) > 1), [])


def defined_names(text):
    """What the text of a module defines at its top, but not what it imports."""
    names = []
    for each in ast.parse(text).body:
        if isinstance(each, (ast.FunctionDef, ast.ClassDef)):
            names.append(each.name)
        elif isinstance(each, ast.Assign):
            names += [name.id for target in each.targets for name in ast.walk(target) if isinstance(name, ast.Name)]
    return names


if __name__ == "__main__":
    unittest.main()
