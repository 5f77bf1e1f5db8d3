import copy
import gc
import os
import pickle
import threading
import warnings

import moxwriter
import numpy as np
import pytest
from moxwriter import DatasetType, Model, NodeType, PropertyType, Step
from support import Independent, mox, run_python


def add_part(model, name="Part"):
    model.add_group("Assembly")
    return model.add_shape(name)


def test_a_model_holds_what_was_added(saved, triangle):
    with Model(saved, source=("solver", "1.0")) as model:
        assert model.add_node(NodeType.ROOT_MARKED_GROUP, "Assembly", {"Unit": "mm", "Runs": 3}) == 1
        part = model.add_shape("Part")
        assert part == 3
        model.set_node_data(part, diffuse_color=(1, 0.5, 0), transparency=0.25)
        model.set_node_data(1, {PropertyType.TRANSLATION: (1, 2, 3)}, {"Load": 0.5})
        model.add_array(part, "Coordinates", triangle)
        model.add_array(part, DatasetType.CONNECTIVITY_1, np.arange(3, dtype=np.uint32))
        model.add_array(part, "Displacement", triangle + 1, step=Step("Load 1", time=0.1),
                        attributes={"Unit": "mm"})
    found = Independent(saved)
    assert found.names() == [("Group", "Assembly"), ("Shape", "Part"), ("Geometry", "Part")]
    root, shape, _ = found.model.nodes
    assert root.content.kind == 1
    assert root.content.attributes == {"Unit": "mm", "Runs": 3, "Load": 0.5}
    assert list(root.content.translation) == [1, 2, 3]
    assert list(shape.content.material.diffuse)[:3] == [1, 0.5, 0]
    assert shape.content.material.transparency == 0.25
    assert found.numbers("Coordinates") == triangle.ravel().tolist()
    assert found.numbers("Connectivity") == [0, 1, 2]
    assert found.numbers("Displacement", "Load 1") == (triangle + 1).ravel().tolist()
    attributes = found.dataset("Displacement", "Load 1").attributes
    assert attributes["Time (exact)"] == "0.1" and attributes["Unit"] == "mm"
    assert attributes["Time"] == np.float32(0.1)


def test_paths_are_merged_and_found(saved):
    with Model(saved) as model:
        model.add_group("car")
        first = model.add_assembly_components(["/car/body/door", "/car/body/", "/car/wheel"])
        assert model.add_assembly_components({"/car/body/door": None, "/car/body/": {"Mass": 3}}) == [first[1], first[0]]
        assert model.get_node_id("/car/body") == first[1]
        assert model.get_node_id(["car", "body", "door"]) == first[0] - 1
        assert model.get_node_id("/car/none") == 0
        model.set_current_node_id(first[0])
        model.move_to_parent_node()
        assert model.add_group("below the shape") == 7


def test_several_nodes_and_steps_share_one_array(saved, triangle):
    with Model(saved) as model:
        model.add_group("root")
        ids = model.add_assembly_components(["/root/a", "/root/b"])
        model.add_array(np.array(ids), "T", triangle[:, 0], type=DatasetType.NODE_SCALAR,
                        step=[Step("1", time=0), "2"])
    found = Independent(saved)
    links = [(one.node_id, one.step, one.is_link) for one in found.model.datasets()]
    assert links == [(3, "1", False), (3, "2", True), (5, "1", True), (5, "2", True)]
    assert found.numbers("T", "2", node=5) == [0, 1, 0]


@pytest.mark.parametrize("make, numbers", [
    (lambda a: a, "as it is"), (lambda a: np.asfortranarray(a), "in the order of Fortran"),
    (lambda a: np.repeat(a, 2, axis=0)[::2], "with gaps"), (lambda a: a.astype(">f4"), "big-endian"),
    (lambda a: a[::-1].copy()[::-1], "backwards"), (lambda a: a.astype(np.float16), "half as long"),
    (lambda a: a.astype(np.dtype(np.float32, metadata={"unit": "mm"})), "of a type with more to it"),
    (lambda a: a.tolist(), "a list"), (lambda a: a.astype(np.int16).astype(np.uint8), "of bytes"),
])
def test_arrays_of_any_layout_arrive_whole(saved, triangle, make, numbers):
    with Model(saved) as model:
        model.add_array(add_part(model), "Coordinates", make(triangle))
    assert Independent(saved).numbers("Coordinates") == triangle.ravel().tolist(), numbers


def test_contiguous_arrays_of_the_two_types_are_not_copied():
    for dtype in (np.float32, np.uint32):
        array = np.zeros((5, 3), dtype)
        assert moxwriter._writing.as_numbers(array) is array
        column = np.zeros(5, dtype)
        assert np.shares_memory(moxwriter._writing.as_numbers(column), column)


