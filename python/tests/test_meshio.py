import copy
import os
import re
from pathlib import Path

import moxwriter
import numpy as np
import pytest
from support import Independent, mox, run_python

meshio = pytest.importorskip("meshio")

import moxwriter.meshio  # noqa: E402
from moxwriter.meshio import TimeSeriesReader, TimeSeriesWriter  # noqa: E402

SQUARE = [[0, 0, 0], [1, 0, 0], [1, 1, 0], [0, 1, 0]]
CUBE = SQUARE + [[x, y, 1] for x, y, _ in SQUARE]
HEX_EDGES = [(0, 1), (1, 2), (2, 3), (3, 0), (4, 5), (5, 6), (6, 7), (7, 4), (0, 4), (1, 5), (2, 6), (3, 7)]
HEX_FACES = [(0, 4, 7, 3), (1, 2, 6, 5), (0, 1, 5, 4), (3, 7, 6, 2), (0, 3, 2, 1), (4, 5, 6, 7)]
WEDGE = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1], [1, 0, 1], [0, 1, 1]]
WEDGE_EDGES = [(0, 1), (1, 2), (2, 0), (3, 4), (4, 5), (5, 3), (0, 3), (1, 4), (2, 5)]
PYRAMID = SQUARE + [[0.5, 0.5, 1]]
PYRAMID_EDGES = [(0, 1), (1, 2), (2, 3), (3, 0), (0, 4), (1, 4), (2, 4), (3, 4)]


def with_means(corners, *places):
    """Corners, and the means of those at places, in the order in which VTK documents its cells."""
    corners = np.array(corners, float)
    return np.array([*corners, *(corners[list(one)].mean(axis=0) for one in places)])


def mesh_of(points, *cells, **data):
    return meshio.Mesh(np.array(points, float), [(kind, np.array(block)) for kind, block in cells], **data)


def one_cell(kind, points):
    return mesh_of(points, (kind, [range(len(points))]))


TET = [[0, 0, 0], [1, 0, 0], [0, 1, 0], [0, 0, 1]]
TRIANGLE = SQUARE[:3]
SAMPLES = {
    "no cells": mesh_of(CUBE),
    "vertex": mesh_of(SQUARE, ("vertex", [[0], [2]])),
    "line": mesh_of(SQUARE, ("line", [[0, 1], [0, 2], [0, 3]])),
    "line3": one_cell("line3", [[0, 0, 0], [1, 0, 0], [0.5, 0, 0]]),
    "triangle": mesh_of(SQUARE, ("triangle", [[0, 1, 2], [0, 2, 3]])),
    "triangle in a plane": meshio.Mesh(np.array(SQUARE, float)[:, :2] / 3, [("triangle", np.array([[0, 1, 2], [0, 2, 3]]))]),
    "triangle6": one_cell("triangle6", with_means(TRIANGLE, (0, 1), (1, 2), (2, 0))),
    "quad": one_cell("quad", SQUARE),
    "quad8": one_cell("quad8", with_means(SQUARE, (0, 1), (1, 2), (2, 3), (3, 0))),
    "quad9": one_cell("quad9", with_means(SQUARE, (0, 1), (1, 2), (2, 3), (3, 0), (0, 1, 2, 3))),
    "triangles, quads, triangles": mesh_of(CUBE, ("triangle", [[0, 1, 2]]), ("quad", [[4, 5, 6, 7]]),
                                           ("triangle", [[0, 2, 3]])),
    "quads and triangles": mesh_of(CUBE, ("quad", [[4, 5, 6, 7]]), ("triangle", [[0, 1, 2], [0, 2, 3]])),
    "tetra": one_cell("tetra", TET),
    "tetra10": one_cell("tetra10", with_means(TET, (0, 1), (1, 2), (2, 0), (0, 3), (1, 3), (2, 3))),
    "pyramid": one_cell("pyramid", PYRAMID),
    "pyramid13": one_cell("pyramid13", with_means(PYRAMID, *PYRAMID_EDGES)),
    "pyramid14": one_cell("pyramid14", with_means(PYRAMID, *PYRAMID_EDGES, (0, 1, 2, 3))),
    "wedge": one_cell("wedge", WEDGE),
    "wedge15": one_cell("wedge15", with_means(WEDGE, *WEDGE_EDGES)),
    "wedge18": one_cell("wedge18", with_means(WEDGE, *WEDGE_EDGES, (0, 1, 4, 3), (1, 2, 5, 4), (2, 0, 3, 5))),
    "hexahedron": one_cell("hexahedron", CUBE),
    "hexahedron20": one_cell("hexahedron20", with_means(CUBE, *HEX_EDGES)),
    "hexahedron27": one_cell("hexahedron27", with_means(CUBE, *HEX_EDGES, *HEX_FACES, range(8))),
    "polygons": mesh_of(CUBE, ("polygon", [[0, 1, 2, 3, 7]]), ("polygon", [[0, 1, 2], [4, 5, 6]])),
    "lagrange": one_cell("VTK_LAGRANGE_HEXAHEDRON", with_means(CUBE, *HEX_EDGES, *HEX_FACES, range(8))),
    "triangle10": one_cell("triangle10", np.random.default_rng(1).random((10, 3))),
    "empty": meshio.Mesh(np.empty((0, 3)), []),
}


