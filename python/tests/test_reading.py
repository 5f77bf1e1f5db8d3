import copy
import os
import pickle
import shutil
import threading
from pathlib import Path

import moxreader
import moxwriter
import numpy as np
import pytest
from moxwriter import DatasetType, Model, Step
from support import Independent

SOURCE = Path(os.environ.get("MOXWRITER_SOURCE", "."))
GOLDEN = SOURCE / "tests" / "golden"


@pytest.fixture
def beam(saved, triangle):
    with Model(saved, source=("solver", "1.0")) as model:
        model.add_group("Assembly", {"Unit": "mm", "Runs": -3})
        part = model.add_shape("Beam")
        model.set_node_data(part, diffuse_color=(1, 0, 0))
        model.add_array(part, "Coordinates", triangle)
        model.add_array(part, DatasetType.CONNECTIVITY_1, np.arange(3, dtype=np.uint32))
        for number, time in ((1, 0.1), (2, 0.25)):
            model.add_array(part, "Displacement", triangle * number, step=Step(f"Load {number}", time=time))
        other = model.add_assembly_components(["/Assembly/a//b"])[0]
        model.add_array([part, other], "T", triangle[:, 0], type=DatasetType.NODE_SCALAR, attributes={"Unit": "K"})
    return saved


def test_datasets_are_found_by_path_name_and_step(beam, triangle):
    with moxwriter.open(beam) as file:
        node = file["Assembly/Beam"]
        assert (node.id, node.kind, node.path, node.parent.name) == (2, "Shape", "Assembly/Beam", "Assembly")
        assert node.geometry is file["/Assembly/Beam/Beam"] is file[np.int64(3)]
        dataset = node["Displacement", "Load 2"]
        assert (dataset.shape, dataset.dtype, dataset.type) == ((3, 3), np.float32, "NodeVector")
        assert dataset.attributes == {"Time": np.float32(0.25), "Time (exact)": "0.25"}
        assert np.array_equal(dataset.read(), triangle * 2) and len(dataset) == 3
        assert np.array_equal(dataset[1:], triangle[1:] * 2)
        assert np.asarray(dataset, np.float64).dtype == np.float64
        assert np.array_equal(node["Connectivity"], [0, 1, 2]) and node["Connectivity"].dtype == np.uint32
        assert file.steps == node.steps == ["Load 1", "Load 2"]
        assert file.times() == {"Load 1": 0.1, "Load 2": 0.25}
        assert node.keys() == ["Coordinates", "Connectivity", ("Displacement", "Load 1"),
                               ("Displacement", "Load 2"), "T"]
        assert ("Displacement", "Load 1") in node and "Displacement" not in node and len(node) == 5
        assert "Assembly/Beam" in file and "Assembly/None" not in file
        assert [one.id for one in file] == list(range(1, len(file) + 1))


def test_the_rest_of_the_tree_is_there(beam):
    with moxwriter.open(beam) as file:
        assert file.root.attributes == {"Unit": "mm", "Runs": -3}
        assert file.root.transform == {"translation": (0, 0, 0), "rotation": (0, 0, 1, 0), "scale": (1, 1, 1)}
        assert file["Assembly/Beam"].material["diffuse"][:3] == [1, 0, 0]
        assert file["Assembly/Beam"].transform is None and file["Assembly"].material is None
        assert [one["source"] for one in file.writers] == ["solver"]
        assert file.format_version == "1.3" and file.size == beam.stat().st_size
        assert file.path == str(beam)


def test_links_have_the_numbers_and_attributes_of_their_holder(beam):
    with moxwriter.open(beam) as file:
        holder, link = (next(one for one in node.datasets if one.name == "T") for node in file.geometries[:2])
        assert link.is_link and link.holder is holder and holder.holder is holder
        assert link.attributes == {"Unit": "K"} and np.array_equal(link, holder)