@pytest.mark.parametrize("array, words", [
    (np.zeros((3, 3)), "convert=True"), (np.zeros((3, 3), np.int64), "convert=True"),
    (np.zeros((3, 3), complex), "complex128"), (np.array([["a"]]), "<U1"), (np.zeros((2, 2, 2), np.float32), "two dim"),
    (np.float32(1), "two dim"), (np.ma.masked_less(np.zeros((3, 3), np.float32), 1), "filled"),
    (np.array([[object()]]), "object"), (np.array([["2020-01-01"]], "M8[D]"), "datetime64"),
])
def test_what_would_lose_something_is_refused_with_advice(saved, array, words):
    with Model(saved) as model:
        part = add_part(model)
        with pytest.raises(TypeError, match=words):
            model.add_array(part, "Coordinates", array)


def test_asked_for_conversions_round_and_never_wrap(saved):
    with Model(saved) as model:
        part = add_part(model)
        model.add_array(part, "T", np.array([0.1, 1e-50]), type=DatasetType.NODE_SCALAR, convert=True)
        model.add_array(part, "N", np.array([2**32 - 1], np.int64), type=DatasetType.NODE_SCALAR, convert=True)
        for wrong in (-1, 2**32):
            with pytest.raises(ValueError, match="do not fit into uint32"):
                model.add_array(part, "M", np.array([wrong], np.int64), type=DatasetType.NODE_SCALAR, convert=True)
    found = Independent(saved)
    assert found.numbers("T") == [np.float32(0.1), 0]
    assert found.numbers("N") == [2**32 - 1]


def test_failures_are_of_one_family_with_code_text_and_place(saved, triangle):
    model = Model()
    with pytest.raises(moxwriter.InvalidObjectState) as raised:
        model.add_group("root")
    error = raised.value
    assert isinstance(error, (moxwriter.Error, ValueError))
    assert (error.code, error.text, str(error)) == (17, "File not open.", "File not open.")
    assert error.file == "Qel/Mox2/Database" and error.line > 0 and "assertOpenedForWriting" in error.function
    model.save_to(saved)
    with pytest.raises(moxwriter.InvalidObjectState, match="Not Empty"):
        model.save_to(saved)
    part = add_part(model)
    with pytest.raises(moxwriter.OutOfBounds) as bounds:
        model.set_current_node_id(99)
    assert bounds.value.code == 11 and isinstance(bounds.value, IndexError)
    with pytest.raises(moxwriter.InvalidArguments):
        model.add_array(part, "V", triangle[:, :2], type=DatasetType.NODE_VECTOR)
    with pytest.raises(moxwriter.InvalidArguments, match="Can't guess result name"):
        model.add_array(part, DatasetType.NODE_VECTOR, triangle)
    with pytest.raises(moxwriter.InvalidArguments, match="Invalid node type"):
        model.add_node(NodeType.ROOT_GROUP, "second")
    with pytest.raises(moxwriter.InvalidArguments):
        model.set_node_data(1, attributes={"list": [1, 2]})
    with pytest.raises(moxwriter.NotYetImplemented):
        model.add_assembly_components(["/other/x"])
    with pytest.raises(moxwriter.TemplateSpecializationNotDefined):
        model.set_node_data(part, shape_switch=1)
    with pytest.raises(moxwriter.PositionError, match="invalid string position"):
        model.get_node_id("/Assembly")
    with pytest.raises(KeyError):
        model.add_array(77, "Coordinates", triangle)
    model.close()


def test_python_s_own_checks_name_what_is_wrong(saved, triangle):
    with Model(saved) as model:
        part = add_part(model)
        with pytest.raises(ValueError, match="comes twice"):
            model.add_array([part, part], "Coordinates", triangle)
        with pytest.raises(ValueError, match="step comes twice"):
            model.add_array(part, "Coordinates", triangle, step=["a", "a"])
        with pytest.raises(TypeError, match="does not say what"):
            model.add_array(part, "Temperature", triangle)
        with pytest.raises(TypeError, match="no property 'colour'"):
            model.set_node_data(part, colour=(1, 1, 1))
        with pytest.raises(TypeError, match="integer"):
            model.add_array([1.5], "Coordinates", triangle)
        with pytest.raises(TypeError, match="several texts"):
            model.add_assembly_components("/Assembly/x")
        with pytest.raises(ValueError, match="32 bits"):
            model.set_node_data(1, attributes={"n": 2**40})
    with pytest.raises(ValueError, match="block_size"):
        Model(block_size=1)