def there_and_back(mesh, path):
    before = copy.deepcopy(mesh)
    meshio.write(path, mesh)
    expect_same(mesh, before, exactly=True)
    return meshio.read(path)


def expect_same(found, expected, exactly=False):
    close = dict(rtol=0, atol=0) if exactly else dict(rtol=1e-7, atol=1e-30)
    assert found.points.shape == expected.points.shape
    assert np.allclose(found.points, expected.points, **close)
    assert [block.type for block in found.cells] == [block.type for block in expected.cells]
    for mine, other in zip(found.cells, expected.cells):
        assert np.array_equal(mine.data, other.data)
    assert set(found.point_data) == set(expected.point_data)
    for name, values in expected.point_data.items():
        assert found.point_data[name].shape == values.shape and found.point_data[name].dtype == values.dtype, name
        assert np.allclose(found.point_data[name], values, **close, equal_nan=True), name
    assert set(found.cell_data) == set(expected.cell_data)
    for name, blocks in expected.cell_data.items():
        for mine, other in zip(found.cell_data[name], blocks):
            assert mine.shape == other.shape and mine.dtype == other.dtype, name
            assert np.allclose(mine, other, **close, equal_nan=True), name
    assert set(found.point_sets) == set(expected.point_sets)
    for name, members in expected.point_sets.items():
        assert np.array_equal(found.point_sets[name], members)
    assert set(found.cell_sets) == set(expected.cell_sets)
    for name, blocks in expected.cell_sets.items():
        for mine, other in zip(found.cell_sets[name], blocks):
            assert np.array_equal([] if mine is None else mine, [] if other is None else other), name


@pytest.mark.parametrize("name", SAMPLES)
def test_each_kind_of_mesh_comes_back_equal(saved, name):
    expect_same(there_and_back(SAMPLES[name], saved), SAMPLES[name])


@pytest.mark.parametrize("name", [name for name in SAMPLES if name not in ("no cells", "empty")])
def test_each_kind_of_mesh_is_whole_and_sensible(saved, name):
    meshio.write(saved, SAMPLES[name])
    checked = mox("check", saved)
    assert (checked.returncode, checked.stdout) == (0, f"{saved}: whole\n"), checked.stdout


@pytest.mark.parametrize("kind, edges", [("hexahedron20", HEX_EDGES[:4] + HEX_EDGES[8:] + HEX_EDGES[4:8]),
                                         ("wedge15", WEDGE_EDGES[:3] + WEDGE_EDGES[6:] + WEDGE_EDGES[3:6])])
def test_a_file_has_the_nodes_of_edges_in_the_order_of_exodus(saved, kind, edges):
    mesh = SAMPLES[kind]
    meshio.write(saved, mesh)
    element = Independent(saved).numbers("Connectivity")
    points = mesh.points[element]
    corners = len(points) - len(edges)
    for node, edge in zip(range(corners, len(points)), edges):
        assert np.array_equal(points[node], points[list(edge)].mean(axis=0))