def test_what_is_missing_is_named_with_what_there_is(beam):
    with moxwriter.open(beam) as file:
        with pytest.raises(KeyError, match="no child 'Bem'"):
            file["Assembly/Bem"]
        with pytest.raises(KeyError, match="root 'Assembly'"):
            file["Beam"]
        with pytest.raises(KeyError, match="there are 'Load 1', 'Load 2'"):
            file["Assembly/Beam"]["Displacement"]
        with pytest.raises(KeyError, match="no dataset 'Stress'"):
            file["Assembly/Beam"]["Stress"]
        with pytest.raises(KeyError, match="from 1 to"):
            file[99]


def test_slashes_in_names_are_escaped_in_paths(saved):
    with Model(saved) as model:
        model.add_group("a/b")
        model.add_group("c")
    with moxwriter.open(saved) as file:
        assert file[2].path == "a\\/b/c" and file[file[2].path] is file[2]


def test_arrays_outlive_their_file_and_belong_to_the_caller(beam, triangle):
    with moxwriter.open(beam) as file:
        array = file["Assembly/Beam"]["Coordinates"].read()
        dataset = file["Assembly/Beam"]["Coordinates"]
    array += 1
    assert np.array_equal(array, triangle + 1) and array.flags.c_contiguous
    with pytest.raises(ValueError, match="is closed"):
        dataset.read()
    assert repr(file).endswith("closed>") and file.closed


def test_files_are_shown_for_people(beam):
    with moxwriter.open(beam) as file:
        assert repr(file).endswith("saved.mox': 6 nodes, 2 geometries, 2 steps>")
        assert repr(file["Assembly/Beam"]) == "<moxwriter.Node 2 Shape 'Assembly/Beam', 5 datasets>"
        assert repr(file["Assembly/Beam"]["Displacement", "Load 1"]) == \
            "<moxwriter.Dataset 'Displacement' of 'Load 1': NodeVector, float32, (3, 3)>"


def test_a_notebook_shows_names_as_text(saved):
    with Model(saved) as model:
        model.add_group("<script>alert('x')</script>")
        model.add_array(model.add_shape("a\x1b&"), "<b>", [1.5], type=DatasetType.NODE_SCALAR, step="<i>")
    with moxwriter.open(saved) as file:
        page = file._repr_html_()
    assert "<script" not in page and "<b>&lt;" not in page and "<i>" not in page and "\x1b" not in page
    assert "&lt;script&gt;" in page and "&lt;i&gt;" in page and page.count("<details") == 2


def test_views_of_a_file_are_neither_copied_nor_pickled(beam):
    with moxwriter.open(beam) as file:
        for thing in (file, file.root, file["Assembly/Beam"]["Coordinates"]):
            for wrong in (copy.copy, copy.deepcopy, pickle.dumps):
                with pytest.raises(TypeError, match="view of an open file"):
                    wrong(thing)


def test_paths_that_are_no_file_fail_as_everywhere_in_python(tmp_path):
    with pytest.raises(FileNotFoundError):
        moxwriter.open(tmp_path / "none")
    with pytest.raises(IsADirectoryError):
        moxwriter.open(tmp_path)


def test_damage_has_a_name_a_rule_and_a_place(beam, tmp_path):
    foreign = tmp_path / "foreign"
    foreign.write_bytes(b"PK" * 2000)
    with pytest.raises(moxwriter.DamagedFile) as raised:
        moxwriter.open(foreign)
    error = raised.value
    assert (error.code, error.rule) == ("BadSignature", 101)
    assert error.place.path == str(foreign) and "signature" in error.text
    assert isinstance(error, moxwriter.Error) and isinstance(error, ValueError)
    cut = tmp_path / "cut"
    cut.write_bytes(beam.read_bytes()[:2000])
    with pytest.raises(moxwriter.DamagedFile) as raised:
        moxwriter.open(cut)
    assert (raised.value.code, raised.value.rule) == ("Truncated", 104)


def test_a_damaged_block_fails_only_what_is_in_it(beam):
    block = next(one for one in Independent(beam).file.blocks if one.name == "Heavy Data")
    data = bytearray(beam.read_bytes())
    data[block.position + 12] ^= 0xFF
    beam.write_bytes(data)
    with moxwriter.open(beam) as file:
        with pytest.raises(moxwriter.DamagedFile) as raised:
            file["Assembly/Beam"]["Coordinates"].read()
        assert file["Assembly/Beam"]["Coordinates"].shape == (3, 3)
    assert raised.value.rule in (204, 205, 206) and raised.value.place.stream == "Heavy Data"
    assert raised.value.place.block == block.id