def test_existing_files_are_replaced_only_when_asked(saved):
    saved.write_text("precious")
    with pytest.raises(moxwriter.FileOpenException, match="File exists.") as raised:
        Model(saved)
    assert isinstance(raised.value, FileExistsError) and raised.value.code == 5
    assert saved.read_text() == "precious"
    with Model(saved, overwrite=True) as model:
        model.add_group("root")
    assert Independent(saved).names() == [("Group", "root")]
    with pytest.raises(moxwriter.MiscelleneousException) as missing:
        Model(saved / "below a file")
    assert isinstance(missing.value, OSError)


def test_with_closes_and_lets_the_exception_of_the_body_through(saved):
    with pytest.raises(ZeroDivisionError):
        with Model(saved) as model:
            model.add_group("root")
            1 / 0
    assert model.closed
    assert Independent(saved).names() == [("Group", "root")]
    model.close()


def test_a_model_that_is_dropped_is_saved_with_a_warning(saved):
    model = Model(saved)
    model.add_group("root")
    with pytest.warns(ResourceWarning, match="never closed"):
        del model
        gc.collect()
    assert Independent(saved).names() == [("Group", "root")]


@pytest.mark.skipif(not os.path.exists("/dev/full"), reason="there is no full device")
def test_a_file_that_is_not_whole_is_noticed_at_the_close(tmp_path, triangle, monkeypatch):
    path = tmp_path / "cut.mox"
    model = Model(path)
    model.add_array(add_part(model), "Coordinates", triangle)
    close = model._native.close

    class Cutting:
        def close(self):
            close()
            os.truncate(path, path.stat().st_size - 1)

    model._native = Cutting()
    with pytest.raises(moxwriter.IncompleteFile, match="is the disk full"):
        model.close()
    assert model.closed


def test_models_are_neither_copied_nor_pickled(saved):
    with Model(saved) as model:
        for wrong in (copy.copy, copy.deepcopy, pickle.dumps):
            with pytest.raises(TypeError, match="file that is being written"):
                wrong(model)
        assert repr(model) == f"<moxwriter.Model writing {str(saved)!r}>"
    assert repr(model) == "<moxwriter.Model empty>"


def test_one_model_saves_one_file_after_the_other(tmp_path):
    model = Model()
    for name in ("a", "b"):
        model.save_to(tmp_path / name)
        assert model.add_group(name) == 1
        model.close()
        assert Independent(tmp_path / name).names() == [("Group", name)]


def test_names_of_any_bytes_come_back(saved):
    text = b"\xff\xe9".decode("utf-8", "surrogateescape") + "\u00e9\U0001f600"
    name = "\0" + text
    with Model(saved) as model:
        model.add_group(name, {name: text})
    with moxwriter.open(saved) as file:
        assert file.root.name == name
        assert file.root.attributes == {name: text}


def save_large(path, count, size, **options):
    with Model(path, **options) as model:
        part = add_part(model)
        for i in range(count):
            model.add_array(part, f"A{i}", np.full(size, i, np.uint32), type=DatasetType.NODE_SCALAR)


@pytest.mark.parametrize("options, environment", [({"block_size": 1 << 16}, None), ({}, str(1 << 16))])
def test_arrays_that_fill_blocks_of_their_own_lose_nothing(saved, monkeypatch, options, environment):
    if environment:
        monkeypatch.setenv("MOXWRITER_DEFAULT_BLOCK_SIZE", environment)
    save_large(saved, 45, 1 << 14, **options)
    found = Independent(saved)
    assert sum(block.name == "Heavy Data" for block in found.file.blocks) == 45
    for i in range(45):
        assert set(found.numbers(f"A{i}")) == {i}
    checked = mox("check", saved)
    assert checked.returncode == 0, checked.stdout


@pytest.mark.parametrize("text, limit", [
    (None, 209_715_200), ("1000", 1000), (" +7x", 7), ("", 0), ("x", 0), ("0", 0), ("-1", 209_715_200),
    ("-4294967295", 1), ("4294967295", 209_715_200), ("99999999999", 209_715_200),
])
def test_the_environment_means_what_it_means_to_the_library(monkeypatch, text, limit):
    monkeypatch.delenv("MOXWRITER_DEFAULT_BLOCK_SIZE", raising=False)
    if text is not None:
        monkeypatch.setenv("MOXWRITER_DEFAULT_BLOCK_SIZE", text)
    assert moxwriter._writing.environment_limit() == limit


@pytest.mark.parametrize("text", ["0", "", "4000000000"])
def test_block_sizes_that_lose_numbers_are_refused(saved, triangle, monkeypatch, text):
    monkeypatch.setenv("MOXWRITER_DEFAULT_BLOCK_SIZE", text)
    with Model(saved) as model:
        part = add_part(model)
        with pytest.raises(ValueError, match="would lose numbers"):
            model.add_array(part, "Coordinates", triangle)