@pytest.mark.parametrize("name", ["line3", "triangle6", "quad9", "tetra10", "pyramid13", "wedge", "wedge15", "hexahedron20",
                                  "hexahedron27"])
def test_mox_export_gives_vtk_the_same_cells(saved, name):
    mesh = SAMPLES[name]
    meshio.write(saved, mesh)
    found = read_exported(saved, saved.with_suffix(".vtu"))
    # The reader of VTK takes a linear wedge for one that VTK counts the other way round.
    cells = found.cells[0].data[:, [0, 2, 1, 3, 5, 4]] if name == "wedge" else found.cells[0].data
    assert found.cells[0].type == name
    assert np.array_equal(found.points[cells], mesh.points[mesh.cells[0].data])


def read_exported(model, path, *options):
    """What mox exports of a model to VTK. meshio's reader does not know the texts that mox adds."""
    done = mox("export", *options, model, path)
    assert done.returncode == 0, done.stderr
    path.write_bytes(re.sub(rb"<FieldData>.*?</FieldData>", b"", path.read_bytes(), flags=re.DOTALL))
    return meshio.read(path)


def data_samples():
    rng = np.random.default_rng(0)
    third = np.arange(8) / 3
    for shape in ((), (1,), (2,), (3,), (4,), (5,), (6,), (9,), (3, 3), (2, 3), (2, 1)):
        yield f"float64 {shape}", rng.random((8, *shape))
    for dtype in "?bBhHiIlLqQfe":
        yield f"type {dtype}", (third * 3).astype(dtype)
    yield "negative", np.arange(-4, 4)
    yield "big-endian", third.astype(">f8").astype(">f8")
    yield "in the order of Fortran", np.asfortranarray(rng.random((8, 3)))
    yield "nan", np.array([np.nan, np.inf, -np.inf, 1, 2, 3, 4, 5], np.float32)


@pytest.mark.parametrize("name, values", data_samples())
def test_data_of_all_types_and_shapes_comes_back(saved, name, values):
    mesh = mesh_of(CUBE, ("vertex", np.arange(8)[:, None]), ("quad", [[0, 1, 2, 3], [4, 5, 6, 7]]))
    mesh.point_data = {name: values}
    mesh.cell_data = {"of cells": [values, values[:2]]}
    found = there_and_back(mesh, saved)
    native = values.dtype.newbyteorder("=")
    mesh.point_data[name] = values.astype(native)
    mesh.cell_data["of cells"] = [values.astype(native), values[:2].astype(native)]
    expect_same(found, mesh)


def test_displacements_are_marked_and_keep_their_name(saved):
    mesh = copy.deepcopy(SAMPLES["quad"])
    mesh.point_data = {"disp": np.ones((4, 3)), "Displacement": np.zeros((4, 3)), "Stress": np.ones((4, 6))}
    found = there_and_back(mesh, saved)
    expect_same(found, mesh)
    datasets = {one.name: one for one in Independent(saved).model.datasets()}
    assert datasets["Displacement"].attributes["Component 2"] == "disp_y"
    assert datasets["Displacement (2)"].variable_type == 13 and datasets["Stress"].variable_type == 14


def test_point_and_cell_data_of_one_name_are_kept_apart(saved):
    mesh = copy.deepcopy(SAMPLES["quad"])
    mesh.point_data = {"T": np.arange(4.0), "Connectivity": np.ones(4)}
    mesh.cell_data = {"T": [np.array([5.0])], "a\x1eb": [np.array([1.0])]}
    expect_same(there_and_back(mesh, saved), mesh)
    checked = mox("check", saved)
    assert checked.stdout == f"{saved}: whole\n"