@pytest.mark.skipif(not GOLDEN.is_dir(), reason="the golden files are not here")
@pytest.mark.parametrize("name", sorted(path.name for path in GOLDEN.glob("*.mox")))
def test_golden_files_hold_what_the_independent_reader_finds(name):
    expected = Independent(GOLDEN / name)
    with moxwriter.open(GOLDEN / name) as file:
        assert [(node.kind, node.name) for node in file] == expected.names()
        for node in file:
            for number, dataset in enumerate(node.datasets if node.kind == "Geometry" else []):
                other = expected.model.node(node.id).content.datasets[number]
                assert (dataset.name, dataset.step, dataset.is_link) == (other.name, other.step, other.is_link)
                try:
                    numbers = np.array(expected.model.numbers(other), dataset.dtype)
                except moxreader.MoxError as damage:
                    with pytest.raises(moxwriter.DamagedFile) as raised:
                        dataset.read()
                    assert raised.value.code == damage.code
                    continue
                assert np.array_equal(dataset.read().ravel(), numbers, equal_nan=dataset.dtype.kind == "f")
                assert dataset.size == numbers.size
            if node.kind == "NodeSets":
                sets = expected.model.node_sets(expected.model.node(node.id))
                assert {key: value.tolist() for key, value in node.sets.items()} == \
                    {key: [list(pair) for pair in pairs] for key, pairs in sets}


def test_threads_read_from_one_file_at_once(saved):
    with Model(saved, block_size=1 << 16) as model:
        model.add_group("root")
        part = model.add_shape("part")
        for number in range(40):
            model.add_array(part, "T", np.full(5000, number, np.uint32), type=DatasetType.NODE_SCALAR, step=str(number))
    wrong = []
    with moxwriter.open(saved) as file:
        node = file["root/part"]

        def read(first):
            for number in list(range(first, 40)) * 3:
                if set(node["T", str(number)].read().tolist()) != {number}:
                    wrong.append(number)

        threads = [threading.Thread(target=read, args=(first,)) for first in range(6)]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join(timeout=60)
            assert not thread.is_alive()
    assert wrong == []


def test_empty_models_can_be_opened(saved):
    Model(saved).close()
    with moxwriter.open(saved) as file:
        assert (len(file), file.root.kind, file.root.name, file.steps) == (1, "", "", [])
        assert file.root.datasets == [] and "<details" in file._repr_html_()


def test_a_file_that_is_replaced_while_it_is_open_is_no_crash(beam, tmp_path):
    with moxwriter.open(beam) as file:
        shutil.copy(beam, tmp_path / "copy")
        beam.write_bytes(b"")
        try:
            file["Assembly/Beam"]["Coordinates"].read()
        except moxwriter.Error:
            pass


def read_all(path):
    with moxwriter.open(path) as file:
        file.times()
        file._repr_html_()
        for node in file:
            str((node.attributes, node.material, node.transform, repr(node)))
            if node.kind == "NodeSets":
                str(node.sets)
            for dataset in node.datasets:
                dataset.read()
                repr(dataset.holder)


@pytest.mark.skipif(not GOLDEN.is_dir(), reason="the golden files are not here")
@pytest.mark.parametrize("name", ["attributes.mox", "links.mox", "node-sets.mox"])
def test_no_damage_ends_in_anything_but_an_exception_of_the_family(tmp_path, name):
    rng = np.random.default_rng(0)
    whole = (GOLDEN / name).read_bytes()
    damaged = 0
    for _ in range(150):
        data = bytearray(whole)
        data[rng.integers(len(data))] ^= 1 << rng.integers(8)
        (tmp_path / "damaged").write_bytes(data[:rng.integers(1, len(data))] if rng.random() < 0.2 else data)
        try:
            read_all(tmp_path / "damaged")
        except moxwriter.DamagedFile as damage:
            assert damage.code and damage.text and damage.place.path
            damaged += 1
    assert damaged > 30