def test_a_model_that_could_not_be_opened_is_empty_again(tmp_path):
    (tmp_path / "there").touch()
    model = Model()
    with pytest.raises(moxwriter.FileOpenException):
        model.save_to(tmp_path / "there")
    with pytest.raises(moxwriter.InvalidObjectState, match="File not open."):
        model.add_group("lost")
    model.save_to(tmp_path / "new")
    model.close()


def test_a_block_size_is_that_of_its_model_alone(tmp_path):
    save_large(tmp_path / "small", 8, 1 << 14, block_size=1 << 17)
    save_large(tmp_path / "default", 8, 1 << 14)
    assert "MOXWRITER_DEFAULT_BLOCK_SIZE" not in os.environ
    heavy = [sum(block.name == "Heavy Data" for block in Independent(tmp_path / name).file.blocks)
             for name in ("small", "default")]
    assert heavy == [4, 1]


def test_an_array_that_no_block_can_take_is_refused(saved):
    with Model(saved) as model:
        part = add_part(model)
        huge = np.lib.stride_tricks.as_strided(np.zeros(1, np.float32), (10**9, 1), (4, 4))
        with pytest.raises(ValueError, match="divide it"):
            model._require_room(huge.nbytes)
        assert part == 3


def test_threads_save_models_at_once(tmp_path):
    failures = []

    def save(number):
        try:
            with Model(tmp_path / str(number)) as model:
                part = add_part(model, f"part {number}")
                for step in range(20):
                    model.add_array(part, "T", np.full(1000, number, np.float32), type=DatasetType.NODE_SCALAR,
                                    step=str(step))
        except Exception as failure:
            failures.append(failure)

    threads = [threading.Thread(target=save, args=(number,)) for number in range(8)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join(timeout=60)
        assert not thread.is_alive()
    assert failures == []
    for number in range(8):
        found = Independent(tmp_path / str(number))
        assert found.names()[1] == ("Shape", f"part {number}")
        assert set(found.numbers("T", "19")) == {number}


def test_other_threads_run_while_numbers_are_compressed(saved):
    noise = np.random.default_rng(1).random(1 << 22, np.float32)
    ticks, done = [], threading.Event()

    def tick():
        while not done.wait(0.001):
            ticks.append(1)

    ticking = threading.Thread(target=tick)
    with Model(saved, block_size=1 << 20) as model:
        part = add_part(model)
        ticking.start()
        model.add_array(part, "A", noise, type=DatasetType.NODE_SCALAR)
        model.close()
        done.set()
    ticking.join()
    assert len(ticks) > 20


DEFLATE = os.environ.get("MOXWRITER_DEFLATE")
SAVE = """
import numpy as np, moxwriter
def save():
    with moxwriter.Model("{path}", overwrite=True) as model:
        model.add_group("root")
        model.add_array(model.add_shape("a"), "Coordinates", np.arange(3000, dtype=np.float32).reshape(-1, 3))
"""


@pytest.mark.skipif(not DEFLATE, reason="moxwriter-deflate is not built")
def test_deflate_compresses_when_it_is_chosen_and_zlib_again_after_it(saved):
    out = run_python(SAVE.format(path=saved) + """
print(moxwriter.compressor(), moxwriter.compressed_by_deflate()); save()
print(moxwriter.compressed_by_deflate(), moxwriter.compressor("deflate")); save()
calls = moxwriter.compressed_by_deflate()
print(calls > 3, moxwriter.compressor("zlib")); save()
print(moxwriter.compressed_by_deflate() == calls)
""")
    assert out.splitlines() == ["zlib 0", "0 deflate", "True zlib", "True"]
    assert Independent(saved).numbers("Coordinates") == list(range(3000))


@pytest.mark.skipif(not DEFLATE, reason="moxwriter-deflate is not built")
def test_a_preloaded_deflate_is_in_use_and_can_be_left(saved):
    out = run_python(SAVE.format(path=saved) + """
print(moxwriter.compressor()); save(); calls = moxwriter.compressed_by_deflate()
print(calls > 3, moxwriter.compressor("zlib")); save(); print(moxwriter.compressed_by_deflate() == calls)
""", LD_PRELOAD=DEFLATE)
    assert out.splitlines() == ["deflate", "True zlib", "True"]


def test_an_unknown_compressor_is_refused():
    with pytest.raises(ValueError, match="there are 'zlib' and 'deflate'"):
        moxwriter.compressor("lzma")


def test_importing_prints_nothing():
    assert run_python("import warnings; warnings.simplefilter('error'); import moxwriter") == ""