def test_sets_and_field_data_come_back(saved):
    mesh = copy.deepcopy(SAMPLES["triangles, quads, triangles"])
    mesh.point_sets = {"fixed": np.array([0, 3]), "none": np.array([], int)}
    mesh.cell_sets = {"upper": [np.array([], int), np.array([0]), None], "all": [np.array([0])] * 3}
    mesh.field_data = {"steel": np.array([7, 2])}
    found = there_and_back(mesh, saved)
    expect_same(found, mesh)
    assert found.field_data["steel"].tolist() == [7, 2]
    assert found.cells_dict["triangle"].tolist() == [[0, 1, 2], [0, 2, 3]]


def test_what_a_model_can_t_take_is_warned_of(saved):
    polyhedron = [[[0, 1, 2], [0, 1, 3], [1, 2, 3], [0, 2, 3]]]
    mesh = meshio.Mesh(np.array(CUBE, float), [("polyhedron4", polyhedron), ("quad", np.array([[0, 1, 2, 3]])),
                                               ("line", np.zeros((0, 2), int))],
                       point_data={"words": np.array(["a"] * 8)}, cell_data={"T": [[1.0], [2.0], []]})
    with pytest.warns(UserWarning) as caught:
        meshio.write(saved, mesh)
    assert [str(one.message) for one in caught] == [
        "not taken: blocks of polyhedra: Block 1", "not taken: blocks without cells: Block 3",
        "not taken: point data of a type that a model can't have: words"]
    found = meshio.read(saved)
    assert [block.type for block in found.cells] == ["quad"] and found.cell_data["T"][0].tolist() == [2.0]


def test_cells_of_missing_points_are_refused_and_nothing_is_left(saved):
    with pytest.raises(ValueError, match="but there are 4 points"):
        meshio.write(saved, mesh_of(SQUARE, ("triangle", [[0, 1, 4]])))
    assert list(saved.parent.iterdir()) == []


def test_steps_can_be_chosen_and_the_last_is_taken_without_a_choice(saved):
    mesh = SAMPLES["quad"]
    with TimeSeriesWriter(saved) as writer:
        writer.write_points_cells(mesh.points, mesh.cells)
        for number in range(3):
            writer.write_data(number / 4, {"u": np.full((4, 3), float(number))}, {"s": [np.array([10.0 * number])]})
    assert meshio.read(saved).point_data["u"][0, 0] == 2
    assert moxwriter.meshio.read(saved, 0).point_data["u"][0, 0] == 0
    assert moxwriter.meshio.read(saved, "Step 2").cell_data["s"][0].tolist() == [10]
    with pytest.raises(KeyError, match="'Step 1', 'Step 2'"):
        moxwriter.meshio.read(saved, "Load")
    with TimeSeriesReader(saved) as reader:
        points, cells = reader.read_points_cells()
        assert np.array_equal(points, mesh.points) and np.array_equal(cells[0].data, mesh.cells[0].data)
        assert reader.num_steps == 3
        assert [reader.read_data(k)[0] for k in range(3)] == [0, 0.25, 0.5]
        assert reader.read_data(1)[1]["u"][0, 0] == 1
    assert mox("check", saved).stdout == f"{saved}: whole\n"


def test_a_series_that_fails_leaves_the_old_file(saved):
    meshio.write(saved, SAMPLES["quad"])
    before = saved.read_bytes()
    with pytest.raises(ZeroDivisionError):
        with TimeSeriesWriter(saved) as writer:
            writer.write_points_cells(SAMPLES["tetra"].points, SAMPLES["tetra"].cells)
            1 / 0
    assert saved.read_bytes() == before and list(saved.parent.iterdir()) == [saved]


def test_parts_of_any_model_become_one_mesh(saved):
    with moxwriter.Model(saved) as model:
        model.add_group("root")
        ids = model.add_assembly_components(["/root/moved/a", "/root/b"])
        model.set_node_data(2, translation=(10, 0, 0), rotation=(0, 0, 1, np.pi / 2), scale=(2, 2, 2))
        model.add_array(ids, "Coordinates", np.array(SQUARE, np.float32))
        for one, lengths in zip(ids, ([3, 3], [3, 1])):
            nodes = [0, 1, 2, 0, 2, 3][:sum(lengths)]
            model.add_array(one, moxwriter.DatasetType.CONNECTIVITY_1, nodes)
            model.add_array(one, moxwriter.DatasetType.POLYLENGTH_1, lengths)
        model.add_array(ids[1], "T", [1.0, 2, 3, 4], type=moxwriter.DatasetType.NODE_SCALAR)
        model.add_array(ids[0], "e", [5.0, 6], type=moxwriter.DatasetType.ELEMENT_SCALAR)
    found = meshio.read(saved)
    assert [(one.type, one.data.tolist()) for one in found.cells] == [("triangle", [[0, 1, 2], [0, 2, 3]]),
                                                                    ("triangle", [[4, 5, 6]])]
    assert np.allclose(found.points[:4], [[10, 0, 0], [10, 2, 0], [8, 2, 0], [8, 0, 0]], atol=1e-6)
    assert np.array_equal(found.point_data["T"], [np.nan] * 4 + [1, 2, 3, 4], equal_nan=True)
    assert found.cell_data["e"][0].tolist() == [5, 6] and np.isnan(found.cell_data["e"][1]).all()


def test_failures_are_the_package_s_own_and_no_end_of_the_process(tmp_path):
    path = tmp_path / "foreign.mox"
    path.write_bytes(b"PK" * 3000)
    with pytest.raises(moxwriter.DamagedFile, match="signature"):
        meshio.read(path)
    with open(path, "rb") as stream, pytest.raises(TypeError, match="not from a buffer"):
        meshio.read(stream, "mox")


def test_registering_twice_registers_once():
    moxwriter.meshio.register()
    assert meshio._helpers.extension_to_filetypes[".mox"] == ["mox"]


def test_the_package_does_not_need_meshio():
    assert run_python("import sys, moxwriter; print('meshio' in sys.modules)") == "False\n"


@pytest.mark.parametrize("extension, kinds", [
    (".inp", ["triangle", "quad", "tetra", "hexahedron", "wedge"]),
    (".bdf", ["triangle", "quad", "tetra", "hexahedron", "hexahedron20"]),
    (".vtk", ["tetra10", "wedge", "pyramid"]), (".vtu", ["hexahedron27", "quads and triangles"]),
    (".mesh", ["tetra", "hexahedron"]), (".msh", ["triangles, quads, triangles"]), (".xdmf", ["tetra10"]),
])
def test_files_of_other_formats_go_there_and_back(tmp_path, extension, kinds, monkeypatch):
    monkeypatch.chdir(tmp_path)  # the writer of XDMF leaves a file there
    for kind in kinds:
        first, second = tmp_path / f"first{extension}", tmp_path / f"second{extension}"
        meshio.write(first, SAMPLES[kind])
        given = meshio.read(first)
        back = there_and_back(given, tmp_path / "model.mox")
        expect_same(back, given)
        meshio.write(second, back)
        again = meshio.read(second)
        assert [one.type for one in again.cells] == [one.type for one in given.cells]
        assert all(np.array_equal(mine.data, other.data) for mine, other in zip(again.cells, given.cells))


DATA = Path(os.environ.get("MOXWRITER_DATA_DIR", "none"))


@pytest.mark.skipif(not (DATA / "horn.msh").exists(), reason="the models of others are not here")
def test_a_model_of_others_comes_back(saved):
    given = meshio.read(DATA / "horn.msh")
    expect_same(there_and_back(given, saved), given)


def test_a_model_that_mox_has_imported_is_read(saved):
    source = DATA / "8-block.g"
    if not source.exists():
        pytest.skip("the models of others are not here")
    assert mox("import", source, saved).returncode == 0
    found = meshio.read(saved)
    assert len(found.cells) == 8 and {one.type for one in found.cells} == {"hexahedron"}
    exported = read_exported(saved, saved.with_suffix(".vtu"), "--step", "last")
    mine = np.concatenate([one.data for one in found.cells])
    other = np.concatenate([one.data for one in exported.cells])
    assert np.array_equal(found.points[mine], exported.points[other])
